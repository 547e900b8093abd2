// SPDX-License-Identifier: MIT
// Where the application keeps its data and its preferences: below the folders that the system has
// for that, in "Brantis", in a directory named after the product.
//
//   <LocalAppData>\Brantis\Scoutrix 16\  of the user; ~/.local/share on Linux
//   <ProgramData>\Brantis\Scoutrix 16\   of all users; /var/lib on Linux
//   ...\Preferences\                     in each of them
//
// Results are absolute and end with '\'; they are empty when the system has no such folder.
// Everything may be called by any thread.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// For the data of all users, which only administrators may write on most systems; the directory
// need not exist. `sub` stands in front of the product's name: "Brantis\sub\Scoutrix 16\".
// Without `sub` the result is computed once, until application or product get another name.
KORTOOLS_API CXTString<wchar_t> GetCommonApplicationDataPath(
    bool withoutVersion = false, wchar_t const *sub = nullptr);

// The same for the data of the user. The directory is made when it is missing.
KORTOOLS_API CXTString<wchar_t> GetUserApplicationDataPath(
    bool withoutVersion = false, wchar_t const *sub = nullptr);

// For temporary files of all users' programs, in the directory of the common data: "temp\", or
// "temp3\" for a number above 0, so that several parts of an application do not meet. With `create`
// it is made when it is missing.
KORTOOLS_API CXTString<wchar_t> GetCommonTempPath(unsigned int number = 0, bool create = false);

// The directory that was set, else "Preferences\" in that of the data. With `create` it is made
// when it is missing.
KORTOOLS_API CXTString<wchar_t> GetUserPreferencesPath(bool create = false);
KORTOOLS_API CXTString<wchar_t> GetCommonPreferencesPath(bool create = false);

// Other directories for the preferences; empty: those from above again. A '\' at the end is added.
KORTOOLS_API void SetUserPreferencesPath(CXTString<wchar_t> const &path);
KORTOOLS_API void SetCommonPreferencesPath(CXTString<wchar_t> const &path);

// The file for CCustomData::SaveToPrefs(), "Scoutrix.prefs" in the directory of the user's
// preferences, which is not made. Empty when there is none.
KORTOOLS_API CXTString<wchar_t> GetPreferencesFile();

// SPDX-License-Identifier: MIT
// What an application does once after an update.
//
//   int previous = -1;
//   if (IsFirstLaunch(&app, false, false, &previous)) {
//       CopyFileFromPreviousVersionIfMissing(L"shortcuts.kor");
//       ShowWhatIsNew(previous);
//   }
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

class CWinApp;

// Does this build run for the first time for the user? Then it is remembered, unless
// IsPreferencesSavingEnabled() is false: the next call answers false. A build is told by its date,
// its time and its version, with `versionOnly` by its version alone.
//
// It is remembered in the profile of `app`, section "settings", or with `inPreferencesFile` (and
// when `app` is null) in GetPreferencesFile(); docs/start.md has the entries. The two pointers,
// which may be null, get the version that ran before, in any case; -1 when there was none.
KORTOOLS_API bool IsFirstLaunch(CWinApp *app, bool inPreferencesFile = false,
    bool versionOnly = false, int *previousMajor = nullptr, int *previousMinor = nullptr);

// Copies a file of the user's preferences directory, which is given by its name there, from that of
// the newest earlier version of the product that has it: "Scoutrix 15" or older for Scoutrix 16,
// "Scoutrix" last. What exists is kept. True when the file exists in the end.
KORTOOLS_API bool CopyFileFromPreviousVersionIfMissing(CXTString<wchar_t> const &name);

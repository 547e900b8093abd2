// SPDX-License-Identifier: MIT
// What the application is called and where it is, for the whole process. Both follow from the
// running program until they are set, which a host does at its start; application_paths.h derives
// from them where its data belongs.
//
// Everything may be called by any thread.
//
//   SetInternalProductName(L"Scoutrix", 16);
//   GetInternalProductName(true); // Scoutrix 16
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// The application's file. A relative path counts from the current directory; an empty one is that
// of the running program again.
KORTOOLS_API void SetApplicationPath(CXTString<wchar_t> const &path);

// The path that was set, else that of the running program. With `directoryOnly` the directory it
// lies in, with '\' at its end.
KORTOOLS_API CXTString<wchar_t> GetApplicationPath(bool directoryOnly = false);

// The file's name of GetApplicationPath().
KORTOOLS_API CXTString<wchar_t> GetApplicationName(bool removeExtension = false);

// The name and the version under which the application keeps its data; by default the application's
// name without extension (which an empty name stands for as well), and no version. With
// `makeDirectory` the directory of the user's data is made now.
KORTOOLS_API void SetInternalProductName(
    CXTString<wchar_t> const &name, int version = 0, bool makeDirectory = false);

// With `withVersion`, "Name 16"; without a version (0) just the name.
KORTOOLS_API CXTString<wchar_t> GetInternalProductName(bool withVersion = false);

// Whether what the user has chosen is to be kept beyond this run: true until a host that should
// leave no traces (a second instance, a run that only converts files) says otherwise. CWinApp
// writes nothing to its profile meanwhile.
KORTOOLS_API void EnablePreferencesSaving(bool enable);
KORTOOLS_API bool IsPreferencesSavingEnabled();

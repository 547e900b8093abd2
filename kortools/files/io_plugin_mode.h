// SPDX-License-Identifier: MIT
// IoPluginMode: what the library asks a plug-in to do. io_plugin.h has the records that go with it.
// For C and C++.
#pragma once

#include <stdbool.h>

#ifdef __cplusplus
enum IoPluginMode : int {
#else
typedef int IoPluginMode;
enum {
#endif
    ioModeTypes = 1,   // hand out the types of files; data is an IoPluginTypes
    ioModeRelease = 2, // the plug-in will be unloaded and is not called again; data is null
    ioModeLoad = 3,    // load a file; data is an IoPluginLoad
    ioModeSave = 4     // save a file; data is an IoPluginSave
};

// The entry point of a plug-in: false when it could not do what it was asked for, and for every
// mode that it does not know. What the second argument points to depends on the mode.
typedef bool (*IoPluginCallback)(IoPluginMode mode, void *data);

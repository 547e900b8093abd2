// SPDX-License-Identifier: MIT
// IoPluginMode: what the library asks a plug-in to do. Declared here for the interfaces that only
// pass it on; its values are part of the interface for plug-ins.
#pragma once

enum IoPluginMode : int;

// The entry point of a plug-in: false when it could not do what it was asked for. What the second
// argument points to depends on the mode.
using IoPluginCallback = bool (*)(IoPluginMode mode, void *data);

// SPDX-License-Identifier: MIT
// Calls of plug-ins' entry points. The process knows which are under way, so that no plug-in is
// unloaded below one of its callers.
#pragma once

#include "kortools/files/io_plugin_mode.h"

namespace kortools::files {

enum class CallOutcome {
    Done,
    Failed, // it returned false
    Threw,  // an exception left it, and is gone
    Closed  // not called: the plug-in is being unloaded
};
CallOutcome call_plugin(IoPluginCallback callback, IoPluginMode mode, void *data);

// Refuses calls from now on, waits for those of other threads to end, and then tells the plug-in
// that it is released. The calling thread must not be in a call.
void retire_plugin(IoPluginCallback callback);

// Allows calls again: another plug-in may have been loaded where a closed one was.
void open_plugin(IoPluginCallback callback);

// Whether the calling thread is inside a call of a plug-in.
bool is_in_plugin();

} // namespace kortools::files

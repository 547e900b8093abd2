// SPDX-License-Identifier: MIT
// What else the library does with plug-ins: loads those of a folder, and hears of their end.
#pragma once

#include "kortools/core/critical_section.h"
#include "kortools/files/plugins.h"

#include <memory>

namespace kortools::platform {
class VersionProbe;
}

namespace kortools::files {

// LoadPlugin() for the libraries of a folder, with one helper process for all of them. A plug-in
// that only lacks the entry point is not refused: it may be one for others. Used by one thread.
class PluginScan {
public:
    PluginScan();
    PluginScan(PluginScan const &) = delete;
    PluginScan &operator=(PluginScan const &) = delete;
    ~PluginScan(); // the helper process is gone then

    bool load(CXTString<wchar_t> const &path, char const *entry_name, PluginInfo &info);

private:
    std::unique_ptr<platform::VersionProbe> m_probe;
};

// Held while a library is examined and loaded, and while one is taken to be released. Who holds it
// can get ready for a load before another thread releases that.
CXCriticalSection &get_plugin_load_lock();

// Called before the last load for an entry point is released, while the library is still there, by
// the thread that releases it and without a lock. False keeps the library loaded.
using PluginReleaseHook = bool (*)(PluginInfo const &info, char const *entry_name);
void set_plugin_release_hook(PluginReleaseHook hook); // null: none

// Releases all plug-ins and forgets the refusals and the directory.
void reset_plugins();

} // namespace kortools::files

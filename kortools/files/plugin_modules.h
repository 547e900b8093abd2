// SPDX-License-Identifier: MIT
// What else the library does with plug-ins: loads those of a folder, and hears of their end.
#pragma once

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

// Called before each release of a load, while the library is still there, by the thread that
// releases it and without a lock.
using PluginReleaseHook = void (*)(PluginInfo const &info, char const *entry_name);
void set_plugin_release_hook(PluginReleaseHook hook); // null: none

// Releases all plug-ins and forgets the refusals and the directory.
void reset_plugins();

} // namespace kortools::files

// SPDX-License-Identifier: MIT
// What a library is before it becomes a plug-in.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/files/module_image.h"
#include "kortools/files/plugins.h"
#include "kortools/platform/version_probe.h"

namespace kortools::files {

struct Refusal {
    PluginVerdict verdict = pluginNotRefused;
    CXTString<wchar_t> detail; // what %2 of the verdict's text stands for
};

// Examines the library at an absolute path without running its code in this process (on Windows:
// none but its version function). A verdict of pluginNotRefused says that it may be loaded.
class PluginInspection {
public:
    PluginInspection(CXTString<wchar_t> const &path, char const *entry_name)
        : m_path(path)
        , m_entry_name(entry_name)
    {
    }
    Refusal examine(platform::VersionProbe &probe, unsigned int limit_ms);

    // After the system refused to load it, for the reason that it gave.
    Refusal explain_failure(std::string const &problem) const;

private:
    Refusal read_image();
    Refusal check_exports() const;
    Refusal check_version(platform::VersionProbe &probe, unsigned int limit_ms) const;

    CXTString<wchar_t> const m_path;
    char const *const m_entry_name;
    ModuleImage m_image;
};

// The refusal as a sentence in the active language; empty when there is none.
CXTString<wchar_t> describe_refusal(CXTString<wchar_t> const &path, Refusal const &refusal);

} // namespace kortools::files

// SPDX-License-Identifier: MIT
// What scoutrix remembers from one run to the next, in a preferences file.
//
// Settings never stop the host. Where they cannot be read it warns and goes on with defaults; a
// damaged file is kept under another name. Saving one whole record at a time is the library's part:
// hosts that run side by side cannot damage the file, the last one to save counts.
#pragma once

#include "apps/scoutrix/listing.h"

#include <span>

namespace scoutrix {

struct Settings {
    SortKey sort = SortKey::None; // how list sorts
    int depth = -1;               // how many levels it prints; negative: all
    bool progress = true;         // show how far long work is
    int timeout = 10;             // seconds that a disk may take to answer
    int recent_limit = 10;        // scenes that are remembered
    CXArray<Text> recent;         // absolute paths, the latest first
};

// A setting as commands name it. All values are texts on the command line.
struct SettingInfo {
    char const *key;
    char const *help; // values it takes
    std::string (*get)(Settings const &settings);
    bool (*set)(Settings &settings, std::string const &value); // false for a value it cannot have
};
std::span<SettingInfo const> get_setting_infos();

class SettingsFile {
public:
    explicit SettingsFile(Text path)
        : m_path(std::move(path))
    {
    }

    Settings Load() const;

    // Makes the folder when needed. Warns and returns false when the settings cannot be saved.
    bool Save(Settings const &settings) const;

    Text const &GetPath() const { return m_path; }

    // The file of the calling user; empty when the system has no place for it.
    static Text GetDefaultPath();

private:
    void KeepAside() const;

    Text m_path; // empty: nothing is remembered
};

// Puts a scene first in the list of recent ones. False when it was there already.
bool remember_scene(Settings &settings, Text const &scene);

} // namespace scoutrix

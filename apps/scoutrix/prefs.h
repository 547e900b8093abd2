// SPDX-License-Identifier: MIT
// The commands on the settings: each prints, or saves what it has changed, and returns the exit
// code. They throw CXException for a setting that there is not, or a value that it cannot have.
#pragma once

#include "apps/scoutrix/commands.h"

namespace scoutrix {

int show_settings(Session &session); // all, and where they are kept
int get_setting(Session &session, std::string const &key);
int set_setting(Session &session, std::string const &key, std::string const &value);

// Goes back to the defaults: of all settings when none is named. The recent scenes stay.
int remove_settings(Session &session, std::vector<std::string> const &keys);

// Prints the path of the file.
int show_settings_file(Session &session);

} // namespace scoutrix

// SPDX-License-Identifier: MIT
// What the host tells scripts; 130 is kor_apps::exit_cancelled.
#pragma once

namespace scoutrix {

enum ExitCode : int {
    exit_done = 0,
    exit_failed = 1,  // also: nothing was found
    exit_usage = 2,   // the command line is not understood, nor the expression of a search
    exit_missing = 3, // a file is not there, or does not answer in time
    exit_unknown = 4, // nothing loads files of that type
    exit_damaged = 5  // its loader cannot read a file
};

} // namespace scoutrix

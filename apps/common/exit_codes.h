// SPDX-License-Identifier: MIT
// What all programs tell scripts.
#pragma once

namespace kor_apps {

enum ExitCode : int {
    exit_done = 0,
    exit_failed = 1,      // also: nothing was found
    exit_usage = 2,       // the command line is not understood, nor the expression of a search
    exit_missing = 3,     // a file is not there, or does not answer in time
    exit_unknown = 4,     // a file is of no type that the program knows
    exit_damaged = 5,     // a file is not what its type says
    exit_cancelled = 130, // by the user: what shells give for Ctrl+C
};

// What a code means in one program.
struct ExitMeaning {
    ExitCode code;
    char const *meaning;
};

} // namespace kor_apps

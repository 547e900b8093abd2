// SPDX-License-Identifier: MIT
// What the programs' command lines have in common: exit codes and examples below the help,
// --version, and a hidden --describe, from which scripts/update-manuals makes manual pages and
// completions.
#pragma once

#include "apps/common/exit_codes.h"

#include <CLI/CLI.hpp>
#include <span>
#include <string>

namespace kor_apps {

struct Example {
    char const *command;
    char const *does;
};

// All of it lives as long as the program.
struct ProgramFacts {
    std::span<ExitMeaning const> exits;
    std::span<Example const> examples;
};

// Adds all of the above to a program, before or after its own options and commands.
void add_program_facts(CLI::App &app, ProgramFacts const &facts);

// The program with its options, arguments and commands, as JSON.
std::string describe_program(CLI::App const &app, ProgramFacts const &facts);

} // namespace kor_apps

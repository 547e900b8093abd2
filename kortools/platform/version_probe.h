// SPDX-License-Identifier: MIT
// VersionProbe: asks libraries for a number without letting them do harm.
//
// Linux: a helper process loads the library and calls the function. It lives as long as the object,
// and a new one takes its place when a library made it crash or when its time was over.
// Windows: the library is mapped without its start-up code, and the function is called in this
// process; it has no time limit.
#pragma once

#include <memory>
#include <string>

namespace kortools::platform {

enum class ProbeResult {
    Answered,
    NoFunction,
    NotLoaded,      // text: what the system says
    MissingLibrary, // text: its name
    Crashed,        // text: how
    Hung,
    NoHelper // text: its path
};

struct ProbeAnswer {
    ProbeResult result = ProbeResult::NotLoaded;
    unsigned int number = 0; // when answered
    std::string text;        // UTF-8
};

class VersionProbe {
public:
    VersionProbe(); // starts nothing yet
    VersionProbe(VersionProbe const &) = delete;
    VersionProbe &operator=(VersionProbe const &) = delete;
    ~VersionProbe();

    // Calls `unsigned int function()` of the library at an absolute path.
    ProbeAnswer ask(wchar_t const *path, char const *function, unsigned int limit_ms);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// The helper's native path, for this process; empty: where it was installed, or the environment
// variable KORTOOLS_PLUGIN_PROBE says. Nothing on Windows.
void set_probe_program(std::string const &native_path);

} // namespace kortools::platform

// SPDX-License-Identifier: MIT
// The host's log: what it was asked for, what it did and what went wrong.
#pragma once

#include "apps/scene/scene.h"

namespace scoutrix {

// The log is open as long as this object lives. It goes on behind what earlier runs wrote; when it
// has become large they are given up. While another host writes to it, this one takes another file
// with a number in its name. A log that cannot be opened does not stop the host.
class HostLog {
public:
    explicit HostLog(Text const &path); // empty: scoutrix.log in the user's application data
    ~HostLog();
    HostLog(HostLog const &) = delete;
    HostLog &operator=(HostLog const &) = delete;
};

// Moves the lines of all threads to the right while it lives. For the main thread.
class LogIndent {
public:
    LogIndent();
    ~LogIndent();
    LogIndent(LogIndent const &) = delete;
    LogIndent &operator=(LogIndent const &) = delete;
};

void log_line(Text const &line); // for every thread

// Tells the user, and the log.
void report_error(Text const &message);
void report_warning(Text const &message);

} // namespace scoutrix

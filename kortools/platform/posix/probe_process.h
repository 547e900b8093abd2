// SPDX-License-Identifier: MIT
// ProbeProcess: a running kortools-plugin-probe. It dies with this object, with the thread that
// started it and with this process.
#pragma once

#include "kortools/platform/posix/probe_protocol.h"

#include <string>
#include <sys/types.h>

namespace kortools::platform {

class ProbeProcess {
public:
    ProbeProcess() = default;
    ProbeProcess(ProbeProcess const &) = delete;
    ProbeProcess &operator=(ProbeProcess const &) = delete;
    ~ProbeProcess() { stop(); }

    bool start(std::string const &program); // waits until it is ready
    bool is_running() const { return m_pid > 0; }

    // Ended: stop() tells how. Late: it has been stopped.
    enum class Outcome { Replied, Ended, Late };
    Outcome ask(std::string const &request, unsigned int limit_ms, ProbeReply &reply);

    // Kills it, and what libraries started there, if it still runs. How it ended: "signal 11
    // (Segmentation fault)".
    std::string stop();

private:
    Outcome receive(unsigned int limit_ms, ProbeReply &reply);

    pid_t m_pid = 0; // 0: none
    int m_channel = -1;
};

} // namespace kortools::platform

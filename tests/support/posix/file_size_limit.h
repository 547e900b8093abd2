// SPDX-License-Identifier: MIT
// Lets no file of this process grow beyond a size while it lives, as on a full disk. Linux only.
#pragma once

#include <csignal>
#include <sys/resource.h>

class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit const limit { bytes, m_before.rlim_max };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(FileSizeLimit const &) = delete;
    FileSizeLimit &operator=(FileSizeLimit const &) = delete;
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before {};
    void (*m_handler)(int);
};

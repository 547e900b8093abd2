// SPDX-License-Identifier: MIT
#include "tests/files/blocked_pipe.h"

#include <cstdint>
#include <unistd.h>

BlockedPipe::BlockedPipe()
{
    int ends[2] = { -1, -1 };
    [[maybe_unused]] int const result = pipe(ends);
    m_read_end = reinterpret_cast<void *>(std::intptr_t(ends[0]));
    m_write_end = reinterpret_cast<void *>(std::intptr_t(ends[1]));
}

BlockedPipe::~BlockedPipe()
{
    close(static_cast<int>(reinterpret_cast<std::intptr_t>(m_read_end)));
    close(static_cast<int>(reinterpret_cast<std::intptr_t>(m_write_end)));
}

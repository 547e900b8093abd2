// SPDX-License-Identifier: MIT
#include "tests/files/blocked_pipe.h"

#include <windows.h>

BlockedPipe::BlockedPipe()
    : m_read_end(nullptr)
    , m_write_end(nullptr)
{
    CreatePipe(&m_read_end, &m_write_end, nullptr, 0);
}

BlockedPipe::~BlockedPipe()
{
    CloseHandle(m_read_end);
    CloseHandle(m_write_end);
}

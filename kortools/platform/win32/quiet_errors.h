// SPDX-License-Identifier: MIT
// While this lives, the system shows no boxes about what the calling thread could not load.
#pragma once

#include <windows.h>

namespace kortools::platform {

class QuietErrors {
public:
    QuietErrors()
    {
        SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &m_before);
    }
    QuietErrors(QuietErrors const &) = delete;
    QuietErrors &operator=(QuietErrors const &) = delete;
    ~QuietErrors()
    {
        DWORD const error = GetLastError();
        SetThreadErrorMode(m_before, nullptr);
        SetLastError(error);
    }

private:
    DWORD m_before = 0;
};

} // namespace kortools::platform

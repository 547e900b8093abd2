// SPDX-License-Identifier: MIT
#include "kortools/platform/program.h"

#include <windows.h>

namespace kortools::platform {

std::wstring get_program_path()
{
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        DWORD const length
            = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2); // it may have been cut
    }
}

} // namespace kortools::platform

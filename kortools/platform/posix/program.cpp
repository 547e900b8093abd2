// SPDX-License-Identifier: MIT
#include "kortools/platform/program.h"

#include "kortools/platform/file_system.h"

#include <unistd.h>

namespace kortools::platform {

std::wstring get_program_path()
{
    std::string path(256, '\0');
    while (true) {
        ssize_t const size = readlink("/proc/self/exe", path.data(), path.size());
        if (size < 0)
            return {};
        if (static_cast<std::size_t>(size) < path.size()) {
            path.resize(static_cast<std::size_t>(size));
            break;
        }
        path.resize(path.size() * 2); // it may have been cut
    }
    // What the kernel adds when the file has been replaced, as updates do, or deleted.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted) && access(path.c_str(), F_OK) != 0)
        path.resize(path.size() - deleted.size());
    return from_native_path(path);
}

} // namespace kortools::platform

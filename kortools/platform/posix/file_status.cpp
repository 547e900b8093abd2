// SPDX-License-Identifier: MIT
#include "kortools/platform/file_status.h"

#include "kortools/platform/posix/native_path.h"

#include <sys/stat.h>

namespace kortools::platform {

bool get_file_status(wchar_t const *path, FileStatus &status)
{
    return with_native_path(path, false, [&](std::string const &native) {
        struct stat facts;
        if (retry([&] { return stat(native.c_str(), &facts); }) != 0)
            return false;
        status.is_directory = S_ISDIR(facts.st_mode);
        status.size = status.is_directory ? 0 : static_cast<unsigned long long>(facts.st_size);
        return true;
    });
}

} // namespace kortools::platform

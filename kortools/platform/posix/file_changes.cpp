// SPDX-License-Identifier: MIT
#include "kortools/platform/file_changes.h"

#include "kortools/platform/posix/native_path.h"

#include <sys/stat.h>
#include <unistd.h>

namespace kortools::platform {

bool create_directory(wchar_t const *path)
{
    return with_native_path(path, false, [](std::string const &native) {
        if (mkdir(native.c_str(), 0777) == 0)
            return true;
        if (errno == ENOENT)
            set_last_os_error(error_path_not_found);
        return false;
    });
}

bool remove_directory(wchar_t const *path)
{
    return with_native_path(path, false, [](std::string native) {
        // With the separator the system would follow a link, and refuse that in its own way.
        while (native.size() > 1 && native.back() == '/')
            native.pop_back();
        return rmdir(native.c_str()) == 0;
    });
}

bool delete_file(wchar_t const *path)
{
    return with_native_path(
        path, false, [](std::string const &native) { return unlink(native.c_str()) == 0; });
}

} // namespace kortools::platform

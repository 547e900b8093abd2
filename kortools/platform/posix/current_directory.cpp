// SPDX-License-Identifier: MIT
#include "kortools/platform/current_directory.h"

#include "kortools/platform/posix/native_path.h"

#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>

namespace kortools::platform {

std::wstring get_current_directory()
{
    char path[PATH_MAX];
    return getcwd(path, sizeof path) ? from_native_path(path) : std::wstring();
}

// The handle is the descriptor and one, so that none is null.
NextDirectory::~NextDirectory()
{
    if (m_handle)
        close(static_cast<int>(reinterpret_cast<std::intptr_t>(m_handle) - 1));
}

bool NextDirectory::open(wchar_t const *path)
{
    return with_native_path(path, false, [this](std::string const &native) {
        int const fd
            = retry([&] { return ::open(native.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); });
        if (fd >= 0)
            m_handle = reinterpret_cast<void *>(static_cast<std::intptr_t>(fd) + 1);
        return fd >= 0;
    });
}

bool NextDirectory::change() const
{
    return m_handle && fchdir(static_cast<int>(reinterpret_cast<std::intptr_t>(m_handle) - 1)) == 0;
}

} // namespace kortools::platform

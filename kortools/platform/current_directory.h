// SPDX-License-Identifier: MIT
// The directory that relative paths start from, of the process as a whole.
#pragma once

#include <string>

namespace kortools::platform {

std::wstring get_current_directory(); // absolute; empty when it has been removed

// A directory that is ready to become the current one. Opening may wait for a share, changing then
// does not.
class NextDirectory {
public:
    NextDirectory() = default;
    ~NextDirectory();
    NextDirectory(NextDirectory const &) = delete;
    NextDirectory &operator=(NextDirectory const &) = delete;

    bool open(wchar_t const *path);
    bool change() const; // makes it the current directory

private:
    void *m_handle = nullptr; // the system's, of the open directory
    std::wstring m_path;
};

} // namespace kortools::platform

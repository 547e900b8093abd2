// SPDX-License-Identifier: MIT
// Reads the entries of an open folder in blocks.
#pragma once

#include <cstddef>
#include <dirent.h>
#include <memory>
#include <string_view>

namespace kortools::platform {

class DirectoryEntries {
public:
    // The descriptor stays the caller's.
    explicit DirectoryEntries(int fd)
        : m_fd(fd)
    {
    }

    // The next entry but "." and "..", or null: at the end, or, with errno set, when it failed.
    // Valid until the next call.
    dirent64 const *next();

    static std::string_view get_name(dirent64 const &entry) { return entry.d_name; }

private:
    static constexpr std::size_t block_size = 32768;

    int const m_fd;
    std::unique_ptr<char[]> m_block;
    std::size_t m_used = 0;
    std::size_t m_at = 0;
};

} // namespace kortools::platform

// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/directory_entries.h"

#include "kortools/platform/posix/native_path.h"

namespace kortools::platform {

dirent64 const *DirectoryEntries::next()
{
    for (;;) {
        if (m_at == m_used) {
            if (!m_block)
                m_block = std::make_unique_for_overwrite<char[]>(block_size);
            ssize_t const size = retry([&] { return getdents64(m_fd, m_block.get(), block_size); });
            if (size == 0)
                errno = 0;
            if (size <= 0)
                return nullptr;
            m_used = static_cast<std::size_t>(size);
            m_at = 0;
        }
        auto const *const entry = reinterpret_cast<dirent64 const *>(m_block.get() + m_at);
        m_at += entry->d_reclen;
        if (get_name(*entry) != "." && get_name(*entry) != "..")
            return entry;
    }
}

} // namespace kortools::platform

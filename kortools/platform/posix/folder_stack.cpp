// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/folder_stack.h"

#include "kortools/platform/posix/native_path.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace kortools::platform {
namespace {

constexpr std::size_t max_open_levels = 32;

int open_folder(int parent, char const *name)
{
    return retry(
        [&] { return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); });
}

} // namespace

FolderStack::~FolderStack()
{
    for (Level const &level : m_levels) {
        if (level.fd >= 0)
            close(level.fd);
    }
}

int FolderStack::get() const
{
    return m_levels.empty() ? AT_FDCWD : m_levels.back().fd;
}

bool FolderStack::enter(std::string const &name)
{
    int const parent = get();
    Level &level = m_levels.emplace_back(); // before there is something to close
    level.fd = open_folder(parent, name.c_str());
    struct stat facts;
    if (level.fd < 0) {
        m_levels.pop_back();
        return false;
    }
    if (fstat(level.fd, &facts) == 0) {
        level.device = facts.st_dev;
        level.number = facts.st_ino;
    }
    if (m_levels.size() > max_open_levels) {
        int &fd = m_levels[m_levels.size() - 1 - max_open_levels].fd;
        if (fd >= 0)
            close(std::exchange(fd, -1));
    }
    return true;
}

bool FolderStack::leave()
{
    int const child = m_levels.back().fd;
    m_levels.pop_back();
    if (m_levels.empty() || m_levels.back().fd >= 0) {
        close(child);
        return true;
    }
    Level &parent = m_levels.back();
    int const fd = open_folder(child, "..");
    close(child);
    struct stat facts;
    if (fd >= 0 && fstat(fd, &facts) == 0 && facts.st_dev == parent.device
        && facts.st_ino == parent.number) {
        parent.fd = fd;
        return true;
    }
    if (fd >= 0)
        close(fd);
    m_levels.clear(); // further out all are closed
    errno = ENOENT;
    return false;
}

} // namespace kortools::platform

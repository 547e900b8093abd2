// SPDX-License-Identifier: MIT
#include "kortools/platform/directory_reader.h"

#include "kortools/platform/posix/directory_entries.h"
#include "kortools/platform/posix/file_facts.h"
#include "kortools/platform/posix/folder_stack.h"
#include "kortools/platform/posix/native_path.h"
#include "kortools/platform/posix/path_text.h"

#include <fcntl.h>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace kortools::platform {
namespace {

bool is_folder_entry(int folder, dirent64 const &entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat facts;
    return fstatat(folder, entry.d_name, &facts, 0) == 0 && S_ISDIR(facts.st_mode);
}

// A tree in depth, its present folder on top.
class FileCounter {
public:
    FileCounter(Depth depth, std::atomic<bool> const &is_late)
        : m_depth(depth)
        , m_is_late(is_late)
    {
    }

    // False when the top cannot be read, or it is late.
    bool count(std::string const &path)
    {
        if (!enter(path))
            return false;
        while (!m_pending.empty() && !m_is_late) {
            if (m_pending.back().empty()) {
                m_pending.pop_back();
                if (!m_stack.leave())
                    return true; // somebody moves the tree meanwhile
            } else {
                std::string const name = std::move(m_pending.back().back());
                m_pending.back().pop_back();
                enter(name);
            }
        }
        return !m_is_late;
    }

    long long get_count() const { return m_count; }

private:
    bool enter(std::string const &name)
    {
        if (!m_stack.enter(name))
            return false;
        std::vector<std::string> folders;
        DirectoryEntries entries(m_stack.get());
        while (dirent64 const *const entry = entries.next()) {
            if (!is_folder_entry(m_stack.get(), *entry))
                ++m_count;
            else if (m_depth == Depth::Tree && entry->d_type != DT_LNK)
                folders.emplace_back(entry->d_name); // a link is refused when it is entered
        }
        m_pending.push_back(std::move(folders));
        return true;
    }

    Depth const m_depth;
    std::atomic<bool> const &m_is_late;
    FolderStack m_stack;
    std::vector<std::vector<std::string>> m_pending; // folders to visit, by level of the stack
    long long m_count = 0;
};

} // namespace

struct DirectoryReader::State {
    int fd = -1;
    std::optional<DirectoryEntries> entries;
    dirent64 const *entry = nullptr;
};

DirectoryReader::DirectoryReader()
    : m_state(std::make_unique<State>())
{
}

DirectoryReader::~DirectoryReader()
{
    if (m_state->fd >= 0)
        close(m_state->fd);
}

bool DirectoryReader::open(wchar_t const *path)
{
    return with_native_path(path, false, [this](std::string const &native) {
        m_state->fd
            = retry([&] { return ::open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
        if (m_state->fd < 0)
            return false;
        m_state->entries.emplace(m_state->fd);
        return true;
    });
}

bool DirectoryReader::next()
{
    m_state->entry = m_state->entries ? m_state->entries->next() : nullptr;
    return m_state->entry != nullptr;
}

std::wstring DirectoryReader::get_name() const
{
    return decode_path_text(DirectoryEntries::get_name(*m_state->entry));
}

bool DirectoryReader::is_directory() const
{
    return is_folder_entry(m_state->fd, *m_state->entry);
}

bool DirectoryReader::get_facts(EntryFacts &facts) const
{
    char const *const name = m_state->entry->d_name;
    struct stat status;
    if (fstatat(m_state->fd, name, &status, 0) != 0
        && fstatat(m_state->fd, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    facts.status = to_file_status(status, name);
    if (m_state->entry->d_type == DT_LNK)
        facts.status.attributes |= attribute_link;
    facts.dates = { status.st_ctim.tv_sec, status.st_atim.tv_sec, status.st_mtim.tv_sec };
    return true;
}

long long count_files(wchar_t const *path, Depth depth, std::atomic<bool> const &is_late)
{
    return with_native_path(path, -1LL, [&](std::string const &native) -> long long {
        FileCounter counter(depth, is_late);
        return counter.count(native + "/.") ? counter.get_count() : -1;
    });
}

} // namespace kortools::platform

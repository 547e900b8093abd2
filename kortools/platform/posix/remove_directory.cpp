// SPDX-License-Identifier: MIT
//
// The tree is walked with a list of levels instead of recursion. Names are always taken relative to
// an open folder, never as paths.
#include "kortools/platform/file_changes.h"
#include "kortools/platform/posix/directory_entries.h"
#include "kortools/platform/posix/folder_stack.h"
#include "kortools/platform/posix/native_path.h"
#include "kortools/platform/posix/path_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace kortools::platform {
namespace {

using Report = std::function<void(std::wstring const &path)>;

class TreeRemover {
public:
    TreeRemover(std::wstring_view path, ReadOnlyFiles read_only, Report const &report)
        : m_path(path)
        , m_read_only(read_only)
        , m_report(report)
    {
    }

    // True when nothing has stayed.
    bool remove(std::string const &native)
    {
        if (!enter(native)) {
            report_failure({});
            return false;
        }
        while (!m_levels.empty()) {
            std::vector<std::string> &folders = m_levels.back().folders;
            if (folders.empty()) {
                leave();
                continue;
            }
            std::string const name = std::move(folders.back());
            folders.pop_back();
            // What does not open may have become a file or a link.
            if (!enter(name) && !remove_name(name, 0))
                report_failure(name);
        }
        set_last_os_error(m_code);
        return m_code == 0;
    }

private:
    struct Level {
        std::string name;                 // in the level above; native path at the first level
        std::vector<std::string> folders; // that are still to be removed
    };

    // Opens a folder, removes its files and lists its folders. False when it does not open.
    bool enter(std::string const &name)
    {
        bool const entered
            = m_stack.enter(name) || (errno == EACCES && make_usable(name) && m_stack.enter(name));
        if (entered) {
            m_levels.push_back({ name, {} });
            remove_files(m_levels.back().folders);
        }
        return entered;
    }

    void remove_files(std::vector<std::string> &folders)
    {
        std::vector<std::string> files; // removing while reading may hide entries
        DirectoryEntries entries(m_stack.get());
        while (dirent64 const *const entry = entries.next())
            (entry->d_type == DT_DIR ? folders : files).emplace_back(entry->d_name);
        if (errno != 0)
            report_failure({});
        for (std::string &file : files) {
            if (remove_name(file, 0))
                continue;
            if (errno == EISDIR) // a disk that does not tell what entries are
                folders.push_back(std::move(file));
            else
                report_failure(file);
        }
    }

    // Removes the innermost folder, which is empty unless something failed.
    void leave()
    {
        std::string const name = std::move(m_levels.back().name);
        m_levels.pop_back();
        bool const left = m_stack.leave();
        if (!left || !remove_name(name, AT_REMOVEDIR))
            report_failure(m_levels.empty() ? std::string() : name);
        if (!left)
            m_levels.clear();
    }

    // In the innermost folder, whose permissions decide.
    bool remove_name(std::string const &name, int flags) const
    {
        int const folder = m_stack.get();
        if (unlinkat(folder, name.c_str(), flags) == 0)
            return true;
        if (errno != EACCES || m_read_only == ReadOnlyFiles::Respect || m_stack.is_empty())
            return false;
        struct stat facts;
        return fstat(folder, &facts) == 0 && fchmod(folder, facts.st_mode | S_IRWXU) == 0
            && unlinkat(folder, name.c_str(), flags) == 0;
    }

    bool make_usable(std::string const &name) const
    {
        int const folder = m_stack.get();
        struct stat facts;
        return m_read_only == ReadOnlyFiles::Remove
            && fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0
            && S_ISDIR(facts.st_mode)
            && fchmodat(folder, name.c_str(), facts.st_mode | S_IRWXU, 0) == 0;
    }

    // Of `name` in the innermost folder, or of that folder itself.
    void report_failure(std::string const &name)
    {
        if (m_code == 0)
            m_code = get_last_os_error();
        if (!m_report)
            return;
        std::wstring path = m_path;
        for (std::size_t i = 1; i < m_levels.size(); ++i)
            append(path, m_levels[i].name);
        if (!name.empty())
            append(path, name);
        m_report(path);
    }

    static void append(std::wstring &path, std::string const &name)
    {
        if (!path.empty() && path.back() != L'\\' && path.back() != L'/')
            path += L'\\';
        path += decode_path_text(name);
    }

    std::wstring const m_path;
    ReadOnlyFiles const m_read_only;
    Report const &m_report;
    FolderStack m_stack;
    std::vector<Level> m_levels; // as in the stack
    unsigned int m_code = 0;     // of the first failure
};

bool is_link(std::string const &path)
{
    struct stat facts;
    return lstat(path.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode);
}

bool is_directory(std::string const &path)
{
    struct stat facts;
    return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

// With a separator at the end the system would follow a link.
void cut_separators(std::string &path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
}

bool is_link_to_directory(std::string const &path)
{
    return is_link(path) && is_directory(path);
}

} // namespace

bool remove_directory(wchar_t const *path, ReadOnlyFiles)
{
    return with_native_path(path, false, [](std::string native) {
        cut_separators(native);
        return (is_link_to_directory(native) ? unlink(native.c_str()) : rmdir(native.c_str())) == 0;
    });
}

bool remove_tree(wchar_t const *path, ReadOnlyFiles read_only, Report const &report)
{
    return with_native_path(path, false, [&](std::string native) {
        cut_separators(native);
        if (is_link_to_directory(native) && unlink(native.c_str()) == 0)
            return true;
        return TreeRemover(path, read_only, report).remove(native);
    });
}

} // namespace kortools::platform

// SPDX-License-Identifier: MIT
//
// The tree is walked with a list of levels instead of recursion. Each folder on the way is held
// open without letting others delete or rename it, so no link can take its place meanwhile.
#include "kortools/platform/file_changes.h"
#include "kortools/platform/win32/long_path.h"

#include <vector>
#include <windows.h>

namespace kortools::platform {
namespace {

struct Level {
    std::wstring path;
    HANDLE hold = INVALID_HANDLE_VALUE;
    std::vector<std::wstring> folders; // names that are still to be removed
};

bool is_link(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// True when the path was read-only and is so no more.
bool make_writable(wchar_t const *path)
{
    DWORD const attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0
        && SetFileAttributesW(path, attributes & ~FILE_ATTRIBUTE_READONLY);
}

class TreeRemover {
public:
    TreeRemover(std::wstring path, ReadOnlyFiles read_only,
        std::function<void(std::wstring const &path)> const &report)
        : m_path(std::move(path))
        , m_read_only(read_only)
        , m_report(report)
    {
        while (m_path.size() > 1 && (m_path.back() == L'\\' || m_path.back() == L'/'))
            m_path.pop_back();
        m_root_length = lift_path_limit(m_path.c_str()).size();
    }
    ~TreeRemover()
    {
        for (Level const &level : m_levels)
            release(level.hold);
    }
    TreeRemover(TreeRemover const &) = delete;
    TreeRemover &operator=(TreeRemover const &) = delete;

    bool remove()
    {
        if (std::wstring const root = lift_path_limit(m_path.c_str()); !enter(root)) {
            report_failure(root);
            return false;
        }
        while (!m_levels.empty()) {
            Level &level = m_levels.back();
            if (level.folders.empty()) {
                release(level.hold);
                std::wstring const path = std::move(level.path);
                m_levels.pop_back();
                remove_name(path, true);
                continue;
            }
            std::wstring const path = level.path + L'\\' + level.folders.back();
            level.folders.pop_back();
            if (!enter(path))
                report_failure(path);
        }
        SetLastError(m_code);
        return m_code == 0;
    }

private:
    static void release(HANDLE hold)
    {
        if (hold != INVALID_HANDLE_VALUE)
            CloseHandle(hold);
    }

    // Holds a folder, removes its files and lists its folders. A link is removed instead. False
    // when the folder does not open.
    bool enter(std::wstring const &path)
    {
        HANDLE const hold = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
            FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
        BY_HANDLE_FILE_INFORMATION facts;
        if (hold == INVALID_HANDLE_VALUE)
            return false;
        bool const is_known = GetFileInformationByHandle(hold, &facts) != 0;
        bool const is_folder = is_known && (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (!is_folder || is_link(facts.dwFileAttributes)) {
            CloseHandle(hold);
            if (is_folder)
                remove_name(path, true);
            else
                SetLastError(ERROR_DIRECTORY);
            return is_folder;
        }
        m_levels.push_back({ path, hold, {} });
        remove_files(m_levels.back());
        return true;
    }

    void remove_files(Level &level)
    {
        WIN32_FIND_DATAW entry;
        HANDLE const search = FindFirstFileW((level.path + L"\\*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE) {
            report_failure(level.path);
            return;
        }
        do {
            std::wstring const name = entry.cFileName;
            bool const is_folder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            if (is_folder && !is_link(entry.dwFileAttributes)) {
                if (name != L"." && name != L"..")
                    level.folders.push_back(name);
            } else {
                remove_name(level.path + L'\\' + name, is_folder);
            }
        } while (FindNextFileW(search, &entry));
        FindClose(search);
    }

    void remove_name(std::wstring const &path, bool is_folder)
    {
        auto const remove_it = [&] {
            return is_folder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str());
        };
        if (remove_it())
            return;
        if (GetLastError() == ERROR_ACCESS_DENIED && m_read_only == ReadOnlyFiles::Remove
            && make_writable(path.c_str()) && remove_it())
            return;
        report_failure(path);
    }

    void report_failure(std::wstring const &path)
    {
        DWORD const code = GetLastError();
        if (m_code == 0)
            m_code = code;
        if (m_report)
            m_report(m_path + path.substr(m_root_length)); // as the caller wrote it
    }

    std::wstring m_path;
    std::size_t m_root_length = 0; // of the full form of m_path
    ReadOnlyFiles const m_read_only;
    std::function<void(std::wstring const &path)> const &m_report;
    std::vector<Level> m_levels; // from the outermost to the innermost
    DWORD m_code = 0;            // of the first failure
};

} // namespace

bool remove_directory(wchar_t const *path, ReadOnlyFiles read_only)
{
    if (RemoveDirectoryW(path))
        return true;
    DWORD const code = GetLastError();
    if (code == ERROR_ACCESS_DENIED && read_only == ReadOnlyFiles::Remove && make_writable(path)
        && RemoveDirectoryW(path))
        return true;
    SetLastError(code);
    return false;
}

bool remove_tree(wchar_t const *path, ReadOnlyFiles read_only,
    std::function<void(std::wstring const &path)> const &report)
{
    return TreeRemover(path, read_only, report).remove();
}

} // namespace kortools::platform

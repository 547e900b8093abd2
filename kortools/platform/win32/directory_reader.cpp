// SPDX-License-Identifier: MIT
#include "kortools/platform/directory_reader.h"

#include "kortools/platform/win32/long_path.h"

#include <string_view>
#include <vector>
#include <windows.h>

namespace kortools::platform {
namespace {

bool is_dots(WIN32_FIND_DATAW const &entry)
{
    std::wstring_view const name = entry.cFileName;
    return name == L"." || name == L"..";
}

bool is_folder(WIN32_FIND_DATAW const &entry)
{
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

HANDLE find_first(std::wstring const &folder, WIN32_FIND_DATAW &entry)
{
    return FindFirstFileExW((folder + L"\\*").c_str(), FindExInfoBasic, &entry,
        FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
}

} // namespace

struct DirectoryReader::State {
    HANDLE search = INVALID_HANDLE_VALUE;
    WIN32_FIND_DATAW entry = {};
    bool is_waiting = false; // the entry has been read, but is not the present one yet
};

DirectoryReader::DirectoryReader()
    : m_state(std::make_unique<State>())
{
}

DirectoryReader::~DirectoryReader()
{
    if (m_state->search != INVALID_HANDLE_VALUE)
        FindClose(m_state->search);
}

bool DirectoryReader::open(wchar_t const *path)
{
    m_state->search = find_first(lift_path_limit(path), m_state->entry);
    m_state->is_waiting = m_state->search != INVALID_HANDLE_VALUE;
    // The root of an empty disk has not even dots.
    return m_state->is_waiting || GetLastError() == ERROR_FILE_NOT_FOUND;
}

bool DirectoryReader::next()
{
    State &state = *m_state;
    for (;;) {
        if (state.search == INVALID_HANDLE_VALUE
            || (!state.is_waiting && !FindNextFileW(state.search, &state.entry)))
            return false;
        state.is_waiting = false;
        if (!is_dots(state.entry))
            return true;
    }
}

std::wstring DirectoryReader::get_name() const
{
    return m_state->entry.cFileName;
}

bool DirectoryReader::is_directory() const
{
    return is_folder(m_state->entry);
}

bool DirectoryReader::get_facts(EntryFacts &facts) const
{
    WIN32_FIND_DATAW const &entry = m_state->entry;
    facts.status.attributes = entry.dwFileAttributes;
    facts.status.size = is_folder(entry)
        ? 0
        : (static_cast<unsigned long long>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
    facts.dates = { to_seconds(entry.ftCreationTime), to_seconds(entry.ftLastAccessTime),
        to_seconds(entry.ftLastWriteTime) };
    return true;
}

long long count_files(wchar_t const *path, Depth depth, std::atomic<bool> const &is_late)
{
    std::vector<std::wstring> folders { lift_path_limit(path) };
    long long count = 0;
    for (bool is_top = true; !folders.empty() && !is_late; is_top = false) {
        std::wstring const folder = std::move(folders.back());
        folders.pop_back();
        WIN32_FIND_DATAW entry;
        HANDLE const search = find_first(folder, entry);
        if (search == INVALID_HANDLE_VALUE) {
            if (is_top && GetLastError() != ERROR_FILE_NOT_FOUND)
                return -1;
            continue;
        }
        do {
            if (!is_folder(entry))
                ++count;
            else if (depth == Depth::Tree && !is_dots(entry)
                && (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
                folders.push_back(folder + L'\\' + entry.cFileName);
        } while (FindNextFileW(search, &entry) && !is_late);
        FindClose(search);
    }
    return is_late ? -1 : count;
}

} // namespace kortools::platform

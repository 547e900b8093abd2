// SPDX-License-Identifier: MIT
// The entries of a folder, one after the other.
#pragma once

#include "kortools/platform/file_status.h"

#include <atomic>
#include <memory>
#include <string>

namespace kortools::platform {

struct EntryFacts {
    FileStatus status; // of a link itself on Windows, of what it leads to on Linux if it does
    FileDates dates;
};

class DirectoryReader {
public:
    DirectoryReader();
    ~DirectoryReader();
    DirectoryReader(DirectoryReader const &) = delete;
    DirectoryReader &operator=(DirectoryReader const &) = delete;

    bool open(wchar_t const *path); // at most once

    // Goes to the first or next entry but "." and ".."; false at the end.
    bool next();

    // Of the present entry. They may ask the disk, and so may fail.
    std::wstring get_name() const;
    bool is_directory() const; // also a link to one
    bool get_facts(EntryFacts &facts) const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// The number of entries that are no folders, nor links to such; with `recursive` below as well,
// where folders that cannot be read are skipped. -1 when `path` is no folder that can be read, and
// when `is_late` becomes true.
enum class Depth { Folder, Tree };
long long count_files(wchar_t const *path, Depth depth, std::atomic<bool> const &is_late);

} // namespace kortools::platform

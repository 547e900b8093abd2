// SPDX-License-Identifier: MIT
// The records of a preferences file; docs/preferences-format.md has the form. Only their places are
// looked at: whatever a record contains, it can be copied.
#pragma once

#include "kortools/archive/file.h"

#include <vector>

namespace kortools::data {

inline constexpr unsigned int preferences_header_size = 4; // bytes: the number of records
inline constexpr unsigned int record_key_size = 8;         // bytes, before the container
inline constexpr unsigned int record_head_size = 16; // key, and the container's magic and total

// More than any program has; a hostile file does not keep a reader busy for longer.
inline constexpr unsigned int max_records = 0x10000;
inline constexpr unsigned long long max_preferences_size = 1ULL << 30; // bytes

struct RecordKey {
    unsigned int id = 0;
    unsigned int version = 0;

    bool operator==(RecordKey const &) const = default;
};

struct PreferencesRecord {
    RecordKey key;
    unsigned long long start = 0; // of the key, in the file
    unsigned long long size = 0;  // bytes, key included

    unsigned long long get_container() const { return start + record_key_size; }
};

struct PreferencesRecords {
    std::vector<PreferencesRecord> records; // those before the first that is damaged
    bool whole = false; // as many as the header says, and the last ends with the file
};

// An empty file is whole. Throws what the file throws, and std::bad_alloc.
PreferencesRecords scan_preferences(CXFile &file);

enum class VersionRule { Exact, OrOlder };

// The first record of this key; with OrOlder, when there is none, the one of the same identifier
// that has the highest version below. Null when there is neither.
PreferencesRecord const *find_record(
    std::vector<PreferencesRecord> const &records, RecordKey key, VersionRule rule);

} // namespace kortools::data

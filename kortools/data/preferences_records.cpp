// SPDX-License-Identifier: MIT
#include "kortools/data/preferences_records.h"

#include <algorithm>

namespace kortools::data {
namespace {

// Identifier, version, magic and total; the total does not count these.
struct RecordHead {
    unsigned int id;
    unsigned int version;
    unsigned int magic;
    unsigned int total;
};
static_assert(sizeof(RecordHead) == record_head_size);

// Reads the record at `start` of a file of `length` bytes.
bool read_record(
    CXFile &file, unsigned long long start, unsigned long long length, PreferencesRecord &record)
{
    RecordHead head;
    if (length - start < sizeof head)
        return false;
    file.Seek(static_cast<long long>(start), CXFile::begin);
    if (file.Read(&head, sizeof head) != sizeof head || head.total > length - start - sizeof head)
        return false;
    record = { { head.id, head.version }, start, sizeof head + head.total };
    return true;
}

} // namespace

PreferencesRecords scan_preferences(CXFile &file)
{
    PreferencesRecords found;
    unsigned long long const length = file.GetLength();
    found.whole = length == 0;
    unsigned int count = 0;
    file.Seek(0, CXFile::begin);
    if (length > max_preferences_size || file.Read(&count, sizeof count) != sizeof count
        || count > max_records)
        return found;
    unsigned long long end = preferences_header_size;
    PreferencesRecord record;
    while (found.records.size() < count && read_record(file, end, length, record)) {
        found.records.push_back(record);
        end += record.size;
    }
    found.whole = found.records.size() == count && end == length;
    return found;
}

PreferencesRecord const *find_record(
    std::vector<PreferencesRecord> const &records, RecordKey key, VersionRule rule)
{
    auto const exact = std::ranges::find(records, key, &PreferencesRecord::key);
    if (exact != records.end())
        return &*exact;
    PreferencesRecord const *best = nullptr;
    for (PreferencesRecord const &record : records) {
        bool const fits = rule == VersionRule::OrOlder && record.key.id == key.id
            && record.key.version < key.version;
        if (fits && (!best || record.key.version > best->key.version))
            best = &record;
    }
    return best;
}

} // namespace kortools::data

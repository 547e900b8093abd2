// SPDX-License-Identifier: MIT
//
// Two files: the target, and beside it, while somebody saves, its copy (".tmp"). A save
//
//   1  locks the target, which it creates when it is missing;
//   2  finishes a save that was interrupted: a committed copy is copied over the target and
//      deleted, any other copy is deleted;
//   3  writes the copy: a mark in place of the number of records, the records that stay, the new
//      one; flushes it;
//   4  commits it: overwrites the mark with the number of records, and flushes that, and the names
//      of both files;
//   5  writes the copy's bytes over the target, cuts it to their length, and flushes it;
//   6  deletes the copy.
//
// The one rule for readers: a committed copy counts, else the target. It is committed when its
// number of records, of which there is at least one, fits its length exactly. Stopped
//
//   before 4   the copy is the beginning of a file, or has the mark: no number of records fits it.
//              The flush in 3 keeps the number from reaching the disk before the records do, which
//              a system that loses power might do otherwise. The target has not been touched.
//   within 4   four bytes within one sector are written or not.
//   within 5   the target is a mixture of old and new, and may look like a file that is none. But
//              the copy is committed.
//   within 6   both are the same.
//
// Nobody relies on the target being damaged in a way that shows: while it is not whole there is a
// copy that is. So a target that is not whole and has none was damaged by something else. It is
// read as far as possible, and never overwritten.
#include "kortools/data/preferences_file.h"

#include "kortools/platform/durable_files.h"
#include "kortools/platform/file_changes.h"
#include "kortools/platform/os_error.h"

#include <algorithm>
#include <vector>

namespace kortools::data {
namespace {

constexpr unsigned int uncommitted_mark = 0xFFFFFFFF; // no number of records: above max_records
constexpr unsigned int delete_patience_ms = 500;

CXTString<wchar_t> get_copy_path(CXTString<wchar_t> const &path)
{
    return path + L".tmp";
}

bool is_committed(PreferencesRecords const &copy)
{
    return copy.whole && !copy.records.empty();
}

[[noreturn]] void throw_os_error(CXTString<wchar_t> const &path)
{
    auto const cause = CXFileException::OsErrorToException(platform::get_last_os_error());
    throw_file_exception(
        cause == CXFileException::none ? CXFileException::genericException : cause, path);
}

struct NewRecord {
    RecordKey key;
    void const *container;
    unsigned long long size; // bytes of the container
};

// Bytes of a file of these records and the new one.
unsigned long long get_size(
    std::vector<PreferencesRecord> const &remaining, NewRecord const &record)
{
    unsigned long long size = preferences_header_size + record_key_size + record.size;
    for (PreferencesRecord const &other : remaining)
        size += other.size;
    return size;
}

class Save {
public:
    Save(CXTString<wchar_t> const &path, PreferencesTuning const &tuning)
        : m_path(path)
        , m_copy_path(get_copy_path(path))
        , m_tuning(tuning)
        , m_chunk(tuning.chunk_size)
    {
    }

    void run(NewRecord const &record);

private:
    void finish_interrupted_save();
    std::vector<PreferencesRecord> get_remaining_records(NewRecord const &record);
    void make_copy(
        CXFile &copy, std::vector<PreferencesRecord> const &remaining, NewRecord const &record);
    void write_copy(
        CXFile &copy, std::vector<PreferencesRecord> const &remaining, NewRecord const &record);
    void reserve_room(unsigned long long size);
    void give_back_room();
    void commit_copy(CXFile &copy, unsigned int count);
    void overwrite_target(CXFile &copy);
    bool discard_copy();

    void step(DiskStep step, CXTString<wchar_t> const &path) const;
    void flush(CXFile &file) const;
    void write(CXFile &file, void const *bytes, unsigned long long size) const;
    void copy_bytes(CXFile &from, unsigned long long start, unsigned long long size, CXFile &to);

    CXTString<wchar_t> const m_path;
    CXTString<wchar_t> const m_copy_path;
    PreferencesTuning const &m_tuning;
    std::vector<unsigned char> m_chunk; // for copying
    LockedFile m_target;
};

void Save::run(NewRecord const &record)
{
    m_target.open(m_path, PreferencesUse::Save, m_tuning.patience_ms);
    finish_interrupted_save();
    CXFile copy;
    make_copy(copy, get_remaining_records(record), record);
    overwrite_target(copy);
    copy.Close();
    // When it cannot be deleted it is as good as the target, until the next save.
    discard_copy();
}

void Save::finish_interrupted_save()
{
    CXFile copy;
    if (!open_patiently(
            copy, m_copy_path, CXFile::modeRead | CXFile::shareDenyWrite, m_tuning.patience_ms))
        return;
    if (is_committed(scan_preferences(copy)))
        overwrite_target(copy);
    copy.Close();
    if (!discard_copy())
        throw_os_error(m_copy_path);
}

std::vector<PreferencesRecord> Save::get_remaining_records(NewRecord const &record)
{
    PreferencesRecords found = scan_preferences(m_target.get());
    if (!found.whole)
        throw_file_exception(CXFileException::invalidFile, m_path);
    std::erase_if(
        found.records, [&](PreferencesRecord const &other) { return other.key == record.key; });
    if (found.records.size() >= max_records
        || get_size(found.records, record) > max_preferences_size)
        throw_file_exception(CXFileException::genericException, m_path);
    return found.records;
}

void Save::make_copy(
    CXFile &copy, std::vector<PreferencesRecord> const &remaining, NewRecord const &record)
{
    step(DiskStep::Change, m_copy_path);
    try {
        open_patiently(copy, m_copy_path,
            CXFile::modeCreate | CXFile::modeReadWrite | CXFile::shareDenyWrite,
            m_tuning.patience_ms);
        reserve_room(get_size(remaining, record));
        write_copy(copy, remaining, record);
        commit_copy(copy, static_cast<unsigned int>(remaining.size() + 1));
    } catch (CXException *) {
        copy.Abort();
        give_back_room();
        discard_copy();
        throw;
    }
}

// Better to hear of a full disk now than when the target is half overwritten.
void Save::reserve_room(unsigned long long size)
{
    if (!platform::reserve_room(m_target.get().GetHandle(), static_cast<long long>(size)))
        throw_os_error(m_path);
}

void Save::give_back_room()
{
    platform::FileHandle const target = m_target.get().GetHandle();
    platform::set_file_size(target, platform::get_file_size(target));
}

void Save::write_copy(
    CXFile &copy, std::vector<PreferencesRecord> const &remaining, NewRecord const &record)
{
    write(copy, &uncommitted_mark, sizeof uncommitted_mark);
    for (PreferencesRecord const &other : remaining)
        copy_bytes(m_target.get(), other.start, other.size, copy);
    unsigned int const key[] = { record.key.id, record.key.version };
    static_assert(sizeof key == record_key_size);
    write(copy, key, sizeof key);
    write(copy, record.container, record.size);
    flush(copy);
}

void Save::commit_copy(CXFile &copy, unsigned int count)
{
    copy.Seek(0, CXFile::begin);
    step(DiskStep::Change, m_copy_path);
    copy.Write(&count, sizeof count);
    flush(copy);
}

// With a committed copy. Its name has to be on the disk before the target is touched.
void Save::overwrite_target(CXFile &copy)
{
    step(DiskStep::FlushNames, m_path);
    if (!platform::flush_file_name(m_path))
        throw_os_error(m_path);
    CXFile &target = m_target.get();
    unsigned long long const size = copy.GetLength();
    target.Seek(0, CXFile::begin);
    copy_bytes(copy, 0, size, target);
    step(DiskStep::Change, m_path);
    target.SetLength(size);
    flush(target);
}

// True when there is no copy any more.
bool Save::discard_copy()
{
    step(DiskStep::Change, m_copy_path);
    Patience patience(std::min(delete_patience_ms, m_tuning.patience_ms));
    while (!platform::delete_file(m_copy_path)) {
        unsigned int const error = platform::get_last_os_error();
        auto const cause = CXFileException::OsErrorToException(error);
        if (cause == CXFileException::fileNotFound)
            break;
        if (cause != CXFileException::sharingViolation || !patience.wait()) {
            platform::set_last_os_error(error);
            return false;
        }
    }
    return true;
}

void Save::step(DiskStep step, CXTString<wchar_t> const &path) const
{
    if (m_tuning.before_step)
        m_tuning.before_step(step, path);
}

void Save::flush(CXFile &file) const
{
    step(DiskStep::Flush, file.GetFilePath());
    file.Flush();
}

void Save::write(CXFile &file, void const *bytes, unsigned long long size) const
{
    auto const *at = static_cast<unsigned char const *>(bytes);
    for (unsigned long long left = size; left > 0;) {
        auto const count
            = static_cast<unsigned int>(std::min<unsigned long long>(left, m_tuning.chunk_size));
        step(DiskStep::Change, file.GetFilePath());
        file.Write(at, count);
        at += count;
        left -= count;
    }
}

void Save::copy_bytes(CXFile &from, unsigned long long start, unsigned long long size, CXFile &to)
{
    from.Seek(static_cast<long long>(start), CXFile::begin);
    for (unsigned long long left = size; left > 0;) {
        auto const count
            = static_cast<unsigned int>(std::min<unsigned long long>(left, m_chunk.size()));
        if (from.Read(m_chunk.data(), count) != count)
            throw_file_exception(CXFileException::endOfFile, from.GetFilePath());
        write(to, m_chunk.data(), count);
        left -= count;
    }
}

} // namespace

void save_record(CXTString<wchar_t> const &path, RecordKey key, void const *container,
    unsigned long long size, PreferencesTuning const &tuning)
{
    Save(path, tuning).run({ key, container, size });
}

PreferencesReader::PreferencesReader(
    CXTString<wchar_t> const &path, PreferencesTuning const &tuning)
{
    // A save that finds a copy without a target makes the target and deletes the copy. When both
    // seem to be missing, that may have happened in between.
    if (!open(path, tuning))
        open(path, tuning);
}

bool PreferencesReader::open(CXTString<wchar_t> const &path, PreferencesTuning const &tuning)
{
    bool const has_target = m_target.open(path, PreferencesUse::Load, tuning.patience_ms);
    unsigned int const flags = CXFile::modeRead | CXFile::shareDenyNone;
    if (open_patiently(m_copy, get_copy_path(path), flags, tuning.patience_ms)) {
        m_found = scan_preferences(m_copy);
        if (is_committed(m_found)) {
            m_file = &m_copy;
            return true;
        }
        m_copy.Close();
    }
    if (has_target) {
        m_found = scan_preferences(m_target.get());
        m_file = &m_target.get();
    }
    return has_target;
}

CXFile *PreferencesReader::find(RecordKey key, VersionRule rule)
{
    PreferencesRecord const *const record
        = m_file ? find_record(m_found.records, key, rule) : nullptr;
    if (!record)
        return nullptr;
    m_file->Seek(static_cast<long long>(record->get_container()), CXFile::begin);
    return m_file;
}

} // namespace kortools::data

// SPDX-License-Identifier: MIT
// Saves and finds records of a preferences file so that nothing is lost: not by a process that
// dies or a system that stops at any moment, by a disk that is full, or by others who save at the
// same time. preferences_file.cpp tells how.
#pragma once

#include "kortools/archive/file.h"
#include "kortools/core/xstring.h"
#include "kortools/data/preferences_lock.h"
#include "kortools/data/preferences_records.h"

#include <functional>

namespace kortools::data {

enum class DiskStep { Change, Flush, FlushNames }; // of a file; FlushNames: of all in the folder

struct PreferencesTuning {
    unsigned int chunk_size = 0x10000; // bytes that are written at a time
    unsigned int patience_ms = 30'000; // waits for other users no longer than this

    // Called before everything that is done to the disk, with the file's path. May throw.
    std::function<void(DiskStep, wchar_t const *)> before_step;
};

// Puts a serialized container in the place of the record of this key, or adds it. Throws
// CXFileException: the file holds then what it held before or, when the disk failed after the
// record was on it, what was to be saved. So it does after what `before_step` throws.
void save_record(CXTString<wchar_t> const &path, RecordKey key, void const *container,
    unsigned long long size, PreferencesTuning const &tuning = {});

// The records as the last complete save has left them. Throws CXFileException when they cannot be
// read; a missing file has none.
class PreferencesReader {
public:
    explicit PreferencesReader(
        CXTString<wchar_t> const &path, PreferencesTuning const &tuning = {});

    // The file, at the beginning of the record's container; null when there is no record. Until
    // this object goes nobody changes it.
    CXFile *find(RecordKey key, VersionRule rule);

private:
    bool open(CXTString<wchar_t> const &path, PreferencesTuning const &tuning);

    LockedFile m_target;
    CXFile m_copy;
    CXFile *m_file = nullptr; // the one that counts
    PreferencesRecords m_found;
};

} // namespace kortools::data

// SPDX-License-Identifier: MIT
// Fixed archives with everything that the format can hold: the same bytes on every system and from
// every version of the library.
#pragma once

#include "kortools/archive/archive.h"

#include <string>
#include <vector>

namespace kor_test {

struct ArchiveSample {
    char const *m_name;              // archive_<name>.bin
    bool (*m_exchange)(CXArchive &); // stores, or loads: false when something else was read
};

std::vector<ArchiveSample> const &get_archive_samples();

// What is wrong with the values that an archive loads; empty when they are the sample's.
std::string check_values(ArchiveSample const &sample, CXArchive &archive);

// The bytes that this build writes.
std::string write_sample(ArchiveSample const &sample);

// What is wrong with bytes written by another build; empty when they are the bytes that this build
// writes, and read as the same values.
std::string check_sample(ArchiveSample const &sample, std::string const &bytes);

} // namespace kor_test

// SPDX-License-Identifier: MIT
// The sharing modes of open files, kept with open-file-description locks: they belong to one open
// of a file, hold between threads and processes alike, and end with its last descriptor.
#pragma once

#include "kortools/platform/file_system.h"

namespace kortools::platform {

// What one open of a file says about itself, as bits.
using SharingFacts = unsigned int;
inline constexpr SharingFacts fact_reads = 1;
inline constexpr SharingFacts fact_writes = 2;
inline constexpr SharingFacts fact_denies_reading = 4;
inline constexpr SharingFacts fact_denies_writing = 8;

SharingFacts get_sharing_facts(FileAccess access, FileSharing sharing);

// Claims `facts` for the open file `fd`, of which it was opened for `access`. False, with errno
// EAGAIN and nothing claimed, when another open of the file forbids it. On a file system without
// locks everything is allowed.
bool claim_sharing(int fd, FileAccess access, SharingFacts facts);

// Gives up claimed facts of an open for reading; they must not be fact_reads.
void release_sharing(int fd, SharingFacts facts);

} // namespace kortools::platform

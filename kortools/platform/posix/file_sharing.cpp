// SPDX-License-Identifier: MIT
//
// Each of the four facts has a region of lock bytes, far behind the last byte that a file can have
// on any file system, so that programs that lock parts of their data are not in the way:
//
//   regions_start + fact number * region_size, region_size bytes each
//
// An open claims a fact by locking one byte of its region. Claims of the same fact never collide:
// a descriptor that can read takes a shared lock on the region's first byte; one that can only
// write may not take shared locks and takes an exclusive one on a random other byte.
//
// An open is refused when somebody else claims the opposite of one of its own facts ("reads" and
// "denies reading", "writes" and "denies writing"). It first looks, so that a hopeless attempt
// disturbs nobody; then claims; then looks again. Of two racing opens that exclude each other the
// one that looks last sees the claim of the other, so both never succeed. Both may fail, and a
// third may be hindered by a claim that is about to be withdrawn, hence the retries.
#include "kortools/platform/posix/file_sharing.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <random>
#include <thread>

namespace kortools::platform {
namespace {

constexpr unsigned int fact_count = 4;
constexpr off_t regions_start = off_t { 1 } << 62;
constexpr off_t region_size = off_t { 1 } << 40;

constexpr int attempts = 5;
constexpr unsigned int first_delay_us = 100; // doubles with each attempt

enum class Claim { Granted, Refused, Unsupported };

unsigned int get_random(unsigned int end)
{
    thread_local std::minstd_rand s_random(std::random_device {}());
    return static_cast<unsigned int>(s_random()) % end;
}

int lock_bytes(int fd, short type, off_t start, off_t length)
{
    struct flock range { };
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = start;
    range.l_len = length;
    int result = fcntl(fd, F_OFD_SETLK, &range);
    while (result != 0 && errno == EINTR) // on network file systems
        result = fcntl(fd, F_OFD_SETLK, &range);
    return result;
}

off_t get_region(unsigned int fact_number)
{
    return regions_start + region_size * static_cast<off_t>(fact_number);
}

void release_all(int fd)
{
    int const saved = errno;
    lock_bytes(fd, F_UNLCK, regions_start, region_size * off_t { fact_count });
    errno = saved;
}

// The facts that exclude `facts`: readers and deniers of reading change places.
SharingFacts get_opposite(SharingFacts facts)
{
    return ((facts >> 2) | (facts << 2)) & 0xF;
}

// Whether another open claims one of `facts`.
Claim look_for(int fd, SharingFacts facts)
{
    for (unsigned int number = 0; number < fact_count; ++number) {
        if ((facts & (1U << number)) == 0)
            continue;
        struct flock range { };
        range.l_type = F_WRLCK; // in the way of every lock; asking does not need write access
        range.l_whence = SEEK_SET;
        range.l_start = get_region(number);
        range.l_len = region_size;
        if (fcntl(fd, F_OFD_GETLK, &range) != 0)
            return Claim::Unsupported;
        if (range.l_type != F_UNLCK)
            return Claim::Refused;
    }
    return Claim::Granted;
}

Claim claim_fact(int fd, FileAccess access, off_t region)
{
    // Two writers meet on one of 2^31 bytes once in a blue moon; such a meeting is a new attempt.
    int const result = access == FileAccess::Write
        ? lock_bytes(fd, F_WRLCK, region + 1 + off_t { get_random(0x7FFFFFFF) }, 1)
        : lock_bytes(fd, F_RDLCK, region, 1);
    if (result == 0)
        return Claim::Granted;
    return errno == EAGAIN || errno == EACCES ? Claim::Refused : Claim::Unsupported;
}

Claim try_to_claim(int fd, FileAccess access, SharingFacts facts)
{
    Claim result = look_for(fd, get_opposite(facts));
    for (unsigned int number = 0; number < fact_count && result == Claim::Granted; ++number) {
        if ((facts & (1U << number)) != 0)
            result = claim_fact(fd, access, get_region(number));
    }
    if (result == Claim::Granted)
        result = look_for(fd, get_opposite(facts));
    if (result != Claim::Granted)
        release_all(fd);
    return result;
}

} // namespace

SharingFacts get_sharing_facts(FileAccess access, FileSharing sharing)
{
    SharingFacts facts = 0;
    if (access != FileAccess::Write)
        facts |= fact_reads;
    if (access != FileAccess::Read)
        facts |= fact_writes;
    if (sharing == FileSharing::None || sharing == FileSharing::Write)
        facts |= fact_denies_reading;
    if (sharing == FileSharing::None || sharing == FileSharing::Read)
        facts |= fact_denies_writing;
    return facts;
}

bool claim_sharing(int fd, FileAccess access, SharingFacts facts)
{
    unsigned int delay_us = first_delay_us;
    for (int attempt = 0; attempt < attempts; ++attempt, delay_us *= 2) {
        if (attempt > 0)
            std::this_thread::sleep_for(std::chrono::microseconds(get_random(delay_us)));
        if (try_to_claim(fd, access, facts) != Claim::Refused)
            return true;
    }
    errno = EAGAIN;
    return false;
}

void release_sharing(int fd, SharingFacts facts)
{
    for (unsigned int number = 0; number < fact_count; ++number) {
        if ((facts & (1U << number)) != 0)
            lock_bytes(fd, F_UNLCK, get_region(number), region_size);
    }
}

} // namespace kortools::platform

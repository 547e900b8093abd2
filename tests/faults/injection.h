// SPDX-License-Identifier: MIT
// Makes the n-th allocation or system call of a piece of code fail, whoever makes it: the library,
// the runtime, or ICU. The program that links this has its own malloc, open, read ... which forward
// to the system's.
#pragma once

#include <string>

namespace kor_test {

enum class Fault {
    NoMemory,  // an allocation finds none
    Error,     // a system call fails: EIO, or ENOSPC and EMFILE where those are likely
    Interrupt, // a system call that may wait fails with EINTR
    Short,     // a transfer moves half of what it was asked for
};

struct FaultPlan {
    Fault fault;
    int first;    // the first call that is hit, from 1
    bool forever; // all others after it, too; but errors leave those alone that clean up
};

std::string describe(FaultPlan const &plan);

// Counts and hits the calls of all threads while it lives. One at a time.
class Injection {
public:
    explicit Injection(FaultPlan const &plan);
    ~Injection();
    Injection(Injection const &) = delete;
    Injection &operator=(Injection const &) = delete;
};

int get_fault_count();             // of the last injection
FaultPlan const &get_fault_plan(); // of the last injection
long get_block_count();            // of memory, allocated; 0 where a sanitizer looks for leaks
int get_open_files();              // descriptors

} // namespace kor_test

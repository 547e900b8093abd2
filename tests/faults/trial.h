// SPDX-License-Identifier: MIT
// What is tried with each of its calls failing once.
#pragma once

#include "tests/support/temp_folder.h"

#include <functional>
#include <gtest/gtest.h>
#include <span>

namespace kor_test {

// Made new for each fault, in an empty folder.
struct Trial {
    std::function<bool()> run; // true: done; false or a CXException: refused, as documented

    // What then holds. Never true after an exception. What `run` made is freed with the trial.
    std::function<void(bool done)> check;
};

struct Subject {
    char const *name;
    Trial (*make)(TempFolder const &folder);
    bool frees_all = true;    // false where a library below loses a block without memory
    bool lacks_memory = true; // false where glibc would end the process: at the start of a thread
};

inline void PrintTo(Subject const &subject, std::ostream *stream)
{
    *stream << subject.name;
}

// Every fault at every call of the subject: each must end as the trial says, and leave neither
// memory nor open files behind.
void try_all_faults(Subject const &subject);

} // namespace kor_test

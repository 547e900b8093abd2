// SPDX-License-Identifier: MIT
// Runs a part of a test in a second process: the test program starts itself again.
//
//   static int hold_file(std::vector<std::string> const &arguments) { ... }
//   static kor_test::ChildPart const s_hold_file("hold_file", hold_file);
//   ...
//   EXPECT_EQ(kor_test::run_child("hold_file", { path }), 0);
#pragma once

#include <string>
#include <vector>

namespace kor_test {

using ChildFunction = int (*)(std::vector<std::string> const &arguments);

class ChildPart {
public:
    ChildPart(char const *name, ChildFunction function);
};

// Runs the part registered under `name` and waits for it. Arguments may not have quotes. Not 0
// when the part returns that or does not run.
int run_child(std::string const &name, std::vector<std::string> const &arguments);

// A part that runs beside the test, until it returns or is killed.
class ChildProcess {
public:
    ChildProcess(std::string const &name, std::vector<std::string> const &arguments);
    ChildProcess(ChildProcess const &) = delete;
    ChildProcess &operator=(ChildProcess const &) = delete;
    ~ChildProcess(); // kills it

    void interrupt(); // as Ctrl+C does (on Windows: Ctrl+Break)
    void kill();      // from one instruction to the next; it is gone when this returns
    int wait();       // what the part returned; 128 and more when a signal ended it

private:
    void *m_process; // the system's handle or number
};

// Ends this process at once, as if another one had killed it: nothing is flushed or destroyed.
[[noreturn]] void kill_this_process();

// For main(): whether this process is such a child, and then the result of its part.
bool is_child(int argc, char **argv, int &result);

} // namespace kor_test

// SPDX-License-Identifier: MIT
// Ctrl+C, as a second process gets it.
#include "kortools/platform/user_interrupt.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace kortools::platform;
using namespace std::chrono_literals;

void make_file(std::filesystem::path const &path)
{
    std::ofstream(path) << "x";
}

bool wait_for(std::filesystem::path const &path)
{
    for (int i = 0; i < 4000 && !std::filesystem::exists(path); ++i)
        std::this_thread::sleep_for(5ms);
    return std::filesystem::exists(path);
}

// Says when it watches and when it was interrupted; then it waits for the second time.
int watch(std::vector<std::string> const &folder)
{
    std::signal(SIGINT, SIG_DFL); // shells let programs in the background ignore it
    begin_interrupt_watch();
    make_file(folder.at(0) + "/watching");
    for (int i = 0; i < 4000 && !was_user_interrupted(); ++i)
        std::this_thread::sleep_for(5ms);
    if (!was_user_interrupted())
        return 1;
    make_file(folder.at(0) + "/noted");
    wait_for(folder.at(0) + "/go on");
    return 7;
}
kor_test::ChildPart const s_watch("watch", watch);

} // namespace

TEST(UserInterrupt, IsNotedOnceAndEndsTheProgramTheSecondTime)
{
    for (bool const twice : { false, true }) {
        TempFolder const folder;
        kor_test::ChildProcess child("watch", { folder.GetPath().string() });
        ASSERT_TRUE(wait_for(folder.GetPath() / "watching"));
        child.interrupt();
        ASSERT_TRUE(wait_for(folder.GetPath() / "noted"));
        if (twice)
            child.interrupt();
        else
            make_file(folder.GetPath() / "go on");
        EXPECT_EQ(child.wait() == 7, !twice);
    }
}

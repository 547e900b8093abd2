// SPDX-License-Identifier: MIT
#include "kortools/platform/os_error.h"

#include "tests/support/temp_folder.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>
#include <thread>

using kortools::platform::get_last_os_error;
using kortools::platform::set_last_os_error;

TEST(OsError, AnyCodeThatIsSetIsReadBackByItsThread)
{
    for (unsigned int code = 0; code < 12000; ++code) {
        set_last_os_error(code);
        ASSERT_EQ(get_last_os_error(), code);
        ASSERT_EQ(get_last_os_error(), code) << "reading must not consume the code";
    }
    // Spinning, because a call that waits may change the thread's last error.
    std::atomic<int> stage { 0 };
    std::thread other([&] {
        set_last_os_error(54321);
        stage = 1;
        while (stage != 2) { }
        EXPECT_EQ(get_last_os_error(), 54321U);
    });
    while (stage != 1) { }
    set_last_os_error(0xFFFFFFFF);
    stage = 2;
    EXPECT_EQ(get_last_os_error(), 0xFFFFFFFFU);
    other.join();
}

TEST(OsError, ALaterFailureOfTheSystemWins)
{
    TempFolder const folder;
    auto const missing = (folder.GetPath() / "missing").string();
    for (unsigned int const earlier : { 0U, 5U, 9999U }) {
        set_last_os_error(earlier);
        EXPECT_EQ(std::fopen(missing.c_str(), "rb"), nullptr);
        EXPECT_EQ(get_last_os_error(), 2U);
    }
}

#ifndef _WIN32
TEST(OsError, SystemFailuresAreGivenAsTheWindowsCode)
{
    struct Row {
        int error_number;
        unsigned int code;
    };
    for (Row const row : { Row { 0, 0 }, { EACCES, 5 }, { EISDIR, 5 }, { ENOTDIR, 3 },
             { EMFILE, 4 }, { EAGAIN, 32 }, { ENOSPC, 112 }, { EDQUOT, 112 }, { 4095, 31 } }) {
        set_last_os_error(7777); // must not shine through
        errno = row.error_number;
        EXPECT_EQ(get_last_os_error(), row.code) << "errno " << row.error_number;
    }
}
#endif

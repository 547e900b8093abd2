// SPDX-License-Identifier: MIT
// The library's headers behind <windows.h>; time_text_test.cpp has them before it.
#ifdef _WIN32
#include <windows.h>
#endif

#include "kortools/kortools.h"

#include <gtest/gtest.h>

namespace {

TEST(SystemTime, RecordsAreTheSameBehindTheSystemsHeaders)
{
    SYSTEMTIME record {};
    CXTime const now = CXTime::GetTickCount();
    ASSERT_TRUE(xTimeGetAsSystemTime(record, now));
    CXTime back;
    ASSERT_TRUE(xTimeFromSystemTime(back, record));
    EXPECT_EQ(back, now);
    EXPECT_GT(timeGetTick(), 0);
}

} // namespace

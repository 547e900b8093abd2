// SPDX-License-Identifier: MIT
#include "kortools/platform/message_box.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace platform = kortools::platform;

TEST(MessageBox, WritesToStandardErrorAndAnswersWithTheDefaultButton)
{
    std::map<unsigned, int> const answers
        = { { 0x000, 1 }, { 0x001, 1 }, { 0x101, 2 }, { 0x002, 3 }, { 0x202, 5 }, { 0x003, 6 },
              { 0x203, 2 }, { 0x004, 6 }, { 0x104, 7 }, { 0x134, 7 }, { 0x105, 2 }, { 0xF0F, 1 } };
    for (auto const &[flags, answer] : answers) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(platform::show_message_box(L"Ça été €", flags), answer) << flags;
        std::string const written = testing::internal::GetCapturedStderr();
        EXPECT_NE(written.find("a \xC3\xA9t\xC3\xA9 \xE2\x82\xAC"), std::string::npos) << written;
    }
}

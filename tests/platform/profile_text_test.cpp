// SPDX-License-Identifier: MIT
#include "kortools/platform/profile_text.h"
#include "tests/support/oracle.h"

#include <gtest/gtest.h>

namespace {

using namespace kortools::platform;

TEST(ProfileText, IsWrittenAndReadLikeThis)
{
    struct {
        ProfileValue value;
        char const *text;
    } const cases[] = {
        { 0, "0" },
        { -2147483647 - 1, "-2147483648" },
        { std::wstring(), "\"\"" },
        { std::wstring(L"C:\\a b\\ ; [x] = \"q\""), "\"C:\\a b\\ ; [x] = \"q\"\"" },
        { std::wstring(L"50%\r\n\t\x7F"), "\"50%25%0d%0a%09%7f\"" },
        { std::wstring(L"\u00E9\u2028\U0001F600"), "\"\xC3\xA9\xE2\x80\xA8\xF0\x9F\x98\x80\"" },
        { kor_test::to_wide(u"\xDC00\xD800\xD800\xDC00\xD800"),
            "\"%udc00%ud800\xF0\x90\x80\x80%ud800\"" },
        { ProfileBytes { 0, 0xFF, 0x1A }, "hex:00ff1a" },
        { ProfileBytes(), "hex:" },
    };
    for (auto const &[value, text] : cases) {
        EXPECT_EQ(encode_profile_value(value), text);
        EXPECT_TRUE(decode_profile_value(text) == value) << text;
    }
    EXPECT_EQ(encode_profile_name(L" a=[b];#\n%x "), "%20a%3d%5bb%5d%3b%23%0a%25x%20");
    EXPECT_EQ(encode_profile_name(L" "), "%20");
    EXPECT_EQ(encode_profile_file_name(L"../a\\b:c"), "%2e.%2fa%5cb%3ac");
}

TEST(ProfileText, WhatPeopleWriteIsATextUnlessItIsSomethingElse)
{
    struct {
        char const *text;
        ProfileValue value;
    } const cases[] = {
        { "", std::wstring() },
        { "plain; text", std::wstring(L"plain; text") },
        { "\"", std::wstring(L"\"") },
        { "\"open", std::wstring(L"\"open") },
        { "2147483648", std::wstring(L"2147483648") },
        { "+1", std::wstring(L"+1") },
        { "007", 7 },
        { "hex:0", std::wstring(L"hex:0") },
        { "hex:0g", std::wstring(L"hex:0g") },
        { "hex:AbcD", ProfileBytes { 0xAB, 0xCD } },
        { "100% %4 %zz %-1 %00 %80 %u0041 %uD8",
            std::wstring(L"100% %4 %zz %-1 %00 %80 %u0041 %uD8") },
        { "%41%%42%", std::wstring(L"A%B%") },
        { "\xFF\xC3", std::wstring(L"\uFFFD\uFFFD") },
    };
    for (auto const &[text, value] : cases)
        EXPECT_TRUE(decode_profile_value(text) == value) << text;
}

} // namespace

// SPDX-License-Identifier: MIT
#include "kortools/app/win_app.h"
#include "tests/app/profile_support.h"
#include "tests/support/child_process.h"

#include <bit>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

std::wstring get_text(CWinApp const &app, wchar_t const *section, wchar_t const *entry)
{
    CXTString<wchar_t> const text = app.GetProfileString(section, entry, L"(default)");
    return { text.GetConstBuffer(), static_cast<std::size_t>(text.GetLength()) };
}

TEST(Profile, TextsAndNamesOfAnyKindComeBackAsTheyWere)
{
    TestProfile const profile;
    CWinApp app;
    std::wstring const texts[] = { L"", L" ", L"\t outer blanks \t", L"one\r\ntwo\nthree\r",
        L"\"quoted\"", L"\"", L"; no comment", L"# nor this", L"[x]", L"a=b", L"C:\\dir\\", L"%41%",
        L"50% %u0041 %uD800", L"42", L"-1", L"hex:00ff", L"\x01\x1F\x7F\x80\x85\xA0",
        L"\u2028\uFEFF", L"caf\u00E9 \U0001F600", std::wstring(1, wchar_t(0xD800)) + L"x",
        std::wstring(1, wchar_t(0xDFFF)), std::wstring(100'000, L'\u00E9') };
    std::wstring const names[] = { L"plain", L" outer ", L"a=b", L"[x]", L"]", L";c", L"#c", L"%3d",
        L"\u00E9\U0001F600", L"x\ny", std::wstring(200, L'n') };
    // Every text with one of the names, of section and entry.
    auto const name_of = [&](std::size_t i) { return names[i % std::size(names)]; };
    auto const section_of
        = [&](std::size_t i) { return L"a\\" + name_of(i).substr(0, 190) + std::to_wstring(i); };
    for (std::size_t i = 0; i < std::size(texts); ++i)
        ASSERT_TRUE(
            app.WriteProfileString(section_of(i).c_str(), name_of(i).c_str(), texts[i].c_str()));
    CWinApp const later;
    for (std::size_t i = 0; i < std::size(texts); ++i)
        EXPECT_TRUE(get_text(later, section_of(i).c_str(), name_of(i).c_str()) == texts[i]) << i;
    EXPECT_EQ(get_text(later, L"A\\PLAIN11", L"Plain"), texts[11]);
}

TEST(Profile, NumbersAndBytesComeBackAndKindsAreNotMixed)
{
    TestProfile const profile;
    CWinApp app;
    for (int const number : { 0, -1, 0x7FFFFFFF, -0x7FFFFFFF - 1 }) {
        EXPECT_TRUE(app.WriteProfileInt(L"settings", L"int", number));
        EXPECT_EQ(app.GetProfileInt(L"settings", L"int", 5), number);
    }
    using Limits = std::numeric_limits<float>;
    for (float const number :
        { 0.0F, -0.0F, 0.1F, 1.0F / 3, Limits::max(), Limits::denorm_min(), -Limits::infinity() }) {
        float found = 1;
        EXPECT_TRUE(app.WriteProfileFloat(L"settings", L"float", number));
        EXPECT_TRUE(app.GetProfileFloat(L"settings", L"float", found));
        EXPECT_EQ(std::bit_cast<unsigned>(found), std::bit_cast<unsigned>(number));
    }
    Bytes all(256);
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<unsigned char>(i);
    for (Bytes const &bytes : { all, Bytes(), Bytes(5000, 0xFF) }) {
        void *data = nullptr;
        unsigned int size = 1;
        EXPECT_TRUE(app.WriteProfileBinary(
            L"settings", L"bytes", bytes.data(), static_cast<unsigned int>(bytes.size())));
        ASSERT_TRUE(app.GetProfileBinary(L"settings", L"bytes", &data, &size));
        std::unique_ptr<void, void (*)(void *)> const owner(data, CWinApp::Free);
        auto const *const first = static_cast<unsigned char const *>(data);
        EXPECT_EQ(Bytes(first, first + size), bytes);
    }
    EXPECT_EQ(get_text(app, L"settings", L"int"), L"(default)");
}

TEST(Profile, EntriesAndSectionsAreDeletedOnce)
{
    TestProfile const profile;
    CWinApp app;
    EXPECT_FALSE(app.DeleteProfileKey(L"settings"));
    for (wchar_t const *const section : { L"settings", L"a", L"A\\b", L"a\\b\\c", L"ab" }) {
        EXPECT_TRUE(app.WriteProfileInt(section, L"x", 1));
        EXPECT_TRUE(app.WriteProfileInt(section, L"y", 2));
    }
    EXPECT_TRUE(app.WriteProfileString(L"settings", L"x", nullptr));
    EXPECT_FALSE(app.DeleteProfileKey(L"settings", L"x"));
    EXPECT_EQ(app.GetProfileInt(L"settings", L"y"), 2);
    EXPECT_TRUE(app.DeleteProfileKey(L"a"));
    EXPECT_FALSE(app.DeleteProfileKey(L"a"));
    EXPECT_EQ(app.GetProfileInt(L"a\\b\\c", L"y", 5), 5);
    EXPECT_EQ(app.GetProfileInt(L"ab", L"y", 5), 2);
    EXPECT_TRUE(app.DeleteProfileKey(L"ab"));
    EXPECT_FALSE(app.WriteProfileInt(std::wstring(201, L'n').c_str(), L"x", 1));

    EnablePreferencesSaving(false);
    EXPECT_FALSE(app.WriteProfileInt(L"settings", L"y", 3));
    EXPECT_FALSE(app.DeleteProfileKey(L"settings"));
    EXPECT_EQ(app.GetProfileInt(L"settings", L"y"), 2);
}

constexpr int entries_per_process = 40;

// Product and section are given.
int write_entries(std::vector<std::string> const &arguments)
{
    SetInternalProductName(CXTString<wchar_t>(arguments[0].c_str()));
    CXTString<wchar_t> const section(arguments[1].c_str());
    CWinApp app;
    int failures = 0;
    for (int i = 0; i < entries_per_process / 4; ++i) // what is empty goes, and others write there
        failures += !app.WriteProfileInt(section, L"x", i)
            || app.GetProfileInt(section, L"x", -1) != i || !app.DeleteProfileKey(section);
    for (int i = 0; i < entries_per_process; ++i)
        failures += !app.WriteProfileInt(section, std::to_wstring(i).c_str(), i);
    return failures;
}

kor_test::ChildPart const s_write_entries("write_entries", write_entries);

TEST(Profile, SeveralProcessesLoseNothing)
{
    TestProfile profile;
    std::string const product(profile.m_product.begin(), profile.m_product.end());
    kor_test::ChildProcess first("write_entries", { product, "a\\1" });
    kor_test::ChildProcess second("write_entries", { product, "a\\2" });
    EXPECT_EQ(write_entries({ product, "a\\3" }), 0);
    EXPECT_EQ(first.wait() + second.wait(), 0);
    for (wchar_t const *const section : { L"a\\1", L"a\\2", L"a\\3" }) {
        for (int i = 0; i < entries_per_process; ++i)
            EXPECT_EQ(profile.m_app.GetProfileInt(section, std::to_wstring(i).c_str(), -1), i);
    }
}

} // namespace

// SPDX-License-Identifier: MIT
#include "kortools/text/clean_text.h"

#include "kortools/text/scrambled_text.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

using String = CXTString<wchar_t>;

TEST(CleanText, DropsMnemonicsAndMarkup)
{
    EXPECT_EQ(CleanText(L"&Save && close&"), L"Save  close");
    std::pair<wchar_t const *, wchar_t const *> const rows[]
        = { { L"a<b>c</b> > d", L"ac > d" }, { L"<b><i></i></b>", L"" },
              { L"a<b<c>d>e", L"ad>e" }, // a span ends at the next ">" whatever it contains
              { L"<>x<>", L"x" }, { L"a<b>c<d", L"ac<d" }, { L"><", L"><" }, { L"", L"" } };
    for (auto const &[text, clean] : rows)
        EXPECT_EQ(CleanEnhancedText(text), clean);
}

TEST(CleanText, LosesTheAccentsThatItKnowsAndNoOthers)
{
    std::wstring_view const accented = L"\xC1\xC2\xC3\xC4\xC5\xC7\xC8\xC9\xE0\xE1\xE2\xE3\xE4\xE5"
                                       L"\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF"
                                       L"\xF2\xF3\xF4\xF5\xF8\xF1\xFA\xF9\xFC\xFB\xE7\x161";
    std::wstring_view const plain = L"AAAAACEEaaaaaaeeeeiiiiooooonuuuucs";
    ASSERT_EQ(accented.size(), 34U);
    ASSERT_EQ(plain.size(), accented.size());
    for (unsigned int code = 1; code < 0x1200; ++code) {
        auto const ch = static_cast<wchar_t>(code);
        std::size_t const index = accented.find(ch);
        String text(ch);
        RemoveDiacritics(text);
        ASSERT_EQ(text, String(index == accented.npos ? ch : plain[index])) << code;
        if (code > 0xFF)
            continue;
        CXTString<char> narrow(static_cast<char>(code));
        RemoveDiacritics(narrow);
        ASSERT_EQ(narrow, CXTString<char>(static_cast<char>(text[0]))) << code;
    }
}

TEST(ScrambledText, ComesBackByteForByte)
{
    EXPECT_EQ(CText(L"abcd"), L"dfhg");
    EXPECT_EQ(CText(L"\xFF"), L"\x02");
    EXPECT_EQ(CText(L"\x2161"), L"d"); // the low byte only
    String all;
    for (int i = 0; i < 1024; ++i)
        all += static_cast<wchar_t>(i * 7 & 0xFF);
    EXPECT_EQ(DText(CText(all)), all);
}

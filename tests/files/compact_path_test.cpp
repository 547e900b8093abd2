// SPDX-License-Identifier: MIT
#include "kortools/files/compact_path.h"

#include <gtest/gtest.h>
#include <string>

using String = CXTString<wchar_t>;
using kortools::files::WindowMeasure;

class CWnd { };

TEST(CompactPath, KeepsTheRootAndTheEnd)
{
    String const path = L"C:\\very\\long\\path\\file.txt";
    EXPECT_EQ(fileCompactPath(path, 12), L"C:\\...\\file.txt");
    EXPECT_EQ(fileCompactPath(path, 25), L"C:\\...ery\\long\\path\\file.txt");
    EXPECT_EQ(
        fileCompactPath(L"\\\\server\\share\\a\\file.txt", 10), L"\\\\server\\share\\...ile.txt");
    String const emoji = fileCompactPath(L"0123456789\U0001F600abcdef", 10);
    EXPECT_EQ(emoji, sizeof(wchar_t) == 2 ? L"\\...abcdef" : L"\\...\U0001F600abcdef");
}

TEST(CompactPath, FitsAWidthInPixels)
{
    // 'i' is narrow, the rest has 10 pixels.
    static constexpr WindowMeasure measure { [](CWnd *) { return 170; },
        [](CWnd *, wchar_t const *text, int length) {
            int width = 0;
            for (int i = 0; i < length; ++i)
                width += text[i] == L'i' ? 4 : 10;
            return width;
        } };
    CWnd window;
    kortools::files::set_window_measure(&measure);
    String const path = L"C:\\very\\long\\file.txt"; // 204 pixels
    struct {
        int width;
        wchar_t const *text;
    } const cases[] = { { 204, L"C:\\very\\long\\file.txt" }, { 203, L"C:\\very\\...\\file.txt" },
        { 0, L"C:\\v...\\file.txt" }, // 160 of the window
        { 134, L"C:...\\file.txt" }, { 123, L"...\\file.txt" }, { 113, L"...\\file..." },
        { 103, L"...\\fil..." }, { 70, L"...\\..." }, { 1, L"...\\..." } };
    for (auto const &each : cases)
        EXPECT_EQ(fileCompactPath(path, &window, each.width), each.text) << each.width;
    EXPECT_EQ(fileCompactPath(L"long name", &window, 75), L"long...");
    EXPECT_EQ(fileCompactPath(String(L'i', 400), &window, 4 * 259).GetLength(), 259);
    EXPECT_EQ(kortools::files::set_window_measure(nullptr), &measure);
}

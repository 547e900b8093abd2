// SPDX-License-Identifier: MIT
// Names that a disk may hold, and that are easily spoilt on the way to it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

constexpr bool is_windows = std::filesystem::path::preferred_separator == '\\';

inline std::vector<std::wstring> get_odd_names()
{
    std::vector<std::wstring> names { L"plain", L"a b", L" front", L".hidden", L"a.b.c", L"100%",
        L"%s%n", L"[x]{y}(z)~$'&", L"\xE9t\xE9", L"e\x301t", // with a combining mark
        L"\u65E5\u672C\u8A9E", L"\u0645\u0631", L"a\u00A0b", L"\U0001F642",
        L"\U0001F468\u200D\U0001F469", std::wstring(255, L'x'),
        std::wstring(126, L'\xE9') + L".k" }; // 254 bytes as UTF-8
    if (!is_windows)                          // which takes dots and spaces at the end away
        names.insert(
            names.end(), { L"dot.", L"dots...", L"space ", L"con", L"ab:c", L"a*b?", L"\x1" });
    return names;
}

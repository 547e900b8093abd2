// SPDX-License-Identifier: MIT
#include "kortools/text/string_table.h"

#include "kortools/text/texts.h"
#include "tests/support/thread_language.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <string>
#include <thread>

using kortools::text::Text;

namespace {

// What a translation must keep: the directives in their order, for they take their arguments in
// turn, and how often %1 and the field separator occur.
std::vector<std::wstring> get_placeholders(std::wstring const &text)
{
    std::vector<std::wstring> directives;
    std::vector<std::wstring> others;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'|')
            others.emplace_back(L"|");
        if (text[i] != L'%')
            continue;
        // Up to the letter; %1 has none, whatever stands behind it.
        std::size_t const letter = text.find_first_not_of(L"-+0#*.123456789hlIwjzt", i + 1);
        std::wstring const found = text.substr(i, letter - i + 1);
        bool const is_name
            = found.starts_with(L"%1") && !std::iswalpha(static_cast<wint_t>(found.back()));
        (is_name ? others : directives).push_back(is_name ? L"%1" : found);
    }
    std::ranges::sort(others);
    directives.insert(directives.end(), others.begin(), others.end());
    return directives;
}

TEST(StringTable, EveryTextExistsInBothLanguagesWithTheSamePlaceholders)
{
    unsigned int last = 0;
    for (Text const &text : kortools::text::get_texts()) {
        EXPECT_GT(text.id, last);
        last = text.id;
        std::wstring const english = text.english;
        std::wstring const french = text.french;
        EXPECT_FALSE(english.empty()) << text.id;
        EXPECT_FALSE(french.empty()) << text.id;
        EXPECT_EQ(get_placeholders(english), get_placeholders(french)) << text.id;
    }
}

TEST(StringTable, TextsFollowTheLanguageOfTheThread)
{
    ThreadLanguage const language(kortools::text::french);
    EXPECT_EQ(xLoadString(5392), L"Oui");
    std::thread([] {
        ThreadLanguage const other(kortools::text::english);
        EXPECT_EQ(xLoadString(5392), L"Yes");
    }).join();
    kortools::text::set_thread_language(1031);
    EXPECT_EQ(kortools::text::get_active_language(), kortools::text::english);
    for (unsigned int const id : { 0U, 5174U, 61871U, 0xFFFFFFFFU })
        EXPECT_TRUE(xLoadString(id).IsEmpty()) << id;
}

} // namespace

// SPDX-License-Identifier: MIT
// An expression and texts, a line each, behind a byte with mode and case. What is short is compared
// with the model. A byte from 80 on is one of 16 bits with the same lower half as a letter.
#include "kortools/text/string_match.h"
#include "tests/text/string_match_model.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Model = string_match_model::Expression;

constexpr std::size_t longest = 4096;
constexpr std::size_t longest_compared = 200; // the model copies an expression for each group

std::vector<std::wstring> read_lines(std::uint8_t const *bytes, std::size_t size)
{
    std::vector<std::wstring> lines(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (bytes[i] == '\n')
            lines.emplace_back();
        else
            lines.back() += static_cast<wchar_t>(bytes[i] < 0x80 ? bytes[i] : bytes[i] + 0x80);
    }
    return lines;
}

void check(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    if (size == 0 || size > longest)
        return 0;
    unsigned const mode = bytes[0] & 3U;
    bool const case_sensitive = (bytes[0] & 4U) != 0;
    std::vector<std::wstring> texts = read_lines(bytes + 1, size - 1);
    std::wstring const expression = texts.front();
    texts.erase(texts.begin());
    CXStringMatch::Texts array;
    for (std::wstring const &text : texts)
        array.Add(CXTString<wchar_t>(text));

    CXStringMatch match;
    bool const is_good = match.PrepareMatch(expression, mode, case_sensitive);
    bool const found = match.Match(array);
    if (size <= longest_compared) {
        auto const expected
            = Model(expression, mode, case_sensitive, CXStringMatch::max_nesting).match(texts);
        check(is_good == (expected != Model::Bad) && found == (expected == Model::Yes));
    }
    CXStringMatch copy = match;
    check(copy.Match(array) == found);
    check(copy.GetItemCount() == match.GetItemCount());
    for (int i = 0; i < copy.GetItemCount(); ++i)
        check(copy.GetItem(i).result == match.GetItem(i).result);
    return 0;
}

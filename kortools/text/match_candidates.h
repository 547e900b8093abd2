// SPDX-License-Identifier: MIT
// What the words of a search expression are compared with: texts, and their words between blanks.
//
// A group gets the candidates of the expression around it, cut into words once more. That gives no
// new ones: they are the same texts and words, at most in small letters. So one list, or two, serve
// a whole expression however deep its groups are.
#pragma once

#include "kortools/platform/text_compare.h"
#include "kortools/text/wildcard_matcher.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace kortools::text {

enum class CandidateCase { Keep, Lower };

class Candidates {
public:
    using View = std::wstring_view;

    explicit Candidates(CandidateCase mode)
        : m_case(mode)
    {
    }
    Candidates(Candidates const &) = delete;
    Candidates &operator=(Candidates const &) = delete;
    ~Candidates() = default;

    // The text must stay alive.
    void add_text(View text)
    {
        text = m_case == CandidateCase::Lower ? to_lower(text) : text;
        m_texts.push_back(text);
        for (std::size_t at = 0; (at = text.find_first_not_of(L' ', at)) != View::npos;) {
            std::size_t const end = std::min(text.find(L' ', at), text.size());
            m_words.push_back(text.substr(at, end - at));
            at = end;
        }
    }

    // As it is, as one word.
    void add_word(View text) { m_words.push_back(text); }

    bool has_match(View pattern, bool with_texts) const
    {
        auto const matches = [&](View text) { return match_wildcards(text, pattern, false); };
        return (with_texts && std::ranges::any_of(m_texts, matches))
            || std::ranges::any_of(m_words, matches);
    }

private:
    View to_lower(View text)
    {
        auto *const lower = static_cast<wchar_t *>(
            m_resource.allocate(text.size() * sizeof(wchar_t) + 1, alignof(wchar_t)));
        std::ranges::transform(text, lower, [](wchar_t ch) { return platform::to_lower(ch); });
        return { lower, text.size() };
    }

    CandidateCase m_case;
    alignas(std::max_align_t) std::array<std::byte, 2048> m_memory; // enough for most names
    std::pmr::monotonic_buffer_resource m_resource { m_memory.data(), m_memory.size() };
    std::pmr::vector<View> m_texts { &m_resource };
    std::pmr::vector<View> m_words { &m_resource };
};

} // namespace kortools::text

// SPDX-License-Identifier: MIT
// What the words of a search expression are compared with: texts, and their words between blanks.
//
// A group gets the candidates of the expression around it, cut into words once more. That gives no
// new ones: they are the same texts and words, at most in small letters. So one list, or two, serve
// a whole expression however deep its groups are.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/platform/text_compare.h"
#include "kortools/text/wildcard_matcher.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace kortools::text {

enum class CandidateCase { Keep, Lower };

// Keeps its memory from one list of texts to the next.
class Candidates {
public:
    using Texts = std::span<CXTString<wchar_t> const>;

    // The texts and their words, in place of the candidates before. The texts must stay alive.
    void set_texts(Texts texts, CandidateCase mode)
    {
        clear();
        if (mode == CandidateCase::Lower)
            make_room(texts);
        wchar_t *room = m_lowered.data();
        for (CXTString<wchar_t> const &text : texts) {
            View view = text.GetView();
            if (mode == CandidateCase::Lower) {
                wchar_t *const end = lower(view, room);
                view = { room, view.size() };
                room = end;
            }
            m_texts.push_back(view);
            add_words(view);
        }
    }

    // Each text as it is, as one word.
    void set_words(Texts words)
    {
        clear();
        for (CXTString<wchar_t> const &word : words)
            m_words.push_back(word.GetView());
    }

    bool has_match(std::wstring_view pattern, bool with_texts) const
    {
        auto const matches = [&](View text) { return match_wildcards(text, pattern, false); };
        return (with_texts && std::ranges::any_of(m_texts, matches))
            || std::ranges::any_of(m_words, matches);
    }

private:
    using View = std::wstring_view;

    void clear()
    {
        m_texts.clear();
        m_words.clear();
    }

    // Returns the end of what it writes.
    static wchar_t *lower(View text, wchar_t *target)
    {
        for (wchar_t const ch : text)
            *target++ = platform::to_lower(ch);
        return target;
    }

    void make_room(Texts texts)
    {
        std::size_t length = 0;
        for (CXTString<wchar_t> const &text : texts)
            length += text.GetView().size();
        if (m_lowered.size() < length)
            m_lowered.resize(length);
    }

    void add_words(View text)
    {
        wchar_t const *const end = text.data() + text.size();
        wchar_t const *word = text.data();
        for (wchar_t const *at = word; at != end; ++at) {
            if (*at != L' ')
                continue;
            if (at != word)
                m_words.emplace_back(word, static_cast<std::size_t>(at - word));
            word = at + 1;
        }
        if (word != end)
            m_words.emplace_back(word, static_cast<std::size_t>(end - word));
    }

    std::vector<wchar_t> m_lowered; // what the views see of texts in small letters
    std::vector<View> m_texts;
    std::vector<View> m_words;
};

// What one match needs.
struct CandidateLists {
    Candidates own;     // of the expression
    Candidates lowered; // of its groups, where the expression minds case
};

} // namespace kortools::text

// SPDX-License-Identifier: MIT
#include "kortools/files/name_pattern.h"

#include "kortools/platform/text_compare.h"

#include <vector>

namespace kortools::files {
namespace {

// Characters that no name has stand for the special forms, as in the system's own patterns.
constexpr wchar_t any_text = L'*';
constexpr wchar_t text_to_last_dot = L'<';
constexpr wchar_t one_or_none = L'>';
constexpr wchar_t dot_or_end = L'"';

std::wstring to_lower(std::wstring_view text)
{
    std::wstring lower(text);
    for (wchar_t &ch : lower)
        ch = platform::to_lower(ch);
    return lower;
}

std::wstring translate(std::wstring_view pattern)
{
    if (pattern == L"*.*")
        return L"*";
    std::wstring marked = to_lower(pattern);
    for (std::size_t i = 0; i < marked.size(); ++i) {
        wchar_t const next = i + 1 < pattern.size() ? pattern[i + 1] : L'\0';
        if (pattern[i] == L'?')
            marked[i] = one_or_none;
        else if (pattern[i] == L'.' && (next == L'?' || next == L'*'))
            marked[i] = dot_or_end;
        else if (pattern[i] == L'*' && next == L'.' && i + 2 == pattern.size())
            marked[i] = text_to_last_dot;
    }
    // A dot at the end stands for the missing extension.
    if (marked.size() > 1 && marked.back() == L'.' && marked[marked.size() - 2] == text_to_last_dot)
        marked.back() = dot_or_end;
    return marked;
}

// All positions in a pattern that a beginning of the name leads to. A position is the number of
// pattern characters done with; the pattern's length means that all are.
class Positions {
public:
    explicit Positions(std::wstring_view pattern)
        : m_pattern(pattern)
        , m_is_in(pattern.size() + 1)
    {
        m_is_in[0] = true;
    }

    // Past those that may stand for nothing, by what follows in the name.
    void skip_empty(bool at_dot, bool at_end)
    {
        for (std::size_t i = 0; i < m_pattern.size(); ++i) {
            wchar_t const ch = m_pattern[i];
            bool const may_be_empty = ch == any_text || ch == text_to_last_dot
                || (ch == one_or_none && (at_dot || at_end)) || (ch == dot_or_end && at_end);
            if (m_is_in[i] && may_be_empty)
                m_is_in[i + 1] = true;
        }
    }

    void take(wchar_t ch, bool has_dot_behind)
    {
        m_next.assign(m_is_in.size(), false);
        for (std::size_t i = 0; i < m_pattern.size(); ++i) {
            if (!m_is_in[i])
                continue;
            wchar_t const wanted = m_pattern[i];
            if (wanted == any_text
                || (wanted == text_to_last_dot && (ch != L'.' || has_dot_behind)))
                m_next[i] = true;
            else if (wanted == ch || (wanted == one_or_none && ch != L'.')
                || (wanted == dot_or_end && ch == L'.'))
                m_next[i + 1] = true;
        }
        m_is_in.swap(m_next);
    }

    bool is_complete() const { return m_is_in.back(); }

private:
    std::wstring_view m_pattern;
    std::vector<bool> m_is_in;
    std::vector<bool> m_next; // scratch
};

} // namespace

NamePattern::NamePattern(std::wstring_view pattern)
    : m_pattern(translate(pattern))
    , m_has_wildcards(pattern.find_first_of(L"*?") != std::wstring_view::npos)
{
}

bool NamePattern::matches(std::wstring_view name) const
{
    if (m_pattern == L"*")
        return true;
    std::wstring const lower = to_lower(name);
    std::size_t const last_dot = lower.rfind(L'.');
    Positions positions(m_pattern);
    for (std::size_t i = 0; i < lower.size(); ++i) {
        positions.skip_empty(lower[i] == L'.', false);
        positions.take(lower[i], last_dot != std::wstring::npos && i < last_dot);
    }
    positions.skip_empty(false, true);
    return positions.is_complete();
}

} // namespace kortools::files

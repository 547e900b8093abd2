// SPDX-License-Identifier: MIT
// The matching of expressions as it is described, slow and without any of the library: characters
// get their meaning first, and groups are found by descent.
#pragma once

#include <cstddef>
#include <cwctype>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace string_match_model {

using Text = std::wstring;
using Candidates = std::set<Text>;

inline Text to_lower(Text text)
{
    for (wchar_t &ch : text)
        ch = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(ch)));
    return text;
}

inline unsigned reduce(wchar_t ch)
{
    unsigned const byte = static_cast<unsigned>(ch) & 0xFF;
    return byte >= 'a' && byte <= 'z' ? byte - 32 : byte;
}

// Quadratic, going back to the last star. In front of the first one, letters are compared by their
// low bytes and without regard to case unless that counts.
inline bool match_word(Text const &word, Text const &text, bool case_sensitive = false)
{
    std::size_t t = 0;
    std::size_t w = 0;
    for (; t < text.size() && (w == word.size() || word[w] != L'*'); ++t, ++w) {
        if (w == word.size())
            return false;
        bool const same = case_sensitive ? word[w] == text[t] : reduce(word[w]) == reduce(text[t]);
        if (word[w] != L'?' && !same)
            return false;
    }
    std::size_t word_mark = 0;
    std::size_t text_mark = 0;
    while (t < text.size()) {
        if (w < word.size() && word[w] == L'*') {
            word_mark = ++w;
            text_mark = t + 1;
        } else if (w < word.size() && (word[w] == L'?' || word[w] == text[t])) {
            ++w;
            ++t;
        } else {
            w = word_mark;
            t = text_mark++;
        }
    }
    return word.find_first_not_of(L'*', w) == Text::npos;
}

// The texts, if wanted, and their words between blanks.
inline Candidates cut(Candidates const &texts, bool with_texts, bool lowered)
{
    Candidates result;
    for (Text const &each : texts) {
        Text const text = (lowered ? to_lower(each) : each) + L' ';
        if (with_texts)
            result.insert(text.substr(0, text.size() - 1));
        Text word;
        for (wchar_t const ch : text) {
            if (ch != L' ') {
                word += ch;
            } else if (!word.empty()) {
                result.insert(word);
                word.clear();
            }
        }
    }
    return result;
}

class Expression {
public:
    enum Result { Bad, No, Yes };

    Expression(Text expression, unsigned mode, bool case_sensitive, int max_nesting)
        : m_case_sensitive(case_sensitive)
        , m_max_nesting(max_nesting)
    {
        if (!case_sensitive)
            expression = to_lower(expression);
        while (!expression.empty() && is_space(expression.back()))
            expression.pop_back();
        while (!expression.empty() && is_space(expression.front()))
            expression.erase(0, 1);
        mark(expression, mode == 2 || mode == 3);
    }

    Result match(std::vector<Text> const &texts)
    {
        m_at = 0;
        bool const with_texts = has_quote(0, m_marks.size());
        Result const result = m_is_bad
            ? Bad
            : match_group(cut({ texts.begin(), texts.end() }, with_texts, !m_case_sensitive), 0);
        return m_at < m_marks.size() ? Bad : result;
    }

private:
    enum Kind { Plain, Blank, Special, Open, Close }; // the last two: quotes
    struct Mark {
        wchar_t ch;
        Kind kind;
    };

    static bool is_space(wchar_t ch) { return std::iswspace(static_cast<std::wint_t>(ch)) != 0; }

    void mark(Text const &text, bool as_words)
    {
        bool is_quoted = false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            wchar_t const ch = text[i];
            bool const is_special = Text(L"()\"&^!").find(ch) != Text::npos;
            if (is_special && i > 0 && text[i - 1] == L'\\') {
                m_marks.back() = { ch, Plain };
            } else if (is_special && ch == L'"') {
                m_marks.push_back({ ch, is_quoted ? Close : Open });
                is_quoted = !is_quoted;
            } else if (ch == L' ' || (is_special && as_words)) {
                m_marks.push_back({ L' ', is_quoted ? Plain : Blank });
            } else {
                m_marks.push_back({ ch, is_special && !is_quoted ? Special : Plain });
            }
        }
        m_is_bad = is_quoted;
    }

    bool has_quote(std::size_t from, std::size_t to) const
    {
        for (; from < to; ++from) {
            if (m_marks[from].ch == L'"')
                return true;
        }
        return false;
    }

    bool is_kind(Kind kind) const { return m_at < m_marks.size() && m_marks[m_at].kind == kind; }

    Text read_plain()
    {
        Text text;
        while (is_kind(Plain))
            text += m_marks[m_at++].ch;
        return text;
    }

    // Up to the end, or to the parenthesis that closes the group.
    Result match_group(Candidates const &candidates, int depth)
    {
        if (depth > m_max_nesting)
            return Bad;
        bool result = true;
        wchar_t operation = L'&';
        for (; m_at < m_marks.size(); skip_blanks()) {
            if (is_kind(Blank))
                continue;
            wchar_t const ch = m_marks[m_at].ch;
            if (is_kind(Special) && ch == L')')
                break;
            if (is_kind(Special) && ch != L'(') {
                operation = ch;
                ++m_at;
                continue;
            }
            Result const item = match_item(candidates, depth);
            if (item == Bad)
                return Bad;
            result = operation == L'^' ? result || item == Yes
                                       : result && (item == Yes) == (operation == L'&');
        }
        return result ? Yes : No;
    }

    void skip_blanks()
    {
        while (is_kind(Blank))
            ++m_at;
    }

    Result match_item(Candidates const &candidates, int depth)
    {
        if (is_kind(Special)) {
            std::size_t const start = ++m_at;
            std::size_t const end = find_close(start);
            if (end == m_marks.size())
                return Bad;
            Result const result
                = match_nested(cut(candidates, has_quote(start, end), true), end, depth + 1);
            ++m_at;
            return result;
        }
        if (is_kind(Open) || is_kind(Close))
            ++m_at;
        Text const word = read_plain();
        if (is_kind(Close))
            ++m_at;
        for (Text const &candidate : candidates) {
            if (match_word(word, candidate))
                return Yes;
        }
        return No;
    }

    // Groups ignore case, and the white space at their ends.
    Result match_nested(Candidates const &candidates, std::size_t end, int depth)
    {
        std::vector<Mark> const saved = m_marks;
        for (std::size_t i = m_at; i < end && is_space(m_marks[i].ch); ++i)
            m_marks[i].kind = Blank;
        for (std::size_t i = end; i > m_at && is_space(m_marks[i - 1].ch); --i)
            m_marks[i - 1].kind = Blank;
        for (std::size_t i = m_at; i < m_marks.size(); ++i)
            m_marks[i].ch = to_lower(Text(1, m_marks[i].ch))[0];
        Result const result = match_group(candidates, depth);
        m_marks = saved;
        return result;
    }

    std::size_t find_close(std::size_t at) const
    {
        int depth = 1;
        for (; at < m_marks.size(); ++at) {
            if (m_marks[at].kind == Special)
                depth += (m_marks[at].ch == L'(') - (m_marks[at].ch == L')');
            if (depth == 0)
                break;
        }
        return at;
    }

    std::vector<Mark> m_marks;
    std::size_t m_at = 0;
    bool m_is_bad = false;
    bool m_case_sensitive;
    int m_max_nesting;
};

} // namespace string_match_model

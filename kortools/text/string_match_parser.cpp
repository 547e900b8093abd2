// SPDX-License-Identifier: MIT
// How CXStringMatch reads an expression.
//
// A special character with a backslash in front is a plain one; nothing else escapes, so a
// backslash cannot escape itself. Between quotes backslashes are added first. From then on a
// special character that is not escaped is always an operator or a bound of an item, in groups too:
// these are kept as text, and read again, without their parentheses, by the matcher they get.
#include "kortools/text/string_match.h"

#include <string>
#include <utility>

namespace {

constexpr wchar_t blank = L' ';
constexpr wchar_t escape = L'\\';
constexpr wchar_t quote = L'"';

// 0 for what is no operator.
int to_operator(wchar_t ch)
{
    switch (ch) {
    case L'^':
        return CXStringMatch::operator_or;
    case L'&':
        return CXStringMatch::operator_and;
    case L'!':
        return CXStringMatch::operator_and_not;
    default:
        return 0;
    }
}

} // namespace

bool CXStringMatch::InitExpression(CXTString<wchar_t> const &expression, Mode mode)
{
    CXTString<wchar_t> text = expression; // which may be the word of an item
    m_items.clear();
    text.Trim();
    if (mode == mode_words || mode == mode_word_list)
        RemoveSpecialChar(text, quote);
    CXTString<wchar_t> escaped;
    return escape_quoted(text, escaped) && ExtractWords(escaped);
}

bool CXStringMatch::ExtractWords(CXTString<wchar_t> const &text)
{
    _Operator operation = operator_and;
    for (int at = 0; at < text.GetLength();) {
        bool const is_special = is_special_at(text, at);
        int const new_operation = is_special ? to_operator(text[at]) : 0;
        if (text[at] == blank || new_operation != 0) {
            if (new_operation != 0)
                operation = static_cast<_Operator>(new_operation);
            ++at;
            continue;
        }
        int const end = find_item_end(text, at);
        if (end < 0)
            return false;
        int const bound = is_special ? 1 : 0; // at either end
        CXTString<wchar_t> const word = text.Mid(at + bound, end - at - 2 * bound);
        if (!add_item(word, operation, is_special && text[at] != quote))
            return false;
        at = end;
    }
    return true;
}

bool CXStringMatch::AddExpression(CXTString<wchar_t> const &word, _Operator operation)
{
    return add_item(word, operation, ShouldRecurse(word));
}

void CXStringMatch::RemoveSpecialChar(CXTString<wchar_t> &text, wchar_t except)
{
    for (int i = 0; i < text.GetLength(); ++i) {
        if (text[i] != except && is_special_at(text, i))
            text.SetAt(i, blank);
    }
}

bool CXStringMatch::IsChar(CXTString<wchar_t> const &text, wchar_t ch, int index)
{
    return index >= 0 && index < text.GetLength() && text[index] == ch;
}

bool CXStringMatch::ShouldRecurse(CXTString<wchar_t> const &word)
{
    for (int i = 0; i < word.GetLength(); ++i) {
        if (is_special_at(word, i))
            return true;
    }
    return false;
}

bool CXStringMatch::is_special_at(CXTString<wchar_t> const &text, int index)
{
    return hashChar.IsFound(text[index]) && !IsChar(text, escape, index - 1);
}

// False when a quote is not closed.
bool CXStringMatch::escape_quoted(CXTString<wchar_t> const &text, CXTString<wchar_t> &escaped)
{
    std::wstring result;
    bool is_quoted = false;
    for (int i = 0; i < text.GetLength(); ++i) {
        bool const is_special = is_special_at(text, i);
        if (is_special && text[i] == quote)
            is_quoted = !is_quoted;
        else if (is_special && is_quoted)
            result += escape;
        result += text[i];
    }
    escaped = result;
    return !is_quoted;
}

CXTString<wchar_t> CXStringMatch::remove_escapes(CXTString<wchar_t> const &word)
{
    std::wstring plain;
    for (int i = 0; i < word.GetLength(); ++i) {
        bool const escapes = word[i] == escape && hashChar.IsFound(word[i + 1]);
        if (!escapes)
            plain += word[i];
    }
    return plain;
}

// Behind the item that begins at `start`, and behind its closing quote or parenthesis; -1 when
// there is none.
int CXStringMatch::find_item_end(CXTString<wchar_t> const &text, int start)
{
    bool const is_special = is_special_at(text, start);
    if (is_special && text[start] != quote)
        return find_group_end(text, start);
    for (int end = start + 1; end < text.GetLength(); ++end) {
        if (!is_special && (text[end] == blank || is_special_at(text, end)))
            return end;
        if (is_special && text[end] == quote && is_special_at(text, end))
            return end + 1;
    }
    return is_special ? -1 : text.GetLength();
}

int CXStringMatch::find_group_end(CXTString<wchar_t> const &text, int start)
{
    int depth = 0;
    for (int end = start; end < text.GetLength(); ++end) {
        if (!is_special_at(text, end))
            continue;
        depth += (text[end] == L'(') - (text[end] == L')');
        if (depth < 0 || depth > max_nesting)
            return -1;
        if (depth == 0)
            return end + 1;
    }
    return -1;
}

bool CXStringMatch::add_item(CXTString<wchar_t> const &word, _Operator operation, bool is_nested)
{
    OwnItem item;
    item.word = word;
    item.operation = operation;
    if (is_nested) {
        CXStringMatch match;
        if (!match.PrepareMatch(word, mode_nested, false))
            return false;
        item.nested = Nested(std::move(match));
    } else {
        item.pattern = remove_escapes(word);
    }
    m_items.push_back(std::move(item));
    return true;
}

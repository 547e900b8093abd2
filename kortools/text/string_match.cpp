// SPDX-License-Identifier: MIT
#include "kortools/text/string_match.h"

#include "kortools/core/throw.h"
#include "kortools/text/match_candidates.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

using kortools::core::translate_shortage;
using kortools::text::CandidateCase;
using kortools::text::CandidateLists;
using kortools::text::Candidates;

namespace {

std::once_flag s_special_characters;
std::atomic<int> s_nested_count = 0;

// The lists, made when they are asked for first.
CandidateLists &get_lists(std::unique_ptr<CandidateLists> &lists)
{
    if (!lists)
        lists = std::make_unique<CandidateLists>();
    return *lists;
}

bool combine(bool result, CXStringMatch::_Operator operation, bool item)
{
    switch (operation) {
    case CXStringMatch::operator_or:
        return result || item;
    case CXStringMatch::operator_and:
        return result && item;
    case CXStringMatch::operator_and_not:
        return result && !item;
    }
    return result; // an item of a derived class, with an operator that does not exist
}

} // namespace

CHashTable<wchar_t> CXStringMatch::hashChar;

CXStringMatch::Nested::Nested(CXStringMatch match)
    : m_match(translate_shortage([&] { return std::make_unique<CXStringMatch>(std::move(match)); }))
{
    ++s_nested_count;
}

CXStringMatch::Nested::Nested(Nested const &other)
{
    if (other)
        *this = Nested(*other.m_match);
}

CXStringMatch::Nested &CXStringMatch::Nested::operator=(Nested other) noexcept
{
    m_match.swap(other.m_match);
    return *this;
}

CXStringMatch::Nested::~Nested()
{
    if (m_match)
        --s_nested_count;
}

CXStringMatch::CXStringMatch()
{
    std::call_once(s_special_characters, [] {
        for (wchar_t const ch : { L'(', L')', L'"', L'&', L'^', L'!' }) {
            if (hashChar.Insert(ch) == 0 && !hashChar.IsFound(ch))
                kortools::core::throw_out_of_memory(); // the next one tries again
        }
    });
}

// A copy begins without lists.
CXStringMatch::CXStringMatch(CXStringMatch const &other)
    : m_items(translate_shortage([&] { return other.m_items; }))
    , m_mode(other.m_mode)
    , m_caseSensitive(other.m_caseSensitive)
    , m_hasQuote(other.m_hasQuote)
    , m_isValid(other.m_isValid)
{
}

CXStringMatch::CXStringMatch(CXStringMatch &&other) noexcept = default;

CXStringMatch &CXStringMatch::operator=(CXStringMatch const &other)
{
    return *this = CXStringMatch(other);
}

CXStringMatch &CXStringMatch::operator=(CXStringMatch &&other) noexcept = default;
CXStringMatch::~CXStringMatch() = default;

bool CXStringMatch::PrepareMatch(
    CXTString<wchar_t> const &expression, Mode mode, bool caseSensitive)
{
    CXTString<wchar_t> text = expression;
    m_mode = mode;
    m_caseSensitive = caseSensitive;
    m_hasQuote = text.Find(L'"') >= 0;
    if (!caseSensitive)
        text.MakeLower();
    m_isValid = false; // also when there is no memory
    m_isValid = translate_shortage([&] { return InitExpression(text, m_mode); });
    if (!m_isValid)
        m_items.clear();
    return m_isValid;
}

bool CXStringMatch::Match(CXTString<wchar_t> const &text)
{
    return match_texts({ &text, 1 });
}

bool CXStringMatch::Match(Texts const &texts)
{
    return match_texts({ texts.begin(), texts.end() });
}

bool CXStringMatch::Match(CXTString<wchar_t> const &expression, CXTString<wchar_t> const &text,
    Mode mode, bool caseSensitive)
{
    return PrepareMatch(expression, mode, caseSensitive) && Match(text);
}

bool CXStringMatch::Match(
    CXTString<wchar_t> const &expression, Texts const &texts, Mode mode, bool caseSensitive)
{
    return PrepareMatch(expression, mode, caseSensitive) && Match(texts);
}

CXStringMatch::Item const &CXStringMatch::GetItem(int index) const
{
    if (index < 0 || index >= GetItemCount())
        kortools::core::throw_invalid_argument();
    return m_items[static_cast<std::size_t>(index)];
}

int CXStringMatch::GetNestedCount()
{
    return s_nested_count;
}

bool CXStringMatch::MatchWord(CXTString<wchar_t> const &word, Texts const &texts)
{
    CXTString<wchar_t> const pattern = remove_escapes(word);
    return std::ranges::any_of(texts, [&](CXTString<wchar_t> const &text) {
        return kortools::text::match_wildcards(text.GetView(), pattern.GetView(), false);
    });
}

bool CXStringMatch::InternalMatch(Texts const &texts, Mode /*mode*/)
{
    return translate_shortage([&] {
        auto &[own, lowered] = get_lists(m_lists);
        own.set_words({ texts.begin(), texts.end() });
        if (!has_nested())
            return match_items(own, own);
        lowered.set_texts({ texts.begin(), texts.end() }, CandidateCase::Lower);
        return match_items(own, lowered);
    });
}

bool CXStringMatch::has_nested() const
{
    return std::ranges::any_of(
        m_items, [](OwnItem const &item) { return static_cast<bool>(item.nested); });
}

bool CXStringMatch::match_texts(std::span<CXTString<wchar_t> const> texts)
{
    if (!m_isValid || m_items.empty())
        return m_isValid;
    return translate_shortage([&] {
        auto &[own, lowered] = get_lists(m_lists);
        own.set_texts(texts, m_caseSensitive ? CandidateCase::Keep : CandidateCase::Lower);
        if (!m_caseSensitive || !has_nested())
            return match_items(own, own);
        lowered.set_texts(texts, CandidateCase::Lower);
        return match_items(own, lowered);
    });
}

// Groups ignore case, so theirs are the `lowered` candidates.
bool CXStringMatch::match_items(Candidates const &own, Candidates const &lowered)
{
    bool result = true;
    for (OwnItem &item : m_items) {
        bool const found = item.nested ? item.nested->match_items(lowered, lowered)
                                       : own.has_match(item.pattern.GetView(), m_hasQuote);
        item.result = found;
        result = combine(result, item.operation, found);
    }
    return result;
}

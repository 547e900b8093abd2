// SPDX-License-Identifier: MIT
// CXStringMatch: texts (file names, entries of a list) against what a user typed into a search
// field. An expression is prepared once and matched against many texts. For one plain pattern
// against whole names use fileMatchWilcards().
//
//   CXStringMatch search;
//   if (search.PrepareMatch(L"table !leg"))
//       for (CXTString<wchar_t> const &name : names)
//           if (search.Match(name))
//               show(name);
//
// An expression has words, each of which must be the whole of one of the text's words (between
// blanks). In a word '*' stands for any characters, also none, and '?' for one.
//
//   table leg, table & leg  => both words
//   table ^ leg             => one of them
//   table !leg              => the first but not the second
//   (a ^ b) (c ^ d)         => groups are expressions of their own
//   "table leg"             => that whole text; "*table leg*": anywhere in it
//   a\&b                    => the word a&b: '\' takes ( ) " & ^ ! as they are
//
// What surprises:
// - There is no precedence: items join from left to right, beginning with true, so that a leading ^
//   gives true. An operator holds for all words up to the next operator: "!a b" is neither.
// - In front of its first '*' a word never minds case, and compares the low bytes of characters
//   only. Groups ignore case even where the expression does not.
// - A text of blanks has no word that '*' could match.
//
// Used by one thread at a time. Preparing takes time and memory proportional to the expression,
// times its nesting; matching takes time proportional to the text times the number of the
// expression's items and stars. A matcher keeps the memory that a match needs for the next one.
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <memory>
#include <span>
#include <vector>

namespace kortools::text {
class Candidates;
struct CandidateLists;
} // namespace kortools::text

class KORTOOLS_API CXStringMatch {
public:
    using Mode = unsigned int;                 // one of these, and flags
    static constexpr Mode mode_expression = 0; // as every mode without a name
    static constexpr Mode mode_nested = 1;     // that of groups
    static constexpr Mode mode_words = 2;      // special characters but '"' count as blanks
    static constexpr Mode mode_word_list = 3;  // the same

    enum _Operator { operator_or = 1, operator_and = 2, operator_and_not = 3 };

    using Texts = CXArray<CXTString<wchar_t>>; // a list of texts

    // How deep groups can lie in groups.
    static constexpr int max_nesting = 64;

    CXStringMatch(); // matches everything
    CXStringMatch(CXStringMatch const &other);
    CXStringMatch(CXStringMatch &&other) noexcept;
    CXStringMatch &operator=(CXStringMatch const &other);
    CXStringMatch &operator=(CXStringMatch &&other) noexcept;
    ~CXStringMatch();

    // False when parentheses or quotes are not balanced, or groups nest too deep; the matcher then
    // has no items and matches nothing. An empty or blank expression matches everything.
    bool PrepareMatch(CXTString<wchar_t> const &expression, Mode mode = mode_expression,
        bool caseSensitive = false);

    // Several texts are matched like one: each item of the expression may be found in any of them.
    bool Match(CXTString<wchar_t> const &text);
    bool Match(Texts const &texts);

    // Prepare, then match; false when the expression is bad.
    bool Match(CXTString<wchar_t> const &expression, CXTString<wchar_t> const &text,
        Mode mode = mode_expression, bool caseSensitive = false);
    bool Match(CXTString<wchar_t> const &expression, Texts const &texts,
        Mode mode = mode_expression, bool caseSensitive = false);

    // A word, group or quoted text of the prepared expression.
    struct Item {
        CXTString<wchar_t> word; // with its backslashes, without the parentheses or quotes around
        _Operator operation = operator_and;
        unsigned char result = 0; // 1 when the last match found it; 0 before
    };

    int GetItemCount() const { return static_cast<int>(m_items.size()); }

    // Throws CXInvalidArgException for a bad index. Valid until the next PrepareMatch().
    Item const &GetItem(int index) const;

    // The groups that all matchers of the process hold at present.
    static int GetNestedCount();

protected:
    // The steps, for matchers with items of their own.

    // Replaces the items by those of the expression; false as PrepareMatch().
    bool InitExpression(CXTString<wchar_t> const &expression, Mode mode);

    // Appends the items of a text in which special characters between quotes have a backslash.
    bool ExtractWords(CXTString<wchar_t> const &text);

    // Appends an item: a nested expression if ShouldRecurse(word), false then if that is bad.
    bool AddExpression(CXTString<wchar_t> const &word, _Operator operation);

    // Makes blanks of all special characters but `except` that have no backslash in front.
    static void RemoveSpecialChar(CXTString<wchar_t> &text, wchar_t except);

    // False for an index outside the text.
    static bool IsChar(CXTString<wchar_t> const &text, wchar_t ch, int index);

    // True when the word has a special character without a backslash in front.
    static bool ShouldRecurse(CXTString<wchar_t> const &word);

    // True when the word matches one of the texts as a whole.
    static bool MatchWord(CXTString<wchar_t> const &word, Texts const &texts);

    // Matches with the texts as they are, not cut into words and in the case they have; all modes
    // match alike.
    bool InternalMatch(Texts const &texts, Mode mode);

    // The six special characters. The first constructor fills it.
    static CHashTable<wchar_t> hashChar;

private:
    // A group's matcher, copied with its owner and counted.
    class Nested {
    public:
        Nested() = default;
        explicit Nested(CXStringMatch match);
        Nested(Nested const &other);
        Nested(Nested &&other) noexcept = default;
        Nested &operator=(Nested other) noexcept;
        ~Nested();

        explicit operator bool() const { return m_match != nullptr; }
        CXStringMatch *operator->() const { return m_match.get(); }

    private:
        std::unique_ptr<CXStringMatch> m_match;
    };

    struct OwnItem : Item {
        CXTString<wchar_t> pattern; // the word without its backslashes
        Nested nested;              // of a group
    };

    static bool is_special_at(CXTString<wchar_t> const &text, int index);
    static bool escape_quoted(CXTString<wchar_t> const &text, CXTString<wchar_t> &escaped);
    static CXTString<wchar_t> remove_escapes(CXTString<wchar_t> const &word);
    static int find_item_end(CXTString<wchar_t> const &text, int start);
    static int find_group_end(CXTString<wchar_t> const &text, int start);
    bool add_item(CXTString<wchar_t> const &word, _Operator operation, bool is_nested);

    bool has_nested() const;
    bool match_texts(std::span<CXTString<wchar_t> const> texts);
    bool match_items(
        kortools::text::Candidates const &own, kortools::text::Candidates const &lowered);

    std::vector<OwnItem> m_items;
    std::unique_ptr<kortools::text::CandidateLists> m_lists; // null before the first match
    Mode m_mode = mode_expression;
    bool m_caseSensitive = false;
    bool m_hasQuote = false; // whole texts are candidates, too
    bool m_isValid = true;
};

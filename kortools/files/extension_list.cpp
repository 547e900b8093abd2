// SPDX-License-Identifier: MIT
#include "kortools/files/extension_list.h"

#include "kortools/files/path_text.h"
#include "kortools/files/text_cut.h"

#include <algorithm>

using namespace kortools::files;

namespace {

using String = CXTString<wchar_t>;
using View = std::wstring_view;

constexpr long long max_item = 260; // characters
constexpr View blanks = L" \t\n\v\f\r,;";

// Reads a list item by item.
class ItemReader {
public:
    explicit ItemReader(View list)
        : m_rest(list)
    {
    }

    // False at the end.
    bool read(View &item)
    {
        if (!m_is_inside_quotes) {
            m_rest.remove_prefix(std::min(m_rest.find_first_not_of(blanks), m_rest.size()));
            if (m_rest.empty())
                return false;
            m_is_inside_quotes = m_rest.front() == L'"';
            m_rest.remove_prefix(m_is_inside_quotes);
        }
        item = m_is_inside_quotes ? take_quoted() : take(m_rest.find_first_of(blanks));
        return true;
    }

private:
    View take(std::size_t end)
    {
        View const text = cut_text(m_rest.substr(0, end), max_item);
        m_rest.remove_prefix(text.size());
        return text;
    }

    View take_quoted()
    {
        View const text = take(m_rest.find(L'"'));
        bool const ends = m_rest.empty() || m_rest.front() == L'"';
        m_rest.remove_prefix(ends && !m_rest.empty());
        m_is_inside_quotes = !ends;
        return text;
    }

    View m_rest;
    bool m_is_inside_quotes = false; // the last item was cut, and more of it follows
};

void append(String &list, View item, bool quoted)
{
    if (!list.IsEmpty())
        list += L' ';
    if (quoted)
        list += L'"';
    list += item;
    if (quoted)
        list += L'"';
}

} // namespace

CXTString<wchar_t> fileCleanExtensionList(
    CXTString<wchar_t> const &list, bool quote, CHashTable<CXTString<wchar_t>> *set)
{
    String lowered = to_string(view_of(list));
    lowered.MakeLower();
    String cleaned;
    ItemReader reader(lowered.GetView());
    for (View item; reader.read(item);) {
        bool const needs_quotes = item.empty() || item.find_first_of(blanks) != View::npos;
        append(cleaned, item, quote && needs_quotes);
        if (set)
            set->Insert(to_string(item));
    }
    return cleaned;
}

int fileGetHashFromExtensionList(
    CXTString<wchar_t> &list, CHashTable<CXTString<wchar_t>> &set, bool quote)
{
    list = fileCleanExtensionList(list, quote, &set);
    return static_cast<int>(set.GetCount());
}

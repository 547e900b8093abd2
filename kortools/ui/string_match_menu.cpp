// SPDX-License-Identifier: MIT
#include "kortools/ui/string_match_menu.h"

#include "kortools/archive/archive.h"
#include "kortools/text/string_table.h"
#include "kortools/ui/window.h"

#include <iterator>

namespace {

constexpr unsigned int first_entry = 5310;

struct Operator { // in the order of the entries
    wchar_t const *before;
    wchar_t const *behind; // what was selected
};

constexpr Operator operators[] = {
    { L"!", nullptr },
    { L"&", nullptr },
    { L"?", nullptr },
    { L"\"", L"\"" },
    { L"^", nullptr },
    { L"(", L")" },
    { L"*", nullptr },
};

CXTString<wchar_t> get_selected_text(CEdit const &edit)
{
    int start = 0;
    int end = 0;
    edit.GetSel(start, end);
    return edit.GetText().Mid(start, end - start);
}

void insert(CEdit &edit, Operator const &chosen)
{
    if (chosen.behind == nullptr)
        return edit.ReplaceSel(chosen.before);
    CXTString<wchar_t> const inside = get_selected_text(edit);
    edit.ReplaceSel(chosen.before + inside + chosen.behind);
    if (!inside.IsEmpty())
        return;
    int start = 0;
    int end = 0;
    edit.GetSel(start, end);
    edit.SetSel(start - 1, start - 1);
}

} // namespace

void DisplayStringMatchMenu(CEdit *edit)
{
    if (edit == nullptr)
        return;
    CXArray<CXTString<wchar_t>> entries;
    for (unsigned int i = 0; i < std::size(operators); ++i)
        entries.Add(xLoadString(first_entry + i));
    int const chosen = edit->TrackPopupMenu({ 0, edit->GetClientSize().cy }, entries);
    if (chosen >= 0 && chosen < entries.GetSize())
        insert(*edit, operators[chosen]);
}

// SPDX-License-Identifier: MIT
#include "kortools/text/resource_strings.h"

#include "kortools/archive/archive.h"
#include "kortools/text/string_table.h"

#include <algorithm>
#include <cstdarg>
#include <string_view>

namespace {

using String = CXTString<wchar_t>;

constexpr unsigned int no_text = 0xFFFFFFFF;
constexpr unsigned int separator_text = 5214;
constexpr unsigned int no_word = 5293;
constexpr unsigned int yes_word = 5392;

// Calls `use` with each field until it returns false.
template <class Use> void for_each_field(std::wstring_view text, Use use)
{
    for (;;) {
        std::size_t const end = text.find(L'|');
        if (!use(text.substr(0, end)) || end == std::wstring_view::npos)
            return;
        text.remove_prefix(end + 1);
    }
}

} // namespace

CXTString<wchar_t> LoadResourceString(unsigned int id, wchar_t const *defaultText)
{
    String text;
    if (id < no_text)
        text = xLoadString(id);
    if (text.IsEmpty() && defaultText)
        text = defaultText;
    return text;
}

CXTString<wchar_t> ExtractString(unsigned int id, unsigned int index, bool lineFeed)
{
    String const text = xLoadString(id);
    String result;
    for_each_field(text.GetView(), [&](std::wstring_view field) {
        if (index == 0)
            result = field;
        return index-- != 0;
    });
    if (lineFeed && !result.IsEmpty())
        result += L'\n';
    return result;
}

CXTString<wchar_t> ExtractString(unsigned int formatId, unsigned int id, int index, bool lineFeed)
{
    String const field = ExtractString(id, static_cast<unsigned int>(index));
    String result = FormatString(formatId, field.GetConstBuffer());
    if (lineFeed)
        result += L'\n';
    return result;
}

int ExtractString(CXTString<wchar_t> const &text, CXArray<CXTString<wchar_t>> &fields)
{
    String const source(text.GetView()); // may be one of the fields
    fields.RemoveAll();
    for_each_field(source.GetView(), [&](std::wstring_view field) {
        fields.Add(field);
        return true;
    });
    return fields.GetSize();
}

CXTString<wchar_t> FormatString(unsigned int id, ...)
{
    String result;
    std::va_list args;
    va_start(args, id);
    result.FormatV(xLoadString(id), args);
    va_end(args);
    return result;
}

CXTString<wchar_t> FormatString(wchar_t const *format, ...)
{
    String result;
    std::va_list args;
    va_start(args, format);
    result.FormatV(format, args);
    va_end(args);
    return result;
}

CXTString<wchar_t> FormatStringEx(unsigned int id, wchar_t const *defaultFormat, int lineFeed, ...)
{
    String result;
    std::va_list args;
    va_start(args, lineFeed);
    result.FormatV(LoadResourceString(id, defaultFormat), args);
    va_end(args);
    if (lineFeed && !result.IsEmpty())
        result += L'\n';
    return result;
}

CXTString<wchar_t> YesNoString(bool value)
{
    return xLoadString(value ? yes_word : no_word);
}

CXTString<wchar_t> YesNoString(unsigned int id, bool value, bool lineFeed)
{
    String line = xLoadString(id) + xLoadString(separator_text) + YesNoString(value);
    if (lineFeed)
        line += L" \n";
    return line;
}

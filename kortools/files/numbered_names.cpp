// SPDX-License-Identifier: MIT
#include "kortools/files/numbered_names.h"

#include "kortools/files/file_status.h"
#include "kortools/files/name_split.h"
#include "kortools/files/path_text.h"
#include "kortools/files/text_cut.h"

#include <algorithm>
#include <climits>

using namespace kortools::files;

namespace {

using String = CXTString<wchar_t>;
using View = std::wstring_view;

constexpr long long min_cut_base = 8; // characters that fileCutName() leaves

long long length_of(View text)
{
    return static_cast<long long>(text.size());
}

bool is_digit(wchar_t ch)
{
    return ch >= L'0' && ch <= L'9';
}

struct NumberedBase {
    View base;
    int number; // -1 when there is none
};

// The value of the last digits in `ending`; -1 without digits and for a value without successor.
int read_last_number(View ending)
{
    std::size_t const last = ending.find_last_of(L"0123456789");
    if (last == View::npos)
        return -1;
    std::size_t first = last;
    while (first > 0 && is_digit(ending[first - 1]))
        --first;
    long long value = 0;
    for (std::size_t i = first; i <= last && value < INT_MAX; ++i)
        value = value * 10 + (ending[i] - L'0');
    return value < INT_MAX ? static_cast<int>(value) : -1;
}

NumberedBase strip_number(View name)
{
    bool const is_bracketed = name.size() > 1 && name.back() == L')';
    std::size_t first = name.size() - is_bracketed;
    while (first > 1 && (is_digit(name[first - 1]) || (is_bracketed && name[first - 1] == L'(')))
        --first;
    int const number = first < name.size() ? read_last_number(name.substr(first)) : -1;
    return { number >= 0 ? name.substr(0, first) : name, number };
}

// Writes one number after the other behind the same base name.
class Series {
public:
    Series(View name, bool parenthesis, int max_length)
        : m_parts(split_name(name))
        , m_start(strip_number(m_parts.base))
        , m_parenthesis(parenthesis)
        , m_max_length(max_length > 0 ? max_length : LLONG_MAX)
    {
    }

    long long get_first_number() const { return m_start.number < 0 ? 1 : m_start.number + 1LL; }

    String make_name(long long number) const
    {
        String suffix;
        suffix.Format(m_parenthesis ? L"(%I64d)" : L"%I64d", number);
        long long const room = m_max_length - length_of(m_parts.directory)
            - length_of(m_parts.extension) - suffix.GetLength();
        View base = cut_text(m_start.base, room);
        if (m_parenthesis && !base.ends_with(L' ')) {
            base = cut_text(m_start.base, room - 1);
            if (!base.ends_with(L' '))
                suffix.Insert(0, L' ');
        }
        return join(base, suffix.GetView());
    }

private:
    String join(View base, View suffix) const
    {
        String name;
        CXTCharArray<wchar_t> &characters = name;
        for (View const part : { m_parts.directory, base, suffix, m_parts.extension })
            characters.Append(part.data(), length_of(part));
        return name;
    }

    NameParts m_parts; // views into the name that was given
    NumberedBase m_start;
    bool m_parenthesis;
    long long m_max_length;
};

} // namespace

CXTString<wchar_t> fileCutName(CXTString<wchar_t> const &name, int maxLength)
{
    if (maxLength <= 0)
        return name;
    NameParts const parts = split_name(view_of(name));
    long long const rest = length_of(parts.directory) + length_of(parts.extension);
    View const base = cut_text(parts.base, std::max(maxLength - rest, min_cut_base));
    String cut = to_string(parts.directory);
    cut += base;
    cut += parts.extension;
    return cut;
}

CXTString<wchar_t> fileRemoveNameDigitEnding(CXTString<wchar_t> const &name, int &number)
{
    NumberedBase const stripped = strip_number(view_of(name));
    number = stripped.number;
    return to_string(stripped.base);
}

CXTString<wchar_t> fileNextNumberedName(
    CXTString<wchar_t> const &name, bool parenthesis, int maxLength)
{
    Series const series(view_of(name), parenthesis, maxLength);
    return series.make_name(series.get_first_number());
}

CXTString<wchar_t> fileCreateUniqueName(
    CXTString<wchar_t> const &name, bool parenthesis, int maxLength, bool alwaysNumber)
{
    String start = fileCutName(name, maxLength);
    if (!alwaysNumber && !fileExists(start))
        return start;
    Series const series(view_of(start), parenthesis, maxLength);
    for (long long number = series.get_first_number();; ++number) {
        String candidate = series.make_name(number);
        if (!fileExists(candidate))
            return candidate;
    }
}

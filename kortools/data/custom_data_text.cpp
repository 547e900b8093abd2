// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data_text.h"

#include "kortools/core/conversion.h"
#include "kortools/core/utf16.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/custom_data_entry.h"

#include <algorithm>
#include <string_view>

using kortools::data::Entry;
using kortools::data::TextForm;

namespace kortools::data {

namespace {

TextForm legacy_text_form(unsigned int legacy_mode)
{
    if (legacy_mode == 0)
        return TextForm::None;
    return legacy_mode == 2 ? TextForm::ANSI : TextForm::UTF16;
}

// The units before the first zero.
std::size_t count_units(unsigned char const *at, unsigned char const *end)
{
    auto const most = static_cast<std::size_t>(end - at) / 2;
    std::size_t count = 0;
    while (count < most && (at[2 * count] | at[2 * count + 1]) != 0)
        ++count;
    return count;
}

std::string_view view_narrow(unsigned char const *at, unsigned char const *end)
{
    return { reinterpret_cast<char const *>(at),
        static_cast<std::size_t>(std::find(at, end, 0) - at) };
}

// Behind a text of `size` bytes and its zero.
unsigned char const *skip_text(
    unsigned char const *at, unsigned char const *end, std::size_t size, std::ptrdiff_t zero_size)
{
    at += size;
    return end - at > zero_size ? at + zero_size : end;
}

} // namespace

TextForm get_text_form(unsigned int kind, unsigned int legacy_mode)
{
    switch (kind) {
    case CCustomData::kindString:
        return TextForm::UTF16;
    case CCustomData::kindStringA:
        return TextForm::ANSI;
    case CCustomData::kindStringUTF8:
        return TextForm::UTF8;
    default:
        return legacy_text_form(legacy_mode);
    }
}

TextForm get_list_form(unsigned int kind, unsigned int legacy_mode)
{
    switch (kind) {
    case CCustomData::kindStrings:
        return TextForm::UTF16;
    case CCustomData::kindStringsA:
        return TextForm::ANSI;
    case CCustomData::kindStringsUTF8:
        return TextForm::UTF8;
    default:
        return legacy_text_form(legacy_mode);
    }
}

unsigned char const *read_text(
    TextForm form, unsigned char const *at, unsigned char const *end, CXTString<wchar_t> &text)
{
    if (form == TextForm::UTF16) {
        std::size_t const count = count_units(at, end);
        CXTCharArray<wchar_t> &characters = text;
        characters.SetLength(static_cast<long long>(core::count_wide_characters(at, count)));
        core::copy_from_utf16(at, count, characters.GetData());
        return skip_text(at, end, 2 * count, 2);
    }
    std::string_view const view = view_narrow(at, end);
    core::convert_text(view, form == TextForm::UTF8 ? xEncodingUTF8 : xEncodingANSI, text);
    return skip_text(at, end, view.size(), 1);
}

unsigned char const *read_text(
    TextForm form, unsigned char const *at, unsigned char const *end, CXTString<char> &text)
{
    if (form != TextForm::ANSI) {
        CXTString<wchar_t> wide;
        unsigned char const *const next = read_text(form, at, end, wide);
        core::convert_text(wide.GetView(), xEncodingANSI, text);
        return next;
    }
    std::string_view const view = view_narrow(at, end);
    CXTCharArray<char> &characters = text;
    characters.Assign(view.data(), static_cast<long long>(view.size()));
    return skip_text(at, end, view.size(), 1);
}

} // namespace kortools::data

namespace {

std::size_t measure_units(CXTString<wchar_t> const &text)
{
    std::wstring_view const view = text.GetView();
    return kortools::core::count_utf16_units(view.data(), view.size());
}

// Writes the text and its zero; returns where they end.
unsigned char *write_text(CXTString<wchar_t> const &text, unsigned char *at)
{
    std::wstring_view const view = text.GetView();
    at += 2 * kortools::core::copy_to_utf16(view.data(), view.size(), at);
    at[0] = at[1] = 0;
    return at + 2;
}

void append(CCustomData::StringArray &values, CXTString<wchar_t> const &text)
{
    values.Add(text, CCustomData::StringArray::grow_double);
}

void append(CStringList &values, CXTString<wchar_t> const &text)
{
    values.AddTail(text);
}

} // namespace

void CCustomData::SetString(unsigned int id, CXTString<wchar_t> const &value)
{
    CXSingleLock const lock(&m_section, true);
    if (unsigned char *const target = MakeEntry(id, 2ULL * measure_units(value) + 2, kindString))
        write_text(value, target);
}

void CCustomData::SetStringA(unsigned int id, CXTString<char> const &value)
{
    CXSingleLock const lock(&m_section, true);
    std::string_view const text = value.GetView();
    unsigned char *const target = MakeEntry(id, text.size() + 1ULL, kindStringA);
    if (target)
        *std::copy(text.begin(), text.end(), target) = 0;
}

template <class Strings> void CCustomData::SetStrings(unsigned int id, Strings const &values)
{
    CXSingleLock const lock(&m_section, true);
    unsigned long long size = 0;
    for (CXTString<wchar_t> const &value : values)
        size += 2ULL * measure_units(value) + 2;
    unsigned char *target = MakeEntry(id, size, kindStrings);
    if (!target)
        return;
    for (CXTString<wchar_t> const &value : values)
        target = write_text(value, target);
}

void CCustomData::SetStringArray(unsigned int id, StringArray const &values)
{
    SetStrings(id, values);
}

void CCustomData::SetStringList(unsigned int id, CStringList const &values)
{
    SetStrings(id, values);
}

bool CCustomData::GetString(
    unsigned int id, CXTString<wchar_t> &value, CXTString<wchar_t> const &defaultValue) const
{
    CXSingleLock const lock(&m_section, true);
    Entry const entry = FindEntry(id);
    TextForm const form = kortools::data::get_text_form(entry.kind, m_legacyMode);
    bool const isWide = form == TextForm::UTF16 || form == TextForm::UTF8 || m_legacyMode != 0;
    if (!entry || !isWide) {
        value = defaultValue;
        return false;
    }
    kortools::data::read_text(form, entry.data, entry.get_end(), value);
    return true;
}

bool CCustomData::GetStringA(
    unsigned int id, CXTString<char> &value, CXTString<char> const &defaultValue) const
{
    CXSingleLock const lock(&m_section, true);
    Entry const entry = FindEntry(id);
    TextForm const form = kortools::data::get_text_form(entry.kind, m_legacyMode);
    bool const isNarrow = form == TextForm::ANSI || form == TextForm::UTF8 || m_legacyMode != 0;
    if (!entry || !isNarrow) {
        value = defaultValue;
        return false;
    }
    kortools::data::read_text(form, entry.data, entry.get_end(), value);
    return true;
}

template <class Strings> int CCustomData::GetStrings(unsigned int id, Strings &values) const
{
    CXSingleLock const lock(&m_section, true);
    values.RemoveAll();
    Entry const entry = FindEntry(id);
    TextForm const form = kortools::data::get_list_form(entry.kind, m_legacyMode);
    if (!entry || form == TextForm::None)
        return 0;
    CXTString<wchar_t> text;
    for (unsigned char const *at = entry.data; at != entry.get_end();) {
        at = kortools::data::read_text(form, at, entry.get_end(), text);
        append(values, text);
    }
    return values.GetCount();
}

int CCustomData::GetStringArray(unsigned int id, StringArray &values) const
{
    return GetStrings(id, values);
}

int CCustomData::GetStringList(unsigned int id, CStringList &values) const
{
    return GetStrings(id, values);
}

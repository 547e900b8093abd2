// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"
#include "kortools/data/custom_data_entry.h"
#include "kortools/data/custom_data_text.h"

#include <algorithm>

using kortools::data::Entries;
using kortools::data::Entry;
using kortools::data::TextForm;

namespace {

constexpr int indent_width = 4;
constexpr int max_depth = 32;          // of nested containers
constexpr unsigned int max_bytes = 32; // of raw data shown
constexpr int max_characters = 256;    // of a text shown

// The four characters of a code, those that cannot be printed as dots.
struct FourCharacters {
    char text[5];

    explicit FourCharacters(unsigned int code)
        : text {}
    {
        for (int i = 0; i < 4; ++i) {
            char const ch = static_cast<char>(code >> (24 - 8 * i));
            text[i] = ch >= ' ' && ch <= '~' ? ch : '.';
        }
    }
};

template <class T> T load(Entry const &entry)
{
    T value {};
    std::memcpy(&value, entry.data, std::min<std::size_t>(sizeof value, entry.size));
    return value;
}

void append_bytes(CXTString<wchar_t> &text, Entry const &entry)
{
    text.AppendFormat(L"%u bytes", entry.size);
    for (unsigned int i = 0; i < std::min(entry.size, max_bytes); ++i)
        text.AppendFormat(L" %02X", entry.data[i]);
    if (entry.size > max_bytes)
        text += L" ...";
}

// Texts one after another, each in quotes.
void append_texts(CXTString<wchar_t> &text, Entry const &entry, TextForm form)
{
    CXTString<wchar_t> value;
    for (unsigned char const *at = entry.data; at != entry.get_end();) {
        if (at != entry.data)
            text += L", ";
        at = kortools::data::read_text(form, at, entry.get_end(), value);
        bool const isLong = value.GetLength() > max_characters;
        text += L'"';
        text += isLong ? value.Left(max_characters) + L"..." : value;
        text += L'"';
    }
}

// False for kinds that are no number.
bool append_number(CXTString<wchar_t> &text, Entry const &entry)
{
    switch (entry.kind) {
    case CCustomData::kindInt:
    case CCustomData::kindLong:
    case CCustomData::kindBool:
        text.AppendFormat(L"%d", load<int>(entry));
        return true;
    case CCustomData::kindUInt:
    case CCustomData::kindULong:
        text.AppendFormat(L"%u", load<unsigned int>(entry));
        return true;
    case CCustomData::kindLongInt:
    case CCustomData::kindXTime:
        text.AppendFormat(L"%I64d", load<long long>(entry));
        return true;
    case CCustomData::kindULongInt:
        text.AppendFormat(L"%I64u", load<unsigned long long>(entry));
        return true;
    case CCustomData::kindPtr:
        text.AppendFormat(L"0x%016I64X", load<unsigned long long>(entry));
        return true;
    case CCustomData::kindChar:
        text.AppendFormat(L"%d", load<signed char>(entry));
        return true;
    case CCustomData::kindUChar:
        text.AppendFormat(L"%u", load<unsigned char>(entry));
        return true;
    case CCustomData::kindFloat:
        text.AppendFormat(L"%.9g", static_cast<double>(load<float>(entry)));
        return true;
    case CCustomData::kindDouble:
        text.AppendFormat(L"%.17g", load<double>(entry));
        return true;
    default:
        return false;
    }
}

void append_utc_time(CXTString<wchar_t> &text, Entry const &entry)
{
    int fields[6] = {}; // from seconds to years
    std::memcpy(fields, entry.data, std::min<std::size_t>(sizeof fields, entry.size));
    text.AppendFormat(L"%04I64d-%02I64d-%02d %02d:%02d:%02d", fields[5] + 1900LL, fields[4] + 1LL,
        fields[3], fields[2], fields[1], fields[0]);
}

void append_value(CXTString<wchar_t> &text, Entry const &entry)
{
    TextForm const form = kortools::data::get_text_form(entry.kind, 0);
    TextForm const list_form = kortools::data::get_list_form(entry.kind, 0);
    if (form != TextForm::None || list_form != TextForm::None)
        append_texts(text, entry, form != TextForm::None ? form : list_form);
    else if (entry.kind == CCustomData::kindUTCTime)
        append_utc_time(text, entry);
    else if (!append_number(text, entry))
        append_bytes(text, entry);
}

} // namespace

CXTString<wchar_t> CCustomData::DumpCustomData(bool nested, int indent) const
{
    CXSingleLock const lock(&m_section, true);
    indent = std::clamp(indent, 0, max_depth);
    CXTString<wchar_t> const margin(L' ', indent_width * indent);
    CXTString<wchar_t> text;
    for (Entry const entry : Entries { m_data, m_size }) {
        text += margin;
        text.AppendFormat(
            L"%.4hs (%.4hs) : ", FourCharacters(entry.id).text, FourCharacters(entry.kind).text);
        CCustomData inner;
        bool const isNested = entry.kind == kindCustomData || entry.kind == kindOldCustomData;
        if (nested && isNested && indent < max_depth && ReadNested(entry, inner)) {
            text += L"Sub data\n";
            text += inner.DumpCustomData(nested, indent + 1);
        } else {
            append_value(text, entry);
            text += L'\n';
        }
    }
    return text;
}

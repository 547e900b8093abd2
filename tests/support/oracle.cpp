// SPDX-License-Identifier: MIT
#include "tests/support/oracle.h"

#include "tests/support/folders.h"

#include <fstream>
#include <stdexcept>

namespace kor_test {
namespace {

bool is_high(char32_t unit)
{
    return (unit & 0xFFFFFC00U) == 0xD800;
}
bool is_low(char32_t unit)
{
    return (unit & 0xFFFFFC00U) == 0xDC00;
}

unsigned long parse_hex(std::string_view digits)
{
    return std::stoul(std::string(digits), nullptr, 16);
}

} // namespace

std::vector<OracleRow> read_oracle(std::string const &name)
{
    std::ifstream file(data_folder() + "/" + name, std::ios::binary);
    if (!file)
        throw std::runtime_error("no recorded results in tests/data/" + name);
    std::vector<OracleRow> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        OracleRow row(1);
        for (char const ch : line) {
            if (ch == '\t')
                row.emplace_back();
            else if (ch != '\r')
                row.back() += ch;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::u16string unescape(std::string_view field)
{
    std::u16string units;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] != '\\') {
            units += static_cast<char16_t>(static_cast<unsigned char>(field[i]));
            continue;
        }
        char const code = field.at(++i);
        if (code == 'x') {
            units += static_cast<char16_t>(parse_hex(field.substr(i + 1, 4)));
            i += 4;
        } else {
            units += code == 't' ? u'\t' : code == 'n' ? u'\n' : u'\\';
        }
    }
    return units;
}

std::u16string units_from_hex(std::string_view field)
{
    std::u16string units;
    for (std::size_t i = 0; i + 4 <= field.size(); i += 4)
        units += static_cast<char16_t>(parse_hex(field.substr(i, 4)));
    return units;
}

std::string bytes_from_hex(std::string_view field)
{
    std::string bytes;
    for (std::size_t i = 0; i + 2 <= field.size(); i += 2)
        bytes += static_cast<char>(parse_hex(field.substr(i, 2)));
    return bytes;
}

std::wstring to_wide(std::u16string_view units)
{
    if constexpr (sizeof(wchar_t) == 2)
        return std::wstring(units.begin(), units.end());
    std::wstring text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t ch = units[i];
        if (is_high(ch) && i + 1 < units.size() && is_low(units[i + 1]))
            ch = 0x10000 + ((ch & 0x3FF) << 10) + (units[++i] & 0x3FF);
        text += static_cast<wchar_t>(ch);
    }
    return text;
}

std::u16string to_units(std::wstring_view text)
{
    std::u16string units;
    for (wchar_t const wide : text) {
        auto const ch = static_cast<char32_t>(wide);
        if (ch > 0xFFFF) {
            units += static_cast<char16_t>(0xD800 + ((ch - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + (ch & 0x3FF));
        } else {
            units += static_cast<char16_t>(ch);
        }
    }
    return units;
}

} // namespace kor_test

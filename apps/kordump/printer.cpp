// SPDX-License-Identifier: MIT
#include "apps/kordump/printer.h"

#include <algorithm>
#include <cstdio>

namespace kordump {
namespace {

constexpr std::size_t longest_value = 400;  // bytes of a value that are shown
constexpr unsigned int deepest_indent = 60; // levels; deeper ones are not indented more

// The beginning of a value, not cut within a character.
std::string_view shorten(std::string_view value)
{
    if (value.size() <= longest_value)
        return value;
    std::size_t end = longest_value;
    while ((static_cast<unsigned char>(value[end]) & 0xC0) == 0x80)
        --end;
    return value.substr(0, end);
}

} // namespace

TextReport::TextReport(Output output)
    : m_output(std::move(output))
{
}

void TextReport::Print(Line const &line, std::string_view value)
{
    char offset[24];
    std::snprintf(offset, sizeof offset, "%08llX  ", line.offset);
    std::string text = offset;
    text.append(std::size_t(2) * std::min(m_indent + line.indent, deepest_indent), ' ');
    if (!line.name.empty())
        text += line.name + ": ";
    std::string_view const shown = shorten(value);
    text += shown;
    if (shown.size() < value.size())
        text += "... (" + std::to_string(value.size()) + " characters)";
    if (!value.empty() && !line.text.empty())
        text += "  <" + line.text + ">";
    else
        text += line.text;
    m_output(text + '\n');
}

void TextReport::Open(Line const &line, std::string_view, Bracket)
{
    bool const shown = !line.name.empty() || !line.text.empty();
    if (shown)
        Print(line, "");
    m_open.push_back(shown ? line.indent + 1 : 0);
    m_indent += m_open.back();
}

void TextReport::OpenQuietly(std::string_view, Bracket)
{
    m_open.push_back(0);
}

void TextReport::Close()
{
    m_indent -= m_open.back();
    m_open.pop_back();
}

void TextReport::Put(Line const &line, std::string_view, std::string_view json)
{
    Print(line, line.value.empty() ? json : line.value);
}

void TextReport::PutQuietly(std::string_view, std::string_view) { }

void print_hex(ByteSpan bytes, unsigned long long offset, Output const &output)
{
    constexpr std::size_t row = 16;
    for (std::size_t begin = 0; begin < bytes.size(); begin += row) {
        std::string hex;
        std::string text;
        for (std::size_t i = begin; i < std::min(begin + row, bytes.size()); ++i) {
            char digits[4];
            std::snprintf(digits, sizeof digits, "%02X ", bytes[i]);
            hex += digits;
            text += bytes[i] >= 0x20 && bytes[i] < 0x7F ? static_cast<char>(bytes[i]) : '.';
        }
        char line[120];
        std::snprintf(
            line, sizeof line, "%08llX  %-48s |%s|\n", offset + begin, hex.c_str(), text.c_str());
        output(line);
    }
}

} // namespace kordump

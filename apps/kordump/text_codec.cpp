// SPDX-License-Identifier: MIT
#include "apps/kordump/text_codec.h"

#include <algorithm>
#include <cstdint>

namespace kordump {
namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

void append_utf8(std::string &text, std::uint32_t ch)
{
    auto const tail = [&](int shift) { text += static_cast<char>(0x80 | ((ch >> shift) & 0x3F)); };
    if (ch < 0x80) {
        text += static_cast<char>(ch);
    } else if (ch < 0x800) {
        text += static_cast<char>(0xC0 | (ch >> 6));
        tail(0);
    } else if (ch < 0x10000) {
        text += static_cast<char>(0xE0 | (ch >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (ch >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

constexpr std::uint32_t no_character = 0xFFFFFFFF;

// The character at `at`, which moves behind it; no_character when it is malformed, too long for
// its value, a surrogate or above 10FFFF.
std::uint32_t next_utf8(std::string_view bytes, std::size_t &at)
{
    auto const lead = static_cast<unsigned char>(bytes[at++]);
    if (lead < 0x80)
        return lead;
    std::size_t const tails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() - at < tails)
        return no_character;
    std::uint32_t ch = lead & (0x3FU >> tails);
    for (std::size_t i = 0; i < tails; ++i) {
        auto const tail = static_cast<unsigned char>(bytes[at++]);
        if ((tail & 0xC0) != 0x80)
            return no_character;
        ch = ch << 6 | (tail & 0x3F);
    }
    constexpr std::uint32_t least[] = { 0, 0x80, 0x800, 0x10000 };
    bool const good = ch >= least[tails] && ch < 0x110000 && (ch < 0xD800 || ch >= 0xE000);
    return good ? ch : no_character;
}

int digit_value(char digit)
{
    char const upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    std::size_t const value = digits.find(upper);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

} // namespace

std::optional<std::string> utf16_to_utf8(ByteSpan units)
{
    if (units.size() % 2 != 0)
        return std::nullopt;
    std::string text;
    text.reserve(units.size() / 2);
    std::uint32_t high = 0; // of a pair whose low half is next
    for (std::size_t at = 0; at < units.size(); at += 2) {
        std::uint32_t const unit = units[at] | static_cast<std::uint32_t>(units[at + 1]) << 8;
        bool const is_low = (unit & 0xFC00) == 0xDC00;
        if (is_low != (high != 0))
            return std::nullopt;
        if ((unit & 0xFC00) == 0xD800) {
            high = unit;
            continue;
        }
        append_utf8(text, is_low ? 0x10000 + ((high & 0x3FF) << 10) + (unit & 0x3FF) : unit);
        high = 0;
    }
    if (high != 0)
        return std::nullopt;
    return text;
}

std::string utf8_to_utf16(std::string_view text)
{
    std::string units;
    units.reserve(text.size() * 2);
    auto const append = [&](std::uint32_t unit) {
        units += static_cast<char>(unit & 0xFF);
        units += static_cast<char>(unit >> 8);
    };
    for (std::size_t at = 0; at < text.size();) {
        std::uint32_t const ch = next_utf8(text, at);
        if (ch == no_character)
            throw std::runtime_error("a text is not UTF-8");
        if (ch < 0x10000) {
            append(ch);
        } else {
            append(0xD800 + ((ch - 0x10000) >> 10));
            append(0xDC00 + (ch & 0x3FF));
        }
    }
    return units;
}

bool is_utf8(std::string_view bytes)
{
    for (std::size_t at = 0; at < bytes.size();) {
        if (next_utf8(bytes, at) == no_character)
            return false;
    }
    return true;
}

std::string to_hex(ByteSpan bytes)
{
    std::string text;
    text.reserve(bytes.size() * 2);
    for (unsigned char const byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::string from_hex(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 2);
    int high = -1;
    for (char const ch : text) {
        if (ch == ' ' && high < 0)
            continue;
        int const value = digit_value(ch);
        if (value < 0)
            throw std::runtime_error("'" + std::string(1, ch) + "' is no hexadecimal digit");
        if (high >= 0)
            bytes += static_cast<char>(high << 4 | value);
        high = high < 0 ? value : -1;
    }
    if (high >= 0)
        throw std::runtime_error("a byte takes two hexadecimal digits");
    return bytes;
}

std::string quote(std::string_view text)
{
    std::string quoted = "\"";
    for (char const ch : text) {
        auto const byte = static_cast<unsigned char>(ch);
        if (ch == '"' || ch == '\\') {
            quoted += '\\';
            quoted += ch;
        } else if (byte < 0x20 || byte == 0x7F) {
            quoted += "\\u00";
            quoted += digits[byte >> 4];
            quoted += digits[byte & 15];
        } else {
            quoted += ch;
        }
    }
    return quoted + '"';
}

std::string quote_bytes(std::string_view bytes)
{
    return is_utf8(bytes) ? quote(bytes) : "{\"hex\": \"" + to_hex(as_bytes(bytes)) + "\"}";
}

std::string print_four_characters(unsigned int code)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(code >> shift & 0xFF);
    bool const printable
        = std::ranges::all_of(text, [](char ch) { return ch >= ' ' && ch <= '~'; });
    return printable ? quote(text) : std::to_string(code);
}

} // namespace kordump

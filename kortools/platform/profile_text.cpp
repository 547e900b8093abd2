// SPDX-License-Identifier: MIT
#include "kortools/platform/profile_text.h"

#include "kortools/platform/utf8.h"
#include "kortools/platform/wide_text.h"

#include <charconv>

namespace kortools::platform {
namespace {

constexpr std::string_view ends_of_names = "=[];#";
constexpr std::string_view not_in_file_names = "=[];#/\\:*?\"<>|";
constexpr std::string_view bytes_mark = "hex:";
constexpr char digits[] = "0123456789abcdef";

void append_escape(std::string &encoded, unsigned int value, int digit_count)
{
    for (int shift = 4 * (digit_count - 1); shift >= 0; shift -= 4)
        encoded += digits[value >> shift & 0xF];
}

// A surrogate that is half of a pair is left to UTF-8.
bool stands_alone(std::wstring_view text, std::size_t at)
{
    auto const ch = [&](std::size_t i) { return i < text.size() ? char32_t(text[i]) : U'\0'; };
    if (!is_surrogate(ch(at)))
        return false;
    if (!wide_is_utf16)
        return true;
    if (is_high_surrogate(ch(at)))
        return !is_low_surrogate(ch(at + 1));
    return at == 0 || !is_high_surrogate(ch(at - 1));
}

std::string to_utf8(std::wstring_view text)
{
    auto const size = static_cast<std::size_t>(encode_utf8(text.data(), text.size(), nullptr, 0));
    std::string bytes(size, '\0');
    encode_utf8(text.data(), text.size(), bytes.data(), size);
    return bytes;
}

std::string encode(std::wstring_view text, std::string_view others)
{
    std::string encoded;
    std::size_t start = 0; // of what is not encoded yet
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const ch = static_cast<char32_t>(text[i]);
        bool const is_special = ch < 0x20 || ch == 0x7F || ch == U'%'
            || (ch < 0x80 && others.find(static_cast<char>(ch)) != std::string_view::npos);
        bool const is_alone = stands_alone(text, i);
        if (!is_special && !is_alone)
            continue;
        encoded += to_utf8(text.substr(start, i - start));
        encoded += is_alone ? "%u" : "%";
        append_escape(encoded, static_cast<unsigned int>(ch), is_alone ? 4 : 2);
        start = i + 1;
    }
    return encoded + to_utf8(text.substr(start));
}

// The value of hex digits; -1 when they are not all there.
int read_hex(std::string_view text, std::size_t at, std::size_t count)
{
    int value = 0;
    if (at > text.size() || text.size() - at < count)
        return -1;
    char const *const end = text.data() + at + count;
    auto const [last, error] = std::from_chars(text.data() + at, end, value, 16);
    return error == std::errc() && last == end && value >= 0 ? value : -1;
}

void append_utf8(std::wstring &text, std::string_view bytes)
{
    auto const length
        = static_cast<std::size_t>(decode_utf8(bytes.data(), bytes.size(), nullptr, 0));
    std::size_t const start = text.size();
    text.resize(start + length);
    decode_utf8(bytes.data(), bytes.size(), text.data() + start, length);
}

std::wstring decode(std::string_view encoded)
{
    std::wstring text;
    std::size_t start = 0; // of what is not decoded yet
    for (std::size_t i = encoded.find('%'); i != std::string_view::npos;
         i = encoded.find('%', i + 1)) {
        bool const is_wide = i + 1 < encoded.size() && encoded[i + 1] == 'u';
        int const value = is_wide ? read_hex(encoded, i + 2, 4) : read_hex(encoded, i + 1, 2);
        bool const is_escape
            = is_wide ? value > 0 && is_surrogate(char32_t(value)) : value > 0 && value < 0x80;
        if (!is_escape)
            continue;
        append_utf8(text, encoded.substr(start, i - start));
        text += static_cast<wchar_t>(value);
        i += is_wide ? 5 : 2;
        start = i + 1;
    }
    append_utf8(text, encoded.substr(start));
    return text;
}

std::optional<ProfileBytes> decode_bytes(std::string_view text)
{
    if (text.size() % 2 != 0)
        return std::nullopt;
    ProfileBytes bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        int const value = read_hex(text, 2 * i, 2);
        if (value < 0)
            return std::nullopt;
        bytes[i] = static_cast<unsigned char>(value);
    }
    return bytes;
}

} // namespace

std::string encode_profile_name(std::wstring_view name)
{
    std::string encoded = encode(name, ends_of_names);
    if (!encoded.empty() && encoded.back() == ' ') // outer blanks would be lost
        encoded.replace(encoded.size() - 1, 1, "%20");
    if (!encoded.empty() && encoded.front() == ' ')
        encoded.replace(0, 1, "%20");
    return encoded;
}

std::string encode_profile_file_name(std::wstring_view name)
{
    std::string encoded = encode(name, not_in_file_names);
    if (!encoded.empty() && encoded.front() == '.')
        encoded.replace(0, 1, "%2e");
    return encoded;
}

std::string encode_profile_value(ProfileValue const &value)
{
    if (auto const *const number = std::get_if<std::int32_t>(&value))
        return std::to_string(*number);
    if (auto const *const text = std::get_if<std::wstring>(&value))
        return '"' + encode(text->c_str(), {}) + '"'; // up to the first zero
    std::string encoded(bytes_mark);
    for (unsigned char const byte : std::get<ProfileBytes>(value))
        append_escape(encoded, byte, 2);
    return encoded;
}

ProfileValue decode_profile_value(std::string_view text)
{
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return decode(text.substr(1, text.size() - 2));
    std::int32_t number = 0;
    char const *const end = text.data() + text.size();
    auto const [last, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && last == end)
        return number;
    if (text.starts_with(bytes_mark)) {
        if (auto bytes = decode_bytes(text.substr(bytes_mark.size())))
            return *std::move(bytes);
    }
    return decode(text);
}

} // namespace kortools::platform

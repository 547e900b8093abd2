// SPDX-License-Identifier: MIT
#include "kortools/platform/scan_number.h"

#include "kortools/platform/locale_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace kortools::platform {
namespace {

constexpr int no_digit = 99;

int get_digit(char ch)
{
    if (ch >= '0' && ch <= '9')
        return ch - '0';
    char const small = static_cast<char>(ch | 0x20);
    return small >= 'a' && small <= 'z' ? small - 'a' + 10 : no_digit;
}

template <typename T> bool skip_sign(ScanField<T> &field)
{
    char const sign = field.peek();
    if (sign == '-' || sign == '+')
        field.skip();
    return sign == '-';
}

template <typename T> bool has_hex_prefix(ScanField<T> const &field)
{
    return field.peek() == '0' && (field.peek(1) | 0x20) == 'x';
}

// Any case. `word` is in small letters.
template <typename T> bool skip_word(ScanField<T> &field, char const *word)
{
    int length = 0;
    for (; word[length]; ++length) {
        if ((field.peek(length) | 0x20) != word[length])
            return false;
    }
    field.skip(length);
    return true;
}

// The digits of a floating-point number without its point, for std::from_chars. A number is decided
// by at most 768 significant digits and whether anything but zeros follows.
class Mantissa {
public:
    // `scale` is the exponent's change from one digit to the next.
    explicit Mantissa(int scale)
        : m_scale(scale)
    {
    }

    void add(char digit, bool is_behind_point)
    {
        m_has_digits = true;
        if (m_length == 0 && digit == '0') {
            m_exponent -= is_behind_point ? m_scale : 0;
        } else if (m_length < max_digits) {
            m_text[m_length++] = digit;
            m_exponent -= is_behind_point ? m_scale : 0;
        } else {
            m_has_rest = m_has_rest || digit != '0';
            m_exponent += is_behind_point ? 0 : m_scale;
        }
    }

    bool has_digits() const { return m_has_digits; }

    template <typename V> V get_value(long long exponent)
    {
        if (m_length == 0)
            return 0;
        exponent += m_exponent;
        int length = m_length;
        if (m_has_rest) {
            m_text[length++] = '1';
            exponent -= m_scale;
        }
        bool const is_hex = m_scale == 4;
        bool const is_large = exponent + static_cast<long long>(length) * m_scale > 0;
        m_text[length++] = is_hex ? 'p' : 'e';
        exponent = std::clamp(exponent, -99999LL, 99999LL);
        char *const end = std::to_chars(m_text + length, m_text + sizeof m_text, exponent).ptr;
        V value = 0;
        auto const format = is_hex ? std::chars_format::hex : std::chars_format::general;
        if (std::from_chars(m_text, end, value, format).ec == std::errc())
            return value;
        return is_large ? std::numeric_limits<V>::infinity() : V(0);
    }

private:
    static constexpr int max_digits = 800;
    int m_scale;
    char m_text[max_digits + 16];
    int m_length = 0;
    long long m_exponent = 0; // of the last digit
    bool m_has_digits = false;
    bool m_has_rest = false; // digits that were left out and are not 0
};

template <typename T>
void skip_digits(ScanField<T> &field, int base, bool behind_point, Mantissa &mantissa)
{
    for (; get_digit(field.peek()) < base; field.skip())
        mantissa.add(field.peek(), behind_point);
}

// Skips an exponent, when there is a whole one.
template <typename T> long long scan_exponent(ScanField<T> &field, char letter)
{
    constexpr long long limit = 1LL << 40; // more than any text has digits
    if ((field.peek() | 0x20) != letter)
        return 0;
    ScanField<T> exponent = field;
    exponent.skip();
    bool const is_negative = skip_sign(exponent);
    if (get_digit(exponent.peek()) >= 10)
        return 0;
    long long value = 0;
    for (; get_digit(exponent.peek()) < 10; exponent.skip())
        value = std::min(value * 10 + get_digit(exponent.peek()), limit);
    field = exponent;
    return is_negative ? -value : value;
}

template <typename T, typename V> bool scan_digits(ScanField<T> &field, V &value)
{
    T point[max_converted_length];
    int const point_length = get_decimal_point(point);
    bool is_hex = has_hex_prefix(field);
    if (is_hex) {
        ScanField<T> digits = field;
        digits.skip(2);
        if (digits.starts_with(point, point_length))
            digits.skip(point_length);
        is_hex = get_digit(digits.peek()) < 16;
    }
    if (is_hex)
        field.skip(2);
    int const base = is_hex ? 16 : 10;
    Mantissa mantissa(is_hex ? 4 : 1);
    skip_digits(field, base, false, mantissa);
    if (field.starts_with(point, point_length)) {
        field.skip(point_length);
        skip_digits(field, base, true, mantissa);
    }
    if (!mantissa.has_digits())
        return false;
    value = mantissa.get_value<V>(scan_exponent(field, is_hex ? 'p' : 'e'));
    return true;
}

// The (...) of a NaN, which says nothing about its value here.
template <typename T> void skip_parentheses(ScanField<T> &field)
{
    if (field.peek() != '(')
        return;
    int length = 1;
    while (get_digit(field.peek(length)) != no_digit || field.peek(length) == '_')
        ++length;
    if (field.peek(length) == ')')
        field.skip(length + 1);
}

template <typename T, typename V> bool scan_name(ScanField<T> &field, V &value)
{
    if (skip_word(field, "inf")) {
        skip_word(field, "inity");
        value = std::numeric_limits<V>::infinity();
        return true;
    }
    if (!skip_word(field, "nan"))
        return false;
    skip_parentheses(field);
    value = std::numeric_limits<V>::quiet_NaN();
    return true;
}

// strtoll's limits for signed numbers, strtoull's wrapping negation for others.
unsigned long long apply_sign(unsigned long long magnitude, bool is_negative, bool is_signed)
{
    constexpr auto max = static_cast<unsigned long long>(std::numeric_limits<long long>::max());
    if (is_signed)
        magnitude = std::min(magnitude, max + (is_negative ? 1 : 0));
    return is_negative ? 0 - magnitude : magnitude;
}

} // namespace

template <typename T>
bool scan_integer(ScanField<T> &field, int base, bool is_signed, unsigned long long &bits)
{
    ScanField<T> at = field;
    bool const is_negative = skip_sign(at);
    if ((base == 0 || base == 16) && has_hex_prefix(at)) {
        base = 16;
        at.skip(2);
    }
    if (base == 0)
        base = at.peek() == '0' ? 8 : 10;
    if (get_digit(at.peek()) >= base)
        return false;
    constexpr unsigned long long max = std::numeric_limits<unsigned long long>::max();
    unsigned long long magnitude = 0;
    bool is_too_large = false;
    for (; get_digit(at.peek()) < base; at.skip()) {
        auto const digit = static_cast<unsigned long long>(get_digit(at.peek()));
        auto const scale = static_cast<unsigned long long>(base);
        is_too_large = is_too_large || magnitude > (max - digit) / scale;
        magnitude = magnitude * scale + digit;
    }
    field = at;
    bits = is_too_large ? apply_sign(max, is_negative && is_signed, is_signed)
                        : apply_sign(magnitude, is_negative, is_signed);
    return true;
}

template <typename T, typename V> bool scan_float(ScanField<T> &field, V &value)
{
    ScanField<T> at = field;
    bool const is_negative = skip_sign(at);
    if (!scan_name(at, value) && !scan_digits(at, value))
        return false;
    field = at;
    value = is_negative ? -value : value;
    return true;
}

template bool scan_integer(ScanField<char> &, int, bool, unsigned long long &);
template bool scan_integer(ScanField<wchar_t> &, int, bool, unsigned long long &);
template bool scan_float(ScanField<char> &, float &);
template bool scan_float(ScanField<char> &, double &);
template bool scan_float(ScanField<wchar_t> &, float &);
template bool scan_float(ScanField<wchar_t> &, double &);

} // namespace kortools::platform

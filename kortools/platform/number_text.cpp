// SPDX-License-Identifier: MIT
#include "kortools/platform/number_text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace kortools::platform {
namespace {

bool is_capital(char type)
{
    return type >= 'A' && type <= 'Z';
}

char to_small(char type)
{
    return static_cast<char>(type | 0x20);
}

char to_capital(char letter)
{
    return static_cast<char>(letter & ~0x20);
}

void capitalize(char *first, char *last)
{
    for (; first != last; ++first) {
        if (*first >= 'a' && *first <= 'z')
            *first = to_capital(*first);
    }
}

void add_to_head(NumberText &text, char ch)
{
    text.head[text.head_length++] = ch;
}

void add_sign(NumberText &text, FormatDirective const &directive, bool negative)
{
    if (negative)
        add_to_head(text, '-');
    else if (directive.plus)
        add_to_head(text, '+');
    else if (directive.space)
        add_to_head(text, ' ');
}

int get_base(char type)
{
    if (type == 'o')
        return 8;
    return type == 'x' || type == 'X' ? 16 : 10;
}

// The default NaN of the processor, what 0.0 / 0.0 gives, is called indefinite.
std::string_view name_special(double value)
{
    if (std::isinf(value))
        return "inf";
    auto const bits = std::bit_cast<unsigned long long>(value);
    if (bits == 0xFFF8000000000000ULL)
        return "nan(ind)";
    return bits & 0x0008000000000000ULL ? "nan" : "nan(snan)";
}

// Prints one finite or special number into the buffer and the parts.
class FloatPrinter {
public:
    FloatPrinter(NumberText &text, FormatDirective const &directive, NumberBuffer &buffer)
        : m_text(text)
        , m_directive(directive)
        , m_buffer(buffer)
    {
    }

    void print_special(double value)
    {
        std::string_view const name = name_special(value);
        std::copy(name.begin(), name.end(), m_buffer);
        m_text.whole = finish(m_buffer + name.size());
    }

    void print_finite(double magnitude)
    {
        int const precision = m_directive.precision;
        switch (to_small(m_directive.type)) {
        case 'a':
            add_to_head(m_text, '0');
            add_to_head(m_text, is_capital(m_directive.type) ? 'X' : 'x');
            print_hexadecimal(magnitude, precision < 0 ? 13 : precision);
            break;
        case 'e':
            print_scientific(magnitude, precision < 0 ? 6 : precision);
            break;
        case 'f':
            print_fixed(magnitude, precision < 0 ? 6 : precision);
            break;
        default:
            print_general(magnitude, precision < 0 ? 6 : std::max(precision, 1));
        }
        m_text.has_point = m_text.has_point || m_directive.alternate;
    }

private:
    // Conversion gives at most `exact` digits behind the point; those beyond are all 0.
    void print(double magnitude, std::chars_format style, int precision, int exact)
    {
        auto const end = std::to_chars(
            m_buffer, m_buffer + sizeof m_buffer, magnitude, style, std::min(precision, exact));
        split(finish(end.ptr), style == std::chars_format::hex ? 'p' : 'e');
        m_text.trailing_zeros = static_cast<std::size_t>(std::max(precision - exact, 0));
    }

    void print_hexadecimal(double magnitude, int precision)
    {
        print(magnitude, std::chars_format::hex, precision, 13);
    }
    void print_scientific(double magnitude, int precision)
    {
        print(magnitude, std::chars_format::scientific, precision, max_exact_precision);
    }
    void print_fixed(double magnitude, int precision)
    {
        print(magnitude, std::chars_format::fixed, precision, max_exact_precision);
    }

    // With # %g keeps its trailing zeros, which no conversion of the library offers: the exponent
    // that the number has once rounded decides between the two other styles.
    void print_general(double magnitude, int digits)
    {
        if (!m_directive.alternate) {
            print(magnitude, std::chars_format::general, std::min(digits, max_exact_precision),
                max_exact_precision);
            return;
        }
        print_scientific(magnitude, digits - 1);
        int const exponent = read_exponent();
        if (exponent < -4 || exponent >= digits)
            return;
        m_text.exponent = {};
        print_fixed(magnitude, digits - 1 - exponent);
    }

    // What was printed up to `end`, in the case of the directive's letter.
    std::string_view finish(char *end) const
    {
        if (is_capital(m_directive.type))
            capitalize(m_buffer, end);
        return { m_buffer, static_cast<std::size_t>(end - m_buffer) };
    }

    // Cuts the digits at the point and at the exponent's letter.
    void split(std::string_view digits, char exponent_letter)
    {
        char const letter
            = is_capital(m_directive.type) ? to_capital(exponent_letter) : exponent_letter;
        if (std::size_t const at = digits.find(letter); at < digits.size()) {
            m_text.exponent = digits.substr(at);
            digits = digits.substr(0, at);
        }
        std::size_t const point = std::min(digits.find('.'), digits.size());
        m_text.whole = digits.substr(0, point);
        m_text.has_point = point < digits.size();
        m_text.fraction = m_text.has_point ? digits.substr(point + 1) : std::string_view();
    }

    int read_exponent() const
    {
        std::string_view const exponent = m_text.exponent;
        std::size_t const sign = exponent[1] == '+' ? 2 : 1; // from_chars knows no plus
        int value = 0;
        std::from_chars(exponent.data() + sign, exponent.data() + exponent.size(), value);
        return value;
    }

    NumberText &m_text;
    FormatDirective const &m_directive;
    NumberBuffer &m_buffer;
};

} // namespace

NumberText make_integer_text(FormatDirective const &directive, unsigned long long magnitude,
    bool negative, NumberBuffer &buffer)
{
    NumberText text;
    int const base = get_base(directive.type);
    char *end = buffer;
    if (magnitude != 0 || directive.precision != 0)
        end = std::to_chars(buffer, buffer + sizeof buffer, magnitude, base).ptr;
    if (directive.type == 'X')
        capitalize(buffer, end);
    text.whole = { buffer, static_cast<std::size_t>(end - buffer) };
    auto const digits = static_cast<std::size_t>(std::max(directive.precision, 0));
    text.leading_zeros = digits > text.whole.size() ? digits - text.whole.size() : 0;
    text.zero_padding = directive.zero && directive.precision < 0;
    if (directive.type == 'd' || directive.type == 'i')
        add_sign(text, directive, negative);
    if (!directive.alternate || base == 10)
        return text;
    if (base == 8) {
        if (text.leading_zeros == 0 && !text.whole.starts_with('0'))
            text.leading_zeros = 1;
    } else if (magnitude != 0) {
        add_to_head(text, '0');
        add_to_head(text, directive.type);
    }
    return text;
}

NumberText make_float_text(FormatDirective const &directive, double value, NumberBuffer &buffer)
{
    NumberText text;
    add_sign(text, directive, std::signbit(value));
    FloatPrinter printer(text, directive, buffer);
    if (std::isfinite(value)) {
        printer.print_finite(std::fabs(value));
        text.zero_padding = directive.zero;
    } else {
        printer.print_special(value);
    }
    return text;
}

} // namespace kortools::platform

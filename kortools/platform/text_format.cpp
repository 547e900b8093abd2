// SPDX-License-Identifier: MIT
//
// One engine for both systems. A directive is read, its argument taken in order, and its text
// written straight to the target: nothing is allocated, and a measuring call (capacity 0) costs the
// conversions but no writing.
//
// Width and precision of text count UTF-16 units on both systems, so that columns line up and cuts
// fall alike: where wchar_t has 32 bits, a character beyond U+FFFF counts two, and a precision that
// ends inside it keeps the first half as a lone surrogate, as on Windows.
#include "kortools/platform/text_format.h"

#include "kortools/platform/directive.h"
#include "kortools/platform/locale_text.h"
#include "kortools/platform/number_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace kortools::platform {
namespace {

// Writes to the target while there is room and counts on beyond it.
template <typename T> class Output {
public:
    Output(T *target, std::size_t capacity)
        : m_target(target)
        , m_room(capacity > 0 ? capacity - 1 : 0)
        , m_has_terminator(capacity > 0)
    {
    }

    void put(T ch)
    {
        if (m_length < m_room)
            m_target[m_length] = ch;
        ++m_length;
    }

    template <typename C> void put(C const *text, std::size_t length)
    {
        std::copy_n(text, get_writable(length), m_target + std::min(m_length, m_room));
        m_length += length;
    }

    void fill(char ch, std::size_t count)
    {
        std::fill_n(m_target + std::min(m_length, m_room), get_writable(count), static_cast<T>(ch));
        m_length += count;
    }

    // Terminates the target; an error leaves it empty.
    int finish(bool succeeded)
    {
        succeeded = succeeded && m_length <= INT_MAX;
        if (m_has_terminator)
            m_target[succeeded ? std::min(m_length, m_room) : 0] = 0;
        return succeeded ? static_cast<int>(m_length) : -1;
    }

private:
    std::size_t get_writable(std::size_t count) const
    {
        return m_length < m_room ? std::min(count, m_room - m_length) : 0;
    }

    T *m_target;
    std::size_t m_room; // characters before the terminator
    bool m_has_terminator;
    std::size_t m_length = 0;
};

template <typename T> constexpr std::size_t get_units(T ch)
{
    if constexpr (sizeof(T) > 2)
        return static_cast<std::uint_least32_t>(ch) > 0xFFFF ? 2 : 1;
    else
        return 1;
}

wchar_t get_first_half(wchar_t ch)
{
    return static_cast<wchar_t>(0xD800 + ((static_cast<std::uint_least32_t>(ch) - 0x10000) >> 10));
}

template <typename T> void read_flags(T const *&at, FormatDirective &directive)
{
    for (;; ++at) {
        switch (*at) {
        case '-':
            directive.left = true;
            break;
        case '+':
            directive.plus = true;
            break;
        case ' ':
            directive.space = true;
            break;
        case '0':
            directive.zero = true;
            break;
        case '#':
            directive.alternate = true;
            break;
        default:
            return;
        }
    }
}

// Reads what follows a '%'. False when width or precision exceed INT_MAX or the letter is none.
template <typename T>
bool read_directive(T const *&at, Arguments &arguments, FormatDirective &directive)
{
    read_flags(at, directive);
    if (*at == '*') {
        ++at;
        directive.width = arguments.take<int>();
        if (directive.width < 0) {
            if (directive.width == INT_MIN)
                return false;
            directive.left = true;
            directive.width = -directive.width;
        }
    } else if (!read_count(at, directive.width)) {
        return false;
    }
    if (*at == '.') {
        ++at;
        if (*at == '*') {
            ++at;
            directive.precision = std::max(arguments.take<int>(), -1);
        } else if (!read_count(at, directive.precision)) {
            return false;
        }
    }
    directive.size = read_argument_size(at);
    if (*at <= ' ' || *at > '~')
        return false;
    directive.type = static_cast<char>(*at++);
    return true;
}

template <typename T> class Formatter {
public:
    Formatter(T *target, std::size_t capacity, std::va_list list)
        : m_arguments(list)
        , m_output(target, capacity)
    {
    }

    int run(T const *format) { return m_output.finish(put_format(format)); }

private:
    bool put_format(T const *at)
    {
        for (;;) {
            T const *const literal = at;
            while (*at && *at != '%')
                ++at;
            m_output.put(literal, static_cast<std::size_t>(at - literal));
            if (!*at)
                return true;
            if (*++at == '%') {
                m_output.put(*at++);
                continue;
            }
            FormatDirective directive;
            if (!read_directive(at, m_arguments, directive) || !put_directive(directive))
                return false;
        }
    }

    bool put_directive(FormatDirective &directive)
    {
        switch (directive.type) {
        case 'd':
        case 'i':
            return put_signed(directive);
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            return put_unsigned(directive);
        case 'p':
            return put_pointer(directive);
        case 'a':
        case 'A':
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G': {
            NumberBuffer buffer;
            put_number(directive, make_float_text(directive, m_arguments.take<double>(), buffer));
            return true;
        }
        case 'c':
        case 'C':
            return put_character(directive);
        case 's':
        case 'S':
            if (is_wide_text<T>(directive.size, directive.type == 'S'))
                return put_text(directive, m_arguments.take<wchar_t const *>(), L"(null)");
            return put_text(directive, m_arguments.take<char const *>(), "(null)");
        default: // n among them: a format must not write to memory
            return false;
        }
    }

    // Numbers

    bool put_signed(FormatDirective const &directive)
    {
        long long value = 0;
        switch (directive.size) {
        case ArgumentSize::Char:
            value = static_cast<signed char>(m_arguments.take<int>());
            break;
        case ArgumentSize::Short:
            value = static_cast<short>(m_arguments.take<int>());
            break;
        case ArgumentSize::Long:
            value = m_arguments.take<long>();
            break;
        case ArgumentSize::Int64:
            value = m_arguments.take<long long>();
            break;
        case ArgumentSize::Default:
        case ArgumentSize::Int32:
            value = m_arguments.take<int>();
            break;
        default:
            return false;
        }
        auto const bits = static_cast<unsigned long long>(value);
        return put_integer(directive, value < 0 ? 0 - bits : bits, value < 0);
    }

    bool put_unsigned(FormatDirective const &directive)
    {
        switch (directive.size) {
        case ArgumentSize::Char:
            return put_integer(directive, static_cast<unsigned char>(m_arguments.take<int>()));
        case ArgumentSize::Short:
            return put_integer(directive, static_cast<unsigned short>(m_arguments.take<int>()));
        case ArgumentSize::Long:
            return put_integer(directive, m_arguments.take<unsigned long>());
        case ArgumentSize::Int64:
            return put_integer(directive, m_arguments.take<unsigned long long>());
        case ArgumentSize::Default:
        case ArgumentSize::Int32:
            return put_integer(directive, m_arguments.take<unsigned int>());
        default:
            return false;
        }
    }

    bool put_pointer(FormatDirective &directive)
    {
        auto const address = reinterpret_cast<std::uintptr_t>(m_arguments.take<void *>());
        directive.type = 'X';
        directive.precision = 2 * sizeof(void *);
        return put_integer(directive, address);
    }

    bool put_integer(
        FormatDirective const &directive, unsigned long long magnitude, bool negative = false)
    {
        if (is_plain_decimal(directive)) {
            put_decimal(magnitude, negative);
        } else {
            NumberBuffer buffer;
            put_number(directive, make_integer_text(directive, magnitude, negative, buffer));
        }
        return true;
    }

    static bool is_plain_decimal(FormatDirective const &directive)
    {
        bool const is_decimal
            = directive.type == 'd' || directive.type == 'u' || directive.type == 'i';
        return is_decimal && directive.width == 0 && directive.precision < 0 && !directive.plus
            && !directive.space;
    }

    // The commonest directives, without the parts that they do not have.
    void put_decimal(unsigned long long magnitude, bool negative)
    {
        char digits[24];
        char *const end = std::to_chars(digits, digits + sizeof digits, magnitude).ptr;
        if (negative)
            m_output.put('-');
        m_output.put(digits, static_cast<std::size_t>(end - digits));
    }

    void put_number(FormatDirective const &directive, NumberText const &text)
    {
        T point[max_converted_length];
        int const point_length = text.has_point ? get_decimal_point(point) : 0;
        std::size_t const length = text.head_length + text.leading_zeros + text.whole.size()
            + static_cast<std::size_t>(point_length) + text.fraction.size() + text.trailing_zeros
            + text.exponent.size();
        std::size_t const padding = get_padding(directive, length);
        bool const zeros = text.zero_padding && !directive.left;
        if (!directive.left && !zeros)
            m_output.fill(' ', padding);
        m_output.put(text.head, text.head_length);
        m_output.fill('0', text.leading_zeros + (zeros ? padding : 0));
        m_output.put(text.whole.data(), text.whole.size());
        m_output.put(point, static_cast<std::size_t>(point_length));
        m_output.put(text.fraction.data(), text.fraction.size());
        m_output.fill('0', text.trailing_zeros);
        m_output.put(text.exponent.data(), text.exponent.size());
        if (directive.left)
            m_output.fill(' ', padding);
    }

    // Characters and text

    bool put_character(FormatDirective const &directive)
    {
        int const value = m_arguments.take<int>();
        if (is_wide_text<T>(directive.size, directive.type == 'C'))
            return put_character(directive, static_cast<wchar_t>(value));
        return put_character(directive, static_cast<char>(value));
    }

    bool put_character(FormatDirective const &directive, T ch)
    {
        put_padded(directive, &ch, 1, get_units(ch));
        return true;
    }

    // Of the other width: nothing at all is written for one that does not convert.
    template <typename C> bool put_character(FormatDirective const &directive, C ch)
    {
        T converted[max_converted_length] = {};
        C const text[2] = { ch, 0 };
        int const length = ch ? Reader<C>(text).next(converted) : 1;
        auto const size = static_cast<std::size_t>(std::max(length, 0));
        if (size > 0)
            put_padded(directive, converted, size, size == 1 ? get_units(*converted) : size);
        return true;
    }

    template <typename C>
    bool put_text(FormatDirective const &directive, C const *text, C const *null)
    {
        if (!text)
            text = null;
        if constexpr (std::is_same_v<C, T>) {
            put_own_text(directive, text);
            return true;
        } else {
            return put_converted_text(directive, text);
        }
    }

    void put_own_text(FormatDirective const &directive, T const *text)
    {
        if (directive.width == 0 && directive.precision < 0) {
            m_output.put(text, std::char_traits<T>::length(text));
            return;
        }
        std::size_t const limit = get_limit(directive);
        std::size_t length = 0;
        std::size_t units = 0;
        // The limit is tested first: text with a precision need not be terminated.
        for (; units < limit && text[length]; ++length)
            units += get_units(text[length]);
        bool const is_halved = units > limit;
        put_before(directive, is_halved ? limit : units);
        m_output.put(text, is_halved ? length - 1 : length);
        if (is_halved)
            m_output.put(static_cast<T>(get_first_half(text[length - 1])));
        put_behind(directive, is_halved ? limit : units);
    }

    template <typename C> bool put_converted_text(FormatDirective const &directive, C const *text)
    {
        std::size_t units = 0;
        auto const count = [&units](T const *, std::size_t, std::size_t size) { units += size; };
        if (directive.width > 0 && !convert(directive, text, count))
            return false;
        put_before(directive, units);
        auto const put = [this](T const *part, std::size_t length, std::size_t) {
            m_output.put(part, length);
        };
        if (!convert(directive, text, put))
            return false;
        put_behind(directive, units);
        return true;
    }

    // Hands the converted characters to `consume`, as many whole ones as the precision allows.
    template <typename C, typename F>
    bool convert(FormatDirective const &directive, C const *text, F const &consume)
    {
        Reader<C> reader(text);
        T part[max_converted_length];
        for (std::size_t left = get_limit(directive); left > 0;) {
            int const length = reader.next(part);
            if (length <= 0)
                return length == 0;
            auto const size = static_cast<std::size_t>(length);
            std::size_t const units = size == 1 ? get_units(*part) : size;
            if (units > left)
                return true;
            consume(part, size, units);
            left -= units;
        }
        return true;
    }

    void put_padded(
        FormatDirective const &directive, T const *text, std::size_t length, std::size_t units)
    {
        put_before(directive, units);
        m_output.put(text, length);
        put_behind(directive, units);
    }

    // Windows fills text up with zeros too.
    void put_before(FormatDirective const &directive, std::size_t units)
    {
        if (!directive.left)
            m_output.fill(directive.zero ? '0' : ' ', get_padding(directive, units));
    }

    void put_behind(FormatDirective const &directive, std::size_t units)
    {
        if (directive.left)
            m_output.fill(' ', get_padding(directive, units));
    }

    static std::size_t get_limit(FormatDirective const &directive)
    {
        return directive.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(directive.precision);
    }

    static std::size_t get_padding(FormatDirective const &directive, std::size_t length)
    {
        auto const width = static_cast<std::size_t>(directive.width);
        return width > length ? width - length : 0;
    }

    template <typename C>
    using Reader = std::conditional_t<std::is_same_v<C, char>, NarrowReader, WideReader>;

    Arguments m_arguments;
    Output<T> m_output;
};

} // namespace

int format_text(char *target, std::size_t capacity, char const *format, std::va_list args)
{
    return Formatter<char>(target, capacity, args).run(format);
}

int format_text(wchar_t *target, std::size_t capacity, wchar_t const *format, std::va_list args)
{
    return Formatter<wchar_t>(target, capacity, args).run(format);
}

} // namespace kortools::platform

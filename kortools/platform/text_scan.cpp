// SPDX-License-Identifier: MIT
#include "kortools/platform/text_scan.h"

#include "kortools/platform/directive.h"
#include "kortools/platform/locale_text.h"
#include "kortools/platform/scan_number.h"

#include <algorithm>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kortools::platform {
namespace {

// The characters between [ and ], ranges not yet expanded.
template <typename T> struct CharacterSet {
    T const *first = nullptr;
    T const *last = nullptr;
    bool negated = false;

    bool contains(T ch) const
    {
        using U = std::make_unsigned_t<T>;
        auto const code = static_cast<U>(ch);
        for (T const *at = first; at != last; ++at) {
            auto low = static_cast<U>(*at);
            auto high = low;
            if (last - at > 2 && at[1] == '-') {
                at += 2;
                high = static_cast<U>(*at);
                if (high < low)
                    std::swap(low, high);
            }
            if (code >= low && code <= high)
                return !negated;
        }
        return negated;
    }
};

template <typename T> struct ScanDirective {
    bool suppressed = false; // *
    bool has_width = false;
    int width = 0;
    ArgumentSize size = ArgumentSize::Default;
    char type = 0;
    CharacterSet<T> set; // of [
};

// Reads what follows a '['. False when the ']' is missing; one right behind the [ or ^ is a member.
template <typename T> bool read_set(T const *&at, CharacterSet<T> &set)
{
    set.negated = *at == '^';
    if (set.negated)
        ++at;
    set.first = at;
    if (*at == ']')
        ++at;
    while (*at && *at != ']')
        ++at;
    set.last = at;
    return *at++ == ']';
}

// Reads what follows a '%'.
template <typename T> bool read_directive(T const *&at, ScanDirective<T> &directive)
{
    directive.suppressed = *at == '*';
    if (directive.suppressed)
        ++at;
    T const *const width = at;
    if (!read_count(at, directive.width))
        return false;
    directive.has_width = at != width;
    if (directive.has_width && directive.width == 0)
        return false;
    directive.size = read_argument_size(at);
    if (*at <= ' ' || *at > '~')
        return false;
    directive.type = static_cast<char>(*at++);
    return directive.type != '[' || read_set(at, directive.set);
}

enum class Outcome {
    Converted,
    Mismatch, // or an error, which ends the scan alike
    EndOfText,
};

template <typename T> class Scanner {
public:
    Scanner(T const *text, std::va_list list)
        : m_arguments(list)
        , m_begin(text)
        , m_at(text)
    {
    }

    int run(T const *format)
    {
        Outcome const outcome = scan(format);
        return outcome == Outcome::EndOfText && !m_has_converted ? -1 : m_stored;
    }

private:
    Outcome scan(T const *format)
    {
        while (*format) {
            Outcome outcome;
            if (is_space(*format)) {
                ++format;
                skip_space();
                continue;
            }
            if (*format == '%' && format[1] != '%') {
                outcome = scan_directive(++format);
            } else {
                format += *format == '%' ? 1 : 0;
                outcome = match(*format++);
            }
            if (outcome != Outcome::Converted)
                return outcome;
        }
        return Outcome::Converted;
    }

    Outcome match(T ch)
    {
        if (*m_at != ch)
            return fail();
        ++m_at;
        return Outcome::Converted;
    }

    Outcome fail() const { return *m_at ? Outcome::Mismatch : Outcome::EndOfText; }

    void skip_space()
    {
        while (*m_at && is_space(*m_at))
            ++m_at;
    }

    Outcome scan_directive(T const *&format)
    {
        ScanDirective<T> directive;
        if (!read_directive(format, directive))
            return Outcome::Mismatch;
        if (directive.type == 'n')
            return store_position(directive);
        bool const keeps_space
            = directive.type == 'c' || directive.type == 'C' || directive.type == '[';
        if (!keeps_space)
            skip_space();
        if (!*m_at)
            return is_letter(directive.type) ? Outcome::EndOfText : Outcome::Mismatch;
        Outcome const outcome = convert(directive);
        m_has_converted = m_has_converted || outcome == Outcome::Converted;
        m_stored += outcome == Outcome::Converted && !directive.suppressed ? 1 : 0;
        return outcome;
    }

    static bool is_letter(char type)
    {
        return std::string_view("diuoxXpaAeEfFgGcCsS[").find(type) != std::string_view::npos;
    }

    Outcome convert(ScanDirective<T> const &directive)
    {
        switch (directive.type) {
        case 'd':
            return convert_integer(directive, 10, true);
        case 'i':
            return convert_integer(directive, 0, true);
        case 'u':
            return convert_integer(directive, 10, false);
        case 'o':
            return convert_integer(directive, 8, false);
        case 'x':
        case 'X':
        case 'p':
            return convert_integer(directive, 16, false);
        case 'a':
        case 'A':
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
            if (directive.size == ArgumentSize::Long || directive.size == ArgumentSize::LongDouble)
                return convert_float<double>(directive);
            return convert_float<float>(directive);
        case 'c':
        case 'C':
        case 's':
        case 'S':
        case '[':
            return convert_text(directive);
        default:
            return Outcome::Mismatch;
        }
    }

    // Numbers

    ScanField<T> make_field(ScanDirective<T> const &directive) const
    {
        return ScanField<T>(m_at, directive.has_width ? directive.width : INT_MAX);
    }

    Outcome convert_integer(ScanDirective<T> const &directive, int base, bool is_signed)
    {
        ScanField<T> field = make_field(directive);
        unsigned long long bits = 0;
        if (!scan_integer(field, base, is_signed, bits))
            return Outcome::Mismatch;
        m_at = field.get_position();
        if (directive.suppressed)
            return Outcome::Converted;
        if (directive.type == 'p') {
            *m_arguments.take<void **>() = reinterpret_cast<void *>(bits);
            return Outcome::Converted;
        }
        return store_integer(directive.size, bits);
    }

    Outcome store_integer(ArgumentSize size, unsigned long long bits)
    {
        switch (size) {
        case ArgumentSize::Char:
            *m_arguments.take<unsigned char *>() = static_cast<unsigned char>(bits);
            break;
        case ArgumentSize::Short:
            *m_arguments.take<unsigned short *>() = static_cast<unsigned short>(bits);
            break;
        case ArgumentSize::Long:
            *m_arguments.take<unsigned long *>() = static_cast<unsigned long>(bits);
            break;
        case ArgumentSize::Int64:
            *m_arguments.take<unsigned long long *>() = bits;
            break;
        case ArgumentSize::Default:
        case ArgumentSize::Int32:
            *m_arguments.take<unsigned int *>() = static_cast<unsigned int>(bits);
            break;
        default:
            return Outcome::Mismatch;
        }
        return Outcome::Converted;
    }

    Outcome store_position(ScanDirective<T> const &directive)
    {
        if (directive.suppressed)
            return Outcome::Converted;
        return store_integer(directive.size, static_cast<unsigned long long>(m_at - m_begin));
    }

    template <typename V> Outcome convert_float(ScanDirective<T> const &directive)
    {
        ScanField<T> field = make_field(directive);
        V value = 0;
        if (!scan_float(field, value))
            return Outcome::Mismatch;
        m_at = field.get_position();
        if (!directive.suppressed)
            *m_arguments.take<V *>() = value;
        return Outcome::Converted;
    }

    // Text

    Outcome convert_text(ScanDirective<T> const &directive)
    {
        T const *const first = m_at;
        T const *const last = find_end(directive);
        if (last == first)
            return Outcome::Mismatch;
        bool const is_capital = directive.type == 'S' || directive.type == 'C';
        bool stored = true;
        if (!directive.suppressed) {
            bool const is_character = directive.type == 'c' || directive.type == 'C';
            if (is_wide_text<T>(directive.size, is_capital))
                stored = store_text<wchar_t>(first, last, !is_character);
            else
                stored = store_text<char>(first, last, !is_character);
        }
        m_at = last;
        return stored ? Outcome::Converted : Outcome::Mismatch;
    }

    T const *find_end(ScanDirective<T> const &directive) const
    {
        bool const is_character = directive.type == 'c' || directive.type == 'C';
        int left = directive.has_width ? directive.width : is_character ? 1 : INT_MAX;
        T const *at = m_at;
        for (; *at && left > 0; ++at, --left) {
            if (directive.type == '[' ? !directive.set.contains(*at)
                                      : !is_character && is_space(*at))
                break;
        }
        return at;
    }

    // Takes the buffer and its size. False when the text does not fit or does not convert.
    template <typename C> bool store_text(T const *first, T const *last, bool is_terminated)
    {
        C *const buffer = m_arguments.take<C *>();
        std::size_t const size = m_arguments.take<unsigned int>();
        std::size_t const room = is_terminated && size > 0 ? size - 1 : size;
        std::size_t length = 0;
        if (!copy_text(first, last, buffer, room, length) || (is_terminated && size == 0)) {
            if (size > 0)
                *buffer = 0;
            return false;
        }
        if (is_terminated)
            buffer[length] = 0;
        return true;
    }

    template <typename C>
    static bool copy_text(
        T const *first, T const *last, C *buffer, std::size_t room, std::size_t &length)
    {
        if constexpr (std::is_same_v<C, T>) {
            length = static_cast<std::size_t>(last - first);
            if (length <= room)
                std::copy(first, last, buffer);
            return length <= room;
        } else {
            std::conditional_t<std::is_same_v<T, char>, NarrowReader, WideReader> reader(
                first, last);
            C part[max_converted_length];
            for (;;) {
                int const count = reader.next(part);
                if (count <= 0)
                    return count == 0;
                auto const part_length = static_cast<std::size_t>(count);
                if (part_length > room - length)
                    return false;
                std::copy_n(part, part_length, buffer + length);
                length += part_length;
            }
        }
    }

    Arguments m_arguments;
    T const *m_begin;
    T const *m_at;
    int m_stored = 0;
    bool m_has_converted = false; // suppressed fields included
};

} // namespace

int scan_text(char const *text, char const *format, std::va_list args)
{
    return Scanner<char>(text, args).run(format);
}

int scan_text(wchar_t const *text, wchar_t const *format, std::va_list args)
{
    return Scanner<wchar_t>(text, args).run(format);
}

} // namespace kortools::platform

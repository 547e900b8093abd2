// SPDX-License-Identifier: MIT
// What printf and scanf have in common: their arguments, counts, size prefixes and the rule that
// tells narrow text from wide.
#pragma once

#include <climits>
#include <cstdarg>
#include <type_traits>

namespace kortools::platform {

// The arguments still to be taken. A class, because a va_list may be an array.
class Arguments {
public:
    explicit Arguments(std::va_list list) { va_copy(m_list, list); }
    ~Arguments() { va_end(m_list); }
    Arguments(Arguments const &) = delete;
    Arguments &operator=(Arguments const &) = delete;

    template <typename V> V take() { return va_arg(m_list, V); }

private:
    std::va_list m_list;
};

// The prefix before a directive's letter. `long` has 32 bits on Windows and 64 on Linux; j, z, t,
// I, I64 and ll mean 64 bits on both.
enum class ArgumentSize : unsigned char {
    Default,
    Char,
    Short,
    Long,
    Int32,
    Int64,
    LongDouble,
    Wide
};

// Reads a decimal number at `at`, none counting as 0; false when it exceeds INT_MAX.
template <typename T> bool read_count(T const *&at, int &count)
{
    long long value = 0;
    for (; *at >= '0' && *at <= '9'; ++at) {
        value = value * 10 + static_cast<long long>(*at - '0');
        if (value > INT_MAX)
            return false;
    }
    count = static_cast<int>(value);
    return true;
}

template <typename T> ArgumentSize read_size_after_i(T const *&at)
{
    if (at[0] == '6' && at[1] == '4') {
        at += 2;
        return ArgumentSize::Int64;
    }
    if (at[0] == '3' && at[1] == '2') {
        at += 2;
        return ArgumentSize::Int32;
    }
    return ArgumentSize::Int64; // the size of a pointer
}

// Reads the size prefix at `at`, if there is one.
template <typename T> ArgumentSize read_argument_size(T const *&at)
{
    switch (*at) {
    case 'h':
    case 'l': {
        bool const is_long = *at == 'l';
        bool const twice = at[1] == at[0];
        at += twice ? 2 : 1;
        if (is_long)
            return twice ? ArgumentSize::Int64 : ArgumentSize::Long;
        return twice ? ArgumentSize::Char : ArgumentSize::Short;
    }
    case 'j':
    case 'z':
    case 't':
        ++at;
        return ArgumentSize::Int64;
    case 'I':
        ++at;
        return read_size_after_i(at);
    case 'L':
        ++at;
        return ArgumentSize::LongDouble;
    case 'w':
        ++at;
        return ArgumentSize::Wide;
    default:
        return ArgumentSize::Default;
    }
}

// Whether a text directive in a format of T has a wide argument: h means narrow, l and w wide, and
// without a prefix a small letter means the format's own width, a capital one the other.
template <typename T> constexpr bool is_wide_text(ArgumentSize size, bool capital)
{
    switch (size) {
    case ArgumentSize::Char:
    case ArgumentSize::Short:
        return false;
    case ArgumentSize::Long:
    case ArgumentSize::Int64:
    case ArgumentSize::Wide:
        return true;
    default:
        return std::is_same_v<T, wchar_t> != capital;
    }
}

} // namespace kortools::platform

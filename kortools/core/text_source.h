// SPDX-License-Identifier: MIT
// Which classes a CXTString can be built from, assigned and compared with, besides itself: the
// string class of the platform's user-interface library (it converts to a pointer and knows its
// length) and everything that converts to a standard string view.
#pragma once

#include <concepts>
#include <string_view>
#include <type_traits>

template <class T> class CXTString;

namespace kortools::core {

template <class T> using other_char_t = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;

template <class T> void accept_own_string(CXTString<T> const *);

// Also true for classes derived from CXTString.
template <class S>
concept OwnString = requires(S const *text)
{
    accept_own_string(text);
};

template <class S, class T>
concept PlatformString
    = std::is_class_v<S> && !OwnString<
          S> && std::convertible_to<S const &, T const *> && requires(S const &text)
{
    {
        text.GetLength()
        } -> std::convertible_to<long long>;
};

template <class S, class T>
concept StandardText
    = std::is_class_v<S> && !OwnString<
          S> && !PlatformString<S, T> && std::convertible_to<S const &, std::basic_string_view<T>>;

template <class S, class T>
concept ForeignText = PlatformString<S, T> || StandardText<S, T>;

// Text of the other width only; a class with both is taken at the string's own width.
template <class S, class T>
concept OtherForeignText = !ForeignText<S, T> && ForeignText<S, other_char_t<T>>;

template <class T, ForeignText<T> S> std::basic_string_view<T> view_of(S const &text)
{
    if constexpr (PlatformString<S, T>) {
        T const *const start = text;
        long long const length = static_cast<long long>(text.GetLength());
        if (!start || length <= 0)
            return {};
        return { start, static_cast<std::size_t>(length) };
    } else {
        return text;
    }
}

} // namespace kortools::core

// SPDX-License-Identifier: MIT
// Collation by the C library. It has no caseless form: copies of both texts are lower-cased first.
#include "kortools/platform/text_compare.h"

#include "kortools/platform/locale_text.h"

#include <clocale>
#include <cstring>
#include <cwchar>
#include <string>

namespace kortools::platform {
namespace {

// A lower-cased copy; short texts stay on the stack.
template <typename T> class LowerText {
public:
    explicit LowerText(T const *text)
    {
        std::size_t const length = std::char_traits<T>::length(text);
        T *target = m_short;
        if (length >= short_capacity) {
            m_long.resize(length);
            target = m_long.data();
        }
        for (std::size_t i = 0; i < length; ++i)
            target[i] = to_lower(text[i]);
        target[length] = 0;
        m_text = target;
    }
    LowerText(LowerText const &) = delete;
    LowerText &operator=(LowerText const &) = delete;

    T const *get() const { return m_text; }

private:
    static constexpr std::size_t short_capacity = 256;
    T m_short[short_capacity];
    std::basic_string<T> m_long;
    T const *m_text;
};

} // namespace

int collate(char const *a, char const *b)
{
    return std::strcoll(a, b);
}

int collate(wchar_t const *a, wchar_t const *b)
{
    return is_c_locale(LC_COLLATE) ? compare_ordinal(a, b) : std::wcscoll(a, b);
}

int collate_no_case(char const *a, char const *b)
{
    if (is_c_locale(LC_COLLATE))
        return compare_no_case(a, b);
    return std::strcoll(LowerText<char>(a).get(), LowerText<char>(b).get());
}

int collate_no_case(wchar_t const *a, wchar_t const *b)
{
    if (is_c_locale(LC_COLLATE))
        return compare_no_case(a, b);
    return std::wcscoll(LowerText<wchar_t>(a).get(), LowerText<wchar_t>(b).get());
}

} // namespace kortools::platform

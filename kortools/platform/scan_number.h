// SPDX-License-Identifier: MIT
// Numbers as scanf reads them: the longest beginning of the field that is a number.
#pragma once

namespace kortools::platform {

// The rest of a terminated text, as far as a field's width allows.
template <typename T> class ScanField {
public:
    ScanField(T const *text, int width)
        : m_at(text)
        , m_left(width)
    {
    }

    T const *get_position() const { return m_at; }

    // The character `ahead` of the position, all before it being inside the field; 0 at the end and
    // for what is not ASCII.
    char peek(int ahead = 0) const
    {
        if (ahead >= m_left)
            return 0;
        T const ch = m_at[ahead];
        return ch > 0 && ch < 0x80 ? static_cast<char>(ch) : '\0';
    }

    // Whether the text at the position begins with `text`; such a text may hold any character.
    bool starts_with(T const *text, int length) const
    {
        for (int i = 0; i < length; ++i) {
            if (i >= m_left || m_at[i] != text[i])
                return false;
        }
        return true;
    }

    void skip(int count = 1)
    {
        m_at += count;
        m_left -= count;
    }

private:
    T const *m_at;
    int m_left;
};

// Base 0 takes it from the number's prefix, 16 allows the prefix 0x. The value is that of strtoll
// (strtoull when not `is_signed`), limits included. False, nothing skipped, when there is no
// number.
template <typename T>
bool scan_integer(ScanField<T> &field, int base, bool is_signed, unsigned long long &bits);

// Decimal and hexadecimal numbers, inf, infinity, nan and nan(...), with the locale's decimal
// point. Correctly rounded; infinity and zero beyond the range. V is float or double.
template <typename T, typename V> bool scan_float(ScanField<T> &field, V &value);

} // namespace kortools::platform

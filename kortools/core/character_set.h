// SPDX-License-Identifier: MIT
// CharacterSet: is a character among those of a text?
//
// Characters below 256 are answered by a bitmap. For wider ones a second bitmap, of their low
// bytes, rules most of those out that are not in the set; the rest is looked for in the text.
#pragma once

#include <bitset>
#include <string>
#include <type_traits>

namespace kortools::core {

template <class T> class CharacterSet {
public:
    // `characters` ends at its first zero, which is not in the set, and is kept as a pointer.
    explicit CharacterSet(T const *characters)
        : m_characters(characters)
    {
        for (; characters[m_count] != T(); ++m_count) {
            auto const code = static_cast<std::make_unsigned_t<T>>(characters[m_count]);
            (code < 256 ? m_narrow : m_low_bytes).set(code & 0xFF);
        }
    }

    bool is_empty() const { return m_count == 0; }

    bool contains(T ch) const
    {
        auto const code = static_cast<std::make_unsigned_t<T>>(ch);
        if (sizeof(T) == 1 || code < 256)
            return m_narrow[code & 0xFF];
        return m_low_bytes[code & 0xFF]
            && std::char_traits<T>::find(m_characters, m_count, ch) != nullptr;
    }

private:
    T const *m_characters;
    std::size_t m_count = 0;
    std::bitset<256> m_narrow;
    std::bitset<256> m_low_bytes;
};

} // namespace kortools::core

// SPDX-License-Identifier: MIT
// Where a conversion puts its characters. A conversion is written once, over either sink: one
// counts, the other stores while there is room.
#pragma once

#include "kortools/platform/ascii_text.h"

#include <algorithm>
#include <cstddef>

namespace kortools::platform {

template <class T> class CountingSink {
public:
    bool put(T) { return put_count(1); }

    // Takes the leading ASCII characters of `source`; returns how many.
    template <class U> std::size_t put_ascii(U const *source, std::size_t length)
    {
        std::size_t const count = count_ascii(source, length);
        m_count += count;
        return count;
    }
    std::size_t get_count() const { return m_count; }

private:
    bool put_count(std::size_t count)
    {
        m_count += count;
        return true;
    }
    std::size_t m_count = 0;
};

template <class T> class StoringSink {
public:
    StoringSink(T *target, std::size_t capacity)
        : m_begin(target)
        , m_at(target)
        , m_end(target + capacity)
    {
    }

    // False when there is no room.
    bool put(T ch)
    {
        if (m_at == m_end)
            return false;
        *m_at++ = ch;
        return true;
    }

    // Stops at the end of the room too; the next put() then reports it.
    template <class U> std::size_t put_ascii(U const *source, std::size_t length)
    {
        auto const room = static_cast<std::size_t>(m_end - m_at);
        std::size_t const count = copy_ascii(source, std::min(length, room), m_at);
        m_at += count;
        return count;
    }
    std::size_t get_count() const { return static_cast<std::size_t>(m_at - m_begin); }

private:
    T *m_begin;
    T *m_at;
    T *m_end;
};

// Runs `conversion`, a callable that takes either sink and returns false when the sink is full.
// With a null `target` only counts. Returns the number of characters, or -1.
template <class T, class Conversion>
long long run_into_sink(T *target, std::size_t capacity, Conversion conversion)
{
    auto const run = [&](auto sink) {
        return conversion(sink) ? static_cast<long long>(sink.get_count()) : -1;
    };
    return target ? run(StoringSink<T>(target, capacity)) : run(CountingSink<T>());
}

} // namespace kortools::platform

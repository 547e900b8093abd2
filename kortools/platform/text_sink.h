// SPDX-License-Identifier: MIT
// Where a conversion puts its characters. A conversion is written once, over either sink: one
// counts, the other stores. Neither checks: a conversion asks for the room of many characters at
// once, so that its inner loop need not.
#pragma once

#include "kortools/platform/ascii_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kortools::platform {

template <class T> class CountingSink {
public:
    using Element = T;

    std::size_t get_room() const { return SIZE_MAX; }
    bool has_room(std::size_t) const { return true; }
    void put(T) { ++m_count; }

    // Puts the first `used` of `count` characters; needs room for `count`.
    template <std::size_t count, class U> void put_block(U const *, std::size_t used)
    {
        m_count += used;
    }
    // Puts the ASCII characters at `source`, 16 at a time while there is room and `count` allows;
    // returns how many.
    template <class U> std::size_t put_ascii_blocks(U const *source, std::size_t count)
    {
        std::size_t done = 0;
        while (count - done >= 16 && is_ascii_block<16>(source + done))
            done += 16;
        m_count += done;
        return done;
    }
    std::size_t get_count() const { return m_count; }

private:
    std::size_t m_count = 0;
};

template <class T> class StoringSink {
public:
    using Element = T;

    StoringSink(T *target, std::size_t capacity)
        : m_begin(target)
        , m_at(target)
        , m_end(target + capacity)
    {
    }
    std::size_t get_room() const { return static_cast<std::size_t>(m_end - m_at); }
    bool has_room(std::size_t count) const { return get_room() >= count; }
    void put(T ch) { *m_at++ = ch; }
    template <std::size_t count, class U> void put_block(U const *source, std::size_t used)
    {
        copy_block<count>(source, m_at);
        m_at += used;
    }
    template <class U> std::size_t put_ascii_blocks(U const *source, std::size_t count)
    {
        std::size_t const limit = std::min(count, get_room());
        std::size_t done = 0;
        while (limit - done >= 16 && copy_ascii_block(source + done, m_at + done))
            done += 16;
        m_at += done;
        return done;
    }
    std::size_t get_count() const { return static_cast<std::size_t>(m_at - m_begin); }

private:
    T *m_begin;
    T *m_at;
    T *m_end;
};

// Runs `conversion`, a callable that takes either sink and returns false when there is no room.
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

// SPDX-License-Identifier: MIT
// The bytes of a file, from which nothing can be read that is not there.
#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>

namespace kordump {

using ByteSpan = std::span<unsigned char const>;

// Why reading stopped. What was not understood begins where the cursor is then.
struct Damage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Cursor {
public:
    explicit Cursor(ByteSpan bytes)
        : m_bytes(bytes)
    {
    }

    std::size_t GetOffset() const { return m_offset; }
    std::size_t GetLeft() const { return m_bytes.size() - m_offset; }
    ByteSpan GetRest() const { return m_bytes.subspan(m_offset); }
    void Seek(std::size_t offset) { m_offset = offset; }

    // Throws Damage, and does not move, when there are fewer.
    ByteSpan Take(unsigned long long size);

    // A little-endian number of up to 8 bytes.
    unsigned long long TakeNumber(unsigned int size);

    // True when the next four bytes are this number.
    bool IsNext(unsigned int number) const;

private:
    ByteSpan m_bytes;
    std::size_t m_offset = 0; // at most the size
};

unsigned long long read_number(ByteSpan bytes);

// Puts the cursor back to where it was, unless what was begun there is complete.
class Attempt {
public:
    explicit Attempt(Cursor &cursor)
        : m_cursor(cursor)
        , m_start(cursor.GetOffset())
    {
    }
    ~Attempt()
    {
        if (!m_done)
            m_cursor.Seek(m_start);
    }
    Attempt(Attempt const &) = delete;
    Attempt &operator=(Attempt const &) = delete;

    void Succeed() { m_done = true; }

private:
    Cursor &m_cursor;
    std::size_t const m_start;
    bool m_done = false;
};

} // namespace kordump

// SPDX-License-Identifier: MIT
// What the sources of CCustomData share: the entries of a block, and the lock of two containers.
//
// A block is a row of entries without gaps: identifier, size and kind in four bytes each, then as
// many bytes as the size says. A block is counted, and so checked, when it becomes a container's;
// after that it is walked without checks.
#pragma once

#include "kortools/core/critical_section.h"

#include <cstring>
#include <functional>

namespace kortools::data {

inline constexpr unsigned int entry_header_size = 12;  // bytes
inline constexpr unsigned int stream_header_size = 20; // bytes, counted in the stream's total

// The stream's total has 32 bits.
inline constexpr unsigned int max_block_size = 0xFFFFFFFFU - stream_header_size;

struct Entry {
    unsigned int id = 0;
    unsigned int size = 0; // bytes of data
    unsigned int kind = 0;
    unsigned char *data = nullptr; // null: there is no entry

    explicit operator bool() const { return data != nullptr; }
    unsigned char *get_start() const { return data - entry_header_size; }
    unsigned char *get_end() const { return data + size; }
};

inline Entry read_entry(unsigned char *at)
{
    unsigned int header[3];
    std::memcpy(header, at, sizeof header);
    return { header[0], header[1], header[2], at + entry_header_size };
}

inline void write_entry_header(unsigned char *at, unsigned id, unsigned size, unsigned kind)
{
    unsigned int const header[] = { id, size, kind };
    std::memcpy(at, header, sizeof header);
}

// for (Entry const entry : Entries { block, size })
struct Entries {
    class Iterator {
    public:
        explicit Iterator(unsigned char *at)
            : m_at(at)
        {
        }
        Entry operator*() const { return read_entry(m_at); }
        Iterator &operator++()
        {
            m_at = read_entry(m_at).get_end();
            return *this;
        }
        bool operator==(Iterator const &) const = default;

    private:
        unsigned char *m_at;
    };

    unsigned char *block;
    unsigned int size;

    Iterator begin() const { return Iterator(block); }
    Iterator end() const { return Iterator(block + size); }
};

// False when the last entry does not end with the block.
inline bool count_entries(void const *block, unsigned int size, unsigned int &count)
{
    auto const *at = static_cast<unsigned char const *>(block);
    for (count = 0; size != 0; ++count) {
        if (size < entry_header_size)
            return false;
        unsigned int data_size;
        std::memcpy(&data_size, at + 4, sizeof data_size);
        if (data_size > size - entry_header_size)
            return false;
        at += entry_header_size + data_size;
        size -= entry_header_size + data_size;
    }
    return true;
}

// Holds the locks of two containers, which may be one, taken in the order of their addresses.
class PairLock {
public:
    PairLock(CXCriticalSection *a, CXCriticalSection *b)
        : m_first(std::less<>()(a, b) ? a : b, true)
        , m_second(std::less<>()(a, b) ? b : a, true)
    {
    }

private:
    CXSingleLock m_first;
    CXSingleLock m_second; // freed before the first
};

} // namespace kortools::data

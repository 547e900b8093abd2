// SPDX-License-Identifier: MIT
// CCustomData::SourceBytes: bytes that a caller wants to store, which may lie in the container's
// own block and would then move away under the operation.
#pragma once

#include "kortools/data/custom_data.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>

class CCustomData::SourceBytes {
public:
    SourceBytes(CCustomData const &container, void const *bytes, std::size_t size)
        : m_bytes(bytes)
    {
        std::less<void const *> const is_before;
        unsigned char const *const block = container.m_data;
        if (!block || !bytes || size == 0 || is_before(bytes, block)
            || !is_before(bytes, block + container.m_capacity))
            return;
        m_copy = std::malloc(size);
        m_isLost = !m_copy;
        if (m_copy)
            std::memcpy(m_copy, bytes, size);
        m_bytes = m_copy;
    }
    SourceBytes(SourceBytes const &) = delete;
    SourceBytes &operator=(SourceBytes const &) = delete;
    ~SourceBytes() { std::free(m_copy); }

    void const *Get() const { return m_bytes; } // null when the caller's pointer was
    bool IsLost() const { return m_isLost; }    // there was no memory for the copy

private:
    void const *m_bytes;
    void *m_copy = nullptr;
    bool m_isLost = false;
};

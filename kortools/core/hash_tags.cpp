// SPDX-License-Identifier: MIT
#include "kortools/core/hash_tags.h"

#include "kortools/core/hash_slot.h"

#include <utility>

namespace kortools::core {

bool HashTags::Allocate(unsigned size) noexcept
{
    Release();
    void *const block = allocate_table(std::size_t { size } + tag_padding, alignof(Tag));
    if (!block)
        return false;
    m_tags = static_cast<Tag *>(block);
    m_reciprocal = ~std::uint64_t { 0 } / size + 1;
    m_size = size;
    m_path = size < 11 ? 0x13 : 0x213; // the offset 9 would wrap twice in 5 or 7 slots
    Clear();
    return true;
}

void HashTags::Release() noexcept
{
    if (m_reciprocal != 0) // a module's no_tags may be another one
        free_table(m_tags, alignof(Tag));
    m_tags = const_cast<Tag *>(no_tags);
    m_reciprocal = 0;
    m_size = m_path = 1;
}

void HashTags::Swap(HashTags &other) noexcept
{
    std::swap(m_tags, other.m_tags);
    std::swap(m_reciprocal, other.m_reciprocal);
    std::swap(m_size, other.m_size);
    std::swap(m_path, other.m_path);
}

// A window that begins near the end runs on into a copy of the first tags; in the smallest tables
// it runs over them more than once.
void HashTags::Mirror(unsigned pos)
{
    std::size_t const end = std::size_t { m_size } + window_size - 1;
    for (std::size_t i = std::size_t { pos } + m_size; i < end; i += m_size)
        m_tags[i] = m_tags[pos];
}

} // namespace kortools::core

// SPDX-License-Identifier: MIT
#include "plugins/bitmaps/write_memory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

// In front of each block; all of a thread's are in a ring.
struct alignas(std::max_align_t) Header {
    Header *next;
    Header *previous;
};

thread_local Header s_ring = { nullptr, nullptr };

Header &get_ring()
{
    if (!s_ring.next)
        s_ring.next = s_ring.previous = &s_ring;
    return s_ring;
}

void leave_ring(Header &header)
{
    header.previous->next = header.next;
    header.next->previous = header.previous;
}

void *enter_ring(void *block)
{
    if (!block)
        throw std::bad_alloc();
    Header &ring = get_ring();
    auto *const header = new (block) Header { ring.next, &ring };
    ring.next->previous = header;
    ring.next = header;
    return header + 1;
}

} // namespace

void *bitmap_plugin_allocate(std::size_t size)
{
    return enter_ring(std::malloc(sizeof(Header) + size));
}

void *bitmap_plugin_reallocate(void *block, std::size_t size)
{
    if (!block)
        return bitmap_plugin_allocate(size);
    Header *const header = static_cast<Header *>(block) - 1;
    leave_ring(*header);
    void *const moved = std::realloc(header, sizeof(Header) + size);
    if (!moved)
        enter_ring(header);
    return enter_ring(moved);
}

void bitmap_plugin_free(void *block)
{
    if (!block)
        return;
    Header *const header = static_cast<Header *>(block) - 1;
    leave_ring(*header);
    std::free(header);
}

bitmap_plugin::WriteMemory::~WriteMemory()
{
    Header &ring = get_ring();
    while (ring.next != &ring)
        bitmap_plugin_free(ring.next + 1);
}

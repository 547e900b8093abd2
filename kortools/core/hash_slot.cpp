// SPDX-License-Identifier: MIT
#include "kortools/core/hash_slot.h"

#include "kortools/platform/large_pages.h"

namespace kortools::core {

void *allocate_table(std::size_t size_bytes, std::size_t alignment) noexcept
{
    void *const block = alignment > __STDCPP_DEFAULT_NEW_ALIGNMENT__
        ? ::operator new (size_bytes, std::align_val_t { alignment }, std::nothrow)
        : ::operator new(size_bytes, std::nothrow);
    if (block)
        platform::prefer_large_pages(block, size_bytes);
    return block;
}

void free_table(void *block, std::size_t alignment) noexcept
{
    if (alignment > __STDCPP_DEFAULT_NEW_ALIGNMENT__)
        ::operator delete (block, std::align_val_t { alignment });
    else
        ::operator delete(block);
}

} // namespace kortools::core

/* SPDX-License-Identifier: MIT */
/* The memory of the image library's writer, in C too. */
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Both throw std::bad_alloc; what was allocated on this thread is freed with its WriteMemory. */
void *bitmap_plugin_allocate(size_t size);
void *bitmap_plugin_reallocate(void *block, size_t size);
void bitmap_plugin_free(void *block);

#ifdef __cplusplus
}

namespace bitmap_plugin {

// Owns what the writer allocates on this thread while it lives. One at a time.
class WriteMemory {
public:
    WriteMemory() = default;
    WriteMemory(WriteMemory const &) = delete;
    WriteMemory &operator=(WriteMemory const &) = delete;
    ~WriteMemory();
};

} // namespace bitmap_plugin
#endif

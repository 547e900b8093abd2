// SPDX-License-Identifier: MIT
// The image library's code, which lies in its headers; compiled without our warnings.
// The writer does not look whether its buffers grow: its memory comes from where saving begins, and
// what there is thrown passes through here (-fexceptions).
#include "plugins/bitmaps/write_memory.h"

#define STBI_NO_STDIO
#define STBIW_MALLOC(size) bitmap_plugin_allocate(size)
#define STBIW_REALLOC(block, size) bitmap_plugin_reallocate(block, size)
#define STBIW_FREE(block) bitmap_plugin_free(block)
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

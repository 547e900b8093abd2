// SPDX-License-Identifier: MIT
// The image library's code, which lies in its headers; compiled without our warnings.
#define STBI_NO_STDIO
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

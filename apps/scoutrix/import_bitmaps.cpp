// SPDX-License-Identifier: MIT
// BMP: a 14-byte file header, then an information header that begins with its own size (12 in the
// oldest form, 40 or more since). PNG (RFC 2083): a signature, then chunks of length, name, data
// and CRC-32; IHDR comes first and IEND last.
#include "apps/scoutrix/importer.h"

#include "kortools/archive/file.h"

#include <cstring>
#include <zlib.h>

namespace scoutrix {
namespace {

unsigned int get_u16(unsigned char const *bytes)
{
    return bytes[0] | static_cast<unsigned int>(bytes[1]) << 8;
}

unsigned int get_u32(unsigned char const *bytes)
{
    return get_u16(bytes) | get_u16(bytes + 2) << 16;
}

unsigned int get_u32_big_endian(unsigned char const *bytes)
{
    return static_cast<unsigned int>(bytes[0]) << 24 | static_cast<unsigned int>(bytes[1]) << 16
        | static_cast<unsigned int>(bytes[2]) << 8 | bytes[3];
}

struct Bitmap {
    unsigned int width = 0; // pixels
    unsigned int height = 0;
    unsigned int bits = 0; // of a pixel
    bool top_down = true;  // the first row of the file is the top one

    void Store(CCustomData &properties) const
    {
        properties.SetUInt(propertyWidth, width);
        properties.SetUInt(propertyHeight, height);
        properties.SetUInt(propertyBits, bits);
        properties.SetBool(propertyTopDown, top_down);
    }
};

constexpr unsigned int bmp_core_header = 12;
constexpr unsigned int bmp_info_header = 40;

// The bytes of uncompressed pixels: rows are padded to four bytes.
unsigned long long get_bmp_pixel_bytes(Bitmap const &bitmap)
{
    unsigned long long const bits = static_cast<unsigned long long>(bitmap.width) * bitmap.bits;
    return (bits + 31) / 32 * 4 * bitmap.height;
}

void read_bmp_info_header(ImportSource const &source, unsigned char const *header, Bitmap &bitmap)
{
    bitmap.width = get_u32(header + 4);
    unsigned int const height = get_u32(header + 8);
    bitmap.top_down = (height & 0x80000000U) != 0; // a negative height
    bitmap.height = bitmap.top_down ? 0U - height : height;
    bitmap.bits = get_u16(header + 14);
    if ((bitmap.width & 0x80000000U) != 0)
        source.Fail(L"the bitmap has a negative width");
}

bool is_bmp_depth(unsigned int bits)
{
    return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24
        || bits == 32;
}

constexpr unsigned char png_signature[8] = { 0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A };

// Bits of a pixel by the colour type, or 0 for a combination that PNG does not have.
unsigned int get_png_bits(unsigned int depth, unsigned int color_type)
{
    bool const power = depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
    switch (color_type) {
    case 0:
        return power ? depth : 0;
    case 3:
        return power && depth <= 8 ? depth : 0;
    case 2:
        return depth == 8 || depth == 16 ? depth * 3 : 0;
    case 4:
        return depth == 8 || depth == 16 ? depth * 2 : 0;
    case 6:
        return depth == 8 || depth == 16 ? depth * 4 : 0;
    default:
        return 0;
    }
}

// Walks the chunks from `offset` on: each must lie in the file, and IEND must end them.
void check_png_chunks(ImportSource const &source, unsigned long long offset)
{
    unsigned long long const length = source.file.GetLength();
    for (;;) {
        unsigned char head[8];
        source.Read(offset, head, sizeof head);
        unsigned long long const size = get_u32_big_endian(head);
        if (size > 0x7FFFFFFF)
            source.Fail(L"a chunk of the PNG file has an impossible length");
        offset += 12 + size;
        if (offset > length)
            source.Fail(L"the file is cut");
        if (std::memcmp(head + 4, "IEND", 4) == 0)
            return;
        source.Update(offset);
    }
}

} // namespace

void import_bmp(ImportSource const &source, SceneFile &file)
{
    unsigned char header[14 + bmp_info_header] = {};
    source.Read(0, header, 14 + bmp_core_header);
    unsigned int const header_size = get_u32(header + 14);
    Bitmap bitmap;
    unsigned int compression = 0;
    if (header_size == bmp_core_header) {
        bitmap.width = get_u16(header + 18);
        bitmap.height = get_u16(header + 20);
        bitmap.bits = get_u16(header + 24);
        bitmap.top_down = false;
    } else if (header_size >= bmp_info_header && header_size <= 256) {
        source.Read(0, header, sizeof header);
        read_bmp_info_header(source, header + 14, bitmap);
        compression = get_u32(header + 30);
    } else {
        source.Fail(L"not a BMP file: unknown information header");
    }
    if (bitmap.width == 0 || bitmap.height == 0)
        source.Fail(L"the bitmap is empty");
    bool const embedded = compression == 4 || compression == 5; // a JPEG or PNG inside
    if (!embedded && !is_bmp_depth(bitmap.bits))
        source.Fail(L"not a BMP file: impossible number of bits per pixel");
    unsigned int const pixels = get_u32(header + 10);
    bool const plain = compression == 0 || compression == 3;
    unsigned long long const size = plain ? get_bmp_pixel_bytes(bitmap) : 1;
    if (pixels > source.file.GetLength() || size > source.file.GetLength() - pixels)
        source.Fail(L"the file is cut");
    bitmap.Store(file.properties);
}

void import_png(ImportSource const &source, SceneFile &file)
{
    unsigned char head[33]; // signature, then the IHDR chunk: length, name, 13 bytes, CRC
    source.Read(0, head, sizeof head);
    if (std::memcmp(head, png_signature, sizeof png_signature) != 0)
        source.Fail(L"the PNG signature is damaged, as by a transfer in text mode");
    if (get_u32_big_endian(head + 8) != 13 || std::memcmp(head + 12, "IHDR", 4) != 0)
        source.Fail(L"not a PNG file: it does not begin with an IHDR chunk");
    if (crc32(0, head + 12, 17) != get_u32_big_endian(head + 29))
        source.Fail(L"the PNG header is damaged: its checksum does not match");
    Bitmap bitmap;
    bitmap.width = get_u32_big_endian(head + 16);
    bitmap.height = get_u32_big_endian(head + 20);
    bitmap.bits = get_png_bits(head[24], head[25]);
    if (bitmap.width == 0 || bitmap.height == 0 || bitmap.bits == 0)
        source.Fail(L"the PNG header has impossible values");
    check_png_chunks(source, sizeof head);
    bitmap.Store(file.properties);
}

} // namespace scoutrix

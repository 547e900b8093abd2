// SPDX-License-Identifier: MIT
// A JPEG file is a row of segments: FF, a mark, and, but for marks that stand alone, a length of
// two bytes that counts itself. Behind a start of scan comes data in which FF is followed by 0 or
// by a restart mark, up to the next segment.
#include "plugins/bitmaps/jpeg_check.h"

#include "plugins/bitmaps/byte_source.h"

namespace bitmap_plugin {
namespace {

enum Mark : unsigned int {
    huffman_tables = 0xC4,
    first_restart = 0xD0,
    last_restart = 0xD7,
    start_of_image = 0xD8,
    end_of_image = 0xD9,
    start_of_scan = 0xDA,
    temporary = 0x01
};

class JpegCheck {
public:
    explicit JpegCheck(ByteSource &source)
        : m_source(source)
    {
    }

    bool run()
    {
        unsigned int mark = next_mark();
        while (is_good() && mark != end_of_image) {
            if (!stands_alone(mark) && !take_segment(mark))
                return false;
            mark = next_mark(); // behind a start of scan this passes the data
        }
        return is_good();
    }

private:
    bool is_good() const { return !m_source.was_too_short() && !m_source.is_cancelled(); }

    unsigned int byte()
    {
        char value = 0;
        m_source.read(&value, 1);
        return static_cast<unsigned char>(value);
    }

    // The next mark of a segment: FF may be repeated, and stands in data, too.
    unsigned int next_mark()
    {
        while (is_good()) {
            if (byte() != 0xFF)
                continue;
            unsigned int mark = byte();
            while (mark == 0xFF && is_good())
                mark = byte();
            if (mark != 0 && (mark < first_restart || mark > last_restart))
                return mark;
        }
        return 0;
    }

    static bool stands_alone(unsigned int mark)
    {
        return mark == start_of_image || mark == temporary;
    }

    bool take_segment(unsigned int mark)
    {
        unsigned int const high = byte();
        unsigned int const length = high << 8 | byte();
        if (length < 2)
            return false;
        if (mark == huffman_tables)
            return take_tables(length - 2);
        m_source.skip(static_cast<int>(length - 2));
        return true;
    }

    // Each table: its number, how many codes there are of each of 16 lengths, and their values.
    bool take_tables(unsigned int size)
    {
        constexpr unsigned int head = 17;
        while (size > 0) {
            if (size < head)
                return false;
            byte();
            unsigned int codes = 0;
            for (unsigned int length = 1; length < head; ++length)
                codes += byte();
            if (codes > 256 || codes > size - head)
                return false;
            m_source.skip(static_cast<int>(codes));
            size -= head + codes;
        }
        return is_good();
    }

    ByteSource &m_source;
};

} // namespace

bool is_sound_jpeg(ByteSource &source)
{
    return JpegCheck(source).run();
}

} // namespace bitmap_plugin

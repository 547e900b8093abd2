// SPDX-License-Identifier: MIT
// The bytes of a picture, as its decoder takes them.
//
// The image library takes a file that ends too early for one with zeros behind it, which some of
// its decoders then read for ever. Here a read behind the end is noticed, and gives what is no good
// data in any format, so that the picture can be refused.
#pragma once

#include "kortools/files/io_plugin.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stb/stb_image.h>
#include <vector>

namespace bitmap_plugin {

class ByteSource {
public:
    explicit ByteSource(IoPluginLoad &request)
        : m_request(request)
        , m_block(64 * 1024)
    {
    }

    bool is_cancelled() const { return m_is_cancelled; }
    bool was_too_short() const { return m_was_too_short; }
    void rewind() { m_position = 0; }

    int read(char *target, int size)
    {
        int done = 0;
        while (done < size && !m_is_cancelled) {
            if (m_position < m_start || m_position >= m_start + m_size) {
                fill();
                if (m_size == 0)
                    break;
            }
            std::size_t const count
                = std::min(static_cast<std::size_t>(size - done), m_size - (m_position - m_start));
            std::memcpy(target + done, &m_block[m_position - m_start], count);
            m_position += count;
            done += static_cast<int>(count);
        }
        return done > 0 || size <= 0 ? done : fill_up(target, size);
    }

    void skip(int count)
    {
        auto const back = static_cast<std::uint64_t>(-static_cast<long long>(count));
        m_position = count >= 0 ? m_position + static_cast<unsigned int>(count)
                                : m_position - std::min(m_position, back);
    }

    static stbi_io_callbacks make_callbacks()
    {
        return {
            [](void *user, char *data, int size) { return of(user).read(data, size); },
            [](void *user, int count) { of(user).skip(count); },
            [](void *user) { return int(of(user).m_position >= of(user).m_request.file_size); },
        };
    }

private:
    // Not for long: there are decoders that would go on with that, and end with zeros.
    int fill_up(char *target, int size)
    {
        constexpr int most = 64 * 1024;
        m_was_too_short = true;
        if (m_filled > most)
            return 0;
        std::memset(target, 0xFE, static_cast<std::size_t>(size));
        m_filled += size;
        return size;
    }

    static ByteSource &of(void *user) { return *static_cast<ByteSource *>(user); }

    void fill()
    {
        m_start = m_position;
        m_size = m_request.read(m_request.host, m_start, m_block.data(), m_block.size());
        double const size = static_cast<double>(std::max<std::uint64_t>(m_request.file_size, 1));
        // Decoding takes as long as reading, and tells nothing.
        m_fraction = std::max(m_fraction, static_cast<double>(m_start) / size * 0.9);
        m_is_cancelled = !m_request.progress(m_request.host, m_fraction);
    }

    IoPluginLoad &m_request;
    std::vector<unsigned char> m_block;
    std::uint64_t m_start = 0; // of the block in the file
    std::size_t m_size = 0;    // bytes of the block that are filled
    std::uint64_t m_position = 0;
    double m_fraction = 0; // of the file that was read at most
    bool m_is_cancelled = false;
    bool m_was_too_short = false;
    int m_filled = 0; // bytes given behind the end
};

} // namespace bitmap_plugin

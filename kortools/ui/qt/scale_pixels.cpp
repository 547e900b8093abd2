// SPDX-License-Identifier: MIT
// The middle of pixel i of n lies at (2i + 1) / 2n of the target, and so on pixel
// (2i + 1) * m / 2n, rounded down, of the m of the picture. From one i to the next quotient and
// remainder grow by constants, so that only the first pixel is found by a division. A row of the
// target that shows the same row of the picture as the one above it is a copy of that.
#include "kortools/ui/qt/scale_pixels.h"

#include <cstring>
#include <vector>

namespace kortools::ui::qt {
namespace {

// The places on one axis, in order.
class Places {
public:
    Places(int part_size, int target_size, int first)
        : m_divisor(2LL * target_size)
        , m_step(2LL * part_size / m_divisor)
        , m_step_rest(2LL * part_size % m_divisor)
    {
        // Both factors may be beyond 2^31: in 64 bits only their quotients' parts fit.
        long long const whole = part_size / target_size;
        long long const rest = part_size % target_size;
        long long const scaled = (2LL * first + 1) * rest;
        m_place = (2LL * first + 1) * whole / 2 + scaled / m_divisor;
        m_rest = scaled % m_divisor;
        if (whole % 2 != 0 && (m_rest += target_size) >= m_divisor) {
            m_rest -= m_divisor;
            ++m_place;
        }
    }

    int get() const { return static_cast<int>(m_place); }
    void advance()
    {
        m_place += m_step;
        m_rest += m_step_rest;
        bool const carry = m_rest >= m_divisor;
        m_place += carry ? 1 : 0;
        m_rest -= carry ? m_divisor : 0;
    }

private:
    long long m_divisor;
    long long m_step;
    long long m_step_rest;
    long long m_place;
    long long m_rest;
};

std::uint32_t load(CRGBColor const *pixel)
{
    std::uint32_t value;
    static_assert(sizeof(*pixel) == sizeof(value));
    std::memcpy(&value, pixel, sizeof(value));
    return value;
}

// Exchanges red and blue; alpha becomes 255.
std::uint32_t convert(std::uint32_t value)
{
    return 0xFF000000U | (value & 0xFFU) << 16 | (value & 0xFF00U) | (value >> 16 & 0xFFU);
}

void convert_row(CRGBColor const *from, std::uint32_t *to, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        to[i] = convert(load(from + i));
}

void gather_row(CRGBColor const *from, std::vector<int> const &columns, std::uint32_t *to)
{
    int const *const column = columns.data();
    std::size_t const count = columns.size();
    for (std::size_t i = 0; i < count; ++i)
        to[i] = convert(load(from + column[i]));
}

std::vector<int> get_columns(CXRect const &part, CXRect const &target, CXRect const &clip)
{
    std::vector<int> columns(static_cast<std::size_t>(clip.Width()));
    Places place(part.Width(), target.Width(), clip.left - target.left);
    for (int &column : columns) {
        column = part.left + place.get();
        place.advance();
    }
    return columns;
}

} // namespace

void scale_pixels(Pixels const &picture, CXRect const &part, CXRect const &target,
    CXRect const &clip, PixelTarget const &to)
{
    bool const is_unscaled = part.Width() == target.Width();
    auto const width = static_cast<std::size_t>(clip.Width());
    std::vector<int> const columns
        = is_unscaled ? std::vector<int>() : get_columns(part, target, clip);
    Places place(part.Height(), target.Height(), clip.top - target.top);
    int last = -1;
    for (int y = 0; y < clip.Height(); ++y, place.advance()) {
        std::uint32_t *const row = to.data + y * to.stride;
        if (place.get() == last) {
            std::memcpy(row, row - to.stride, width * sizeof(*row));
            continue;
        }
        last = place.get();
        CRGBColor const *const from
            = picture.data + std::ptrdiff_t(part.top + last) * picture.stride;
        if (is_unscaled)
            convert_row(from + part.left + (clip.left - target.left), row, width);
        else
            gather_row(from, columns, row);
    }
}

Picture to_picture(std::uint32_t const *data, std::ptrdiff_t stride, CXSize const &size)
{
    Picture picture { {}, size };
    picture.pixels.reserve(std::size_t(size.cx) * std::size_t(size.cy));
    for (int y = 0; y < size.cy; ++y) {
        for (int x = 0; x < size.cx; ++x) {
            std::uint32_t const value = data[y * stride + x];
            picture.pixels.emplace_back(static_cast<unsigned char>(value >> 16 & 0xFFU),
                static_cast<unsigned char>(value >> 8 & 0xFFU),
                static_cast<unsigned char>(value & 0xFFU));
        }
    }
    return picture;
}

} // namespace kortools::ui::qt

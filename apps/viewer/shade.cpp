// SPDX-License-Identifier: MIT
// Triangles are filled with edge functions and a buffer of depths (J. Pineda, "A parallel algorithm
// for polygon rasterization", 1988), at twice the size on both axes, and four pixels become one.
#include "apps/viewer/shade.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace viewer {
namespace {

using kor_apps::Point3;

constexpr int samples = 2;      // per pixel, on each axis
constexpr double margin = 0.05; // of the picture, on each side
constexpr double turn = -0.6;   // radians, around the upright axis
constexpr double lean = 0.45;   // towards the viewer
constexpr double ambient = 0.4; // of the light
constexpr int point_radius = 1; // samples
constexpr Point3 light { -0.4, 0.6, 0.7 };

Point3 rotate(Point3 const &point)
{
    double const x = std::cos(turn) * point[0] + std::sin(turn) * point[2];
    double const z = -std::sin(turn) * point[0] + std::cos(turn) * point[2];
    return { x, std::cos(lean) * point[1] - std::sin(lean) * z,
        std::sin(lean) * point[1] + std::cos(lean) * z };
}

Point3 subtract(Point3 const &a, Point3 const &b)
{
    return { a[0] - b[0], a[1] - b[1], a[2] - b[2] };
}

double dot(Point3 const &a, Point3 const &b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// The part of the light that a face sends back; both of its sides are shown.
double get_brightness(Point3 const &a, Point3 const &b, Point3 const &c)
{
    Point3 const u = subtract(b, a);
    Point3 const v = subtract(c, a);
    Point3 const normal { u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
        u[0] * v[1] - u[1] * v[0] };
    double const lengths = std::sqrt(dot(normal, normal) * dot(light, light));
    double const cosine = lengths > 0 ? dot(normal, light) / lengths : 0;
    double const facing = normal[2] < 0 ? -cosine : cosine;
    return ambient + (1 - ambient) * std::max(facing, 0.0);
}

class Canvas {
public:
    explicit Canvas(CXSize const &size)
        : m_size(size)
        , m_colors(std::size_t(size.cx) * std::size_t(size.cy))
        , m_depths(m_colors.size(), -std::numeric_limits<float>::infinity())
    {
        for (int y = 0; y < size.cy; ++y) { // a ground that becomes lighter upwards
            int const grey = 250 - 40 * y / size.cy;
            std::fill_n(m_colors.begin() + std::ptrdiff_t(y) * size.cx, size.cx,
                CRGBColor(grey - 6, grey - 2, grey));
        }
    }

    // Corners in samples; larger depths are nearer.
    void Fill(Point3 const &a, Point3 const &b, Point3 const &c, CRGBColor const &color)
    {
        double const area = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
        if (!(std::abs(area) > 0))
            return;
        double const scale = 1 / area;
        int const left = Limit(std::min({ a[0], b[0], c[0] }), m_size.cx);
        int const right = Limit(std::max({ a[0], b[0], c[0] }) + 1, m_size.cx);
        int const top = Limit(std::min({ a[1], b[1], c[1] }), m_size.cy);
        int const bottom = Limit(std::max({ a[1], b[1], c[1] }) + 1, m_size.cy);
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) {
                double const px = x + 0.5;
                double const py = y + 0.5;
                double const wb
                    = ((px - a[0]) * (c[1] - a[1]) - (py - a[1]) * (c[0] - a[0])) * scale;
                double const wc
                    = ((b[0] - a[0]) * (py - a[1]) - (b[1] - a[1]) * (px - a[0])) * scale;
                if (wb >= 0 && wc >= 0 && wb + wc <= 1)
                    Set(x, y, a[2] + wb * (b[2] - a[2]) + wc * (c[2] - a[2]), color);
            }
        }
    }

    void Dot(Point3 const &center, CRGBColor const &color)
    {
        int const x = Limit(center[0], m_size.cx);
        int const y = Limit(center[1], m_size.cy);
        for (int dy = -point_radius; dy <= point_radius; ++dy) {
            for (int dx = -point_radius; dx <= point_radius; ++dx) {
                if (x + dx >= 0 && x + dx < m_size.cx && y + dy >= 0 && y + dy < m_size.cy)
                    Set(x + dx, y + dy, center[2], color);
            }
        }
    }

    kortools::ui::Picture Reduce() const
    {
        kortools::ui::Picture picture;
        picture.size = { m_size.cx / samples, m_size.cy / samples };
        picture.pixels.reserve(std::size_t(picture.size.cx) * std::size_t(picture.size.cy));
        for (int y = 0; y < picture.size.cy; ++y) {
            for (int x = 0; x < picture.size.cx; ++x)
                picture.pixels.push_back(GetMean(x * samples, y * samples));
        }
        return picture;
    }

private:
    static int Limit(double position, int size)
    {
        return static_cast<int>(std::clamp(position, 0.0, double(size)));
    }

    void Set(int x, int y, double depth, CRGBColor const &color)
    {
        std::size_t const index = std::size_t(y) * std::size_t(m_size.cx) + std::size_t(x);
        if (static_cast<float>(depth) > m_depths[index]) {
            m_depths[index] = static_cast<float>(depth);
            m_colors[index] = color;
        }
    }

    CRGBColor GetMean(int left, int top) const
    {
        unsigned int sums[3] = {};
        for (int y = top; y < top + samples; ++y) {
            for (int x = left; x < left + samples; ++x) {
                CRGBColor const &color
                    = m_colors[std::size_t(y) * std::size_t(m_size.cx) + std::size_t(x)];
                for (int channel = 0; channel < 3; ++channel)
                    sums[channel] += color[channel];
            }
        }
        constexpr unsigned int count = samples * samples;
        return CRGBColor(sums[0] / count, sums[1] / count, sums[2] / count);
    }

    CXSize m_size; // samples
    std::vector<CRGBColor> m_colors;
    std::vector<float> m_depths;
};

// The vertices as they are seen, in samples from the top left.
std::vector<Point3> project(Model const &model, CXSize const &size)
{
    std::vector<Point3> seen;
    seen.reserve(model.vertices.size());
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Point3 low { infinite, infinite, infinite };
    Point3 high { -infinite, -infinite, -infinite };
    for (Point3 const &vertex : model.vertices) {
        Point3 const point = rotate(vertex);
        bool const is_finite
            = std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
        seen.push_back(is_finite ? point : Point3 {}); // products of places may overflow
        for (std::size_t axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], seen.back()[axis]);
            high[axis] = std::max(high[axis], seen.back()[axis]);
        }
    }
    double const width = std::max(high[0] - low[0], 1e-300);
    double const height = std::max(high[1] - low[1], 1e-300);
    double const scale = (1 - 2 * margin) * std::min(size.cx / width, size.cy / height);
    for (Point3 &point : seen) {
        point = { size.cx / 2.0 + scale * (point[0] - (low[0] + high[0]) / 2),
            size.cy / 2.0 - scale * (point[1] - (low[1] + high[1]) / 2),
            scale * (point[2] - low[2]) };
    }
    return seen;
}

} // namespace

kortools::ui::Picture shade_model(Model const &model, CXSize const &size)
{
    CXSize const canvas_size { size.cx * samples, size.cy * samples };
    Canvas canvas(canvas_size);
    std::vector<Point3> const seen = project(model, canvas_size);
    for (Model::Triangle const &triangle : model.triangles) {
        Point3 const &a = seen[triangle.corners[0]];
        Point3 const &b = seen[triangle.corners[1]];
        Point3 const &c = seen[triangle.corners[2]];
        // Rows count downwards here, but light comes from above.
        Point3 const up[3] { { a[0], -a[1], a[2] }, { b[0], -b[1], b[2] }, { c[0], -c[1], c[2] } };
        canvas.Fill(a, b, c, triangle.color * get_brightness(up[0], up[1], up[2]));
    }
    for (unsigned int const number : model.points)
        canvas.Dot(seen[number], CRGBColor(40, 70, 140));
    return canvas.Reduce();
}

} // namespace viewer

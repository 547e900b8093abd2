// SPDX-License-Identifier: MIT
// Rectangles and points beside QRect and QPoint, colours beside QColor and beside a plain loop of
// the same arithmetic, and the mapping of a polygon beside QTransform and beside copying it.
#include "kortools/graphics/color_buffers.h"
#include "kortools/graphics/color_model.h"
#include "kortools/graphics/kor_coord.h"
#include "kortools/graphics/rect.h"

#include <QColor>
#include <QPolygon>
#include <QRect>
#include <QTransform>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

namespace {

constexpr std::size_t rect_count = 1024;
constexpr std::size_t pixel_count = 1'000'000;
constexpr int vertex_count = 1'000'000;

struct Box {
    int x, y, width, height;
};

std::vector<Box> make_boxes()
{
    std::mt19937 random(1);
    auto const pick = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
    std::vector<Box> boxes;
    boxes.reserve(rect_count);
    for (std::size_t i = 0; i < rect_count; ++i)
        boxes.push_back({ pick(500), pick(500), 1 + pick(500), 1 + pick(500) });
    return boxes;
}

struct KorRects {
    using Rect = CXRect;
    using Point = CXPoint;
    static Rect make(Box const &box)
    {
        return { CXPoint(box.x, box.y), CXSize(box.width, box.height) };
    }
    static Rect intersect(Rect const &a, Rect const &b) { return a & b; }
    static Rect unite(Rect const &a, Rect const &b) { return a | b; }
    static Rect move(Rect const &a, Point const &by) { return a + by; }
    static bool contains(Rect const &a, Point const &point) { return a.PtInRect(point); }
    static long long area(Rect const &a) { return 1LL * a.Width() * a.Height(); }
    static Point corner(Rect const &a) { return a.TopLeft(); }
};

struct QtRects {
    using Rect = QRect;
    using Point = QPoint;
    static Rect make(Box const &box) { return { box.x, box.y, box.width, box.height }; }
    static Rect intersect(Rect const &a, Rect const &b) { return a & b; }
    static Rect unite(Rect const &a, Rect const &b) { return a | b; }
    static Rect move(Rect const &a, Point const &by) { return a.translated(by); }
    static bool contains(Rect const &a, Point const &point) { return a.contains(point); }
    static long long area(Rect const &a) { return 1LL * a.width() * a.height(); }
    static Point corner(Rect const &a) { return a.topLeft(); }
};

// A number out of each pair of neighbours; the sums of both libraries must be the same.
template <class Library, class Operation>
void run_rects(benchmark::State &state, Operation operation, long long &expected)
{
    std::vector<typename Library::Rect> rects;
    for (Box const &box : make_boxes())
        rects.push_back(Library::make(box));
    long long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (std::size_t i = 1; i < rects.size(); ++i)
            sum += operation(rects[i - 1], rects[i]);
        benchmark::DoNotOptimize(sum);
    }
    if (expected != -1 && expected != sum)
        state.SkipWithError("the libraries disagree");
    expected = sum;
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(rects.size() - 1));
}

long long s_sums[4] = { -1, -1, -1, -1 };

template <class Library> void intersect(benchmark::State &state)
{
    run_rects<Library>(
        state, [](auto const &a, auto const &b) { return Library::area(Library::intersect(a, b)); },
        s_sums[0]);
}

template <class Library> void unite(benchmark::State &state)
{
    run_rects<Library>(
        state, [](auto const &a, auto const &b) { return Library::area(Library::unite(a, b)); },
        s_sums[1]);
}

template <class Library> void move(benchmark::State &state)
{
    run_rects<Library>(
        state,
        [](auto const &a, auto const &b) {
            return Library::area(Library::move(a, Library::corner(b)));
        },
        s_sums[2]);
}

template <class Library> void contains(benchmark::State &state)
{
    run_rects<Library>(
        state,
        [](auto const &a, auto const &b) {
            return Library::contains(a, Library::corner(b)) ? 1 : 0;
        },
        s_sums[3]);
}

std::vector<CRGBColor> make_pixels()
{
    std::mt19937 random(2);
    std::vector<CRGBColor> pixels(pixel_count);
    for (CRGBColor &pixel : pixels)
        pixel = CRGBColor(static_cast<unsigned long>(random()));
    return pixels;
}

struct Planes {
    std::vector<float> h = std::vector<float>(pixel_count);
    std::vector<float> s = std::vector<float>(pixel_count);
    std::vector<float> l = std::vector<float>(pixel_count);
};

void count_pixels(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(pixel_count));
}

void to_hsl_buffer(benchmark::State &state)
{
    auto const pixels = make_pixels();
    Planes planes;
    for (auto _ : state)
        kortools::graphics::convert_to_hsl(
            pixels.data(), pixel_count, { planes.h.data(), planes.s.data(), planes.l.data() });
    count_pixels(state);
}

void to_hsl_single(benchmark::State &state)
{
    auto const pixels = make_pixels();
    Planes planes;
    for (auto _ : state) {
        for (std::size_t i = 0; i < pixel_count; ++i)
            pixels[i].ConvertToHSL(planes.h[i], planes.s[i], planes.l[i]);
    }
    count_pixels(state);
}

void to_hsl_qt(benchmark::State &state)
{
    auto const pixels = make_pixels();
    Planes planes;
    for (auto _ : state) {
        for (std::size_t i = 0; i < pixel_count; ++i)
            QColor(pixels[i][0], pixels[i][1], pixels[i][2])
                .getHsvF(&planes.h[i], &planes.s[i], &planes.l[i]);
    }
    count_pixels(state);
}

// What the memory alone costs.
void to_hsl_limit(benchmark::State &state)
{
    auto const pixels = make_pixels();
    Planes planes;
    for (auto _ : state) {
        for (std::size_t i = 0; i < pixel_count; ++i) {
            planes.h[i] = static_cast<float>(pixels[i][0]);
            planes.s[i] = static_cast<float>(pixels[i][1]);
            planes.l[i] = static_cast<float>(pixels[i][2]);
        }
        benchmark::ClobberMemory();
    }
    count_pixels(state);
}

void from_hsl_buffer(benchmark::State &state)
{
    auto pixels = make_pixels();
    Planes planes;
    kortools::graphics::convert_to_hsl(
        pixels.data(), pixel_count, { planes.h.data(), planes.s.data(), planes.l.data() });
    for (auto _ : state)
        kortools::graphics::convert_from_hsl(
            { planes.h.data(), planes.s.data(), planes.l.data() }, pixel_count, pixels.data());
    count_pixels(state);
}

void from_hsl_qt(benchmark::State &state)
{
    auto pixels = make_pixels();
    Planes planes;
    kortools::graphics::convert_to_hsl(
        pixels.data(), pixel_count, { planes.h.data(), planes.s.data(), planes.l.data() });
    for (auto _ : state) {
        for (std::size_t i = 0; i < pixel_count; ++i) {
            QRgb const rgb = QColor::fromHsvF(planes.h[i], planes.s[i], planes.l[i]).rgb();
            pixels[i].SetColor(qRed(rgb), qGreen(rgb), qBlue(rgb));
        }
    }
    count_pixels(state);
}

void to_floats_buffer(benchmark::State &state)
{
    auto const pixels = make_pixels();
    std::vector<float> channels(4 * pixel_count);
    for (auto _ : state)
        kortools::graphics::convert_to_floats(pixels.data(), pixel_count, channels.data(), 255);
    count_pixels(state);
}

void to_floats_qt(benchmark::State &state)
{
    auto const pixels = make_pixels();
    std::vector<float> channels(4 * pixel_count);
    for (auto _ : state) {
        for (std::size_t i = 0; i < pixel_count; ++i)
            QColor(pixels[i][0], pixels[i][1], pixels[i][2], pixels[i][3])
                .getRgbF(&channels[4 * i], &channels[4 * i + 1], &channels[4 * i + 2],
                    &channels[4 * i + 3]);
    }
    count_pixels(state);
}

void to_bytes_buffer(benchmark::State &state)
{
    std::vector<CRGBColor> pixels(pixel_count);
    std::vector<float> const channels(4 * pixel_count, 0.5F);
    for (auto _ : state)
        kortools::graphics::convert_to_bytes(channels.data(), pixel_count, pixels.data(), 255);
    count_pixels(state);
}

void to_bytes_qt(benchmark::State &state)
{
    std::vector<CRGBColor> pixels(pixel_count);
    std::vector<float> const channels(4 * pixel_count, 0.5F);
    for (auto _ : state) {
        for (std::size_t i = 0; i < pixel_count; ++i) {
            float const *const at = &channels[4 * i];
            QRgb const rgb = QColor::fromRgbF(at[0], at[1], at[2], at[3]).rgba();
            pixels[i].SetColor(qRed(rgb), qGreen(rgb), qBlue(rgb), qAlpha(rgb));
        }
    }
    count_pixels(state);
}

std::vector<CXPoint> make_polygon()
{
    std::mt19937 random(3);
    std::vector<CXPoint> points(vertex_count);
    for (CXPoint &point : points)
        point = { static_cast<int>(random() % 4000), static_cast<int>(random() % 4000) };
    return points;
}

template <bool to_document> void map_polygon(benchmark::State &state)
{
    CKorCoord coord(nullptr, CXSize(4000, 4000));
    coord.SetZoom(1.5F, 0);
    auto const source = make_polygon();
    auto points = source;
    for (auto _ : state) {
        points = source; // mapped in place
        if constexpr (to_document)
            coord.ClientToDoc(points.data(), vertex_count);
        else
            coord.DocToViewport(points.data(), vertex_count);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * vertex_count);
}

template <bool to_document> void map_polygon_qt(benchmark::State &state)
{
    QTransform const transform = QTransform::fromTranslate(7, 9).scale(1.5, 1.5);
    QTransform const used = to_document ? transform.inverted() : transform;
    QPolygon source;
    for (CXPoint const &point : make_polygon())
        source << QPoint(point.x, point.y);
    for (auto _ : state)
        benchmark::DoNotOptimize(used.map(source));
    state.SetItemsProcessed(state.iterations() * vertex_count);
}

void copy_polygon(benchmark::State &state)
{
    auto const source = make_polygon();
    auto points = source;
    for (auto _ : state) {
        points = source;
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * vertex_count);
}

} // namespace

BENCHMARK(intersect<KorRects>)->Name("rectangles/intersect/KorTools");
BENCHMARK(intersect<QtRects>)->Name("rectangles/intersect/QRect");
BENCHMARK(unite<KorRects>)->Name("rectangles/unite/KorTools");
BENCHMARK(unite<QtRects>)->Name("rectangles/unite/QRect");
BENCHMARK(move<KorRects>)->Name("rectangles/move/KorTools");
BENCHMARK(move<QtRects>)->Name("rectangles/move/QRect");
BENCHMARK(contains<KorRects>)->Name("rectangles/contain a point/KorTools");
BENCHMARK(contains<QtRects>)->Name("rectangles/contain a point/QRect");
BENCHMARK(to_hsl_buffer)->Name("1 M pixels to hue/KorTools");
BENCHMARK(to_hsl_single)->Name("1 M pixels to hue/KorTools one by one");
BENCHMARK(to_hsl_qt)->Name("1 M pixels to hue/QColor");
BENCHMARK(to_hsl_limit)->Name("1 M pixels to hue/plain loop");
BENCHMARK(from_hsl_buffer)->Name("1 M pixels from hue/KorTools");
BENCHMARK(from_hsl_qt)->Name("1 M pixels from hue/QColor");
BENCHMARK(to_floats_buffer)->Name("1 M pixels to floats/KorTools");
BENCHMARK(to_floats_qt)->Name("1 M pixels to floats/QColor");
BENCHMARK(to_bytes_buffer)->Name("1 M pixels from floats/KorTools");
BENCHMARK(to_bytes_qt)->Name("1 M pixels from floats/QColor");
BENCHMARK(map_polygon<false>)->Name("1 M vertices to the window/KorTools");
BENCHMARK(map_polygon_qt<false>)->Name("1 M vertices to the window/QTransform");
BENCHMARK(copy_polygon)->Name("1 M vertices to the window/memcpy");
BENCHMARK(map_polygon<true>)->Name("1 M vertices to the document/KorTools");
BENCHMARK(map_polygon_qt<true>)->Name("1 M vertices to the document/QTransform");

BENCHMARK_MAIN();

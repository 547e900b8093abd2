// SPDX-License-Identifier: MIT
// Every rectangle is cut to the clip box before Qt sees it, as its rectangles hold sizes, which of
// the largest ones do not fit.
#include "kortools/ui/qt/painted_dc.h"

#include "kortools/ui/qt/scale_pixels.h"
#include "kortools/ui/qt/text.h"

#include <QFontMetrics>
#include <QImage>
#include <QPaintEngine>
#include <QWidget>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace kortools::ui::qt {
namespace {

// Dots are where the sum of the coordinates is even, so that the sides of a frame meet well.
constexpr HatchPattern dots { 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55 };

// Beyond these nothing shows, and products of two of them fit.
constexpr int farthest = 1 << 29;

QColor to_color(CRGBColor const &color)
{
    return { color[0], color[1], color[2] };
}

CXPoint limit(CXPoint const &point)
{
    return { std::clamp(point.x, -farthest, farthest), std::clamp(point.y, -farthest, farthest) };
}

QImage make_tile(HatchPattern const &pattern, CRGBColor const &color)
{
    QImage tile(8, 8, QImage::Format_ARGB32_Premultiplied);
    QRgb const set = to_color(color).rgb();
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x)
            tile.setPixel(x, y, (pattern[std::size_t(y)] << x & 0x80) != 0 ? set : 0);
    }
    return tile;
}

} // namespace

QImage *get_painted_image(QPainter const &painter, QRect const &needed, QPoint &origin)
{
    QTransform const &transform = painter.deviceTransform();
    QPaintDevice *const device = painter.paintEngine()->paintDevice();
    if (!device || device->devType() != QInternal::Image || device->devicePixelRatio() != 1
        || transform.type() > QTransform::TxTranslate)
        return nullptr;
    auto *const image = static_cast<QImage *>(device);
    origin = QPoint(qRound(transform.dx()), qRound(transform.dy()));
    bool const is_rgb = image->format() == QImage::Format_RGB32
        || image->format() == QImage::Format_ARGB32_Premultiplied;
    return is_rgb && image->rect().contains(needed.translated(origin)) ? image : nullptr;
}

PaintedDC::PaintedDC(QWidget &widget, QRegion const &invalid, QRegion const &event_region)
    : m_painter(&widget)
    , m_invalid(invalid)
    , m_clip(to_rect(invalid.boundingRect()))
{
    m_painter.setFont(widget.font());
    if (invalid != event_region)
        m_painter.setClipRegion(invalid);
}

void PaintedDC::FillRect(CXRect const &rect, CRGBColor const &color)
{
    CXRect const part = rect & m_clip;
    if (!part.IsRectEmpty())
        m_painter.fillRect(to_qt(part), to_color(color));
}

// The pattern begins at the origin of the client area.
void PaintedDC::FillPattern(CXRect const &rect, HatchPattern const &pattern, CRGBColor const &color)
{
    CXRect const part = rect & m_clip;
    if (!part.IsRectEmpty())
        m_painter.fillRect(to_qt(part), QBrush(make_tile(pattern, color)));
}

void PaintedDC::draw_side(CXRect const &rect, Pen const &pen)
{
    if (pen.line == Pen::Line::Dotted)
        FillPattern(rect, dots, pen.color);
    else
        FillRect(rect, pen.color);
}

void PaintedDC::DrawFrame(CXRect const &rect, Pen const &pen)
{
    if (rect.IsRectEmpty())
        return;
    draw_side({ rect.left, rect.top, rect.right, rect.top + 1 }, pen);
    draw_side({ rect.left, rect.bottom - 1, rect.right, rect.bottom }, pen);
    draw_side({ rect.left, rect.top, rect.left + 1, rect.bottom }, pen);
    draw_side({ rect.right - 1, rect.top, rect.right, rect.bottom }, pen);
}

void PaintedDC::DrawLine(CXPoint const &from, CXPoint const &to, Pen const &pen)
{
    CXPoint const a = limit(from);
    CXPoint const b = limit(to);
    if (a == b)
        return;
    if (a.y == b.y) // b is left out, on whichever end it lies
        draw_side({ std::min(a.x, b.x + 1), a.y, std::max(a.x + 1, b.x), a.y + 1 }, pen);
    else if (a.x == b.x)
        draw_side({ a.x, std::min(a.y, b.y + 1), a.x + 1, std::max(a.y + 1, b.y) }, pen);
    else
        draw_slope(a, b, pen);
}

// One pixel for each step along the longer side, where the other one is rounded; steps outside the
// clip box are skipped at once.
void PaintedDC::draw_slope(CXPoint const &from, CXPoint const &to, Pen const &pen)
{
    long long const dx = static_cast<long long>(to.x) - from.x;
    long long const dy = static_cast<long long>(to.y) - from.y;
    bool const is_flat = std::abs(dx) >= std::abs(dy);
    long long const length = is_flat ? std::abs(dx) : std::abs(dy);
    bool const is_forward = (is_flat ? dx : dy) > 0;
    long long const start = is_flat ? from.x : from.y;
    long long const low = is_flat ? m_clip.left : m_clip.top;
    long long const high = is_flat ? m_clip.right : m_clip.bottom;
    long long const first = std::max(0LL, is_forward ? low - start : start - high + 1);
    long long const end = std::min(length, is_forward ? high - start : start - low + 1);
    auto const scale = [length](long long step, long long size) { // halves away from zero
        long long const rounded = (2 * step * std::abs(size) + length) / (2 * length);
        return static_cast<int>(size < 0 ? -rounded : rounded);
    };
    std::vector<QPoint> points;
    for (long long step = first; step < end; ++step) {
        int const x = from.x + scale(step, dx);
        int const y = from.y + scale(step, dy);
        if (pen.line == Pen::Line::Solid || ((x + y) & 1) == 0)
            points.emplace_back(x, y);
    }
    m_painter.setPen(to_color(pen.color));
    m_painter.drawPoints(points.data(), static_cast<int>(points.size()));
}

void PaintedDC::DrawString(
    CXPoint const &position, wchar_t const *text, int length, CRGBColor const &color)
{
    m_painter.setPen(to_color(color));
    m_painter.drawText(
        position.x, position.y + m_painter.fontMetrics().ascent(), to_qt(text, length));
}

void PaintedDC::DrawPixels(CXRect const &target, Pixels const &picture, CXRect const &part)
{
    CXRect const visible = target & m_clip;
    if (visible.IsRectEmpty() || part.IsRectEmpty())
        return;
    QPoint origin;
    QImage *const image = get_painted_image(m_painter, to_qt(m_clip), origin);
    for (QRect const &invalid : m_invalid &to_qt(visible)) {
        CXRect const clip = to_rect(invalid);
        if (!image) {
            QImage copy(invalid.size(), QImage::Format_RGB32);
            scale_pixels(picture, part, target, clip,
                { reinterpret_cast<std::uint32_t *>(copy.bits()), copy.bytesPerLine() / 4 });
            m_painter.drawImage(invalid.topLeft(), copy);
            continue;
        }
        // Not through scanLine(), which would give an image that is shared a copy of its own.
        uchar const *const row = image->constScanLine(clip.top + origin.y());
        auto *const first = reinterpret_cast<std::uint32_t *>(const_cast<uchar *>(row));
        scale_pixels(picture, part, target, clip,
            { first + clip.left + origin.x(), image->bytesPerLine() / 4 });
    }
}

} // namespace kortools::ui::qt

// SPDX-License-Identifier: MIT
// The frame and with it the view may be deleted by a handler. Then the widgets stay until Qt has
// left them (see view_frame.cpp), so a handler may be called from anywhere here as long as the
// surface is held.
#include "kortools/ui/qt/view.h"

#include "kortools/ui/qt/painted_dc.h"
#include "kortools/ui/qt/text.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTimerEvent>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace kortools::ui::qt {

View::View(QWidget *parent, ViewKind kind)
    : QAbstractScrollArea(parent)
    , m_kind(kind)
{
    setFrameShape(QFrame::NoFrame);
    setLayoutDirection(Qt::LeftToRight);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);
    m_surface = std::make_shared<Surface>(*viewport(), nullptr);
    auto band = std::make_unique<PaintedBand>(*viewport());
    m_band = band.get();
    m_surface->set_rubber_band(std::move(band));
    m_surface->set_layout_observer([this] { tell_size(); });
    for (ScrollBar const bar : { ScrollBar::Horizontal, ScrollBar::Vertical }) {
        QObject::connect(m_surface->get_bar(bar), &QScrollBar::valueChanged, this,
            [this, bar](int position) { on_scrolled(bar, position); });
    }
}

bool View::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Paint:
        paint(static_cast<QPaintEvent const &>(*event));
        return true;
    case QEvent::Resize:
        on_resized();
        return true;
    case QEvent::Show:
        m_band->note_invalid(viewport()->rect());
        return false;
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        return on_mouse(static_cast<QMouseEvent const &>(*event));
    case QEvent::Wheel:
        on_wheel(static_cast<QWheelEvent const &>(*event));
        return true;
    default:
        return QAbstractScrollArea::viewportEvent(event);
    }
}

void View::paint(QPaintEvent const &event)
{
    QRegion const &region = event.region();
    if (WindowThread::get().calls.has_exception()) { // nobody is told now
        m_unpainted += region;
        m_paint_later.start(0, this);
        return;
    }
    auto const surface = m_surface;
    QRegion const invalid = m_band->restore(region);
    if (!invalid.isEmpty())
        surface->tell([&](WindowHandler &handler) {
            PaintedDC dc(*viewport(), invalid, region);
            handler.OnPaint(dc, dc.GetClipBox());
        });
    m_band->draw(region);
}

void View::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_paint_later.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    m_paint_later.stop();
    viewport()->update(std::exchange(m_unpainted, {}));
}

// --- Sizes and scrolling

// Qt paints all of it anew.
void View::on_resized()
{
    m_band->note_invalid(viewport()->rect());
    if (m_is_updating_bars)
        return;
    if (m_kind == ViewKind::Scrolling) {
        update_bars();
        move_contents(get_bar_position());
    }
    tell_size();
}

void View::tell_size()
{
    CXSize const size = m_surface->get_client_size();
    if (size == m_told_size || m_is_updating_bars)
        return;
    m_told_size = size;
    auto const surface = m_surface;
    surface->tell([&](WindowHandler &handler) { handler.OnSize(size); });
}

// What is scrolled, and whether a bar takes room from the other one, is known before Qt lays out.
void View::update_bars()
{
    if (m_is_updating_bars)
        return;
    m_is_updating_bars = true;
    QSize const room = maximumViewportSize();
    CXSize const bar = m_surface->get_scroll_bar_size();
    bool has_horizontal = m_total.cx > room.width();
    bool const has_vertical = m_total.cy > room.height() - (has_horizontal ? bar.cy : 0);
    has_horizontal = m_total.cx > room.width() - (has_vertical ? bar.cx : 0);
    int const pages[] = { room.width() - (has_vertical ? bar.cx : 0),
        room.height() - (has_horizontal ? bar.cy : 0) };
    m_surface->set_scroll_info(
        ScrollBar::Horizontal, { m_total.cx, pages[0], horizontalScrollBar()->value() });
    m_surface->set_scroll_info(
        ScrollBar::Vertical, { m_total.cy, pages[1], verticalScrollBar()->value() });
    m_is_updating_bars = false;
}

void View::set_scroll_sizes(CXSize const &total, CXSize const &step)
{
    m_total = { std::max(total.cx, 0), std::max(total.cy, 0) };
    horizontalScrollBar()->setSingleStep(std::max(step.cx, 1));
    verticalScrollBar()->setSingleStep(std::max(step.cy, 1));
    update_bars();
    tell_size();
}

QPoint View::get_bar_position() const
{
    return { horizontalScrollBar()->value(), verticalScrollBar()->value() };
}

void View::scroll_to(CXPoint const &position)
{
    auto const set = [this](ScrollBar bar, int value) {
        QScrollBar const *const scroll_bar = m_surface->get_bar(bar);
        int const page = scroll_bar->pageStep();
        m_surface->set_scroll_info(bar, { scroll_bar->maximum() + page, page, value });
    };
    set(ScrollBar::Horizontal, position.x);
    set(ScrollBar::Vertical, position.y);
    move_contents(get_bar_position());
}

// Qt moves the pixels and makes invalid what comes into view. It would move the rubber band's, too.
void View::move_contents(QPoint const &position)
{
    QPoint const distance = std::exchange(m_position, position) - position;
    if (distance.isNull())
        return;
    if (m_band->is_busy())
        m_surface->invalidate();
    else
        viewport()->scroll(distance.x(), distance.y(), viewport()->rect());
}

void View::on_scrolled(ScrollBar bar, int position)
{
    if (m_surface->is_setting_bars())
        return;
    if (m_kind == ViewKind::Scrolling)
        move_contents(get_bar_position());
    auto const surface = m_surface;
    surface->tell([&](WindowHandler &handler) { handler.OnScroll(bar, position); });
}

// --- Input

bool View::on_mouse(QMouseEvent const &event)
{
    CXPoint const position = get_pixel(event.position());
    auto const surface = m_surface;
    if (event.type() == QEvent::MouseMove) {
        if (!WindowThread::get().capture.is_held_by(*viewport()))
            update_cursor(position);
        surface->tell([&](WindowHandler &handler) { handler.OnMouseMove(position); });
        return true;
    }
    bool const is_up = event.type() == QEvent::MouseButtonRelease;
    if (event.button() == Qt::LeftButton)
        surface->tell([&](WindowHandler &handler) {
            return is_up ? handler.OnLeftButtonUp(position) : handler.OnLeftButtonDown(position);
        });
    else if (event.button() == Qt::RightButton && !is_up)
        surface->tell([&](WindowHandler &handler) { handler.OnRightButtonDown(position); });
    return true;
}

void View::update_cursor(CXPoint const &position)
{
    auto const surface = m_surface;
    bool const is_set = surface->ask(
        [&](WindowHandler &handler) { return handler.OnSetCursor(position); }, false);
    if (!is_set)
        surface->set_cursor(CursorShape::Arrow);
}

void View::on_wheel(QWheelEvent const &event)
{
    m_wheel_rest += event.angleDelta().y();
    int const steps = m_wheel_rest / QWheelEvent::DefaultDeltasPerStep;
    if (steps == 0)
        return;
    m_wheel_rest -= steps * QWheelEvent::DefaultDeltasPerStep;
    CXPoint const position = get_pixel(event.position());
    auto const surface = m_surface;
    surface->tell([&](WindowHandler &handler) { handler.OnMouseWheel(position, steps); });
}

void View::keyPressEvent(QKeyEvent *event)
{
    unsigned int const key = get_key_number(*event);
    auto const surface = m_surface;
    event->setAccepted(key != 0
        && surface->ask([key](WindowHandler &handler) { return handler.OnKeyDown(key); }, false));
}

void View::keyReleaseEvent(QKeyEvent *event)
{
    event->ignore();
}

// --- The view's face

ViewWindow::ViewWindow(View &view, ViewKind kind)
    : WindowOn(view.get_surface())
    , m_view(&view)
    , m_kind(kind)
{
}

CScrollView *ViewWindow::GetScrollView()
{
    return m_kind == ViewKind::Scrolling ? this : nullptr;
}

void ViewWindow::SetScrollSizes(CXSize const &total, CXSize const &step)
{
    if (m_view && m_kind == ViewKind::Scrolling)
        m_view->set_scroll_sizes(total, step);
}

void ViewWindow::ScrollToPosition(CXPoint const &position)
{
    if (m_view && m_kind == ViewKind::Scrolling)
        m_view->scroll_to(position);
}

} // namespace kortools::ui::qt

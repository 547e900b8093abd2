// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/surface.h"

#include "kortools/ui/qt/menu.h"
#include "kortools/ui/qt/text.h"
#include "kortools/ui/qt/timer_source.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCursor>
#include <QFontMetrics>
#include <QScrollBar>
#include <QWindow>

#include <algorithm>

namespace kortools::ui::qt {
namespace {

Qt::CursorShape to_qt(CursorShape shape)
{
    switch (shape) {
    case CursorShape::SizeDiagonal:
        return Qt::SizeFDiagCursor;
    case CursorShape::SizeAntidiagonal:
        return Qt::SizeBDiagCursor;
    case CursorShape::SizeHorizontal:
        return Qt::SizeHorCursor;
    case CursorShape::SizeVertical:
        return Qt::SizeVerCursor;
    case CursorShape::Move:
        return Qt::SizeAllCursor;
    case CursorShape::Arrow:
        break;
    }
    return Qt::ArrowCursor;
}

QAbstractScrollArea *find_area(QWidget &widget)
{
    if (auto *const area = qobject_cast<QAbstractScrollArea *>(&widget))
        return area;
    auto *const area = qobject_cast<QAbstractScrollArea *>(widget.parentWidget());
    return area && area->viewport() == &widget ? area : nullptr;
}

} // namespace

void update_now(QWidget &widget)
{
    QWidget *const frame = widget.window();
    if (!frame->isVisible())
        return;
    QWindow const *const native = frame->windowHandle();
    if (native && !native->isExposed()) // was shown just now: Qt paints what the system has exposed
        QCoreApplication::processEvents(
            QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(frame, &request);
}

Surface::Surface(QWidget &widget, WindowHandler *handler)
    : m_widget(&widget)
    , m_area(find_area(widget))
    , m_handler(handler)
{
    if (m_area)
        m_widget = m_area->viewport();
}

Surface::~Surface()
{
    if (m_widget)
        WindowThread::get().capture.end(*m_widget);
    if (m_timers)
        m_timers->retire();
}

QScrollBar *Surface::get_bar(ScrollBar bar) const
{
    if (!m_area)
        return nullptr;
    return bar == ScrollBar::Horizontal ? m_area->horizontalScrollBar()
                                        : m_area->verticalScrollBar();
}

CXSize Surface::get_client_size() const
{
    return m_widget ? to_size(m_widget->size()) : CXSize();
}

int Surface::get_text_width(wchar_t const *text, int length) const
{
    return m_widget ? m_widget->fontMetrics().horizontalAdvance(qt::to_qt(text, length)) : 0;
}

bool Surface::has_scroll_bar(ScrollBar bar) const
{
    QScrollBar const *const shown = get_bar(bar);
    return shown && shown->isVisibleTo(m_area);
}

CXSize Surface::get_scroll_bar_size() const
{
    QScrollBar const *const vertical = get_bar(ScrollBar::Vertical);
    QScrollBar const *const horizontal = get_bar(ScrollBar::Horizontal);
    if (!vertical || !horizontal)
        return {};
    return { vertical->sizeHint().width(), horizontal->sizeHint().height() };
}

// Qt shows and hides the bar when its range changes, and lays out the client area at once.
void Surface::set_scroll_info(ScrollBar bar, ScrollRange const &range)
{
    QScrollBar *const changed = get_bar(bar);
    if (!changed)
        return;
    bool const was_setting = std::exchange(m_is_setting_bars, true);
    changed->setPageStep(std::max(range.page, 0));
    changed->setRange(0, std::max(range.size - std::max(range.page, 0), 0));
    changed->setValue(range.position);
    m_is_setting_bars = was_setting;
    if (!was_setting && m_after_layout)
        m_after_layout();
}

void Surface::set_redraw(bool redraw)
{
    if (!m_widget)
        return;
    if (redraw && !m_widget->updatesEnabled())
        note_invalid(m_widget->rect());
    m_widget->setUpdatesEnabled(redraw);
}

void Surface::invalidate()
{
    if (!m_widget)
        return;
    note_invalid(m_widget->rect());
    m_widget->update();
}

void Surface::invalidate(CXRect const &rect)
{
    if (!m_widget)
        return;
    CXRect const part = rect & CXRect(CXPoint(), get_client_size());
    if (part.IsRectEmpty())
        return;
    note_invalid(qt::to_qt(part));
    m_widget->update(qt::to_qt(part));
}

void Surface::update()
{
    if (m_widget && !m_widget->testAttribute(Qt::WA_WState_InPaintEvent))
        update_now(*m_widget);
    WindowThread::get().calls.rethrow();
}

void Surface::note_invalid(QRect const &rect)
{
    if (m_band)
        m_band->note_invalid(rect);
}

void Surface::show_rubber_band(CXRect const &rect)
{
    if (!m_widget)
        return;
    if (!m_band)
        m_band = std::make_unique<OverlaidBand>(*m_widget);
    m_band->show(qt::to_qt(rect));
}

void Surface::hide_rubber_band()
{
    if (m_band)
        m_band->hide();
}

CXPoint Surface::get_cursor_pos() const
{
    return m_widget ? to_point(m_widget->mapFromGlobal(QCursor::pos())) : CXPoint();
}

void Surface::set_cursor(CursorShape shape)
{
    if (m_widget)
        m_widget->setCursor(to_qt(shape));
}

void Surface::set_capture()
{
    if (m_widget)
        WindowThread::get().capture.begin(*m_widget);
}

void Surface::release_capture()
{
    if (m_widget)
        WindowThread::get().capture.end(*m_widget);
}

bool Surface::wait_for_input(InputEvent &event)
{
    return m_widget && WindowThread::get().capture.wait(*m_widget, event);
}

void Surface::set_timer(unsigned int id, unsigned int milliseconds)
{
    if (!m_widget)
        return;
    if (!m_timers)
        m_timers = new TimerSource(*m_widget, weak_from_this());
    m_timers->start(id, milliseconds);
}

void Surface::kill_timer(unsigned int id)
{
    if (m_timers)
        m_timers->stop(id);
}

int Surface::track_popup_menu(CXPoint const &position, CXArray<CXTString<wchar_t>> const &entries)
{
    if (!m_widget)
        return -1;
    return show_menu(*m_widget, m_widget->mapToGlobal(QPoint(position.x, position.y)), entries);
}

} // namespace kortools::ui::qt

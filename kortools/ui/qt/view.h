// SPDX-License-Identifier: MIT
// View: what a frame scrolls. Its client area is the viewport of a scroll area, whose events go to
// the handler.
#pragma once

#include "kortools/ui/back_end.h"
#include "kortools/ui/qt/painted_band.h"
#include "kortools/ui/qt/window_on.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QRegion>

class QPaintEvent;
class QMouseEvent;

namespace kortools::ui::qt {

class View : public QAbstractScrollArea {
public:
    View(QWidget *parent, ViewKind kind); // has no handler at first

    std::shared_ptr<Surface> const &get_surface() const { return m_surface; }

    // CScrollView
    void set_scroll_sizes(CXSize const &total, CXSize const &step);
    void scroll_to(CXPoint const &position);

    // Tells the handler a new size of the client area, which Qt does not while nothing is shown.
    void tell_size();

protected:
    bool viewportEvent(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool) override { return false; } // Tab is a key like others
    void scrollContentsBy(int, int) override { }             // see on_scrolled()
    QSize minimumSizeHint() const override { return { 1, 1 }; }

private:
    void paint(QPaintEvent const &event);
    void on_resized();
    void on_scrolled(ScrollBar bar, int position);
    bool on_mouse(QMouseEvent const &event);
    void update_cursor(CXPoint const &position);
    void on_wheel(QWheelEvent const &event);
    void update_bars();
    void move_contents(QPoint const &position);
    QPoint get_bar_position() const;

    std::shared_ptr<Surface> m_surface;
    PaintedBand *m_band; // the surface's
    ViewKind m_kind;
    CXSize m_total;    // of CScrollView
    QPoint m_position; // of what is shown, where the view scrolls that by itself
    CXSize m_told_size;
    bool m_is_updating_bars = false;
    QBasicTimer m_paint_later;
    QRegion m_unpainted;  // while an exception of a handler waited
    int m_wheel_rest = 0; // of an eighth of a degree, below one step
};

// The view's face.
class ViewWindow : public WindowOn<CScrollView> {
public:
    ViewWindow(View &view, ViewKind kind);

    CScrollView *GetScrollView() override;
    void SetScrollSizes(CXSize const &total, CXSize const &step) override;
    void ScrollToPosition(CXPoint const &position) override;

private:
    QPointer<View> m_view;
    ViewKind m_kind;
};

} // namespace kortools::ui::qt

// SPDX-License-Identifier: MIT
#include "apps/viewer/view_window.h"

#include <algorithm>
#include <cmath>

namespace viewer {
namespace {

constexpr unsigned long ground = 0x505050; // around the picture
constexpr unsigned int frame_style = CKorTracker::dottedLine | CKorTracker::fixedHandleSize;
constexpr int scroll_step = 32; // pixels, for the arrow keys

} // namespace

ViewWindow::ViewWindow(kortools::ui::BackEnd &back_end, std::function<void(int)> turn_page)
    : m_backEnd(back_end)
    , m_turnPage(std::move(turn_page))
{
    // Not in the list above: the new window tells its size at once.
    m_frame = back_end.CreateViewFrame(*this, kortools::ui::ViewKind::Scrolling, L"");
    m_coord.Init(&m_frame->GetView(), CSize());
}

ViewWindow::~ViewWindow()
{
    m_coord.ReleaseTracker(m_tracker);
}

void ViewWindow::ShowPicture(kortools::ui::Picture picture, Text const &name)
{
    Select({});
    m_picture = std::move(picture);
    m_coord.Init(&m_frame->GetView(), m_picture.size);
    m_frame->SetTitle(name);
    Fit();
    m_frame->GetView().Invalidate(true);
}

void ViewWindow::SetZoom(float zoom)
{
    CRect visible;
    m_coord.GetVisDoc(visible);
    m_coord.SetZoomAndCenter(zoom, visible.CenterPoint(), 0, 0);
    UpdateStatus();
}

void ViewWindow::Fit()
{
    m_coord.AutoFit(0, 0);
    UpdateStatus();
}

void ViewWindow::Select(CRect const &rect)
{
    if (m_tracker != nullptr)
        m_frame->GetView().InvalidateRect(GetFrameRect(), true);
    m_coord.ReleaseTracker(m_tracker);
    m_tracker = nullptr;
    CRect const inside = rect & CRect(CPoint(), m_picture.size);
    if (!inside.IsRectEmpty()) {
        m_tracker = m_coord.InitTracker(inside, frame_style, m_isLocked ? 1 : 0, m_ratio);
        m_tracker->SetWnd(&m_frame->GetView());
        m_tracker->SetCallback(OnTracker, this);
        m_frame->GetView().InvalidateRect(GetFrameRect(), true);
    }
    UpdateStatus();
}

CRect ViewWindow::GetSelection() const
{
    return m_tracker != nullptr ? m_tracker->GetDocRect() : CRect();
}

void ViewWindow::LockProportions(bool lock, float ratio)
{
    CRect const frame = GetSelection();
    m_isLocked = lock;
    m_ratio = ratio;
    if (lock && ratio == 0 && !frame.IsRectEmpty())
        m_ratio = static_cast<float>(frame.Height()) / static_cast<float>(frame.Width());
    else if (lock && ratio == 0)
        m_ratio = 1;
    Select(frame);
}

Text ViewWindow::GetStatus() const
{
    Text status;
    status.Format(L"%d x %d   %.4g %%", m_picture.size.cx, m_picture.size.cy,
        100.0 * static_cast<double>(m_coord.GetZoom()));
    CPoint point = m_mouse;
    if (m_mouse.x >= 0 && m_coord.ClientToDoc(point) == 1) {
        CRGBColor const color = m_picture.at(point.x, point.y);
        Text place;
        place.Format(L"   (%d, %d) %s", point.x, point.y, color.GetRGBString().GetConstBuffer());
        status += place;
    }
    if (m_tracker != nullptr) {
        CRect const &frame = m_tracker->GetDocRect();
        Text place;
        place.Format(L"   [%d, %d; %d x %d]%s", frame.left, frame.top, frame.Width(),
            frame.Height(), m_isLocked ? L" locked" : L"");
        status += place;
    }
    return status;
}

void ViewWindow::UpdateStatus()
{
    m_frame->SetStatus(GetStatus());
}

CXRect ViewWindow::GetFrameRect() const
{
    return m_tracker != nullptr ? m_tracker->GetTrueRect() : CXRect();
}

void ViewWindow::OnPaint(CDC &dc, CXRect const &)
{
    m_coord.EraseBackground(&dc, ground, 0);
    CRect units;
    m_coord.GetVisDoc(units); // right and bottom are inside
    if (m_picture.size.cx > 0 && m_picture.size.cy > 0) {
        units.right = std::min(units.right + 1, m_picture.size.cx);
        units.bottom = std::min(units.bottom + 1, m_picture.size.cy);
        CRect target = units;
        m_coord.DocToViewport(target);
        dc.DrawPixels(target, m_picture.view(), units);
    }
    if (m_tracker != nullptr)
        m_tracker->Draw(&dc);
}

void ViewWindow::OnSize(CXSize const &client)
{
    if (m_frame == nullptr)
        return;
    m_coord.ClientSizeChange(client);
    UpdateStatus();
}

void ViewWindow::OnScroll(kortools::ui::ScrollBar bar, int position)
{
    CSize const now = m_coord.GetScrollPos();
    CSize delta = bar == kortools::ui::ScrollBar::Horizontal ? CSize(position - now.cx, 0)
                                                             : CSize(0, position - now.cy);
    m_coord.Scroll(delta);
    UpdateStatus();
}

void ViewWindow::OnMouseMove(CXPoint const &position)
{
    m_mouse = position;
    UpdateStatus();
}

void ViewWindow::OnLeftButtonDown(CXPoint const &position)
{
    m_mouse = position;
    CWnd &view = m_frame->GetView();
    if (m_tracker != nullptr && m_tracker->HitTest(position) != CKorTracker::nothing)
        m_tracker->Track(&view, position);
    else
        DragFrame(position);
    UpdateStatus();
}

void ViewWindow::DragFrame(CXPoint const &position)
{
    CRect drawn;
    if (m_coord.DoRubberBandTracker(drawn, position, m_isLocked ? 1 : 0, m_ratio) == 1)
        Select(drawn);
    else
        Select({});
}

void ViewWindow::OnMouseWheel(CXPoint const &position, int steps)
{
    ZoomAt(position, steps);
}

void ViewWindow::ZoomAt(CXPoint const &position, int steps)
{
    CPoint unit = position;
    m_coord.ClientToDoc(unit);
    for (; steps != 0; steps -= steps > 0 ? 1 : -1)
        m_coord.SetZoomAndCenter(m_coord.GetDefaultRatio(steps > 0 ? 1 : 0), unit, 1, 1);
    UpdateStatus();
}

bool ViewWindow::OnSetCursor(CXPoint const &position)
{
    return m_tracker != nullptr && m_tracker->SetCursor(&m_frame->GetView(), position);
}

void ViewWindow::OnTracker(CKorTracker *, CKorTracker::Event event, void *window)
{
    auto *const self = static_cast<ViewWindow *>(window);
    if (event != CKorTracker::trackBegin)
        self->m_frame->GetView().Invalidate(true);
    self->UpdateStatus();
}

bool ViewWindow::OnArrow(unsigned int key)
{
    if (m_tracker != nullptr)
        return m_tracker->OnKey(key, nullptr) == 1;
    CSize delta;
    switch (key) {
    case kortools::ui::KeyLeft:
        delta.cx = -scroll_step;
        break;
    case kortools::ui::KeyRight:
        delta.cx = scroll_step;
        break;
    case kortools::ui::KeyUp:
        delta.cy = -scroll_step;
        break;
    case kortools::ui::KeyDown:
        delta.cy = scroll_step;
        break;
    default:
        return false;
    }
    m_coord.Scroll(delta);
    return true;
}

bool ViewWindow::OnKeyDown(unsigned int key)
{
    constexpr unsigned int numpad_plus = 0x6B;
    constexpr unsigned int numpad_minus = 0x6D;
    constexpr unsigned int plus = 0xBB;
    constexpr unsigned int minus = 0xBD;
    switch (key) {
    case plus:
    case numpad_plus:
    case minus:
    case numpad_minus:
        m_coord.Zoom(key == plus || key == numpad_plus ? 1 : 0);
        break;
    case '1':
        SetZoom(1);
        break;
    case 'F':
        Fit();
        break;
    case 'L':
        LockProportions(!m_isLocked);
        break;
    case kortools::ui::KeyPageUp:
    case kortools::ui::KeyPageDown:
        m_turnPage(key == kortools::ui::KeyPageDown ? 1 : -1);
        break;
    case kortools::ui::KeyEscape:
        if (m_tracker == nullptr)
            return OnClose();
        Select({});
        break;
    default:
        if (!OnArrow(key))
            return false;
    }
    UpdateStatus();
    return true;
}

bool ViewWindow::OnClose()
{
    m_backEnd.Quit(0);
    return true;
}

} // namespace viewer

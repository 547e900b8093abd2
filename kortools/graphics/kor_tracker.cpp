// SPDX-License-Identifier: MIT
#include "kortools/graphics/kor_tracker.h"

#include "kortools/graphics/rounding.h"
#include "kortools/graphics/tracker_resources.h"
#include "kortools/ui/window.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <utility>

using kortools::platform::wrap_add;
using kortools::platform::wrap_subtract;
using kortools::ui::CursorShape;
using kortools::ui::InputEvent;

namespace {

std::atomic<int> s_nominal_handle_size { 6 };

constexpr int handle_count = 8;
constexpr int corner_mask = 0x0F;
constexpr int side_room = 5;                // pixels between the three handles of a side
constexpr long long least_side_of_size = 4; // what GetHandleSize() takes for the shorter side

constexpr bool moves_left(int handle)
{
    return handle == CKorTracker::topLeft || handle == CKorTracker::bottomLeft
        || handle == CKorTracker::leftSide || handle == CKorTracker::inside;
}

constexpr bool moves_top(int handle)
{
    return handle == CKorTracker::topLeft || handle == CKorTracker::topRight
        || handle == CKorTracker::topSide || handle == CKorTracker::inside;
}

constexpr bool moves_right(int handle)
{
    return handle == CKorTracker::topRight || handle == CKorTracker::bottomRight
        || handle == CKorTracker::rightSide || handle == CKorTracker::inside;
}

constexpr bool moves_bottom(int handle)
{
    return handle == CKorTracker::bottomRight || handle == CKorTracker::bottomLeft
        || handle == CKorTracker::bottomSide || handle == CKorTracker::inside;
}

CRect normalize(CRect rect)
{
    rect.NormalizeRect();
    return rect;
}

long long magnitude(int size)
{
    return std::abs(static_cast<long long>(size));
}

// Keeps `moving` at least `minimum` away from `fixed`, on the side where it is; `direction` is 1
// when that is the larger one in a rectangle that is not inverted, else -1.
int keep_distance(int moving, int fixed, int minimum, int direction, bool allow_invert)
{
    long long const size = (static_cast<long long>(moving) - fixed) * direction;
    if ((allow_invert ? std::abs(size) : size) >= minimum)
        return moving;
    bool const is_inverted = allow_invert && size < 0;
    return wrap_add(fixed, (is_inverted ? -minimum : minimum) * direction);
}

int follow_width(int width, float ratio)
{
    return NearestInt(static_cast<float>(width) * ratio);
}

int follow_height(int height, float ratio)
{
    return NearestInt(static_cast<float>(height) / ratio);
}

// Where an interval of the same length lies inside another one; at its beginning if it is longer.
int move_inside(int low, int high, int bound_low, int bound_high)
{
    return std::max(bound_low, std::min(low, wrap_subtract(bound_high, wrap_subtract(high, low))));
}

CursorShape shape_of(int handle)
{
    switch (handle) {
    case CKorTracker::topLeft:
    case CKorTracker::bottomRight:
        return CursorShape::SizeDiagonal;
    case CKorTracker::topRight:
    case CKorTracker::bottomLeft:
        return CursorShape::SizeAntidiagonal;
    case CKorTracker::topSide:
    case CKorTracker::bottomSide:
        return CursorShape::SizeVertical;
    case CKorTracker::leftSide:
    case CKorTracker::rightSide:
        return CursorShape::SizeHorizontal;
    default:
        return CursorShape::Move;
    }
}

} // namespace

// The time for which the mouse is captured; a callback that throws ends it, too.
class CKorTracker::Session {
public:
    Session(CKorTracker &tracker, CWnd &wnd, int handle)
        : m_tracker(tracker)
        , m_window(wnd)
    {
        m_tracker.m_trackedHandle = handle;
        m_window.SetCapture();
    }
    Session(Session const &) = delete;
    Session &operator=(Session const &) = delete;
    ~Session()
    {
        m_tracker.m_trackedHandle = nothing;
        m_window.HideRubberBand();
        m_window.ReleaseCapture();
    }

private:
    CKorTracker &m_tracker;
    CWnd &m_window;
};

void CKorTracker::SetNominalHandleSize(int size)
{
    s_nominal_handle_size = std::max(size, 1);
}

int CKorTracker::GetNominalHandleSize()
{
    return s_nominal_handle_size;
}

void CKorTracker::Construct()
{
    kortools::graphics::get_tracker_resources(); // a failure shows here, not while painting
    m_rect = {};
    m_style = solidLine;
    m_handleSize = GetNominalHandleSize();
    m_minSize = { 2 * m_handleSize, 2 * m_handleSize };
    m_constraintMode = 0;
    m_ratio = 1;
    m_allowInvert = false;
    m_trackedHandle = nothing;
    m_callback = nullptr;
    m_callbackData = nullptr;
    m_wnd = nullptr;
}

unsigned int CKorTracker::SetStyle(unsigned int style)
{
    return std::exchange(m_style, style);
}

void CKorTracker::SetConstraint(int mode, float ratio)
{
    m_constraintMode = mode;
    m_ratio = ratio == 0 ? 0.01F : ratio;
}

void CKorTracker::SetCallback(Callback callback, void *data)
{
    m_callback = callback;
    m_callbackData = data;
}

int CKorTracker::HitTest(CPoint const &point) const
{
    int const handle = HitTestHandles(point);
    if (handle != nothing)
        return handle;
    return normalize(m_rect).PtInRect(point) ? inside : nothing;
}

int CKorTracker::HitTestHandles(CPoint const &point) const
{
    int const mask = GetHandleMask();
    for (int handle = 0; handle < handle_count; ++handle) {
        if ((mask >> handle & 1) != 0 && GetHandleRect(handle).PtInRect(point))
            return handle;
    }
    return nothing;
}

int CKorTracker::NormalizeHit(int handle) const
{
    static constexpr int across[]
        = { topRight, topLeft, bottomLeft, bottomRight, topSide, leftSide, bottomSide, rightSide };
    static constexpr int down[]
        = { bottomLeft, bottomRight, topRight, topLeft, bottomSide, rightSide, topSide, leftSide };
    if (handle < 0 || handle >= handle_count)
        return handle;
    if (m_rect.Width() < 0)
        handle = across[handle];
    return m_rect.Height() < 0 ? down[handle] : handle;
}

int CKorTracker::GetHandleMask() const
{
    int mask = corner_mask;
    if (m_constraintMode != 0)
        return mask;
    if (magnitude(m_rect.Width()) - 3 * m_handleSize >= side_room)
        mask |= 1 << topSide | 1 << bottomSide;
    if (magnitude(m_rect.Height()) - 3 * m_handleSize >= side_room)
        mask |= 1 << leftSide | 1 << rightSide;
    return mask;
}

int CKorTracker::GetHandleSize(CRect const *rect) const
{
    if ((m_style & fixedHandleSize) != 0)
        return m_handleSize;
    CRect const &measured = rect ? *rect : m_rect;
    long long const side = std::max(
        std::min(magnitude(measured.Width()), magnitude(measured.Height())), least_side_of_size);
    return static_cast<int>(std::min<long long>(m_handleSize, side / 2));
}

// A handle lies half outside the rectangle, by the smaller half.
CRect CKorTracker::GetHandleRect(int handle) const
{
    int const size = GetHandleSize();
    int const outer = size / 2;
    int const place = NormalizeHit(handle);
    CRect const rect = normalize(m_rect);
    CPoint corner = rect.CenterPoint() - CSize(outer, outer);
    if (moves_left(place))
        corner.x = wrap_subtract(rect.left, outer);
    else if (moves_right(place))
        corner.x = wrap_add(rect.right, outer - size);
    if (moves_top(place))
        corner.y = wrap_subtract(rect.top, outer);
    else if (moves_bottom(place))
        corner.y = wrap_add(rect.bottom, outer - size);
    return place == inside ? rect : CRect(corner, CSize(size, size));
}

CRect CKorTracker::GetTrueRect() const
{
    int const outer = GetHandleSize() / 2;
    CRect rect = normalize(m_rect);
    rect.InflateRect(outer, outer);
    return rect;
}

void CKorTracker::Draw(CDC *dc) const
{
    kortools::graphics::TrackerResources const &resources
        = kortools::graphics::get_tracker_resources();
    CRect const rect = normalize(m_rect);
    bool const is_red = (m_style & redLine) != 0;
    if ((m_style & hatchInside) != 0)
        dc->FillPattern(rect, resources.hatch, resources.black_line.color);
    if ((m_style & dottedLine) != 0)
        dc->DrawFrame(rect, is_red ? resources.red_dots : resources.black_dots);
    else if ((m_style & solidLine) != 0)
        dc->DrawFrame(rect, is_red ? resources.red_line : resources.black_line);
    int const mask = (m_style & noHandles) != 0 ? 0 : GetHandleMask();
    for (int handle = 0; handle < handle_count; ++handle) {
        if ((mask >> handle & 1) != 0)
            dc->FillRect(GetHandleRect(handle), resources.black_line.color);
    }
}

void CKorTracker::DrawTrackerRect(CWnd *wnd) const
{
    wnd->ShowRubberBand(normalize(m_rect));
}

bool CKorTracker::SetCursor(CWnd *wnd, CPoint const &point) const
{
    int const handle = IsTracking() ? m_trackedHandle : HitTest(point);
    if (handle == nothing)
        return false;
    wnd->SetCursor(shape_of(NormalizeHit(handle)));
    return true;
}

bool CKorTracker::Track(CWnd *wnd, CPoint const &point)
{
    return TrackHandle(HitTest(point), wnd, point);
}

bool CKorTracker::TrackRubberBand(CWnd *wnd, CPoint const &point, bool allowInvert)
{
    struct Restoring { // also when a callback throws
        bool &flag;
        bool const before;
        ~Restoring() { flag = before; }
    } const restoring { m_allowInvert, std::exchange(m_allowInvert, allowInvert) };
    return Drag(bottomRight, wnd, point, CRect(point, point));
}

bool CKorTracker::TrackHandle(int handle, CWnd *wnd, CPoint const &point)
{
    return Drag(handle, wnd, point, m_rect);
}

// Begins with the rectangle `first`.
bool CKorTracker::Drag(int handle, CWnd *wnd, CPoint const &point, CRect const &first)
{
    if (handle < 0 || handle > inside || !wnd || IsTracking())
        return false;
    m_wnd = wnd;
    CRect const before = m_rect;
    CRect const area_before = GetTrueRect();
    bool is_done = false;
    {
        Session const session(*this, *wnd, handle);
        SetCursor(wnd, point);
        OnTrackerCallback(trackBegin);
        ReplaceRect(first);
        CRect const start = m_rect;
        is_done = FollowMouse(start, point) && m_rect != start;
        ReplaceRect(is_done ? normalize(m_rect) : before);
    }
    OnTrackerCallback(is_done ? trackEnd : trackCancelled);
    wnd->InvalidateRect(area_before, true);
    wnd->InvalidateRect(GetTrueRect(), true);
    return is_done;
}

// False when the user gives up.
bool CKorTracker::FollowMouse(CRect const &start, CPoint const &point)
{
    for (InputEvent event {}; m_wnd->WaitForInput(event);) {
        switch (event.kind) {
        case InputEvent::Kind::MouseMove:
            Follow(start, event.position - point);
            break;
        case InputEvent::Kind::LeftButtonUp:
            Follow(start, event.position - point);
            return true;
        case InputEvent::Kind::KeyDown:
            if (event.key == kortools::ui::KeyEscape)
                return false;
            break;
        case InputEvent::Kind::RightButtonDown:
        case InputEvent::Kind::CaptureLost:
            return false;
        }
    }
    return false;
}

// The rectangle as it was at the start, with what the handle moves at a distance from there.
void CKorTracker::Follow(CRect const &start, CSize const &distance)
{
    CRect rect = start;
    if (moves_left(m_trackedHandle))
        rect.left = wrap_add(rect.left, distance.cx);
    if (moves_top(m_trackedHandle))
        rect.top = wrap_add(rect.top, distance.cy);
    if (moves_right(m_trackedHandle))
        rect.right = wrap_add(rect.right, distance.cx);
    if (moves_bottom(m_trackedHandle))
        rect.bottom = wrap_add(rect.bottom, distance.cy);
    AdjustRect(m_trackedHandle, rect);
    if (ReplaceRect(rect)) {
        OnTrackerCallback(rectChanged);
        DrawTrackerRect(m_wnd);
    }
}

bool CKorTracker::ReplaceRect(CRect const &rect)
{
    if (rect == m_rect)
        return false;
    CRect const old = std::exchange(m_rect, rect);
    OnRectChanged(old);
    return m_rect != old; // may have undone it
}

void CKorTracker::AdjustRect(int handle, CRect &rect) const
{
    if (handle < 0 || handle >= inside)
        return;
    if (moves_left(handle))
        rect.left = keep_distance(rect.left, rect.right, m_minSize.cx, -1, m_allowInvert);
    if (moves_right(handle))
        rect.right = keep_distance(rect.right, rect.left, m_minSize.cx, 1, m_allowInvert);
    if (moves_top(handle))
        rect.top = keep_distance(rect.top, rect.bottom, m_minSize.cy, -1, m_allowInvert);
    if (moves_bottom(handle))
        rect.bottom = keep_distance(rect.bottom, rect.top, m_minSize.cy, 1, m_allowInvert);
    AdjustConstraint(handle, rect, m_constraintMode);
}

void CKorTracker::AdjustConstraint(int handle, CRect &rect, int mode) const
{
    if (m_constraintMode == 0 || handle < topLeft || handle > bottomLeft)
        return;
    int w = rect.Width();
    int h = rect.Height();
    if (mode == 1 || (mode != 2 && m_ratio < 1))
        h = follow_width(w, m_ratio);
    else
        w = follow_height(h, m_ratio);
    if (moves_left(handle))
        rect.left = wrap_subtract(rect.right, w);
    else
        rect.right = wrap_add(rect.left, w);
    if (moves_top(handle))
        rect.top = wrap_subtract(rect.bottom, h);
    else
        rect.bottom = wrap_add(rect.top, h);
}

bool CKorTracker::IsArrowKey(unsigned int key)
{
    return key >= kortools::ui::KeyLeft && key <= kortools::ui::KeyDown;
}

// Without bounds.
CRect CKorTracker::GetFreeKeyResult(CRect const &rect, unsigned int key) const
{
    bool const is_vertical = key == kortools::ui::KeyUp || key == kortools::ui::KeyDown;
    int const step = key == kortools::ui::KeyUp || key == kortools::ui::KeyLeft ? -1 : 1;
    bool const is_first = m_wnd && m_wnd->IsKeyDown(kortools::ui::KeyShift);
    bool const is_second = !is_first && m_wnd && m_wnd->IsKeyDown(kortools::ui::KeyControl);
    if (!is_first && !is_second)
        return rect + (is_vertical ? CSize(0, step) : CSize(step, 0));
    CRect result = rect;
    int CRect::*const first = is_vertical ? &CRect::top : &CRect::left;
    int CRect::*const second = is_vertical ? &CRect::bottom : &CRect::right;
    int &edge = result.*(is_first ? first : second);
    edge = wrap_add(edge, step);
    if (m_constraintMode == 0)
        return result;
    if (is_vertical)
        result.right = wrap_add(result.left, follow_height(result.Height(), m_ratio));
    else
        result.bottom = wrap_add(result.top, follow_width(result.Width(), m_ratio));
    return result;
}

CRect CKorTracker::GetKeyResult(CRect const &rect, unsigned int key, CRect const *bounds) const
{
    CRect const result = GetFreeKeyResult(rect, key);
    if (!bounds)
        return result;
    CRect const limits = normalize(*bounds);
    CRect limited = result;
    if (result.Size() == rect.Size()) {
        limited.MoveToXY(move_inside(result.left, result.right, limits.left, limits.right),
            move_inside(result.top, result.bottom, limits.top, limits.bottom));
        return limited;
    }
    limited = { std::clamp(result.left, limits.left, limits.right),
        std::clamp(result.top, limits.top, limits.bottom),
        std::clamp(result.right, limits.left, limits.right),
        std::clamp(result.bottom, limits.top, limits.bottom) };
    return m_constraintMode != 0 && limited != result ? rect : limited;
}

int CKorTracker::OnKey(unsigned int key, CRect const *bounds)
{
    if (!IsArrowKey(key))
        return 0;
    if (ReplaceRect(GetKeyResult(m_rect, key, bounds)))
        OnTrackerCallback(rectChanged);
    return 1;
}

void CKorTracker::OnRectChanged(CRect const &) { }

void CKorTracker::OnTrackerCallback(Event event)
{
    if (m_callback)
        m_callback(this, event, m_callbackData);
}

// SPDX-License-Identifier: MIT
#include "kortools/graphics/kor_coord.h"

#include "kortools/graphics/rgb_color.h"
#include "kortools/graphics/view_tracker.h"
#include "kortools/ui/window.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using kortools::ui::ScrollBar;

namespace {

constexpr float ladder[] = { 1 / 32.0F, 1 / 16.0F, 1 / 8.0F, 1 / 6.0F, 1 / 5.0F, 1 / 4.0F, 1 / 3.0F,
    1 / 2.0F, 2 / 3.0F, 1, 2, 3, 4, 5, 6, 8, 16, 24, 32 };

constexpr float same_step = 0.001F; // zooms that differ by less are the same step
constexpr float margin_factor = 0.98F;
constexpr int scroll_step = 16; // pixels, at least

// The upper one of the first two neighbours with `z` between them; null outside the ladder.
float const *find_upper_step(float z)
{
    float const *const upper = std::lower_bound(std::begin(ladder) + 1, std::end(ladder), z);
    return z >= ladder[0] && upper != std::end(ladder) ? upper : nullptr;
}

// Within what both an int and a float can hold; without branches, for the loops over polygons.
int to_int(float value)
{
    constexpr float lowest = -2147483648.0F;
    constexpr float highest = 2147483520.0F;
    float const limited = value > lowest ? value : lowest;
    return static_cast<int>(limited < highest ? limited : highest);
}

int scale(int value, float zoom)
{
    return to_int(static_cast<float>(value) * zoom);
}

int divide(int value, float zoom)
{
    return to_int(static_cast<float>(value) / zoom);
}

int floor_divide(int value, float zoom)
{
    return to_int(std::floor(static_cast<float>(value) / zoom));
}

int ceil_divide(int value, float zoom)
{
    return to_int(std::ceil(static_cast<float>(value) / zoom));
}

int snap_down(int value, float zoom)
{
    return to_int(std::floor(static_cast<float>(value) / zoom) * zoom);
}

int snap_up(int value, float zoom)
{
    return to_int(std::ceil(static_cast<float>(value) / zoom) * zoom);
}

// Into 0 to `maximum`; 0 when that is negative.
int limit(int value, int maximum)
{
    return std::max(0, std::min(value, maximum));
}

} // namespace

CKorCoord::CKorCoord() = default;

CKorCoord::CKorCoord(CWnd *wnd, CSize const &docSize)
{
    Init(wnd, docSize);
}

CKorCoord::~CKorCoord() = default;

void CKorCoord::Init(CWnd *wnd, CSize const &docSize)
{
    m_wnd = wnd;
    m_view = wnd ? wnd->GetScrollView() : nullptr;
    m_clientSize = wnd ? wnd->GetClientSize() : CSize();
    m_docSize = { std::max(docSize.cx, 0), std::max(docSize.cy, 0) };
    m_scrollPos = {};
    ApplyZoom(1);
    InitInfo();
}

bool CKorCoord::IsDocFitInView() const
{
    return m_scaledSize.cx <= m_clientSize.cx && m_scaledSize.cy <= m_clientSize.cy;
}

void CKorCoord::GetVisDoc(CRect &rect) const
{
    rect = m_visDoc;
    rect.InflateRect(0, 0, 1, 1);
}

void CKorCoord::GetVisClient(CRect &rect) const
{
    rect = (m_page - CPoint(m_scrollPos)) & CRect(CPoint(), m_clientSize);
}

void CKorCoord::GetVisPage(CRect &rect) const
{
    GetVisClient(rect);
    rect += m_scrollPos;
}

float CKorCoord::VerifyZoom(float z, int snap) const
{
    if (float const *const upper = snap ? find_upper_step(z) : nullptr)
        z = *upper - z <= z - upper[-1] ? *upper : upper[-1];
    if (z > m_maxZoom)
        return m_maxZoom;
    return z > m_minZoom ? z : m_minZoom; // a NaN, too
}

float CKorCoord::GetDefaultRatio(int zoomIn) const
{
    float const *const upper = find_upper_step(m_zoom);
    if (!upper)
        return zoomIn ? ladder[1] : m_zoom;
    if (!zoomIn)
        return upper[-1];
    if (std::fabs(m_zoom - *upper) > same_step || upper + 1 == std::end(ladder))
        return *upper;
    return upper[1];
}

void CKorCoord::ApplyZoom(float zoom)
{
    m_zoom = zoom;
    m_scaledSize = { scale(m_docSize.cx, zoom), scale(m_docSize.cy, zoom) };
}

int CKorCoord::SetZoom(float z, int snap)
{
    float const zoom = VerifyZoom(z, snap);
    if (zoom == m_zoom)
        return 0;
    ApplyZoom(zoom);
    LimitScrollPos();
    InitInfo();
    if (m_wnd)
        m_wnd->Invalidate(true);
    return 1;
}

int CKorCoord::SetZoomAndCenter(float z, CPoint const &docPoint, int snap, int atCursor)
{
    float const zoom = VerifyZoom(z, snap);
    if (zoom == m_zoom)
        return 0;
    CPoint const anchor = atCursor && m_wnd ? m_wnd->GetCursorPos() : ClientCenter();
    ApplyZoom(zoom);
    auto const place = [zoom](int doc, int at) {
        return to_int((static_cast<float>(doc) - static_cast<float>(at) / zoom) * zoom);
    };
    CPoint pos(place(docPoint.x, anchor.x), place(docPoint.y, anchor.y));
    m_scrollPos = VerifyScrollPos(pos);
    if (m_wnd)
        m_wnd->SetRedraw(false);
    InitInfo();
    if (m_wnd) {
        m_wnd->SetRedraw(true);
        m_wnd->Invalidate(true);
    }
    return 1;
}

int CKorCoord::Zoom(int zoomIn)
{
    auto const halfway = [](int low, int high) { return low + (high - low + 1) / 2; };
    CPoint const middle(
        halfway(m_visDoc.left, m_visDoc.right), halfway(m_visDoc.top, m_visDoc.bottom));
    return SetZoomAndCenter(GetDefaultRatio(zoomIn), middle, 1, 0);
}

int CKorCoord::AutoFit(int margin, int allowEnlarge)
{
    CSize available = m_clientSize;
    if (m_wnd) { // the bars go when everything fits
        CSize const bars = m_wnd->GetScrollBarSize();
        available.cx += m_wnd->HasScrollBar(ScrollBar::Vertical) ? bars.cx : 0;
        available.cy += m_wnd->HasScrollBar(ScrollBar::Horizontal) ? bars.cy : 0;
    }
    float const fit = std::min(static_cast<float>(available.cx) / static_cast<float>(m_docSize.cx),
        static_cast<float>(available.cy) / static_cast<float>(m_docSize.cy));
    if (!allowEnlarge && fit > 1)
        return SetZoom(1, 0);
    return SetZoom(margin ? fit * margin_factor : fit, 0);
}

// Which side of the client area counts is told by the shape of the rectangle, not by which of the
// two fits.
int CKorCoord::SetVisDoc(CRect const &rect)
{
    bool const is_wide = rect.Width() > rect.Height();
    int const side = is_wide ? m_clientSize.cx : m_clientSize.cy;
    int const length = std::max(rect.Width(), rect.Height());
    float const zoom = static_cast<float>(side) / static_cast<float>(length);
    return SetZoomAndCenter(zoom, rect.CenterPoint(), 0, 0);
}

CPoint CKorCoord::VerifyScrollPos(CPoint &pos) const
{
    pos = { limit(pos.x, m_scaledSize.cx - m_clientSize.cx),
        limit(pos.y, m_scaledSize.cy - m_clientSize.cy) };
    return pos;
}

void CKorCoord::LimitScrollPos()
{
    CPoint pos = m_scrollPos;
    m_scrollPos = VerifyScrollPos(pos);
}

int CKorCoord::Scroll(CSize &delta)
{
    CSize const before = m_scrollPos;
    // Not beyond the document, so that the sum cannot overflow.
    m_scrollPos += CSize(std::clamp(delta.cx, -before.cx, m_scaledSize.cx - before.cx),
        std::clamp(delta.cy, -before.cy, m_scaledSize.cy - before.cy));
    LimitScrollPos();
    InitInfo();
    delta = m_scrollPos - before;
    if (delta == CSize())
        return 0;
    if (m_wnd && !m_view)
        m_wnd->Invalidate(true);
    return 1;
}

CPoint CKorCoord::DiscretCoord(CPoint const &point) const
{
    return { m_clientSize.cx > m_scaledSize.cx ? point.x : snap_down(point.x, m_zoom),
        m_clientSize.cy > m_scaledSize.cy ? point.y : snap_down(point.y, m_zoom) };
}

CSize CKorCoord::DiscretSize(CSize const &size) const
{
    return { m_clientSize.cx > m_scaledSize.cx ? size.cx : snap_up(size.cx, m_zoom),
        m_clientSize.cy > m_scaledSize.cy ? size.cy : snap_up(size.cy, m_zoom) };
}

void CKorCoord::ClientSizeChange(CSize const &size)
{
    CPoint const origin = GetScrolledOrigin();
    m_clientSize = { std::max(size.cx, 0), std::max(size.cy, 0) };
    LimitScrollPos();
    InitInfo();
    if (m_wnd && GetScrolledOrigin() != origin)
        m_wnd->Invalidate(true);
}

void CKorCoord::UpdateWindow()
{
    if (!m_wnd)
        return;
    ClientSizeChange(m_wnd->GetClientSize());
    m_wnd->Invalidate(true);
    m_wnd->UpdateWindow();
}

void CKorCoord::InitInfo()
{
    CSize const room = m_clientSize - m_scaledSize;
    m_page = CRect(CPoint(std::max(room.cx, 0) / 2, std::max(room.cy, 0) / 2), m_scaledSize);
    if (m_scrollPos != m_snappedPos || m_zoom != m_snappedZoom) {
        m_scrollPos = DiscretCoord(m_scrollPos);
        m_snappedPos = m_scrollPos;
        m_snappedZoom = m_zoom;
    }
    UpdateVisDoc();
    for (auto const &tracker : m_trackers)
        tracker->UpdateRect();
    UpdateScrollInfo();
}

void CKorCoord::UpdateVisDoc()
{
    CRect const client = CRect(CPoint(), m_clientSize) - GetScrolledOrigin();
    m_visDoc = { limit(floor_divide(client.left, m_zoom), m_docSize.cx - 1),
        limit(floor_divide(client.top, m_zoom), m_docSize.cy - 1),
        limit(ceil_divide(client.right, m_zoom), m_docSize.cx - 1),
        limit(ceil_divide(client.bottom, m_zoom), m_docSize.cy - 1) };
    m_visDoc.NormalizeRect();
}

// The window may answer with another client size before it returns, so every value is taken from
// the fields when it is passed on.
void CKorCoord::UpdateScrollInfo()
{
    if (m_view) {
        m_view->SetScrollSizes(
            DiscretSize(m_scaledSize), DiscretSize({ scroll_step, scroll_step }));
        m_view->ScrollToPosition(m_scrollPos);
    } else if (m_wnd) {
        m_wnd->SetScrollInfo(ScrollBar::Horizontal,
            { DiscretSize(m_scaledSize).cx, m_clientSize.cx, m_scrollPos.cx });
        m_wnd->SetScrollInfo(
            ScrollBar::Vertical, { DiscretSize(m_scaledSize).cy, m_clientSize.cy, m_scrollPos.cy });
    }
}

void CKorCoord::EraseBackground(CDC *dc, unsigned long colorWord, int flags) const
{
    CRect const client(CPoint(), m_clientSize);
    CRect page;
    GetVisClient(page);
    if (page.IsRectEmpty() || (flags & 1) != 0) {
        dc->FillRect(client, CRGBColor(colorWord));
        return;
    }
    for (CRect const &part :
        { CRect(0, 0, client.right, page.top), CRect(0, page.bottom, client.right, client.bottom),
            CRect(0, page.top, page.left, page.bottom),
            CRect(page.right, page.top, client.right, page.bottom) }) {
        if (!part.IsRectEmpty())
            dc->FillRect(part, CRGBColor(colorWord));
    }
}

int CKorCoord::ClientToDoc(CPoint &point) const
{
    return ClientToDoc(&point, 1);
}

int CKorCoord::ClientToDoc(CRect &rect) const
{
    rect.NormalizeRect();
    CRect const page = rect - GetScrolledOrigin();
    CRect const units(floor_divide(page.left, m_zoom), floor_divide(page.top, m_zoom),
        ceil_divide(page.right, m_zoom), ceil_divide(page.bottom, m_zoom));
    rect = { limit(units.left, m_docSize.cx), limit(units.top, m_docSize.cy),
        limit(units.right, m_docSize.cx), limit(units.bottom, m_docSize.cy) };
    return rect == units ? 1 : 0;
}

int CKorCoord::ClientToDoc(CPoint *points, int count) const
{
    CPoint const origin = GetScrolledOrigin();
    CPoint const last(m_docSize.cx - 1, m_docSize.cy - 1);
    float const zoom = m_zoom;
    CPoint moved; // bits that limiting changed, by axis: what is alike makes one vector
    for (int i = 0; i < count; ++i) {
        CPoint const page(kortools::platform::wrap_subtract(points[i].x, origin.x),
            kortools::platform::wrap_subtract(points[i].y, origin.y));
        CPoint const doc(divide(page.x, zoom), divide(page.y, zoom));
        CPoint const limited(limit(doc.x, last.x), limit(doc.y, last.y));
        moved.x |= doc.x ^ limited.x;
        moved.y |= doc.y ^ limited.y;
        points[i].x = limited.x;
        points[i].y = limited.y;
    }
    return moved == CPoint() ? 1 : 0;
}

void CKorCoord::DocToPage(CRect &rect) const
{
    CPoint corners[] { rect.TopLeft(), rect.BottomRight() };
    DocToPage(corners, 2);
    rect = { corners[0], corners[1] };
}

void CKorCoord::DocToPage(CPoint *points, int count) const
{
    MapFromDoc(points, count, m_page.TopLeft());
}

void CKorCoord::DocToViewport(CRect &rect) const
{
    DocToPage(rect);
    rect -= m_scrollPos;
}

void CKorCoord::DocToViewport(CPoint *points, int count) const
{
    MapFromDoc(points, count, GetScrolledOrigin());
}

void CKorCoord::MapFromDoc(CPoint *points, int count, CPoint const &origin) const
{
    CPoint const from = origin;
    float const zoom = m_zoom;
    for (int i = 0; i < count; ++i)
        points[i] = CPoint(scale(points[i].x, zoom), scale(points[i].y, zoom)) + from;
}

int CKorCoord::DoRubberBandTracker(CRect &docRect, CPoint const &point, int mode, float ratio)
{
    CKorTracker tracker;
    tracker.SetMinSize({});
    tracker.SetConstraint(mode, ratio);
    if (!m_wnd || !tracker.TrackRubberBand(m_wnd, point))
        return 0;
    CRect rect = tracker.GetRect();
    if (rect.IsRectEmpty())
        return 0;
    ClientToDoc(rect);
    if (rect.IsRectEmpty()) // beside the document
        return 0;
    docRect = rect;
    return 1;
}

CViewTracker *CKorCoord::InitTracker(
    CRect const &docRect, unsigned int style, int mode, float ratio)
{
    m_trackers.push_back(std::make_unique<CViewTracker>(this, docRect, style));
    m_trackers.back()->SetConstraint(mode, ratio);
    return m_trackers.back().get();
}

void CKorCoord::ReleaseTracker(CViewTracker *tracker)
{
    std::erase_if(m_trackers, [tracker](auto const &owned) { return owned.get() == tracker; });
}

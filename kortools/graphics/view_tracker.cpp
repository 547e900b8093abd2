// SPDX-License-Identifier: MIT
#include "kortools/graphics/view_tracker.h"

#include "kortools/graphics/kor_coord.h"
#include "kortools/graphics/rounding.h"

#include <algorithm>
#include <cmath>

namespace {

// The unit whose edge lies nearest to a pixel of the scaled document.
int nearest_unit(int pixel, float zoom)
{
    return kortools::graphics::truncate(std::floor(static_cast<float>(pixel) / zoom + 0.5));
}

int limit(int value, int maximum)
{
    return std::max(0, std::min(value, maximum));
}

} // namespace

CViewTracker::CViewTracker(CKorCoord *coord, CRect const &docRect, unsigned int style)
    : CKorTracker(CRect(), style)
    , m_coord(coord)
{
    SetWnd(coord->GetWnd());
    SetDocRect(docRect);
}

void CViewTracker::SetDocRect(CRect const &docRect)
{
    m_docRect = docRect;
    UpdateRect();
}

void CViewTracker::UpdateRect()
{
    m_rect = m_docRect;
    m_coord->DocToViewport(m_rect);
}

int CViewTracker::OnKey(unsigned int key, CRect const *bounds)
{
    if (!IsArrowKey(key))
        return 0;
    CRect limits(CPoint(), m_coord->GetDocSize());
    if (bounds) {
        limits = *bounds;
        m_coord->ClientToDoc(limits);
    }
    CRect const before = m_docRect;
    CRect const old = m_rect;
    SetDocRect(GetKeyResult(m_docRect, key, &limits));
    if (m_rect != old)
        OnRectChanged(old);
    if (m_docRect != before)
        OnTrackerCallback(rectChanged);
    return 1;
}

CRect CViewTracker::GetMovedDocRect() const
{
    CPoint origin;
    m_coord->DocToViewport(origin);
    CRect const scaled = m_rect - origin;
    CSize const room = m_coord->GetDocSize() - m_docRect.Size();
    CRect moved = m_docRect;
    moved.MoveToXY(limit(nearest_unit(scaled.left, m_coord->GetZoom()), room.cx),
        limit(nearest_unit(scaled.top, m_coord->GetZoom()), room.cy));
    return moved;
}

CRect CViewTracker::GetResizedDocRect(CRect const &oldRect) const
{
    CPoint origin;
    m_coord->DocToViewport(origin);
    CRect const scaled = m_rect - origin;
    CSize const size = m_coord->GetDocSize();
    float const zoom = m_coord->GetZoom();
    auto const place = [&](int CRect::*edge, int end) {
        return m_rect.*edge == oldRect.*edge ? m_docRect.*edge
                                             : limit(nearest_unit(scaled.*edge, zoom), end);
    };
    return { place(&CRect::left, size.cx), place(&CRect::top, size.cy),
        place(&CRect::right, size.cx), place(&CRect::bottom, size.cy) };
}

void CViewTracker::OnRectChanged(CRect const &oldRect)
{
    CRect expected = m_docRect;
    m_coord->DocToViewport(expected);
    if (m_rect == expected)
        return;
    CRect normalized = oldRect;
    normalized.NormalizeRect();
    if (m_rect == normalized) // turned, not moved
        m_docRect.NormalizeRect();
    else if (GetTrackedHandle() == inside || m_rect.Size() == oldRect.Size())
        m_docRect = GetMovedDocRect();
    else
        m_docRect = GetResizedDocRect(oldRect);
    UpdateRect();
}

void CViewTracker::OnTrackerCallback(Event event)
{
    if (event == trackBegin)
        m_docRectAtStart = m_docRect;
    else if (event == trackCancelled)
        SetDocRect(m_docRectAtStart);
    CKorTracker::OnTrackerCallback(event);
}

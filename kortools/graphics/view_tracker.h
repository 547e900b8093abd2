// SPDX-License-Identifier: MIT
// CViewTracker: the tracker on a rectangle of a zoomed document, in whole units. CKorCoord creates
// it, keeps it where its units are while zoom and scroll position change, and deletes it.
//
//   CViewTracker *const crop = coord.InitTracker(CRect(0, 0, 64, 64), CKorTracker::dottedLine);
//   crop->Track(window, point);
//   CRect const chosen = crop->GetDocRect();
#pragma once

#include "kortools/graphics/kor_tracker.h"

class CKorCoord;

class KORTOOLS_API CViewTracker : public CKorTracker {
public:
    // The coordinates must outlive the tracker.
    CViewTracker(CKorCoord *coord, CRect const &docRect, unsigned int style);

    // In units, right and bottom outside. It lies inside the document once the user changed it;
    // while one is dragged inside out it is inverted as the tracker is.
    CRect const &GetDocRect() const { return m_docRect; }
    void SetDocRect(CRect const &docRect);

    // As the tracker's, but by a unit of the document. `bounds` is in pixels, as everywhere; what
    // it limits is the document, too.
    int OnKey(unsigned int key, CRect const *bounds) override;

    void UpdateRect(); // puts the tracker where its units are now

protected:
    // Goes to the nearest units, when it is not where its units are already. An edge that did not
    // move keeps its unit, even where several share a pixel, and a rectangle that is moved keeps
    // its size.
    void OnRectChanged(CRect const &oldRect) override;
    void OnTrackerCallback(Event event) override;

private:
    CRect GetMovedDocRect() const;
    CRect GetResizedDocRect(CRect const &oldRect) const;

    CKorCoord *m_coord;
    CRect m_docRect;
    CRect m_docRectAtStart;
};

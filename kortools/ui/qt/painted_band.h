// SPDX-License-Identifier: MIT
// PaintedBand: the rubber band of a view, which keeps the pixels below it: the handler is not
// asked to paint what the band has left.
#pragma once

#include "kortools/ui/qt/rubber_band.h"

#include <QImage>

namespace kortools::ui::qt {

class PaintedBand : public RubberBand {
public:
    explicit PaintedBand(QWidget &widget);

    void show(QRect const &rect) override;
    void hide() override;
    void note_invalid(QRegion const &region) override;
    bool is_busy() const { return !m_sides.isEmpty() || !m_mine.isEmpty(); }

    // --- The two parts of a paint event, before and after the handler's

    // Puts back what was below the band. The result is what the handler must paint.
    QRegion restore(QRegion const &invalid);
    void draw(QRegion const &invalid);

private:
    void replace(QRegion const &sides);

    QPointer<QWidget> m_widget;
    QRegion m_sides;   // where the band is to be
    QRegion m_drawn;   // where its pixels are
    QRegion m_saved;   // where m_under has those below it
    QRegion m_mine;    // invalid for no other reason than the band
    QRegion m_foreign; // invalid for others
    QImage m_under;    // of the widget's size
};

} // namespace kortools::ui::qt

// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/painted_band.h"

#include "kortools/ui/qt/painted_dc.h"

#include <QPainter>

#include <utility>

namespace kortools::ui::qt {

PaintedBand::PaintedBand(QWidget &widget)
    : m_widget(&widget)
{
}

void PaintedBand::show(QRect const &rect)
{
    QRegion sides;
    for (QRect const &side : get_sides(rect))
        sides += side;
    replace(sides);
}

void PaintedBand::hide()
{
    replace({});
}

void PaintedBand::replace(QRegion const &sides)
{
    if (!m_widget)
        return;
    QRegion const changed = (std::exchange(m_sides, sides) ^ sides) & m_widget->rect();
    m_mine += changed - m_foreign;
    m_widget->update(changed);
}

void PaintedBand::note_invalid(QRegion const &region)
{
    m_mine -= region;
    m_foreign += region;
}

// Without saved pixels the handler has to paint.
QRegion PaintedBand::restore(QRegion const &invalid)
{
    QRegion const mine = m_mine & invalid;
    QRegion const covered = mine & m_drawn;
    QRegion const known = covered & m_saved;
    if (!known.isEmpty()) {
        QPainter painter(m_widget);
        for (QRect const &rect : known)
            painter.drawImage(rect.topLeft(), m_under, rect);
    }
    m_mine -= invalid;
    m_foreign -= invalid;
    m_drawn -= invalid;
    return (invalid - mine) + (covered - known);
}

void PaintedBand::draw(QRegion const &invalid)
{
    m_saved -= invalid;
    QRegion const sides = m_sides & invalid;
    if (sides.isEmpty())
        return;
    {
        QPainter painter(m_widget);
        QPoint origin;
        if (QImage const *const image = get_painted_image(painter, m_widget->rect(), origin)) {
            if (m_under.size() != m_widget->size()) {
                m_under = QImage(m_widget->size(), QImage::Format_RGB32);
                m_saved = {};
            }
            QPainter saving(&m_under);
            for (QRect const &rect : sides)
                saving.drawImage(rect.topLeft(), *image, rect.translated(origin));
            m_saved += sides;
        }
    }
    draw_band(*m_widget, sides, {});
    m_drawn += sides;
}

} // namespace kortools::ui::qt

// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/rubber_band.h"

#include <QPaintEvent>
#include <QPainter>

namespace kortools::ui::qt {
namespace {

class Side : public QWidget {
public:
    explicit Side(QWidget *parent)
        : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_OpaquePaintEvent);
        setFocusPolicy(Qt::NoFocus);
        hide();
    }

protected:
    void paintEvent(QPaintEvent *event) override { draw_band(*this, event->region(), -pos()); }
};

} // namespace

std::array<QRect, 4> get_sides(QRect const &rect)
{
    int const w = rect.width();
    int const h = rect.height();
    return { QRect(rect.x(), rect.y(), w, h > 0 ? 1 : 0),
        QRect(rect.x(), rect.y() + h - 1, w, h > 1 ? 1 : 0),
        QRect(rect.x(), rect.y() + 1, w > 0 ? 1 : 0, h - 2),
        QRect(rect.x() + w - 1, rect.y() + 1, w > 1 ? 1 : 0, h - 2) };
}

void draw_band(QWidget &widget, QRegion const &region, QPoint const &origin)
{
    QPainter painter(&widget);
    painter.setBrushOrigin(origin);
    QBrush const dots(Qt::black, Qt::Dense4Pattern);
    for (QRect const &rect : region) {
        painter.fillRect(rect, Qt::white);
        painter.fillRect(rect, dots);
    }
}

OverlaidBand::OverlaidBand(QWidget &widget)
{
    for (QPointer<QWidget> &side : m_sides)
        side = new Side(&widget);
}

OverlaidBand::~OverlaidBand()
{
    for (QPointer<QWidget> const &side : m_sides)
        delete side.data();
}

void OverlaidBand::show(QRect const &rect)
{
    std::array<QRect, 4> const places = get_sides(rect);
    for (std::size_t i = 0; i < m_sides.size(); ++i) {
        if (!m_sides[i])
            continue;
        m_sides[i]->setVisible(!places[i].isEmpty());
        if (!places[i].isEmpty())
            m_sides[i]->setGeometry(places[i]);
        m_sides[i]->raise();
    }
}

void OverlaidBand::hide()
{
    for (QPointer<QWidget> const &side : m_sides) {
        if (side)
            side->hide();
    }
}

} // namespace kortools::ui::qt

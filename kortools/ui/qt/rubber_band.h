// SPDX-License-Identifier: MIT
// The rubber band: a frame of one pixel above all else in a widget.
#pragma once

#include <QPointer>
#include <QRect>
#include <QRegion>
#include <QWidget>

#include <array>

namespace kortools::ui::qt {

class RubberBand {
public:
    RubberBand() = default;
    RubberBand(RubberBand const &) = delete;
    RubberBand &operator=(RubberBand const &) = delete;
    virtual ~RubberBand() = default;

    virtual void show(QRect const &rect) = 0; // replaces the last one
    virtual void hide() = 0;

    // The widget is to paint `region` for reasons of its own.
    virtual void note_invalid(QRegion const & /*region*/) { }
};

// The sides of a frame, as far as there is room for them.
std::array<QRect, 4> get_sides(QRect const &rect);

// Black and white in turn, to be seen on every ground.
void draw_band(QWidget &widget, QRegion const &region, QPoint const &origin);

// On a widget whoever paints it: the sides are four widgets above it.
class OverlaidBand : public RubberBand {
public:
    explicit OverlaidBand(QWidget &widget);
    ~OverlaidBand() override;

    void show(QRect const &rect) override;
    void hide() override;

private:
    std::array<QPointer<QWidget>, 4> m_sides; // the widget, when destroyed, takes them along
};

} // namespace kortools::ui::qt

// SPDX-License-Identifier: MIT
// Texts, points and rectangles between the library and Qt.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/graphics/rect.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <QtMath>

namespace kortools::ui::qt {

// Null is the empty text.
inline QString to_qt(wchar_t const *text)
{
    return text ? QString::fromWCharArray(text) : QString();
}

inline QString to_qt(wchar_t const *text, int length)
{
    return text && length > 0 ? QString::fromWCharArray(text, length) : QString();
}

inline CXTString<wchar_t> to_text(QString const &text)
{
    std::wstring const wide = text.toStdWString();
    return { wide.data(), static_cast<int>(wide.size()) };
}

inline CXPoint to_point(QPoint const &point)
{
    return { point.x(), point.y() };
}

// The pixel of a position in an event.
inline CXPoint get_pixel(QPointF const &position)
{
    return { qFloor(position.x()), qFloor(position.y()) };
}

inline CXSize to_size(QSize const &size)
{
    return { size.width(), size.height() };
}

inline CXRect to_rect(QRect const &rect)
{
    return { rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height() };
}

inline QRect to_qt(CXRect const &rect)
{
    return { rect.left, rect.top, rect.Width(), rect.Height() };
}

} // namespace kortools::ui::qt

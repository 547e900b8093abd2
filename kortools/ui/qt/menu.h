// SPDX-License-Identifier: MIT
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/xstring.h"

#include <QPoint>

class QWidget;

namespace kortools::ui::qt {

// CWnd::TrackPopupMenu() at a position of the screen. The widget may go meanwhile.
int show_menu(
    QWidget const &owner, QPoint const &position, CXArray<CXTString<wchar_t>> const &entries);

// Lets a window that has no parent, which would destroy it, stay above the owner's.
void put_above(QWidget &widget, QWidget const *owner);

} // namespace kortools::ui::qt

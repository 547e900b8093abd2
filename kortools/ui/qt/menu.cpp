// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/menu.h"

#include "kortools/ui/qt/text.h"
#include "kortools/ui/qt/window_thread.h"

#include <QMenu>
#include <QWindow>

namespace kortools::ui::qt {

void put_above(QWidget &widget, QWidget const *owner)
{
    if (!owner || !owner->window()->windowHandle())
        return;
    widget.winId(); // makes its window
    widget.windowHandle()->setTransientParent(owner->window()->windowHandle());
}

int show_menu(
    QWidget const &owner, QPoint const &position, CXArray<CXTString<wchar_t>> const &entries)
{
    int chosen = -1;
    QMenu menu;
    for (int i = 0; i < entries.GetSize(); ++i) {
        if (entries[i].IsEmpty()) {
            menu.addSeparator();
            continue;
        }
        QAction *const action = menu.addAction(to_qt(entries[i]));
        QObject::connect(action, &QAction::triggered, [&chosen, i] { chosen = i; });
    }
    if (menu.isEmpty())
        return -1;
    put_above(menu, &owner);
    WindowThread &thread = WindowThread::get();
    menu.popup(position);
    thread.serve_while([&menu] { return menu.isVisible(); });
    menu.close();
    thread.calls.rethrow();
    return chosen;
}

} // namespace kortools::ui::qt

// SPDX-License-Identifier: MIT
// Keys by their numbers on Windows, and which of them are held down.
#pragma once

#include <QEvent>
#include <set>

class QKeyEvent;

namespace kortools::ui::qt {

// 0 for a key that has no number. Signs are looked for where the US keyboard has them.
unsigned int get_key_number(QKeyEvent const &event);

// Which keys are down by what the windows were told until now, as Windows answers it.
class KeyState {
public:
    void note(QEvent const &event); // every event that a widget is about to get
    bool is_down(unsigned int key) const { return m_down.count(key) == 1; }

private:
    void set_down(unsigned int key, bool is_down);
    void set_modifiers(Qt::KeyboardModifiers modifiers);

    std::set<unsigned int> m_down;
};

} // namespace kortools::ui::qt

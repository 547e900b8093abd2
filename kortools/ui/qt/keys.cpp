// SPDX-License-Identifier: MIT
#include "kortools/ui/qt/keys.h"

#include "kortools/ui/window.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace kortools::ui::qt {
namespace {

constexpr unsigned int left_button_key = 1;
constexpr unsigned int right_button_key = 2;
constexpr unsigned int middle_button_key = 4;
constexpr unsigned int alt_key = 0x12;
constexpr unsigned int first_function_key = 0x70;
constexpr unsigned int first_pad_digit = 0x60;

struct KeyNumber {
    int key; // of Qt
    unsigned int number;
};

constexpr KeyNumber named_keys[] = {
    { Qt::Key_Backspace, 0x08 },
    { Qt::Key_Tab, 0x09 },
    { Qt::Key_Backtab, 0x09 },
    { Qt::Key_Clear, 0x0C },
    { Qt::Key_Return, KeyReturn },
    { Qt::Key_Enter, KeyReturn },
    { Qt::Key_Shift, KeyShift },
    { Qt::Key_Control, KeyControl },
    { Qt::Key_Alt, alt_key },
    { Qt::Key_AltGr, alt_key },
    { Qt::Key_Pause, 0x13 },
    { Qt::Key_CapsLock, 0x14 },
    { Qt::Key_Escape, KeyEscape },
    { Qt::Key_PageUp, KeyPageUp },
    { Qt::Key_PageDown, KeyPageDown },
    { Qt::Key_End, KeyEnd },
    { Qt::Key_Home, KeyHome },
    { Qt::Key_Left, KeyLeft },
    { Qt::Key_Up, KeyUp },
    { Qt::Key_Right, KeyRight },
    { Qt::Key_Down, KeyDown },
    { Qt::Key_Print, 0x2C },
    { Qt::Key_Insert, 0x2D },
    { Qt::Key_Delete, 0x2E },
    { Qt::Key_Help, 0x2F },
    { Qt::Key_Meta, 0x5B },
    { Qt::Key_Menu, 0x5D },
    { Qt::Key_NumLock, 0x90 },
    { Qt::Key_ScrollLock, 0x91 },
};

// The signs of a key, without and with Shift, and the key's number.
struct SignNumber {
    char const *signs;
    unsigned int number;
};

constexpr SignNumber sign_keys[] = { { ";:", 0xBA }, { "=+", 0xBB }, { ",<", 0xBC }, { "-_", 0xBD },
    { ".>", 0xBE }, { "/?", 0xBF }, { "`~", 0xC0 }, { "[{", 0xDB }, { "\\|", 0xDC }, { "]}", 0xDD },
    { "'\"", 0xDE }, { "!", '1' }, { "@", '2' }, { "#", '3' }, { "$", '4' }, { "%", '5' },
    { "^", '6' }, { "&", '7' }, { "*", '8' }, { "(", '9' }, { ")", '0' } };

constexpr SignNumber pad_signs[]
    = { { "*", 0x6A }, { "+", 0x6B }, { ",", 0x6C }, { "-", 0x6D }, { ".", 0x6E }, { "/", 0x6F } };

template <class Table> unsigned int find_sign(Table const &table, int key)
{
    auto const has_key
        = [key](SignNumber const &entry) { return key == entry.signs[0] || key == entry.signs[1]; };
    auto const *const found = std::ranges::find_if(table, has_key);
    return key != 0 && found != std::end(table) ? found->number : 0;
}

unsigned int get_pad_number(int key)
{
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return first_pad_digit + static_cast<unsigned int>(key - Qt::Key_0);
    return find_sign(pad_signs, key);
}

} // namespace

unsigned int get_key_number(QKeyEvent const &event)
{
    int const key = event.key();
    if ((event.modifiers() & Qt::KeypadModifier) != 0) {
        if (unsigned int const number = get_pad_number(key))
            return number;
    }
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)
        || key == Qt::Key_Space)
        return static_cast<unsigned int>(key);
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return first_function_key + static_cast<unsigned int>(key - Qt::Key_F1);
    auto const *const named = std::ranges::find(named_keys, key, &KeyNumber::key);
    return named != std::end(named_keys) ? named->number : find_sign(sign_keys, key);
}

void KeyState::set_down(unsigned int key, bool is_down)
{
    if (is_down)
        m_down.insert(key);
    else
        m_down.erase(key);
}

void KeyState::set_modifiers(Qt::KeyboardModifiers modifiers)
{
    set_down(KeyShift, modifiers.testFlag(Qt::ShiftModifier));
    set_down(KeyControl, modifiers.testFlag(Qt::ControlModifier));
    set_down(alt_key, modifiers.testFlag(Qt::AltModifier));
}

// The modifiers of an event are trusted, as a key may be released over another program; those of a
// modifier's own event tell the time before it on some systems.
void KeyState::note(QEvent const &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        auto const &key = static_cast<QKeyEvent const &>(event);
        unsigned int const number = get_key_number(key);
        if (number != KeyShift && number != KeyControl && number != alt_key)
            set_modifiers(key.modifiers());
        if (number != 0)
            set_down(number, event.type() == QEvent::KeyPress);
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove: {
        auto const &mouse = static_cast<QMouseEvent const &>(event);
        set_modifiers(mouse.modifiers());
        set_down(left_button_key, mouse.buttons().testFlag(Qt::LeftButton));
        set_down(right_button_key, mouse.buttons().testFlag(Qt::RightButton));
        set_down(middle_button_key, mouse.buttons().testFlag(Qt::MiddleButton));
        break;
    }
    case QEvent::Wheel:
        set_modifiers(static_cast<QInputEvent const &>(event).modifiers());
        break;
    case QEvent::WindowDeactivate: // what is released from now on is told to others
        m_down.clear();
        break;
    default:
        break;
    }
}

} // namespace kortools::ui::qt

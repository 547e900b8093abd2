// SPDX-License-Identifier: MIT
// Driver: the user of a window back end, for the battery of tests that every back end passes. Each
// tests/ui/<back end>_driver.cpp defines one, and make_driver(). There is one driver in a program;
// everything is called on the main thread.
//
// What the user does waits, in the order of the calls, until somebody serves the events of the
// thread (PumpMessages(), Run(), WaitForInput(), a modal loop): nothing is handled within a call.
// What waits for a frame or window that was deleted meanwhile is forgotten.
// A driver prefers the events of the window system itself to calls of the back end. All positions
// are those of the client area of a frame's view; the frame is visible.
#pragma once

#include "kortools/ui/back_end.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kor_test {

// What the mouse and the keyboard do.
struct UserInput {
    enum class Kind { Move, LeftDown, LeftUp, RightDown, RightUp, Wheel, KeyDown, KeyUp };
    Kind kind;
    CXPoint position {};  // of mouse events: the pointer is there from now on (GetCursorPos())
    unsigned int key = 0; // kortools::ui::Key; it is held (IsKeyDown()) from KeyDown to KeyUp
    int steps = 0;        // of Wheel, away from the user when positive
};

// Something that waits for the user.
struct Modal {
    enum class Kind { MessageBox, Menu, Text };
    Kind kind;
    std::wstring title; // not of menus
    std::wstring text;  // of a message box, or the lines of a text, which "\n" separates

    // Of a message box, from the left: their numbers as in kortools/platform/message_box.h, and the
    // one that Return presses.
    std::vector<int> buttons;
    int default_button = 0;

    std::vector<std::wstring> entries; // of a menu as they were passed; separators are empty
};

// What is seen of a frame; the cursor over the client area of its view.
struct FrameContents {
    std::wstring title;
    std::wstring status;
    bool is_enabled; // takes input: no modal dialog above it
    kortools::ui::CursorShape cursor;
};

// What is seen of a progress window.
struct ProgressContents {
    struct Bar {
        bool is_shown;
        bool is_marquee;
        int position; // percent
        std::wstring label;
        bool is_label_shown;
    };
    bool is_shown;
    std::wstring title; // in the title bar
    std::wstring line;  // above the bars
    std::wstring status;
    std::array<Bar, 2> bars;
    bool is_cancel_shown;
    bool is_cancel_enabled;
    std::wstring cancel_text;
    bool is_ok_shown;
    std::wstring ok_text;
    int ok_width;  // pixels
    int ok_offset; // how far its middle lies right of that of the client area, pixels
    int task_bar;  // -1: none, or no task bar
};

enum class ProgressAction { Cancel, Ok, Escape, CloseBox }; // buttons are pressed if they can be

class Driver {
public:
    Driver() = default;
    Driver(Driver const &) = delete;
    Driver &operator=(Driver const &) = delete;
    virtual ~Driver() = default;

    // Makes the back end the library's, as a program does.
    virtual kortools::ui::BackEnd &install() = 0;

    virtual bool has_task_bar() const = 0;

    // Whether what the window system draws by itself (text) can be found in pictures.
    virtual bool has_fonts() const = 0;

    // --- Frames

    virtual void input(kortools::ui::ViewFrame &frame, UserInput const &input) = 0;

    // Drags a scroll bar, which is shown, to a position. It stays there.
    virtual void scroll(kortools::ui::ViewFrame &frame, kortools::ui::ScrollBar bar, int position)
        = 0;

    virtual void close(kortools::ui::ViewFrame &frame) = 0; // by its close box

    // Makes the frame larger, or smaller, by so many pixels.
    virtual void resize(kortools::ui::ViewFrame &frame, CXSize const &by) = 0;

    // Something else takes the mouse away while the view has it.
    virtual void lose_capture(kortools::ui::ViewFrame &frame) = 0;

    virtual FrameContents read(kortools::ui::ViewFrame &frame) = 0; // at once

    // --- What is served with the user's events, for tests of what happens meanwhile

    virtual void post(std::function<void()> function) = 0; // in turn with the input above

    // --- Modal loops

    // The next message box, menu or text, on whatever thread, is described to `answer`, whose
    // result the user gives: the number of a button (0: Escape or the close box), the index of an
    // entry
    // (-1: Escape). A text is closed. The function is called by the loop or by another thread while
    // the loop waits; it must not throw. Several calls are for several of them, in order.
    virtual void answer_next(std::function<int(Modal const &)> answer) = 0;

    // --- Fields of the host's own

    // As attach_edit() makes it of a new native field, empty, which the driver keeps till its end.
    // Null when the window system has none.
    virtual std::unique_ptr<CEdit> make_edit(bool has_many_lines) = 0;

    // --- Progress windows, visible

    virtual ProgressContents read(kortools::ui::ProgressWindow &window) = 0; // at once, any state
    virtual void act(kortools::ui::ProgressWindow &window, ProgressAction action) = 0;
};

std::unique_ptr<Driver> make_driver();

} // namespace kor_test

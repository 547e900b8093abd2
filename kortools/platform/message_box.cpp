// SPDX-License-Identifier: MIT
#include "kortools/platform/message_box.h"

#include <atomic>

namespace kortools::platform {
namespace {

std::atomic<MessageBoxHandler> s_handler { nullptr };

// The answers of each button set, in the order of its buttons.
int get_default_answer(unsigned int flags)
{
    static constexpr int answers[7][3] = { { 1, 1, 1 }, { 1, 2, 2 }, { 3, 4, 5 }, { 6, 7, 2 },
        { 6, 7, 7 }, { 4, 2, 2 }, { 2, 10, 11 } };
    unsigned int const buttons = flags & 0xF;
    unsigned int const position = (flags >> 8) & 0xF;
    return buttons < 7 && position < 3 ? answers[buttons][position] : 1;
}

} // namespace

MessageBoxHandler set_message_box_handler(MessageBoxHandler handler)
{
    return s_handler.exchange(handler);
}

int show_message_box(wchar_t const *text, unsigned int flags)
{
    if (MessageBoxHandler const handler = s_handler.load())
        return handler(text, flags);
    write_to_standard_error(text);
    return get_default_answer(flags);
}

} // namespace kortools::platform

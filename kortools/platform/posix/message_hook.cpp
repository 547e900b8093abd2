// SPDX-License-Identifier: MIT
#include "kortools/platform/message_hook.h"

namespace kortools::platform {

bool install_message_hook()
{
    return true; // back ends report whether anybody listens or not
}

void remove_message_hook() { }

} // namespace kortools::platform

// SPDX-License-Identifier: MIT
#include "kortools/platform/language.h"

#include <windows.h>

namespace kortools::platform {

unsigned int get_user_primary_language()
{
    return PRIMARYLANGID(GetUserDefaultUILanguage());
}

} // namespace kortools::platform

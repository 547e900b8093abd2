// SPDX-License-Identifier: MIT
#include "kortools/platform/language.h"

#include "kortools/platform/locale_text.h"

#include <clocale>
#include <cstdlib>

namespace kortools::platform {

unsigned int get_user_primary_language()
{
    if (!is_c_locale(LC_MESSAGES))
        return get_primary_language(std::setlocale(LC_MESSAGES, nullptr));
    for (char const *const name : { "LC_ALL", "LC_MESSAGES", "LANG" }) {
        char const *const value = std::getenv(name);
        if (value && *value)
            return get_primary_language(value);
    }
    return get_primary_language("C");
}

void set_thread_language(unsigned short) { }

} // namespace kortools::platform

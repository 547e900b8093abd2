// SPDX-License-Identifier: MIT
#include "kortools/platform/language.h"

#include "kortools/platform/locale_text.h"

#include <clocale>
#include <cstring>
#include <iterator>
#include <string_view>
#include <unistd.h>

namespace kortools::platform {
namespace {

// The value of the first of these variables that is not empty, or "C". In one pass: each label asks
// for it, and the environment may have changed since the last one did.
char const *get_environment_locale()
{
    constexpr std::string_view names[] = { "LC_ALL=", "LC_MESSAGES=", "LANG=" };
    char const *values[std::size(names)] {};
    for (char **variable = environ; variable && *variable; ++variable) {
        if (**variable != 'L')
            continue;
        for (std::size_t i = 0; i < std::size(names); ++i) {
            if (!values[i] && std::strncmp(*variable, names[i].data(), names[i].size()) == 0)
                values[i] = *variable + names[i].size();
        }
    }
    for (char const *const value : values) {
        if (value && *value)
            return value;
    }
    return "C";
}

} // namespace

unsigned int get_user_primary_language()
{
    bool const is_set = !is_c_locale(LC_MESSAGES);
    return get_primary_language(
        is_set ? std::setlocale(LC_MESSAGES, nullptr) : get_environment_locale());
}

void set_thread_language(unsigned short) { }

} // namespace kortools::platform

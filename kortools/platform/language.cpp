// SPDX-License-Identifier: MIT
#include "kortools/platform/language.h"

#include <algorithm>
#include <iterator>

namespace kortools::platform {
namespace {

struct Language {
    std::string_view code; // ISO 639
    unsigned int number;   // of Windows
};

constexpr Language languages[] = {
    { "af", 54 },
    { "ar", 1 },
    { "az", 44 },
    { "be", 35 },
    { "bg", 2 },
    { "br", 126 },
    { "bs", 26 },
    { "ca", 3 },
    { "cs", 5 },
    { "cy", 82 },
    { "da", 6 },
    { "de", 7 },
    { "el", 8 },
    { "en", 9 },
    { "es", 10 },
    { "et", 37 },
    { "eu", 45 },
    { "fa", 41 },
    { "fi", 11 },
    { "fo", 56 },
    { "fr", 12 },
    { "ga", 60 },
    { "gl", 86 },
    { "he", 13 },
    { "hi", 57 },
    { "hr", 26 },
    { "hu", 14 },
    { "hy", 43 },
    { "id", 33 },
    { "is", 15 },
    { "it", 16 },
    { "ja", 17 },
    { "ka", 55 },
    { "kk", 63 },
    { "ko", 18 },
    { "lb", 110 },
    { "lt", 39 },
    { "lv", 38 },
    { "mk", 47 },
    { "ms", 62 },
    { "mt", 58 },
    { "nb", 20 },
    { "nl", 19 },
    { "nn", 20 },
    { "no", 20 },
    { "pl", 21 },
    { "pt", 22 },
    { "rm", 23 },
    { "ro", 24 },
    { "ru", 25 },
    { "sk", 27 },
    { "sl", 36 },
    { "sq", 28 },
    { "sr", 26 },
    { "sv", 29 },
    { "th", 30 },
    { "tr", 31 },
    { "uk", 34 },
    { "ur", 32 },
    { "vi", 42 },
    { "zh", 4 },
};
static_assert(std::ranges::is_sorted(languages, {}, &Language::code));

} // namespace

unsigned int get_primary_language(std::string_view locale_name)
{
    std::string_view const code = locale_name.substr(0, locale_name.find_first_of("_.@-"));
    Language const *const found = std::ranges::lower_bound(languages, code, {}, &Language::code);
    return found != std::end(languages) && found->code == code ? found->number : 9;
}

} // namespace kortools::platform

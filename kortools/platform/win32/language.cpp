// SPDX-License-Identifier: MIT
#include "kortools/platform/language.h"

#include <windows.h>

namespace kortools::platform {

unsigned int get_user_primary_language()
{
    return PRIMARYLANGID(GetUserDefaultUILanguage());
}

void set_thread_language(unsigned short language)
{
    SetThreadLocale(language != 0 ? MAKELCID(language, SORT_DEFAULT) : LOCALE_USER_DEFAULT);
    using SetLanguage = LANGID(WINAPI *)(LANGID); // systems before Windows Vista lack it
    auto const set_language = reinterpret_cast<SetLanguage>(reinterpret_cast<void *>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetThreadUILanguage")));
    if (set_language)
        set_language(language);
}

} // namespace kortools::platform

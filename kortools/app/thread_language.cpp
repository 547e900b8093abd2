// SPDX-License-Identifier: MIT
#include "kortools/app/thread_language.h"

#include "kortools/platform/language.h"
#include "kortools/text/string_table.h"

void SetThreadLanguage(unsigned short language)
{
    kortools::platform::set_thread_language(language);
    kortools::text::set_thread_language(language);
}

// SPDX-License-Identifier: MIT
#include "kortools/platform/automation_strings.h"

#include <windows.h>

#include <oleauto.h>

namespace kortools::platform {
namespace {

BSTR to_system(char16_t const *text)
{
    return reinterpret_cast<BSTR>(const_cast<char16_t *>(text));
}

} // namespace

char16_t *allocate_automation_string(wchar_t const *source)
{
    return reinterpret_cast<char16_t *>(SysAllocString(source));
}

void free_automation_string(char16_t *text)
{
    SysFreeString(to_system(text));
}

unsigned int get_automation_string_length(char16_t const *text)
{
    return SysStringLen(to_system(text));
}

} // namespace kortools::platform

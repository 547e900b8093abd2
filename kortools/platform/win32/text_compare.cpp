// SPDX-License-Identifier: MIT
// Collation by the runtime. In the C locale its caseless forms are the ordinal comparison, which
// some versions do with signed bytes; ours is used there.
#include "kortools/platform/text_compare.h"

#include "kortools/platform/locale_text.h"

#include <clocale>
#include <cstring>
#include <cwchar>

namespace kortools::platform {

int collate(char const *a, char const *b)
{
    return is_c_locale(LC_COLLATE) ? std::strcmp(a, b) : strcoll(a, b);
}

int collate(wchar_t const *a, wchar_t const *b)
{
    return is_c_locale(LC_COLLATE) ? compare_ordinal(a, b) : wcscoll(a, b);
}

int collate_no_case(char const *a, char const *b)
{
    return is_c_locale(LC_COLLATE) ? compare_no_case(a, b) : _stricoll(a, b);
}

int collate_no_case(wchar_t const *a, wchar_t const *b)
{
    return is_c_locale(LC_COLLATE) ? compare_no_case(a, b) : _wcsicoll(a, b);
}

} // namespace kortools::platform

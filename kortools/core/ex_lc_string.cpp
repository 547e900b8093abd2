// SPDX-License-Identifier: MIT
#include "kortools/core/ex_lc_string.h"

#include <utility>

CExLCString::CExLCString(wchar_t const *text)
    : CExLCString(CXTString<wchar_t>(text))
{
}

CExLCString::CExLCString(CXTString<wchar_t> text)
    : m_text(std::move(text))
{
    m_text.MakeLower();
}

// SPDX-License-Identifier: MIT
#include "kortools/core/xstring.h"

#include "kortools/platform/text_scan.h"

#include <cstdarg>

template <class T> int CXTString<T>::ScanS(T const *format, ...) const
{
    std::va_list args;
    va_start(args, format);
    int const fields = ScanVS(0, format, args);
    va_end(args);
    return fields;
}

template <class T> int CXTString<T>::ScanS(int start, T const *format, ...) const
{
    std::va_list args;
    va_start(args, format);
    int const fields = ScanVS(start, format, args);
    va_end(args);
    return fields;
}

template <class T> int CXTString<T>::ScanVS(T const *format, std::va_list args) const
{
    return ScanVS(0, format, args);
}

template <class T> int CXTString<T>::ScanVS(int start, T const *format, std::va_list args) const
{
    return format ? kortools::platform::scan_text(GetAtPtr(start), format, args) : 0;
}

template class CXTString<char>;
template class CXTString<wchar_t>;

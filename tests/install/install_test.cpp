// SPDX-License-Identifier: MIT
// Uses a bit of everything that is exported: plain functions, template instantiations, and an
// exception that crosses the library's boundary by pointer.
#include <kortools/kortools.h>

#include <cstdio>

int main()
{
    CXTString<wchar_t> text;
    text.Format(L"%s %d", L"installed", 16);
    CXTString<char> const narrow(text);
    try {
        kortools::core::throw_invalid_argument();
    } catch (CXInvalidArgException *exception) {
        exception->Delete();
        std::puts(narrow.GetConstBuffer());
        return XGetThreadException() == nullptr ? 0 : 1;
    }
    return 2;
}

// SPDX-License-Identifier: MIT
// Uses a bit of everything that is exported: plain functions, template instantiations, an exception
// that crosses the library's boundary by pointer, and a fault that becomes one, which is caught
// only with the compiler option that the package hands out.
#include <kortools/kortools.h>

#include <cstdio>

int *volatile s_null = nullptr;

int main()
{
    InitKorTools(korFaultSignals);
    try {
        *s_null = 1;
    } catch (CXException *exception) {
        exception->Delete();
    }
    CloseKorTools(korFaultSignals);
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

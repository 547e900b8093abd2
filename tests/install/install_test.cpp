// SPDX-License-Identifier: MIT
// Uses a bit of everything that is exported: plain functions, template instantiations, an exception
// that crosses the library's boundary by pointer, and a fault that becomes one, which is caught
// only with the compiler option that the package hands out. With the folder of a plug-in that was
// built with the package, that one is registered, too.
#include <kortools/kortools.h>

#include <cstdio>

int *volatile s_null = nullptr;

static bool registers_plugin(CXTString<char> const &folder)
{
    InitKorTools(korFileTypes);
    RegisterIOPlugins(fileKind3D, CXTString<wchar_t>(folder));
    bool const is_registered = fileGetKindOf(L"a.xyz") == fileKind3D;
    FreeIOPlugins(fileKind3D);
    CloseKorTools(korFileTypes);
    return is_registered;
}

int main(int argc, char **argv)
{
    if (argc > 1 && !registers_plugin(argv[1]))
        return 3;
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

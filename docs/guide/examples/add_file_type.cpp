// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

constexpr unsigned int own_component = fileMakeCode("DRAW");

static void add_file_type()
{
    CFileExt type;
    type.m_description = L"Drawings";
    type.m_extensions = L".drw|.drawing"; // the main one first
    type.m_class = fileMakeCode("DRW ");
    type.m_properties = fileKindBitmap | fileCanLoad | fileCanSave;
    type.m_loader = own_component;
    type.m_saver = own_component;
    fileRegisterFile(type);
}

static void open(CXTString<wchar_t> const &path)
{
    CXTString<char> const name(path);
    if (fileGetLoader(path) == own_component)
        std::printf("%s: a drawing, to be loaded here\n", name.GetConstBuffer());
    else if (fileGetProperties(path) & fileCanLoad)
        std::printf("%s: to be loaded by another component\n", name.GetConstBuffer());
    else
        std::printf("%s: unknown\n", name.GetConstBuffer());
}

int main()
{
    InitKorTools(korFileTypes);
    add_file_type();
    open(L"C:\\work\\plan.DRAWING");
    open(L"C:\\work\\plan.nothing");

    CXArray<CXTString<wchar_t>> extensions;
    fileGetExtensionArray(fileMakeCode("DRW "), extensions);
    for (CXTString<wchar_t> const &extension : extensions)
        std::printf("%s\n", CXTString<char>(extension).GetConstBuffer());

    fileUnregisterFile(fileMakeCode("DRW "), own_component);
    open(L"C:\\work\\plan.drw");
    CloseKorTools(korFileTypes);
}

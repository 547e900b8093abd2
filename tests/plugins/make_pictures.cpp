// SPDX-License-Identifier: MIT
// Writes the pictures of samples/ that come from gradient.png, with the bitmap plug-in:
//   make_pictures PLUGINS FOLDER
#include "kortools/kortools.h"

#include <cstdio>
#include <filesystem>

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    std::filesystem::path const folder = std::filesystem::absolute(argv[2]);
    InitKorTools(korFileTypes);
    RegisterIOPlugins(fileKindBitmap, std::filesystem::absolute(argv[1]).wstring().c_str());
    CIoBitmap bitmap;
    CIoReport report;
    bool is_good = fileLoadBitmap((folder / "gradient.png").wstring().c_str(), bitmap, &report);
    for (wchar_t const *name : { L"gradient.jpg", L"gradient.tga", L"gradient.hdr" })
        is_good = is_good && fileSaveBitmap((folder / name).wstring().c_str(), bitmap, &report);
    if (!is_good)
        std::printf("%ls\n", report.m_error.GetConstBuffer());
    FreeIOPlugins(fileKindBitmap);
    CloseKorTools(korFileTypes);
    return is_good ? 0 : 1;
}

// SPDX-License-Identifier: MIT
#include <cstdio>
#include <kortools/kortools.h>

int main()
{
    CXArray<CXTString<wchar_t>> names;
    names.Add(L"gears");
    names.Add(L"caf\u00E9");
    CXMemFile file; // or CXFile file(L"C:\\tmp\\names.kor", CXFile::modeCreate | CXFile::modeWrite)
    CXArchive(&file, CXArchive::store) << 42 << names[1];

    int answer = 0;
    CXTString<wchar_t> name;
    file.Seek(0, CXFile::begin);
    CXArchive(&file, CXArchive::load) >> answer >> name;
    std::printf("%d, and %d characters\n", answer, name.GetLength()); // 42, and 4 characters
}

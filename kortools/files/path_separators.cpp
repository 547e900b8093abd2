// SPDX-License-Identifier: MIT
#include "kortools/files/path_separators.h"

#include <algorithm>

bool fileConvertSlash(CXTString<wchar_t> &path)
{
    CXTCharArray<wchar_t> &characters = path;
    wchar_t *const first = std::find(characters.begin(), characters.end(), L'/');
    std::replace(first, characters.end(), L'/', L'\\');
    return first != characters.end();
}

void fileRemoveDuplicatedSlash(CXTString<wchar_t> &path)
{
    CXTCharArray<wchar_t> &characters = path;
    wchar_t const *const end = std::unique(characters.begin(), characters.end(),
        [](wchar_t a, wchar_t b) { return a == L'\\' && b == L'\\'; });
    characters.SetLength(end - characters.begin());
}

void fileSlashTerminate(CXTString<wchar_t> &path)
{
    if (!fileIsSlashTerminated(path))
        path += L'\\';
}

bool fileIsSlashTerminated(CXTString<wchar_t> const &path)
{
    return path.GetView().ends_with(L'\\');
}

void fileRemoveSlashTermination(CXTString<wchar_t> &path)
{
    CXTCharArray<wchar_t> &characters = path;
    if (fileIsSlashTerminated(path))
        characters.SetLength(characters.GetLength() - 1);
}

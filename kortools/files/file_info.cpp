// SPDX-License-Identifier: MIT
#include "kortools/files/file_info.h"

#include "kortools/files/name_split.h"
#include "kortools/files/path_text.h"

using namespace kortools::files;

CFileInfo::CFileInfo(String const &path)
{
    NameParts const parts = split_name(view_of(path));
    m_directory = parts.directory;
    m_name = parts.base;
    m_extension = parts.extension;
}

// SPDX-License-Identifier: MIT
// The class record of the archive format.
#include "kortools/archive/archive.h"
#include "kortools/archive/runtime_class.h"
#include "kortools/core/char_array.h"

#include <algorithm>
#include <cstring>
#include <string_view>

void CXRuntimeClass::Save(CXArchive &archive) const
{
    std::size_t const length = std::min<std::size_t>(std::strlen(m_className), 0xFFFF);
    archive << static_cast<unsigned short>(GetSchema()) << static_cast<unsigned short>(length);
    archive.Write(m_className, length);
}

CXRuntimeClass const *CXRuntimeClass::Load(CXArchive &archive, unsigned int &schema)
{
    unsigned short stored_schema;
    unsigned short length;
    archive >> stored_schema >> length;
    schema = stored_schema;
    CXTCharArray<char> name(length);
    archive.EnsureRead(name.GetData(), length);
    if (name.GetView().find('\0') != std::string_view::npos)
        return nullptr; // would be found under the part before the zero
    return FindRuntimeClass(name.GetData());
}

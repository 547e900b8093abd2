// SPDX-License-Identifier: MIT
// The arrays that the library exports. They are made here, because their Serialize() needs the
// archive.
#include "kortools/archive/archive.h"
#include "kortools/core/array.h"

template class CXArray<int>;
template class CXArray<unsigned int>;
template class CXArray<unsigned char>;
template class CXArray<double>;
template class CXArray<CXObject *>;
template class CXArray<CXTString<wchar_t>>;
template class CXArray<CXTString<char>>;

// SPDX-License-Identifier: MIT
// The arrays that the library exports. They are made here, because their Serialize() needs the
// archive.
#include "kortools/archive/archive.h"
#include "kortools/core/array.h"

KOR_EXPORT_TEMPLATE(CXArray<int>);
KOR_EXPORT_TEMPLATE(CXArray<unsigned int>);
KOR_EXPORT_TEMPLATE(CXArray<unsigned char>);
KOR_EXPORT_TEMPLATE(CXArray<double>);
KOR_EXPORT_TEMPLATE(CXArray<CXObject *>);
KOR_EXPORT_TEMPLATE(CXArray<CXTString<wchar_t>>);
KOR_EXPORT_TEMPLATE(CXArray<CXTString<char>>);

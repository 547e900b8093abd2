// SPDX-License-Identifier: MIT
// KORTOOLS_API marks what the library exports.
// KORTOOLS_BUILDING is defined while the library itself is compiled, KORTOOLS_STATIC where its
// object files are linked directly (white-box tests, fuzz targets).
//
// KORTOOLS_PLUGIN_API marks the entry points of a plug-in.
//
// KOR_EXTERN_TEMPLATE(CXTString<char>); after the definition of an exported class template (which
// carries KORTOOLS_API) tells that the library has this instantiation.
//
// A class template that users instantiate, too, does not carry KORTOOLS_API. The one instantiation
// that is exported has KOR_EXTERN_TEMPLATE(KORTOOLS_API CHashMap<int, int, int>); in the header and
// KOR_EXPORT_TEMPLATE(CHashMap<int, int, int>); in the source.
#pragma once

#include "kortools/platform/export_words.h" // IWYU pragma: export

// SPDX-License-Identifier: MIT
// KORTOOLS_API marks what the library exports.
// KORTOOLS_BUILDING is defined while the library itself is compiled, KORTOOLS_STATIC where its
// object files are linked directly (white-box tests, fuzz targets).
#pragma once

#if defined(KORTOOLS_STATIC)
#define KORTOOLS_API
#elif !defined(_WIN32)
#define KORTOOLS_API __attribute__((visibility("default")))
#elif defined(KORTOOLS_BUILDING)
#define KORTOOLS_API __declspec(dllexport)
#else
#define KORTOOLS_API __declspec(dllimport)
#endif

// KOR_EXTERN_TEMPLATE(CXTString<char>); after the definition of an exported class template (which
// carries KORTOOLS_API) tells that the library has this instantiation. On Windows it says nothing:
// a DLL does not export inline members, so the users of the header must make their own.
//
// A class template that users instantiate, too, does not carry KORTOOLS_API. The one instantiation
// that is exported has KOR_EXTERN_TEMPLATE(KORTOOLS_API CHashMap<int, int, int>); in the header and
// KOR_EXPORT_TEMPLATE(CHashMap<int, int, int>); in the source.
#if defined(_WIN32)
#define KOR_EXTERN_TEMPLATE(...) static_assert(true)
#define KOR_EXPORT_TEMPLATE(...) template class KORTOOLS_API __VA_ARGS__
#else
#define KOR_EXTERN_TEMPLATE(...) extern template class __VA_ARGS__
#define KOR_EXPORT_TEMPLATE(...) template class __VA_ARGS__
#endif

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
#if defined(_WIN32)
#define KOR_EXTERN_TEMPLATE(...) static_assert(true)
#else
#define KOR_EXTERN_TEMPLATE(...) extern template class __VA_ARGS__
#endif

// SPDX-License-Identifier: MIT
// How each system says that a library exports a name: the words behind kortools/export.h.
#pragma once

#if defined(KORTOOLS_STATIC)
// In front of what the library exports.
#define KORTOOLS_API
#elif !defined(_WIN32)
#define KORTOOLS_API __attribute__((visibility("default")))
#elif defined(KORTOOLS_BUILDING)
#define KORTOOLS_API __declspec(dllexport)
#else
#define KORTOOLS_API __declspec(dllimport)
#endif

// The same for plug-ins, which export their entry points and import nothing.
#if defined(_WIN32)
#define KORTOOLS_PLUGIN_API __declspec(dllexport)
#else
#define KORTOOLS_PLUGIN_API __attribute__((visibility("default")))
#endif

// A DLL does not export inline members, so there the users of a header make their own.
#if defined(_WIN32)
#define KOR_EXTERN_TEMPLATE(...) static_assert(true)
#define KOR_EXPORT_TEMPLATE(...) template class KORTOOLS_API __VA_ARGS__
#else
#define KOR_EXTERN_TEMPLATE(...) extern template class __VA_ARGS__
#define KOR_EXPORT_TEMPLATE(...) template class __VA_ARGS__
#endif

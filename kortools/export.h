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

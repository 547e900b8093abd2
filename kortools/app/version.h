// SPDX-License-Identifier: MIT
// Which version of the library and of the application this is.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// The version of this library: `text` becomes "16.0.0", and the result is 0x100000, with the major
// version in its upper 16 bits and the minor one below.
KORTOOLS_API unsigned long GetDllVersion(CXTString<wchar_t> &text);

// A text to put into a message to the support, with line ends \r\n, in the language of the thread:
//
//   Product information
//   ------------------------------------------
//   Scoutrix 16, SP 0.0
//   64-bit version
//   KorTools 16.0.0 (Apr 15 2024)
//   Linux 6.1.0-13-amd64
//
// `product` is the name to show, with its version; when it is empty, GetInternalProductName(true).
// The service pack is the minor version and the patch of the library. Without `withSystem` the last
// line is left out.
KORTOOLS_API CXTString<wchar_t> GetApplicationDescription(
    CXTString<wchar_t> const &product = CXTString<wchar_t>(), bool withSystem = true);

// SPDX-License-Identifier: MIT
// xStringEncoding: how text is encoded outside the library's strings.
#pragma once

// Any other number is a code page of the platform: static_cast<xStringEncoding>(1252).
enum xStringEncoding : int {
    xEncodingDefault = -1, // the ANSI code page of the process
    xEncodingANSI = 1,     // the same
    xEncodingUTF8 = 2,
    xEncodingUTF16 = 3,
    xEncodingMarked = 4 // a fourth kind that archives can mark, and skip by its length
};

// SPDX-License-Identifier: MIT
// The characters of file names: any bytes but zero and slash on Linux, wide text in the library.
//
// Names are UTF-8. What UTF-8 cannot say is carried by lone surrogates, so that nothing is lost on
// the way from the disk and back:
//
//   bytes on disk                            wide text
//   --------------------------------------   -----------------------------------------------
//   UTF-8                                     the code point
//   a byte 0x80..0xFF outside of UTF-8        U+DC80..U+DCFF, one for each byte
//   a backslash                               U+DC5C, because L'\\' separates folders
//   ':' after a relative path's first letter  U+DC3A, because "C:" is a drive
//   ED A0 80 .. ED BF BF (three bytes)        the lone surrogate, unless it is one of the above,
//                                             whose three bytes count as outside of UTF-8
//   '/'                                       L'\\' (and L'/' is taken for it on the way back)
//
// decode_path_text() followed by encode_path_text() gives back every byte.
#pragma once

#include <string>
#include <string_view>

namespace kortools::platform {

// Appends the bytes of `text` to `native`. False, with code 123 (invalid name), when the text has
// a zero or an element that is no code point.
bool encode_path_text(std::wstring_view text, std::string &native);

std::wstring decode_path_text(std::string_view native);

} // namespace kortools::platform

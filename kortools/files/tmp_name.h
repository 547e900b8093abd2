// SPDX-License-Identifier: MIT
// Names for temporary files.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// A name in a directory for temporary files that names nothing yet, from the last component of
// `name`. Without `keepName` only dots and letters up to U+00FE stay of it, and "tmp" is put in
// front of a dot that comes first. `dir` is put before it as it is, so it must end with '\'; when
// it is empty the file is in the user's temporary directory, or in GetCommonApplicationDataPath()
// when there is none. A number makes the name unique (fileCreateUniqueName()). Another program may
// take the name before it is used.
//
//   C:\a\scene-12.kor  =>  C:\Users\ann\AppData\Local\Temp\scene.kor, or ...\scene1.kor
//   7.png              =>  ...\tmp.png
KORTOOLS_API CXTString<wchar_t> fileCreateTmpName(CXTString<wchar_t> const &name,
    bool keepName = false, CXTString<wchar_t> const &dir = CXTString<wchar_t>());

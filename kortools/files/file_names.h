// SPDX-License-Identifier: MIT
// Names that a file may have.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// What fileIsValidFileName() looks at.
enum FileNameCheck : unsigned int {
    checkName = 1,          // characters of the last component: none of  * ? " < > | \ / :
    checkDirectory = 2,     // an absolute path, in a directory that exists
    checkAllowRelative = 4, // with checkDirectory: a relative path is valid as it is
    checkAllowEmpty = 8,    // an empty name is valid
    checkWholePath = 16,    // characters of the whole text, instead: none of  * ? " < > |
    checkSilent = 32,       // shows no message box
};

// Cuts the name at its first  < > : " / \ | ? * or dot,  and so loses the extension; then replaces
// the blanks that are left, unless by blanks; a replacement above 127 is one of Latin-1.
//
//   my file.txt, '_'  =>  my_file        a:b  =>  a
KORTOOLS_API void fileRemoveInvalidChar(CXTString<wchar_t> &name, char replacement);

// Whether the user may give this name, with `flags` of FileNameCheck. If not, a message box says
// why in the active language.
KORTOOLS_API bool fileIsValidFileName(CXTString<wchar_t> const &name, unsigned int flags);

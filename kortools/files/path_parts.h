// SPDX-License-Identifier: MIT
// The parts of a path: directory, name, extension, root, parent.
//
// Results are new strings. Nothing throws but for want of memory: a path that makes no sense gives
// what is left of it, or an empty text.
//
//   fileStripName(L"C:\\scenes\\box.kor")                    =>  "C:\scenes\"
//   fileStripPath(L"C:\\scenes\\box.kor", false)             =>  box.kor
//   fileStripPathAndExtension(L"C:\\scenes\\box.kor")        =>  box
//   fileGetExtension(L"C:\\scenes\\box.kor")                 =>  .kor
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// The last component, behind the last '\', '/' or ':' that is not at the end ("C:\a\" gives "a\");
// empty for a directory that exists, which the disk is asked about.
KORTOOLS_API CXTString<wchar_t> fileStripPath(
    CXTString<wchar_t> const &name, bool removeExtension = false);
KORTOOLS_API CXTString<wchar_t> fileStripPathAndExtension(CXTString<wchar_t> const &name);

// The path without its last extension. An extension has neither '\' nor blank behind its dot.
//
//   a.tar.gz  =>  a.tar        a.b c  =>  a.b c        .hidden  =>  (empty)
KORTOOLS_API CXTString<wchar_t> fileRemoveExtension(CXTString<wchar_t> const &name);

// The last extension with its dot, or an empty text. Of a URL ("http:", not "C:"), what follows the
// last dot in front of the first '?'.
//
//   C:\a.tar.gz  =>  .gz        http://h/a.png?v=1.2  =>  .png        http://h.org/a  =>  .org/a
KORTOOLS_API CXTString<wchar_t> fileGetExtension(CXTString<wchar_t> const &name);

// The directory, with '\' at its end; '/' counts as '\'. What ends with '\', is on a network, is a
// root or a directory that exists comes back whole. Empty for a name without a directory.
//
//   C:\a\b.c  =>  C:\a\        C:\a\  =>  C:\a\        b.c  =>  (empty)
//   \\server\share\b.c  =>  "\\server\share\b.c\"
KORTOOLS_API CXTString<wchar_t> fileStripName(CXTString<wchar_t> const &name);

// The drive or share: "C:\", "\", "\\server\share". Without one it is "C:" of "C:a", and empty for
// a relative path.
KORTOOLS_API CXTString<wchar_t> fileGetRoot(CXTString<wchar_t> const &name);

// The first component behind the root, with the root; the root when there is none. '/' counts as
// '\'. With `slashTerminated`, a '\' stands at the end.
//
//   C:\a\b\c  =>  C:\a        \\server\share\a\b  =>  \\server\share\a        a\b  =>  a
KORTOOLS_API CXTString<wchar_t> fileGetTopDirectory(
    CXTString<wchar_t> const &name, bool slashTerminated = false);

// Replaces the path by the directory that holds it, without '\' at the end unless it is a root;
// '/' is converted. False, and the path as it was, when there is none.
//
//   C:\a\b\  =>  C:\a        C:\a  =>  C:\        C:\  =>  false        a  =>  (empty)
KORTOOLS_API bool fileGetParentDirectory(CXTString<wchar_t> &path);

// True for "\\server\share" and what lies below.
KORTOOLS_API bool fileIsUNCPath(CXTString<wchar_t> const &name);

// True when neither '\' nor a drive stands at the front; "C:a" is not relative, "/a" is, so convert
// native paths first.
KORTOOLS_API bool fileIsPathRelative(CXTString<wchar_t> const &name);

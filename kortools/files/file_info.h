// SPDX-License-Identifier: MIT
// CFileInfo: a file name cut into directory, base name and extension, to be changed and joined
// again. Only the text counts, the disk is not asked: what stands behind the last separator is the
// name, also when it names a directory. For single parts see path_parts.h.
//
//   CFileInfo info(L"C:\\scenes\\box.kor");
//   info.SetName(L"cube");
//   info.GetFullName(); // C:\scenes\cube.kor
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

class KORTOOLS_API CFileInfo {
public:
    using String = CXTString<wchar_t>;

    CFileInfo() = default;

    // GetFullName() then gives back `path`, up to its first zero.
    //
    //   path            directory   name   extension
    //   C:\a.b\c.d.e    C:\a.b\     c.d    .e
    //   C:c             C:          c
    //   c.d e                       c.d e              (an extension has no blank)
    //   C:\a\           C:\a\                          (nothing follows its separator)
    explicit CFileInfo(String const &path);

    String const &GetDirectory() const { return m_directory; } // as written, with its separator
    String const &GetName() const { return m_name; }           // without the extension
    String const &GetExtension() const { return m_extension; } // with its dot

    void SetDirectory(String const &directory) { m_directory = directory; }
    void SetName(String const &name) { m_name = name; }
    void SetExtension(String const &extension) { m_extension = extension; }

    String GetFileName() const { return m_name + m_extension; }
    String GetFullName() const { return m_directory + m_name + m_extension; }

private:
    String m_directory;
    String m_name;
    String m_extension;
};

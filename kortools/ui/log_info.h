// SPDX-License-Identifier: MIT
// CLogInfo: the messages of one load or save, and the dialog that shows them to the user
// afterwards. They are independent of the log file.
//
//   CLogInfo messages(1, parent);
//   messages.Add(L"2 textures are missing");
//   messages.Add(L"wood.png", 1);
//   messages.Add(L"searched in C:\\textures", 2);
//   messages.GetText(); // "2 textures are missing\n\twood.png\n"
//   messages.DoModal();
#pragma once

#include "kortools/archive/archive.h"
#include "kortools/core/array.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

class CWnd;

struct IoLogInfo {
    CXTString<wchar_t> m_text;
    unsigned int m_level = 0; // 0 for what everybody should see; details are deeper
};

// The messages of one operation, to be shown together.
class KORTOOLS_API CLogInfo {
public:
    // `level` is that of the deepest messages to be shown; `parent` is the window that is disabled
    // while the dialog shows, or null.
    explicit CLogInfo(unsigned int level = 0xFFFFFFFF, CWnd *parent = nullptr);
    explicit CLogInfo(CXArray<IoLogInfo> const &messages, unsigned int level = 0xFFFFFFFF,
        CWnd *parent = nullptr);

    // A message more, behind the others.
    void Add(CXTString<wchar_t> const &text, unsigned int level = 0);
    CXArray<IoLogInfo> const &GetMessages() const { return m_messages; }

    unsigned int GetLevel() const { return m_level; }
    void SetLevel(unsigned int level) { m_level = level; }

    // The messages to be shown, a line each, with a tab for each level (at most max_tabs).
    CXTString<wchar_t> GetText() const;
    static constexpr unsigned int max_tabs = 32;

    // Shows GetText() under the product's name until the user closes it; nothing when it is empty.
    // 1, or -1 where no window can be shown: on another thread than the main one, and without a
    // back end.
    int DoModal() const;

private:
    CXArray<IoLogInfo> m_messages;
    unsigned int m_level;
    CWnd *m_parent;
};

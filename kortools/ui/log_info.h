// SPDX-License-Identifier: MIT
// CLogInfo: the messages of one load or save, as they are shown to the user afterwards. They are
// independent of the log file.
//
//   CLogInfo messages(1);
//   messages.Add(L"2 textures are missing");
//   messages.Add(L"wood.png", 1);
//   messages.Add(L"searched in C:\\textures", 2);
//   messages.GetText() // "2 textures are missing\n\twood.png\n"
#pragma once

#include "kortools/core/array.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

struct IoLogInfo {
    CXTString<wchar_t> m_text;
    unsigned int m_level = 0; // 0 for what everybody should see; details are deeper
};

class KORTOOLS_API CLogInfo {
public:
    // `level` is that of the deepest messages to be shown.
    explicit CLogInfo(unsigned int level = 0xFFFFFFFF);

    void Add(CXTString<wchar_t> const &text, unsigned int level = 0);
    CXArray<IoLogInfo> const &GetMessages() const { return m_messages; }

    unsigned int GetLevel() const { return m_level; }
    void SetLevel(unsigned int level) { m_level = level; }

    // The messages to be shown, a line each, with a tab for each level (at most max_tabs).
    CXTString<wchar_t> GetText() const;
    static constexpr unsigned int max_tabs = 32;

private:
    CXArray<IoLogInfo> m_messages;
    unsigned int m_level;
};

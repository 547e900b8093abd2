// SPDX-License-Identifier: MIT
#include "kortools/ui/log_info.h"

#include "kortools/archive/archive.h"

#include <algorithm>

CLogInfo::CLogInfo(unsigned int level)
    : m_level(level)
{
}

void CLogInfo::Add(CXTString<wchar_t> const &text, unsigned int level)
{
    m_messages.Add({ text, level });
}

CXTString<wchar_t> CLogInfo::GetText() const
{
    CXTString<wchar_t> text;
    for (IoLogInfo const &message : m_messages) {
        if (message.m_level > m_level)
            continue;
        text += CXTString<wchar_t>(L'\t', static_cast<int>(std::min(message.m_level, max_tabs)));
        text += message.m_text;
        text += L'\n';
    }
    return text;
}

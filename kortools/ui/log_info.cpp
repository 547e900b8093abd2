// SPDX-License-Identifier: MIT
#include "kortools/ui/log_info.h"

#include "kortools/app/application.h"
#include "kortools/ui/back_end.h"
#include "kortools/ui/main_thread.h"

#include <algorithm>

CLogInfo::CLogInfo(unsigned int level, CWnd *parent)
    : m_level(level)
    , m_parent(parent)
{
}

CLogInfo::CLogInfo(CXArray<IoLogInfo> const &messages, unsigned int level, CWnd *parent)
    : m_messages(messages)
    , m_level(level)
    , m_parent(parent)
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

int CLogInfo::DoModal() const
{
    kortools::ui::BackEnd *const back_end = kortools::ui::get_back_end();
    if (back_end == nullptr || !kortools::ui::is_main_thread())
        return -1;
    CXTString<wchar_t> const text = GetText();
    if (!text.IsEmpty())
        back_end->ShowText(m_parent, GetInternalProductName(), text);
    return 1;
}

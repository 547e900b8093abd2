// SPDX-License-Identifier: MIT
#include "kortools/ui/win32/task_bar.h"

#include <algorithm>
#include <shobjidl.h>

namespace kortools::ui::win32 {

TaskBar::~TaskBar()
{
    if (m_list)
        m_list->Release();
    if (m_is_initialized)
        CoUninitialize();
}

void TaskBar::Connect()
{
    m_has_tried = true;
    m_is_initialized = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    void *list = nullptr;
    if (FAILED(CoCreateInstance(
            CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3, &list)))
        return;
    m_list = static_cast<ITaskbarList3 *>(list);
    if (FAILED(m_list->HrInit())) {
        m_list->Release();
        m_list = nullptr;
    }
}

void TaskBar::Show(HWND window, int percent)
{
    if (!m_has_tried && percent >= 0)
        Connect();
    if (!m_list)
        return;
    if (percent < 0)
        m_list->SetProgressState(window, TBPF_NOPROGRESS);
    else
        m_list->SetProgressValue(window, ULONGLONG(std::min(percent, 100)), 100);
}

} // namespace kortools::ui::win32

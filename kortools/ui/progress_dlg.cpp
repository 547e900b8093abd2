// SPDX-License-Identifier: MIT
#include "kortools/ui/progress_dlg.h"

#include "kortools/platform/clock.h"
#include "kortools/text/resource_strings.h"
#include "kortools/ui/back_end.h"
#include "kortools/ui/main_thread.h"
#include "kortools/ui/progress_display.h"

using namespace kortools::ui;

namespace {

constexpr unsigned int cancel_text = 5521;

int get_index(bool main_bar)
{
    return main_bar ? 0 : 1;
}

} // namespace

CProgressDlg::CProgressDlg()
    : m_state(std::make_unique<ProgressState>())
    , m_display(std::make_unique<ProgressDisplay>(*m_state))
{
}

CProgressDlg::~CProgressDlg()
{
    m_display->close();
}

ProgressBarState &CProgressDlg::GetBar(bool mainBar) const
{
    return m_state->bars.at(static_cast<std::size_t>(get_index(mainBar)));
}

// --- Window

bool CProgressDlg::Create(
    CWnd *parent, wchar_t const *title, wchar_t const *status, wchar_t const *cancelText)
{
    BackEnd *const back_end = get_back_end();
    if (back_end == nullptr || !is_main_thread() || !m_display->can_open())
        return false;
    std::unique_ptr<ProgressWindow> window = back_end->CreateProgressWindow(parent, *this);
    if (title != nullptr)
        m_state->title.set(title);
    if (status != nullptr)
        m_state->status.set(status);
    if (cancelText != nullptr)
        m_state->cancel_text.set(cancelText);
    else if (m_state->cancel_text.get().IsEmpty())
        m_state->cancel_text.set(LoadResourceString(cancel_text));
    m_state->is_cancelled = false;
    m_state->take(pendingEnd | pendingClose);
    m_display->open(std::move(window), GetTick());
    return true;
}

bool CProgressDlg::Create(CWnd *parent, unsigned int titleId, unsigned int statusId)
{
    return Create(parent, LoadResourceString(titleId).GetConstBuffer(),
        statusId != 0xFFFFFFFF ? LoadResourceString(statusId).GetConstBuffer() : nullptr);
}

bool CProgressDlg::HasWindow() const
{
    return m_state->has_window;
}

void CProgressDlg::ShowWindow(bool show)
{
    if (is_main_thread() && m_display->is_open())
        m_display->get_window()->Show(show);
}

void CProgressDlg::Destroy()
{
    if (is_main_thread())
        m_display->close();
}

void CProgressDlg::DelayDestroy()
{
    if (!m_state->has_window)
        return;
    if ((m_state->mode & progressKeepAtEnd) != 0)
        m_state->raise(pendingEnd);
    else if (is_main_thread())
        m_display->close();
    else
        m_state->raise(pendingClose);
}

void CProgressDlg::SetProgressDlgMode(unsigned int mode)
{
    m_state->mode = mode;
    if (is_main_thread())
        m_display->show_text(pendingMode, GetTick());
    else
        m_state->raise(pendingMode);
}

unsigned int CProgressDlg::GetProgressDlgMode() const
{
    return m_state->mode;
}

// --- Texts

void CProgressDlg::SetText(unsigned int flag, SharedText &stored, wchar_t const *text)
{
    if (text == nullptr)
        return;
    stored.set(text);
    if (!is_main_thread())
        return m_state->raise(flag);
    m_display->show_text(flag, GetTick());
    m_display->pump();
}

void CProgressDlg::SetTitle(wchar_t const *text)
{
    SetText(pendingTitle, m_state->title, text);
}

void CProgressDlg::SetStatus(wchar_t const *text)
{
    SetText(pendingStatus, m_state->status, text);
}

void CProgressDlg::SetCancel(wchar_t const *text)
{
    SetText(pendingCancelText, m_state->cancel_text, text);
}

void CProgressDlg::SetErrorMsg(wchar_t const *text)
{
    SetText(pendingError, m_state->error, text);
}

void CProgressDlg::SetEndProcessMsg(wchar_t const *text)
{
    if (text != nullptr)
        m_state->end_message.set(text);
}

// --- Bars

void CProgressDlg::SetRange(int low, int high, bool mainBar)
{
    GetBar(mainBar).set_range(low, high, GetTick());
}

bool CProgressDlg::SetPos(int pos, bool mainBar)
{
    ProgressBarState &bar = GetBar(mainBar);
    int const limited = bar.limit(pos, GetTick());
    if (!m_state->has_window || !bar.is_visible_move(limited))
        return false;
    bar.move_to(limited);
    if (is_main_thread()) {
        m_display->show_pos(get_index(mainBar), GetTick());
        m_display->get_window()->UpdateWindow();
        m_display->pump();
    }
    return !m_state->is_cancelled;
}

int CProgressDlg::GetPos(bool mainBar) const
{
    return GetBar(mainBar).get_pos();
}

bool CProgressDlg::OffsetPos(int delta, bool mainBar)
{
    if (delta == 0)
        return false;
    GetBar(mainBar).move_by(delta);
    if (!is_main_thread())
        return m_state->is_cancelled;
    if (ProgressWindow *const window = m_display->get_window()) {
        window->StepBar(get_index(mainBar));
        m_display->show_label(get_index(mainBar), GetTick());
        m_display->pump();
    }
    return !m_state->is_cancelled;
}

void CProgressDlg::SetStep(int step, bool mainBar)
{
    if (!is_main_thread())
        return;
    GetBar(mainBar).set_step(step);
    if (ProgressWindow *const window = m_display->get_window())
        window->SetBarStep(get_index(mainBar), GetBar(mainBar).get_step());
}

void CProgressDlg::SetIndeterminate(bool on, bool mainBar)
{
    if (is_main_thread())
        m_display->set_marquee(get_index(mainBar), on);
}

bool CProgressDlg::IsIndeterminate(bool mainBar) const
{
    return is_main_thread() && m_display->is_marquee(get_index(mainBar));
}

// --- Sub-ranges

int CProgressDlg::PushSubRange(int stepCount, bool mainBar)
{
    return GetBar(mainBar).push_sub_range(stepCount);
}

bool CProgressDlg::SetSubRangePos(int pos, bool mainBar)
{
    ProgressBarState &bar = GetBar(mainBar);
    if (bar.get_sub_range_count() == 0)
        return false;
    SetPos(bar.enter_step(pos), mainBar);
    return true;
}

void CProgressDlg::SetNextSubRangeStepCount(int count, bool mainBar)
{
    GetBar(mainBar).set_next_step_count(count);
}

int CProgressDlg::PullSubRange(bool mainBar)
{
    ProgressBarState &bar = GetBar(mainBar);
    int const count = bar.get_sub_range_count();
    if (count == 0)
        return -1;
    SetPos(bar.get_end(count - 1), mainBar);
    if (bar.get_sub_range_count() == count) // a message handler may have removed it
        bar.drop_sub_range();
    return bar.get_sub_range_count();
}

int CProgressDlg::PullToSubRange(int index, bool mainBar)
{
    ProgressBarState &bar = GetBar(mainBar);
    if (index < bar.get_sub_range_count()) {
        SetPos(bar.get_end(index), mainBar);
        if (index < bar.get_sub_range_count())
            bar.cut_sub_ranges(index);
    }
    return bar.get_sub_range_count();
}

// --- Cancel

void CProgressDlg::EnableCancel(bool enable)
{
    if (!is_main_thread())
        return;
    if (ProgressWindow *const window = m_display->get_window())
        window->EnableCancel(enable);
}

bool CProgressDlg::CheckCancelButton(bool reset)
{
    if (!is_main_thread())
        return m_state->is_cancelled;
    m_display->pump();
    return reset ? m_state->is_cancelled.exchange(false) : bool(m_state->is_cancelled);
}

void CProgressDlg::OnCancel()
{
    m_state->is_cancelled = true;
}

void CProgressDlg::OnOk()
{
    ProgressDisplay::HandlerCall const call(*m_display);
    m_display->close();
}

void CProgressDlg::OnTimer(unsigned int id)
{
    if (id != ProgressDisplay::timer_id)
        return;
    ProgressDisplay::HandlerCall const call(*m_display);
    m_display->pump();
    m_display->tick(GetTick());
}

long long CProgressDlg::GetTick() const
{
    return kortools::platform::get_tick();
}

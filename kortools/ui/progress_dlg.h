// SPDX-License-Identifier: MIT
// CProgressDlg: a dialog with two progress bars, a status line and a Cancel button, for an
// operation that a worker thread runs while the main thread serves the windows, or that the main
// thread runs itself. An operation that should know of no window reports through the progress
// stack instead (kortools/app/progress_callback.h).
//
//   CProgressDlg dialog;
//   dialog.Create(parent, L"Import", L"reading...");
//   dialog.SetRange(0, count);
//   std::thread worker([&] {
//       for (int i = 0; i < count && !dialog.CheckCancelButton(false); ++i) {
//           import_item(i);
//           dialog.SetPos(i + 1);
//       }
//       dialog.DelayDestroy();
//   });
//   while (dialog.HasWindow()) { // or the program's own message loop
//       get_back_end()->PumpMessages();
//       CXThread::SleepCurrentThread(10);
//   }
//   worker.join();
//
// Threads: the window belongs to the main thread (GetApplicationMainThreadID()), which creates it.
// There, calls show their effect at once and serve the messages that wait, so that a click on
// Cancel is seen; while they do, calls from message handlers serve none. On another thread, calls
// store their value, and the window shows it on its next tick, every 500 ms. One thread at a time
// reports the progress of a bar; several may set texts. A worker never waits for the window.
//
// The dialog must outlive the workers that use it and the calls of its handlers; the parent must
// outlive the dialog.
//
// Bars: the last argument of the operations on bars is true for the main bar, above, and false for
// the second one, which shows once it is used. Positions show in steps of a per cent of the range's
// upper end.
#pragma once

#include "kortools/export.h"
#include "kortools/ui/progress_window.h"

#include <memory>

class CWnd;

namespace kortools::ui {
class ProgressBarState;
class ProgressDisplay;
class SharedText;
struct ProgressState;
} // namespace kortools::ui

enum ProgressDlgMode : unsigned int {
    progressHideCancel = 0x1000,
    progressElapsedMainBar = 0x4000, // with progressElapsed: of the main bar only
    progressElapsed = 0x10000,       // the labels tell the time since the bar's start, too
    progressKeepAtEnd = 0x40000      // DelayDestroy() lets the user read the last message first
};

class KORTOOLS_API CProgressDlg : public kortools::ui::ProgressWindowHandler {
public:
    CProgressDlg(); // range 0 to 100, step 1
    ~CProgressDlg() override;

    // --- Window

    // Shows the window, on the main thread, and forgets a Cancel of before. A null text is the one
    // that was set before the call, if any; texts may also be given by their numbers (xLoadString).
    // False when there is no back end, on other threads, while there is a window already, and from
    // within the handlers below. Throws CXResourceException when the window cannot be created.
    bool Create(CWnd *parent, wchar_t const *title, wchar_t const *status = nullptr,
        wchar_t const *cancelText = nullptr);
    bool Create(CWnd *parent, unsigned int titleId, unsigned int statusId = 0xFFFFFFFF);

    bool HasWindow() const;

    // Main thread only: elsewhere nothing happens.
    void ShowWindow(bool show);
    void Destroy();

    // Closes the window; from a worker, on the next tick. With progressKeepAtEnd the message for
    // the end, when there is one and the user did not cancel, shows first, with an OK button, for
    // as long as two seconds.
    void DelayDestroy();

    void SetProgressDlgMode(unsigned int mode); // ProgressDlgMode
    unsigned int GetProgressDlgMode() const;

    // --- Texts. Null ones are ignored.

    void SetTitle(wchar_t const *text);
    void SetStatus(wchar_t const *text);
    void SetCancel(wchar_t const *text); // on the button

    // In place of the status, which from a worker does not return for two seconds. Shows a hidden
    // dialog.
    void SetErrorMsg(wchar_t const *text);
    void SetEndProcessMsg(wchar_t const *text); // for DelayDestroy()

    // --- Bars

    // Starts the bar's clock. A range that changes leaves the bar without a position (-1). Equal
    // bounds make a range of one unit; `high` should not be 0.
    void SetRange(int low, int high, bool mainBar = true);

    // Limits `pos` to the range. False, and no change but that the lower end restarts the clock,
    // when that does not show: it rounds to the same step, or there is no window. False also once
    // the user has cancelled, but the position is stored.
    //
    //   0 to 1000, step 1: SetPos(3)  => false, GetPos() -1    SetPos(10) => true, GetPos() 10
    bool SetPos(int pos, bool mainBar = true);
    int GetPos(bool mainBar = true) const;

    // Adds `delta`, without limits. Main thread: the bar moves by its step until the next tick or
    // SetPos(), and the result is true unless the user has cancelled. Other threads: true when the
    // user HAS cancelled. False when `delta` is 0.
    bool OffsetPos(int delta, bool mainBar = true);

    void SetStep(int step, bool mainBar = true); // 0 becomes 1; main thread only

    // Main thread only. A bar that runs without a position; false elsewhere.
    void SetIndeterminate(bool on, bool mainBar = true);
    bool IsIndeterminate(bool mainBar = true) const;

    // --- Sub-ranges: a part of the operation counts steps of its own, on a part of the bar. They
    // are stacked; the bottom one begins at the bar's position.
    //
    //   dialog.SetRange(0, 500);
    //   dialog.SetPos(100);
    //   dialog.PushSubRange(4);   // 4 steps on what is left
    //   dialog.SetSubRangePos(2); // the bar stands at 300
    //   dialog.PullSubRange();    // at 500

    // The new one takes `stepCount` steps on the rest of the bar, or on one step of the sub-range
    // below; or on what SetNextSubRangeStepCount() has said. Returns its index.
    int PushSubRange(int stepCount, bool mainBar = true);

    // False when there is none.
    bool SetSubRangePos(int pos, bool mainBar = true);

    // In units of the bar, or steps of the topmost sub-range. A count that goes beyond the end is
    // replaced by the end less the count.
    void SetNextSubRangeStepCount(int count, bool mainBar = true);

    // Moves the bar to the topmost sub-range's end and removes it. How many are left; -1 when there
    // was none.
    int PullSubRange(bool mainBar = true);

    // Moves the bar to the end of the sub-range `index`, and removes it with those above. An index
    // that is too large changes nothing, a negative one throws CXInvalidArgException. How many
    // there are.
    int PullToSubRange(int index, bool mainBar = true);

    // --- Cancel

    void EnableCancel(bool enable); // main thread only

    // Has the user cancelled? On the main thread serves messages first, and `reset` forgets it.
    bool CheckCancelButton(bool reset);

protected:
    // Only remembers that the user has cancelled.
    void OnCancel() override;
    void OnOk() override; // of the end: closes
    void OnTimer(unsigned int id) override;

    // Milliseconds. Tests have clocks of their own.
    virtual long long GetTick() const;

private:
    kortools::ui::ProgressBarState &GetBar(bool mainBar) const;
    void SetText(unsigned int flag, kortools::ui::SharedText &stored, wchar_t const *text);

    std::unique_ptr<kortools::ui::ProgressState> m_state;
    std::unique_ptr<kortools::ui::ProgressDisplay> m_display; // of the main thread
};

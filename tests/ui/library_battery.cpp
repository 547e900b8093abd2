// SPDX-License-Identifier: MIT
// What the library itself shows.
#include "kortools/app/application.h"
#include "kortools/archive/exception.h"
#include "kortools/files/compact_path.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_names.h"
#include "kortools/text/string_table.h"
#include "kortools/ui/log_info.h"
#include "kortools/ui/progress_dlg.h"
#include "kortools/ui/string_match_menu.h"
#include "tests/support/thread_language.h"
#include "tests/ui/battery.h"

#include <thread>

using namespace kor_test;

namespace {

class LibraryDialogs : public Windows {
protected:
    LibraryDialogs() { SetInternalProductName(L"A product", 3); }
    ~LibraryDialogs() override { SetInternalProductName(L""); }
    void answer(int result)
    {
        driver.answer_next([this, result](Modal const &modal) {
            seen = modal;
            return result;
        });
    }

    ThreadLanguage language { kortools::text::english };
    Modal seen {};
};

class Dialog : public CProgressDlg {
public:
    void press_cancel() { OnCancel(); }
    int ticks = 0;

private:
    void OnTimer(unsigned int id) override
    {
        CProgressDlg::OnTimer(id);
        ++ticks;
    }
};

} // namespace

TEST_F(LibraryDialogs, AskAndWarnUnderTheNameOfTheProduct)
{
    answer(1);
    EXPECT_FALSE(fileIsValidFileName(L"a?b", checkName));
    EXPECT_EQ(seen.title, L"A product");
    EXPECT_EQ(seen.text, L"The name cannot contain the following characters: * ? \" < > | : / \\");
    EXPECT_EQ(seen.buttons, std::vector { 1 });

    CXTString<wchar_t> const existing = GetApplicationPath();
    for (int const button : { 6, 7 }) {
        answer(button);
        EXPECT_EQ(fileAskForReplace(existing), button == 6);
        EXPECT_EQ(seen.buttons, (std::vector { 6, 7 }));
        EXPECT_EQ(seen.default_button, 7) << "nothing is lost by a hasty Return";
    }

    auto *const exception = new CXUserException(L"no disk");
    answer(2);
    EXPECT_TRUE(exception->ReportError(0x31));
    exception->Delete();
    EXPECT_EQ(seen.text, L"no disk");
    EXPECT_EQ(seen.buttons, (std::vector { 1, 2 }));
}

TEST_F(LibraryDialogs, ShowTheMessagesOfALoad)
{
    CLogInfo messages(1, &view());
    messages.Add(L"2 textures are missing");
    messages.Add(L"wood.png", 1);
    messages.Add(L"searched everywhere", 2);
    messages.Add(L"done");
    answer(0);
    EXPECT_EQ(messages.DoModal(), 1);
    EXPECT_EQ(seen.title, L"A product");
    EXPECT_TRUE(seen.text.starts_with(L"2 textures are missing\n\twood.png\ndone"));
    seen = {};
    EXPECT_EQ(CLogInfo(0).DoModal(), 1);
    EXPECT_EQ(seen.title, L"") << "nothing to show";
    int result = 0;
    std::thread([&] { result = messages.DoModal(); }).join();
    EXPECT_EQ(result, -1);
}

TEST_F(LibraryDialogs, TypeTheOperatorsOfSearches)
{
    auto const edit = driver.make_edit(false);
    if (edit == nullptr)
        return;
    struct Row {
        int choice, start, end;
        wchar_t const *text;
        int caret;
    };
    for (Row const &row : { Row { 0, 0, 0, L"!table leg", 1 }, { 1, 6, 6, L"table &leg", 7 },
             { 2, 0, 5, L"? leg", 1 }, { 3, 0, 9, L"\"table leg\"", 11 },
             { 3, 9, 9, L"table leg\"\"", 10 }, { 4, 6, 6, L"table ^leg", 7 },
             { 5, 6, 9, L"table (leg)", 11 }, { 6, 9, 9, L"table leg*", 10 },
             { -1, 0, 5, L"table leg", 5 } }) {
        edit->SetText(L"table leg");
        edit->SetSel(row.start, row.end);
        answer(row.choice);
        DisplayStringMatchMenu(edit.get());
        int start = -1;
        int end = -1;
        edit->GetSel(start, end);
        EXPECT_STREQ(edit->GetText(), row.text);
        EXPECT_EQ(end, row.caret) << row.choice;
    }
    ASSERT_EQ(seen.entries.size(), 7U);
    EXPECT_EQ(seen.entries[1], L"&& - table && leg = (table and leg)");
    DisplayStringMatchMenu(nullptr);
}

TEST_F(LibraryDialogs, ShortenPathsByTheWidthOfTheirText)
{
    CXTString<wchar_t> const path = L"C:\\some directories\\with long\\names\\and a file.txt";
    auto const width_of = [&](CXTString<wchar_t> const &text) {
        return view().GetTextWidth(text, text.GetLength());
    };
    int const full = width_of(path);
    EXPECT_EQ(fileCompactPath(path, &view(), full), path);
    for (int width = full; width > full / 2; width -= full / 20) {
        CXTString<wchar_t> const shortened = fileCompactPath(path, &view(), width);
        EXPECT_LE(width_of(shortened), width);
        EXPECT_GT(width_of(shortened), width * 3 / 4);
        EXPECT_GT(shortened.Find(L"and a file.txt"), 0) << width;
    }
    frame->SetViewSize({ full * 3 / 4 + 10, 100 });
    settle();
    EXPECT_EQ(fileCompactPath(path, &view()), fileCompactPath(path, &view(), full * 3 / 4));
    kortools::ui::set_back_end(nullptr);
    EXPECT_EQ(fileCompactPath(path, &view(), full), fileCompactPath(path, 15));
}

TEST_F(LibraryDialogs, ShowTheProgressOfAWorker)
{
    Dialog dialog;
    ASSERT_TRUE(dialog.Create(&view(), L"Import", L"reading"));
    dialog.SetProgressDlgMode(progressElapsed);
    EXPECT_TRUE(dialog.SetPos(10));
    std::thread worker([&] {
        for (int high = 100; !dialog.CheckCancelButton(false); high ^= 1) {
            dialog.SetRange(0, high);
            dialog.PushSubRange(100);
            for (int step = 0; step <= 100; ++step) {
                dialog.SetSubRangePos(step);
                dialog.OffsetPos(1, false);
                dialog.SetStatus(std::to_wstring(step).c_str());
                dialog.SetTitle(step % 2 == 0 ? L"even" : L"odd");
            }
            dialog.PullSubRange();
            dialog.SetErrorMsg(L"a round");
        }
        dialog.DelayDestroy();
    });
    EXPECT_TRUE(serve_until([&] { return dialog.ticks >= 2; }));
    dialog.SetStatus(L"of the main thread");
    dialog.press_cancel();
    EXPECT_TRUE(serve_until([&] { return !dialog.HasWindow(); }));
    worker.join();
    EXPECT_GE(dialog.GetPos(), 100);

    ASSERT_TRUE(dialog.Create(nullptr, 5521, 5293));
    dialog.Destroy();
    EXPECT_FALSE(dialog.HasWindow());
}

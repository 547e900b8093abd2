// SPDX-License-Identifier: MIT
// Menus, message boxes, texts, fields and progress windows.
#include "tests/ui/battery.h"

#include "kortools/archive/archive.h"

#include <atomic>

using namespace kor_test;

namespace {

class Dialogs : public Windows {
protected:
    // Answers the next one with `result`, and keeps what it looks like.
    void answer(int result)
    {
        driver.answer_next([this, result](Modal const &modal) {
            seen.push_back(modal);
            return result;
        });
    }

    std::vector<Modal> seen;
};

class ProgressRecorder : public kortools::ui::ProgressWindowHandler {
public:
    void OnCancel() override { note("cancel"); }
    void OnOk() override { note("ok"); }
    void OnTimer(unsigned int id) override { note(line("timer", id)); }
    Log log;
    std::function<void()> on_event;

private:
    void note(std::string const &text)
    {
        log.push_back(text);
        if (on_event)
            on_event();
    }
};

} // namespace

TEST_F(Dialogs, LetTheUserChooseFromMenus)
{
    CXArray<CXTString<wchar_t>> entries;
    std::vector<std::wstring> const texts { L"&Open \u00E9", L"", L"A && B", L"", L"C" };
    for (std::wstring const &text : texts)
        entries.Add(text.c_str());
    for (int const choice : { 0, 2, 4, -1 }) {
        answer(choice);
        EXPECT_EQ(view().TrackPopupMenu({ 5, 5 }, entries), choice);
        EXPECT_EQ(seen.back().kind, Modal::Kind::Menu);
        EXPECT_EQ(seen.back().entries, texts);
    }
    EXPECT_EQ(seen.size(), 4U);
}

TEST_F(Dialogs, AskWithTheButtonsOfTheFlags)
{
    struct Row {
        unsigned int flags;
        std::vector<int> buttons;
        int default_button;
        int escape; // 0: does not close it
    } const rows[] = { { 0, { 1 }, 1, 1 }, { 1, { 1, 2 }, 1, 2 }, { 0x102, { 3, 4, 5 }, 4, 0 },
        { 3, { 6, 7, 2 }, 6, 2 }, { 0x203, { 6, 7, 2 }, 2, 2 }, { 0x124, { 6, 7 }, 7, 0 },
        { 0x15, { 4, 2 }, 4, 2 } };
    std::wstring const text = L"Save \"a&b\"?\nAll of \u00E9.";
    for (Row const &row : rows) {
        std::vector<int> answers = row.buttons;
        if (row.escape != 0)
            answers.push_back(0);
        for (int const button : answers) {
            answer(button);
            EXPECT_EQ(back_end.ShowMessageBox(text.c_str(), L"The title", row.flags),
                button != 0 ? button : row.escape);
            EXPECT_EQ(seen.back().kind, Modal::Kind::MessageBox);
            EXPECT_EQ(seen.back().title, L"The title");
            EXPECT_EQ(seen.back().text, text);
            EXPECT_EQ(seen.back().buttons, row.buttons);
            EXPECT_EQ(seen.back().default_button, row.default_button) << row.flags;
        }
    }
}

TEST_F(Dialogs, AskForOtherThreadsToo)
{
    answer(7);
    std::atomic<int> result { 0 };
    std::thread worker([&] { result = back_end.ShowMessageBox(L"Really?", L"A title", 4); });
    EXPECT_TRUE(serve_until([&] { return result != 0; }));
    worker.join();
    EXPECT_EQ(result, 7);
    EXPECT_EQ(seen.at(0).text, L"Really?");
}

TEST_F(Dialogs, ShowLongTextsAboveTheirParent)
{
    std::wstring text;
    for (int i = 0; i < 300; ++i)
        text += L"line " + std::to_wstring(i) + (i < 299 ? L"\n" : L"");
    bool was_enabled = true;
    driver.answer_next([&](Modal const &modal) {
        seen.push_back(modal);
        was_enabled = driver.read(*frame).is_enabled;
        return 0;
    });
    back_end.ShowText(&view(), L"A log", text.c_str());
    EXPECT_FALSE(was_enabled);
    EXPECT_TRUE(driver.read(*frame).is_enabled);
    EXPECT_EQ(seen.at(0).kind, Modal::Kind::Text);
    EXPECT_EQ(seen.at(0).title, L"A log");
    EXPECT_EQ(seen.at(0).text, text);
    answer(0);
    back_end.ShowText(nullptr, L"", L"");
    EXPECT_EQ(seen.size(), 2U);
}

TEST_F(Dialogs, ReplaceWhatIsSelectedInFields)
{
    for (bool const has_many_lines : { false, true }) {
        auto const edit = driver.make_edit(has_many_lines);
        if (!edit)
            return;
        auto const expect = [&](std::wstring const &text, int start, int end) {
            int found_start = -1;
            int found_end = -1;
            edit->GetSel(found_start, found_end);
            EXPECT_EQ(std::wstring(edit->GetText().GetConstBuffer()), text);
            EXPECT_EQ(found_start, start);
            EXPECT_EQ(found_end, end);
        };
        std::wstring const smiley = L"\U0001F600"; // one character or two, as wide as they are
        int const size = int(smiley.size());
        expect(L"", 0, 0);
        edit->SetText((L"ab" + smiley + L"cd").c_str());
        edit->SetSel(2, 2 + size);
        expect(L"ab" + smiley + L"cd", 2, 2 + size);
        edit->ReplaceSel(L"\u00E9&x");
        expect(L"ab\u00E9&xcd", 5, 5);
        edit->ReplaceSel((smiley + smiley).c_str());
        edit->ReplaceSel(L"y");
        std::wstring both = L"ab\u00E9&x";
        both.append(smiley).append(smiley).append(L"ycd");
        expect(both, 6 + 2 * size, 6 + 2 * size);
        edit->SetSel(0, 8 + 2 * size);
        edit->ReplaceSel(L"");
        expect(L"", 0, 0);
    }
}

TEST_F(Dialogs, ShowProgress)
{
    using kortools::ui::ProgressWindow;
    struct Row {
        std::function<void(ProgressWindow &)> call;
        wchar_t const *shown;
    } const rows[] = {
        { [](ProgressWindow &) {}, L"|||[0 ]||-1" },
        { [](ProgressWindow &window) { window.SetTitle(L"A & b"); }, L"A & b|A & b||[0 ]||-1" },
        { [](ProgressWindow &window) { window.SetStatus(L"caf\u00E9 & bar"); },
            L"A & b|A & b|caf\u00E9 & bar|[0 ]||-1" },
        { [](ProgressWindow &window) { window.SetStatus(L""); }, L"A & b|A & b||[0 ]||-1" },
        { [](ProgressWindow &window) { window.SetTitle(L""); }, L"|||[0 ]||-1" },
        { [](ProgressWindow &window) { window.ShowBar(1, true); }, L"|||[0 ]|[0 ]|-1" },
        { [](ProgressWindow &window) { window.SetBarText(1, L"Two & 2"); },
            L"|||[0 ]|[0 Two & 2]|-1" },
        { [](ProgressWindow &window) { window.SetBarText(0, L"One"); },
            L"|||[0 One]|[0 Two & 2]|-1" },
        { [](ProgressWindow &window) { window.SetBarPos(1, 101); },
            L"|||[0 One]|[100 Two & 2]|-1" },
        { [](ProgressWindow &window) { window.SetBarPos(1, -5); }, L"|||[0 One]|[0 Two & 2]|-1" },
        { [](ProgressWindow &window) { window.SetBarPos(0, 70); }, L"|||[70 One]|[0 Two & 2]|-1" },
        { [](ProgressWindow &window) { window.StepBar(0); }, L"|||[80 One]|[0 Two & 2]|-1" },
        { [](ProgressWindow &window) { window.SetTaskbarPos(40); }, L"|||[80 One]|[0 Two & 2]|40" },
        { [](ProgressWindow &window) { window.ShowBar(1, false); }, L"|||[80 One]||40" },
        { [](ProgressWindow &window) { window.SetTaskbarPos(-1); }, L"|||[80 One]||-1" },
        { [](ProgressWindow &window) { window.SetMarquee(0, true); }, L"|||[marquee One]||-1" },
        { [](ProgressWindow &window) { window.SetMarquee(0, false); }, L"|||[80 One]||-1" },
    };
    auto const describe = [this](ProgressContents const &contents) {
        std::wostringstream text;
        text << contents.title << L'|' << contents.line << L'|' << contents.status << L'|';
        for (ProgressContents::Bar const &bar : contents.bars) {
            EXPECT_EQ(bar.is_shown, bar.is_label_shown);
            if (bar.is_shown)
                text << L'['
                     << (bar.is_marquee ? std::wstring(L"marquee") : std::to_wstring(bar.position))
                     << L' ' << bar.label << L']';
            text << L'|';
        }
        text << contents.task_bar;
        return text.str();
    };
    ProgressRecorder handler;
    auto const window = back_end.CreateProgressWindow(&view(), handler);
    EXPECT_FALSE(driver.read(*window).is_shown || window->IsVisible());
    window->Show(true);
    settle();
    EXPECT_TRUE(driver.read(*window).is_shown && window->IsVisible());
    for (Row const &row : rows) {
        row.call(*window);
        window->UpdateWindow();
        std::wstring expected = row.shown;
        if (expected.ends_with(L"40") && !driver.has_task_bar())
            expected.replace(expected.size() - 2, 2, L"-1");
        EXPECT_EQ(describe(driver.read(*window)), expected);
    }
    window->SetBarStep(0, 15);
    window->StepBar(0);
    EXPECT_EQ(window->GetBarPos(0), 95);
    window->StepBar(0); // begins again, at its start or with what is left
    EXPECT_LE(window->GetBarPos(0), 10);
    window->Show(false);
    EXPECT_FALSE(window->IsVisible() || driver.read(*window).is_shown);
}

TEST_F(Dialogs, TellWhatIsPressedInProgressWindows)
{
    ProgressRecorder handler;
    auto window = back_end.CreateProgressWindow(nullptr, handler);
    window->Show(true);
    settle();
    auto const act = [&](ProgressAction action) {
        driver.act(*window, action);
        settle();
        return std::exchange(handler.log, {});
    };
    for (ProgressAction const action :
        { ProgressAction::Cancel, ProgressAction::Escape, ProgressAction::CloseBox }) {
        EXPECT_EQ(act(action), Log { "cancel" });
        EXPECT_TRUE(window->IsVisible()); // the handler decides
    }
    window->EnableCancel(false);
    EXPECT_FALSE(driver.read(*window).is_cancel_enabled);
    EXPECT_EQ(act(ProgressAction::Cancel), Log {});
    window->EnableCancel(true);
    window->ShowCancel(false);
    EXPECT_FALSE(driver.read(*window).is_cancel_shown);
    window->ShowCancel(true);
    window->SetCancelText(L"Stop");
    EXPECT_TRUE(driver.read(*window).is_cancel_shown && driver.read(*window).is_cancel_enabled);
    EXPECT_EQ(driver.read(*window).cancel_text, L"Stop");
    window->ShowOkButton(L"Well", 90);
    ProgressContents const shown = driver.read(*window);
    EXPECT_TRUE(shown.is_ok_shown && !shown.is_cancel_shown);
    EXPECT_EQ(shown.ok_text, L"Well");
    EXPECT_EQ(shown.ok_width, 90);
    EXPECT_LE(std::abs(shown.ok_offset), 1);
    for (ProgressAction const action :
        { ProgressAction::Ok, ProgressAction::Escape, ProgressAction::CloseBox })
        EXPECT_EQ(act(action), Log { "ok" });

    struct Failure { };
    handler.on_event = [] { throw Failure(); };
    driver.act(*window, ProgressAction::Ok);
    EXPECT_THROW(settle(), Failure);
    handler.log.clear();
    handler.on_event = [&] { window.reset(); };
    window->SetTimer(9, 1);
    EXPECT_TRUE(serve_until([&] { return !window; }));
    settle();
    EXPECT_EQ(handler.log, Log { "timer 9" });
}

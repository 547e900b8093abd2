// SPDX-License-Identifier: MIT
#include "tests/ui/recording_back_end.h"

namespace kor_test {
namespace {

class RecordingDriver : public Driver {
public:
    kortools::ui::BackEnd &install() override
    {
        kortools::ui::set_back_end(&m_back_end);
        return m_back_end;
    }
    bool has_task_bar() const override { return true; }
    bool has_fonts() const override { return true; }

    void input(kortools::ui::ViewFrame &frame, UserInput const &input) override
    {
        post_to(frame, [input](RecordingFrame &to) { to.view.handle(input); });
    }
    void scroll(kortools::ui::ViewFrame &frame, ScrollBar bar, int position) override
    {
        post_to(frame, [=](RecordingFrame &to) { to.view.scroll(bar, position); });
    }
    void close(kortools::ui::ViewFrame &frame) override
    {
        post_to(frame, [](RecordingFrame &to) { to.view.close(); });
    }
    void resize(kortools::ui::ViewFrame &frame, CXSize const &by) override
    {
        post_to(frame, [by](RecordingFrame &to) { to.view.set_size(to.view.size + by); });
    }
    void lose_capture(kortools::ui::ViewFrame &frame) override
    {
        post_to(frame, [](RecordingFrame &to) { to.view.lose_capture(); });
    }
    FrameContents read(kortools::ui::ViewFrame &frame) override
    {
        auto const &from = static_cast<RecordingFrame &>(frame);
        return { from.title, from.status, from.view.is_enabled, from.view.cursor };
    }
    void post(std::function<void()> function) override { m_back_end.post(std::move(function)); }
    void answer_next(std::function<int(Modal const &)> answer) override
    {
        m_back_end.answer_next(std::move(answer));
    }
    std::unique_ptr<CEdit> make_edit(bool) override { return nullptr; }
    ProgressContents read(kortools::ui::ProgressWindow &window) override
    {
        return static_cast<RecordingProgress &>(window).contents;
    }
    void act(kortools::ui::ProgressWindow &window, ProgressAction action) override
    {
        auto &to = static_cast<RecordingProgress &>(window);
        m_back_end.post([&to, action, token = std::weak_ptr(to.alive)] {
            if (!token.expired())
                to.act(action);
        });
    }

private:
    template <class Function> void post_to(kortools::ui::ViewFrame &frame, Function function)
    {
        auto &to = static_cast<RecordingFrame &>(frame);
        m_back_end.post([&to, function, token = to.view.alive()] {
            if (!token.expired())
                function(to);
        });
    }

    RecordingBackEnd m_back_end;
};

} // namespace

std::unique_ptr<Driver> make_driver()
{
    return std::make_unique<RecordingDriver>();
}

} // namespace kor_test

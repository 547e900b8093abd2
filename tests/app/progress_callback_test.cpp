// SPDX-License-Identifier: MIT
#include "kortools/app/progress_callback.h"

#include <functional>
#include <gtest/gtest.h>
#include <vector>

struct ProcessProgressInfo {
    int percent;
};

namespace {

// A callback that does what the test says, and remembers its calls.
struct Listener {
    std::function<bool()> answer = [] { return false; };
    std::vector<unsigned> calls {};

    static bool listen(unsigned flags, ProcessProgressInfo const &info, void *user)
    {
        auto &self = *static_cast<Listener *>(user);
        EXPECT_EQ(info.percent, 42);
        self.calls.push_back(flags);
        return self.answer();
    }
    void push() { progressPushCallback(listen, this); }
};

ProcessProgressInfo const info { 42 };

} // namespace

TEST(ProgressCallback, RemembersTheAnswerToAQueryOnly)
{
    Listener outer { [] { return true; } };
    Listener inner { [&] { return inner.calls.back() != 0x30; } };
    outer.push();
    inner.push();
    EXPECT_TRUE(progressCallCallback(0x2F, info));
    EXPECT_FALSE(progressUserCancel()) << "bit 0x10 was not set";
    EXPECT_TRUE(progressCallCallback(0x10, info) && progressUserCancel());
    EXPECT_FALSE(progressCallCallback(0x30, info) || progressUserCancel()) << "the last counts";
    EXPECT_TRUE(progressCallCallback(0xFFFFFFFF, info));
    EXPECT_EQ(inner.calls, (std::vector<unsigned> { 0x2F, 0x10, 0x30, 0xFFFFFFFF }));
    EXPECT_TRUE(progressPopCallback());
    EXPECT_FALSE(progressUserCancel() || progressPopCallback());
    EXPECT_TRUE(outer.calls.empty());
}

TEST(ProgressCallback, ACallbackMayPushAndPop)
{
    // Pushes so many that the records move, and leaves them.
    std::vector<Listener> more(100);
    Listener pusher { [&] {
        for (Listener &listener : more)
            listener.push();
        return true;
    } };
    pusher.push();
    EXPECT_TRUE(progressCallCallback(progressQueryCancel, info));
    for (std::size_t i = 0; i < more.size(); ++i)
        EXPECT_FALSE(progressPopCallback()) << "the answer is not theirs";
    EXPECT_TRUE(progressUserCancel());
    EXPECT_TRUE(progressPopCallback());

    // Replaces itself: its answer must not go to the one that took its place.
    Listener successor;
    Listener replaced { [&] {
        progressPopCallback();
        successor.push();
        return true;
    } };
    replaced.push();
    EXPECT_TRUE(progressCallCallback(progressQueryCancel, info));
    EXPECT_FALSE(progressPopCallback());

    Listener thrower { []() -> bool { throw 1; } };
    thrower.push();
    EXPECT_THROW(progressCallCallback(progressQueryCancel, info), int);
    EXPECT_FALSE(progressUserCancel());
    EXPECT_FALSE(progressPopCallback());
}

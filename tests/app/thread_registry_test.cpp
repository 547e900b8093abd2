// SPDX-License-Identifier: MIT
#include "kortools/app/thread_registry.h"

#include "kortools/app/thread.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

using ThreadID = unsigned long long;

constexpr ThreadID first = 1ULL << 40; // identifiers that no thread of the system has

// The registry, said slowly. It has no ring.
struct Model {
    std::map<ThreadID, ThreadID> parents;
    std::set<ThreadID> cancelled;

    bool should_cancel(ThreadID thread) const
    {
        auto const parent = parents.find(thread);
        return cancelled.contains(thread)
            || (parent != parents.end() && should_cancel(parent->second));
    }
    std::vector<ThreadID> children(ThreadID thread) const
    {
        std::vector<ThreadID> found;
        for (auto const &[child, parent] : parents) {
            if (parent == thread)
                found.push_back(child);
        }
        return found;
    }
};

std::vector<ThreadID> get_children(ThreadID parent)
{
    CXArray<ThreadID> children;
    children.Add(1); // must go
    int const count = GetChildThreads(parent, children);
    EXPECT_EQ(count, children.GetSize());
    std::vector<ThreadID> sorted(children.begin(), children.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

} // namespace

TEST(ThreadRegistry, AgreesWithAModelOfParentsAndMarks)
{
    constexpr ThreadID count = 40;
    Model model;
    std::mt19937 random(5);
    auto const pick = [&] { return first + random() % count; };
    for (int step = 0; step < 4000; ++step) {
        ThreadID const thread = pick();
        ThreadID const parent = first + random() % (thread - first + 1); // never below itself
        switch (random() % 4) {
        case 0:
            AttachThread(thread, parent);
            if (thread != parent)
                model.parents[thread] = parent;
            break;
        case 1:
            DetachThread(thread);
            model.parents.erase(thread);
            break;
        case 2:
            SetCancelThread(true, thread);
            model.cancelled.insert(thread);
            break;
        default:
            SetCancelThread(false, thread);
            model.cancelled.erase(thread);
            break;
        }
        ThreadID const asked = pick();
        ASSERT_EQ(ShouldCancelThread(asked), model.should_cancel(asked)) << "step " << step;
        SetSilentThread(true, thread); // the other mark, which nobody else has
        Model const silent { model.parents, { thread } };
        ASSERT_EQ(IsSilentThread(asked), silent.should_cancel(asked)) << "step " << step;
        SetSilentThread(false, thread);
        if (step % 16 == 0) {
            ASSERT_EQ(get_children(parent), model.children(parent)) << "step " << step;
        }
    }
    for (ThreadID thread = first; thread < first + count; ++thread) {
        SetCancelThread(false, thread);
        DetachThread(thread);
    }
}

TEST(ThreadRegistry, ARingOfParentsEndsTheLookUp)
{
    for (ThreadID length = 2; length < 40; ++length) { // and a tail of three that leads into it
        for (ThreadID i = 0; i < length + 3; ++i)
            AttachThread(first + i, first + (i == 0 ? length - 1 : i - 1));
        SetCancelThread(true, 1); // else nobody looks
        EXPECT_FALSE(ShouldCancelThread(first + length + 2));
        for (ThreadID marked = 0; marked < length; ++marked) {
            SetCancelThread(true, first + marked);
            EXPECT_TRUE(ShouldCancelThread(first + length + 2)) << marked << " of " << length;
            SetCancelThread(false, first + marked);
        }
        SetCancelThread(false, 1);
        for (ThreadID i = 0; i < length + 3; ++i)
            DetachThread(first + i);
    }
}

// SPDX-License-Identifier: MIT
#include "kortools/data/string_list.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <list>
#include <random>
#include <string>
#include <utility>

namespace {

// From both ends, and by positions.
void expect_same(CStringList const &list, std::list<std::wstring> const &model)
{
    ASSERT_EQ(list.GetCount(), static_cast<int>(model.size()));
    auto expected = model.begin();
    for (CXTString<wchar_t> const &text : list)
        ASSERT_EQ(text.GetView(), *expected++);
    auto backwards = model.rbegin();
    for (CStringList::Position at = list.GetTailPosition(); at;)
        ASSERT_EQ(list.GetPrev(at).GetView(), *backwards++);
    ASSERT_EQ(backwards, model.rend());
}

} // namespace

TEST(StringList, AgreesWithAStandardOne)
{
    std::mt19937 random(3);
    CStringList list;
    std::list<std::wstring> model;
    for (int step = 0; step < 2000; ++step) {
        std::wstring const text = std::to_wstring(random() % 30);
        auto const found = std::ranges::find(model, text);
        CStringList::Position const at = list.Find(text);
        ASSERT_EQ(at != nullptr, found != model.end());
        switch (random() % 6) {
        case 0:
            list.AddHead(text);
            model.push_front(text);
            break;
        case 1:
            list.InsertBefore(at, text); // the tail when there is none
            model.insert(found, text);
            break;
        case 2:
            list.RemoveAt(at);
            if (at)
                model.erase(found);
            break;
        case 3:
        case 4: {
            bool const from_head = random() % 2;
            auto const end = from_head ? model.begin() : std::prev(model.end());
            std::wstring const expected = model.empty() ? L"" : *end;
            ASSERT_EQ((from_head ? list.RemoveHead() : list.RemoveTail()).GetView(), expected);
            if (!model.empty())
                model.erase(end);
            break;
        }
        default:
            list.AddTail(text);
            model.push_back(text);
        }
        expect_same(list, model);
    }
    list.AddTail(list);
    CStringList copy(list);
    CStringList const moved(std::move(copy));
    EXPECT_TRUE(copy.IsEmpty() && moved == list);
}

// SPDX-License-Identifier: MIT
#include "kortools/core/hash_table.h"

#include "kortools/core/xstring.h"
#include "tests/core/hash_model.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace {

TEST(HashTable, HasTheSlotsOfTheModel)
{
    CHashTable<int> table;
    kor_test::HashModel<int, int> model(
        [](int const &key, unsigned size) { return (static_cast<unsigned>(key) << 4) % size; });
    kor_test::Random random(1);
    for (int step = 0; step < 5000; ++step) {
        int const key = static_cast<int>(random(600));
        if (random(3) == 0)
            ASSERT_EQ(table.Remove(key), model.remove(key, true));
        else
            ASSERT_EQ(table.Insert(key), model.insert(key, 0));
        ASSERT_EQ(table.GetCount(), model.count);
        ASSERT_EQ(table.GetHashTableSize(), model.size);
        if (step % 16 != 0)
            continue;
        unsigned pos = table.GetFirst();
        auto range = table.begin();
        for (unsigned i = 0; i < model.size; ++i) {
            if (model.slots[i].state != 0)
                continue;
            ASSERT_EQ(pos, i);
            ASSERT_EQ(*range, model.slots[i].key);
            ASSERT_EQ(*table.GetNext(pos), model.slots[i].key);
            ++range;
        }
        ASSERT_EQ(pos, ~0U);
        ASSERT_TRUE(range == table.end());
    }
}

TEST(HashTable, HoldsTexts)
{
    using Text = CXTString<wchar_t>;
    CHashTable<Text> table;
    EXPECT_EQ(table.Insert(L"one"), 1);
    EXPECT_EQ(table.Insert(L"two"), 1);
    EXPECT_EQ(table.Insert(L"one"), 0);
    EXPECT_EQ(*table.Find(L"two"), L"two");
    EXPECT_EQ(table.Find(L"three"), nullptr);
    CHashTable<Text> copy(table), other;
    other.Insert(L"one");
    other.Insert(L"three");
    copy.Remove(other);
    EXPECT_EQ(copy.GetCount(), 1U);
    EXPECT_FALSE(copy.IsFound(L"one"));
    EXPECT_TRUE(copy.IsFound(L"two"));
    table = std::move(copy);
    unsigned pos = table.GetFirst();
    Text key;
    table.GetNext(pos, key);
    EXPECT_EQ(key, L"two");
    EXPECT_EQ(pos, ~0U);
    table.GetNext(pos, &key);
    EXPECT_TRUE(key.IsEmpty());
    table.GetNext(pos, nullptr);
    EXPECT_EQ(table.GetNext(pos), nullptr);
    table.Clear();
    EXPECT_TRUE(table.IsEmpty());
    EXPECT_TRUE(table.begin() == table.end());
}

// Two 32-bit words: the key and its state.
static_assert(sizeof(kortools::core::HashSlot<int, void>) == 8);

} // namespace

template class CHashTable<unsigned long long>;
template class CHashTable<CXTString<char>>;
template class CHashTable<void (*)()>;

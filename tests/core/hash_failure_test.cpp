// SPDX-License-Identifier: MIT
// Hash tables without memory, and with keys and values that throw.
#include "kortools/core/hash_map.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/xstring.h"
#include "tests/core/tracked.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <utility>

namespace {

int s_allocations_left = INT_MAX; // of tables, which ask without throwing

} // namespace

void *operator new(std::size_t size, std::nothrow_t const &) noexcept
{
    if (s_allocations_left <= 0)
        return nullptr;
    --s_allocations_left;
    try {
        return ::operator new(size);
    } catch (...) {
        return nullptr;
    }
}

namespace {

constexpr unsigned none = ~0U;

class Shortage { // of memory, after so many more blocks
public:
    explicit Shortage(int blocks) { s_allocations_left = blocks; }
    ~Shortage() { s_allocations_left = INT_MAX; }
};

using Numbers = CHashMap<int, int, int>;                               // two blocks
using Texts = CHashMap<CXTString<char>, CXTString<char> const &, int>; // four

template <typename MAP> class HashWithoutMemory : public testing::Test {
protected:
    static constexpr int blocks = std::is_same_v<MAP, Numbers> ? 2 : 4;
    static auto Key(int i)
    {
        if constexpr (blocks == 2)
            return i;
        else
            return CXTString<char>(std::to_string(i).c_str());
    }
};
using Maps = testing::Types<Numbers, Texts>;
TYPED_TEST_SUITE(HashWithoutMemory, Maps);

TYPED_TEST(HashWithoutMemory, ANewMapIsEmptyUntilThereIsSome)
{
    for (int left = 0; left < this->blocks; ++left) {
        s_allocations_left = left;
        TypeParam map(100);
        EXPECT_EQ(s_allocations_left, 0);
        EXPECT_TRUE(map.IsEmpty());
        EXPECT_EQ(map.Find(this->Key(1)), nullptr);
        EXPECT_EQ(map.Insert(this->Key(1), 1), 0);
        EXPECT_EQ(map.Remove(this->Key(1)), 0);
        EXPECT_EQ(map.GetFirst(), none);
        EXPECT_TRUE(map.begin() == map.end());
        unsigned pos = 3;
        int *value;
        map.GetNext(pos, value);
        EXPECT_EQ(value, nullptr);
        map.Clear();
        map.Remove(map);
        TypeParam copy(map);
        map.InitHashTable(7);
        s_allocations_left = INT_MAX;
        EXPECT_EQ(map.GetHashTableSize(), 7U);
        EXPECT_EQ(map.Insert(this->Key(1), 1), 1);
        EXPECT_EQ(map.GetHashTableSize(), 7U);
        EXPECT_EQ(copy.Insert(this->Key(1), 1), 1);
        EXPECT_EQ(copy.GetHashTableSize(), 101U);
    }
}

TYPED_TEST(HashWithoutMemory, AMapThatCannotGrowKeepsWhatItHas)
{
    TypeParam map;
    {
        Shortage const shortage(1);
        for (int i = 0; i < 11; ++i)
            EXPECT_EQ(map.Insert(this->Key(i), i), 1) << i;
        EXPECT_EQ(map.Insert(this->Key(11), 11), 0);
        EXPECT_EQ(map.Insert(this->Key(10), -10), 0); // replaced
        EXPECT_EQ(map.Find(this->Key(11)), nullptr);  // and the search ends
        EXPECT_EQ(map.Remove(this->Key(3)), 1);
        EXPECT_EQ(map.Insert(this->Key(3), 3), 1); // into the tombstone
        EXPECT_EQ(map.GetCount(), 11U);
        EXPECT_EQ(map.GetHashTableSize(), 23U);
        TypeParam const copy(map);
        EXPECT_TRUE(copy.IsEmpty());
    }
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(*map.Find(this->Key(i)), i == 10 ? -10 : i);
    EXPECT_EQ(map.Insert(this->Key(11), *map.Find(this->Key(5))), 1);
    EXPECT_EQ(map.GetHashTableSize(), 97U);
    EXPECT_EQ(*map.Find(this->Key(11)), 5);
    EXPECT_EQ(map.GetCount(), 12U);
}

// --- Keys and values that throw at a chosen step

template <typename MAP> void expect_whole(MAP const &map, int count, char const *when, int step)
{
    int seen = 0;
    for (auto const &[key, value] : map) {
        EXPECT_EQ(key.GetValue(), value.GetValue()) << when << " at step " << step;
        ++seen;
    }
    EXPECT_EQ(seen, count) << when << " at step " << step;
    EXPECT_EQ(map.GetCount(), static_cast<unsigned>(count));
    for (int i = 0; i < count; ++i)
        EXPECT_TRUE(map.IsFound(i)) << when << " at step " << step;
}

// Runs `operation` on a full map of ten entries, with a failure at each of its steps.
template <typename MAP, typename F> void fail_at_each_step(F operation, char const *name)
{
    bool done = false;
    for (int step = 0; !done; ++step) {
        MAP map;
        for (int i = 0; i < 10; ++i)
            map.Insert(i, i);
        try {
            s_steps_left = step;
            operation(map);
            done = true;
        } catch (StepFailure) {
        }
        s_steps_left = INT_MAX;
        int const count = static_cast<int>(map.GetCount());
        EXPECT_GE(count, 10);
        expect_whole(map, count, name, step);
        for (int i = count; i < 200; ++i) // it still works
            map.Insert(i, i);
        expect_whole(map, 200, name, step);
        ASSERT_LT(step, 200);
    }
    EXPECT_EQ(s_alive, 0);
}

} // namespace

template <Moving moving> struct CHashMethods<Tracked<moving>> {
    static unsigned int GetHash(Tracked<moving> const &key, unsigned int tableSize)
    {
        return static_cast<unsigned>(key.GetValue()) % tableSize;
    }
    static bool IsEqual(Tracked<moving> const &a, Tracked<moving> const &b) { return a == b; }
};

namespace {

template <typename T> class HashOfThrowing : public testing::Test {
};
using Kinds = testing::Types<SafeMover, RiskyMover, Copier>;
TYPED_TEST_SUITE(HashOfThrowing, Kinds);

TYPED_TEST(HashOfThrowing, StaysWhole)
{
    using Map = CHashMap<TypeParam, TypeParam const &, TypeParam>;
    fail_at_each_step<Map>([](Map &map) { map.Insert(10, 10); }, "insert and grow");
    fail_at_each_step<Map>([](Map &map) { map.Insert2(10, 10); }, "insert by value");
    fail_at_each_step<Map>([](Map &map) { map.Insert(3, 3); }, "replace");
    fail_at_each_step<Map>([](Map &map) { Map const copy(map); }, "copy");
    fail_at_each_step<Map>(
        [](Map &map) {
            Map other;
            for (int i = 0; i < 10; ++i)
                other.Insert(i, i);
            map = other;
        },
        "assign");
}

} // namespace

template class CHashMap<Copier, Copier const &, Copier>;

// SPDX-License-Identifier: MIT
#include "kortools/core/hash_map.h"

#include "kortools/core/ex_lc_string.h"
#include "kortools/core/int_map.h"
#include "kortools/core/xstring.h"
#include "tests/core/hash_model.h"
#include "tests/support/oracle.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr unsigned none = ~0U;

// A map that shows its slots.
template <typename K, typename V, typename METHODS = CHashMethods<K>>
class OpenMap : public CHashMap<K, K const &, V, METHODS> {
    using Map = CHashMap<K, K const &, V, METHODS>;

public:
    using Map::FindPos;
    using Map::GetSlot;
    using Map::Map;
    using Map::ReHash;

    unsigned CountOccupied() const
    {
        unsigned occupied = 0;
        for (unsigned i = 0; i < Map::GetHashTableSize(); ++i)
            occupied += GetSlot(i).state != 1;
        return occupied;
    }
};

// --- Battery: random operations beside the model, for keys of every kind

struct IntKeys {
    using Key = int;
    using Methods = CHashMethods<int>;
    static Key make(unsigned i) { return static_cast<int>(i % 3 == 0 ? i * 0x01000193 : i); }
    static unsigned home(Key const &key, unsigned size)
    {
        return static_cast<unsigned>(static_cast<std::uint32_t>(key) * 16ULL % 4294967296 % size);
    }
};

struct LongKeys {
    using Key = long long;
    using Methods = CHashMethods<long long>;
    static Key make(unsigned i) { return static_cast<Key>(i % 2 ? i * 0x9E3779B97F4A7C15U : i); }
    static unsigned home(Key const &key, unsigned size)
    {
        auto const bits = static_cast<std::uint64_t>(key);
        auto hash = static_cast<std::uint32_t>(bits << 4);
        if (key < INT32_MIN || key > INT32_MAX)
            hash ^= static_cast<std::uint32_t>((bits >> 28) * 0x9E3779B97F4A7C15U >> 32);
        return hash % size;
    }
};

struct PointerKeys {
    using Key = double *;
    using Methods = CHashMethods<double *>;
    static Key make(unsigned i)
    {
        static double s_objects[5000];
        return s_objects + i;
    }
    static unsigned home(Key const &key, unsigned size)
    {
        auto const address = reinterpret_cast<std::uintptr_t>(key);
        return static_cast<std::uint32_t>(address * 0x9E3779B97F4A7C15U >> 32) % size;
    }
};

struct TextKeys {
    using Key = CXTString<wchar_t>;
    using Methods = CHashMethods<Key>;
    static Key make(unsigned i)
    {
        std::wstring const text = L"name" + std::to_wstring(i);
        return Key((i % 5 ? text : text + L"\U0001F600").c_str());
    }
    static unsigned home(Key const &key, unsigned size)
    {
        std::u16string const units = kor_test::to_units(key.GetConstBuffer());
        std::uint32_t hash = 0x811C9DC5;
        for (auto unit = units.rbegin(); unit != units.rend(); ++unit)
            hash = (hash ^ *unit) * 16777619;
        return hash % size;
    }
};

// Methods as a user writes them, with one home slot for all keys.
struct CrowdedMethods {
    static unsigned int GetHash(int const &, unsigned int tableSize) { return tableSize - 1; }
    static bool IsEqual(int const &a, int const &b) { return a == b; }
};
struct CrowdedKeys {
    using Key = int;
    using Methods = CrowdedMethods;
    static Key make(unsigned i) { return static_cast<int>(i % 80); }
    static unsigned home(Key const &, unsigned size) { return size - 1; }
};

// Methods that replace only half of the library's: the rest must not be used.
struct HalfMethods : CHashMethods<int> {
    static unsigned int GetHash(int const &key, unsigned int tableSize)
    {
        return static_cast<unsigned>(key) / 3 % tableSize;
    }
};
struct HalfKeys {
    using Key = int;
    using Methods = HalfMethods;
    static Key make(unsigned i) { return static_cast<int>(i); }
    static unsigned home(Key const &key, unsigned size)
    {
        return static_cast<unsigned>(key) / 3 % size;
    }
};

template <typename KEYS> class HashMapModel : public testing::Test {
protected:
    using K = typename KEYS::Key;
    using Map = OpenMap<K, int, typename KEYS::Methods>;
    using Model = kor_test::HashModel<K, int>;

    static testing::AssertionResult Agree(Map const &map, Model const &model)
    {
        if (map.GetHashTableSize() != model.size || map.GetCount() != model.count
            || map.CountOccupied() != model.occupied)
            return testing::AssertionFailure() << "size, count or occupied slots";
        unsigned pos = map.GetFirst();
        auto range = map.begin();
        for (unsigned i = 0; i < model.size; ++i) {
            auto const &slot = map.GetSlot(i);
            if (slot.state != model.slots[i].state)
                return testing::AssertionFailure() << "state of slot " << i << ": " << slot.state;
            if (slot.state != 0)
                continue;
            if (!(slot.key == model.slots[i].key) || slot.value != model.slots[i].value)
                return testing::AssertionFailure() << "entry in slot " << i;
            if (pos != i || range == map.end() || !((*range).key == slot.key))
                return testing::AssertionFailure() << "iteration at slot " << i;
            int const *value = nullptr;
            map.GetNext(pos, value);
            ++range;
        }
        if (pos != none || range != map.end())
            return testing::AssertionFailure() << "iteration goes on with " << pos;
        return testing::AssertionSuccess();
    }

    // One random operation on both; false when they answered differently.
    static bool Step(Map &map, Model &model, kor_test::Random &random, unsigned range)
    {
        K const key = KEYS::make(random(range));
        int const value = static_cast<int>(random(none));
        switch (random(64)) {
        case 0:
            return map.ReHash(true) == model.rehash(true);
        case 1:
            if (random(16) == 0) {
                map.Clear();
                model.clear();
            }
            return true;
        case 2: {
            Map half(random(40));
            for (unsigned i = 0; i < range; i += 2)
                half.Insert(KEYS::make(i), 0);
            if (random(8) == 0) {
                map.Remove(half);
                for (unsigned i = 0; i < range; i += 2)
                    model.remove(KEYS::make(i), false);
            }
            return true;
        }
        case 3: {
            Map copy(map);
            map = std::move(copy);
            return copy.IsEmpty() && copy.Insert(key, 1) == 1 && copy.GetHashTableSize() == 23;
        }
        default:
            break;
        }
        bool const is_there = model.slots[model.find_pos(key)].state == 0;
        if (map.FindPos(key) != model.find_pos(key) || map.IsFound(key) != is_there)
            return false;
        if (random(8) < 3) {
            bool const rehash = random(2);
            return map.Remove(key, rehash) == model.remove(key, rehash);
        }
        return (random(2) ? map.Insert(key, value) : map.Insert2(key, value))
            == model.insert(key, value);
    }
};

using KeyKinds = testing::Types<IntKeys, LongKeys, PointerKeys, TextKeys, CrowdedKeys, HalfKeys>;
TYPED_TEST_SUITE(HashMapModel, KeyKinds);

TYPED_TEST(HashMapModel, HasTheSameSlotsAfterEachOperation)
{
    for (unsigned seed = 0; seed < 8; ++seed) {
        kor_test::Random random(seed);
        unsigned const range = seed % 2 ? 40 : 1200;
        typename TestFixture::Map map(seed);
        typename TestFixture::Model model(TypeParam::home, seed);
        for (int step = 0; step < 2500; ++step) {
            ASSERT_TRUE(this->Step(map, model, random, range)) << seed << " step " << step;
            if (model.size < 200 || step % 32 == 0) {
                ASSERT_TRUE(this->Agree(map, model)) << seed << " step " << step;
            }
        }
        ASSERT_TRUE(this->Agree(map, model)) << seed;
    }
}

// --- Sizes

TEST(HashMap, IsMadeWithAPrimeNumberOfSlots)
{
    for (auto const &[request, size] :
        std::vector<std::pair<unsigned, unsigned>> { { 0, 5 }, { 1, 5 }, { 2, 5 }, { 5, 5 },
            { 6, 7 }, { 22, 23 }, { 23, 23 }, { 24, 29 }, { 100, 101 } })
        EXPECT_EQ((CHashMap<int, int, int>(request).GetHashTableSize()), size) << request;
    EXPECT_EQ((CHashMap<int, int, int>().GetHashTableSize()), 23U);
}

TEST(HashMap, GrowsWhenHalfOfItsSlotsAreOccupied)
{
    CHashMap<int, int, int> map;
    for (int key = 0; key < 10; ++key)
        map.Insert(key, key);
    EXPECT_EQ(map.GetHashTableSize(), 23U);
    map.Insert(3, 33); // there already
    EXPECT_EQ(map.GetHashTableSize(), 23U);
    map.Insert(10, 10);
    EXPECT_EQ(map.GetHashTableSize(), 97U);
    EXPECT_EQ(map.GetCount(), 11U);
    EXPECT_EQ(*map.Find(3), 33);
}

TEST(HashMap, IsInitialisedAnewOnlyToAnotherSize)
{
    CHashMap<int, int, int> map(47);
    for (int key = 0; key < 100; ++key)
        map.Insert(key, key);
    ASSERT_GT(map.GetHashTableSize(), 47U);
    map.InitHashTable(22); // 46 slots would be 47, as at first
    EXPECT_EQ(map.GetCount(), 100U);
    CHashMap<int, int, int> copy(map);
    copy.InitHashTable(22); // the copy remembers, too
    EXPECT_EQ(copy.GetCount(), 100U);
    map.InitHashTable(50);
    EXPECT_EQ(map.GetHashTableSize(), 103U);
    EXPECT_TRUE(map.IsEmpty());
    map.InitHashTable(0);
    EXPECT_EQ(map.GetHashTableSize(), 5U);
    map.Free();
    EXPECT_EQ(map.GetHashTableSize(), 23U);
    map.Insert(1, 1);
    map.InitHashTable(10); // 22 slots would be 23, as after Free()
    EXPECT_EQ(map.GetCount(), 1U);
}

// --- Interface

TEST(HashMap, HasItsSlotsWhereOtherSystemsHaveThem)
{
    // Positions computed apart from this library, with UTF-16 units.
    CHashMap<CXTString<wchar_t>, CXTString<wchar_t> const &, int> texts;
    for (wchar_t const *text :
        { L"zero", L"one", L"two", L"three", L"four", L"five", L"six", L"seven", L"eight", L"nine",
            L"ten", L"\U0001F600", L"\U0001F601", L"\u00E9t\u00E9", L"" })
        texts.Insert(text, 0);
    texts.Remove(L"four");
    texts.Remove(L"ten");
    texts.Insert(L"eleven", 0);
    std::vector<std::pair<unsigned, std::wstring>> found;
    for (unsigned pos = texts.GetFirst(); pos != none;) {
        unsigned const at = pos;
        CXTString<wchar_t> key;
        texts.GetNext(pos, key);
        found.emplace_back(at, key.GetConstBuffer());
    }
    EXPECT_EQ(found,
        (std::vector<std::pair<unsigned, std::wstring>> { { 6, L"eight" }, { 7, L"eleven" },
            { 8, L"two" }, { 20, L"\u00E9t\u00E9" }, { 22, L"zero" }, { 23, L"\U0001F601" },
            { 24, L"\U0001F600" }, { 36, L"nine" }, { 38, L"five" }, { 43, L"one" }, { 64, L"" },
            { 68, L"seven" }, { 78, L"three" }, { 83, L"six" } }));

    CHashMap<int, int, int> numbers;
    for (int const key : { 0, 1, -1, 23, 46, 1000000, INT32_MIN, INT32_MAX, 7, 69 })
        numbers.Insert(key, 0);
    std::vector<int> order;
    for (auto const &[key, value] : numbers)
        order.push_back(key);
    EXPECT_EQ(order, (std::vector<int> { 0, 23, 69, 46, 1000000, INT32_MIN, 1, -1, INT32_MAX, 7 }));
}

TEST(HashMap, LiesInMemoryAsDocumented)
{
    struct Header {
        void *methods;
        unsigned initial_size, table_size, occupied, count;
        unsigned const *slots;
    };
    CHashMap<int, int, int> map(24);
    map.Insert(1, 100);
    map.Insert(2, 200);
    map.Remove(2);
    Header header;
    std::memcpy(&header, static_cast<void const *>(&map), sizeof header);
    EXPECT_EQ(header.initial_size, 29U);
    EXPECT_EQ(header.table_size, 29U);
    EXPECT_EQ(header.occupied, 2U);
    EXPECT_EQ(header.count, 1U);
    EXPECT_EQ(header.slots[16 * 3], 1U); // key, value and state of slot 16
    EXPECT_EQ(header.slots[16 * 3 + 1], 100U);
    EXPECT_EQ(header.slots[16 * 3 + 2], 0U);
    EXPECT_EQ(header.slots[32 % 29 * 3 + 2], 2U);
    EXPECT_EQ(header.slots[2], 1U);
}

TEST(HashMap, FindsInEachForm)
{
    CHashMap<int, int, int> map;
    CHashMap<int, int, int> const &constant = map;
    EXPECT_EQ(map.Insert(5, 50), 1);
    EXPECT_EQ(map.Insert2(5, 55), 0);
    int value = -1;
    int *pointer = &value;
    int const *constant_pointer = &value;
    EXPECT_FALSE(map.Find(6, value));
    EXPECT_EQ(value, -1);
    EXPECT_FALSE(map.Find(6, pointer));
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(constant.Find(6), nullptr);
    EXPECT_TRUE(constant.Find(5, value));
    EXPECT_EQ(value, 55);
    EXPECT_TRUE(map.Find(5, pointer));
    *pointer = 56;
    EXPECT_TRUE(constant.Find(5, constant_pointer));
    EXPECT_EQ(*constant_pointer, 56);
    EXPECT_TRUE(constant.IsFound(5));
    EXPECT_FALSE(constant.IsFound(-5));
}

TEST(HashMap, IteratesInEachForm)
{
    CHashMap<int, int, int> map;
    map.Insert(1, 10);
    map.Insert(2, 20); // slot 9; slot 16 has key 1
    unsigned pos = map.GetFirst();
    EXPECT_EQ(pos, 9U);
    int key = 0, value = 0;
    EXPECT_EQ(map.GetNext(pos, key)++, 20);
    EXPECT_EQ(key, 2);
    EXPECT_EQ(pos, 16U);
    map.GetNext(pos = 9, key, value);
    EXPECT_EQ(value, 21);
    int *pointer;
    map.GetNext(pos, key, pointer);
    EXPECT_EQ(key, 1);
    EXPECT_EQ(*pointer, 10);
    EXPECT_EQ(pos, none);
    map.GetNext(pos = 9, pointer);
    EXPECT_EQ(*pointer, 21);
    map.GetNext(pos, &key, nullptr);
    map.GetNext(pos = 9, nullptr, &value);
    EXPECT_EQ(value, 21);
    EXPECT_EQ(key, 1);
    for (auto [k, v] : map)
        v = -k;
    EXPECT_EQ(*map.Find(2), -2);
}

TEST(HashMap, GivesNothingForPositionsWithoutEntry)
{
    CHashMap<int, int, int> map;
    for (int pass = 0; pass < 2; ++pass) { // empty, then with slot 16 in use
        for (unsigned const bad : { none, 23U, 24U, 0x80000000U, 17U }) {
            int key = 7, value = 8;
            int *pointer = &key;
            unsigned pos = bad;
            map.GetNext(pos, key, value);
            EXPECT_EQ(pos, none) << bad;
            EXPECT_EQ(key, 0);
            EXPECT_EQ(value, 0);
            map.GetNext(pos = bad, key, pointer);
            EXPECT_EQ(pointer, nullptr);
            map.GetNext(pos = bad, key) = 9;
            EXPECT_EQ(map.GetNext(pos = bad, key), 0);
        }
        map.Insert(1, 1);
    }
    unsigned pos = 3; // an empty slot leads on to the next entry
    int key = 0;
    EXPECT_EQ(map.GetNext(pos, key), 0);
    EXPECT_EQ(pos, 16U);
}

TEST(HashMap, RemovesWhileIterating)
{
    CHashMap<int, int, int> map;
    for (int key = 0; key < 1000; ++key)
        map.Insert(key, key);
    int sum = 0;
    for (unsigned pos = map.GetFirst(); pos != none;) {
        int key, value;
        map.GetNext(pos, key, value);
        sum += value;
        EXPECT_EQ(map.Remove(key, false), 1);
    }
    EXPECT_EQ(sum, 499500);
    EXPECT_EQ(map.GetFirst(), none);
    map.Insert(1, 1);
    map.Remove(map);
    EXPECT_TRUE(map.IsEmpty());
}

TEST(HashMap, TakesArgumentsThatLieInIt)
{
    CHashMap<CXTString<wchar_t>, CXTString<wchar_t> const &, CXTString<wchar_t>> map;
    map.Insert(L"0", L"the first");
    for (int i = 1; i < 100; ++i) // through several rebuilds
        map.Insert(std::to_wstring(i).c_str(), *map.Find(std::to_wstring(i - 1).c_str()));
    EXPECT_EQ(*map.Find(L"99"), L"the first");
    for (unsigned pos = map.GetFirst(); pos != none;) {
        CXTString<wchar_t> const &key = (*map.begin()).key;
        EXPECT_EQ(map.Remove(key, false), 1);
        pos = map.GetFirst();
    }
}

TEST(HashMap, CopiesAndMoves)
{
    CHashMap<int, int, int> map;
    for (int key = 0; key < 50; ++key)
        map.Insert(key, key);
    CHashMap<int, int, int> copy;
    copy = map;
    auto &self = copy;
    copy = self;
    copy.Insert(7, -7);
    EXPECT_EQ(*map.Find(7), 7);
    CHashMap<int, int, int> moved(std::move(map));
    EXPECT_EQ(moved.GetCount(), 50U);
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(map.GetFirst(), none);
    EXPECT_EQ(map.GetHashTableSize(), 23U);
    EXPECT_EQ(map.Remove(1), 0);
    map.Clear();
    EXPECT_EQ((CHashMap<int, int, int>(map).GetCount()), 0U);
    EXPECT_EQ(map.Insert(1, 1), 1);
    EXPECT_EQ(map.GetHashTableSize(), 23U);
    moved = std::move(moved);
    EXPECT_EQ(moved.GetCount(), 50U);
}

TEST(HashMap, KeysTextsWithoutRegardToCase)
{
    CHashMap<CExLCString, CExLCString const &, int> map;
    EXPECT_EQ(map.Insert(L"Cube.OBJ", 1), 1);
    EXPECT_EQ(map.Insert(CXTString<wchar_t>(L"CUBE.obj"), 2), 0);
    EXPECT_EQ(*map.Find(L"cube.obj"), 2);
    EXPECT_EQ((*map.begin()).key.GetString(), L"cube.obj");
    EXPECT_EQ(CHashMethods<CExLCString>::GetHash(L"CUBE", 97),
        CHashMethods<CXTString<wchar_t>>::GetHash(L"cube", 97));
    CExLCString const key(L"\u00C9A");
    EXPECT_TRUE(key == L"\u00C9a");
}

TEST(IntMap, IsAnIntToIntMap)
{
    CIntMap map;
    map.Insert(4, 40);
    CIntMap copy(map), moved(std::move(map));
    EXPECT_EQ(*copy.Find(4), 40);
    EXPECT_EQ(*moved.Find(4), 40);
    EXPECT_TRUE(map.IsEmpty());
    map = copy;
    copy = CIntMap();
    EXPECT_EQ(*map.Find(4), 40);
    EXPECT_TRUE(copy.IsEmpty());
    std::unique_ptr<CHashMap<int, int, int>> const base = std::make_unique<CIntMap>(map);
    EXPECT_EQ(base->GetCount(), 1U);
}

} // namespace

template class CHashMap<long long, long long, CXTString<char>>;
template class CHashMap<CXTString<char>, CXTString<char> const &, double>;
template class CHashMap<int *, int *, int>; // keys of the type of a pointer to a value
template class CHashMap<CExLCString, wchar_t const *, bool>;

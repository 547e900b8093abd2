// SPDX-License-Identifier: MIT
#include "kortools/core/hash_map.h"

#include "kortools/core/ex_lc_string.h"
#include "kortools/core/hash_table.h"
#include "kortools/core/int_map.h"
#include "kortools/core/xstring.h"
#include "tests/core/hash_model.h"
#include "tests/support/oracle.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>
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
struct CrowdedKeys {
    struct Methods {
        static unsigned int GetHash(int const &, unsigned int tableSize) { return tableSize - 1; }
        static bool IsEqual(int const &a, int const &b) { return a == b; }
    };
    using Key = int;
    static Key make(unsigned i) { return static_cast<int>(i % 80); }
    static unsigned home(Key const &, unsigned size) { return size - 1; }
};

// Methods that replace only half of the library's: the rest must not be used.
struct HalfKeys {
    struct Methods : CHashMethods<int> {
        static unsigned int GetHash(int const &key, unsigned int size) { return home(key, size); }
    };
    using Key = int;
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
            if (random(8) != 0)
                return true;
            Map half(random(40));
            unsigned const step = 1 + random(3);
            for (unsigned i = 0; i < range; i += step)
                half.Insert(KEYS::make(i), 0);
            map.Remove(step == 1 ? map : half);
            for (unsigned i = 0; i < range; i += step)
                model.remove(KEYS::make(i), false);
            return true;
        }
        case 3: {
            Map copy(map);
            map = *&map;
            map.Clear();
            map = copy;
            Map moved(std::move(map));
            bool const is_new = map.GetFirst() == none && map.Remove(key) == 0 && map.IsEmpty();
            map = std::move(copy);
            map = std::move(moved);
            return is_new && moved.IsEmpty() && moved.Insert(key, 1) == 1
                && moved.GetHashTableSize() == 23;
        }
        case 4: {
            unsigned const slots = random(2) ? random(500) : (model.initial_size - 3) / 2; // as now
            if (random(8) == 0) {
                map.InitHashTable(slots);
                model.init(slots);
            } else if (random(16) == 0) {
                map.Free();
                model.free();
            }
            return true;
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

using KeyKinds = testing::Types<IntKeys, TextKeys, CrowdedKeys, HalfKeys>;
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
    EXPECT_TRUE(header.initial_size == 29 && header.table_size == 29);
    EXPECT_TRUE(header.occupied == 2 && header.count == 1);
    unsigned const *const slot = header.slots + 16 * 3; // key, value and state
    EXPECT_TRUE(slot[0] == 1 && slot[1] == 100 && slot[2] == 0);
    EXPECT_TRUE(header.slots[32 % 29 * 3 + 2] == 2 && header.slots[2] == 1);
}

TEST(HashMap, IteratesInEachForm)
{
    CIntMap map;
    map.Insert(1, 10);
    map.Insert(2, 20); // slot 9; slot 16 has key 1
    unsigned pos = map.GetFirst();
    int key = 0, value = 0;
    EXPECT_EQ(map.GetNext(pos, key)++, 20);
    EXPECT_TRUE(key == 2 && pos == 16);
    map.GetNext(pos = 9, key, value);
    EXPECT_EQ(value, 21);
    int *pointer;
    map.GetNext(pos, key, pointer);
    EXPECT_TRUE(key == 1 && *pointer == 10 && pos == none);
    map.GetNext(pos = 9, pointer);
    EXPECT_EQ(*pointer, 21);
    map.GetNext(pos, &key, nullptr);
    map.GetNext(pos = 9, nullptr, &value);
    EXPECT_TRUE(key == 1 && value == 21);
}

TEST(HashMap, GivesNothingForPositionsWithoutEntry)
{
    CHashMap<int, int, int> map;
    for (int pass = 0; pass < 2; ++pass) { // empty, then with slot 16 in use
        for (unsigned const bad : { none, 23U, 0x80000000U, 17U }) {
            int key = 7, value = 8;
            unsigned pos = bad;
            map.GetNext(pos, key, value);
            EXPECT_TRUE(pos == none && key == 0 && value == 0) << bad;
            map.GetNext(pos = bad, key) = 9;
            EXPECT_EQ(map.GetNext(pos = bad, key), 0);
        }
        map.Insert(1, 1);
    }
    int *pointer;
    unsigned pos = 3; // an empty slot leads on to the next entry
    map.GetNext(pos, pointer);
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(pos, 16U);
}

TEST(HashMap, TakesArgumentsThatLieInIt)
{
    CHashMap<CXTString<wchar_t>, CXTString<wchar_t> const &, CXTString<wchar_t>> map;
    map.Insert(L"0", L"the first");
    for (int i = 1; i < 100; ++i) // through several rebuilds
        map.Insert(std::to_wstring(i).c_str(), *map.Find(std::to_wstring(i - 1).c_str()));
    EXPECT_EQ(*map.Find(L"99"), L"the first");
    while (!map.IsEmpty())
        EXPECT_EQ(map.Remove((*map.begin()).key, false), 1);
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

TEST(HashTable, IsASet)
{
    CHashTable<int> table;
    std::set<int> model;
    kor_test::Random random(1);
    for (int step = 0; step < 3000; ++step) {
        int const key = static_cast<int>(random(600));
        if (random(3) == 0)
            ASSERT_EQ(table.Remove(key), model.erase(key));
        else
            ASSERT_EQ(table.Insert(key), model.insert(key).second);
        ASSERT_EQ(table.IsFound(key), model.contains(key));
        ASSERT_EQ(table.GetCount(), model.size());
    }
    std::set<int> keys;
    for (int const key : table)
        keys.insert(key);
    EXPECT_EQ(keys, model);
    CHashTable<int> copy(table);
    copy.Remove(table);
    EXPECT_TRUE(copy.IsEmpty() && copy.begin() == copy.end());
}

// Two 32-bit words: the key and its state.
static_assert(sizeof(kortools::core::HashSlot<int, void>) == 8);

} // namespace

template class CHashMap<long long, long long, CXTString<char>>;
template class CHashMap<CXTString<char>, CXTString<char> const &, double>;
template class CHashMap<int *, int *, int>; // keys of the type of a pointer to a value
template class CHashMap<CExLCString, wchar_t const *, bool>;
template class CHashTable<unsigned long long>;
template class CHashTable<CXTString<char>>;
template class CHashTable<void (*)()>;

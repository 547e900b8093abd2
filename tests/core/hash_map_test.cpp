// SPDX-License-Identifier: MIT
#include "kortools/core/hash_map.h"

#include "tests/core/hash_model.h"

#include <gtest/gtest.h>
#include <random>

namespace {

template <typename K, typename V, typename METHODS = CHashMethods<K>>
class OpenMap : public CHashMap<K, K const &, V, METHODS> {
    using Map = CHashMap<K, K const &, V, METHODS>;

public:
    using Map::GetSlot;
    using Map::Map;
    using Map::ReHash;
};

template <typename K, typename V, typename METHODS>
testing::AssertionResult agrees(
    OpenMap<K, V, METHODS> const &map, kor_test::HashModel<K, V> const &model)
{
    if (map.GetHashTableSize() != model.size || map.GetCount() != model.count)
        return testing::AssertionFailure() << "sizes differ";
    unsigned pos = map.GetFirst();
    for (unsigned i = 0; i < model.size; ++i) {
        auto const &slot = map.GetSlot(i);
        if (slot.state != model.slots[i].state)
            return testing::AssertionFailure() << "state of slot " << i << ": " << slot.state;
        if (slot.state != 0)
            continue;
        if (!(slot.key == model.slots[i].key) || !(slot.value == model.slots[i].value))
            return testing::AssertionFailure() << "entry in slot " << i;
        if (pos != i)
            return testing::AssertionFailure() << "iteration is at " << pos << " instead of " << i;
        V const *value = nullptr;
        map.GetNext(pos, value);
    }
    if (pos != ~0U)
        return testing::AssertionFailure() << "iteration goes on with " << pos;
    return testing::AssertionSuccess();
}

TEST(HashMap, AgreesWithTheModelOnRandomOperations)
{
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 random(seed);
        unsigned const range = seed % 2 ? 60 : 3000;
        OpenMap<int, int> map(seed);
        kor_test::HashModel<int, int> model(
            [](int k, unsigned size) { return (unsigned(k) << 4) % size; }, seed);
        for (int step = 0; step < 3000; ++step) {
            int const key = int(random() % range) * (seed % 3 ? 1 : 0x01000193);
            switch (random() % 8) {
            case 0:
            case 1:
            case 2:
                ASSERT_EQ(map.Remove(key, random() % 2), model.remove(key, true));
                break;
            case 3:
                ASSERT_EQ(map.IsFound(key), model.slots[model.find_pos(key)].state == 0);
                break;
            default:
                ASSERT_EQ(map.Insert(key, step), model.insert(key, step));
            }
            ASSERT_TRUE(agrees(map, model)) << "seed " << seed << " step " << step;
        }
    }
}

} // namespace

// SPDX-License-Identifier: MIT
// The hash table's rules, one sentence after the other and without regard to speed: what the tests
// hold the real one to, slot by slot.
#pragma once

#include <algorithm>
#include <functional>
#include <random>
#include <utility>
#include <vector>

namespace kor_test {

// Random numbers below a bound, the same in each run.
class Random {
public:
    explicit Random(unsigned seed)
        : m_engine(seed)
    {
    }
    unsigned operator()(unsigned bound) { return static_cast<unsigned>(m_engine() % bound); }

private:
    std::mt19937 m_engine;
};

inline bool counts_as_prime(unsigned long long odd)
{
    for (unsigned long long divisor = 3; odd >= 9 && divisor * divisor <= odd; divisor += 2) {
        if (odd % divisor == 0)
            return false;
    }
    return true;
}

inline unsigned stepped_up_to_prime(unsigned candidate)
{
    if (candidate % 2 == 0)
        ++candidate;
    while (!counts_as_prime(candidate))
        candidate += 2;
    return candidate;
}

inline unsigned next_prime(unsigned n)
{
    return n < 3 ? n + 1 : stepped_up_to_prime(n);
}

template <typename K, typename V> struct ModelSlot {
    K key {};
    V value {};
    unsigned state = 1; // 0 live, 1 empty, 2 deleted
};

template <typename K, typename V> class HashModel {
public:
    using Home = std::function<unsigned(K const &, unsigned size)>;

    unsigned initial_size;
    unsigned size;
    unsigned occupied = 0;
    unsigned count = 0;
    std::vector<ModelSlot<K, V>> slots;
    Home home;

    explicit HashModel(Home hash, unsigned request = 23)
        : initial_size(request == 23 ? 23 : std::max(next_prime(request), 5U))
        , size(initial_size)
        , slots(size)
        , home(std::move(hash))
    {
    }

    void init(unsigned n)
    {
        unsigned const target = std::max(next_prime(2 * n + 2), 5U);
        if (target == initial_size)
            return;
        initial_size = target;
        reset(target);
    }

    unsigned find_pos(K const &key) const
    {
        unsigned pos = home(key, size);
        unsigned first_deleted = ~0U;
        for (unsigned probe = 1; slots[pos].state != 1; ++probe) {
            if (slots[pos].state == 2 && first_deleted == ~0U)
                first_deleted = pos;
            if (slots[pos].state == 0 && slots[pos].key == key)
                return pos;
            pos += 2 * probe - 1;
            if (pos >= size)
                pos -= size;
        }
        return first_deleted != ~0U ? first_deleted : pos;
    }

    int insert(K const &key, V const &value)
    {
        ModelSlot<K, V> &slot = slots[find_pos(key)];
        if (slot.state == 0) {
            slot.value = value;
            return 0;
        }
        if (slot.state == 1)
            ++occupied;
        ++count;
        slot = { key, value, 0 };
        if (occupied >= size / 2)
            rehash(false);
        return 1;
    }

    int remove(K const &key, bool may_rehash)
    {
        ModelSlot<K, V> &slot = slots[find_pos(key)];
        if (slot.state != 0)
            return 0;
        slot.state = 2;
        --count;
        if (may_rehash && count >= 24)
            rehash(false);
        return 1;
    }

    bool rehash(bool compact)
    {
        unsigned target = 0;
        if (compact) {
            target = stepped_up_to_prime(2 * count + 2 < 5 ? 5 : 2 * count + 3);
            if (target == size)
                return false;
        } else {
            if (occupied < size / 2)
                return false;
            float const ratio = float(count) / float(occupied);
            if (double(ratio) <= 0.65)
                target = std::max(unsigned((2 * count + 2) / 0.65), 23U);
            else
                target = size < 251 ? 4 * size : 2 * size;
            target = stepped_up_to_prime(target);
        }
        std::vector<ModelSlot<K, V>> const old = slots;
        reset(target);
        for (ModelSlot<K, V> const &slot : old) {
            if (slot.state == 0)
                insert(slot.key, slot.value);
        }
        return true;
    }

    void clear() { reset(size); }
    void free() { reset(initial_size = 23); }

private:
    void reset(unsigned new_size)
    {
        size = new_size;
        slots.assign(size, {});
        occupied = count = 0;
    }
};

} // namespace kor_test

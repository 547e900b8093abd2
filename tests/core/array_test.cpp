// SPDX-License-Identifier: MIT
#include "kortools/core/array.h"

#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/core/xstring.h"
#include "tests/core/tracked.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

template <class T> T make(int value)
{
    if constexpr (std::is_same_v<T, CXTString<wchar_t>>) {
        return value == 0 ? T() : T(std::to_wstring(value).c_str());
    } else if constexpr (std::is_same_v<T, CXArray<int>>) {
        CXArray<int> array;
        array.SetSize(value % 5);
        return array;
    } else {
        return T(value);
    }
}

template <class T> CXArray<T> make_array(std::initializer_list<int> values)
{
    CXArray<T> array;
    for (int const value : values)
        array.Add(make<T>(value));
    return array;
}

template <class Call> bool throws_invalid_argument(Call call)
{
    try {
        call();
    } catch (CXInvalidArgException *exception) {
        EXPECT_EQ(XGetThreadException(), exception);
        exception->Delete();
        return true;
    }
    return false;
}

} // namespace

template class CXArray<std::string>;
template class CXArray<int, int>;
template class CXArray<CXTString<wchar_t>, wchar_t const *>;

template <class T> class ArrayOf : public testing::Test {
};
using ElementTypes
    = testing::Types<int, double, CXTString<wchar_t>, CXArray<int>, SafeMover, RiskyMover, Copier>;
TYPED_TEST_SUITE(ArrayOf, ElementTypes);

// Elements come and go anywhere, or in phases at one of the ends, as in a queue.
TYPED_TEST(ArrayOf, AgreesWithAVector)
{
    using T = TypeParam;
    for (int const phase_length : { 3, 40, 300, 5000 }) {
        std::mt19937 random(7);
        auto const below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
        CXArray<T> array;
        std::vector<T> model;
        for (int step = 0; step < 2400; ++step) {
            int const size = static_cast<int>(model.size());
            int const capacity = array.GetCapacity();
            int const phase = below(8) == 0 ? 0 : step / phase_length % 5;
            int const at = phase == 0 ? below(size + 1)
                : phase % 2 != 0      ? std::min(below(3), size)
                                      : std::max(size - below(3), 0);
            int const count = below(4);
            int const removed = std::min(count, size - at);
            T const fresh = make<T>(1 + below(1000));
            T const &value = size > 0 && below(2) ? array[below(size)] : fresh; // often its own
            T const copy = value;
            int const kind = phase == 0 ? below(12) : below(8) == 0 ? phase / 3 : 1 - phase / 3;
            switch (kind) {
            case 0:
                array.RemoveAt(at, removed);
                model.erase(model.begin() + at, model.begin() + at + removed);
                ASSERT_EQ(array.GetCapacity(), capacity);
                break;
            case 1:
                array.InsertAt(at, value, count);
                model.insert(model.begin() + at, std::size_t(count), copy);
                break;
            case 2:
                EXPECT_EQ(array.Add(value, below(3)), size);
                model.push_back(copy);
                break;
            case 3:
                EXPECT_EQ(array.Add(make<T>(7)), size);
                model.push_back(make<T>(7));
                break;
            case 4: // past the end
                if (below(2))
                    array.InsertAt(size + count, value);
                else
                    array.SetAtGrow(size + count, value, -2);
                model.resize(std::size_t(size + count));
                model.push_back(copy);
                break;
            case 5:
                array.SetSize(at + count);
                model.resize(std::size_t(at + count));
                break;
            case 6:
                if (size < 150) {
                    auto const all = model;
                    array.InsertAt(at, &array);
                    model.insert(model.begin() + at, all.begin(), all.end());
                }
                break;
            case 7:
                array.FreeExtra();
                EXPECT_EQ(array.GetCapacity(), size);
                break;
            case 8: {
                CXArray<T> other(array);
                array.SetSize(count);
                array.Copy(other);
                array = *&array;
                other = std::move(array);
                EXPECT_TRUE(array.IsEmpty());
                array = std::move(other);
                break;
            }
            default: // shrink, so that sizes stay where every path is taken
                array.RemoveAt(size / 2, size - size / 2);
                model.resize(std::size_t(size / 2));
            }
            ASSERT_EQ(std::vector<T>(array.begin(), array.end()), model) << "step " << step;
            ASSERT_GE(array.GetCapacity(), array.GetSize());
        }
    }
    EXPECT_EQ(s_alive, 0);
}

TEST(Array, GrowsByItsRule)
{
    struct Row {
        int size; // from the first block on
        int rule;
        int first;  // capacity
        int second; // capacity after one element more than that
    };
    for (Row const row : { Row { 100, 0, 100, 112 }, { 10, 0, 10, 14 }, { 39, 0, 39, 43 },
             { 40, 0, 40, 45 }, { 8191, 0, 8191, 9214 }, { 8200, 0, 8200, 9224 },
             { 20000, 0, 20000, 21024 }, { 16, -2, 16, 32 }, { 1, -2, 1, 2 }, { 10, 7, 10, 17 },
             { 3, 50, 50, 100 }, { 10, -5, 10, 11 } }) {
        CXArray<int> array;
        array.SetSize(row.size, row.rule);
        EXPECT_EQ(array.GetCapacity(), row.first) << row.size << " by rule " << row.rule;
        int const *const block = array.GetData();
        array.RemoveAt(0, row.size); // the block stays
        array.Copy(nullptr);
        array.SetSize(row.first);
        EXPECT_EQ(array.GetData(), block);
        array.Add(1);
        EXPECT_EQ(array.GetCapacity(), row.second) << row.size << " by rule " << row.rule;
        array.SetSize(5 * row.second); // beyond what the rule gives
        EXPECT_EQ(array.GetCapacity(), 5 * row.second);
        array.SetSize(0, 0);
        EXPECT_EQ(array.GetData(), nullptr);
        EXPECT_EQ(array.GetCapacity(), 0);
    }
}

TEST(Array, EveryBadIndexOrSizeThrowsAndChangesNothing)
{
    auto array = make_array<int>({ 1, 2, 3 });
    array.FreeExtra();
    CXArray<int> const &constant = array;
    std::function<void()> const calls[] = {
        [&] { array.SetSize(-1); }, [&] { array.SetAtGrow(-1, 0); },
        [&] { array.SetAtGrow(INT_MAX, 0); }, [&] { array.InsertAt(-1, 0); },
        [&] { array.InsertAt(0, 0, -1); }, [&] { array.InsertAt(-1, &array); },
        [&] { array.InsertAt(3, 0, INT_MAX); }, [&] { array.RemoveAt(3); },
        [&] { array.RemoveAt(-1); }, [&] { array.RemoveAt(0, -1); }, [&] { array.RemoveAt(4, 0); },
        [&] { array.RemoveAt(1, INT_MAX); }, [&] { array.SetAt(3, 0); },
        [&] { array.ElementAt(INT_MIN); }, [&] { array[-1] = 1; },
        [&] { static_cast<void>(constant[3]); }, [&] { static_cast<void>(constant.GetAt(-1)); },
        [&] { array.Add(4, INT_MAX); }, // the capacity would wrap
    };
    int number = 0;
    for (auto const &call : calls) {
        EXPECT_TRUE(throws_invalid_argument(call)) << "call " << number++;
        ASSERT_EQ(array, make_array<int>({ 1, 2, 3 }));
    }
    array.RemoveAt(3, 0);
    array.InsertAt(100, 0, 0); // nothing to insert
    array.Add(4);              // the rule that failed is forgotten
    EXPECT_EQ(array, make_array<int>({ 1, 2, 3, 4 }));
    EXPECT_LT(array.GetCapacity(), 20);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they abort
TEST(Array, ThrowsWhenMemoryIsExhausted)
{
    CXArray<std::array<char, 1 << 16>> array;
    EXPECT_THROW(array.SetSize(INT_MAX), CXMemoryException *);
    XDeleteThreadException();
    EXPECT_EQ(array.GetCapacity(), 0);
    array.Add({});
    EXPECT_EQ(array.GetSize(), 1);
}
#endif

// Runs an operation on { 1 .. 6 } with a failure at each of its steps in turn.
template <class T> void fail_everywhere(bool strong, std::function<void(CXArray<T> &)> const &run)
{
    for (bool const full : { true, false }) {
        for (int step = 0;; ++step) {
            auto array = make_array<T>({ 1, 2, 3, 4, 5, 6 });
            if (full)
                array.FreeExtra();
            int const capacity = array.GetCapacity();
            s_steps_left = step;
            try {
                run(array);
                s_steps_left = INT_MAX;
                break;
            } catch (StepFailure const &) {
            }
            ASSERT_EQ(array.GetSize(), 6);
            ASSERT_EQ(s_alive, array.GetCapacity()) << "leaked or destroyed twice";
            ASSERT_EQ(array.GetCapacity(), capacity);
            if (strong) {
                ASSERT_EQ(array, make_array<T>({ 1, 2, 3, 4, 5, 6 })) << "step " << step;
            }
        }
        ASSERT_EQ(s_alive, 0);
    }
}

template <class T> class ThrowingArray : public testing::Test {
};
using ThrowingTypes = testing::Types<SafeMover, RiskyMover, Copier>;
TYPED_TEST_SUITE(ThrowingArray, ThrowingTypes);

TYPED_TEST(ThrowingArray, IsUnchangedWhenAnElementThrows)
{
    using T = TypeParam;
    using Array = CXArray<T>;
    std::function<void(Array &)> const operations[] = {
        [](Array &array) { array.SetSize(9, 3); },
        [](Array &array) { array.Add(T(7)); },
        [](Array &array) { array.Add(array[2]); },
        [](Array &array) { array.SetAtGrow(8, array[2]); },
        [](Array &array) { array.InsertAt(0, array[2]); },
        [](Array &array) { array.InsertAt(4, array[2], 3); },
        [](Array &array) { array.InsertAt(9, array[2], 2); },
        [](Array &array) { array.InsertAt(2, &array); },
        [](Array &array) { array.FreeExtra(); },
        [](Array &array) {
            array.Copy(make_array<T>({ 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 }));
        },
    };
    for (auto const &operation : operations)
        fail_everywhere<T>(true, operation);
    fail_everywhere<T>(false, [](Array &array) { array.RemoveAt(1, 2); });
}

TEST(ThrowingArray, MovesElementsThatMoveSafely)
{
    auto array = make_array<SafeMover>({ 1, 2, 3, 4, 5, 6 });
    s_copies = 0;
    array.SetSize(100, -2);
    array.RemoveAt(0);
    array.FreeExtra();
    array.Add(SafeMover(5));
    EXPECT_EQ(s_copies, 0);
    array.InsertAt(0, array[3]);
    EXPECT_LE(s_copies, 1);

    CXArray<std::unique_ptr<int>> owners; // cannot be copied at all
    for (int i = 0; i < 50; ++i)
        owners.Add(std::make_unique<int>(i));
    owners.RemoveAt(0, 10);
    owners.SetSize(60);
    EXPECT_EQ(*owners[0], 10);
    EXPECT_EQ(owners[59], nullptr);
}

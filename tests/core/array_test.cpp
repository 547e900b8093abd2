// SPDX-License-Identifier: MIT
#include "kortools/core/array.h"

#include "kortools/archive/archive.h"
#include "kortools/archive/exception.h"
#include "kortools/core/xstring.h"

#include <array>
#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

// --- Elements

// A value that counts its objects and its steps, and throws at a chosen step. Movable says whether
// it moves without throwing, moves with the risk of throwing, or only copies.
enum class Moving { Safe, Throwing, None };

struct StepFailure { };

int s_alive = 0;
int s_copies = 0;
int s_steps_left = INT_MAX; // steps until one throws

void count_step()
{
    if (--s_steps_left < 0) {
        s_steps_left = INT_MAX;
        throw StepFailure();
    }
}

template <Moving moving> class Tracked {
public:
    Tracked(int value = 0)
        : m_value(value)
    {
        count_step();
        ++s_alive;
    }
    Tracked(Tracked const &other)
        : Tracked(other.m_value)
    {
        ++s_copies;
    }
    Tracked(Tracked &&other) noexcept(moving == Moving::Safe) requires(moving != Moving::None)
        : m_value(std::exchange(other.m_value, -1))
    {
        if constexpr (moving == Moving::Throwing)
            count_step();
        ++s_alive;
    }
    Tracked &operator=(Tracked const &other)
    {
        count_step();
        ++s_copies;
        m_value = other.m_value;
        return *this;
    }
    Tracked &operator=(Tracked &&other) noexcept(moving == Moving::Safe) requires(
        moving != Moving::None)
    {
        if constexpr (moving == Moving::Throwing)
            count_step();
        m_value = std::exchange(other.m_value, -1);
        return *this;
    }
    ~Tracked() { --s_alive; }

    bool operator==(Tracked const &other) const { return m_value == other.m_value; }
    friend void PrintTo(Tracked const &element, std::ostream *out) { *out << element.m_value; }
    void Serialize(CXArchive &archive)
    {
        if (archive.IsLoading())
            archive >> m_value;
        else
            archive << m_value;
    }

private:
    int m_value;
};

using SafeMover = Tracked<Moving::Safe>;
using RiskyMover = Tracked<Moving::Throwing>;
using Copier = Tracked<Moving::None>;

template <class T> T make(int value)
{
    return T(value);
}
template <> CXTString<wchar_t> make<CXTString<wchar_t>>(int value)
{
    return value == 0 ? CXTString<wchar_t>() : CXTString<wchar_t>(std::to_wstring(value).c_str());
}
template <> CXArray<int> make<CXArray<int>>(int value)
{
    CXArray<int> array;
    if (value != 0)
        array.Add(value);
    return array;
}

template <class T> CXArray<T> make_array(std::initializer_list<int> values)
{
    CXArray<T> array;
    for (int const value : values)
        array.Add(make<T>(value));
    return array;
}

template <class T> std::vector<T> contents(CXArray<T> const &array)
{
    return { array.begin(), array.end() };
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

// --- The battery: each kind of element behaves as in a model.

template <class T> class ArrayOf : public testing::Test {
};
using ElementTypes
    = testing::Types<int, double, CXTString<wchar_t>, CXArray<int>, SafeMover, RiskyMover, Copier>;
TYPED_TEST_SUITE(ArrayOf, ElementTypes);

TYPED_TEST(ArrayOf, AgreesWithAVector)
{
    using T = TypeParam;
    for (unsigned int const seed : { 1U, 2U, 3U, 4U }) {
        std::mt19937 random(seed);
        auto const below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
        CXArray<T> array;
        std::vector<T> model;
        for (int step = 0; step < 400; ++step) {
            int const size = static_cast<int>(model.size());
            int const at = below(size + 1);
            int const count = below(5);
            int const removed = std::min(count, size - at);
            T const fresh = make<T>(1 + below(1000));
            T const &value = size > 0 && below(2) ? array[below(size)] : fresh; // often its own
            T const copy = value;
            switch (below(11)) {
            case 0:
                EXPECT_EQ(array.Add(value), size);
                model.push_back(copy);
                break;
            case 1:
                EXPECT_EQ(array.Add(make<T>(7), below(3)), size);
                model.push_back(make<T>(7));
                break;
            case 2:
            case 3:
                array.InsertAt(at, value, count);
                model.insert(model.begin() + at, std::size_t(count), copy);
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
            case 6:
                array.RemoveAt(at, removed);
                model.erase(model.begin() + at, model.begin() + at + removed);
                break;
            case 7:
                array.SetSize(at + count);
                model.resize(std::size_t(at + count));
                break;
            case 8:
                if (size < 200) {
                    auto const all = model;
                    array.InsertAt(at, &array);
                    model.insert(model.begin() + at, all.begin(), all.end());
                }
                break;
            case 9:
                array.FreeExtra();
                EXPECT_EQ(array.GetCapacity(), size);
                break;
            default: {
                CXArray<T> other(array);
                array.SetSize(count);
                array.Copy(other);
                array = *&array;
                other = std::move(array);
                EXPECT_TRUE(array.IsEmpty());
                array = std::move(other);
            }
            }
            ASSERT_EQ(contents(array), model) << "seed " << seed << " step " << step;
            ASSERT_GE(array.GetCapacity(), array.GetSize());
        }
    }
    EXPECT_EQ(s_alive, 0);
}

// Elements come and go at both ends, in turn at one end mostly, often as copies of those there are.
TYPED_TEST(ArrayOf, ServesAsAQueue)
{
    using T = TypeParam;
    for (int const phase_length : { 3, 40, 300 }) {
        std::mt19937 random(7);
        auto const below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
        CXArray<T> array;
        std::vector<T> model;
        for (int step = 0; step < 2400; ++step) {
            int const phase = step / phase_length % 4;
            int const size = static_cast<int>(model.size());
            int const capacity = array.GetCapacity();
            bool const in_front = below(8) != 0 ? phase % 2 == 0 : phase % 2 != 0;
            int const at = in_front ? std::min(below(3), size / 2) : size - size / 16;
            if (size < 2 || (below(8) != 0 ? phase < 2 : phase >= 2)) {
                T const fresh = make<T>(1 + step);
                T const &value = size > 0 && below(2) ? array[below(size)] : fresh;
                T const copy = value;
                array.InsertAt(at, value);
                model.insert(model.begin() + at, copy);
            } else {
                int const count = std::min(1 + below(3), size - at);
                array.RemoveAt(at, count);
                model.erase(model.begin() + at, model.begin() + at + count);
                ASSERT_EQ(array.GetCapacity(), capacity);
            }
            ASSERT_EQ(contents(array), model) << "phase " << phase << " step " << step;
            ASSERT_GE(array.GetCapacity(), array.GetSize());
        }
        array.FreeExtra();
        EXPECT_EQ(contents(array), model);
    }
    EXPECT_EQ(s_alive, 0);
}

// --- Sizes and growth

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
        array.SetSize(row.first);
        array.Add(1);
        EXPECT_EQ(array.GetCapacity(), row.second) << row.size << " by rule " << row.rule;
        array.SetSize(5 * row.second); // beyond what the rule gives
        EXPECT_EQ(array.GetCapacity(), 5 * row.second);
    }
}

TEST(Array, KeepsItsBlockUntilToldOtherwise)
{
    CXArray<int> array;
    array.SetSize(0, 50);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.Add(1), 0);
    int const *const block = array.GetData();
    array.SetSize(0);
    array.SetSize(50);
    array.RemoveAt(0, 50);
    array.Copy(nullptr);
    EXPECT_EQ(array.GetData(), block);
    EXPECT_EQ(array.GetCapacity(), 50);
    array.SetSize(0, 0);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.GetCapacity(), 0);
}

// What an array does to strings is what assignment does to default-constructed ones.
TEST(Array, GivesStringsTheBlocksThatAssignmentGives)
{
    CXArray<CXTString<char>> array;
    CXTString<char> moved = "123456789 123456789";
    CXTString<char> const copied = "12345678";
    array.Add(copied);
    array.Add(std::move(moved));
    array.InsertAt(0, CXTString<char>("abc"));
    array.SetSize(5);
    EXPECT_EQ(array[0].GetCapacity(), 16);
    EXPECT_EQ(array[1].GetCapacity(), 16);
    EXPECT_EQ(array[2].GetCapacity(), 64);
    EXPECT_STREQ(array[4].GetConstBuffer(), "");
    EXPECT_EQ(array[4].GetCapacity(), 16);
    EXPECT_STREQ(moved.GetConstBuffer(), "");
    EXPECT_EQ(moved.GetCapacity(), 16);
    EXPECT_EQ(sizeof array, sizeof(void *) * 2 + 4 * sizeof(int));
}

TEST(Array, EveryBadIndexOrSizeThrowsAndChangesNothing)
{
    auto array = make_array<int>({ 1, 2, 3 });
    CXArray<int> const &constant = array;
    std::function<void()> const calls[] = {
        [&] { array.SetSize(-1); },
        [&] { array.SetAtGrow(-1, 0); },
        [&] { array.SetAtGrow(INT_MAX, 0); },
        [&] { array.InsertAt(-1, 0); },
        [&] { array.InsertAt(0, 0, -1); },
        [&] { array.InsertAt(-1, &array); },
        [&] { array.InsertAt(3, 0, INT_MAX); },
        [&] { array.RemoveAt(3); },
        [&] { array.RemoveAt(-1); },
        [&] { array.RemoveAt(0, -1); },
        [&] { array.RemoveAt(4, 0); },
        [&] { array.RemoveAt(1, INT_MAX); },
        [&] { array.SetAt(3, 0); },
        [&] { array.ElementAt(INT_MIN); },
        [&] { array[-1] = 1; },
        [&] { static_cast<void>(constant[3]); },
        [&] { static_cast<void>(constant.GetAt(-1)); },
    };
    int number = 0;
    for (auto const &call : calls) {
        EXPECT_TRUE(throws_invalid_argument(call)) << "call " << number++;
        ASSERT_EQ(array, make_array<int>({ 1, 2, 3 }));
    }
    array.RemoveAt(0, 0);
    array.RemoveAt(3, 0);
    array.InsertAt(100, 0, 0); // nothing to insert
    array.RemoveAt(2, 1);
    EXPECT_EQ(array, make_array<int>({ 1, 2 }));
}

TEST(Array, ACapacityBeyondIntThrowsInsteadOfWrapping)
{
    auto array = make_array<int>({ 1, 2, 3, 4 });
    array.FreeExtra();
    EXPECT_TRUE(throws_invalid_argument([&] { array.Add(5, INT_MAX); }));
    EXPECT_EQ(array, make_array<int>({ 1, 2, 3, 4 }));
    array.Add(5); // the rule that failed is forgotten
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

// --- Elements that throw

// Runs an operation on { 1 .. 6 } with a failure at each of its steps in turn.
template <class T> void fail_everywhere(bool strong, std::function<void(CXArray<T> &)> const &run)
{
    for (bool const full : { true, false }) {
        for (int step = 0;; ++step) {
            auto array = make_array<T>({ 1, 2, 3, 4, 5, 6 });
            if (full)
                array.FreeExtra();
            int const capacity = array.GetCapacity();
            bool failed = false;
            s_steps_left = step;
            try {
                run(array);
            } catch (StepFailure const &) {
                failed = true;
            }
            s_steps_left = INT_MAX;
            if (!failed)
                break;
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
    constexpr bool strong = true;
    fail_everywhere<T>(strong, [](Array &array) { array.SetSize(9, 3); });
    fail_everywhere<T>(strong, [](Array &array) { array.Add(T(7)); });
    fail_everywhere<T>(strong, [](Array &array) { array.Add(array[2]); });
    fail_everywhere<T>(strong, [](Array &array) { array.SetAtGrow(8, array[2]); });
    fail_everywhere<T>(strong, [](Array &array) { array.InsertAt(0, array[2]); });
    fail_everywhere<T>(strong, [](Array &array) { array.InsertAt(4, array[2], 3); });
    fail_everywhere<T>(strong, [](Array &array) { array.InsertAt(9, array[2], 2); });
    fail_everywhere<T>(strong, [](Array &array) { array.InsertAt(2, &array); });
    fail_everywhere<T>(strong, [](Array &array) { array.FreeExtra(); });
    fail_everywhere<T>(strong, [](Array &array) {
        auto const longer = make_array<T>({ 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 });
        array.Copy(longer);
    });
    fail_everywhere<T>(!strong, [](Array &array) { array.RemoveAt(1, 2); });
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

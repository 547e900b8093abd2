// SPDX-License-Identifier: MIT
// Construction, conversion from and to what callers have, growth, buffers, comparison.
#include "kortools/core/xstring.h"
#include "tests/core/xstring_support.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace {

template <class T> class XString : public testing::Test {
};
TYPED_TEST_SUITE(XString, BothWidths, WidthNames);

// The platform's string class as far as strings know it.
template <class T> class PlatformText {
public:
    explicit PlatformText(std::basic_string<T> text)
        : m_text(std::move(text))
    {
    }
    operator T const *() const { return m_text.c_str(); }
    int GetLength() const { return static_cast<int>(m_text.size()); }

private:
    std::basic_string<T> m_text;
};

template <class T> using OtherWidth = kortools::core::other_char_t<T>;

} // namespace

TYPED_TEST(XString, GrowsFromTheBlockThereIs)
{
    using T = TypeParam;
    struct {
        int length;
        long long built; // capacity of a new string of that length
        long long grown; // of a default-constructed one that is set to it
    } const cases[] = { { 0, 16, 16 }, { 7, 16, 16 }, { 8, 64, 16 }, { 15, 64, 16 }, { 16, 64, 64 },
        { 31, 64, 64 }, { 32, 65, 65 }, { 33, 67, 67 }, { 500, 1001, 1001 } };
    for (auto const &each : cases) {
        std::basic_string<T> const model(static_cast<std::size_t>(each.length), T('x'));
        CXTString<T> const built = model.c_str();
        EXPECT_EQ(built.GetCapacity(), each.built) << each.length;
        EXPECT_EQ(CXTString<T>(T('x'), each.length).GetCapacity(), each.built) << each.length;
        CXTString<T> const converted = CXTString<OtherWidth<T>>(built);
        EXPECT_EQ(converted, built);
        EXPECT_EQ(converted.GetCapacity(), each.built) << each.length;

        CXTString<T> grown;
        grown = built;
        EXPECT_EQ(grown.GetCapacity(), each.grown) << each.length;
        EXPECT_EQ(grown, model);
    }
    CXTString<T> appended;
    for (int length = 1; length <= 200; ++length) {
        appended += T('y');
        long long const expected = length < 16 ? 16 : length < 64 ? 64 : length < 129 ? 129 : 259;
        ASSERT_EQ(appended.GetCapacity(), expected) << length;
        ASSERT_EQ(appended, std::basic_string<T>(std::size_t(length), T('y')));
    }
}

TYPED_TEST(XString, IsMadeFromEverythingThatHoldsText)
{
    using T = TypeParam;
    using O = OtherWidth<T>;
    auto const own = lit<T>("text");
    auto const other = lit<O>("text");
    auto const *const bytes = reinterpret_cast<unsigned char const *>("text");
    CXTString<T> const expected(own.c_str());

    auto const check = [&](auto const &source) {
        CXTString<T> const constructed = source;
        CXTString<T> assigned(T('z'), 40);
        assigned = source;
        CXTString<T> appended = lit<T>("some ");
        appended += source;
        EXPECT_EQ(constructed, expected);
        EXPECT_EQ(assigned, expected);
        EXPECT_EQ(appended, lit<T>("some text"));
    };
    check(own.c_str());
    check(other.c_str());
    check(bytes);
    check(expected);
    check(CXTString<O>(other.c_str()));
    check(PlatformText<T>(own));
    check(PlatformText<O>(other));
    check(std::basic_string_view<T>(own));
    check(std::basic_string_view<O>(other));
    EXPECT_EQ(CXTString<T>(own.c_str(), 3), lit<T>("tex"));
    EXPECT_EQ(CXTString<T>(own.c_str(), -1), lit<T>(""));
    EXPECT_EQ(CXTString<T>(T('t'), -1), lit<T>(""));
    // Classes that know their length keep their zeros, in both widths.
    auto const with_zero = lit<T>("a\0b");
    CXTString<T> const long_zero = PlatformText<T>(with_zero);
    EXPECT_EQ(long_zero.GetLength(), 3);
    EXPECT_EQ(CXTString<T>(CXTString<O>(long_zero)), with_zero);
}

TYPED_TEST(XString, MayBeItsOwnArgument)
{
    using T = TypeParam;
    for (int const length : { 5, 15, 40 }) { // with and without room for the result
        std::basic_string<T> model;
        for (int i = 0; i < length; ++i)
            model += static_cast<T>('a' + i);
        auto const check = [&](auto const &change, std::basic_string<T> const &expected) {
            CXTString<T> text = model;
            change(text);
            EXPECT_EQ(text, expected);
        };
        check([](auto &text) { text += text; }, model + model);
        check([](auto &text) { text += text.GetAtPtr(3); }, model + model.substr(3));
        check([](auto &text) { text = text.GetAtPtr(2); }, model.substr(2));
        check([](auto &text) { text = text[1]; }, model.substr(1, 1));
        check([](auto &text) { text.Copy(text.GetAtPtr(1), 3); }, model.substr(1, 3));
        check([](auto &text) { text = std::as_const(text); }, model);
        check([](auto &text) { text = static_cast<CXTString<T> &&>(text); }, model);
    }
}

TYPED_TEST(XString, LeavesAValidEmptyStringWhenMovedFrom)
{
    using T = TypeParam;
    CXTString<T> source(T('m'), 100);
    T const *const block = source;
    CXTString<T> target = std::move(source);
    EXPECT_TRUE(source.IsEmpty() && source.GetCapacity() == 16);
    source = T('n');
    source = std::move(target);
    EXPECT_EQ(source.GetConstBuffer(), block);
    EXPECT_TRUE(target.IsEmpty() && target.GetCapacity() == 16); // the block that was swapped in
    static_assert(std::is_nothrow_move_constructible_v<CXTString<T>>);
    static_assert(std::is_nothrow_move_assignable_v<CXTString<T>>);
    static_assert(sizeof(CXTString<T>) == sizeof(void *) + 2 * sizeof(long long));
}

TYPED_TEST(XString, SharesItsBuffer)
{
    using T = TypeParam;
    CXTString<T> text = lit<T>("abc");
    T *const buffer = text.GetBuffer(10);
    EXPECT_EQ(text.GetLength(), 10);
    buffer[3] = T('d');
    buffer[4] = T();
    text.ReleaseBuffer();
    EXPECT_EQ(text, lit<T>("abcd"));
    EXPECT_EQ(text.GetBuffer(2), text.GetBuffer());
    EXPECT_EQ(text.GetLength(), 4);
    text.GetBufferSetLength(2);
    EXPECT_EQ(text, lit<T>("ab"));
    text.GetBufferSetLength(-3);
    EXPECT_TRUE(text.IsEmpty());
    text.ReleaseBuffer(1000);
    EXPECT_EQ(text.GetLength(), text.GetCapacity() - 1);
    text.Copy(lit<T>("a\0b").c_str(), 3);
    EXPECT_EQ(text, lit<T>("a\0b"));
    text.Copy(lit<T>("xyz").c_str(), 0);
    EXPECT_TRUE(text.IsEmpty());

    T *const block = text.DetachBuffer();
    EXPECT_EQ(text.GetConstBuffer(), nullptr);
    EXPECT_FALSE(CXTString<T>() < text || CXTString<T>() <= text || CXTString<T>(T('z')) >= text);
    std::free(block);
    text = T('a');
    EXPECT_EQ(text, lit<T>("a"));
}

TYPED_TEST(XString, ReadsZeroAndWritesNothingOutsideTheText)
{
    using T = TypeParam;
    CXTString<T> text = lit<T>("aa");
    text.SetAt(1, T('b'));
    EXPECT_TRUE(text.GetAt(1) == T('b') && text[std::size_t(1)] == T('b') && text['\1'] == T('b'));
    EXPECT_TRUE(text[std::size_t(1) << 32] == T() && text[-1LL] == T());
    for (int const index : { -1, 2, 3, INT_MIN, INT_MAX }) {
        text.SetAt(index, T('z'));
        EXPECT_TRUE(text.GetAt(index) == T() && text[index] == T() && *text.GetAtPtr(index) == T());
        EXPECT_EQ(text, lit<T>("ab")) << index;
    }
}

TYPED_TEST(XString, OrdersByUnsignedUnitsAndByLength)
{
    using T = TypeParam;
    std::basic_string<T> const high(1, static_cast<T>(0xE9));
    std::vector<std::basic_string<T>> const sorted = { lit<T>(""), lit<T>("\0"), lit<T>("a"),
        lit<T>("a\0"), lit<T>("a\0b"), lit<T>("aa"), lit<T>("b"), lit<T>("b") + high, high,
        std::basic_string<T>(70, high[0]), std::basic_string<T>(71, high[0]) };
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        for (std::size_t j = 0; j < sorted.size(); ++j) {
            CXTString<T> const a = sorted[i];
            CXTString<T> const b = sorted[j];
            int const order = a.Compare(b);
            ASSERT_EQ((order > 0) - (order < 0), (i > j) - (i < j)) << i << j;
            ASSERT_TRUE((a == b) == (i == j) && (a != b) == (i != j) && (a < b) == (i < j)
                && (a <= b) == (i <= j) && (a > b) == (i > j) && (a >= b) == (i >= j))
                << i << ' ' << j;
        }
    }
    for (std::size_t const length : { 1, 3, 5, 17, 33, 67, 300, 1100, 2100 }) {
        CXTString<T> const base(T('m'), static_cast<int>(length));
        for (std::size_t at = 0; at < length; at += 1 + length / 70) {
            CXTString<T> lower = base;
            lower.SetAt(static_cast<int>(length) - 1, T('z')); // does not count
            lower.SetAt(static_cast<int>(at), T('l'));
            ASSERT_TRUE(lower < base && base > lower && lower != base) << length << ' ' << at;
        }
    }
}

TEST(XStringWide, OrdersCodePointsByTheirSurrogates)
{
    // By UTF-16 unit; and never equal to other text.
    CXTString<wchar_t> const pair = std::wstring { wchar_t(0xD83D), wchar_t(0xDE00) };
    CXTString<wchar_t> const point = L"\U0001F600";
    EXPECT_TRUE(CXTString<wchar_t>(L"\xD83D") < point && point < CXTString<wchar_t>(L"\xD83E"));
    EXPECT_LT(point, CXTString<wchar_t>(L"\xFFFF"));
    EXPECT_EQ(pair == point, sizeof(wchar_t) == 2);
    EXPECT_EQ(pair.Compare(point) == 0, pair == point);
}

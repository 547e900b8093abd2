// SPDX-License-Identifier: MIT
// Editing, against models that remove and insert one piece after the other.
#include "kortools/archive/exception.h"
#include "kortools/core/xstring.h"
#include "tests/core/xstring_support.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

template <class T> using Std = std::basic_string<T>;

// The described Replace, step by step, with nothing but the library's Find.
template <class T>
int model_replace(Std<T> &text, Std<T> const &old, Std<T> const &replacement, int count, int limit)
{
    int replaced = 0;
    int position = 0;
    while (replaced != count) {
        int const found = CXTString<T>(text).Find(old.c_str(), position);
        if (found < 0 || found >= limit)
            break;
        text.erase(static_cast<std::size_t>(found), old.size());
        text.insert(static_cast<std::size_t>(found), replacement);
        position = found + static_cast<int>(replacement.size());
        ++replaced;
    }
    return replaced;
}

template <class T> int model_remove(Std<T> &text, Std<T> const &unwanted, bool no_case, int count)
{
    int removed = 0;
    int position = 0;
    while (removed != count) {
        position = CXTString<T>(text).Find(unwanted.c_str(), position, no_case);
        if (position < 0)
            break;
        text.erase(static_cast<std::size_t>(position), unwanted.size());
        ++removed;
    }
    return removed;
}

long long capacity_after(long long capacity, int length)
{
    return length < capacity ? capacity : std::max(2LL * length + 1, length < 8 ? 16LL : 64LL);
}

template <class T> class XStringEdit : public testing::Test {
};
TYPED_TEST_SUITE(XStringEdit, BothWidths, WidthNames);

} // namespace

TYPED_TEST(XStringEdit, ReplacesAndRemovesAsStepByStep)
{
    using T = TypeParam;
    std::mt19937 random(1);
    for (int step = 0; step < 20000; ++step) {
        Std<T> text = random_text<T>(random, step % 100 ? 40 : 2000);
        for (T &ch : text)
            ch = static_cast<T>(random() % 8 ? ch : ch - 32);
        Std<T> const old = random_text<T>(random, 4);
        Std<T> const replacement = random_text<T>(random, 6);
        bool const no_case = random() % 2;
        int const count = static_cast<int>(random() % 9) - 1;
        int const limit = random() % 2 ? INT_MAX : static_cast<int>(random() % 60) - 5;
        auto const trace = testing::Message()
            << testing::PrintToString(text) << '|' << testing::PrintToString(old) << '|'
            << testing::PrintToString(replacement) << '|' << no_case << '|' << count << '|'
            << limit;
        auto const check = [&](auto const &edit, auto const &model_edit) {
            Std<T> model = text;
            CXTString<T> string = text;
            long long const capacity = string.GetCapacity();
            ASSERT_EQ(edit(string), model_edit(model)) << trace;
            ASSERT_EQ(string, model) << trace;
            ASSERT_EQ(string.GetCapacity(), capacity_after(capacity, string.GetLength())) << trace;
        };
        check([&](auto &s) { return s.Replace(old.c_str(), replacement.c_str(), count, limit); },
            [&](auto &m) { return model_replace(m, old, replacement, count, limit); });
        check([&](auto &s) { return s.Replace(T('a'), T('b'), count, limit); },
            [&](auto &m) { return model_replace(m, lit<T>("a"), lit<T>("b"), count, limit); });
        check([&](auto &s) { return s.Remove(old.c_str(), no_case, count); },
            [&](auto &m) { return model_remove(m, old, no_case, count); });
        check([&](auto &s) { return s.Remove(T('a'), count); },
            [&](auto &m) { return model_remove(m, lit<T>("a"), false, count); });
    }
    CXTString<T> text = lit<T>("aabb");
    EXPECT_EQ(text.Replace(nullptr, T('a') + text) + text.Replace(text, nullptr), 0);
    EXPECT_EQ(text.Remove(nullptr), 0);
    EXPECT_EQ(text, lit<T>("aabb"));
    EXPECT_EQ(text.Remove(lit<T>("ab").c_str()), 1); // what joins up is not searched again
    EXPECT_EQ(text, lit<T>("ab"));
}

TYPED_TEST(XStringEdit, EditsWithItsOwnText)
{
    using T = TypeParam;
    for (int const length : { 6, 30 }) { // with and without room
        Std<T> model;
        for (int i = 0; i < length; ++i)
            model += static_cast<T>('a' + i);
        for (int from = 0; from <= length; ++from) {
            Std<T> const tail = model.substr(static_cast<std::size_t>(from));
            Std<T> const head = model.substr(0, static_cast<std::size_t>(from));
            for (int at = 0; at <= length; ++at) {
                CXTString<T> text = model;
                text.Insert(at, text.GetAtPtr(from));
                ASSERT_EQ(text, Std<T>(model).insert(static_cast<std::size_t>(at), tail)) << from;
            }
            CXTString<T> text = model;
            text.Replace(lit<T>("b").c_str(), text.GetAtPtr(from));
            ASSERT_EQ(text, Std<T>(model).replace(1, 1, tail)) << from;
            text = model;
            text.Replace(text.GetAtPtr(from), lit<T>("-").c_str());
            ASSERT_EQ(text, head + (from < length ? lit<T>("-") : lit<T>("")));
            text = model;
            ASSERT_EQ(text.Remove(text.GetAtPtr(from)), from < length);
            ASSERT_EQ(text, head);
        }
    }
    CXTString<T> text = lit<T>("ba-abc-ab");
    EXPECT_EQ(text.Trim(text.GetAtPtr(7)), lit<T>("-abc-"));
}

TYPED_TEST(XStringEdit, ChangesCaseOrderAndEnds)
{
    using T = TypeParam;
    CXTString<T> text = lit<T>("aB-cD");
    EXPECT_EQ(text.MakeUpper(2), lit<T>("aB-CD"));
    EXPECT_EQ(text.MakeLower(), lit<T>("ab-cd"));
    EXPECT_EQ(text.MakeUpper(-4).MakeLower(5), lit<T>("AB-CD"));
    EXPECT_EQ(text.MakeReverse(), lit<T>("DC-BA"));

    CXTString<T> const padded = lit<T>("\t\r\n \v\fa b\f \v\n\r\t");
    EXPECT_EQ(CXTString<T>(padded).TrimLeft(), lit<T>("a b\f \v\n\r\t"));
    EXPECT_EQ(CXTString<T>(padded).TrimRight(), lit<T>("\t\r\n \v\fa b"));
    EXPECT_EQ(CXTString<T>(lit<T>("  ")).Trim(), lit<T>(""));
    CXTString<T> const xs = lit<T>("xyaxy");
    CXTString<T> const yx = lit<T>("yx");
    EXPECT_EQ(CXTString<T>(xs).Trim(yx), lit<T>("a"));
    EXPECT_EQ(CXTString<T>(xs).TrimLeft(yx).TrimRight(T('y')), lit<T>("ax"));
    EXPECT_EQ(CXTString<T>(xs).TrimRight(yx).TrimLeft(T('x')).Trim(T('y')), lit<T>("a"));
    EXPECT_EQ(CXTString<T>(lit<T>(" x ")).Trim(static_cast<T const *>(nullptr)), lit<T>(" x "));
}

TEST(XStringEditWidths, TrimWhatIsSpaceInTheirWidth)
{
    EXPECT_EQ(CXTString<wchar_t>(L"\u00A0\u2003\u3000x\u0085\u2029").Trim(), L"x");
    EXPECT_EQ(CXTString<wchar_t>(L"\u200Bx\uFEFF").Trim(), L"\u200Bx\uFEFF");
    EXPECT_EQ(CXTString<char>("\xA0x\x85").Trim(), "\xA0x\x85"); // parts of UTF-8 characters
}

TYPED_TEST(XStringEdit, RefusesLengthsBeyondInt)
{
    using T = TypeParam;
    CXTString<T> text(T('a'), 50000);
    CXTCharArray<T> &characters = text;
    CXTString<T> const before = text;
    auto const expect_refusal = [&](auto const &action) {
        EXPECT_THROW(action(), CXMemoryException *);
        XDeleteThreadException();
        EXPECT_EQ(text, before);
        EXPECT_EQ(text.GetCapacity(), 100001);
    };
    expect_refusal([&] { characters.SetLength(INT_MAX + 1LL); });
    expect_refusal([&] { characters.SetLength(LLONG_MAX); });
    expect_refusal([&] { text += std::basic_string_view<T>(text.begin(), std::size_t(INT_MAX)); });
    expect_refusal([&] { text.Replace(lit<T>("a").c_str(), before); });
}

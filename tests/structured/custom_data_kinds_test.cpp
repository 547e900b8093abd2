// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"
#include "tests/structured/custom_data_support.h"
#include "tests/structured/process_zone.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>
using namespace kor_test;

namespace {

using Data = CCustomData;

// Gets entry 1 of one container and sets it in another; false when the getter does not find it.
using Copy = std::function<bool(Data const &, Data &)>;

template <class T, class Set> Copy number(bool (Data::*get)(unsigned, T &, T) const, Set set)
{
    return [=](Data const &from, Data &to) {
        T value {};
        bool const found = (from.*get)(1, value, 3);
        if (found)
            (to.*set)(1, value);
        EXPECT_TRUE(found || value == T { 3 }) << "the default";
        return found;
    };
}

template <class T, class Get, class Set> Copy object(Get get, Set set)
{
    return [=](Data const &from, Data &to) {
        T value;
        bool const found = (from.*get)(1, value, T());
        if (found)
            (to.*set)(1, value);
        return found;
    };
}

template <class List, class Get, class Set> Copy list(Get get, Set set)
{
    return [=](Data const &from, Data &to) {
        List values;
        bool const found = (from.*get)(1, values) == 2;
        (to.*set)(1, values);
        return found;
    };
}

struct Kind {
    unsigned kind;
    std::string bytes;
    Copy copy;
};

std::vector<Kind> make_kinds()
{
    auto const u32 = [](unsigned value) { return ArchiveEncoder().u32(value).bytes(); };
    auto const u64 = [](unsigned long long value) { return ArchiveEncoder().u64(value).bytes(); };
    std::string fields; // of 2024-03-15 14:05:09, a Friday
    for (unsigned const field : { 9, 5, 14, 15, 2, 124, 5, 74, 0 })
        fields += u32(field);
    using Text = CXTString<wchar_t>;
    return { { four(" INT"), u32(-2U), number<int>(&Data::GetInt, &Data::SetInt) },
        { four("UINT"), u32(0xFEDCBA98), number<unsigned>(&Data::GetUInt, &Data::SetUInt) },
        { four("LONG"), u32(-3U), number<long>(&Data::GetLong, &Data::SetLong) },
        { four("ULON"), u32(~0U), number<unsigned long>(&Data::GetULong, &Data::SetULong) },
        { four("LLON"), u64(-4ULL), number<long long>(&Data::GetLongInt, &Data::SetLongInt) },
        { four("ULLO"), u64(~0ULL),
            number<unsigned long long>(&Data::GetULongInt, &Data::SetULongInt) },
        { four("ULLO"), u64(5), number<std::size_t>(&Data::GetSizet, &Data::SetSizet) },
        { four("CHAR"), "\x80", number<char>(&Data::GetChar, &Data::SetChar) },
        { four("UCHR"), "\xFF", number<unsigned char>(&Data::GetUChar, &Data::SetUChar) },
        { four("BOOL"), u32(256), number<int>(&Data::GetBool, &Data::SetBool) },
        { four("FLOA"), u32(0x3FC00000), number<float>(&Data::GetFloat, &Data::SetFloat) },
        { four("DOUB"), u64(1ULL << 63), number<double>(&Data::GetDouble, &Data::SetDouble) },
        { four("PTR6"), u64(0x12345678),
            [](Data const &from, Data &to) {
                void *const value = from.GetPtr(1);
                if (value)
                    to.SetPtr(1, value);
                return value != nullptr;
            } },
        { four(" BIN"), { "a\0b", 3 },
            [](Data const &from, Data &to) {
                char bytes[3];
                bool const found = from.GetBinary(1, bytes, 3);
                if (found)
                    to.SetBinary(1, bytes, 3);
                return found;
            } },
        { four("ARRA"), u32(2) + u32(1) + u32(-1U),
            [](Data const &from, Data &to) {
                unsigned count = 7;
                void const *const values = from.GetArray(1, count, 4);
                return values && to.SetArray(1, values, count, 4);
            } },
        { four("UNIC"), { "\x3D\xD8\x00\xDE\x7A\0\0\0", 8 },
            object<Text>(&Data::GetString, &Data::SetStringW) },
        { four("ANSI"), { "\xE9\0", 2 },
            object<CXTString<char>>(&Data::GetStringA, &Data::SetStringA) },
        { four("USTR"), { "a\0\0\0\0\0", 6 },
            list<Data::StringArray>(&Data::GetStringArray, &Data::SetStringArray) },
        { four("USTR"), { "\0\0\xAC\x20\0\0", 6 },
            list<CStringList>(&Data::GetStringList, &Data::SetStringList) },
        { four("TIMX"), u64(-5ULL), object<CXTime>(&Data::GetXTime, &Data::SetXTime) },
        { four("TIME"), fields, object<CXTime>(&Data::GetUTCTime, &Data::SetUTCTime) },
        { four("CDA2"), encode_entry(5, four("UCHR"), "\xC8"), [](Data const &from, Data &to) {
             Data inner;
             bool const found = from.GetCustomData(1, inner);
             if (found)
                 to.AddToCustomData(1, inner, 1);
             return found;
         } } };
}

} // namespace

TEST(CustomDataKinds, AreWrittenBySettersAndFoundByTheirOwnGettersOnly)
{
    ProcessZone const zone("UTC0");
    std::vector<Kind> const kinds = make_kinds();
    for (Kind const &row : kinds) {
        OpenCustomData data;
        data.set(1, row.kind, row.bytes);
        for (Kind const &other : kinds) {
            Data copied;
            EXPECT_EQ(other.copy(data, copied), other.kind == row.kind)
                << &row - kinds.data() << " by " << &other - kinds.data();
            EXPECT_EQ(block_of(copied), other.kind == row.kind ? block_of(data) : "");
        }
    }
    OpenCustomData data;
    bool value = false;
    data.SetBool(1, 256);
    EXPECT_TRUE(data.GetBool(1, value) && value);
    EXPECT_TRUE(data.SetArray(1, nullptr, 2, 1)); // of zeros
    EXPECT_EQ(block_of(data), encode_entry(1, four("ARRA"), { "\2\0\0\0\0\0", 6 }));
}

TEST(CustomData, TextsWithoutTheirZerosAreCut)
{
    struct {
        unsigned kind;
        std::string_view bytes;
        CStringList texts;
    } const rows[] = { { four("UNIC"), { "a\0b\0c", 5 }, string_list({ L"ab" }) },
        { four("UNIC"), "a", string_list({ L"" }) },
        { four("UTF8"), "\xC3\xA9\xE2\x82", string_list({ L"\u00E9\uFFFD" }) },
        { four("UTF8"), { "ok\0no", 5 }, string_list({ L"ok" }) },
        { four("ANSI"), "ab", string_list({ L"ab" }) },
        { four("USTR"), { "a\0\0\0b\0", 6 }, string_list({ L"a", L"b" }) },
        { four("USTR"), { "a\0\0\0b", 5 }, string_list({ L"a", L"" }) },
        { four("ASTR"), { "a\0\0b", 4 }, string_list({ L"a", L"", L"b" }) },
        { four("U8TR"), { "\xC3\xA9\0x\0", 5 }, string_list({ L"\u00E9", L"x" }) } };
    for (auto const &row : rows) {
        OpenCustomData data;
        CStringList texts;
        CXTString<wchar_t> text;
        data.set(1, row.kind, row.bytes);
        CXTString<char> narrow;
        bool const is_narrow = data.GetStringA(1, narrow);
        EXPECT_EQ(is_narrow, row.kind == four("ANSI") || row.kind == four("UTF8"));
        if (data.GetString(1, text))
            texts.AddTail(text);
        else if (is_narrow)
            texts.AddTail(CXTString<wchar_t>(narrow));
        else
            EXPECT_EQ(data.GetStringList(1, texts), row.texts.GetCount());
        EXPECT_EQ(texts, row.texts) << &row - rows;
    }
}

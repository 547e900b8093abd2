// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"
#include "tests/structured/custom_data_support.h"

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <utility>

using namespace kor_test;

namespace {

struct KindCase {
    char const *name;
    std::function<void(CCustomData &)> set;
    unsigned kind;
    std::string bytes;
};

std::vector<KindCase> kind_cases()
{
    using Data = CCustomData;
    auto const u32 = [](unsigned value) { return ArchiveEncoder().u32(value).bytes(); };
    auto const u64 = [](unsigned long long value) { return ArchiveEncoder().u64(value).bytes(); };
    auto const *const ptr = reinterpret_cast<void const *>(std::uintptr_t { 0x12345678 });
    int const three[] = { 1, -1, 7 };
    CCustomData inner;
    inner.SetUChar(5, 200);
    CCustomData::StringArray texts;
    texts.Add(L"a");
    texts.Add(L"");
    auto const times
        = ArchiveEncoder().u32(9).u32(5).u32(14).u32(15).u32(2).u32(124).u32(5).u32(74);
    return {
        { "int", [](Data &d) { d.SetInt(1, -2); }, four(" INT"), u32(-2U) },
        { "uint", [](Data &d) { d.SetUInt(1, 0xFEDCBA98); }, four("UINT"), u32(0xFEDCBA98) },
        { "long", [](Data &d) { d.SetLong(1, -3); }, four("LONG"), u32(-3U) },
        { "ulong", [](Data &d) { d.SetULong(1, 0xFFFFFFFF); }, four("ULON"), u32(0xFFFFFFFF) },
        { "longint", [](Data &d) { d.SetLongInt(1, -4); }, four("LLON"), u64(-4ULL) },
        { "ulongint", [](Data &d) { d.SetULongInt(1, ~0ULL); }, four("ULLO"), u64(~0ULL) },
        { "sizet", [](Data &d) { d.SetSizet(1, ~0ULL); }, four("ULLO"), u64(~0ULL) },
        { "char", [](Data &d) { d.SetChar(1, '\x80'); }, four("CHAR"), "\x80" },
        { "uchar", [](Data &d) { d.SetUChar(1, 0xFF); }, four("UCHR"), "\xFF" },
        { "bool", [](Data &d) { d.SetBool(1, 256); }, four("BOOL"), u32(256) },
        { "float", [](Data &d) { d.SetFloat(1, 1.5F); }, four("FLOA"), u32(0x3FC00000) },
        { "double", [](Data &d) { d.SetDouble(1, -0.0); }, four("DOUB"), u64(1ULL << 63) },
        { "ptr", [=](Data &d) { d.SetPtr(1, ptr); }, four("PTR6"), u64(0x12345678) },
        { "binary", [](Data &d) { d.SetBinary(1, "a\0b", 3); }, four(" BIN"),
            std::string("a\0b", 3) },
        { "array", [=](Data &d) { d.SetArray(1, three, 3, 4); }, four("ARRA"),
            u32(3) + u32(1) + u32(-1U) + u32(7) },
        { "zeros", [](Data &d) { d.SetArray(1, nullptr, 2, 1); }, four("ARRA"),
            u32(2) + std::string(2, '\0') },
        { "wide", [](Data &d) { d.SetStringW(1, L"\U0001F600z"); }, four("UNIC"),
            std::string("\x3D\xD8\x00\xDE\x7A\0\0\0", 8) },
        { "narrow", [](Data &d) { d.SetStringA(1, "\xE9"); }, four("ANSI"),
            std::string("\xE9\0", 2) },
        { "texts", [=](Data &d) { d.SetStringArray(1, texts); }, four("USTR"),
            std::string("a\0\0\0\0\0", 6) },
        { "list",
            [](Data &d) {
                d.SetStringList(1, string_list({ L"", L"\u20AC" }));
            },
            four("USTR"), std::string("\0\0\xAC\x20\0\0", 6) },
        { "time", [](Data &d) { d.SetXTime(1, CXTime(-5LL)); }, four("TIMX"), u64(-5ULL) },
        { "utc", [](Data &d) { d.SetUTCTime(1, CXTime(1710511509LL)); }, four("TIME"),
            times.bytes() + u32(0) },
        { "nested", [=](Data &d) { d.AddToCustomData(1, inner, 1); }, four("CDA2"),
            encode_entry(5, four("UCHR"), "\xC8") },
    };
}

} // namespace

TEST(CustomDataKinds, EachSetterWritesItsBytes)
{
    for (KindCase const &row : kind_cases()) {
        CCustomData data;
        data.SetBinary(1, "0123456789", 10); // another size: the value moves to the end
        data.SetChar(2, 1);
        row.set(data);
        EXPECT_EQ(block_of(data),
            encode_entry(2, four("CHAR"), "\1") //
                + encode_entry(1, row.kind, row.bytes))
            << row.name;
        EXPECT_EQ(data.GetDataKindOf(1), row.kind) << row.name;
        EXPECT_EQ(data.GetDataSize(1), row.bytes.size()) << row.name;
    }
}

// Which getters find a value of which kind?
TEST(CustomDataKinds, AreFoundByTheirOwnGettersOnly)
{
    using Data = CCustomData;
    auto const number = [](auto expected, auto get) {
        return [=](Data const &data) {
            auto const other = static_cast<decltype(expected)>(!expected);
            auto value = expected;
            bool const found = (data.*get)(1, value, other);
            EXPECT_EQ(value, found ? expected : other);
            return found;
        };
    };
    bool (Data::*const get_bool)(unsigned, bool &, bool) const = &Data::GetBool;
    bool (Data::*const get_bool_number)(unsigned, int &, int) const = &Data::GetBool;
    std::pair<char const *, std::function<bool(Data const &)>> const getters[] = {
        { "int", number(-2, &Data::GetInt) },
        { "uint", number(0xFEDCBA98U, &Data::GetUInt) },
        { "long", number(-3L, &Data::GetLong) },
        { "ulong", number(0xFFFFFFFFUL, &Data::GetULong) },
        { "longint", number(-4LL, &Data::GetLongInt) },
        { "ulongint sizet", number(~0ULL, &Data::GetULongInt) },
        { "ulongint sizet", number(~std::size_t {}, &Data::GetSizet) },
        { "char", number('\x80', &Data::GetChar) },
        { "uchar", number(static_cast<unsigned char>(0xFF), &Data::GetUChar) },
        { "bool", number(true, get_bool) },
        { "bool", number(256, get_bool_number) },
        { "float", number(1.5F, &Data::GetFloat) },
        { "double", number(-0.0, &Data::GetDouble) },
        { "ptr", [](Data const &d) { return d.GetPtr(1) != nullptr; } },
        { "binary",
            [](Data const &d) {
                char bytes[4] = {};
                return d.GetBinary(1, bytes, 3) && bytes[3] == 0;
            } },
        { "array zeros",
            [](Data const &d) {
                unsigned count = 0;
                return d.GetArray(1, count, 4) || d.GetArray(1, count, 1);
            } },
        { "wide",
            [](Data const &d) {
                CXTString<wchar_t> text;
                bool const found = d.GetString(1, text, L"default");
                EXPECT_EQ(text, found ? L"\U0001F600z" : L"default");
                return found;
            } },
        { "narrow",
            [](Data const &d) {
                CXTString<char> text;
                bool const found = d.GetStringA(1, text, "default");
                EXPECT_EQ(text, found ? "\xE9" : "default");
                return found;
            } },
        { "texts list",
            [](Data const &d) {
                CCustomData::StringArray texts;
                CStringList list = string_list({ L"before" });
                int const count = d.GetStringArray(1, texts);
                EXPECT_EQ(count, d.GetStringList(1, list));
                EXPECT_EQ(count, list.GetCount());
                return count == 2;
            } },
        { "time",
            [](Data const &d) {
                CXTime time(3LL);
                return d.GetXTime(1, time, CXTime(8LL)) && time == CXTime(-5LL);
            } },
        { "utc",
            [](Data const &d) {
                CXTime time(3LL);
                bool const found = d.GetUTCTime(1, time, CXTime(8LL));
                EXPECT_EQ(time, found ? CXTime(2024, 3, 15, 14, 5, 9, 0) : CXTime(8LL));
                return found;
            } },
        { "nested",
            [](Data const &d) {
                CCustomData inner;
                unsigned char value;
                return d.GetCustomData(1, inner) && inner.GetUChar(5, value) && value == 200;
            } },
    };
    for (KindCase const &row : kind_cases()) {
        CCustomData data;
        row.set(data);
        for (auto const &[names, get] : getters) {
            std::string const all = " " + std::string(names) + " ";
            bool const expected = all.find(" " + std::string(row.name) + " ") != std::string::npos;
            EXPECT_EQ(get(data), expected) << row.name << " by the getter of " << names;
        }
    }
}

TEST(CustomData, TextsWithoutTheirZerosAreCut)
{
    OpenCustomData data;
    CXTString<wchar_t> text;
    CXTString<char> narrow;
    data.set(1, four("UNIC"), std::string_view("a\0b\0c", 5));
    EXPECT_TRUE(data.GetString(1, text));
    EXPECT_EQ(text, L"ab");
    data.set(1, four("UNIC"), "a");
    EXPECT_TRUE(data.GetString(1, text));
    EXPECT_EQ(text, L"");
    data.set(1, four("UTF8"), "\xC3\xA9\xE2\x82"); // the last sequence is cut, too
    EXPECT_TRUE(data.GetString(1, text));
    EXPECT_EQ(text, L"\u00E9\uFFFD");
    data.set(1, four("UTF8"), std::string_view("ok\0no", 5));
    EXPECT_TRUE(data.GetStringA(1, narrow));
    EXPECT_EQ(narrow, "ok");
    data.set(1, four("ANSI"), "ab");
    EXPECT_TRUE(data.GetStringA(1, narrow));
    EXPECT_EQ(narrow, "ab");

    struct {
        unsigned kind;
        std::string_view bytes;
        CStringList texts;
    } const lists[] = {
        { four("USTR"), { "a\0\0\0b\0", 6 }, string_list({ L"a", L"b" }) },
        { four("USTR"), { "a\0\0\0b", 5 }, string_list({ L"a", L"" }) },
        { four("ASTR"), { "a\0\0b", 4 }, string_list({ L"a", L"", L"b" }) },
        { four("U8TR"), { "\xC3\xA9\0x\0", 5 }, string_list({ L"\u00E9", L"x" }) },
    };
    for (auto const &row : lists) {
        CStringList texts;
        data.set(1, row.kind, row.bytes);
        EXPECT_EQ(data.GetStringList(1, texts), row.texts.GetCount());
        EXPECT_EQ(texts, row.texts);
    }
}

// SPDX-License-Identifier: MIT
// Arrays through the archive.
#include "kortools/core/array.h"

#include "tests/archive/archive_support.h"
#include "tests/support/oracle.h"

#include <gtest/gtest.h>
#include <string>

using kor_test::bytes_from_hex;
using kor_test::cause_of;
using kor_test::load_bytes;
using kor_test::store_bytes;
using kor_test::StreamFile;

namespace {

template <class T> CXArray<T> make_array(std::initializer_list<T> values)
{
    CXArray<T> array;
    for (T const &value : values)
        array.Add(value);
    return array;
}

template <class T> std::string store(CXArray<T> array)
{
    return store_bytes([&](CXArchive &archive) { array.Serialize(archive); });
}

// Loads into an array that is in use, from a file that tells its length and from one that does not.
template <class T> void expect_round_trip(CXArray<T> const &array)
{
    std::string const bytes = store(array);
    for (bool const tells_length : { true, false }) {
        StreamFile file(bytes, 7, tells_length);
        CXArchive archive(&file, CXArchive::load);
        CXArray<T> loaded;
        loaded.SetSize(5);
        loaded.Serialize(archive);
        EXPECT_EQ(loaded, array);
    }
}

} // namespace

TEST(ArrayArchive, WritesTheCountAndTheElements)
{
    EXPECT_EQ(store(make_array<int>({ 1, -2 })), bytes_from_hex("020001000000feffffff"));
    EXPECT_EQ(store(make_array<wchar_t>({ L'a', L'\x20AC' })), bytes_from_hex("02006100ac20"));
    EXPECT_EQ(store(make_array<CXTString<wchar_t>>({ L"a", L"" })),
        bytes_from_hex("0200fffeff016100fffeff00"));
    EXPECT_EQ(store(make_array<CXTString<char>>({ "ab" })), bytes_from_hex("0100026162"));
    CXArray<unsigned char> large;
    large.SetSize(0xFFFF);
    EXPECT_EQ(store(large).substr(0, 7), bytes_from_hex("ffffffff000000"));
}

TEST(ArrayArchive, ReadsWhatItWrote)
{
    expect_round_trip(CXArray<int>());
    expect_round_trip(make_array<bool>({ true, false, true }));
    expect_round_trip(make_array<double>({ 0.5, -1e300 }));
    expect_round_trip(make_array<CXTString<char>>({ "", "narrow" }));
    expect_round_trip(make_array<CXArray<int>>({ make_array({ 1, 2 }), make_array<int>({}) }));
    CXArray<long long> numbers;
    CXArray<CXTString<wchar_t>> texts;
    for (int i = 0; i < 70000; ++i) { // beyond every step of loading, and a count of six bytes
        numbers.Add(i * 1'000'000'007LL, -2);
        texts.Add(std::to_wstring(i).c_str(), -2);
    }
    expect_round_trip(numbers);
    expect_round_trip(texts);
}

TEST(ArrayArchive, ACutFileGivesTheElementsBeforeTheCut)
{
    auto const texts = make_array<CXTString<wchar_t>>({ L"one", L"two", L"", L"four" });
    std::string const bytes = store(texts);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        load_bytes(bytes.substr(0, length), [&](CXArchive &archive) {
            CXArray<CXTString<wchar_t>> loaded;
            EXPECT_EQ(cause_of([&] { loaded.Serialize(archive); }), CXArchiveException::endOfFile);
            ASSERT_LT(loaded.GetSize(), 4);
            for (int i = 0; i < loaded.GetSize(); ++i)
                EXPECT_EQ(loaded[i], texts[i]);
        });
    }
}

TEST(ArrayArchive, FalseCountsAreRefusedBeforeTheyCostMemory)
{
    auto const expect_refusal = [&](auto array, char const *count, bool tells_length) {
        StreamFile file(bytes_from_hex(count) + std::string(20, '\0'), 7, tells_length);
        CXArchive archive(&file, CXArchive::load);
        bool refused = false;
        try {
            refused = cause_of([&] { array.Serialize(archive); }) == CXArchiveException::endOfFile;
        } catch (CXInvalidArgException *exception) { // more than an array can hold
            refused = !tells_length;
            exception->Delete();
        }
        EXPECT_TRUE(refused) << count;
        EXPECT_LT(array.GetCapacity(), 100'000);
    };
    for (char const *const count :
        { "ffffffffff7f", "ffff00000080", "ffffffffffffffffffffffffff7f" }) {
        for (bool const tells_length : { true, false }) {
            expect_refusal(CXArray<int>(), count, tells_length);
            expect_refusal(CXArray<CXTString<wchar_t>>(), count, tells_length);
            expect_refusal(CXArray<CXArray<int>>(), count, tells_length);
        }
    }
}

// SPDX-License-Identifier: MIT
#include "kortools/core/hash_methods.h"

#include "kortools/core/ex_lc_string.h"
#include "kortools/core/hash_tags.h"
#include "kortools/core/xstring.h"
#include "tests/core/hash_model.h"
#include "tests/support/oracle.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace {

// Computed apart from this library, over UTF-16 units.
struct TextHash {
    char16_t const *text;
    unsigned hash, slot_of_97;
};
TextHash const text_hashes[] = {
    { u"", 0x811C9DC5, 64 },
    { u"a", 0xE40C292C, 83 },
    { u"ab", 0x3C2BA6CC, 61 },
    { u"ba", 0x4D2505CA, 73 },
    { u"\u00E9t\u00E9", 0xA39E1B7B, 20 },
    { u"\u65E5\u672C\u8A9E", 0x8EBFA676, 94 },
    { u"\U0001F600", 0x35158A86, 24 },
    { u"a\U0001F600b", 0xF7D8CA85, 75 },
    { u"\U0010FFFF", 0xF02784A3, 10 },
    { u"\xD83D", 0x37822568, 88 },
    { u"\xDE00\xD83D", 0xCB31C4B8, 87 },
    { u"C:\\scenes\\Cube.obj", 0x89CDA5F5, 48 },
};

TEST(HashUTF16, GivesTheRecordedHashesOnEverySystem)
{
    for (TextHash const &row : text_hashes) {
        std::u16string const units = row.text;
        std::wstring const wide = kor_test::to_wide(units);
        CXTString<wchar_t> const key(wide.c_str());
        EXPECT_EQ(HashUTF16(row.text), row.hash);
        EXPECT_EQ(HashUTF16(wide.data(), wide.size()), row.hash);
        EXPECT_EQ(HashUTF16(key), row.hash);
        EXPECT_EQ(CHashMethods<CXTString<wchar_t>>::GetHash(key, 97), row.slot_of_97);
    }
}

TEST(HashUTF16, TakesBytesAsUnsignedUnitsAndNullAsEmpty)
{
    EXPECT_EQ(HashUTF16("ab"), 0x3C2BA6CCU);
    EXPECT_EQ(HashUTF16(CXTString<char>("\xE9t\xE9")), 0xA39E1B7BU);
    EXPECT_EQ(HashUTF16(static_cast<wchar_t const *>(nullptr)), 0x811C9DC5U);
    EXPECT_EQ(HashUTF16(static_cast<char const *>(nullptr), 0), 0x811C9DC5U);
    EXPECT_EQ(HashUTF16(L"a\0b", 3), HashUTF16(u"a\0b", 3));
}

// `long` and size_t have 32 bits here and 64 there.
TEST(HashMethods, HashASmallNumberAlikeInEveryWidth)
{
    for (int const key : { 0, 1, -1, 77, INT32_MAX, INT32_MIN }) {
        EXPECT_EQ(CHashMethods<long>::GetFullHash(key), CHashMethods<int>::GetFullHash(key));
        EXPECT_EQ(CHashMethods<long long>::GetFullHash(key), CHashMethods<int>::GetFullHash(key));
    }
    for (unsigned const key : { 0U, 1U, 0x80000000U, 0xFFFFFFFFU }) {
        EXPECT_EQ(CHashMethods<unsigned long>::GetFullHash(key), key << 4);
        EXPECT_EQ(CHashMethods<unsigned long long>::GetFullHash(key), key << 4);
    }
    using Signed = CHashMethods<long long>;
    EXPECT_EQ(Signed::GetFullHash(2147483648LL), 0xF1BBCDCBU);
    EXPECT_EQ(Signed::GetFullHash(-2147483649LL), 0x9B4B863AU);
    EXPECT_EQ(Signed::GetFullHash(1099511627781LL), 0x779B97A4U);
    EXPECT_EQ(Signed::GetFullHash(INT64_MAX), 0xA3E3991EU);
    EXPECT_EQ(Signed::GetFullHash(INT64_MIN), 0xFA53E0A8U);
    EXPECT_EQ(CHashMethods<unsigned long long>::GetFullHash(4294967296ULL), 0xE3779B97U);
    EXPECT_EQ(CHashMethods<unsigned long long>::GetFullHash(UINT64_MAX), 0xA98FB866U);
}

// Of n keys thrown at n slots, 63 percent of the slots are hit.
TEST(HashMethods, SpreadAddressesAndLongNumbers)
{
    for (unsigned long long const stride : { 1ULL, 8ULL, 16ULL, 64ULL, 1ULL << 28, 1ULL << 32,
             1ULL << 48, 0x100000001ULL, 10000000000ULL }) {
        std::set<unsigned> slots, pointer_slots;
        for (unsigned i = 0; i < 8009; ++i) {
            auto *const pointer = reinterpret_cast<char *>(0x7F0000001000 + i * stride % (1 << 30));
            slots.insert(CHashMethods<unsigned long long>::GetHash(i * stride, 8009));
            pointer_slots.insert(CHashMethods<char *>::GetHash(pointer, 8009));
        }
        EXPECT_GT(slots.size(), 4400U) << stride;
        EXPECT_TRUE(stride > 64 || pointer_slots.size() > 4400U) << stride;
    }
}

// --- Parts of the table

TEST(HashTags, AnswerAlikeWithAndWithoutVectors)
{
    using namespace kortools::core;
    kor_test::Random random(1);
    for (int i = 0; i < 1000; ++i) {
        Tag tags[window_size];
        for (Tag &tag : tags)
            tag = static_cast<Tag>(random(4) ? 0x80 + random(4) : random(2));
        for (unsigned const tag : { 0U, 1U, 0x80U, 0x83U })
            ASSERT_EQ(TagWindow(tags).GetEqualTo(tag), PortableTagWindow(tags).GetEqualTo(tag));
        ASSERT_EQ(TagWindow(tags).GetLive(), PortableTagWindow(tags).GetLive());
    }
}

TEST(HashTags, FindTheRemainderWithoutDividing)
{
    kor_test::Random random(2);
    for (unsigned const size : { 5U, 7U, 23U, 97U, 389U, 65537U, 12749003U }) {
        kortools::core::HashTags tags;
        ASSERT_TRUE(tags.Allocate(size));
        for (int i = 0; i < 10000; ++i) {
            unsigned const multiple = random(0xFFFFFFFF) / size * size;
            ASSERT_EQ(tags.GetHome(multiple), 0U);
            ASSERT_EQ(tags.GetHome(multiple - 1), (multiple - 1) % size);
        }
        ASSERT_EQ(tags.GetHome(0xFFFFFFFF), 0xFFFFFFFF % size);
    }
}

} // namespace

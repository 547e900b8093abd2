// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"

#include "tests/structured/custom_data_support.h"

#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <thread>

using namespace kor_test;

// --- Against the model

namespace {

unsigned below(std::mt19937 &random, unsigned limit)
{
    return static_cast<unsigned>(random()) % limit;
}

struct Shape {
    unsigned ids;      // different identifiers
    unsigned max_size; // bytes of a value
    int steps;
};

std::string random_bytes(std::mt19937 &random, unsigned max_size)
{
    std::string bytes(below(random, max_size + 1), ' ');
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

class CustomDataSteps : public testing::TestWithParam<Shape> {
protected:
    void step()
    {
        unsigned const id = below(m_random, GetParam().ids);
        unsigned const other = below(m_random, GetParam().ids);
        switch (m_random() % 16) {
        default: {
            unsigned const kind = below(m_random, 5);
            std::string const bytes = random_bytes(m_random, GetParam().max_size);
            m_data.set(id, kind, bytes);
            m_model.set(id, kind, bytes);
            break;
        }
        case 0:
        case 1:
        case 2:
            m_data.RemoveCustom(id);
            m_model.remove(id);
            break;
        case 3:
            ASSERT_EQ(m_data.ChangeID(id, other), m_model.change(id, other));
            break;
        case 4:
            move_block();
            break;
        case 5:
            store_entry_in_another(id, other);
            break;
        case 6:
            m_data.FreeExtra();
            break;
        }
    }

    void move_block()
    {
        unsigned size = 0;
        void *const block = m_data.Detach(size);
        ASSERT_FALSE(m_data.HasData());
        if (m_random() % 2 == 0) {
            ASSERT_TRUE(m_data.Attach(block, size));
        } else {
            ASSERT_TRUE(m_data.SetData(block, size));
            CCustomData::Free(block);
        }
    }

    // The source of an entry may lie in the block that it goes to.
    void store_entry_in_another(unsigned from, unsigned to)
    {
        unsigned size = 0;
        void const *const bytes = m_data.GetCustomPtr(from, size);
        ModelEntry const *const entry = m_model.find(from);
        ASSERT_EQ(bytes != nullptr, entry != nullptr);
        if (!entry)
            return;
        m_model.set(to, CCustomData::kindBinary, std::string(entry->bytes));
        m_data.SetBinary(to, bytes, size);
    }

    void compare_lookups()
    {
        ASSERT_EQ(m_data.GetIDCount(), m_model.entries.size());
        for (unsigned i = 0; i < m_model.entries.size(); ++i) {
            ModelEntry const &entry = m_model.entries[i];
            unsigned kind = 0, size = 0;
            ASSERT_EQ(m_data.GetIDByIndex(i, kind), entry.id);
            ASSERT_EQ(kind, entry.kind);
            auto const *const bytes
                = static_cast<char const *>(m_data.GetCustomPtr(entry.id, size));
            ASSERT_EQ(std::string_view(bytes, size), entry.bytes);
        }
        for (unsigned id = 0; id < GetParam().ids; ++id)
            ASSERT_EQ(m_data.HasData(id), m_model.find(id) != nullptr);
    }

    std::mt19937 m_random { 7 };
    OpenCustomData m_data;
    CustomDataModel m_model;
};

} // namespace

TEST_P(CustomDataSteps, AgreeWithTheModel)
{
    for (int i = 0; i < GetParam().steps; ++i) {
        step();
        ASSERT_FALSE(HasFatalFailure()) << "step " << i;
        if (GetParam().ids < 100 || i % 8 == 0) {
            ASSERT_EQ(block_of(m_data), m_model.block()) << "step " << i;
        }
        if (i % 64 == 0)
            compare_lookups();
    }
    compare_lookups();
    unsigned kind = 1;
    EXPECT_EQ(m_data.GetIDByIndex(m_data.GetIDCount(), kind), CCustomData::no_id);
    EXPECT_EQ(kind, 0U);
}
INSTANTIATE_TEST_SUITE_P(Shapes, CustomDataSteps,
    testing::Values(Shape { 3, 4, 3000 }, Shape { 40, 40, 3000 }, Shape { 1000, 12, 4000 }));

// --- Rules

TEST(CustomData, NothingOfSizeZeroAndNoArrayBeyondABlockIsStored)
{
    CCustomData data;
    data.SetInt(1, 1);
    EXPECT_FALSE(data.SetArray(1, nullptr, 0xFFFFFFFF, 0xFFFFFFFF));
    EXPECT_FALSE(data.SetArray(1, nullptr, 0x40000000, 4)); // 2^32
    EXPECT_FALSE(data.SetArray(1, nullptr, 0xFFFFFFF0, 1)); // with its header
    EXPECT_EQ(data.GetDataKindOf(1), four(" INT"));
    EXPECT_FALSE(data.SetArray(2, "", 1, 0xFFFFFFD0)); // fits alone, but not beside the other
    EXPECT_EQ(data.GetIDCount(), 1U);
}

TEST(CustomData, ChecksumsAreComparableWithStoredOnes)
{
    CCustomData data;
    data.SetBinary(1, "a", 1);
    data.SetBinary(2, "\xFF\x01\x80\x7F", 4);
    EXPECT_EQ(data.GetChecksum(0), 0x811C9DC5U);
    EXPECT_EQ(data.GetChecksum(1), 0xE40C292CU);
    EXPECT_EQ(data.GetChecksum(2), 0xD171272AU);
}

// --- Several containers

TEST(CustomData, CopiesReplaceOrMerge)
{
    CCustomData source, target;
    source.SetInt(1, 10);
    source.SetChar(2, 'b');
    target.SetChar(2, 'x');
    target.SetInt(3, 30);
    target.SetChar(1, 'x');
    CCustomData merged(target);
    merged.Copy(&source, CCustomData::copyMerge);
    merged.Copy(nullptr, CCustomData::copyReplace);
    EXPECT_EQ(block_of(merged),
        encode_entry(2, four("CHAR"), "b") //
            + encode_entry(3, four(" INT"), { "\x1E\0\0\0", 4 })
            + encode_entry(1, four(" INT"), { "\x0A\0\0\0", 4 }));
    target.Copy(&source, CCustomData::copyReplace);
    EXPECT_EQ(block_of(target), block_of(source));
    EXPECT_TRUE(target.CopyID(&merged, 3) && target.HasData(3));
    EXPECT_FALSE(source.HasData(3)); // nothing is shared
    EXPECT_FALSE(target.CopyID(&merged, 77) || target.CopyID(nullptr, 3));
    std::unique_ptr<CCustomData> const copy(target.Copy());
    EXPECT_EQ(block_of(*copy), block_of(target));
}

TEST(CustomData, MayBeItsOwnArgument)
{
    OpenCustomData data;
    data.SetString(1, L"some text that is long enough to move");
    data.SetInt(2, 5);
    std::string const before = block_of(data);
    data.Copy(&data, CCustomData::copyMerge);
    data = static_cast<OpenCustomData const &>(data);
    EXPECT_TRUE(data.CopyID(&data, 1) && data.IsEqual(data));
    data.SetCustomData(3, data);
    EXPECT_EQ(block_of(data), before + encode_entry(3, four("CDA2"), before));
    EXPECT_TRUE(data.GetCustomData(3, data));
    unsigned long long size = 0;
    void *const stream = data.SerializeToData(size);
    data.SetBinary(4, stream, static_cast<unsigned>(size));
    CCustomData::Free(stream);
    unsigned entrySize = 0;
    void const *const own = data.GetCustomPtr(4, entrySize);
    EXPECT_TRUE(data.SerializeFromData(own, entrySize));
    EXPECT_EQ(block_of(data), before);
}

TEST(CustomData, IsUsedByThreadsAtTheSameTime)
{
    CCustomData a, b;
    std::atomic<int> failures { 0 };
    auto const work = [&](CCustomData &own, CCustomData &other, unsigned seed) {
        std::mt19937 random(seed);
        for (int i = 0; i < 1500; ++i) {
            unsigned const id = below(random, 20);
            own.SetBinary(id, "0123456789", below(random, 11));
            other.CopyID(&own, id);
            own.Copy(&other, 2 + below(random, 2));
            own.IsEqual(other);
            if (i % 50 == 0)
                own.SetCustomData(30, other);
            CXSingleLock const lock(own.GetThreadLock(), true);
            own.SetInt(25, i);
            int value = 0;
            failures += !own.GetInt(25, value) || value != i;
            own.RemoveCustom(30);
        }
    };
    std::thread threads[] = { std::thread([&] { work(a, b, 1); }),
        std::thread([&] { work(b, a, 2); }), std::thread([&] { work(a, b, 3); }) };
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0);
}

// --- Hostile blocks

TEST(CustomData, BlocksThatAreNoEntriesAreRefused)
{
    std::string const good = encode_entry(1, four(" INT"), "abcd") + encode_entry(2, 0, "x");
    std::string wrapping = good;
    wrapping.replace(4, 4, "\xF4\xFF\xFF\xFF"); // back to the entry itself
    for (std::string const &block : { good + "x", wrapping, good.substr(0, 15) }) {
        CCustomData data;
        data.SetInt(1, 1);
        EXPECT_FALSE(set_block(data, block) || data.HasData());
        data.SetInt(1, 1);
        void *const copy = CCustomData::Alloc(static_cast<unsigned>(block.size()));
        std::memcpy(copy, block.data(), block.size());
        EXPECT_FALSE(data.Attach(copy, static_cast<unsigned>(block.size())) || data.HasData());
        CCustomData::Free(copy);
        OpenCustomData outer;
        outer.set(1, four("CDA2"), block);
        data.SetInt(1, 1);
        EXPECT_FALSE(outer.GetCustomData(1, data) || data.HasData());
    }
    CCustomData data;
    EXPECT_FALSE(data.SetData(nullptr, 4) || data.Attach(nullptr, 4));
    EXPECT_TRUE(data.SetData(nullptr, 0));
}

// The library writes no such block, but has to live with one.
TEST(CustomData, OfEntriesWithOneIdentifierTheLastIsFoundAndAllAreRemoved)
{
    std::string const block = encode_entry(1, 7, "first") + encode_entry(2, 7, "")
        + encode_entry(1, 7, "last") + encode_entry(3, 7, "3");
    CCustomData data;
    ASSERT_TRUE(set_block(data, block));
    EXPECT_TRUE(data.GetIDCount() == 4 && data.GetDataSize(1) == 4);
    EXPECT_TRUE(data.HasData(2)); // of size 0
    CCustomData copy(data);
    EXPECT_EQ(block_of(copy), block);
    data.RemoveCustom(3);
    data.SetBinary(1, "new", 3);
    EXPECT_EQ(block_of(data), encode_entry(2, 7, "") + encode_entry(1, four(" BIN"), "new"));
    EXPECT_TRUE(copy.ChangeID(2, 1));
    EXPECT_EQ(block_of(copy), encode_entry(1, 7, "") + encode_entry(3, 7, "3"));
}

TEST(CustomData, DumpsItsEntriesAsText)
{
    CCustomData data, inner;
    inner.SetString(four("NAME"), L"cube");
    inner.SetStringList(four("LIST"), string_list({ L"a", L"b" }));
    data.SetInt(four("STEP"), -3);
    data.SetCustomData(1, inner);
    data.SetBinary(four("BLOB"), "\1\xFF", 2);
    EXPECT_EQ(data.DumpCustomData(),
        L"STEP ( INT) : -3\n"
        L".... (CDA2) : Sub data\n"
        L"    NAME (UNIC) : \"cube\"\n"
        L"    LIST (USTR) : \"a\", \"b\"\n"
        L"BLOB ( BIN) : 2 bytes 01 FF\n");
}

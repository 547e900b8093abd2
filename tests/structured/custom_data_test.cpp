// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"

#include "kortools/data/custom_data_class.h"
#include "tests/structured/custom_data_support.h"

#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <thread>

using namespace kor_test;

// --- Against the model

namespace {

class Random {
public:
    explicit Random(unsigned seed)
        : m_engine(seed)
    {
    }
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_engine()) % limit; }

private:
    std::mt19937 m_engine;
};

struct Shape {
    unsigned ids;      // different identifiers
    unsigned max_size; // bytes of a value
    int steps;
};

std::string random_bytes(Random &random, unsigned max_size)
{
    std::string bytes(random.below(max_size + 1), ' ');
    for (char &byte : bytes)
        byte = static_cast<char>(random.below(256));
    return bytes;
}

class CustomDataSteps : public testing::TestWithParam<Shape> {
protected:
    void step()
    {
        unsigned const id = m_random.below(GetParam().ids);
        unsigned const other = m_random.below(GetParam().ids);
        switch (m_random.below(16)) {
        default: {
            unsigned const kind = m_random.below(5);
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
        if (m_random.below(2) == 0) {
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

    Random m_random { 7 };
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

TEST(CustomData, NothingOfSizeZeroIsStored)
{
    CCustomData data;
    std::function<void()> const setters[]
        = { [&] { data.SetBinary(1, "", 0); }, [&] { EXPECT_TRUE(data.SetArray(1, "", 0, 4)); },
              [&] { data.SetStringArray(1, CCustomData::StringArray()); },
              [&] { data.SetStringList(1, CStringList()); },
              [&] { data.SetCustomData(1, CCustomData()); } };
    for (auto const &set : setters) {
        data.SetInt(1, 1);
        set();
        EXPECT_FALSE(data.HasData());
        unsigned size = 1;
        EXPECT_EQ(data.GetData(size), nullptr);
        EXPECT_EQ(size, 0U);
    }
}

TEST(CustomData, ArraysThatNoBlockCanHoldAreRefused)
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

TEST(CustomData, TheTimeStampIsThatOfTheLastStructuralChange)
{
    CCustomData data;
    data.SetInt(1, 1);
    data.SetInt(2, 2);
    auto const wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(40)); };
    unsigned long long const before = data.GetTimeStamp();
    wait();
    data.SetUInt(1, 3); // the same size
    data.RemoveCustom(9);
    data.FreeExtra();
    EXPECT_EQ(data.GetTimeStamp(), before);
    data.SetChar(1, 3);
    unsigned long long const after = data.GetTimeStamp();
    EXPECT_GE(after, before + 20);
    EXPECT_LT(after, before + 60'000); // milliseconds
    wait();
    data.RemoveCustom(2);
    EXPECT_GT(data.GetTimeStamp(), after);
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
    target.SetChar(9, 9); // nothing is shared
    EXPECT_FALSE(source.HasData(9));
    EXPECT_TRUE(target.CopyID(&merged, 3));
    EXPECT_FALSE(target.CopyID(&merged, 77));
    EXPECT_FALSE(target.CopyID(nullptr, 3));
    EXPECT_TRUE(target.HasData(3));
    std::unique_ptr<CCustomData> const copy(target.Copy());
    EXPECT_EQ(block_of(*copy), block_of(target));
    *copy = CCustomData();
    EXPECT_FALSE(copy->HasData());
}

TEST(CustomData, EqualityIsThatOfTheEntries)
{
    CCustomData a, b;
    EXPECT_TRUE(a.IsEqual(b));
    a.SetInt(1, 1);
    EXPECT_FALSE(a.IsEqual(b));
    a.SetChar(2, 2);
    b.SetChar(2, 2);
    b.SetInt(1, 1);
    EXPECT_TRUE(a.IsEqual(b)); // in whatever order
    b.SetUInt(1, 1);
    EXPECT_FALSE(a.IsEqual(b));
    b.SetInt(1, 2);
    EXPECT_FALSE(a.IsEqual(b));
    b.SetInt(1, 1);
    b.ChangeID(2, 3);
    EXPECT_FALSE(a.IsEqual(b));
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
    EXPECT_EQ(block_of(data), before);

    data.SetCustomData(3, data);
    EXPECT_EQ(block_of(data), before + encode_entry(3, four("CDA2"), before));
    EXPECT_TRUE(data.GetCustomData(3, data));
    EXPECT_EQ(block_of(data), before);

    unsigned long long size = 0;
    void *const stream = data.SerializeToData(size);
    data.SetBinary(4, stream, static_cast<unsigned>(size));
    CCustomData::Free(stream);
    unsigned entrySize = 0;
    void const *const own = data.GetCustomPtr(4, entrySize);
    EXPECT_TRUE(data.SerializeFromData(own, entrySize));
    EXPECT_EQ(block_of(data), before);

    data.SetArray(5, data.GetCustomPtr(1, entrySize), 10, 2);
    unsigned count = 0;
    EXPECT_EQ(std::memcmp(data.GetArray(5, count, 2), data.GetCustomPtr(1, entrySize), 20), 0);
    unsigned blockSize = 0;
    auto *const block = static_cast<char *>(data.GetData(blockSize));
    std::string const last = block_of(data).substr(blockSize - 36);
    EXPECT_TRUE(data.SetData(block + blockSize - 36, 36));
    EXPECT_EQ(block_of(data), last);
    void *const same = data.GetData(blockSize);
    EXPECT_TRUE(data.Attach(same, blockSize));
    EXPECT_EQ(block_of(data), last);
}

namespace {

struct Grid : CCustomDataClass {
    int step = 0;
    void WriteToData(CCustomData &data) const override { data.SetInt(1, step); }
    bool ReadFromData(CCustomData const &data) override { return data.GetInt(1, step, -1); }
};

} // namespace

TEST(CustomData, KeepsObjectsOfClassesAsNestedContainers)
{
    Grid grid, read;
    grid.step = 12;
    CCustomData data;
    EXPECT_FALSE(data.GetCustomClass(7, read));
    data.SetCustomClass(7, grid);
    EXPECT_EQ(data.GetDataKindOf(7), four("CDA2"));
    EXPECT_TRUE(data.GetCustomClass(7, read));
    EXPECT_EQ(read.step, 12);
}

TEST(CustomData, IsUsedByThreadsAtTheSameTime)
{
    CCustomData a, b;
    std::atomic<int> failures { 0 };
    auto const work = [&](CCustomData &own, CCustomData &other, unsigned seed) {
        Random random(seed);
        for (int i = 0; i < 1500; ++i) {
            unsigned const id = random.below(20);
            own.SetBinary(id, "0123456789", random.below(11));
            other.CopyID(&own, id);
            own.Copy(&other, 2 + random.below(2));
            own.IsEqual(other);
            if (i % 50 == 0)
                own.SetCustomData(30, other);
            CXSingleLock const lock(own.GetThreadLock(), true);
            unsigned size = 0;
            own.SetInt(25, i);
            int value = 0;
            failures += !own.GetInt(25, value) || value != i || !own.GetData(size);
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
    std::string huge = good;
    huge.replace(4, 4, "\xFF\xFF\xFF\xFF");
    std::string wrapping = good;
    wrapping.replace(4, 4, "\xF4\xFF\xFF\xFF"); // back to the entry itself
    std::vector<std::string> bad = { huge, wrapping, good + "x" };
    for (std::size_t cut = 1; cut < good.size(); ++cut) {
        if (cut != 16)
            bad.push_back(good.substr(0, cut));
    }
    for (std::string const &block : bad) {
        CCustomData data;
        data.SetInt(1, 1);
        EXPECT_FALSE(set_block(data, block));
        EXPECT_FALSE(data.HasData());
        data.SetInt(1, 1);
        void *const copy = CCustomData::Alloc(static_cast<unsigned>(block.size()));
        std::memcpy(copy, block.data(), block.size());
        EXPECT_FALSE(data.Attach(copy, static_cast<unsigned>(block.size())));
        CCustomData::Free(copy);
        EXPECT_FALSE(data.HasData());

        OpenCustomData outer;
        outer.set(1, four("CDA2"), block);
        data.SetInt(1, 1);
        EXPECT_FALSE(outer.GetCustomData(1, data));
        EXPECT_FALSE(data.HasData());
    }
    CCustomData data;
    EXPECT_FALSE(data.SetData(nullptr, 4));
    EXPECT_FALSE(data.Attach(nullptr, 4));
    EXPECT_TRUE(data.SetData(nullptr, 0));
}

// The library writes no such block, but has to live with one.
TEST(CustomData, OfEntriesWithOneIdentifierTheLastIsFoundAndAllAreRemoved)
{
    std::string const block = encode_entry(1, 7, "first") + encode_entry(2, 7, "")
        + encode_entry(1, 7, "last") + encode_entry(3, 7, "3");
    CCustomData data;
    ASSERT_TRUE(set_block(data, block));
    EXPECT_EQ(data.GetIDCount(), 4U);
    EXPECT_EQ(data.GetDataSize(1), 4U);
    EXPECT_TRUE(data.HasData(2)); // of size 0
    EXPECT_EQ(block_of(CCustomData(data)), block);
    data.RemoveCustom(3);
    EXPECT_EQ(data.GetIDCount(), 3U);
    data.SetBinary(1, "new", 3);
    EXPECT_EQ(block_of(data), encode_entry(2, 7, "") + encode_entry(1, four(" BIN"), "new"));
    data.RemoveAll();
    ASSERT_TRUE(set_block(data, block));
    EXPECT_TRUE(data.ChangeID(2, 1));
    EXPECT_EQ(block_of(data), encode_entry(1, 7, "") + encode_entry(3, 7, "3"));
}

TEST(CustomData, DumpsItsEntriesAsText)
{
    CCustomData data, inner;
    inner.SetString(four("NAME"), L"cube");
    inner.SetStringList(four("LIST"), string_list({ L"a", L"b" }));
    data.SetInt(four("STEP"), -3);
    data.SetCustomData(1, inner);
    data.SetBinary(four("BLOB"), "\1\xFF", 2);
    data.SetUTCTime(four("DATE"), CXTime(1710511509LL));
    EXPECT_EQ(data.DumpCustomData(),
        L"STEP ( INT) : -3\n"
        L".... (CDA2) : Sub data\n"
        L"    NAME (UNIC) : \"cube\"\n"
        L"    LIST (USTR) : \"a\", \"b\"\n"
        L"BLOB ( BIN) : 2 bytes 01 FF\n"
        L"DATE (TIME) : 2024-03-15 14:05:09\n");
    EXPECT_EQ(CXTString<wchar_t>(inner.DumpCustomData(false, 1)).Left(8), L"    NAME");

    CCustomData deep;
    deep.SetChar(1, 1);
    for (int i = 0; i < 1000; ++i)
        deep.SetCustomData(1, CCustomData(deep));
    EXPECT_LT(deep.DumpCustomData().GetLength(), 10'000);
}

// SPDX-License-Identifier: MIT
#include "kortools/data/custom_data.h"
#include "kortools/platform/code_pages.h"
#include "tests/archive/archive_support.h"
#include "tests/structured/custom_data_support.h"

using namespace kor_test;
using namespace std::string_literals;

namespace {

std::string stream_of(CCustomData &data)
{
    return store_bytes([&](CXArchive &archive) { data.Serialize(archive); });
}

// none when it was read. The container has old contents before.
CXFileException::FileExceptionType read_stream(CXFile &&file, CCustomData &data)
{
    data.SetInt(99, 1);
    try {
        CXArchive archive(&file, CXArchive::load);
        data.Serialize(archive);
    } catch (CXFileException *exception) {
        EXPECT_EQ(XGetThreadException(), exception);
        EXPECT_FALSE(data.HasData());
        auto const cause = exception->GetCause();
        exception->Delete();
        return cause;
    }
    return CXFileException::none;
}

CXFileException::FileExceptionType read_stream(std::string_view bytes, CCustomData &data)
{
    auto const *const block = reinterpret_cast<unsigned char const *>(bytes.data());
    auto const cause = read_stream(CXMemFile(block, bytes.size()), data);
    CCustomData again;
    EXPECT_EQ(again.SerializeFromData(block, bytes.size()),
        cause == CXFileException::none || bytes.empty());
    EXPECT_EQ(block_of(again), block_of(data));
    return cause;
}

std::string present_stream(std::string_view block, unsigned entries, unsigned dataSize,
    unsigned legacyMode = 0, char const (&magic)[5] = "CUS5")
{
    ArchiveEncoder stream;
    stream.u32(four(magic)).u32(static_cast<unsigned>(block.size()) + 20).u32(1).u32(entries);
    return stream.u32(dataSize).u32(legacyMode).u32(0).raw(block).bytes();
}

std::string record(unsigned id, std::string_view data, unsigned more)
{
    ArchiveEncoder bytes;
    bytes.u32(id).u32(static_cast<unsigned>(data.size())).u32(more).raw(data);
    return bytes.raw("pad").bytes();
}

std::string old_stream(char const (&magic)[5], std::string_view records)
{
    return ArchiveEncoder()
        .u32(four(magic))
        .u32(static_cast<unsigned>(records.size()))
        .raw(records)
        .bytes();
}

} // namespace

// The example of docs/custom-data-format.md.
TEST(CustomDataStream, IsTheDocumentedExample)
{
    CCustomData data;
    data.SetInt(1, 7);
    data.SetString(four("NAME"), L"hi");
    std::string const expected("5SUC\x36\0\0\0"
                               "\1\0\0\0\2\0\0\0\x0A\0\0\0\0\0\0\0\0\0\0\0"
                               "\1\0\0\0\4\0\0\0TNI \7\0\0\0"
                               "EMAN\6\0\0\0CINUh\0i\0\0\0",
        62);
    EXPECT_EQ(stream_of(data), expected);
    CCustomData read;
    EXPECT_EQ(read_stream(expected, read), CXFileException::none);
    EXPECT_TRUE(read.IsEqual(data));
    unsigned long long size = 0;
    void *const block = data.SerializeToData(size);
    EXPECT_EQ(std::string_view(static_cast<char const *>(block), size), expected);
    EXPECT_TRUE(CCustomData::SerializeFromData(read, block, size));
    EXPECT_TRUE(read.IsEqual(data));
    CCustomData::Free(block);
}

TEST(CustomDataStream, OfAnEmptyContainerIsTwoWords)
{
    CCustomData data;
    std::string const empty("5SUC\0\0\0\0", 8);
    EXPECT_EQ(stream_of(data), empty);
    unsigned long long size = 1;
    EXPECT_EQ(data.SerializeToData(size), nullptr);
    EXPECT_EQ(size, 0U);
    for (std::string const &bytes :
        { empty, "TSUC\0\0\0\0"s, "USUC\0\0\0\0"s, present_stream("", 0, 0) }) {
        EXPECT_EQ(read_stream(bytes, data), CXFileException::none);
        EXPECT_FALSE(data.HasData());
    }
    data.SetInt(1, 1);
    EXPECT_TRUE(data.SerializeFromData(nullptr, 0));
    EXPECT_FALSE(data.HasData());
}

TEST(CustomDataStream, IsRefusedWhenItIsCutAnywhere)
{
    std::string const block = encode_entry(1, four(" INT"), "abcd") + encode_entry(2, 0, "x");
    std::string const records = record(1, "abcd", 1) + record(2, "x", 0);
    for (std::string const &stream :
        { present_stream(block, 2, 5), present_stream(block, 2, 5, 0, "CUS4"),
            old_stream("CUSU", records), old_stream("CUST", records) }) {
        for (std::size_t cut = 0; cut < stream.size(); ++cut) {
            CCustomData data;
            ASSERT_EQ(read_stream(std::string_view(stream).substr(0, cut), data),
                CXFileException::genericException)
                << stream.substr(0, 4) << ' ' << cut;
            // A pipe, which does not tell its length.
            ASSERT_EQ(read_stream(StreamFile(stream.substr(0, cut), 5, false), data),
                CXFileException::genericException);
        }
        CCustomData data;
        EXPECT_EQ(read_stream(StreamFile(stream, 5, false), data), CXFileException::none);
        EXPECT_EQ(data.GetIDCount(), 2U);
    }
}

TEST(CustomDataStream, LargerThanWhatAPipeIsTrustedWith)
{
    CCustomData data, read;
    data.SetArray(1, nullptr, 300'001, 1);
    EXPECT_EQ(read_stream(StreamFile(stream_of(data), 1000, false), read), CXFileException::none);
    EXPECT_TRUE(read.IsEqual(data));
}

TEST(CustomDataStream, IsRefusedWhenItMakesNoSense)
{
    std::string const block = encode_entry(1, four(" INT"), "abcd");
    std::string const good = present_stream(block, 1, 4);
    auto const with = [&](std::size_t at, unsigned value) {
        std::string bytes = good;
        return bytes.replace(at, 4, ArchiveEncoder().u32(value).bytes());
    };
    struct {
        char const *what;
        std::string stream;
    } const bad[] = { { "magic", with(0, four("CUS6")) }, { "total below the header", with(4, 19) },
        { "4 GB announced", with(4, 0xFFFFFFFF) }, { "total cuts the entry", with(4, 35) },
        { "version", with(8, 2) }, { "entry beyond the block", with(28 + 4, 5) },
        { "entry of 4 GB", with(28 + 4, 0xFFFFFFFF) },
        { "entry size that wraps", with(28 + 4, 0xFFFFFFF4) },
        { "old records of 4 GB", ArchiveEncoder().u32(four("CUST")).u32(0xFFFFFFFF).bytes() },
        { "record beyond the block", old_stream("CUST", record(1, "abcd", 0).substr(0, 15)) },
        { "record header cut", old_stream("CUST", record(1, "abcd", 1) + "1234567") },
        { "record missing", old_stream("CUST", record(1, "abcd", 1)) } };
    for (auto const &row : bad) {
        CCustomData data;
        EXPECT_EQ(read_stream(row.stream, data), CXFileException::genericException) << row.what;
        EXPECT_EQ(
            read_stream(StreamFile(row.stream, 7, false), data), CXFileException::genericException)
            << row.what;
    }
    CCustomData data; // counts are not needed, and not believed
    EXPECT_EQ(read_stream(with(12, 0xFFFFFFFF), data), CXFileException::none);
    EXPECT_EQ(stream_of(data), good);
    EXPECT_FALSE(data.SerializeFromData(nullptr, 8));
    EXPECT_FALSE(data.HasData());
}

// --- Old forms

TEST(OldCustomData, IsReadWhateverItsKinds)
{
    for (unsigned const mode : { 1U, 2U }) {
        std::string const records = record(1, "\7\0\0"s + '\0', 1) + record(2, "", 7)
            + record(3, "\1", 1) + record(1, "\x08\0\0"s + '\0', 0) + "left over";
        CCustomData data;
        std::string const stream
            = mode == 1 ? old_stream("CUSU", records) : old_stream("CUST", records);
        ASSERT_EQ(read_stream(stream, data), CXFileException::none);
        EXPECT_EQ(block_of(data),
            encode_entry(1, 0x20202020, { "\x08\0\0", 4 }) + encode_entry(3, 0x20202020, "\1"));
        unsigned number = 0;
        char small = 0;
        EXPECT_TRUE(data.GetUInt(1, number) && number == 8);
        EXPECT_TRUE(data.GetChar(3, small) && small == 1);
        EXPECT_FALSE(data.GetChar(1, small)); // the size still counts
        EXPECT_EQ(stream_of(data), present_stream(block_of(data), 2, 5, mode));
    }
}

TEST(OldCustomData, LastRecordMayLackItsPaddingOrItsBytes)
{
    std::string const records = record(1, "a", 1) + record(2, "b", 0);
    CCustomData data;
    for (std::size_t missing = 0; missing <= 3; ++missing) {
        std::string const cut = records.substr(0, records.size() - missing);
        EXPECT_EQ(read_stream(old_stream("CUST", cut), data), CXFileException::none);
        EXPECT_EQ(data.GetIDCount(), 2U) << missing;
    }
    std::string huge = record(1, "a", 1) + record(2, "b", 1);
    huge.replace(huge.size() - 12, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(read_stream(old_stream("CUST", huge), data), CXFileException::none);
    EXPECT_EQ(data.GetIDCount(), 1U);
}

TEST(OldCustomData, HasTextsAsWideAsItsStreams)
{
    ASSERT_TRUE(kortools::platform::set_ansi_code_page(1252));
    std::string const units("\xAC\x20\0\0", 4);
    for (std::string const &stream :
        { old_stream("CUSU", record(1, units, 1) + record(2, units + units, 0)),
            old_stream("CUST", record(1, "\x80\0"s, 1) + record(2, "\x80\0\x80"s, 0)) }) {
        CCustomData data;
        CXTString<wchar_t> text;
        CXTString<char> bytes;
        CCustomData::StringArray texts;
        read_stream(stream, data);
        EXPECT_TRUE(data.GetString(1, text) && text == L"\u20AC");
        EXPECT_TRUE(data.GetStringA(1, bytes) && bytes == "\x80");
        EXPECT_TRUE(data.GetStringArray(2, texts) == 2 && texts[1] == L"\u20AC");
        data.SetString(1, L"new"); // what is written now has the form of now
        data.SetStringA(2, "new");
        EXPECT_TRUE(data.GetString(1, text) && text == L"new");
        EXPECT_TRUE(data.GetString(2, text) && text == L"new");
    }
    kortools::platform::set_ansi_code_page(0);
}

// SPDX-License-Identifier: MIT
#include "kortools/archive/mem_file.h"

#include "tests/archive/file_checks.h"

#include <climits>
#include <cstring>
#include <string>

using kor_test::cause_of;

namespace {

constexpr unsigned long long too_much = 1ULL << 60; // more memory than any system has

std::string get_contents(CXMemFile const &file)
{
    return { reinterpret_cast<char const *>(file.GetBuffer()), file.GetLength() };
}

} // namespace

TEST(MemFile, BehavesLikeTheModel)
{
    for (unsigned int const step : { 0U, 1U, 7U, 4096U }) {
        CXMemFile file(step);
        kor_test::FileBattery(file, step).Run(2000);
        std::vector<unsigned char> block(100, 0xAA);
        CXMemFile attached;
        attached.Attach(block.data(), block.size(), step);
        attached.SetLength(0);
        kor_test::FileBattery(attached, step).Run(2000);
    }
}

TEST(MemFile, UsesACallersBlockButNeverMovesOrFreesIt)
{
    unsigned char block[] = { 'a', 'b', 'c', 'd' };
    {
        CXMemFile file(block, sizeof(block));
        file.Write("xyz", 3);
        EXPECT_EQ(file.GetBuffer(), block);
        EXPECT_EQ(get_contents(file), "xyzd");
        file.Seek(0, CXFile::end);
        file.Write("12345", 5);
        EXPECT_NE(file.GetBuffer(), block);
        EXPECT_EQ(get_contents(file), "xyzd12345");
        file.Attach(block, 2);
        EXPECT_EQ(get_contents(file), "xy");
        EXPECT_EQ(file.GetPosition(), 0U);
        EXPECT_EQ(file.Detach(), block);
        file.Attach(block, 4);
    }
    EXPECT_EQ(std::memcmp(block, "xyzd", 4), 0);
}

// Blocks that leak or are freed twice are found by the sanitizers.
TEST(MemFile, OwnsBlocksThatAreHandedToIt)
{
    auto const make_block = [](char const *text) {
        std::size_t const size = std::strlen(text);
        return static_cast<unsigned char *>(CXMemFile::Memcpy(CXMemFile::Alloc(size), text, size));
    };
    CXMemFile file(make_block("first"), 5, true);
    file.Attach(make_block("second"), 6, 3, true);
    file.Seek(0, CXFile::end);
    file.Write("!", 1);
    EXPECT_EQ(file.GetBufferSize(), 9U);
    EXPECT_EQ(get_contents(file), "second!");
    file.Attach(file.GetBuffer(), 3, 0, true); // the same block
    EXPECT_EQ(get_contents(file), "sec");
    file.Abort();
    file.Write("again", 5);
    CXMemFile::Free(file.Detach());
    EXPECT_EQ(file.Detach(), nullptr);
    // Detaching turns exceptions on and restores the step.
    CXMemFile quiet(7, false);
    quiet.Write("text", 4);
    CXMemFile::Free(quiet.Detach());
    EXPECT_EQ(quiet.GetLength() + quiet.GetPosition() + quiet.GetBufferSize(), 0U);
    EXPECT_EQ(cause_of<CXInvalidArgException>([&] { quiet.Write(nullptr, 1); }), 0);
    quiet.Write("x", 1);
    EXPECT_EQ(quiet.GetBufferSize(), 2048U);
}

TEST(MemFile, FailuresLeaveItUnchangedAndThrowOnlyWhenAsked)
{
    for (bool const throws : { true, false }) {
        CXMemFile file(16, throws);
        file.Write("text", 4);
        void *start = nullptr;
        void *end = nullptr;
        auto const expect_failure = [&]<class Exception>(Exception *, auto const &operation) {
            unsigned long long const position = file.GetPosition();
            if (throws)
                EXPECT_EQ(cause_of<Exception>(operation), 0);
            else
                operation();
            EXPECT_EQ(file.GetPosition(), position);
            EXPECT_EQ(get_contents(file), "text");
            EXPECT_EQ(file.GetBufferSize(), 16U);
        };
        constexpr CXInvalidArgException *bad = nullptr;
        constexpr CXMemoryException *full = nullptr;
        char byte = 'x';
        expect_failure(bad, [&] { file.Write(nullptr, 1); });
        expect_failure(bad, [&] { EXPECT_EQ(file.Seek(-5, CXFile::current), 4U); });
        expect_failure(bad, [&] { EXPECT_EQ(file.Seek(LLONG_MIN, CXFile::end), 4U); });
        expect_failure(bad, [&] { file.Attach(nullptr, 1); });
        expect_failure(bad, [&] { file.BufferCommand(CXFile::bufferRead, 1); });
        expect_failure(bad, [&] { file.BufferCommand(CXFile::bufferCommit, 13); });
        for (unsigned long long const size : { too_much, 1ULL << 63, ULLONG_MAX })
            expect_failure(full, [&] { file.SetLength(size); });
        expect_failure(full, [&] { EXPECT_FALSE(file.GrowBuffer(ULLONG_MAX)); });
        expect_failure(full, [&] {
            EXPECT_EQ(file.BufferCommand(CXFile::bufferWrite, too_much, &start, &end), 0U);
        });
        file.Seek(LLONG_MAX, CXFile::begin);
        expect_failure(full, [&] { file.Write(&byte, 1); });
        EXPECT_EQ(file.Read(&byte, 1), 0U);
        EXPECT_EQ(file.Read(nullptr, 1), 0U);
        file.Seek(0, CXFile::begin);
        expect_failure(bad, [&] { EXPECT_EQ(file.Read(nullptr, 1), 0U); });

        CXFileException error;
        EXPECT_FALSE(file.Open(L"name", CXFile::modeCreate, &error));
        EXPECT_EQ(error.GetCause(), CXFileException::genericException);
        EXPECT_EQ(get_contents(file), "text");
    }
}

TEST(MemFile, WritesPartsOfItself)
{
    CXMemFile file(8);
    file.Write("01234567", 8);
    file.Write(file.GetBuffer(), 8); // the block moves
    EXPECT_EQ(get_contents(file), "0123456701234567");
    file.Seek(2, CXFile::begin);
    file.Write(file.GetBuffer(), 8); // source and target overlap
    EXPECT_EQ(get_contents(file), "0101234567234567");
}

// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"

#include "kortools/platform/os_error.h"
#include "tests/archive/file_checks.h"
#include "tests/support/oracle.h"
#include "tests/support/temp_folder.h"

#include <climits>

using kor_test::cause_of;
using kortools::platform::get_last_os_error;
using kortools::platform::set_last_os_error;

namespace {

constexpr unsigned int create = CXFile::modeReadWrite | CXFile::modeCreate;

// The cause of the failure, 0 when the file opens; checks what else Open() promises.
int open_cause(wchar_t const *path, unsigned int flags)
{
    CXFile file(true);
    CXFileException error;
    if (file.Open(path, flags, &error)) {
        EXPECT_TRUE(file.IsOpen());
        EXPECT_STREQ(file.GetFilePath(), path);
        EXPECT_EQ(error.GetCause(), 0);
        return 0;
    }
    EXPECT_FALSE(file.IsOpen());
    EXPECT_STREQ(error.GetFileName(), path ? path : L"");
    EXPECT_EQ(XGetThreadException(), nullptr);
    EXPECT_FALSE(CXFile(path, flags, false).IsOpen());
    EXPECT_EQ(cause_of<CXFileException>([&] { CXFile thrower(path, flags); }), error.GetCause());
    EXPECT_FALSE(file.Open(path, flags));
    return error.GetCause();
}

class File : public testing::Test {
protected:
    std::wstring GetPath(wchar_t const *name = L"file") const { return m_folder.GetFile(name); }

    TempFolder m_folder;
};

} // namespace

TEST_F(File, BehavesLikeTheModel)
{
    for (unsigned int const seed : { 1U, 2U, 3U }) {
        CXFile file(GetPath().c_str(), create);
        kor_test::FileBattery(file, seed).Run(500);
    }
}

TEST_F(File, OpensByItsFlags)
{
    struct Case {
        unsigned int flags;
        int cause;        // of opening a missing file
        char const *text; // afterwards, of a file that held "text"
    };
    Case const cases[]
        = { { 0, 2, "text" }, { 0x2000, 2, "text" }, { 0x1000, 0, "" }, { 0x3000, 0, "text" } };
    for (Case const &each : cases) {
        for (unsigned int mode = 0; mode < 4; ++mode) {
            SCOPED_TRACE(each.flags | mode);
            auto const path = GetPath((L"file" + std::to_wstring(each.flags | mode)).c_str());
            EXPECT_EQ(open_cause(path.c_str(), each.flags | mode), each.cause);
            m_folder.Write(path, "text");
            ASSERT_EQ(open_cause(path.c_str(), each.flags | mode), 0);
            EXPECT_EQ(m_folder.Read(path), each.text);

            CXFile file(path.c_str(), CXFile::modeNoTruncate | mode);
            char byte = 'x';
            if (mode == 1)
                EXPECT_EQ(cause_of<CXFileException>([&] { file.Read(&byte, 1); }), 5);
            else
                EXPECT_EQ(file.Read(&byte, 1), each.text[0] != 0);
            if (mode == 1 || mode == 2)
                file.Write(&byte, 1);
            else
                EXPECT_EQ(cause_of<CXFileException>([&] { file.Write(&byte, 1); }), 5);
        }
    }
}

TEST_F(File, RefusesPathsThatNameNoFile)
{
    set_last_os_error(1234);
    CXFile file;
    for (std::wstring const &path : { std::wstring(), std::wstring(260, L'a'),
             kor_test::to_wide(std::u16string(258, u'a') + u"\xD83D\xDE42") }) {
        EXPECT_EQ(open_cause(path.c_str(), create), 3);
    }
    EXPECT_EQ(open_cause(nullptr, 0), 3);
    EXPECT_EQ(get_last_os_error(), 1234U) << "the system was asked";

    std::wstring longest = GetPath(L"");
    while (longest.size() < 257)
        longest += L"./";
    longest.resize(259, L'x');
    EXPECT_EQ(open_cause(longest.c_str(), 0), 2);
    EXPECT_EQ(open_cause((GetPath(L"missing") + L"/file").c_str(), create), 3);
    EXPECT_EQ(open_cause(m_folder.GetPath().wstring().c_str(), 0), 5);
}

TEST_F(File, LeavesHandlesOpenThatItDidNotOpen)
{
    CXFile owner(GetPath().c_str(), create);
    owner.Write("0123456789", 10);
    {
        CXFile user(owner.GetHandle(), true);
        EXPECT_EQ(user.GetPosition(), 10U);
        user.Close();
        CXFile other(owner.GetHandle(), true);
        other.Seek(3, CXFile::begin);
    }
    char digit = 0;
    EXPECT_EQ(owner.Read(&digit, 1), 1U);
    EXPECT_EQ(digit, '3');

    std::FILE *const stream = std::fopen((m_folder.GetPath() / "stream").string().c_str(), "w+b");
    ASSERT_NE(stream, nullptr);
    std::fputs("text", stream);
    CXFile(stream, true).Write("!", 1);
    EXPECT_NE(std::fputc('?', stream), EOF);
    EXPECT_EQ(std::fclose(stream), 0);
    EXPECT_EQ(m_folder.Read("stream"), "text!?");
}

TEST_F(File, RejectsBadBuffersPositionsAndLengths)
{
    for (bool const throws : { true, false }) {
        CXFile file(GetPath().c_str(), create, throws);
        file.Write("text", 4);
        auto const expect_cause = [&](int cause, auto const &operation) {
            set_last_os_error(0);
            if (throws)
                EXPECT_EQ(cause_of<CXFileException>(operation), cause);
            else
                operation();
            EXPECT_EQ(file.GetLength(), 4U);
            EXPECT_EQ(file.GetPosition(), 4U);
        };
        expect_cause(1, [&] { EXPECT_EQ(file.Read(nullptr, 1), 0U); });
        expect_cause(1, [&] { file.Write(nullptr, 1); });
        expect_cause(9, [&] { EXPECT_EQ(file.Seek(-5, CXFile::end), 4U); });
        expect_cause(9, [&] { EXPECT_EQ(file.Seek(LLONG_MIN, CXFile::current), 4U); });
        expect_cause(9, [&] { file.SetLength(1ULL << 63); });
    }
}

TEST_F(File, GoesBeyondFourGigabytes)
{
    CXFile file(GetPath().c_str(), create);
    constexpr unsigned long long far = 6'000'000'007;
    file.SetLength(far);
    EXPECT_EQ(file.Seek(-2, CXFile::end), far - 2);
    file.Write("1234", 4);
    EXPECT_EQ(file.GetLength(), far + 2);
    EXPECT_EQ(file.BufferCommand(CXFile::bufferCheck), 0U);
    EXPECT_EQ(file.Seek(-5, CXFile::current), far - 3);
    char bytes[8] = {};
    EXPECT_EQ(file.Read(bytes, sizeof(bytes)), 5U);
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(std::string(bytes + 1, 4), "1234");
}

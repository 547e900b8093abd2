// SPDX-License-Identifier: MIT
// The window between an archive and its file: every kind of file, every way in which a file can
// end, lie about its length or fail, and the operations that move the file's position.
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_samples.h"
#include "tests/archive/archive_support.h"
#include "tests/support/oracle.h"
#include "tests/support/temp_folder.h"

#include "kortools/archive/file.h"

#include <vector>

using kor_test::ArchiveEncoder;
using kor_test::cause_of;
using kor_test::get_bytes;
using kor_test::StreamFile;
using Exception = CXArchiveException;

namespace {

// A kind of file, and the window that an archive has on it.
struct Window {
    char const *m_name;
    bool m_onDisk;
    unsigned int m_step; // bytes per read; 0 for a file that offers its memory
    unsigned int m_size;
    bool m_callersBuffer;
};

class ArchiveWindow : public testing::TestWithParam<Window> {
protected:
    void SetUp() override
    {
        if (GetParam().m_onDisk)
            m_file = std::make_unique<CXFile>(
                m_folder.GetFile(L"a.bin").c_str(), CXFile::modeCreate | CXFile::modeReadWrite);
        else if (GetParam().m_step != 0)
            m_file = std::make_unique<StreamFile>("", GetParam().m_step);
        else
            m_file = std::make_unique<CXMemFile>(7);
    }

    std::unique_ptr<CXArchive> open(CXArchive::Mode mode)
    {
        m_buffer.resize(GetParam().m_size);
        return std::make_unique<CXArchive>(m_file.get(), mode, GetParam().m_size,
            GetParam().m_callersBuffer ? m_buffer.data() : nullptr);
    }
    std::string contents()
    {
        std::string bytes(static_cast<std::size_t>(m_file->GetLength()), '\0');
        m_file->Seek(0, CXFile::begin);
        std::size_t done = 0;
        while (done < bytes.size())
            done += m_file->Read(bytes.data() + done, static_cast<unsigned>(bytes.size() - done));
        m_file->Seek(0, CXFile::begin);
        return bytes;
    }
    void set_contents(std::string_view bytes)
    {
        m_file->SetLength(0);
        m_file->Seek(0, CXFile::begin);
        m_file->Write(bytes.data(), static_cast<unsigned>(bytes.size()));
        m_file->Seek(0, CXFile::begin);
    }

    TempFolder m_folder;
    std::vector<unsigned char> m_buffer;
    std::unique_ptr<CXFile> m_file;
};

INSTANTIATE_TEST_SUITE_P(Kinds, ArchiveWindow,
    testing::Values(Window { "memory", false, 0, 1, false },
        Window { "memoryWithCallersBuffer", false, 0, 128, true },
        Window { "disk128", true, 0, 128, false }, Window { "disk4096", true, 0, 4096, true },
        Window { "oneByteReads", false, 1, 128, false },
        Window { "shortReads", false, 50, 200, false }),
    [](auto const &kind) { return std::string(kind.param.m_name); });

} // namespace

TEST_P(ArchiveWindow, HoldsTheSamples)
{
    for (auto const &sample : kor_test::get_archive_samples()) {
        set_contents("");
        sample.m_exchange(*open(CXArchive::store)); // the destructor writes the rest
        ASSERT_EQ(contents(), kor_test::write_sample(sample)) << sample.m_name;
        EXPECT_EQ(kor_test::check_values(sample, *open(CXArchive::load)), "") << sample.m_name;
    }
}

// Values of every size lie across the window's end.
TEST_P(ArchiveWindow, MayEndAnywhere)
{
    std::string const text(30, 'n');
    std::wstring const wide = kor_test::to_wide(u"\xE9\xD83D\xDE00\xD83D");
    ArchiveEncoder encoder;
    for (int i = 0; i < 300; ++i)
        encoder.u8(i & 0xFF).u16(2).u32(3).f64(0.1).count(70000).narrow(text).wide(
            u"\xE9\xD83D\xDE00\xD83D");
    set_contents("");
    for (auto const mode : { CXArchive::store, CXArchive::load }) {
        auto const archive = open(mode);
        for (int i = 0; i < 300; ++i) {
            bool equal = kor_test::exchange(*archive, static_cast<unsigned char>(i), short { 2 }, 3,
                0.1, static_cast<unsigned short>(0xFFFF), 70000);
            equal = kor_test::exchange_cut(*archive, text) && equal;
            ASSERT_TRUE(kor_test::exchange_cut(*archive, wide) && equal) << i;
            if (i % 17 == 3) {
                archive->Flush(i % 2 == 0);
                ASSERT_EQ(m_file->GetPosition(), archive->GetPosition());
            }
        }
        archive->Close();
        ASSERT_EQ(contents(), encoder.bytes());
    }
    EXPECT_EQ(open(CXArchive::load)->GetBytesLeft(), encoder.bytes().size());
}

TEST_P(ArchiveWindow, AFileCutAnywhereEndsWithEndOfFileAndNoName)
{
    auto const &sample = kor_test::get_archive_samples()[1];
    auto const bytes = kor_test::write_sample(sample);
    m_file->SetFilePath(L"C:\\scenes\\a.bin");
    for (std::size_t length = 0; length < bytes.size(); length += 1 + length / 100) {
        set_contents(std::string_view(bytes).substr(0, length));
        auto archive = open(CXArchive::load);
        CXTString<wchar_t> file_name(L"x");
        auto const cause = cause_of([&] { sample.m_exchange(*archive); }, &file_name);
        ASSERT_TRUE(cause == Exception::endOfFile && file_name.IsEmpty()) << length;
    }
}

TEST_P(ArchiveWindow, ClaimsBeyondTheEndFailBeforeMemoryIsTaken)
{
    for (unsigned long long const claim : { 1000ULL, 1ULL << 31, 0xFFFFFFFFULL, 1ULL << 62, ~0ULL })
        for (unsigned const mark : { 0U, 0xFFFEU, 0xFFFDU, 0xFFFCU }) {
            set_contents(ArchiveEncoder().length(claim, mark).raw("abcdefgh").bytes());
            CXTString<wchar_t> wide;
            EXPECT_EQ(cause_of([&] { *open(CXArchive::load) >> wide; }), Exception::endOfFile);
            EXPECT_LE(wide.GetCapacity(), 64);
            m_file->Seek(0, CXFile::begin);
            CXTString<char> narrow;
            EXPECT_EQ(cause_of([&] { *open(CXArchive::load) >> narrow; }), Exception::endOfFile);
            EXPECT_LE(narrow.GetCapacity(), 64);
        }
    set_contents(std::string(1000, 'x'));
    auto const archive = open(CXArchive::load);
    EXPECT_EQ(archive->EnsureAvailable(125, 8), 125U);
    EXPECT_EQ(archive->EnsureAvailable(0, 8), 0U);
    EXPECT_EQ(cause_of([&] { archive->EnsureAvailable(126, 8); }), Exception::endOfFile);
    EXPECT_EQ(cause_of([&] { archive->EnsureAvailable(~0ULL, ~0ULL); }), Exception::endOfFile);
    EXPECT_EQ(cause_of([&] { archive->EnsureAvailable(1001, 0); }), Exception::endOfFile);
}

TEST(ArchiveStream, AFileThatKeepsItsLengthToItselfIsReadInPieces)
{
    std::u16string units;
    for (int i = 0; i < 200000; ++i)
        units += i % 3 ? u"\xD83D\xDE00" : u"x";
    units.append(100000, u'\xD83D'); // each might be the first half of a pair
    auto const bytes = ArchiveEncoder().wide(units).narrow(std::string(300000, 'n')).bytes();
    StreamFile file(bytes, 70000, false);
    CXArchive archive(&file, CXArchive::load);
    EXPECT_EQ(archive.GetBytesLeft(), CXArchive::unknown_size);
    EXPECT_LE(archive.EnsureAvailable(1ULL << 40, 16), 65536U);
    CXTString<wchar_t> wide;
    CXTString<char> narrow;
    archive >> wide >> narrow;
    EXPECT_TRUE(wide == kor_test::to_wide(units).c_str());
    EXPECT_EQ(narrow.GetLength(), 300000);

    for (unsigned const mark : { 0U, 0xFFFEU, 0xFFFDU, 0xFFFCU }) {
        StreamFile cut(ArchiveEncoder().length(1 << 30, mark).raw("abcdefgh").bytes(), 3, false);
        CXArchive cut_archive(&cut, CXArchive::load);
        EXPECT_EQ(cause_of([&] { cut_archive >> wide; }), Exception::endOfFile);
        EXPECT_LE(wide.GetCapacity(), 1'000'000);
    }
}

TEST(ArchiveStream, AFailedWriteIsNotRepeated)
{
    class FullDisk : public StreamFile {
    public:
        void Write(void const *source, unsigned int count) override
        {
            StreamFile::Write(source, count / 2);
            CXFileException::ThrowErrno(CXFileException::diskFull, 0, GetFilePath());
        }
    } file;
    {
        CXArchive archive(&file, CXArchive::store, 128);
        archive << 1 << 2;
        try {
            archive.Close();
            ADD_FAILURE();
        } catch (CXFileException *exception) {
            EXPECT_EQ(exception->GetCause(), CXFileException::diskFull);
            exception->Delete();
        }
        EXPECT_EQ(archive.GetFile(), nullptr);
        CXArchive dropped(&file, CXArchive::store, 128);
        dropped << 3 << 4;
    } // swallows the failure
    EXPECT_EQ(file.GetLength(), 8U);
    EXPECT_EQ(XGetThreadException(), nullptr);
}

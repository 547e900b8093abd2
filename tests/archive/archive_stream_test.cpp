// SPDX-License-Identifier: MIT
// The window between an archive and its file: every kind of file, every way in which a file can
// end, lie about its length or fail, and the operations that move the file's position.
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_support.h"
#include "tests/support/oracle.h"
#include "tests/support/temp_folder.h"

#include "kortools/archive/file.h"

#include <random>
#include <vector>

using kor_test::ArchiveEncoder;
using kor_test::cause_of;
using kor_test::get_bytes;
using kor_test::StreamFile;
using Exception = CXArchiveException;

namespace {

// Random values, strings, blocks and counts. run() stores them, or loads and compares them;
// encode() is the model.
class Script {
public:
    Script(unsigned seed, int length)
    {
        std::mt19937 random(seed);
        for (int i = 0; i < length; ++i)
            m_steps.push_back({ static_cast<int>(random() % 7), random_units(random) });
    }

    bool run(CXArchive &archive, std::size_t step) const
    {
        auto const &[kind, units] = m_steps[step];
        std::string const bytes = bytes_of(units);
        switch (kind) {
        case 0:
            return kor_test::exchange(archive, static_cast<int>(units.size()) * -7, 'c');
        case 1:
            return kor_test::exchange(archive, static_cast<unsigned short>(units.size()), 1e-9);
        case 2:
            return run_block(archive, bytes);
        case 3:
            if (archive.IsLoading())
                return archive.ReadCount() == units.size() * 40;
            archive.WriteCount(units.size() * 40);
            return true;
        case 4:
            return kor_test::exchange_cut(archive, bytes);
        default:
            return kor_test::exchange_cut(archive, kor_test::to_wide(units));
        }
    }
    std::string encode() const
    {
        ArchiveEncoder encoder;
        for (auto const &[kind, units] : m_steps) {
            std::string const bytes = bytes_of(units);
            auto const size = static_cast<unsigned>(units.size());
            kind == 0       ? encoder.u32(size * -7U).u8('c')
                : kind == 1 ? encoder.u16(size & 0xFFFF).f64(1e-9)
                : kind == 2 ? encoder.raw(bytes)
                : kind == 3 ? encoder.count(size * 40)
                : kind == 4 ? encoder.narrow(bytes)
                            : encoder.wide(units);
        }
        return encoder.bytes();
    }
    std::size_t size() const { return m_steps.size(); }

private:
    // Pairs and single characters; no lone surrogates, since two that meet would be read as a pair.
    static std::u16string random_units(std::mt19937 &random)
    {
        std::size_t const lengths[] = { 0, random() % 8, random() % 300, random() % 5000 };
        std::u16string units;
        for (auto length = lengths[random() % 4]; units.size() < length;) {
            if (random() % 8 == 0)
                units.append({ static_cast<char16_t>(0xD800 + random() % 1024),
                    static_cast<char16_t>(0xDC00 + random() % 1024) });
            else
                units += static_cast<char16_t>(1 + random() % 0xD7FF);
        }
        return units;
    }
    static std::string bytes_of(std::u16string const &units)
    {
        std::string bytes;
        for (char16_t const unit : units)
            bytes += static_cast<char>(unit | 1);
        return bytes;
    }
    static bool run_block(CXArchive &archive, std::string const &bytes)
    {
        std::string loaded = bytes;
        if (archive.IsLoading())
            return archive.Read(loaded.data(), loaded.size()) == bytes.size() && loaded == bytes;
        archive.Write(bytes.data(), bytes.size());
        return true;
    }

    struct Step {
        int m_kind;
        std::u16string m_units;
    };
    std::vector<Step> m_steps;
};

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

TEST_P(ArchiveWindow, RandomScriptsAreWrittenAsTheModelDoesAndReadBack)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        Script const script(seed, 120);
        auto const expected = script.encode();
        set_contents("");
        {
            auto archive = open(CXArchive::store);
            for (std::size_t i = 0; i < script.size(); ++i) {
                script.run(*archive, i);
                if (i % 17 == 3)
                    archive->Flush(i % 2 == 0);
            }
            ASSERT_EQ(archive->GetPosition(), expected.size());
        } // its destructor writes the rest
        ASSERT_EQ(contents(), expected) << "seed " << seed;

        auto archive = open(CXArchive::load);
        for (std::size_t i = 0; i < script.size(); ++i) {
            ASSERT_TRUE(script.run(*archive, i)) << "seed " << seed << " step " << i;
            if (i % 17 == 3) {
                archive->Flush();
                ASSERT_EQ(m_file->GetPosition(), archive->GetPosition());
            }
        }
        ASSERT_EQ(archive->GetBytesLeft(), 0U);
    }
}

TEST_P(ArchiveWindow, AFileCutAnywhereEndsWithEndOfFileAndNoName)
{
    Script const script(77, 25);
    auto const bytes = script.encode();
    m_file->SetFilePath(L"C:\\scenes\\a.bin");
    for (std::size_t length = 0; length < bytes.size(); length += 1 + length / 300) {
        set_contents(std::string_view(bytes).substr(0, length));
        auto archive = open(CXArchive::load);
        CXTString<wchar_t> file_name(L"x");
        bool read = true; // false when Read() comes back with less
        auto const cause = cause_of(
            [&] {
                for (std::size_t i = 0; read && i < script.size(); ++i)
                    read = script.run(*archive, i);
            },
            &file_name);
        ASSERT_TRUE(!read || (cause == Exception::endOfFile && file_name.IsEmpty())) << length;
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
    EXPECT_EQ(archive->EnsureAvailable(1000, 1), 1000U);
    EXPECT_EQ(archive->EnsureAvailable(125, 8), 125U);
    EXPECT_EQ(archive->EnsureAvailable(0, 8), 0U);
    EXPECT_EQ(cause_of([&] { archive->EnsureAvailable(126, 8); }), Exception::endOfFile);
    EXPECT_EQ(cause_of([&] { archive->EnsureAvailable(~0ULL, ~0ULL); }), Exception::endOfFile);
    EXPECT_EQ(cause_of([&] { archive->EnsureAvailable(1001, 0); }), Exception::endOfFile);
}

TEST_P(ArchiveWindow, AnythingInTheWrongModeThrowsAtOnce)
{
    set_contents(std::string(300, 'x'));
    auto const expect_refusal = [&](CXArchiveException::ArchiveExceptionType cause, auto... calls) {
        int number = 0;
        auto const refuses = [&](auto const &call) {
            CXTString<wchar_t> file_name(L"x");
            EXPECT_EQ(cause_of(call, &file_name), cause) << "call " << ++number;
            EXPECT_TRUE(file_name == m_file->GetFilePath());
        };
        (refuses(calls), ...);
    };
    auto const loading = open(CXArchive::load);
    CXArchive &in = *loading;
    char byte;
    in >> byte; // so that there is a window
    auto const write = [&](auto value) { return [&in, value] { in << value; }; };
    CXObject const *const no_object = nullptr;
    expect_refusal(
        Exception::readOnly, write(true), write('c'), write(static_cast<unsigned char>(1)),
        write(static_cast<short>(1)), write(static_cast<unsigned short>(1)), write(1), write(1U),
        write(1LL), write(1ULL), write(1.0F), write(1.0), write(L'c'), write(CXTString<char>()),
        write(CXTString<wchar_t>()), write(no_object), [&] { in.WriteCount(1); },
        [&] { in.WriteStringLength(1, xEncodingANSI); }, [&] { in.Write("", 0); });
    expect_refusal(Exception::genericException, [&] { in.WriteClass(nullptr); });

    auto const storing = open(CXArchive::store);
    CXArchive &out = *storing;
    out << 'x';
    auto const read = [&](auto value) {
        return [&out, value] {
            auto target = value;
            out >> target;
        };
    };
    xStringEncoding encoding;
    expect_refusal(
        Exception::writeOnly, read(true), read('c'), read(static_cast<unsigned char>(1)),
        read(static_cast<short>(1)), read(static_cast<unsigned short>(1)), read(1), read(1U),
        read(1LL), read(1ULL), read(1.0F), read(1.0), read(L'c'), read(CXTString<char>()),
        read(CXTString<wchar_t>()), read(static_cast<CXObject *>(nullptr)), read(no_object),
        read(static_cast<CXFile *>(nullptr)), [&] { out.ReadCount(); },
        [&] { out.ReadStringLength(encoding); }, [&] { out.Read(&byte, 0); },
        [&] { out.EnsureRead(&byte, 1); }, [&] { out.EnsureAvailable(1, 1); });
    expect_refusal(Exception::genericException, [&] { out.ReadClass(); });
}

TEST_P(ArchiveWindow, FlushingALoadingArchiveHandsTheFileOver)
{
    set_contents("0123456789");
    auto archive = open(CXArchive::load);
    char byte;
    *archive >> byte >> byte >> byte;
    EXPECT_EQ(archive->GetPosition(), 3U);
    archive->Flush();
    EXPECT_EQ(m_file->GetPosition(), 3U);
    m_file->Seek(2, CXFile::current);
    *archive >> byte;
    EXPECT_EQ(byte, '5');
    archive->Abort(); // leaves the position where reading ahead has moved it
    EXPECT_EQ(archive->GetFile(), nullptr);
    m_file->Seek(0, CXFile::begin);
    archive = open(CXArchive::load);
    *archive >> byte;
    archive->Close();
    EXPECT_EQ(m_file->GetPosition(), 1U);
    EXPECT_EQ(cause_of([&] { *archive >> byte; }), Exception::genericException);
    archive->Flush();
    archive->Close();
}

TEST_P(ArchiveWindow, AbortingAStoringArchiveDropsWhatIsBuffered)
{
    auto archive = open(CXArchive::store);
    *archive << 'a';
    archive->Flush();
    *archive << 'b';
    archive->Abort();
    EXPECT_EQ(cause_of([&] { *archive << 'c'; }), Exception::genericException);
    archive.reset();
    EXPECT_EQ(contents(), "a");
    m_file->Seek(0, CXFile::end);
    try {
        CXArchive unwound(m_file.get(), CXArchive::store);
        unwound << 'd';
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(contents(), "a");
}

TEST(ArchiveStream, ANullFileIsRefused)
{
    try {
        CXArchive const archive(nullptr, CXArchive::load);
        ADD_FAILURE();
    } catch (CXInvalidArgException *exception) {
        exception->Delete();
    }
}

TEST(ArchiveStream, MemoryFilesAreUsedInPlace)
{
    class Counted : public CXMemFile {
    public:
        unsigned int Read(void *target, unsigned int count) override
        {
            ++m_calls;
            return CXMemFile::Read(target, count);
        }
        void Write(void const *source, unsigned int count) override
        {
            ++m_calls;
            CXMemFile::Write(source, count);
        }
        int m_calls = 0;
    } file;
    CXArchive archive(&file, CXArchive::store);
    for (int i = 0; i < 100000; ++i)
        archive << i;
    archive.Close();
    EXPECT_EQ(file.GetLength(), 400000U);
    file.Seek(0, CXFile::begin);
    CXArchive loading(&file, CXArchive::load);
    for (int i = 0, value = 0; i < 100000; ++i) {
        loading >> value;
        ASSERT_EQ(value, i);
    }
    EXPECT_EQ(file.m_calls, 0);
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

TEST(ArchiveStream, OnlyAContiguousReadCanExceedTheBuffer)
{
    class Reader : public CXArchive {
    public:
        using CXArchive::CXArchive;
        using CXArchive::FillBuffer;
    };
    StreamFile file(std::string(1000, 'x'), 1000);
    file.SetFilePath(L"C:\\a.bin");
    Reader archive(&file, CXArchive::load, 1); // raised to 128
    archive.FillBuffer(128);
    CXTString<wchar_t> file_name(L"x");
    EXPECT_EQ(cause_of([&] { archive.FillBuffer(129); }, &file_name), Exception::bufferFull);
    EXPECT_TRUE(file_name.IsEmpty());
    std::string block(900, '\0');
    archive.EnsureRead(block.data(), block.size());
    EXPECT_EQ(block, std::string(900, 'x'));
    EXPECT_EQ(cause_of([&] { archive.FillBuffer(101); }), Exception::endOfFile);
    EXPECT_EQ(archive.Read(block.data(), block.size()), 100U);
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

// SPDX-License-Identifier: MIT
// The window between an archive and its file: every kind of file, every way in which a file can
// end, lie about its length or fail, and the operations that move the file's position.
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_support.h"
#include "tests/support/oracle.h"
#include "tests/support/temp_folder.h"

#include "kortools/archive/file.h"

#include <functional>
#include <random>
#include <vector>

using kor_test::ArchiveEncoder;
using kor_test::cause_of;
using kor_test::get_bytes;
using kor_test::StreamFile;
using Exception = CXArchiveException;

namespace {

// A step of a random script: how it is written, encoded and read back.
struct Step {
    std::function<void(CXArchive &)> m_write;
    std::function<void(ArchiveEncoder &)> m_encode;
    std::function<bool(CXArchive &)> m_read; // true when it reads what was written
};

template <class T> Step value_step(T value)
{
    return { [=](CXArchive &archive) { archive << value; },
        [=](ArchiveEncoder &encoder) {
            encoder.raw({ reinterpret_cast<char const *>(&value), sizeof value });
        },
        [=](CXArchive &archive) {
            T loaded;
            archive >> loaded;
            return loaded == value;
        } };
}

std::u16string random_units(std::mt19937 &random, std::size_t length)
{
    std::u16string units;
    while (units.size() < length) {
        if (random() % 8 == 0) // a pair
            units.append({ static_cast<char16_t>(0xD800 + random() % 1024),
                static_cast<char16_t>(0xDC00 + random() % 1024) });
        else // no lone surrogates: two of them might meet and be a pair when read
            units += static_cast<char16_t>(1 + random() % 0xD7FF);
    }
    return units;
}

Step random_step(std::mt19937 &random)
{
    std::size_t const sizes[] = { random() % 8, random() % 8, random() % 300, random() % 5000 };
    std::size_t const size = sizes[random() % 4];
    std::string text(size, '\0');
    for (char &ch : text)
        ch = static_cast<char>(1 + random() % 255);
    switch (random() % 8) {
    case 0:
        return value_step(static_cast<unsigned char>(random()));
    case 1:
        return value_step(static_cast<short>(random()));
    case 2:
        return value_step(static_cast<int>(random()));
    case 3:
        return value_step(static_cast<double>(random()));
    case 4:
        return { [=](CXArchive &archive) { archive.Write(text.data(), text.size()); },
            [=](ArchiveEncoder &encoder) { encoder.raw(text); },
            [=](CXArchive &archive) {
                std::string loaded(text.size(), '\0');
                return archive.Read(loaded.data(), loaded.size()) == text.size() && loaded == text;
            } };
    case 5:
        return { [=](CXArchive &archive) { archive.WriteCount(size * 100); },
            [=](ArchiveEncoder &encoder) { encoder.count(size * 100); },
            [=](CXArchive &archive) { return archive.ReadCount() == size * 100; } };
    case 6:
        return { [=](CXArchive &archive) {
                    archive << CXTString<char>(text.data(), static_cast<int>(text.size()));
                },
            [=](ArchiveEncoder &encoder) { encoder.narrow(text); },
            [=](CXArchive &archive) {
                CXTString<char> loaded;
                archive >> loaded;
                return loaded == text.c_str();
            } };
    default:
        auto const units = random_units(random, size);
        auto const wide = kor_test::to_wide(units);
        return { [=](CXArchive &archive) {
                    archive << CXTString<wchar_t>(wide.data(), static_cast<int>(wide.size()));
                },
            [=](ArchiveEncoder &encoder) { encoder.wide(units); },
            [=](CXArchive &archive) {
                CXTString<wchar_t> loaded;
                archive >> loaded;
                return loaded == wide.c_str();
            } };
    }
}

std::vector<Step> random_script(unsigned seed, int length)
{
    std::mt19937 random(seed);
    std::vector<Step> script;
    for (int i = 0; i < length; ++i)
        script.push_back(random_step(random));
    return script;
}

std::string encode(std::vector<Step> const &script)
{
    ArchiveEncoder encoder;
    for (Step const &step : script)
        step.m_encode(encoder);
    return encoder.bytes();
}

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
        auto const script = random_script(seed, 120);
        auto const expected = encode(script);
        set_contents("");
        {
            auto archive = open(CXArchive::store);
            for (std::size_t i = 0; i < script.size(); ++i) {
                script[i].m_write(*archive);
                if (i % 17 == 3)
                    archive->Flush(i % 2 == 0);
            }
            ASSERT_EQ(archive->GetPosition(), expected.size());
        } // its destructor writes the rest
        ASSERT_EQ(contents(), expected) << "seed " << seed;

        auto archive = open(CXArchive::load);
        for (std::size_t i = 0; i < script.size(); ++i) {
            ASSERT_TRUE(script[i].m_read(*archive)) << "seed " << seed << " step " << i;
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
    auto const script = random_script(77, 25);
    auto const bytes = encode(script).substr(0, 3000);
    m_file->SetFilePath(L"C:\\scenes\\a.bin");
    for (std::size_t length = 0; length < bytes.size(); length += 1 + length / 300) {
        set_contents(std::string_view(bytes).substr(0, length));
        auto archive = open(CXArchive::load);
        CXTString<wchar_t> file_name(L"x");
        bool short_read = false; // Read() may come back with less instead
        auto const cause = cause_of(
            [&] {
                for (Step const &step : script)
                    if ((short_read = !step.m_read(*archive)))
                        return;
            },
            &file_name);
        ASSERT_TRUE(short_read || (cause == Exception::endOfFile && file_name.IsEmpty())) << length;
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
    auto loading = open(CXArchive::load);
    char byte;
    *loading >> byte; // the window is full
    CXObject const *const null_object = nullptr;
    CXArchive &in = *loading;
    std::function<void()> const writes[] = { [&] { in << true; }, [&] { in << 'c'; },
        [&] { in << static_cast<unsigned char>(1); }, [&] { in << static_cast<short>(1); },
        [&] { in << static_cast<unsigned short>(1); }, [&] { in << 1; }, [&] { in << 1U; },
        [&] { in << 1LL; }, [&] { in << 1ULL; }, [&] { in << 1.0F; }, [&] { in << 1.0; },
        [&] { in << L'c'; }, [&] { in << CXTString<char>("x"); },
        [&] { in << CXTString<wchar_t>(L"x"); }, [&] { in << null_object; },
        [&] { in.WriteObject(nullptr); }, [&] { in.WriteCount(1); },
        [&] { in.WriteStringLength(1, xEncodingANSI); }, [&] { in.Write("", 0); } };
    for (auto const &write : writes) {
        CXTString<wchar_t> file_name(L"x");
        EXPECT_EQ(cause_of(write, &file_name), Exception::readOnly) << &write - writes;
        EXPECT_TRUE(file_name == m_file->GetFilePath());
    }
    EXPECT_EQ(cause_of([&] { in.WriteClass(nullptr); }), Exception::genericException);
    loading.reset();

    auto storing = open(CXArchive::store);
    *storing << 'x';
    CXArchive &out = *storing;
    auto const read = [&](auto value) -> std::function<void()> {
        return [&out, value]() mutable { out >> value; };
    };
    xStringEncoding encoding;
    std::function<void()> const reads[] = { read(true), read('c'),
        read(static_cast<unsigned char>(1)), read(static_cast<short>(1)),
        read(static_cast<unsigned short>(1)), read(1), read(1U), read(1LL), read(1ULL), read(1.0F),
        read(1.0), read(L'c'), read(CXTString<char>()), read(CXTString<wchar_t>()),
        read(static_cast<CXObject *>(nullptr)), read(static_cast<CXObject const *>(nullptr)),
        read(static_cast<CXFile *>(nullptr)), [&] { out.ReadObject(nullptr); },
        [&] { out.ReadCount(); }, [&] { out.ReadStringLength(encoding); },
        [&] { out.Read(&byte, 0); }, [&] { out.EnsureRead(&byte, 1); },
        [&] { out.EnsureAvailable(1, 1); }, [&] { out.GetBytesLeft(); } };
    for (auto const &call : reads)
        EXPECT_EQ(cause_of(call), Exception::writeOnly) << &call - reads;
    EXPECT_EQ(cause_of([&] { out.ReadClass(); }), Exception::genericException);
}

TEST_P(ArchiveWindow, FlushingALoadingArchiveHandsTheFileOver)
{
    set_contents("0123456789");
    auto archive = open(CXArchive::load);
    char byte;
    *archive >> byte >> byte >> byte;
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

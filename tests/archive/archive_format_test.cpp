// SPDX-License-Identifier: MIT
// The bytes of values, counts and strings, against an encoder that is independent of the library.
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_support.h"
#include "tests/support/ansi_page.h"
#include "tests/support/oracle.h"

using kor_test::ArchiveEncoder;
using kor_test::load_bytes;
using kor_test::store_bytes;

TEST(ArchiveFormat, CountsAndLengthsChangeFormAtTheirThresholds)
{
    struct {
        int encoding, read_as;
        unsigned mark;
    } const encodings[] = { { -1, 1, 0 }, { 1, 1, 0 }, { 2, 2, 0xFFFD }, { 3, 3, 0xFFFE },
        { 4, 4, 0xFFFC }, { 1252, 1, 0 } };
    for (unsigned long long const number : { 0ULL, 254ULL, 255ULL, 65531ULL, 65532ULL, 65534ULL,
             65535ULL, 4294967294ULL, 4294967295ULL, ~0ULL }) {
        auto const count = store_bytes([&](CXArchive &archive) { archive.WriteCount(number); });
        EXPECT_EQ(count, ArchiveEncoder().count(number).bytes()) << number;
        load_bytes(
            count, [&](CXArchive &archive) { EXPECT_EQ(archive.ReadCount(), number) << number; });
        for (auto const &[encoding, read_as, mark] : encodings) {
            auto const length = store_bytes([&](CXArchive &archive) {
                archive.WriteStringLength(number, static_cast<xStringEncoding>(encoding));
            });
            EXPECT_EQ(length, ArchiveEncoder().length(number, mark).bytes()) << number;
            load_bytes(length, [&](CXArchive &archive) {
                xStringEncoding loaded;
                EXPECT_EQ(archive.ReadStringLength(loaded), number);
                EXPECT_EQ(loaded, read_as);
            });
        }
    }
}

TEST(ArchiveFormat, LengthsInUnusualFormsAreRead)
{
    using E = ArchiveEncoder;
    std::pair<ArchiveEncoder, unsigned> const cases[] = {
        { E().u8(0xFF).u16(5), 5 },
        { E().u8(0xFF).u16(0xFFFF).u32(0), 0 },
        { E().u8(0xFF).u16(0xFFFD).u8(0xFF).u16(0xFFFE), 0xFFFE },
        { E().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFC), 0xFFFC },
        { E().u8(0xFF).u16(0xFFFC).u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).u64(7), 7 },
    };
    for (auto const &[bytes, length] : cases)
        load_bytes(bytes.bytes(), [&](CXArchive &archive) {
            xStringEncoding encoding;
            EXPECT_EQ(archive.ReadStringLength(encoding), length);
            EXPECT_EQ(archive.GetBytesLeft(), 0U);
        });
}

TEST(ArchiveFormat, EveryEncodingIsReadIntoBothKindsOfString)
{
    AnsiPage const western(1252);
    using E = ArchiveEncoder;
    std::string_view const utf8 = "\xC3\xA9\xF0\x9F\x98\x80z";
    struct {
        ArchiveEncoder bytes;
        std::u16string wide;
        std::string narrow;
    } const cases[] = {
        { E().narrow("\x80\xE9"), u"\x20AC\xE9", "\x80\xE9" },
        { E().narrow(std::string_view("\xE9\0x", 3)), u"\xE9", "\xE9" },
        { E().length(utf8.size(), 0xFFFD).raw(utf8), u"\xE9\xD83D\xDE00z", std::string(utf8) },
        { E().length(1, 0xFFFD).raw("\xC3"), u"\xFFFD", "\xC3" },
        { E().length(0, 0xFFFD), u"", "" },
        { E().wide(u"\x20AC\xE9\x3B1"), u"\x20AC\xE9\x3B1",
            "\x80\xE9"
            "a" },
        { E().wide(std::u16string_view(u"k\0x", 3)), u"k", "k" },
        { E().wide(u""), u"", "" },
        { E().length(3, 0xFFFC).raw("ab\xE9"), u"before", "ab\xE9" },
        { E().length(300, 0xFFFC).raw(std::string(300, 'q')), u"before", std::string(300, 'q') },
        { E().length(0, 0xFFFC), u"", "" },
    };
    for (auto const &[encoder, wide, narrow] : cases) {
        CXTString<wchar_t> wide_loaded(L"before");
        CXTString<char> narrow_loaded("before");
        char end = 0;
        load_bytes(
            encoder.bytes() + 'e', [&](CXArchive &archive) { archive >> wide_loaded >> end; });
        EXPECT_EQ(wide_loaded, kor_test::to_wide(wide));
        EXPECT_EQ(end, 'e');
        load_bytes(
            encoder.bytes() + 'f', [&](CXArchive &archive) { archive >> narrow_loaded >> end; });
        EXPECT_EQ(narrow_loaded, narrow);
        EXPECT_EQ(end, 'f');
    }
}

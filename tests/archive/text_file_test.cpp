// SPDX-License-Identifier: MIT
#include "kortools/archive/stdio_file_ex.h"

#include "kortools/platform/line_end.h"
#include "tests/archive/file_checks.h"
#include "tests/support/ansi_page.h"
#include "tests/support/temp_folder.h"

using kor_test::cause_of;
using namespace std::string_literals;

namespace {

constexpr unsigned int create = CXFile::modeReadWrite | CXFile::modeCreate;
constexpr unsigned int append = CXFile::modeWrite | CXFile::modeCreate | CXFile::modeNoTruncate;
constexpr unsigned int unicode = CStdioFileEx::typeUnicode;
constexpr unsigned int utf8 = unicode | CStdioFileEx::unicodeUTF8;
constexpr unsigned int utf16be = unicode | CStdioFileEx::unicodeBigEndian;

bool const writes_returns = kortools::platform::get_line_end() == "\r\n";

// One encoding: how it is asked for, its mark, and a text of every kind of character in it.
struct Encoding {
    unsigned int flags;
    xTextEncoding encoding;
    std::string mark;
    std::string bytes; // of "aé€😀"
    std::string feed;
};
Encoding const encodings[] = { { utf8, xTextUTF8, "\xEF\xBB\xBF",
                                   "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\n" },
    { unicode, xTextUTF16, "\xFF\xFE", "a\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE"s, "\n\0"s },
    { utf16be, xTextUTF16BigEndian, "\xFE\xFF", "\0a\0\xE9\x20\xAC\xD8\x3D\xDE\x00"s, "\0\n"s } };
wchar_t const *const every_kind = L"a\u00E9\u20AC\U0001F600";

class TextFile : public testing::Test {
protected:
    std::wstring GetPath(wchar_t const *name = L"file") const { return m_folder.GetFile(name); }
    void WriteBytes(std::string const &bytes) const { m_folder.Write("file", bytes); }
    std::string ReadBytes() const { return m_folder.Read("file"); }
    std::vector<std::wstring> ReadLines(unsigned int flags = 0) const
    {
        CStdioFileEx file(GetPath().c_str(), flags);
        std::vector<std::wstring> lines;
        for (CXTString<wchar_t> line; file.ReadString(line);)
            lines.emplace_back(line.GetView());
        EXPECT_EQ(file.GetPosition(), file.GetLength());
        return lines;
    }

    TempFolder m_folder;
};

using Lines = std::vector<std::wstring>;

} // namespace

TEST_F(TextFile, HasTheBytesOfItsEncoding)
{
    for (Encoding const &each : encodings) {
        SCOPED_TRACE(each.mark);
        CStdioFileEx file(GetPath().c_str(), create | each.flags);
        file.SetLineEnd(CXStdioFile::lineEndLF);
        file.WriteString(every_kind);
        file.WriteStringA("\n");
        file.Close();
        EXPECT_EQ(ReadBytes(), each.mark + each.bytes + each.feed);
        EXPECT_EQ(ReadLines(), Lines { every_kind });

        // The mark decides against the flags, and is not written a second time.
        for (unsigned int const flags :
            { append, append | utf8, append | utf16be, create ^ 0x1000 }) {
            ASSERT_TRUE(file.Open(GetPath().c_str(), flags | CXFile::shareDenyWrite));
            EXPECT_EQ(file.GetEncoding(), each.encoding);
            EXPECT_TRUE(file.HasMark());
            file.SetLineEnd(CXStdioFile::lineEndLF);
            file.Seek(0, CXFile::end);
            file.WriteString(L"\n");
        }
        file.Close();
        std::string feeds;
        for (int i = 0; i < 5; ++i)
            feeds += each.feed;
        EXPECT_EQ(ReadBytes(), each.mark + each.bytes + feeds);
        EXPECT_EQ(ReadLines(each.flags), (Lines { every_kind, L"", L"", L"", L"" }));

        WriteBytes(each.bytes + each.feed); // without a mark the flags decide
        EXPECT_EQ(ReadLines(each.flags), Lines { every_kind });
    }
}

TEST_F(TextFile, WritesTheMarkInFrontOfTheFirstText)
{
    CStdioFileEx file(GetPath().c_str(), create | utf8 | CXFile::shareDenyWrite);
    EXPECT_TRUE(file.HasMark());
    EXPECT_EQ(file.GetLength(), 0U);
    CXTString<wchar_t> text;
    EXPECT_FALSE(file.ReadString(text));
    file.WriteString(L"first");
    EXPECT_EQ(file.GetPosition(), 8U);
    file.Seek(0, CXFile::begin);
    file.WriteString(L"F");
    file.Seek(0, CXFile::begin);
    EXPECT_TRUE(file.ReadString(text) && text == L"First");
    file.SetLength(0);
    file.WriteString(L"again");
    file.Flush();
    EXPECT_EQ(ReadBytes(), std::string("\xEF\xBB\xBF") + "again");

    ASSERT_TRUE(file.Open(GetPath().c_str(), create | utf8 | CStdioFileEx::unicodeNoMark));
    file.WriteString(L"plain");
    file.Close();
    ASSERT_TRUE(file.Open(GetPath().c_str(), append | utf8)); // too late for a mark
    EXPECT_FALSE(file.HasMark());
    file.Seek(0, CXFile::end);
    file.WriteString(L"\u00E9");
    file.Close();
    EXPECT_EQ(ReadBytes(), "plain\xC3\xA9");
}

TEST_F(TextFile, FindsTheEndsOfLines)
{
    std::pair<std::string, Lines> const cases[] = { { "", {} }, { "\n", { L"" } },
        { "a", { L"a" } }, { "a\r\nb\nc", { L"a", L"b", L"c" } }, { "a\r", { L"a\r" } },
        { "a\rb\r\r\n", { L"a\rb\r" } }, { "\r\n\r\n\n", { L"", L"", L"" } },
        { "a\0b\n\0"s, { L"a\0b"s, L"\0"s } }, { "\x1A\n", { L"\x1A" } } };
    for (auto const &[bytes, lines] : cases) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        std::string wide;
        for (char const ch : bytes)
            wide.append({ ch, '\0' });
        WriteBytes(bytes);
        EXPECT_EQ(ReadLines(), lines);
        WriteBytes("\xFF\xFE" + wide);
        EXPECT_EQ(ReadLines(), lines);
        WriteBytes("\xFE\xFF\0"s + wide.substr(0, wide.empty() ? 0 : wide.size() - 1));
        EXPECT_EQ(ReadLines(), wide.empty() ? Lines { L"\uFFFD" } : lines);
    }
    WriteBytes("a\r\nb\n");
    EXPECT_EQ(ReadLines(CXStdioFile::typeBinary), (Lines { L"a\r", L"b" }));
}

TEST_F(TextFile, ReplacesWhatIsMalformed)
{
    std::pair<std::string, Lines> const cases[] = {
        // Line feeds that are none: half of other units.
        { "\xFF\xFE\x0A\x0A\x00\x0A\x0A\x01\x0A\x00"s, { L"\x0A0A\x0A00\x010A" } },
        { "\xFE\xFF\x0A\x0A\x0A\x00\x01\x0A\x00\x0A"s, { L"\x0A0A\x0A00\x010A" } },
        { "\xEF\xBB\xBF\x61\xE2\x82", { L"a\uFFFD" } },
        { "\xEF\xBB\xBF\xF0\x9F\x98\nb\x80\xFF", { L"\uFFFD", L"b\uFFFD\uFFFD" } },
        { "\xEF\xBB\xBF\xED\xA0\x80", { L"\uFFFD\uFFFD\uFFFD" } },
        { "\xEF\xBB", { CXTString<wchar_t>("\xEF\xBB").GetView().data() } }, // half a mark is text
        { "\xFF\xFE\x61\0\x62"s, { L"a\uFFFD" } },
        { "\xFF\xFE\x61\0\n\0b"s, { L"a", L"\uFFFD" } },
    };
    for (auto const &[bytes, lines] : cases) {
        WriteBytes(bytes);
        EXPECT_EQ(ReadLines(), lines) << testing::PrintToString(bytes);
    }
    wchar_t const lone[] = { 'a', wchar_t(0xDC00), 'b', wchar_t(0xD800), 0 };
    for (Encoding const &each : encodings) {
        CStdioFileEx file(GetPath().c_str(), create | each.flags);
        file.WriteString(lone);
        file.Close();
        EXPECT_EQ(ReadLines(), Lines { each.encoding == xTextUTF8 ? L"a\uFFFDb\uFFFD" : lone });
    }
}

TEST_F(TextFile, WritesTheLineEndsOfTheSystem)
{
    struct {
        CXStdioFile::LineEnd lineEnd;
        unsigned int flags;
        bool returns;
    } const cases[] = { { CXStdioFile::lineEndSystem, 0, writes_returns },
        { CXStdioFile::lineEndLF, 0, false }, { CXStdioFile::lineEndCRLF, 0, true },
        { CXStdioFile::lineEndCRLF, CXStdioFile::typeBinary, false } };
    for (auto const &each : cases) {
        CStdioFileEx file(GetPath().c_str(), create | each.flags);
        file.SetLineEnd(each.lineEnd);
        file.WriteStringA("\na\n\nb\r\nc\r");
        file.WriteString(L"\nd\r");
        file.WriteString(L"");
        file.Write("\n", 1);
        file.WriteString(L"\n");
        file.Close();
        EXPECT_EQ(ReadBytes(),
            each.returns ? "\r\na\r\n\r\nb\r\nc\r\nd\r\n\r\n" : "\na\n\nb\r\nc\r\nd\r\n\n");
    }
}

TEST_F(TextFile, ReadsPartsOfLinesIntoABuffer)
{
    AnsiPage const page(932);
    std::wstring const line = L"ab\u3042\u30BDc\u8868\u80FD\uFF71";
    std::string const japanese = "ab\x82\xA0\x83\x5C"
                                 "c\x95\x5C\x94\x5C\xB1";
    for (unsigned int size = 3; size < 14; ++size) {
        for (int form = 0; form < 4; ++form) {
            SCOPED_TRACE(testing::Message() << "size " << size << ", form " << form);
            std::wstring text = line;
            if (form == 0) {
                WriteBytes(japanese + "\r\n" + japanese);
            } else {
                text += L"\U0001F600\U0001F601\u00E9";
                CStdioFileEx file(GetPath().c_str(), create | encodings[form - 1].flags);
                file.WriteString((text + L"\r\n" + text).c_str());
            }
            CStdioFileEx file(GetPath().c_str(), CXFile::modeRead);
            std::wstring all;
            wchar_t buffer[16];
            while (wchar_t const *const part = file.ReadString(buffer, size)) {
                ASSERT_TRUE(std::wcslen(part) < size && part[0] != 0);
                all += part;
                auto const position = static_cast<long long>(file.GetPosition());
                char byte; // parts may be read by other means
                file.Read(&byte, size == 7);
                file.Seek(position, CXFile::begin);
            }
            EXPECT_EQ(all, text + L"\n" + text);
        }
    }
    WriteBytes("a\n");
    CXStdioFile file(GetPath().c_str(), CXFile::modeRead);
    wchar_t buffer[4] = L"xyz";
    EXPECT_EQ(file.ReadString(buffer, 2), nullptr);
    EXPECT_EQ(file.ReadString(nullptr, 4), nullptr);
    EXPECT_STREQ(buffer, L"xyz");
    EXPECT_STREQ(file.ReadString(buffer, 4), L"a\n");
    EXPECT_EQ(file.ReadString(buffer, 4), nullptr);
}

TEST_F(TextFile, ReadsNarrowText)
{
    AnsiPage const page(1252);
    CXTString<char> line;
    for (Encoding const &each : encodings) {
        WriteBytes(each.mark + each.bytes);
        CStdioFileEx file(GetPath().c_str(), CXFile::modeRead);
        EXPECT_TRUE(file.ReadStringA(line) && line == "a\xE9\x80??");
        EXPECT_FALSE(file.ReadStringA(line) || !line.IsEmpty());
        ASSERT_TRUE(file.Open(GetPath().c_str(), create | each.flags));
        file.WriteStringA("\xE9\x80");
        file.Close();
        EXPECT_EQ(ReadLines(), Lines { L"\u00E9\u20AC" });
    }
    CStdioFileEx file(GetPath().c_str(), create);
    for (unsigned int const bad : { 12345U, 65000U, 37U })
        EXPECT_FALSE(file.SetCodePage(bad));
    file.WriteStringA("\x80\n");
    EXPECT_TRUE(file.SetCodePage(866));
    file.WriteString(L"\u0416");
    file.WriteStringA("a\x80\0z\n"s.c_str());
    file.Seek(0, CXFile::begin);
    EXPECT_TRUE(file.ReadStringA(line) && line == "?");
    EXPECT_TRUE(file.SetCodePage(1252));
    EXPECT_TRUE(file.ReadStringA(line) && line == std::string("\x86") + "a?");
}

// Text of every length around the buffer's size, in which characters and line ends lie across its
// end, against the same text held in memory.
TEST_F(TextFile, LinesOfAnyLengthSurvive)
{
    std::mt19937 random(5);
    for (Encoding const &each : encodings) {
        Lines lines;
        CStdioFileEx file(GetPath().c_str(), create | each.flags);
        file.SetLineEnd(CXStdioFile::lineEndCRLF);
        for (unsigned int const length :
            { 0U, 1U, 8190U, 8191U, 8192U, 8193U, 16382U, 40000U, 300001U, 3U, 0U, 8190U }) {
            std::wstring line;
            while (line.size() < length)
                line += random() % 3 ? every_kind : L"x";
            file.WriteString((line + (length % 2 ? L"\n" : L"")).c_str());
            if (length % 2 == 0)
                file.WriteStringA("\n");
            lines.push_back(line);
        }
        file.Flush();
        std::vector<long long> starts;
        file.Seek(0, CXFile::begin);
        CXTString<wchar_t> text;
        for (std::wstring const &line : lines) {
            starts.push_back(static_cast<long long>(file.GetPosition()));
            ASSERT_TRUE(file.ReadString(text) && text == line) << line.size();
        }
        EXPECT_FALSE(file.ReadString(text));
        for (std::size_t i = lines.size(); i-- > 0;) {
            file.Seek(starts[i], CXFile::begin);
            ASSERT_TRUE(file.ReadString(text) && text == lines[i]) << lines[i].size();
        }
    }
}

TEST_F(TextFile, EndlessLinesComeInParts)
{
    // A character of three bytes and a line end lie across the limit.
    std::size_t const size = CXStdioFile::max_line_size;
    WriteBytes("\xEF\xBB\xBF" + std::string(size - 1, 'x') + "\xE2\x82\xAC" + std::string(999, 'y')
        + "\n");
    EXPECT_EQ(
        ReadLines(), (Lines { std::wstring(size - 1, L'x'), L"\u20AC" + std::wstring(999, L'y') }));
    WriteBytes(std::string(size, 'x') + "\r\nz");
    std::wstring all;
    for (std::wstring const &line : ReadLines())
        all += line;
    EXPECT_TRUE(all == std::wstring(size, L'x') + L"z");

    WriteBytes("ab\ncd\nef");
    CStdioFileEx file(GetPath().c_str(), CXFile::modeRead);
    CXTString<wchar_t> text;
    EXPECT_FALSE(file.ReadText(text, 7));
    EXPECT_EQ(text, L"ab\ncd\n");
    EXPECT_EQ(file.GetPosition(), 6U);
    EXPECT_TRUE(file.ReadText(text, 2));
    EXPECT_EQ(text, L"ef");
}

TEST_F(TextFile, IsAFileOfBytes)
{
    CXStdioFile file(GetPath().c_str(), create);
    kor_test::FileBattery(file, 1).Run(1000);
    std::string const large(100000, 'z');
    file.Write(large.data(), 100000);
    file.Seek(-100000, CXFile::current);
    std::string all(100001, 'a');
    EXPECT_EQ(file.Read(all.data(), 100001), 100000U);
    EXPECT_EQ(all, large + "a");
}

TEST_F(TextFile, ReportsFailuresWhenTheyHappen)
{
    CXTString<wchar_t> text(L"old");
    CStdioFileEx closed;
    EXPECT_NE(cause_of<CXFileException>([&] { closed.ReadString(text); }), 0);
    EXPECT_NE(cause_of<CXFileException>([&] { closed.WriteStringA("x"); }), 0);
    WriteBytes("text");
    CStdioFileEx reader(GetPath().c_str(), CXFile::modeRead);
    reader.WriteString(L"x"); // fails when the buffer is written
    EXPECT_EQ(cause_of<CXFileException>([&] { reader.Flush(); }), 5);
    reader.Flush();
    reader.WriteString(L"x");
    EXPECT_EQ(cause_of<CXFileException>([&] { reader.Close(); }), 5);
    EXPECT_FALSE(reader.IsOpen());
    CXStdioFile writer(GetPath().c_str(), CXFile::modeWrite);
    EXPECT_EQ(cause_of<CXFileException>([&] { writer.ReadString(text); }), 5);
    writer.Close();
    EXPECT_EQ(ReadBytes(), "text");
}

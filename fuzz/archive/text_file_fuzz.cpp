// SPDX-License-Identifier: MIT
// Reads text files of arbitrary bytes. The first two bytes choose the flags and how the text is
// read; the rest is the file.
//
// Nothing may crash or hang. Lines read whole, lines read in parts and the text read at once must
// be the same; what was read is the same again after it is written in the same encoding; and a file
// without anything malformed is then the same bytes.
#include "kortools/archive/stdio_file_ex.h"
#include "kortools/platform/file_system.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace {

constexpr wchar_t replacement = 0xFFFD;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// A file of this process, kept open so that each run only rewrites it.
class ScratchFile {
public:
    explicit ScratchFile(char const *name)
        : m_path(get_folder() / (name + std::to_string(s_seed)))
    {
        require(m_file.Open(
            GetPath().c_str(), CXFile::modeReadWrite | CXFile::modeCreate | CXFile::shareDenyNone));
    }
    ~ScratchFile()
    {
        m_file.Close();
        std::filesystem::remove(m_path);
    }
    ScratchFile(ScratchFile const &) = delete;
    ScratchFile &operator=(ScratchFile const &) = delete;

    std::wstring GetPath() const { return m_path.wstring(); }
    void Set(void const *bytes, std::size_t size)
    {
        m_file.SetLength(0);
        m_file.Write(bytes, static_cast<unsigned int>(size));
    }
    std::string Get()
    {
        std::string bytes(static_cast<std::size_t>(m_file.GetLength()), 0);
        m_file.Seek(0, CXFile::begin);
        m_file.Read(bytes.data(), static_cast<unsigned int>(bytes.size()));
        return bytes;
    }

private:
    // In memory where there is such a folder: disks bring a truncated file to the disk.
    static std::filesystem::path get_folder()
    {
        std::filesystem::path const memory = "/dev/shm";
        return std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
    }

    static inline auto const s_seed
        = std::filesystem::file_time_type::clock::now().time_since_epoch().count();

    std::filesystem::path m_path;
    CXFile m_file;
};

unsigned int flags_of(std::uint8_t choice)
{
    unsigned int flags = CXFile::modeRead | CXFile::shareDenyNone;
    flags |= (choice & 1) != 0 ? CStdioFileEx::typeUnicode : 0;
    flags |= (choice & 2) != 0 ? CStdioFileEx::unicodeUTF8 : 0;
    flags |= (choice & 4) != 0 ? CStdioFileEx::unicodeBigEndian : 0;
    flags |= (choice & 8) != 0 ? CXStdioFile::typeBinary : 0;
    return flags;
}

// Of text that is not marked. Characters of 1, 1 or 2, and 1, 2 or 4 bytes.
unsigned int page_of(std::uint8_t choice)
{
    constexpr unsigned int pages[] = { 0, 1252, 932, 54936 };
    return pages[choice >> 4 & 3];
}

std::wstring read_whole_lines(CStdioFileEx &file)
{
    std::wstring text;
    CXTString<wchar_t> line;
    file.Seek(0, CXFile::begin);
    while (file.ReadString(line)) {
        text += line.GetView();
        text += L'\n';
        require(file.GetPosition() <= file.GetLength());
    }
    return text;
}

// Zeros are characters, but a caller cannot see them behind the end of a part.
std::wstring read_parts(CStdioFileEx &file, unsigned int size)
{
    std::wstring text;
    std::wstring buffer(size, L'x');
    file.Seek(0, CXFile::begin);
    for (unsigned long long last = 0; file.ReadString(buffer.data(), size);) {
        text += buffer.c_str();
        require(file.GetPosition() > last || last == 0);
        last = file.GetPosition();
    }
    return text;
}

void check_round_trip(CStdioFileEx &file, std::wstring_view text, std::string_view bytes)
{
    static ScratchFile s_copy("kortools-text-copy");
    unsigned int flags = CXFile::modeReadWrite | CXFile::modeCreate | CXFile::shareDenyNone
        | CXStdioFile::typeBinary | (file.HasMark() ? 0 : CStdioFileEx::unicodeNoMark);
    xTextEncoding const encoding = file.GetEncoding();
    flags |= encoding == xTextANSI ? 0U : CStdioFileEx::typeUnicode;
    flags |= encoding == xTextUTF8 ? CStdioFileEx::unicodeUTF8 : 0U;
    flags |= encoding == xTextUTF16BigEndian ? CStdioFileEx::unicodeBigEndian : 0U;
    CStdioFileEx copy(s_copy.GetPath().c_str(), flags);
    require(copy.GetEncoding() == encoding);
    copy.WriteString(CXTString<wchar_t>(text.data(), static_cast<int>(text.size())));
    CXTString<wchar_t> again;
    copy.Seek(0, CXFile::begin);
    require(copy.ReadText(again, INT_MAX) && again.GetView() == text);
    if (text.find(replacement) == text.npos) {
        copy.Flush();
        require(s_copy.Get() == bytes || text.empty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size)
{
    if (size < 2)
        return 0;
    static ScratchFile s_file("kortools-text-");
    s_file.Set(data + 2, size - 2);
    CStdioFileEx file;
    unsigned int const page = page_of(data[0]);
    require(file.SetCodePage(page) && file.Open(s_file.GetPath().c_str(), flags_of(data[0])));

    CXTString<wchar_t> text;
    require(file.ReadText(text, INT_MAX));
    std::wstring const lines = read_whole_lines(file);
    std::wstring_view const all = text;
    require(lines == all || lines == std::wstring(all) + L'\n');
    if (all.find(L'\0') == all.npos)
        require(read_parts(file, 3U + data[1]) == all);
    CXTString<char> narrow;
    file.Seek(0, CXFile::begin);
    while (file.ReadStringA(narrow)) { }
    require(file.GetPosition() == size - 2);
    if ((data[0] & 8) != 0 && page == 0)
        check_round_trip(file, all, { reinterpret_cast<char const *>(data) + 2, size - 2 });
    return 0;
}

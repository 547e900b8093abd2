// SPDX-License-Identifier: MIT
// Lines of text files beside std::getline, std::wifstream and QTextStream: 200,000 lines of 10 to
// 110 characters, one in 16 not ASCII, from and to the system's cache. Everything read is counted.
#include "kortools/archive/stdio_file_ex.h"

#include <QFile>
#include <QTextStream>
#include <benchmark/benchmark.h>

#include <codecvt>
#include <filesystem>
#include <fstream>
#include <locale>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int line_count = 200'000;

struct Texts {
    std::vector<std::wstring> wide;
    std::vector<std::string> narrow;
    std::vector<QString> qt;
    std::size_t characters = 0;
};

Texts const &get_texts()
{
    static Texts const texts = [] {
        Texts result;
        std::mt19937 random(1);
        for (int i = 0; i < line_count; ++i) {
            std::wstring line(10 + random() % 101, L'x');
            for (wchar_t &ch : line)
                ch = static_cast<wchar_t>(random() % 16 ? L'a' + random() % 26 : 0xE9);
            QString const qt = QString::fromStdWString(line);
            result.characters += line.size();
            result.narrow.push_back(qt.toStdString());
            result.wide.push_back(std::move(line));
            result.qt.push_back(qt);
        }
        return result;
    }();
    return texts;
}

constexpr unsigned int utf8 = CStdioFileEx::typeUnicode | CStdioFileEx::unicodeUTF8;
constexpr unsigned int utf16 = CStdioFileEx::typeUnicode;

std::filesystem::path get_path(char const *name)
{
    return std::filesystem::temp_directory_path() / (std::string("kortools-bench-") + name);
}

void write_file(std::filesystem::path const &path, unsigned int encoding)
{
    CStdioFileEx file(path.wstring().c_str(), CXFile::modeWrite | CXFile::modeCreate | encoding);
    for (std::wstring const &line : get_texts().wide)
        file.WriteString((line + L'\n').c_str());
}

std::filesystem::path const &get_file(unsigned int encoding)
{
    static std::filesystem::path const narrow = [] {
        write_file(get_path("narrow.txt"), utf8 | CStdioFileEx::unicodeNoMark);
        return get_path("narrow.txt");
    }();
    static std::filesystem::path const wide = [] {
        write_file(get_path("utf16.txt"), utf16);
        return get_path("utf16.txt");
    }();
    return encoding == utf16 ? wide : narrow;
}

void check(benchmark::State &state, bool isRight)
{
    if (!isRight)
        state.SkipWithError("the text is not what was written");
}

// --- reading; `Count` opens the file and returns the sum of the lengths of its lines

template <class Count> void read_lines(benchmark::State &state, Count count, std::size_t expected)
{
    std::size_t sum = 0;
    for (auto _ : state)
        sum = count();
    check(state, sum == expected);
    state.SetItemsProcessed(state.iterations() * line_count);
}

std::size_t count_bytes()
{
    std::size_t sum = 0;
    for (std::string const &line : get_texts().narrow)
        sum += line.size();
    return sum;
}

template <unsigned int encoding> std::size_t read_wide()
{
    CStdioFileEx file(get_file(encoding).wstring().c_str(), CXFile::modeRead | encoding);
    std::size_t sum = 0;
    for (CXTString<wchar_t> line; file.ReadString(line);)
        sum += static_cast<std::size_t>(line.GetLength());
    return sum;
}

std::size_t read_narrow()
{
    CXStdioFile file(get_file(utf8).wstring().c_str(), CXFile::modeRead);
    std::size_t sum = 0;
    for (CXTString<char> line; file.ReadStringA(line);)
        sum += static_cast<std::size_t>(line.GetLength());
    return sum;
}

std::size_t read_narrow_std()
{
    std::ifstream file(get_file(utf8));
    std::size_t sum = 0;
    for (std::string line; std::getline(file, line);)
        sum += line.size();
    return sum;
}

std::size_t read_wide_std()
{
    std::wifstream file;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    file.imbue(std::locale(std::locale::classic(), new std::codecvt_utf8<wchar_t>));
#pragma GCC diagnostic pop
    file.open(get_file(utf8));
    std::size_t sum = 0;
    for (std::wstring line; std::getline(file, line);)
        sum += line.size();
    return sum;
}

template <unsigned int encoding> std::size_t read_qt()
{
    QFile file(QString::fromStdString(get_file(encoding).string()));
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    QTextStream stream(&file);
    stream.setEncoding(encoding == utf16 ? QStringConverter::Utf16 : QStringConverter::Utf8);
    std::size_t sum = 0;
    for (QString line; stream.readLineInto(&line);)
        sum += static_cast<std::size_t>(line.size());
    return sum;
}

// --- writing; the lines are flushed once, at the end

template <class Write> void write_lines(benchmark::State &state, Write write)
{
    std::filesystem::path const path = get_path("written.txt");
    for (auto _ : state)
        write(path);
    check(state, std::filesystem::file_size(path) == count_bytes() + line_count);
    std::filesystem::remove(path);
    state.SetItemsProcessed(state.iterations() * line_count);
}

void write_wide(std::filesystem::path const &path)
{
    CStdioFileEx file(path.wstring().c_str(),
        CXFile::modeWrite | CXFile::modeCreate | utf8 | CStdioFileEx::unicodeNoMark);
    for (std::wstring const &line : get_texts().wide) {
        file.WriteString(line.c_str());
        file.WriteString(L"\n");
    }
}

void write_wide_qt(std::filesystem::path const &path)
{
    QFile file(QString::fromStdString(path.string()));
    file.open(QIODevice::WriteOnly | QIODevice::Text);
    QTextStream stream(&file);
    for (QString const &line : get_texts().qt)
        stream << line << '\n';
}

void write_narrow(std::filesystem::path const &path)
{
    CXStdioFile file(path.wstring().c_str(), CXFile::modeWrite | CXFile::modeCreate);
    for (std::string const &line : get_texts().narrow) {
        file.WriteStringA(line.c_str());
        file.WriteStringA("\n");
    }
}

void write_narrow_std(std::filesystem::path const &path)
{
    std::ofstream file(path);
    for (std::string const &line : get_texts().narrow)
        file << line.c_str() << '\n';
}

struct RemoveFiles {
    ~RemoveFiles()
    {
        for (char const *const name : { "narrow.txt", "utf16.txt", "written.txt" })
            std::filesystem::remove(get_path(name));
    }
} const s_remove_files;

std::size_t const characters = [] {
    get_file(utf8); // made before anything is measured
    get_file(utf16);
    return get_texts().characters;
}();

} // namespace

BENCHMARK_CAPTURE(read_lines, x, read_narrow, count_bytes())->Name("read/narrow/KorTools");
BENCHMARK_CAPTURE(read_lines, x, read_narrow_std, count_bytes())->Name("read/narrow/std");
BENCHMARK_CAPTURE(read_lines, x, read_wide<utf8>, characters)->Name("read/UTF-8/KorTools");
BENCHMARK_CAPTURE(read_lines, x, read_wide_std, characters)->Name("read/UTF-8/std");
BENCHMARK_CAPTURE(read_lines, x, read_qt<utf8>, characters)->Name("read/UTF-8/QTextStream");
BENCHMARK_CAPTURE(read_lines, x, read_wide<utf16>, characters)->Name("read/UTF-16/KorTools");
BENCHMARK_CAPTURE(read_lines, x, read_qt<utf16>, characters)->Name("read/UTF-16/QTextStream");
BENCHMARK_CAPTURE(write_lines, x, write_narrow)->Name("write/narrow/KorTools");
BENCHMARK_CAPTURE(write_lines, x, write_narrow_std)->Name("write/narrow/std");
BENCHMARK_CAPTURE(write_lines, x, write_wide)->Name("write/UTF-8/KorTools");
BENCHMARK_CAPTURE(write_lines, x, write_wide_qt)->Name("write/UTF-8/QTextStream");

BENCHMARK_MAIN();

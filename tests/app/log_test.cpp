// SPDX-License-Identifier: MIT
#include "kortools/app/log.h"

#include "kortools/app/application.h"
#include "kortools/app/thread_records.h"
#include "kortools/archive/archive.h"
#include "kortools/archive/stdio_file_ex.h"
#include "kortools/platform/os_error.h"
#include "tests/support/child_process.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <utility>
#include <vector>
#ifndef _WIN32
#include "tests/support/posix/file_size_limit.h"
#endif
namespace {

using Lines = std::vector<std::wstring>;

constexpr int header_lines = 6;

Lines read_lines(std::wstring const &path)
{
    CStdioFileEx file;
    Lines lines;
    if (file.Open(path.c_str(), CXFile::modeRead | CXFile::shareDenyNone)) {
        EXPECT_TRUE(file.HasMark());
        for (CXTString<wchar_t> line; file.ReadString(line);)
            lines.emplace_back(line.GetView());
    }
    return lines;
}

class LogFile : public testing::Test {
protected:
    LogFile() { kortools::app::record_main_thread(); }
    ~LogFile() override { CloseLogFile(); }

    std::wstring GetPath(wchar_t const *name = L"app.log") const { return m_folder.GetFile(name); }
    bool Start(unsigned int level = logLevelAll)
    {
        return SetLogFile(GetPath().c_str(), logFileCreate, level);
    }

    // What stands behind the header.
    Lines GetLines(wchar_t const *name = L"app.log") const
    {
        Lines lines = read_lines(GetPath(name));
        if (lines.size() > 2 && lines[2].starts_with(L"***"))
            lines.erase(lines.begin(), lines.begin() + header_lines);
        return lines;
    }

    TempFolder m_folder;
};

// Runs on a thread of its own.
template <class Call> void run_elsewhere(Call call)
{
    std::thread(call).join();
}

} // namespace

TEST_F(LogFile, BeginsWithAHeader)
{
    ASSERT_TRUE(Start());
    WriteToLogFile(L"%s is %d\n", L"\u20AC", 5);
    WriteToLogFile("%s\n", "narrow");
    std::string bytes = kor_test::read_file(GetPath());
    std::erase(bytes, '\r');
    std::size_t const time = bytes.find('(') + 1; // of the start
    bytes.erase(time, bytes.find(')') - time);
    std::string const stars(25, '*');
    EXPECT_EQ(bytes,
        "\xEF\xBB\xBF\n\n" + stars + "\nLogging information for log_test ()\nRelease Mode\n" + stars
            + "\n\xE2\x82\xAC is 5\nnarrow\n");
}

TEST_F(LogFile, IsOpenedByItsMode)
{
    EXPECT_FALSE(CloseLogFile());
    ASSERT_TRUE(Start());
    WriteToLogFile("first\n");
    EXPECT_FALSE(SetLogFile(GetPath(L"other").c_str(), logFileCreate, 0)) << "one is open";
    EXPECT_EQ(SetLogLevel(logLevelAll), logLevelAll) << "a refused open stores no level";
    EXPECT_TRUE(CloseLogFile());
    EXPECT_EQ(GetLines(), Lines { L"first" });
    for (wchar_t const *const name : { L"app (1).log", L"app (2).log" }) {
        ASSERT_TRUE(SetLogFile(GetPath().c_str(), logFileNew, logLevelAll));
        WriteToLogFile(L"new\n");
        CloseLogFile();
        EXPECT_EQ(GetLines(name), Lines { L"new" });
    }
}

TEST_F(LogFile, IndentsAndCutsOffByThread)
{
    ASSERT_TRUE(Start(1));
    run_elsewhere([] {
        EXPECT_EQ(LogFileAddTab(false), 0U);
        WriteToLogFile("0\n");
        EXPECT_EQ(LogFileAddTab(true), 1U);
        WriteToLogFile("1\n");
        run_elsewhere([] { WriteToLogFile("another's 0\n"); });
        EXPECT_EQ(LogFileAddTab(true), 2U);
        EXPECT_FALSE(IsLogFileEnabled());
        WriteToLogFile("too deep\n");
        EXPECT_EQ(SetLogLevel(2), 1U);
        WriteToLogFile("2\n");
        SetLogLevel(0);
        EXPECT_EQ(LogFileAddTab(false), 1U);
        WriteToLogFile("too deep\n");
        EXPECT_EQ(LogFileAddTab(false), 0U);
        WriteToLogFile("0\n");
    });
    EXPECT_EQ(GetLines(), (Lines { L"0", L"\t1", L"another's 0", L"\t\t2", L"0" }));
}

TEST_F(LogFile, TheMainThreadsIndentationGoesBeforeAllOthers)
{
    ASSERT_TRUE(Start(1));
    LogFileAddTab(true);
    run_elsewhere([] {
        for (int i = 0; i < 3; ++i)
            LogFileAddTab(true);
        EXPECT_FALSE(IsLogFileEnabled()) << "by its own depth";
        WriteToLogFile("under the main thread\n");
    });
    LogFileAddTab(true);
    run_elsewhere([] {
        EXPECT_TRUE(IsLogFileEnabled());
        WriteToLogFile("too deep\n");
    });
    EXPECT_EQ(GetLines(), Lines { L"\tunder the main thread" });
}

TEST_F(LogFile, TakesAnyTextAndChangesNoErrorOfItsCaller)
{
    auto *const pending = new CXException(L"pending");
    XSetThreadException(pending);
    kortools::platform::set_last_os_error(1234);
    SetLogFile(GetPath(L"no/folder").c_str(), logFileCreate);
    ASSERT_TRUE(Start());
    std::wstring const longest(100000, L'\u20AC');
    WriteToLogFile(static_cast<char const *>(nullptr));
    WriteToLogFile(L"%s|", longest.c_str());
    WriteToLogFile(L"\r\na\nb");
    CloseLogFile();
    EXPECT_EQ(kortools::platform::get_last_os_error(), 1234U);
    EXPECT_EQ(XGetThreadException(), pending);
    pending->Delete();
    EXPECT_EQ(GetLines(), (Lines { longest + L"|", L"a", L"b" }));
}

#ifndef _WIN32
// A limit on the size of files stands for the end of the disk: the last write is cut.
TEST_F(LogFile, LeavesOutWholeLinesWhenTheDiskIsFull)
{
    ASSERT_TRUE(Start());
    {
        FileSizeLimit const full(std::filesystem::file_size(GetPath()) + 31);
        for (int i = 0; i < 5; ++i)
            WriteToLogFile("line %d.\n", i);
        EXPECT_EQ(XGetThreadException(), nullptr);
    }
    WriteToLogFile("again\n");
    EXPECT_EQ(GetLines(), (Lines { L"line 0.", L"line 1.", L"line 2.", L"again" }));
}
#endif

// Threads write numbered lines, in blocks of three; whatever else happens to the log meanwhile, no
// line is broken, repeated, out of its thread's order, or among the lines of a block.
TEST_F(LogFile, LinesOfThreadsStayWhole)
{
    constexpr int threads = 4;
    constexpr int blocks = 150;
    ASSERT_TRUE(Start());
    std::vector<std::thread> writers;
    for (int thread = 0; thread < threads; ++thread) {
        writers.emplace_back([thread, this] {
            for (int block = 0; block < blocks; ++block) {
                LogLock(true);
                LogFileAddTab(true);
                for (int part = 0; part < 3; ++part)
                    WriteToLogFile(L"%d %d end\n", thread, block * 3 + part);
                LogFileAddTab(false);
                LogLock(false);
                if (thread == 0 && block % 10 == 0) {
                    SetLogLevel(block % 20 == 0 ? 1 : logLevelAll);
                    CloseLogFile();
                    SetLogFile(GetPath().c_str(), logFileAppend, logLevelAll);
                }
            }
        });
    }
    for (std::thread &writer : writers)
        writer.join();
    CloseLogFile();
    std::vector<int> last(threads, -1);
    int count = 0, block_thread = 0;
    for (std::wstring const &line : read_lines(GetPath())) {
        if (line.empty() || line[0] == L'*' || line[0] == L'L' || line[0] == L'R')
            continue; // a header's
        int thread = 0, number = 0, end = 0;
        std::swscanf(line.c_str(), L"\t%d %d end%n", &thread, &number, &end);
        ASSERT_EQ(static_cast<std::size_t>(end), line.size()) << testing::PrintToString(line);
        if (count++ % 3 == 0)
            block_thread = thread;
        ASSERT_EQ(thread, block_thread);
        ASSERT_EQ(number % 3, (count - 1) % 3);
        ASSERT_GT(number, std::exchange(last[static_cast<std::size_t>(thread)], number));
    }
    EXPECT_GE(count, blocks * 3) << "only other threads may meet a closed log";
}

// --- a process that dies

namespace {

constexpr std::size_t child_threads = 3;

// For each line that WriteToLogFile() returned from, one byte in a file of the thread.
int write_until_killed(std::vector<std::string> const &arguments)
{
    std::wstring const folder(arguments[0].begin(), arguments[0].end());
    SetLogFile((folder + L"/app.log").c_str(), logFileCreate);
    std::vector<std::thread> writers;
    for (std::size_t thread = 0; thread < child_threads; ++thread) {
        writers.emplace_back([thread, folder] {
            CXFile counter((folder + L"/" + std::to_wstring(thread)).c_str(),
                CXFile::modeWrite | CXFile::modeCreate);
            for (int line = 0;; ++line) {
                WriteToLogFile("%d %d\n", static_cast<int>(thread), line);
                counter.Write("x", 1);
            }
        });
    }
    std::this_thread::sleep_for(std::chrono::microseconds(std::stoi(arguments[1])));
    kor_test::kill_this_process();
}
kor_test::ChildPart const s_write_until_killed("write_until_killed", write_until_killed);

} // namespace

TEST_F(LogFile, HoldsEveryLineOfAKilledProcess)
{
    std::mt19937 random(7);
    for (int run = 0; run < 6; ++run) {
        std::string const delay = std::to_string(random() % 60000);
        EXPECT_NE(
            kor_test::run_child("write_until_killed", { m_folder.GetPath().string(), delay }), 0);
        std::vector<std::size_t> found(child_threads, 0);
        for (std::wstring const &line : GetLines()) {
            std::size_t thread = 0, number = 0;
            if (std::swscanf(line.c_str(), L"%zu %zu", &thread, &number) == 2
                && number == found.at(thread))
                ++found[thread];
        }
        for (std::size_t thread = 0; thread < child_threads; ++thread)
            EXPECT_GE(
                found[thread], kor_test::read_file(GetPath(std::to_wstring(thread).c_str())).size())
                << "after " << delay << " us";
        for (auto const &each : std::filesystem::directory_iterator(m_folder.GetPath()))
            std::filesystem::remove(each.path());
    }
}

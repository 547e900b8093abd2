// SPDX-License-Identifier: MIT
#include "kortools/app/log.h"

#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/log_info.h"
#include "kortools/app/thread_records.h"
#include "kortools/archive/archive.h"
#include "kortools/archive/stdio_file_ex.h"
#include "kortools/data/xtime.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <thread>
#include <vector>
#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
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
    std::string const stars(25, '*');
    std::string const name = CXTString<char>(GetApplicationName(true)).GetConstBuffer();
    auto const get_expected = [&] {
        std::string const time
            = CXTString<char>(CXTime::GetTickCount().Format(L"%c")).GetConstBuffer();
        return "\xEF\xBB\xBF\n\n" + stars + "\nLogging information for " + name + " (" + time
            + ")\nRelease Mode\n" + stars + "\n\xE2\x82\xAC is 5\nnarrow\n";
    };
    std::string const before = get_expected();
    ASSERT_TRUE(Start());
    std::string const after = get_expected();
    WriteToLogFile(L"%s is %d\n", L"\u20AC", 5);
    WriteToLogFile("%s\n", "narrow");
    EXPECT_NE(name, "");
    std::ifstream file(m_folder.GetPath() / "app.log", std::ios::binary);
    std::string bytes { std::istreambuf_iterator<char>(file), {} };
    std::erase(bytes, '\r');
    EXPECT_TRUE(bytes == before || bytes == after) << bytes;
}

TEST_F(LogFile, IsOpenedByItsMode)
{
    EXPECT_FALSE(CloseLogFile());
    ASSERT_TRUE(Start());
    WriteToLogFile("first\n");
    EXPECT_FALSE(SetLogFile(GetPath(L"other").c_str(), logFileCreate, 0));
    EXPECT_EQ(SetLogLevel(logLevelAll), logLevelAll) << "a refused open stores no level";
    WriteToLogFile("second\n");
    EXPECT_TRUE(CloseLogFile());
    EXPECT_FALSE(CloseLogFile());
    EXPECT_EQ(GetLines(), (Lines { L"first", L"second" }));
    EXPECT_FALSE(std::filesystem::exists(GetPath(L"other")));

    ASSERT_TRUE(SetLogFile(GetPath().c_str(), logFileAppend, logLevelAll));
    CloseLogFile();
    Lines const both = GetLines();
    ASSERT_EQ(both.size(), 2U + header_lines);
    EXPECT_EQ(both[1], L"second");
    EXPECT_EQ(both[4], both[7]);

    for (wchar_t const *const name : { L"app (1).log", L"app (2).log" }) {
        ASSERT_TRUE(SetLogFile(GetPath().c_str(), logFileNew, logLevelAll));
        WriteToLogFile(L"new\n");
        CloseLogFile();
        EXPECT_EQ(GetLines(name), Lines { L"new" });
    }
    ASSERT_TRUE(Start());
    CloseLogFile();
    EXPECT_EQ(GetLines(), Lines());
}

TEST_F(LogFile, AFailedOpenLeavesOnlyTheLevel)
{
    EXPECT_FALSE(SetLogFile(GetPath(L"no/folder").c_str(), logFileCreate, 3));
    EXPECT_EQ(SetLogLevel(logLevelAll), 3U);
    EXPECT_FALSE(IsLogFileEnabled());
    EXPECT_FALSE(SetLogFile(L"", logFileCreate, logLevelAll));
    WriteToLogFile("nowhere\n");
    EXPECT_EQ(LogFileAddTab(true), 0U);
    CXFile holder((GetPath().c_str()), CXFile::modeWrite | CXFile::modeCreate);
    EXPECT_FALSE(Start()) << "somebody else has it";
}

TEST_F(LogFile, LiesWithTheUsersDataWhenItHasNoDirectory)
{
    CXTString<wchar_t> const folder = GetUserApplicationDataPath();
    std::filesystem::path const native = kortools::platform::to_native_path(folder.GetView());
    std::filesystem::remove_all(native);
    for (wchar_t const *const name : { L"here.log", L"here (1).log" }) {
        ASSERT_TRUE(SetLogFile(L"here.log", logFileNew));
        WriteToLogFile("here\n");
        CloseLogFile();
        std::wstring const path = std::wstring(folder.GetView()) + name;
        EXPECT_EQ(read_lines(path).back(), L"here");
    }
    EXPECT_TRUE(std::filesystem::remove_all(native) == 3U) << native;
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
        EXPECT_TRUE(IsLogFileEnabled());
        WriteToLogFile("2\n");
        SetLogLevel(logLevelNone);
        EXPECT_FALSE(IsLogFileEnabled());
        WriteToLogFile("nothing\n");
        SetLogLevel(0);
        EXPECT_EQ(LogFileAddTab(false), 1U);
        WriteToLogFile("too deep\n");
        EXPECT_EQ(LogFileAddTab(false), 0U);
        EXPECT_TRUE(IsLogFileEnabled());
        WriteToLogFile("0\n");
        SetLogLevel(logLevelAll);
    });
    EXPECT_EQ(GetLines(), (Lines { L"0", L"\t1", L"another's 0", L"\t\t2", L"0" }));
}

TEST_F(LogFile, TheMainThreadsIndentationGoesBeforeAllOthers)
{
    ASSERT_TRUE(Start(1));
    LogFileAddTab(true);
    run_elsewhere([] {
        WriteToLogFile("under the main thread\n");
        for (int i = 0; i < 3; ++i)
            LogFileAddTab(true);
        EXPECT_FALSE(IsLogFileEnabled()) << "by its own depth";
        WriteToLogFile("also\n");
    });
    LogFileAddTab(true);
    run_elsewhere([] {
        EXPECT_TRUE(IsLogFileEnabled());
        WriteToLogFile("too deep\n");
    });
    LogFileAddTab(false);
    LogFileAddTab(false);
    run_elsewhere([] { WriteToLogFile("alone\n"); });
    EXPECT_EQ(GetLines(), (Lines { L"\tunder the main thread", L"\talso", L"alone" }));

    LogFileAddTab(true);
    CloseLogFile();
    ASSERT_TRUE(Start());
    WriteToLogFile("forgotten\n");
    EXPECT_EQ(GetLines(), Lines { L"forgotten" });
}

TEST_F(LogFile, TakesAnyText)
{
    ASSERT_TRUE(Start());
    std::wstring const longest(100000, L'\u20AC');
    WriteToLogFile(static_cast<char const *>(nullptr));
    WriteToLogFile(static_cast<wchar_t const *>(nullptr));
    WriteToLogFile(L"%s|", longest.c_str());
    WriteToLogFile("%d%%", 7);
    WriteToLogFile("");
    WriteToLogFile(L"\r\na\nb");
    EXPECT_EQ(GetLines(), (Lines { longest + L"|7%", L"a", L"b" }));
}

TEST_F(LogFile, ChangesNoErrorOfItsCaller)
{
    auto *const pending = new CXException(L"pending");
    XSetThreadException(pending);
    kortools::platform::set_last_os_error(1234);
    SetLogFile(GetPath(L"no/folder").c_str(), logFileCreate);
    Start();
    WriteToLogFile("x");
    CloseLogFile();
    EXPECT_EQ(kortools::platform::get_last_os_error(), 1234U);
    EXPECT_EQ(XGetThreadException(), pending);
    pending->Delete();
}

#ifndef _WIN32
// A limit on the size of files stands for the end of the disk: the last write is cut.
TEST_F(LogFile, LeavesOutWholeLinesWhenTheDiskIsFull)
{
    ASSERT_TRUE(Start());
    auto const size = std::filesystem::file_size(GetPath());
    struct rlimit saved { };
    getrlimit(RLIMIT_FSIZE, &saved);
    auto const ignored = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit const full { size + 25, saved.rlim_max };
    setrlimit(RLIMIT_FSIZE, &full);
    for (int i = 0; i < 5; ++i)
        WriteToLogFile("line %d.\n", i);
    auto const size_when_full = std::filesystem::file_size(GetPath());
    auto *const pending = XGetThreadException();
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, ignored);
    WriteToLogFile("again\n");
    EXPECT_EQ(size_when_full, size + 24);
    EXPECT_EQ(pending, nullptr);
    EXPECT_EQ(GetLines(), (Lines { L"line 0.", L"line 1.", L"line 2.", L"again" }));

    CloseLogFile();
    EXPECT_TRUE(SetLogFile(L"/dev/full", logFileAppend));
    WriteToLogFile("lost\n");
    EXPECT_TRUE(CloseLogFile());
}
#endif

TEST_F(LogFile, LocksNest)
{
    ASSERT_TRUE(Start());
    LogLock(false); // surplus ones do nothing
    LogLock(true);
    LogLock(true);
    LogLock(false);
    std::thread other([] {
        LogLock(false);
        WriteToLogFile("behind\n");
    });
    for (int i = 0; i < 20; ++i) {
        WriteToLogFile("block\n");
        std::this_thread::yield();
    }
    EXPECT_EQ(GetLines().size(), 20U);
    LogLock(false);
    LogLock(false);
    other.join();
    EXPECT_EQ(GetLines().back(), L"behind");
    run_elsewhere([] { WriteToLogFile("free\n"); });
}

// Threads write numbered lines, in blocks of three; whatever else happens to the log meanwhile, no
// line is broken, repeated, out of its thread's order, or among the lines of a block.
TEST_F(LogFile, LinesOfThreadsStayWhole)
{
    constexpr int threads = 6;
    constexpr int blocks = 150;
    ASSERT_TRUE(Start());
    std::vector<std::thread> writers;
    for (int thread = 0; thread < threads; ++thread) {
        writers.emplace_back([thread, this] {
            for (int block = 0; block < blocks; ++block) {
                LogLock(true);
                LogFileAddTab(true);
                for (int part = 0; part < 3; ++part)
                    WriteToLogFile(L"%d %d %d end\n", thread, block, part);
                LogFileAddTab(false);
                LogLock(false);
                if (thread == 0 && block % 10 == 0) {
                    SetLogLevel(block % 20 == 0 ? 1 : logLevelAll);
                    CloseLogFile();
                    SetLogFile(GetPath().c_str(), logFileAppend, logLevelAll);
                } else if (thread == 1) {
                    IsLogFileEnabled();
                }
            }
        });
    }
    for (std::thread &writer : writers)
        writer.join();
    CloseLogFile();

    std::vector<int> next(threads, -1);
    int thread = 0, block = 0, part = 2, last_thread = 0, last_part = 2, count = 0;
    for (std::wstring const &line : read_lines(GetPath())) {
        wchar_t const first = line.empty() ? L'*' : line[0];
        if (first == L'*' || first == L'L' || first == L'R')
            continue;
        char end[4] = {};
        std::string const narrow(line.begin(), line.end());
        ASSERT_EQ(std::sscanf(narrow.c_str(), "\t%d %d %d %3s", &thread, &block, &part, end), 4)
            << narrow;
        ASSERT_STREQ(end, "end");
        ASSERT_EQ(part, (last_part + 1) % 3);
        ASSERT_TRUE(part == 0 || thread == last_thread);
        ASSERT_GE(block * 3 + part, ++next[static_cast<std::size_t>(thread)]);
        next[static_cast<std::size_t>(thread)] = block * 3 + part;
        last_thread = thread;
        last_part = part;
        ++count;
    }
    EXPECT_GE(count, blocks * 3) << "only other threads may meet a closed log";
}

// --- a process that dies

namespace {

constexpr int child_threads = 3;

// For each line that WriteToLogFile() returned from, one byte in a file of the thread.
int write_until_killed(std::vector<std::string> const &arguments)
{
    std::wstring const folder(arguments[0].begin(), arguments[0].end());
    SetLogFile((folder + L"/app.log").c_str(), logFileCreate);
    std::vector<std::thread> writers;
    for (int thread = 0; thread < child_threads; ++thread) {
        writers.emplace_back([thread, folder] {
            CXFile counter((folder + L"/" + std::to_wstring(thread)).c_str(),
                CXFile::modeWrite | CXFile::modeCreate);
            for (int line = 0;; ++line) {
                WriteToLogFile("%d %d\n", thread, line);
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
    std::mt19937 random(std::random_device {}());
    std::size_t most = 0;
    for (int run = 0; run < 10; ++run) {
        std::string const delay = std::to_string(random() % 60000);
        EXPECT_NE(
            kor_test::run_child("write_until_killed", { m_folder.GetPath().string(), delay }), 0);
        std::vector<std::size_t> found(child_threads, 0);
        for (std::wstring const &line : GetLines()) {
            int thread = 0;
            std::size_t number = 0;
            if (std::swscanf(line.c_str(), L"%d %zu", &thread, &number) == 2
                && number == found.at(static_cast<std::size_t>(thread)))
                ++found[static_cast<std::size_t>(thread)];
        }
        for (int thread = 0; thread < child_threads; ++thread) {
            std::error_code absent;
            auto const written
                = std::filesystem::file_size(GetPath(std::to_wstring(thread).c_str()), absent);
            if (!absent) {
                EXPECT_GE(found[static_cast<std::size_t>(thread)], written)
                    << "after " << delay << " us";
            }
            most = std::max(most, found[static_cast<std::size_t>(thread)]);
        }
        for (auto const &each : std::filesystem::directory_iterator(m_folder.GetPath()))
            std::filesystem::remove(each.path());
    }
    EXPECT_GT(most, 0U) << "no child came to writing";
}

TEST(LogInfo, ShowsMessagesDownToItsLevel)
{
    CLogInfo messages(1);
    messages.Add(L"a");
    messages.Add(L"b", 1);
    messages.Add(L"c", 2);
    EXPECT_EQ(messages.GetText(), L"a\n\tb\n");
    messages.SetLevel(2);
    EXPECT_EQ(messages.GetText(), L"a\n\tb\n\t\tc\n");
    EXPECT_EQ(messages.GetMessages().GetSize(), 3);
}

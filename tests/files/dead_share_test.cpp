// SPDX-License-Identifier: MIT
// Calls about a share that does not answer come back in time and leave nothing behind.
#include "kortools/data/system_time.h"
#include "kortools/files/current_directory.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_find.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/native_path.h"
#include "tests/files/dead_file_system.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

using namespace kortools::platform;
namespace fs = std::filesystem;

namespace {

constexpr unsigned int late = 0xFFFFFFFF;

long count_threads()
{
    return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
}

// Threads that were left behind end when they are answered, but not at once.
bool wait_until(std::function<bool()> const &is_true)
{
    for (int i = 0; i < 500 && !is_true(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return is_true();
}

class DeadShare : public testing::Test {
protected:
    DeadShare() { map_share(L"\\\\dead\\share", m_disk.GetFolder()); }
    ~DeadShare() override
    {
        m_disk.Release();
        EXPECT_TRUE(wait_until([&] { return count_threads() <= m_threads; }));
        map_share(L"\\\\dead\\share", "");
    }

    DeadFileSystem m_disk;
    long m_threads = count_threads();
};

} // namespace

TEST_F(DeadShare, ACallComesBackInTimeAndSaysThatItIsLate)
{
    RecordProperty("mounted", m_disk.IsMounted());
    CXTString<wchar_t> const dead = L"\\\\dead\\share\\dead";
    std::function<bool(unsigned int *)> const calls[] = {
        [&](unsigned int *timeout) { return fileExists(dead, timeout); },
        [&](unsigned int *timeout) { return fileDirectoryExists(dead, timeout); },
        [&](unsigned int *timeout) { return fileIsDirectory(dead, false, timeout); },
        [&](unsigned int *timeout) { return fileGetFileCount(dead, true, timeout) >= 0; },
        [&](unsigned int *timeout) { return filePushCurrentDirectory(dead, timeout); },
        [&](unsigned int *timeout) {
            return filePathContainMatchingFile(dead, L"*", nullptr, timeout);
        },
        [&](unsigned int *timeout) { return fileCreateDirectory(dead, false, timeout); },
        [&](unsigned int *timeout) { return fileCreateDirectory(dead + L"\\a\\b", true, timeout); },
    };
    for (auto const &call : calls) {
        long long shortest = 1'000'000; // of a few, because the machine may be busy
        for (int i = 0; i < 3; ++i) {
            unsigned int timeout = 100;
            long long const start = timeGetTick();
            EXPECT_FALSE(call(&timeout));
            EXPECT_EQ(get_last_os_error(), 1460U);
            shortest = std::min(shortest, timeGetTick() - start);
            EXPECT_EQ(timeout, late);
        }
        EXPECT_GE(shortest, 90);
        EXPECT_LE(shortest, 150);
    }
}

TEST_F(DeadShare, AbsentIsNotLateAndTheLivingStillAnswer)
{
    unsigned int timeout = 5000;
    EXPECT_FALSE(fileExists(L"\\\\dead\\share\\none", &timeout));
    EXPECT_EQ(timeout, 5000U);
    unsigned int dead_timeout = 20;
    EXPECT_FALSE(fileExists(L"\\\\dead\\share\\dead", &dead_timeout));
    EXPECT_EQ(fileExists(L"\\\\dead\\share\\alive", &timeout), m_disk.IsMounted());
    TempFolder const folder;
    timeout += 0x80000000;
    EXPECT_TRUE(fileExists(folder.GetPath().wstring().c_str(), &timeout));
    EXPECT_EQ(timeout, 5000U);
}

TEST_F(DeadShare, AThousandLateCallsLeaveAHandfulOfThreads)
{
    TempFolder const folder; // with a link to the share: what waits through it counts for the share
    fs::create_directory_symlink(m_disk.GetFolder(), folder.GetPath() / "link");
    for (int i = 0; i < 1000; ++i) {
        CXTString<wchar_t> path = folder.GetFile(L"link\\dead").c_str();
        if (i % 2 != 0)
            path = L"\\\\dead\\share\\dead";
        if (i % 4 >= 2)
            path.AppendFormat(L"%d", i);
        unsigned int timeout = 0x80000001;
        EXPECT_FALSE(fileExists(path, &timeout));
        EXPECT_EQ(timeout, late) << i;
        ASSERT_LE(count_threads(), m_threads + 20) << i;
    }
    unsigned int timeout = 0x80000000 + (m_disk.IsMounted() ? 10000 : 100);
    EXPECT_EQ(fileExists(folder.GetPath().wstring().c_str(), &timeout), m_disk.IsMounted())
        << "on another mount";
    m_disk.Release();
    timeout = 10000;
    EXPECT_FALSE(fileExists(L"\\\\dead\\share\\dead", &timeout));
    EXPECT_EQ(timeout, 10000U) << "the share is back";
}

TEST(LateCalls, DirectoriesThatNobodyWaitsForAreTakenBack)
{
    static std::atomic<bool> s_may_go;
    s_may_go = false;
    long const threads = count_threads();
    s_call_hook = [](std::string const &path) {
        while (path.ends_with("slow") && !s_may_go)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    TempFolder const folder;
    unsigned int timeout = 0x80000000 + 10;
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"slow").c_str(), false, &timeout));
    EXPECT_EQ(timeout, late);
    timeout = 0x80000000 + 100;
    fs::create_directory(folder.GetPath() / "b");
    EXPECT_FALSE(fileCreateDirectory(folder.GetFile(L"b\\c\\slow").c_str(), true, &timeout));
    EXPECT_EQ(timeout, late);
    s_may_go = true;
    EXPECT_TRUE(wait_until([&] { return count_threads() <= threads; }));
    s_call_hook = nullptr;
    EXPECT_FALSE(fs::exists(folder.GetPath() / "slow"));
    EXPECT_TRUE(fs::is_empty(folder.GetPath() / "b"));
}

// SPDX-License-Identifier: MIT
// Calls about a share that does not answer come back in time and leave nothing behind.
#include "kortools/files/current_directory.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_find.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/native_path.h"
#include "tests/support/temp_folder.h"

#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>

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

// A folder of a share: names in it that begin with "dead" do not answer, as when the server is
// gone.
class DeadShare : public testing::Test {
protected:
    DeadShare()
    {
        map_share(L"\\\\dead\\share", m_folder.GetPath().string());
        s_current = this;
        s_call_hook = [](std::string const &path) {
            if (fs::weakly_canonical(path).string().starts_with(s_current->get_dead_prefix()))
                s_current->hold_call();
        };
    }
    ~DeadShare() override
    {
        Release();
        EXPECT_TRUE(wait_until([&] { return count_threads() <= m_threads; }));
        s_call_hook = nullptr;
        map_share(L"\\\\dead\\share", "");
    }
    // Everything that waits goes on, and nothing waits again.
    void Release()
    {
        std::scoped_lock const lock(m_mutex);
        m_is_released = true;
        m_changed.notify_all();
    }

    TempFolder m_folder;
    long m_threads = count_threads();

private:
    std::string get_dead_prefix() const { return (m_folder.GetPath() / "dead").string(); }
    void hold_call()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_is_released; });
    }

    static inline DeadShare *s_current = nullptr;
    std::mutex m_mutex; // guards the rest
    std::condition_variable m_changed;
    bool m_is_released = false;
};

} // namespace

TEST_F(DeadShare, ACallComesBackInTimeAndSaysThatItIsLate)
{
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
        [&](unsigned int *timeout) { return fileCreateDirectory(dead + L"\\a\\b", true, timeout); }
    };
    for (auto const &call : calls) {
        unsigned int timeout = 100;
        auto const start = std::chrono::steady_clock::now();
        EXPECT_FALSE(call(&timeout));
        EXPECT_EQ(get_last_os_error(), 1460U);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(90));
        EXPECT_EQ(timeout, late) << &call - calls;
    }
}

TEST_F(DeadShare, HundredsOfLateCallsLeaveAHandfulOfThreads)
{
    TempFolder const folder; // with a link to the share: what waits through it counts for the share
    fs::create_directory_symlink(m_folder.GetPath(), folder.GetPath() / "link");
    unsigned int timeout = 20000;
    EXPECT_FALSE(fileExists(L"\\\\dead\\share\\none", &timeout));
    EXPECT_EQ(timeout, 20000U) << "absent is not late";
    for (int i = 0; i < 400; ++i) {
        CXTString<wchar_t> path = folder.GetFile(L"link\\dead").c_str();
        if (i % 2 != 0)
            path = L"\\\\dead\\share\\dead";
        if (i % 4 >= 2)
            path.AppendFormat(L"%d", i);
        timeout = 0x80000001;
        EXPECT_FALSE(fileExists(path, &timeout));
        EXPECT_EQ(timeout, late) << i;
        ASSERT_LE(count_threads(), m_threads + 20) << i;
    }
    Release();
    timeout = 20000;
    EXPECT_FALSE(fileExists(L"\\\\dead\\share\\dead", &timeout));
    EXPECT_EQ(timeout, 20000U) << "the share is back";
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

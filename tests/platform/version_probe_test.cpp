// SPDX-License-Identifier: MIT
#include "kortools/platform/version_probe.h"

#include "kortools/platform/file_system.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <thread>

namespace platform = kortools::platform;

using platform::ProbeAnswer;
using platform::ProbeResult;
using platform::VersionProbe;

namespace {

constexpr unsigned int long_ms = 20000; // more than a busy machine needs
constexpr unsigned int short_ms = 200;

ProbeAnswer ask(VersionProbe &probe, std::string const &plugin, unsigned int limit_ms = long_ms)
{
    platform::set_probe_program(KOR_PLUGIN_PROBE);
    std::wstring const path = platform::from_native_path(KOR_TEST_PLUGINS "/" + plugin + ".dll");
    return probe.ask(path.c_str(), "BrantisGetPluginVersion", limit_ms);
}

unsigned int ask_process(VersionProbe &probe)
{
    ProbeAnswer const answer = ask(probe, "tells_process");
    EXPECT_EQ(answer.result, ProbeResult::Answered) << answer.text;
    return answer.number;
}

// A host whose plug-in hangs.
int host(std::vector<std::string> const &)
{
    VersionProbe probe;
    return ask(probe, "hangs_at_start").result == ProbeResult::Hung ? 1 : 2;
}
kor_test::ChildPart const s_host("host", host);

// Waits until the file ends with '.', and returns the number in front of it.
int read_number(std::filesystem::path const &path)
{
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < end) {
        int number = 0;
        char dot = 0;
        if (std::ifstream(path) >> number >> dot && dot == '.')
            return number;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 0;
}

// A process that nobody waits for any more is gone, too, though its number is not.
bool is_running(int process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string number;
    std::string name;
    std::string state;
    return file >> number >> name >> state && state != "Z";
}

bool is_gone(int process)
{
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (is_running(process) && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return !is_running(process);
}

} // namespace

TEST(VersionProbe, AsksAllInOneProcessUntilThatCrashesOrHangs)
{
    unsigned int last = 0;
    {
        VersionProbe probe;
        unsigned int const first = ask_process(probe);
        EXPECT_EQ(ask(probe, "good").number, 0x50000U);
        EXPECT_EQ(ask(probe, "talks").number, 0x50000U);
        EXPECT_EQ(ask(probe, "other_version").number, 0x40001U);
        EXPECT_EQ(ask(probe, "no_version").result, ProbeResult::NoFunction);
        EXPECT_EQ(ask(probe, "missing_dependency").text, "absent.so");
        EXPECT_EQ(ask(probe, "refuses").result, ProbeResult::NotLoaded);
        EXPECT_EQ(ask_process(probe), first);

        ProbeAnswer const crash = ask(probe, "crashes_at_start");
        EXPECT_EQ(crash.result, ProbeResult::Crashed);
        EXPECT_EQ(crash.text, "signal 6 (Aborted)");
        unsigned int const second = ask_process(probe);
        EXPECT_NE(second, first);

        EXPECT_EQ(ask(probe, "hangs_at_start", short_ms).result, ProbeResult::Hung);
        last = ask_process(probe);
        EXPECT_NE(last, second);
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1); // not even a zombie is left
    EXPECT_EQ(errno, ECHILD);
    EXPECT_TRUE(is_gone(static_cast<int>(last)));
}

// The second library finds the first one's variable instead of its own, as both define it and the
// loader keeps one of such.
TEST(VersionProbe, DoesNotBlameALibraryForWhatAnEarlierOneDid)
{
    VersionProbe probe;
    unsigned int const first = ask_process(probe);
    EXPECT_EQ(ask(probe, "shares_nothing").number, 0x50000U);
    EXPECT_EQ(ask(probe, "shares_number").number, 0x50000U);
    EXPECT_NE(ask_process(probe), first);
}

TEST(VersionProbe, TakesItsProcessAlongWhenTheHostDies)
{
    TempFolder const folder;
    std::filesystem::path const file = folder.GetPath() / "process";
    setenv("KOR_TEST_PROCESS_FILE", file.c_str(), 1);
    kor_test::ChildProcess host("host", {});
    unsetenv("KOR_TEST_PROCESS_FILE");
    int const process = read_number(file);
    ASSERT_GT(process, 0);
    host.kill();
    EXPECT_TRUE(is_gone(process));
}

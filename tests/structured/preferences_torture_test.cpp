// SPDX-License-Identifier: MIT
// Processes that are killed while they save, and processes and threads that save at the same time.
#include "tests/structured/preferences_support.h"
#include "tests/support/child_process.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <thread>

using namespace kor_test;

namespace {

#if defined(_WIN32) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kills = 20; // a process takes long to start
constexpr unsigned saves = 100;
#else
constexpr int kills = 300;
constexpr unsigned saves = 500;
#endif

constexpr unsigned own_id = 7;
constexpr std::array<unsigned, 3> other_ids = { 1, 9, 8 };

std::wstring widen(std::string const &path)
{
    return std::filesystem::path(path).wstring();
}

// Numbers that a child has saved, for others to see: each is its number of bytes.
unsigned get_progress(std::string const &path)
{
    std::error_code error;
    auto const size = std::filesystem::file_size(path, error);
    return error ? 0 : static_cast<unsigned>(size);
}

// Saves numbers, from the progress so far on, for ever.
int save_for_ever(std::vector<std::string> const &arguments)
{
    std::wstring const path = widen(arguments[0]);
    std::ofstream progress(arguments[1], std::ios::binary | std::ios::app);
    for (unsigned number = get_progress(arguments[1]) + 1;; ++number) {
        if (!save_number(path, own_id, 1, number))
            return 1;
        progress.put('x').flush();
    }
}
ChildPart const s_save_for_ever("save_for_ever", save_for_ever);

// Counts a record up, and fails when it does not find its own last number.
int count_up(std::vector<std::string> const &arguments)
{
    std::wstring const path = widen(arguments[0]);
    auto const id = static_cast<unsigned>(std::stoul(arguments[1]));
    for (unsigned number = 0; number < saves; ++number) {
        if (!save_number(path, id, 1, number) || load_number(path, id, 1) != number)
            return 1;
    }
    return 0;
}
ChildPart const s_count_up("count_up", count_up);

class PreferencesTorture : public testing::Test {
protected:
    std::string get_path(char const *name) const { return (folder.GetPath() / name).string(); }

    TempFolder folder { get_fast_folder() };
    std::string const path = get_path("App.prefs");
    std::wstring const wide_path = widen(path);
};

TEST_F(PreferencesTorture, KilledWritersLeaveAllRecordsWhole)
{
    for (unsigned id : other_ids)
        ASSERT_TRUE(save_number(wide_path, id, 1, id + 1000));
    std::string const progress = get_path("progress");
    std::mt19937 random(3);
    for (int kill = 0; kill < kills; ++kill) {
        unsigned const start = get_progress(progress);
        ChildProcess child("save_for_ever", { path, progress });
        while (get_progress(progress) == start)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2500));
        child.kill();

        unsigned const saved = get_progress(progress);
        auto const number = load_number(wide_path, own_id, 1);
        ASSERT_TRUE(number == saved || number == saved + 1)
            << "after kill " << kill << ": saved " << saved << ", found " << number.value_or(0);
        for (unsigned id : other_ids)
            ASSERT_EQ(load_number(wide_path, id, 1), id + 1000) << "after kill " << kill;
    }
    ASSERT_TRUE(save_number(wide_path, own_id, 1, 5));
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));
}

TEST_F(PreferencesTorture, ProcessesThatSaveAtTheSameTimeLoseNothing)
{
    ChildProcess one("count_up", { path, "1" });
    ChildProcess other("count_up", { path, "2" });
    std::optional<unsigned> last;
    while (last != saves - 1) { // and one that only reads
        auto const number = load_number(wide_path, 2, 1);
        ASSERT_FALSE(last && (!number || *number < *last));
        last = number;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(one.wait(), 0);
    EXPECT_EQ(other.wait(), 0);
    EXPECT_EQ(load_number(wide_path, 1, 1), saves - 1);
    EXPECT_EQ(load_number(wide_path, 2, 1), saves - 1);
}

TEST_F(PreferencesTorture, ThreadsThatSaveAtTheSameTimeLoseNothing)
{
    std::vector<std::thread> threads;
    std::array<int, 4> results {};
    for (unsigned id = 0; id < results.size(); ++id)
        threads.emplace_back([&, id] {
            for (unsigned number = 0; number < saves / 5; ++number) {
                bool const good = save_number(wide_path, id, 1, number)
                    && load_number(wide_path, id, 1) == number;
                results[id] += good ? 0 : 1;
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(std::ranges::count(results, 0), static_cast<long>(results.size()));
}

} // namespace

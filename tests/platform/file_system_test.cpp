// SPDX-License-Identifier: MIT
#include "kortools/platform/file_system.h"

#include "kortools/platform/os_error.h"
#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <thread>

using namespace kortools::platform;

namespace {

// One way to open a file, with what it uses and what it grants to others as bits: 1 reading, 2
// writing.
struct Mode {
    unsigned int uses; // not 0
    unsigned int grants;
};

std::vector<Mode> get_all_modes()
{
    std::vector<Mode> modes;
    for (unsigned int i = 4; i < 16; ++i)
        modes.push_back({ i / 4, i % 4 });
    return modes;
}

bool fits(Mode const &one, std::vector<Mode> const &others)
{
    return std::ranges::all_of(others, [&](Mode const &other) {
        return (one.uses & ~other.grants) == 0 && (other.uses & ~one.grants) == 0;
    });
}

FileHandle open_as(
    std::wstring const &path, Mode const &mode, FileCreation creation = FileCreation::OpenExisting)
{
    return open_file(path.c_str(), static_cast<FileAccess>(mode.uses - 1),
        static_cast<FileSharing>(mode.grants), creation);
}

bool is_open(FileHandle file)
{
    return file != invalid_file_handle();
}

constexpr int file_count = 36;

// Opens file0, file1, ... of the folder in every mode and writes down which opens succeed.
int try_all_modes(std::vector<std::string> const &arguments)
{
    std::filesystem::path const folder = arguments.at(0);
    std::ofstream results(folder / "results");
    for (int i = 0; i < file_count; ++i) {
        for (Mode const &mode : get_all_modes()) {
            FileHandle const file
                = open_as((folder / ("file" + std::to_string(i))).wstring(), mode);
            results << (is_open(file) ? 1 : get_last_os_error() == 32 ? 0 : 9);
            if (is_open(file))
                close_file(file);
        }
    }
    return results ? 0 : 1;
}
kor_test::ChildPart const s_try_all_modes("try_all_modes", try_all_modes);

} // namespace

TEST(FileSystem, SharingHoldsAgainstEveryOpenInEveryProcess)
{
    TempFolder const folder;
    std::vector<Mode> const modes = get_all_modes();
    std::mt19937 random(7);
    std::vector<FileHandle> files;
    std::string expected;
    for (std::size_t i = 0; i < file_count; ++i) {
        std::wstring const path = folder.GetFile(L"file" + std::to_wstring(i));
        std::vector<Mode> holders;
        for (int turn = 0; turn < 30; ++turn) {
            Mode const mode = modes[turn == 0 ? i % modes.size() : random() % modes.size()];
            FileHandle const file = open_as(path, mode, FileCreation::OpenAlways);
            ASSERT_EQ(is_open(file), fits(mode, holders));
            if (is_open(file)) {
                holders.push_back(mode);
                files.push_back(file);
            } else {
                ASSERT_EQ(get_last_os_error(), 32U);
            }
            if (turn % 10 == 9 && holders.size() > 1) {
                ASSERT_TRUE(close_file(files.back()));
                files.pop_back();
                holders.pop_back();
            }
        }
        for (Mode const &mode : modes)
            expected += fits(mode, holders) ? '1' : '0';
    }
    ASSERT_EQ(kor_test::run_child("try_all_modes", { folder.GetPath().string() }), 0);
    EXPECT_EQ(folder.Read("results"), expected);
    for (FileHandle const file : files)
        close_file(file);
    ASSERT_EQ(kor_test::run_child("try_all_modes", { folder.GetPath().string() }), 0);
    EXPECT_EQ(folder.Read("results"), std::string(expected.size(), '1'));
}

TEST(FileSystem, RacingOpensNeverShareWhatOneOfThemDenies)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"raced");
    std::atomic<int> writers { 0 };
    std::atomic<int> successes { 0 };
    auto const race = [&](unsigned int uses) {
        for (int turn = 0; turn < 200; ++turn) {
            FileHandle const file = open_as(path, { uses, 1 }, FileCreation::OpenAlways);
            if (!is_open(file)) {
                EXPECT_EQ(get_last_os_error(), 32U);
                continue;
            }
            EXPECT_EQ(writers++, 0);
            ++successes;
            --writers;
            close_file(file);
        }
    };
    std::thread first(race, 2);
    std::thread second(race, 3);
    race(2);
    first.join();
    second.join();
    EXPECT_GT(successes, 0);
}

TEST(FileSystem, ARefusedOpenKeepsTheContents)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"file");
    folder.Write("file", "text");
    FileHandle const holder = open_as(path, { 1, 1 });
    EXPECT_FALSE(is_open(open_as(path, { 2, 3 }, FileCreation::CreateAlways)));
    EXPECT_EQ(get_last_os_error(), 32U);
    close_file(holder);
    EXPECT_EQ(folder.Read("file"), "text");

    // Emptying the file is writing, but it is over when the open returns.
    FileHandle const creator = open_as(path, { 1, 1 }, FileCreation::CreateAlways);
    EXPECT_EQ(get_file_size(creator), 0);
    FileHandle const reader = open_as(path, { 1, 1 });
    EXPECT_TRUE(is_open(reader));
    close_file(creator);
    close_file(reader);
}

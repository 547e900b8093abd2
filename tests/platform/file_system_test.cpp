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

// One way to open a file: reads and writes are what it uses and what it grants to others.
struct Mode {
    FileAccess access;
    FileSharing sharing;

    bool uses_reading() const { return access != FileAccess::Write; }
    bool uses_writing() const { return access != FileAccess::Read; }
    bool grants_reading() const { return int(sharing) & 1; }
    bool grants_writing() const { return int(sharing) & 2; }
};

std::vector<Mode> get_all_modes()
{
    std::vector<Mode> modes;
    for (FileAccess access : { FileAccess::Read, FileAccess::Write, FileAccess::ReadWrite }) {
        for (FileSharing sharing :
            { FileSharing::None, FileSharing::Read, FileSharing::Write, FileSharing::ReadWrite })
            modes.push_back({ access, sharing });
    }
    return modes;
}

bool permits(Mode const &one, Mode const &other)
{
    return (!other.uses_reading() || one.grants_reading())
        && (!other.uses_writing() || one.grants_writing());
}

bool are_compatible(Mode const &one, Mode const &other)
{
    return permits(one, other) && permits(other, one);
}

FileHandle open_as(
    std::wstring const &path, Mode const &mode, FileCreation creation = FileCreation::OpenExisting)
{
    return open_file(path.c_str(), mode.access, mode.sharing, creation);
}

bool is_open(FileHandle file)
{
    return file != invalid_file_handle();
}

void write_text(std::wstring const &path, std::string const &text)
{
    std::ofstream(std::filesystem::path(path), std::ios::binary) << text;
}

std::string read_text(std::wstring const &path)
{
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

std::wstring get_name(TempFolder const &folder, std::size_t number)
{
    return folder.GetFile(L"file" + std::to_wstring(number));
}

// Opens file0, file1, ... of the folder in every mode and writes down which opens succeed.
int try_all_modes(std::vector<std::string> const &arguments)
{
    std::filesystem::path const folder = arguments.at(0);
    std::ofstream results(folder / "results");
    std::vector<Mode> const modes = get_all_modes();
    for (std::size_t i = 0; i < modes.size(); ++i) {
        for (Mode const &mode : modes) {
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

TEST(FileSystem, SharingHoldsAgainstASecondProcess)
{
    TempFolder const folder;
    std::vector<Mode> const modes = get_all_modes();
    std::vector<FileHandle> files;
    std::string expected;
    for (Mode const &mode : modes) {
        write_text(get_name(folder, files.size()), "text");
        files.push_back(open_as(get_name(folder, files.size()), mode));
        ASSERT_TRUE(is_open(files.back()));
        for (Mode const &other : modes)
            expected += are_compatible(mode, other) ? '1' : '0';
    }
    ASSERT_EQ(kor_test::run_child("try_all_modes", { folder.GetPath().string() }), 0);
    EXPECT_EQ(read_text(folder.GetFile(L"results")), expected);
    for (FileHandle const file : files)
        close_file(file);
    ASSERT_EQ(kor_test::run_child("try_all_modes", { folder.GetPath().string() }), 0);
    EXPECT_EQ(read_text(folder.GetFile(L"results")), std::string(expected.size(), '1'));
}

TEST(FileSystem, SharingIsCheckedAgainstEveryOpenOfTheFile)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"shared");
    write_text(path, "text");
    std::vector<Mode> const modes = get_all_modes();
    std::vector<std::pair<Mode, FileHandle>> holders;
    std::mt19937 random(7);
    for (int step = 0; step < 400; ++step) {
        if (!holders.empty() && random() % 3 == 0) {
            std::size_t const victim = random() % holders.size();
            ASSERT_TRUE(close_file(holders[victim].second));
            holders.erase(holders.begin() + std::ptrdiff_t(victim));
        }
        Mode const mode = modes[random() % modes.size()];
        bool const expected = std::ranges::all_of(
            holders, [&](auto const &holder) { return are_compatible(mode, holder.first); });
        FileHandle const file = open_as(path, mode);
        ASSERT_EQ(is_open(file), expected) << "step " << step;
        if (expected)
            holders.emplace_back(mode, file);
        else
            ASSERT_EQ(get_last_os_error(), 32U);
    }
    for (auto const &holder : holders)
        close_file(holder.second);
}

TEST(FileSystem, RacingOpensNeverShareWhatOneOfThemDenies)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"raced");
    std::atomic<int> writers { 0 };
    std::atomic<int> successes { 0 };
    auto const race = [&](FileAccess access) {
        for (int turn = 0; turn < 300; ++turn) {
            FileHandle const file
                = open_as(path, { access, FileSharing::Read }, FileCreation::OpenAlways);
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
    std::thread first(race, FileAccess::Write);
    std::thread second(race, FileAccess::ReadWrite);
    race(FileAccess::Write);
    first.join();
    second.join();
    EXPECT_GT(successes, 100);
}

TEST(FileSystem, CreationKeepsOrEmptiesTheFileButNeverARefusedOne)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"file");
    Mode const read { FileAccess::Read, FileSharing::ReadWrite };
    Mode const write { FileAccess::Write, FileSharing::ReadWrite };

    EXPECT_FALSE(is_open(open_as(path, read)));
    EXPECT_EQ(get_last_os_error(), 2U);
    EXPECT_TRUE(close_file(open_as(path, write, FileCreation::OpenAlways)));
    write_text(path, "text");
    EXPECT_TRUE(close_file(open_as(path, write, FileCreation::OpenAlways)));
    EXPECT_EQ(read_text(path), "text");
    EXPECT_TRUE(close_file(open_as(path, read, FileCreation::CreateAlways)));
    EXPECT_EQ(read_text(path), "");

    write_text(path, "text");
    FileHandle const holder = open_as(path, { FileAccess::Read, FileSharing::Read });
    EXPECT_FALSE(is_open(open_as(path, write, FileCreation::CreateAlways)));
    EXPECT_EQ(get_last_os_error(), 32U);
    close_file(holder);
    EXPECT_EQ(read_text(path), "text");

    // The truncation is over: a reader that shares only reading is welcome.
    FileHandle const creator
        = open_as(path, { FileAccess::Read, FileSharing::Read }, FileCreation::CreateAlways);
    FileHandle const reader = open_as(path, { FileAccess::Read, FileSharing::Read });
    EXPECT_TRUE(is_open(creator));
    EXPECT_TRUE(is_open(reader));
    close_file(creator);
    close_file(reader);
}

TEST(FileSystem, FailuresHaveTheCodesOfWindows)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"file");
    for (FileAccess access : { FileAccess::Read, FileAccess::Write, FileAccess::ReadWrite }) {
        for (FileCreation creation :
            { FileCreation::OpenExisting, FileCreation::CreateAlways, FileCreation::OpenAlways }) {
            Mode const mode { access, FileSharing::ReadWrite };
            EXPECT_FALSE(is_open(open_as(folder.GetPath().wstring(), mode, creation)));
            EXPECT_EQ(get_last_os_error(), 5U);
            EXPECT_FALSE(is_open(open_as(folder.GetFile(L"no folder") + L"/file", mode, creation)));
            EXPECT_EQ(get_last_os_error(), 3U);
        }
    }

    char byte = 'x';
    Mode const read { FileAccess::Read, FileSharing::None };
    FileHandle const reader = open_as(path, read, FileCreation::OpenAlways);
    EXPECT_FALSE(write_file(reader, &byte, 1));
    EXPECT_EQ(get_last_os_error(), 5U);
    EXPECT_FALSE(set_file_size(reader, 1)); // Wine's code differs
    EXPECT_TRUE(flush_file(reader));
    EXPECT_EQ(seek_file(reader, 2, SeekOrigin::Begin), 2);
    EXPECT_EQ(seek_file(reader, -3, SeekOrigin::Current), -1);
    EXPECT_EQ(get_last_os_error(), 131U);
    EXPECT_EQ(seek_file(reader, 0, SeekOrigin::Current), 2);
    EXPECT_TRUE(close_file(reader));

    FileHandle const writer = open_as(path, { FileAccess::Write, FileSharing::None });
    EXPECT_EQ(read_file(writer, &byte, 1), -1);
    EXPECT_EQ(get_last_os_error(), 5U);
    EXPECT_TRUE(close_file(writer));

    FileHandle const none = invalid_file_handle();
    EXPECT_TRUE(read_file(none, &byte, 1) == -1 && get_last_os_error() == 6);
    EXPECT_TRUE(!write_file(none, &byte, 1) && get_last_os_error() == 6);
    EXPECT_TRUE(seek_file(none, 0, SeekOrigin::End) == -1 && get_last_os_error() == 6);
    EXPECT_TRUE(get_file_size(none) == -1 && get_last_os_error() == 6);
}

TEST(FileSystem, FilesBeyondFourGigabytesAreSparseAndExact)
{
    TempFolder const folder;
    constexpr long long far = 5'000'000'001;
    FileHandle const file = open_as(folder.GetFile(L"large"),
        { FileAccess::ReadWrite, FileSharing::None }, FileCreation::CreateAlways);
    ASSERT_EQ(seek_file(file, far, SeekOrigin::Begin), far);
    ASSERT_TRUE(write_file(file, "end", 3));
    EXPECT_EQ(get_file_size(file), far + 3);
    EXPECT_EQ(seek_file(file, -6, SeekOrigin::End), far - 3);
    char bytes[8] = "#######";
    EXPECT_EQ(read_file(file, bytes, 8), 6);
    EXPECT_EQ(std::string(bytes, 6), std::string("\0\0\0end", 6));
    EXPECT_TRUE(set_file_size(file, far + 1));
    EXPECT_TRUE(set_file_size(file, 2 * far));
    EXPECT_EQ(get_file_size(file), 2 * far);
    EXPECT_EQ(seek_file(file, 0, SeekOrigin::Current), far + 3) << "the position stays";
    EXPECT_EQ(seek_file(file, far, SeekOrigin::Begin), far);
    EXPECT_EQ(read_file(file, bytes, 8), 8);
    EXPECT_EQ(std::string(bytes, 8), std::string("e\0\0\0\0\0\0\0", 8));
    EXPECT_TRUE(flush_file(file));
    EXPECT_TRUE(close_file(file));
}

TEST(FileSystem, StreamsAndTheirHandlesAreAtTheSamePosition)
{
    TempFolder const folder;
    std::string const path = (folder.GetPath() / "stream").string();
    std::FILE *const stream = std::fopen(path.c_str(), "w+b");
    ASSERT_NE(stream, nullptr);
    std::fputs("one two three", stream);
    FileHandle const file = get_stream_handle(stream);
    EXPECT_EQ(get_file_size(file), 13);
    std::fseek(stream, 4, SEEK_SET);
    EXPECT_EQ(std::fgetc(stream), 't');
    ASSERT_EQ(get_stream_handle(stream), file);
    char bytes[2];
    EXPECT_EQ(read_file(file, bytes, 2), 2);
    EXPECT_EQ(std::string(bytes, 2), "wo");
    std::fclose(stream);
    EXPECT_EQ(get_stream_handle(nullptr), invalid_file_handle());
}

TEST(FileSystem, NamesAreUnicode)
{
    TempFolder const folder;
    std::wstring const three_bytes(85, L'\x20AC'); // the longest name of Linux, 255 bytes
    for (std::wstring const &name : { std::wstring(L"\U0001F642 e\x0301.txt"), three_bytes }) {
        std::wstring const path = folder.GetPath().wstring() + L'/' + name;
        Mode const mode { FileAccess::Write, FileSharing::None };
        EXPECT_TRUE(close_file(open_as(path, mode, FileCreation::CreateAlways)));
        std::string const native = to_native_path(name);
        std::u8string const utf8(native.begin(), native.end());
        EXPECT_TRUE(std::filesystem::exists(folder.GetPath() / utf8));
        EXPECT_EQ(from_native_path(to_native_path(name)), name);
    }
}

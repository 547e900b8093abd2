// SPDX-License-Identifier: MIT
// What exists on Linux only: paths that are mapped to the native tree, and its kinds of files.
#include "kortools/platform/file_system.h"
#include "kortools/platform/os_error.h"
#include "kortools/platform/posix/path_mapping.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

using namespace kortools::platform;

namespace {

struct PathCase {
    wchar_t const *path;
    char const *native;
    unsigned int code = 0; // when native is empty
};

void expect_native(PathCase const &each)
{
    set_last_os_error(0);
    EXPECT_EQ(to_native_path(each.path), each.native) << testing::PrintToString(each.path);
    EXPECT_EQ(get_last_os_error(), each.code) << testing::PrintToString(each.path);
}

char const *const mount_table
    = "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
      "40 27 0:50 / /mnt/Bob's\\040files rw shared:7 - cifs //Files/Data\\040Store rw\n"
      "41 27 0:51 / /mnt/sub rw shared:8 master:1 - smb3 //files/Other/deep/er rw\n"
      "42 27 0:52 /deep/er /mnt/rooted rw - cifs //files/Third/deep/er rw\n"
      "43 27 0:53 /inner /mnt/bound rw - cifs //files/Fourth rw\n"
      "44 27 0:54 / /old rw - nfs4 nas:/export rw\n"
      "45 27 0:55 / / rw - nfs4 nas:/export rw\n"
      "46 27 0:56 / /home rw - nfs NAS:/export/home rw\n"
      "47 27 0:57 / /x rw - ext4 //disk/share rw\n"
      "48 27 cut off\n";

std::string find_in_table(wchar_t const *path)
{
    return find_share(parse_path(path), parse_mount_table(mount_table));
}

} // namespace

TEST(NativePaths, FollowTheTable)
{
    PathCase const cases[] = { { L"C:\\a\\b", "/a/b" }, { L"c:/a", "/a" }, { L"\\a\\b", "/a/b" },
        { L"/a/b", "/a/b" }, { L"C:\\", "/" }, { L"\\", "/" }, { L"C:\\a\\..\\b\\", "/a/../b/" },
        { L"a\\b", "a/b" }, { L"..\\b", "../b" }, { L"C:a", "a" }, { L"C:", "." }, { L".", "." },
        { L"\\\\?\\C:\\a", "/a" }, { L"C:\\ \U0001F642.txt", "/ \xF0\x9F\x99\x82.txt" },
        { L"", "", 3 }, { L"D:\\a", "", 3 }, { L"d:a", "", 3 }, { L"\\\\?\\Volume\\a", "", 3 },
        { L"\\\\?\\C:a", "", 3 }, { L"\\\\nowhere\\share\\a", "", 53 }, { L"\\\\nowhere", "", 53 },
        { L"//nowhere/share", "", 53 }, { L"\\\\", "", 53 }, { L"C:\\\x110000", "", 123 } };
    for (PathCase const &each : cases)
        expect_native(each);
    EXPECT_EQ(to_native_path({ L"a\0b", 3 }), "");
    EXPECT_EQ(from_native_path("/"), L"C:\\");
    EXPECT_EQ(from_native_path("/a b/c"), L"C:\\a b\\c");
    EXPECT_EQ(from_native_path("a/b"), L"a\\b");
    EXPECT_EQ(from_native_path("c:/a\\b"),
        L"c\xDC3A\\a\xDC5C"
        L"b");
    EXPECT_EQ(from_native_path("/\xE9t\xC3\xA9"), L"C:\\\xDCE9t\xE9");
}

TEST(NativePaths, MappedDrivesAndSharesHoldTheirFolder)
{
    EXPECT_FALSE(map_drive(L'C', "/mnt") || map_drive(L'1', "/mnt") || map_drive(L'Q', "relative"));
    for (wchar_t const *bad : { L"\\\\server", L"\\\\server\\share\\folder", L"C:\\share" })
        EXPECT_FALSE(map_share(bad, "/mnt"));
    ASSERT_TRUE(map_drive(L'q', "/mnt/q/") && map_drive(L'R', "/"));
    ASSERT_TRUE(map_share(L"\\\\\xC9t\xE9\\Share", "/srv"));
    PathCase const cases[] = { { L"Q:\\a\\b", "/mnt/q/a/b" }, { L"q:a", "/mnt/q/a" },
        { L"Q:", "/mnt/q" }, { L"Q:\\", "/mnt/q" }, { L"Q:\\a\\", "/mnt/q/a/" },
        { L"Q:\\..\\a\\.\\..\\..\\b", "/mnt/q/b" }, { L"R:\\a", "/a" }, { L"R:", "/" },
        { L"\\\\\xE9T\xC9/sHARE/a", "/srv/a" }, { L"\\\\\xE9t\xE9\\share\\..\\..\\a", "/srv/a" },
        { L"\\\\?\\unc\\\xE9t\xE9\\share\\a", "/srv/a" }, { L"\\\\\xE9t\xE9\\other", "", 67 },
        { L"\\\\\xE9t\\share", "", 53 } };
    for (PathCase const &each : cases)
        expect_native(each);
    EXPECT_TRUE(map_drive(L'Q', "") && map_drive(L'R', ""));
    EXPECT_TRUE(map_share(L"\\\\\xE9t\xE9\\share", ""));
    expect_native({ L"Q:\\a", "", 3 });
    expect_native({ L"\\\\\xE9t\xE9\\share", "", 53 });
}

TEST(NativePaths, SharesAreFoundInTheMountTable)
{
    std::map<wchar_t const *, char const *> const found
        = { { L"\\\\FILES\\data store\\a\\b", "/mnt/Bob's files/a/b" },
              { L"\\\\files\\Data Store", "/mnt/Bob's files" },
              { L"\\\\files\\other\\Deep\\er\\a", "/mnt/sub/a" },
              { L"\\\\files\\third\\deep\\er\\a", "/mnt/rooted/a" },
              { L"\\\\files\\fourth\\inner\\a", "/mnt/bound/a" }, { L"\\\\nas\\export", "/" },
              { L"\\\\nas\\export\\a", "/a" }, { L"\\\\nas\\export\\home\\me", "/home/me" },
              { L"\\\\nas\\export\\home\\..\\me", "/me" } };
    for (auto const &[path, native] : found)
        EXPECT_EQ(find_in_table(path), native);
    for (wchar_t const *path : { L"\\\\files\\other\\a", L"\\\\files\\fourth", L"\\\\files" }) {
        EXPECT_EQ(find_in_table(path), "");
        EXPECT_EQ(get_last_os_error(), 67U);
    }
    EXPECT_EQ(find_in_table(L"\\\\disk\\share"), "");
    EXPECT_EQ(get_last_os_error(), 53U);
}

TEST(NativePaths, EveryNameComesBackByteForByte)
{
    std::mt19937 random(3);
    // Bytes that make the beginnings of sequences, escapes and Windows syntax likely.
    std::string const likely("/\\:.CcAz?\xC3\xA9\xED\xA0\xB0\xB1\xB2\x80\x9C\xBA\xF0\x9F\xF4\x90");
    for (int turn = 0; turn < 200'000; ++turn) {
        std::string native;
        for (auto size = random() % 10; native.size() <= size;)
            native
                += random() % 4 == 0 ? char(random() % 255 + 1) : likely[random() % likely.size()];
        ASSERT_EQ(to_native_path(from_native_path(native)), native)
            << testing::PrintToString(native);
    }
    std::wstring const lone = L"a\xD83D|\xDE00|\xDFFF";
    EXPECT_EQ(from_native_path(to_native_path(lone)), lone);
}

TEST(NativeFiles, OpenByAnyNameAndAreNeitherInheritedNorEmptied)
{
    TempFolder const folder;
    std::string const name = folder.GetPath().string() + "/caf\xE9 a\\b";
    std::ofstream(name) << "text";
    std::wstring const path = from_native_path(name);
    FileHandle const file
        = open_file(path.c_str(), FileAccess::Read, FileSharing::Read, FileCreation::OpenExisting);
    EXPECT_EQ(get_file_size(file), 4);
    int const flags = fcntl(int(reinterpret_cast<std::intptr_t>(file)), F_GETFD);
    EXPECT_TRUE(flags & FD_CLOEXEC);
    // Emptying counts as writing, even for a reader.
    EXPECT_EQ(open_file(path.c_str(), FileAccess::Read, FileSharing::ReadWrite,
                  FileCreation::CreateAlways),
        invalid_file_handle());
    EXPECT_EQ(get_last_os_error(), 32U);
    EXPECT_EQ(get_file_size(file), 4);
    EXPECT_TRUE(close_file(file));
}

TEST(NativeFiles, AFullDiskIsReportedAndDevicesAreShared)
{
    FileHandle files[2];
    for (FileHandle &file : files) {
        file = open_file(
            L"C:\\dev\\full", FileAccess::ReadWrite, FileSharing::None, FileCreation::CreateAlways);
        ASSERT_NE(file, invalid_file_handle());
        EXPECT_FALSE(write_file(file, "text", 4));
        EXPECT_EQ(get_last_os_error(), 112U);
    }
    for (FileHandle const file : files)
        EXPECT_TRUE(close_file(file));
}

TEST(NativeFiles, InterruptedAndPartialTransfersAreCompleted)
{
    struct sigaction action { };
    action.sa_handler = [](int) {}; // without SA_RESTART: calls fail with EINTR
    sigaction(SIGALRM, &action, nullptr);
    itimerval const often { { 0, 300 }, { 0, 300 } }; // microseconds
    itimerval const never {};
    setitimer(ITIMER_REAL, &often, nullptr);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    auto const to_handle = [](int fd) { return reinterpret_cast<FileHandle>(std::intptr_t(fd)); };
    std::string sent(3'000'000, '\0'); // many times what a pipe holds
    std::ranges::generate(sent, [i = 0]() mutable { return char(i++ * 7 % 251); });
    std::thread writer([&] {
        EXPECT_TRUE(write_file(to_handle(ends[1]), sent.data(), unsigned(sent.size())));
        close_file(to_handle(ends[1]));
    });
    std::string received(sent.size() + 1, '\0');
    EXPECT_EQ(read_file(to_handle(ends[0]), received.data(), unsigned(received.size())),
        static_cast<long long>(sent.size()));
    writer.join();
    setitimer(ITIMER_REAL, &never, nullptr);
    received.pop_back();
    EXPECT_TRUE(received == sent);
    close_file(to_handle(ends[0]));
}

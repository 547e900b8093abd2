// SPDX-License-Identifier: MIT
// What needs Linux: a second volume, limits on a file's size, links, permissions and folders that
// are swapped while they are being removed.
#include "kortools/files/directories.h"
#include "kortools/files/file_changes.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/os_error.h"
#include "tests/support/files.h"
#include "tests/support/posix/file_size_limit.h"
#include "tests/support/temp_folder.h"

#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace kor_test;
using kortools::platform::get_last_os_error;

long count_entries(fs::path const &folder)
{
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

CXTString<wchar_t> to_name(fs::path const &path)
{
    return path.wstring().c_str();
}

// A user whom permissions bind.
class OrdinaryUser {
public:
    explicit OrdinaryUser(fs::path const &home)
        : m_user(geteuid())
    {
        if (m_user == 0 && (chown(home.c_str(), 65534, 65534) != 0 || seteuid(65534) != 0))
            ADD_FAILURE() << "cannot become another user";
    }
    ~OrdinaryUser() { EXPECT_EQ(seteuid(m_user), 0); }
    OrdinaryUser(OrdinaryUser const &) = delete;
    OrdinaryUser &operator=(OrdinaryUser const &) = delete;

private:
    uid_t m_user;
};

} // namespace

TEST(OtherVolumes, FilesGoThereWithDateAndPermissions)
{
    TempFolder const folder;
    TempFolder const other("/dev/shm"); // another volume
    write_file(folder.GetPath() / "a", "text");
    fs::permissions(folder.GetPath() / "a", fs::perms(0640));
    CXTString<wchar_t> const source = to_name(folder.GetPath() / "a");
    CXTString<wchar_t> const target = to_name(other.GetPath() / "a");
    ASSERT_TRUE(fileSetLastWriteDate(source, CXTime(1234567890)));
    EXPECT_FALSE(fileMove(source, target, true));
    EXPECT_EQ(get_last_os_error(), 17U);
    EXPECT_TRUE(fileCopy(source, target, true));
    EXPECT_TRUE(fileMove(source, target, false));
    EXPECT_EQ(read_file(other.GetPath() / "a"), "text");
    EXPECT_FALSE(fileExists(source));
    EXPECT_EQ(fileGetLastWriteDate(target), CXTime(1234567890));
    EXPECT_EQ(fs::status(other.GetPath() / "a").permissions(), fs::perms(0640));
    fs::create_symlink("a", folder.GetPath() / "link");
    EXPECT_TRUE(fileMove(to_name(folder.GetPath() / "link"), target, false));
    EXPECT_EQ(fs::read_symlink(other.GetPath() / "a"), "a");
}

TEST(OtherVolumes, WhatDoesNotFitLeavesNothingBehind)
{
    TempFolder const folder;
    TempFolder const other("/dev/shm"); // another volume
    for (fs::path const &place : { folder.GetPath(), other.GetPath() }) {
        write_file(folder.GetPath() / "big", std::string(200000, 'x'));
        write_file(place / "old", "old");
        CXTString<wchar_t> const big = to_name(folder.GetPath() / "big");
        long const entries = count_entries(place);
        {
            FileSizeLimit const limit(100000);
            EXPECT_FALSE(fileCopy(big, to_name(place / "new"), false));
            EXPECT_EQ(get_last_os_error(), 223U);
            EXPECT_FALSE(fileCopy(big, to_name(place / "old"), false));
            if (place == other.GetPath()) {
                EXPECT_FALSE(fileMove(big, to_name(place / "old"), false));
            }
        }
        EXPECT_EQ(count_entries(place), entries);
        EXPECT_EQ(read_file(place / "old"), "old");
        EXPECT_EQ(fs::file_size(folder.GetPath() / "big"), 200000U);
    }
}

TEST(Links, ACopyFollowsThemAndAMoveDoesNot)
{
    TempFolder const folder;
    fs::path const top = folder.GetPath();
    write_file(top / "a", "text");
    write_file(top / "b", "old");
    fs::create_symlink("a", top / "link");
    fs::create_symlink("b", top / "to_b");
    EXPECT_TRUE(fileCopy(to_name(top / "link"), to_name(top / "to_b"), false));
    EXPECT_TRUE(read_file(top / "b") == "text" && fs::is_symlink(top / "to_b"));
    EXPECT_FALSE(fileCopy(to_name(top / "a"), to_name(top / "link"), false)) << "onto itself";
    EXPECT_TRUE(fileRename(to_name(top / "link"), to_name(top / "renamed")));
    EXPECT_EQ(fs::read_symlink(top / "renamed"), "a");
    EXPECT_TRUE(fileDelete(to_name(top / "renamed")) && fs::exists(top / "a"));
    EXPECT_FALSE(fileCopy(L"\\dev\\zero", to_name(top / "endless"), false));
    EXPECT_TRUE(fileCopy(L"\\proc\\self\\status", to_name(top / "status"), false));
    EXPECT_GT(fs::file_size(top / "status"), 100U) << "of a file whose size is said to be 0";
}

TEST(RemoveDirectory, LinksGoAndWhatTheyLeadToStays)
{
    TempFolder const folder;
    fs::path const top = folder.GetPath();
    fs::create_directories(top / "outside/inner");
    write_file(top / "outside/file", "text");
    fs::create_directories(top / "tree/a");
    fs::create_directory_symlink(top / "outside", top / "tree/a/link");
    fs::create_directory_symlink("..", top / "tree/a/up");
    fs::create_symlink("nowhere", top / "tree/dangling");
    fs::create_directory_symlink("outside", top / "direct");
    EXPECT_TRUE(fileRemoveDirectory(to_name(top / "tree"), true));
    EXPECT_TRUE(fileRemoveDirectory(to_name(top / "direct/"), true));
    EXPECT_EQ(count_entries(top), 1);
    EXPECT_EQ(count_entries(top / "outside"), 2);
}

TEST(RemoveDirectory, TreesMayBeDeeperThanPathsAndOpenFiles)
{
    TempFolder const folder("/dev/shm"); // a disk takes seconds
    std::string const name(100, 'd');
    int const top = open(folder.GetPath().c_str(), O_RDONLY | O_DIRECTORY);
    int fd = dup(top);
    for (int depth = 0; depth < 3000; ++depth) {
        ASSERT_EQ(mkdirat(fd, name.c_str(), 0777), 0);
        int const next = openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY);
        close(openat(next, "file", O_WRONLY | O_CREAT, 0666));
        close(std::exchange(fd, next));
    }
    close(fd);
    close(top);
    rlimit before {};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit const limit { 100, before.rlim_max };
    setrlimit(RLIMIT_NOFILE, &limit);
    CXTString<wchar_t> const tree = to_name(folder.GetPath() / name);
    EXPECT_EQ(fileGetFileCount(tree, true), 3000);
    EXPECT_TRUE(fileRemoveDirectory(tree, true));
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(count_entries(folder.GetPath()), 0);
}

TEST(RemoveDirectory, PermissionsAreRespectedUnlessToldOtherwise)
{
    TempFolder const folder;
    OrdinaryUser const user(folder.GetPath());
    fs::path const top = folder.GetPath() / "top";
    fs::create_directories(top / "a/locked/inner");
    fs::create_directories(top / "b");
    fs::create_directory(top / "closed");
    write_file(top / "a/locked/file", "text");
    write_file(top / "closed/file", "text");
    fs::permissions(top / "a/locked", fs::perms(0555));
    fs::permissions(top / "closed", fs::perms(0));
    CXArray<CXTString<wchar_t>> failed;
    EXPECT_FALSE(fileRemoveDirectory(to_name(top), true, false, &failed));
    EXPECT_EQ(get_last_os_error(), 5U);
    std::set<std::wstring> paths;
    for (CXTString<wchar_t> const &path : failed)
        paths.emplace(path.GetView().substr(top.wstring().size()));
    EXPECT_EQ(paths,
        (std::set<std::wstring> { L"", L"\\a", L"\\a\\locked", L"\\a\\locked\\file",
            L"\\a\\locked\\inner", L"\\closed" }));
    EXPECT_FALSE(fs::exists(top / "b"));
    EXPECT_TRUE(fileRemoveDirectory(to_name(top), true, true));
    EXPECT_FALSE(fs::exists(top));
}

TEST(RemoveDirectory, AFolderThatIsSwappedForALinkLeadsNowhere)
{
    TempFolder const folder("/dev/shm");
    fs::path const top = folder.GetPath();
    fs::create_directories(top / "outside");
    for (int i = 0; i < 50; ++i)
        write_file(top / "outside" / std::to_string(i), "text");
    std::atomic<bool> is_done { false };
    std::thread swapper([&] {
        while (!is_done) // exchanges the folder and the link as fast as it can
            renameat2(AT_FDCWD, (top / "tree/a").c_str(), AT_FDCWD, (top / "link").c_str(),
                RENAME_EXCHANGE);
    });
    for (int round = 0; round < 200; ++round) {
        std::error_code ignored;
        fs::create_directories(top / "tree/a/b/c", ignored);
        fs::create_directory_symlink(top / "outside", top / "link", ignored);
        fileRemoveDirectory(to_name(top / "tree"), true);
        fileRemoveDirectory(to_name(top / "link"), true); // may be the folder now
    }
    is_done = true;
    swapper.join();
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(fs::exists(top / "outside" / std::to_string(i)));
}

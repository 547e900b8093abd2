// SPDX-License-Identifier: MIT
#include "kortools/platform/durable_files.h"

#include "tests/support/child_process.h"
#include "tests/support/temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace kortools::platform;

namespace {

FileHandle open_shared(std::wstring const &path, FileAccess access = FileAccess::ReadWrite)
{
    return open_file(path.c_str(), access, FileSharing::ReadWrite, FileCreation::OpenAlways);
}

// 0: the lock was granted. The file closes with the process.
int take_lock(std::vector<std::string> const &arguments)
{
    auto const path = std::filesystem::path(arguments[0]).wstring();
    auto const kind = arguments[1] == "shared" ? LockKind::Shared : LockKind::Exclusive;
    return try_lock_file(open_shared(path), kind) ? 0 : 1;
}
kor_test::ChildPart const s_take_lock("take_lock", take_lock);

} // namespace

TEST(DurableFiles, LocksExcludeEveryOtherOpenInEveryProcess)
{
    TempFolder folder;
    std::wstring const path = folder.GetFile(L"locked");
    std::string const narrow = (folder.GetPath() / "locked").string();
    FileHandle const one = open_shared(path);
    FileHandle const other = open_shared(path);
    FileHandle const reader = open_shared(path, FileAccess::Read);

    EXPECT_TRUE(try_lock_file(one, LockKind::Exclusive));
    EXPECT_FALSE(try_lock_file(other, LockKind::Exclusive));
    EXPECT_FALSE(try_lock_file(reader, LockKind::Shared));
    EXPECT_NE(kor_test::run_child("take_lock", { narrow, "shared" }), 0);
    EXPECT_TRUE(write_file(other, "data", 4)); // the lock is no lock on the bytes
    unlock_file(one);

    EXPECT_TRUE(try_lock_file(reader, LockKind::Shared));
    EXPECT_TRUE(try_lock_file(other, LockKind::Shared));
    EXPECT_EQ(kor_test::run_child("take_lock", { narrow, "shared" }), 0);
    EXPECT_NE(kor_test::run_child("take_lock", { narrow, "exclusive" }), 0);
    close_file(reader);
    unlock_file(other);
    EXPECT_EQ(kor_test::run_child("take_lock", { narrow, "exclusive" }), 0);
    EXPECT_TRUE(try_lock_file(one, LockKind::Exclusive)); // the child took its lock with it
    close_file(one);
    EXPECT_TRUE(try_lock_file(other, LockKind::Exclusive));
    close_file(other);
}

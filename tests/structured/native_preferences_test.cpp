// SPDX-License-Identifier: MIT
// Preferences files where Linux sets limits: full disks, other users' folders, replaced files.
#include "kortools/archive/file.h"
#include "kortools/platform/durable_files.h"
#include "tests/structured/preferences_support.h"
#include "tests/support/child_process.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace kor_test;
namespace platform = kortools::platform;

namespace {

constexpr uid_t nobody = 65534;

// Lets no file grow beyond a size, for the life of the object.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit const limit { size, m_before.rlim_max };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(FileSizeLimit const &) = delete;
    FileSizeLimit &operator=(FileSizeLimit const &) = delete;
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before;
    void (*m_handler)(int);
};

int load_and_fail_to_save(std::vector<std::string> const &arguments)
{
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        return 1;
    auto const path = std::filesystem::path(arguments[0]).wstring();
    bool const loaded = load_number(path, 1, 1) == static_cast<unsigned>(std::stoul(arguments[1]));
    return loaded && !save_number(path, 1, 1, 9) ? 0 : 2;
}
ChildPart const s_load_and_fail_to_save("load_and_fail_to_save", load_and_fail_to_save);

class NativePreferences : public testing::Test {
protected:
    std::wstring const path() const { return folder.GetFile(L"App.prefs"); }
    std::wstring const copy() const { return folder.GetFile(L"App.prefs.tmp"); }

    TempFolder folder { get_fast_folder() };
};

TEST_F(NativePreferences, ADiskThatIsFullAfterAnyByteLosesNothing)
{
    ASSERT_TRUE(save_number(path(), 1, 1, 2) && save_number(path(), 2, 1, 3));
    std::string const before = read_file(path()).value();
    bool is_saved = false;
    for (rlim_t size = 0; !is_saved; size += 3) {
        FileSizeLimit const limit(size);
        is_saved = save_number(path(), 1, 1, 5);
        ASSERT_TRUE(is_saved || read_file(path()) == before) << size;
        ASSERT_FALSE(std::filesystem::exists(copy()));
    }
    EXPECT_EQ(load_number(path(), 1, 1), 5U);
    EXPECT_EQ(load_number(path(), 2, 1), 3U);
}

TEST_F(NativePreferences, ASmallDiskLosesNothing)
{
    // Only the superuser can make one; a size that cannot be reached says the same everywhere.
    std::string const disk = (folder.GetPath() / "disk").string();
    std::filesystem::create_directory(disk);
    if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=96k") != 0)
        return;
    std::wstring const file = folder.GetFile(L"disk/App.prefs");
    unsigned count = 0;
    while (count < 100 && save_number(file, count, 1, 100))
        ++count;
    EXPECT_GT(count, 3U);
    EXPECT_LT(count, 100U);
    for (unsigned id = 0; id < count; ++id)
        EXPECT_EQ(load_number(file, id, 1), 100U);
    EXPECT_FALSE(std::filesystem::exists(disk + "/App.prefs.tmp"));
    EXPECT_TRUE(save_number(file, 0, 1, 1)); // less than before
    umount(disk.c_str());
}

TEST_F(NativePreferences, FoldersThatCannotBeWrittenAreRead)
{
    ASSERT_TRUE(save_number(path(), 1, 1, 2));
    std::string const before = read_file(path()).value();
    ASSERT_TRUE(save_number(path(), 1, 1, 3));
    std::string const after = read_file(path()).value();
    std::string const narrow = (folder.GetPath() / "App.prefs").string();
    chmod(folder.GetPath().c_str(), 0555);
    EXPECT_EQ(run_child("load_and_fail_to_save", { narrow, "3" }), 0);
    EXPECT_EQ(read_file(path()), after);

    chmod(folder.GetPath().c_str(), 0755); // and with what a writer has left behind
    write_file(path(), before.substr(0, 20));
    write_file(copy(), after);
    chmod(folder.GetPath().c_str(), 0555);
    EXPECT_EQ(run_child("load_and_fail_to_save", { narrow, "3" }), 0);
    std::filesystem::remove(path());
    EXPECT_EQ(run_child("load_and_fail_to_save", { narrow, "3" }), 0);
    EXPECT_EQ(read_file(copy()), after);
    chmod(folder.GetPath().c_str(), 0755);
}

TEST_F(NativePreferences, AFileThatIsReplacedWhileASaveWaitsGetsTheRecord)
{
    ASSERT_TRUE(save_number(path(), 1, 1, 2));
    CXFile holder(path().c_str(), CXFile::modeReadWrite | CXFile::shareDenyNone);
    ASSERT_TRUE(platform::try_lock_file(holder.GetHandle(), platform::LockKind::Exclusive));
    bool is_saved = false;
    std::thread saver([&] { is_saved = save_number(path(), 2, 1, 3); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // it waits for the lock now
    std::filesystem::copy_file(path(), copy() + L"2");
    std::filesystem::rename(copy() + L"2", path());
    holder.Close();
    saver.join();
    EXPECT_TRUE(is_saved);
    EXPECT_EQ(load_number(path(), 1, 1), 2U);
    EXPECT_EQ(load_number(path(), 2, 1), 3U);
}

} // namespace

// SPDX-License-Identifier: MIT
// Preferences files where Linux sets limits: full disks, other users' folders.
#include "tests/structured/preferences_support.h"
#include "tests/support/child_process.h"
#include "tests/support/posix/file_size_limit.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kor_test;
namespace {

constexpr uid_t nobody = 65534;

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
    std::string const before = read_file(path());
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

TEST_F(NativePreferences, FoldersThatCannotBeWrittenAreRead)
{
    ASSERT_TRUE(save_number(path(), 1, 1, 2));
    std::string const before = read_file(path());
    ASSERT_TRUE(save_number(path(), 1, 1, 3));
    std::string const after = read_file(path());
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

} // namespace

// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/place.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

using namespace kortools::platform;
namespace fs = std::filesystem;

TEST(Place, LinksAreFollowedOnDisksOfThisMachineOnly)
{
    TempFolder const folder;
    std::string const top = folder.GetPath().string();
    for (char const *name : { "a", "nas", "nas/b" })
        fs::create_directory(folder.GetPath() / name);
    fs::create_directory_symlink(top + "/nas", folder.GetPath() / "link");
    fs::create_directory_symlink("../link/", folder.GetPath() / "a/relative");
    fs::create_directory_symlink("b", folder.GetPath() / "nas/inner");
    fs::create_directory_symlink("ring", folder.GetPath() / "ring");
    std::vector<Mount> const mounts { { "/", "/", "ext4", "/dev/sda" },
        { "/", top + "/nas", "tmpfs", "hidden" }, { "/", top + "/nas", "nfs4", "nas:/x" },
        { "/", top + "/na", "tmpfs", "none" } };
    struct Case {
        char const *path;
        char const *type;
        char const *expected; // below the folder
    };
    Case const cases[] = {
        { "/none/x", "ext4", "/none/x" },
        { "/a/./../a//", "ext4", "/a" },
        { "/link", "nfs4", "/nas" },
        { "/nas/inner", "nfs4", "/nas/inner" }, // not asked
        { "/a/relative/b/x", "nfs4", "/nas/b/x" },
        { "/link/../a", "ext4", "/a" },
        { "/nas2", "ext4", "/nas2" },
        { "/na", "tmpfs", "/na" },
        { "/ring/x", "ext4", "/ring/x" },
    };
    for (Case const &each : cases) {
        Place const place = find_place(top + each.path, mounts);
        EXPECT_EQ(place.path, top + each.expected) << each.path;
        EXPECT_EQ(place.mount.type, each.type) << each.path;
    }
    EXPECT_EQ(find_place("/../..", mounts).path, "/");
    EXPECT_EQ(find_place("x", mounts).path, fs::current_path().string() + "/x");
    EXPECT_EQ(find_place("/x", {}).mount.mount_point, "");
}

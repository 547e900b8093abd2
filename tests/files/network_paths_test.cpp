// SPDX-License-Identifier: MIT
#include "kortools/files/network_paths.h"
#include "kortools/platform/file_system.h"
#include "tests/files/names.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned int no_root = 1;
constexpr unsigned int fixed = 3;
constexpr unsigned int remote = 4;

CXTString<wchar_t> to_unc(CXTString<wchar_t> const &path)
{
    CXTString<wchar_t> unc = L"none";
    bool const converted = fileConvertToUNCPath(path, unc);
    EXPECT_EQ(converted, unc != L"none");
    return unc;
}

} // namespace

TEST(NetworkPaths, AreToldByTheirBeginning)
{
    struct {
        wchar_t const *path, *unc;
        unsigned int type;
        bool is_on_network;
    } const cases[]
        = { { L"C:\\none\\at\\all", L"none", fixed, false }, { L"C:\\", L"none", fixed, false },
              { L"Q:\\x", L"none", no_root, false }, { L"", L"none", no_root, false },
              { L"\\\\no_server\\share\\a", L"\\\\no_server\\share\\a", no_root, true } };
    for (auto const &[path, unc, type, is_on_network] : cases) {
        EXPECT_EQ(fileIsOnNetworkDrive(path), is_on_network) << kortools::core::quote(path);
        EXPECT_EQ(fileGetDriveType(path), type) << kortools::core::quote(path);
        EXPECT_STREQ(to_unc(path), unc);
    }
}

TEST(MappedPaths, LieOnTheirShare)
{
    if (is_windows)
        GTEST_SKIP() << "nothing is mapped there";
    using namespace kortools::platform;
    TempFolder const folder;
    std::string const top = folder.GetPath().string();
    std::filesystem::create_directories(top + "/files/inner");
    std::filesystem::create_directory_symlink(top + "/files", top + "/link");
    ASSERT_TRUE(map_share(L"\\\\Server\\Share", top + "/files"));
    ASSERT_TRUE(map_share(L"\\\\Server\\Inner", top + "/files/inner"));
    ASSERT_TRUE(map_drive(L'Q', top + "/files"));
    EXPECT_EQ(fileGetDriveType(L"\\\\server\\share\\a"), remote);
    EXPECT_STREQ(to_unc(folder.GetFile(L"files\\a b\\c").c_str()), L"\\\\Server\\Share\\a b\\c");
    EXPECT_STREQ(to_unc(folder.GetFile(L"link/a").c_str()), L"\\\\Server\\Share\\a");
    EXPECT_STREQ(to_unc(folder.GetFile(L"files\\inner\\a").c_str()), L"\\\\Server\\Inner\\a");
    EXPECT_STREQ(to_unc(folder.GetFile(L"files2").c_str()), L"none");
    EXPECT_STREQ(to_unc(L"Q:\\a"), L"\\\\Server\\Share\\a");
    map_share(L"\\\\Server\\Share", "");
    map_share(L"\\\\Server\\Inner", "");
    map_drive(L'Q', "");
}

// SPDX-License-Identifier: MIT
#include "kortools/app/application.h"
#include "kortools/app/application_paths.h"
#include "kortools/app/build_identity.h"
#include "kortools/app/first_launch.h"
#include "kortools/files/directories.h"
#include "kortools/files/file_status.h"
#include "kortools/platform/file_system.h"
#include "tests/app/profile_support.h"
#include "tests/support/files.h"

#include <gtest/gtest.h>

namespace {

using kortools::app::BuildIdentity;
using kortools::app::LaunchMemory;
using kortools::app::LaunchRule;
using Text = CXTString<wchar_t>;

// Its data lies in the user's real folder on Windows, under a name of its own.
class FirstLaunch : public testing::Test, public TestProfile {
protected:
    FirstLaunch()
    {
#ifndef _WIN32
        setenv("XDG_DATA_HOME", m_folder.GetPath().c_str(), 1);
#endif
    }
    ~FirstLaunch() override
    {
        for (wchar_t const *const name : { L"", L" 2", L" 9", L" 10", L" 17", L" x", L" 16" })
            fileRemoveDirectory(get_data(name), true);
    }
    Text get_data(wchar_t const *version)
    {
        SetInternalProductName(m_product.c_str(), 16);
        Text path = GetUserApplicationDataPath();
        path.Replace((m_product + L" 16\\").c_str(), (m_product + version + L"\\").c_str());
        return path;
    }
    static std::filesystem::path to_native(Text const &path)
    {
        std::string const native = kortools::platform::to_native_path(path);
        return std::u8string(native.begin(), native.end());
    }
    void put(wchar_t const *version, wchar_t const *name, char const *content)
    {
        Text const directory = get_data(version) + L"Preferences\\";
        fileCreateDirectory(directory, true);
        kor_test::write_file(to_native(directory + name), content);
    }
    static std::string get(wchar_t const *name)
    {
        return kor_test::read_file(to_native(GetUserPreferencesPath() + name));
    }
};

TEST_F(FirstLaunch, IsToldFromTheBuildThatRanBefore)
{
    BuildIdentity const old { L"Apr 15 2024", L"12:02:26", 15, 2 };
    struct {
        BuildIdentity build;
        LaunchRule rule;
        bool is_first;
        int previous_major;
        int previous_minor;
    } const launches[] = {
        { old, LaunchRule::AnyBuild, true, -1, -1 },
        { old, LaunchRule::AnyBuild, false, 15, 2 },
        { { L"Apr 16 2024", old.time, 15, 2 }, LaunchRule::AnyVersion, false, 15, 2 },
        { { old.date, L"12:02:27", 15, 2 }, LaunchRule::AnyBuild, true, 15, 2 },
        { { old.date, L"12:02:27", 15, 3 }, LaunchRule::AnyVersion, true, 15, 2 },
        { { old.date, L"12:02:27", 16, 3 }, LaunchRule::AnyBuild, true, 15, 3 },
        { { old.date, L"12:02:27", 16, 3 }, LaunchRule::AnyVersion, false, 16, 3 },
    };
    for (LaunchMemory const memory : { LaunchMemory::Profile, LaunchMemory::PreferencesFile }) {
        for (auto const &launch : launches) {
            BuildIdentity before;
            EXPECT_EQ(
                is_first_launch(launch.build, &m_app, memory, launch.rule, before), launch.is_first)
                << &launch - launches;
            EXPECT_EQ(before.major, launch.previous_major) << &launch - launches;
            EXPECT_EQ(before.minor, launch.previous_minor) << &launch - launches;
        }
    }
    EXPECT_EQ(m_app.GetProfileString(L"settings", L"currentVersionDate"), old.date);
    EXPECT_EQ(m_app.GetProfileInt(L"settings", L"currentVersionMajor"), 16);

    EnablePreferencesSaving(false); // then it stays the first one
    for (int i = 0; i < 2; ++i) {
        int major = 0;
        int minor = 0;
        EXPECT_TRUE(IsFirstLaunch(&m_app, false, false, &major, &minor));
        EXPECT_EQ(major * 100 + minor, 1603);
    }
}

TEST_F(FirstLaunch, FilesComeFromTheNewestEarlierVersionThatHasThem)
{
    put(L"", L"oldest.kor", "none");
    put(L"", L"some.kor", "none");
    put(L" 2", L"some.kor", "2");
    put(L" 9", L"some.kor", "9");
    put(L" 10", L"other.kor", "10");
    put(L" 17", L"some.kor", "17");
    put(L" x", L"new.kor", "x");
    EXPECT_TRUE(CopyFileFromPreviousVersionIfMissing(L"some.kor"));
    EXPECT_EQ(get(L"some.kor"), "9");
    EXPECT_TRUE(CopyFileFromPreviousVersionIfMissing(L"oldest.kor"));
    EXPECT_EQ(get(L"oldest.kor"), "none");
    EXPECT_FALSE(CopyFileFromPreviousVersionIfMissing(L"new.kor"));
    put(L" 10", L"some.kor", "10");
    EXPECT_TRUE(CopyFileFromPreviousVersionIfMissing(L"some.kor"));
    EXPECT_EQ(get(L"some.kor"), "9"); // kept
}

} // namespace

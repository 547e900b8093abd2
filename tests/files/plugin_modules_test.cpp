// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_modules.h"

#include "kortools/platform/file_system.h"
#include "kortools/platform/version_probe.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using namespace kortools::files;

using String = CXTString<wchar_t>;

namespace {

using WatchFunction = void (*)(int *);

int s_ends = 0; // how often the library of the test has gone
int s_calls = 0;

String path_of(char const *plugin)
{
    kortools::platform::set_probe_program(KOR_PLUGIN_PROBE);
    std::filesystem::path const folder = std::filesystem::absolute(KOR_TEST_PLUGINS);
    return String((folder / (std::string(plugin) + ".dll")).wstring().c_str());
}

bool note_release(PluginInfo const &info, char const *entry_name)
{
    ++s_calls;
    EXPECT_STREQ(entry_name, "InitOther");
    info.GetEntry<WatchFunction>()(&s_ends); // it is still there
    return s_calls > 1;
}

} // namespace

TEST(PluginModules, PassOverPluginsOfAnotherKindInAFolder)
{
    PluginInfo info;
    {
        PluginScan scan;
        EXPECT_FALSE(scan.load(path_of("other_version"), "InitNothing", info));
        EXPECT_FALSE(scan.load(path_of("good"), "InitNothing", info));
        EXPECT_FALSE(scan.load(path_of("no_version"), "InitNothing", info));
        EXPECT_TRUE(scan.load(path_of("good"), "InitTest", info));
    }
    EXPECT_EQ(GetPluginVerdict(path_of("good")), pluginNotRefused);
    EXPECT_EQ(GetPluginVerdict(path_of("no_version")), pluginNoVersionFunction);
    FreePlugins("InitTest");
    EXPECT_FALSE(LoadPlugin(path_of("good"), "InitNothing", info));
    EXPECT_FALSE(LoadPlugin(path_of("good"), "InitTest", info));
    reset_plugins();
}

TEST(PluginModules, AreAnnouncedBeforeTheLastReleaseAndForgottenByAReset)
{
    PluginInfo info;
    EXPECT_FALSE(LoadPlugin(path_of("no_entry"), "InitOther", info));
    ASSERT_TRUE(LoadPlugin(path_of("good"), "InitOther", info));
    ASSERT_TRUE(LoadPlugin(path_of("good"), "InitOther", info));
    set_plugin_release_hook(note_release);
    FreePlugin(info.m_module, "InitOther");
    EXPECT_EQ(s_calls, 0);
    FreePlugin(info.m_module, "InitOther"); // is kept
    EXPECT_EQ(s_calls, 1);
    EXPECT_EQ(s_ends, 0);
    reset_plugins();
    EXPECT_EQ(s_calls, 2);
    EXPECT_EQ(s_ends, 1);
    set_plugin_release_hook(nullptr);
    EXPECT_EQ(GetPluginVerdict(path_of("no_entry")), pluginNotRefused);
}

// SPDX-License-Identifier: MIT
#include "kortools/files/plugins.h"

#include "kortools/files/path_separators.h"
#include "tests/support/temp_folder.h"
#include "tests/support/thread_language.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

using String = CXTString<wchar_t>;

namespace {

constexpr bool is_windows = std::filesystem::path::preferred_separator == '\\';

using TestFunction = int (*)(int);
using WatchFunction = void (*)(int *);

// Each test has copies of its own: a path that was refused is refused for the whole process.
class Plugins : public testing::Test {
protected:
    Plugins() { SetPluginProbeLimit(60000); } // the machine may be busy
    ~Plugins() override
    {
        FreePlugins("InitTest");
        FreePlugins("InitOther");
    }
    String copy(std::string const &name, std::string const &as = {})
    {
        std::string const target = as.empty() ? name : as;
        std::filesystem::copy_file(std::filesystem::path(KOR_TEST_PLUGINS) / (name + ".dll"),
            m_folder.GetPath() / (target + ".dll"),
            std::filesystem::copy_options::overwrite_existing);
        return path_of(target + ".dll");
    }
    String write(std::string const &name, std::string const &content)
    {
        m_folder.Write(name, content);
        return path_of(name);
    }
    String path_of(std::string const &name)
    {
        return String(m_folder.GetFile({ name.begin(), name.end() }).c_str());
    }

    TempFolder m_folder;
    ThreadLanguage m_language { kortools::text::english };
};

// While it lives, the system looks for libraries there, too.
class SearchFolder {
public:
    explicit SearchFolder(std::string const &folder)
    {
        char const *const before = std::getenv(s_variable);
        m_before = before ? before : "";
        set(folder + (is_windows ? ';' + m_before : ""));
    }
    ~SearchFolder() { set(m_before); }

private:
    static constexpr char const *s_variable = is_windows ? "PATH" : "LD_LIBRARY_PATH";

    static void set(std::string const &value)
    {
#if defined(_WIN32)
        _putenv_s(s_variable, value.c_str());
#else
        setenv(s_variable, value.c_str(), 1);
#endif
    }
    std::string m_before;
};

bool load(String const &path, char const *entry = "InitTest")
{
    PluginInfo info;
    bool const is_loaded = LoadPlugin(path, entry, info);
    EXPECT_EQ(is_loaded, info.m_module != nullptr);
    EXPECT_EQ(is_loaded, info.m_entry != nullptr);
    return is_loaded;
}

} // namespace

TEST_F(Plugins, AreCalledThroughTheirEntryPoint)
{
    String const path = copy("good");
    PluginInfo info;
    ASSERT_TRUE(LoadPlugin(path, "InitTest", info));
    EXPECT_EQ(info.GetEntry<TestFunction>()(41), 42);
    String reason(L"none yet");
    EXPECT_EQ(GetPluginVerdict(path, &reason), pluginNotRefused);
    EXPECT_EQ(reason, L"");
}

TEST_F(Plugins, StayLoadedUntilTheyWereReleasedAsOftenAsLoaded)
{
    String const path = copy("good");
    int ends = 0;
    PluginInfo info;
    auto const load_twice = [&] {
        ASSERT_TRUE(LoadPlugin(path, "InitOther", info) && LoadPlugin(path, "InitOther", info));
        info.GetEntry<WatchFunction>()(&ends);
    };
    load_twice();
    FreePlugins("InitOther");
    EXPECT_EQ(ends, 1);
    FreePlugins("InitOther");
    FreePlugins(nullptr);

    load_twice();
    FreePlugin(info.m_module, "InitTest"); // not loaded for that
    FreePlugin(info.m_module, "InitOther");
    EXPECT_EQ(ends, 1);
    FreePlugin(info.m_module, "InitOther");
    EXPECT_EQ(ends, 2);
}

TEST_F(Plugins, AreRefusedWithAReason)
{
    struct Row {
        char const *plugin;
        PluginVerdict verdict;
        wchar_t const *reason; // behind the path
    };
    Row const rows[] = {
        { "other_version", pluginOtherVersion, L" is a plug-in of version 0x40001, not 0x50000." },
        { "no_version", pluginNoVersionFunction,
            L" is not a plug-in: it has no function BrantisGetPluginVersion." },
        { "no_entry", pluginNoEntryPoint, L" has no function InitTest." },
        { "missing_dependency", pluginMissingDependency,
            is_windows ? L" needs the library absent.dll, which was not found."
                       : L" needs the library absent.so, which was not found." },
        { "missing_deeper", pluginMissingDependency,
            is_windows ? L" needs the library absent.dll, which was not found."
                       : L" needs the library absent.so, which was not found." },
        { "crashes_in_version", pluginCrashed,
            is_windows ? L" crashed while it was examined: 0xC0000005."
                       : L" crashed while it was examined: signal 11 (Segmentation fault)." },
        { "refuses", pluginNotLoaded,
            is_windows ? L" could not be loaded: system error 1114."
                       : L" could not be loaded: undefined symbol: name_that_nobody_has." },
    };
    SearchFolder const folder(
        std::filesystem::absolute(KOR_TEST_PLUGINS "/present").make_preferred().string());
    for (Row const &row : rows) {
        SCOPED_TRACE(row.plugin);
        String const path = copy(row.plugin);
        EXPECT_FALSE(load(path));
        String reason;
        EXPECT_EQ(GetPluginVerdict(path, &reason), row.verdict);
        std::wstring const text = reason.GetConstBuffer();
        EXPECT_TRUE(text.ends_with(std::wstring(L".dll") + row.reason))
            << CXTString<char>(reason).GetConstBuffer();
    }
}

TEST_F(Plugins, AreNotMistakenForOtherFiles)
{
    struct Row {
        String path;
        PluginVerdict verdict;
    };
    std::string const elf_for_arm("\x7F"
                                  "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\xB7\0",
        20);
    std::string const elf_for_intel("\x7F"
                                    "ELF\2\1\1\0\0\0\0\0\0\0\0\0\3\0\x3E\0",
        20);
    std::string pe(128, '\0');
    pe.replace(0, 2, "MZ");
    pe[60] = 64;
    pe.replace(64, 6, std::string("PE\0\0\x64\x86", 6));
    pe.replace(64 + 22, 4, std::string("\x00\x20\x0B\x02", 4));
    Row const rows[] = {
        { path_of("none.dll"), pluginNotFound },
        { write("text.dll", "Not a library, just a text."), pluginNotALibrary },
        { write("arm.dll", elf_for_arm), pluginWrongMachine },
        { write("elf.dll", elf_for_intel), is_windows ? pluginWrongMachine : pluginNotALibrary },
        { write("pe.dll", pe), is_windows ? pluginNotALibrary : pluginWrongMachine },
    };
    for (Row const &row : rows) {
        SCOPED_TRACE(CXTString<char>(row.path).GetConstBuffer());
        EXPECT_FALSE(load(row.path));
        EXPECT_EQ(GetPluginVerdict(row.path), row.verdict);
    }
}

TEST_F(Plugins, StayRefusedUnderEveryNameOfThePathAndForEveryEntryPoint)
{
    String const path = write("late.dll", "not yet a library");
    EXPECT_FALSE(load(path));
    copy("good", "late");
    EXPECT_FALSE(load(path));
    EXPECT_FALSE(load(path, "InitOther"));
    String other = path;
    fileConvertSlash(other);
    EXPECT_FALSE(load(other));
    EXPECT_EQ(GetPluginVerdict(other), pluginNotALibrary);
    EXPECT_TRUE(load(copy("good", "early")));
}

TEST_F(Plugins, AreLoadedAndReleasedBySeveralThreads)
{
    String const good = copy("good");
    String const bad = copy("no_entry");
    std::atomic<int> loaded { 0 };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 3; ++round) {
                PluginInfo info;
                EXPECT_FALSE(LoadPlugin(bad, "InitTest", info));
                if (LoadPlugin(good, "InitTest", info)) {
                    loaded += info.GetEntry<TestFunction>()(0);
                    FreePlugin(info.m_module, "InitTest");
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(loaded, 12);
}

#if !defined(_WIN32)

TEST_F(Plugins, DoNoHarmWhenTheyAreLoaded)
{
    String const crashing = copy("crashes_at_start");
    EXPECT_FALSE(load(crashing));
    EXPECT_EQ(GetPluginVerdict(crashing), pluginCrashed);

    String const hanging = copy("hangs_at_start");
    unsigned int const before = SetPluginProbeLimit(200);
    EXPECT_FALSE(load(hanging));
    EXPECT_EQ(SetPluginProbeLimit(before), 200U);
    String reason;
    EXPECT_EQ(GetPluginVerdict(hanging, &reason), pluginHung);
    EXPECT_TRUE(
        reason.GetView().ends_with(L"hangs_at_start.dll did not answer within 200 milliseconds."));
}

TEST_F(Plugins, MayNeedLibrariesThatOnlyTheHostFinds)
{
    PluginInfo info;
    ASSERT_TRUE(LoadPlugin(copy("needs_host"), "InitTest", info));
    EXPECT_EQ(info.GetEntry<TestFunction>()(24), 29);
}

TEST_F(Plugins, AreRefusedWithoutTheHelperProgram)
{
    String const path = copy("good");
    setenv("KORTOOLS_PLUGIN_PROBE", "/no/such/program", 1);
    EXPECT_FALSE(load(path));
    unsetenv("KORTOOLS_PLUGIN_PROBE");
    String reason;
    EXPECT_EQ(GetPluginVerdict(path, &reason), pluginNotProbed);
    EXPECT_NE(reason.Find(L"/no/such/program"), -1);
}

#endif

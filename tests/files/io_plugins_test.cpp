// SPDX-License-Identifier: MIT
#include "kortools/files/io_plugins.h"

#include "kortools/app/log.h"
#include "kortools/app/start.h"
#include "kortools/files/file_types.h"
#include "kortools/files/plugin_files.h"
#include "kortools/files/plugins.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

using String = CXTString<wchar_t>;

namespace {

int s_releases = 0;
unsigned int s_kind_at_release = 99; // of the plug-in's file

void watch_release()
{
    ++s_releases;
    s_kind_at_release = fileGetKindOf(L"a.tio");
}

// A folder with the plug-in, with a copy that is not for here, and no types but the library's.
class IoPlugins : public testing::Test {
protected:
    IoPlugins()
    {
        SetPluginProbeLimit(60000); // the machine may be busy
        std::filesystem::path const source = std::filesystem::path(KOR_TEST_PLUGINS);
        std::filesystem::copy_file(source / "io_types.dll", m_folder.GetPath() / m_name);
        m_folder.Write("text" + m_suffix, "no library");
        m_folder.Write("a.tio", "any");
        InitKorTools(korFileTypes);
    }
    ~IoPlugins() override
    {
        FreeIOPlugins(fileKind3D);
        FreeIOPlugins(fileKindBitmap);
        CloseKorTools(korFileTypes);
    }

    void register_plugins(unsigned int kind = fileKind3D)
    {
        RegisterIOPlugins(kind, m_folder.GetPath().wstring().c_str());
    }
    // Lets the plug-in tell of its release.
    void watch()
    {
        PluginInfo info;
        String const path = (m_folder.GetPath() / m_name).wstring().c_str();
        ASSERT_TRUE(LoadPlugin(path, "WatchRelease", info));
        info.GetEntry<void (*)(void (*)())>()(watch_release);
        FreePlugin(info.m_module, "WatchRelease");
        s_releases = 0;
    }

    TempFolder m_folder;
    std::string m_suffix = sizeof(wchar_t) == 2 ? ".dll" : ".so";
    std::string m_name = "io_types" + m_suffix;
    String m_file = m_folder.GetFile(L"a.tio").c_str();
};

std::size_t count_types()
{
    unsigned int count = 0;
    fileFreeRegisteredFiles(fileGetRegisteredFiles(count), count);
    return count;
}

// Holds a load back until it is let go.
class Gate : public CIoSink {
public:
    bool OnProgress(double) override
    {
        std::unique_lock lock(m_lock);
        m_is_inside = true;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return m_is_open; });
        return true;
    }
    void await_load()
    {
        std::unique_lock lock(m_lock);
        m_changed.wait(lock, [&] { return m_is_inside; });
    }
    void open()
    {
        std::lock_guard const lock(m_lock);
        m_is_open = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    bool m_is_inside = false;
    bool m_is_open = false;
};

} // namespace

TEST_F(IoPlugins, GoodTypesAreRegisteredAndFaultyOnesAreNot)
{
    std::size_t const before = count_types();
    String const log = m_folder.GetFile(L"log.txt").c_str();
    SetLogFile(log, logFileCreate, logLevelAll);
    register_plugins(fileKindBitmap); // throws
    EXPECT_EQ(count_types(), before);
    register_plugins();
    register_plugins(); // nothing new
    CloseLogFile();
    EXPECT_EQ(count_types(), before + 2);
    EXPECT_EQ(fileGetClass(L"x.TIOZ"), fileMakeCode("TIO1"));
    EXPECT_EQ(fileGetLoader(L"x.tio"), fileMakeCode("TIO1"));
    EXPECT_EQ(fileGetClass(L"x.faulty"), 0U);
    std::string text = m_folder.Read("log.txt");
    std::erase(text, '\0'); // the log may be UTF-16
    for (char const *reason : { "an exception left it", "TIO1: it was handed out before",
             "a type: there is no type", "F001: the type has 0 bytes", "of version 0, not 1",
             "F003: its kind is not", "F004: its kind is not", "F005: it can be neither",
             "scenes cannot be saved", "type 0: its codes", "F008: its codes", "no description",
             "its description does not end", "its list of extensions does not end",
             "FEXT: its extensions" })
        EXPECT_NE(text.find(reason), std::string::npos) << reason;
}

TEST_F(IoPlugins, AFilterLeavesTypesOutUntilTheLibraryEnds)
{
    EXPECT_EQ(FilterPlugins(fileMakeCode("TIO2")), 1);
    EXPECT_EQ(FilterPlugins(7), 2);
    register_plugins();
    FilterPlugins(fileMakeCode("TIO1")); // too late
    EXPECT_EQ(fileGetClass(L"x.tio"), fileMakeCode("TIO1"));
    EXPECT_EQ(fileGetClass(L"x.filtered"), 0U);
    FreeIOPlugins(fileKind3D);
    CloseKorTools(korFileTypes);
    InitKorTools(korFileTypes);
    register_plugins();
    EXPECT_EQ(fileGetClass(L"x.filtered"), fileMakeCode("TIO2"));
    EXPECT_EQ(FilterPlugins(7), 1);
}

TEST_F(IoPlugins, TypesAreGoneWhenAPluginIsReleased)
{
    for (bool const all : { true, false }) {
        register_plugins();
        watch();
        ASSERT_EQ(fileGetKindOf(L"a.tio"), fileKind3D);
        if (all)
            FreeIOPlugins(fileKind3D);
        else
            FreePlugins("Init3DParser");
        EXPECT_EQ(s_releases, 1);
        EXPECT_EQ(s_kind_at_release, 0U);
    }
}

TEST_F(IoPlugins, ALoadEndsBeforeItsPluginIsReleased)
{
    register_plugins();
    watch();
    Gate gate;
    CIoReport report;
    std::atomic<bool> is_freed { false };
    std::thread loading([&] { fileLoadWithPlugin(m_file, gate, &report); });
    gate.await_load();
    std::thread freeing([&] {
        FreeIOPlugins(fileKind3D);
        is_freed = true;
    });
    while (fileGetKindOf(L"a.tio") != 0) // the types go first
        std::this_thread::yield();
    EXPECT_FALSE(is_freed);
    EXPECT_EQ(s_releases, 0);
    gate.open();
    loading.join();
    freeing.join();
    EXPECT_EQ(report.m_result, ioDone);
    EXPECT_EQ(s_releases, 1);
}

TEST_F(IoPlugins, APluginCannotBeFreedFromWithin)
{
    class Freeing : public CIoSink {
        bool OnMesh(CIoMesh const &) override
        {
            FreeIOPlugins(fileKind3D);
            FreePlugins("Init3DParser");
            return true;
        }
    } sink;
    register_plugins();
    EXPECT_TRUE(fileLoadWithPlugin(m_file, sink));
    EXPECT_EQ(fileGetKindOf(L"a.tio"), fileKind3D);
}

TEST_F(IoPlugins, TypesStayWithTheLibraryAndReturnToANewRegistry)
{
    register_plugins();
    PluginInfo info;
    ASSERT_TRUE(LoadPlugin((m_folder.GetPath() / m_name).wstring().c_str(), "Init3DParser", info));
    FreePlugin(info.m_module, "Init3DParser"); // one load of two
    EXPECT_EQ(fileGetClass(L"x.tio"), fileMakeCode("TIO1"));
    CloseKorTools(korFileTypes);
    register_plugins(); // nowhere to
    InitKorTools(korFileTypes);
    EXPECT_EQ(fileGetClass(L"x.tio"), 0U);
    register_plugins();
    EXPECT_EQ(fileGetClass(L"x.tio"), fileMakeCode("TIO1"));
}

TEST_F(IoPlugins, MayBeFreedWhileTheyAreBeingRegistered)
{
    std::atomic<bool> is_done { false };
    std::thread freeing([&] {
        while (!is_done) {
            FreeIOPlugins(fileKind3D);
            std::this_thread::yield();
        }
    });
    for (int round = 0; round < 20; ++round)
        register_plugins();
    is_done = true;
    freeing.join();
    FreeIOPlugins(fileKind3D);
    EXPECT_EQ(fileGetKindOf(L"a.tio"), 0U);
    register_plugins();
    EXPECT_EQ(fileGetKindOf(L"a.tio"), fileKind3D);
}

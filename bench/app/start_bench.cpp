// SPDX-License-Identifier: MIT
// Start and end of the library beside construction and destruction of a QCoreApplication, without
// and with the registry of file types (of which QCoreApplication has none); and values of a profile
// beside those of QSettings, in files that both have read before.
#include "kortools/app/application.h"
#include "kortools/app/start.h"
#include "kortools/app/win_app.h"

#include <QCoreApplication>
#include <QSettings>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

void start_and_end(benchmark::State &state, unsigned int flags)
{
    for (auto _ : state) {
        InitBrantisApplication("bench", L"C:\\Apps\\bench", flags);
        CloseBrantisApplication(flags);
    }
}

void construct_and_destroy(benchmark::State &state)
{
    char name[] = "bench";
    char *arguments[] = { name, nullptr };
    for (auto _ : state) {
        int count = 1;
        QCoreApplication const application(count, arguments);
        benchmark::DoNotOptimize(&application);
    }
}

void BM_StartAndEnd_KorTools(benchmark::State &state)
{
    start_and_end(state, korInvalidParameters | korAllState);
}
BENCHMARK(BM_StartAndEnd_KorTools);

void BM_StartAndEnd_QCoreApplication(benchmark::State &state)
{
    construct_and_destroy(state);
}
BENCHMARK(BM_StartAndEnd_QCoreApplication);

void BM_StartAndEndWithFileTypes_KorTools(benchmark::State &state)
{
    start_and_end(state, korFileTypes | korFaultSignals | korInvalidParameters | korAllState);
}
BENCHMARK(BM_StartAndEndWithFileTypes_KorTools);

void BM_StartAndEndWithFileTypes_QCoreApplication(benchmark::State &state)
{
    construct_and_destroy(state);
}
BENCHMARK(BM_StartAndEndWithFileTypes_QCoreApplication);

// A folder of profiles for this run.
class Folder {
public:
    Folder()
        : m_path(std::filesystem::temp_directory_path() / "kortools-bench-profile")
    {
        std::filesystem::create_directories(m_path);
        setenv("XDG_CONFIG_HOME", m_path.c_str(), 1);
        SetInternalProductName(L"bench");
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    Folder(Folder const &) = delete;
    Folder &operator=(Folder const &) = delete;

    std::filesystem::path const m_path;
};

constexpr int value_count = 100;

void BM_ReadSetting_CWinApp(benchmark::State &state)
{
    Folder const folder;
    CWinApp app;
    for (int i = 0; i < value_count; ++i)
        app.WriteProfileInt(L"settings", std::to_wstring(i).c_str(), i);
    for (auto _ : state) {
        if (app.GetProfileInt(L"settings", L"50", -1) != 50)
            state.SkipWithError("wrong value");
    }
}
BENCHMARK(BM_ReadSetting_CWinApp);

void BM_ReadSetting_QSettings(benchmark::State &state)
{
    Folder const folder;
    QString const path = QString::fromStdString((folder.m_path / "qt.ini").string());
    QSettings writer(path, QSettings::IniFormat);
    for (int i = 0; i < value_count; ++i)
        writer.setValue("settings/" + QString::number(i), i);
    writer.sync();
    for (auto _ : state) { // another object, as another part of a program has
        QSettings const settings(path, QSettings::IniFormat);
        if (settings.value("settings/50").toInt() != 50)
            state.SkipWithError("wrong value");
    }
}
BENCHMARK(BM_ReadSetting_QSettings);

} // namespace

BENCHMARK_MAIN();

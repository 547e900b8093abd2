// SPDX-License-Identifier: MIT
// Fifty libraries in a folder. First what is read from their files: here the head and the exported
// names, in Qt the meta data of its plug-ins. Then the whole way to their entry points, here with
// each library's version asked in a helper process, in Qt's QLibrary without any such protection.
#include "kortools/files/module_image.h"
#include "kortools/files/plugin_modules.h"
#include "kortools/platform/file_system.h"
#include "kortools/platform/version_probe.h"
#include "tests/support/temp_folder.h"

#include <QDirIterator>
#include <QJsonObject>
#include <QLibrary>
#include <QLibraryInfo>
#include <QPluginLoader>
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace kortools;

constexpr int library_count = 50;

// Copies of one library.
class Folder {
public:
    explicit Folder(std::filesystem::path const &library)
    {
        for (int i = 0; i < library_count && !library.empty(); ++i) {
            std::filesystem::path const copy
                = m_folder.GetPath() / (std::to_string(i) + library.filename().string());
            std::filesystem::copy_file(library, copy);
            native.push_back(QString::fromStdString(copy.string()));
            paths.emplace_back(platform::from_native_path(copy.string()).c_str());
        }
    }
    std::vector<QString> native;
    std::vector<CXTString<wchar_t>> paths;

private:
    TempFolder m_folder;
};

std::filesystem::path find_qt_plugin()
{
    QDirIterator files(QLibraryInfo::path(QLibraryInfo::PluginsPath), { "*.so" }, QDir::Files,
        QDirIterator::Subdirectories);
    return files.hasNext() ? files.next().toStdString() : "";
}

void BM_ReadFiftyLibraries_KorTools(benchmark::State &state)
{
    Folder const folder(find_qt_plugin());
    int found = 0;
    for (auto _ : state) {
        found = 0;
        for (CXTString<wchar_t> const &path : folder.paths) {
            files::FileImageSource const source(path.GetConstBuffer());
            found += files::read_module_image(source).exports("qt_plugin_instance");
        }
    }
    if (found != library_count)
        state.SkipWithError("wrong result");
}
BENCHMARK(BM_ReadFiftyLibraries_KorTools);

void BM_ReadFiftyLibraries_QPluginLoader(benchmark::State &state)
{
    Folder const folder(find_qt_plugin());
    int found = 0;
    for (auto _ : state) {
        found = 0;
        for (QString const &path : folder.native)
            found += QPluginLoader(path).metaData().contains("IID");
    }
    if (found != library_count)
        state.SkipWithError("wrong result");
}
BENCHMARK(BM_ReadFiftyLibraries_QPluginLoader);

void BM_LoadFiftyPlugins_KorTools(benchmark::State &state)
{
    platform::set_probe_program(KOR_PLUGIN_PROBE);
    Folder const folder(KOR_BENCH_PLUGIN);
    int loaded = 0;
    for (auto _ : state) {
        loaded = 0;
        files::PluginScan scan;
        PluginInfo info;
        for (CXTString<wchar_t> const &path : folder.paths)
            loaded += scan.load(path, "InitTest", info);
        FreePlugins("InitTest");
    }
    if (loaded != library_count)
        state.SkipWithError("wrong result");
}
BENCHMARK(BM_LoadFiftyPlugins_KorTools)->UseRealTime();

void BM_LoadFiftyPlugins_QLibrary(benchmark::State &state)
{
    Folder const folder(KOR_BENCH_PLUGIN);
    int loaded = 0;
    for (auto _ : state) {
        loaded = 0;
        for (QString const &path : folder.native) {
            QLibrary library(path);
            auto const version
                = reinterpret_cast<unsigned int (*)()>(library.resolve("BrantisGetPluginVersion"));
            loaded += version && version() == pluginVersion && library.resolve("InitTest");
            library.unload();
        }
    }
    if (loaded != library_count)
        state.SkipWithError("wrong result");
}
BENCHMARK(BM_LoadFiftyPlugins_QLibrary)->UseRealTime();

} // namespace

BENCHMARK_MAIN();

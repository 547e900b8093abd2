// SPDX-License-Identifier: MIT
// scoutrix: the sample host. Imports files into a scene and lists what a scene holds.
#include "apps/common/console.h"
#include "apps/scene/scene_file.h"
#include "apps/scoutrix/importer.h"
#include "kortools/archive/exception.h"
#include "kortools/platform/terminal.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace {

using kor_apps::from_utf8;
using kor_apps::print_line;
using scoutrix::Text;

Text format_time(long long seconds)
{
    std::time_t const time = seconds;
    std::tm const *const utc = std::gmtime(&time);
    if (utc == nullptr)
        return L"-";
    Text text;
    text.Format(L"%04d-%02d-%02d %02d:%02d:%02d", utc->tm_year + 1900, utc->tm_mon + 1,
        utc->tm_mday, utc->tm_hour, utc->tm_min, utc->tm_sec);
    return text;
}

void print_asset(CSceneAsset const &asset)
{
    Text line;
    line.Format(L"%-24s %12I64u  %s  %-24s %s", asset.m_name.GetConstBuffer(), asset.m_size,
        format_time(asset.m_modified).GetConstBuffer(),
        asset.m_format != nullptr ? asset.m_format->m_name.GetConstBuffer() : L"-",
        asset.Describe().GetConstBuffer());
    print_line(line);
}

void print_summary(CScene const &scene)
{
    unsigned long long total = 0;
    for (CSceneAsset const *const asset : scene.GetAssets())
        total += asset->m_size;
    Text line;
    line.Format(L"%d files from %d folders, %I64u bytes", scene.GetAssets().GetSize(),
        scene.GetFolderCount(), total);
    print_line(line);
}

// Imports what it can; the number of files that failed.
int import_files(std::vector<std::string> const &files, CScene &scene)
{
    int failures = 0;
    for (std::string const &file : files) {
        Text const path = from_utf8(file);
        try {
            kor_apps::ProgressLine progress(path);
            scene.Add(scoutrix::import_file(path, scene, progress).release());
        } catch (CXException *exception) {
            kor_apps::print_error("scoutrix", exception->GetErrorMessage());
            exception->Delete();
            ++failures;
        }
    }
    return failures;
}

int run_import(std::vector<std::string> const &files, std::string const &target)
{
    CScene scene;
    int const failures = import_files(files, scene);
    if (failures > 0) {
        kor_apps::print_error("scoutrix", L"no scene written: a file could not be imported");
        return 1;
    }
    scoutrix::save_scene(scene, from_utf8(target));
    for (CSceneAsset const *const asset : scene.GetAssets())
        print_asset(*asset);
    print_summary(scene);
    return 0;
}

int run_list(std::string const &source)
{
    std::unique_ptr<CScene> const scene = scoutrix::load_scene(from_utf8(source));
    for (CSceneAsset const *const asset : scene->GetAssets())
        print_asset(*asset);
    print_summary(*scene);
    return 0;
}

int run(std::vector<std::string> arguments)
{
    CLI::App app("Keeps what is in your 3D and image files in a scene.", "scoutrix");
    app.require_subcommand(1);
    std::vector<std::string> files;
    std::string scene;
    CLI::App *const import = app.add_subcommand("import", "Read files and write a scene");
    import->add_option("FILE", files, "BMP, PNG or Wavefront OBJ files")->required();
    import->add_option("-o,--output", scene, "The scene to write")->required();
    CLI::App *const list = app.add_subcommand("list", "Print what a scene holds");
    list->add_option("SCENE", scene, "A scene that import wrote")->required();
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        reversed.pop_back(); // the program's name; the parser takes the rest from the back
        app.parse(reversed);
    } catch (CLI::ParseError const &error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    return import->parsed() ? run_import(files, scene) : run_list(scene);
}

} // namespace

int main(int argc, char **argv)
{
    kortools::platform::prepare_standard_streams();
    try {
        return run(kortools::platform::get_utf8_arguments(argc, argv));
    } catch (CXException *exception) {
        kor_apps::print_error("scoutrix", exception->GetErrorMessage());
        exception->Delete();
    } catch (std::exception const &error) {
        kor_apps::print_error("scoutrix", from_utf8(error.what()));
    }
    return 1;
}

// SPDX-License-Identifier: MIT
// Writes the files of samples/ that come from the library into a folder; those that are there stay
// as they are, since what an earlier build wrote must stay readable:
//   make_samples FOLDER
#include "apps/scene/scene_file.h"
#include "tests/apps/sample_content.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    std::filesystem::path const folder = std::filesystem::absolute(argv[1]);
    auto const write = [&](char const *name, std::string const &bytes) {
        if (std::filesystem::exists(folder / name))
            return;
        std::printf("%s: %zu bytes\n", name, bytes.size());
        std::ofstream(folder / name, std::ios::binary) << bytes;
    };
    write("window.data", kor_test::make_settings_stream());
    write("settings.prefs", kor_test::make_preferences((folder / "new.prefs").wstring()));
    write("outline.tree", kor_test::make_outline());
    std::filesystem::remove(folder / "new.prefs");
    if (!std::filesystem::exists(folder / "models.scene")) {
        CScene scene;
        kor_test::fill_scene(scene);
        scoutrix::save_scene(scene, (folder / "models.scene").wstring().c_str());
    }
    return 0;
}

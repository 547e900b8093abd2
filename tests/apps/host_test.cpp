// SPDX-License-Identifier: MIT
// The commands of scoutrix, as a user types them.
#include "tests/apps/host_support.h"

#include "kortools/platform/child_program.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>

TEST_F(Host, ListsATreeInTheOrderThatIsAskedFor)
{
    Import({ "sphere.obj", "gradient.png", "checker.bmp" });
    EXPECT_EQ(ListNames({}), "samples sphere.obj sphere gradient.png checker.bmp ");
    EXPECT_NE(m_output.find("3 files in 1 folder, 19011 bytes\n"), std::string::npos) << m_output;
    EXPECT_EQ(
        ListNames({ "--sort", "name" }), "samples checker.bmp gradient.png sphere.obj sphere ");
    EXPECT_EQ(
        ListNames({ "--sort", "size", "-d2" }), "samples sphere.obj gradient.png checker.bmp ");
    EXPECT_EQ(
        ListNames({ "--sort", "kind", "-d2" }), "samples gradient.png checker.bmp sphere.obj ")
        << "equal kinds keep their order";
    EXPECT_EQ(Run({ "list", m_scene, "-p" }), 0);
    EXPECT_NE(m_output.find("\n           vertices: 176\n"), std::string::npos) << m_output;
}

TEST_F(Host, AppendsSetsGetsAndRemoves)
{
    Import({ "cube.obj" });
    EXPECT_EQ(Run({ "set", m_scene, "sides", "colour", "\xE2\x82\xAC" }), 0) << m_errors;
    EXPECT_EQ(Run({ "set", m_scene, "cube.obj", "name", "My cube" }), 0) << m_errors;
    EXPECT_EQ(Run({ "import", "-a", "-o", m_scene, Sample("checker.bmp"), Sample("cube.obj") }), 0);
    EXPECT_EQ(ListNames({ "-d2" }), "samples My checker.bmp ");
    EXPECT_EQ(Run({ "get", m_scene, "sides", "colour" }), 0);
    EXPECT_EQ(m_output, "\xE2\x82\xAC\n");
    EXPECT_EQ(Run({ "remove", m_scene, "My cube", "5" }), 0) << m_errors << "5 is a part of it";
    EXPECT_EQ(ListNames({}), "samples checker.bmp ");
}

TEST_F(Host, LeavesTheSceneWhenACommandFails)
{
    Import({ "cube.obj" });
    std::string const before = ListNames({ "-p" }) + m_output;
    auto const fails = [&](std::vector<std::string> const &arguments, char const *message) {
        EXPECT_NE(Run(arguments), 0);
        EXPECT_NE(m_errors.find(message), std::string::npos) << m_errors;
        EXPECT_EQ(ListNames({ "-p" }) + m_output, before);
    };
    fails({ "import", "-a", "-o", m_scene, Sample("checker.bmp"), Sample("README.md") },
        "no scene written");
    fails({ "remove", m_scene, "sides", "lid" }, "no node lid");
    fails({ "set", m_scene, "cube.obj", "size", "1" }, "cannot be set");
    fails({ "get", m_scene, "cube.obj", "colour" }, "no value colour");
    // A second node of the name.
    EXPECT_EQ(Run({ "set", m_scene, "sides", "name", "cube" }), 0);
    EXPECT_EQ(Run({ "remove", m_scene, "cube" }), 1);
    EXPECT_NE(m_errors.find("take the number of one: 3 5"), std::string::npos) << m_errors;
    // Where the temporary file cannot be written, the scene stays as it is.
    std::filesystem::create_directory(m_scene + ".tmp");
    EXPECT_EQ(Run({ "remove", m_scene, "cube.obj" }), 1);
    EXPECT_EQ(ListNames({ "-d2" }), "samples cube.obj ");
}

TEST_F(Host, SearchesTheNamesOfNodes)
{
    Import({ "cube.obj", "sphere.obj", "checker.bmp" });
    EXPECT_EQ(Run({ "set", m_scene, "sides", "name", "Table leg" }), 0) << m_errors;
    struct Case {
        char const *expression;
        int code;
        char const *output;
    };
    for (auto const &[expression, code, output] : {
             Case { "cube*", 0, "    2  samples\\cube.obj\n    3  samples\\cube.obj\\cube\n" },
             Case { "table !leg", 1, "" },
             Case { "*.obj !s*", 0, "    2  samples\\cube.obj\n" },
             Case { "(unbalanced", 2, "" },
         }) {
        EXPECT_EQ(Run({ "search", expression, m_scene }), code) << expression << m_errors;
        EXPECT_EQ(m_output, output) << expression;
    }
    EXPECT_EQ(Run({ "search", "-c", "\"*LEG\"", m_scene }), 1) << m_output;
}

TEST_F(Host, ListsTheTypesOfAKind)
{
    EXPECT_EQ(Run({ "types", "web", "video", "--save" }), 0);
    EXPECT_EQ(std::ranges::count(m_output, '\n'), 2) << m_output;
    EXPECT_NE(
        m_output.find("AVI    video  load save  BRNS    BRNS            .avi        Avi files\n"),
        std::string::npos)
        << m_output;
    EXPECT_EQ(Run({ "types", "audio", "--save" }), 1);
}

TEST_F(Host, OpensFilesByTheirNames)
{
    std::string const cut = to_utf8(m_folder.GetPath() / "cut.PNG");
    std::filesystem::copy_file(Sample("gradient.png"), cut);
    std::filesystem::resize_file(cut, 600);
    EXPECT_EQ(Run({ "open", Sample("cube.obj"), Sample("gradient.png") }), 0) << m_errors;
    for (char const *fact : { "    size: 250\n", "    kind: mesh\n", "    maximum: 0.5 0.5 0.5\n",
             "    width: 48\n", "    type: PNG, ", "    loader: " })
        EXPECT_NE(m_output.find(fact), std::string::npos) << fact << m_output;
    struct Case {
        std::string file;
        int code;
        char const *message;
    };
    for (auto const &[file, code, message] : { Case { Sample("missing.obj"), 3, "no such file" },
             { to_utf8(m_folder.GetPath()), 3, "a folder" },
             { Sample("window.data"), 4, "window.data: " }, { cut, 5, "is cut" } }) {
        EXPECT_EQ(Run({ "open", "-t", file, Sample("checker.bmp"), "nothing" }), code) << m_errors;
        EXPECT_NE(m_errors.find(message), std::string::npos) << m_errors;
        EXPECT_NE(m_output.find("20 x 12, 24 bits"), std::string::npos) << m_output;
    }
}

TEST_F(Host, PrintsResultsAsJson)
{
    Import({ "cube.obj", "checker.bmp" });
    Run({ "set", m_scene, "sides", "colour", "a \"b\" \xE2\x82\xAC" });
    auto const run = [&](std::vector<std::string> arguments, int code) {
        arguments.push_back("--json");
        EXPECT_EQ(Run(arguments), code) << m_errors;
        return nlohmann::json::parse(m_output, nullptr, false);
    };
    auto const list = run({ "list", m_scene, "-p", "-d2" }, 0);
    EXPECT_EQ(list["files"], 2) << list;
    EXPECT_EQ(list["nodes"].size(), 3U) << "the depth counts";
    EXPECT_EQ(list["nodes"][1]["depth"], 1);
    EXPECT_EQ(list["nodes"][1]["properties"]["minimum"].size(), 3U) << list["nodes"][1];
    EXPECT_TRUE(list["nodes"][2]["properties"]["top-down"].is_boolean()) << list["nodes"][2];
    EXPECT_EQ(run({ "get", m_scene, "sides" }, 0)["values"]["colour"], "a \"b\" \xE2\x82\xAC");
    EXPECT_EQ(run({ "get", m_scene, "checker.bmp", "width" }, 0),
        nlohmann::json(list["nodes"][2]["properties"]["width"]));
    EXPECT_EQ(run({ "search", "cube*", m_scene }, 0)[0]["path"], "samples\\cube.obj");
    EXPECT_EQ(run({ "search", "nothing", m_scene }, 1), nlohmann::json::array());
    auto const types = run({ "types", "bitmap" }, 0);
    EXPECT_EQ(types[0]["kind"], "bitmap") << types;
    EXPECT_TRUE(types[0]["extensions"].is_array()) << types;
    auto const opened = run({ "open", Sample("checker.bmp"), Sample("missing.bmp") }, 3);
    EXPECT_GT(opened[0]["properties"]["width"], 0) << opened;
    EXPECT_EQ(opened[1]["code"], 3) << opened;
    EXPECT_EQ(run({ "recent" }, 0).size(), 1U);
    EXPECT_EQ(run({ "prefs" }, 0)["settings"]["depth"], "all");
}

// Whoever asks for this program's description gets commands with all that they take.
TEST_F(Host, DescribesItselfForManualsAndCompletions)
{
    EXPECT_EQ(Run({ "--describe" }), 0) << "no command is wanted";
    auto const json = nlohmann::json::parse(m_output, nullptr, false);
    EXPECT_EQ(json["name"], "scoutrix") << m_output;
    EXPECT_EQ(json["exits"].back()["code"], 130);
    auto const find = [](nlohmann::json const &list, char const *key, auto const &value) {
        return *std::ranges::find_if(list, [&](auto const &each) { return each[key] == value; });
    };
    auto const types = find(json["commands"], "name", "types");
    EXPECT_EQ(types["arguments"][0]["choices"].size(), 6U) << types;
    EXPECT_EQ(types["arguments"][0]["repeated"], true) << types;
    auto const import = find(json["commands"], "name", "import");
    auto const output = find(import["options"], "names", std::vector { "-o", "--output" });
    EXPECT_EQ(output["value"], "SCENE") << output;
    EXPECT_EQ(output["required"], true) << output;
    EXPECT_EQ(find(json["commands"], "name", "prefs")["commands"].size(), 6U);
    EXPECT_EQ(m_output.find("--describe"), std::string::npos) << "it is not for users";
}

TEST_F(Host, HandsAllBehindViewToTheViewer)
{
    if (!kortools::platform::find_program("scoutrix-view").empty())
        GTEST_SKIP() << "the real one would show a window";
    EXPECT_EQ(Run({ "view", Sample("cube.obj"), "--help" }), 1);
    EXPECT_NE(m_errors.find("scoutrix-view is not installed"), std::string::npos) << m_errors;
#ifndef _WIN32 // where a script is no program
    auto const folder = m_folder.GetPath() / "viewer";
    auto const script = folder / "scoutrix-view";
    std::filesystem::create_directory(folder);
    std::ofstream(script) << "#!/bin/sh\n[ \"$*\" = '--help -- --log a b -j' ] && exit 42\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    std::string const path = std::getenv("PATH");
    setenv("PATH", (":relative:" + folder.string() + ":" + path).c_str(), 1);
    EXPECT_EQ(Run({ "view", "--help", "--", "--log", "a b", "-j" }), 42) << m_errors;
    setenv("PATH", path.c_str(), 1);
#endif
}

// SPDX-License-Identifier: MIT
// The files that earlier builds wrote: the library reads them with their whole content, and kordump
// understands every byte.
#include "apps/scene/scene_file.h"
#include "kortools/archive/mem_file.h"
#include "tests/apps/dump_support.h"
#include "tests/apps/sample_content.h"
#include "tests/support/temp_folder.h"

using namespace kor_test;

namespace {

std::string read_sample(char const *name)
{
    return read_bytes(KOR_SAMPLES "/" + std::string(name));
}

CXTString<wchar_t> find_sample(char const *name)
{
    return std::filesystem::path(KOR_SAMPLES "/" + std::string(name)).wstring().c_str();
}

// Both trees have equal nodes in the same places.
bool are_equal(CTree const &one, CTree const &other)
{
    CTreeNode const *a = one.GetConstRoot()->GetChild();
    CTreeNode const *b = other.GetConstRoot()->GetChild();
    while (a && b && *a == *b && CTree::GetDepth(a) == CTree::GetDepth(b)) {
        a = one.GetConstNextNode(a);
        b = other.GetConstNextNode(b);
    }
    return !a && !b;
}

} // namespace

TEST(Samples, StreamHasItsContent)
{
    std::string const bytes = read_sample("window.data");
    CCustomData expected;
    CCustomData window;
    fill_window(expected);
    ASSERT_TRUE(window.SerializeFromData(bytes.data(), bytes.size()));
    EXPECT_TRUE(window.IsEqual(expected));
}

TEST(Samples, PreferencesHaveTheirRecords)
{
    CXTString<wchar_t> const file = find_sample("settings.prefs");
    CCustomData settings;
    CCustomData window;
    CCustomData loaded;
    fill_settings(settings);
    fill_window(window);
    for (unsigned const version : { 1, 3 })
        EXPECT_TRUE(
            loaded.LoadFromPrefs(file, settings_id, version, false) && loaded.IsEqual(settings))
            << version;
    EXPECT_TRUE(loaded.LoadFromPrefs(file, window_id, 2, false) && loaded.IsEqual(window));
    EXPECT_FALSE(loaded.LoadFromPrefs(file, window_id, 1, false));
}

TEST(Samples, TreeHasItsNodes)
{
    std::string const bytes = read_sample("outline.tree");
    CXMemFile file(reinterpret_cast<unsigned char const *>(bytes.data()), bytes.size());
    CXArchive archive(&file, CXArchive::load);
    CTree expected;
    CTree outline;
    fill_outline(expected);
    outline.Serialize(archive);
    EXPECT_TRUE(are_equal(outline, expected));
    EXPECT_EQ(outline.GetChildNbr(nullptr, false), 6);
}

TEST(Samples, SceneHasItsNodes)
{
    auto const scene = scoutrix::load_scene(find_sample("models.scene"));
    ASSERT_EQ(scene->Find(L"gradient.png").size(), 1U);
    CSceneNode const &bitmap = *scene->Find(L"gradient.png")[0];
    EXPECT_EQ(bitmap.GetNumber(scoutrix::propertyWidth), 48U);
    EXPECT_EQ(bitmap.GetText(scoutrix::propertyFormat), L"Portable Network Graphics");
    CSceneNode const &mesh = *scene->Find(L"cube.obj")[0];
    EXPECT_EQ(mesh.GetUserValues().at(0).value, L"a user's own");
    EXPECT_EQ(scene->Find(L"sides")[0]->GetParent(), &mesh);
}

TEST(Samples, AreWhatTheLibraryStillWrites)
{
    TempFolder const folder;
    EXPECT_EQ(make_settings_stream(), read_sample("window.data"));
    EXPECT_EQ(make_outline(), read_sample("outline.tree"));
    EXPECT_EQ(make_preferences(folder.GetFile(L"new.prefs")), read_sample("settings.prefs"));
}

TEST(Samples, AreUnderstoodByKordump)
{
    for (char const *const name :
        { "window.data", "settings.prefs", "outline.tree", "models.scene" }) {
        std::string const bytes = read_sample(name);
        kordump::Plan plan = make_plan(bytes);
        plan.layouts = parse_layouts(read_sample("outline.classes"));
        Json const json = to_parsed_json(bytes, plan);
        EXPECT_FALSE(json.contains("rest")) << name << json["rest"];
        EXPECT_EQ(json.dump().find("\"hex\""), std::string::npos) << name;
        EXPECT_TRUE(comes_back(bytes, plan)) << name;
    }
    Json const window
        = to_parsed_json(read_sample("window.data"), make_plan(read_sample("window.data")));
    Json const &entries = window["items"][0]["entries"];
    EXPECT_EQ(entries[0]["value"], Json::parse("{\"type\": \"f32\", \"elements\": [0.25, 1, 16]}"));
    EXPECT_EQ(
        entries[2]["value"]["entries"][0]["value"]["entries"][4]["value"], "2025-11-21T00:00:00Z");
}

// SPDX-License-Identifier: MIT
// The files that earlier builds wrote: the library reads them and writes them as they were, and
// kordump understands every byte.
#include "kortools/data/custom_data.h"
#include "tests/apps/dump_support.h"
#include "tests/archive/archive_support.h"
#include "tests/support/temp_folder.h"

using namespace kor_test;

namespace {

std::filesystem::path find_sample(char const *name)
{
    return std::filesystem::path(KOR_SAMPLES) / name;
}

std::string read_sample(char const *name)
{
    return read_file(find_sample(name));
}

} // namespace

TEST(Samples, OfCustomDataAreWrittenAsTheyWere)
{
    std::string const bytes = read_sample("window.data");
    CCustomData window;
    ASSERT_TRUE(window.SerializeFromData(bytes.data(), bytes.size()));
    EXPECT_EQ(store_bytes([&](CXArchive &archive) { window.Serialize(archive); }), bytes);
}

TEST(Samples, OfPreferencesAreWrittenAsTheyWere)
{
    TempFolder const folder;
    CXTString<wchar_t> const copy = folder.GetFile(L"copy.prefs").c_str();
    CXTString<wchar_t> const sample = find_sample("settings.prefs").wstring().c_str();
    CCustomData record;
    EXPECT_FALSE(record.LoadFromPrefs(sample, 0x57494E44, 1, false));
    for (auto const &[id, version] :
        { std::pair(0x53455454U, 1U), std::pair(0x57494E44U, 2U), std::pair(0x53455454U, 3U) }) {
        EXPECT_TRUE(record.LoadFromPrefs(sample, id, version, false));
        EXPECT_TRUE(record.SaveToPrefs(copy, id, version));
    }
    EXPECT_EQ(read_file(folder.GetPath() / "copy.prefs"), read_sample("settings.prefs"));
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
}

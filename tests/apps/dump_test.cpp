// SPDX-License-Identifier: MIT
// What kordump shows of files, and what becomes of its JSON when somebody edits it.
#include "apps/kordump/custom_data_reader.h"
#include "kortools/data/custom_data.h"
#include "tests/apps/dump_support.h"
#include "tests/archive/archive_encoder.h"
#include "tests/archive/archive_support.h"
#include "tests/support/folders.h"

using namespace kor_test;
using namespace std::string_literals;

namespace {

std::string to_text(std::string_view bytes, kordump::Plan const &plan)
{
    std::string text;
    kordump::TextReport report([&](std::string_view line) { text += line; });
    report_file(kordump::as_bytes(bytes), plan, report);
    return text;
}

kordump::Reading read(std::string_view bytes, kordump::Plan const &plan)
{
    kordump::NoReport report;
    return report_file(kordump::as_bytes(bytes), plan, report);
}

std::string read_scene(int version)
{
    return read_file(data_folder() + "/scene_" + std::to_string(version) + ".scene");
}

kordump::Plan archive_plan(std::string_view top, std::string_view layouts = "")
{
    kordump::Plan plan;
    plan.format = kordump::Format::Archive;
    plan.layouts = parse_layouts(layouts);
    plan.top = kordump::LayoutTable::ParseFields(top);
    return plan;
}

std::string stream_of(CCustomData &data)
{
    return store_bytes([&](CXArchive &archive) { data.Serialize(archive); });
}

Json &find_entry(Json &entries, Json const &id)
{
    for (Json &entry : entries) {
        if (entry["id"] == id)
            return entry;
    }
    ADD_FAILURE() << "no entry " << id;
    return entries;
}

Json &find_bitmap(Json &scene)
{
    for (Json &asset : scene["items"][0]["fields"]["assets"]) {
        if (asset["class"] == "CSceneBitmap")
            return asset;
    }
    ADD_FAILURE() << "no bitmap";
    return scene;
}

// The message with which the JSON is refused.
std::string get_mistake(Json const &json)
{
    try {
        from_json(json);
    } catch (std::exception const &error) {
        return error.what();
    }
    return "(accepted)";
}

// Objects within objects, by their first fields or in arrays.
std::string nest_objects(int depth, bool in_arrays)
{
    ArchiveEncoder bytes;
    bytes.new_class("N", 1);
    for (int i = 1; i < depth; ++i) {
        if (in_arrays)
            bytes.u16(1);
        bytes.u16(0x8001);
    }
    return bytes.u16(0).bytes();
}

} // namespace

TEST(Dump, CoversScenesOfEveryVersion)
{
    for (int const version : { 1, 2 }) {
        std::string const bytes = read_scene(version);
        kordump::Reading const reading = read(bytes, make_plan(bytes));
        EXPECT_EQ(reading.problem + reading.unknown_class, "");
        EXPECT_EQ(reading.end, bytes.size());
    }
    Json old = to_parsed_json(read_scene(1), make_plan(read_scene(1)));
    EXPECT_EQ(find_bitmap(old)["fields"]["name"], "gradient.png");
    std::string const text = to_text(read_scene(1), make_plan(read_scene(1)));
    EXPECT_NE(text.find("00000000  tag FFFF CScene #2 (new class #1, schema 1)\n"), text.npos);
    EXPECT_NE(text.find("name: \"gradient.png\"  <string, utf-16>\n"), text.npos) << text;
}

TEST(Dump, StopsBehindTheFirstUnknownClassAndAtDamage)
{
    std::string const bytes = read_scene(2);
    kordump::Plan plan = make_plan(bytes);
    plan.layouts = {};
    kordump::Reading const unknown = read(bytes, plan);
    EXPECT_EQ(unknown.unknown_class, "CScene");
    EXPECT_EQ(unknown.end, 2U + 4U + 6U) << "tag, schema and length, name";
    std::string const cut = bytes.substr(0, bytes.size() / 2);
    EXPECT_NE(read(cut, make_plan(bytes)).problem, "");
    EXPECT_NE(read("\xFF\xFF\xFF\xFF\xFF\xFF\0\0"s, archive_plan("u8[]")).problem, "");
}

TEST(Dump, KeepsWhatHasSeveralForms)
{
    ArchiveEncoder bytes;
    bytes.u16(0xFFFF).u32(3).u32(1).u32(2).u32(3); // a count of 6 bytes
    bytes.u8(0xFF).u16(5).raw("hello").wide({ u"\xD800", 1 }).narrow("\xE4\xF6");
    bytes.u32(0x7FA00001).f64(-0.0).u32(0x7F800000).u8(7).f32(0.1F).u64(1).u64(253402300800);
    bytes.u16(0x7FFF).u32(0).new_class("P", 1).u16(0x7FFF).u32(0x80000001).u16(0x7FFF).u32(2);
    auto const plan = archive_plan("i32[] string string string f32 f64 f32 bool f32 time time "
                                   "object object object object",
        "class P 1");
    std::string const &file = bytes.bytes();
    ASSERT_TRUE(comes_back(file, plan));
    Json const json = to_parsed_json(file, plan);
    EXPECT_FALSE(json.contains("rest"));
    Json const expected = Json::parse(R"([{"count": 3, "size": 6, "elements": [1, 2, 3]},
        {"encoding": "ansi", "text": "hello", "length_size": 3},
        {"encoding": "utf-16", "hex": "00D8"}, {"encoding": "ansi", "hex": "E4F6"},
        "0x7FA00001", -0.0, "inf", 7, 0.1, "1970-01-01T00:00:01Z", 253402300800,
        {"ref": 0, "long": true}])");
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(json["items"][i], expected[i]) << i;
    EXPECT_EQ(json["items"][13]["object"], 3) << "the class is 1, the first object 2";
    EXPECT_EQ(json["items"][14]["ref"], 2);
}

TEST(Dump, GoesOnBehindDamagedCustomData)
{
    CCustomData data;
    data.SetInt(1, 7);
    std::string damaged = stream_of(data);
    damaged[32] = 99; // the size of the entry
    ArchiveEncoder file;
    file.u32(3).raw("AAAA").u32(1).raw(damaged).raw("BBBB").u32(1).raw("NEW!").u32(2).raw("xy");
    file.raw("CCCC").u32(1).raw(stream_of(data));
    auto const plan = make_plan(file.bytes());
    EXPECT_TRUE(comes_back(file.bytes(), plan));
    Json const json = to_parsed_json(file.bytes(), plan);
    EXPECT_FALSE(json.contains("rest"));
    EXPECT_TRUE(json["items"].at(0)["data"].contains("rest"));
    EXPECT_EQ(json["items"].at(1)["hex"], "4E455721020000007879");
    EXPECT_EQ(json["items"].at(2)["data"]["entries"][0]["value"], 7);
}

TEST(Edit, ValuesOfCustomDataReachTheLibrary)
{
    CCustomData data, inner, expected;
    inner.SetDouble(1, 0.5);
    data.SetInt(1, 7);
    data.SetString(0x4E414D45, L"short");
    data.SetCustomData(3, inner);
    int const numbers[] = { 1, 2, 3, 4, 5 };
    data.SetArray(4, numbers, 3, sizeof *numbers);
    Json json = to_parsed_json(stream_of(data), make_plan(stream_of(data)));
    Json &entries = json["items"][0]["entries"];
    find_entry(entries, 1)["value"] = -8;
    find_entry(entries, "NAME")["value"] = "a longer text \u20AC";
    find_entry(entries, 3)["value"]["entries"][0]["value"] = 0.1;
    find_entry(entries, 4)["value"]["elements"] = { 4, 5 };
    entries.push_back({ { "id", 9 }, { "kind", "CHAR" }, { "value", 3 } });
    inner.SetDouble(1, 0.1);
    expected.SetInt(1, -8);
    expected.SetString(0x4E414D45, L"a longer text \x20AC");
    expected.SetCustomData(3, inner);
    expected.SetArray(4, numbers + 3, 2, sizeof *numbers);
    expected.SetChar(9, 3);
    EXPECT_EQ(from_json(json), stream_of(expected));
}

TEST(Edit, MistakesAreNamedWithTheirPlace)
{
    Json const good = to_parsed_json(read_scene(1), make_plan(read_scene(1)));
    struct {
        void (*edit)(Json &json, Json &asset);
        std::string mistake; // of the others it is enough that there is one
    } const cases[] = { { [](Json &, Json &asset) { asset["fields"]["width"] = -1; },
                            "item 0: .assets[1].width: -1 is no integer from 0 to 4294967295" },
        { [](Json &, Json &asset) { asset["fields"]["folder"]["ref"] = 99; },
            "item 0: .assets[1].folder: there is no object 99 before" },
        { [](Json &, Json &asset) { asset["fields"].erase("height"); },
            "item 0: .assets[1]: CSceneBitmap lacks the field height" },
        { [](Json &json, Json &) { json.erase("classes"); },
            "item 0: the class CScene 1 is not known" },
        { [](Json &, Json &asset) { asset["fields"]["more"] = 1; }, "" },
        { [](Json &json, Json &) { json.erase("kordump"); }, "" },
        { [](Json &json, Json &) {
             json["rest"] = Json::object({ { "hex", "0" } });
         },
            "" } };
    for (auto const &[edit, mistake] : cases) {
        Json json = good;
        edit(json, find_bitmap(json));
        std::string const found = get_mistake(json);
        EXPECT_TRUE(mistake.empty() ? found != "(accepted)" : found == mistake) << found;
    }
    EXPECT_THROW(restore("{\"kordump\": 1,"), std::runtime_error);
    EXPECT_THROW(restore(std::string(1 << 20, '[')), std::runtime_error);
}

TEST(Deep, TreesAsDeepAsMemory)
{
    constexpr unsigned depth = 100000;
    ArchiveEncoder bytes;
    bytes.new_class("CTree", 2).u32(4).u32(1);
    bytes.u32(3).new_class("CTreeNode", 2).u32(3).u32(5);
    for (unsigned i = 1; i < depth; ++i)
        bytes.u32(1).u32(3).u16(0x8002).u32(3).u32(i % 7);
    bytes.u32(2).raw(std::string(4 * (depth + 1), '\0'));
    kordump::Plan const plan = make_plan(bytes.bytes());
    EXPECT_EQ(read(bytes.bytes(), plan).problem, "");
    EXPECT_TRUE(restore(to_json(bytes.bytes(), plan)) == bytes.bytes());
    EXPECT_TRUE(comes_back(bytes.bytes().substr(0, bytes.bytes().size() - 5), plan)) << "cut";
    EXPECT_NE(to_text(bytes.bytes(), plan), "");
}

TEST(Deep, ObjectsAsDeepAsTheLibraryTakesThem)
{
    auto const by_fields = archive_plan("", "class N 1\n next object");
    auto const in_arrays = archive_plan("", "class N 1\n next object[]");
    for (bool const arrays : { false, true }) {
        auto const &plan = arrays ? in_arrays : by_fields;
        EXPECT_EQ(read(nest_objects(2000, arrays), plan).problem, "");
        EXPECT_NE(read(nest_objects(2001, arrays), plan).problem, "");
        EXPECT_TRUE(comes_back(nest_objects(50000, arrays), plan)) << "too deep";
    }
}

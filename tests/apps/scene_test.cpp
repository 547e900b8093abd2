// SPDX-License-Identifier: MIT
// Imports, scenes and their dumps, on the sample files and on every cut of them.
#include "apps/kordump/archive_reader.h"
#include "apps/scene/scene_file.h"
#include "apps/scoutrix/importer.h"
#include "kortools/archive/file.h"
#include "kortools/archive/mem_file.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>

namespace {

using scoutrix::Text;

std::wstring sample(char const *name)
{
    return std::filesystem::path(KOR_SAMPLES "/" + std::string(name)).wstring();
}

std::string read_bytes(std::filesystem::path const &path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

std::unique_ptr<CSceneAsset> import(std::wstring const &path, CScene &scene)
{
    kor_apps::ProgressLine progress(L"");
    return scoutrix::import_file(path.c_str(), scene, progress);
}

// The message with which importing the bytes fails; empty when they are accepted.
std::wstring import_failure(std::string const &bytes, TempFolder const &folder)
{
    std::ofstream(folder.GetPath() / "input", std::ios::binary) << bytes;
    CScene scene;
    try {
        import(folder.GetFile(L"input"), scene);
    } catch (CXException *exception) {
        std::wstring const message(exception->GetErrorMessage());
        exception->Delete();
        return message.empty() ? L"(no message)" : message;
    }
    return {};
}

void fill(CScene &scene)
{
    for (char const *name : { "gradient.png", "checker.bmp", "cube.obj", "sphere.obj" })
        scene.Add(import(sample(name), scene).release());
}

std::vector<unsigned char> store(CScene const &scene)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    archive << &scene;
    archive.Close();
    return { file.GetBuffer(), file.GetBuffer() + file.GetLength() };
}

kordump::LayoutTable scene_classes()
{
    kordump::LayoutTable layouts;
    layouts.Parse(kordump::scene_layouts);
    return layouts;
}

} // namespace

TEST(Import, FindsDimensionsAndCounts)
{
    CScene scene;
    fill(scene);
    auto const &assets = scene.GetAssets();
    EXPECT_EQ(assets[0]->Describe(), L"48 x 32, 24 bits");
    EXPECT_EQ(assets[1]->Describe(), L"20 x 12, 24 bits");
    EXPECT_EQ(assets[2]->Describe(), L"8 vertices, 6 faces, 3 groups");
    EXPECT_EQ(assets[3]->Describe(), L"176 vertices, 160 faces, 1 groups");
    EXPECT_EQ(static_cast<CSceneMesh *>(assets[2])->m_maximum[1], 0.5);
    EXPECT_EQ(static_cast<CSceneMesh *>(assets[3])->m_minimum[2], -1.0);
    EXPECT_EQ(assets[0]->m_folder, assets[3]->m_folder) << "one folder, one object";
    EXPECT_EQ(assets[2]->m_format, assets[3]->m_format);
    EXPECT_EQ(assets[0]->m_size, std::filesystem::file_size(sample("gradient.png")));
}

TEST(Import, RefusesEveryCutOfAnImage)
{
    TempFolder const folder;
    for (char const *name : { "gradient.png", "checker.bmp" }) {
        std::string const bytes = read_bytes(sample(name));
        EXPECT_EQ(import_failure(bytes, folder), L"") << name;
        for (std::size_t size = 0; size < bytes.size(); size += size < 64 ? 1 : 97)
            EXPECT_NE(import_failure(bytes.substr(0, size), folder), L"") << name << ' ' << size;
    }
}

TEST(Import, RefusesForeignAndDamagedFiles)
{
    TempFolder const folder;
    std::string png = read_bytes(sample("gradient.png"));
    png[16] ^= 1; // the width, behind the back of the checksum
    std::string bmp = read_bytes(sample("checker.bmp"));
    bmp[28] = 7; // bits per pixel
    std::string const cases[] = { png, bmp, "hello\n", "v 1 2\n", "v 1 2 nan\n",
        "v 0 0 0\nv 0 0 1\nf 1 2 3\n", "v 0 0 0\nf 0 1 1\n", "v 0 0 0\nf -2 1 1\n",
        "v 0 0 0\nf 1 1\n", std::string("v 0 0 0\0", 8), std::string(3 << 20, 'v') };
    for (std::string const &bytes : cases)
        EXPECT_NE(import_failure(bytes, folder), L"") << bytes.substr(0, 40);
    EXPECT_EQ(import_failure("f 1 2/1 \\\n 3//2\nv 0 0 0\r\nv 0 0 1\nv 1e3 0 -.5", folder), L"");
    CScene scene;
    EXPECT_THROW(
        try { import(folder.GetFile(L"missing"), scene); } catch (CXException *exception) {
            exception->Delete();
            throw 1;
        },
        int);
}

TEST(Scene, ComesBackFromAFileAsItWas)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"scene \x20AC.scene");
    CScene scene;
    fill(scene);
    scoutrix::save_scene(scene, path.c_str());
    std::unique_ptr<CScene> const loaded = scoutrix::load_scene(path.c_str());
    EXPECT_EQ(store(*loaded), store(scene));
    auto const &assets = loaded->GetAssets();
    EXPECT_EQ(assets[0]->m_folder, assets[3]->m_folder);
    EXPECT_EQ(loaded->GetFolderCount(), 1);
    EXPECT_FALSE(std::filesystem::exists(folder.GetPath() / u8"scene \u20AC.scene.tmp"));
}

TEST(Scene, RefusesEveryCutAndEveryChangedByteOrLoadsWhole)
{
    TempFolder const folder;
    CScene scene;
    scene.Add(import(sample("cube.obj"), scene).release());
    scene.Add(import(sample("checker.bmp"), scene).release());
    std::vector<unsigned char> const bytes = store(scene);
    auto const load = [&](std::vector<unsigned char> const &changed) {
        std::ofstream(folder.GetPath() / "scene", std::ios::binary)
            .write(reinterpret_cast<char const *>(changed.data()),
                static_cast<std::streamsize>(changed.size()));
        try {
            return scoutrix::load_scene(folder.GetFile(L"scene").c_str()) != nullptr;
        } catch (CXException *exception) {
            exception->Delete();
            return false;
        }
    };
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(load({ bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size) }));
    int accepted = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::vector<unsigned char> changed = bytes;
        changed[i] ^= 0x01;
        accepted += load(changed) ? 1 : 0; // a changed digit of a number is still a scene
    }
    EXPECT_LT(accepted, static_cast<int>(bytes.size()));
    EXPECT_TRUE(load(bytes));
}

TEST(Dump, CoversAScene)
{
    CScene scene;
    fill(scene);
    std::vector<unsigned char> const bytes = store(scene);
    kordump::Tree const tree = kordump::read_archive(bytes, scene_classes(), {});
    EXPECT_EQ(tree.problem, "");
    EXPECT_EQ(tree.end, bytes.size());
    ASSERT_EQ(tree.nodes.size(), 1U);
    kordump::Node const &root = tree.nodes[0];
    EXPECT_EQ(root.class_name, "CScene");
    ASSERT_EQ(root.children.size(), 3U);
    kordump::Node const &png = root.children[2].children[0];
    EXPECT_EQ(png.class_name, "CSceneBitmap");
    EXPECT_EQ(png.children[0].value, "\"gradient.png\"");
    EXPECT_EQ(png.children[5].value, "48");
    EXPECT_EQ(png.children[3].kind, kordump::NodeKind::Reference) << "the folder came before";
    EXPECT_EQ(png.children[3].index, root.children[0].children[0].index);
}

TEST(Dump, StopsBehindTheFirstUnknownClassAndAtDamage)
{
    CScene scene;
    fill(scene);
    std::vector<unsigned char> const bytes = store(scene);
    kordump::Tree const unknown = kordump::read_archive(bytes, {}, {});
    EXPECT_EQ(unknown.unknown_class, "CScene");
    EXPECT_EQ(unknown.end, 2U + 4U + 6U) << "tag, schema and length, name";
    for (std::size_t size = 1; size < bytes.size(); ++size) {
        auto const cut = std::span(bytes).first(size);
        kordump::Tree const tree = kordump::read_archive(cut, scene_classes(), {});
        EXPECT_NE(tree.problem, "") << size;
        EXPECT_LE(tree.end, size);
    }
    unsigned char const hostile[] = { 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0 };
    EXPECT_NE(
        kordump::read_archive(hostile, {}, kordump::LayoutTable::ParseFields("u8[]")).problem, "");
}

TEST(Dump, ReadsValuesOutsideObjects)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    archive << 7 << -1.5 << CXTString<wchar_t>(L"a\"\x20AC") << CXTString<char>("b") << true;
    archive.WriteCount(70000);
    archive.Close();
    std::span const bytes(file.GetBuffer(), file.GetLength());
    auto const top = kordump::LayoutTable::ParseFields("i32 f64 string string bool count");
    kordump::Tree const tree = kordump::read_archive(bytes, {}, top);
    EXPECT_EQ(tree.problem, "");
    std::string all;
    for (kordump::Node const &node : tree.nodes)
        all += node.value + '|';
    EXPECT_EQ(all, "7|-1.5|\"a\\\"\xE2\x82\xAC\"|\"b\"|true|70000|");
}

TEST(Layouts, NameTheLineOfAMistake)
{
    kordump::LayoutTable layouts;
    for (char const *text :
        { "class A 1\n  x u33\n", "class A 1\nclass B 1 : C\n", "\n x u32\n" }) {
        try {
            layouts.Parse(text);
            ADD_FAILURE() << text;
        } catch (std::runtime_error const &error) {
            EXPECT_EQ(std::string(error.what()).substr(0, 7), "line 2:") << error.what();
        }
    }
}

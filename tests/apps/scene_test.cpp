// SPDX-License-Identifier: MIT
// Imports and scenes, on the sample files and on every cut of them.
#include "apps/scene/scene_file.h"
#include "apps/scoutrix/importer.h"
#include "tests/archive/archive_support.h"
#include "tests/support/files.h"
#include "tests/support/folders.h"
#include "tests/support/temp_folder.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

using namespace kor_test;

std::wstring sample(char const *name)
{
    return std::filesystem::path(KOR_SAMPLES "/" + std::string(name)).wstring();
}

scoutrix::SceneFile import(std::wstring const &path)
{
    std::atomic<unsigned long long> done { 0 };
    return scoutrix::import_file(path.c_str(), done);
}

// The message with which a call fails; empty when it does not.
template <class Call> std::wstring failure_of(Call const &call)
{
    try {
        call();
    } catch (CXException *exception) {
        std::wstring const message(exception->GetErrorMessage());
        exception->Delete();
        return message.empty() ? L"(no message)" : message;
    }
    return {};
}

std::wstring import_failure(std::string const &bytes, TempFolder const &folder)
{
    write_file(folder.GetPath() / "input", bytes);
    return failure_of([&] { import(folder.GetFile(L"input")); });
}

void fill(CScene &scene)
{
    for (char const *name : { "gradient.png", "checker.bmp", "cube.obj", "sphere.obj" })
        scene.Put(import(sample(name)));
}

CSceneNode &node(CScene &scene, wchar_t const *name)
{
    auto const found = scene.Find(name);
    EXPECT_EQ(found.size(), 1U) << "of that name";
    return *found.at(0);
}

double corner(CSceneNode const &mesh, scoutrix::Property id, unsigned int axis)
{
    unsigned int count = 0;
    void const *const numbers = mesh.GetProperties().GetArray(id, count, sizeof(double));
    double number = 0;
    if (axis < count)
        std::memcpy(&number, static_cast<char const *>(numbers) + axis * sizeof number, 8);
    return number;
}

// One line for each node: its depth, identifier, name and description.
std::wstring outline(CScene &scene)
{
    std::wstring text;
    CTree &tree = scene.GetTree();
    for (CTreeNode *each = tree.GetFirstNode(); each != nullptr; each = tree.GetNextNode(each)) {
        auto const &node = static_cast<CSceneNode const &>(*each);
        text += std::to_wstring(CTree::GetDepth(each)) + L' '
            + node.FormatProperty(scoutrix::propertyId).GetConstBuffer() + L' '
            + node.GetDisplayName().GetConstBuffer() + L": " + node.Describe().GetConstBuffer()
            + L'\n';
    }
    return text;
}

scoutrix::SceneFile make_file(wchar_t const *folder, wchar_t const *name)
{
    scoutrix::SceneFile file;
    file.folder = folder;
    file.name = name;
    file.properties.SetString(scoutrix::propertyKind, L"mesh");
    file.properties.SetULongInt(scoutrix::propertySize, file.name.GetLength());
    return file;
}

std::string store(CScene const &scene)
{
    return store_bytes([&](CXArchive &archive) { archive << &scene; });
}

// Scenes that earlier builds wrote.
std::filesystem::path find_golden(char const *name)
{
    return std::filesystem::path(kor_test::data_folder()) / name;
}

std::unique_ptr<CScene> load_golden(char const *name)
{
    return scoutrix::load_scene(find_golden(name).wstring().c_str());
}

} // namespace

TEST(Import, RefusesEveryCutOfAnImage)
{
    TempFolder const folder;
    for (char const *name : { "gradient.png", "checker.bmp" }) {
        std::string const bytes = read_file(sample(name));
        EXPECT_EQ(import_failure(bytes, folder), L"") << name;
        for (std::size_t size = 0; size < bytes.size(); size += size < 64 ? 1 : 97)
            EXPECT_NE(import_failure(bytes.substr(0, size), folder), L"") << name << ' ' << size;
    }
}

TEST(Import, RefusesForeignAndDamagedFiles)
{
    TempFolder const folder;
    std::string png = read_file(sample("gradient.png"));
    png[16] ^= 1; // the width, behind the back of the checksum
    std::string bmp = read_file(sample("checker.bmp"));
    bmp[28] = 7; // bits per pixel
    std::string const cases[] = { png, bmp, "hello\n", "v 1 2\n", "v 1 2 nan\n",
        "v 0 0 0\nv 0 0 1\nf 1 2 3\n", "v 0 0 0\nf 0 1 1\n", "v 0 0 0\nf -2 1 1\n",
        "v 0 0 0\nf 1 1\n", std::string("v 0 0 0\0", 8), std::string(3 << 20, 'v') };
    for (std::string const &bytes : cases)
        EXPECT_NE(import_failure(bytes, folder), L"") << bytes.substr(0, 40);
    EXPECT_EQ(import_failure("f 1 2/1 \\\n 3//2\nv 0 0 0\r\nv 0 0 1\nv 1e3 0 -.5", folder), L"");
}

TEST(Scene, ComesBackFromAFileAsItWas)
{
    TempFolder const folder;
    std::wstring const path = folder.GetFile(L"scene \x20AC.scene");
    CScene scene;
    fill(scene);
    node(scene, L"cube").SetUserValue(L"colour", L"\x20AC");
    scoutrix::save_scene(scene, path.c_str());
    std::unique_ptr<CScene> const loaded = scoutrix::load_scene(path.c_str());
    EXPECT_EQ(store(*loaded), store(scene));
    EXPECT_EQ(outline(*loaded), outline(scene));
    EXPECT_FALSE(std::filesystem::exists(folder.GetPath() / u8"scene \u20AC.scene.tmp"));
}

TEST(Scene, OfTheFirstVersionBecomesATree)
{
    std::unique_ptr<CScene> const scene = load_golden("scene_1.scene");
    EXPECT_EQ(outline(*scene),
        L"1 1 models: C:\\tmp\\models\n"
        L"2 2 cube.obj: Wavefront OBJ, 8 vertices, 6 faces, 3 groups\n"
        L"3 3 cube: \n3 4 bottom: \n3 5 sides: \n"
        L"2 6 textures: C:\\tmp\\models\\textures\n"
        L"3 7 gradient.png: Portable Network Graphics, 48 x 32, 24 bits\n"
        L"3 10 checker.bmp: Windows Bitmap, 20 x 12, 24 bits\n"
        L"2 8 sphere.obj: Wavefront OBJ, 176 vertices, 160 faces, 1 group\n"
        L"3 9 sphere: \n");
    CXTime time;
    node(*scene, L"cube.obj").GetProperties().GetXTime(scoutrix::propertyModified, time);
    EXPECT_EQ(time, CXTime(1710511509));
    EXPECT_EQ(corner(node(*scene, L"sphere.obj"), scoutrix::propertyMaximum, 2), 1.0);
}

TEST(Scene, OfEarlierBuildsIsWrittenAsItWas)
{
    EXPECT_EQ(store(*load_golden("scene_2.scene")), read_file(find_golden("scene_2.scene")));
}

TEST(Scene, KeepsIdentifiersAndValuesOfWhatIsReadAgain)
{
    CScene scene;
    scoutrix::SceneFile file = make_file(L"C:\\a", L"mesh");
    file.groups = { { L"lid", 1 }, { L"body", 2 } };
    CSceneNode *const mesh = scene.Put(file);
    node(scene, L"lid").SetUserValue(L"colour", L"red");
    node(scene, L"lid").GetProperties().SetString(scoutrix::propertyName, L"cover");
    mesh->SetUserValue(L"note", L"mine");
    file.properties.SetUInt(scoutrix::propertyFaces, 5);
    file.groups = { { L"handle", 3 }, { L"lid", 0 } };
    EXPECT_EQ(scene.Put(file), mesh);
    EXPECT_EQ(outline(scene),
        L"1 1 a: C:\\a\n2 2 mesh: , 0 vertices, 5 faces, 2 groups\n"
        L"3 3 cover: \n3 5 handle: 3 faces\n");
    EXPECT_EQ(node(scene, L"3").GetUserValues().at(0).value, L"red");
    EXPECT_EQ(mesh->GetUserValues().at(0).value, L"mine");
}

TEST(Scene, RefusesEveryCutAndEveryChangedByteOrLoadsWhole)
{
    TempFolder const folder;
    CScene scene;
    scene.Put(import(sample("cube.obj")));
    std::string const bytes = store(scene);
    auto const load = [&](std::string const &changed) {
        std::filesystem::remove(folder.GetPath() / "scene"); // quicker than to overwrite it
        write_file(folder.GetPath() / "scene", changed);
        std::wstring const failure
            = failure_of([&] { scoutrix::load_scene(folder.GetFile(L"scene").c_str()); });
        EXPECT_TRUE(failure.empty() || failure.find(L"scene: ") != failure.npos);
        return failure.empty();
    };
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        EXPECT_FALSE(load(bytes.substr(0, i)));
        std::string changed = bytes;
        changed[i] ^= 0x01;
        load(changed); // a changed digit of a number is still a scene
    }
    EXPECT_TRUE(load(bytes));
}

// SPDX-License-Identifier: MIT
#include "tests/apps/sample_content.h"

#include "kortools/archive/mem_file.h"

#include <filesystem>
#include <fstream>

KOR_IMPLEMENT_CLASS(CSampleChapter, CTreeNode, 2)

void CSampleChapter::Serialize(CXArchive &archive)
{
    CTreeNode::Serialize(archive);
    if (archive.IsStoring())
        archive << m_title << m_pages;
    else
        archive >> m_title >> m_pages;
}

CTreeNode *CSampleChapter::CopyFrom(unsigned int) const
{
    return new CSampleChapter(*this);
}

bool CSampleChapter::operator==(CTreeNode const &other) const
{
    auto const &chapter = static_cast<CSampleChapter const &>(other);
    return CTreeNode::operator==(other) && m_title == chapter.m_title && m_pages == chapter.m_pages;
}

namespace kor_test {
namespace {

template <class Object> std::string store(Object &object)
{
    CXMemFile file;
    CXArchive archive(&file, CXArchive::store);
    object.Serialize(archive);
    archive.Close();
    return { file.GetBuffer(), file.GetBuffer() + file.GetLength() };
}

} // namespace

void fill_settings(CCustomData &settings)
{
    settings.SetString(0x4E414D45, L"Scoutrix \x2013 \xE9t\xE9 \x65E5"); // "NAME"
    settings.SetInt(0x434F554E, -3);                                     // "COUN"
    settings.SetBool(0x534E4150, 1);                                     // "SNAP"
    settings.SetDouble(0x53434C45, 0.1);                                 // "SCLE"
    settings.SetXTime(0x4C415354, CXTime(1763683200LL));                 // "LAST"
}

void fill_window(CCustomData &window)
{
    float const zooms[] = { 0.25F, 1, 16 };
    CCustomData::StringArray recent;
    recent.Add(L"C:\\models\\cube.obj");
    recent.Add(L"");
    recent.Add(L"\\\\server\\share\\gears.obj");
    CCustomData nested;
    CCustomData settings;
    fill_settings(settings);
    nested.SetCustomData(1, settings);
    nested.SetUInt(2, 0xFFFFFFFF);
    window.SetArray(1, zooms, 3, sizeof *zooms);
    window.SetStringArray(2, recent);
    window.SetCustomData(3, nested);
    window.SetStringA(4, "narrow");
    window.SetBinary(5, "\0\1\2\3\4", 5);
    window.SetULongInt(6, ~0ULL);
    window.SetLongInt(7, -1);
    window.SetChar(8, -2);
    window.SetUChar(9, 254);
    window.SetFloat(10, 0.1F);
    window.SetUTCTime(11, CXTime(1763683200LL));
    window.SetPtr(12, nullptr);
}

void fill_outline(CTree &outline)
{
    auto *const first = new CSampleChapter(L"Getting started", 12);
    auto *const second = new CSampleChapter(L"Reference", 240);
    outline.AddChild(nullptr, first, true);
    outline.AddChild(nullptr, second, true);
    outline.AddChild(nullptr, new CTreeNode, true);
    outline.AddChild(second, new CSampleChapter(L"Strings", 100), true);
    auto *const trees = new CSampleChapter(L"Trees", 40);
    outline.AddChild(second, trees, true);
    outline.AddChild(trees, new CSampleChapter(L"Walking \x2192", 0), true);
    first->SetFlag(static_cast<TreeNodeFlag>(0x10), true);
}

void fill_scene(CScene &scene)
{
    using namespace scoutrix;
    SceneFile bitmap { L"C:\\models\\textures", L"gradient.png", {}, {} };
    bitmap.properties.SetString(propertyKind, L"bitmap");
    bitmap.properties.SetString(propertyFormat, L"Portable Network Graphics");
    bitmap.properties.SetULongInt(propertySize, 3071);
    bitmap.properties.SetXTime(propertyModified, CXTime(1763683200LL));
    bitmap.properties.SetUInt(propertyWidth, 48);
    bitmap.properties.SetUInt(propertyHeight, 32);
    bitmap.properties.SetUInt(propertyBits, 24);
    bitmap.properties.SetBool(propertyTopDown, 1);
    SceneFile mesh { L"C:\\models", L"cube.obj", {}, { { L"bottom", 1 }, { L"sides", 5 } } };
    double const corner[] = { 0.5, 0.5, 0.5 };
    mesh.properties.SetString(propertyKind, L"mesh");
    mesh.properties.SetULongInt(propertyVertices, 8);
    mesh.properties.SetArray(propertyMaximum, corner, 3, sizeof *corner);
    scene.Put(bitmap);
    scene.Put(mesh)->SetUserValue(L"note", L"a user's own");
}

std::string make_settings_stream()
{
    CCustomData window;
    fill_window(window);
    return store(window);
}

std::string make_preferences(std::wstring const &scratch_file)
{
    std::filesystem::path const path(scratch_file);
    std::filesystem::remove(path);
    CCustomData settings;
    CCustomData window;
    fill_settings(settings);
    fill_window(window);
    CXTString<wchar_t> const name(scratch_file.c_str());
    bool const saved = settings.SaveToPrefs(name, settings_id, 1)
        && window.SaveToPrefs(name, window_id, 2) && settings.SaveToPrefs(name, settings_id, 3);
    std::ifstream file(path, std::ios::binary);
    return saved ? std::string(std::istreambuf_iterator<char>(file), {}) : std::string();
}

std::string make_outline()
{
    CTree outline;
    fill_outline(outline);
    return store(outline);
}

} // namespace kor_test

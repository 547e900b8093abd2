// SPDX-License-Identifier: MIT
#include "apps/scoutrix/commands.h"

#include "apps/common/console.h"
#include "apps/scene/scene_file.h"
#include "apps/scoutrix/importer.h"
#include "kortools/archive/exception.h"

#include <algorithm>

namespace scoutrix {
namespace {

using kor_apps::from_utf8;

// Imports what it can; the number of files that failed.
int put_files(std::vector<std::string> const &files, CScene &scene)
{
    int failures = 0;
    for (std::string const &file : files) {
        Text const path = from_utf8(file);
        try {
            kor_apps::ProgressLine progress(path);
            scene.Put(import_file(path, progress));
        } catch (CXException *exception) {
            kor_apps::print_error("scoutrix", exception->GetErrorMessage());
            exception->Delete();
            ++failures;
        }
    }
    return failures;
}

CSceneNode &find_node(CScene &scene, Text const &name)
{
    std::vector<CSceneNode *> const found = scene.Find(name);
    if (found.empty())
        kor_apps::fail(L"the scene has no node " + name);
    if (found.size() > 1) {
        Text ids;
        for (CSceneNode const *const node : found)
            ids += L" " + node->FormatProperty(propertyId);
        kor_apps::fail(name + L" is the name of several nodes; take the number of one:" + ids);
    }
    return *found.front();
}

PropertyInfo const *find_property(Text const &key)
{
    auto const infos = get_property_infos();
    auto const found = std::find_if(
        infos.begin(), infos.end(), [&](PropertyInfo const &info) { return key == info.key; });
    return found == infos.end() ? nullptr : &*found;
}

Text get_value(CSceneNode const &node, Text const &key)
{
    if (PropertyInfo const *const info = find_property(key))
        return node.FormatProperty(info->id);
    for (UserValue const &each : node.GetUserValues()) {
        if (each.key == key)
            return each.value;
    }
    return {};
}

} // namespace

int import_files(ImportOptions const &options, Text const &path)
{
    auto const scene = options.append ? load_scene(path) : std::make_unique<CScene>();
    if (put_files(options.files, *scene) > 0) {
        kor_apps::print_error("scoutrix", L"no scene written: a file could not be imported");
        return 1;
    }
    save_scene(*scene, path);
    print_scene(*scene, {});
    return 0;
}

int list_scene(Text const &path, ListOptions const &options)
{
    print_scene(*load_scene(path), options);
    return 0;
}

int remove_nodes(Text const &path, std::vector<std::string> const &nodes)
{
    auto const scene = load_scene(path);
    std::vector<CSceneNode *> found;
    for (std::string const &node : nodes)
        found.push_back(&find_node(*scene, from_utf8(node)));
    // A node may lie in the branch of another one, or be named twice.
    for (CSceneNode *const node : found) {
        if (scene->GetTree().NodeExist(TreeTraversalMode::descendants, nullptr, node))
            scene->Remove(node);
    }
    save_scene(*scene, path);
    return 0;
}

int get_value(Text const &path, Text const &name, Text const &key)
{
    auto const scene = load_scene(path);
    CSceneNode const &node = find_node(*scene, name);
    if (key.IsEmpty()) {
        print_properties(node, L"");
        return 0;
    }
    Text const value = get_value(node, key);
    if (value.IsEmpty())
        kor_apps::fail(node.GetDisplayName() + L" has no value " + key);
    kor_apps::print_line(value);
    return 0;
}

int set_value(Text const &path, Text const &name, Text const &key, Text const &value)
{
    auto const scene = load_scene(path);
    CSceneNode &node = find_node(*scene, name);
    PropertyInfo const *const info = find_property(key);
    if (info != nullptr && info->id != propertyName)
        kor_apps::fail(key + L" comes from the file and cannot be set");
    if (key.IsEmpty() || (info != nullptr && value.IsEmpty()))
        kor_apps::fail(L"neither a key nor a name can be empty");
    if (info != nullptr)
        node.GetProperties().SetString(propertyName, value);
    else
        node.SetUserValue(key, value);
    save_scene(*scene, path);
    return 0;
}

} // namespace scoutrix

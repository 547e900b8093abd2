// SPDX-License-Identifier: MIT
#include "apps/scoutrix/commands.h"

#include "apps/common/console.h"
#include "apps/common/exit_codes.h"
#include "apps/common/json_output.h"
#include "apps/common/progress.h"
#include "apps/scene/scene_file.h"
#include "apps/scoutrix/document_batch.h"
#include "apps/scoutrix/document_report.h"
#include "apps/scoutrix/host_log.h"
#include "apps/scoutrix/node_json.h"
#include "kortools/app/parallel.h"
#include "kortools/archive/exception.h"
#include "kortools/text/string_match.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace scoutrix {
namespace {

using kor_apps::from_utf8;
using enum kor_apps::ExitCode;

// False when the user has cancelled.
bool load_files(Session const &session, std::vector<std::string> const &files,
    kor_apps::ConsoleProgress &progress, std::deque<Document> &documents)
{
    for (std::string const &file : files)
        documents.emplace_back(from_utf8(file));
    BatchOptions options;
    options.threads = OMPGetMaxThreadCount();
    options.timeout = static_cast<unsigned int>(session.settings.timeout) * 1000;
    return load_documents(documents, options) && !progress.Finish();
}

// Tells what could not be loaded; the exit code.
int report_failures(std::deque<Document> const &documents)
{
    int code = exit_done;
    for (Document const &each : documents) {
        if (each.error.IsEmpty())
            continue;
        report_error(each.error);
        code = code == exit_done ? each.code : code;
    }
    return code;
}

void save_session(Session &session, CScene const &scene, Text const &path)
{
    save_scene(scene, path);
    log_line(L"saved " + path);
    session.Remember(path);
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

// The latest of the recent scenes when `path` is empty.
std::unique_ptr<CScene> load_named(Session &session, Text const &path)
{
    bool const latest = path.IsEmpty() && session.settings.recent.GetSize() > 0;
    Text const chosen = latest ? session.settings.recent[0] : path;
    if (chosen.IsEmpty())
        kor_apps::fail(L"name a scene: none is remembered");
    auto scene = load_scene(chosen);
    session.Remember(chosen);
    return scene;
}

// The names from the top to the node: "models\\cube.obj\\sides". The tree's own root has none.
Text get_tree_path(CTreeNode const &node)
{
    Text path = node.GetDisplayName();
    for (CTreeNode const *each = node.GetParent(); each != nullptr; each = each->GetParent()) {
        if (each->GetParent() != nullptr)
            path = each->GetDisplayName() + L"\\" + path;
    }
    return path;
}

} // namespace

void Session::Remember(Text const &scene)
{
    if (remember_scene(settings, scene))
        file.Save(settings);
}

int open_files(Session &session, std::vector<std::string> const &files, OpenStyle style)
{
    kor_apps::ConsoleProgress progress(L"opening", session.settings.progress);
    session.LoadPlugins();
    std::deque<Document> documents;
    if (!load_files(session, files, progress, documents)) {
        report_error(L"cancelled");
        return exit_cancelled;
    }
    if (session.json)
        print_documents_json(documents);
    else if (style == OpenStyle::Table)
        print_document_table(documents);
    for (Document const &each : documents) {
        if (!session.json && style == OpenStyle::Facts && each.error.IsEmpty())
            print_document(each);
    }
    return report_failures(documents);
}

int import_files(Session &session, ImportOptions const &options, Text const &path)
{
    kor_apps::ConsoleProgress progress(L"importing", session.settings.progress);
    auto const scene = options.append ? load_scene(path) : std::make_unique<CScene>();
    session.LoadPlugins();
    std::deque<Document> documents;
    if (!load_files(session, options.files, progress, documents)) {
        report_error(L"cancelled; no scene written");
        return exit_cancelled;
    }
    if (int const code = report_failures(documents); code != exit_done) {
        report_error(L"no scene written: a file could not be imported");
        return code;
    }
    for (Document const &each : documents)
        scene->Put(each.file);
    save_session(session, *scene, path);
    ListOptions list;
    list.json = session.json;
    print_scene(*scene, list);
    return exit_done;
}

int list_scene(Session &session, Text const &path, ListOptions options)
{
    auto const scene = load_named(session, path);
    options.json = session.json;
    print_scene(*scene, options);
    return exit_done;
}

int search_scene(
    Session &session, Text const &path, Text const &expression, SearchOptions const &options)
{
    CXStringMatch match;
    if (!match.PrepareMatch(expression, CXStringMatch::mode_expression, options.case_sensitive))
        kor_apps::fail(expression + L": the parentheses or quotes are not balanced");
    auto const scene = load_named(session, path);
    auto found = nlohmann::ordered_json::array();
    CTree &tree = scene->GetTree();
    for (CTreeNode *each = tree.GetFirstNode(); each != nullptr; each = tree.GetNextNode(each)) {
        if (!match.Match(each->GetDisplayName()))
            continue;
        auto const &node = static_cast<CSceneNode const &>(*each);
        Text const node_path = get_tree_path(node);
        found.push_back({ { "id", node.GetNumber(propertyId) }, { "path", to_json(node_path) } });
        Text line;
        line.Format(L"%5s  %s", node.FormatProperty(propertyId).GetConstBuffer(),
            node_path.GetConstBuffer());
        if (!session.json)
            kor_apps::print_line(line);
    }
    if (session.json)
        kor_apps::print_json(found);
    return found.empty() ? exit_failed : exit_done;
}

int remove_nodes(Session &session, Text const &path, std::vector<std::string> const &nodes)
{
    auto const scene = load_scene(path);
    std::vector<CSceneNode *> found;
    found.reserve(nodes.size());
    for (std::string const &node : nodes)
        found.push_back(&find_node(*scene, from_utf8(node)));
    // A node may lie in the branch of another one, or be named twice.
    for (CSceneNode *const node : found) {
        if (scene->GetTree().NodeExist(TreeTraversalMode::descendants, nullptr, node))
            scene->Remove(node);
    }
    save_session(session, *scene, path);
    return exit_done;
}

int get_value(Session &session, Text const &path, Text const &name, Text const &key)
{
    auto const scene = load_scene(path);
    session.Remember(path);
    CSceneNode const &node = find_node(*scene, name);
    if (key.IsEmpty()) {
        if (session.json)
            kor_apps::print_json(get_json_properties(node));
        else
            print_properties(node, L"");
        return exit_done;
    }
    Text const value = get_value(node, key);
    if (value.IsEmpty())
        kor_apps::fail(node.GetDisplayName() + L" has no value " + key);
    if (session.json)
        kor_apps::print_json(get_json_value(node, key));
    else
        kor_apps::print_line(value);
    return exit_done;
}

int set_value(
    Session &session, Text const &path, Text const &name, Text const &key, Text const &value)
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
    save_session(session, *scene, path);
    return exit_done;
}

int list_recent(Session &session)
{
    auto json = nlohmann::ordered_json::array();
    for (Text const &scene : session.settings.recent) {
        json.push_back(to_json(scene));
        if (!session.json)
            kor_apps::print_line(scene);
    }
    if (session.json)
        kor_apps::print_json(json);
    return exit_done;
}

int clear_recent(Session &session)
{
    session.settings.recent.RemoveAll();
    return session.file.Save(session.settings) ? exit_done : exit_failed;
}

} // namespace scoutrix

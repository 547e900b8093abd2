// SPDX-License-Identifier: MIT
#include "apps/scoutrix/listing.h"

#include "apps/common/console.h"
#include "apps/common/json_output.h"
#include "apps/scoutrix/node_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

namespace scoutrix {
namespace {

CSceneNode const &node_at(void const *element)
{
    return *static_cast<CSceneNode const *>(*static_cast<CTreeNode *const *>(element));
}

template <class T> int compare_values(T const &a, T const &b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

CXTime get_modified(CSceneNode const &node)
{
    CXTime time;
    node.GetProperties().GetXTime(propertyModified, time);
    return time;
}

int compare_by_key(CSceneNode const &a, CSceneNode const &b, SortKey key)
{
    switch (key) {
    case SortKey::Size:
        return compare_values(b.GetNumber(propertySize), a.GetNumber(propertySize));
    case SortKey::Modified:
        return compare_values(get_modified(b), get_modified(a));
    case SortKey::Kind:
        return a.GetText(propertyKind).Compare(b.GetText(propertyKind));
    default:
        return a.GetDisplayName().CompareNoCase(b.GetDisplayName());
    }
}

int compare_nodes(void *user, void const *a, void const *b)
{
    CSceneNode const &first = node_at(a);
    CSceneNode const &second = node_at(b);
    int const folders = compare_values(second.IsKind(L"folder"), first.IsKind(L"folder"));
    return folders != 0 ? folders : compare_by_key(first, second, *static_cast<SortKey *>(user));
}

// A damaged scene may be as deep as it has nodes: lines stop to move right.
Text get_indent(int depth)
{
    constexpr std::size_t deepest = 30;
    std::size_t const level = std::min(static_cast<std::size_t>(depth), deepest);
    return Text(std::wstring(2 * level, L' ').c_str());
}

class Printer : public TreeTraversalCallback {
public:
    explicit Printer(ListOptions const &options)
        : m_options(options)
    {
    }

    bool Visit(CTreeNode *each, int code) override
    {
        if (code == climbBack) {
            --m_depth;
            return true;
        }
        auto const &node = static_cast<CSceneNode const &>(*each);
        Count(node);
        if (m_options.depth >= 0 && m_depth >= m_options.depth)
            ; // deeper than what was asked for
        else if (m_options.json)
            Collect(node);
        else
            Print(node);
        if (code == enterParent)
            ++m_depth;
        return true;
    }

    void PrintSummary()
    {
        if (m_options.json) {
            kor_apps::print_json({ { "nodes", std::move(m_nodes) }, { "files", m_files },
                { "folders", m_folders }, { "bytes", m_bytes } });
            return;
        }
        Text line;
        line.Format(L"%I64u %s in %I64u %s, %I64u bytes", m_files,
            m_files == 1 ? L"file" : L"files", m_folders, m_folders == 1 ? L"folder" : L"folders",
            m_bytes);
        kor_apps::print_line(line);
    }

private:
    void Count(CSceneNode const &node)
    {
        m_folders += node.IsKind(L"folder") ? 1U : 0U;
        if (!node.IsFile())
            return;
        ++m_files;
        m_bytes += node.GetNumber(propertySize);
    }

    void Collect(CSceneNode const &node)
    {
        nlohmann::ordered_json json { { "depth", m_depth } };
        for (wchar_t const *const key : { L"id", L"name", L"kind", L"size", L"modified" })
            json[kor_apps::to_utf8(key)] = get_json_value(node, key);
        json["description"] = to_json(node.Describe());
        if (m_options.properties)
            json["properties"] = get_json_properties(node);
        m_nodes.push_back(std::move(json));
    }

    void Print(CSceneNode const &node) const
    {
        Text const indent = get_indent(m_depth);
        Text const name = indent + node.GetDisplayName();
        Text line;
        line.Format(L"%5s  %-30s %12s  %-19s  %s", node.FormatProperty(propertyId).GetConstBuffer(),
            name.GetConstBuffer(), node.FormatProperty(propertySize).GetConstBuffer(),
            node.FormatProperty(propertyModified).GetConstBuffer(),
            node.Describe().GetConstBuffer());
        kor_apps::print_line(line.TrimRight());
        if (m_options.properties)
            print_properties(node, indent + L"         ");
    }

    ListOptions const &m_options;
    nlohmann::ordered_json m_nodes = nlohmann::ordered_json::array();
    int m_depth = 0;
    unsigned long long m_files = 0;
    unsigned long long m_folders = 0;
    unsigned long long m_bytes = 0;
};

} // namespace

std::vector<std::string> get_sort_names()
{
    return { "none", "name", "size", "modified", "kind" }; // in the order of SortKey
}

std::optional<SortKey> find_sort_key(std::string const &name)
{
    auto const names = get_sort_names();
    auto const found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return std::nullopt;
    return static_cast<SortKey>(found - names.begin());
}

void sort_scene(CScene &scene, SortKey key)
{
    if (key != SortKey::None)
        scene.GetTree().Sort(nullptr, compare_nodes, &key, true);
}

void print_scene(CScene &scene, ListOptions const &options)
{
    sort_scene(scene, options.sort);
    Printer printer(options);
    scene.GetTree().DoTraversal(nullptr, TreeTraversalMode::descendants, &printer);
    printer.PrintSummary();
}

void print_properties(CSceneNode const &node, Text const &indent)
{
    for (PropertyInfo const &info : get_property_infos()) {
        if (node.GetProperties().HasData(info.id))
            kor_apps::print_line(indent + info.key + L": " + node.FormatProperty(info.id));
    }
    for (UserValue const &each : node.GetUserValues())
        kor_apps::print_line(indent + each.key + L": " + each.value);
}

} // namespace scoutrix

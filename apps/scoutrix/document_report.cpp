// SPDX-License-Identifier: MIT
#include "apps/scoutrix/document_report.h"

#include "apps/common/console.h"
#include "apps/common/json_output.h"
#include "apps/common/text_table.h"
#include "apps/scoutrix/listing.h"
#include "apps/scoutrix/node_json.h"
#include "apps/scoutrix/type_table.h"
#include "kortools/files/path_parts.h"

#include <nlohmann/json.hpp>

namespace scoutrix {
namespace {

// A scene of one file, whose nodes can describe themselves.
class Preview {
public:
    explicit Preview(Document const &document)
        : m_node(*m_scene.Put(document.file))
    {
        m_node.GetProperties().RemoveCustom(propertyId); // means nothing outside a scene
    }

    CSceneNode const &GetNode() const { return m_node; }

private:
    CScene m_scene;
    CSceneNode &m_node;
};

Text format_time(Document const &document)
{
    Text text;
    text.Format(L"%.1f ms", static_cast<double>(document.time.count()) / 1000);
    return text;
}

} // namespace

void print_document(Document const &document)
{
    Preview const preview(document);
    kor_apps::print_line(document.path + L": " + preview.GetNode().Describe());
    Text const indent = L"    ";
    print_properties(preview.GetNode(), indent);
    kor_apps::print_line(indent + L"type: " + format_code(document.type.m_class) + L", "
        + document.type.m_description);
    kor_apps::print_line(indent + L"loader: " + document.loader);
    kor_apps::print_line(indent + L"time: " + format_time(document));
}

void print_document_table(std::deque<Document> const &documents)
{
    kor_apps::TextTable table({ L"file", L"type", L"loader", L"content", L"time" });
    for (Document const &each : documents) {
        bool const loaded = each.error.IsEmpty();
        table.Add({ fileStripPath(each.path),
            each.type.m_class == 0 ? Text(L"-") : format_code(each.type.m_class),
            loaded ? each.loader : Text(L"-"),
            loaded ? Preview(each).GetNode().Describe() : Text(L"not loaded"),
            loaded ? format_time(each) : Text() });
    }
    table.Print();
}

void print_documents_json(std::deque<Document> const &documents)
{
    auto json = nlohmann::ordered_json::array();
    for (Document const &each : documents) {
        nlohmann::ordered_json document { { "file", to_json(each.path) } };
        if (each.type.m_class != 0) {
            document["type"] = to_json(format_code(each.type.m_class));
            document["description"] = to_json(each.type.m_description);
        }
        if (each.error.IsEmpty()) {
            document["loader"] = to_json(each.loader);
            document["milliseconds"] = static_cast<double>(each.time.count()) / 1000;
            document["properties"] = get_json_properties(Preview(each).GetNode());
        } else {
            document["error"] = to_json(each.error);
            document["code"] = static_cast<int>(each.code);
        }
        json.push_back(std::move(document));
    }
    kor_apps::print_json(json);
}

} // namespace scoutrix

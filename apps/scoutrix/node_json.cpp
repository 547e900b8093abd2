// SPDX-License-Identifier: MIT
#include "apps/scoutrix/node_json.h"

#include "apps/common/console.h"

#include <nlohmann/json.hpp>

namespace scoutrix {
namespace {

using Json = nlohmann::ordered_json;
using kor_apps::to_utf8;

Json get_json_property(CSceneNode const &node, Property id)
{
    bool yes = false;
    switch (node.GetProperties().GetDataKindOf(id)) {
    case CCustomData::kindULongInt:
    case CCustomData::kindUInt:
        return node.GetNumber(id);
    case CCustomData::kindBool:
        node.GetProperties().GetBool(id, yes);
        return yes;
    case CCustomData::kindArray:
        return node.GetNumbers(id);
    default:
        return to_json(node.FormatProperty(id));
    }
}

} // namespace

Json to_json(Text const &text)
{
    return to_utf8(text);
}

Json get_json_value(CSceneNode const &node, Text const &key)
{
    for (PropertyInfo const &info : get_property_infos()) {
        if (key == info.key)
            return node.GetProperties().HasData(info.id) ? get_json_property(node, info.id)
                                                         : Json();
    }
    for (UserValue const &each : node.GetUserValues()) {
        if (each.key == key)
            return to_json(each.value);
    }
    return {};
}

Json get_json_properties(CSceneNode const &node)
{
    Json json = Json::object();
    for (PropertyInfo const &info : get_property_infos()) {
        if (node.GetProperties().HasData(info.id))
            json[to_utf8(info.key)] = get_json_property(node, info.id);
    }
    for (UserValue const &each : node.GetUserValues())
        json["values"][to_utf8(each.key)] = to_utf8(each.value);
    return json;
}

} // namespace scoutrix

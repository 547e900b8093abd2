// SPDX-License-Identifier: MIT
#include "apps/scene/scene_node.h"

#include <algorithm>
#include <cstring>

KOR_IMPLEMENT_CLASS(CSceneNode, CTreeNode, 2)

using scoutrix::Property;
using scoutrix::Text;
using scoutrix::UserValue;

namespace scoutrix {
namespace {

constexpr PropertyInfo infos[] = { { propertyId, L"id" }, { propertyName, L"name" },
    { propertyKind, L"kind" }, { propertyPath, L"path" }, { propertyPart, L"part" },
    { propertyFormat, L"format" }, { propertySize, L"size" }, { propertyModified, L"modified" },
    { propertyWidth, L"width" }, { propertyHeight, L"height" }, { propertyBits, L"bits" },
    { propertyChannels, L"channels" }, { propertyMean, L"mean" }, { propertyTopDown, L"top-down" },
    { propertyVertices, L"vertices" }, { propertyNormals, L"normals" },
    { propertyTexture, L"texture-coordinates" }, { propertyFaces, L"faces" },
    { propertyMeshes, L"meshes" }, { propertyMaterials, L"materials" },
    { propertyMinimum, L"minimum" }, { propertyMaximum, L"maximum" } };

Text format_numbers(std::vector<double> const &numbers)
{
    Text text;
    for (double const number : numbers)
        text.AppendFormat(text.IsEmpty() ? L"%g" : L" %g", number);
    return text;
}

Text format_count(unsigned long long count, wchar_t const *one, wchar_t const *many)
{
    Text text;
    text.Format(L"%I64u %s", count, count == 1 ? one : many);
    return text;
}

} // namespace

std::span<PropertyInfo const> get_property_infos()
{
    return infos;
}

} // namespace scoutrix

void CSceneNode::Serialize(CXArchive &archive)
{
    CTreeNode::Serialize(archive);
    m_properties.Serialize(archive);
}

CTreeNode *CSceneNode::CopyFrom(unsigned int) const
{
    return new CSceneNode(*this);
}

bool CSceneNode::operator==(CTreeNode const &other) const
{
    return CTreeNode::operator==(other)
        && m_properties.IsEqual(static_cast<CSceneNode const &>(other).m_properties);
}

Text CSceneNode::GetText(Property id) const
{
    Text text;
    m_properties.GetString(id, text);
    return text;
}

unsigned long long CSceneNode::GetNumber(Property id) const
{
    unsigned long long number = 0;
    unsigned int small = 0;
    if (!m_properties.GetULongInt(id, number) && m_properties.GetUInt(id, small))
        number = small;
    return number;
}

std::vector<double> CSceneNode::GetNumbers(Property id) const
{
    CXSingleLock const lock(m_properties.GetThreadLock(), true);
    unsigned int count = 0;
    void const *const bytes = m_properties.GetArray(id, count, sizeof(double));
    std::vector<double> numbers(count);
    if (count > 0)
        std::memcpy(numbers.data(), bytes, count * sizeof(double)); // may not be aligned
    return numbers;
}

bool CSceneNode::IsFile() const
{
    return IsKind(L"bitmap") || IsKind(L"mesh");
}

Text CSceneNode::Describe() const
{
    if (IsKind(L"folder"))
        return GetText(scoutrix::propertyPath);
    Text text = GetText(scoutrix::propertyFormat);
    if (IsKind(L"bitmap"))
        text.AppendFormat(L", %I64u x %I64u, %I64u bits", GetNumber(scoutrix::propertyWidth),
            GetNumber(scoutrix::propertyHeight), GetNumber(scoutrix::propertyBits));
    else if (IsKind(L"mesh"))
        text += L", " + DescribeMesh();
    else if (auto const faces = GetNumber(scoutrix::propertyFaces); faces > 0)
        text = scoutrix::format_count(faces, L"face", L"faces");
    return text;
}

Text CSceneNode::DescribeMesh() const
{
    using scoutrix::format_count;
    unsigned long long groups = 0;
    for (CTreeNode const *child = GetChild(); child != nullptr; child = child->GetRight())
        ++groups;
    Text text = format_count(GetNumber(scoutrix::propertyVertices), L"vertex", L"vertices") + L", "
        + format_count(GetNumber(scoutrix::propertyFaces), L"face", L"faces");
    return groups == 0 ? text : text + L", " + format_count(groups, L"group", L"groups");
}

Text CSceneNode::FormatProperty(Property id) const
{
    Text text;
    CXTime time;
    bool yes = false;
    switch (m_properties.GetDataKindOf(id)) {
    case CCustomData::kindULongInt:
    case CCustomData::kindUInt:
        text.Format(L"%I64u", GetNumber(id));
        return text;
    case CCustomData::kindBool:
        m_properties.GetBool(id, yes);
        return yes ? L"yes" : L"no";
    case CCustomData::kindXTime:
        m_properties.GetXTime(id, time);
        return time.Format(L"%Y-%m-%d %H:%M:%S");
    case CCustomData::kindArray:
        return scoutrix::format_numbers(GetNumbers(id));
    default:
        return GetText(id);
    }
}

std::vector<UserValue> CSceneNode::GetUserValues() const
{
    CCustomData::StringArray texts;
    m_properties.GetStringArray(scoutrix::propertyUserValues, texts);
    std::vector<UserValue> values;
    for (int i = 0; i + 1 < texts.GetSize(); i += 2)
        values.push_back({ texts[i], texts[i + 1] });
    return values;
}

void CSceneNode::SetUserValue(Text const &key, Text const &value)
{
    std::vector<UserValue> values = GetUserValues();
    auto const found = std::find_if(
        values.begin(), values.end(), [&](UserValue const &each) { return each.key == key; });
    if (found == values.end())
        values.push_back({ key, value });
    else
        found->value = value;
    CCustomData::StringArray texts;
    for (UserValue const &each : values) {
        if (each.value.IsEmpty())
            continue;
        texts.Add(each.key);
        texts.Add(each.value);
    }
    m_properties.SetStringArray(scoutrix::propertyUserValues, texts);
}

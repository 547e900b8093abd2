// SPDX-License-Identifier: MIT
// A node of a scene: a folder, a file that was imported from it, or a part of such a file. What is
// known of it are entries of a CCustomData, so that files can bring what older scenes did not have.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/data/custom_data.h"
#include "kortools/data/tree_node.h"

#include <span>
#include <vector>

namespace scoutrix {

using Text = CXTString<wchar_t>;

// The entries of a node, by four-character codes. Of the wrong kind they count as missing.
enum Property : unsigned int {
    propertyId = 0x47554944,        // "GUID" u64, unique in the scene and never given again
    propertyName = 0x4E414D45,      // "NAME" text shown for the node
    propertyKind = 0x4B494E44,      // "KIND" text: "folder", "bitmap", "mesh" or "group"
    propertyPath = 0x50415448,      // "PATH" text: absolute, of folders and files
    propertyPart = 0x50415254,      // "PART" text: the name that a group has in its file
    propertyFormat = 0x464F524D,    // "FORM" text: "Portable Network Graphics"
    propertySize = 0x53495A45,      // "SIZE" u64, bytes
    propertyModified = 0x4D4F4449,  // "MODI" time
    propertyWidth = 0x57494454,     // "WIDT" unsigned, pixels
    propertyHeight = 0x48454947,    // "HEIG" unsigned, pixels
    propertyBits = 0x42495453,      // "BITS" unsigned, of a pixel
    propertyChannels = 0x4348414E,  // "CHAN" unsigned: 1 grey, 2 and alpha, 3 colours, 4 and alpha
    propertyMean = 0x4D45414E,      // "MEAN" doubles, one for each channel; white is 1
    propertyTopDown = 0x544F5044,   // "TOPD" bool: the first row of the file is the top one
    propertyVertices = 0x56455254,  // "VERT" u64
    propertyNormals = 0x4E4F524D,   // "NORM" u64
    propertyTexture = 0x54455843,   // "TEXC" u64, texture coordinates
    propertyFaces = 0x46414345,     // "FACE" u64
    propertyMeshes = 0x4D455348,    // "MESH" u64
    propertyMaterials = 0x4D415445, // "MATE" u64
    propertyMinimum = 0x424D494E,   // "BMIN" three doubles: a corner of the vertices' bounding box
    propertyMaximum = 0x424D4158,   // "BMAX" three doubles: the opposite one
    propertyUserValues = 0x55534552 // "USER" texts: key, value, key, value ...
};

struct PropertyInfo {
    Property id;
    wchar_t const *key; // as commands name it
};

// All but propertyUserValues, in the order in which they are shown.
std::span<PropertyInfo const> get_property_infos();

struct UserValue {
    Text key;
    Text value;
};

} // namespace scoutrix

class CSceneNode : public CTreeNode {
    KOR_DECLARE_CLASS(CSceneNode)
public:
    void Serialize(CXArchive &archive) override;
    scoutrix::Text GetDisplayName() const override { return GetText(scoutrix::propertyName); }
    CTreeNode *CopyFrom(unsigned int options) const override;
    bool operator==(CTreeNode const &other) const override;

    CCustomData &GetProperties() { return m_properties; }
    CCustomData const &GetProperties() const { return m_properties; }

    // Empty or 0 when missing.
    scoutrix::Text GetText(scoutrix::Property id) const;
    unsigned long long GetNumber(scoutrix::Property id) const; // of u64 and unsigned entries
    std::vector<double> GetNumbers(scoutrix::Property id) const;
    bool IsKind(wchar_t const *kind) const { return GetText(scoutrix::propertyKind) == kind; }
    bool IsFile() const; // imported: a bitmap or a mesh

    // What the node is, in a few words: "Windows Bitmap, 1024 x 768, 24 bits".
    scoutrix::Text Describe() const;

    // An entry as a user reads it; empty when missing.
    scoutrix::Text FormatProperty(scoutrix::Property id) const;

    // Values with keys of the user's own, in the order in which they were first set. An empty value
    // removes the key.
    std::vector<scoutrix::UserValue> GetUserValues() const;
    void SetUserValue(scoutrix::Text const &key, scoutrix::Text const &value);

private:
    scoutrix::Text DescribeMesh() const;

    CCustomData m_properties;
};

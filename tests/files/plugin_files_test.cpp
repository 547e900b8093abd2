// SPDX-License-Identifier: MIT
#include "kortools/files/plugin_files.h"

#include "kortools/archive/exception.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using String = CXTString<wchar_t>;

namespace {

// What the plug-in of these tests does with a request.
std::function<bool(IoPluginLoad &)> s_load;
std::function<bool(IoPluginSave &)> s_save;
int s_calls_of_other = 0;

bool entry(IoPluginMode mode, void *data)
{
    if (mode == ioModeLoad)
        return s_load(*static_cast<IoPluginLoad *>(data));
    return mode == ioModeSave && s_save(*static_cast<IoPluginSave *>(data));
}

bool other_entry(IoPluginMode, void *data)
{
    ++s_calls_of_other;
    auto &load = *static_cast<IoPluginLoad *>(data);
    load.result = ioWrongFormat;
    return false;
}

// Keeps copies of everything, as lines.
class Recorder : public CIoSink {
public:
    bool OnProgress(double fraction) override { return m_progress = fraction, fraction < 0.9; }
    bool OnMaterial(CIoMaterial const &material) override
    {
        return add(L"material " + material.m_name + L' ' + material.m_texture);
    }
    bool OnMesh(CIoMesh const &mesh) override
    {
        if (mesh.m_name == L"throws")
            throw std::runtime_error("thrown by the sink");
        for (unsigned int corner : mesh.m_corners)
            m_sum += mesh.m_positions[corner * 3];
        return add(L"mesh " + mesh.m_name) && mesh.m_name != L"refused";
    }
    bool OnNode(CIoNode const &node) override
    {
        m_shift = node.m_transform[3];
        return add(L"node " + node.m_name);
    }

    bool add(String const &line)
    {
        m_lines.emplace_back(line.GetView());
        return true;
    }

    std::vector<std::wstring> m_lines;
    double m_progress = -1;
    double m_shift = 0;
    double m_sum = 0;
};

// A triangle in a node, to be spoilt.
struct Scene {
    Scene()
    {
        IO_PLUGIN_INIT(material);
        std::strcpy(material.name, "gr\xC3\xBCn");
        std::strcpy(material.texture, "wood.png");
        IO_PLUGIN_INIT(mesh);
        std::strcpy(mesh.name, "triangle");
        mesh.vertex_count = 3;
        mesh.face_count = 1;
        mesh.corner_count = 3;
        mesh.positions = positions;
        mesh.corners = corners;
        IO_PLUGIN_INIT(node);
        std::strcpy(node.name, "root");
        node.parent = -1;
        node.mesh_count = 1;
        node.meshes = meshes;
        for (int i = 0; i < 4; ++i)
            node.transform[i * 5] = 1;
        node.transform[3] = 2.5;
    }
    bool hand_over(IoPluginLoad &load) const
    {
        return load.add_material(load.host, &material) == 0 && load.add_mesh(load.host, &mesh) == 0
            && load.add_node(load.host, &node) == 0;
    }

    float positions[9] = { 0, 0, 0, 1, 0, 0, 0, 1, 0 };
    std::uint32_t corners[4] = { 0, 1, 2, 0 };
    std::uint32_t sizes[2] = { 3, 2 };
    std::int32_t meshes[2] = { 0, 1 };
    IoPluginMaterial material;
    IoPluginMesh mesh;
    IoPluginNode node;
};

struct Picture {
    Picture()
    {
        IO_PLUGIN_INIT(bitmap);
        bitmap.width = 2;
        bitmap.height = 3;
        bitmap.channels = 3;
        bitmap.depth = ioDepth8;
    }
    IoPluginBitmap bitmap;
    unsigned char rows[3][8]
        = { { 1, 2, 3, 4, 5, 6 }, { 7, 8, 9, 10, 11, 12 }, { 13, 14, 15, 16, 17, 18 } };
};

bool begin(IoPluginLoad &load, Picture const &picture)
{
    return load.begin_bitmap(load.host, &picture.bitmap);
}

bool add_mesh_named(IoPluginLoad &load, char const *name)
{
    Scene scene;
    std::strcpy(scene.mesh.name, name);
    scene.mesh.material = -1;
    return load.add_mesh(load.host, &scene.mesh) >= 0;
}

class PluginFiles : public testing::Test {
protected:
    PluginFiles()
    {
        m_folder.Write("a.tst", "some bytes");
        CFileExt type;
        type.m_extensions = L".tst";
        type.m_class = fileMakeCode("TEST");
        type.m_properties = fileKind3D | 0x3;
        type.m_callback = entry;
        fileRegisterFile(type);
    }
    ~PluginFiles() override { fileUnregisterFile(fileMakeCode("TEST")); }

    bool load() { return fileLoadWithPlugin(m_path, m_sink, &m_report); }
    std::string error() const { return std::string(CXTString<char>(m_report.m_error)); }

    TempFolder m_folder;
    String m_path = m_folder.GetFile(L"a.tst").c_str();
    Recorder m_sink;
    CIoReport m_report;
};

} // namespace

TEST_F(PluginFiles, AScenePassesFromThePluginToTheSink)
{
    std::string read(20, '?');
    s_load = [&](IoPluginLoad &load) {
        read.resize(load.read(load.host, 5, read.data(), read.size()));
        EXPECT_EQ(load.file_size, 10U);
        EXPECT_EQ(load.file_class, fileMakeCode("TEST"));
        Scene const scene;
        return scene.hand_over(load) && load.progress(load.host, 0.5);
    };
    EXPECT_TRUE(load()) << error();
    EXPECT_EQ(read, "bytes");
    EXPECT_EQ(m_sink.m_lines,
        (std::vector<std::wstring> {
            L"material gr\u00FCn wood.png", L"mesh triangle", L"node root" }));
    EXPECT_EQ(m_sink.m_sum, 1);
    EXPECT_EQ(m_sink.m_shift, 2.5);
}

TEST_F(PluginFiles, AFaultInASceneIsRefused)
{
    struct Row {
        char const *error;
        void (*spoil)(Scene &scene);
    };
    Row const rows[] = {
        { "version 2, not 1", [](Scene &s) { s.mesh.version = 2; } },
        { "the node has 8 bytes", [](Scene &s) { s.node.size = 8; } },
        { "name does not end", [](Scene &s) { std::memset(s.mesh.name, 'x', 256); } },
        { "not finite", [](Scene &s) { s.positions[4] = std::nanf(""); } },
        { "not finite", [](Scene &s) { s.node.transform[15] = HUGE_VAL; } },
        { "no vertices", [](Scene &s) { s.mesh.positions = nullptr; } },
        { "more than 2147483647", [](Scene &s) { s.mesh.vertex_count = 0xFFFFFFFF; } },
        { "no corners", [](Scene &s) { s.mesh.corners = nullptr; } },
        { "3 corners, its faces 6", [](Scene &s) { s.mesh.face_count = 2; } },
        { "vertex 3 of 3", [](Scene &s) { s.corners[2] = 3; } },
        { "face of the mesh has 2 corners",
            [](Scene &s) { s.mesh.face_sizes = s.sizes, s.mesh.face_count = 2; } },
        { "material 1 of 1", [](Scene &s) { s.mesh.material = 1; } },
        { "parent is number 0 of 0", [](Scene &s) { s.node.parent = 0; } },
        { "mesh -1 of 1", [](Scene &s) { s.meshes[0] = -1; } },
        { "mesh 1 of 1", [](Scene &s) { s.node.mesh_count = 2; } },
        { "no numbers", [](Scene &s) { s.node.meshes = nullptr; } },
    };
    for (Row const &row : rows) {
        SCOPED_TRACE(row.error);
        s_load = [&](IoPluginLoad &load) {
            Scene scene;
            row.spoil(scene);
            EXPECT_FALSE(scene.hand_over(load));
            Scene const good;
            EXPECT_EQ(load.add_mesh(load.host, &good.mesh), -1) << "goes on after a fault";
            return true; // as if nothing had been
        };
        EXPECT_FALSE(load());
        EXPECT_EQ(m_report.m_result, ioFaultyPlugin);
        EXPECT_NE(error().find(row.error), std::string::npos) << error();
    }
    s_load = [](IoPluginLoad &load) { return load.add_node(load.host, nullptr) == 0; };
    EXPECT_FALSE(load());
    EXPECT_EQ(error(), "faulty plug-in: there is no node");
}

TEST_F(PluginFiles, AFaultInABitmapIsRefused)
{
    struct Row {
        char const *error;
        bool (*hand_over)(IoPluginLoad &load, Picture &picture);
    };
    Row const rows[] = {
        { "2 x 16777217 pixels",
            [](auto &load, auto &p) { return p.bitmap.height = 0x1000001, begin(load, p); } },
        { "5 channels", [](auto &load, auto &p) { return p.bitmap.channels = 5, begin(load, p); } },
        { "depth is 3",
            [](auto &load, auto &p) {
                return p.bitmap.depth = static_cast<IoPluginDepth>(3), begin(load, p);
            } },
        { "second bitmap", [](auto &load, auto &p) { return begin(load, p) && begin(load, p); } },
        { "rows of no bitmap",
            [](auto &load, auto &p) { return load.add_rows(load.host, 0, 1, p.rows, 8); } },
        { "2 rows from 2 on, of 3",
            [](auto &load, auto &p) {
                return begin(load, p) && load.add_rows(load.host, 2, 2, p.rows, 8);
            } },
        { "there are no rows",
            [](auto &load, auto &p) {
                return begin(load, p) && load.add_rows(load.host, 0, 1, nullptr, 8);
            } },
        { "rows of 6 bytes, 5 apart",
            [](auto &load, auto &p) {
                return begin(load, p) && load.add_rows(load.host, 0, 3, p.rows, 5);
            } },
        { "left out 1 of 3 rows",
            [](auto &load, auto &p) {
                return begin(load, p) && load.add_rows(load.host, 1, 2, p.rows, 8)
                    && load.add_rows(load.host, 1, 1, p.rows, 8);
            } },
    };
    for (Row const &row : rows) {
        s_load = [&](IoPluginLoad &load) {
            Picture picture;
            row.hand_over(load, picture);
            return true;
        };
        EXPECT_FALSE(load());
        EXPECT_EQ(m_report.m_result, ioFaultyPlugin);
        EXPECT_NE(error().find(row.error), std::string::npos) << row.error << ": " << error();
    }
}

TEST_F(PluginFiles, WhatGoesWrongReachesTheCaller)
{
    struct Row {
        IoPluginResult result;
        char const *error;
        bool (*load)(IoPluginLoad &load);
    };
    Row const rows[] = {
        { ioFaultyPlugin, "an exception left the plug-in",
            [](auto &) -> bool { throw new CXMemoryException; } },
        { ioDamaged, "line 3",
            [](auto &load) {
                load.result = ioDamaged;
                std::strcpy(load.error, "line 3");
                return false;
            } },
        { ioCancelled, "cancelled", [](auto &load) { return load.progress(load.host, 5); } },
        { ioCancelled, "what the file holds was refused",
            [](auto &load) { return add_mesh_named(load, "refused"); } },
    };
    for (Row const &row : rows) {
        s_load = row.load;
        EXPECT_FALSE(load());
        EXPECT_EQ(m_report.m_result, row.result) << error();
        EXPECT_EQ(error(), row.error);
    }
    s_load = [](auto &load) { // an error text that fills its array
        std::memset(load.error, 'e', sizeof load.error);
        return false;
    };
    EXPECT_FALSE(load());
    EXPECT_EQ(error(), std::string(IO_PLUGIN_ERROR_SIZE, 'e'));
    s_load = [](auto &load) { return add_mesh_named(load, "throws"); };
    EXPECT_THROW(load(), std::runtime_error);
    s_load = [](auto &load) { // the functions are the calling thread's
        bool is_taken = true;
        std::thread([&] { is_taken = load.progress(load.host, 0); }).join();
        return !is_taken;
    };
    EXPECT_TRUE(load()) << error();
}

TEST_F(PluginFiles, TheTypesOfAnExtensionAreTriedUntilOneKnowsTheFormat)
{
    s_load = [](IoPluginLoad &load) { return Scene().hand_over(load); };

    fileUnregisterFile(fileMakeCode("TEST"));
    for (IoPluginCallback const callback :
        { IoPluginCallback(), IoPluginCallback(other_entry), IoPluginCallback(entry) }) {
        CFileExt type;
        type.m_extensions = L".tst";
        type.m_class = fileMakeCode("TEST");
        type.m_properties = fileKind3D | 0x1;
        type.m_loader = callback == entry ? 2 : 1;
        type.m_callback = callback;
        fileRegisterFile(type);
    }
    EXPECT_TRUE(load()) << error();
    EXPECT_EQ(m_report.m_type.m_loader, 2U);
    EXPECT_EQ(s_calls_of_other, 1);
}

TEST_F(PluginFiles, ABitmapIsLoadedIntoMemoryAndReplacesItsFileWhenSaved)
{
    s_load = [](IoPluginLoad &load) { // from the bottom up
        Picture picture;
        bool is_taken = load.begin_bitmap(load.host, &picture.bitmap);
        for (unsigned int row = 3; row-- > 0;)
            is_taken = is_taken && load.add_rows(load.host, row, 1, picture.rows[row], 0);
        return is_taken;
    };
    CIoBitmap bitmap;
    ASSERT_TRUE(fileLoadBitmap(m_path, bitmap, &m_report)) << error();
    ASSERT_EQ(bitmap.m_rows.size(), 18U);
    for (unsigned int i = 0; i < 18; ++i)
        EXPECT_EQ(bitmap.m_rows[i], i + 1);

    bool fails = true;
    s_save = [&](IoPluginSave &save) {
        EXPECT_EQ(save.quality, 90U);
        return save.write(save.host, save.rows, save.stride) && save.write(save.host, "end", 3)
            && save.progress(save.host, 1) && !fails;
    };
    EXPECT_FALSE(fileSaveBitmap(m_path, bitmap, &m_report, 90));
    EXPECT_EQ(m_folder.Read("a.tst"), "some bytes");
    fails = false;
    EXPECT_TRUE(fileSaveBitmap(m_path, bitmap, &m_report, 90)) << error();
    EXPECT_EQ(m_folder.Read("a.tst"), "\1\2\3\4\5\6end");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.GetPath()), {}), 1);
}

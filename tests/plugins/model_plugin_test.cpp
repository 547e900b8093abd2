// SPDX-License-Identifier: MIT
// The plug-in for scenes as a host meets it.
#include "kortools/kortools.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

using String = CXTString<wchar_t>;

// For the address sanitizer: the importers lose memory when a file is cut.
extern "C" KORTOOLS_PLUGIN_API char const *__lsan_default_suppressions();

char const *__lsan_default_suppressions()
{
    return "leak:libassimp";
}

namespace {

using Matrix = std::array<double, 16>;

Matrix multiply(Matrix const &a, Matrix const &b)
{
    Matrix result {};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            for (int i = 0; i < 4; ++i)
                result[row * 4 + column] += a[row * 4 + i] * b[i * 4 + column];
    return result;
}

// Counts what a file has, and measures it in the coordinates of the root.
class Scene : public CIoSink {
public:
    explicit Scene(int cancel_after = 1000000)
        : m_steps_left(cancel_after)
    {
    }
    bool OnProgress(double fraction) override
    {
        m_progress.push_back(fraction);
        return m_steps_left-- > 0;
    }
    bool OnMesh(CIoMesh const &mesh) override
    {
        m_faces += mesh.m_faceCount;
        m_corners += mesh.m_corners.size();
        m_positions.emplace_back(mesh.m_positions.begin(), mesh.m_positions.end());
        for (std::size_t i = 0; i < mesh.m_vertexCount * std::size_t { 3 }; i += 3)
            m_vertices.insert(
                { mesh.m_positions[i], mesh.m_positions[i + 1], mesh.m_positions[i + 2] });
        return true;
    }
    bool OnNode(CIoNode const &node) override
    {
        Matrix matrix;
        std::copy_n(node.m_transform, 16, matrix.begin());
        if (node.m_parent >= 0)
            matrix = multiply(m_matrices[static_cast<std::size_t>(node.m_parent)], matrix);
        m_matrices.push_back(matrix);
        for (int mesh : node.m_meshes)
            measure(m_positions[static_cast<std::size_t>(mesh)], matrix);
        return true;
    }

    std::vector<double> m_progress;
    std::set<std::array<float, 3>> m_vertices; // different ones
    unsigned long long m_faces = 0;
    unsigned long long m_corners = 0;
    double m_low[3] = { 1e9, 1e9, 1e9 }; // of the meshes at nodes
    double m_high[3] = { -1e9, -1e9, -1e9 };

private:
    void measure(std::vector<float> const &positions, Matrix const &m)
    {
        for (std::size_t i = 0; i < positions.size(); i += 3) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                double value = m[axis * 4 + 3];
                for (std::size_t j = 0; j < 3; ++j)
                    value += m[axis * 4 + j] * double(positions[i + j]);
                m_low[axis] = std::min(m_low[axis], value);
                m_high[axis] = std::max(m_high[axis], value);
            }
        }
    }

    int m_steps_left;
    std::vector<std::vector<float>> m_positions;
    std::vector<Matrix> m_matrices;
};

class ModelPlugin : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        fileGetClass(L"a.bmp");     // makes the registry
        SetPluginProbeLimit(60000); // the machine may be busy
        RegisterIOPlugins(fileKind3D, std::filesystem::path(KOR_PLUGINS).wstring().c_str());
    }
    static void TearDownTestSuite()
    {
        FreeIOPlugins(fileKind3D);
        EXPECT_EQ(fileGetKindOf(L"a.xyz"), 0U);
    }

    bool load(std::filesystem::path const &path, CIoSink &sink)
    {
        return fileLoadWithPlugin(path.wstring().c_str(), sink, &m_report);
    }
    std::string error() const { return std::string(CXTString<char>(m_report.m_error)); }
    std::string read_sample(char const *name) const
    {
        return kor_test::read_file(m_samples / name);
    }

    TempFolder m_folder;
    std::filesystem::path m_samples = KOR_SAMPLES;
    CIoReport m_report;
};

} // namespace

TEST_F(ModelPlugin, LoadsTheBoxFromEveryFormat)
{
    struct Row {
        char const *name;
        unsigned int faces, corners;
        double size;  // along x, of a box that is 2 wide in its file
        double shift; // of its middle
    };
    for (Row const &row : {
             Row { "box.stl", 12, 36, 2, 0 },
             Row { "box.ply", 6, 24, 2, 0 },
             Row { "box.off", 6, 24, 2, 0 },
             Row { "box.dae", 6, 24, 2, 10 },
             Row { "box.gltf", 12, 36, 4, 10 },
             Row { "box.glb", 12, 36, 4, 10 },
         }) {
        Scene scene;
        ASSERT_TRUE(load(m_samples / row.name, scene)) << row.name << ": " << error();
        EXPECT_EQ(scene.m_faces, row.faces) << row.name;
        EXPECT_EQ(scene.m_corners, row.corners) << row.name;
        EXPECT_EQ(scene.m_vertices.size(), 8U) << row.name;
        EXPECT_NEAR(scene.m_low[0], row.shift - row.size / 2, 1e-6) << row.name;
        EXPECT_NEAR(scene.m_high[0], row.shift + row.size / 2, 1e-6) << row.name;
        EXPECT_NEAR(scene.m_high[2] - scene.m_low[2], row.size * 3, 1e-6) << row.name;
        EXPECT_TRUE(std::ranges::is_sorted(scene.m_progress)) << row.name;
        EXPECT_EQ(scene.m_progress.back(), 1) << row.name;
    }
    EXPECT_EQ(m_report.m_type.m_loader, fileMakeCode("ASIM"));
}

TEST_F(ModelPlugin, RefusesFilesThatAreCut)
{
    for (char const *name : { "box.stl", "box.ply", "box.glb", "box.gltf", "box.dae" }) {
        std::string const whole = read_sample(name);
        // The importer takes a text file that lacks its last faces for one with fewer.
        std::size_t const parts = whole.starts_with("ply") ? 7 : 8;
        for (std::size_t part = 0; part < parts; ++part) {
            std::size_t const size = whole.size() * part / 8;
            m_folder.Write(name, whole.substr(0, size));
            Scene scene;
            EXPECT_FALSE(load(m_folder.GetPath() / name, scene)) << name << " of " << size;
            EXPECT_FALSE(error().empty()) << name << " of " << size;
        }
    }
}

TEST_F(ModelPlugin, MayBeCancelledAtEveryStep)
{
    Scene whole;
    ASSERT_TRUE(load(m_samples / "sphere.obj", whole)) << error();
    for (int step = 0; step < static_cast<int>(whole.m_progress.size()); ++step) {
        Scene scene(step);
        EXPECT_FALSE(load(m_samples / "sphere.obj", scene)) << step;
        EXPECT_EQ(m_report.m_result, ioCancelled) << step << ": " << error();
    }
}

TEST_F(ModelPlugin, AFileDoesNotReachOutOfItsFolder)
{
    std::filesystem::create_directory(m_folder.GetPath() / "inside");
    std::string const document = read_sample("box.gltf");
    std::size_t const begin = document.find("data:application");
    std::size_t const end = document.find('"', begin);
    std::string bytes(168, '\0'); // eight positions and 36 corners
    for (std::size_t i = 0; i < 8; ++i) {
        float const position[3] = { float(i & 1), float(i >> 1 & 1), float(i >> 2) };
        std::memcpy(&bytes[i * sizeof position], position, sizeof position);
    }
    for (std::size_t i = 0; i < 36; ++i)
        bytes[96 + i * 2] = static_cast<char>(i % 8);
    m_folder.Write("inside/box.bin", bytes);
    m_folder.Write("other.bin", bytes);
    for (char const *uri : { "box.bin", "../other.bin" }) {
        std::string text = document;
        text.replace(begin, end - begin, uri);
        m_folder.Write("inside/box.gltf", text);
        Scene scene;
        EXPECT_EQ(load(m_folder.GetPath() / "inside" / "box.gltf", scene), uri[0] == 'b')
            << uri << ": " << error();
    }
}

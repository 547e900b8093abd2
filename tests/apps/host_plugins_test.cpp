// SPDX-License-Identifier: MIT
// What scoutrix does with plug-ins: those that are built with it, and some that are none.
#include "tests/apps/host_support.h"

#include <fstream>

namespace {

class HostPlugins : public Host {
protected:
    void ExpectOutput(std::string const &text) const
    {
        EXPECT_NE(m_output.find(text), std::string::npos) << text << '\n' << m_output << m_errors;
    }
};

} // namespace

TEST_F(HostPlugins, LoadFilesOfManyFormats)
{
    m_plugins = KOR_PLUGINS;
    struct Case {
        char const *file;
        std::vector<std::string> facts;
        bool is_mesh = false;
    };
    for (auto const &[file, facts, is_mesh] : {
             Case { "gradient.tga",
                 { "48 x 32, 24 bits", "channels: 3", "mean: 0.460784 0.42549 0.501961",
                     "loader: STBI, bitmaps." } },
             Case { "gradient.hdr", { "48 x 32, ", "type: HDR, Radiance", "mean: 0.26" } },
             Case { "box.xyz", { "8 vertices, 0 faces", "minimum: -1 -2 -3" } },
             Case { "box.stl", { "12 faces", "normals: 24", "maximum: 1 2 3" }, true },
             Case { "box.dae", { "6 faces, 1 group", "minimum: 9 -2 -3" }, true },  // moved
             Case { "box.gltf", { "12 faces, 1 group", "maximum: 12 4 6" }, true }, // and scaled
         }) {
        if (is_mesh && !KOR_HAS_MODELS) {
            EXPECT_EQ(Run({ "open", Sample(file) }), 4) << file;
            continue;
        }
        EXPECT_EQ(Run({ "open", Sample(file) }), 0) << file << m_errors;
        for (std::string const &fact : facts)
            ExpectOutput(fact);
    }
}

TEST_F(HostPlugins, FillScenesAndTypes)
{
    m_plugins = KOR_PLUGINS;
    std::string const cut = to_utf8(m_folder.GetPath() / "cut.jpg");
    std::filesystem::copy_file(Sample("gradient.jpg"), cut);
    std::filesystem::resize_file(cut, 300);
    EXPECT_EQ(Run({ "import", "-o", m_scene, Sample("gradient.tga"), cut }), 5);
    Import({ "gradient.tga", "checker.bmp" });
    EXPECT_EQ(Run({ "get", m_scene, "checker.bmp" }), 0);
    ExpectOutput("format: Windows Bitmap\n");
    ExpectOutput("mean: "); // the host's own reader does not look at pixels
    if (KOR_HAS_MODELS) {
        EXPECT_EQ(Run({ "import", "-a", "-o", m_scene, Sample("box.gltf") }), 0) << m_errors;
        EXPECT_EQ(ListNames({}), "samples gradient.tga checker.bmp box.gltf box ");
    }
    m_plugins = to_utf8(m_folder.GetPath());
    EXPECT_EQ(Run({ "types", "bitmap" }), 0);
    EXPECT_EQ(m_output.find("STBI"), std::string::npos) << "they have left the registry";
}

TEST_F(HostPlugins, AreListedWithTheirVerdicts)
{
    m_plugins = KOR_PLUGINS;
    EXPECT_EQ(Run({ "plugins" }), 0) << m_output;
    ExpectOutput("  loaded   types: ");
    m_plugins = to_utf8(m_folder.GetPath());
    EXPECT_EQ(Run({ "plugins" }), 1);
    EXPECT_NE(m_errors.find("there are no plug-ins in"), std::string::npos) << m_errors;
    std::filesystem::copy_file(
        KOR_TEST_PLUGINS "/other_version.dll", m_folder.GetPath() / "other.dll");
    std::ofstream(m_folder.GetPath() / "text.dll") << "text";
    EXPECT_EQ(Run({ "plugins" }), 1);
    ExpectOutput("other.dll  refused  ");
    ExpectOutput("text.dll   refused  ");
    ExpectOutput("is not a library.");
}

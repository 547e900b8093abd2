// SPDX-License-Identifier: MIT
// The plug-in that authors begin with, on both systems.
#include "kortools/kortools.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

class Points : public CIoSink {
public:
    bool OnMesh(CIoMesh const &mesh) override
    {
        m_numbers.assign(mesh.m_positions.begin(), mesh.m_positions.end());
        return mesh.m_faceCount == 0;
    }
    std::vector<float> m_numbers;
};

} // namespace

TEST(PointsPlugin, LoadsPointsAndRefusesOtherLines)
{
    TempFolder const folder;
    fileGetClass(L"a.bmp");     // makes the registry
    SetPluginProbeLimit(60000); // the machine may be busy
    RegisterIOPlugins(fileKind3D, std::filesystem::path(KOR_PLUGINS).wstring().c_str());
    ASSERT_EQ(fileGetKindOf(L"a.xyz"), fileKind3D);
    struct Row {
        std::string text;
        IoPluginResult result;
        std::vector<float> numbers;
    };
    std::string many; // lines that lie across the borders of blocks
    for (int i = 0; i < 20000; ++i)
        many += "1.5 2 -3\n";
    for (Row const &row : {
             Row { "1 2 3\n\n4 5 6", ioDone, { 1, 2, 3, 4, 5, 6 } },
             Row { many + "7 8 9\r\n", ioDone, {} },
             Row { "1 2 3\n4 5\n", ioDamaged, {} },
             Row { "solid", ioWrongFormat, {} },
             Row { std::string(1000, '1'), ioWrongFormat, {} },
             Row { "", ioFaultyPlugin, {} }, // a mesh has a vertex, which it leaves to the library
             Row { "nan 0 0\n", ioFaultyPlugin, {} },
         }) {
        std::filesystem::path const path = folder.GetPath() / "a.xyz";
        folder.Write("a.xyz", row.text);
        Points points;
        CIoReport report;
        fileLoadWithPlugin(path.wstring().c_str(), points, &report);
        EXPECT_EQ(report.m_result, row.result) << row.text.substr(0, 20);
        if (row.result == ioDone && row.numbers.empty()) {
            EXPECT_EQ(points.m_numbers.size(), 60003U);
        } else {
            EXPECT_EQ(points.m_numbers, row.numbers);
        }
    }
    FreeIOPlugins(fileKind3D);
    EXPECT_EQ(fileGetKindOf(L"a.xyz"), 0U);
}

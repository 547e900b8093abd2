// SPDX-License-Identifier: MIT
// scoutrix-view on the window system in memory.
#include "apps/common/paths.h"
#include "apps/viewer/content.h"
#include "apps/viewer/shade.h"
#include "apps/viewer/view_window.h"
#include "apps/viewer/viewer.h"
#include "tests/support/temp_folder.h"
#include "tests/ui/driver.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {

using kor_test::UserInput;
using viewer::Model;
using viewer::Text;

bool go_on(double)
{
    return true;
}

// One pixel as a plug-in hands it over, at (x, 0) of a row of 16.
template <class Sample>
CRGBColor convert(std::vector<Sample> const &pixel, IoPluginDepth depth, int x = 0)
{
    viewer::Content content(go_on);
    CIoBitmapFormat format;
    format.m_width = 16;
    format.m_height = 1;
    format.m_channels = static_cast<unsigned int>(pixel.size());
    format.m_depth = depth;
    std::vector<Sample> row;
    for (int i = 0; i < 16; ++i)
        row.insert(row.end(), pixel.begin(), pixel.end());
    EXPECT_TRUE(content.OnBitmap(format));
    EXPECT_TRUE(content.OnRows(0, 1, reinterpret_cast<unsigned char const *>(row.data()),
        static_cast<std::size_t>(format.GetRowSize())));
    return content.TakePicture().at(x, 0);
}

TEST(ViewerContent, PixelsOfEveryForm)
{
    using Bytes = std::vector<unsigned char>;
    using Words = std::vector<unsigned short>;
    using Floats = std::vector<float>;
    EXPECT_EQ(convert(Bytes { 77 }, ioDepth8), CRGBColor(77, 77, 77));
    EXPECT_EQ(convert(Bytes { 1, 2, 3 }, ioDepth8), CRGBColor(1, 2, 3));
    EXPECT_EQ(convert(Words { 0, 32896, 65535 }, ioDepth16), CRGBColor(0, 128, 255));
    // 18 % of light is 46 % of the sRGB curve; what is brighter than white is white.
    EXPECT_EQ(convert(Floats { 0.18F, 7, -1 }, ioDepthFloat), CRGBColor(118, 255, 0));
    EXPECT_EQ(convert(Floats { NAN, 1, 0, NAN }, ioDepthFloat, 0), CRGBColor(255, 255, 255));
    // Half transparent black over the light and the dark squares of the board
    EXPECT_EQ(convert(Bytes { 0, 128 }, ioDepth8, 7), CRGBColor(127, 127, 127));
    EXPECT_EQ(convert(Bytes { 0, 128 }, ioDepth8, 8), CRGBColor(102, 102, 102));
    EXPECT_EQ(convert(Bytes { 9, 8, 7, 255 }, ioDepth8, 8), CRGBColor(9, 8, 7));
}

// A square before the viewer, `depth` towards him.
void add_square(Model &model, double half, double depth, CRGBColor const &color)
{
    auto const first = static_cast<unsigned int>(model.vertices.size());
    for (auto const &[x, y] : { std::pair { -1, -1 }, { 1, -1 }, { 1, 1 }, { -1, 1 } })
        model.vertices.push_back({ x * half, y * half, depth });
    model.triangles.push_back({ { first, first + 1, first + 2 }, color });
    model.triangles.push_back({ { first, first + 2, first + 3 }, color });
}

TEST(ViewerShade, NearFacesHideFarOnes)
{
    for (bool const near_first : { true, false }) {
        Model model;
        add_square(model, near_first ? 1 : 2, near_first ? 1 : 0,
            near_first ? CRGBColor(255, 0, 0) : CRGBColor(0, 0, 255));
        add_square(model, near_first ? 2 : 1, near_first ? 0 : 1,
            near_first ? CRGBColor(0, 0, 255) : CRGBColor(255, 0, 0));
        kortools::ui::Picture const picture = viewer::shade_model(model, { 65, 49 });
        ASSERT_EQ(picture.size, CXSize(65, 49));
        CRGBColor const middle = picture.at(32, 24);
        EXPECT_GT(middle[0], 60);
        EXPECT_EQ(middle[2], 0);
        EXPECT_EQ(picture.at(0, 0)[0] < picture.at(0, 0)[2], true); // the ground
    }
}

TEST(ViewerShade, BoundlessModelsAreShown)
{
    Model model;
    EXPECT_EQ(viewer::shade_model(model, { 1, 1 }).pixels.size(), 1U);
    add_square(model, 1e308, 1e308, {});
    model.vertices.push_back({ INFINITY, NAN, 0 });
    model.points.push_back(4);
    EXPECT_EQ(viewer::shade_model(model, { 8, 8 }).pixels.size(), 64U);
}

class Viewer : public testing::Test {
protected:
    void Show(int width, int height)
    {
        kortools::ui::Picture picture;
        picture.size = { width, height };
        picture.pixels.resize(std::size_t(width) * std::size_t(height));
        m_window.GetFrame().SetViewSize({ 200, 150 });
        m_window.GetFrame().Show(true);
        m_window.ShowPicture(std::move(picture), L"picture");
        m_back_end.PumpMessages();
    }
    void Input(std::vector<UserInput> const &inputs)
    {
        for (UserInput const &input : inputs)
            m_driver->input(m_window.GetFrame(), input);
        m_back_end.PumpMessages();
    }
    void Drag(CXPoint const &from, CXPoint const &to)
    {
        using Kind = UserInput::Kind;
        Input({ { Kind::Move, from }, { Kind::LeftDown, from }, { Kind::Move, to },
            { Kind::LeftUp, to } });
    }
    void Press(unsigned int key)
    {
        Input({ { UserInput::Kind::KeyDown, {}, key }, { UserInput::Kind::KeyUp, {}, key } });
    }

    std::unique_ptr<kor_test::Driver> m_driver = kor_test::make_driver();
    kortools::ui::BackEnd &m_back_end = m_driver->install();
    int m_page = 0;
    viewer::ViewWindow m_window { m_back_end, [this](int step) { m_page += step; } };
};

TEST_F(Viewer, WheelZoomsAroundTheMouse)
{
    Show(800, 600);
    EXPECT_FLOAT_EQ(m_window.GetCoord().GetZoom(), 0.25F); // fits
    Press('1');
    CPoint before(50, 40);
    m_window.GetCoord().ClientToDoc(before);
    Input({ { UserInput::Kind::Move, { 50, 40 } }, { UserInput::Kind::Wheel, { 50, 40 }, 0, 2 } });
    EXPECT_EQ(m_window.GetCoord().GetZoom(), 3);
    CPoint after(50, 40);
    m_window.GetCoord().ClientToDoc(after);
    EXPECT_NEAR(after.x, before.x, 1);
    EXPECT_NEAR(after.y, before.y, 1);
    EXPECT_NE(m_window.GetStatus().Find(L"300 %"), -1);
}

TEST_F(Viewer, FramesAreDrawnMovedAndLocked)
{
    Show(200, 150);
    Press('1');
    Drag({ 20, 30 }, { 60, 50 });
    CRect const drawn = m_window.GetSelection();
    EXPECT_NEAR(drawn.Width(), 40, 1);
    EXPECT_NEAR(drawn.Height(), 20, 1);

    Press(kortools::ui::KeyRight);
    EXPECT_EQ(m_window.GetSelection(), drawn + CPoint(1, 0));
    Press('L');
    Drag(CPoint(m_window.GetSelection().BottomRight()), { 141, 60 });
    CRect const dragged = m_window.GetSelection();
    EXPECT_GT(dragged.Width(), 70);
    EXPECT_NEAR(dragged.Height() * 2, dragged.Width(), 2);
    EXPECT_NE(m_window.GetStatus().Find(L"locked"), -1);

    Press(kortools::ui::KeyEscape);
    EXPECT_TRUE(m_window.GetSelection().IsRectEmpty());
    Press(kortools::ui::KeyPageDown);
    EXPECT_EQ(m_page, 1);
    Press(kortools::ui::KeyEscape); // closes
    EXPECT_EQ(m_back_end.Run(), 0);
}

TEST(ViewerProgram, ShowsASampleAndSavesThePicture)
{
    TempFolder const folder;
    auto const driver = kor_test::make_driver();
    auto const install = [&]() -> kortools::ui::BackEnd & { return driver->install(); };
    std::filesystem::path const target = folder.GetPath() / "shot.png";
    EXPECT_EQ(
        viewer::run_viewer({ "scoutrix-view", KOR_SAMPLES "/gradient.png", "--plugins", KOR_PLUGINS,
                               "--size", "320,200", "--screenshot", target.string() },
            install),
        0);
    EXPECT_GT(std::filesystem::file_size(target), 100U);
    auto const show = [&](std::string const &file) {
        return viewer::run_viewer(
            { "scoutrix-view", file, "--plugins", KOR_PLUGINS, "--screenshot", target.string() },
            install);
    };
    EXPECT_EQ(show(KOR_SAMPLES "/absent.png"), 3);
    EXPECT_EQ(show(KOR_SAMPLES "/README.md"), 4);
    std::ofstream(folder.GetPath() / "cut.png") << "no picture";
    EXPECT_EQ(show((folder.GetPath() / "cut.png").string()), 5);
    EXPECT_EQ(viewer::run_viewer({ "scoutrix-view", "--size", "1,1", "x" }, install), 2);
}

} // namespace

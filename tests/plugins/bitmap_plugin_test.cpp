// SPDX-License-Identifier: MIT
// The bitmap plug-in as a host meets it: found in its folder, and used through the registry.
#include "kortools/kortools.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>

using String = CXTString<wchar_t>;

namespace {

class BitmapPlugin : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        fileGetClass(L"a.bmp"); // makes the registry
        FilterPlugins(fileMakeCode("PSD "));
        SetPluginProbeLimit(60000); // the machine may be busy
        RegisterIOPlugins(fileKindBitmap, std::filesystem::path(KOR_PLUGINS).wstring().c_str());
    }
    static void TearDownTestSuite()
    {
        EXPECT_EQ(fileGetKindOf(L"a.png"), fileKindBitmap);
        FreeIOPlugins(fileKindBitmap);
        EXPECT_EQ(fileGetKindOf(L"a.png"), 0U);
    }

    bool load(std::filesystem::path const &path)
    {
        return fileLoadBitmap(path.wstring().c_str(), m_bitmap, &m_report);
    }
    std::string error() const { return std::string(CXTString<char>(m_report.m_error)); }

    TempFolder m_folder;
    std::filesystem::path m_samples = KOR_SAMPLES;
    CIoBitmap m_bitmap;
    CIoReport m_report;
};

} // namespace

TEST_F(BitmapPlugin, LoadsTheSamples)
{
    struct Row {
        char const *name;
        unsigned int width, height;
        IoPluginDepth depth;
        unsigned int bits;
    };
    for (Row const &row : {
             Row { "gradient.png", 48, 32, ioDepth8, 24 },
             Row { "gradient.jpg", 48, 32, ioDepth8, 24 },
             Row { "gradient.tga", 48, 32, ioDepth8, 24 },
             Row { "gradient.hdr", 48, 32, ioDepthFloat, 32 },
             Row { "checker.bmp", 20, 12, ioDepth8, 24 },
         }) {
        ASSERT_TRUE(load(m_samples / row.name)) << row.name << ": " << error();
        CIoBitmapFormat const &format = m_bitmap.m_format;
        EXPECT_EQ(format.m_width, row.width) << row.name;
        EXPECT_EQ(format.m_height, row.height) << row.name;
        EXPECT_EQ(format.m_depth, row.depth) << row.name;
        EXPECT_EQ(format.m_fileBits, row.bits) << row.name;
    }
}

TEST_F(BitmapPlugin, RefusesSamplesThatAreCutOrOfAnotherFormat)
{
    for (char const *name :
        { "gradient.png", "gradient.tga", "gradient.hdr", "checker.bmp", "gradient.jpg" }) {
        std::string const whole = kor_test::read_file(m_samples / name);
        for (std::size_t part = 0; part < 8; ++part) {
            std::size_t const size = whole.size() * part / 8;
            m_folder.Write(name, whole.substr(0, size));
            EXPECT_FALSE(load(m_folder.GetPath() / name)) << name << " of " << size << " bytes";
            EXPECT_FALSE(m_report.m_error.IsEmpty());
        }
    }
    // A Huffman table with more codes than there are.
    std::string jpeg = kor_test::read_file(m_samples / "gradient.jpg");
    jpeg.replace(jpeg.find("\xFF\xC4") + 5, 16, std::string(16, '\x7F'));
    m_folder.Write("tables.jpg", jpeg);
    EXPECT_FALSE(load(m_folder.GetPath() / "tables.jpg"));
    EXPECT_EQ(error(), "its tables are damaged");
    m_folder.Write("text.png", "neither this nor that, but long enough");
    EXPECT_FALSE(load(m_folder.GetPath() / "text.png"));
    EXPECT_EQ(m_report.m_result, ioWrongFormat);
    EXPECT_FALSE(load(m_folder.GetPath() / "filtered.psd"));
    EXPECT_EQ(m_report.m_result, ioNoPlugin);
}

TEST_F(BitmapPlugin, WhatItSavesItLoadsAgain)
{
    CIoBitmap source;
    source.m_format = { 5, 4, 4, ioDepth8, 0 };
    for (unsigned int i = 0; i < 5 * 4 * 4; ++i)
        source.m_rows.push_back(static_cast<unsigned char>(i * 3));
    for (char const *name : { "a.png", "a.tga", "a.bmp" }) {
        String const path = (m_folder.GetPath() / name).wstring().c_str();
        ASSERT_TRUE(fileSaveBitmap(path, source, &m_report)) << name << ": " << error();
        ASSERT_TRUE(load(m_folder.GetPath() / name)) << name << ": " << error();
        EXPECT_EQ(m_bitmap.m_rows, source.m_rows) << name;
    }
    // Floats become 8 bits.
    CIoBitmap exact;
    exact.m_format = { 2, 1, 1, ioDepthFloat, 0 };
    float const light[] = { 1.5F, std::pow(128 / 255.0F, 2.2F) };
    auto const *const bytes = reinterpret_cast<unsigned char const *>(light);
    exact.m_rows.assign(bytes, bytes + sizeof light);
    String const path = (m_folder.GetPath() / "b.png").wstring().c_str();
    ASSERT_TRUE(fileSaveBitmap(path, exact, &m_report)) << error();
    ASSERT_TRUE(load(m_folder.GetPath() / "b.png")) << error();
    EXPECT_EQ(m_bitmap.m_rows, (std::vector<unsigned char> { 255, 128 }));
}

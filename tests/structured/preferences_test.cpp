// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"
#include "kortools/data/custom_data.h"
#include "tests/structured/custom_data_support.h"
#include "tests/structured/preferences_support.h"
#include "tests/support/folders.h"
#include "tests/support/format_example.h"

#include <gtest/gtest.h>

using namespace kor_test;

namespace {

constexpr unsigned magic = 0x43555335; // "CUS5"

class Preferences : public testing::Test {
protected:
    bool save(unsigned id, unsigned version, unsigned number)
    {
        return save_number(path, id, version, number);
    }
    std::optional<unsigned> load(unsigned id, unsigned version)
    {
        return load_number(path, id, version);
    }
    // Everything in the folder, which is the file and nothing else.
    std::string only_file()
    {
        int count = 0;
        for ([[maybe_unused]] auto const &entry :
            std::filesystem::directory_iterator(folder.GetPath()))
            ++count;
        EXPECT_EQ(count, 1);
        return read_file(path);
    }

    TempFolder folder { get_fast_folder() };
    std::wstring const path = folder.GetFile(L"App.prefs");
    std::wstring const copy = path + L".tmp";
};

} // namespace

TEST_F(Preferences, TheExampleOfTheDescriptionIsWhatIsWritten)
{
    CCustomData data;
    ASSERT_TRUE(data.SaveToPrefs(path.c_str(), 9, 0));
    data.SetInt(1, 7);
    ASSERT_TRUE(data.SaveToPrefs(path.c_str(), four("WIND"), 2));
    EXPECT_EQ(only_file(), read_format_example("preferences-format.md"));
}

TEST_F(Preferences, AnEarlierFileReadsTheSameAndIsWrittenTheSame)
{
    std::string const golden = read_file(kor_test::data_folder() + "/preferences.bin");
    write_file(path, golden);
    CCustomData data;
    CXTString<wchar_t> text;
    ASSERT_TRUE(data.LoadFromPrefs(path.c_str(), 9, 0) && data.SaveToPrefs(path.c_str(), 9, 0));
    ASSERT_TRUE(data.LoadFromPrefs(path.c_str(), four("WIND"), 2));
    EXPECT_TRUE(data.GetString(four("NAME"), text) && text == L"Zo\u00EB");
    EXPECT_TRUE(data.SaveToPrefs(path.c_str(), four("WIND"), 2));
    EXPECT_EQ(only_file(), golden);
}

TEST_F(Preferences, AVersionIsFoundExactlyOrAsTheNextOlderOne)
{
    for (unsigned version : { 4U, 0U, 9U, 6U })
        ASSERT_TRUE(save(5, version, version) && load(5, version) == version);
    ASSERT_TRUE(save(6, 7, 100));
    CCustomData data;
    data.SetUInt(1, 77);
    EXPECT_FALSE(data.LoadFromPrefs(path.c_str(), 5, 8));
    EXPECT_TRUE(data.HasData(1)); // a miss leaves it alone
    for (auto [wanted, found] : { std::pair { 8U, 6U }, { 9U, 9U }, { 5U, 4U }, { 3U, 0U } }) {
        EXPECT_TRUE(data.LoadFromPrefs(path.c_str(), 5, wanted, true));
        EXPECT_EQ(get_number(data), found);
    }
    EXPECT_FALSE(data.LoadFromPrefs(path.c_str(), 6, 6, true)); // not a newer one
}

TEST_F(Preferences, DamagedFilesAreReadAsFarAsPossibleAndNeverOverwritten)
{
    CCustomData data;
    data.SetInt(1, 1);
    std::string const stream = to_stream(data);
    std::string const whole = encode_preferences({ { 1, 0, stream }, { 2, 0, stream } });
    std::vector<std::string> damaged = { whole + 'x', std::string(4, '\xFF') + whole.substr(4),
        '\1' + whole.substr(1), '\3' + whole.substr(1), std::string(500, '\xD8') };
    for (std::size_t cut = 1; cut < whole.size(); ++cut)
        damaged.push_back(whole.substr(0, cut));
    for (std::string const &bytes : damaged) {
        write_file(path, bytes);
        EXPECT_FALSE(data.SaveToPrefs(path.c_str(), 1, 0));
        EXPECT_EQ(only_file(), bytes);
        if (whole.starts_with(bytes)) {
            EXPECT_EQ(data.LoadFromPrefs(path.c_str(), 1, 0), bytes.size() >= 12 + stream.size());
        }
    }
    data.SetInt(1, 1);
    write_file(path, ""); // what a system leaves that stopped when the file was made
    EXPECT_TRUE(data.SaveToPrefs(path.c_str(), 1, 0));
    EXPECT_EQ(only_file(), encode_preferences({ { 1, 0, stream } }));
}

TEST_F(Preferences, HugeAndHostileFilesAreRefusedWithoutReadingThem)
{
    for (unsigned total : { 0x7FFFFFFFU, 0xFFFFFFF0U, 0xFFFFFFFFU }) {
        for (unsigned long long size : { 1'000ULL, 20ULL + total, 1ULL << 40 }) {
            write_file(path, ArchiveEncoder().u32(1).u32(5).u32(0).u32(magic).u32(total).bytes());
            std::error_code error; // a file system may not have files of this size
            std::filesystem::resize_file(path, size, error);
            EXPECT_FALSE(load(5, 0) || save(6, 0, 1));
        }
    }
    std::vector<Record> many;
    for (unsigned id = 0; id < 0x10000; ++id)
        many.push_back({ id, 0, encode_opaque(magic + 1, "a form of the future") });
    write_file(path, encode_preferences(many));
    EXPECT_FALSE(save(0x10000, 0, 1)); // one too many
    EXPECT_EQ(only_file(), encode_preferences(many));
    EXPECT_TRUE(save(0xFFFF, 0, 1));
    CCustomData saved;
    fill_numbered(saved, 1);
    many.back().container = to_stream(saved); // the others are copied as they are
    EXPECT_EQ(only_file(), encode_preferences(many));
    EXPECT_FALSE(saved.LoadFromPrefs(path.c_str(), 1, 0) || saved.HasData());
}

TEST_F(Preferences, WhatCannotBeOpenedIsFalseAndUntouched)
{
    for (std::wstring const &nowhere :
        { folder.GetFile(L"missing/App.prefs"), std::wstring(), folder.GetPath().wstring() })
        EXPECT_FALSE(save_number(nowhere, 1, 1, 1) || load_number(nowhere, 1, 1));
    ASSERT_TRUE(save(1, 1, 1));
    std::string const before = only_file();
    std::filesystem::create_directory(copy); // in the way of the copy
    EXPECT_FALSE(save(1, 1, 2));
    std::filesystem::remove(copy);
    EXPECT_EQ(only_file(), before);
    {
        CXFile holder(path.c_str(), CXFile::modeReadWrite | CXFile::shareExclusive);
        EXPECT_FALSE(save(1, 1, 2) || load(1, 1));
    }
    EXPECT_EQ(load(1, 1), 1U);
}

// What a writer leaves that stopped before its copy was committed: the beginning of a file, or one
// without its number of records. Of one that stopped later: a whole copy and any mixture.
TEST_F(Preferences, ACopyCountsWhenItIsCommitted)
{
    ASSERT_TRUE(save(2, 1, 6));
    ASSERT_TRUE(save(1, 1, 5));
    std::string const before = only_file();
    ASSERT_TRUE(save(1, 1, 140));
    std::string const after = only_file();
    std::string mixture = after;
    for (std::size_t i = 0; i < std::min(after.size(), before.size()) - 16; i += 16)
        mixture.replace(i, 8, before.substr(i, 8));
    struct Left {
        std::string target, tmp;
        unsigned number;
    };
    std::vector<Left> cases = { { before, std::string(before.size(), '\0'), 5 },
        { before, std::string(4, '\xFF') + after.substr(4), 5 },
        { before, '\1' + after.substr(1), 5 }, { "", after, 140 }, { after, after, 140 },
        { after.substr(0, 30), after, 140 }, { mixture, after, 140 } };
    for (std::size_t cut = 0; cut < after.size(); cut += 11)
        cases.push_back({ before, after.substr(0, cut), 5 });
    for (Left const &left : cases) {
        write_file(path, left.target);
        write_file(copy, left.tmp);
        EXPECT_EQ(load(1, 1), left.number) << &left - cases.data();
        EXPECT_EQ(load(2, 1), 6U);
        ASSERT_TRUE(save(3, 1, 9));
        EXPECT_EQ(load(1, 1), left.number);
        EXPECT_EQ(load(2, 1), 6U);
        EXPECT_EQ(load(3, 1), 9U);
        only_file();
    }
}

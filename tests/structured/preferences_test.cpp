// SPDX-License-Identifier: MIT
#include "kortools/archive/file.h"
#include "kortools/data/custom_data.h"
#include "tests/structured/custom_data_support.h"
#include "tests/structured/preferences_support.h"
#include "tests/support/folders.h"
#include "tests/support/format_example.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

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
        return read_file(path).value_or("nothing");
    }

    TempFolder folder { get_fast_folder() };
    std::wstring const path = folder.GetFile(L"App.prefs");
    std::wstring const copy = path + L".tmp";
};

} // namespace

TEST_F(Preferences, TheFormIsACountAndKeysBeforeContainers)
{
    CCustomData data;
    EXPECT_FALSE(data.LoadFromPrefs(path.c_str(), 7, 1));
    EXPECT_FALSE(std::filesystem::exists(path)); // loading writes nothing

    data.SetInt(1, 42);
    std::string const stream = to_stream(data);
    ASSERT_TRUE(data.SaveToPrefs(path.c_str(), 7, 1));
    EXPECT_EQ(only_file(), encode_preferences({ { 7, 1, stream } }));

    CCustomData empty;
    ASSERT_TRUE(empty.SaveToPrefs(path.c_str(), 1, 7));
    EXPECT_EQ(
        only_file(), encode_preferences({ { 7, 1, stream }, { 1, 7, encode_opaque(magic, "") } }));

    ASSERT_TRUE(data.SaveToPrefs(path.c_str(), 7, 1)); // goes to the end
    EXPECT_EQ(
        only_file(), encode_preferences({ { 1, 7, encode_opaque(magic, "") }, { 7, 1, stream } }));
    EXPECT_TRUE(data.LoadFromPrefs(path.c_str(), 1, 7));
    EXPECT_FALSE(data.HasData());
}

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
    std::string const golden
        = read_file(std::filesystem::path(kor_test::data_folder() + "/preferences.bin").wstring())
              .value();
    write_file(path, golden);
    CCustomData data, nested;
    int number;
    double fraction;
    CXTString<wchar_t> text;
    ASSERT_TRUE(data.LoadFromPrefs(path.c_str(), four("WIND"), 1));
    EXPECT_TRUE(data.GetInt(1, number) && number == 1234);
    EXPECT_TRUE(data.GetDouble(2, fraction) && fraction == 2.5);
    EXPECT_FALSE(data.LoadFromPrefs(path.c_str(), four("MINE"), 0xFFFFFFFF));

    ASSERT_TRUE(data.LoadFromPrefs(path.c_str(), 9, 0));
    EXPECT_FALSE(data.HasData());
    EXPECT_TRUE(data.SaveToPrefs(path.c_str(), 9, 0));
    ASSERT_TRUE(data.LoadFromPrefs(path.c_str(), four("WIND"), 2));
    EXPECT_TRUE(data.SaveToPrefs(path.c_str(), four("WIND"), 2));
    EXPECT_TRUE(data.GetInt(1, number) && number == 7);
    EXPECT_TRUE(data.GetString(four("NAME"), text) && text == L"Zo\u00EB");
    EXPECT_TRUE(data.GetCustomData(3, nested) && nested.GetDouble(4, fraction) && fraction == -0.5);
    EXPECT_EQ(only_file(), golden);
}

TEST_F(Preferences, AVersionIsFoundExactlyOrAsTheNextOlderOne)
{
    for (unsigned version : { 4U, 0U, 9U, 6U })
        ASSERT_TRUE(save(5, version, version));
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

TEST_F(Preferences, AgreeWithAModelOverManySaves)
{
    std::mt19937 random(1);
    std::map<std::pair<unsigned, unsigned>, unsigned> model;
    for (unsigned number = 0; number < 200; ++number) {
        auto const id = static_cast<unsigned>(random() % 4);
        auto const version = static_cast<unsigned>(random() % 3);
        ASSERT_TRUE(save(id, version, number));
        model[{ id, version }] = number;
        for (auto const &[key, expected] : model)
            ASSERT_EQ(load(key.first, key.second), expected);
    }
}

TEST_F(Preferences, RecordsOfOthersAreCopiedWhateverIsInThem)
{
    std::vector<Record> const others = {
        { 1, 1, encode_opaque(magic, "not twenty bytes") },
        { 1, 2, encode_opaque(0x43555339, "a form of the future") },
        { 0xFFFFFFFF, 0, encode_opaque(0, std::string(200'000, '\xFF')) },
        { 1, 3, encode_opaque(0x43555354, std::string("\1\0\0\0\4\0\0\0\0\0\0\0abcd", 16)) },
    };
    write_file(path, encode_preferences(others));
    ASSERT_TRUE(save(2, 2, 3));
    CCustomData saved;
    fill_numbered(saved, 3);
    std::vector<Record> expected = others;
    expected.push_back({ 2, 2, to_stream(saved) });
    EXPECT_EQ(only_file(), encode_preferences(expected));

    EXPECT_TRUE(saved.LoadFromPrefs(path.c_str(), 1, 3)); // the old form
    EXPECT_EQ(saved.GetDataSize(1), 4U);
    EXPECT_FALSE(saved.LoadFromPrefs(path.c_str(), 1, 2));
    EXPECT_FALSE(saved.HasData()); // its bytes made no sense
}

TEST_F(Preferences, DamagedFilesAreReadAsFarAsPossibleAndNeverOverwritten)
{
    CCustomData data;
    data.SetInt(1, 1);
    std::vector<Record> const records
        = { { 1, 0, to_stream(data) }, { 2, 0, to_stream(data) }, { 3, 0, to_stream(data) } };
    std::string const whole = encode_preferences(records);
    std::size_t const size = (whole.size() - 4) / 3;

    std::vector<std::string> damaged = { whole + 'x', std::string(4, '\xFF') + whole.substr(4),
        '\2' + whole.substr(1), '\4' + whole.substr(1), std::string(500, '\xD8') };
    for (std::size_t cut = 1; cut < whole.size(); ++cut)
        damaged.push_back(whole.substr(0, cut));
    for (std::string const &bytes : damaged) {
        write_file(path, bytes);
        EXPECT_FALSE(data.SaveToPrefs(path.c_str(), 1, 0));
        EXPECT_EQ(only_file(), bytes);
        if (whole.starts_with(bytes)) {
            for (unsigned id = 1; id <= 3; ++id)
                EXPECT_EQ(CCustomData().LoadFromPrefs(path.c_str(), id, 0),
                    bytes.size() >= 4 + id * size);
        }
    }
    write_file(path, ""); // what a system leaves that stopped when the file was made
    EXPECT_TRUE(data.SaveToPrefs(path.c_str(), 1, 0));
    EXPECT_EQ(only_file(), encode_preferences({ records[0] }));
}

TEST_F(Preferences, HugeAndHostileFilesAreRefusedWithoutReadingThem)
{
    std::string const head = ArchiveEncoder().u32(1).u32(5).u32(0).u32(magic).bytes();
    for (unsigned total : { 0x7FFFFFFFU, 0xFFFFFFF0U, 0xFFFFFFFFU }) {
        std::string const bytes = head + ArchiveEncoder().u32(total).bytes();
        for (unsigned long long size : { 1'000ULL, 20ULL + total, 1ULL << 40 }) {
            write_file(path, bytes);
            std::error_code error; // a file system may not have files of this size
            std::filesystem::resize_file(path, size, error);
            EXPECT_FALSE(load(5, 0));
            EXPECT_FALSE(save(6, 0, 1));
        }
    }
    std::string many = ArchiveEncoder().u32(0x10000).bytes();
    for (unsigned id = 0; id < 0x10000; ++id)
        many += ArchiveEncoder().u32(id).u32(0).u32(magic).u32(0).bytes();
    write_file(path, many);
    EXPECT_FALSE(save(0x10000, 0, 1)); // one too many
    EXPECT_EQ(only_file(), many);
    EXPECT_TRUE(save(0xFFFF, 0, 1));
    EXPECT_EQ(load(0xFFFF, 0), 1U);
}

TEST_F(Preferences, WhatCannotBeOpenedIsFalseAndUntouched)
{
    EXPECT_FALSE(save_number(folder.GetFile(L"missing/App.prefs"), 1, 1, 1));
    EXPECT_FALSE(save_number(L"", 1, 1, 1));
    EXPECT_FALSE(load_number(L"", 1, 1));
    std::filesystem::create_directory(path);
    EXPECT_FALSE(save(1, 1, 1));
    EXPECT_FALSE(load(1, 1));
    std::filesystem::remove(path);

    ASSERT_TRUE(save(1, 1, 1));
    std::string const before = only_file();
    std::filesystem::create_directory(copy); // in the way of the copy
    EXPECT_FALSE(save(1, 1, 2));
    std::filesystem::remove(copy);
    EXPECT_EQ(only_file(), before);
    {
        CXFile holder(path.c_str(), CXFile::modeReadWrite | CXFile::shareExclusive);
        EXPECT_FALSE(save(1, 1, 2));
        EXPECT_FALSE(load(1, 1));
    }
    EXPECT_EQ(load(1, 1), 1U);
}

// What a writer leaves that stopped before its copy was committed: the beginning of a file, or one
// without its number of records, be its bytes on the disk or not.
TEST_F(Preferences, AnUncommittedCopyIsDiscarded)
{
    ASSERT_TRUE(save(1, 1, 5));
    ASSERT_TRUE(save(2, 1, 6));
    std::string const whole = only_file();
    std::string const records = whole.substr(4);
    std::vector<std::string> copies = { std::string(4, '\0'), std::string(whole.size(), '\0'),
        std::string(4, '\xFF') + records, std::string(4, '\0') + records, '\1' + whole.substr(1) };
    for (std::size_t cut = 0; cut < whole.size(); cut += 11)
        copies.push_back(whole.substr(0, cut));
    for (std::string const &bytes : copies) {
        write_file(path, whole);
        write_file(copy, bytes);
        EXPECT_EQ(load(1, 1), 5U);
        EXPECT_EQ(load(2, 1), 6U);
        EXPECT_TRUE(save(2, 1, 7));
        EXPECT_EQ(load(1, 1), 5U);
        EXPECT_EQ(load(2, 1), 7U);
        only_file();
    }
}

// What a writer leaves that stopped while it copied: any mixture in the target, or none.
TEST_F(Preferences, ACommittedCopyCountsWhateverTheTargetIs)
{
    ASSERT_TRUE(save(2, 1, 6));
    ASSERT_TRUE(save(1, 1, 5));
    std::string const before = only_file();
    ASSERT_TRUE(save(1, 1, 140));
    std::string const after = only_file();
    std::vector<std::optional<std::string>> targets
        = { std::nullopt, "", before, after, after.substr(0, 30), std::string(after.size(), '\0') };
    std::string mixture = after;
    for (std::size_t i = 0; i < mixture.size() && i < before.size(); i += 16)
        mixture.replace(i, 8, before.substr(i, 8));
    targets.emplace_back(mixture.substr(0, after.size()));
    targets.emplace_back(
        after.substr(0, 200) + before.substr(std::min<std::size_t>(200, before.size())));
    for (auto const &target : targets) {
        std::filesystem::remove(path);
        if (target)
            write_file(path, *target);
        write_file(copy, after);
        EXPECT_EQ(load(1, 1), 140U);
        EXPECT_EQ(load(2, 1), 6U);
        ASSERT_TRUE(save(3, 1, 9));
        EXPECT_EQ(load(1, 1), 140U);
        EXPECT_EQ(load(2, 1), 6U);
        EXPECT_EQ(load(3, 1), 9U);
        only_file();
    }
}

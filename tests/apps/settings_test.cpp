// SPDX-License-Identifier: MIT
// What scoutrix remembers, and what becomes of it when the file is damaged.
#include "apps/common/console.h"
#include "kortools/data/custom_data.h"
#include "tests/apps/host_support.h"
#include "tests/support/files.h"

namespace {

constexpr unsigned int host_record = 0x53435458;

class HostSettings : public Host {
protected:
    CXTString<wchar_t> GetFile() const { return kor_apps::from_utf8(m_settings); }

    std::string Get(std::string const &key)
    {
        EXPECT_EQ(Run({ "prefs", "get", key }), 0) << m_errors;
        return m_output.substr(0, m_output.find('\n'));
    }

    int CountDamaged() const
    {
        int count = 0;
        for (auto const &each :
            std::filesystem::directory_iterator(m_folder.GetPath() / "settings"))
            count += each.path().string().find(".damaged") != std::string::npos ? 1 : 0;
        return count;
    }
};

} // namespace

TEST_F(HostSettings, AreKeptAndUsed)
{
    Import({ "sphere.obj", "checker.bmp" });
    EXPECT_EQ(Run({ "prefs", "set", "sort", "name" }), 0) << m_errors;
    EXPECT_EQ(Run({ "prefs", "set", "depth", "2" }), 0) << m_errors;
    EXPECT_EQ(ListNames({}), "samples checker.bmp sphere.obj ");
    EXPECT_EQ(ListNames({ "--sort", "none", "--depth", "1" }), "samples ");
    EXPECT_EQ(Run({ "prefs", "set", "progress", "off" }), 0) << m_errors;
    EXPECT_EQ(Run({ "prefs" }), 0);
    EXPECT_NE(m_output.find("progress  off"), std::string::npos) << m_output;
    for (std::vector<std::string> const &bad :
        { std::vector<std::string> { "sort", "age" }, { "depth", "2x" }, { "timeout", "0" },
            { "progress", "maybe" }, { "recent", "101" }, { "colour", "on" } })
        EXPECT_EQ(Run({ "prefs", "set", bad[0], bad[1] }), 1) << m_output;
    EXPECT_EQ(Get("sort") + Get("depth") + Get("progress") + Get("recent"), "name2off10");
    EXPECT_EQ(Run({ "prefs", "remove", "sort", "progress" }), 0);
    EXPECT_EQ(Get("sort") + Get("depth") + Get("progress"), "none2on");
}

TEST_F(HostSettings, ThatAreDamagedAreKeptAside)
{
    EXPECT_EQ(Run({ "prefs", "set", "sort", "size" }), 0) << m_errors;
    std::string const good = kor_test::read_file(m_settings);
    int kept = 0;
    for (std::size_t size = 1; size < good.size(); size += 7) {
        kor_test::write_file(m_settings, good.substr(0, size));
        EXPECT_EQ(Get("sort"), "none") << size;
        EXPECT_NE(m_errors.find("damaged"), std::string::npos) << size << m_errors;
        EXPECT_EQ(CountDamaged(), ++kept);
        EXPECT_EQ(Run({ "prefs", "set", "sort", "size" }), 0) << m_errors;
        EXPECT_EQ(Get("sort"), "size");
    }
}

TEST_F(HostSettings, LeaveOthersRecordsAlone)
{
    std::filesystem::create_directory(m_folder.GetPath() / "settings");
    CCustomData other;
    other.SetInt(1, 42);
    EXPECT_TRUE(other.SaveToPrefs(GetFile(), 7, 1));
    EXPECT_TRUE(other.SaveToPrefs(GetFile(), host_record, 2)) << "a newer host's";
    EXPECT_EQ(Get("sort"), "none");
    EXPECT_EQ(m_errors, "") << "the file is good";
    EXPECT_EQ(Run({ "prefs", "set", "sort", "size" }), 0);
    EXPECT_EQ(Get("sort"), "size");
    for (auto const &[id, version] : { std::pair(7U, 1U), std::pair(host_record, 2U) }) {
        CCustomData read;
        EXPECT_TRUE(read.LoadFromPrefs(GetFile(), id, version));
        EXPECT_TRUE(read.IsEqual(other));
    }
}

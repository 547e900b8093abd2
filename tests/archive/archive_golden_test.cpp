// SPDX-License-Identifier: MIT
// Archives of earlier builds, in tests/data, and the example in the format's description.
// scripts/interchange runs the parts that write archives for another build, and check its.
#include "tests/archive/archive_samples.h"

#include "kortools/archive/mem_file.h"
#include "tests/support/child_process.h"
#include "tests/support/folders.h"
#include "tests/support/format_example.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

class Dot : public CXObject {
    KOR_DECLARE_CLASS(Dot)
public:
    void Serialize(CXArchive &archive) override { archive << m_value << m_next; }

    int m_value = 0;
    Dot *m_next = nullptr;
};
KOR_IMPLEMENT_CLASS(Dot, CXObject, 2)

static std::string get_path(std::string const &folder, kor_test::ArchiveSample const &sample)
{
    return folder + "/archive_" + sample.m_name + ".bin";
}

static int write_archives(std::vector<std::string> const &arguments)
{
    for (auto const &sample : kor_test::get_archive_samples())
        std::ofstream(get_path(arguments.at(0), sample), std::ios::binary)
            << kor_test::write_sample(sample);
    return 0;
}
static kor_test::ChildPart const s_write_archives("write", write_archives);

static int verify_archives(std::vector<std::string> const &arguments)
{
    std::string wrong;
    for (auto const &sample : kor_test::get_archive_samples()) {
        std::ifstream file(get_path(arguments.at(0), sample), std::ios::binary);
        std::string const bytes((std::istreambuf_iterator<char>(file)), {});
        std::string const result = kor_test::check_sample(sample, bytes);
        wrong += result.empty() ? "" : sample.m_name + (": " + result) + '\n';
    }
    std::fputs(wrong.c_str(), stderr);
    return wrong.empty() ? 0 : 1;
}
static kor_test::ChildPart const s_verify_archives("verify", verify_archives);

TEST(ArchiveGolden, EarlierArchivesReadTheSameAndAreWrittenTheSame)
{
    EXPECT_EQ(verify_archives({ kor_test::data_folder() }), 0);
}

TEST(ArchiveGolden, TheExampleOfTheDescriptionIsWhatIsWritten)
{
    std::string const described = kor_test::read_format_example("archive-format.md");
    ASSERT_EQ(described.size(), 35U);

    Dot first, second;
    first.m_value = 7;
    first.m_next = second.m_next = &second;
    second.m_value = 8;
    CXMemFile memory;
    CXArchive archive(&memory, CXArchive::store);
    archive << CXTString<wchar_t>(L"hi");
    archive.WriteCount(3);
    archive << &first << &second << nullptr;
    archive.Close();
    std::string const written(reinterpret_cast<char const *>(memory.GetBuffer()),
        static_cast<std::size_t>(memory.GetLength()));
    EXPECT_EQ(written, described);
}

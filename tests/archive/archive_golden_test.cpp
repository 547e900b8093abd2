// SPDX-License-Identifier: MIT
// Archives of earlier builds, in tests/data (written by `interchange write`), and the example in
// the format's description.
#include "tests/archive/archive_samples.h"

#include "kortools/archive/mem_file.h"
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

TEST(ArchiveGolden, EarlierArchivesReadTheSameAndAreWrittenTheSame)
{
    for (auto const &sample : kor_test::get_archive_samples()) {
        std::ifstream file(
            kor_test::data_folder() + "/archive_" + sample.m_name + ".bin", std::ios::binary);
        std::string const bytes((std::istreambuf_iterator<char>(file)), {});
        EXPECT_EQ(kor_test::check_sample(sample, bytes), "") << sample.m_name;
    }
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

// SPDX-License-Identifier: MIT
// The README shows the program that is built beside this test.

#include "tests/support/folders.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

std::string read_source(char const *name)
{
    std::ifstream file(kor_test::source_folder() + "/" + name, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

} // namespace

TEST(Readme, ShowsTheExampleThatIsBuilt)
{
    std::string const example = read_source("docs/example.cpp");
    std::size_t const licence = example.find('\n') + 1; // the first line is not shown
    ASSERT_GT(example.size(), licence);
    EXPECT_NE(read_source("README.md").find("```cpp\n" + example.substr(licence) + "```"),
        std::string::npos);
}

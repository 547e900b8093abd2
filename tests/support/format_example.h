// SPDX-License-Identifier: MIT
// The bytes of the example in the description of a file format, docs/<name>.
#pragma once

#include "tests/support/folders.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace kor_test {

// Below "## Example", lines of the form "0A  FF FF 02 00  comment": the offset, then bytes up to
// what is no byte.
inline std::string read_format_example(std::string const &name)
{
    std::ifstream file(source_folder() + "/docs/" + name);
    std::string described;
    bool in_example = false;
    for (std::string line; std::getline(file, line);) {
        in_example = in_example || line.rfind("## Example", 0) == 0;
        if (!in_example || line.size() < 6 || line.substr(2, 2) != "  ")
            continue;
        EXPECT_EQ(std::stoul(line, nullptr, 16), described.size()) << line;
        for (std::size_t at = 4; at + 2 <= line.size();) {
            if (line[at] == ' ' && line.substr(at, 3) != "   ") {
                ++at;
                continue;
            }
            if (line.substr(at, 2).find_first_not_of("0123456789ABCDEF") != std::string::npos)
                break;
            described += static_cast<char>(std::stoul(line.substr(at, 2), nullptr, 16));
            at += 2;
        }
    }
    return described;
}

} // namespace kor_test

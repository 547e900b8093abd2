// SPDX-License-Identifier: MIT
// Whole files, as bytes.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kor_test {

inline void write_file(std::filesystem::path const &path, std::string const &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// Empty when there is no such file.
inline std::string read_file(std::filesystem::path const &path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

} // namespace kor_test

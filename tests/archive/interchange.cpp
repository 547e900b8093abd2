// SPDX-License-Identifier: MIT
// Writes sample archives for another build of the library, or checks those that one has written:
//   interchange write FOLDER
//   interchange verify FOLDER
#include "tests/archive/archive_samples.h"

#include "kortools/archive/exception.h"
#include "kortools/archive/file.h"

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

void write_file(std::filesystem::path const &path, std::string const &bytes)
{
    CXFile file(path.wstring().c_str(), CXFile::modeCreate | CXFile::modeWrite);
    file.Write(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

std::string read_file(std::filesystem::path const &path)
{
    CXFile file(path.wstring().c_str(), CXFile::modeRead);
    std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
    bytes.resize(file.Read(bytes.data(), static_cast<unsigned int>(bytes.size())));
    return bytes;
}

int run(bool verify, std::filesystem::path const &folder)
{
    int failures = 0;
    for (auto const &sample : kor_test::get_archive_samples()) {
        auto const path = folder / (std::string("archive_") + sample.m_name + ".bin");
        if (!verify) {
            write_file(path, kor_test::write_sample(sample));
            continue;
        }
        std::string const wrong = kor_test::check_sample(sample, read_file(path));
        std::printf(
            "%-8s %s\n", sample.m_name, wrong.empty() ? "same bytes, same values" : wrong.c_str());
        failures += !wrong.empty();
    }
    return failures == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    std::string const command = argc == 3 ? argv[1] : "";
    if (command != "write" && command != "verify") {
        std::fputs("usage: interchange write|verify FOLDER\n", stderr);
        return 2;
    }
    try {
        return run(command == "verify", argv[2]);
    } catch (CXException *exception) {
        std::fprintf(stderr, "interchange: %ls\n", exception->GetErrorMessage().GetConstBuffer());
        exception->Delete();
        return 2;
    }
}

// SPDX-License-Identifier: MIT
#include "kortools/files/module_image.h"

#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <string>

using namespace kortools::files;

namespace {

ModuleImage read(std::string_view bytes)
{
    return read_module_image(MemoryImageSource(bytes));
}

// Built from the same source, which has a function of each kind.
constexpr char const *samples[] = { "elf_gnu", "elf_sysv", "elf_both", "pe" };

std::string load_sample(std::string const &name)
{
    return kor_test::read_file(KOR_SAMPLES "/" + name);
}

} // namespace

TEST(ModuleImage, TellsWhatALibraryExportsAndNeeds)
{
    for (char const *const name : samples) {
        SCOPED_TRACE(name);
        ModuleImage const image = read(load_sample(name));
        bool const is_elf = name[0] == 'e';
        EXPECT_EQ(image.format, is_elf ? ImageFormat::Elf : ImageFormat::Pe);
        EXPECT_EQ(describe_machine(image), is_elf ? "ELF, 64 bits, x86-64" : "PE, 64 bits, x86-64");
        EXPECT_TRUE(image.is_library);
        EXPECT_FALSE(image.is_damaged);
        EXPECT_TRUE(image.exports("BrantisGetPluginVersion"));
        EXPECT_TRUE(image.exports("InitTest"));
        EXPECT_EQ(image.exports("weak_function"), is_elf);
        for (char const *const absent : { "InitTes", "InitTest2", "needed_function", "some_data",
                 "hidden_function", "local_function", "" })
            EXPECT_FALSE(image.exports(absent)) << absent;
        std::string const needed = is_elf ? "libneeded.so.1" : "needed.dll";
        EXPECT_EQ(image.needed, std::vector<std::string> { needed });
    }
}

TEST(ModuleImage, TellsProgramsAndOtherMachinesFromTheHead)
{
    struct Row {
        std::string bytes;
        char const *machine;
        bool is_library;
    };
    std::string const rest(9, '\0');
    std::string const elf = "\x7F"
                            "ELF";
    std::string program = load_sample("elf_gnu");
    program[16] = 2;
    Row const rows[] = {
        { elf + "\1\1\1" + rest + std::string("\3\0\3\0", 4), "ELF, 32 bits, x86", true },
        { elf + "\2\2\1" + rest + std::string("\0\3\0\x16", 4), "ELF, 64 bits, S/390", true },
        { program, "ELF, 64 bits, x86-64", false },
    };
    for (Row const &row : rows) {
        ModuleImage const image = read(row.bytes);
        EXPECT_EQ(describe_machine(image), row.machine);
        EXPECT_EQ(image.is_library, row.is_library);
    }
    for (std::string const &bytes : { std::string(), elf, elf + "\3\1\1" + rest + "\3\0\3\0",
             std::string("MZ"), "MZ" + std::string(200, '\0'), std::string("#!/bin/sh\n") })
        EXPECT_EQ(read(bytes).format, ImageFormat::None);
}

TEST(ModuleImage, IsDamagedOrWholeWhereverTheFileIsCut)
{
    for (char const *const name : samples) {
        SCOPED_TRACE(name);
        std::string const bytes = load_sample(name);
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            ModuleImage const image = read(std::string_view(bytes).substr(0, size));
            if (image.format != ImageFormat::None && !image.is_damaged) {
                EXPECT_TRUE(image.exports("InitTest")) << size;
                EXPECT_EQ(image.needed.size(), 1U) << size;
            }
        }
    }
}

// Counts and positions of every size, each at every place.
TEST(ModuleImage, SurvivesAnyDamage)
{
    for (char const *const name : samples) {
        std::string bytes = load_sample(name);
        for (std::size_t at = 0; at + 4 <= bytes.size(); at += 2) {
            std::string const before = bytes.substr(at, 4);
            for (std::uint32_t const value : { 0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU }) {
                bytes.replace(at, 4, reinterpret_cast<char const *>(&value), 4);
                ModuleImage const image = read(bytes);
                EXPECT_LE(image.needed.size(), max_image_entries);
                EXPECT_FALSE(image.exports("absent"));
            }
            bytes.replace(at, 4, before);
        }
    }
}

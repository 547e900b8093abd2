// SPDX-License-Identifier: MIT
#include "kortools/platform/child_program.h"
#include "kortools/platform/program.h"
#include "kortools/platform/terminal.h"
#include "tests/support/child_process.h"

#include <gtest/gtest.h>

namespace {

using kortools::platform::run_program;

// What programs lose most easily on the way to another one.
std::vector<std::string> const s_arguments { "plain", "two words", "", "say \"hello\"", "--", "-x",
    "C:\\folder\\", "C:\\two words\\", "\\\"", "\\\\\"\\", "50%", "$HOME `x` 'y' ^&|<>", "*",
    "\xE2\x82\xAC \xF0\x9F\x98\x80" };

// 40 when all arguments have come as they were sent.
int compare_arguments(std::vector<std::string> const &arguments)
{
    std::vector<char const *> words;
    for (std::string const &argument : arguments)
        words.push_back(argument.c_str());
    auto received
        = kortools::platform::get_utf8_arguments(static_cast<int>(words.size()), words.data());
    received.erase(received.begin(), received.end() - static_cast<long long>(s_arguments.size()));
    return received == s_arguments ? 40 : 1;
}
kor_test::ChildPart const s_compare("compare", compare_arguments);
kor_test::ChildPart const s_die(
    "die", [](std::vector<std::string> const &) -> int { kor_test::kill_this_process(); });

TEST(ChildProgram, GetsItsArgumentsAsTheyAreAndReturnsItsExitCode)
{
    std::wstring const self = kortools::platform::get_program_path();
    std::vector<std::string> arguments { "--child-part", "compare" };
    arguments.insert(arguments.end(), s_arguments.begin(), s_arguments.end());
    EXPECT_EQ(run_program(self, arguments), 40);
    EXPECT_NE(run_program(self, { "--child-part", "die" }).value_or(0), 0);
    EXPECT_EQ(run_program(self + L".missing", {}), std::nullopt);
}

TEST(ChildProgram, IsFoundBesideTheRunningOne)
{
    using kortools::platform::find_program;
    EXPECT_EQ(find_program("child_program_test"), kortools::platform::get_program_path());
    EXPECT_EQ(find_program("there is no such program"), L"");
    EXPECT_EQ(find_program(""), L"") << "a folder is none";
}

} // namespace

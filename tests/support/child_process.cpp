// SPDX-License-Identifier: MIT
#include "tests/support/child_process.h"

#include <cstdlib>
#include <filesystem>
#include <map>

namespace kor_test {
namespace {

constexpr char const *child_option = "--child-part";

std::string s_program;

std::map<std::string, ChildFunction> &get_parts()
{
    static std::map<std::string, ChildFunction> s_parts;
    return s_parts;
}

} // namespace

ChildPart::ChildPart(char const *name, ChildFunction function)
{
    get_parts()[name] = function;
}

int run_child(std::string const &name, std::vector<std::string> const &arguments)
{
    std::string command = '"' + s_program + "\" " + child_option + ' ' + name;
    for (std::string const &argument : arguments)
        command += " \"" + argument + '"';
    // The command interpreter of Windows takes away the outermost quotes.
    if constexpr (std::filesystem::path::preferred_separator == '\\')
        command = '"' + command + '"';
    return std::system(command.c_str());
}

bool is_child(int argc, char **argv, int &result)
{
    s_program = std::filesystem::absolute(argv[0]).make_preferred().string();
    if (argc < 3 || argv[1] != std::string(child_option))
        return false;
    auto const part = get_parts().find(argv[2]);
    result = part == get_parts().end() ? 127 : part->second({ argv + 3, argv + argc });
    return true;
}

} // namespace kor_test

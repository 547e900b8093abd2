// SPDX-License-Identifier: MIT
#include "apps/common/command_line.h"

#include "apps/common/json_output.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace kor_apps {
namespace {

using Json = nlohmann::ordered_json;

// "TEXT:{a,b}", which is what a check against a list leaves, is split into the word and the list.
void describe_value(CLI::Option const &option, Json &json)
{
    std::string const type = option.get_type_name();
    json["value"] = type.substr(0, type.find_first_of(":{"));
    std::size_t const begin = type.find('{');
    std::size_t const end = type.find('}');
    if (begin == std::string::npos || end == std::string::npos)
        return;
    json["choices"] = CLI::detail::split(type.substr(begin + 1, end - begin - 1), ',');
}

Json describe_option(CLI::Option const &option)
{
    Json json;
    if (option.get_positional()) {
        json["name"] = option.get_name(true);
    } else {
        for (std::string const &name : option.get_snames())
            json["names"].push_back('-' + name);
        for (std::string const &name : option.get_lnames())
            json["names"].push_back("--" + name);
    }
    json["help"] = option.get_description();
    if (option.get_expected_max() > 0 && option.get_type_size() > 0)
        describe_value(option, json);
    json["required"] = option.get_required();
    json["repeated"] = option.get_expected_max() > option.get_expected_min();
    return json;
}

Json describe_command(CLI::App const &app)
{
    Json json { { "name", app.get_name() }, { "description", app.get_description() },
        { "arguments", Json::array() }, { "options", Json::array() },
        { "commands", Json::array() } };
    for (CLI::Option const *const option : app.get_options()) {
        if (!option->get_group().empty()) // else it is hidden
            json[option->get_positional() ? "arguments" : "options"].push_back(
                describe_option(*option));
    }
    for (CLI::App const *const command : app.get_subcommands(nullptr))
        json["commands"].push_back(describe_command(*command));
    return json;
}

std::string make_footer(ProgramFacts const &facts)
{
    std::string text = "Exit codes:\n";
    for (ExitMeaning const &each : facts.exits) {
        char line[16];
        std::snprintf(line, sizeof line, "  %-4d", each.code);
        text += line + std::string(each.meaning) + '\n';
    }
    text += "\nExamples:";
    for (Example const &each : facts.examples)
        text += std::string("\n  ") + each.command + "\n      " + each.does;
    return text;
}

} // namespace

std::string describe_program(CLI::App const &app, ProgramFacts const &facts)
{
    Json json = describe_command(app);
    json["version"] = KOR_APPS_VERSION;
    for (ExitMeaning const &each : facts.exits)
        json["exits"].push_back({ { "code", each.code }, { "meaning", each.meaning } });
    for (Example const &each : facts.examples)
        json["examples"].push_back({ { "command", each.command }, { "does", each.does } });
    return to_text(json);
}

void add_program_facts(CLI::App &app, ProgramFacts const &facts)
{
    app.footer(make_footer(facts));
    app.set_version_flag(
        "--version", app.get_name() + ' ' + KOR_APPS_VERSION, "Print the version and exit");
    auto const describe = [&app, facts] {
        std::string const text = describe_program(app, facts) + '\n';
        std::fwrite(text.data(), 1, text.size(), stdout);
        throw CLI::Success();
    };
    app.add_flag_callback("--describe", describe, "Print all of this as JSON and exit")->group("");
}

} // namespace kor_apps

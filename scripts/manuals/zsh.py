# SPDX-License-Identifier: MIT
"""Completion for zsh, by its function _arguments."""
import re


def quote(text):
    return "'" + text.replace("'", "'\\''") + "'"


def plain(text):
    """A text within an entry of _arguments or _describe."""
    return re.sub(r"([\[\]:\\])", r"\\\1", text)


def action(value):
    if value.choices:
        return "(" + " ".join(value.choices) + ")"
    return "_files -/" if value.is_folder else "_files" if value.is_file else " "


def option_entries(option):
    value = f":{plain(option.value.word)}:{action(option.value)}" if option.value else ""
    others = "" if option.repeated else "(" + " ".join(option.names) + ")"
    for name in option.names:
        first = "*" if option.repeated else others
        yield quote(f"{first}{name}[{plain(option.help)}]{value}")


def argument_entries(command):
    for each in command.arguments:
        place = "*" if each.repeated else ""
        optional = "" if each.required or each.repeated else ":"
        yield quote(f"{place}{optional}:{plain(each.name)}:{action(each.value)}")


def function(program, command):
    return "_" + "_".join(command.path).replace("-", "_")


def write_function(program, command):
    options = command.options + ([] if command is program else
                                 [each for each in program.options if "--help" not in each.names])
    entries = [entry for each in options for entry in option_entries(each)]
    lines = [f"{function(program, command)}()", "{"]
    if not command.commands:
        entries += argument_entries(command)
        return [*lines, "    _arguments -s \\", *(f"        {each} \\" for each in entries[:-1]),
                f"        {entries[-1]}", "}", ""]
    entries += ["'1:command:->command'", "'*::argument:->argument'"]
    lines += ["    local state line", "    _arguments -s -C \\",
              *(f"        {each} \\" for each in entries[:-1]), f"        {entries[-1]}",
              "    case $state in", "        command)", "            local -a commands=("]
    lines += [f"                {quote(each.name + ':' + plain(each.help))}"
              for each in command.commands]
    lines += ["            )", "            _describe command commands ;;", "        argument)",
              "            case $line[1] in"]
    lines += [f"                {each.name}) {function(program, each)} ;;"
              for each in command.commands]
    return [*lines, "            esac ;;", "    esac", "}", ""]


def write(program):
    lines = [f"#compdef {program.name}", "# SPDX-License-Identifier: MIT",
             "# Made by scripts/update-manuals.", ""]
    for command in program.walk():
        lines += write_function(program, command)
    return "\n".join([*lines, f'{function(program, program)} "$@"', ""])

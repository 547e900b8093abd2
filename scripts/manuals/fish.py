# SPDX-License-Identifier: MIT
"""Completion for fish."""


def quote(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def values(value):
    if value is None:
        return ""
    if value.choices:
        return " -x -a " + quote(" ".join(value.choices))
    if value.is_folder:
        return " -x -a '(__fish_complete_directories)'"
    return " -r -F" if value.is_file else " -x"


def condition(program, command):
    """True while the words so far lead to this command and to none below it."""
    below = " ".join(each.name for each in command.commands)
    inside = [f"__fish_seen_subcommand_from {name}" for name in command.path[1:]]
    if below and command is not program:
        inside.append(f"not __fish_seen_subcommand_from {below}")
    if command is program and below:
        inside.append("__fish_use_subcommand")
    return " -n " + quote("; and ".join(inside)) if inside else ""


def write(program):
    lines = ["# SPDX-License-Identifier: MIT", "# Made by scripts/update-manuals."]
    for command in program.walk():
        start = f"complete -c {program.name}"
        when = condition(program, command)
        for option in command.options:
            names = "".join(f" -l {name[2:]}" if name.startswith("--") else f" -s {name[1:]}"
                            for name in option.names)
            # The program's own may follow a command.
            lines.append(start + ("" if command is program else when) + names + values(option.value)
                         + " -d " + quote(option.help))
        for each in command.commands:
            lines.append(f"{start}{when} -f -a {each.name} -d {quote(each.help)}")
        value = next((each.value for each in command.arguments), None)
        if value and value.choices:
            lines.append(f"{start}{when}{values(value)}")
        elif command is not program and not (value and (value.is_file or value.is_folder)):
            lines.append(f"{start}{when} -f")
    return "\n".join(lines) + "\n"

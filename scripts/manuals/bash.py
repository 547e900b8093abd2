# SPDX-License-Identifier: MIT
"""Completion for bash: needs nothing but bash itself."""

HEAD = '''# SPDX-License-Identifier: MIT
# Made by scripts/update-manuals.
_{function}()
{{
    local word=${{COMP_WORDS[COMP_CWORD]}} before=${{COMP_WORDS[COMP_CWORD - 1]}} command='' each
    COMPREPLY=()
    for each in "${{COMP_WORDS[@]:1:COMP_CWORD-1}}"; do
        case "$command $each" in
'''


def reply(value):
    if value.choices:
        return f'mapfile -t COMPREPLY < <(compgen -W "{" ".join(value.choices)}" -- "$word")'
    if value.is_folder:
        return 'mapfile -t COMPREPLY < <(compgen -d -- "$word")'
    if value.is_file:
        return 'mapfile -t COMPREPLY < <(compgen -f -- "$word")'
    return ":"


def key(command):
    """What the variable `command` holds inside it: " prefs set"."""
    return "".join(" " + each for each in command.path[1:])


def options_of(program, command):
    """Its own and, as these may follow a command, the program's."""
    return command.options + ([] if command is program else
                              [each for each in program.options if each.names != ["-h", "--help"]])


def write(program):
    lines = [HEAD.format(function=program.name.replace("-", "_")).rstrip()]
    commands = [each for each in program.walk() if each is not program]
    lines += [f'            "{key(each)}") command="{key(each)}" ;;' for each in commands]
    if not commands:
        lines.append("            *) ;;")
    lines += ["        esac", "    done", '    case "$command:$before" in']
    for command in program.walk():
        for option in options_of(program, command):
            if option.value:
                names = "|".join(f'"{key(command)}:{name}"' for name in option.names)
                lines += [f"        {names})", f"            {reply(option.value)}",
                          "            return ;;"]
    lines += ["    esac", '    case "$command" in']
    for command in program.walk():
        names = [name for each in options_of(program, command) for name in each.names]
        words = [each.name for each in command.commands]
        value = next((each.value for each in command.arguments), None)
        lines += [f'        "{key(command)}")', '            if [[ $word == -* ]]; then',
                  f'                mapfile -t COMPREPLY < <(compgen -W "{" ".join(names)}" -- "$word")']
        if words:
            lines += ["            else",
                      f'                mapfile -t COMPREPLY < <(compgen -W "{" ".join(words)}" -- "$word")']
        elif value:
            lines += ["            else", f"                {reply(value)}"]
        lines += ["            fi ;;"]
    lines += ["    esac", "}",
              f"complete -o filenames -F _{program.name.replace('-', '_')} {program.name}", ""]
    return "\n".join(lines)

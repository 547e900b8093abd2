# SPDX-License-Identifier: MIT
"""A manual page in the macros of man(7)."""


def escape(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\n".join("\\&" + line if line[:1] in (".", "'") else line for line in text.splitlines())


def bold(text):
    return f"\\fB{escape(text)}\\fR"


def italic(text):
    return f"\\fI{escape(text)}\\fR"


def option_head(option):
    head = ", ".join(map(bold, option.names))
    return head + (" " + italic(option.value.word) if option.value else "")


def values(value):
    if not value or not value.choices:
        return ""
    return " One of " + ", ".join(map(bold, value.choices)) + "."


def sentence(text):
    return escape(text) + ("" if text.endswith((".", "!")) else ".")


def entries(command):
    lines = []
    for each in command.arguments:
        lines += [".TP", italic(each.name), sentence(each.help) + values(each.value)]
    for each in command.options:
        lines += [".TP", option_head(each), sentence(each.help) + values(each.value)]
    return lines


def synopsis(command):
    words = [bold(" ".join(command.path))]
    required = [each for each in command.options if each.required]
    if len(command.options) > len(required):
        words.append("[\\fIoptions\\fR]")
    words += [option_head(each).split(", ", 1)[-1] for each in required]
    if command.commands and len(command.path) == 1:
        words.append("\\fIcommand\\fR ...")
    elif command.commands:
        words.append("[" + "|".join(bold(each.name) for each in command.commands) + "]")
    return " ".join(words + [escape(each.synopsis()) for each in command.arguments])


def commands(program):
    lines = []
    for command in list(program.walk())[1:]:
        if not lines:
            lines.append(".SH COMMANDS")
        command.options = [each for each in command.options if "--help" not in each.names]
        lines += [".SS " + synopsis(command), sentence(command.help), *entries(command)]
    return lines


def write(program, others):
    summary, _, rest = program.help.partition(".")
    lines = ['.\\" SPDX-License-Identifier: MIT', '.\\" Made by scripts/update-manuals.',
             f'.TH {program.name.upper()} 1 "" "KorTools {program.version}" "User Commands"',
             ".SH NAME", f"{escape(program.name)} \\- {escape(' '.join(summary.split()))}",
             ".SH SYNOPSIS", synopsis(program),
             ".SH DESCRIPTION", escape(" ".join(program.help.split())),
             ".SH OPTIONS", *entries(program), *commands(program), ".SH EXIT STATUS"]
    for code, meaning in program.exits:
        lines += [".TP", bold(str(code)), sentence(meaning[0].upper() + meaning[1:])]
    lines.append(".SH EXAMPLES")
    for command, does in program.examples:
        lines += [".TP", bold(command), sentence(does[0].upper() + does[1:])]
    lines += [".SH SEE ALSO", ", ".join(f"\\fB{escape(name)}\\fR(1)" for name in others)]
    return "\n".join(lines) + "\n"

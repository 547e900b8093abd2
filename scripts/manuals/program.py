# SPDX-License-Identifier: MIT
"""What a program tells of itself with --describe, as the writers of manuals and completions use it."""
import json
import subprocess

FILES = {"FILE", "SCENE", "JSON"}
FOLDERS = {"FOLDER"}


class Value:
    """What an option or argument takes."""
    def __init__(self, word, choices):
        self.word = word
        self.choices = choices
        self.is_file = not choices and word in FILES
        self.is_folder = not choices and word in FOLDERS


class Option:
    def __init__(self, data):
        self.names = data["names"]
        self.help = data["help"]
        self.value = Value(data["value"], data.get("choices", [])) if "value" in data else None
        self.repeated = data["repeated"]
        self.required = data["required"]


class Argument:
    def __init__(self, data):
        self.name = data["name"]
        self.help = data["help"]
        self.value = Value(data["name"], data.get("choices", []))
        self.repeated = data["repeated"]
        self.required = data["required"]

    def synopsis(self):
        name = self.name + ("..." if self.repeated else "")
        return name if self.required else f"[{name}]"


class Command:
    def __init__(self, data, path=()):
        self.name = data["name"]
        self.path = (*path, self.name)
        self.help = data["description"]
        self.options = [Option(each) for each in data["options"]]
        self.arguments = [Argument(each) for each in data["arguments"]]
        self.commands = [Command(each, self.path) for each in data["commands"]]

    def walk(self):
        """The command and all below it."""
        yield self
        for each in self.commands:
            yield from each.walk()


class Program(Command):
    def __init__(self, text):
        data = json.loads(text)
        super().__init__(data)
        self.version = data["version"]
        self.exits = [(each["code"], each["meaning"]) for each in data["exits"]]
        self.examples = [(each["command"], each["does"]) for each in data["examples"]]


def ask(path):
    return Program(subprocess.run([path, "--describe"], check=True, capture_output=True,
                                  encoding="utf-8").stdout)

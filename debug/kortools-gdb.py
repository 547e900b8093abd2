# SPDX-License-Identifier: MIT
"""Shows the types of KorTools in GDB, by the views of kortools.natvis beside this file.

An expression of a view is evaluated by GDB itself. Names in it that are fields of the object become
$kor_this->name, variables of a list $kor_v_name, and calls of the view's own functions their values.
What cannot be evaluated or read is shown as ???. However damaged an object is, one command shows no
more than MAX_ITEMS items and takes no more than MAX_STEPS steps through lists.
"""
import os
import re
import xml.etree.ElementTree

import gdb
import gdb.printing

NATVIS = os.path.join(os.path.dirname(os.path.realpath(__file__)), "kortools.natvis")
NAMESPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
MAX_ITEMS = 2000
MAX_STEPS = 20000
MAX_TEXT = 100000  # characters, whatever `print elements` allows
UNREADABLE = "???"
TOKEN = re.compile(r"[A-Za-z_]\w*|\d[\w.]*|->|::|\s+|.")
PREFIX = {"s": '"', "sb": "", "s8": 'u8"', "su": 'L"', "sub": ""}


class Budget:
    """What the command that runs may still do; nested lists share it."""
    depth = items = steps = 0

    def __enter__(self):
        if Budget.depth == 0:
            Budget.items, Budget.steps = MAX_ITEMS, MAX_STEPS
        Budget.depth += 1

    def __exit__(self, *_):
        Budget.depth -= 1


def limit(count):
    """The count that GDB's own `print elements` leaves."""
    allowed = gdb.parameter("print elements") or MAX_TEXT
    return max(0, min(count, allowed, MAX_TEXT))


def show_text(pointer, length, form):
    """The characters at a pointer, all before a zero when there is no length."""
    unit = pointer.type.strip_typedefs().target().strip_typedefs().sizeof
    memory, start = gdb.selected_inferior(), int(pointer)
    shown = limit(MAX_TEXT if length is None else length)
    if length is None:
        units = []
        while len(units) < shown:
            one = bytes(memory.read_memory(start + len(units) * unit, unit))
            if not any(one):
                break
            units.append(one)
        data, cut = b"".join(units), len(units) == shown
    else:
        data, cut = bytes(memory.read_memory(start, shown * unit)) if shown else b"", shown < length
    encoding = {1: "utf-8", 2: "utf-16-le", 4: "utf-32-le"}[unit]
    text = data.decode(encoding, "backslashreplace")
    if PREFIX[form]:
        text = "".join(escape(character) for character in text)
        text = PREFIX[form] + text + '"'
    text = text.encode(gdb.host_charset(), "backslashreplace").decode(gdb.host_charset())
    return text + ("..." if cut else "")


def escape(character):
    if character == '"':
        return '\\"'
    if character.isprintable():
        return character
    return {"\n": "\\n", "\t": "\\t", "\r": "\\r", "\0": "\\0"}.get(
        character, f"\\x{ord(character):02x}")


def split_format(text):
    """`expression,[size]form` => its three parts; size and form may be missing."""
    match = re.match(r"(.*),\s*(?:\[([^\]]*)\])?(s|su|sb|sub|s8|d|x|en)?$", text.strip(), re.S)
    return match.groups() if match and (match[2] or match[3]) else (text, None, None)


def field_names(type_):
    names = set()
    for field in type_.fields():
        if field.is_base_class or not field.name:  # unnamed: of a union
            names |= field_names(field.type.strip_typedefs())
        else:
            names.add(field.name)
    return names


class Scope:
    """An object, with what the expressions of its view can name."""

    def __init__(self, value, view):
        self.value = value
        self.variables = {}
        self.fields = field_names(value.type.strip_typedefs())
        self.functions = {node.get("Name"): node.get("Expression")
                          for node in view.findall(NAMESPACE + "Intrinsic")}
        self.results = {}

    def call(self, name):
        if name not in self.results:
            self.results[name] = int(self.evaluate(self.functions[name]))
        return f"({self.results[name]})"

    def translate(self, expression):
        result, before, skip = "", "", 0
        for token in TOKEN.findall(expression):
            if skip:  # the parentheses of a call
                skip -= 1
                continue
            if before in (".", "->", "::"):
                result += token
            elif token in self.functions:
                result += self.call(token)
                skip = 2
            elif token in self.variables:
                result += "$kor_v_" + token
            elif token == "this":
                result += "$kor_this"
            elif token in self.fields:
                result += ("$kor_this->" if self.value.address else "$kor_this.") + token
            else:
                result += token
            before = token if not token.isspace() else before
        return result

    def evaluate(self, expression):
        translated = self.translate(expression)
        gdb.set_convenience_variable("kor_this", self.value.address or self.value)
        for name, value in self.variables.items():
            if "$kor_v_" + name in translated:
                gdb.set_convenience_variable("kor_v_" + name, value)
        return gdb.parse_and_eval(translated)

    def holds(self, node):
        condition = node.get("Condition")
        return condition is None or bool(self.evaluate(condition))

    def assign(self, statement):
        name, expression = statement.split("=", 1)
        self.variables[name.strip()] = self.evaluate(expression)

    def child(self, text):
        """The value of an item: text, when it has a format."""
        expression, size, form = split_format(text)
        value = self.evaluate(expression)
        if size is None and form is None:
            return value
        count = None if size is None else int(self.evaluate(size))
        if form in PREFIX:
            return show_text(value, count, form)
        if count is not None:
            shown = limit(count)
            row = value.dereference().cast(value.type.target().unqualified().array(shown - 1))
            text = row.format_string(format=form, repeat_threshold=0)
            return text + ("..." if shown < count else "")
        if form == "d":
            return str(int(value))
        return str(value).rsplit("::", 1)[-1] if form == "en" else value.format_string(format=form)

    def summary_of(self, text):
        try:
            value = self.child(text)
            if isinstance(value, str):
                return value
            printer = lookup(value)
            return printer.to_string() if printer else value.format_string()
        except (gdb.error, OverflowError):
            return UNREADABLE

    def fill_in(self, text):
        """Replaces each {expression} of a text; {{ and }} are braces."""
        parts = re.split(r"(\{\{|\}\}|\{[^{}]*\})", text)
        return "".join(part[0] if part in ("{{", "}}") else
                       self.summary_of(part[1:-1]) if part.startswith("{") else part
                       for part in parts)


class List:
    """Runs the statements of a CustomListItems element."""

    class End(Exception):
        """A break out of the list."""

    def __init__(self, scope, node):
        self.scope = scope
        for variable in node.findall(NAMESPACE + "Variable"):
            scope.variables[variable.get("Name")] = scope.evaluate(variable.get("InitialValue"))
        self.body = [child for child in node if not child.tag.endswith("}Variable")]

    def items(self):
        try:
            yield from self.run(self.body)
        except List.End:
            pass

    def run(self, nodes):
        chosen = False  # one of the alternatives so far
        for node in nodes:
            kind = node.tag.removeprefix(NAMESPACE)
            if kind == "Exec":
                self.scope.assign(node.text)
            elif kind == "Item":
                yield self.scope.fill_in(node.get("Name")), node.text
            elif kind == "Break":
                if self.scope.holds(node):
                    raise List.End
            elif kind == "Loop":
                while self.scope.holds(node):
                    Budget.steps -= 1
                    if Budget.steps < 0:
                        raise List.End
                    yield from self.run(list(node))
            elif kind == "If" or not chosen:
                chosen = self.scope.holds(node)
                if chosen:
                    yield from self.run(list(node))


class View:
    """The printer of an object."""

    def __init__(self, value, node):
        self.node = node
        self.scope = Scope(value, node)
        expand = node.find(NAMESPACE + "Expand")
        if expand is not None:
            self.expand = list(expand)
            self.children = self.list_children

    def to_string(self):
        for node in self.node.findall(NAMESPACE + "DisplayString"):
            try:
                if self.scope.holds(node):
                    return self.scope.fill_in(node.text)
            except gdb.error:
                return UNREADABLE
        return UNREADABLE

    def display_hint(self):
        names = [node.tag for node in getattr(self, "expand", [])]
        return "array" if names == [NAMESPACE + "ArrayItems"] else None

    def list_children(self):
        with Budget():
            for node in self.expand:
                try:
                    if not self.scope.holds(node):
                        continue
                    for item in self.items_of(node):
                        Budget.items -= 1
                        if Budget.items < 0:
                            return
                        yield item
                except gdb.error:
                    yield node.get("Name", "items"), UNREADABLE

    def items_of(self, node):
        kind = node.tag.removeprefix(NAMESPACE)
        if kind == "Item":
            yield node.get("Name"), self.scope.child(node.text)
        elif kind == "ArrayItems":
            first = self.scope.evaluate(node.find(NAMESPACE + "ValuePointer").text)
            for index in range(int(self.scope.evaluate(node.find(NAMESPACE + "Size").text))):
                yield f"[{index}]", (first + index).dereference()
        elif kind == "CustomListItems":
            for name, text in List(self.scope, node).items():
                value = self.scope.child(text)
                if not isinstance(value, str) and value.type.code == gdb.TYPE_CODE_STRUCT:
                    value = value.cast(value.dynamic_type)
                yield name, value
            if Budget.steps < 0:
                yield "more", "not looked for"


def read_views():
    views = []
    for node in xml.etree.ElementTree.parse(NATVIS).getroot().findall(NAMESPACE + "Type"):
        pattern = re.escape(node.get("Name")).replace(r"\*", ".*")
        views.append((re.compile(pattern), node))
    return views


VIEWS = read_views()


def view_of(value, type_, inherited=False):
    """The view of the type or of its first base that has one, with the object as that type."""
    for pattern, node in VIEWS:
        if pattern.fullmatch(type_.tag or "") and not (inherited
                                                       and node.get("Inheritable") == "false"):
            return View(value.cast(type_) if inherited else value, node)
    for field in type_.fields():
        if field.is_base_class:
            found = view_of(value, field.type.strip_typedefs().unqualified(), True)
            if found:
                return found
    return None


def lookup(value):
    type_ = value.type.strip_typedefs()
    if type_.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
        value = value.referenced_value()
        type_ = value.type.strip_typedefs()
    if type_.code != gdb.TYPE_CODE_STRUCT or not type_.fields():
        return None  # without fields the program has only a declaration of it
    return view_of(value, type_.unqualified())


lookup.name, lookup.enabled = "kortools", True
gdb.printing.register_pretty_printer(gdb.current_objfile(), lookup, replace=True)

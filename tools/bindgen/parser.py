"""Parser of the interface description language.

The language is line based. Top-level lines declare the module and what the
binding knows; indented lines below `enum` and `class` declare their contents:

    module orva_swig
    source sdk/win/interface_swig_wrap
    include "orva/sdk.h"
    type std::vector<Orva::Rtc::VolumeInfo>        # a descriptor without a class
    alias std::vector< Orva::Rtc::Screen >::size_type = size_t
    text char std::string                          # native text buffer types

    enum Orva::Rtc::VideoSource                    # `enum class` exports <Enum>_<name>
        CameraSource = 0

    class CameraList [= <C++ type>] [as "<written name>"] [: <Base>] [abstract] [by-count]
        new()
        new(Orva::Rtc::CameraList const & other)
        holds orva::binding::listHolds(*self, element)
        int Size()
        Orva::Rtc::Camera * Get(int index) element
        static Orva::Rtc::OrvaEngine * SDK() borrowed
        std::string toString() const call orva::diagnostics::text(*self)
        field x int
        native setCallback orva::facade::setCallback ts "(handler: EventHandler): void"
        dispatcher Initialize

Parameters are written types, optionally followed by a name and the words
`optional` (script may leave it out; its value is the C++ declaration's
default, which the description does not repeat) and `disown`. Member attributes after the parameter list: `const`, an
ownership policy (model.Ownership: `owned`, `borrowed`, `element`, `array`),
and `call <C++ expression>` (last), where `self` is the receiver and `arg2`,
`arg3`, ... the converted arguments. Whatever a native call throws reaches
script as an Error with the exception's text.

`by-count` makes the class's constructor overloads be chosen by argument
count alone, each throwing its own messages. `holds` gives the C++ test of
whether `*self` still holds `element`, a pointer one of its `element`
members returned.
"""
from __future__ import annotations

import re
from typing import Optional

from . import names
from .model import Alias, Class, Description, Dispatcher, Enum, Field, Function, Native, Ownership, Param, TypeDecl


class DescriptionError(Exception):
    def __init__(self, path: str, line: int, message: str):
        super().__init__(f"{path}:{line}: {message}")


_TYPE_WORDS = {
    "const", "int", "long", "char", "short", "double", "float", "bool", "void", "unsigned", "signed",
    "int8_t", "int16_t", "int32_t", "int64_t", "uint8_t", "uint16_t", "uint32_t", "uint64_t", "size_t",
}
_NAME = re.compile(r"^[a-z_][A-Za-z0-9_]*$")
# Ownership policies a description may write; `part` belongs to fields.
_OWNERSHIP = {policy.value: policy for policy in Ownership if policy is not Ownership.PART}


def _strip_comment(line: str) -> str:
    quoted = False
    for index, char in enumerate(line):
        if char == '"':
            quoted = not quoted
        elif char == "#" and not quoted:
            return line[:index]
    return line


def _split_top(text: str, separator: str = ",") -> list[str]:
    """Splits at separators outside angle brackets and parentheses."""
    parts, depth, current = [], 0, ""
    for char in text:
        if char in "<(":
            depth += 1
        elif char in ">)":
            depth -= 1
        if char == separator and depth == 0:
            parts.append(current)
            current = ""
        else:
            current += char
    if current.strip():
        parts.append(current)
    return [part.strip() for part in parts]


def _normalize(written: str) -> str:
    return " ".join(written.split())


def parse_param(text: str) -> Param:
    """One parameter; ValueError when it is written with a default value."""
    tokens = text.split()
    disown = bool(tokens) and tokens[-1] == "disown"
    if disown:
        tokens = tokens[:-1]
    optional = bool(tokens) and tokens[-1] == "optional"
    if optional:
        tokens = tokens[:-1]
    if "=" in tokens or any("=" in token for token in tokens):
        raise ValueError(f"'{text.strip()}': write `optional`, the default value is the C++ declaration's")
    name = None
    if len(tokens) >= 2 and _NAME.match(tokens[-1]) and tokens[-1] not in _TYPE_WORDS:
        name = tokens[-1]
        tokens = tokens[:-1]
    return Param(written=_normalize(" ".join(tokens)), name=name, optional=optional, disown=disown)


def _matching_paren(text: str, open_index: int) -> int:
    depth = 0
    for index in range(open_index, len(text)):
        if text[index] == "(":
            depth += 1
        elif text[index] == ")":
            depth -= 1
            if depth == 0:
                return index
    return -1


class Parser:
    def __init__(self, path: str):
        self.path = path
        self.description = Description()
        self.container: Optional[object] = None

    def fail(self, line: int, message: str):
        raise DescriptionError(self.path, line, message)

    def parse(self, text: str) -> Description:
        for number, raw in enumerate(text.splitlines(), start=1):
            line = _strip_comment(raw).rstrip()
            if not line.strip():
                continue
            if line[0].isspace():
                if self.container is None:
                    self.fail(number, "indented line outside an enum or class")
                self.member(number, line.strip())
            else:
                self.top(number, line)
        return self.description

    def top(self, number: int, line: int):
        keyword, _, rest = line.partition(" ")
        rest = rest.strip()
        d = self.description
        self.container = None
        if keyword == "module":
            d.module = rest
        elif keyword == "source":
            d.source = rest
        elif keyword == "include":
            d.includes.append(rest.strip('"'))
        elif keyword == "type":
            d.types.append(TypeDecl(cpp=_normalize(rest), line=number))
        elif keyword == "text":
            parts = rest.split(None, 1)
            if len(parts) != 2:
                self.fail(number, "text takes the char type and the string type")
            d.char_type, d.string_type = parts
        elif keyword == "alias":
            written, equals, target = rest.partition("=")
            if not equals:
                self.fail(number, "alias needs '= target'")
            d.aliases.append(Alias(written=_normalize(written), target=_normalize(target), line=number))
        elif keyword == "enum":
            scoped = rest.startswith("class ")
            name = rest[len("class "):] if scoped else rest
            self.container = Enum(cpp=name.strip(), scoped=scoped, values=[], line=number)
            d.enums.append(self.container)
        elif keyword == "class":
            self.container = self.class_header(number, rest)
            d.classes.append(self.container)
        else:
            self.fail(number, f"unknown declaration '{keyword}'")

    def class_header(self, number: int, rest: str) -> Class:
        """`Name [= C++ type] [as "written"] [ : Base] [abstract] [by-count]`, read from the end."""
        by_count = rest.endswith(" by-count")
        if by_count:
            rest = rest[: -len(" by-count")]
        abstract = rest.endswith(" abstract")
        if abstract:
            rest = rest[: -len(" abstract")]
        base = None
        match = re.search(r"\s:\s*(\w+)$", rest)
        if match:
            base, rest = match[1], rest[: match.start()]
        written = None
        match = re.search(r'\s+as\s+"([^"]+)"$', rest)
        if match:
            written, rest = match[1], rest[: match.start()]
        name, _, cpp = rest.partition("=")
        name = name.strip()
        if not re.match(r"^\w+$", name):
            self.fail(number, f"bad class name '{name}'")
        cpp = _normalize(cpp) if cpp.strip() else f"Orva::Rtc::{name}"
        return Class(name=name, cpp=cpp, written=written or names.written_name(cpp), base=base, abstract=abstract,
                     line=number, by_count=by_count)

    def member(self, number: int, line: str):
        if isinstance(self.container, Enum):
            match = re.match(r"^(\w+)\s*=\s*(-?\d+)$", line)
            if not match:
                self.fail(number, f"bad enum value '{line}'")
            self.container.values.append((match[1], int(match[2])))
            return
        cls: Class = self.container
        if line.startswith("field "):
            parts = line.split(None, 2)
            if len(parts) != 3:
                self.fail(number, "field takes a name and a type")
            cls.members.append(Field(name=parts[1], written=_normalize(parts[2]), line=number))
        elif line.startswith("native "):
            match = re.match(r'^native\s+(static\s+)?(\w+)\s+([\w:]+)\s+ts\s+"(.*)"$', line)
            if not match:
                self.fail(number, f"bad native member '{line}'")
            cls.members.append(Native(name=match[2], callback=match[3], ts=match[4], static=bool(match[1]),
                                      line=number))
        elif line.startswith("holds "):
            if cls.holds is not None:
                self.fail(number, "a class has one 'holds'")
            cls.holds = line[len("holds "):].strip()
        elif line.startswith("dispatcher "):
            cls.members.append(Dispatcher(name=line.split()[1], line=number))
        else:
            cls.members.append(self.function(number, line))

    def function(self, number: int, line: str) -> Function:
        kind = "method"
        if line.startswith("static "):
            kind = "static"
            line = line[len("static "):]
        open_index = line.find("(")
        close_index = _matching_paren(line, open_index) if open_index >= 0 else -1
        if close_index < 0:
            self.fail(number, f"bad member '{line}'")
        head, params, tail = line[:open_index].strip(), line[open_index + 1:close_index], line[close_index + 1:]
        if head == "new":
            kind, name, returns = "new", "", ""
        else:
            match = re.match(r"^(?P<ret>.+?)\s*\b(?P<name>[A-Za-z_]\w*)$", head)
            if not match:
                self.fail(number, f"bad member head '{head}'")
            name, returns = match["name"], _normalize(match["ret"])
        try:
            parsed = [parse_param(part) for part in _split_top(params)]
        except ValueError as error:
            self.fail(number, str(error))
        function = Function(kind=kind, name=name, returns=returns, params=parsed, line=number)
        tail = tail.strip()
        if " call " in f" {tail} ":
            tail, _, expression = f" {tail} ".partition(" call ")
            function.call = expression.strip()
        for word in tail.split():
            if word == "const":
                function.const = True
            elif word in _OWNERSHIP and function.ownership is None:
                function.ownership = _OWNERSHIP[word]
            else:
                self.fail(number, f"unknown attribute '{word}'")
        return function


def parse(path: str) -> Description:
    with open(path, encoding="utf-8") as handle:
        return Parser(path).parse(handle.read())

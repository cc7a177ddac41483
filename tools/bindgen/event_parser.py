"""Parser of the event description (bridge/events.desc).

The language is line based; `#` starts a comment. A top-level line opens a
block, the indented lines below it fill the block:

    event OnSessionStateChanged -- a session changed state
        int1 state: MediaSessionState -- the session's new state
        str1 session -- the session's name
    event OnNetworkStats -> network-stats -- statistics, periodically

    payload network-stats NetworkStatsPayload -- the statistics
        OutBps: number -- bits per second sent
        remoteStatistics?: RemoteStatisticsPayload[] -- absent when empty
    object RemoteStatisticsPayload -- one remote user
        userId: string -- the user
        [detail: string]: string | number -- any further keys

Every line ends in ` -- ` and its meaning. An argument without a type is a
number (int slots) or a string (str slots). Each `payload` block declares a
payload kind that the bridge builds with its own code; `object` blocks are
the other script objects the events and their options hold.
"""
from __future__ import annotations

import re
from dataclasses import dataclass, field
from typing import Optional

SLOTS = ("int1", "int2", "int3", "str1", "str2")
_NAME = re.compile(r"^[A-Za-z_][A-Za-z0-9_]*$")
_KIND = re.compile(r"^[a-z]+(-[a-z]+)*$")
_ARGUMENT = re.compile(r"^(\w+)\s+(\w+)\s*(?::\s*(.+))?$")
_KEY = re.compile(r"^(\w+)(\?)?\s*:\s*(.+)$")
_REST = re.compile(r"^\[(\w+):\s*string\]\s*:\s*(.+)$")


class EventDescriptionError(Exception):
    def __init__(self, path: str, line: int, message: str):
        super().__init__(f"{path}:{line}: {message}")


@dataclass
class Argument:
    slot: str  # one of SLOTS
    name: str
    ts: str  # TypeScript type
    meaning: str


@dataclass
class Event:
    name: str
    meaning: str
    line: int
    payload: Optional[str] = None  # a payload kind
    arguments: list[Argument] = field(default_factory=list)

    def argument(self, slot: str) -> Optional[Argument]:
        return next((a for a in self.arguments if a.slot == slot), None)


@dataclass
class Key:
    name: str
    ts: str
    meaning: str
    optional: bool = False


@dataclass
class Shape:
    """A script object: a payload kind's object, or another one it holds."""
    name: str  # the TypeScript interface
    meaning: str
    line: int
    kind: Optional[str] = None  # the payload kind, for `payload` blocks
    keys: list[Key] = field(default_factory=list)
    rest: Optional[Key] = None  # any further keys: [name: string]: type


@dataclass
class Events:
    source: str
    events: list[Event]
    shapes: list[Shape]

    def payloads(self) -> list[Shape]:
        return [shape for shape in self.shapes if shape.kind]

    def payload(self, kind: str) -> Shape:
        return next(shape for shape in self.shapes if shape.kind == kind)


class _Parser:
    def __init__(self, path: str):
        self.path = path
        self.events: list[Event] = []
        self.shapes: list[Shape] = []
        self.block = None

    def fail(self, line: int, message: str):
        raise EventDescriptionError(self.path, line, message)

    def meaning(self, number: int, line: str) -> tuple[str, str]:
        head, separator, meaning = line.partition(" -- ")
        if not separator or not meaning.strip():
            self.fail(number, f"'{line.strip()}': end the line with ' -- ' and its meaning")
        return head.strip(), meaning.strip()

    def parse(self, text: str) -> Events:
        for number, raw in enumerate(text.splitlines(), start=1):
            line = raw.split("#", 1)[0].rstrip()
            if not line.strip():
                continue
            if line[0].isspace():
                self.inner(number, line.strip())
            else:
                self.top(number, line)
        self.check()
        return Events(self.path, self.events, self.shapes)

    def top(self, number: int, line: str):
        head, meaning = self.meaning(number, line)
        words = head.split() or [""]
        if words[0] == "event" and (len(words) == 2 or (len(words) == 4 and words[2] == "->")):
            self.block = Event(words[1], meaning, number, words[3] if len(words) == 4 else None)
            self.events.append(self.block)
        elif words[0] == "payload" and len(words) == 3:
            if not _KIND.match(words[1]):
                self.fail(number, f"payload kind '{words[1]}': write it in lower case words joined by '-'")
            self.block = Shape(words[2], meaning, number, kind=words[1])
            self.shapes.append(self.block)
        elif words[0] == "object" and len(words) == 2:
            self.block = Shape(words[1], meaning, number)
            self.shapes.append(self.block)
        else:
            self.fail(number, f"'{head}': expected 'event <name> [-> <kind>]', 'payload <kind> <Interface>' "
                              "or 'object <Interface>'")
        if not _NAME.match(self.block.name):
            self.fail(number, f"'{self.block.name}' is not a name")

    def inner(self, number: int, line: str):
        if self.block is None:
            self.fail(number, "indented line outside a block")
        head, meaning = self.meaning(number, line)
        if isinstance(self.block, Event):
            self.argument(number, head, meaning)
        else:
            self.key(number, head, meaning)

    def argument(self, number: int, head: str, meaning: str):
        match = _ARGUMENT.match(head)
        if not match or match.group(1) not in SLOTS:
            self.fail(number, f"'{head}': expected '<{'|'.join(SLOTS)}> <name>[: <type>]'")
        slot, name, ts = match.groups()
        if self.block.argument(slot):
            self.fail(number, f"{slot} of {self.block.name} is described twice")
        if name in SLOTS or name in ("name", "payload") or any(a.name == name for a in self.block.arguments):
            self.fail(number, f"argument name '{name}' of {self.block.name} is taken")
        self.block.arguments.append(Argument(slot, name, ts or ("number" if slot.startswith("int") else "string"),
                                             meaning))

    def key(self, number: int, head: str, meaning: str):
        rest = _REST.match(head)
        if rest:
            self.block.rest = Key(rest.group(1), rest.group(2).strip(), meaning)
            return
        match = _KEY.match(head)
        if not match:
            self.fail(number, f"'{head}': expected '<key>[?]: <type>' or '[<name>: string]: <type>'")
        if any(key.name == match.group(1) for key in self.block.keys):
            self.fail(number, f"key '{match.group(1)}' of {self.block.name} is described twice")
        self.block.keys.append(Key(match.group(1), match.group(3).strip(), meaning, optional=bool(match.group(2))))

    def check(self):
        constants: set[str] = set()
        for event in self.events:
            if constant(event.name) in constants:
                self.fail(event.line, f"event {event.name} is described twice, or named like another but for case")
            constants.add(constant(event.name))
        kinds = {shape.kind for shape in self.shapes if shape.kind}
        for event in self.events:
            if event.payload and event.payload not in kinds:
                self.fail(event.line, f"{event.name}: unknown payload kind '{event.payload}'")
            if event.payload and event.arguments:
                self.fail(event.line, f"{event.name}: an event with a payload carries no other arguments")
        names: set[str] = set()
        for shape in self.shapes:
            if shape.name in names or (shape.kind and sum(s.kind == shape.kind for s in self.shapes) > 1):
                self.fail(shape.line, f"{shape.kind or shape.name} is described twice")
            names.add(shape.name)
            if not shape.keys:
                self.fail(shape.line, f"{shape.name} has no keys")
            if shape.kind and not any(event.payload == shape.kind for event in self.events):
                self.fail(shape.line, f"payload kind '{shape.kind}' is carried by no event")


def constant(name: str) -> str:
    """An event's or a payload kind's C++ enumerator: OnAudioEvent -> kOnAudioEvent, user-volumes -> kUserVolumes."""
    return "k" + "".join(word[:1].upper() + word[1:] for word in name.split("-"))


def parse(path: str) -> Events:
    with open(path, encoding="utf-8") as handle:
        return parse_text(handle.read(), path)


def parse_text(text: str, path: str) -> Events:
    return _Parser(path).parse(text)

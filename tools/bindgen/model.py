"""Typed model of an interface description.

The parser fills these records from the text; the linker resolves every
written type to a `TypeRef` and checks the whole; the renderers only read.
"""
from __future__ import annotations

from dataclasses import dataclass, field
from enum import Enum as _Enum
from typing import Optional


class Ownership(_Enum):
    """What a proxy returned by a member may do with its native object, and
    what keeps that object alive. Written after a member's parameter list;
    a member that names none gets its result's default (`default_for`)."""

    OWNED = "owned"
    """The proxy owns the object and deletes it when it is collected: every
    result by value (copied into a new heap object), and pointer results the
    native side hands over."""

    BORROWED = "borrowed"
    """Someone else (the engine) keeps the object alive for as long as script
    may use it; the proxy never deletes it. The default of pointer and
    reference results."""

    ELEMENT = "element"
    """One of the receiver's elements. The proxy keeps the receiver's proxy
    alive, and turns into a null proxy once the receiver no longer holds the
    element (its storage moved, or the element was removed): the receiver's
    class says how to tell, with `holds`."""

    PART = "part"
    """A record embedded in the receiver (what field getters return). The
    proxy keeps the receiver's proxy alive and is valid while the receiver
    is. Not written in descriptions: fields imply it."""

    ARRAY = "array"
    """A vector result: a script array of owned copies of its elements."""

    @staticmethod
    def default_for(by_value: bool) -> "Ownership":
        return Ownership.OWNED if by_value else Ownership.BORROWED


@dataclass
class Enum:
    """An enumeration: its C++ name and its constants in order."""
    cpp: str                 # e.g. "Orva::Rtc::VideoSource"
    scoped: bool             # `enum class`: constants are exported as <Enum>_<name>
    values: list[tuple[str, int]]
    line: int

    @property
    def short(self) -> str:
        return self.cpp.split("::")[-1]

    def exported(self, name: str) -> str:
        return f"{self.short}_{name}" if self.scoped else name

    def cpp_value(self, name: str) -> str:
        """The C++ expression naming constant `name`."""
        if self.scoped:
            return f"{self.cpp}::{name}"
        namespace = self.cpp.rsplit("::", 1)[0] if "::" in self.cpp else ""
        return f"{namespace}::{name}" if namespace else name


@dataclass
class TypeDecl:
    """A native type that crosses the boundary without a script class."""
    cpp: str
    line: int


@dataclass
class Alias:
    """A written type name that stands for another (e.g. a container's value_type)."""
    written: str
    target: str
    line: int


@dataclass
class Param:
    written: str             # declared type as the interface writes it
    name: Optional[str]
    optional: bool           # script may leave it out: the member gets a signature without it
    disown: bool             # the native side takes the object over
    ref: Optional["TypeRef"] = None


@dataclass
class Function:
    """A constructor, method or static function, one signature."""
    kind: str                # "new" | "method" | "static"
    name: str                # script name ("" for constructors)
    returns: str             # written result type ("" for constructors)
    params: list[Param]
    const: bool = False      # const member: the receiver is `T const *`
    ownership: Optional[Ownership] = None   # as written; the linker fills in the default
    call: Optional[str] = None   # C++ expression; default self->name(args)
    line: int = 0
    result: Optional["TypeRef"] = None


@dataclass
class Field:
    name: str
    written: str
    line: int
    ref: Optional["TypeRef"] = None


@dataclass
class Native:
    """A hand-written member registered through the same tables."""
    name: str
    callback: str            # C++ name of a v8::FunctionCallback
    ts: str                  # TypeScript signature "(args): result"
    static: bool
    line: int


@dataclass
class Dispatcher:
    """An overloaded name without any signature script can reach."""
    name: str
    line: int


@dataclass
class Class:
    name: str                # exported name
    cpp: str                 # C++ type
    written: str             # type name as messages write it
    base: Optional[str]
    abstract: bool
    line: int
    # Constructor overloads are chosen by argument count alone, and the chosen
    # form's own messages are thrown (instead of the class's generic one).
    by_count: bool = False
    # C++ expression telling whether `*self` still holds `element` (a pointer
    # an `element` member returned); needed by classes with such members.
    holds: Optional[str] = None
    members: list = field(default_factory=list)   # Function | Field | Native | Dispatcher, in order


@dataclass
class TypeRef:
    """A resolved written type: what kind of value crosses, and how."""
    written: str
    kind: str                # int, int64, uint32, uint64, double, float, bool, enum,
                             # cstring, string, pointer, void, class, vector, map
    form: str                # value, ptr, constptr, ref, constref
    cpp: str                 # C++ type of the base (e.g. Orva::Rtc::Camera, int32_t)
    descriptor: Optional[str] = None   # mangled type descriptor name for pointer kinds
    cls: Optional[Class] = None        # script class of the base, if any
    enum: Optional[Enum] = None


@dataclass
class Description:
    module: str = ""
    source: str = ""
    includes: list[str] = field(default_factory=list)
    types: list[TypeDecl] = field(default_factory=list)
    aliases: list[Alias] = field(default_factory=list)
    enums: list[Enum] = field(default_factory=list)
    classes: list[Class] = field(default_factory=list)
    char_type: str = "char"
    string_type: str = "std::string"
    # Filled by the linker.
    descriptors: list = field(default_factory=list)   # sorted Descriptor records
    casts: list = field(default_factory=list)         # (derived descriptor, base descriptor)

"""Links a parsed description: resolves every written type, groups overloads,
builds the sorted descriptor table and checks the whole. Any name that does
not resolve is an error with its line.
"""
from __future__ import annotations

from dataclasses import dataclass, field
from typing import Optional

from . import names
from .model import Class, Description, Dispatcher, Enum, Field, Function, Native, Ownership, Param, TypeRef


class LinkError(Exception):
    pass


_PRIMITIVES = {
    "int": ("int", "int32_t"), "int32_t": ("int", "int32_t"), "long": ("int", "int32_t"),
    "int64_t": ("int64", "int64_t"),
    "uint32_t": ("uint32", "uint32_t"), "unsigned long": ("uint32", "uint32_t"),
    "uint64_t": ("uint64", "uint64_t"), "size_t": ("uint64", "size_t"),
    # A number of elements a container is to hold: a size, capped at what can be allocated.
    "element_count": ("count", "size_t"),
    "double": ("double", "double"), "float": ("float", "float"), "bool": ("bool", "bool"),
    "void": ("void", "void"),
}

_FORMS = [(" const &", "constref"), (" &", "ref"), (" const *", "constptr"), (" *", "ptr")]


@dataclass
class Descriptor:
    cpp: str
    mangled: str
    written: str
    cls: Optional[Class]
    flipped: bool = False
    index: int = -1

    @property
    def readable(self) -> str:
        return names.readable(self.written, self.mangled, self.flipped)


@dataclass
class Signature:
    """One callable signature (optional parameters left out) of a registered member."""
    function: Function
    params: list[Param]
    suffix: str = ""


@dataclass
class Member:
    """One name registered on a class: method, static, constructor, field, native or dispatcher."""
    kind: str                    # new | method | static | field | native | dispatcher
    name: str
    signatures: list[Signature] = field(default_factory=list)
    field: Optional[Field] = None
    native: Optional[Native] = None

    @property
    def overloaded(self) -> bool:
        return self.kind == "dispatcher" or len(self.signatures) > 1


@dataclass
class LinkedClass:
    cls: Class
    index: int
    descriptor: Descriptor
    constructor: Optional[Member]
    methods: list[Member]
    fields: list[Member]
    statics: list[Member]
    base: Optional["LinkedClass"] = None


@dataclass
class Linked:
    description: Description
    classes: list[LinkedClass]
    descriptors: list[Descriptor]
    constants: list[tuple[str, str, int]]   # exported name, C++ expression, value
    casts: list[tuple[Descriptor, Descriptor]]  # (derived, base): derived accepted where base expected
    char_descriptor: Descriptor
    string_descriptor: Descriptor

    def descriptor_of(self, cpp: str) -> Descriptor:
        for descriptor in self.descriptors:
            if descriptor.cpp == cpp:
                return descriptor
        raise LinkError(f"no descriptor for {cpp}")


class Linker:
    def __init__(self, description: Description, path: str):
        self.d = description
        self.path = path
        self.enums: dict[str, Enum] = {enum.cpp: enum for enum in description.enums}
        self.aliases = {alias.written: alias for alias in description.aliases}
        self.by_written: dict[str, Descriptor] = {}
        self.descriptors: list[Descriptor] = []

    def fail(self, line: int, message: str):
        raise LinkError(f"{self.path}:{line}: {message}")

    # --- descriptors -------------------------------------------------------

    def add_descriptor(self, cpp: str, written: str, cls: Optional[Class], line: int) -> Descriptor:
        mangled = names.mangle(cpp)
        for existing in self.descriptors:
            if existing.mangled == mangled:
                self.fail(line, f"type {cpp} declared twice")
        descriptor = Descriptor(cpp=cpp, mangled=mangled, written=written, cls=cls)
        self.descriptors.append(descriptor)
        self.by_written[written] = descriptor
        return descriptor

    # --- types -------------------------------------------------------------

    def resolve(self, written: str, line: int) -> TypeRef:
        form, base = "value", written
        for suffix, name in _FORMS:
            if written.endswith(suffix):
                form, base = name, written[: -len(suffix)].strip()
                break
        seen = set()
        while base in self.aliases:
            if base in seen:
                self.fail(line, f"alias loop at {base}")
            seen.add(base)
            base = self.aliases[base].target
        if base == "char" and form == "constptr":
            return TypeRef(written=written, kind="cstring", form=form, cpp="char")
        if base == self.d.string_type and form in ("constref", "value"):
            return TypeRef(written=written, kind="string", form=form, cpp="std::string")
        if base == "void" and form in ("ptr", "constptr"):
            return TypeRef(written=written, kind="pointer", form=form, cpp="void")
        if base in _PRIMITIVES:
            kind, cpp = _PRIMITIVES[base]
            if form != "value":
                self.fail(line, f"{written}: pointers to {base} are not supported")
            return TypeRef(written=written, kind=kind, form=form, cpp=cpp)
        if base in self.enums:
            if form != "value":
                self.fail(line, f"{written}: enumerations cross by value only")
            return TypeRef(written=written, kind="enum", form=form, cpp=base, enum=self.enums[base])
        descriptor = self.by_written.get(base)
        if descriptor is None:
            self.fail(line, f"unknown type '{base}' in '{written}'")
        kind = "object" if descriptor.cls is not None or "::" in descriptor.cpp or "<" in descriptor.cpp else "pointer"
        if kind == "pointer" and form not in ("ptr", "constptr"):
            self.fail(line, f"{written}: {base} crosses by pointer only")
        return TypeRef(written=written, kind=kind, form=form, cpp=descriptor.cpp, descriptor=descriptor.mangled,
                       cls=descriptor.cls)

    # --- members -----------------------------------------------------------

    def signatures(self, functions: list[Function]) -> list[Signature]:
        out = []
        for function in functions:
            params = list(function.params)
            out.append(Signature(function, params))
            while params and params[-1].optional:
                params = params[:-1]
                out.append(Signature(function, params))
        if len(out) > 1:
            for index, signature in enumerate(out):
                signature.suffix = f"__SWIG_{index}"
        return out

    def link_function(self, cls: Class, function: Function):
        for param in function.params:
            param.ref = self.resolve(param.written, function.line)
            if param.disown and param.ref.kind != "object":
                self.fail(function.line, "disown applies to object pointers only")
            if param.ref.kind == "void" or (param.ref.kind == "object" and param.ref.cls is None
                                            and param.ref.form == "value"):
                self.fail(function.line, f"{param.written} cannot be passed")
        if function.kind != "new":
            function.result = self.resolve(function.returns, function.line)
            self.link_ownership(cls, function)

    def link_ownership(self, cls: Class, function: Function):
        """Checks the written policy against the result and fills in the default."""
        result = function.result
        by_value = result.kind == "object" and result.form == "value"
        written = function.ownership
        if written is None:
            function.ownership = Ownership.default_for(by_value)
            return
        if result.kind != "object":
            self.fail(function.line, f"'{written.value}' applies to class results only")
        allowed = {Ownership.OWNED, Ownership.ARRAY} if by_value else {Ownership.OWNED, Ownership.BORROWED,
                                                                        Ownership.ELEMENT}
        if written not in allowed:
            self.fail(function.line, f"'{written.value}' does not fit a result {'by value' if by_value else 'by pointer'}")
        if written is Ownership.ARRAY and not result.cpp.startswith("std::vector<"):
            self.fail(function.line, "array results must be vectors")
        if written is Ownership.ELEMENT and (cls.holds is None or function.kind != "method"):
            self.fail(function.line, f"'element' results need a method of a class with 'holds' ({cls.name})")

    def link_class(self, cls: Class, index: int, descriptor: Descriptor) -> LinkedClass:
        constructors, members = [], []
        pending: list[Function] = []

        def flush():
            if pending:
                members.append(Member(kind=pending[0].kind, name=pending[0].name, signatures=self.signatures(pending)))
                pending.clear()

        for member in cls.members:
            if isinstance(member, Function):
                self.link_function(cls, member)
                if member.kind == "new":
                    flush()
                    constructors.append(member)
                    continue
                if pending and (pending[0].name != member.name or pending[0].kind != member.kind):
                    flush()
                pending.append(member)
                continue
            flush()
            if isinstance(member, Field):
                member.ref = self.resolve(member.written, member.line)
                if member.ref.kind == "object" and member.ref.form != "ptr":
                    self.fail(member.line, "embedded record fields are written 'T *'")
                members.append(Member(kind="field", name=member.name, field=member))
            elif isinstance(member, Native):
                members.append(Member(kind="native", name=member.name, native=member))
            elif isinstance(member, Dispatcher):
                members.append(Member(kind="dispatcher", name=member.name))
        flush()

        seen = set()
        for member in members:
            key = (member.kind == "static" or (member.native is not None and member.native.static), member.name)
            if key in seen:
                self.fail(cls.line, f"{cls.name}.{member.name} is registered twice (overloads must be adjacent)")
            seen.add(key)

        if cls.abstract and constructors:
            self.fail(cls.line, f"abstract class {cls.name} has a constructor")
        if not cls.abstract and not constructors:
            self.fail(cls.line, f"class {cls.name} needs a constructor or 'abstract'")
        constructor = Member(kind="new", name="", signatures=self.signatures(constructors)) if constructors else None
        if cls.by_count:
            counts = [len(signature.params) for signature in constructor.signatures] if constructor else []
            if len(set(counts)) != len(counts) or len(counts) < 2:
                self.fail(cls.line, f"{cls.name}: 'by-count' needs constructors of distinct argument counts")
        if cls.holds is not None and not any(
                m.kind == "method" and any(s.function.ownership is Ownership.ELEMENT for s in m.signatures)
                for m in members):
            self.fail(cls.line, f"{cls.name}: 'holds' without an 'element' member")
        is_static = lambda m: m.kind == "static" or (m.native is not None and m.native.static)  # noqa: E731
        return LinkedClass(
            cls=cls, index=index, descriptor=descriptor, constructor=constructor,
            methods=[m for m in members if m.kind in ("method", "native", "dispatcher") and not is_static(m)],
            fields=[m for m in members if m.kind == "field"],
            statics=[m for m in members if is_static(m)])

    # --- whole -------------------------------------------------------------

    def link(self) -> Linked:
        d = self.d
        if not d.module:
            raise LinkError(f"{self.path}: no module name")
        for enum in d.enums:
            if not enum.values:
                self.fail(enum.line, f"enum {enum.cpp} has no values")
        for decl in d.types:
            self.add_descriptor(decl.cpp, names.written_name(decl.cpp), None, decl.line)
        class_descriptors = []
        for cls in d.classes:
            class_descriptors.append(self.add_descriptor(cls.cpp, cls.written, cls, cls.line))
        for alias in d.aliases:
            if alias.written in self.by_written or alias.written in _PRIMITIVES:
                self.fail(alias.line, f"alias {alias.written} shadows a type")

        classes = [self.link_class(cls, i, class_descriptors[i]) for i, cls in enumerate(d.classes)]
        by_name = {linked.cls.name: linked for linked in classes}
        if len(by_name) != len(classes):
            raise LinkError(f"{self.path}: a class name is used twice")
        casts = []
        for linked in classes:
            if linked.cls.base:
                base = by_name.get(linked.cls.base)
                if base is None:
                    self.fail(linked.cls.line, f"unknown base class {linked.cls.base}")
                if base.index > linked.index:
                    self.fail(linked.cls.line, "a base class must be registered before its derived class")
                linked.base = base
                casts.append((linked.descriptor, base.descriptor))

        # A type passed as a non-const reference reads its alternatives the other way round.
        for linked in classes:
            for member in linked.methods + linked.statics + ([linked.constructor] if linked.constructor else []):
                for signature in member.signatures:
                    for param in signature.params:
                        if param.ref and param.ref.form == "ref" and param.ref.kind == "object":
                            self.by_written[names.written_name(param.ref.cpp)].flipped = True

        self.descriptors.sort(key=lambda descriptor: descriptor.mangled)
        for index, descriptor in enumerate(self.descriptors):
            descriptor.index = index

        constants, exported = [], set()
        for enum in d.enums:
            for name, value in enum.values:
                public = enum.exported(name)
                if public in exported:
                    self.fail(enum.line, f"constant {public} exported twice")
                exported.add(public)
                constants.append((public, enum.cpp_value(name), value))
        class_names = {linked.cls.name for linked in classes}
        if exported & class_names:
            raise LinkError(f"{self.path}: constants and classes share names: {sorted(exported & class_names)}")

        char = self.by_written.get(d.char_type)
        string = self.by_written.get(d.string_type)
        if char is None or string is None:
            raise LinkError(f"{self.path}: the text types {d.char_type} and {d.string_type} need 'type' lines")
        return Linked(description=d, classes=classes, descriptors=self.descriptors, constants=constants, casts=casts,
                      char_descriptor=char, string_descriptor=string)


def link(description: Description, path: str) -> Linked:
    return Linker(description, path).link()

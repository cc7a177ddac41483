"""Every name and message the generator derives, in one place.

Exported names and C++ types are kept verbatim; everything else (mangled
descriptor names, written type names, wrapper names and message texts) is
derived here so that one rule makes each.
"""
from __future__ import annotations

import re


def squeeze(cpp: str) -> str:
    """A C++ type with spaces only where words meet ("signed char")."""
    text = " ".join(cpp.split())
    return re.sub(r"\s*([<>,*&:])\s*", r"\1", text)


def mangle(cpp: str) -> str:
    """Descriptor name of a pointer to `cpp`: "_p_Orva__Rtc__Camera"."""
    text = squeeze(cpp)
    text = text.replace("::", "__").replace("<", "T_").replace(">", "_t").replace(",", "_").replace(" ", "_")
    return f"_p_{text}"


def written_name(cpp: str) -> str:
    """How messages write a type: template arguments inside "< " and " >"."""
    text = squeeze(cpp)
    return text.replace("<", "< ").replace(">", " >")


def readable(written: str, mangled: str, flipped: bool) -> str:
    """The descriptor's readable alternatives."""
    pointer = f"{written} *"
    short = mangled[1:]  # without the leading underscore: "p_Orva__Rtc__Camera"
    return f"{short}|{pointer}" if flipped else f"{pointer}|{short}"


def wrapper(class_name: str, member: str) -> str:
    return f"_wrap_{class_name}_{member}"


def method_label(class_name: str, member: str) -> str:
    """The member as messages name it: class, underscore, member."""
    return f"{class_name}_{member}"


def argc_message(wrapper_name: str) -> str:
    return f"Illegal number of arguments for {wrapper_name}."


def arg_message(label: str, position: int, written: str) -> str:
    return f"in method '{label}', argument {position} of type '{written}'"


def null_message(label: str, position: int, written: str) -> str:
    return f"invalid null reference {arg_message(label, position, written)}"


def overload_message(member: str) -> str:
    return f"Illegal arguments for function {member}."


def construction_message(template_name: str) -> str:
    return f"Illegal arguments for construction of {template_name}"


def illegal_call_message(constructor_wrapper: str) -> str:
    return f"Illegal call of constructor {constructor_wrapper}."


def not_instantiable_message(class_name: str) -> str:
    return f"Class {class_name} can not be instantiated"


def template_name(class_name: str) -> str:
    return f"_exports_{class_name}"


def cpp_string(text: str) -> str:
    """A C++ string literal; non-ASCII bytes as octal escapes."""
    out = []
    for byte in text.encode("utf-8"):
        char = chr(byte)
        if char in '"\\':
            out.append("\\" + char)
        elif 32 <= byte < 127:
            out.append(char)
        else:
            out.append(f"\\{byte:03o}")
    return '"' + "".join(out) + '"'


def identifier(text: str) -> str:
    """A C++ identifier made from a mangled name or member label."""
    return re.sub(r"\W", "_", text)

"""Renders the reference page of the events for application developers."""
from __future__ import annotations

from .event_parser import SLOTS, Events, Shape

COMMAND = "PYTHONPATH=tools python3 -m bindgen.events {source} --docs docs/events.md"

INTRO = """\
<!-- Generated from {source} by `{command}`. Do not edit. -->
# Events

The function registered with `engine.setCallback(handler)` receives every
engine event on the script thread, as

```js
handler(name, int1, int2, int3, str1, str2, payload)
```

An argument that an event does not use is `0` (int1 to int3) or `''` (str1,
str2); the payload of an event that has none is an empty object.

In TypeScript, comparing `name` with an event's name gives every other
argument that event's type (`OrvaEventHandler`). A handler of that type names
all seven parameters, or ends in a rest parameter (`(name, int1, ...rest) =>`):
TypeScript refuses a shorter parameter list for it.

A listener of the EventEmitter of `orva-engine/events` (see the README,
"Events, the Node way") receives one value: an event's arguments listed below
as one object, by their names (`{{ state, reason, lastError, session }}`), or
the payload of an event that carries one; an event with neither gives an empty
object. `OrvaEventMap` types each.
"""


def _cell(text: str) -> str:
    return text.replace("|", "\\|")


def _anchor(name: str) -> str:
    return name.lower()


def _shape(shape: Shape) -> list[str]:
    out = [f"### {shape.name}", "", shape.meaning[:1].upper() + shape.meaning[1:] + ".", "",
           "| key | type | meaning |", "|---|---|---|"]
    for key in shape.keys:
        absent = " (not always there)" if key.optional else ""
        out.append(f"| `{key.name}` | `{_cell(key.ts)}` | {_cell(key.meaning)}{absent} |")
    if shape.rest:
        out.append(f"| any other | `{_cell(shape.rest.ts)}` | {_cell(shape.rest.meaning)} |")
    return out + [""]


def render(events: Events) -> str:
    out = [INTRO.format(source=events.source, command=COMMAND.format(source=events.source)), "## Events", ""]
    for event in events.events:
        out += [f"### {event.name}", "", event.meaning[:1].upper() + event.meaning[1:] + ".", ""]
        if event.payload:
            shape = events.payload(event.payload)
            out += [f"Payload: [`{shape.name}`](#{_anchor(shape.name)}).", ""]
        elif event.arguments:
            out += ["| argument | name | type | meaning |", "|---|---|---|---|"]
            for slot in SLOTS:
                argument = event.argument(slot)
                if argument:
                    out.append(f"| {slot} | `{argument.name}` | `{_cell(argument.ts)}` | {_cell(argument.meaning)} |")
            out.append("")
        else:
            out += ["No arguments.", ""]
    out += ["## Payloads and the objects they hold", ""]
    for shape in events.shapes:
        out += _shape(shape)
    return "\n".join(out).rstrip() + "\n"

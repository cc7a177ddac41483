"""Generates what follows from the event description.

    python3 -m bindgen.events <description> [--header <file>] [--dts <file>] [--js <file>] [--docs <file>]

--header: the bridge's event table (event_cpp); --dts: the TypeScript
declarations of the handler and of the events layer's listeners (event_dts),
which the binding's declarations take in; --js: the events layer's table of
named arguments (event_js); --docs: the reference page (event_docs). Fails
with the description's file and line on any error, writing nothing; a file
that would not change is not written again.
"""
from __future__ import annotations

import argparse
import sys

from . import event_cpp, event_docs, event_dts, event_js
from .event_parser import EventDescriptionError, parse
from .files import write

RENDERERS = {"header": event_cpp.render, "dts": event_dts.render, "js": event_js.render, "docs": event_docs.render}


def main(argv: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="bindgen.events")
    parser.add_argument("description")
    for output in RENDERERS:
        parser.add_argument(f"--{output}", metavar="FILE")
    args = parser.parse_args(argv)
    try:
        events = parse(args.description)
    except (EventDescriptionError, OSError) as error:
        print(f"bindgen.events: {error}", file=sys.stderr)
        return 1
    for output, render in RENDERERS.items():
        path = getattr(args, output)
        if path:
            write(path, render(events))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

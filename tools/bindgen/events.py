"""Generates what follows from the event description.

    python3 -m bindgen.events <description> [--header <file>] [--dts <file>] [--docs <file>]

--header: the bridge's event table (event_cpp); --dts: the handler's
TypeScript declarations (event_dts), which the binding's declarations take in;
--docs: the reference page (event_docs). Fails with the description's file and
line on any error, writing nothing.
"""
from __future__ import annotations

import argparse
import os
import sys

from . import event_cpp, event_docs, event_dts
from .event_parser import EventDescriptionError, parse

RENDERERS = {"header": event_cpp.render, "dts": event_dts.render, "docs": event_docs.render}


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
            os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
            with open(path, "w", encoding="utf-8") as handle:
                handle.write(render(events))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

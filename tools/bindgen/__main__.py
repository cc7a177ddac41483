"""Generates the binding from an interface description.

    python3 -m bindgen <description> <output folder> [--dts <file>] [--dts-extra <file>]
    python3 -m bindgen <description> --outputs

Writes the C++ sources (see render_cpp) into the output folder and the
declarations where asked; with --outputs, only prints the names of the C++
sources it would write, one per line, for the build to compile. Fails with the description's file and line on any
error, writing nothing.
"""
from __future__ import annotations

import argparse
import os
import sys

from . import render_cpp, render_dts
from .files import write
from .linker import LinkError, link
from .parser import DescriptionError, parse


def main(argv: list[str]) -> int:
    parser = argparse.ArgumentParser(prog="bindgen")
    parser.add_argument("description")
    parser.add_argument("output", nargs="?")
    parser.add_argument("--outputs", action="store_true", help="print the names of the C++ sources and stop")
    parser.add_argument("--dts", help="where to write the TypeScript declarations")
    parser.add_argument("--dts-extra", help="hand-written declarations appended to the generated ones")
    args = parser.parse_args(argv)
    try:
        linked = link(parse(args.description), args.description)
    except (DescriptionError, LinkError) as error:
        print(f"bindgen: {error}", file=sys.stderr)
        return 1
    if args.outputs:
        print("\n".join(render_cpp.output_names(linked)))
        return 0
    if not args.output:
        parser.error("the output folder is required")
    os.makedirs(args.output, exist_ok=True)
    for name, text in render_cpp.render(linked).items():
        write(os.path.join(args.output, name), text)
    if args.dts:
        extra = ""
        if args.dts_extra:
            with open(args.dts_extra, encoding="utf-8") as handle:
                extra = handle.read()
        write(args.dts, render_dts.render(linked, extra))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

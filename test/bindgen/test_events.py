"""Tests of the event generator: what it renders for one plain and one
payload event, which descriptions it refuses (with their line), and that the
checked-in reference page is the one the event description makes.
Run with `python3 -m unittest` from this folder, or through CTest.
"""
import os
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..", "..")
sys.path.insert(0, os.path.join(ROOT, "tools"))

from bindgen import event_cpp, event_docs, event_dts, event_js  # noqa: E402
from bindgen.event_parser import EventDescriptionError, parse_text  # noqa: E402

FIXTURE = """\
event OnPlain -- something happened
    int2 count -- how many
    str1 who: 'a' | 'b' -- who did it
event OnStats -> stats -- numbers came
payload stats StatsPayload -- the numbers
    total: number -- all of them
    note?: string -- sometimes
    [detail: string]: string | number -- the rest
"""


class RenderTest(unittest.TestCase):
    # renderer, a fragment its output holds
    CASES = [
        (event_cpp, "enum class PayloadKind : uint8_t {\n  kNone,\n  kStats,\n};"),
        (event_cpp, "enum class EventId : uint8_t {\n  kOnPlain,\n  kOnStats,\n};"),
        (event_cpp, '    {"OnPlain", PayloadKind::kNone},\n    {"OnStats", PayloadKind::kStats},\n'),
        (event_cpp, 'std::array<const char*, 2> kStatsPayloadKeys{\n    "total", "note"};'),
        (event_dts, "  | [name: 'OnPlain', int1: 0, count: number, int3: 0, who: 'a' | 'b', str2: '', "
                    "payload: Record<string, never>]\n"),
        (event_dts, "  | [name: 'OnStats', int1: 0, int2: 0, int3: 0, str1: '', str2: '', payload: StatsPayload];"),
        (event_dts, "  /** Sometimes. */\n  note?: string;\n  /** The rest. */\n  [detail: string]: string | number;"),
        (event_dts, "export interface OrvaEventPayloads {\n  OnStats: StatsPayload;\n}"),
        (event_dts, "  OnPlain: {\n    /** How many. */\n    count: number;\n    /** Who did it. */\n    who: 'a' | 'b';\n  };\n"
                    "  /** Numbers came. */\n  OnStats: StatsPayload;\n}"),
        (event_js, "  OnPlain: (int1, int2, int3, str1) => ({ count: int2, who: str1 }),\n  OnStats: null,\n"),
        (event_docs, "| int2 | `count` | `number` | how many |\n| str1 | `who` | `'a' \\| 'b'` | who did it |"),
        (event_docs, "### OnStats\n\nNumbers came.\n\nPayload: [`StatsPayload`](#statspayload)."),
        (event_docs, "| `note` | `string` | sometimes (not always there) |\n| any other | `string \\| number` |"),
    ]

    def test_each_output_renders_both_events(self):
        events = parse_text(FIXTURE, "fixture.desc")
        for renderer, fragment in self.CASES:
            with self.subTest(renderer.__name__, fragment=fragment):
                self.assertIn(fragment, renderer.render(events))


class MalformedDescriptionTest(unittest.TestCase):
    PAYLOAD = "payload p P -- x\n    a: number -- y\n"
    CASES = [
        ("no meaning", "event OnX\n", ":1: 'event OnX': end the line with ' -- ' and its meaning"),
        ("indent outside", "    int1 a -- b\n", ":1: indented line outside a block"),
        ("unknown slot", "event OnX -- x\n    int4 a -- b\n", ":2: 'int4 a': expected '<int1|"),
        ("slot twice", "event OnX -- x\n    int1 a -- b\n    int1 c -- d\n", ":3: int1 of OnX is described twice"),
        ("name taken", "event OnX -- x\n    int1 str2 -- b\n", ":2: argument name 'str2' of OnX is taken"),
        ("names differ by case", "event OnX -- a\nevent onX -- b\n", ":2: event onX is described twice"),
        ("unknown kind", "event OnX -> q -- x\n" + PAYLOAD, ":1: OnX: unknown payload kind 'q'"),
        ("payload and arguments", "event OnX -> p -- x\n    int1 a -- b\n" + PAYLOAD, ":1: OnX: an event with a payload"),
        ("kind carried by none", "event OnX -- x\n" + PAYLOAD, ":2: payload kind 'p' is carried by no event"),
        ("bad key", "event OnX -> p -- x\npayload p P -- x\n    a number -- y\n", ":3: 'a number': expected '<key>"),
    ]

    def test_each_malformed_description_fails_with_its_line(self):
        for label, text, fragment in self.CASES:
            with self.subTest(label):
                with self.assertRaises(EventDescriptionError) as raised:
                    parse_text(text, "bad.desc")
                self.assertIn("bad.desc" + fragment, str(raised.exception))


class ReferencePageTest(unittest.TestCase):
    def test_docs_match_the_event_description(self):
        def read(path):
            with open(os.path.join(ROOT, path), encoding="utf-8") as handle:
                return handle.read()

        made = event_docs.render(parse_text(read("bridge/events.desc"), "bridge/events.desc"))
        command = event_docs.COMMAND.format(source="bridge/events.desc")
        self.assertEqual(made, read("docs/events.md"),
                         f"docs/events.md is not what bridge/events.desc makes: run `{command}`")


if __name__ == "__main__":
    unittest.main()

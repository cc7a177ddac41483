"""Tests of the binding generator: its output for a fixture description is
compared with committed text, and malformed descriptions fail with their
line. Run with `python3 -m unittest` from this folder, or through CTest.
Set BINDGEN_UPDATE=1 to rewrite the golden files after a deliberate change.
"""
import os
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "tools"))

from bindgen import render_cpp, render_dts  # noqa: E402
from bindgen.linker import LinkError, link  # noqa: E402
from bindgen.parser import DescriptionError, Parser, parse  # noqa: E402

FIXTURE = os.path.join(HERE, "fixture.api")
GOLDEN = os.path.join(HERE, "golden")
# Expected outputs carry this extension: they are text to compare, not code.
SUFFIX = ".golden"


def generate(path):
    linked = link(parse(path), path)
    files = render_cpp.render(linked)
    files["fixture.d.ts"] = render_dts.render(linked)
    return files


class GoldenTest(unittest.TestCase):
    def test_output_matches_golden_files(self):
        files = generate(FIXTURE)
        if os.environ.get("BINDGEN_UPDATE"):
            for name, text in files.items():
                with open(os.path.join(GOLDEN, name + SUFFIX), "w", encoding="utf-8") as handle:
                    handle.write(text)
        expected_names = sorted(name[: -len(SUFFIX)] for name in os.listdir(GOLDEN))
        self.assertEqual(sorted(files), expected_names)
        for name in expected_names:
            with open(os.path.join(GOLDEN, name + SUFFIX), encoding="utf-8") as handle:
                self.assertEqual(files[name], handle.read(), f"{name} differs from its golden file")


def link_text(text):
    with tempfile.NamedTemporaryFile("w", suffix=".api", delete=False) as handle:
        handle.write(text)
    try:
        return link(Parser(handle.name).parse(text), handle.name)
    finally:
        os.unlink(handle.name)


BASE = "module m\nsource a/b\ntype char\ntype std::string\ntext char std::string\n"


class MalformedDescriptionTest(unittest.TestCase):
    CASES = [
        ("unknown type", "class A\n    new()\n    void F(demo::Nope x)\n", LinkError, ":8: unknown type 'demo::Nope'"),
        ("overloads apart", "class A\n    new()\n    void F()\n    void G()\n    void F(int x)\n", LinkError,
         "registered twice"),
        ("abstract with constructor", "class A abstract\n    new()\n", LinkError, "has a constructor"),
        ("no constructor", "class A\n    void F()\n", LinkError, "needs a constructor"),
        ("unknown base", "class A : B\n    new()\n", LinkError, "unknown base class B"),
        ("bad attribute", "class A\n    new()\n    void F() shiny\n", DescriptionError, ":8: unknown attribute 'shiny'"),
        ("indent outside", "    void F()\n", DescriptionError, ":6: indented line outside"),
        ("default value written", "class A\n    new()\n    void F(int x = 2)\n", DescriptionError,
         ":8: 'int x = 2': write `optional`"),
        ("disown of a number", "class A\n    new()\n    void F(int x disown)\n", LinkError, "disown applies"),
        ("element without holds", "class A\n    new()\n    Orva::Rtc::A * F() element\n", LinkError, "class with 'holds'"),
        ("holds without element", "class A\n    new()\n    holds true\n    Orva::Rtc::A * F()\n", LinkError,
         "'holds' without an 'element' member"),
        ("element by value", "class A\n    new()\n    holds true\n    Orva::Rtc::A F() element\n", LinkError,
         "'element' does not fit a result by value"),
        ("ownership of a number", "class A\n    new()\n    int F() owned\n", LinkError, "class results only"),
        ("by-count with one count", "class A by-count\n    new()\n    new(int x)\n    new(char const * y)\n",
         LinkError, "distinct argument counts"),
    ]

    def test_each_malformed_description_fails_with_its_line(self):
        for label, text, error, fragment in self.CASES:
            with self.subTest(label):
                with self.assertRaises(error) as raised:
                    link_text(BASE + text)
                self.assertIn(fragment, str(raised.exception))


class NamesTest(unittest.TestCase):
    def test_descriptors_are_sorted_and_mangled(self):
        linked = link(parse(FIXTURE), FIXTURE)
        mangled = [descriptor.mangled for descriptor in linked.descriptors]
        self.assertEqual(mangled, sorted(mangled))
        self.assertIn("_p_std__vectorT_demo__Point_t", mangled)
        self.assertIn("_p_signed_char", mangled)

    def test_optional_arguments_expand_into_numbered_overloads(self):
        linked = link(parse(FIXTURE), FIXTURE)
        shape = next(c for c in linked.classes if c.cls.name == "Shape")
        area = next(m for m in shape.methods if m.name == "Area")
        self.assertEqual([len(s.params) for s in area.signatures], [2, 1])
        self.assertEqual([s.suffix for s in area.signatures], ["__SWIG_0", "__SWIG_1"])


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
"""What scripts/check_layers.py finds, in small trees of its own.

usage: tests/house/check_layers_test.py
"""

import contextlib
import io
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).parents[2] / "scripts"))
sys.dont_write_bytecode = True
import check_layers  # noqa: E402

SAME = "namespace quilon {\nstruct Row { int id; };\n}\n"


class CheckLayers(unittest.TestCase):
    def check(self, files):
        """Returns the exit code and the lines of output for a tree of these files: path to text."""
        with tempfile.TemporaryDirectory() as folder:
            for path, text in files.items():
                (Path(folder) / path).parent.mkdir(parents=True, exist_ok=True)
                (Path(folder) / path).write_text(text, encoding="utf-8")
            output = io.StringIO()
            with mock.patch.object(sys, "argv", ["check_layers.py", folder]), contextlib.redirect_stdout(output):
                return check_layers.main(), output.getvalue().splitlines()

    def assert_wrong(self, files, *lines):
        self.assertEqual(self.check(files), (1, list(lines)))

    def assert_right(self, files):
        self.assertEqual(self.check(files), (0, [f"{len(files)} files keep their layer"]))

    def test_a_room_sees_those_below(self):
        self.assert_right({"host/text/A.h": "", "host/diff/B.cpp": '#include "text/A.h"\n'})
        self.assert_wrong({"host/text/A.cpp": '\n#include "diff/B.h"\n', "host/diff/B.h": ""},
                          "host/text/A.cpp:2: host/text may not include diff/B.h")

    def test_a_file_of_ours_is_there(self):
        self.assert_wrong({"host/diff/B.cpp": '#include "text/A.h"\n#include <sys/stat.h>\n#include "generated.h"\n'},
                          "host/diff/B.cpp:1: there is no text/A.h")

    def test_the_library_is_of_the_standard_library_alone(self):
        self.assert_wrong({"src/a.cpp": "#include <vector>\n#include <thread>\n"},
                          "src/a.cpp:2: the library depends on the standard library alone and starts no threads; "
                          "found thread")

    def test_no_part_has_circles(self):
        # Files are named as they are included: of a room with it, of all others alone.
        for folder, prefix, name in (("siblings/QuilonUtilities/src/", "", "siblings/QuilonUtilities"), ("src/", "", "src"),
                                     ("host/import/", "import/", "host/import"), ("mpi/", "", "mpi"),
                                     ("host/calculix/deck/", "calculix/deck/", "host/calculix"), ("python/src/", "", "python/src")):
            self.assert_wrong({folder + "A.h": f'#include "{prefix}B.h"\n', folder + "B.h": "",
                               folder + "B.cpp": f'#include "{prefix}A.h"\n'}, f"{name}: files include each other: A -> B -> A")

    def test_a_library_header_and_its_source_are_one(self):
        self.assert_wrong({"include/A.h": '#include "B.h"\n', "include/B.h": "", "src/B.cpp": '#include "A.h"\n'},
                          "src: files include each other: A -> B -> A")

    def test_namesakes_in_two_rooms_are_no_circle(self):
        self.assert_right({"host/diff/A.h": '#include "text/A.h"\n', "host/text/A.h": ""})

    def test_a_type_is_defined_once(self):
        self.assert_wrong({"host/answers/A.h": SAME, "host/diff/B.cpp": "\n" + SAME},
                          "host/diff/B.cpp:3: quilon::Row is defined in host/answers/A.h:2 as well")
        self.assert_wrong({"host/answers/A.h": SAME, "python/src/B.cpp": SAME},
                          "python/src/B.cpp:2: quilon::Row is defined in host/answers/A.h:2 as well")

    def test_all_ways_to_define_a_type_count(self):
        for one in ("class Row final : public Base<int>, private Other {};", "enum class Row : int\n{\n  One\n};",
                    "template <typename T>\nstruct Row\n{};", "union Row {};"):
            with self.subTest(one):
                text = "namespace quilon { namespace diff {\n" + one + "\n}}\n"
                code, lines = self.check({"host/text/A.h": text, "host/text/B.h": text})
                self.assertEqual(code, 1)
                self.assertRegex(lines[0], r"^host/text/B.h:[23]: quilon::diff::Row is defined in host/text/A.h:[23] as well$")

    def test_other_types_of_one_name_are_no_matter(self):
        for other in (
                "namespace quilon {\nnamespace {\nstruct Row {};\n}\n}\n",
                "namespace quilon::diff {\nstruct Row {};\n}\n",
                "namespace quilon {\nstruct Row;\nenum class Row : int;\n}\n",
                "namespace quilon {\nstruct Other {\n  struct Row {};\n};\n}\n",
                "namespace quilon {\nvoid Work()\n{\n  struct Row {};\n}\n}\n",
                "namespace quilon {\n// struct Row {};\n/* struct Row {}; */\n"
                "const char* a = \"struct Row {\";\nconst char* b = R\"x(struct Row { \")x\";\nchar c = '{';\nint d = 1'000;\n}\n",
                "#define OPEN \\\n  namespace quilon { struct Row {\n"):
            with self.subTest(other):
                self.assert_right({"host/answers/A.h": SAME, "host/diff/B.cpp": other})

    def test_braces_do_not_hide_what_follows(self):
        text = "namespace quilon {\nint a[] = {1, '{', 2};\nvoid Work() { if (a) { } }\n" + "struct Row {};\n}\n"
        self.assert_wrong({"host/answers/A.h": SAME, "host/diff/B.cpp": text},
                          "host/diff/B.cpp:4: quilon::Row is defined in host/answers/A.h:2 as well")


if __name__ == "__main__":
    unittest.main()

"""The check of the include directions finds what it is there for."""
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "cmake"))
from check_layers import check  # noqa: E402


class CheckLayers(unittest.TestCase):
    def faults(self, files, table="low:\nmid: low\nmid/sub:\nengine:\ntop: mid\n"):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            (root / "cmake").mkdir()
            (root / "cmake" / "layers.txt").write_text(table)
            for name, text in files.items():
                (root / "src" / name).parent.mkdir(parents=True, exist_ok=True)
                (root / "src" / name).write_text(text)
            return check(root)

    def test_downwards_also_over_two_floors_is_fine(self):
        self.assertEqual([], self.faults({"top/a.cpp": '#include "mid/b.h"\n#include "low/c.h"\n#include "x.h"\n'}))

    def test_upwards_is_named_with_its_line(self):
        self.assertEqual(["low/a.h:2: low must not include mid/b.h"],
                         self.faults({"low/a.h": '#pragma once\n  #  include "mid/b.h"\n'}))

    def test_a_folder_inside_another_counts_for_itself(self):
        self.assertEqual(["mid/a.h:1: mid must not include mid/sub/b.h"],
                         self.faults({"mid/a.h": '#include "mid/sub/b.h"\n'}))

    def test_the_script_engine_stays_behind_its_library(self):
        include = "#include <JavaScriptCore/JavaScript.h>\n"
        self.assertEqual(["top/a.cpp:1: only src/engine may include JavaScriptCore/JavaScript.h"],
                         self.faults({"top/a.cpp": include, "engine/a.cpp": include}))

    def test_an_unknown_folder_is_refused(self):
        self.assertEqual(["new/a.cpp: its folder is not in cmake/layers.txt"], self.faults({"new/a.cpp": ""}))

    def test_beside_rooms_of_the_table_every_folder_needs_its_line(self):
        self.assertEqual(["mid/new/a.cpp: its folder is not in cmake/layers.txt"],
                         self.faults({"mid/new/a.cpp": "", "mid/sub/a.cpp": "", "top/new/a.cpp": ""}))

    def test_a_table_that_goes_in_a_circle_is_refused(self):
        self.assertEqual(["cmake/layers.txt: low stands above itself", "cmake/layers.txt: mid stands above itself"],
                         self.faults({}, table="low: mid\nmid: low\ntop: mid\n"))


if __name__ == "__main__":
    unittest.main()

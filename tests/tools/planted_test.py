"""Every planted fault still finds its text, and a table that is not true any more is named."""
import importlib.machinery
import importlib.util
import pathlib
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def load(path):
    loader = importlib.machinery.SourceFileLoader("planted_faults", str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


faults = load(ROOT / "tools" / "faults")

TABLE = "in room\ntests test_room\n\n1 the wrong sign\n- a < b\n+ a > b\n"
SOURCE = "bool isLess(int a, int b) {\n    log();\n    return a <\n        b;\n}\n"

# (what is wrong, the table, what is said of it)
BAD = [
    ("a text that is gone", TABLE.replace("a < b", "a <= b"), "plant 1 (room: the wrong sign)"),
    ("a text found twice", TABLE.replace("- a < b", "- a"), "found 2 times"),
    ("a number given twice", TABLE + TABLE.split("\n\n")[1], "more than once"),
    ("two that overlap", TABLE + "2 less\n- return a < b;\n", "overlap"),
    ("a line that is no part of one", TABLE + "nonsense\n", "room.txt:7"),
]


def judged(table):
    """The source with the faults of a table, or what is wrong with the table."""
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "room").mkdir()
        (root / "room" / "One.cpp").write_text(SOURCE)
        (root / "room.txt").write_text(table)
        try:
            places, problems = faults.place(faults.read_plants(root), root)
        except ValueError as error:
            return str(error)
        if problems:
            return "\n".join(problems)
        return faults.planted_text(SOURCE, places[root / "room" / "One.cpp"])


class PlantedTest(unittest.TestCase):
    def test_every_plant_is_true(self):
        plants = faults.read_plants(ROOT / "tests" / "planted")
        self.assertGreaterEqual(len(plants), 150)
        self.assertEqual("\n".join(faults.place(plants, ROOT)[1]), "")

    def test_a_fault_is_written_beside_what_it_replaces(self):
        expression = judged(TABLE)
        self.assertIn("return (yrw::planted(1) ? (a > b) : (a <\n        b));", expression)
        statement = judged(TABLE.replace("- a < b\n+ a > b", "< b) {\n- log();"))
        self.assertIn("if (yrw::planted(1)) {  } else { log();\n}", statement)

    def test_a_stale_table_is_named(self):
        for what, table, said in BAD:
            with self.subTest(what):
                self.assertIn(said, judged(table))


if __name__ == "__main__":
    unittest.main()

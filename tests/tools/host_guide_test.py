"""The host guide shows the example host as it is built, and that host keeps to the contract."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = ROOT / "examples" / "host"
CONTRACT = re.compile(r"framework/|platform/component/|platform/dao/[A-Z]|platform/\w+/api/")


class HostGuideTest(unittest.TestCase):
    def test_shows_the_source(self):
        guide = (ROOT / "docs" / "host-guide.md").read_text()
        source = (FOLDER / "ExampleHost.h").read_text().rstrip()
        self.assertIn(f"```cpp\n{source}\n```", guide)

    def test_the_example_includes_only_the_contract(self):
        for name in ("ExampleHost.h", "PlainToolbar.h"):
            includes = re.findall(r'#include "([^"]+)"', (FOLDER / name).read_text())
            self.assertEqual([one for one in includes if not CONTRACT.match(one)], [], name)
            self.assertTrue(includes, name)


if __name__ == "__main__":
    unittest.main()

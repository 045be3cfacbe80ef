#!/usr/bin/env python3
"""count_lines.py [ROOT]: lines of code without blanks and comments, and the tests' share of them.

Product is every C++ source outside the other rows; tests are C++, Python and shell below tests.
"""
import pathlib
import re
import subprocess
import sys

OTHERS = ("bench", "examples", "tools", "tour", "cmake", "docs")
TESTS = {".cpp": "//", ".h": "//", ".py": "#", ".sh": "#"}


def code_lines(text, mark):
    if mark == "//":
        text = re.sub(r"/\*.*?\*/", "", text, flags=re.DOTALL)
    lines = (line.strip() for line in text.splitlines())
    return sum(bool(line) and not line.startswith(mark) for line in lines)


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()
    names = subprocess.run(["git", "ls-files"], cwd=root, check=True,
                           capture_output=True).stdout.decode().split()
    counts = {"product": 0, "tests": 0}
    for name in names:
        path = pathlib.Path(name)
        room = path.parts[0]
        if not (root / path).is_file() or path.suffix not in TESTS:
            continue
        if room != "tests" and path.suffix not in (".cpp", ".h"):
            continue
        row = room if room in ("tests", *OTHERS) else "product"
        counts[row] = counts.get(row, 0) + code_lines((root / path).read_text(), TESTS[path.suffix])
    for row, count in counts.items():
        print(f"{row:<10}{count:>7}")
    share = 100 * counts["tests"] / (counts["product"] + counts["tests"])
    print(f"tests / (product + tests): {share:.1f} %")


if __name__ == "__main__":
    main()

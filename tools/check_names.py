#!/usr/bin/env python3
"""check_names.py [ROOT]: fails on a name in a header that leaves house style and is not listed.

docs/names.md lists the names that come from outside, in three tables told apart by the first word
of their heads: prefixes, objects of event handlers, and exact names by object. A function, class
or data member is looked at when its name leaves house style; it must then be listed, fit a prefix,
or be an event handler. No two spellings of a name may differ in case alone.
"""
import pathlib
import re
import sys

CODE = re.compile(r"`([A-Za-z_]\w*)`")
COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
TYPE = re.compile(r"\b(?:class|struct|enum(?:\s+class)?|union|concept|using)"
                  r"(?:\s+\[\[\w+\]\])?\s+([A-Za-z_]\w*)")
# A name that a type stands before: what is declared, not what is called.
DECLARED = re.compile(r"([\w>\]]|[\w>]\s*[*&]+)\s+[*&]*([A-Za-z_]\w*)\s*(\(|;|=|\{|\[)")
NOT_A_TYPE = {"return", "new", "throw", "else", "case", "goto", "delete", "namespace", "class",
              "struct", "enum", "union", "using", "operator", "typename", "co_return",
              "public", "protected", "private", "virtual"}


def plain(text):
    return COMMENT_OR_TEXT.sub(lambda found: "\n" * found[0].count("\n"), text)


class NameList:
    """The tables of docs/names.md."""

    def __init__(self, text):
        self.prefixes, self.handlers, self.exact = [], [], set()
        table = None
        for line in text.splitlines():
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            if not line.startswith("|"):
                table = None
            elif table is None:
                table = " ".join(cells)
            elif cells[0] and not set(cells[0]) <= set("-:"):
                self.take(table, cells)
        prefix = "(?:" + "|".join(self.prefixes) + ")[A-Z]\\w*?"
        objects = "|".join([prefix] + self.handlers)
        self.pattern = re.compile(f"(?:{prefix})|(?:(?:{objects})_[A-Z][A-Za-z]*)")

    def take(self, table, cells):
        if table.startswith("Prefix"):
            self.prefixes += CODE.findall(cells[0])
        elif table.startswith("Object Events"):
            self.handlers += CODE.findall(cells[0])
        elif table.startswith("Object Names"):
            self.exact.update(CODE.findall(cells[1]))

    def allows(self, name):
        return name in self.exact or self.pattern.fullmatch(name) is not None


def leaves_house_style(kind, name):
    if name.isupper() or name.startswith("Q_") or name.startswith("m_"):
        return False
    if kind == "class":
        return not name[0].isupper() or "_" in name
    return name[0].isupper() or "_" in name.rstrip("_")


def declared_names(text, types):
    """(line, kind, name) of all that a header declares, as far as its style matters."""
    for match in TYPE.finditer(text):
        if text[match.end():].lstrip().startswith((":", "{", "final")):
            yield text.count("\n", 0, match.start()) + 1, "class", match[1]
    for match in DECLARED.finditer(text):
        before = re.search(r"(\w+)[^\w]*$", text[:match.start(2)])
        if (before and before[1] in NOT_A_TYPE) or match[2] in types:
            continue
        kind = "function" if match[3] == "(" else "member"
        yield text.count("\n", 0, match.start(2)) + 1, kind, match[2]


def headers(root):
    for path in sorted(root.rglob("*.h")):
        relative = path.relative_to(root)
        if relative.parts[0] not in ("build", "tests", "bench", "tour", "examples", ".git"):
            yield relative.as_posix(), plain(path.read_text(encoding="utf-8"))


def check(root):
    names = NameList((root / "docs/names.md").read_text(encoding="utf-8"))
    faults, spellings = [], {}

    def spelt(name, where):
        other = spellings.setdefault(name.casefold(), (name, where))
        if other[0] != name:
            faults.append(f"{where}: {name} is spelt {other[0]} in {other[1]}")

    for name in sorted(names.exact):
        spelt(name, "docs/names.md")
    found = list(headers(root))
    types = {match[1] for _, text in found for match in TYPE.finditer(text)}
    for file, text in found:
        for line, kind, name in declared_names(text, types):
            if not leaves_house_style(kind, name):
                continue
            where = f"{file}:{line}"
            spelt(name, where)
            if not names.allows(name):
                faults.append(f"{where}: the {kind} {name} leaves house style and is not "
                              "listed in docs/names.md")
    return sorted(set(faults))


def main(arguments):
    faults = check(pathlib.Path(arguments[0] if arguments else ".").resolve())
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

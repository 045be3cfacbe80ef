"""Circles between the classes of a room.

A class names another one when its header or its source does, in whatever way; a forward declaration
counts. Header and source of one name are one unit, and so is a source without a header of its own
with the header that it includes first. A circle is a set of units of which each reaches every other
one; where all of them are interfaces, it is none: they have nothing that could depend on anything.
"""
import pathlib
import re

COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
# Classes that a header defines outside of others: what is inside is indented.
DEFINED = re.compile(r"^(?:class|struct)\s+(?:\[\[\w+\]\]\s+)?(\w+)(?:\s+final)?\s*(?::[^:;]|\{)",
                     re.MULTILINE)
FIRST_INCLUDE = re.compile(r'^#include "([^"]+)\.h"', re.MULTILINE)
# A name that stands for a type: nothing that is called, no member of something.
NAME = re.compile(r"(?:(?<![\w.:>])|(?<=yrw::))([A-Za-z_]\w*)\b(?!\s*\()")
INTERFACE = re.compile(r"I[A-Z][a-z]\w*")


def units_of(root, files):
    """Unit (path without suffix) -> its text."""
    units = {}
    for file in files:
        raw = (root / file).read_text(encoding="utf-8")
        unit, _, suffix = file.rpartition(".")
        own = FIRST_INCLUDE.search(raw)
        if suffix == "cpp" and f"{unit}.h" not in files and own and f"{own[1]}.h" in files:
            unit = own[1]
        units[unit] = units.get(unit, "") + COMMENT_OR_TEXT.sub(" ", raw) + "\n"
    return units


def names_of(root, files):
    """Unit -> the units of the same room that it names."""
    units = units_of(root, files)
    classes = {}
    for file in files:
        if file.endswith(".h"):
            text = COMMENT_OR_TEXT.sub(" ", (root / file).read_text(encoding="utf-8"))
            for name in DEFINED.findall(text):
                classes[name] = file[:-2]
    return {unit: {classes[name] for name in NAME.findall(text) if name in classes} - {unit}
            for unit, text in units.items()}


def circles(graph):
    """The sets of units that reach one another, by Tarjan's algorithm."""
    index, low, stack, found = {}, {}, [], []

    def visit(unit):
        index[unit] = low[unit] = len(index)
        stack.append(unit)
        for other in sorted(graph[unit]):
            if other not in index:
                visit(other)
            if other in stack:
                low[unit] = min(low[unit], low[other])
        if low[unit] == index[unit]:
            at = stack.index(unit)
            found.append(sorted(stack[at:]))
            del stack[at:]

    for unit in sorted(graph):
        if unit not in index:
            visit(unit)
    return [each for each in found if len(each) > 1]


def class_circles(root, files):
    """The circles of one room's files, each a list of units."""
    def is_interface(unit):
        return INTERFACE.fullmatch(pathlib.PurePosixPath(unit).name) is not None

    found = circles(names_of(root, files))
    return sorted(each for each in found if not all(is_interface(unit) for unit in each))

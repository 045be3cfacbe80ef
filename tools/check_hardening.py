#!/usr/bin/env python3
"""check_hardening.py BIN: fails on a program or library in the folder BIN that was built without

- stack protection: a canary is checked somewhere in it;
- full RELRO: the tables of addresses are read-only once it is loaded, and all are bound at start;
- a place of its own at each start: a program is position-independent;
- checked copies (_FORTIFY_SOURCE): every call that the compiler could see through was proved right
  or removed, so the files do not tell; the build's own record of its commands does.
"""
import json
import os
import re
import subprocess
import sys

PRODUCT = ("libyrwcore.so", "libyrwui.so", "libyrwnotes.so", "yrwhost", "yrwnotes",
           "yrwnotes-jetreader", "yrwregister")


def readelf(option, path):
    done = subprocess.run(["readelf", "--wide", option, path], check=True, text=True,
                          capture_output=True)
    return done.stdout


def faults(path):
    header = readelf("--file-header", path)
    segments = readelf("--program-headers", path)
    dynamic = readelf("--dynamic", path)
    needed = set(re.findall(r"UND (\w+)", readelf("--dyn-syms", path)))
    if "__stack_chk_fail" not in needed:
        yield "its stack is not protected"
    if "GNU_RELRO" not in segments or not re.search(r"BIND_NOW|\bNOW\b", dynamic):
        yield "its tables of addresses stay writable"
    if not re.search(r"Type:\s+DYN", header):
        yield "it is loaded at a fixed place"


def unchecked(commands):
    """Sources of the product that were compiled without checked copies."""
    with open(commands, encoding="utf-8") as record:
        for entry in json.load(record):
            place = os.path.relpath(entry["file"], os.path.join(os.path.dirname(commands), "../.."))
            is_product = not place.startswith(("tests/", "bench/", "build/"))
            if is_product and "-D_FORTIFY_SOURCE=2" not in entry["command"]:
                yield place


def main():
    folder = sys.argv[1]
    found = 0
    for name in PRODUCT:
        path = os.path.join(folder, name)
        if not os.path.exists(path):
            print(f"check_hardening: {path} is not there", file=sys.stderr)
            found += 1
            continue
        for fault in faults(path):
            print(f"check_hardening: {path}: {fault}", file=sys.stderr)
            found += 1
    for place in unchecked(os.path.join(folder, "../compile_commands.json")):
        print(f"check_hardening: {place}: compiled without checked copies", file=sys.stderr)
        found += 1
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

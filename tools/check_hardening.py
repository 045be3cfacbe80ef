#!/usr/bin/env python3
"""check_hardening.py BIN: fails on a program or library in the folder BIN that was built without

- stack protection: a canary is checked somewhere in it;
- full RELRO: the tables of addresses are read-only once it is loaded, and all are bound at start;
- a place of its own at each start: a program is position-independent;
- checked copies (_FORTIFY_SOURCE), where it calls a function that has a checked form.
"""
import os
import re
import subprocess
import sys

PRODUCT = ("libyrwcore.so", "libyrwui.so", "libyrwnotes.so", "yrwhost", "yrwnotes", "yrwregister")
# Functions that the compiler replaces by a checked form wherever it knows a size.
CHECKABLE = {"memcpy", "memmove", "memset", "read", "readlink", "strcpy", "snprintf", "vsnprintf"}


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
    checked = {name for name in needed if re.fullmatch(r"__\w+_chk", name)} - {"__stack_chk_fail"}
    if needed & CHECKABLE and not checked and os.path.basename(path) == "libyrwcore.so":
        yield "its copies are not checked"


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
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""check_layering.py [ROOT]: fails on an include line that the rooms' table does not allow.

Rules, in this order:
- an include in quotes names an existing file, written from the root of the tree;
- a room includes only its own headers and those of the rooms that ROOMS lets it call;
- no file includes itself by way of others;
- Qt headers are included one by one, and a room that may not link a Qt library may not include
  that library's headers;
- an engine's header stays in the engine's own folder;
- conditions, orders and transactions are written where data is kept: no room of SHOWING has them;
- within a room, classes do not name each other in a circle (`class_circles.py`).
"""
import glob
import pathlib
import re
import sys

import class_circles

CORE_PLATFORM = {
    "platform/disk", "platform/component", "platform/clock", "platform/settings", "platform/files",
    "platform/collation", "platform/prompt", "platform/dao", "platform/rtf", "platform/jet",
    "platform/toolbar/api", "platform/controls/api",
}
PLATFORM = CORE_PLATFORM | {
    "platform/forms", "platform/toolbar", "platform/controls", "platform/spelling",
    "platform/richtext",
}
ANYTHING = None

# What every room may call.
GROUND = ("platform/component", "platform/disk")

# Room -> the rooms it may call beside those.
ROOMS = {
    "platform/disk": set(),
    "platform/component": set(),
    "platform/clock": set(),
    "platform/settings": set(),
    "platform/files": set(),
    "platform/collation": set(),
    "platform/prompt": set(),
    "platform/dao": {"platform/clock", "platform/files", "platform/collation"},
    "platform/dao/sqlite": {"platform/dao", "platform/clock", "platform/files"},
    "platform/rtf": set(),
    "platform/jet": {"platform/clock", "platform/rtf"},
    "platform/jet/reader": {"platform/jet"},
    "platform/forms": {"platform/clock", "platform/settings", "platform/prompt"},
    "platform/toolbar/api": set(),
    "platform/toolbar": {"platform/toolbar/api", "platform/forms", "platform/files"},
    "platform/controls/api": {"platform/dao"},
    "platform/controls": {
        "platform/controls/api", "platform/dao", "platform/forms", "platform/collation",
    },
    "platform/spelling": set(),
    "platform/richtext": {
        "platform/rtf", "platform/forms", "platform/prompt", "platform/spelling",
    },
    "framework": {
        "platform/clock", "platform/settings", "platform/files", "platform/prompt",
        "platform/dao", "platform/toolbar/api", "platform/controls/api",
    },
    "store": {
        "framework", "platform/dao", "platform/files", "platform/clock", "platform/rtf", "platform/jet",
    },
    "dialogs": {"store", "framework"} | PLATFORM,
    "notes_window": {"dialogs", "store", "framework"} | PLATFORM,
    "addin": {"notes_window", "dialogs", "store", "framework"} | PLATFORM,
    "host/core": {"framework"} | CORE_PLATFORM,
    "host/desk": {"host/core", "framework"} | PLATFORM,
    "cli": {"store", "framework", "host/core"} | CORE_PLATFORM,
    "tools": CORE_PLATFORM,
    "cmake": set(),
    "bench": ANYTHING,
    "examples": {"framework", "platform/dao", "platform/toolbar/api", "platform/controls/api"},
    "tour": ANYTHING,
    "tests": ANYTHING,
}

# Rooms that may use windows; all others see Qt Core alone.
WINDOW_ROOMS = {
    "platform/forms", "platform/toolbar", "platform/controls", "platform/richtext",
    "dialogs", "notes_window", "addin", "host/desk", "examples", "tour", "tests", "bench",
}
CORE_LIBRARIES = {"QtCore"}
WINDOW_LIBRARIES = {"QtCore", "QtGui", "QtWidgets", "QtPrintSupport"}
TEST_LIBRARIES = WINDOW_LIBRARIES | {"QtDBus", "QtTest"}

# Header of an engine -> the only rooms that may include it.
ENGINES = {
    "sqlite3.h": {"platform/dao/sqlite", "tests", "bench"},
    "hunspell/hunspell.hxx": {"platform/spelling"},
    "mdbtools.h": {"platform/jet/reader"},
}

# Rooms that show and collect. What asks for rows and what writes as one is said elsewhere.
SHOWING = ("dialogs", "notes_window", "addin", "host/desk", "cli")
SQL = re.compile(r'"[^"\n]*(?:\b(?:SELECT|INSERT INTO|DELETE FROM|WHERE|ORDER BY)\b|'
                 r"\]\s*(?:=|<|>|(?:Like|Is|In|Between|DESC)\b))[^\"\n]*\"|\bdao::Transaction\b")

# Rooms whose classes may not be looked at for circles: what is put together there, or checks.
OUTSIDE = ("tests", "bench", "tour", "examples", "cmake")

# Circles of classes that stand, the largest first to go; this list only ever gets shorter. The
# contract of host and add-in is one of records that know their collection, collections that know
# their application, and an application that hands out its data helper.
KNOWN_CIRCLES = [
    {"framework/HostDataHelper", "framework/IApplication", "framework/ICollection",
     "framework/IRecord"},
]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
QT_HEADERS = "/usr/include/*/qt6"


def room_of(path):
    """The room that a file (relative to the root) lies in: the longest that fits."""
    fitting = [room for room in ROOMS if path.startswith(room + "/")]
    return max(fitting, key=len, default=None)


def qt_libraries():
    """Header name -> the Qt libraries that offer it."""
    found = {}
    for folder in glob.glob(QT_HEADERS + "/Qt*"):
        library = pathlib.Path(folder).name
        for header in pathlib.Path(folder).iterdir():
            found.setdefault(header.name, set()).add(library)
    return found


def sources(root):
    for path in sorted(root.rglob("*")):
        relative = path.relative_to(root)
        hidden = any(part.startswith(".") for part in relative.parts)
        if path.suffix in (".cpp", ".h") and not hidden and relative.parts[0] != "build":
            yield relative.as_posix()


class Checker:
    def __init__(self, root, known_circles=()):
        self.root = root
        self.known_circles = known_circles
        self.qt = qt_libraries()
        self.faults = []
        self.includes = {}

    def run(self):
        if not self.qt:
            self.faults.append(f"no Qt headers in {QT_HEADERS}: is qt6-base-dev installed?")
        for file in sources(self.root):
            self.check_file(file)
        self.check_cycles()
        self.check_classes()
        return self.faults

    def check_file(self, file):
        room = room_of(file)
        own = self.includes.setdefault(file, [])
        if room is None:
            self.faults.append(f"{file}: lies in no room that the table of rooms knows")
            return
        text = (self.root / file).read_text(encoding="utf-8")
        for number, line in enumerate(text.splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            where, header = f"{file}:{number}", match[2]
            if match[1] == '"':
                own.append(header)
                self.check_own(where, room, header)
            else:
                self.check_outside(where, room, header)
        if room in SHOWING:
            for number, line in enumerate(text.splitlines(), 1):
                if SQL.search(line.split("//")[0]):
                    self.faults.append(f"{file}:{number}: {room} says what the data layer is asked")

    def check_own(self, where, room, header):
        if header.endswith(".moc"):
            return
        if not (self.root / header).is_file():
            self.faults.append(f"{where}: there is no {header} below the root")
            return
        target, allowed = room_of(header), ROOMS[room]
        if target == room or target in GROUND or allowed is ANYTHING or target in allowed:
            return
        self.faults.append(f"{where}: {room} may not call {target} ({header})")

    def check_outside(self, where, room, header):
        if room not in ENGINES.get(header, {room}):
            self.faults.append(f"{where}: {room} may not include an engine's header ({header})")
        library, _, name = header.rpartition("/")
        if header.startswith("Qt") and (library or header in CORE_LIBRARIES | TEST_LIBRARIES):
            self.faults.append(f"{where}: include single Qt headers, not {header}")
            return
        allowed = CORE_LIBRARIES
        if room in WINDOW_ROOMS:
            allowed = TEST_LIBRARIES if room in ("tests", "tour", "bench") else WINDOW_LIBRARIES
        offering = self.qt.get(name, set()) if name.lower().startswith("q") else set()
        if offering and not offering & allowed:
            self.faults.append(f"{where}: {room} may not use {min(offering)} ({header})")

    def check_cycles(self):
        state = {}

        def visit(file, way):
            state[file] = "open"
            for header in self.includes.get(file, []):
                if state.get(header) == "open":
                    circle = way[way.index(header):] + [header]
                    self.faults.append("includes in a circle: " + " -> ".join(circle))
                elif header not in state:
                    visit(header, way + [header])
            state[file] = "done"

        for file in self.includes:
            if file not in state:
                visit(file, [file])


    def check_classes(self):
        found = []
        for room in ROOMS:
            files = [file for file in self.includes if room_of(file) == room]
            if room not in OUTSIDE:
                found += class_circles.class_circles(self.root, files)
        for circle in found:
            if not any(set(circle) <= known for known in self.known_circles):
                self.faults.append("classes in a circle: " + ", ".join(circle))
        for known in self.known_circles:
            if known not in map(set, found):
                self.faults.append("the list has a circle that is gone or smaller: "
                                   + ", ".join(sorted(known)))


def main(arguments):
    root = pathlib.Path(arguments[0] if arguments else ".").resolve()
    faults = Checker(root, KNOWN_CIRCLES).run()
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

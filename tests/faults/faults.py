#!/usr/bin/env python3
"""faults.py BIN [--long] [--only NAME]: does to the built programs in BIN what disks, crashes,
colleagues and hostile files do, and prints for each kind how often it was tried, how often nothing
was lost, what was lost, the longest that anybody waited, and the most memory that a program took.

Everything happens in a folder of its own, with settings, registry and drafts of its own. Without
--long each kind is tried a few times only. Exit status 1 when anything was lost or died.
"""
import argparse
import json
import os
import pathlib
import random
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds after which a program counts as frozen
NOBODY = 65534
DIED = {signal.SIGSEGV, signal.SIGABRT, signal.SIGBUS, signal.SIGXFSZ, signal.SIGFPE, signal.SIGILL}


class Result:
    """What came of one kind of fault."""

    def __init__(self, name):
        self.name, self.tried, self.lost = name, 0, []
        self.seconds, self.megabytes = 0.0, 0.0

    def took(self, run):
        self.seconds = max(self.seconds, run.seconds)
        self.megabytes = max(self.megabytes, run.megabytes)
        if run.frozen:
            self.lost.append(f"no answer within {PATIENCE} s: {run.what}")
        if -run.status in DIED:
            self.lost.append(f"ended by signal {-run.status}: {run.what}")

    def require(self, good, what):
        if not good:
            self.lost.append(what)


class Run:
    """A program that has ended: status, output, time, memory."""

    def __init__(self, arguments, env, prepare=None, patience=PATIENCE, **options):
        self.what = " ".join(arguments[1:])[:120]
        began = time.monotonic()
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            process = subprocess.Popen(arguments, env=env, stdin=subprocess.DEVNULL, stdout=out,
                                       stderr=err, preexec_fn=prepare, **options)
            self.frozen = False
            while True:
                pid, status, usage = os.wait4(process.pid, os.WNOHANG)
                if pid:
                    break
                if time.monotonic() - began > patience:
                    self.frozen = True
                    process.kill()
                    pid, status, usage = os.wait4(process.pid, 0)
                    break
                time.sleep(0.002)
            process.returncode = self.status = os.waitstatus_to_exitcode(status)
            self.seconds = time.monotonic() - began
            self.megabytes = usage.ru_maxrss / 1024
            out.seek(0)
            err.seek(0)
            self.out = out.read().decode(errors="replace")
            self.err = err.read().decode(errors="replace")


class Place:
    """A workgroup's folder with its host's data, and a user's home."""

    def __init__(self, bin_folder):
        self.bin = pathlib.Path(bin_folder).resolve()
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="yrw-faults-"))
        self.data = self.root / "data"
        self.db = self.data / "Notes.mdb"
        self.env = dict(os.environ, QT_QPA_PLATFORM="offscreen")
        for name in ("DATA", "CONFIG", "STATE", "CACHE"):
            self.env[f"XDG_{name}_HOME"] = str(self.root / f"home-{name.lower()}")
        self.env["XDG_RUNTIME_DIR"] = str(self.root / "runtime")
        (self.root / "runtime").mkdir(mode=0o700)
        self.data.mkdir(exist_ok=True)
        self.program("yrwregister", str(self.bin / "libyrwnotes.so"))
        shutil.copyfile(self.bin / "DB/YRWNOTES/Notes.mdb", self.db)
        self.program("busydesk", "--data", str(self.data), "--make")
        self.clean = self.root / "clean"
        shutil.copytree(self.data, self.clean)

    def renew(self):
        """The folder as it was first, without notes."""
        shutil.rmtree(self.data)
        shutil.copytree(self.clean, self.data)
        shutil.rmtree(self.root / "home-state", ignore_errors=True)

    def program(self, name, *arguments, **options):
        return Run([str(self.bin / name), *arguments], self.env, **options)

    def command(self, *arguments, **options):
        return self.program("yrwnotes", "--data", str(self.data), "--user", "ANNA", *arguments,
                            **options)

    def add(self, subject, *more):
        run = self.command("add", "--subject", subject, *more)
        return int(run.out) if run.status == 0 else None

    def notes(self):
        """Id -> subject, as the engine's own reader sees the file."""
        with sqlite3.connect(self.db, timeout=10) as base:
            return dict(base.execute("SELECT RecordID, Subject FROM tblNotes"))

    def is_sound(self):
        return self.command("check").status == 0

    def folder_names(self):
        return sorted(path.name for path in self.data.iterdir())


def start(place, *arguments, **options):
    return subprocess.Popen([str(place.bin / arguments[0]), *arguments[1:]], env=place.env,
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, text=True, **options)


def killed_commands(place, result, long):
    """A note is there with its reminder or not at all, and what was answered stays."""
    known, order = {}, random.Random(1)
    for turn in range(200 if long else 15):
        subject = f"killed {turn}"
        process = start(place, "yrwnotes", "--data", str(place.data), "--user", "ANNA", "add",
                        "--subject", subject, "--text", "x" * order.randrange(20000), "--remind",
                        "me", "--at", "2020-01-01 10:00")
        time.sleep(order.random() * 0.12)
        process.kill()
        answer = process.communicate()[0].strip()
        if answer:
            known[int(answer)] = subject
        result.tried += 1
    notes = place.notes()
    for key, subject in known.items():
        result.require(notes.get(key) == subject, f"note {key} was answered and is gone")
    with sqlite3.connect(place.db) as base:
        alone = base.execute("SELECT count(*) FROM tblNotes WHERE ReminderType <> 0 AND RecordID "
                             "NOT IN (SELECT NoteID FROM tblReminders)").fetchone()[0]
    result.require(alone == 0, f"{alone} notes without their reminder")
    result.require(place.is_sound(), "check finds faults")


def killed_hosts(place, result, long):
    """Saved notes and reminders stay, typed text is kept as a draft and offered again."""
    note = place.add("Busy", "--owner", "cu:1", "--auto-show", "--text", "saved text")
    for number in range(5):
        place.add(f"Due {number}", "--remind", "me", "--at", "2020-01-01 10:00")
    order, wants_draft = random.Random(2), False
    for turn in range(50 if long else 2):
        text = f" typed{turn}"
        host = start(place, "busydesk", "--data", str(place.data), "--popups", "5", "--text", text)
        seen, typed_at = [], None
        for line in host.stdout:
            seen.append(line.strip())
            if line.strip() == "typed":
                typed_at = time.monotonic()
            if line.strip() == "ready" or line.startswith("missing"):
                break
        result.require(seen[-1:] == ["ready"], f"run {turn}: {seen[-1:]}")
        if wants_draft:
            result.require(any("box" in line for line in seen), f"run {turn}: no draft offered")
        time.sleep(order.random() * 3.5)
        wants_draft = typed_at is not None and time.monotonic() - typed_at > 2.6
        host.kill()
        host.wait()
        result.tried += 1
        drafts = list((place.root / "home-state").rglob("*.draft"))
        if wants_draft:
            result.require(any(text.strip() in path.read_text(errors="replace") for path in drafts),
                           f"run {turn}: typed text is in no draft")
        due = json.loads(place.command("reminders", "--due", "--json").out or "[]")
        result.require(len(due) == 5, f"run {turn}: {len(due)} of 5 reminders are due")
        shown = place.command("show", str(note), "--text").out
        result.require("saved text" in shown, f"run {turn}: the saved text is gone")
    result.require(place.is_sound(), "check finds faults")


def flipped_header(place, result, long):
    """Nothing dies over a header with a flipped bit, and none leaves copies each time."""
    place.add("Flip")
    good = place.db.read_bytes()
    order = random.Random(3)
    places = [(byte, bit) for byte in range(100) for bit in range(8)]
    by_host = {(byte, order.randrange(8)) for byte in range(100)}
    if not long:
        places = order.sample(places, 20) + [(60, 7)]  # the sign of the schema number
        by_host = {(60, 7)}
    for byte, bit in places:
        bad = bytearray(good)
        bad[byte] ^= 1 << bit
        place.db.write_bytes(bad)
        for _ in range(2):
            before = place.folder_names()
            result.took(place.command("list"))
        result.require(place.folder_names() == before, f"byte {byte} bit {bit} leaves files")
        result.tried += 1
        if (byte, bit) in by_host:
            place.db.write_bytes(bad)
            host = place.program("busydesk", "--data", str(place.data), "--look")
            result.took(host)
            result.require(host.status == 0, f"byte {byte} bit {bit}: host {host.status}")
            result.tried += 1
        for path in place.data.glob("Notes*"):
            path.unlink()
    place.db.write_bytes(good)


def killed_writers(place, result, long):
    """A file that a killed program was writing is the old one or the new one, and alone."""
    for number in range(60):
        place.add(f"Long {number}", "--text", "text " * 4000)
    target, order = place.root / "files" / "out", random.Random(5)
    target.parent.mkdir(exist_ok=True)
    for turn in range(100 if long else 10):
        target.write_bytes(b"before")
        words = ("backup", str(target)) if turn % 2 else ("export", "--format", "json", "--output",
                                                          str(target))
        before = set(target.parent.iterdir())
        process = start(place, "yrwnotes", "--data", str(place.data), *words)
        time.sleep(order.random() * 0.06)
        process.kill()
        process.communicate()
        result.require(target.read_bytes() == b"before" or target.stat().st_size > 1_000_000,
                       f"turn {turn}: half a file")
        for left in set(target.parent.iterdir()) - before:
            result.require(turn % 2, f"turn {turn}: {left.name} is left")
            os.utime(left, (1, 1))
        result.tried += 1
    result.require(place.command("backup", str(target)).status == 0, "no backup")
    left = [path.name for path in target.parent.iterdir()]
    result.require(left == [target.name], f"left at the end: {left}")


def damaged_pages(place, result, long):
    """Overwritten bytes anywhere end no program."""
    for number in range(30):
        place.add(f"Page {number}", "--text", "word " * 300)
    good, order = place.db.read_bytes(), random.Random(4)
    for _ in range(150 if long else 8):
        bad = bytearray(good)
        for _ in range(order.randrange(1, 60)):
            bad[order.randrange(100, len(bad))] = order.randrange(256)
        place.db.write_bytes(bad)
        for words in (("list",), ("check",), ("list", "--find", "word")):
            result.took(place.command(*words))
        result.tried += 1
    place.db.write_bytes(good)


def full_disk(place, result, long):
    """A file that does not fit is not there, or as it was; the exit status says so."""
    for number in range(20):
        place.add(f"Full {number}", "--text", "text " * 40)
    target = place.root / "out"
    for words in (("export", "--format", "csv", "--output", str(target)),
                  ("export", "--format", "html", "--output", str(target)),
                  ("backup", str(target))):
        target.unlink(missing_ok=True)
        whole = place.command(*words)
        result.require(whole.status == 0, f"{words[0]} fails on an empty disk: {whole.err}")
        size = target.stat().st_size
        step = max(1, size // (200 if long else 6))
        for limit in range(0, size, step):
            target.unlink(missing_ok=True)
            if words[0] == "export":
                target.write_bytes(b"before")
            run = place.command(*words, prepare=lambda most=limit: resource.setrlimit(
                resource.RLIMIT_FSIZE, (most, most)))
            result.took(run)
            result.require(run.status == 3, f"{words[0]} with {limit} bytes: status {run.status}")
            left = target.read_bytes() if target.exists() else b"before"
            result.require(left == b"before", f"{words[0]} with {limit} bytes left {len(left)}")
            result.tried += 1


def reader_only(place, result, long):
    """Who may only read sees what is committed, leaves nothing, and is told at a write."""
    place.add("Seen")
    for path in (place.root, place.data):
        path.chmod(0o755)
    place.db.chmod(0o644)
    for turn in range(20 if long else 3):
        place.add(f"Later {turn}")
        before = place.folder_names()
        seen = place.command("list", "--json", user=NOBODY, group=NOBODY)
        result.took(seen)
        result.require(f"Later {turn}" in seen.out, f"turn {turn}: not seen: {seen.err}")
        result.require(place.folder_names() == before, f"turn {turn}: files are left")
        write = place.command("add", "--subject", "Not mine", user=NOBODY, group=NOBODY)
        result.require(write.status == 3 and write.err, "a write without the right is not refused")
        result.require(place.add(f"Owner {turn}") is not None, "the owner is locked out")
        result.tried += 1
    result.require("Not mine" not in place.notes().values(), "a reader has written")


def replaced_file(place, result, long):
    """A file that is put in place of the open one keeps its rows; the old journal stays out."""
    for turn in range(10 if long else 2):
        place.renew()
        place.add("Busy", "--owner", "cu:1", "--auto-show")
        copy = place.data / "restored"
        result.require(place.command("backup", str(copy)).status == 0, "no backup")
        host = start(place, "busydesk", "--data", str(place.data), "--text", f"lost{turn}")
        for line in host.stdout:
            if line.strip() in ("ready",) or line.startswith("missing"):
                break
        place.add("After the copy")
        with sqlite3.connect(copy) as base:
            base.executemany("INSERT INTO tblNotes (Subject) VALUES (?)",
                             [(f"restored {number}",) for number in range(50)])
        base.close()
        os.replace(copy, place.db)
        time.sleep(0.2)
        host.send_signal(signal.SIGTERM)
        try:
            host.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            host.kill()
            host.wait()
            result.lost.append("the host does not end")
        found = place.command("list", "--json")
        result.took(found)
        kept = sum(1 for row in json.loads(found.out or "[]") if "restored" in row["Subject"])
        result.require(kept == 50, f"{kept} of 50 restored notes are left")
        result.tried += 1


def foreign_journal(place, result, long):
    """The journal that a killed program left beside a file is not played into another file."""
    script = ("import os, sqlite3, sys; b = sqlite3.connect(sys.argv[1]); "
              "b.execute('PRAGMA journal_mode=WAL'); "
              "b.execute(\"UPDATE tblNotes SET Subject = 'Theirs'\"); b.commit(); os._exit(0)")
    for turn in range(20 if long else 3):
        place.renew()
        key, copy = place.add("Ours"), place.root / "restored.mdb"
        copy.unlink(missing_ok=True)
        result.require(place.command("backup", str(copy)).status == 0, "no backup")
        subprocess.run([sys.executable, "-c", script, str(place.db)], check=True)
        os.replace(copy, place.db)
        seen = place.command("show", str(key))
        result.took(seen)
        result.require(seen.status == 0 and "Ours" in seen.out and "Theirs" not in seen.out,
                       f"turn {turn}: the journal of another file was played in: {seen.err}")
        result.tried += 1


HOSTILE_SQL = {
    "delNoteByID": ["ATTACH 'file:{secret}' AS s", "DELETE FROM tblNotes",
                    "UPDATE tblNotes SET PlainNote = readfile('{secret}')",
                    "DELETE FROM tblReminders; DROP TABLE tblNotes"],
    "qryActiveReminders": ["WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                           "SELECT count(*) AS RecordID FROM n",
                           "SELECT load_extension('{secret}') AS RecordID",
                           "SELECT randomblob(2000000000) AS RecordID"],
}


def hostile_queries(place, result, long):
    """A stored query that a colleague changed reaches no other file and stops nobody for long."""
    secret = place.root / "secret.mdb"
    with sqlite3.connect(secret) as base:
        base.execute("CREATE TABLE t (a)")
        base.execute("INSERT INTO t VALUES ('hush-7731')")
    base.close()
    before = secret.read_bytes()
    for name, texts in HOSTILE_SQL.items():
        for text in texts:
            place.renew()
            keep, gone = place.add("Keep"), place.add("Gone")
            with sqlite3.connect(place.db) as base:
                base.execute("UPDATE tblQueries SET SQL = ? WHERE Name = ?",
                             (text.format(secret=secret), name))
            base.close()
            words = ("delete", str(gone)) if name == "delNoteByID" else ("reminders", "--due")
            result.took(place.command(*words, patience=20))
            result.require(secret.read_bytes() == before, f"a private file was changed: {text}")
            result.require(b"hush-7731" not in place.db.read_bytes(), f"a private file leaks: {text}")
            named = place.command("check")
            result.require(named.status == 1 and name in named.out + named.err,
                           f"check does not name {name}: {text}")
            result.tried += 1
            if text != "DELETE FROM tblNotes":
                result.require(keep in place.notes(), f"another note is gone: {text}")


def hostile_text(place, result, long):
    """Rich text made to exhaust a reader is read within seconds and a few hundred megabytes."""
    sizes = (200_000, 10_000_000) if long else (200_000,)
    for size in sizes:
        for name, text in (
                ("groups", "{" * (size // 2)),
                ("tables", "".join(f"\\trowd\\cellx1\\intbl\\itap{n} x" for n in range(size // 30))),
                ("cells", "\\trowd" + "\\cellx9" * (size // 7)),
                ("fonts", "{\\fonttbl" + "{\\f1 A;}" * (size // 8) + "}"),
                ("pictures", "{\\pict\\pngblip " + "89504e47" * (size // 8) + "}"),
                ("unicode", "\\u-10179?\\u-8704?" * (size // 17))):
            file = place.root / "hostile.rtf"
            file.write_text("{\\rtf1 " + text + "}", encoding="ascii")
            for words in (("rtf", str(file)), ("rtf", str(file), "--to", "html"),
                          ("add", "--subject", name, "--rtf", str(file))):
                run = place.command(*words)
                result.took(run)
                result.require(run.status in (0, 3), f"{name}: status {run.status}")
            result.tried += 1


def eight_upgraders(place, result, long):
    """Programs that all find an older database open it all, and one of them upgrades it."""
    for turn in range(40 if long else 3):
        place.renew()
        place.add("Old")
        with sqlite3.connect(place.db) as base:
            for kind, name in base.execute(
                    "SELECT type, name FROM sqlite_master WHERE name LIKE 'tblNotesT%' AND "
                    "(type = 'trigger' OR name IN ('tblNotesText', 'tblNotesToIndex'))").fetchall():
                base.execute(f"DROP {kind} {name}")
            base.execute("PRAGMA user_version = 1")
        base.close()
        began = time.monotonic()
        running = [start(place, "yrwnotes", "--data", str(place.data), "list") for _ in range(8)]
        for process in running:
            out = process.communicate(timeout=PATIENCE)[0]
            result.require(process.returncode == 0 and "Old" in out,
                           f"turn {turn}: status {process.returncode}")
        result.seconds = max(result.seconds, time.monotonic() - began)
        copies = list(place.data.glob("Notes.mdb.schema*"))
        result.require(len(copies) <= 1, f"turn {turn}: {len(copies)} copies")
        result.tried += 8


def network_locks(place, result, long):
    """On a database marked for the network, programs write one after another."""
    with sqlite3.connect(place.db) as base:
        base.execute("PRAGMA journal_mode = DELETE")
    base.close()
    turns = 20 if long else 4
    script = ('for i in $(seq %d); do "$0" --data "$1" --user ANNA add --subject "$2 $i" || exit 1;'
              " done" % turns)
    running = [subprocess.Popen(
        ["bash", "-c", script, str(place.bin / "yrwnotes"), str(place.data), f"writer {number}"],
        env=place.env, stdout=subprocess.DEVNULL) for number in range(4)]
    for process in running:
        result.require(process.wait(PATIENCE) == 0, "a writer failed")
    result.tried = 4 * turns
    result.require(len(place.notes()) == 4 * turns, f"{len(place.notes())} of {4 * turns} notes")


KINDS = [killed_commands, killed_hosts, killed_writers, flipped_header, damaged_pages, full_disk,
         reader_only, replaced_file, foreign_journal, hostile_queries, hostile_text, eight_upgraders,
         network_locks]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("bin")
    parser.add_argument("--long", action="store_true")
    parser.add_argument("--only", choices=[kind.__name__ for kind in KINDS])
    options = parser.parse_args()
    place = Place(options.bin)
    failed = False
    print(f"{'kind':18} {'tried':>6} {'lost':>5} {'longest':>9} {'memory':>9} {'took':>6}")
    try:
        for kind in KINDS:
            if options.only not in (None, kind.__name__):
                continue
            place.renew()
            result, began = Result(kind.__name__), time.monotonic()
            kind(place, result, options.long)
            print(f"{result.name:18} {result.tried:6} {len(result.lost):5} "
                  f"{result.seconds:7.2f} s {result.megabytes:6.0f} MB "
                  f"{time.monotonic() - began:4.0f} s", flush=True)
            for line in result.lost[:10]:
                print(f"    {line}")
            failed = failed or bool(result.lost)
    finally:
        shutil.rmtree(place.root, ignore_errors=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())

"""The layering check passes a tree in order and names the line of each kind of fault."""
import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import check_layering  # noqa: E402

# Files of a tree in order: a case adds one file, or replaces one.
GOOD = {
    "platform/component/Event.h": "#include <functional>\n",
    "platform/clock/Clock.h": "#include <QDateTime>\n",
    "platform/dao/Database.h": '#include "platform/clock/Clock.h"\n',
    "platform/dao/sqlite/Engine.cpp": '#include "platform/dao/Database.h"\n#include <sqlite3.h>\n',
    "platform/forms/Form.h": '#include "platform/component/Event.h"\n#include <QWidget>\n',
    "store/Notes.h": '#include "platform/dao/Database.h"\n',
    "dialogs/frmReminder.h": '#include "store/Notes.h"\n#include "platform/forms/Form.h"\n',
    "tests/dao/Engine_test.cpp": '#include "platform/dao/Database.h"\n#include <sqlite3.h>\n',
}

# (what is wrong, file, text, what the fault says)
BAD = [
    ("a room calls one that stands below it", "platform/clock/Own.h",
     '#include "store/Notes.h"\n', "platform/clock may not call store"),
    ("a room calls one above it that is not named", "store/Own.h",
     '#include "platform/forms/Form.h"\n', "store may not call platform/forms"),
    ("the engine's folder is looked into", "store/Own.cpp",
     '#include "platform/dao/sqlite/Statement.h"\n', "store may not call platform/dao/sqlite"),
    ("an engine's header", "platform/dao/Dao.cpp", "#include <sqlite3.h>\n",
     "platform/dao may not include an engine's header"),
    ("windows in the store", "store/Own.cpp", "#include <QLabel>\n", "store may not use QtWidgets"),
    ("windows by another spelling", "framework/Own.cpp", "#  include <qpixmap.h>\n",
     "framework may not use QtGui"),
    ("test input in a window", "dialogs/Own.cpp", "#include <QTest>\n", "dialogs may not use QtTest"),
    ("a whole Qt library", "dialogs/Own.cpp", "#include <QtWidgets>\n", "include single Qt headers"),
    ("a Qt header by way of its library", "dialogs/Own.cpp", "#include <QtGui/QFont>\n",
     "include single Qt headers"),
    ("not written from the root", "store/Own.cpp", '#include "Notes.h"\n', "there is no Notes.h"),
    ("a folder that is no room", "misc/Own.cpp", "", "lies in no room"),
    ("a query in a window", "dialogs/Own.cpp", 'open(QStringLiteral("SELECT a.* FROM a"));\n',
     "dialogs says what the data layer is asked"),
    ("a condition in a window", "dialogs/Own.cpp", 'setFilter("[Status]=1");\n',
     "dialogs says what the data layer is asked"),
    ("an order in a window", "dialogs/Own.cpp", 'sort = u"[" + field + u"] DESC";\n',
     "dialogs says what the data layer is asked"),
    ("a transaction in a window", "dialogs/Own.cpp", "dao::Transaction all(database);\n",
     "dialogs says what the data layer is asked"),
    ("a circle", "platform/clock/Clock.h", '#include "platform/clock/Other.h"\n',
     "platform/clock/Clock.h -> platform/clock/Other.h -> platform/clock/Clock.h"),
]
HELPERS = {
    "platform/dao/sqlite/Statement.h": "",
    "platform/clock/Other.h": '#include "platform/clock/Clock.h"\n',
}


# Two classes of a room; a case adds what the second one says of the first.
CIRCLE = {
    "addin/Popup.h": '#include "addin/Round.h"\nclass Popup final : public Round {\n};\n',
    "addin/Round.h": "class Round {\n    void round();\n};\n",
}

# (what it is, files beside those, units of the circle that is found)
CIRCLES = [
    ("one way only", {}, ""),
    ("a forward declaration", {"addin/Round.h": "class Popup;\nstruct Round {\n};\n"},
     "addin/Popup, addin/Round"),
    ("the source", {"addin/Round.cpp": '#include "addin/Round.h"\nRef<Popup> popup;\n'},
     "addin/Popup, addin/Round"),
    ("a source of the class by another name",
     {"addin/RoundTurn.cpp": '#include "addin/Round.h"\nPopup* popup;\n'},
     "addin/Popup, addin/Round"),
    ("by way of a third", {"addin/Round.cpp": '#include "addin/Round.h"\nTurn turn;\n',
                           "addin/Turn.h": "class Popup;\nclass Turn {\n};\n"},
     "addin/Popup, addin/Round, addin/Turn"),
    ("comments, texts, members and calls", {"addin/Round.cpp":
     '#include "addin/Round.h"\n// Popup\nQString text = "Popup"; auto a = b.Popup; Popup();\n'},
     ""),
    ("a nested class of that name", {"addin/Round.h":
     "class Round {\n    class Popup {\n    };\n    Popup popup;\n};\n",
     "addin/Popup.h": "class Round;\n"}, ""),
    ("a class of another room", {"addin/Round.cpp": '#include "addin/Round.h"\nForm form;\n',
                                 "dialogs/Form.h": "class Round;\nclass Form {\n};\n"}, ""),
    ("interfaces alone", {"addin/IRound.h": "class IPopup;\nclass IRound {\n};\n",
                          "addin/IPopup.h": "class IRound;\nclass IPopup {\n};\n"}, ""),
]


def faults_of(files, known_circles=()):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text in files.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        return check_layering.Checker(root, known_circles).run()


class CheckLayeringTest(unittest.TestCase):
    def test_a_tree_in_order_passes(self):
        self.assertEqual(faults_of(GOOD), [])

    def test_each_fault_is_found_and_named(self):
        for what, file, text, words in BAD:
            with self.subTest(what):
                faults = faults_of({**GOOD, **HELPERS, file: text})
                self.assertEqual(len(faults), 1, faults)
                self.assertIn(words, faults[0])
                self.assertTrue(file in faults[0])

    def test_no_room_can_reach_itself(self):
        def reachable(room, seen):
            for other in (check_layering.ROOMS[room] or set()) - seen:
                seen.add(other)
                reachable(other, seen)
            return seen

        for room in check_layering.ROOMS:
            self.assertNotIn(room, reachable(room, set()))

    def test_circles_of_classes_are_found_and_named(self):
        for what, files, units in CIRCLES:
            with self.subTest(what):
                faults = faults_of({**CIRCLE, **files})
                self.assertEqual(faults, ["classes in a circle: " + units] if units else [])

    def test_the_list_of_circles_only_gets_shorter(self):
        known = [{"addin/Popup", "addin/Round"}]
        standing = {**CIRCLE, "addin/Round.h": "class Popup;\nclass Round {\n};\n"}
        self.assertEqual(faults_of(standing, known), [])
        larger = {**standing, "addin/Round.cpp": '#include "addin/Round.h"\nTurn turn;\n',
                  "addin/Turn.h": "class Popup;\nclass Turn {\n};\n"}
        self.assertEqual(len(faults_of(larger, known)), 2)
        self.assertIn("gone", faults_of(CIRCLE, known)[0])

    def test_this_tree_passes(self):
        self.assertEqual(check_layering.Checker(ROOT, check_layering.KNOWN_CIRCLES).run(), [])


if __name__ == "__main__":
    unittest.main()

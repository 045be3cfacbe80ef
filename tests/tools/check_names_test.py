"""The naming check lets house style and listed names through and finds the rest."""
import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import check_names  # noqa: E402

LIST = """
| Prefix | Meaning | Example |
|---|---|---|
| `frm` | form | `frmMain` |
| `cmd` | button | `cmdForm` |

| Object | Events of |
|---|---|
| `Form` | the form |

| Object | Names |
|---|---|
| a note | `Status`, `RecordID` |
"""

GOOD = """
/// Calls Strange(1) and says "int Stranger();" in words.
class frmMain final : public Form {
    Q_OBJECT
public:
    frmMain();
    [[nodiscard]] virtual int Status() const = 0;
    void setStatus(int status) { emitStatus(Wrapped(status)); }
    Ref<Thing> thing() const { return Thing(m_thing); }
    void Form_Load();
    void cmdForm_Click(int index);
    static Event<int> RecordID;
private:
    QPushButton* cmdForm = nullptr;
    int m_thing = 0;
};
struct Thing;
class Wrapped : public QString {};
struct sqlite3;
"""

# (what is wrong, a declaration, the name in the fault)
BAD = [
    ("a function that is not listed", "int Count() const;", "Count"),
    ("a pointer result", "QString *Count();", "Count"),
    ("another spelling of a listed name", "int RecordId();", "RecordId"),
    ("a member", "Event<> Ticked;", "Ticked"),
    ("a class", "class theForm {};", "theForm"),
    ("an event of an unknown object", "void Grid_Scroll();", "Grid_Scroll"),
    ("a prefix that goes on in small letters", "void cmdform_Click();", "cmdform_Click"),
]


def faults_of(header, names=LIST):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "docs").mkdir()
        (root / "docs/names.md").write_text(names, encoding="utf-8")
        (root / "Own.h").write_text(header, encoding="utf-8")
        return check_names.check(root)


class CheckNamesTest(unittest.TestCase):
    def test_house_style_and_listed_names_pass(self):
        self.assertEqual(faults_of(GOOD), [])

    def test_each_fault_is_found_with_its_line(self):
        for what, declaration, name in BAD:
            with self.subTest(what):
                faults = faults_of("\n" + declaration + "\n")
                self.assertTrue(faults)
                self.assertTrue(all("Own.h:2: " in fault and name in fault for fault in faults))

    def test_the_list_has_one_spelling_per_name(self):
        faults = faults_of("", LIST + "| another | `Recordid` |\n")
        self.assertEqual(len(faults), 1)
        self.assertIn("docs/names.md", faults[0])

    def test_this_tree_passes(self):
        self.assertEqual(check_names.check(ROOT), [])


if __name__ == "__main__":
    unittest.main()

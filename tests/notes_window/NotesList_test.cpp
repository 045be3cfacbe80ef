// The list: what it shows, in what order, and what choosing a row does.
#include "tests/notes_window/WindowFixture.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

namespace yrw::test {

class NotesList : public WindowFixture {
protected:
    /// Notes 1 active, 2 done, 3 active with a reminder, 4 active and written by BEN.
    void addFour() {
        first = store.addNote("First", customer);
        done = store.addNote("Second", customer);
        done->setDone(true);
        reminded = store.addNote("Third", customer);
        reminded->Field("ReminderType")->setValue(int(ReminderKind::Me));
        reminded->Field("AutomaticallyShow")->setValue(true);
        store.actAs(2);
        bens = store.addNote("Fourth", customer);
        store.actAs(1);
    }
    Ref<Note> first;
    Ref<Note> done;
    Ref<Note> reminded;
    Ref<Note> bens;
};

TEST_F(NotesList, ShowsTheActiveNotesOfTheOwnerAndTheFirstOnesText) {
    addFour();
    store.addNote("Other customer", store.hostRecord("cu", 2));
    store.addNote("No record");
    open(customer);
    EXPECT_EQ(keys(), QStringList({keyOf(first), keyOf(reminded), keyOf(bens)}));
    EXPECT_EQ(texts(keyOf(reminded)),
              QStringList({"10/03/2026 09:00", "Third", "Active", "Y", "Anna Ash"}));
    EXPECT_EQ(texts(keyOf(bens)).last(), "Ben Birch");
    EXPECT_EQ(list().selectedKey(), keyOf(first));
    EXPECT_TRUE(editor().isEnabled());
    EXPECT_EQ(window->windowTitle(), "YRW Notes - (Customer: Quill & Son)");
}

TEST_F(NotesList, WithoutOwnerShowsTheNotesOnNoRecord) {
    addFour();
    const Ref<Note> system = store.addNote("No record");
    open(nullptr);
    EXPECT_EQ(keys(), QStringList({keyOf(system)}));
    EXPECT_EQ(window->windowTitle(), "YRW System Notes");
}

TEST_F(NotesList, CaptionsWhileItOpensAndLater) {
    window = std::make_unique<frmMain>(store);
    const QSignalSpy titles(window.get(), &QWidget::windowTitleChanged);
    window->Initialise(addIn, nullptr, 0);
    window->BuildNotesList();
    QStringList seen;
    for (const QVariantList& title : titles) {
        seen.append(title[0].toString());
    }
    EXPECT_EQ(seen,
              QStringList({" [Showing Active]", "YRW System Notes", "YRW Notes [Showing Active]"}));
}

TEST_F(NotesList, DatesAreTheSameInEveryLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    store.addNote("First", customer);
    open(customer);
    EXPECT_EQ(texts(list().items().keyAt(0)).first(), "10/03/2026 09:00");
    press(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(editor().Text(), "10/03/2026 ");
    QLocale::setDefault(before);
}

TEST_F(NotesList, StylesOfRows) {
    addFour();
    open(customer);
    EXPECT_FALSE(list().items().isBold(keyOf(first)));
    click("tooShowAll");
    EXPECT_TRUE(list().items().isBold(keyOf(first)));
    EXPECT_FALSE(list().items().foreColour(keyOf(first)).has_value());
    EXPECT_TRUE(list().items().isBold(keyOf(reminded)));
    EXPECT_EQ(list().items().foreColour(keyOf(reminded)), QColor(0, 0x80, 0));
    const auto remark = [this](const Ref<Note>& of) {
        const int row = list().items().rowOf(keyOf(of));
        return list().model()->index(row, 1).data(Qt::ToolTipRole).toString();
    };
    EXPECT_EQ(remark(first), "");
    EXPECT_EQ(remark(reminded), "has reminders");
    click("tooShowDone");
    EXPECT_EQ(texts(keyOf(done))[2], "Done");
    EXPECT_FALSE(list().items().foreColour(keyOf(done)).has_value()); // grey only among all
}

TEST_F(NotesList, SortsByTheTextsShownAndKeepsTheOrder) {
    const QList<QDateTime> dates{QDateTime(QDate(2026, 3, 2), QTime(8, 0)),
                                 QDateTime(QDate(2025, 12, 1), QTime(8, 0)),
                                 QDateTime(QDate(2026, 1, 3), QTime(8, 0))};
    QStringList added;
    for (const QDateTime& date : dates) {
        store.manualClock().setNow(date);
        added.append(keyOf(store.addNote(date.toString("MMM"), customer)));
    }
    open(customer);
    const auto clickHeader = [this](int column) {
        QHeaderView* header = list().header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(header->sectionPosition(column) + 10, 5));
    };
    EXPECT_EQ(keys(), added);
    clickHeader(0); // the date is the sort key from the start: this turns it round, day first
    EXPECT_EQ(keys(), QStringList({added[2], added[0], added[1]}));
    clickHeader(0);
    EXPECT_EQ(keys(), QStringList({added[1], added[0], added[2]}));
    clickHeader(1);
    EXPECT_EQ(keys(), QStringList({added[1], added[2], added[0]}));
    click("tooShowAll");
    EXPECT_EQ(keys(), QStringList({added[1], added[2], added[0]}));
    whenDialogOpens([](QWidget& dialog) {
        dialog.findChild<QLineEdit*>("txtSubject")->setText("Easter");
        clickIn(dialog, "cmdForm(0)");
    });
    press(Qt::Key_Insert);
    EXPECT_EQ(texts(keys()[1])[1], "Easter"); // goes to its place: Dec, Easter, Jan, Mar
}

TEST_F(NotesList, AskedForNote) {
    addFour();
    open(customer, idOf(bens));
    EXPECT_EQ(list().selectedKey(), keyOf(bens));
    open(customer, 4711); // not in the list: its own selection stays
    EXPECT_EQ(list().selectedKey(), keyOf(first));
}

TEST_F(NotesList, AFailureIsReportedAndTheWindowStays) {
    addFour();
    open(customer);
    store.closeDatabase();
    script.expectReport(1);
    click("tooShowDone");
    ASSERT_EQ(script.reports.size(), 1);
    EXPECT_EQ(script.reports[0].source, "YRWNOTES.frmMain.BuildNotesList");
    EXPECT_EQ(script.reports[0].message, "Could not Build the Notes List");
    EXPECT_EQ(script.reports[0].title, "Notes Problem");
    EXPECT_EQ(script.pointer, MousePointer::Default);
    EXPECT_FALSE(editor().isEnabled());
}

TEST_F(NotesList, ANoteThatIsGoneLeavesNoOtherTextInTheEditor) {
    addFour();
    first->Field("RTFNote")->setValue("{\\rtf1 one\\par}");
    open(customer);
    deleteNote(store.application(), idOf(reminded));
    script.expectReport(1);
    clickRow(keyOf(reminded));
    EXPECT_FALSE(editor().isEnabled());
    EXPECT_EQ(editor().Text(), QString());
}

TEST_F(NotesList, FindNarrowsByWordsInSubjectAndText) {
    addFour();
    first->Field("PlainNote")->setValue(QString::fromUtf8("Caf\u00e9 cr\u00e8me at noon"));
    open(customer);
    struct Case {
        const char* typed;
        QList<Ref<Note>> found;
    };
    const QList<Case> cases{{"FOURTH", {bens}},
                            {"hir", {reminded}},
                            {"creme cafe", {first}},
                            {"cafe third", {}},
                            {"  ", {first, reminded, bens}}};
    press(Qt::Key_F, Qt::ControlModifier);
    auto* field = window->findChild<QLineEdit*>("txtFind");
    ASSERT_TRUE(field->hasFocus());
    for (const Case& each : cases) {
        SCOPED_TRACE(each.typed);
        field->selectAll();
        QTest::keyClicks(field, each.typed);
        QStringList expected;
        for (const Ref<Note>& note : each.found) {
            expected.append(keyOf(note));
        }
        EXPECT_EQ(keys(), expected);
        EXPECT_EQ(editor().isEnabled(), !expected.isEmpty());
    }
    press(Qt::Key_Escape);
    EXPECT_FALSE(field->isVisible());
    EXPECT_FALSE(window->isUnloaded());
    EXPECT_EQ(list().items().rowCount(), 3);
}

namespace {

void addMany(TestStore& store, const Ref<IRecord>& customer, int notes) {
    store.addNote("Note 0", customer);
    store.database()->RunScript(
        QStringLiteral(
            "INSERT INTO tblNotes(Subject, Status, OwnerComponentProgID, OwnerObjectKey, "
            "OwnerRecordID) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM "
            "n WHERE i < %1) SELECT 'Note ' || i, 1, OwnerComponentProgID, "
            "OwnerObjectKey, OwnerRecordID FROM n, tblNotes")
            .arg(notes - 1));
}

/// A clock on which every look takes long, as work does on a slow disk; while it rests, none does.
class SlowClock final : public Clock {
public:
    [[nodiscard]] QDateTime now() const override { return instance().now(); }
    [[nodiscard]] qint64 monotonicMs() const override { return m_ms += isSlow ? 100 : 0; }
    bool isSlow = false;

private:
    mutable qint64 m_ms = 0;
};

} // namespace

class NotesListLong : public testing::Test {
protected:
    static constexpr int kNotes = 20'000;
    void SetUp() override {
        addMany(store, customer, kNotes);
        window = std::make_unique<frmMain>(store);
        window->Initialise(addIn, customer, 0);
        window->show();
        list = window->findChild<ListView*>("lsvMain");
    }
    void TearDown() override { window->unload(); }
    /// Runs a command that is slow, and presses Stop as soon as its progress is on the screen.
    void stopped(const std::function<void()>& command) {
        clock.isSlow = true;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, window.get(), [&] {
            auto* const shown = window->findChild<QWidget*>("prgLongWork");
            if (shown != nullptr && shown->isVisible()) {
                said = shown->findChild<QLabel*>()->text();
                QTest::mouseClick(shown->findChild<QPushButton*>(), Qt::LeftButton);
            }
        });
        timer.start(0);
        command();
        clock.isSlow = false;
    }
    void clickHeader(int column) const {
        QTest::mouseClick(list->header()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(list->header()->sectionPosition(column) + 10, 5));
    }
    void clickRow(int row) const {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualRect(list->model()->index(row, 0)).center());
    }
    [[nodiscard]] RichTextBox& editor() const {
        return *window->findChild<RichTextBox*>("rtxMain");
    }
    [[nodiscard]] QString status() const {
        return window->findChild<StatusBar*>("stbMain")->text();
    }
    /// Gives the note of a row a text of many lines that ends in "end".
    QString makeLong(int row) {
        const QString rtf = "{\\rtf1 " + QString("line\\par ").repeated(20'000) + "end}";
        const Ref<IRecord> note = noteOf(row);
        note->BeginMultipleFieldUpdate();
        note->Field("RTFNote")->setValue(rtf);
        note->EndMultipleFieldUpdate();
        return rtf;
    }
    [[nodiscard]] Ref<IRecord> noteOf(int row) {
        return store.notesOf(customer)->Item(
            QVariant(list->items().keyAt(row).mid(2).toLongLong()));
    }
    void waitForTexts() const {
        ASSERT_TRUE(QTest::qWaitFor([&] { return list->items().missing() == 0; }, 60000));
    }

    PromptScript script;
    SlowClock clock;
    TestStore store{QString(), &clock};
    Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    Ref<IRecord> customer = store.hostRecord("cu", 1);
    std::unique_ptr<frmMain> window;
    ListView* list = nullptr;
    QString said; ///< by the progress
};

TEST_F(NotesListLong, ARebuildShowsProgressAndStops) {
    auto& toolbar = *window->findChild<Toolbar*>("atbMain");
    stopped([&] { toolbar.activate("tooShowAll"); });
    EXPECT_TRUE(said.contains("so far")) << said.toStdString();
    const int read = list->items().rowCount();
    EXPECT_GT(read, 0);
    EXPECT_LT(read, kNotes);
    EXPECT_TRUE(window->findChild<StatusBar*>("stbMain")->text().startsWith("Stopped"));
    EXPECT_EQ(list->selectedKey(), "xn1"); // and the window works on what there is
    waitForTexts();
    EXPECT_EQ(list->items().text(list->items().keyAt(read - 1), 1),
              QStringLiteral("Note %1").arg(read - 1));
    toolbar.activate("tooShowActive");
    EXPECT_EQ(list->items().rowCount(), kNotes);
}

TEST_F(NotesListLong, ALongNoteStopsWhereItIsAndIsNotSavedOver) {
    const QString rtf = makeLong(1);
    stopped([&] { clickRow(1); });
    EXPECT_TRUE(said.startsWith("Reading the note: ")) << said.toStdString();
    EXPECT_TRUE(status().startsWith("Stopped")) << status().toStdString();
    const QString shown = editor().Text();
    EXPECT_TRUE(shown.startsWith("line\r\nline")) << shown.left(40).toStdString();
    EXPECT_FALSE(shown.contains("end"));
    QGuiApplication::clipboard()->setText("clip");
    editor().setFocus();
    QTest::keyClicks(&editor(), "x");
    editor().selectAll();
    QTest::keySequence(&editor(), QKeySequence("Ctrl+V,Ctrl+Shift+V,Ctrl+B,Ctrl+S"));
    for (const char* tool :
         {"tooInsertDate", "tooInsertStamp", "tooBullets", "tooPaste", "tooClear", "tooPrint"}) {
        window->findChild<Toolbar*>("atbMain")->activate(tool);
    }
    EXPECT_EQ(editor().Text(), shown);
    clickRow(2);
    EXPECT_EQ(noteOf(1)->value("RTFNote"), rtf);
    QTest::keyClicks(&editor(), "other"); // the next note is whole
    clickRow(1);
    EXPECT_TRUE(editor().Text().endsWith("line\r\nend"));
    QTest::keyClicks(&editor(), "now ");
    clickRow(2);
    EXPECT_EQ(editor().Text(), "other");
    EXPECT_TRUE(noteOf(1)->value("PlainNote").toString().startsWith("now line"));
    EXPECT_TRUE(script.asked.empty());
}

TEST_F(NotesListLong, ALongPasteShowsProgressAndStopsWithoutAnEdit) {
    clickRow(1);
    QGuiApplication::clipboard()->setText(QString("line\n").repeated(20'000));
    editor().setFocus();
    const QSignalSpy changed(&editor(), &RichTextBox::contentChanged);
    stopped([&] { QTest::keySequence(&editor(), QKeySequence("Ctrl+V")); });
    EXPECT_EQ(changed.count(), 0);
    EXPECT_TRUE(said.startsWith("Pasting: ")) << said.toStdString();
    EXPECT_EQ(editor().Text(), "");
    EXPECT_FALSE(window->findChild<Toolbar*>("atbMain")->findTool("tooSave")->isEnabled());
    QTest::keySequence(&editor(), QKeySequence("Ctrl+V"));
    clickRow(2);
    EXPECT_EQ(noteOf(1)->value("PlainNote").toString().count("line"), 20'000);
    // One that shows less than is stored is never saved over.
    const QString rtf =
        "{\\rtf1\\trowd\\cellx900\\intbl " + QString("word ").repeated(250'000) + "\\cell\\row}";
    noteOf(3)->Field("RTFNote")->setValue(rtf);
    clickRow(3);
    EXPECT_TRUE(editor().Text().startsWith("This note has more tables"));
    EXPECT_TRUE(status().startsWith("This note has more tables")) << status().toStdString();
    QTest::keyClicks(&editor(), "x");
    QTest::keyClick(&editor(), Qt::Key_S, Qt::ControlModifier);
    clickRow(2);
    EXPECT_EQ(noteOf(3)->value("RTFNote"), rtf);
    EXPECT_TRUE(script.asked.empty());
}

TEST_F(NotesListLong, ALongNoteGivesWayToTheOneThatIsWantedNext) {
    makeLong(1);
    clickRow(2);
    QTest::keyClicks(&editor(), "second");
    clock.isSlow = true;
    QTimer::singleShot(0, window.get(), [&] { window->ShowNote(list->items().keyAt(2)); });
    clickRow(1);
    clock.isSlow = false;
    EXPECT_EQ(editor().Text(), "second");
    EXPECT_FALSE(editor().isReadOnly());
    EXPECT_EQ(noteOf(2)->value("PlainNote"), "second");
}

/// Remembers the texts that a status bar painted.
class StatusReader : public QObject {
public:
    explicit StatusReader(StatusBar& bar) : m_bar(bar) {
        bar.findChild<QLabel*>("statusText")->installEventFilter(this);
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            texts.append(m_bar.text());
        }
        return false;
    }
    QStringList texts;

private:
    StatusBar& m_bar;
};

TEST_F(NotesListLong, ALongSaveSaysHowFarItIs) {
    makeLong(1);
    clickRow(1);
    QTest::keyClicks(&editor(), "x");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    const StatusReader reader(*window->findChild<StatusBar*>("stbMain"));
    clock.isSlow = true;
    QTest::keyClick(&editor(), Qt::Key_S, Qt::ControlModifier);
    clock.isSlow = false;
    EXPECT_EQ(reader.texts.value(0), "Saving changes...");
    EXPECT_TRUE(reader.texts.contains("Saving changes: 50 %..."));
    EXPECT_EQ(status(), "Done");
    EXPECT_TRUE(noteOf(1)->value("PlainNote").toString().endsWith("line\r\nend"));
}

TEST_F(NotesListLong, ASortShowsProgressAndStopsWithTheOrderBefore) {
    waitForTexts();
    stopped([&] { clickHeader(1); });
    EXPECT_TRUE(said.startsWith("Sorting")) << said.toStdString();
    EXPECT_FALSE(list->isSorted());
    EXPECT_FALSE(list->header()->isSortIndicatorShown());
    EXPECT_EQ(list->items().keyAt(2), "xn3");
    EXPECT_EQ(list->selectedKey(), "xn1");
    clickHeader(1);
    EXPECT_EQ(list->items().text(list->items().keyAt(2), 1), "Note 10");
    stopped([&] { clickHeader(1); });
    EXPECT_EQ(list->sortOrder(), Qt::AscendingOrder);
    EXPECT_EQ(list->items().text(list->items().keyAt(2), 1), "Note 10");
}

// The texts follow the keys: what happens to the list before they are there.
TEST_F(NotesListLong, WorksBeforeEveryTextIsRead) {
    ASSERT_GT(list->items().missing(), 0);
    EXPECT_EQ(list->items().text("xn12345", 1), "Note 12344"); // far from what is shown
    store.database()->DeleteRows("tblNotes", "RecordID", 15'000);
    EXPECT_EQ(list->items().text("xn15000", 1), "(deleted meanwhile)");
    QTest::keyClicks(list, "note 1999");
    EXPECT_EQ(list->selectedKey(), "xn2000");
    EXPECT_EQ(list->items().missing(), 0);
    window->findChild<Toolbar*>("atbMain")->activate("tooShowAll");
    ASSERT_GT(list->items().missing(), 0);
    store.database()->RunScript("UPDATE tblNotes SET Status = 2 WHERE RecordID = 12000");
    EXPECT_EQ(list->items().text("xn12000", 2), "Done");
    EXPECT_EQ(list->items().foreColour("xn12000"), QColor(0x80, 0x80, 0x80));
    clickHeader(1);
    EXPECT_EQ(list->items().text(list->items().keyAt(2), 1), "Note 10");
    EXPECT_TRUE(list->items().isBold(list->items().keyAt(2)));
    EXPECT_EQ(list->selectedKey(), "xn2000");
}

TEST_F(NotesListLong, ATextThatCannotBeReadIsReportedOnce) {
    ASSERT_GT(list->items().missing(), 0);
    const int missing = list->items().missing();
    store.closeDatabase();
    script.expectReport(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->items().missing() == 0; }, 60000));
    ASSERT_EQ(script.reports.size(), 1);
    EXPECT_EQ(script.reports[0].message, "Could not Build the Notes List");
    EXPECT_EQ(list->items().rowCount(), kNotes - missing); // what was read stays
    store.openNotes();
}

TEST(NotesListFind, GoesOnWhileTheWindowLivesAndStopsWithTheBar) {
    PromptScript script;
    TestStore store(QString(), &Clock::instance()); // time passes, so that slices end
    const Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    const Ref<IRecord> customer = store.hostRecord("cu", 1);
    constexpr int notes = 20'000;
    addMany(store, customer, notes);
    frmMain window(store);
    window.Initialise(addIn, customer, 0);
    window.show();
    auto& list = *window.findChild<ListView*>("lsvMain");
    auto& field = *window.findChild<QLineEdit*>("txtFind");
    auto& found = *window.findChild<QLabel*>("lblFound");
    const auto type = [&](const char* text) {
        field.selectAll();
        QTest::keyClicks(&field, text);
    };
    QTest::keyClick(&list, Qt::Key_F, Qt::ControlModifier);
    type("o");
    EXPECT_TRUE(found.text().contains("so far")) << found.text().toStdString();
    EXPECT_GT(list.items().rowCount(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list.items().rowCount() == notes; }, 60000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return found.text() == "20000 of 20000"; }, 60000));
    type("note 1999");
    EXPECT_TRUE(QTest::qWaitFor([&] { return list.items().rowCount() == 12; }, 60000));
    EXPECT_EQ(list.selectedKey(), "xn2000"); // the first of those found
    type("e");
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(list.items().rowCount(), notes);
    QTest::qWait(100); // no slice of the stopped search narrows the list again
    EXPECT_EQ(list.items().rowCount(), notes);
    EXPECT_EQ(list.selectedKey(), "xn2000");
    window.unload();
}

} // namespace yrw::test

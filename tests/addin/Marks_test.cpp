// Which rows and cells of the host's grids are marked.
#include "tests/addin/AddInFixture.h"

#include "framework/Settings.h"

using namespace yrw;
using namespace yrw::test;

namespace {

class Marks : public AddInFixture {
protected:
    /// Background that the add-in gives the row of a record; -1: it leaves it alone.
    static int rowColour(const FakeController& controller, qint64 recordID) {
        RowStyle style;
        controller.grid->FetchRowStyle.raise(0, controller.placeOf(recordID), style);
        return style.hasBackColor() ? style.backColor() : -1;
    }
    static bool isMarked(const FakeController& controller, qint64 recordID) {
        return rowColour(controller, recordID) != -1;
    }
    /// The columns in which the row of a record is flagged.
    static QList<int> flags(const FakeController& controller, qint64 recordID) {
        QList<int> flagged;
        for (int column = 0; column < controller.grid->columnCount(); ++column) {
            CellStyle style;
            controller.grid->FetchCellStyle.raise(0, 0, controller.placeOf(recordID), column,
                                                  style);
            if (style.borderKind() != 0) {
                EXPECT_EQ(style.borderKind(), 6);
                EXPECT_EQ(style.borderColor(), 255);
                EXPECT_EQ(style.borderWidth(), 1);
                flagged += column;
            }
        }
        return flagged;
    }
    void define(const QString& layout, const QString& field) {
        const Ref<dao::Recordset> rows =
            Module1::instance().database()->OpenRecordset(schema::kTblLinkedColumnDefs);
        rows->AddNew();
        rows->setValue(u"GridLayoutName", layout);
        rows->setValue(u"GridField", field);
        rows->Update();
        rows->Close();
    }
    void run(const char* sql) { Module1::instance().database()->RunScript(QLatin1String(sql)); }
};

TEST_F(Marks, ARowIsMarkedByAnActiveNoteWithItsWholeOwnerKey) {
    activate();
    addNote(QStringLiteral("cu"), 1);
    addNote(QStringLiteral("cu"), 2, NoteStatus::Done);
    addNote(QStringLiteral("cu"), 3, NoteStatus::Active, QStringLiteral("Other.Application"));
    addNote(QStringLiteral("or"), 3);
    addNote({}, 2);
    EXPECT_EQ(rowColour(*window().upper, 1), 16761024);
    EXPECT_FALSE(isMarked(*window().upper, 2));
    EXPECT_FALSE(isMarked(*window().upper, 3));
    EXPECT_FALSE(isMarked(*window().lower, 1));
    EXPECT_TRUE(isMarked(*window().lower, 3));
    // The state is looked up anew at each paint.
    run("UPDATE tblNotes SET Status = 3 - Status;");
    EXPECT_FALSE(isMarked(*window().upper, 1));
    EXPECT_TRUE(isMarked(*window().upper, 2));
}

TEST_F(Marks, TheColourComesFromTheDatabaseAndHasADefault) {
    struct Case {
        const char* sql;
        int colour;
    };
    const Case cases[] = {
        {"UPDATE tblSettings SET HighlightRowColour = 65535;", 65535},
        {"UPDATE tblSettings SET HighlightRowColour = 0;", 16761024},
        {"UPDATE tblSettings SET HighlightRowColour = 255;", 255},
        {"UPDATE tblSettings SET HighlightRowColour = NULL;", 16761024},
        {"DELETE FROM tblSettings;", 16761024},
        {"DROP TABLE tblSettings;", 16761024},
    };
    activate();
    addNote(QStringLiteral("cu"), 1);
    for (const Case& one : cases) {
        run(one.sql);
        ASSERT_TRUE(addIn->Activate());
        EXPECT_EQ(rowColour(*window().upper, 1), one.colour) << one.sql;
    }
}

TEST_F(Marks, OnlyTheFirstAndOnlySplitOfAGridWithRecordIdsIsAskedFor) {
    makeNotesDatabase();
    create();
    ASSERT_TRUE(addIn->Activate());
    RecordGrid& grid = *window().upper->grid;
    EXPECT_FALSE(grid.fetchesRowStyle(0));
    window().showRecords();
    addNote(QStringLiteral("cu"), 1);
    EXPECT_TRUE(grid.fetchesRowStyle(0));
    EXPECT_TRUE(isMarked(*window().upper, 1));
    grid.setSplitCount(2);
    EXPECT_FALSE(isMarked(*window().upper, 1));
    EXPECT_TRUE(flags(*window().upper, 1).isEmpty());
    grid.setSplitCount(1);
    EXPECT_TRUE(isMarked(*window().upper, 1));

    // Changed while split: the next paint of the single split takes the rows up again.
    grid.setSplitCount(2);
    window().upper->setRecordset(grid.recordset());
    grid.setSplitCount(1);
    EXPECT_TRUE(isMarked(*window().upper, 1));
}

TEST_F(Marks, RowsWithoutARecordIdAreNeverMarked) {
    activate();
    addNote(QStringLiteral("cu"), 1);
    const dao::Bookmark place = window().upper->placeOf(1);
    const auto isPlaceMarked = [&] {
        RowStyle style;
        window().upper->grid->FetchRowStyle.raise(0, place, style);
        return style.hasBackColor();
    };
    ASSERT_TRUE(isPlaceMarked());
    window().upper->setRecordset(nullptr);
    EXPECT_FALSE(isPlaceMarked());
    window().upper->setRecordset(world.host->DAODatabase()->OpenRecordset(
        QStringLiteral("SELECT CustomerName FROM tblCustomers"), dao::RecordsetType::Dynaset));
    EXPECT_FALSE(isPlaceMarked());
}

TEST_F(Marks, EachSwitchActsAtTheNextPaintAlsoWhenBothWereOff) {
    activate();
    addNote(QStringLiteral("cu"), 1);
    const FakeController& upper = *window().upper;
    addIn->setSwitch(NotesSwitch::HighlightNotesRow, false);
    EXPECT_FALSE(isMarked(upper, 1));
    EXPECT_EQ(flags(upper, 1), QList<int>{0});
    addIn->setSwitch(NotesSwitch::FlagNotesRow, false);
    EXPECT_TRUE(flags(upper, 1).isEmpty());
    // A layout and rows that come while both are off are taken up when one goes on.
    window().showRecords();
    addIn->setSwitch(NotesSwitch::HighlightNotesRow, true);
    EXPECT_TRUE(isMarked(upper, 1));
    EXPECT_TRUE(flags(upper, 1).isEmpty());
    addIn->setSwitch(NotesSwitch::FlagNotesRow, true);
    EXPECT_EQ(flags(upper, 1), QList<int>{0});
}

TEST_F(Marks, SwitchesOffInTheSettingsAreTakenAtCreation) {
    SettingsStore store;
    NotesSettings(store).setBoolean(QStringLiteral("HighlightNotesRow"), false);
    NotesSettings(store).setText(QStringLiteral("FlagNotesRow"), QStringLiteral("rather not"));
    activate();
    addNote(QStringLiteral("cu"), 1);
    EXPECT_FALSE(window().upper->grid->fetchesRowStyle(0));
    EXPECT_FALSE(isMarked(*window().upper, 1));
    EXPECT_EQ(flags(*window().upper, 1), QList<int>{0}); // no Boolean text: the default
}

TEST_F(Marks, TheFlagColumnIsTheLinkedOneElseTheVisibleRecordIdElseNone) {
    activate();
    define(QStringLiteral("Orders"), QStringLiteral("customerid"));
    define(QStringLiteral("Other layout"), QStringLiteral("OrderNumber"));
    define(QStringLiteral("No \"such\" layout"), QStringLiteral("OrderNumber"));
    addNote(QStringLiteral("or"), 2);
    addNote(QStringLiteral("cu"), 2);
    window().showRecords();
    EXPECT_EQ(flags(*window().lower, 2), QList<int>{2});
    EXPECT_EQ(flags(*window().upper, 2), QList<int>{0});
    window().upper->show(*world.host, QStringLiteral("cu"), QStringLiteral("No \"such\" layout"),
                         {{QStringLiteral("RecordID"), QStringLiteral("Number"), 900, false},
                          {QStringLiteral("CustomerName"), QStringLiteral("Name")}});
    EXPECT_TRUE(flags(*window().upper, 2).isEmpty());
    EXPECT_TRUE(isMarked(*window().upper, 2));

    // The set-up is run again after a cell was changed, not before.
    window().showRecords();
    define(QStringLiteral("Customers"), QStringLiteral("CustomerName"));
    EXPECT_EQ(flags(*window().upper, 2), QList<int>{0});
    window().upper->grid->AfterColUpdate.raise(1);
    EXPECT_EQ(flags(*window().upper, 2), QList<int>{1});
}

TEST_F(Marks, TheFlagColumnDoesNotBecomeTheCurrentOne) {
    activate();
    RecordGrid& grid = *window().lower->grid;
    define(QStringLiteral("Orders"), QStringLiteral("CustomerID"));
    window().showRecords();
    grid.setCurrentRow(0);
    grid.setCurrentColumn(1);
    int changes = 0;
    const Connection counting = grid.RowColChange.connect([&](dao::Bookmark, int) { ++changes; });
    grid.setCurrentColumn(2);
    EXPECT_EQ(grid.currentColumn(), 1);
    EXPECT_EQ(changes, 2); // there and back, once
    addIn->setSwitch(NotesSwitch::FlagNotesRow, false);
    grid.setCurrentColumn(2);
    EXPECT_EQ(grid.currentColumn(), 2);
}

TEST_F(Marks, MovingOnClearsTheMessageAboutNotesAway) {
    activate();
    const auto mark = [&] {
        window().statusBar->setText(QStringLiteral("2 Note(s) Found...!!"));
        window().statusBar->setToolTipText(QStringLiteral("Notes"));
        window().statusBar->setTag(AutoNotes::kMarker);
    };
    const std::pair<const char*, std::function<void()>> moves[] = {
        {"RowColChange", [&] { window().upper->grid->RowColChange.raise({}, 0); }},
        {"Scroll", [&] { window().lower->grid->Scroll.raise(); }},
        {"AfterAddEditCanceled", [&] { window().lower->AfterAddEditCanceled.raise(); }},
        {"OnAddRow", [&] { window().upper->OnAddRow.raise(); }},
        {"StayOnRow", [&] { window().upper->StayOnRow.raise(); }},
        {"AfterRecordsetChange",
         [&] { window().upper->AfterRecordsetChange.raise(window().upper->grid->recordset()); }},
        {"DeActivate", [&] { addIn->DeActivate(); }},
    };
    for (const auto& [name, move] : moves) {
        mark();
        Form popup(AutoNotes::kFormName);
        popup.load();
        EXPECT_EQ(addIn->GetPopupFormCount(), 1);
        move();
        EXPECT_EQ(window().statusBar->text(), QString()) << name;
        EXPECT_EQ(window().statusBar->toolTipText(), QString()) << name;
        EXPECT_EQ(window().statusBar->tag(), QString()) << name;
        EXPECT_EQ(addIn->GetPopupFormCount(), 0) << name;
    }
    window().statusBar->setText(QStringLiteral("The host's own text"));
    window().upper->grid->Scroll.raise();
    EXPECT_EQ(window().statusBar->text(), QStringLiteral("The host's own text"));
}

} // namespace

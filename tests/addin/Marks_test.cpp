// Which rows and cells of the host's grids are marked.
#include "tests/addin/AddInFixture.h"

#include "tests/support/StoredSettings.h"

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

TEST_F(Marks, TheColourIsTakenWhenTheAddInIsActivated) {
    activate();
    addNote(QStringLiteral("cu"), 1);
    run("UPDATE tblSettings SET HighlightRowColour = 65535;");
    EXPECT_EQ(rowColour(*window().upper, 1), schema::kDefaultHighlight);
    ASSERT_TRUE(addIn->Activate());
    EXPECT_EQ(rowColour(*window().upper, 1), 65535);
}

TEST_F(Marks, AGridIsPaintedAnewWhenTheirSwitchChanges) {
    activate();
    window().show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
    int painted = 0;
    const Connection counting = window().upper->grid->FetchRowStyle.connect(
        [&](int, dao::Bookmark, RowStyle&) { ++painted; });
    for (const setting::Flag* which : {&setting::kHighlightNotesRow, &setting::kFlagNotesRow}) {
        QCoreApplication::processEvents();
        painted = 0;
        options().set(*which, false);
        EXPECT_TRUE(QTest::qWaitFor([&] { return painted > 0; }))
            << QString::fromUtf16(which->key).toStdString();
    }
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

TEST_F(Marks, SwitchesOffInTheSettingsAreTakenAtCreation) {
    SettingsStore store;
    NotesSettings(store).set(setting::kHighlightNotesRow, false);
    storeText(store, QStringLiteral("FlagNotesRow"), QStringLiteral("rather not"));
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
    options().set(setting::kFlagNotesRow, false);
    grid.setCurrentColumn(2);
    EXPECT_EQ(grid.currentColumn(), 2);
}

} // namespace

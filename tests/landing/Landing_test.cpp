// A user lands on records of the desk: what she does there, and what shows and goes.
#include "tests/landing/LandingFixture.h"

#include "platform/forms/Contrast.h"

#include <QAccessible>

using namespace yrw;
using namespace yrw::test;

namespace {

const QString kCu = QStringLiteral("cu");

class LandingOnTheDesk : public LandingFixture {
protected:
    void SetUp() override {
        open();
        addNote(kCu, 3, QStringLiteral("Ring"));
        addNote(kCu, 5, QStringLiteral("Quiet"), false);
        upperGrid().refresh();
    }
    /// Goes to customer 3, whose note then shows.
    void land() {
        upperGrid().setCurrentRow(0);
        upperGrid().setCurrentRow(2);
        ASSERT_TRUE(comesUp({QStringLiteral("Ring")}));
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window())); // the popup gives the keyboard back
    }
    [[nodiscard]] bool isMarked(RecordGrid& grid, qint64 row) {
        QApplication::processEvents();
        return grid.paintedRowColour(row) == colourOfBgr(schema::kDefaultHighlight);
    }
};

TEST_F(LandingOnTheDesk, TabGoesOnPastTheFlagColumn) {
    upperGrid().setFocus();
    upperGrid().setCurrentRow(1);
    upperGrid().setCurrentColumn(4);
    press(Qt::Key_Tab);
    EXPECT_EQ(upperGrid().currentRow(), 2);
    EXPECT_EQ(upperGrid().currentColumn(), 1);
    press(Qt::Key_Left);
    EXPECT_EQ(upperGrid().currentColumn(), 1);
}

TEST_F(LandingOnTheDesk, AnEditHoldsThePopupBackUntilItIsWritten) {
    upperGrid().setCurrentRow(2);
    upperGrid().setCurrentColumn(1);
    upperGrid().setFocus();
    type(QStringLiteral("New name"));
    QTest::qWait(400);
    EXPECT_EQ(popup(), nullptr); // nothing is shown over an edit
    press(Qt::Key_Return);
    EXPECT_TRUE(upperGrid().commitEdit());
    EXPECT_EQ(upperText("Name"), QStringLiteral("New name"));
    land();
    EXPECT_TRUE(window().mainStatusBar().toolTipText().contains(u"Customer: New name [ANNA"));
}

TEST_F(LandingOnTheDesk, ANoteFromAnotherMachineMarksItsRowAtTheNextPaint) {
    upperGrid().setCurrentRow(0);
    EXPECT_FALSE(isMarked(upperGrid(), 6));
    const Ref<dao::Workspace> elsewhere = dao::createWorkspace({m_clock, m_files});
    elsewhere->OpenDatabase(m_folder.filePath("data/Notes.mdb"))
        ->RunScript(QStringLiteral("INSERT INTO tblNotes (OwnerComponentProgID, OwnerObjectKey, "
                                   "OwnerRecordID) VALUES ('YRWDesk.Application', 'cu', 7);"));
    elsewhere->Close();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        upperGrid().refresh();
        return isMarked(upperGrid(), 6);
    }));
}

TEST_F(LandingOnTheDesk, AScreenReaderHearsThatARowHasNotes) {
    const auto reader = [&](qint64 row) {
        QAccessibleInterface* list =
            QAccessible::queryAccessibleInterface(upperGrid().findChild<QWidget*>("gridBody(0)"));
        return list->child(static_cast<int>(row));
    };
    EXPECT_TRUE(reader(2)->text(QAccessible::Name).endsWith(u", Has notes"));
    EXPECT_EQ(reader(2)->text(QAccessible::Description), QStringLiteral("Has notes\nRing"));
    EXPECT_FALSE(reader(3)->text(QAccessible::Name).contains(u"notes"));
    EXPECT_EQ(reader(3)->text(QAccessible::Description), QString());
}

} // namespace

#include "platform/component/AutomationError.h"
#include "platform/controls/GridRows.h"
#include "platform/forms/Contrast.h"
#include "tests/controls/GridFixture.h"
#include "tests/support/Pixels.h"

#include <QAccessible>
#include <QHeaderView>
#include <QScrollBar>
#include <QSet>

#include <functional>

using namespace yrw;

namespace {

constexpr int kMarkColour = 16761024; // light blue

TEST_F(GridTest, keysMoveTheCursorAndTheRecordset) {
    show(1000);
    EXPECT_EQ(grid->currentRow(), 0);
    EXPECT_TRUE(moves.isEmpty());
    const int page = grid->findChild<QScrollBar*>("gridScroll")->pageStep();
    const int height = grid->cellRect(0, 0).height();
    struct {
        Qt::Key pressed;
        Qt::KeyboardModifiers held;
        qint64 row;
        int column;
    } const steps[] = {
        {Qt::Key_Down, Qt::NoModifier, 1, 0},
        {Qt::Key_Right, Qt::NoModifier, 1, 1},
        {Qt::Key_Right, Qt::NoModifier, 1, 2},
        {Qt::Key_Right, Qt::NoModifier, 1, 4}, // the hidden column is passed over
        {Qt::Key_Right, Qt::NoModifier, 1, 4},
        {Qt::Key_Left, Qt::NoModifier, 1, 2},
        {Qt::Key_PageDown, Qt::NoModifier, 1 + page, 2},
        {Qt::Key_PageUp, Qt::NoModifier, 1, 2},
        {Qt::Key_End, Qt::NoModifier, 1, 4},
        {Qt::Key_Home, Qt::NoModifier, 1, 0},
        {Qt::Key_End, Qt::ControlModifier, 999, 0},
        {Qt::Key_Down, Qt::NoModifier, 999, 0},
        {Qt::Key_Home, Qt::ControlModifier, 0, 0},
        {Qt::Key_Up, Qt::NoModifier, 0, 0},
        {Qt::Key_Tab, Qt::NoModifier, 0, 1},
        {Qt::Key_Backtab, Qt::ShiftModifier, 0, 0},
        {Qt::Key_End, Qt::NoModifier, 0, 4},
        {Qt::Key_Tab, Qt::NoModifier, 1, 0},
        {Qt::Key_Backtab, Qt::ShiftModifier, 0, 4},
    };
    for (const auto& step : steps) {
        key(step.pressed, step.held);
        EXPECT_EQ(grid->currentRow(), step.row);
        EXPECT_EQ(grid->currentColumn(), step.column);
        EXPECT_EQ(rows->AbsolutePosition(), step.row);
        EXPECT_EQ(grid->cellRect(step.row, step.column).height(), height); // it is seen whole
    }
}

TEST_F(GridTest, rowColChangeTellsTheCellBefore) {
    show(5);
    const dao::Bookmark first = rows->Bookmark();
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    ASSERT_EQ(moves.size(), 2);
    EXPECT_EQ(moves.at(0), std::make_pair(first, 0));
    EXPECT_EQ(moves.at(1), std::make_pair(rows->Bookmark(), 0));
    // A handler may send the cursor on.
    const Connection sending = grid->RowColChange.connect([this](dao::Bookmark, int) {
        if (grid->currentColumn() == 2) {
            grid->setCurrentColumn(1);
        }
    });
    key(Qt::Key_Right);
    EXPECT_EQ(grid->currentColumn(), 1);
}

TEST_F(GridTest, mouseSelectsScrollsAndAsksForTheMenu) {
    show(1000);
    int menus = 0;
    int scrolls = 0;
    QObject::connect(grid, &RecordGrid::contextMenuWanted, grid, [&] { ++menus; });
    const Connection scrolling = grid->Scroll.connect([&] { ++scrolls; });
    clickCell(3, 2);
    EXPECT_EQ(grid->currentRow(), 3);
    EXPECT_EQ(grid->currentColumn(), 2);
    clickCell(4, 1, Qt::RightButton);
    EXPECT_EQ(grid->currentRow(), 4);
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(scrolls, 0);
    grid->setCurrentRow(500);
    EXPECT_EQ(scrolls, 0);
    auto* const bar = grid->findChild<QScrollBar*>("gridScroll");
    QTest::keyClick(bar, Qt::Key_PageDown);
    EXPECT_EQ(scrolls, 1);
    EXPECT_EQ(grid->currentRow(), 500);
    QTest::mouseDClick(body(), Qt::LeftButton, {}, QPoint(60, 5));
    EXPECT_EQ(activated, 1);
    key(Qt::Key_Return);
    EXPECT_EQ(activated, 2);
}

TEST_F(GridTest, editIsWrittenWhenTheCursorLeavesTheRow) {
    show(5);
    clickCell(1, 1);
    type("New");
    ASSERT_NE(editor(), nullptr);
    EXPECT_TRUE(grid->isEditing());
    key(Qt::Key_Tab);
    EXPECT_EQ(updated, QList<int>({1}));
    EXPECT_EQ(stored(2, u"Name"), "Customer 2");
    QAccessibleInterface* const reader = QAccessible::queryAccessibleInterface(body());
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(reader->child(row)->text(QAccessible::Name).contains("Name New"), row == 1);
    }
    type("12");
    key(Qt::Key_Down);
    EXPECT_EQ(updated, QList<int>({1, 2}));
    EXPECT_EQ(written, 1);
    EXPECT_EQ(stored(2, u"Name"), "New");
    EXPECT_EQ(stored(2, u"Orders"), 12);
    EXPECT_EQ(grid->currentRow(), 2);
    EXPECT_FALSE(grid->isEditing());
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(GridTest, escapeDropsTheEditAndF2KeepsTheText) {
    show(5);
    clickCell(0, 1);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(editor()->text(), "Customer 1");
    key(Qt::Key_End);
    type("x");
    key(Qt::Key_Return);
    EXPECT_EQ(updated, QList<int>({1}));
    EXPECT_TRUE(grid->isEditing());
    key(Qt::Key_Escape);
    EXPECT_EQ(canceled, 1);
    EXPECT_FALSE(grid->isEditing());
    EXPECT_FALSE(rows->EditInProgress());
    key(Qt::Key_Down);
    EXPECT_EQ(stored(1, u"Name"), "Customer 1");
    EXPECT_EQ(written, 0);
    // An edit without a change writes nothing.
    key(Qt::Key_F2);
    key(Qt::Key_Return);
    key(Qt::Key_Up);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(updated.size(), 1);
}

TEST_F(GridTest, readOnlyColumnsAndSnapshotsAreNotEdited) {
    show(5);
    clickCell(0, 0);
    type("5");
    EXPECT_EQ(editor(), nullptr);
    grid->setRecordset(database->OpenRecordset("tblCustomers", dao::RecordsetType::Snapshot));
    grid->setAllowAddNew(true);
    clickCell(0, 1);
    type("5");
    EXPECT_EQ(editor(), nullptr);
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(grid->currentRow(), 4);
}

TEST_F(GridTest, textThatDoesNotFitStaysInTheEditor) {
    show(5);
    clickCell(0, 2);
    type("abc");
    key(Qt::Key_Down);
    ASSERT_EQ(failures.size(), 1);
    EXPECT_TRUE(failures.first().contains("abc"));
    EXPECT_EQ(grid->currentRow(), 0);
    EXPECT_NE(editor(), nullptr);
    EXPECT_FALSE(grid->commitEdit());
    grid->cancelEdit();
    EXPECT_TRUE(grid->commitEdit());
    EXPECT_EQ(stored(1, u"Orders"), 1);
}

TEST_F(GridTest, conflictingWriteKeepsTheEditAndSaysWhy) {
    show(5);
    clickCell(0, 1);
    type("Mine");
    key(Qt::Key_Return);
    database->RunScript("UPDATE tblCustomers SET Name = 'Theirs' WHERE RecordID = 1");
    key(Qt::Key_Down);
    EXPECT_EQ(failures.size(), 1);
    EXPECT_EQ(grid->currentRow(), 0);
    EXPECT_TRUE(grid->isEditing());
    EXPECT_EQ(stored(1, u"Name"), "Theirs");
    key(Qt::Key_Escape);
    key(Qt::Key_Down);
    EXPECT_EQ(grid->currentRow(), 1);
}

TEST_F(GridTest, newRecordRowAddsARecord) {
    show(3);
    grid->setAllowAddNew(true);
    EXPECT_EQ(grid->rowCount(), 3);
    key(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(grid->currentRow(), 3);
    EXPECT_EQ(grid->addNewMode(), AddNewMode::AddNewCurrent);
    key(Qt::Key_Right);
    type("Fourth");
    EXPECT_EQ(grid->addNewMode(), AddNewMode::AddNewPending);
    EXPECT_EQ(started, 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(grid->addNewMode(), AddNewMode::AddNewCurrent);
    EXPECT_EQ(canceled, 1);
    type("Fourth");
    key(Qt::Key_Down);
    EXPECT_EQ(grid->rowCount(), 4);
    EXPECT_EQ(stored(4, u"Name"), "Fourth");
    EXPECT_EQ(grid->currentRow(), 4);
    EXPECT_EQ(grid->addNewMode(), AddNewMode::AddNewCurrent);
    EXPECT_TRUE(moves.last().first == rows->LastModified());
    key(Qt::Key_Up);
    EXPECT_EQ(grid->addNewMode(), AddNewMode::None);
    EXPECT_EQ(rows->value(u"Name"), "Fourth");
}

TEST_F(GridTest, stylesAreFetchedOncePerPaintedRowOfFetchingSplits) {
    show(1000);
    grid->setSplitCount(2);
    QApplication::processEvents();
    QList<int> splits;
    QSet<qint64> places;
    const Connection styling =
        grid->FetchRowStyle.connect([&](int split, dao::Bookmark row, RowStyle& style) {
            splits.append(split);
            places.insert(row.place());
            style.setBackColor(kMarkColour);
        });
    repaint();
    EXPECT_TRUE(splits.isEmpty());
    grid->setFetchRowStyle(0, true);
    grid->setFetchRowStyle(7, true);
    repaint();
    QApplication::processEvents();
    splits.clear();
    places.clear();
    repaint();
    EXPECT_EQ(splits.count(0), places.size());
    EXPECT_EQ(splits.count(1), 0);
    EXPECT_GE(places.size(), body()->height() / grid->cellRect(0, 0).height());
    EXPECT_LE(places.size(), 1 + body()->height() / grid->cellRect(0, 0).height());
    EXPECT_TRUE(grid->fetchesRowStyle(0));
    EXPECT_FALSE(grid->fetchesRowStyle(1));
    grid->setSplitCount(1);
    EXPECT_EQ(grid->splitCount(), 1);
}

TEST_F(GridTest, theCurrentRowTheMarkAndItsTextAreSeenOnEveryColour) {
    show(5);
    grid->setFetchRowStyle(0, true);
    grid->setCurrentRow(2);
    QColor mark;
    std::function<bool(qint64)> marks;
    const Connection styling =
        grid->FetchRowStyle.connect([&](int, dao::Bookmark row, RowStyle& style) {
            if (marks(row.place())) {
                style.setBackColor(bgrOfColour(mark));
            }
        });
    const std::function<bool(qint64)> patterns[] = {
        [](qint64) { return true; }, [](qint64 row) { return row == 2; },
        [](qint64 row) { return row != 2; }, [](qint64) { return false; }};
    for (const auto& [base, highlight] :
         {std::pair(QColor(Qt::white), QColor(0x30, 0x8c, 0xc6)),
          std::pair(QColor(0x2a, 0x2a, 0x2a), QColor(0x30, 0x60, 0xb0))}) {
        QPalette palette(base == QColor(Qt::white) ? QColor(0xef, 0xef, 0xef)
                                                   : QColor(0x35, 0x35, 0x35));
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Highlight, highlight);
        grid->setPalette(palette);
        for (const QColor& each : {colourOfBgr(kMarkColour), QColor(0xff, 0xff, 0x80), highlight}) {
            for (const auto& pattern : patterns) {
                mark = each;
                marks = pattern;
                repaint();
                const QImage image = body()->grab().toImage();
                const QRect cell = grid->cellRect(2, 2);
                const int top = body()->mapFrom(grid, cell.topLeft()).y();
                const int x = body()->mapFrom(grid, cell.center()).x() + cell.width();
                const int bottom = top + cell.height() - 1;
                const auto at = [&](int y) { return image.pixelColor(x, y); };
                EXPECT_GE(contrast(at(top), at(top - 4)), 3) << at(top).name().toStdString();
                EXPECT_GE(contrast(at(bottom), at(bottom + 4)), 3);
                const QColor own = grid->paintedRowColour(2);
                EXPECT_GE(std::max(contrast(at(top), own), contrast(at(top + 2), own)), 3);
                EXPECT_GE(std::max(contrast(at(bottom), own), contrast(at(bottom - 2), own)), 3);
                if (pattern(1)) { // the mark's own colour, and text that can be read on it
                    EXPECT_EQ(grid->paintedRowColour(1), mark);
                    const QRect text = grid->cellRect(1, 1).adjusted(4, 4, -100, -4);
                    EXPECT_TRUE(test::isSeen(grid->grab(text).toImage(), mark, 4.5));
                }
                // A corner of the row's mark tells it from others.
                const int row = body()->mapFrom(grid, grid->cellRect(1, 1).topLeft()).y();
                const QColor corner = image.pixelColor(17, row + 1);
                const QColor button = palette.color(QPalette::Button);
                EXPECT_EQ(contrast(corner, button) >= 3, pattern(1));
            }
        }
    }
    EXPECT_FALSE(grid->paintedRowColour(77).isValid());
}

TEST_F(GridTest, cellFrameIsPaintedInItsColour) {
    show(5);
    grid->setFetchCellStyle(0, true);
    const Connection styling =
        grid->FetchCellStyle.connect([](int, int, dao::Bookmark, int column, CellStyle& style) {
            if (column == 1) {
                style.setBorderKind(6);
                style.setBorderColor(255);
                style.setBorderWidth(1);
            }
        });
    const auto redPixels = [this](int column) {
        const QImage image = grid->grab(grid->cellRect(2, column)).toImage();
        return test::pixelsOf(image, [](const QColor& pixel) { return pixel == QColor(Qt::red); });
    };
    EXPECT_GT(redPixels(1), 200);
    EXPECT_EQ(redPixels(2), 0);
}

TEST_F(GridTest, failingHandlerLeavesTheRowUnmarked) {
    show(5);
    grid->setFetchRowStyle(0, true);
    const Connection styling = grid->FetchRowStyle.connect(
        [](int, dao::Bookmark, RowStyle&) { throw AutomationError(1, "handler", "fails"); });
    repaint();
    EXPECT_EQ(grid->paintedRowColour(2), grid->palette().color(QPalette::Base));
}

TEST_F(GridTest, deletedRowAndClosedRecordsetDoNoHarm) {
    show(5);
    database->RunScript("DELETE FROM tblCustomers WHERE RecordID = 3");
    repaint();
    rows->Requery();
    grid->setRecordset(rows);
    EXPECT_EQ(grid->rowCount(), 4);
    rows->Close();
    repaint();
    key(Qt::Key_Down);
    grid->setRecordset({});
    EXPECT_EQ(grid->rowCount(), 0);
    EXPECT_EQ(grid->currentRow(), -1);
    key(Qt::Key_Down);
    repaint();
}

TEST_F(GridTest, headersResizeClickAndFollowTheSplits) {
    show(5);
    grid->setSplitCount(2);
    QStringList clicked;
    QObject::connect(grid, &RecordGrid::headerClicked, grid,
                     [&](const QString& field) { clicked.append(field); });
    auto* const header = grid->findChild<QHeaderView*>("gridHeader(0)");
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(100, 5));
    EXPECT_EQ(clicked, QStringList("Name"));
    header->resizeSection(1, 50);
    EXPECT_EQ(grid->columns().at(1).widthTwips, 750);
    EXPECT_EQ(grid->findChild<QHeaderView*>("gridHeader(1)")->sectionSize(1), 50);
    EXPECT_TRUE(grid->cellRect(0, 3).isEmpty());
    EXPECT_EQ(grid->columnOf("NAME"), 1);
    EXPECT_EQ(grid->columnOf("Nothing"), -1);
}

TEST_F(GridTest, screenReadersSeeTheRowsInView) {
    show(1000);
    grid->setAccessibleName("Upper grid");
    key(Qt::Key_Right);
    grid->setCurrentRow(500);
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(body());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->text(QAccessible::Name), "Upper grid");
    EXPECT_LT(list->childCount(), 30);
    QAccessibleInterface* const row = list->focusChild();
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->text(QAccessible::Name),
              "Row 501: No 501, Name Customer 501, Orders 4, Since 01/06/2026 12:00");
    EXPECT_EQ(row->text(QAccessible::Value), "Name Customer 501");
    EXPECT_TRUE(row->state().focused);
    EXPECT_EQ(list->child(list->indexOfChild(row)), row);
    EXPECT_EQ(list->childAt(row->rect().center().x(), row->rect().center().y()), row);
    EXPECT_EQ(list->child(list->childCount()), nullptr);
}

TEST(GridRowsTest, textsBecomeValuesOfTheirType) {
    using dao::FieldType;
    struct {
        QString text;
        FieldType type;
        std::optional<QVariant> value;
    } const cases[] = {
        {"", FieldType::Long, QVariant()},
        {"12", FieldType::Long, QVariant(qint64(12))},
        {"3000000000", FieldType::Long, std::nullopt},
        {"40000", FieldType::Integer, std::nullopt},
        {"1.5", FieldType::Double, QVariant(1.5)},
        {"yes", FieldType::Boolean, QVariant(true)},
        {"-1", FieldType::Boolean, QVariant(true)},
        {"perhaps", FieldType::Boolean, std::nullopt},
        {"02/01/2026 08:05", FieldType::Date, QVariant(QDateTime({2026, 1, 2}, {8, 5}))},
        {"31/02/2026", FieldType::Date, std::nullopt},
        {" x ", FieldType::Text, QVariant(" x ")},
        {"", FieldType::Text, QVariant()},
        {"x", FieldType::Binary, std::nullopt},
    };
    for (const auto& [text, type, value] : cases) {
        EXPECT_EQ(gridValue(text, type), value) << text.toStdString();
    }
    EXPECT_EQ(gridText(QDateTime({2026, 1, 2}, {8, 5})), "02/01/2026 08:05");
    EXPECT_EQ(gridText(QVariant()), "");
    EXPECT_EQ(gridText("a\nb"), "a b");
    EXPECT_EQ(gridText(1143.8), "1143.8");
    EXPECT_EQ(gridText(1143.8, 2), "1143.80");
}

} // namespace

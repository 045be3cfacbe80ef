// Ten thousand random events of both grids against a model of what must be marked and shown.
#include "tests/landing/LandingFixture.h"

#include "framework/Settings.h"
#include "platform/controls/Colours.h"

#include <array>
#include <optional>
#include <random>

using namespace yrw;
using namespace yrw::test;

namespace {

constexpr int kEvents = 10'000;
constexpr int kNotes = 60;
constexpr int kRecords = 25; ///< notes lie on the first records of each kind

struct ModelNote {
    qint64 id = 0;
    QString objectKey;
    qint64 recordID = 0;
    bool active = true;
    bool showsItself = true;
    QString subject;
};

/// What the user should see, from what has happened.
struct Model {
    std::map<qint64, ModelNote> notes;
    std::map<const setting::Flag*, bool> switches{{&setting::kHighlightNotesRow, true},
                                                  {&setting::kFlagNotesRow, true},
                                                  {&setting::kShowPopupWindow, true}};
    bool wantsPopup = true; ///< "ShowAutoPopup"
    bool active = true;     ///< the add-in
    QStringList popup;
    QString status;

    void clear() {
        popup.clear();
        status.clear();
    }
    void land(const QString& objectKey, qint64 recordID) {
        QStringList subjects;
        for (const auto& [id, note] : notes) {
            if (note.objectKey == objectKey && note.recordID == recordID && note.active &&
                note.showsItself) {
                subjects += note.subject;
            }
        }
        if (!subjects.isEmpty()) {
            status = QString::number(subjects.size()) + QStringLiteral(" Note(s) Found...!!");
            popup = wantsPopup ? subjects : QStringList();
        }
    }
    [[nodiscard]] bool marks(const QString& objectKey, qint64 recordID) const {
        return std::any_of(notes.begin(), notes.end(), [&](const auto& each) {
            return each.second.active && each.second.objectKey == objectKey &&
                   each.second.recordID == recordID;
        });
    }
};

class RandomEvents : public LandingFixture, public testing::WithParamInterface<unsigned> {
protected:
    struct Side {
        DeskGridController* controller = nullptr;
        QString objectKey;
    };

    void SetUp() override {
        open();
        sides = {Side{&window().upper(), QStringLiteral("cu")},
                 Side{&window().lower(), QStringLiteral("or")}};
        for (Side& side : sides) {
            follow(side);
        }
        for (int i = 0; i < kNotes; ++i) {
            add();
        }
        QTest::qWait(400); // the first rests are over
    }

    [[nodiscard]] int any(int count) { return static_cast<int>(random() % unsigned(count)); }
    [[nodiscard]] Side& anySide() { return sides[std::size_t(any(2))]; }

    /// Moves the model on with what the host raises; the add-in was connected before.
    void follow(Side& side) {
        const auto clears = [this](auto& event) {
            connections.push_back(event.connect([this](auto...) { model.clear(); }));
        };
        IRecordGrid& grid = *side.controller->Grid();
        clears(grid.RowColChange);
        clears(grid.Scroll);
        clears(side.controller->OnAddRow);
        clears(side.controller->AfterAddEditCanceled);
        connections.push_back(
            side.controller->AfterRecordsetChange.connect([this](const Ref<dao::Recordset>&) {
                if (model.active && (model.switches[&setting::kHighlightNotesRow] ||
                                     model.switches[&setting::kFlagNotesRow])) {
                    model.clear();
                }
            }));
        connections.push_back(side.controller->StayOnRow.connect([this, &side] {
            if (model.switches[&setting::kShowPopupWindow]) {
                model.clear();
                const qint64 id = side.controller->currentRecordID();
                if (model.active && id != 0 && window().canCheckNotes()) {
                    model.land(side.objectKey, id);
                }
            }
        }));
    }

    // What happens.
    void add() {
        ModelNote note;
        note.objectKey = any(3) == 0 ? QStringLiteral("or") : QStringLiteral("cu");
        note.recordID = 1 + any(kRecords);
        note.showsItself = any(3) != 0;
        note.subject = QStringLiteral("Note %1").arg(model.notes.size());
        note.id = addNote(note.objectKey, note.recordID, note.subject, note.showsItself);
        model.notes[note.id] = note;
    }
    void changeNote() {
        if (!model.active) {
            return; // the notes database is closed
        }
        ModelNote& note = std::next(model.notes.begin(), any(int(model.notes.size())))->second;
        const Ref<ICollection> notes = Module1::instance().application().Notes();
        switch (any(3)) {
        case 0:
            notes->Delete(QVariant(note.id));
            model.notes.erase(qint64(note.id));
            add();
            break;
        case 1:
            note.active = !note.active;
            notes->Item(QVariant(note.id))
                ->Field(QStringLiteral("Status"))
                ->setValue(note.active ? 1 : 2);
            break;
        default:
            note.showsItself = !note.showsItself;
            notes->Item(QVariant(note.id))
                ->Field(QStringLiteral("AutomaticallyShow"))
                ->setValue(note.showsItself);
            break;
        }
    }
    void flipSwitch() {
        auto flipped = std::next(model.switches.begin(), any(3));
        flipped->second = !flipped->second;
        NotesSettings(Module1::instance().services().settings)
            .set(*flipped->first, flipped->second);
    }
    void move(Side& side) {
        RecordGrid& grid = side.controller->grid();
        const qint64 rows = grid.rowCount();
        if (rows > 0) {
            grid.setCurrentRow(any(int(qMin<qint64>(rows + 1, kRecords))));
            grid.setCurrentColumn(any(grid.columnCount()));
        }
    }
    void bind(Side& side) {
        switch (any(4)) {
        case 0:
            side.controller->loadLayout(side.controller->layoutNames().at(any(3)));
            break;
        case 1:
            side.controller->sortBy(side.controller->grid().columnField(any(3)));
            break;
        case 2:
            side.controller->setFilterText(any(2) == 0 ? QString() : QString::number(any(4)));
            break;
        default:
            side.controller->setSplit(any(3) == 0);
            break;
        }
    }
    void typeNewRow(Side& side) {
        RecordGrid& grid = side.controller->grid();
        grid.setCurrentRow(grid.rowCount());
        grid.setFocus();
        QTest::keyClicks(&grid, QStringLiteral("x"));
        grid.cancelEdit();
    }
    void restart() {
        if (model.active) {
            addIn->DeActivate();
            model.clear();
        } else {
            EXPECT_TRUE(addIn->Activate());
        }
        model.active = !model.active;
    }
    void focusTick() {
        if (frmTimer* form = addIn->UpperTimerForm()) {
            const bool closes = popup() != nullptr && !window().isActiveWindow();
            Q_EMIT form->CheckWindowFocus();
            if (closes) {
                model.clear();
            }
        }
    }
    void switchPopup() {
        model.wantsPopup = !model.wantsPopup;
        NotesSettings(Module1::instance().services().settings)
            .set(setting::kShowAutoPopup, model.wantsPopup);
    }
    void happen() {
        Side& side = anySide();
        const int dice = any(100);
        if (dice < 35) {
            move(side);
        } else if (dice < 65) {
            side.controller->StayOnRow.raise();
        } else if (dice < 70) {
            side.controller->StayOnCell.raise();
        } else if (dice < 75) {
            side.controller->Grid()->Scroll.raise();
        } else if (dice < 82) {
            changeNote();
        } else if (dice < 87) {
            focusTick();
        } else if (dice < 91) {
            flipSwitch();
        } else if (dice < 93) {
            switchPopup();
        } else if (dice < 96) {
            bind(side);
        } else if (dice < 97) {
            restart();
        } else if (dice < 98) {
            typeNewRow(side);
        } else {
            QApplication::processEvents();
        }
    }

    // What must be so.
    void checkShown() {
        ASSERT_EQ(shownSubjects(), model.popup);
        ASSERT_EQ(addIn->GetPopupFormCount(), model.popup.isEmpty() ? 0 : 1);
        ASSERT_EQ(statusText(), model.status);
        ASSERT_EQ(window().mainStatusBar().tag(),
                  model.status.isEmpty() ? QString() : AutoNotes::kMarker);
    }
    [[nodiscard]] static QString flagField(const DeskGridController& controller) {
        if (controller.grid().columnField(0) == u"RecordID") {
            return QStringLiteral("RecordID");
        }
        return controller.grid().columnOf(QStringLiteral("CustomerNo")) >= 0
                   ? QStringLiteral("CustomerNo")
                   : QStringLiteral("OrderNo");
    }
    /// Asks for the styles of a row as a paint does.
    void checkRow(const Side& side, const Ref<dao::Recordset>& rows) {
        RecordGrid& grid = side.controller->grid();
        const qint64 id = rows->value(u"RecordID").toLongLong();
        const bool marked =
            model.active && grid.splitCount() < 2 && model.marks(side.objectKey, id);
        RowStyle rowStyle;
        if (grid.fetchesRowStyle(0)) {
            grid.FetchRowStyle.raise(0, rows->Bookmark(), rowStyle);
        }
        ASSERT_EQ(rowStyle.hasBackColor(), marked && model.switches[&setting::kHighlightNotesRow]);
        for (int column = 0; column < grid.columnCount(); ++column) {
            CellStyle style;
            if (grid.fetchesCellStyle(0)) {
                grid.FetchCellStyle.raise(0, 0, rows->Bookmark(), column, style);
            }
            ASSERT_EQ(style.borderKind() == 6,
                      marked && model.switches[&setting::kFlagNotesRow] &&
                          grid.columnField(column) == flagField(*side.controller))
                << qPrintable(side.controller->LayoutName()) << " column " << column;
        }
    }
    void checkMarks() {
        const Side& side = anySide();
        const Ref<dao::Recordset> shown = side.controller->Recordset();
        if (!shown || side.controller->grid().rowCount() == 0) {
            return;
        }
        const Ref<dao::Recordset> rows = shown->Clone();
        rows->setAbsolutePosition(
            any(int(qMin<qint64>(side.controller->grid().rowCount(), kRecords))));
        checkRow(side, rows);
        rows->Close();
    }
    /// The same for all rows on screen, as they are really painted.
    void checkScreen() {
        RecordGrid& grid = upperGrid();
        grid.grab();
        const Ref<dao::Recordset> rows = window().upper().Recordset()->Clone();
        for (qint64 row = 0; row < grid.rowCount(); ++row) {
            const QColor painted = grid.paintedRowColour(row);
            if (painted.isValid()) {
                rows->setAbsolutePosition(row);
                const bool marked =
                    model.active && grid.splitCount() < 2 &&
                    model.switches[&setting::kHighlightNotesRow] &&
                    model.marks(QStringLiteral("cu"), rows->value(u"RecordID").toLongLong());
                ASSERT_EQ(painted == colourOfBgr(schema::kDefaultHighlight), marked) << row;
            }
        }
    }

    std::mt19937 random{GetParam()};
    Model model;
    std::array<Side, 2> sides;
    std::vector<Connection> connections;
};

TEST_P(RandomEvents, WhatIsMarkedAndShownIsWhatMustBe) {
    for (int event = 0; event < kEvents; ++event) {
        SCOPED_TRACE(event);
        happen();
        ASSERT_NO_FATAL_FAILURE(checkShown());
        ASSERT_NO_FATAL_FAILURE(checkMarks());
        if (event % 50 == 0) {
            ASSERT_NO_FATAL_FAILURE(checkScreen());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEvents, testing::Values(20261124U));

} // namespace

// A host that fails to give an answer: only what needs it is missing, and the true cause is told.
#include "tests/addin/AddInFixture.h"
#include "tests/support/SilentPrompt.h"

#include "dialogs/frmAutoNotes.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

#include <ostream>

using namespace yrw;
using namespace yrw::test;

namespace {

/// What a user does with the notes of a host, each as a bit.
enum Use : unsigned {
    kActivates = 1U << 0,
    kHasTool = 1U << 1,
    kShows = 1U << 2,        ///< the notes window, for no record
    kShowsRecord = 1U << 3,  ///< the notes window, named after the record
    kAdds = 1U << 4,         ///< a note on no record
    kAddsReminder = 1U << 5, ///< a note with a reminder on the record
    kLands = 1U << 6,        ///< the popup of automatic notes
    kTells = 1U << 7,        ///< the message on the status bar
    kDblClicks = 1U << 8,    ///< opens the notes from there
    kMarks = 1U << 9,
    kReminds = 1U << 10,
    kAll = (1U << 11) - 1,
};

constexpr const char* kUseNames[] = {"activates", "has tool",      "shows",  "shows record",
                                     "adds",      "adds reminder", "lands",  "tells",
                                     "dblclicks", "marks",         "reminds"};

std::string namesOf(unsigned uses) {
    std::string names;
    for (unsigned i = 0; i < std::size(kUseNames); ++i) {
        if ((uses >> i & 1U) != 0) {
            names += std::string(names.empty() ? "" : ", ") + kUseNames[i];
        }
    }
    return names;
}

enum class When { Missing, Raising, VanishingLater };

/// What is lost without an answer, and a pattern of the cause that everything said of it names;
/// nothing is said where it is empty.
struct Loss {
    unsigned uses = 0;
    const char* told = "";
};

struct Row {
    const char* name;
    HostAnswer answer;
    Loss losses[3]; ///< in the order of `When`
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name;
}

class BareHost : public AddInFixture, public testing::WithParamInterface<std::tuple<Row, When>> {
protected:
    /// A database with a note that shows by itself on the first customer, and a reminder of it.
    void seed() {
        makeNotesDatabase();
        const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
        workspace->OpenDatabase(world.notesPath())
            ->RunScript(QStringLiteral(
                "INSERT INTO tblNotes (RecordID, Date, Subject, Status, AutomaticallyShow, "
                "OwnerComponentProgID, OwnerObjectKey, OwnerRecordID, RecordUserID) VALUES "
                "(1, '2026-03-10 08:00:00', 'Ring back', 1, 1, 'Test.Application', 'cu', 1, 1);"
                "INSERT INTO tblReminders (NoteID, UserID, OriginalDate, NextDate, Status) VALUES "
                "(1, 1, '2026-03-10 08:00:00', '2026-03-10 08:30:00', 1);"));
        workspace->Close();
    }
    [[nodiscard]] qint64 rowsOf(const QString& table) {
        const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
        const Ref<dao::Recordset> rows =
            workspace->OpenDatabase(world.notesPath())
                ->OpenRecordset(u"SELECT * FROM " + table, dao::RecordsetType::Snapshot);
        qint64 count = 0;
        for (; !rows->AtEof(); rows->MoveNext()) {
            ++count;
        }
        workspace->Close();
        return count;
    }
    /// Opens a notes window, adds a note in it and closes it. True when it was there.
    bool useWindow(const std::function<void()>& open, bool reminds, QString& title) {
        bool shown = false;
        const auto window = once(QStringLiteral("frmMain"), [&](Form& form) {
            shown = true;
            title = form.windowTitle();
            const auto dialog = once(QStringLiteral("frmNoteProperties"), [&](Form& properties) {
                properties.findChild<QLineEdit*>(QStringLiteral("txtSubject"))
                    ->setText(QStringLiteral("Added"));
                properties.findChild<QCheckBox*>(QStringLiteral("chkReminder"))
                    ->setChecked(reminds);
                QTest::mouseClick(properties.findChild<QPushButton*>(QStringLiteral("cmdForm(0)")),
                                  Qt::LeftButton);
                if (properties.isVisible()) {
                    QTest::keyClick(&properties, Qt::Key_Escape);
                }
            });
            QTest::keyClick(&form, Qt::Key_Insert);
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        open();
        return shown;
    }
    void use(unsigned what, bool works) { uses |= works ? what : 0; }

    void showNotes() {
        QString title;
        const qint64 before = rowsOf(QStringLiteral("tblNotes"));
        use(kShows,
            useWindow([&] { window().componentBar->activate(kNotesToolKey); }, false, title));
        use(kAdds, rowsOf(QStringLiteral("tblNotes")) == before + 1);
        window().upper->grid->setCurrentRow(1);
        const qint64 reminders = rowsOf(QStringLiteral("tblReminders"));
        window().interfaceBar->BandOpen.raise(
            *window().interfaceBar->Toolbar::findBand(kGridBandKey));
        useWindow([&] { window().interfaceBar->activate(kNotesToolKey); }, true, title);
        use(kShowsRecord, title == QStringLiteral("YRW Notes - (Customer: Ferry Lane)"));
        use(kAddsReminder, rowsOf(QStringLiteral("tblReminders")) == reminders + 1);
    }
    void land() {
        window().upper->grid->setCurrentRow(0);
        window().upper->StayOnRow.raise();
        const QList<Form*> popups = formsNamed(AutoNotes::kFormName);
        use(kLands, popups.size() == 1 && popups.first()->isVisible());
        use(kTells, window().statusBar->text() == QStringLiteral("1 Note(s) Found...!!"));
        QString title;
        const auto close = once(QStringLiteral("frmMain"), [&](Form& form) {
            use(kDblClicks, true);
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        window().statusBar->DblClick.raise();
        window().upper->grid->Scroll.raise();
    }
    void mark() {
        RowStyle style;
        window().upper->grid->FetchRowStyle.raise(0, window().upper->placeOf(1), style);
        use(kMarks, style.hasBackColor());
        window().grab();
        window().lower->StayOnCell.raise();
        window().lower->grid->AfterColUpdate.raise(0);
    }
    void remind() {
        for (int minute = 0; minute < 2; ++minute) {
            if (addIn->UpperTimerForm() != nullptr) {
                QMetaObject::invokeMethod(&addIn->UpperTimerForm()->ReminderTimer(), "timeout");
            }
        }
        for (Form* popup : formsNamed(QStringLiteral("frmReminder"))) {
            use(kReminds, popup->isVisible());
            clock.advance(1);
            QTest::mouseClick(popup->findChild<QPushButton*>(QStringLiteral("cmdForm(1)")),
                              Qt::LeftButton);
        }
        if (!window().status.isEmpty()) {
            reader.told += window().status;
        }
    }

    /// The add-in's whole life with a host that fails to give an answer.
    void live(HostAnswer answer, When when) {
        seed();
        Trouble& trouble = world.host->trouble;
        const Giving failing = when == When::Raising ? Giving::Raising : Giving::Missing;
        if (when != When::VanishingLater) {
            trouble.set(answer, failing);
        }
        create();
        use(kActivates, addIn->Activate());
        window().showRecords();
        trouble.set(answer, failing);
        use(kHasTool, window().componentBar->findTool(kNotesToolKey) != nullptr);
        showNotes();
        land();
        mark();
        remind();
        addIn->DeActivate();
        EXPECT_TRUE(formsNamed(QStringLiteral("frmMain")).isEmpty());
        EXPECT_TRUE(formsNamed(AutoNotes::kFormName).isEmpty());
        EXPECT_TRUE(formsNamed(QStringLiteral("frmReminder")).isEmpty());
        EXPECT_FALSE(Module1::instance().isDatabaseOpen());
        addIn.reset();
        settle();
        EXPECT_EQ(Module1::instance().addInCount(), 0);
        trouble.set(answer, Giving::Given);
    }

    ServingPrompt reader;
    unsigned uses = 0;
};

TEST_P(BareHost, LosesWhatNeedsIt) {
    const auto& [row, when] = GetParam();
    live(row.answer, when);
    const Loss& loss = row.losses[static_cast<int>(when)];
    EXPECT_EQ(namesOf(kAll & ~uses), namesOf(loss.uses)) << "is lost";
    const QRegularExpression cause(QLatin1String(loss.told));
    EXPECT_EQ(reader.told.isEmpty(), cause.pattern().isEmpty())
        << reader.told.join(u'|').toStdString();
    for (const QString& text : reader.told) {
        EXPECT_TRUE(text.contains(cause)) << text.toStdString();
    }
}

// What goes together.
constexpr unsigned kTool = kHasTool | kShows | kAdds;
constexpr unsigned kRecord = kShowsRecord | kAddsReminder;
constexpr unsigned kLanding = kLands | kTells | kDblClicks;
constexpr unsigned kUser = kAddsReminder | kReminds; ///< what needs to know who works

// Each with what is lost when it is missing, when it raises, and when it is gone after `Activate`.
const Row kRows[] = {
    {"Nothing", HostAnswer::Count, {}},
    {"Interface", HostAnswer::Interface, {{kRecord | kLanding}, {kRecord | kLanding}, {}}},
    {"UpperController",
     HostAnswer::UpperController,
     {{kLanding | kMarks}, {kLanding | kMarks}, {}}},
    {"LowerController", HostAnswer::LowerController, {}},
    {"Application",
     HostAnswer::Application,
     {{kAll, "no application"},
      {kAll, "its application: The host is in trouble"},
      {kUser, "no application|who works"}}},
    {"Toolbar", HostAnswer::Toolbar, {{kTool}, {kTool}, {}}},
    {"StatusBar", HostAnswer::StatusBar, {{kTells | kDblClicks}, {kTells | kDblClicks}, {}}},
    {"Status", HostAnswer::Status, {}},
    {"CurrentController",
     HostAnswer::CurrentController,
     {{kShowsRecord}, {kRecord}, {kShowsRecord}}},
    {"Window", HostAnswer::Window, {{}, {kLands}, {}}},
    {"WindowState", HostAnswer::WindowState, {{kLanding}, {kLanding}, {kLanding}}},
    {"InterfaceToolbar", HostAnswer::InterfaceToolbar, {{kRecord}, {kRecord}, {}}},
    {"Bands", HostAnswer::Bands, {{}, {kTool}, {}}},
    {"Grid", HostAnswer::Grid, {{kMarks}, {kMarks}, {}}},
    {"GridSplits", HostAnswer::GridSplits, {{kMarks}, {kMarks}, {}}},
    {"GridRows", HostAnswer::GridRows, {}},
    {"GridState", HostAnswer::GridState, {}},
    {"CurrentRecord",
     HostAnswer::CurrentRecord,
     {{kShowsRecord | kLanding}, {kRecord | kLanding}, {kShowsRecord | kLanding}}},
    {"CurrentObject", HostAnswer::CurrentObject, {{kMarks}, {kMarks}, {}}},
    {"RecordField",
     HostAnswer::RecordField,
     {{kRecord | kLanding, "Field .* does not exist"},
      {kRecord | kLanding, "in trouble"},
      {kRecord | kLanding, "Field .* does not exist"}}},
    {"RecordName", HostAnswer::RecordName, {{kShowsRecord}, {kShowsRecord}, {kShowsRecord}}},
    {"RecordCollection",
     HostAnswer::RecordCollection,
     {{kShowsRecord | kLanding, "Object required"},
      {kRecord | kLanding, "in trouble"},
      {kShowsRecord | kLanding, "Object required"}}},
    {"Workspace",
     HostAnswer::Workspace,
     {{kAll, "no workspace"}, {kAll, "its workspace: The host is in trouble"}, {}}},
    {"Database",
     HostAnswer::Database,
     {{kAll, "no database"}, {kAll, "its database: The host is in trouble"}, {}}},
    {"Users", HostAnswer::Users, {}},
    {"UserRows",
     HostAnswer::UserRows,
     {{kUser, "its current user: Record|who works"},
      {kUser, "its current user: The host is in trouble|who works"},
      {kUser, "its current user: Record|who works"}}},
    {"CurrentUser",
     HostAnswer::CurrentUser,
     {{kUser, "no current user|who works"},
      {kUser, "its current user: The host is in trouble|who works"},
      {kUser, "no current user|who works"}}},
    {"Group", HostAnswer::Group, {}},
    {"Session", HostAnswer::Session, {}},
    {"Reports", HostAnswer::Reports, {}},
    {"ObjectDefinition", HostAnswer::ObjectDefinition, {{}, {kAddsReminder, "in trouble"}, {}}},
    {"DefinedCollection", HostAnswer::DefinedCollection, {}},
    {"Names", HostAnswer::Names, {{kShowsRecord}, {}, {kShowsRecord}}},
    {"ProgID",
     HostAnswer::ProgID,
     {{kLanding | kMarks | kReminds, "no program id"},
      {kLanding | kMarks | kReminds, "no program id"},
      {}}},
};

std::string nameOf(const testing::TestParamInfo<std::tuple<Row, When>>& each) {
    const char* const whens[] = {"Missing", "Raising", "Later"};
    const auto& [row, when] = each.param;
    return std::string(row.name) + whens[static_cast<int>(when)];
}

INSTANTIATE_TEST_SUITE_P(Answers, BareHost,
                         testing::Combine(testing::ValuesIn(kRows),
                                          testing::Values(When::Missing, When::Raising,
                                                          When::VanishingLater)),
                         nameOf);

} // namespace

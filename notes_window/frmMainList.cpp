// The notes list: how it is read, what its rows hold and what happens when one is chosen.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/FindBar.h"
#include "notes_window/LongWork.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NotesList.h"
#include "platform/component/NamedCalls.h"
#include "platform/controls/StatusBar.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QLabel>
#include <QScopedValueRollback>

#include <array>
#include <utility>

namespace yrw {

namespace {

const QString kProblem = QStringLiteral("Notes Problem");
const QString kReadOnlyMark = QStringLiteral(" [read-only]");
constexpr int kShowActive = 1;
constexpr int kShowAll = 3;
constexpr int kReminderWindowMinutes = 1;

} // namespace

void frmMain::Initialise(const Ref<INotesAddIn>& Parent, const Ref<IRecord>& Owner, qint64 NoteID) {
    reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.Initialise"),
                 QStringLiteral("Could not Initialise for Notes Form"), kProblem, [&] {
                     m_parent = Parent;
                     m_owner = Owner;
                     load();
                     fillWindow(NoteID);
                 });
    prompt().setMousePointer(MousePointer::Default);
}

void frmMain::fillWindow(qint64 noteID) {
    ApplyDefaultFont();
    {
        const QScopedValueRollback<bool> initialising(m_initialising, true);
        BuildNotesList();
    }
    QString wanted = noteItemKey(noteID);
    if (noteID == 0) {
        wanted = m_lsvMain->keyAt(0);
        // Text that a crash left behind comes first.
        for (const qint64 id : m_drafts.noteIDs()) {
            if (m_lsvMain->rowOf(noteItemKey(id)) >= 0) {
                wanted = noteItemKey(id);
            }
        }
    }
    if (m_lsvMain->rowOf(wanted) >= 0) {
        m_lsvMain->selectKey(wanted);
    }
    if (!m_lsvMain->selectedKey().isEmpty()) {
        ShowNote(m_lsvMain->selectedKey());
    }
    m_title = QStringLiteral("YRW Notes");
    if (m_owner) {
        SetOwnerCaption();
    } else {
        setWindowTitle(QStringLiteral("YRW System Notes"));
    }
    if (m_context.isReadOnly()) {
        setWindowTitle(windowTitle() + kReadOnlyMark);
    }
}

QString frmMain::ownerText() {
    // A name that the host does not give keeps no window closed.
    QString kind;
    QString record;
    ignoreErrors([&] {
        const Ref<ICollection> collection = m_owner->Collection();
        kind = callByName(dynamic_cast<INamedCalls*>(collection.get()), QStringLiteral("UseName"))
                   .toString();
        kind = m_context.store().hostApplication()->ObjectDisplayName(kind);
    });
    ignoreErrors([&] { record = HostUtility::NullToText(m_owner->ShortDisplayValue()->Value()); });
    return kind + QStringLiteral(": ") + record;
}

void frmMain::SetOwnerCaption() {
    setWindowTitle(QStringLiteral("YRW Notes - (") + ownerText() + QStringLiteral(")"));
}

void frmMain::BuildNotesList() {
    if (!mayLeaveText()) {
        if (ITool* type = m_atbMain->findTool(QStringLiteral("tooListType"))) {
            type->setListIndex(int(m_list->shown())); // the list stays as it is
        }
        return;
    }
    const Hourglass hourglass(prompt());
    if (!reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.BuildNotesList"),
                      QStringLiteral("Could not Build the Notes List"), kProblem,
                      [this] { refillList(); })) {
        emptyEditor();
    }
}

void frmMain::refillList() {
    const QString before = m_lsvMain->selectedKey();
    prepareRefill();
    m_list->open(m_owner);
    ITool* type = m_atbMain->findTool(QStringLiteral("tooListType"));
    if (type != nullptr && type->listIndex() == 0) {
        type->setListIndex(kShowActive);
    }
    const int shown = type != nullptr ? type->listIndex() : kShowActive;
    showListType(shown);
    const bool mineOnly = SetUserColumn();
    m_list->read(ShowType(shown), mineOnly);
    selectAfterRefill(before);
    countWaitingReminders();
    if (m_list->isCut()) {
        ShowStatus(QStringLiteral("Stopped: the list shows %1 notes, not all.")
                       .arg(m_lsvMain->allItems()));
    }
}

void frmMain::prepareRefill() {
    m_lsvMain->clearItems();
    m_finder->stop();
    m_names.forget();
    // The text itself stays until it is known which note is shown next: it may be the same.
    m_note.reset();
    turnEditorOff();
    setDirty(false);
}

void frmMain::showListType(int listIndex) {
    static const std::array suffixes{QStringLiteral(" [Showing Active]"),
                                     QStringLiteral(" [Showing Done]"),
                                     QStringLiteral(" [Showing All]")};
    if (listIndex < kShowActive || listIndex > kShowAll) {
        return;
    }
    setWindowTitle(m_title + suffixes[size_t(listIndex - 1)] +
                   (m_context.isReadOnly() ? kReadOnlyMark : QString()));
    constexpr int firstShowTool = 20300;
    for (int i = 0; i < kShowAll; ++i) {
        setToolChecked(firstShowTool + i, i == listIndex - 1);
    }
}

void frmMain::lsvMain_SourceFailed() {
    m_context.report(QStringLiteral("BuildNotesList"),
                     QStringLiteral("Could not Build the Notes List"),
                     [this] { m_list->endReading(); });
}

bool frmMain::SetUserColumn() {
    const bool mineOnly = isToolChecked(QStringLiteral("tooShowMyNotes"));
    m_list->columns().showUsers(!mineOnly);
    return mineOnly;
}

void frmMain::selectAfterRefill(const QString& before) {
    const QString key = m_lsvMain->rowOf(before) >= 0 ? before : m_lsvMain->keyAt(0);
    m_lsvMain->selectKey(key);
    if (!m_initialising) {
        ShowNote(key);
    }
    showEmptyText();
    if (!m_findBar->text().isEmpty()) {
        applyFind();
    }
}

void frmMain::ShowNote(const QString& item) {
    m_nextItem = item;
    if (m_isShowing) {
        return; // the note that is being read gives way
    }
    const QScopedValueRollback<bool> showing(m_isShowing, true);
    while (m_nextItem) {
        const QString next = *std::exchange(m_nextItem, std::nullopt);
        reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.ShowNote"),
                     QStringLiteral("Could not Show the Note"), kProblem,
                     [&] { showNoteOf(next); });
    }
}

void frmMain::showNoteOf(const QString& item) {
    if (!mayLeaveText()) {
        m_lsvMain->selectKey(noteItemKey(m_editedNote));
        return;
    }
    if (item.isEmpty()) {
        emptyEditor();
        UpdateToolStates();
        return;
    }
    const Hourglass hourglass(prompt());
    ShowStatus(QStringLiteral("Getting Note..."));
    try {
        const Ref<Note> note = m_list->note(noteIdOf(item));
        // The same text again stays, and what was undone and can be undone with it.
        const bool same = m_textIsStored && m_editedNote == noteIdOf(item) &&
                          note->value(QStringLiteral("RTFNote")) == m_loadedText;
        m_note = note;
        m_rtxMain->setEnabled(true);
        if (!same) {
            putIntoEditor(*m_note);
        }
    } catch (...) {
        // Never leave another note's text where the user would type into it.
        emptyEditor();
        UpdateToolStates();
        ShowStatus(QString());
        throw;
    }
    UpdateToolStates();
    rtxMain_SelChange();
    setDirty(false);
    ShowStatus(QStringLiteral("Done"));
    if (!m_nextItem) {
        offerDraft(noteIdOf(item));
        markHits();
    }
    if (isNoteCut()) {
        const QString why = m_rtxMain->shortening();
        ShowStatus(why.isEmpty()
                       ? QStringLiteral("Stopped: only the beginning of this note is shown, and it "
                                        "cannot be changed. Choose the note again to read all of "
                                        "it.")
                       : why);
    }
}

void frmMain::putIntoEditor(Note& note) {
    const QScopedValueRollback<bool> loading(m_loading, true);
    m_rtxMain->setPlaceholderText(m_context.isReadOnly()
                                      ? QStringLiteral("This note has no text.")
                                      : QStringLiteral("Type the text of the note here."));
    m_rtxMain->setEnabled(true);
    rememberLoaded(note);
    m_editedNote = note.value(QStringLiteral("RecordID")).toLongLong();
    m_textIsStored = true;
    const QString rtf = HostUtility::NullToText(m_loadedText);
    if (!rtf.isEmpty()) {
        m_textIsStored = readIntoEditor(rtf); // one that was stopped is read anew next time
    } else {
        m_rtxMain->setReadOnly(m_context.isReadOnly());
        m_rtxMain->setText(QString());
        m_rtxMain->setSelColor(defaultFont().colour);
    }
}

void frmMain::turnEditorOff() {
    if (focusWidget() == m_rtxMain) {
        m_lsvMain->setFocus(); // else the keyboard would be nowhere
    }
    m_rtxMain->setEnabled(false);
}

/// Shows how far the reading of a long text is, and lets the user stop it; false when he did. What
/// was read by then can be looked at, but not changed: to save it would lose the rest.
bool frmMain::readIntoEditor(const QString& rtf) {
    LongWork work(services().clock, this, QStringLiteral("Reading the note: %1 %."));
    const bool whole =
        m_rtxMain->setTextRTF(rtf, [&](int percent) { return work.goOn(percent) && !m_nextItem; });
    m_rtxMain->setReadOnly(!whole || m_context.isReadOnly());
    return whole;
}

/// The reading of the note that is shown was stopped.
bool frmMain::isNoteCut() const {
    return m_note && !m_textIsStored && m_rtxMain->isReadOnly();
}

void frmMain::emptyEditor() {
    const QScopedValueRollback<bool> loading(m_loading, true);
    m_note.reset();
    m_editedNote = 0;
    m_textIsStored = false;
    m_rtxMain->setReadOnly(false);
    m_rtxMain->setText(QString());
    m_rtxMain->setPlaceholderText(QStringLiteral("The text of the selected note is shown here."));
    turnEditorOff();
    setDirty(false);
}

void frmMain::lsvMain_ColumnClick(int column) {
    m_list->sortBy(column);
}

void frmMain::lsvMain_ItemClick(const QString& item) {
    ShowNote(item);
}

void frmMain::leaveItem(const QString& item) {
    const QString next = m_list->removeItem(item);
    m_finder->forget();
    showEmptyText();
    ShowNote(next);
}

void frmMain::showRow(const Ref<IRecord>& note) {
    m_finder->forget();
    m_list->replace(note);
}

void frmMain::countWaitingReminders() {
    ignoreErrors([this] {
        const Ref<IUser> user = m_context.store().currentUser();
        const Ref<dao::Recordset> due = m_context.store().dataHelper().OpenQuery(
            schema::kQryActiveReminders,
            {{QStringLiteral("ProgID"), m_context.store().hostProgID()},
             {QStringLiteral("NumberOfMinutes"), kReminderWindowMinutes},
             {QStringLiteral("UserID"), user->value(QStringLiteral("RecordID"))}});
        int waiting = 0;
        for (; !due->AtEof(); due->MoveNext()) {
            ++waiting;
        }
        due->Close();
        m_lblReminders->setText(waiting == 1
                                    ? QStringLiteral("1 reminder is waiting")
                                    : QStringLiteral("%1 reminders are waiting").arg(waiting));
        m_lblReminders->setVisible(waiting != 0);
    });
}

} // namespace yrw

// The notes list: how it is read, what its rows hold and what happens when one is chosen.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/FindBar.h"
#include "notes_window/LongWork.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/NoteRow.h"
#include "notes_window/NoteTexts.h"
#include "platform/component/NamedCalls.h"
#include "platform/controls/StatusBar.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"
#include "store/ReminderOperations.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <QSet>

#include <algorithm>
#include <array>
#include <utility>

namespace yrw {

namespace {

const QString kProblem = QStringLiteral("Notes Problem");
const QString kReadOnlyMark = QStringLiteral(" [read-only]");
const QString kUserColumn = QStringLiteral("usercode");
constexpr int kUserColumnWidth = 900; ///< twips
constexpr int kShowActive = 1;
constexpr int kShowAll = 3;
constexpr qsizetype kFewRows = 64; ///< asked for by their ids
constexpr qint64 kSparse = 8; ///< of so many ids one is wanted: the others cost more than they save

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
    if (isReadOnlyDatabase()) {
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
        kind = m_context.hostApplication()->ObjectDisplayName(kind);
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
            type->setListIndex(m_listIndex); // the list stays as it is
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
    m_notes = application().Notes();
    if (m_owner) {
        m_notes->setParent(m_owner);
    }
    ITool* type = m_atbMain->findTool(QStringLiteral("tooListType"));
    if (type != nullptr && type->listIndex() == 0) {
        type->setListIndex(kShowActive);
    }
    m_listIndex = type != nullptr ? type->listIndex() : kShowActive;
    showListType(m_listIndex);
    const bool mineOnly = SetUserColumn();
    readNotes(m_listIndex + (mineOnly ? kNotesMine : 0));
    selectAfterRefill(before);
    countWaitingReminders();
    if (m_isListCut) {
        ShowStatus(QStringLiteral("Stopped: the list shows %1 notes, not all.")
                       .arg(m_lsvMain->allItems()));
    }
}

void frmMain::prepareRefill() {
    m_lsvMain->clearItems();
    m_finder->stop();
    m_userNames.clear();
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
                   (isReadOnlyDatabase() ? kReadOnlyMark : QString()));
    constexpr int firstShowTool = 20300;
    for (int i = 0; i < kShowAll; ++i) {
        setToolChecked(firstShowTool + i, i == listIndex - 1);
    }
}

bool frmMain::SetUserColumn() {
    const bool mineOnly = isToolChecked(QStringLiteral("tooShowMyNotes"));
    ignoreErrors([&] {
        if (mineOnly) {
            storeColumns();
            m_lsvMain->removeColumn(kUserColumn);
        } else if (m_lsvMain->columnOf(kUserColumn) < 0) {
            m_lsvMain->addColumn(QStringLiteral("User"), kUserColumn, kUserColumnWidth);
            restoreColumns(m_lsvMain->columnOf(kUserColumn));
        }
    });
    fitSubject();
    return mineOnly;
}

/// Reads the list front to back. An unsorted one needs no more than the keys at once: the texts of
/// a row follow when it is shown, and all others as soon as the program has nothing else to do.
void frmMain::readNotes(int code) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    request.CustomOptions = code;
    const bool whole = m_lsvMain->isSorted();
    QStringList keys;
    QList<ListItem> items;
    const auto add = [&] {
        m_lsvMain->addKeys(keys);
        m_lsvMain->addItems(items);
    };
    bool stopped = false;
    try {
        LongWork work(services().clock, this, QStringLiteral("Reading the notes: %1 so far."));
        const Ref<dao::Recordset> rows = m_notes->Recordset(request);
        const NoteRowReader reader(*rows);
        for (; !rows->AtEof() && !stopped; rows->MoveNext()) {
            if (whole) {
                items.append(itemOf(reader.read()));
            } else {
                keys.append(noteItemKey(reader.id()));
            }
            stopped = !work.goOn(keys.size() + items.size());
        }
        rows->Close();
    } catch (...) {
        add(); // what was read before the failure
        throw;
    }
    add();
    m_isListCut = stopped;
}

/// Rows are asked for one by one; many that stand close together in one go.
Ref<dao::Recordset> frmMain::openRowsOf(const QVariantList& ids) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    const auto [first, last] =
        std::minmax_element(ids.begin(), ids.end(), [](const QVariant& a, const QVariant& b) {
            return a.toLongLong() < b.toLongLong();
        });
    const qint64 span = last->toLongLong() - first->toLongLong();
    if (ids.size() <= kFewRows || span > kSparse * ids.size()) {
        request.RecordData = ids;
    } else {
        request.Filter = QStringLiteral("[RecordID] Between %1 And %2")
                             .arg(first->toLongLong())
                             .arg(last->toLongLong());
    }
    return m_notes->Recordset(request);
}

/// The rows of some notes as the list shows them; one that is gone says so.
QList<ListItem> frmMain::readItems(const QStringList& keys) {
    QVariantList ids;
    QSet<qint64> wanted;
    for (const QString& key : keys) {
        ids.append(noteIdOf(key));
        wanted.insert(noteIdOf(key));
    }
    const Ref<dao::Recordset> rows = openRowsOf(ids);
    const NoteRowReader reader(*rows);
    QList<ListItem> items;
    for (; !rows->AtEof(); rows->MoveNext()) {
        if (wanted.remove(reader.id())) {
            items.append(itemOf(reader.read()));
        }
    }
    rows->Close();
    for (const qint64 gone : std::as_const(wanted)) {
        items.append(goneItem(noteItemKey(gone)));
    }
    return items;
}

/// The source of the list's rows. It is asked while the list paints: a failure is kept until
/// `lsvMain_SourceFailed` reports it.
std::optional<QList<ListItem>> frmMain::itemsFor(const QStringList& keys) {
    try {
        return readItems(keys);
    } catch (...) {
        m_listFailure = std::current_exception();
        return std::nullopt;
    }
}

void frmMain::lsvMain_SourceFailed() {
    reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.BuildNotesList"),
                 QStringLiteral("Could not Build the Notes List"), kProblem, [this] {
                     m_lsvMain->removeMissing(); // the list keeps what was read
                     std::rethrow_exception(m_listFailure);
                 });
}

/// A note's row as the list shows it now.
ListItem frmMain::itemOf(const NoteRow& row) {
    const bool hasUser = m_lsvMain->columnOf(kUserColumn) >= 0;
    return listItemOf(row, hasUser ? std::optional(userName(row.userCode)) : std::nullopt,
                      hasUser && m_listIndex == kShowAll);
}

/// The row of a note that was added or changed here.
ListItem frmMain::listItem(const Ref<IRecord>& note) {
    const NoteRow row = noteRowOf(*note);
    const bool hasUser = m_lsvMain->columnOf(kUserColumn) >= 0;
    return listItemOf(row, hasUser ? std::optional(userName(row.userCode)) : std::nullopt, false);
}

QString frmMain::userName(const QString& code) {
    const auto known = m_userNames.constFind(code);
    if (known != m_userNames.constEnd()) {
        return *known;
    }
    QString name = code;
    ignoreErrors(
        [&] { name = code.isEmpty() ? QString() : m_context.hostApplication()->UserName(code); });
    m_userNames.insert(code, name);
    return name;
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
        const Ref<Note> note = query<Note>(m_notes->Item(noteIdOf(item)));
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
    m_rtxMain->setPlaceholderText(isReadOnlyDatabase()
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
        m_rtxMain->setReadOnly(isReadOnlyDatabase());
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
    m_rtxMain->setReadOnly(!whole || isReadOnlyDatabase());
    return whole;
}

/// The reading of the note that is shown was stopped.
bool frmMain::isNoteCut() const {
    return m_note && !m_textIsStored && m_rtxMain->isReadOnly();
}

/// The user may read the notes, but not write them.
bool frmMain::isReadOnlyDatabase() const {
    const Ref<dao::Database> database = m_context.database();
    return database && database->isReadOnly();
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
    const bool flips = column == m_lsvMain->sortKey();
    const bool ascending = (m_lsvMain->sortOrder() == Qt::AscendingOrder) != flips;
    m_lsvMain->sortBy(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

/// Shows how far a long sorting is, and lets the user stop it.
WorkStep frmMain::sortingWatch() {
    const auto work = std::make_shared<LongWork>(services().clock, this,
                                                 QStringLiteral("Sorting the notes: %1 %."), 1);
    return [work](int percent) { return work->goOn(percent); };
}

void frmMain::lsvMain_ItemClick(const QString& item) {
    ShowNote(item);
}

void frmMain::leaveItem(const QString& item) {
    const int row = m_lsvMain->rowOf(item);
    m_lsvMain->removeItem(item);
    m_finder->forget();
    const int next = row < m_lsvMain->itemCount() ? row : m_lsvMain->itemCount() - 1;
    const QString key = m_lsvMain->keyAt(next);
    m_lsvMain->selectKey(key);
    showEmptyText();
    ShowNote(key);
}

void frmMain::replaceItem(const ListItem& item) {
    m_finder->forget();
    if (m_lsvMain->isSorted() || m_lsvMain->rowOf(item.key) < 0) {
        m_lsvMain->removeItem(item.key);
        m_lsvMain->addItem(item);
    } else {
        for (int column = 0; column < item.texts.size(); ++column) {
            m_lsvMain->setItemText(item.key, column, item.texts[column]);
        }
        m_lsvMain->setItemStyle(item.key, item.bold, item.foreColour, item.marked);
    }
    m_lsvMain->selectKey(item.key);
}

void frmMain::countWaitingReminders() {
    ignoreErrors([this] {
        const Ref<IUser> user = m_context.currentUser();
        const Ref<dao::Recordset> due =
            openDueReminders(m_context.dataHelper(), m_context.hostProgID(),
                             user->value(QStringLiteral("RecordID")));
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

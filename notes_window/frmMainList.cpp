// The notes list: how it is read, what its rows hold and what happens when one is chosen.
#include "notes_window/frmMain.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/FindBar.h"
#include "notes_window/LongWork.h"
#include "notes_window/NoteFinder.h"
#include "notes_window/NoteTexts.h"
#include "platform/component/NamedCalls.h"
#include "platform/controls/StatusBar.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QLabel>
#include <QScopedValueRollback>

#include <algorithm>
#include <array>

namespace yrw {

namespace {

const QString kProblem = QStringLiteral("Notes Problem");
const QString kUserColumn = QStringLiteral("usercode");
constexpr int kUserColumnWidth = 900; ///< twips
constexpr int kShowActive = 1;
constexpr int kShowAll = 3;
constexpr QColor kDoneColour(0x80, 0x80, 0x80);
constexpr QColor kReminderColour(0x00, 0x80, 0x00);
constexpr int kReminderWindowMinutes = 1;

/// What the list shows of one note.
struct NoteRow {
    qint64 id = 0;
    QDateTime date;
    QString subject;
    bool active = true;
    bool popup = false;
    bool hasReminders = false;
    QString userCode;
};

/// Reads rows through columns looked up once.
class RowReader {
public:
    explicit RowReader(const dao::Recordset& rows) : m_rows(rows) {
        static const std::array names{
            u"RecordID",          u"Date",         u"Subject",       u"Status",
            u"AutomaticallyShow", u"ReminderType", u"RecordUserCode"};
        for (size_t i = 0; i < names.size(); ++i) {
            m_columns[i] = rows.FieldIndex(names[i]);
        }
    }
    [[nodiscard]] NoteRow read() const {
        return {m_rows.value(m_columns[0]).toLongLong(),
                m_rows.value(m_columns[1]).toDateTime(),
                m_rows.value(m_columns[2]).toString(),
                m_rows.value(m_columns[3]).toInt() == int(NoteStatus::Active),
                HostUtility::NullToBoolean(m_rows.value(m_columns[4])),
                m_rows.value(m_columns[5]).toInt() != int(ReminderKind::None),
                m_rows.value(m_columns[6]).toString()};
    }

private:
    const dao::Recordset& m_rows;
    std::array<int, 7> m_columns{};
};

ListItem itemOf(const NoteRow& row) {
    ListItem item;
    item.key = noteItemKey(row.id);
    item.texts = {noteDateText(row.date), row.subject,
                  row.active ? QStringLiteral("Active") : QStringLiteral("Done"),
                  row.popup ? QStringLiteral("Y") : QStringLiteral("N")};
    return item;
}

void styleAsInAll(ListItem& item, const NoteRow& row) {
    item.bold = row.active;
    if (!row.active) {
        item.foreColour = kDoneColour;
    }
}

void styleForReminders(ListItem& item, const NoteRow& row) {
    if (row.hasReminders) {
        item.bold = true;
        item.foreColour = kReminderColour;
    }
}

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
    offerDraftsOfDeletedNotes();
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
}

QString frmMain::ownerText() {
    const Ref<ICollection> collection = m_owner->Collection();
    const QString useName =
        callByName(dynamic_cast<INamedCalls*>(collection.get()), QStringLiteral("UseName"))
            .toString();
    const QString kind = m_context.hostApplication()->ObjectDisplayName(useName);
    const QString record = HostUtility::NullToText(m_owner->ShortDisplayValue()->Value());
    return kind + QStringLiteral(": ") + record;
}

void frmMain::SetOwnerCaption() {
    setWindowTitle(QStringLiteral("YRW Notes - (") + ownerText() + QStringLiteral(")"));
}

void frmMain::BuildNotesList() {
    const Hourglass hourglass(prompt());
    reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.BuildNotesList"),
                 QStringLiteral("Could not Build the Notes List"), kProblem,
                 [this] { refillList(); });
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
    const int listIndex = type != nullptr ? type->listIndex() : kShowActive;
    showListType(listIndex);
    const bool mineOnly = SetUserColumn();
    const int code = listIndex + (mineOnly ? kNotesMine : 0);
    readNotes(code, listIndex, mineOnly);
    selectAfterRefill(before);
    countWaitingReminders();
}

void frmMain::prepareRefill() {
    SaveNote();
    m_lsvMain->clearItems();
    m_finder->stop();
    m_userNames.clear();
    emptyEditor();
}

void frmMain::showListType(int listIndex) {
    static const std::array suffixes{QStringLiteral(" [Showing Active]"),
                                     QStringLiteral(" [Showing Done]"),
                                     QStringLiteral(" [Showing All]")};
    if (listIndex < kShowActive || listIndex > kShowAll) {
        return;
    }
    setWindowTitle(m_title + suffixes[size_t(listIndex - 1)]);
    constexpr int firstShowTool = 20300;
    for (int i = 0; i < kShowAll; ++i) {
        setToolChecked(firstShowTool + i, i == listIndex - 1);
    }
}

bool frmMain::SetUserColumn() {
    const bool mineOnly = isToolChecked(QStringLiteral("tooShowMyNotes"));
    ignoreErrors([&] {
        if (mineOnly) {
            m_lsvMain->removeColumn(kUserColumn);
        } else if (m_lsvMain->columnOf(kUserColumn) < 0) {
            m_lsvMain->addColumn(QStringLiteral("User"), kUserColumn, kUserColumnWidth);
        }
    });
    fitSubject();
    return mineOnly;
}

void frmMain::readNotes(int code, int listIndex, bool mineOnly) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    request.CustomOptions = code;
    QList<ListItem> items;
    LongWork work(services().clock, this, QStringLiteral("Reading the notes: %1 so far."));
    try {
        const Ref<dao::Recordset> rows = m_notes->Recordset(request);
        const RowReader reader(*rows);
        for (; !rows->AtEof() && work.goOn(items.size()); rows->MoveNext()) {
            const NoteRow row = reader.read();
            ListItem item = itemOf(row);
            if (!mineOnly) {
                item.texts.append(userName(row.userCode));
                if (listIndex == kShowAll) {
                    styleAsInAll(item, row);
                }
            }
            styleForReminders(item, row);
            items.append(std::move(item));
        }
        rows->Close();
    } catch (...) {
        m_lsvMain->addItems(items); // what was read before the failure
        throw;
    }
    m_lsvMain->addItems(items);
}

ListItem frmMain::listItem(const Ref<IRecord>& note) {
    const NoteRow row{note->value(QStringLiteral("RecordID")).toLongLong(),
                      note->value(QStringLiteral("Date")).toDateTime(),
                      HostUtility::NullToText(note->value(QStringLiteral("Subject"))),
                      note->value(QStringLiteral("Status")).toInt() == int(NoteStatus::Active),
                      HostUtility::NullToBoolean(note->value(QStringLiteral("AutomaticallyShow"))),
                      note->value(QStringLiteral("ReminderType")).toInt() !=
                          int(ReminderKind::None),
                      HostUtility::NullToText(note->value(QStringLiteral("RecordUserCode")))};
    ListItem item = itemOf(row);
    if (m_lsvMain->columnOf(kUserColumn) >= 0) {
        item.texts.append(userName(row.userCode));
    }
    styleForReminders(item, row);
    return item;
}

QString frmMain::userName(const QString& code) {
    const auto known = m_userNames.constFind(code);
    if (known != m_userNames.constEnd()) {
        return *known;
    }
    const QString name = code.isEmpty() ? QString() : m_context.hostApplication()->UserName(code);
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
    reportErrors(services().utility, QStringLiteral("YRWNOTES.frmMain.ShowNote"),
                 QStringLiteral("Could not Show the Note"), kProblem, [&] { showNoteOf(item); });
}

void frmMain::showNoteOf(const QString& item) {
    SaveNote();
    if (item.isEmpty()) {
        emptyEditor();
        UpdateToolStates();
        return;
    }
    const Hourglass hourglass(prompt());
    ShowStatus(QStringLiteral("Getting Note..."));
    try {
        m_note = query<Note>(m_notes->Item(noteIdOf(item)));
        putIntoEditor(*m_note);
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
    offerDraft(noteIdOf(item));
    markHits();
}

void frmMain::putIntoEditor(Note& note) {
    const QScopedValueRollback<bool> loading(m_loading, true);
    m_rtxMain->setPlaceholderText(QStringLiteral("Type the text of the note here."));
    m_rtxMain->setEnabled(true);
    rememberLoaded(note);
    const QString rtf = HostUtility::NullToText(m_loadedText);
    if (!rtf.isEmpty()) {
        m_rtxMain->setTextRTF(rtf);
    } else {
        m_rtxMain->setText(QString());
        m_rtxMain->setSelColor(defaultFont().colour);
    }
}

void frmMain::emptyEditor() {
    const QScopedValueRollback<bool> loading(m_loading, true);
    m_note.reset();
    m_rtxMain->setText(QString());
    m_rtxMain->setPlaceholderText(QStringLiteral("The text of the selected note is shown here."));
    if (focusWidget() == m_rtxMain) {
        m_lsvMain->setFocus(); // turned off, the editor would leave the keyboard nowhere
    }
    m_rtxMain->setEnabled(false);
    setDirty(false);
}

void frmMain::lsvMain_ColumnClick(int column) {
    if (column == m_lsvMain->sortKey()) {
        m_lsvMain->setSortOrder(m_lsvMain->sortOrder() == Qt::AscendingOrder ? Qt::DescendingOrder
                                                                             : Qt::AscendingOrder);
    } else {
        m_lsvMain->setSortKey(column);
    }
    m_lsvMain->setSorted(true);
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
        m_lsvMain->setItemStyle(item.key, item.bold, item.foreColour);
    }
    m_lsvMain->selectKey(item.key);
}

void frmMain::countWaitingReminders() {
    ignoreErrors([this] {
        const Ref<IUser> user = m_context.currentUser();
        const Ref<dao::Recordset> due = m_context.dataHelper().OpenQuery(
            schema::kQryActiveReminders,
            {{QStringLiteral("ProgID"), m_context.hostProgID()},
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

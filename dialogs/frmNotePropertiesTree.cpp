// The tree of users to remind, and who is reminded.
#include "dialogs/frmNoteProperties.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "platform/forms/Contrast.h"
#include "platform/forms/DatePicker.h"

#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <vector>

namespace yrw {

namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kWidestTree = 560; ///< up to which names widen the dialog, in pixels
const QString kGroupPrefix = QStringLiteral("gp");
const QString kUserPrefix = QStringLiteral("us");
constexpr QColor kGroupColour(0x00, 0x00, 0xff);

/// One row of the host's users.
struct UserRow {
    qint64 GroupID = 0;
    QString GroupCode;
    QString GroupName;
    qint64 RecordID = 0;
    QString Name;
    [[nodiscard]] bool hasGroup() const { return !GroupCode.isEmpty(); }
};

UserRow readRow(const dao::Recordset& rows) {
    UserRow row;
    row.GroupID = rows.value(u"GroupID").toLongLong();
    row.GroupCode = HostUtility::NullToText(rows.value(u"GroupCode"));
    row.GroupName = HostUtility::NullToText(rows.value(u"GroupName"));
    row.RecordID = rows.value(u"RecordID").toLongLong();
    row.Name = HostUtility::NullToText(rows.value(u"FirstName")) + QLatin1Char(' ') +
               HostUtility::NullToText(rows.value(u"LastName"));
    return row;
}

/// All users in the order of their groups; those without a group last.
std::vector<UserRow> readUsers(const Ref<IHostApplication>& application) {
    const Ref<dao::Recordset> rows = application->Users()->Recordset({});
    std::vector<UserRow> users;
    for (; !rows->AtEof(); rows->MoveNext()) {
        users.push_back(readRow(*rows));
    }
    rows->Close();
    std::stable_partition(users.begin(), users.end(),
                          [](const UserRow& row) { return row.hasGroup(); });
    return users;
}

void fillNode(QTreeWidgetItem& node, const QString& key, const QString& text, bool ticked) {
    node.setText(0, text);
    node.setData(0, kKeyRole, key);
    node.setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    node.setCheckState(0, ticked ? Qt::Checked : Qt::Unchecked);
}

QTreeWidgetItem* addGroup(QTreeWidget& tree, const UserRow& row, bool ticked) {
    auto* node = new QTreeWidgetItem(&tree);
    const QString name = row.hasGroup() ? row.GroupName : QStringLiteral("(no group)");
    fillNode(*node, kGroupPrefix + QString::number(row.GroupID), name, ticked);
    QFont font = tree.font();
    font.setBold(true);
    node->setFont(0, font);
    node->setForeground(0, readableOn(tree.palette().color(QPalette::Base), kGroupColour));
    node->setExpanded(true);
    return node;
}

bool isDismissed(IRecord& reminder) {
    return reminder.value(QStringLiteral("Status")).toInt() == int(ReminderStatus::Dismissed);
}

/// How far a recipient is with a reminder.
QString stateText(IRecord& reminder) {
    const auto date = [&](const QString& field) {
        return reminder.value(field).toDateTime().toString(QStringLiteral("dd/MM/yyyy HH:mm"));
    };
    switch (static_cast<ReminderStatus>(reminder.value(QStringLiteral("Status")).toInt())) {
    case ReminderStatus::Dismissed:
        return QStringLiteral("dismissed on ") + date(QStringLiteral("LastDate"));
    case ReminderStatus::ToldLater:
        return QStringLiteral("told later until ") + date(QStringLiteral("NextDate"));
    case ReminderStatus::Open:
    case ReminderStatus::ClosedUnanswered:
        break;
    }
    return QStringLiteral("waiting");
}

/// Id of the user that a ticked node stands for; 0 for a group or an unticked node.
qint64 tickedUser(const QTreeWidgetItem& node) {
    const QString key = node.data(0, kKeyRole).toString();
    const bool ticked = key.startsWith(kUserPrefix) && node.checkState(0) == Qt::Checked;
    return ticked ? HostUtility::RemoveKeyPrefix(key, kUserPrefix) : 0;
}

} // namespace

void frmNoteProperties::BuildUsersTree() {
    const Hourglass hourglass(prompt());
    const QSignalBlocker blocker(m_tvwRemindUsers);
    const ReminderOption option = chosenOption();
    qint64 rememberedGroup = 0; // matches nobody
    if (option == ReminderOption::MyGroup && !m_initialising) {
        const Ref<IRecord> group = currentGroup();
        rememberedGroup = group ? group->value(QStringLiteral("GroupID")).toLongLong() : 0;
    }
    const bool everyone = option == ReminderOption::Everyone;
    const std::vector<UserRow> users = readUsers(hostApplication());

    m_tvwRemindUsers->clear();
    QTreeWidgetItem* groupNode = nullptr;
    QString groupCode;
    for (const UserRow& row : users) {
        const bool inGroup = rememberedGroup != 0 && row.GroupID == rememberedGroup;
        if (groupNode == nullptr || row.GroupCode != groupCode) {
            groupNode = addGroup(*m_tvwRemindUsers, row, inGroup || everyone);
            groupCode = row.GroupCode;
        }
        auto* const node = new QTreeWidgetItem(groupNode);
        const QString key = kUserPrefix + QString::number(row.RecordID);
        fillNode(*node, key, row.Name, inGroup || (everyone && !m_initialising));
        node->setText(1, m_recipients.value(key));
    }
    m_tvwRemindUsers->resizeColumnToContents(0);
    int states = 0;
    for (const QString& state : std::as_const(m_recipients)) {
        states = qMax(states, m_tvwRemindUsers->fontMetrics().horizontalAdvance(state));
    }
    if (states > 0) { // both columns whole, beside a scroll bar, as far as names allow it
        m_tvwRemindUsers->setMinimumWidth(
            qMin(kWidestTree, m_tvwRemindUsers->columnWidth(0) + states + 50));
    }
    if (m_initialising) {
        tickRemindedUsers();
    }
}

/// Reads who is reminded of the note and how far each one is. Of several reminders of one user an
/// open one counts.
void frmNoteProperties::readRecipients() {
    if (!m_note) {
        return;
    }
    for (const Ref<IRecord>& reminder : m_note->Reminders()->NewEnum()) {
        const QString key = kUserPrefix + reminder->value(QStringLiteral("UserID")).toString();
        if (!m_recipients.contains(key) || !isDismissed(*reminder)) {
            m_recipients.insert(key, stateText(*reminder));
        }
    }
    m_tvwRemindUsers->setColumnCount(m_recipients.isEmpty() ? 1 : 2);
    m_tvwRemindUsers->setHeaderHidden(m_recipients.isEmpty());
}

/// Beside the option for the user alone: how far she is, or the only one who is reminded.
void frmNoteProperties::showOwnState() {
    const Ref<IUser> user = currentUser();
    const QString own =
        user ? kUserPrefix + user->value(QStringLiteral("RecordID")).toString() : QString();
    QString state = m_recipients.value(own);
    if (state.isEmpty() && m_recipients.size() == 1) {
        state = m_recipients.cbegin().value();
    }
    m_lblOwnState->setText(state);
    m_lblOwnState->setVisible(chosenOption() == ReminderOption::JustMe && !state.isEmpty());
    m_optReminder[size_t(ReminderOption::JustMe)]->setAccessibleDescription(
        m_lblOwnState->isHidden() ? QString() : state);
}

void frmNoteProperties::tickRemindedUsers() {
    for (QTreeWidgetItemIterator node(m_tvwRemindUsers); *node != nullptr; ++node) {
        if (m_recipients.contains((*node)->data(0, kKeyRole).toString())) {
            (*node)->setCheckState(0, Qt::Checked);
        }
    }
}

void frmNoteProperties::tvwRemindUsers_NodeCheck(QTreeWidgetItem* node) {
    const Hourglass hourglass(prompt());
    const QSignalBlocker blocker(m_tvwRemindUsers);
    for (int i = 0; i < node->childCount(); ++i) {
        node->child(i)->setCheckState(0, node->checkState(0));
    }
}

void frmNoteProperties::tvwRemindUsers_Collapse(QTreeWidgetItem* node) {
    node->setExpanded(true);
}

bool frmNoteProperties::AnyUserTicked() const {
    for (QTreeWidgetItemIterator node(m_tvwRemindUsers); *node != nullptr; ++node) {
        if (tickedUser(**node) != 0) {
            return true;
        }
    }
    return false;
}

void frmNoteProperties::RaiseReminders() {
    const QDateTime due = m_dtpReminder->value();
    if (chosenOption() == ReminderOption::JustMe) {
        const Ref<IUser> user = currentUser();
        if (!user) {
            throw AutomationError(kErrorObjectRequired,
                                  QStringLiteral("YRWNOTES.frmNoteProperties"),
                                  QStringLiteral("The host does not tell who works with it."));
        }
        AddReminder.raise(m_note, due, user->value(QStringLiteral("RecordID")).toLongLong());
        return;
    }
    for (QTreeWidgetItemIterator node(m_tvwRemindUsers); *node != nullptr; ++node) {
        if (const qint64 user = tickedUser(**node); user != 0) {
            AddReminder.raise(m_note, due, user);
        }
    }
}

} // namespace yrw

#include "dialogs/frmNoteProperties.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "platform/clock/Clock.h"
#include "platform/clock/WallTime.h"
#include "platform/forms/ClockChangeLabel.h"
#include "platform/forms/DatePicker.h"
#include "store/NotesContext.h"
#include "store/Operations.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

namespace yrw {

namespace {

constexpr int kHelpTopic = 110001;
constexpr qint64 kFirstReminderMinutes = 60;
constexpr int kReminderStepMinutes = 30;
constexpr int kWidestGroupName = 320; ///< pixels; a longer one is shown without its middle

/// Which option stands for a stored kind. A group's reminder opens as chosen users, so that later
/// changes of the group do not move it.
frmNoteProperties::ReminderOption optionOf(ReminderKind kind) {
    using Option = frmNoteProperties::ReminderOption;
    switch (kind) {
    case ReminderKind::Everyone:
        return Option::Everyone;
    case ReminderKind::MyGroup:
    case ReminderKind::SelectedUsers:
        return Option::SelectedUsers;
    case ReminderKind::None:
    case ReminderKind::Me:
        break;
    }
    return Option::JustMe;
}

/// A text as a caption shows it: '&' marks no access key.
QString asCaption(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

frmNoteProperties::frmNoteProperties(NotesContext& context, QWidget* owner)
    : Form(QStringLiteral("frmNoteProperties"), owner), m_context(context) {
    createControls();
    connectEvents();
}

frmNoteProperties::~frmNoteProperties() = default;

void frmNoteProperties::Initialise(const Ref<INotesParent>& Parent, const Ref<yrw::Note>& Note) {
    const QScopedValueRollback<bool> initialising(m_initialising, true);
    m_parent = Parent;
    m_note = Note;
    m_adding = !Note;
    readRecipients();
    if (m_adding) {
        startNewNote();
    } else {
        LoadNote();
        LoadReminder();
    }
    QString groupName; // stays empty for who is in none, or where the host does not tell
    ignoreErrors([&] {
        groupName = HostUtility::NullToText(currentGroup()->value(QStringLiteral("GroupName")));
    });
    QRadioButton& option = *m_optReminder[3];
    const QString shown =
        option.fontMetrics().elidedText(groupName, Qt::ElideMiddle, kWidestGroupName);
    option.setText(QStringLiteral("Remind Everyone in the '") + asCaption(shown) +
                   QStringLiteral("' &Group"));
    if (shown != groupName) { // the whole name, as plain text
        option.setToolTip(u"<span>" + groupName.toHtmlEscaped() + u"</span>");
        option.setAccessibleName(u"Remind Everyone in the '" + groupName + u"' Group");
    }
    EnableReminderControls(m_chkReminder->isChecked());
}

void frmNoteProperties::Form_Activate() {
    m_txtSubject->setFocus();
}

void frmNoteProperties::Form_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        cmdForm_Click(FormButton::Cancel);
    }
}

void frmNoteProperties::Form_KeyUp(FormKey& key) {
    if (key.is(Qt::Key_F1)) {
        key.consumed = true;
        ignoreErrors([this] { showHelp(); });
    }
}

void frmNoteProperties::prpMain_Click() {
    m_prpMain->currentWidget()->update();
}

void frmNoteProperties::chkReminder_Click() {
    EnableReminderControls(m_chkReminder->isChecked());
}

void frmNoteProperties::optReminder_Click(ReminderOption index) {
    updateTreeState();
    if (index == ReminderOption::JustMe) {
        m_tvwRemindUsers->clear();
    } else {
        ignoreErrors([this] { BuildUsersTree(); });
    }
    m_fraReminder->update();
}

void frmNoteProperties::updReminder_UpClick() {
    stepReminder(kReminderStepMinutes);
}

void frmNoteProperties::updReminder_DownClick() {
    stepReminder(-kReminderStepMinutes);
}

void frmNoteProperties::cmdForm_Click(FormButton index) {
    if (index == FormButton::Cancel) {
        unload();
        return;
    }
    reportErrors(m_context.services().utility,
                 QStringLiteral("YRWNOTES.frmNoteProperties.cmdForm_Click"),
                 QStringLiteral("Could not Save the Note"), QStringLiteral("Notes Problem"),
                 [this] { confirm(); });
}

void frmNoteProperties::startNewNote() {
    setWindowTitle(QStringLiteral("Add Note"));
    const QDateTime start = now();
    m_dtpDate->setValue(start);
    m_dtpReminder->setValue(minutesLater(start, kFirstReminderMinutes));
    m_optReminder[int(ReminderOption::JustMe)]->setChecked(true);
    m_optType[int(TypeOption::Public)]->setChecked(true);
    m_fraReminder->update();
}

void frmNoteProperties::LoadNote() {
    setWindowTitle(QStringLiteral("Edit Note"));
    m_dtpDate->setStoredValue(m_note->value(QStringLiteral("Date")).toDateTime());
    m_txtSubject->setText(HostUtility::NullToText(m_note->value(QStringLiteral("Subject"))));
    m_txtSubject->setCursorPosition(0); // a long one is read from its beginning
    m_chkAutoShow->setChecked(
        HostUtility::NullToBoolean(m_note->value(QStringLiteral("AutomaticallyShow"))));
    const bool isPrivate =
        m_note->value(QStringLiteral("NoteType")).toInt() == int(NoteType::Private);
    m_optType[int(isPrivate ? TypeOption::Private : TypeOption::Public)]->setChecked(true);
}

void frmNoteProperties::LoadReminder() {
    const QDateTime due = m_note->value(QStringLiteral("ReminderDate")).toDateTime();
    if (due.isValid()) {
        m_dtpReminder->setStoredValue(due);
    } else {
        m_dtpReminder->setValue(minutesLater(now(), kFirstReminderMinutes));
    }
    const auto kind =
        static_cast<ReminderKind>(m_note->value(QStringLiteral("ReminderType")).toInt());
    m_chkReminder->setChecked(kind != ReminderKind::None);
    m_optReminder[size_t(optionOf(kind))]->setChecked(true);
    m_fraReminder->update();
}

void frmNoteProperties::EnableReminderControls(bool enable) {
    m_dtpReminder->setEnabled(enable);
    m_lblClockChange->setEnabled(enable);
    m_updReminderUp->setEnabled(enable);
    m_updReminderDown->setEnabled(enable);
    for (QRadioButton* option : m_optReminder) {
        option->setEnabled(enable);
    }
    updateTreeState();
}

void frmNoteProperties::updateTreeState() {
    m_tvwRemindUsers->setEnabled(m_chkReminder->isChecked() &&
                                 chosenOption() != ReminderOption::JustMe);
    showOwnState();
}

bool frmNoteProperties::inputIsComplete() {
    if (m_txtSubject->text().isEmpty()) {
        prompt().message(QStringLiteral("A subject is required."), QStringLiteral("Input Check"),
                         PromptIcon::Exclamation);
        m_txtSubject->setFocus();
        return false;
    }
    if (m_chkReminder->isChecked() && chosenOption() != ReminderOption::JustMe &&
        !AnyUserTicked()) {
        prompt().message(QStringLiteral("Please tick at least 1 user in the user tree."),
                         QStringLiteral("User Check"), PromptIcon::Exclamation);
        m_tvwRemindUsers->setFocus();
        return false;
    }
    return true;
}

frmNoteProperties::ReminderOption frmNoteProperties::chosenOption() const {
    for (size_t i = 0; i < m_optReminder.size(); ++i) {
        if (m_optReminder[i]->isChecked()) {
            return static_cast<ReminderOption>(i);
        }
    }
    return ReminderOption::JustMe;
}

ReminderKind frmNoteProperties::chosenKind() const {
    if (!m_chkReminder->isChecked()) {
        return ReminderKind::None;
    }
    // The kinds count from 1 in the order of the options.
    return static_cast<ReminderKind>(int(chosenOption()) + 1);
}

void frmNoteProperties::confirm() {
    if (!inputIsComplete()) {
        return;
    }
    const Ref<Note> before = m_note;
    const auto raise = [this] { raiseEvents(); };
    try {
        if (m_writer) {
            m_writer(raise);
        } else {
            storeAsOne(m_context.application(), raise);
        }
    } catch (...) {
        m_note = before; // a new note is as little there as its reminders
        throw;
    }
    unload();
}

/// Everything that one OK raises, in order.
void frmNoteProperties::raiseEvents() {
    const Hourglass hourglass(prompt());
    raiseNote();
    if (!m_adding && m_note) {
        m_note->DeleteReminders();
    }
    if (m_chkReminder->isChecked()) {
        RaiseReminders();
    }
}

void frmNoteProperties::raiseNote() {
    const ReminderKind kind = chosenKind();
    const QDateTime due = kind == ReminderKind::None ? QDateTime() : m_dtpReminder->value();
    const NoteType type =
        m_optType[size_t(TypeOption::Public)]->isChecked() ? NoteType::Public : NoteType::Private;
    NoteEvent& event = m_adding ? AddNote : EditNote;
    event.raise(m_dtpDate->value(), m_txtSubject->text(), m_note, kind, due,
                m_chkAutoShow->isChecked(), type);
}

void frmNoteProperties::stepReminder(int minutes) {
    m_dtpReminder->addMinutes(minutes);
}

void frmNoteProperties::showHelp() {
    const Hourglass hourglass(prompt());
    if (const Ref<IHostApplication> application = hostApplication()) {
        application->ShowHelp(kHelpTopic);
    }
}

Prompt& frmNoteProperties::prompt() const {
    return m_context.services().prompt;
}

QDateTime frmNoteProperties::now() const {
    return m_context.clock().now();
}

Ref<IHostApplication> frmNoteProperties::hostApplication() const {
    return m_parent->hostApplication();
}

Ref<IUser> frmNoteProperties::currentUser() const {
    Ref<IUser> user;
    ignoreErrors([&] { user = hostApplication()->CurrentIUser(); });
    return user;
}

Ref<IRecord> frmNoteProperties::currentGroup() const {
    Ref<IRecord> group;
    ignoreErrors([&] { group = currentUser()->Group(); });
    return group;
}

} // namespace yrw

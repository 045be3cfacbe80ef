#include "dialogs/frmReminder.h"

#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "platform/clock/Clock.h"
#include "platform/forms/DatePicker.h"
#include "store/Schema.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include <optional>

namespace yrw {

namespace {

const QString kDateFormat = QStringLiteral("dd/MM/yyyy HH:mm");
const QString kNotSaved =
    QStringLiteral("The answer to a reminder could not be saved; the reminder will come back.");
/// Minutes from now that the date picker offers at first.
constexpr qint64 kLaterMinutes = 30;

/// Caption of a reminder kind; nothing for a number that is none.
std::optional<QString> kindText(int kind) {
    switch (static_cast<ReminderKind>(kind)) {
    case ReminderKind::None:
        return QString();
    case ReminderKind::Everyone:
        return QStringLiteral("Reminder To Everyone");
    case ReminderKind::Me:
        return QStringLiteral("Reminder To Me");
    case ReminderKind::SelectedUsers:
        return QStringLiteral("Reminder To Selected Users");
    case ReminderKind::MyGroup:
        return QStringLiteral("Reminder To My Group");
    }
    return std::nullopt;
}

QString indexed(const char* name, std::size_t index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

} // namespace

const QString frmReminder::kTagPrefix = QStringLiteral("NOTE:");

frmReminder::frmReminder(INotesAddIn& addIn) : Form(QStringLiteral("frmReminder")), m_addIn(addIn) {
    createControls();
    createButtons();
    layOut();
    connectEvents();
}

frmReminder::~frmReminder() = default;

void frmReminder::Initialise(const Ref<Application>& application, const Ref<IRecord>& reminder) {
    m_application = application;
    lblForm[2]->setText(HostUtility::NullToText(reminder->value(QStringLiteral("Subject"))));
    rxtMain->setPlainText(HostUtility::NullToText(reminder->value(QStringLiteral("PlainNote"))));
    dtpReminder->setValue(m_addIn.services().clock.now().addSecs(60 * kLaterMinutes));
    m_note = application->Notes()->Item(reminder->value(QStringLiteral("NoteID")));
    findOwner();
    setWindowTitle(captionText());
    const QDateTime due = reminder->value(QStringLiteral("NextDate")).toDateTime();
    lblForm[5]->setText(QStringLiteral("Due: ") + due.toString(kDateFormat));
    const int kind = m_note->value(QStringLiteral("ReminderType")).toInt();
    if (const std::optional<QString> text = kindText(kind)) {
        lblForm[4]->setText(*text);
    }
    m_reminder = reminder; // from here on closing answers
}

void frmReminder::abandon() {
    m_reminder.reset();
    unload();
    deleteLater(); // also when it was never shown
}

// Event handlers.

void frmReminder::Form_Load() {
    dtpReminder->setMinimumDate(m_addIn.services().clock.now().date());
}

void frmReminder::Form_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        unload();
    }
}

void frmReminder::cmdForm_Click(FormButton index) {
    if (!m_reminder) {
        return;
    }
    switch (index) {
    case FormButton::ShowNotes:
        m_addIn.ShowNotes(m_owner, 0);
        return;
    case FormButton::TellMeLater:
        if (chkFinish->isChecked()) {
            m_addIn.services().utility.prompt().message(
                QStringLiteral("You cannot finish a note when you click 'Tell Me Later'."),
                QStringLiteral("Cannot Finish Note"), PromptIcon::Information);
            return;
        }
        tellLater();
        break;
    case FormButton::Dismiss:
        dismiss();
        break;
    }
    unload();
}

void frmReminder::Form_QueryUnload(bool& /*cancel*/) {
    if (!m_reminder || mbTellMeLater || mbDismissed) {
        return;
    }
    const QDateTime now = m_addIn.services().clock.now();
    save({{QStringLiteral("NextDate"), now.addSecs(60 * kUnansweredMinutes)},
          {QStringLiteral("Status"), static_cast<int>(ReminderStatus::ClosedUnanswered)}});
}

void frmReminder::Form_Unload() {
    if (tag().size() > kTagPrefix.size()) {
        m_addIn.forgetReminder(HostUtility::RemoveKeyPrefix(tag(), kTagPrefix));
    }
    // The window itself ends later; what it holds of host and store is let go now.
    m_reminder.reset();
    m_note.reset();
    m_owner.reset();
    m_definition.reset();
    m_application.reset();
}

// Named operations.

/// The host's record that the note is kept on, when there is one.
void frmReminder::findOwner() {
    const QVariant key = m_note->value(QStringLiteral("OwnerObjectKey"));
    IHostComponent* component = m_addIn.Component();
    if (key.isNull() || component == nullptr) {
        return;
    }
    ignoreErrors([&] {
        m_definition = component->Application()->ObjectDefinition(key.toString());
        if (m_definition) {
            m_owner =
                m_definition->Collection()->Item(m_note->value(QStringLiteral("OwnerRecordID")));
        }
    });
}

QString frmReminder::captionText() {
    QString owner;
    ignoreErrors([&] {
        if (m_owner) {
            const QVariant name = m_owner->ShortDisplayValue()->Value();
            owner = QStringLiteral(" (%1: %2)")
                        .arg(m_definition->UseName(), HostUtility::NullToText(name));
        }
    });
    return QStringLiteral("YRW Reminder") + owner;
}

void frmReminder::tellLater() {
    mbTellMeLater = true;
    save({{QStringLiteral("NextDate"), dtpReminder->value()},
          {QStringLiteral("LastDate"), m_addIn.services().clock.now()},
          {QStringLiteral("Status"), static_cast<int>(ReminderStatus::ToldLater)}});
}

void frmReminder::dismiss() {
    mbDismissed = true;
    save({{QStringLiteral("LastDate"), m_addIn.services().clock.now()},
          {QStringLiteral("Status"), static_cast<int>(ReminderStatus::Dismissed)}});
    if (chkFinish->isChecked()) {
        finishNote();
    }
}

void frmReminder::finishNote() {
    const bool finished = ignoreErrors([this] {
        const Ref<IRecord> note =
            m_application->Notes()->Item(m_reminder->value(QStringLiteral("NoteID")));
        note->Field(QStringLiteral("Status"))->setValue(static_cast<int>(NoteStatus::Done));
    });
    if (finished) {
        m_addIn.services().utility.prompt().message(
            QStringLiteral("This note has been finished and will no longer appear in your active "
                           "notes list."),
            QStringLiteral("Finish Note"), PromptIcon::Information);
    }
}

/// Writes an answer in one go. One that cannot be written keeps no popup open; the host's window
/// says so instead.
void frmReminder::save(const dao::ValueList& values) {
    const bool saved = ignoreErrors([&] {
        m_reminder->BeginMultipleFieldUpdate();
        m_reminder->MultipleUpdateFieldValues() = values;
        m_reminder->EndMultipleFieldUpdate();
    });
    if (saved) {
        return;
    }
    qWarning("%s", qUtf8Printable(kNotSaved));
    ignoreErrors([this] {
        if (IHostInterface* host = m_addIn.IInterface()) {
            host->ShowStatus(kNotSaved);
        }
    });
}

// Controls.

void frmReminder::createControls() {
    setWindowTitle(QStringLiteral("YRW Reminder"));
    for (const std::size_t index : {0U, 1U, 2U, 4U, 5U}) {
        lblForm[index] = new QLabel(this);
        lblForm[index]->setObjectName(indexed("lblForm", index));
        lblForm[index]->setTextFormat(Qt::PlainText);
    }
    lblForm[0]->setText(QStringLiteral("Subject:"));
    lblForm[1]->setText(QStringLiteral("Note:"));
    lblForm[2]->setWordWrap(true);
    lblForm[4]->setText(QStringLiteral("Remind Everyone"));

    rxtMain = new QPlainTextEdit(this);
    rxtMain->setObjectName(QStringLiteral("rxtMain"));
    rxtMain->setAccessibleName(QStringLiteral("Note text"));
    rxtMain->setReadOnly(true);
    dtpReminder =
        new DatePicker(QStringLiteral("dtpReminder"), QStringLiteral("Tell me later at"), this);
    chkFinish = new QCheckBox(QStringLiteral("&Finish Note"), this);
    chkFinish->setObjectName(QStringLiteral("chkFinish"));
    chkFinish->setAccessibleName(QStringLiteral("Finish Note"));
}

void frmReminder::createButtons() {
    const std::array<QString, 3> captions{QStringLiteral("Tell me &Later..."),
                                          QStringLiteral("&Dismiss!"),
                                          QStringLiteral("&Show Notes...")};
    for (std::size_t index = 0; index < captions.size(); ++index) {
        cmdForm[index] = new QPushButton(captions[index], this);
        cmdForm[index]->setObjectName(indexed("cmdForm", index));
        cmdForm[index]->setAccessibleName(QString(captions[index]).remove(u'&'));
        cmdForm[index]->setAutoDefault(false);
    }
}

void frmReminder::layOut() {
    auto* grid = new QGridLayout(this);
    grid->addWidget(lblForm[0], 0, 0, Qt::AlignTop);
    grid->addWidget(lblForm[2], 0, 1);
    grid->addWidget(lblForm[1], 1, 0, Qt::AlignTop);
    grid->addWidget(rxtMain, 1, 1);
    auto* state = new QHBoxLayout;
    state->addWidget(lblForm[4]);
    state->addStretch();
    state->addWidget(lblForm[5]);
    grid->addLayout(state, 2, 1);
    auto* answers = new QHBoxLayout;
    answers->addWidget(dtpReminder);
    answers->addWidget(cmdForm[0]);
    answers->addSpacing(12);
    answers->addWidget(chkFinish);
    answers->addWidget(cmdForm[1]);
    answers->addStretch();
    answers->addWidget(cmdForm[2]);
    grid->addLayout(answers, 3, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);
    resize(sizeHint().expandedTo(QSize(560, 260)));
}

void frmReminder::connectEvents() {
    for (std::size_t index = 0; index < cmdForm.size(); ++index) {
        connect(cmdForm[index], &QPushButton::clicked, this, [this, index] {
            ignoreErrors([&] { cmdForm_Click(static_cast<FormButton>(index)); });
        });
    }
}

} // namespace yrw

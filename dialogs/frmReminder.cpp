#include "dialogs/frmReminder.h"

#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "platform/clock/Clock.h"
#include "platform/clock/WallTime.h"
#include "platform/forms/Announcement.h"
#include "platform/forms/DatePicker.h"
#include "platform/prompt/ErrorLog.h"
#include "platform/prompt/Prompt.h"
#include "store/NotesContext.h"
#include "store/Schema.h"

#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScopedValueRollback>
#include <QWindow>

#include <limits>
#include <optional>
#include <utility>

namespace yrw {

namespace {

const QString kDateFormat = QStringLiteral("dd/MM/yyyy HH:mm");
const QString kNotSaved =
    QStringLiteral("The answer to a reminder could not be saved; the reminder will come back.");
const QString kNotFinished = QStringLiteral("The note of a reminder could not be finished.");
const QString kAnsweredElsewhere =
    QStringLiteral("This reminder was answered elsewhere meanwhile; that answer stands.");
/// Minutes from now that the date picker offers at first.
constexpr qint64 kLaterMinutes = 30;
/// How often the picker looks at the clock, in milliseconds.
constexpr int kLookMs = 2000;
/// When the morning begins for a reminder.
constexpr int kMorningHour = 9;

/// The order of the popups on the screen, as far as clicks care.
struct Stacking {
    const void* front = nullptr; ///< the popup brought to the front last; for comparison only
    /// When a popup went or rose last, by the clock that never runs backwards.
    qint64 changedMs = std::numeric_limits<qint64>::min() / 2;
};

Stacking& stacking() {
    static Stacking state;
    return state;
}

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

} // namespace

const QString frmReminder::kTagPrefix = QStringLiteral("NOTE:");
const QKeySequence frmReminder::kReachKey(Qt::CTRL | Qt::ALT | Qt::Key_R);

frmReminder::frmReminder(NotesContext& context)
    : Form(QStringLiteral("frmReminder")), m_context(context) {
    createControls();
    createButtons();
    layOut();
    connectEvents();
}

frmReminder::~frmReminder() = default;

void frmReminder::Initialise(INotesParent& Parent, const Ref<IRecord>& reminder) {
    m_parent = &Parent;
    showSubject(HostUtility::NullToText(reminder->value(QStringLiteral("Subject"))));
    rxtMain->setPlainText(HostUtility::NullToText(reminder->value(QStringLiteral("PlainNote"))));
    followClock();
    m_minutes.start(kLookMs);
    findOwner(*reminder);
    setWindowTitle(captionText());
    const QDateTime due = reminder->value(QStringLiteral("NextDate")).toDateTime();
    lblForm[5]->setText(QStringLiteral("Due: ") + due.toString(kDateFormat));
    setAccessibleName(windowTitle());
    setAccessibleDescription(lblForm[2]->text() + QStringLiteral(". ") + lblForm[5]->text());
    m_due = QDateTime(due.date(), due.time(), Qt::UTC).toSecsSinceEpoch();
    const int kind = reminder->value(QStringLiteral("ReminderType")).toInt();
    if (const std::optional<QString> text = kindText(kind)) {
        lblForm[4]->setText(*text);
    }
    QTimer::singleShot(0, this, [this] { keepOnScreen(); }); // once all have their sizes
    m_reminder = reminder;                                   // from here on closing answers
}

void frmReminder::abandon() {
    m_reminder.reset();
    unload();
    deleteLater(); // also when it was never shown
}

// Event handlers.

void frmReminder::Form_Load() {
    m_cameMs = m_context.clock().monotonicMs();
    const QScopedValueRollback<bool> setting(m_settingLater, true);
    dtpReminder->setMinimumDate(now().date());
}

void frmReminder::Form_KeyDown(FormKey& key) {
    if (QKeySequence(int(key.key | key.shift)) == kReachKey) {
        return;
    }
    if (!m_hasKeys) {
        key.consumed = true;
    } else if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        unload();
    }
}

void frmReminder::cmdForm_Click(FormButton index) {
    if (!m_reminder) {
        return;
    }
    const QPointer<frmReminder> self(this);
    switch (index) {
    case FormButton::ShowNotes:
        m_parent->ShowNotes(m_owner, 0);
        break;
    case FormButton::TellMeLater:
        if (!chkFinish->isChecked()) {
            tellLater();
            unload();
            return;
        }
        m_context.services().prompt.message(
            QStringLiteral("You cannot finish a note when you click 'Tell Me Later'."),
            QStringLiteral("Cannot Finish Note"), PromptIcon::Information);
        if (self) {
            chkFinish->setFocus(); // one of the two has to give way
        }
        break;
    case FormButton::Dismiss:
        dismiss();
        unload();
        return;
    }
    if (self) {
        m_hasKeys = true; // the user comes back to where the click was
    }
}

void frmReminder::cmdPreset_Click(Preset index) {
    m_laterTouched = true;
    switch (index) {
    case Preset::TenMinutes:
        dtpReminder->setValue(minutesLater(now(), 10));
        break;
    case Preset::OneHour:
        dtpReminder->setValue(minutesLater(now(), 60));
        break;
    case Preset::TomorrowMorning:
        dtpReminder->setValue(existingTime(now().date().addDays(1), QTime(kMorningHour, 0)));
        break;
    }
}

void frmReminder::Form_QueryUnload(bool& /*cancel*/) {
    if (m_reminder && !mbTellMeLater && !mbDismissed) {
        save([this] { return closeReminderUnanswered(*m_reminder, now()); });
    }
}

void frmReminder::Form_Unload() {
    m_minutes.stop();
    stacking().changedMs = m_context.clock().monotonicMs();
    if (stacking().front == this) {
        stacking().front = nullptr; // the next one may come to lie at the same address
    }
    if (tag().size() > kTagPrefix.size()) {
        Q_EMIT closed(HostUtility::RemoveKeyPrefix(tag(), kTagPrefix));
    }
    // The window itself ends later; what it holds of host and store is let go now.
    m_reminder.reset();
    m_owner.reset();
    m_definition.reset();
}

bool frmReminder::eventFilter(QObject* watched, QEvent* event) {
    const bool isPress = event->type() == QEvent::MouseButtonPress ||
                         event->type() == QEvent::MouseButtonDblClick ||
                         event->type() == QEvent::TouchBegin;
    if (isPress && watched->isWidgetType() && static_cast<QWidget*>(watched)->window() == this) {
        if (isStray()) {
            return true;
        }
        m_hasKeys = true;
    }
    return Form::eventFilter(watched, event);
}

bool frmReminder::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate) {
        m_hasKeys = false;
    } else if (event->type() == QEvent::WindowActivate) {
        // The window system grants it some time after `takeKeys` has asked.
        m_hasKeys = std::exchange(m_wantsKeys, false) || m_hasKeys;
    } else if (event->type() == QEvent::Paint) {
        m_isPainted = true;
        askForAttention();
    }
    return Form::event(event);
}

/// True for a press that may have been meant for what was in this popup's place a moment ago.
bool frmReminder::isStray() const {
    const qint64 nowMs = m_context.clock().monotonicMs();
    return nowMs - m_cameMs < kSettleMs || nowMs - stacking().changedMs < kSettleMs;
}

void frmReminder::bringToFront() {
    if (stacking().front != this) {
        stacking().front = this;
        stacking().changedMs = m_context.clock().monotonicMs();
    }
    raise();
}

void frmReminder::callUser(int waiting) {
    QStringList words{windowTitle(), lblForm[2]->text().remove(QChar(0x200B)), lblForm[5]->text()};
    if (waiting > 1) {
        words += QStringLiteral("%1 reminders are waiting").arg(waiting);
    }
    words += QStringLiteral("%1 goes there").arg(kReachKey.toString());
    setAccessibleDescription(words.join(QStringLiteral(". ")));
    announce(*this, accessibleDescription());
    m_calls = true;
    askForAttention();
}

/// A window manager heeds only windows that it has placed already: those that were painted.
void frmReminder::askForAttention() {
    QWindow* const window = windowHandle();
    if (window == nullptr || !m_isPainted || !std::exchange(m_calls, false) || isActiveWindow()) {
        return;
    }
    // A window counts as active, and calls nobody, while the one that owns it is: the host's, where
    // the user works.
    QWindow* const owner = window->transientParent();
    window->setTransientParent(nullptr);
    window->alert(0);
    window->setTransientParent(owner);
}

void frmReminder::takeKeys() {
    m_hasKeys = true;
    m_wantsKeys = !isActiveWindow();
    bringToFront();
    activateWindow();
    rxtMain->setFocus();
}

// Named operations.

QDateTime frmReminder::now() const {
    return m_context.clock().now();
}

/// The host's record that the note is kept on, when there is one.
void frmReminder::findOwner(IRecord& reminder) {
    const QVariant key = reminder.value(QStringLiteral("OwnerObjectKey"));
    if (key.isNull()) {
        return;
    }
    ignoreErrors([&] {
        m_definition = m_parent->hostApplication()->ObjectDefinition(key.toString());
        if (m_definition) {
            m_owner =
                m_definition->Collection()->Item(reminder.value(QStringLiteral("OwnerRecordID")));
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

/// Lets the picker offer what it offers at first, as time goes on. A user who is in it is left
/// alone.
void frmReminder::followClock() {
    if (!m_laterTouched && !dtpReminder->hasFocus()) {
        const QScopedValueRollback<bool> setting(m_settingLater, true);
        dtpReminder->setValue(minutesLater(now(), kLaterMinutes));
    }
}

void frmReminder::tellLater() {
    mbTellMeLater = true;
    followClock();
    save([this] { return tellReminderLater(*m_reminder, now(), dtpReminder->value()); });
}

void frmReminder::dismiss() {
    mbDismissed = true;
    const bool saved = save([this] { return dismissReminder(*m_reminder, now()); });
    if (chkFinish->isChecked() && saved) {
        finishNote();
    }
}

void frmReminder::finishNote() {
    try {
        finishNoteOf(*m_reminder, m_context.application());
    } catch (...) {
        tellFailure(currentError(), kNotFinished);
        return;
    }
    m_context.services().prompt.message(
        QStringLiteral("This note has been finished and will no longer appear in your active "
                       "notes list."),
        QStringLiteral("Finish Note"), PromptIcon::Information);
}

/// Stores an answer. One that cannot be written keeps no popup open; the host's window says so
/// instead, and also when somebody else's answer stands. False for one that could not be written.
bool frmReminder::save(const std::function<AnswerResult()>& answer) {
    try {
        if (answer() == AnswerResult::AnsweredElsewhere) {
            m_parent->ShowStatus(kAnsweredElsewhere);
        }
        return true;
    } catch (...) {
        tellFailure(currentError(), kNotSaved);
        return false;
    }
}

void frmReminder::tellFailure(const AutomationError& error, const QString& words) {
    appendToErrorLog(now(), {error.number(),
                             QStringLiteral("YRWNOTES.frmReminder"),
                             error.description(),
                             words,
                             {},
                             {}});
    m_parent->ShowStatus(words);
}

} // namespace yrw

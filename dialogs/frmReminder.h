#pragma once

#include "framework/INotesParent.h"
#include "platform/forms/Form.h"
#include "store/ReminderOperations.h"

#include <QKeySequence>
#include <QTimer>

#include <array>
#include <functional>
#include <limits>

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace yrw {

class ClockChangeLabel;
class DatePicker;
class NotesContext;

/// Tells the user that a reminder is due and writes the answer back: dismissed, to be told later,
/// or, when the popup is closed without an answer, to come back in 15 minutes. Its tag is "NOTE:"
/// and the reminder's id, which it tells when it is unloaded.
///
/// What a user does elsewhere never answers a reminder. The popup takes no keyboard focus by
/// itself and no button is the default one; keys reach it only after a click in it or after
/// `takeKeys`. The picker of the time to be told later offers half an hour from now, whenever now
/// is, until the user picks another. For half a second after it has come, or another popup has gone
/// or risen, clicks on it count for nothing: they may have been meant for what was in its place.
/// Lifetime: made and shown modeless by the add-in, which outlives it; deletes itself once
/// unloaded.
/// Thread: the user-interface thread.
class frmReminder final : public Form {
    Q_OBJECT

public:
    /// The buttons of `cmdForm` and of `cmdPreset`, by their numbers.
    enum class FormButton : int { TellMeLater = 0, Dismiss = 1, ShowNotes = 2 };
    enum class Preset : int { TenMinutes = 0, OneHour = 1, TomorrowMorning = 2 };
    /// Milliseconds for which clicks count for nothing, see above.
    static constexpr qint64 kSettleMs = 500;
    /// Popups that lie side by side before places are used again.
    static constexpr int kPlaces = 10;
    /// What a tag begins with.
    static const QString kTagPrefix;
    /// The key that reaches a popup from anywhere in the program.
    static const QKeySequence kReachKey;

    explicit frmReminder(NotesContext& context);
    ~frmReminder() override;

    /// Fills the popup from a reminder that is due, which tells of its note, too. `Parent` is the
    /// add-in that shows it. Raises when a field is lacking; the popup then is to be `abandon`ed.
    void Initialise(INotesParent& Parent, const Ref<IRecord>& reminder);
    /// Unloads the popup without writing an answer.
    void abandon();

    /// Moves the popup to a place of the cascade over the host's window (the screen without one):
    /// place 0 lies lowest and rightmost, so that the others show their titles behind it.
    void moveToPlace(int place, const QWidget* host);
    /// Brings the popup above the others, without the keyboard.
    void bringToFront();
    /// Calls the user, once for all popups: the window asks for attention, and screen readers are
    /// told what this one says and how many wait.
    void callUser(int waiting);
    /// Gives the popup the keyboard.
    void takeKeys();

    /// When the reminder was due, in seconds by the hands of the clock, for comparison: the older
    /// the promise, the smaller. The largest number before `Initialise`.
    [[nodiscard]] qint64 due() const noexcept { return m_due; }
    /// The reminder that is to be answered; nothing before `Initialise` and after the answer.
    [[nodiscard]] const Ref<IRecord>& reminder() const noexcept { return m_reminder; }

Q_SIGNALS:
    /// The popup of the reminder that its tag names is unloaded.
    void closed(qint64 reminderID);

protected:
    void Form_Load() override;
    void Form_KeyDown(FormKey& key) override;
    void Form_QueryUnload(bool& cancel) override;
    void Form_Unload() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void cmdForm_Click(FormButton index);
    void cmdPreset_Click(Preset index);

    // Named operations.
    void findOwner(IRecord& reminder);
    [[nodiscard]] QString captionText();
    void showSubject(const QString& subject);
    void keepOnScreen();
    void followClock();
    void tellLater();
    void dismiss();
    void finishNote();
    bool save(const std::function<AnswerResult()>& answer);
    void tellFailure(const AutomationError& error, const QString& words);
    void askForAttention();
    [[nodiscard]] bool isStray() const;
    [[nodiscard]] QDateTime now() const;

    // Construction.
    void createControls();
    void createButtons();
    void layOut();
    void setTabOrders();
    void connectEvents();

    NotesContext& m_context;
    INotesParent* m_parent = nullptr; ///< nothing before `Initialise`
    Ref<IRecord> m_reminder;          ///< nothing while there is nothing to answer
    Ref<IObjectDefinition> m_definition;
    Ref<IRecord> m_owner;
    qint64 m_due = std::numeric_limits<qint64>::max();
    bool mbTellMeLater = false;
    bool mbDismissed = false;
    bool m_hasKeys = false; ///< the user has turned to this popup
    bool m_isPainted = false;
    bool m_calls = false;        ///< the user is to be called once it is painted
    bool m_wantsKeys = false;    ///< and the window system is still to follow
    bool m_laterTouched = false; ///< the user has picked when to be told
    bool m_settingLater = false; ///< the picker is set in code
    QTimer m_minutes;
    qint64 m_cameMs = 0; ///< when it came, by the clock that never runs backwards

    std::array<QLabel*, 6> lblForm{}; ///< 3 is not used
    QPlainTextEdit* rxtMain = nullptr;
    DatePicker* dtpReminder = nullptr;
    ClockChangeLabel* lblClockChange = nullptr;
    QCheckBox* chkFinish = nullptr;
    std::array<QPushButton*, 3> cmdForm{};
    std::array<QPushButton*, 3> cmdPreset{};
};

} // namespace yrw

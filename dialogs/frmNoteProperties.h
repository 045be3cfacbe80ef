#pragma once

#include "framework/INotesParent.h"
#include "platform/component/Event.h"
#include "platform/forms/Form.h"
#include "store/Collections.h"

#include <QDateTime>
#include <QHash>

#include <array>
#include <functional>
#include <utility>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;
class QVBoxLayout;

namespace yrw {

class ClockChangeLabel;
class DatePicker;
class NotesContext;
class Prompt;

/// The note properties dialog: subject, date, type and reminders of a new or an existing note.
///
/// It writes nothing itself, except that it asks an edited note to delete its old reminders: on OK
/// it raises events that the caller answers by writing. A handler that fails throws; the failure is
/// reported, nothing of that OK is stored, and the dialog stays open with what was typed.
/// Lifetime: made, initialised and shown modally by the notes window, to which it belongs; OK and
/// Cancel unload it.
/// Thread: the user-interface thread.
class frmNoteProperties final : public Form {
    Q_OBJECT

public:
    /// The buttons of `cmdForm`, the choices of `optType` and of `optReminder`, by their numbers.
    enum class FormButton : int { Ok = 0, Cancel = 1 };
    enum class TypeOption : int { Private = 0, Public = 1 };
    enum class ReminderOption : int { Everyone = 0, JustMe = 1, SelectedUsers = 2, MyGroup = 3 };

    /// Date, subject, the note, reminder kind, reminder date (invalid for none), automatic show and
    /// type of the note. The handler of a new note sets the note to the one it made.
    using NoteEvent = Event<const QDateTime&, const QString&, Ref<Note>&, ReminderKind,
                            const QDateTime&, bool, NoteType>;
    /// The note, the due time and the id of the user to remind.
    using ReminderEvent = Event<Ref<Note>&, const QDateTime&, qint64>;

    explicit frmNoteProperties(NotesContext& context, QWidget* owner = nullptr);
    ~frmNoteProperties() override;

    /// Fills the dialog for a note, or for a new one when there is none. `Parent` is the add-in,
    /// through which the users are reached.
    void Initialise(const Ref<INotesParent>& Parent, const Ref<yrw::Note>& Note);

    NoteEvent AddNote;         ///< OK for a new note
    NoteEvent EditNote;        ///< OK for an existing note
    ReminderEvent AddReminder; ///< once for each user who is to be reminded

    /// How the events of one OK are raised: given a function that raises all of them. The default
    /// runs it in one transaction. One that raises keeps the dialog open, and the dialog takes it
    /// that nothing was stored.
    using Writer = std::function<void(const std::function<void()>& raiseEvents)>;
    void setWriter(Writer writer) { m_writer = std::move(writer); }

protected:
    void Form_Activate() override;
    void Form_KeyDown(FormKey& key) override;
    void Form_KeyUp(FormKey& key) override;

private:
    // Event handlers.
    void prpMain_Click();
    void chkReminder_Click();
    void optReminder_Click(ReminderOption index);
    void updReminder_UpClick();
    void updReminder_DownClick();
    void tvwRemindUsers_NodeCheck(QTreeWidgetItem* node);
    void tvwRemindUsers_Collapse(QTreeWidgetItem* node);
    void cmdForm_Click(FormButton index);

    // Named operations.
    void startNewNote();
    void LoadNote();
    void LoadReminder();
    void EnableReminderControls(bool enable);
    void updateTreeState();
    void showOwnState();
    void BuildUsersTree();
    void readRecipients();
    void tickRemindedUsers();
    [[nodiscard]] bool AnyUserTicked() const;
    [[nodiscard]] bool inputIsComplete();
    [[nodiscard]] ReminderKind chosenKind() const;
    [[nodiscard]] ReminderOption chosenOption() const;
    void confirm();
    void raiseNote();
    void raiseEvents();
    void RaiseReminders();
    void stepReminder(int minutes);
    void showHelp();

    // Surroundings.
    [[nodiscard]] Prompt& prompt() const;
    [[nodiscard]] QDateTime now() const;
    [[nodiscard]] Ref<IHostApplication> hostApplication() const;
    /// The user who works with the host; nothing where the host does not tell.
    [[nodiscard]] Ref<IUser> currentUser() const;
    [[nodiscard]] Ref<IRecord> currentGroup() const;

    // Construction.
    void createControls();
    [[nodiscard]] QWidget* createNotePage();
    [[nodiscard]] QWidget* createTypeRow(QLabel& label);
    [[nodiscard]] QWidget* createReminderFrame();
    [[nodiscard]] QWidget* createReminderPicker();
    void createUsersTree(QVBoxLayout& layout);
    [[nodiscard]] QWidget* createButtons();
    void connectEvents();

    QTabWidget* m_prpMain = nullptr;
    QLineEdit* m_txtSubject = nullptr;
    DatePicker* m_dtpDate = nullptr;
    std::array<QRadioButton*, 2> m_optType{};
    QCheckBox* m_chkAutoShow = nullptr;
    QGroupBox* m_fraReminder = nullptr;
    QCheckBox* m_chkReminder = nullptr;
    DatePicker* m_dtpReminder = nullptr;
    ClockChangeLabel* m_lblClockChange = nullptr;
    QToolButton* m_updReminderUp = nullptr;
    QToolButton* m_updReminderDown = nullptr;
    std::array<QRadioButton*, 4> m_optReminder{};
    QLabel* m_lblOwnState = nullptr;
    QTreeWidget* m_tvwRemindUsers = nullptr;
    std::array<QPushButton*, 2> m_cmdForm{};

    NotesContext& m_context;
    Ref<INotesParent> m_parent;
    Ref<Note> m_note;                     ///< the edited note; nothing while adding
    QHash<QString, QString> m_recipients; ///< how far each one is, by the keys of their nodes
    bool m_adding = false;
    Writer m_writer;
    bool m_initialising = false; ///< the tree ticks who is reminded already, not who might be
};

} // namespace yrw

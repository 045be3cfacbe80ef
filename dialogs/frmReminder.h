#pragma once

#include "framework/INotesAddIn.h"
#include "platform/forms/Form.h"
#include "store/Application.h"

#include <array>

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace yrw {

class DatePicker;

/// Tells the user that a reminder is due and writes the answer back: dismissed, to be told later,
/// or, when the popup is closed without an answer, to come back in 15 minutes. Its tag is "NOTE:"
/// and the reminder's id; unloading takes that id out of the add-in's reminders on screen.
///
/// It takes no keyboard focus by itself, and no button is the default one: a key typed elsewhere
/// never answers a reminder.
/// Lifetime: made and shown modeless by the add-in, which outlives it; deletes itself once
/// unloaded.
/// Thread: the user-interface thread.
class frmReminder final : public Form {
    Q_OBJECT

public:
    /// The buttons of `cmdForm`, by their numbers.
    enum class FormButton : int { TellMeLater = 0, Dismiss = 1, ShowNotes = 2 };
    /// Minutes after which a reminder that was closed without an answer comes back.
    static constexpr qint64 kUnansweredMinutes = 15;
    /// What a tag begins with.
    static const QString kTagPrefix;

    explicit frmReminder(INotesAddIn& addIn);
    ~frmReminder() override;

    /// Fills the popup. Raises when note or reminder cannot be read; the popup then is to be
    /// `abandon`ed.
    void Initialise(const Ref<Application>& application, const Ref<IRecord>& reminder);
    /// Unloads the popup without writing an answer.
    void abandon();

protected:
    void Form_Load() override;
    void Form_KeyDown(FormKey& key) override;
    void Form_QueryUnload(bool& cancel) override;
    void Form_Unload() override;

private:
    void cmdForm_Click(FormButton index);

    void createControls();
    void createButtons();
    void layOut();
    void connectEvents();
    void findOwner();
    [[nodiscard]] QString captionText();
    void tellLater();
    void dismiss();
    void finishNote();
    void save(const dao::ValueList& values);

    INotesAddIn& m_addIn;
    Ref<Application> m_application;
    Ref<IRecord> m_reminder; ///< nothing while there is nothing to answer
    Ref<IRecord> m_note;
    Ref<IObjectDefinition> m_definition;
    Ref<IRecord> m_owner;
    bool mbTellMeLater = false;
    bool mbDismissed = false;

    std::array<QLabel*, 6> lblForm{}; ///< 3 is not used
    QPlainTextEdit* rxtMain = nullptr;
    DatePicker* dtpReminder = nullptr;
    QCheckBox* chkFinish = nullptr;
    std::array<QPushButton*, 3> cmdForm{};
};

} // namespace yrw

#pragma once

#include "framework/INotesParent.h"
#include "platform/component/Event.h"
#include "platform/forms/Form.h"
#include "platform/richtext/RichTextBox.h"

#include <array>

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace yrw {

class NotesContext;

/// The dialog that asks which file to attach to a note, and whether its content or an icon shows.
///
/// It inserts nothing itself: OK hides it and raises `Continue`, whose handler inserts. A handler
/// that sets the event's last argument brings it back as it was.
/// Lifetime: made, initialised and shown modally by the notes window; OK and Cancel unload it.
/// Thread: the user-interface thread.
class frmInsertAttachment final : public Form {
    Q_OBJECT

public:
    /// The buttons of `cmdForm` by their numbers; `optDisplay` has those of `ObjectDisplay`,
    /// reversed: 0 shows an icon, 1 the content.
    enum class FormButton : int { Ok = 0, Cancel = 1 };
    enum class DisplayOption : int { Icon = 0, Content = 1 };

    explicit frmInsertAttachment(NotesContext& context, QWidget* owner = nullptr);
    ~frmInsertAttachment() override;

    /// `Parent` is the add-in, kept while the dialog is there; `display` is chosen at first.
    void Initialise(const Ref<INotesParent>& Parent, ObjectDisplay display);

    /// OK: the path as typed, how to show the file, and whether to keep the dialog open.
    Event<const QString&, ObjectDisplay, bool&> Continue;

protected:
    void Form_Load() override;
    void Form_KeyDown(FormKey& key) override;

private:
    // Event handlers.
    void txtFile_Change();
    void cmdBrowse_Click();
    void cmdForm_Click(FormButton index);

    // Named operations.
    [[nodiscard]] QString fileFilter() const;
    void confirm();

    // Construction.
    void createControls();
    [[nodiscard]] QWidget* createOptions();
    void layOut();
    void connectEvents();

    std::array<QLabel*, 2> m_lblForm{};
    QLineEdit* m_txtFile = nullptr;
    QPushButton* m_cmdBrowse = nullptr;
    QGroupBox* m_Frame1 = nullptr;
    std::array<QRadioButton*, 2> m_optDisplay{};
    std::array<QPushButton*, 2> m_cmdForm{};

    NotesContext& m_context;
    Ref<INotesParent> m_parent;
};

} // namespace yrw

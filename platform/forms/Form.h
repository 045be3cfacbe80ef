#pragma once

#include <QDialog>
#include <QList>

namespace yrw {

/// State of a window by the numbers that are stored.
enum class WindowStateCode : int { Normal = 0, Minimised = 1, Maximised = 2 };

/// A key as a form's handlers see it, before its controls do.
struct FormKey {
    int key = 0;                 ///< Qt::Key
    Qt::KeyboardModifiers shift; ///< Shift, Ctrl, Alt, Meta
    bool consumed = false;       ///< set by the handler: no control sees the key
    [[nodiscard]] bool is(int wanted, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        return key == wanted && (shift & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) == modifiers;
    }
};

/// A window with the life cycle that its handlers rely on.
///
/// In this order: `Form_Initialize` (by the derived constructor's own hand), `load()` →
/// `Form_Load` once; shown → `Form_Resize`, `Form_Activate`, which comes again whenever the user
/// returns from another form, but not from a box or another program; `Form_KeyDown`/`Form_KeyUp`
/// see every key before the focused control (key preview); closing by the user, by code (`unload`)
/// or with its owner → `Form_QueryUnload`, which may cancel, then `Form_Unload` once. After that
/// the form is hidden and taken from the list of open forms; it is never shown again. A key that
/// `Form_KeyDown` consumes triggers no shortcut, access key or focus move either. Lifetime: an
/// unloaded form that was shown modeless deletes itself later (make it with `new`); a modal one,
/// and one that was only loaded, belongs to its caller. Closing the owner unloads the form first,
/// and a form that refuses keeps the owner open. An owner that is destroyed without being closed
/// unloads the form without asking it, and no longer owns it. Escape does not close by itself: a
/// form that wants that unloads in `Form_KeyDown`. Thread: the user-interface thread.
class Form : public QDialog {
    Q_OBJECT

public:
    /// `name` is the form's name in the list of open forms and its object name.
    explicit Form(const QString& name, QWidget* owner = nullptr);
    ~Form() override;

    /// Runs `Form_Load`, once; showing does it by itself.
    void load();
    [[nodiscard]] bool isLoaded() const noexcept { return m_loaded; }
    /// Shows the form modal to the application, with the given window as owner, until it is
    /// unloaded.
    void showModal(QWidget* owner);
    /// Shows the form beside the others. Without `activate` it takes no keyboard focus.
    void showModeless(QWidget* owner, bool activate);
    /// Closes the form; false when `Form_QueryUnload` cancelled. Nothing for an unloaded one.
    bool unload();
    [[nodiscard]] bool isUnloaded() const noexcept { return m_unloaded; }
    /// Shows or hides; an unloaded form stays hidden.
    void setVisible(bool visible) override;

    /// Free text of whoever made the form.
    [[nodiscard]] const QString& tag() const noexcept { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }
    [[nodiscard]] WindowStateCode windowStateCode() const;
    void setWindowStateCode(WindowStateCode state);

    /// The loaded forms that are not unloaded yet, in the order of loading.
    [[nodiscard]] static QList<Form*> openForms();
    /// The form that a control is in; for a control of a tool window, such as a floating toolbar
    /// band, the form that the window lies over.
    [[nodiscard]] static Form* formOf(const QWidget& control);
    /// Has every open form keep what was typed (`Form_EndSession`): when the program's session
    /// ends, or what is typed can be saved no more.
    static void keepWhatWasTyped();
    /// True while any form is shown modally or a box of the prompt is open.
    [[nodiscard]] static bool isModalOpen();

Q_SIGNALS:
    /// After `Form_Unload`.
    void unloaded();

protected:
    virtual void Form_Load();
    virtual void Form_Activate();
    virtual void Form_Resize();
    virtual void Form_KeyDown(FormKey& key);
    virtual void Form_KeyUp(FormKey& key);
    virtual void Form_QueryUnload(bool& cancel);
    virtual void Form_Unload();
    /// Keep what was typed at once, and ask nothing. Closing follows, if there is time.
    virtual void Form_EndSession();

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void reject() override;

private:
    class KeyPreview;

    void adopt(QWidget* owner);
    bool unloadOwnedForms();
    void finishUnload();

    QString m_tag;
    bool m_loaded = false;
    bool m_unloading = false;
    bool m_unloaded = false;
    bool m_modeless = false;
};

} // namespace yrw

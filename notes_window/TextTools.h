#pragma once

#include <QObject>

namespace yrw {

class RichTextBox;
class Toolbar;

/// Keeps the tools of the text lit while they can act, and only then: undo, redo, copy, clear and
/// paste, in whichever bands and menus they are.
///
/// The clipboard is asked only while the program is the active one: it may belong to a program that
/// is slow to answer.
/// Lifetime: text and toolbar outlive it. Thread: the user-interface thread.
class TextTools final : public QObject {
    Q_OBJECT

public:
    TextTools(const RichTextBox& text, Toolbar& toolbar, QObject* parent);

    /// Brings the tools in line with the text, where no signal tells of a change: it was turned on
    /// or off.
    void update();

private:
    void lookAtClipboard();

    const RichTextBox& m_text;
    Toolbar& m_toolbar;
    bool m_hasContent = false; ///< the clipboard holds something that the text takes
    bool m_clipboardChanged = true;
};

} // namespace yrw

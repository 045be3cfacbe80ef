#pragma once

#include <QByteArray>
#include <QString>

namespace yrw {

class Prompt;
class RichTextBox;

/// True for a file that a desktop would run rather than show: a program, a script, a package to
/// install, or a launcher. Both its name and its content are looked at.
[[nodiscard]] bool isProgram(const QString& name, const QByteArray& data);

/// What a user does with the files inside a note: open a copy, save one.
///
/// Indexes are those of the box's objects. A failure raises an `AutomationError`.
/// Lifetime: box and door outlive it. Thread: the user-interface thread.
class NoteAttachments {
public:
    NoteAttachments(RichTextBox& box, Prompt& prompt);

    /// Asks, naming the kind of file, and lets the desktop open a private copy. Programs are
    /// refused.
    void open(int index);
    /// Asks for a place and writes the file there.
    void saveAs(int index);

private:
    void tellNoFile(int index);

    RichTextBox& m_box;
    Prompt& m_prompt;
};

} // namespace yrw

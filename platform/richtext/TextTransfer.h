#pragma once

#include "platform/prompt/Prompt.h"
#include "platform/richtext/TextParts.h"

#include <QObject>

class QMimeData;
class QTextCursor;
class QTextEdit;
class QUrl;

namespace yrw::richtext {

class EmbeddedObjects;
class SelectionFormat;
class TextMarks;

/// Text on its way out of a rich-text box and into it: copied, pasted, dropped. What is put in is
/// one undo step and whole: what a note cannot hold is refused.
///
/// Lifetime: its editor's, with the parts given. Thread: the user-interface thread.
class TextTransfer : public QObject {
    Q_OBJECT

public:
    TextTransfer(QTextEdit& editor, TextParts& parts, EmbeddedObjects& objects,
                 const SelectionFormat& selection, TextMarks& marks);

    /// The selection as RTF, HTML and plain text; the caller owns it.
    [[nodiscard]] QMimeData* copied() const;
    /// True for data that pasting would take.
    [[nodiscard]] static bool accepts(const QMimeData* content);
    /// Replaces the selection by such data; does nothing in a box that is read-only.
    void paste(const QMimeData& source);
    /// Pastes the clipboard's text without formats.
    void pastePlain();
    /// Replaces the selection by the content of an RTF document, which keeps its look.
    void insertRtf(const QString& rtf);

    /// Pasted text keeps its own font, size and colours when true; it takes those of the insertion
    /// point when false, which is how it begins. Text copied from a rich-text box keeps them.
    void setKeepsLook(bool keep) { m_keepsLook = keep; }
    /// Takes each file that is pasted or dropped and is no picture; it is embedded as an icon at
    /// first. Called when the drop is over, so that it may ask.
    using FileHandler = std::function<void(const QString& path)>;
    void setFileHandler(FileHandler handler) { m_takeFile = std::move(handler); }
    /// Gives the steps of a long insertion: it may handle events, and where a step gives false
    /// nothing is pasted. Until it is done the box shows what it showed before and cannot be
    /// changed.
    void setWatch(std::function<WorkStep()> watch) { m_watch = std::move(watch); }
    /// True while a drop lasts: the program that it comes from waits, and no events are handled.
    void setDropping(bool dropping) { m_isDropping = dropping; }
    /// The prompt that tells what was refused; nobody does without one. Not owned.
    void setPrompt(Prompt* prompt) { m_prompt = prompt; }

Q_SIGNALS:
    /// Much was put in, of which the editor raised no signals.
    void inserted();

private:
    enum class Insertion { Whole, Stopped, TooLarge };

    void insert(rtf::Document model, bool keepLook);
    /// `heightBefore`: of what is shown, in dots.
    [[nodiscard]] Insertion insertAt(QTextCursor& cursor, const rtf::Document& model,
                                     double heightBefore, const WorkStep& goesOn);
    void insertHtml(const QString& html);
    void insertText(const QString& text);
    void insertFiles(const QList<QUrl>& urls);
    void insertFile(const QString& path);
    [[nodiscard]] QString fontName() const;
    [[nodiscard]] bool mayInsert(qint64 bytes);
    void refuse(const QString& reason);

    QTextEdit& m_editor;
    TextParts& m_parts;
    EmbeddedObjects& m_objects;
    const SelectionFormat& m_selection;
    TextMarks& m_marks;
    Prompt* m_prompt = nullptr;
    FileHandler m_takeFile;
    std::function<WorkStep()> m_watch;
    bool m_keepsLook = false;
    bool m_isDropping = false;
};

} // namespace yrw::richtext

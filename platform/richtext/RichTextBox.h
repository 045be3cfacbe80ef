#pragma once

#include "platform/richtext/EmbeddedObjects.h"
#include "platform/richtext/ObjectMouse.h"
#include "platform/richtext/SelectionFormat.h"
#include "platform/richtext/TextMarks.h"
#include "platform/richtext/TextParts.h"
#include "platform/richtext/TextTransfer.h"

#include <QTextDocument>
#include <QTextEdit>

#include <functional>
#include <memory>
#include <vector>

class QHelpEvent;

namespace yrw {

class SpellChecker;
namespace richtext {
class SpellingUnderlines;
} // namespace richtext

/// The rich-text box: edits rich text that is loaded from and written as RTF.
///
/// Thread: the user-interface thread.
class RichTextBox : public QTextEdit {
    Q_OBJECT

public:
    explicit RichTextBox(QWidget* parent = nullptr);
    ~RichTextBox() override;

    /// The content as a whole RTF document; see platform/rtf for what is written.
    [[nodiscard]] QString TextRTF() const;
    /// Replaces the content by an RTF document; what cannot be shown is kept and written back.
    /// Text that is not RTF is shown as plain text. Clears undo; raises `contentChanged`. `goesOn`
    /// may handle events: until the work is done the box shows what it showed before.
    /// False when the content shows less than that document: it was stopped, or `shortening` tells
    /// why. It must not be saved in the document's place then.
    bool setTextRTF(const QString& rtf, const WorkStep& goesOn = {});
    /// The text without formatting; paragraphs end in CR LF except the last.
    [[nodiscard]] QString Text() const;
    struct Texts {
        QString rtf;   ///< as `TextRTF`
        QString plain; ///< as `Text`
    };
    /// Both texts at once; `progress` is called again and again with the percentage done, and must
    /// not handle events.
    [[nodiscard]] Texts texts(const std::function<void(int percent)>& progress = {}) const;
    void setText(const QString& text);
    /// True when there is neither text nor an object.
    [[nodiscard]] bool isEmpty() const { return document()->isEmpty(); }
    /// True when the last `setTextRTF` could not read its input whole, was stopped or shortened it.
    [[nodiscard]] bool isIncomplete() const { return m_parts.header.incomplete; }
    /// Why the last `setTextRTF` shows less than it read: more tables inside tables, or more of
    /// everything, than can be laid out; a line before the text says the same. Else empty.
    [[nodiscard]] QString shortening() const { return m_shortening; }

    /// The font and colour of an empty document and of what is typed into it.
    void setDefaultFontChoice(const FontChoice& font);

    /// The formats of the selection.
    [[nodiscard]] richtext::SelectionFormat& selection() { return m_selection; }
    [[nodiscard]] const richtext::SelectionFormat& selection() const { return m_selection; }
    /// The files, links and other objects in the text, and how they get there.
    [[nodiscard]] richtext::EmbeddedObjects& objects() { return m_objects; }
    /// Copying, pasting and dropping.
    [[nodiscard]] richtext::TextTransfer& transfer() { return m_transfer; }

    /// Underlines words that the checker does not know; without one, none. Formats, undo and the
    /// text itself are left alone.
    void setSpellChecker(std::shared_ptr<SpellChecker> checker);
    /// The unknown word at a point of the viewport; nothing selected where there is none.
    [[nodiscard]] QTextCursor misspellingAt(const QPoint& point) const;
    /// Looks at every word anew, after the checker has learnt one.
    void checkSpellingAgain();

    /// Paints pieces of the text in another format, which stays out of the content; replaces those
    /// marked before.
    void setMarks(const QList<ExtraSelection>& marks) { m_marks.set(marks); }

    /// A copy of the content to be painted elsewhere, with pictures and objects: laid out at this
    /// widget's resolution (`logicalDpiY`) with the metrics of paper. It must end before the box.
    [[nodiscard]] std::unique_ptr<QTextDocument> printable();

    /// The prompt that asks before a link opens, and tells what could not be pasted; without one,
    /// links open unasked. Not owned.
    void setPrompt(Prompt* prompt);

Q_SIGNALS:
    /// The content changed, by the user or in code.
    void contentChanged();
    /// The selection, the insertion point or the formats there changed.
    void selectionStateChanged();
    /// The user double-clicked an embedded object.
    void objectActivated(int index);

protected:
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool load(rtf::Document&& source, const WorkStep& goesOn = {});
    [[nodiscard]] bool fill(QTextDocument& fresh, const rtf::Document& source,
                            std::vector<rtf::Inline>& inlines, const WorkStep& goesOn,
                            QString& shortening) const;
    void take(std::unique_ptr<QTextDocument> fresh);
    [[nodiscard]] rtf::Document plainModel(const QString& text) const;
    [[nodiscard]] rtf::Document scan(const std::function<void(int percent)>& progress = {}) const;
    void applyDefaultToEmpty();
    [[nodiscard]] bool leavesList(const QKeyEvent& event) const;
    void showToolTip(const QHelpEvent& event);

    richtext::TextParts m_parts;
    richtext::TextMarks m_marks{*this};
    richtext::SelectionFormat m_selection{*this, [this] { Q_EMIT selectionStateChanged(); }};
    richtext::EmbeddedObjects m_objects{*this, m_parts.inlines};
    richtext::TextTransfer m_transfer{*this, m_parts, m_objects, m_selection, m_marks};
    richtext::ObjectMouse m_mouse{*this, m_objects, m_transfer};
    QString m_shortening;
    Prompt* m_prompt = nullptr;
    richtext::SpellingUnderlines* m_spelling = nullptr;
};

} // namespace yrw

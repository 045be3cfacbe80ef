#pragma once

#include "platform/prompt/Prompt.h"
#include "platform/rtf/Model.h"

#include <QTextEdit>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QTextBlock;

namespace yrw {

namespace richtext {
class InlineRenderer;
}

/// Paragraph alignment by the numbers that the system's callers use.
enum class TextAlignment : int { Left = 0, Right = 1, Center = 2 };

/// The rich-text box: edits rich text that is loaded from and written as RTF.
///
/// Selection properties read the selection, or the insertion point when nothing is selected; a
/// mixed selection gives nothing (`std::nullopt`). Setting one applies it to the selection, or to
/// what is typed next, and is one undo step.
/// Colours are &H00BBGGRR. Lengths are twips (1/1440 inch).
/// Thread: the user-interface thread.
class RichTextBox : public QTextEdit {
    Q_OBJECT

public:
    explicit RichTextBox(QWidget* parent = nullptr);
    ~RichTextBox() override;

    /// The content as a whole RTF document; see platform/rtf for what is written.
    [[nodiscard]] QString TextRTF() const;
    /// Replaces the content by an RTF document; what cannot be shown is kept and written back.
    /// Text that is not RTF is shown as plain text. Clears undo; raises `contentChanged`.
    void setTextRTF(const QString& rtf);
    /// The text without formatting; paragraphs end in CR LF except the last.
    [[nodiscard]] QString Text() const;
    void setText(const QString& text);
    /// True when there is neither text nor an object.
    [[nodiscard]] bool isEmpty() const;
    /// True when the last `setTextRTF` could not read its input whole.
    [[nodiscard]] bool isIncomplete() const;

    [[nodiscard]] std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    [[nodiscard]] std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    [[nodiscard]] std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    [[nodiscard]] std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    /// The font name as asked for, also when the screen shows a substitute.
    [[nodiscard]] std::optional<QString> SelFontName() const;
    void setSelFontName(const QString& name);
    [[nodiscard]] std::optional<double> SelFontSize() const; ///< points
    void setSelFontSize(double points);
    [[nodiscard]] std::optional<int> SelColor() const;
    void setSelColor(int colour);
    [[nodiscard]] std::optional<TextAlignment> SelAlignment() const;
    void setSelAlignment(TextAlignment alignment);
    [[nodiscard]] std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    [[nodiscard]] std::optional<int> SelIndent() const; ///< twips, 0 or more
    void setSelIndent(int twips);                       ///< below 0 counts as 0

    [[nodiscard]] int SelStart() const; ///< 0-based character position
    void setSelStart(int position);
    [[nodiscard]] int SelLength() const;
    void setSelLength(int length);

    /// The font and colour of an empty document and of what is typed into it.
    void setDefaultFontChoice(const FontChoice& font);
    [[nodiscard]] FontChoice defaultFontChoice() const;

Q_SIGNALS:
    /// The content changed, by the user or in code.
    void contentChanged();
    /// The selection, the insertion point or the formats there changed.
    void selectionStateChanged();

private:
    using ParagraphChange = std::function<void(rtf::ParFormat&)>;

    void load(const rtf::Document& document);
    [[nodiscard]] rtf::Document scan() const;
    void applyDefaultToEmpty();
    void changeCharacters(const QTextCharFormat& change);
    void changeParagraphs(const ParagraphChange& change);
    void changeParagraph(const QTextBlock& block, const ParagraphChange& change);
    [[nodiscard]] rtf::ParFormat paragraphOf(const QTextBlock& block) const;
    template <typename T, typename Get>
    [[nodiscard]] std::optional<T> ofCharacters(Get get) const;
    template <typename T, typename Get>
    [[nodiscard]] std::optional<T> ofParagraphs(Get get) const;

    FontChoice m_default;
    rtf::Document m_header; ///< tables and kept groups of the document last loaded
    std::vector<rtf::Inline> m_inlines;
    std::unique_ptr<richtext::InlineRenderer> m_renderer;
};

} // namespace yrw

#pragma once

#include "platform/rtf/Model.h"

#include <QString>

#include <functional>
#include <optional>
#include <utility>

class QTextCharFormat;
class QTextEdit;

namespace yrw {

/// Paragraph alignment by the numbers that the system's callers use.
enum class TextAlignment : int { Left = 0, Right = 1, Center = 2 };

namespace richtext {

/// The formats of an editor's selection, or of the insertion point when nothing is selected.
///
/// A mixed selection gives nothing (`std::nullopt`). Setting a format applies it to the selection,
/// or to what is typed next, and is one undo step; `changed` is called then.
/// Colours are &H00BBGGRR. Lengths are twips (1/1440 inch).
/// Lifetime: its editor's. Thread: the user-interface thread.
class SelectionFormat {
public:
    SelectionFormat(QTextEdit& editor, std::function<void()> changed)
        : m_editor(editor), m_changed(std::move(changed)) {}

    [[nodiscard]] std::optional<bool> bold() const;
    void setBold(bool on);
    [[nodiscard]] std::optional<bool> italic() const;
    void setItalic(bool on);
    [[nodiscard]] std::optional<bool> underline() const;
    void setUnderline(bool on);
    [[nodiscard]] std::optional<bool> strikeThru() const;
    void setStrikeThru(bool on);
    /// The font name as asked for, also when the screen shows a substitute.
    [[nodiscard]] std::optional<QString> fontName() const;
    void setFontName(const QString& name);
    [[nodiscard]] std::optional<double> fontSize() const; ///< points
    void setFontSize(double points);
    [[nodiscard]] std::optional<int> colour() const;
    void setColour(int colour);
    [[nodiscard]] std::optional<TextAlignment> alignment() const;
    void setAlignment(TextAlignment alignment);
    [[nodiscard]] std::optional<bool> bullet() const;
    void setBullet(bool on);
    [[nodiscard]] std::optional<int> indent() const; ///< twips, 0 or more
    void setIndent(int twips);                       ///< below 0 counts as 0

private:
    void changeCharacters(const QTextCharFormat& change);
    void changeParagraphs(const std::function<void(rtf::ParFormat&)>& change);

    QTextEdit& m_editor;
    std::function<void()> m_changed;
};

} // namespace richtext
} // namespace yrw

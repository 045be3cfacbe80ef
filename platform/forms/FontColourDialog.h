#pragma once

#include "platform/prompt/Prompt.h"

#include <QFontDialog>

#include <functional>
#include <optional>

class QAbstractItemView;
class QCheckBox;
class QLineEdit;
class QPushButton;

namespace yrw {

/// The font dialog with a colour among the effects. Parts of which the text has several show none,
/// and are chosen only when the user acts on them.
///
/// Lifetime: one question. Thread: the user-interface thread.
class FontColourDialog final : public QFontDialog {
    Q_OBJECT

public:
    /// Asks for a colour &H00BBGGRR, beginning with one; nothing when that was cancelled.
    using ColourQuestion = std::function<std::optional<int>(int start)>;

    FontColourDialog(const FontChoice& start, ColourQuestion askColour);

    /// The font as it stands; parts that were left alone are those of the start.
    [[nodiscard]] FontChoice choice() const;

private:
    void addColourButton();
    void watchList(int index, FontParts parts);
    void watchBox(QCheckBox* box, FontPart part);
    void askForColour();
    void showColour();

    FontChoice m_start;
    ColourQuestion m_askColour;
    QString m_begun;    ///< family that the dialog showed at first
    FontParts m_chosen; ///< parts that the user acted on
    int m_colour;
    QPushButton* m_cmdColour = nullptr;
};

} // namespace yrw

#pragma once

#include <QDateTime>
#include <QString>

namespace yrw {

class Prompt;

/// Whose text a note keeps that two users have changed.
enum class TextChoice { Mine, Theirs, Both };

/// One of the two texts.
struct ChangedText {
    QString author;
    QDateTime date; ///< of the change
};

[[nodiscard]] TextChoice askWhoseText(Prompt& prompt, const ChangedText& theirs,
                                      const ChangedText& mine);

} // namespace yrw

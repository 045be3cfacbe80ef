#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace yrw {

/// Knows the words of one language.
/// Thread: one at a time.
class SpellChecker {
public:
    virtual ~SpellChecker();

    /// True for a word of the language, and for one that the dictionary cannot write down.
    [[nodiscard]] virtual bool knows(const QString& word) = 0;
    /// Like words, the best first.
    [[nodiscard]] virtual QStringList suggestions(const QString& word) = 0;
    /// Counts the word as known from now on, as long as the checker lives.
    virtual void accept(const QString& word) = 0;
};

/// Where dictionaries lie: the folders named in `$DICPATH`, the user's own, the system's.
[[nodiscard]] QStringList dictionaryFolders();

/// The dictionary of a language ("de_AT", or "de") in the first folder that has one; that of
/// another country where the language has none for its own. Nothing when none fits or can be read.
[[nodiscard]] std::unique_ptr<SpellChecker> openDictionary(const QString& language,
                                                           const QStringList& folders);

} // namespace yrw

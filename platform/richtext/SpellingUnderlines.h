#pragma once

#include <QSyntaxHighlighter>
#include <QTextCursor>

#include <memory>

namespace yrw {
class SpellChecker;
}

namespace yrw::richtext {

/// Underlines the words of a document that a checker does not know.
///
/// What it paints is no part of the document: nothing is saved, copied or printed of it.
/// Lifetime: belongs to the document. Thread: the user-interface thread.
class SpellingUnderlines final : public QSyntaxHighlighter {
    Q_OBJECT

public:
    SpellingUnderlines(QTextDocument& document, std::shared_ptr<SpellChecker> checker);
    ~SpellingUnderlines() override;

    /// Selects the unknown word that the cursor stands in; a null cursor where there is none.
    [[nodiscard]] QTextCursor unknownWord(const QTextCursor& at) const;

protected:
    void highlightBlock(const QString& text) override;

private:
    std::shared_ptr<SpellChecker> m_checker;
};

} // namespace yrw::richtext

#pragma once

#include "platform/rtf/Model.h"

#include <QByteArrayView>
#include <QHash>
#include <QStringView>

#include <unordered_map>

namespace yrw::rtf {

/// Appends to a document, paragraph by paragraph; equal formats are stored once.
///
/// The document must outlive the builder and be changed by nothing else meanwhile.
/// Thread: one at a time.
class Builder {
public:
    explicit Builder(Document& document) : m_document(document) {}

    /// Index of an equal format, font or field, added when it is new.
    int charFormat(const CharFormat& format);
    int parFormat(const ParFormat& format);
    int font(const QString& name);
    int field(const Field& field);
    /// Adds a font of the font table; the first of a number wins.
    void addFont(const Font& font);
    /// Index of the font with that number in the font table, else of the default font. Fonts of
    /// one name count as one, whatever their character sets.
    [[nodiscard]] int fontByNumber(int number) const;
    [[nodiscard]] bool hasFont(int number) const { return m_fontNumbers.contains(number); }

    /// Appends characters to the open paragraph.
    void text(QStringView characters, int format, int field = -1);
    void asciiText(QByteArrayView characters, int format, int field = -1);
    void inlineGroup(InlineKind kind, const QByteArray& raw, int format, int field = -1);
    /// Ends the open paragraph. `mark` is used when it is empty.
    void endParagraph(int format, int mark, int row = -1, int cell = 0);

    /// True when the open paragraph has no characters.
    [[nodiscard]] bool paragraphIsEmpty() const;
    /// True when nothing was appended yet.
    [[nodiscard]] bool isEmpty() const {
        return m_document.paragraphs.empty() && m_document.runs.empty();
    }

private:
    void addRun(int start, int length, int format, int field);

    Document& m_document;
    int m_firstRun = 0;
    std::unordered_multimap<std::size_t, int> m_charFormats;
    std::unordered_multimap<std::size_t, int> m_parFormats;
    QHash<QByteArray, int> m_fields;
    QHash<QString, int> m_fonts;
    std::unordered_map<int, int> m_fontNumbers;
};

} // namespace yrw::rtf

#include "platform/rtf/Builder.h"

#include <QHashFunctions>

#include <algorithm>

namespace yrw::rtf {

namespace {

/// Every field has its bits; the sizes and colours that notes use do not meet.
std::size_t hashOf(const CharFormat& format) {
    const auto wide = [](int value) {
        return static_cast<std::size_t>(static_cast<unsigned>(value));
    };
    std::size_t flags = static_cast<std::size_t>(format.script);
    for (const bool flag :
         {format.bold, format.italic, format.underline, format.strike, format.hidden}) {
        flags = flags << 1 | static_cast<std::size_t>(flag);
    }
    constexpr std::size_t kPrime = 0x9E3779B97F4A7C15U;
    std::size_t hash = flags | wide(format.halfPoints) << 8 | wide(format.font) << 24;
    hash = hash * kPrime ^ wide(format.colour);
    hash = hash * kPrime ^ wide(format.background);
    return hash * kPrime;
}

std::size_t hashOf(const ParFormat& format) {
    return qHashMulti(0, static_cast<int>(format.alignment), static_cast<int>(format.list),
                      format.listStart, format.left, format.right, format.first, format.before,
                      format.after, format.lineSpacing, format.style, format.listBefore,
                      format.listAfter, format.tabs);
}

template <typename T>
int intern(std::vector<T>& values, std::unordered_multimap<std::size_t, int>& index,
           const T& value) {
    const std::size_t hash = hashOf(value);
    const auto [begin, end] = index.equal_range(hash);
    for (auto it = begin; it != end; ++it) {
        if (at(values, it->second) == value) {
            return it->second;
        }
    }
    const int added = static_cast<int>(values.size());
    values.push_back(value);
    index.emplace(hash, added);
    return added;
}

} // namespace

int Builder::charFormat(const CharFormat& format) {
    return intern(m_document.charFormats, m_charFormats, format);
}

int Builder::parFormat(const ParFormat& format) {
    return intern(m_document.parFormats, m_parFormats, format);
}

int Builder::field(const Field& field) {
    const auto found = m_fields.constFind(field.instruction);
    if (found != m_fields.constEnd()) {
        return found.value();
    }
    m_document.fields.push_back(field);
    return m_fields[field.instruction] = static_cast<int>(m_document.fields.size()) - 1;
}

void Builder::addFont(const Font& font) {
    if (m_fontNumbers.contains(font.number)) {
        return;
    }
    const int index = static_cast<int>(m_document.fonts.size());
    m_document.fonts.push_back(font);
    const auto found = m_fonts.constFind(font.name);
    const int first = found == m_fonts.constEnd() ? index : found.value();
    m_fonts[font.name] = first;
    m_fontNumbers[font.number] = first;
}

int Builder::font(const QString& name) {
    const auto found = m_fonts.constFind(name);
    if (found != m_fonts.constEnd()) {
        return found.value();
    }
    int number = 0;
    for (const Font& font : m_document.fonts) {
        number = std::max(number, font.number + 1);
    }
    addFont(Font{.number = number, .name = name});
    return m_fonts[name];
}

int Builder::fontByNumber(int number) const {
    const auto found = m_fontNumbers.find(number);
    return found == m_fontNumbers.end() ? m_document.defaultFont : found->second;
}

bool Builder::paragraphIsEmpty() const {
    return static_cast<int>(m_document.runs.size()) == m_firstRun;
}

void Builder::text(QStringView characters, int format, int field) {
    const int start = static_cast<int>(m_document.text.size());
    m_document.text += characters;
    addRun(start, static_cast<int>(characters.size()), format, field);
}

void Builder::asciiText(QByteArrayView characters, int format, int field) {
    const int start = static_cast<int>(m_document.text.size());
    m_document.text += QLatin1String(characters.data(), characters.size());
    addRun(start, static_cast<int>(characters.size()), format, field);
}

void Builder::addRun(int start, int length, int format, int field) {
    if (length == 0) {
        return;
    }
    if (!paragraphIsEmpty()) {
        Run& last = m_document.runs.back();
        if (last.format == format && last.field == field && last.object < 0) {
            last.length += length;
            return;
        }
    }
    m_document.runs.push_back(
        Run{.start = start, .length = length, .format = format, .field = field});
}

void Builder::inlineGroup(InlineKind kind, const QByteArray& raw, int format, int field) {
    const int start = static_cast<int>(m_document.text.size());
    m_document.text += QChar(kInlineMark);
    m_document.runs.push_back(Run{.start = start,
                                  .length = 1,
                                  .format = format,
                                  .field = field,
                                  .object = static_cast<int>(m_document.inlines.size())});
    m_document.inlines.push_back(Inline{kind, raw});
}

void Builder::endParagraph(int format, int mark, int row, int cell) {
    const int runs = static_cast<int>(m_document.runs.size());
    m_document.paragraphs.push_back(Paragraph{.firstRun = m_firstRun,
                                              .runCount = runs - m_firstRun,
                                              .format = format,
                                              .mark = mark,
                                              .row = row,
                                              .cell = cell});
    m_firstRun = runs;
}

} // namespace yrw::rtf

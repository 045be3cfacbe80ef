#include "platform/rtf/Writer.h"

#include "platform/rtf/Output.h"
#include "platform/rtf/TableOutput.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace yrw::rtf {

namespace {

constexpr int kSymbolCharset = 2;

/// One pass over a document.
class Writer {
public:
    explicit Writer(const Document& document) : m_document(document) {}
    QByteArray run();

private:
    void header();
    void leaveSymbolFont();
    void fontTable();
    void colourTable();
    void paragraph(int index);
    void paragraphFormat(const ParFormat& format, int level);
    void listItem(const ParFormat& format, bool defined);
    void listDefinition(const ParFormat& format);
    void content(const Paragraph& paragraph);
    void openField(int field);
    void closeField();
    void characterFormat(const CharFormat& format);
    void flag(bool wanted, bool& present, const char* on, const char* off);
    void script(Script wanted);
    void endOfParagraph(int index);
    [[nodiscard]] bool isBullet(const Font& font) const;
    int colourIndex(int colour);

    const Document& m_document;
    Output m_out;
    CharFormat m_chars;
    bool m_charsKnown = false;
    CharFormat m_outside; ///< the formats around an open field
    int m_field = -1;
    TableOutput m_tables{m_document, m_out};
    std::optional<ParFormat> m_pars;
    int m_level = 0;                 ///< number of tables around the present paragraph
    std::optional<ParFormat> m_list; ///< of the list item before
    int m_item = 0;                  ///< its number
    int m_symbolFont = 0;
    QHash<int, int> m_colours;
};

QByteArray Writer::run() {
    m_out.reserve(m_document.text.size() * 2 + 1024);
    header();
    const int count = static_cast<int>(m_document.paragraphs.size());
    for (int i = 0; i < count; ++i) {
        paragraph(i);
    }
    leaveSymbolFont();
    m_out.closeWord();
    m_out.raw(kTail);
    return m_out.take();
}

/// Text put in the tail's place is read in the last font, which must be one of letters.
void Writer::leaveSymbolFont() {
    if (at(m_document.fonts, m_chars.font).charset != kSymbolCharset) {
        return;
    }
    const auto letters =
        std::find_if(m_document.fonts.begin(), m_document.fonts.end(),
                     [](const Font& font) { return font.charset != kSymbolCharset; });
    if (letters != m_document.fonts.end()) {
        m_out.word("f", letters->number);
    }
}

void Writer::header() {
    m_out.word("rtf", 1);
    m_out.word("ansi");
    m_out.word("ansicpg", m_document.codePage);
    m_out.word("deff",
               m_document.fonts.empty() ? 0 : at(m_document.fonts, m_document.defaultFont).number);
    m_out.word("deflang", 1033);
    fontTable();
    colourTable();
    for (const QByteArray& group : m_document.kept) {
        m_out.raw(group);
        m_out.raw("\r\n");
    }
    m_out.word("viewkind", 4);
    m_out.word("uc", 1);
}

void Writer::fontTable() {
    int next = 0;
    int symbol = -1;
    m_out.raw("{\\fonttbl");
    const auto add = [this](const Font& font) {
        m_out.raw("{");
        m_out.word("f", font.number);
        const QByteArray family = "f" + font.family;
        m_out.word(family.constData());
        m_out.word("fcharset", font.charset);
        QString name = font.name;
        name.remove(u';');
        m_out.text(name, false, false);
        m_out.closeWord();
        m_out.raw(";}");
    };
    for (const Font& font : m_document.fonts) {
        add(font);
        next = std::max(next, font.number + 1);
        symbol = isBullet(font) && symbol < 0 ? font.number : symbol;
    }
    const bool bullets =
        std::any_of(m_document.parFormats.begin(), m_document.parFormats.end(),
                    [](const ParFormat& format) { return format.list == ListKind::Bullet; });
    m_symbolFont = symbol >= 0 ? symbol : next;
    if (bullets && symbol < 0) {
        add(Font{.number = next, .charset = kSymbolCharset, .name = QStringLiteral("Symbol")});
    }
    m_out.raw("}\r\n");
}

bool Writer::isBullet(const Font& font) const {
    return font.charset == kSymbolCharset && font.name == QLatin1String("Symbol");
}

int Writer::colourIndex(int colour) {
    return colour == kAutomatic ? 0 : m_colours.value(colour, 0);
}

void Writer::colourTable() {
    std::vector<int> colours = m_document.colours;
    if (colours.empty()) {
        colours.push_back(kAutomatic);
    }
    for (std::size_t i = 1; i < colours.size(); ++i) {
        if (!m_colours.contains(colours[i])) {
            m_colours[colours[i]] = static_cast<int>(i);
        }
    }
    const auto need = [&](int colour) {
        if (colour != kAutomatic && !m_colours.contains(colour)) {
            m_colours[colour] = static_cast<int>(colours.size());
            colours.push_back(colour);
        }
    };
    for (const CharFormat& format : m_document.charFormats) {
        need(format.colour);
        need(format.background);
    }
    m_out.raw("{\\colortbl ");
    for (const int colour : colours) {
        if (colour != kAutomatic) {
            m_out.word("red", colour >> 16 & 0xFF);
            m_out.word("green", colour >> 8 & 0xFF);
            m_out.word("blue", colour & 0xFF);
        }
        m_out.raw(";");
    }
    m_out.raw("}\r\n");
}

void Writer::paragraph(int index) {
    const Paragraph& paragraph = at(m_document.paragraphs, index);
    const ParFormat& format = at(m_document.parFormats, paragraph.format);
    if (m_tables.enter(paragraph)) {
        m_pars.reset();
    }
    const int level = m_document.depthOf(paragraph.row);
    const bool same = m_pars && *m_pars == format && m_level == level;
    if (!same) {
        paragraphFormat(format, level);
    }
    if (format.list == ListKind::None) {
        m_list.reset();
    } else {
        listItem(format, same);
    }
    content(paragraph);
    endOfParagraph(index);
}

void Writer::paragraphFormat(const ParFormat& format, int level) {
    static constexpr std::array<const char*, 4> kAlignments = {"ql", "qr", "qc", "qj"};
    const auto length = [this](const char* name, int twips) {
        if (twips != 0) {
            m_out.word(name, twips);
        }
    };
    m_tables.format(level);
    length("s", format.style);
    if (format.rightToLeft) {
        m_out.word("rtlpar");
    }
    length("fi", format.first);
    length("li", format.left);
    length("ri", format.right);
    length("sb", format.before);
    length("sa", format.after);
    if (format.lineSpacing != 0) {
        m_out.word("sl", format.lineSpacing);
    }
    if (format.lineMultiple) {
        m_out.word("slmult", 1);
    }
    for (const int tab : format.tabs) {
        m_out.word("tx", tab);
    }
    if (format.alignment != Alignment::Left) {
        m_out.word(at(kAlignments, static_cast<int>(format.alignment)));
    }
    m_pars = format;
    m_level = level;
}

void Writer::listItem(const ParFormat& format, bool defined) {
    m_item = m_list && isSameList(*m_list, format) ? m_item + 1 : format.listStart;
    m_list = format;
    m_out.raw("{");
    m_out.word("pntext");
    if (format.list == ListKind::Bullet) {
        m_out.word("f", m_symbolFont);
        m_out.raw("\\'B7");
    } else {
        const QString number =
            format.listBefore + listNumber(format.list, m_item) + format.listAfter;
        m_out.text(number, true, false);
    }
    m_out.word("tab");
    m_out.raw("}");
    if (!defined) {
        listDefinition(format);
    }
}

void Writer::listDefinition(const ParFormat& format) {
    static constexpr std::array<const char*, 7> kKinds = {"",        "",       "pndec", "pnlcltr",
                                                          "pnucltr", "pnlcrm", "pnucrm"};
    m_out.raw("{\\*");
    m_out.word("pn");
    if (format.list == ListKind::Bullet) {
        m_out.word("pnlvlblt");
        m_out.word("pnf", m_symbolFont);
        m_out.word("pnindent", 0);
        m_out.raw("{\\pntxtb\\'B7}}");
        return;
    }
    m_out.word("pnlvlbody");
    m_out.word("pnindent", 0);
    m_out.word("pnstart", format.listStart);
    m_out.word(at(kKinds, static_cast<int>(format.list)));
    const auto part = [this](const char* name, const QString& text) {
        if (!text.isEmpty()) {
            m_out.raw("{");
            m_out.word(name);
            m_out.text(text, true, false);
            m_out.raw("}");
        }
    };
    part("pntxtb", format.listBefore);
    part("pntxta", format.listAfter);
    m_out.raw("}");
}

void Writer::content(const Paragraph& paragraph) {
    for (int r = 0; r < paragraph.runCount; ++r) {
        const Run& run = at(m_document.runs, paragraph.firstRun + r);
        const CharFormat& format = at(m_document.charFormats, run.format);
        if (!m_charsKnown) {
            characterFormat(format); // in full, and not only inside a field
        }
        if (run.field != m_field) {
            closeField();
            openField(run.field);
        }
        characterFormat(format);
        if (run.object >= 0) {
            m_out.raw(at(m_document.inlines, run.object).raw);
        } else {
            const int charset = at(m_document.fonts, format.font).charset;
            m_out.text(QStringView(m_document.text).mid(run.start, run.length), charset == 0,
                       charset == kSymbolCharset);
        }
    }
    closeField();
    if (paragraph.runCount == 0) {
        characterFormat(at(m_document.charFormats, paragraph.mark));
    }
}

void Writer::openField(int field) {
    if (field < 0) {
        return;
    }
    m_field = field;
    m_outside = m_chars;
    m_out.raw("{");
    m_out.word("field");
    m_out.raw(at(m_document.fields, field).instruction);
    m_out.raw("{");
    m_out.word("fldrslt");
}

void Writer::closeField() {
    if (m_field >= 0) {
        m_out.raw("}}");
        m_chars = m_outside;
        m_field = -1;
    }
}

void Writer::flag(bool wanted, bool& present, const char* on, const char* off) {
    if (wanted != present) {
        m_out.word(wanted ? on : off);
        present = wanted;
    }
}

void Writer::script(Script wanted) {
    if (wanted != m_chars.script) {
        m_out.word(wanted == Script::Super ? "super"
                   : wanted == Script::Sub ? "sub"
                                           : "nosupersub");
        m_chars.script = wanted;
    }
}

void Writer::characterFormat(const CharFormat& format) {
    if (m_charsKnown && format == m_chars) {
        return;
    }
    if (!m_charsKnown || format.colour != m_chars.colour) {
        m_out.word("cf", colourIndex(format.colour));
    }
    if (format.background != m_chars.background) {
        m_out.word("highlight", colourIndex(format.background));
    }
    flag(format.bold, m_chars.bold, "b", "b0");
    flag(format.italic, m_chars.italic, "i", "i0");
    flag(format.underline, m_chars.underline, "ul", "ulnone");
    flag(format.strike, m_chars.strike, "strike", "strike0");
    flag(format.hidden, m_chars.hidden, "v", "v0");
    script(format.script);
    if (!m_charsKnown || format.font != m_chars.font) {
        m_out.word("f", at(m_document.fonts, format.font).number);
    }
    if (!m_charsKnown || format.halfPoints != m_chars.halfPoints) {
        m_out.word("fs", format.halfPoints);
    }
    m_chars = format;
    m_charsKnown = true;
}

void Writer::endOfParagraph(int index) {
    const Paragraph& paragraph = at(m_document.paragraphs, index);
    const bool last = index + 1 == static_cast<int>(m_document.paragraphs.size());
    const Paragraph* const next = last ? nullptr : &at(m_document.paragraphs, index + 1);
    if (paragraph.row >= 0) {
        if (m_tables.leave(paragraph, next)) {
            m_pars.reset();
        }
        if (last) {
            paragraphFormat(ParFormat{}, 0);
        }
    } else if (!last) {
        m_out.word("par");
        m_out.raw("\r\n");
    }
    if (next != nullptr && (next->row != paragraph.row || next->cell != paragraph.cell)) {
        m_list.reset(); // each cell counts for itself
    }
}

} // namespace

QByteArray write(const Document& document) {
    return "{" + Writer(document).run();
}

QString escape(QStringView text) {
    Output out;
    qsizetype begin = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text.at(i) != u'\r' && text.at(i) != u'\n') {
            continue;
        }
        out.text(text.mid(begin, i - begin), false, false);
        if (i < text.size()) {
            out.raw("\\par\r\n");
            i += text.mid(i, 2) == QLatin1String("\r\n") ? 1 : 0;
        }
        begin = i + 1;
    }
    out.closeWord();
    return QString::fromLatin1(out.take());
}

} // namespace yrw::rtf

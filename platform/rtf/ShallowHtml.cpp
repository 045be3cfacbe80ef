#include "platform/rtf/ShallowHtml.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace yrw::rtf {

namespace {

const QSet<QString>& named(const char* names) {
    // One set for each list of names below; they live as long as the program.
    static QHash<const char*, QSet<QString>> sets;
    QSet<QString>& set = sets[names];
    if (set.isEmpty()) {
        const QStringList list = QString::fromLatin1(names).split(u' ');
        set = QSet<QString>(list.begin(), list.end());
    }
    return set;
}

constexpr char kEmpty[] = "br hr img wbr col"; ///< elements without content
/// Elements of which nothing is taken, their content included.
constexpr char kLeftOut[] = "script title template iframe object embed svg math noscript "
                            "select textarea audio video canvas applet";
constexpr char kTable[] = "table tr td th tbody thead tfoot caption colgroup col";
constexpr char kBlocks[] =
    "p div br hr li ul ol dl dt dd tr table h1 h2 h3 h4 h5 h6 pre blockquote "
    "section article header footer main nav aside address center";
/// Elements that go into what is made, and their attributes.
constexpr char kTaken[] =
    "a abbr address article aside b big blockquote br caption center cite code col colgroup dd del "
    "dfn div dl dt em font footer h1 h2 h3 h4 h5 h6 header hr i img ins kbd li main mark nav ol p "
    "pre q s samp section small span strike strong sub sup table tbody td tfoot th thead tr tt u "
    "ul var body";
constexpr char kAttributes[] =
    "class href src alt style align valign color face size width height border "
    "bgcolor colspan rowspan start type dir cellspacing cellpadding";

struct Tag {
    QString name; ///< in small letters
    bool ends = false;
    QStringView attributes;
};

/// Reads HTML as a browser does: whatever is no tag is text.
class Scanner {
public:
    explicit Scanner(QStringView html) : m_html(html) {}

    [[nodiscard]] bool atEnd() const { return m_at >= m_html.size(); }
    /// Text up to the next tag.
    QStringView text() {
        const qsizetype begin = m_at;
        while (!atEnd() && !beginsTag()) {
            qsizetype next = m_html.indexOf(u'<', m_at + (m_html[m_at] == u'<' ? 1 : 0));
            m_at = next < 0 ? m_html.size() : next;
        }
        return m_html.sliced(begin, m_at - begin);
    }
    /// The tag here; one without a name for a comment or declaration.
    Tag tag() {
        if (m_html.sliced(m_at).startsWith(u"<!--")) {
            const qsizetype end = m_html.indexOf(u"-->", m_at + 4);
            m_at = end < 0 ? m_html.size() : end + 3;
            return {};
        }
        Tag tag;
        qsizetype at = m_at + 1;
        if (at < m_html.size() && m_html[at] == u'/') {
            tag.ends = true;
            ++at;
        }
        const qsizetype begin = at;
        while (at < m_html.size() && m_html[at].unicode() < 0x80 && m_html[at].isLetterOrNumber()) {
            ++at;
        }
        constexpr qsizetype kLongestName = 16;
        const bool known = at - begin <= kLongestName;
        tag.name = known ? m_html.sliced(begin, at - begin).toString().toLower() : QString();
        const qsizetype end = endOfTag(at);
        tag.attributes = m_html.sliced(at, end - at);
        m_at = std::min(end + 1, m_html.size());
        return end < m_html.size() ? tag : Tag{}; // one that is cut off is none
    }
    /// Moves behind the end of an element whose content is no HTML; gives that.
    QStringView skipContent(const QString& name) {
        const qsizetype begin = m_at;
        while (!atEnd()) {
            const qsizetype next = m_html.indexOf(u"</", m_at);
            m_at = next < 0 ? m_html.size() : next;
            if (atEnd()) {
                break;
            }
            if (m_html.sliced(m_at + 2).startsWith(name, Qt::CaseInsensitive)) {
                const QStringView content = m_html.sliced(begin, m_at - begin);
                tag();
                return content;
            }
            m_at += 2;
        }
        return m_html.sliced(begin);
    }

private:
    [[nodiscard]] bool beginsTag() const {
        if (m_html[m_at] != u'<' || m_at + 1 >= m_html.size()) {
            return false;
        }
        const QChar next = m_html[m_at + 1];
        return next == u'!' || next == u'?' || next == u'/' ||
               (next.unicode() < 0x80 && next.isLetter());
    }
    /// Where the tag's '>' stands, or the end; quotes are honoured.
    [[nodiscard]] qsizetype endOfTag(qsizetype at) const {
        while (at < m_html.size() && m_html[at] != u'>') {
            const QChar c = m_html[at];
            const bool value = c == u'=';
            ++at;
            while (value && at < m_html.size() && m_html[at].isSpace()) {
                ++at;
            }
            if (value && at < m_html.size() && (m_html[at] == u'"' || m_html[at] == u'\'')) {
                const qsizetype close = m_html.indexOf(m_html[at], at + 1);
                if (close < 0) {
                    return m_html.size();
                }
                at = close + 1;
            }
        }
        return at;
    }

    QStringView m_html;
    qsizetype m_at = 0;
};

/// Takes the next `name=value` off the attributes; false at their end.
bool nextAttribute(QStringView& rest, QString& name, QStringView& value) {
    const auto isEnd = [](QChar c) { return c.isSpace() || c == u'/'; };
    qsizetype at = 0;
    while (at < rest.size() && isEnd(rest[at])) {
        ++at;
    }
    const qsizetype begin = at;
    while (at < rest.size() && !isEnd(rest[at]) && rest[at] != u'=') {
        ++at;
    }
    name = rest.sliced(begin, std::min<qsizetype>(at - begin, 32)).toString().toLower();
    value = {};
    while (at < rest.size() && rest[at].isSpace()) {
        ++at;
    }
    if (at < rest.size() && rest[at] == u'=') {
        ++at;
        while (at < rest.size() && rest[at].isSpace()) {
            ++at;
        }
        const bool quoted = at < rest.size() && (rest[at] == u'"' || rest[at] == u'\'');
        const QChar quote = quoted ? rest[at] : QChar();
        const qsizetype from = at + (quoted ? 1 : 0);
        at = from;
        while (at < rest.size() && (quoted ? rest[at] != quote : !rest[at].isSpace())) {
            ++at;
        }
        value = rest.sliced(from, at - from);
        at = std::min(at + (quoted ? 1 : 0), rest.size());
    }
    const bool some = at > 0 && begin < rest.size();
    rest = rest.sliced(at);
    return some;
}

QString takenAttributes(const Tag& tag) {
    QString taken;
    QStringView rest = tag.attributes;
    QString name;
    QStringView value;
    QSet<QString> seen;
    while (nextAttribute(rest, name, value)) {
        const bool picture = name == u"src" && tag.name == u"img" &&
                             value.trimmed().startsWith(u"data:", Qt::CaseInsensitive);
        if (!named(kAttributes).contains(name) || seen.contains(name) ||
            (name == u"src" && !picture) || value.contains(u"url(", Qt::CaseInsensitive)) {
            continue;
        }
        QString written = value.trimmed().toString();
        if (name == u"colspan" || name == u"rowspan") {
            written = QString::number(std::clamp(written.toInt(), 1, kMostHtmlSpan));
        }
        written.replace(u'"', QLatin1String("&quot;")).replace(u'<', QLatin1String("&lt;"));
        if (!picture && written.size() > kLongestAttribute) {
            continue;
        }
        seen.insert(name);
        taken += u' ' + name + u"=\"" + written + u'"';
    }
    return taken;
}

class Flattener {
public:
    QString run(QStringView html) {
        Scanner scanner(html);
        m_out.reserve(std::min<qsizetype>(html.size(), 1 << 20));
        while (!scanner.atEnd()) {
            addText(scanner.text());
            if (scanner.atEnd()) {
                break;
            }
            const Tag tag = scanner.tag();
            if (tag.ends) {
                end(tag.name);
            } else if (tag.name == u"style") {
                m_style += scanner.skipContent(tag.name);
            } else if (named(kLeftOut).contains(tag.name)) {
                scanner.skipContent(tag.name);
            } else if (named(kTaken).contains(tag.name)) {
                begin(tag);
            }
        }
        while (!m_open.empty()) {
            close();
        }
        return style() + m_out;
    }

private:
    /// A '<' that begins no tag must not do so once the text behind it is another.
    void addText(QStringView text) {
        for (const QChar c : text) {
            if (c == u'<') {
                m_out += u"&lt;";
            } else {
                m_out += c == u'\0' ? QChar(QChar::ReplacementCharacter) : c;
            }
        }
    }
    /// The looks of kinds of elements, where there are so few that each element can be held against
    /// each of them.
    [[nodiscard]] QString style() const {
        constexpr qsizetype kLongest = 16384;
        constexpr qsizetype kMostComparisons = 500000;
        const bool fits = m_style.size() <= kLongest &&
                          (m_style.count(u'{') + m_style.count(u',')) * m_count <= kMostComparisons;
        const bool plain = !m_style.contains(u'@') && !m_style.contains(u'<') &&
                           !m_style.contains(u"url(", Qt::CaseInsensitive);
        return m_style.isEmpty() || !fits || !plain ? QString()
                                                    : u"<style>" + m_style + u"</style>";
    }
    void begin(const Tag& tag) {
        const bool table = named(kTable).contains(tag.name);
        const int tables = m_tables + (tag.name == u"table" ? 1 : 0);
        const bool empty = named(kEmpty).contains(tag.name);
        if (m_count >= kMostElements || static_cast<int>(m_open.size()) >= kDeepestElement ||
            (table && (tables > kMostHtmlTables || m_flatTables > 0))) {
            if (!empty) {
                ++m_dropped[tag.name];
                m_flatTables += tag.name == u"table" ? 1 : 0;
            }
            if (named(kBlocks).contains(tag.name)) {
                m_out += m_out.endsWith(u"<br>") ? u"" : u"<br>";
            } else if (table) {
                m_out += u' ';
            }
            return;
        }
        ++m_count;
        m_out += u'<' + tag.name + takenAttributes(tag) + u'>';
        if (!empty) {
            m_tables = tables;
            m_open.push_back(tag.name);
        }
    }
    void end(const QString& name) {
        const auto dropped = m_dropped.find(name);
        if (dropped != m_dropped.end() && dropped.value() > 0) {
            --dropped.value();
            m_flatTables -= name == u"table" ? 1 : 0;
            return;
        }
        if (std::find(m_open.begin(), m_open.end(), name) == m_open.end()) {
            return;
        }
        while (m_open.back() != name) {
            close();
        }
        close();
    }
    void close() {
        m_tables -= m_open.back() == u"table" ? 1 : 0;
        m_out += u"</" + m_open.back() + u'>';
        m_open.pop_back();
    }

    QString m_out;
    QString m_style;
    std::vector<QString> m_open;   ///< the outermost first
    QHash<QString, int> m_dropped; ///< elements that are open in the input but were left out
    int m_count = 0;
    int m_tables = 0;
    int m_flatTables = 0; ///< those left out that are open
};

/// The character of an entity; 0 for one that is not known.
char32_t characterOf(QStringView entity) {
    static const QHash<QString, char32_t> known{
        {QStringLiteral("amp"), U'&'},   {QStringLiteral("lt"), U'<'},
        {QStringLiteral("gt"), U'>'},    {QStringLiteral("quot"), U'"'},
        {QStringLiteral("apos"), U'\''}, {QStringLiteral("nbsp"), 0xA0}};
    if (!entity.startsWith(u'#')) {
        return known.value(entity.toString(), 0);
    }
    const bool hex = entity.size() > 1 && entity[1].toLower() == u'x';
    const uint code = entity.sliced(hex ? 2 : 1).toUInt(nullptr, hex ? 16 : 10);
    const bool valid = code >= 0x20 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return valid ? code : 0;
}

void addText(QString& out, QStringView text) {
    constexpr qsizetype kLongestEntity = 10;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&') {
            const QStringView near = text.mid(i + 1, kLongestEntity);
            const qsizetype end = near.indexOf(u';');
            const char32_t c = end > 0 ? characterOf(near.first(end)) : 0;
            if (c != 0) {
                out += QString::fromUcs4(&c, 1);
                i += end + 1;
                continue;
            }
        }
        const bool blank = text[i].isSpace() && text[i] != QChar::Nbsp;
        if (!blank) {
            out += text[i];
        } else if (!out.isEmpty() && !out.back().isSpace()) {
            out += u' ';
        }
    }
}

} // namespace

QString shallowHtml(QStringView html) {
    return Flattener().run(html);
}

QString textOfHtml(QStringView html) {
    Scanner scanner(html);
    QString out;
    while (!scanner.atEnd()) {
        addText(out, scanner.text());
        if (scanner.atEnd()) {
            break;
        }
        const Tag tag = scanner.tag();
        if (!tag.ends && (named(kLeftOut).contains(tag.name) || tag.name == u"style")) {
            scanner.skipContent(tag.name);
        } else if (named(kBlocks).contains(tag.name) && !out.isEmpty() && out.back() != u'\n') {
            out += u'\n';
        }
    }
    return out;
}

} // namespace yrw::rtf

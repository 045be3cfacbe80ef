#include "platform/rtf/FileName.h"

#include <QStringList>
#include <QStringView>

#include <algorithm>

namespace yrw::rtf {

namespace {

constexpr qsizetype kMostBytes = 255;    ///< of a name on the usual file systems
constexpr qsizetype kLongestSuffix = 32; ///< bytes; what is longer is no suffix

/// Characters that show nothing but are none of the blanks.
bool isBlankLetter(QChar c) {
    return QStringView(u"\u115F\u1160\u2800\u3164\uFFA0").contains(c);
}

bool isForbidden(QChar c) {
    return QStringView(u":*?\"<>|").contains(c);
}

/// True for a name that some systems take for a device, whatever its suffix.
bool isDevice(const QString& name) {
    static const QStringList devices{QStringLiteral("CON"),    QStringLiteral("PRN"),
                                     QStringLiteral("AUX"),    QStringLiteral("NUL"),
                                     QStringLiteral("CONIN$"), QStringLiteral("CONOUT$")};
    const QString stem = name.section(u'.', 0, 0).trimmed().toUpper();
    const bool port = stem.size() == 4 && (stem.startsWith(u"COM") || stem.startsWith(u"LPT")) &&
                      QStringView(u"0123456789\u00B9\u00B2\u00B3").contains(stem[3]);
    return port || devices.contains(stem);
}

/// The beginning of a text that has no more than so many bytes, in whole characters.
QString beginningOf(QString text, qsizetype bytes) {
    while (text.toUtf8().size() > bytes) {
        const bool pair = text.size() > 1 && text.back().isLowSurrogate();
        text.chop(pair ? 2 : 1);
    }
    return text;
}

QString shortened(const QString& name) {
    if (name.toUtf8().size() <= kMostBytes) {
        return name;
    }
    const qsizetype dot = name.lastIndexOf(u'.');
    QString suffix = dot > 0 ? name.sliced(dot) : QString();
    if (suffix.toUtf8().size() > kLongestSuffix) {
        suffix.clear();
    }
    // Every character has a byte at least, so that no more than these can be left.
    const QString stem = name.left(std::min(name.size() - suffix.size(), kMostBytes));
    return beginningOf(stem, kMostBytes - suffix.toUtf8().size()).trimmed() + suffix;
}

QString withoutEnds(QString name) {
    const auto isEnd = [](QChar c) { return c == u'.' || c == u' '; };
    const auto begin = std::find_if_not(name.cbegin(), name.cend(), isEnd);
    name.remove(0, begin - name.cbegin());
    while (!name.isEmpty() && isEnd(name.back())) {
        name.chop(1);
    }
    return name;
}

} // namespace

QString shownText(const QString& text) {
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            const char32_t wide = QChar::surrogateToUcs4(c, text[i + 1]);
            const QChar::Category kind = QChar::category(wide);
            if (kind != QChar::Other_Format && kind != QChar::Other_NotAssigned) {
                shown += text.mid(i, 2);
            }
            ++i;
            continue;
        }
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Other_NotAssigned:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            continue;
        default:
            shown += c.isSpace() || isBlankLetter(c) ? QChar(u' ') : c;
        }
    }
    return shown.simplified(); // many blanks in a row would push the rest out of sight
}

QString baseName(const QString& path) {
    const qsizetype separator = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    QString last = path.mid(separator + 1);
    last.removeIf(isForbidden); // first, since blanks on both sides of one are then one blank
    const QString name = withoutEnds(shortened(withoutEnds(shownText(last))));
    if (name.isEmpty()) {
        return QStringLiteral("file");
    }
    return isDevice(name) ? withoutEnds(beginningOf(u'_' + name, kMostBytes)) : name;
}

} // namespace yrw::rtf

#include "platform/forms/FileFilter.h"

namespace yrw {

namespace {

QStringList patternsOf(const QString& text) {
    QStringList patterns = text.split(u';', Qt::SkipEmptyParts);
    for (QString& pattern : patterns) {
        pattern = pattern.trimmed();
        if (pattern == u"*.*") {
            pattern = QStringLiteral("*"); // files without a dot are files too
        }
    }
    return patterns;
}

} // namespace

QStringList nameFilters(const QString& pairs) {
    const QStringList parts = pairs.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QStringList patterns = patternsOf(parts.at(i + 1));
        if (!patterns.isEmpty()) {
            // The dialog adds the patterns itself; a caption that names them would show them twice.
            QString caption = parts.at(i).trimmed();
            caption.truncate(caption.contains(u'(') ? caption.indexOf(u'(') : caption.size());
            filters.append(caption.trimmed() + u" (" + patterns.join(u' ') + u')');
        }
    }
    return filters.isEmpty() ? QStringList{QStringLiteral("All files (*)")} : filters;
}

QString firstSuffix(const QString& pairs) {
    const QString pattern = patternsOf(pairs.section(u'|', 1, 1)).value(0);
    return pattern.startsWith(u"*.") ? pattern.mid(2) : QString();
}

} // namespace yrw

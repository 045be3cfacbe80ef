#include "host/core/RowConditions.h"

namespace yrw {

namespace {

/// A pattern literal that finds the text anywhere; what patterns treat specially stands for
/// itself. A literal cannot hold its own kind of quote: a text with both kinds finds any character
/// there.
QString containing(const QString& text) {
    const QChar quote = text.contains(u'"') ? u'\'' : u'"';
    QString pattern;
    for (const QChar c : text) {
        if (c == u'*' || c == u'?' || c == u'[') {
            pattern += u'[' + QString(c) + u']';
        } else if (c == quote) {
            pattern += u'?';
        } else {
            pattern += c;
        }
    }
    return quote + QStringLiteral("*") + pattern + u'*' + quote;
}

} // namespace

QString rowsHolding(const QString& text, const QStringList& fields) {
    const QString pattern = containing(text);
    QStringList conditions;
    for (const QString& field : fields) {
        conditions += u'[' + field + u"] Like " + pattern;
    }
    return conditions.join(QStringLiteral(" OR "));
}

QString rowsOfBoth(const QString& first, const QString& second) {
    if (first.isEmpty() || second.isEmpty()) {
        return first.isEmpty() ? second : first;
    }
    return u'(' + first + u") AND (" + second + u')';
}

QString orderBy(const QString& field, bool descending) {
    return field.isEmpty() ? QString() : QString(u'[' + field + (descending ? u"] DESC" : u"]"));
}

} // namespace yrw

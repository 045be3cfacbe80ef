#include "notes_window/NoteTexts.h"

namespace yrw {

namespace {

constexpr int kKeyPrefixLength = 2;

// Written by hand: a list formats one date per row, and the general formatter is many times slower.
void putDigits(QString& text, int value, int digits) {
    const qsizetype end = text.size() + digits;
    text.resize(end);
    for (qsizetype i = end - 1; i >= end - digits; --i) {
        text[i] = QChar(u'0' + value % 10);
        value /= 10;
    }
}

void putDay(QString& text, const QDate& day, int yearDigits) {
    putDigits(text, day.day(), 2);
    text += u'/';
    putDigits(text, day.month(), 2);
    text += u'/';
    putDigits(text, day.year(), yearDigits);
}

void putTime(QString& text, const QTime& time) {
    putDigits(text, time.hour(), 2);
    text += u':';
    putDigits(text, time.minute(), 2);
}

} // namespace

QString noteDateText(const QDateTime& date) {
    QString text;
    if (date.isValid()) {
        text.reserve(16);
        putDay(text, date.date(), 4);
        text += u' ';
        putTime(text, date.time());
    }
    return text;
}

QString noteDayText(const QDateTime& date) {
    QString text;
    putDay(text, date.date(), 4);
    return text;
}

QString noteTimeText(const QDateTime& date) {
    QString text;
    putTime(text, date.time());
    return text;
}

QString noteStampText(const QDateTime& date, const QString& userName) {
    QString text = QStringLiteral("[");
    putDay(text, date.date(), 2);
    text += u' ';
    putTime(text, date.time());
    return text + u' ' + userName + QStringLiteral("] - ");
}

QString noteItemKey(qint64 noteID) {
    return QStringLiteral("xn") + QString::number(noteID);
}

qint64 noteIdOf(QStringView itemKey) {
    // Searching the list reads all its keys at each letter typed: no general parser.
    qint64 id = 0;
    for (const QChar digit : itemKey.mid(kKeyPrefixLength)) {
        id = 10 * id + (digit.unicode() - u'0');
    }
    return id;
}

} // namespace yrw

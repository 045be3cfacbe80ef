#pragma once

// Old databases for tests and benchmarks: the sample of the source tree, and what is added to it.

#include <QByteArray>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QVariant>
#include <QtEndian>

namespace yrw::test {

/// A file of the sample's folder.
inline QByteArray sampleFile(const QString& name) {
    QFile file(QStringLiteral(YRW_SOURCE_DIR "/tests/jet/data/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A value as the sample's description writes it: of long texts the length and a hash.
inline QJsonValue sampleValue(const QVariant& value) {
    if (value.typeId() == QMetaType::QDateTime) {
        return value.toDateTime().toString(Qt::ISODate);
    }
    const QString text = value.toString();
    if (value.typeId() == QMetaType::QString && text.size() > 2000) {
        const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
        return QJsonObject{{QStringLiteral("length"), text.size()},
                           {QStringLiteral("sha256"), QString::fromLatin1(hash.toHex())}};
    }
    return QJsonValue::fromVariant(value);
}

/// The bytes of an old database of version 4, to which notes can be added.
class OldDatabase {
public:
    OldDatabase() : m_bytes(qUncompress(sampleFile(QStringLiteral("Notes.mdb.z")))) {}

    [[nodiscard]] QByteArray& bytes() { return m_bytes; }
    /// Writes the file; its path.
    QString write(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(m_bytes) == m_bytes.size() ? path
                                                                                        : QString();
    }

    /// Adds notes with these numbers, of one plain text each.
    void addNotes(int first, int count, const QByteArray& storedPlain) {
        QByteArray memo = head(quint32(storedPlain.size()) | 0x80000000U, 0) + storedPlain;
        QList<QByteArray> rows;
        qsizetype size = 0;
        for (int id = first; id < first + count; ++id) {
            const QByteArray row = noteRow(id, memo);
            if (size + row.size() + 2 > kPageSize - kPageHead) {
                addPage(rows, kNotesTable);
                rows.clear();
                size = 0;
            }
            size += row.size() + 2;
            rows += row;
        }
        addPage(rows, kNotesTable);
        addToNumber(kNotesTable * kPageSize + 16, quint32(count));
    }
    /// Adds a note whose plain text is stored in a chain of pages.
    void addLongNote(int id, const QByteArray& storedPlain) {
        constexpr qsizetype piece = kPageSize - kPageHead - 2 - 4;
        const qsizetype pages = (storedPlain.size() + piece - 1) / piece;
        const quint32 firstPage = quint32(m_bytes.size() / kPageSize);
        for (qsizetype i = 0; i < pages; ++i) {
            const quint32 next = i + 1 < pages ? (firstPage + quint32(i) + 1) << 8 : 0;
            addPage({number(next) + storedPlain.mid(i * piece, piece)}, 0x4C41564C);
        }
        addPage({noteRow(id, head(quint32(storedPlain.size()), firstPage << 8))}, kNotesTable);
        addToNumber(kNotesTable * kPageSize + 16, 1);
    }

private:
    static constexpr qsizetype kPageSize = 4096;
    static constexpr qsizetype kPageHead = 14;
    static constexpr quint32 kNotesTable = 24; ///< the page of its head

    template <class T = quint32>
    static QByteArray number(T value) {
        QByteArray bytes(sizeof value, '\0');
        qToLittleEndian(value, bytes.data());
        return bytes;
    }
    static QByteArray head(quint32 length, quint32 place) {
        return number(length) + number(place) + number(0U);
    }
    void addToNumber(qsizetype place, quint32 more) {
        char* const at = m_bytes.data() + place;
        qToLittleEndian(qFromLittleEndian<quint32>(at) + more, at);
    }

    static QByteArray utf16(const QString& text) {
        return {reinterpret_cast<const char*>(text.utf16()), text.size() * 2};
    }

    /// A note on customer 1 by user 1, dated 1 January 2020, with no rich text.
    static QByteArray noteRow(int id, const QByteArray& memo) {
        QByteArray fixed = number(quint32(id)) + number<quint16>(1) + number<quint16>(1) +
                           number(1U) + number(1U) + number(43831.0) + number(0.0) +
                           number<quint16>(0) + number(0.0);
        const QList<QByteArray> texts{utf16(QStringLiteral("Note %1").arg(id)),
                                      utf16(QStringLiteral("YRWDesk.Application")),
                                      utf16(QStringLiteral("YRWDesk.Customers")),
                                      utf16(QStringLiteral("cu")),
                                      utf16(QStringLiteral("ANNA")),
                                      {},
                                      memo};
        QByteArray row = number<quint16>(17) + fixed;
        QByteArray places;
        for (const QByteArray& text : texts) {
            places.prepend(number(quint16(row.size())));
            row += text;
        }
        places.prepend(number(quint16(row.size())));
        // Null: the rich text, the change, the reminder and its date.
        constexpr quint32 present = 0x1FFFF & ~(1U << 2 | 1U << 14 | 1U << 16 | 1U << 6);
        return row + places + number<quint16>(quint16(texts.size())) + number(present).left(3);
    }

    void addPage(const QList<QByteArray>& rows, quint32 owner) {
        QByteArray page(kPageSize, '\0');
        qsizetype end = kPageSize;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            end -= rows[i].size();
            page.replace(end, rows[i].size(), rows[i]);
            page.replace(kPageHead + 2 * i, 2, number(quint16(end)));
        }
        const QByteArray pageHead = QByteArray("\1\1", 2) +
                                    number(quint16(end - kPageHead - 2 * rows.size())) +
                                    number(owner) + number(0U) + number(quint16(rows.size()));
        page.replace(0, kPageHead, pageHead);
        if (owner == kNotesTable) {
            enterInMap(m_bytes.size() / kPageSize);
        }
        m_bytes += page;
    }
    /// Says in the table's map that a page is one of its own.
    void enterInMap(qsizetype page) {
        const auto place =
            qFromLittleEndian<quint32>(m_bytes.data() + kNotesTable * kPageSize + 55);
        const qsizetype base = qsizetype(place >> 8) * kPageSize;
        const auto row = qFromLittleEndian<quint16>(m_bytes.data() + base + kPageHead +
                                                    2 * qsizetype(place & 0xFF));
        const auto map = qFromLittleEndian<quint32>(m_bytes.data() + base + row + 1);
        char& byte = m_bytes.data()[qsizetype(map) * kPageSize + 4 + page / 8];
        byte = char(byte | (1 << (page % 8)));
    }

    QByteArray m_bytes;
};

} // namespace yrw::test

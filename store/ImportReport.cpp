#include "store/ImportReport.h"

#include <algorithm>

namespace yrw {

namespace {

/// Keys that a remark names; the memory of a report is bounded by them.
constexpr qsizetype kMostKeys = 10'000;

/// "2, 13 to 15".
QString keysAsText(QList<qint64> keys, qint64 others) {
    std::sort(keys.begin(), keys.end());
    QStringList parts;
    for (qsizetype i = 0; i < keys.size();) {
        qsizetype last = i;
        while (last + 1 < keys.size() && keys[last + 1] - keys[last] <= 1) {
            ++last;
        }
        const QString first = QString::number(keys[i]);
        parts +=
            keys[last] == keys[i] ? first : QStringLiteral("%1 to %2").arg(first).arg(keys[last]);
        i = last + 1;
    }
    if (others > 0) {
        parts += keys.isEmpty() ? QStringLiteral("%1 row(s)").arg(others)
                                : QStringLiteral("and %1 more").arg(others);
    }
    return parts.join(QStringLiteral(", "));
}

QString remarkLine(const ImportedTable& table, const ImportRemark& remark) {
    const QString rows = keysAsText(remark.keys, remark.others);
    return rows.isEmpty() ? QStringLiteral("%1: %2").arg(table.name, remark.text)
                          : QStringLiteral("%1 %2: %3").arg(table.name, rows, remark.text);
}

} // namespace

void ImportedTable::remark(const QString& text, bool isLoss, std::optional<qint64> key) {
    auto place = m_places.constFind(text);
    if (place == m_places.constEnd()) {
        place = m_places.insert(text, remarks.size());
        remarks.push_back({text, isLoss});
    }
    ImportRemark& remark = remarks[*place];
    if (!key) {
        return;
    }
    if (*key != 0 && remark.keys.size() < kMostKeys) {
        remark.keys += *key;
    } else {
        ++remark.others;
    }
}

QStringList ImportReport::lines() const {
    QStringList lines;
    for (const ImportedTable& table : tables) {
        QString line = QStringLiteral("%1: %2 row(s) read, %3 written")
                           .arg(table.name)
                           .arg(table.read)
                           .arg(table.written);
        if (table.present > 0) {
            line += QStringLiteral(", %1 there already").arg(table.present);
        }
        lines += line;
        for (const ImportRemark& remark : table.remarks) {
            lines += remarkLine(table, remark);
        }
    }
    return lines + others;
}

QStringList ImportReport::losses() const {
    QStringList lines;
    for (const ImportedTable& table : tables) {
        for (const ImportRemark& remark : table.remarks) {
            if (remark.isLoss) {
                lines += remarkLine(table, remark);
            }
        }
    }
    return lines;
}

qint64 ImportReport::rowsRead() const {
    qint64 rows = 0;
    for (const ImportedTable& table : tables) {
        rows += table.read;
    }
    return rows;
}

} // namespace yrw

#include "store/ImportedRows.h"

#include "store/Schema.h"

#include <QCryptographicHash>
#include <QDateTime>

namespace yrw {

namespace {

const QString kOrigin = QStringLiteral("Origin");
const QString kContents = QStringLiteral("Contents");
const QString kNewRecordID = QStringLiteral("NewRecordID");
constexpr qsizetype kHashBytes = 16; // enough that no two rows meet by chance

template <class T>
void addNumber(QByteArray& bytes, T number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void addBytes(QByteArray& bytes, const char* more, qsizetype size) {
    addNumber(bytes, qint64(size));
    bytes.append(more, size);
}

void addText(QByteArray& bytes, const QString& text) {
    addBytes(bytes, reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

void addValue(QByteArray& bytes, const QVariant& value) {
    addNumber(bytes, value.isNull() ? 0 : value.typeId());
    if (value.typeId() == QMetaType::QDateTime) {
        // By the clock on the wall: a time zone must not count.
        addNumber(bytes, value.toDateTime().date().toJulianDay());
        addNumber(bytes, value.toDateTime().time().msecsSinceStartOfDay());
    } else if (value.typeId() == QMetaType::QByteArray) {
        const QByteArray own = value.toByteArray();
        addBytes(bytes, own.constData(), own.size());
    } else if (!value.isNull()) {
        addText(bytes, value.toString());
    }
}

QString hashOf(const QByteArray& bytes) {
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Blake2b_160)
                                   .left(kHashBytes)
                                   .toBase64(QByteArray::OmitTrailingEquals));
}

QString combined(const QString& a, const QString& b) {
    QByteArray bytes;
    addText(bytes, a);
    addText(bytes, b);
    return hashOf(bytes);
}

} // namespace

ImportedRows::ImportedRows(dao::Database& database, bool isDryRun) {
    const Ref<dao::Recordset> rows = database.OpenRecordset(
        schema::kTblImportedRows, dao::RecordsetType::ForwardOnly, dao::kReadOnlyOption);
    for (; !rows->AtEof(); rows->MoveNext()) {
        m_known.insert(rows->value(kOrigin).toString(),
                       {rows->value(kNewRecordID).toLongLong(), rows->value(kContents).toString()});
    }
    rows->Close();
    if (!isDryRun) {
        m_rows = std::make_unique<dao::RowAdder>(database, schema::kTblImportedRows,
                                                 QStringList{QStringLiteral("TableName"),
                                                             QStringLiteral("OldRecordID"),
                                                             kNewRecordID, kOrigin, kContents});
    }
}

ImportedRows::Judged ImportedRows::judge(RowPrint& print) const {
    const auto found = m_known.constFind(print.origin);
    if (found == m_known.constEnd()) {
        return {};
    }
    if (found->contents == print.contents) {
        return {found->isOfNow ? Kind::PresentTwice : Kind::Present, found->key};
    }
    const QString own = combined(print.origin, print.contents);
    if (const auto clash = m_known.constFind(own); clash != m_known.constEnd()) {
        return {clash->isOfNow ? Kind::PresentTwice : Kind::Present, clash->key};
    }
    if (!found->isOfNow) {
        return {Kind::Changed, found->key};
    }
    print.origin = own;
    return {Kind::Clash, found->key};
}

void ImportedRows::add(const QString& table, const std::optional<qint64>& oldKey, qint64 key,
                       const RowPrint& print) {
    m_known.insert(print.origin, {key, print.contents, true});
    if (!m_rows) {
        return;
    }
    int field = 0;
    for (const QVariant& value :
         {QVariant(table), oldKey ? QVariant(*oldKey) : QVariant(), QVariant(key),
          QVariant(print.origin), QVariant(print.contents)}) {
        m_rows->set(field++, value);
    }
    m_rows->add();
}

RowPrinter::RowPrinter(const jet::JetTable& table, const QStringList& lasting)
    : m_name(table.name.toLower().toUtf8()) {
    for (const QString& field : lasting) {
        const qsizetype place = table.columns.indexOf(field);
        if (place >= 0) {
            m_lasting.push_back(size_t(place));
        }
    }
    m_canTell = m_lasting.size() == size_t(lasting.size());
}

RowPrint RowPrinter::of(const jet::JetRow& row, const QString& within) const {
    QByteArray contents;
    for (const jet::JetCell& cell : row) {
        addValue(contents, cell.value);
    }
    RowPrint print;
    print.contents = hashOf(contents);
    QByteArray origin;
    addBytes(origin, m_name.constData(), m_name.size());
    addText(origin, within);
    bool canTell = m_canTell && !m_lasting.empty();
    for (const size_t place : m_lasting) {
        addValue(origin, row[place].value);
        canTell = canTell && (place != m_lasting.back() || !row[place].value.isNull());
    }
    if (!canTell) {
        addText(origin, print.contents);
    }
    print.origin = hashOf(origin);
    return print;
}

} // namespace yrw

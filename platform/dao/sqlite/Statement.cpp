#include "platform/dao/sqlite/Statement.h"

#include "platform/clock/WallTime.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/sqlite/SqlLimits.h"

#include <QDateTime>

#include <sqlite3.h>

namespace yrw::dao {

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
}

Statement::Statement(sqlite3* connection, const QString& sql, SqlOrigin origin)
    : m_stepLimitMs(stepLimitOf(origin)) {
    const PreparingSql preparing(origin);
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* handle = nullptr;
    const char* tail = nullptr;
    const int code = sqlite3_prepare_v3(connection, text.constData(), int(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &handle, &tail);
    m_handle.reset(handle);
    if (code != SQLITE_OK) {
        raiseEngineError(connection, code);
    }
    const QByteArray rest = QByteArray(tail, text.constData() + text.size() - tail).trimmed();
    if (handle == nullptr || !rest.isEmpty()) {
        throw AutomationError(kErrorDatabaseEngine, QStringLiteral("YRW.Database"),
                              QStringLiteral("Exactly one statement was expected."));
    }
}

bool Statement::isReadOnly() const noexcept {
    return sqlite3_stmt_readonly(m_handle.get()) != 0;
}

void Statement::check(int code) const {
    if (code != SQLITE_OK) {
        raiseEngineError(sqlite3_db_handle(m_handle.get()), code);
    }
}

void Statement::bind(int at, qint64 value) {
    check(sqlite3_bind_int64(m_handle.get(), at, value));
}

void Statement::bind(int at, const QVariant& value) {
    sqlite3_stmt* handle = m_handle.get();
    if (value.isNull()) {
        check(sqlite3_bind_null(handle, at));
        return;
    }
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
        check(sqlite3_bind_int64(handle, at, value.toLongLong()));
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        check(sqlite3_bind_double(handle, at, value.toDouble()));
        break;
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        check(sqlite3_bind_blob64(handle, at, bytes.constData(), sqlite3_uint64(bytes.size()),
                                  SQLITE_TRANSIENT));
        break;
    }
    default: {
        const bool isDate =
            value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate;
        if (isDate && !value.toDateTime().isValid()) {
            check(sqlite3_bind_null(handle, at));
            break;
        }
        const QByteArray text =
            (isDate ? dateToText(value.toDateTime()) : value.toString()).toUtf8();
        check(sqlite3_bind_text64(handle, at, text.constData(), sqlite3_uint64(text.size()),
                                  SQLITE_TRANSIENT, SQLITE_UTF8));
        break;
    }
    }
}

int Statement::position(const QString& name) const {
    return sqlite3_bind_parameter_index(m_handle.get(), name.toUtf8().constData());
}

void Statement::bind(const QString& name, const QVariant& value) {
    const int at = position(name);
    if (at > 0) {
        bind(at, value);
    }
}

bool Statement::step() {
    beginStep(m_stepLimitMs);
    const int code = sqlite3_step(m_handle.get());
    m_hasRow = code == SQLITE_ROW;
    if (m_hasRow) {
        return true;
    }
    sqlite3* connection = sqlite3_db_handle(m_handle.get());
    if (code == SQLITE_DONE) {
        sqlite3_reset(m_handle.get());
        return false;
    }
    // Resetting repeats the code and keeps the message; nothing may stay active behind an error.
    sqlite3_reset(m_handle.get());
    raiseEngineError(connection, code);
}

void Statement::reset() noexcept {
    if (m_handle) {
        sqlite3_reset(m_handle.get());
    }
    m_hasRow = false;
}

void Statement::forgetValues() noexcept {
    sqlite3_clear_bindings(m_handle.get());
}

int Statement::columnCount() const noexcept {
    return sqlite3_column_count(m_handle.get());
}

QString Statement::columnName(int column) const {
    return QString::fromUtf8(sqlite3_column_name(m_handle.get(), column));
}

qint64 Statement::integer(int column) const noexcept {
    return sqlite3_column_int64(m_handle.get(), column);
}

QString Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_handle.get(), column));
    const QString text = QString::fromUtf8(bytes, sqlite3_column_bytes(m_handle.get(), column));
    return text.isNull() ? QStringLiteral("") : text;
}

QVariant Statement::value(int column, std::optional<FieldType> type) const {
    sqlite3_stmt* handle = m_handle.get();
    const int stored = sqlite3_column_type(handle, column);
    if (stored == SQLITE_NULL) {
        return {};
    }
    if (stored == SQLITE_INTEGER) {
        const qint64 number = sqlite3_column_int64(handle, column);
        if (type == FieldType::Boolean) {
            return number != 0;
        }
        const bool small = type == FieldType::Integer && int(number) == number;
        return small ? QVariant(int(number)) : QVariant(number);
    }
    if (stored == SQLITE_FLOAT) {
        return sqlite3_column_double(handle, column);
    }
    if (stored == SQLITE_BLOB) {
        return QByteArray(static_cast<const char*>(sqlite3_column_blob(handle, column)),
                          sqlite3_column_bytes(handle, column));
    }
    QString written = text(column);
    if (type == FieldType::Date) {
        const QDateTime date = dateFromText(written);
        return date.isValid() ? QVariant(date) : QVariant(written);
    }
    return written;
}

QString dateToText(const QDateTime& date) {
    return date.date().toString(Qt::ISODate) + u' ' + date.time().toString(u"HH:mm:ss");
}

QDateTime dateFromText(QStringView text) {
    const auto number = [text](qsizetype at, qsizetype length) {
        return text.size() >= at + length ? text.sliced(at, length).toInt() : 0;
    };
    if (text.size() < 10 || text[4] != u'-' || text[7] != u'-') {
        return {};
    }
    const QDate date(number(0, 4), number(5, 2), number(8, 2));
    const QTime time(number(11, 2), number(14, 2), number(17, 2));
    // Written elsewhere, it may be a time that the clocks here leave out.
    return existingTime(date, time);
}

std::optional<FieldType> fieldTypeOf(const QString& declared) {
    struct Known {
        QStringView word;
        FieldType type;
    };
    static constexpr Known kKnown[] = {
        {u"BOOL", FieldType::Boolean},      {u"DATE", FieldType::Date},
        {u"MEMO", FieldType::Memo},         {u"LONGTEXT", FieldType::Memo},
        {u"LONG", FieldType::Long},         {u"BIGINT", FieldType::Long},
        {u"INT", FieldType::Integer},       {u"SMALLINT", FieldType::Integer},
        {u"TEXT", FieldType::Text},         {u"CHAR", FieldType::Text},
        {u"VARCHAR", FieldType::Text},      {u"DOUBLE", FieldType::Double},
        {u"REAL", FieldType::Double},       {u"FLOAT", FieldType::Double},
        {u"CURRENCY", FieldType::Double},   {u"NUMERIC", FieldType::Double},
        {u"BLOB", FieldType::Binary},       {u"BINARY", FieldType::Binary},
        {u"LONGBINARY", FieldType::Binary},
    };
    for (const Known& known : kKnown) {
        if (declared.startsWith(known.word, Qt::CaseInsensitive)) {
            return known.type;
        }
    }
    return std::nullopt;
}

int fieldSizeOf(const QString& declared) {
    const bool isText = fieldTypeOf(declared) == FieldType::Text;
    return isText ? declared.section(u'(', 1).section(u')', 0, 0).toInt() : 0;
}

} // namespace yrw::dao

#pragma once

#include "platform/dao/Types.h"
#include "platform/dao/sqlite/SqlLimits.h"

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace yrw::dao {

/// Raises the automation error that an engine's result code stands for; the description names the
/// database file and what to do.
[[noreturn]] void raiseEngineError(sqlite3* connection, int code);

/// One prepared statement of the engine.
///
/// Lifetime: must end before its connection is closed. An empty one can only be asked whether it
/// is. Calls raise the automation error of the engine's failure and leave the statement reset.
/// Thread: the user-interface thread.
class Statement {
public:
    Statement() = default;
    /// Prepares exactly one statement; raises when the text is wrong, holds more than one, or asks
    /// for more than its origin may.
    Statement(sqlite3* connection, const QString& sql, SqlOrigin origin = SqlOrigin::Own);

    [[nodiscard]] bool isEmpty() const noexcept { return m_handle == nullptr; }
    [[nodiscard]] sqlite3_stmt* handle() const noexcept { return m_handle.get(); }
    [[nodiscard]] bool isReadOnly() const noexcept;
    /// True between a `step` that found a row and the next `reset`.
    [[nodiscard]] bool hasRow() const noexcept { return m_hasRow; }

    /// Binds by 1-based position; the statement must be reset.
    void bind(int position, const QVariant& value);
    void bind(int position, qint64 value);
    /// Binds by name, the sign included (":ProgID"); a name the statement lacks is passed over.
    void bind(const QString& name, const QVariant& value);
    /// 1-based position of a named parameter, 0 when there is none.
    [[nodiscard]] int position(const QString& name) const;

    /// To the next row; false behind the last one, and then it is reset.
    bool step();
    /// Steps to the end: for statements that return nothing.
    void run();
    void reset() noexcept;
    /// Lets the bound values go: for a statement that is kept, since they can be long.
    void forgetValues() noexcept;

    /// Lets a step take as long as it does: for work whose length is known to end.
    void takeAnyTime() noexcept { m_stepLimitMs = 0; }

    [[nodiscard]] int columnCount() const noexcept;
    [[nodiscard]] QString columnName(int column) const;
    [[nodiscard]] qint64 integer(int column) const noexcept;
    [[nodiscard]] QString text(int column) const;
    /// Value of a column in the current row, by the declared type where there is one and by what
    /// is stored otherwise.
    [[nodiscard]] QVariant value(int column, std::optional<FieldType> type) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    void check(int code) const;

    std::unique_ptr<sqlite3_stmt, Finalizer> m_handle;
    bool m_hasRow = false;
    int m_stepLimitMs = 0;
};

/// The engine's text of a date, "YYYY-MM-DD HH:MM:SS".
[[nodiscard]] QString dateToText(const QDateTime& date);
/// The date that a stored text stands for; an invalid one when it is none.
[[nodiscard]] QDateTime dateFromText(QStringView text);
/// Kind of field that a declared type stands for; nothing for an expression.
[[nodiscard]] std::optional<FieldType> fieldTypeOf(const QString& declared);
/// Longest text of a column that is declared so ("TEXT(255)"), in characters; 0 for no limit.
[[nodiscard]] int fieldSizeOf(const QString& declared);

} // namespace yrw::dao

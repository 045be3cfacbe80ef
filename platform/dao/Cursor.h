#pragma once

#include "platform/dao/Types.h"

#include <QString>
#include <QVariant>

#include <optional>

namespace yrw::dao {

/// Who wrote a statement's text, which decides what it may do.
enum class SqlOrigin {
    Own,          ///< the data layer
    Stored,       ///< the database: it may select
    StoredAction, ///< the database: it may also write rows
    Script,       ///< a tool that makes or upgrades databases
};

/// One prepared statement of an engine, and the rows that it gives.
///
/// Lifetime: ends before its connection is closed. Calls raise the automation error of the engine's
/// failure and leave the statement reset. Thread: the user-interface thread.
class Cursor {
public:
    virtual ~Cursor();

    /// Binds by 1-based position; the statement must be reset.
    virtual void bind(int position, const QVariant& value) = 0;
    virtual void bind(int position, qint64 value) = 0;
    /// Binds by name, the sign included (":ProgID"); a name the statement lacks is passed over.
    virtual void bind(const QString& name, const QVariant& value) = 0;
    /// 1-based position of a named parameter, 0 when there is none.
    [[nodiscard]] virtual int position(const QString& name) const = 0;

    /// To the next row; false behind the last one, and then it is reset.
    virtual bool step() = 0;
    /// Steps to the end: for statements that return nothing.
    void run();
    virtual void reset() noexcept = 0;
    /// Lets the bound values go: for a statement that is kept, since they can be long.
    virtual void forgetValues() noexcept = 0;
    /// True between a `step` that found a row and the next `reset`.
    [[nodiscard]] virtual bool hasRow() const noexcept = 0;

    /// Columns of the current row, 0-based.
    [[nodiscard]] virtual qint64 integer(int column) const noexcept = 0;
    [[nodiscard]] virtual QString text(int column) const = 0;
    /// Value of a column in the current row, by the declared type where there is one and by what
    /// is stored otherwise.
    [[nodiscard]] virtual QVariant value(int column, std::optional<FieldType> type) const = 0;

protected:
    Cursor() = default;
    Cursor(Cursor&&) = default;
    Cursor& operator=(Cursor&&) = default;
};

} // namespace yrw::dao

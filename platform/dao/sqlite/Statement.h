#pragma once

#include "platform/dao/Cursor.h"

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace yrw::dao {

/// Raises the automation error that an engine's result code stands for; the description names the
/// database file and what to do.
[[noreturn]] void raiseEngineError(sqlite3* connection, int code);

/// One prepared statement of the embedded engine. An empty one can only be asked whether it is.
class Statement final : public Cursor {
public:
    Statement() = default;
    /// Prepares exactly one statement; raises when the text is wrong, holds more than one, or asks
    /// for more than its origin may.
    Statement(sqlite3* connection, const QString& sql, SqlOrigin origin = SqlOrigin::Own);

    [[nodiscard]] bool isEmpty() const noexcept { return m_handle == nullptr; }
    [[nodiscard]] sqlite3_stmt* handle() const noexcept { return m_handle.get(); }
    [[nodiscard]] bool isReadOnly() const noexcept;
    /// Lets a step take as long as it does: for work whose length is known to end.
    void takeAnyTime() noexcept { m_stepLimitMs = 0; }
    [[nodiscard]] int columnCount() const noexcept;
    [[nodiscard]] QString columnName(int column) const;

    void bind(int position, const QVariant& value) override;
    void bind(int position, qint64 value) override;
    void bind(const QString& name, const QVariant& value) override;
    [[nodiscard]] int position(const QString& name) const override;
    bool step() override;
    void reset() noexcept override;
    void forgetValues() noexcept override;
    [[nodiscard]] bool hasRow() const noexcept override { return m_hasRow; }
    [[nodiscard]] qint64 integer(int column) const noexcept override;
    [[nodiscard]] QString text(int column) const override;
    [[nodiscard]] QVariant value(int column, std::optional<FieldType> type) const override;

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

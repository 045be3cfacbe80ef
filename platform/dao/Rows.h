#pragma once

#include "platform/dao/Connection.h"
#include "platform/dao/Query.h"

#include <memory>
#include <span>

namespace yrw::dao {

/// Raises `kErrorInvalidOperation`.
[[noreturn]] void raiseUnsupported(const char* what);

/// The rows of a recordset with a cursor, each type of recordset in its way. What a type cannot do
/// raises `kErrorInvalidOperation`.
///
/// Lifetime: the recordset's. The connection closes it, and after that only `isOpen` may be called.
/// Thread: the user-interface thread.
class Rows : public ReadHolder {
public:
    Rows(Connection& connection, Query query);
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;
    ~Rows() override;

    [[nodiscard]] bool isOpen() const noexcept { return m_connection != nullptr; }
    void close() noexcept override;
    [[nodiscard]] Connection& connection() const { return *m_connection; }
    [[nodiscard]] const Query& query() const noexcept { return m_query; }

    [[nodiscard]] virtual bool atBof() const = 0;
    [[nodiscard]] virtual bool atEof() const = 0;
    virtual void toFirst() = 0;
    virtual void toLast();
    /// One row on or back; not called at that end.
    virtual void next() = 0;
    virtual void previous();
    virtual void move(qint64 rows);
    [[nodiscard]] virtual qint64 count() const = 0;
    /// 0-based position; -1 when there is no current row.
    [[nodiscard]] virtual qint64 position() const;
    virtual void setPosition(qint64 position);
    /// Reads the set of rows afresh, standing on the first one.
    virtual void refill() = 0;

    /// Bookmark of the current row, and the place of a bookmark; -1 for one of other rows.
    [[nodiscard]] virtual Bookmark bookmark() const { return {}; }
    [[nodiscard]] virtual qint64 placeOf(Bookmark) const { return -1; }
    virtual void toPlace(qint64) {}
    /// Of the row that was written last; null when there is none.
    [[nodiscard]] virtual Bookmark lastModified() const { return {}; }
    [[nodiscard]] virtual std::unique_ptr<Rows> clone() const;

    virtual void setIndex(const QString& name);
    virtual void seek(QStringView comparison, std::span<const QVariant> keys);
    [[nodiscard]] virtual bool noMatch() const;

    /// Value of a column in the current row; raises `kErrorNoCurrentRecord`.
    [[nodiscard]] virtual QVariant value(int column) const = 0;

    // Where rows can be changed.
    /// Key of the current row in the base table; raises `kErrorNoCurrentRecord`.
    [[nodiscard]] virtual qint64 key() const;
    /// The current row was written; what was read of it is stale.
    virtual void changed() {}
    virtual void added(qint64) {}
    /// Called before and after the current row is deleted.
    virtual void deleting() {}
    virtual void deleted() {}

protected:
    /// Gives up statements and rows at closing.
    virtual void drop() noexcept = 0;

private:
    Connection* m_connection; ///< nothing once closed
    Query m_query;
};

} // namespace yrw::dao

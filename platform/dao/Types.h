#pragma once

#include <QString>
#include <QVariant>

#include <utility>
#include <vector>

namespace yrw::dao {

/// How a recordset holds its rows.
enum class RecordsetType : int {
    Default = 0,     ///< table type for a bare local table, else a dynaset
    Table = 1,       ///< a base table, in key order or in the order of an index; can `Seek`
    Dynaset = 2,     ///< a fixed set of keys, each row read when it is reached; editable
    Snapshot = 4,    ///< a copy of the rows as they were; not editable
    ForwardOnly = 8, ///< streamed once, front to back; no bookmarks, not editable
};

/// Options of a recordset; combine with `|`.
enum RecordsetOption : int {
    kNoOptions = 0,
    kReadOnlyOption = 4,
};

/// Lock type of a recordset: 0 leaves editing optimistic, the only way of locking there is.
enum class LockType : int { Default = 0 };

/// An ordered list of (name, value): record data, the value array of a record, and the parameter
/// table of a stored query are all of this type. Names compare without regard to case.
class ValueList {
public:
    struct Entry {
        QString name;
        QVariant value; ///< Null is a null variant and stays apart from an empty text
    };

    ValueList() = default;
    ValueList(std::initializer_list<Entry> entries) : m_entries(entries) {}

    /// Sets the value of a name, adding the name at the end when it is new.
    void set(const QString& name, const QVariant& value);
    /// Position of a name, -1 when absent.
    [[nodiscard]] int indexOf(QStringView name) const noexcept;
    [[nodiscard]] bool contains(QStringView name) const noexcept { return indexOf(name) >= 0; }
    /// Value of a name; a null variant when absent.
    [[nodiscard]] QVariant value(QStringView name) const;
    [[nodiscard]] int count() const noexcept { return static_cast<int>(m_entries.size()); }
    [[nodiscard]] bool isEmpty() const noexcept { return m_entries.empty(); }
    [[nodiscard]] const Entry& at(int index) const { return m_entries.at(size_t(index)); }
    void setAt(int index, const QVariant& value) { m_entries.at(size_t(index)).value = value; }
    void clear() noexcept { m_entries.clear(); }

    [[nodiscard]] auto begin() const noexcept { return m_entries.begin(); }
    [[nodiscard]] auto end() const noexcept { return m_entries.end(); }

private:
    std::vector<Entry> m_entries;
};

/// Parameter table of a stored query: parameter names with their values, in the query's order.
using Parameters = ValueList;

/// A place in a recordset and its clones. Opaque; small enough to be passed for every painted row.
class Bookmark {
public:
    Bookmark() = default;
    explicit Bookmark(qint64 place) : m_place(place) {}
    [[nodiscard]] bool isNull() const noexcept { return m_place < 0; }
    [[nodiscard]] qint64 place() const noexcept { return m_place; }
    friend bool operator==(Bookmark, Bookmark) = default;

private:
    qint64 m_place = -1;
};

/// An object of a database and the statement that made it.
struct FileObject {
    QString kind; ///< "table", "view", "trigger" or "index"
    QString name;
    QString table; ///< that an index or a trigger belongs to
    QString sql;
};

/// Kind of a field, as the schema declares it.
enum class FieldType : int { Boolean, Integer, Long, Double, Text, Memo, Date, Binary };

} // namespace yrw::dao

#pragma once

#include "platform/component/Counted.h"
#include "platform/dao/Types.h"

#include <initializer_list>
#include <memory>
#include <span>

namespace yrw::dao {

class Connection;
class EditBuffer;
class Query;
class Rows;

/// One column of a recordset, or of a record's own row values.
///
/// A field of a recordset follows its cursor: it reads the row that is current when it is asked.
/// Lifetime: counted; a field outlives its recordset, but then raises `kErrorObjectClosed`.
/// Thread: the user-interface thread.
class Field : public virtual Counted {
public:
    ~Field() override;
    /// Name as the source gives it.
    [[nodiscard]] virtual QString Name() const = 0;
    [[nodiscard]] virtual FieldType Type() const = 0;
    /// Value in the current row. Null is a null variant. Booleans come as bool, integers as
    /// qint64 or int, dates as QDateTime (local, whole seconds), texts as QString.
    /// Raises `kErrorNoCurrentRecord` at either end.
    [[nodiscard]] virtual QVariant Value() const = 0;
    /// Sets the value in the edit buffer, converted by the field's type; raises `kErrorNoEdit`
    /// outside `AddNew` or `Edit`, `kErrorReadOnly` for a column that cannot be written,
    /// `kErrorTypeMismatch` for a value that does not convert, `kErrorFieldTooSmall` for a text
    /// that is too long. What was set before then stays.
    virtual void setValue(const QVariant& value) = 0;
};

/// Rows with a cursor.
///
/// The cursor stands on a row, before the first one (`AtBof`) or behind the last one (`AtEof`); in
/// an empty recordset both are true. It stands on the first row after opening.
/// Lifetime: counted; closed by `Close`, by the closing of its database, or with its last
/// reference. Every call but `Close` and `isOpen` raises `kErrorObjectClosed` afterwards.
/// Thread: the user-interface thread.
///
/// What each type can do:
///
/// | | table | dynaset | snapshot | forward-only |
/// |---|---|---|---|---|
/// | move back, bookmarks, clone | yes | yes | yes | no |
/// | edit (unless read-only) | yes | yes | no | no |
/// | index and seek | yes | no | no | no |
/// | sees rows changed by others | yes | when the row is next reached | no | as it streams |
///
/// A call that the type cannot do raises `kErrorInvalidOperation`.
class Recordset final : public virtual Counted {
public:
    Recordset(Ref<Counted> keeper, std::unique_ptr<Rows> rows, QString name, RecordsetType type,
              int options);
    ~Recordset() override;

    [[nodiscard]] bool isOpen() const;
    /// Closes the recordset; once closed, closing again does nothing.
    void Close();
    /// The table, query or SQL text that the recordset was opened from.
    [[nodiscard]] QString Name() const;
    /// True when rows can be added, changed and deleted through this recordset.
    [[nodiscard]] bool Updatable() const;

    // Position.
    [[nodiscard]] bool AtBof() const;
    [[nodiscard]] bool AtEof() const;
    /// To the first row; in an empty recordset it stays, `AtBof` and `AtEof` both true.
    void MoveFirst();
    void MoveLast();
    /// One row on, passing over rows that were deleted; from the last row `AtEof` becomes true. At
    /// `AtEof` already: raises `kErrorNoCurrentRecord`. A pending edit is dropped, as by every
    /// move.
    void MoveNext();
    /// One row back; from the first row `AtBof` becomes true. At `AtBof` already: raises
    /// `kErrorNoCurrentRecord`.
    void MovePrevious();
    /// Rows from the current one, negative for back; past an end stands at that end.
    void Move(qint64 rows);
    /// Number of rows. Table and dynaset: exact, without reading the rows. Forward-only: the rows
    /// read so far.
    [[nodiscard]] qint64 RecordCount() const;
    /// 0-based position of the current row among the rows, -1 when there is none; dynaset and
    /// snapshot only.
    [[nodiscard]] qint64 AbsolutePosition() const;
    /// Goes to a 0-based position; dynaset and snapshot only.
    void setAbsolutePosition(qint64 position);

    // Bookmarks.
    [[nodiscard]] bool Bookmarkable() const;
    /// The current row's place, valid in this recordset and its clones as long as any is open.
    /// Raises `kErrorNoCurrentRecord` at either end.
    [[nodiscard]] yrw::dao::Bookmark Bookmark() const;
    /// Goes to a place. Raises `kErrorNotBookmarkable` for a null or foreign one; a row deleted
    /// meanwhile raises `kErrorNoCurrentRecord` when it is read. In a table type the place is the
    /// row's key.
    void setBookmark(yrw::dao::Bookmark bookmark);
    /// The place of the row that `Update` wrote last, for going to a row just added.
    [[nodiscard]] yrw::dao::Bookmark LastModified() const;
    /// A second cursor over the same rows, standing nowhere in particular until it is moved.
    /// Closing one does not close the other.
    [[nodiscard]] Ref<Recordset> Clone();

    // Fields.
    [[nodiscard]] int FieldCount() const;
    /// Name of a column, 0-based.
    [[nodiscard]] QString FieldName(int column) const;
    /// Position of a column by its name in any case; -1 when there is none.
    [[nodiscard]] int FieldIndex(QStringView name) const;
    /// The column as an object; raises `kErrorNotInCollection` for an unknown name.
    [[nodiscard]] Ref<yrw::dao::Field> Field(QStringView name);
    [[nodiscard]] Ref<yrw::dao::Field> Field(int column);
    [[nodiscard]] FieldType TypeOf(int column) const;
    /// Longest text that a text column takes, in characters; 0 where there is no limit.
    [[nodiscard]] int textSizeOf(int column) const;
    /// Value of a column in the current row, without a field object. A column that nobody asks
    /// for is not fetched.
    [[nodiscard]] QVariant value(int column) const;
    [[nodiscard]] QVariant value(QStringView name) const;

    // Editing.
    /// Begins a new row in the edit buffer; every column holds its default or Null.
    void AddNew();
    /// Copies the current row into the edit buffer.
    void Edit();
    /// Sets a column of the edit buffer, converted by the column's type (see `convertToField`);
    /// raises as `Field::setValue`.
    void setValue(int column, const QVariant& value);
    void setValue(QStringView name, const QVariant& value);
    /// Writes the edit buffer in one immediate transaction and leaves the cursor on the row it was
    /// on (a new row is at `LastModified`). Only columns that were set are written. A column that
    /// this update writes and that someone else changed since the row was read raises
    /// `kErrorConflict` as a `ConflictError`; nothing is written and the buffer stays. Updating
    /// again then writes, unless the field was changed once more. A row deleted meanwhile raises
    /// `kErrorNoCurrentRecord`; every other failure leaves the buffer as well.
    void Update();
    /// After `Edit`: has `Update` compare with values that were read before it, where there are
    /// some, and not at all in the columns named as stamps, which every writer changes. Raises
    /// `kErrorNoEdit` outside of it.
    void compareWith(const ValueList& asRead, const QStringList& stamps);
    /// Drops the edit buffer; no error when there is none.
    void CancelUpdate();
    /// True between `AddNew` or `Edit` and the end of the edit.
    [[nodiscard]] bool EditInProgress() const;
    /// Deletes the current row. Until the next move there is no current record.
    void Delete();

    // Index and seek: table type.
    /// Selects an index by name, empty for key order. Raises `kErrorNotInCollection`.
    void setIndex(const QString& name);
    /// Goes to the first row in index order that compares as asked: "=", ">", ">=", "<", "<=".
    /// Fewer keys than the index has fields compare the leading ones. Sets `NoMatch`; without a
    /// match there is no current record.
    void Seek(QStringView comparison, std::span<const QVariant> keys);
    void Seek(QStringView comparison, std::initializer_list<QVariant> keys) {
        Seek(comparison, std::span<const QVariant>(keys.begin(), keys.size()));
    }
    [[nodiscard]] bool NoMatch() const;

    // A second recordset from this one: dynaset and snapshot.
    /// Condition applied by `OpenRecordset`; see Condition.h for what is accepted.
    void setFilter(const QString& condition);
    /// Order applied by `OpenRecordset`: "[Field] DESC, [Other]".
    void setSort(const QString& order);
    /// Opens a second recordset over this one's rows, with `Filter` and `Sort` applied.
    [[nodiscard]] Ref<Recordset> OpenRecordset(RecordsetType type = RecordsetType::Default,
                                               int options = kNoOptions);
    /// Reads the set of rows afresh, standing on the first one.
    void Requery();

private:
    [[nodiscard]] Rows& rows() const;
    void leaveRow();

    Ref<Counted> m_keeper; ///< what the rows come from
    std::unique_ptr<Rows> m_rows;
    std::unique_ptr<EditBuffer> m_edit;
    std::shared_ptr<Recordset*> m_self; ///< for its fields; holds nothing once it is gone
    QString m_name;
    RecordsetType m_type;
    int m_options;
    QString m_filter;
    QString m_sort;
};

/// Opens the recordset that a query and a type call for. What it comes from is kept by it.
[[nodiscard]] Ref<Recordset> openRecordset(const Ref<Counted>& keeper, Connection& connection,
                                           const Query& query, const QString& name,
                                           RecordsetType type, int options);

} // namespace yrw::dao

#pragma once

#include "platform/component/Counted.h"
#include "platform/dao/Types.h"

#include <initializer_list>
#include <span>

namespace yrw::dao {

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
class Recordset : public virtual Counted {
public:
    ~Recordset() override;

    [[nodiscard]] virtual bool isOpen() const = 0;
    /// Closes the recordset; once closed, closing again does nothing.
    virtual void Close() = 0;
    /// The table, query or SQL text that the recordset was opened from.
    [[nodiscard]] virtual QString Name() const = 0;
    [[nodiscard]] virtual RecordsetType Type() const = 0;
    /// True when rows can be added, changed and deleted through this recordset.
    [[nodiscard]] virtual bool Updatable() const = 0;

    // Position.
    [[nodiscard]] virtual bool AtBof() const = 0;
    [[nodiscard]] virtual bool AtEof() const = 0;
    /// To the first row; in an empty recordset it stays, `AtBof` and `AtEof` both true.
    virtual void MoveFirst() = 0;
    virtual void MoveLast() = 0;
    /// One row on, passing over rows that were deleted; from the last row `AtEof` becomes true. At
    /// `AtEof` already: raises `kErrorNoCurrentRecord`. A pending edit is dropped, as by every
    /// move.
    virtual void MoveNext() = 0;
    /// One row back; from the first row `AtBof` becomes true. At `AtBof` already: raises
    /// `kErrorNoCurrentRecord`.
    virtual void MovePrevious() = 0;
    /// Rows from the current one, negative for back; past an end stands at that end.
    virtual void Move(qint64 rows) = 0;
    /// Number of rows. Table and dynaset: exact, without reading the rows. Forward-only: the rows
    /// read so far.
    [[nodiscard]] virtual qint64 RecordCount() const = 0;
    /// 0-based position of the current row among the rows, -1 when there is none; dynaset and
    /// snapshot only.
    [[nodiscard]] virtual qint64 AbsolutePosition() const = 0;
    /// Goes to a 0-based position; dynaset and snapshot only.
    virtual void setAbsolutePosition(qint64 position) = 0;

    // Bookmarks.
    [[nodiscard]] virtual bool Bookmarkable() const = 0;
    /// The current row's place, valid in this recordset and its clones as long as any is open.
    /// Raises `kErrorNoCurrentRecord` at either end.
    [[nodiscard]] virtual yrw::dao::Bookmark Bookmark() const = 0;
    /// Goes to a place. Raises `kErrorNotBookmarkable` for a null or foreign one; a row deleted
    /// meanwhile raises `kErrorNoCurrentRecord` when it is read. In a table type the place is the
    /// row's key.
    virtual void setBookmark(yrw::dao::Bookmark bookmark) = 0;
    /// The place of the row that `Update` wrote last, for going to a row just added.
    [[nodiscard]] virtual yrw::dao::Bookmark LastModified() const = 0;
    /// A second cursor over the same rows, standing nowhere in particular until it is moved.
    /// Closing one does not close the other.
    [[nodiscard]] virtual Ref<Recordset> Clone() = 0;

    // Fields.
    [[nodiscard]] virtual int FieldCount() const = 0;
    /// Name of a column, 0-based.
    [[nodiscard]] virtual QString FieldName(int column) const = 0;
    /// Position of a column by its name in any case; -1 when there is none.
    [[nodiscard]] virtual int FieldIndex(QStringView name) const = 0;
    /// The column as an object; raises `kErrorNotInCollection` for an unknown name.
    [[nodiscard]] virtual Ref<yrw::dao::Field> Field(QStringView name) = 0;
    [[nodiscard]] virtual Ref<yrw::dao::Field> Field(int column) = 0;
    [[nodiscard]] virtual FieldType TypeOf(int column) const = 0;
    /// Longest text that a text column takes, in characters; 0 where there is no limit.
    [[nodiscard]] virtual int textSizeOf(int column) const = 0;
    /// Value of a column in the current row, without a field object. A column that nobody asks
    /// for is not fetched.
    [[nodiscard]] virtual QVariant value(int column) const = 0;
    [[nodiscard]] QVariant value(QStringView name) const;

    // Editing.
    /// Begins a new row in the edit buffer; every column holds its default or Null.
    virtual void AddNew() = 0;
    /// Copies the current row into the edit buffer.
    virtual void Edit() = 0;
    /// Sets a column of the edit buffer, converted by the column's type (see `convertToField`);
    /// raises as `Field::setValue`.
    virtual void setValue(int column, const QVariant& value) = 0;
    void setValue(QStringView name, const QVariant& value);
    /// Writes the edit buffer in one immediate transaction and leaves the cursor on the row it was
    /// on (a new row is at `LastModified`). Only columns that were set are written. A column that
    /// this update writes and that someone else changed since the row was read raises
    /// `kErrorConflict` as a `ConflictError`; nothing is written and the buffer stays. Updating
    /// again then writes, unless the field was changed once more. A row deleted meanwhile raises
    /// `kErrorNoCurrentRecord`; every other failure leaves the buffer as well.
    virtual void Update() = 0;
    /// After `Edit`: has `Update` compare with values that were read before it, where there are
    /// some, and not at all in the columns named as stamps, which every writer changes. Raises
    /// `kErrorNoEdit` outside of it.
    virtual void compareWith(const ValueList& asRead, const QStringList& stamps) = 0;
    /// Drops the edit buffer; no error when there is none.
    virtual void CancelUpdate() = 0;
    /// True between `AddNew` or `Edit` and the end of the edit.
    [[nodiscard]] virtual bool EditInProgress() const = 0;
    /// Deletes the current row. Until the next move there is no current record.
    virtual void Delete() = 0;

    // Index and seek: table type.
    [[nodiscard]] virtual QString Index() const = 0;
    /// Selects an index by name, empty for key order. Raises `kErrorNotInCollection`.
    virtual void setIndex(const QString& name) = 0;
    /// Goes to the first row in index order that compares as asked: "=", ">", ">=", "<", "<=".
    /// Fewer keys than the index has fields compare the leading ones. Sets `NoMatch`; without a
    /// match there is no current record.
    virtual void Seek(QStringView comparison, std::span<const QVariant> keys) = 0;
    void Seek(QStringView comparison, std::initializer_list<QVariant> keys) {
        Seek(comparison, std::span<const QVariant>(keys.begin(), keys.size()));
    }
    [[nodiscard]] virtual bool NoMatch() const = 0;

    // A second recordset from this one: dynaset and snapshot.
    /// Condition applied by `OpenRecordset`; see Condition.h for what is accepted.
    [[nodiscard]] virtual QString Filter() const = 0;
    virtual void setFilter(const QString& condition) = 0;
    /// Order applied by `OpenRecordset`: "[Field] DESC, [Other]".
    [[nodiscard]] virtual QString Sort() const = 0;
    virtual void setSort(const QString& order) = 0;
    /// Opens a second recordset over this one's rows, with `Filter` and `Sort` applied.
    [[nodiscard]] virtual Ref<Recordset> OpenRecordset(RecordsetType type = RecordsetType::Default,
                                                       int options = kNoOptions) = 0;
    /// Reads the set of rows afresh, standing on the first one.
    virtual void Requery() = 0;
};

} // namespace yrw::dao

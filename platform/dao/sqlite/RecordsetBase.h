#pragma once

#include "platform/dao/Recordset.h"
#include "platform/dao/sqlite/Query.h"
#include "platform/dao/sqlite/SqliteDatabase.h"

#include <memory>
#include <vector>

namespace yrw::dao {

/// What all recordsets of the engine share: fields, the edit buffer, and the refusal of what a
/// type cannot do. A type overrides what it can.
class RecordsetBase : public Recordset, protected ReadHolder {
public:
    RecordsetBase(SqliteDatabase& database, Query query, QString name, RecordsetType type,
                  int options);
    ~RecordsetBase() override;

    [[nodiscard]] bool isOpen() const override { return m_open; }
    void Close() override;
    [[nodiscard]] QString Name() const override;
    [[nodiscard]] RecordsetType Type() const override;
    [[nodiscard]] bool Updatable() const override;
    [[nodiscard]] bool Bookmarkable() const override;

    void MoveLast() override;
    void MovePrevious() override;
    void Move(qint64 rows) override;
    [[nodiscard]] qint64 AbsolutePosition() const override;
    void setAbsolutePosition(qint64 position) override;
    [[nodiscard]] yrw::dao::Bookmark Bookmark() const override;
    void setBookmark(yrw::dao::Bookmark bookmark) override;
    [[nodiscard]] yrw::dao::Bookmark LastModified() const override;
    [[nodiscard]] Ref<Recordset> Clone() override;

    [[nodiscard]] int FieldCount() const override;
    [[nodiscard]] QString FieldName(int column) const override;
    [[nodiscard]] int FieldIndex(QStringView name) const override;
    [[nodiscard]] Ref<yrw::dao::Field> Field(QStringView name) override;
    [[nodiscard]] Ref<yrw::dao::Field> Field(int column) override;
    [[nodiscard]] FieldType TypeOf(int column) const override;
    [[nodiscard]] int textSizeOf(int column) const override;
    [[nodiscard]] QVariant value(int column) const override;
    using Recordset::value;

    void AddNew() override;
    void Edit() override;
    void setValue(int column, const QVariant& value) override;
    using Recordset::setValue;
    void Update() override;
    void compareWith(const ValueList& asRead, const QStringList& stamps) override;
    void CancelUpdate() override;
    [[nodiscard]] bool EditInProgress() const override;
    void Delete() override;

    [[nodiscard]] QString Index() const override;
    void setIndex(const QString& name) override;
    void Seek(QStringView comparison, std::span<const QVariant> keys) override;
    using Recordset::Seek;
    [[nodiscard]] bool NoMatch() const override;

    [[nodiscard]] QString Filter() const override { return m_filter; }
    void setFilter(const QString& condition) override;
    [[nodiscard]] QString Sort() const override { return m_sort; }
    void setSort(const QString& order) override;
    [[nodiscard]] Ref<Recordset> OpenRecordset(RecordsetType type, int options) override;

protected:
    /// Value of a column in the row under the cursor; raises `kErrorNoCurrentRecord`.
    [[nodiscard]] virtual QVariant rowValue(int column) const = 0;
    /// Key of the row under the cursor in the base table; raises `kErrorNoCurrentRecord`.
    [[nodiscard]] virtual qint64 currentKey() const = 0;
    /// The row under the cursor was written; what was read of it is stale.
    virtual void rowChanged() {}
    virtual void rowAdded(qint64 key);
    /// Called before and after the row under the cursor is deleted.
    virtual void rowDeleting() {}
    virtual void rowDeleted() {}
    /// Gives up statements and rows at closing.
    virtual void dropRows() noexcept = 0;

    void requireOpen() const;
    [[noreturn]] void raiseInvalid(const char* what) const;
    [[noreturn]] static void raiseNoRecord();
    [[noreturn]] static void raiseNotBookmarkable();
    /// Drops an edit that a move leaves behind.
    void leaveRow() { m_edit = EditKind::None; }
    [[nodiscard]] SqliteDatabase& database() const { return *m_database; }
    [[nodiscard]] Connection& connection() const { return m_database->connection(); }
    [[nodiscard]] const Query& query() const noexcept { return m_query; }
    [[nodiscard]] int options() const noexcept { return m_options; }

private:
    enum class EditKind { None, Add, Change };
    /// One column of the edit buffer.
    struct Cell {
        QVariant before; ///< as read, or the default of a new row
        QVariant after;
        bool set = false;
        bool isStamp = false; ///< anybody may change it
    };

    void requireUpdatable() const;
    [[nodiscard]] const Query::Item& item(int column) const;
    void startBuffer();
    [[nodiscard]] qint64 insertRow();
    void changeRow(qint64 key);
    void requireUnchanged(qint64 key);
    [[nodiscard]] std::vector<int> setColumns() const;

    std::shared_ptr<RecordsetBase*> m_self = std::make_shared<RecordsetBase*>(this);
    Ref<SqliteDatabase> m_database;
    Query m_query;
    QString m_name;
    RecordsetType m_type;
    int m_options;
    bool m_open = true;
    EditKind m_edit = EditKind::None;
    std::vector<Cell> m_cells;
    QString m_filter;
    QString m_sort;
};

} // namespace yrw::dao

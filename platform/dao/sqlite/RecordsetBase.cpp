#include "platform/dao/sqlite/RecordsetBase.h"

#include "platform/clock/WallTime.h"
#include "platform/component/AutomationError.h"
#include "platform/dao/FieldValue.h"

#include <QStringList>

#include <utility>

namespace yrw::dao {

namespace {

const QString kSource = QStringLiteral("YRW.Recordset");

/// A column of a recordset as an object: follows the cursor of its recordset.
class CursorField final : public Field {
public:
    CursorField(std::shared_ptr<RecordsetBase*> recordset, int column)
        : m_recordset(std::move(recordset)), m_column(column) {}
    [[nodiscard]] QString Name() const override { return rows().FieldName(m_column); }
    [[nodiscard]] FieldType Type() const override { return rows().TypeOf(m_column); }
    [[nodiscard]] QVariant Value() const override { return rows().value(m_column); }
    void setValue(const QVariant& value) override { rows().setValue(m_column, value); }

private:
    [[nodiscard]] RecordsetBase& rows() const {
        if (*m_recordset == nullptr) {
            throw AutomationError(kErrorObjectClosed, kSource,
                                  QStringLiteral("The recordset of the field is closed."));
        }
        return **m_recordset;
    }

    std::shared_ptr<RecordsetBase*> m_recordset; ///< holds nothing once the recordset is gone
    int m_column;
};

/// True when two readings of one column are the same value, also when one came through a query
/// that does not know the column's kind. Null and an empty text are different.
bool isSameValue(const QVariant& a, const QVariant& b) {
    if (a.isNull() || b.isNull()) {
        return a.isNull() && b.isNull();
    }
    if (a.typeId() == QMetaType::QDateTime && b.typeId() == QMetaType::QDateTime) {
        return isSameWallTime(a.toDateTime(), b.toDateTime());
    }
    if (a.typeId() == b.typeId()) {
        return a == b;
    }
    if (a.typeId() == QMetaType::Bool || b.typeId() == QMetaType::Bool) {
        return a.toBool() == b.toBool();
    }
    return a == b || a.toString() == b.toString();
}

} // namespace

RecordsetBase::RecordsetBase(SqliteDatabase& database, Query query, QString name,
                             RecordsetType type, int options)
    : m_database(&database), m_query(std::move(query)), m_name(std::move(name)), m_type(type),
      m_options(options) {
    database.addRecordset(this);
    connection().addHolder(this);
}

RecordsetBase::~RecordsetBase() {
    *m_self = nullptr;
    if (m_database->isOpen()) {
        connection().removeHolder(this);
    }
    m_database->removeRecordset(this);
}

void RecordsetBase::Close() {
    if (!m_open) {
        return;
    }
    m_open = false;
    m_edit = EditKind::None;
    dropRows();
    connection().removeHolder(this);
}

void RecordsetBase::requireOpen() const {
    if (!m_open) {
        throw AutomationError(kErrorObjectClosed, kSource,
                              QStringLiteral("The recordset is closed."));
    }
}

void RecordsetBase::raiseInvalid(const char* what) const {
    requireOpen();
    throw AutomationError(kErrorInvalidOperation, kSource,
                          QStringLiteral("This kind of recordset does not support %1.")
                              .arg(QString::fromLatin1(what)));
}

void RecordsetBase::raiseNoRecord() {
    throw AutomationError(kErrorNoCurrentRecord, kSource,
                          QStringLiteral("There is no current record."));
}

QString RecordsetBase::Name() const {
    requireOpen();
    return m_name;
}

RecordsetType RecordsetBase::Type() const {
    requireOpen();
    return m_type;
}

bool RecordsetBase::Updatable() const {
    requireOpen();
    const bool typeAllows = m_type == RecordsetType::Table || m_type == RecordsetType::Dynaset;
    return typeAllows && (m_options & kReadOnlyOption) == 0 && !m_database->isReadOnly() &&
           !m_query.source().baseTable.isEmpty() && m_query.hasKey();
}

bool RecordsetBase::Bookmarkable() const {
    requireOpen();
    return m_type != RecordsetType::ForwardOnly;
}

// What most types can and one or two cannot.
void RecordsetBase::MoveLast() {
    raiseInvalid("moving to the last row");
}
void RecordsetBase::MovePrevious() {
    raiseInvalid("moving back");
}
void RecordsetBase::Move(qint64) {
    raiseInvalid("moving several rows");
}
qint64 RecordsetBase::AbsolutePosition() const {
    raiseInvalid("positions");
}
void RecordsetBase::setAbsolutePosition(qint64) {
    raiseInvalid("positions");
}
Ref<Recordset> RecordsetBase::Clone() {
    raiseInvalid("clones");
}
QString RecordsetBase::Index() const {
    raiseInvalid("indexes");
}
void RecordsetBase::setIndex(const QString&) {
    raiseInvalid("indexes");
}
void RecordsetBase::Seek(QStringView, std::span<const QVariant>) {
    raiseInvalid("seeks");
}
bool RecordsetBase::NoMatch() const {
    raiseInvalid("seeks");
}
void RecordsetBase::rowAdded(qint64) {}

void RecordsetBase::raiseNotBookmarkable() {
    throw AutomationError(kErrorNotBookmarkable, kSource,
                          QStringLiteral("That is no bookmark of this recordset."));
}

yrw::dao::Bookmark RecordsetBase::Bookmark() const {
    requireOpen();
    raiseNotBookmarkable();
}

void RecordsetBase::setBookmark(yrw::dao::Bookmark) {
    requireOpen();
    raiseNotBookmarkable();
}

yrw::dao::Bookmark RecordsetBase::LastModified() const {
    requireOpen();
    raiseNotBookmarkable();
}

int RecordsetBase::FieldCount() const {
    requireOpen();
    return int(m_query.items().size());
}

const Query::Item& RecordsetBase::item(int column) const {
    requireOpen();
    if (column < 0 || column >= int(m_query.items().size())) {
        throw AutomationError(kErrorNotInCollection, kSource,
                              QStringLiteral("There is no field number %1.").arg(column));
    }
    return m_query.items()[size_t(column)];
}

QString RecordsetBase::FieldName(int column) const {
    return item(column).name;
}

int RecordsetBase::FieldIndex(QStringView name) const {
    requireOpen();
    const auto& items = m_query.items();
    for (size_t i = 0; i < items.size(); ++i) {
        if (name.compare(items[i].name, Qt::CaseInsensitive) == 0) {
            return int(i);
        }
    }
    return -1;
}

Ref<Field> RecordsetBase::Field(QStringView name) {
    const int column = FieldIndex(name);
    if (column < 0) {
        throw AutomationError(kErrorNotInCollection, kSource,
                              QStringLiteral("There is no field '%1'.").arg(name));
    }
    return Field(column);
}

Ref<Field> RecordsetBase::Field(int column) {
    static_cast<void>(item(column));
    return Ref<yrw::dao::Field>(new CursorField(m_self, column));
}

FieldType RecordsetBase::TypeOf(int column) const {
    return item(column).column.type.value_or(FieldType::Text);
}

int RecordsetBase::textSizeOf(int column) const {
    return item(column).column.size;
}

QVariant RecordsetBase::value(int column) const {
    static_cast<void>(item(column));
    if (m_edit != EditKind::None) {
        const Cell& cell = m_cells[size_t(column)];
        return cell.set ? cell.after : cell.before;
    }
    return rowValue(column);
}

void RecordsetBase::requireUpdatable() const {
    if (!Updatable()) {
        throw AutomationError(kErrorReadOnly, kSource,
                              QStringLiteral("'%1' cannot be changed.").arg(m_name));
    }
}

void RecordsetBase::startBuffer() {
    m_cells.assign(m_query.items().size(), Cell());
}

void RecordsetBase::AddNew() {
    requireUpdatable();
    startBuffer();
    for (size_t i = 0; i < m_cells.size(); ++i) {
        m_cells[i].before = m_query.items()[i].column.defaultValue;
    }
    m_edit = EditKind::Add;
}

void RecordsetBase::Edit() {
    requireUpdatable();
    leaveRow();
    std::vector<Cell> cells(m_query.items().size());
    for (size_t i = 0; i < cells.size(); ++i) {
        cells[i].before = rowValue(int(i));
    }
    m_cells = std::move(cells);
    m_edit = EditKind::Change;
}

void RecordsetBase::setValue(int column, const QVariant& value) {
    const Query::Item& target = item(column);
    if (m_edit == EditKind::None) {
        throw AutomationError(kErrorNoEdit, kSource,
                              QStringLiteral("A field is set between AddNew or Edit and Update."));
    }
    const bool isKey = quotedName(target.column.baseColumn) == m_query.source().baseKey;
    if (target.column.baseColumn.isEmpty() || (isKey && m_edit == EditKind::Change)) {
        throw AutomationError(kErrorReadOnly, kSource,
                              QStringLiteral("The field '%1' cannot be changed.").arg(target.name));
    }
    // What has no declared type takes anything.
    const std::optional<FieldType> type = target.column.type;
    QVariant converted =
        type ? convertToField(value, {*type, target.column.size}, target.name) : value;
    Cell& cell = m_cells[size_t(column)];
    cell.after = std::move(converted);
    cell.set = true;
}

void RecordsetBase::compareWith(const ValueList& asRead, const QStringList& stamps) {
    if (m_edit != EditKind::Change) {
        throw AutomationError(kErrorNoEdit, kSource,
                              QStringLiteral("Values are compared between Edit and Update."));
    }
    for (size_t i = 0; i < m_cells.size(); ++i) {
        const QString& name = m_query.items()[i].name;
        if (const int known = asRead.indexOf(name); known >= 0) {
            m_cells[i].before = asRead.at(known).value;
        }
        m_cells[i].isStamp = stamps.contains(name, Qt::CaseInsensitive);
    }
}

std::vector<int> RecordsetBase::setColumns() const {
    std::vector<int> columns;
    for (size_t i = 0; i < m_cells.size(); ++i) {
        if (m_cells[i].set) {
            columns.push_back(int(i));
        }
    }
    return columns;
}

qint64 RecordsetBase::insertRow() {
    QStringList names;
    QStringList places;
    const std::vector<int> columns = setColumns();
    for (const int column : columns) {
        names += quotedName(item(column).column.baseColumn);
        places += QStringLiteral("?");
    }
    const QString values =
        columns.empty()
            ? QStringLiteral(" DEFAULT VALUES")
            : QString(u" (" + names.join(u',') + u") VALUES (" + places.join(u',') + u')');
    Statement& insert =
        connection().kept(u"INSERT INTO " + quotedName(m_query.source().baseTable) + values);
    for (size_t i = 0; i < columns.size(); ++i) {
        insert.bind(int(i) + 1, m_cells[size_t(columns[i])].after);
    }
    insert.run();
    insert.forgetValues();
    return connection().lastKey();
}

void RecordsetBase::requireUnchanged(qint64 key) {
    const std::vector<int> columns = setColumns();
    QStringList names;
    for (const int column : columns) {
        names += quotedName(item(column).column.baseColumn);
    }
    Statement& present = connection().kept(u"SELECT " + names.join(u',') + u" FROM " +
                                           quotedName(m_query.source().baseTable) + u" WHERE " +
                                           m_query.source().baseKey + u" = ?1");
    present.bind(1, key);
    if (!present.step()) {
        throw AutomationError(kErrorNoCurrentRecord, kSource,
                              QStringLiteral("The record was deleted by somebody else."));
    }
    ValueList conflicts;
    for (size_t i = 0; i < columns.size(); ++i) {
        const Query::Item& target = item(columns[i]);
        Cell& cell = m_cells[size_t(columns[i])];
        const QVariant stands = present.value(int(i), target.column.type);
        if (cell.isStamp || isSameValue(stands, cell.before) || isSameValue(stands, cell.after)) {
            continue;
        }
        conflicts.set(target.name, stands);
        // Who updates again has been told what stands there.
        cell.before = stands;
    }
    present.reset();
    if (!conflicts.isEmpty()) {
        throw ConflictError(kSource,
                            QStringLiteral("The field '%1' was changed by somebody else since it "
                                           "was read.")
                                .arg(conflicts.at(0).name),
                            conflicts);
    }
}

void RecordsetBase::changeRow(qint64 key) {
    const std::vector<int> columns = setColumns();
    requireUnchanged(key);
    QStringList settings;
    for (const int column : columns) {
        settings += quotedName(item(column).column.baseColumn) + u" = ?";
    }
    Statement& update =
        connection().kept(u"UPDATE " + quotedName(m_query.source().baseTable) + u" SET " +
                          settings.join(u',') + u" WHERE " + m_query.source().baseKey + u" = ?");
    for (size_t i = 0; i < columns.size(); ++i) {
        update.bind(int(i) + 1, m_cells[size_t(columns[i])].after);
    }
    update.bind(int(columns.size()) + 1, key);
    update.run();
    update.forgetValues();
}

void RecordsetBase::Update() {
    requireOpen();
    if (m_edit == EditKind::None) {
        throw AutomationError(kErrorNoEdit, kSource,
                              QStringLiteral("Update without AddNew or Edit."));
    }
    const bool adding = m_edit == EditKind::Add;
    if (!adding && setColumns().empty()) {
        leaveRow();
        return;
    }
    Transaction transaction(*m_database);
    qint64 key = 0;
    if (adding) {
        key = insertRow();
    } else {
        key = currentKey();
        changeRow(key);
    }
    transaction.commit();
    m_database->tableChanged(m_query.source().baseTable);
    leaveRow();
    if (adding) {
        rowAdded(key);
    } else {
        rowChanged();
    }
}

void RecordsetBase::CancelUpdate() {
    requireOpen();
    leaveRow();
}

bool RecordsetBase::EditInProgress() const {
    requireOpen();
    return m_edit != EditKind::None;
}

void RecordsetBase::Delete() {
    requireUpdatable();
    leaveRow();
    const qint64 key = currentKey();
    rowDeleting();
    Transaction transaction(*m_database);
    Statement& remove = connection().kept(u"DELETE FROM " + quotedName(m_query.source().baseTable) +
                                          u" WHERE " + m_query.source().baseKey + u" = ?1");
    remove.bind(1, key);
    remove.run();
    transaction.commit();
    m_database->tableChanged(m_query.source().baseTable);
    rowDeleted();
}

void RecordsetBase::setFilter(const QString& condition) {
    requireOpen();
    m_filter = condition;
}

void RecordsetBase::setSort(const QString& order) {
    requireOpen();
    m_sort = order;
}

Ref<Recordset> RecordsetBase::OpenRecordset(RecordsetType type, int options) {
    requireOpen();
    if (m_type == RecordsetType::ForwardOnly) {
        raiseInvalid("a second recordset");
    }
    Query narrowed = m_query;
    if (!m_filter.trimmed().isEmpty()) {
        narrowed.addCondition(parseCondition(m_filter));
    }
    if (!m_sort.trimmed().isEmpty()) {
        narrowed.setOrder(parseOrder(m_sort));
    }
    const bool inherits = type == RecordsetType::Default;
    const RecordsetType wanted = !inherits                           ? type
                                 : m_type == RecordsetType::Snapshot ? RecordsetType::Snapshot
                                                                     : RecordsetType::Dynaset;
    return m_database->open(narrowed, m_name, wanted, options | m_options);
}

} // namespace yrw::dao

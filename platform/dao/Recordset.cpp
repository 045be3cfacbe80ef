#include "platform/dao/Recordset.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/EditBuffer.h"
#include "platform/dao/PlacedRows.h"
#include "platform/dao/StreamRows.h"
#include "platform/dao/TableRows.h"

#include <utility>

namespace yrw::dao {

Field::~Field() = default;

namespace {

const QString kSource = QStringLiteral("YRW.Recordset");

/// A column of a recordset as an object: follows the cursor of its recordset.
class CursorField final : public Field {
public:
    CursorField(std::shared_ptr<Recordset*> recordset, int column)
        : m_recordset(std::move(recordset)), m_column(column) {}
    [[nodiscard]] QString Name() const override { return rows().FieldName(m_column); }
    [[nodiscard]] FieldType Type() const override { return rows().TypeOf(m_column); }
    [[nodiscard]] QVariant Value() const override { return rows().value(m_column); }
    void setValue(const QVariant& value) override { rows().setValue(m_column, value); }

private:
    [[nodiscard]] Recordset& rows() const {
        if (*m_recordset == nullptr) {
            throw AutomationError(kErrorObjectClosed, kSource,
                                  QStringLiteral("The recordset of the field is closed."));
        }
        return **m_recordset;
    }

    std::shared_ptr<Recordset*> m_recordset; ///< holds nothing once the recordset is gone
    int m_column;
};

[[noreturn]] void raiseNotBookmarkable() {
    throw AutomationError(kErrorNotBookmarkable, kSource,
                          QStringLiteral("That is no bookmark of this recordset."));
}

void requireUpdatable(const Recordset& recordset) {
    if (!recordset.Updatable()) {
        throw AutomationError(kErrorReadOnly, kSource,
                              QStringLiteral("'%1' cannot be changed.").arg(recordset.Name()));
    }
}

int requireColumn(const Recordset& recordset, QStringView name) {
    const int column = recordset.FieldIndex(name);
    if (column < 0) {
        throw AutomationError(kErrorNotInCollection, kSource,
                              QStringLiteral("There is no field '%1'.").arg(name));
    }
    return column;
}

} // namespace

Ref<Recordset> openRecordset(const Ref<Counted>& keeper, Connection& connection, const Query& query,
                             const QString& name, RecordsetType type, int options) {
    std::unique_ptr<Rows> rows;
    switch (type) {
    case RecordsetType::Table:
        rows = std::make_unique<TableRows>(connection, query);
        break;
    case RecordsetType::ForwardOnly:
        rows = std::make_unique<StreamRows>(connection, query);
        break;
    case RecordsetType::Default:
    case RecordsetType::Dynaset:
    case RecordsetType::Snapshot: {
        const bool hasKeys = type != RecordsetType::Snapshot && query.hasKey();
        type = hasKeys ? RecordsetType::Dynaset : RecordsetType::Snapshot;
        rows = std::make_unique<PlacedRows>(
            connection, query, hasKeys ? PlacedRows::Kind::Keys : PlacedRows::Kind::Copies);
    }
    }
    return make<Recordset>(keeper, std::move(rows), name, type, options);
}

Recordset::Recordset(Ref<Counted> keeper, std::unique_ptr<Rows> rows, QString name,
                     RecordsetType type, int options)
    : m_keeper(std::move(keeper)), m_rows(std::move(rows)),
      m_edit(std::make_unique<EditBuffer>(m_rows->query())),
      m_self(std::make_shared<Recordset*>(this)), m_name(std::move(name)), m_type(type),
      m_options(options) {}

Recordset::~Recordset() {
    *m_self = nullptr;
}

// Inline: every call goes through them.
inline Rows& Recordset::rows() const {
    if (!m_rows->isOpen()) {
        throw AutomationError(kErrorObjectClosed, kSource,
                              QStringLiteral("The recordset is closed."));
    }
    return *m_rows;
}

/// Drops an edit that a move leaves behind.
inline void Recordset::leaveRow() {
    static_cast<void>(rows());
    m_edit->drop();
}

bool Recordset::isOpen() const {
    return m_rows->isOpen();
}

void Recordset::Close() {
    m_rows->close();
    m_edit->drop();
}

QString Recordset::Name() const {
    static_cast<void>(rows());
    return m_name;
}

bool Recordset::Updatable() const {
    const Query& query = rows().query();
    const bool typeAllows = m_type == RecordsetType::Table || m_type == RecordsetType::Dynaset;
    return typeAllows && (m_options & kReadOnlyOption) == 0 && !rows().connection().isReadOnly() &&
           !query.source().baseTable.isEmpty() && query.hasKey();
}

bool Recordset::AtBof() const {
    return rows().atBof();
}

bool Recordset::AtEof() const {
    return rows().atEof();
}

void Recordset::MoveFirst() {
    leaveRow();
    m_rows->toFirst();
}

void Recordset::MoveLast() {
    leaveRow();
    m_rows->toLast();
}

void Recordset::MoveNext() {
    if (AtEof()) {
        raiseNoRecord();
    }
    leaveRow();
    m_rows->next();
}

void Recordset::MovePrevious() {
    if (m_type != RecordsetType::ForwardOnly && AtBof()) {
        raiseNoRecord();
    }
    leaveRow();
    m_rows->previous();
}

void Recordset::Move(qint64 rows) {
    leaveRow();
    m_rows->move(rows);
}

qint64 Recordset::RecordCount() const {
    return rows().count();
}

qint64 Recordset::AbsolutePosition() const {
    return rows().position();
}

void Recordset::setAbsolutePosition(qint64 position) {
    static_cast<void>(rows().position()); // where there are positions at all
    if (position < 0 || position >= m_rows->count()) {
        raiseNoRecord();
    }
    leaveRow();
    m_rows->setPosition(position);
}

bool Recordset::Bookmarkable() const {
    static_cast<void>(rows());
    return m_type != RecordsetType::ForwardOnly;
}

Bookmark Recordset::Bookmark() const {
    if (!Bookmarkable()) {
        raiseNotBookmarkable();
    }
    return m_rows->bookmark();
}

void Recordset::setBookmark(yrw::dao::Bookmark bookmark) {
    const qint64 place = rows().placeOf(bookmark);
    if (place < 0) {
        raiseNotBookmarkable();
    }
    leaveRow();
    m_rows->toPlace(place);
}

Bookmark Recordset::LastModified() const {
    const yrw::dao::Bookmark place = rows().lastModified();
    if (place.isNull() && m_type != RecordsetType::Table && m_type != RecordsetType::Dynaset) {
        raiseNotBookmarkable();
    }
    if (place.isNull()) {
        raiseNoRecord();
    }
    return place;
}

Ref<Recordset> Recordset::Clone() {
    return make<Recordset>(m_keeper, rows().clone(), m_name, m_type, m_options);
}

int Recordset::FieldCount() const {
    return int(rows().query().items().size());
}

QString Recordset::FieldName(int column) const {
    return rows().query().item(column).name;
}

int Recordset::FieldIndex(QStringView name) const {
    const auto& items = rows().query().items();
    for (size_t i = 0; i < items.size(); ++i) {
        if (name.compare(items[i].name, Qt::CaseInsensitive) == 0) {
            return int(i);
        }
    }
    return -1;
}

Ref<Field> Recordset::Field(QStringView name) {
    return Field(requireColumn(*this, name));
}

Ref<Field> Recordset::Field(int column) {
    static_cast<void>(rows().query().item(column));
    return Ref<yrw::dao::Field>(new CursorField(m_self, column));
}

FieldType Recordset::TypeOf(int column) const {
    return rows().query().item(column).column.type.value_or(FieldType::Text);
}

int Recordset::textSizeOf(int column) const {
    return rows().query().item(column).column.size;
}

QVariant Recordset::value(int column) const {
    static_cast<void>(rows().query().item(column));
    return m_edit->isOpen() ? m_edit->value(column) : m_rows->value(column);
}

QVariant Recordset::value(QStringView name) const {
    return value(requireColumn(*this, name));
}

void Recordset::AddNew() {
    requireUpdatable(*this);
    m_edit->beginAdd();
}

void Recordset::Edit() {
    requireUpdatable(*this);
    leaveRow();
    std::vector<QVariant> values(m_rows->query().items().size());
    for (size_t column = 0; column < values.size(); ++column) {
        values[column] = m_rows->value(int(column));
    }
    m_edit->beginChange(values);
}

void Recordset::setValue(int column, const QVariant& newValue) {
    static_cast<void>(rows());
    m_edit->set(column, newValue);
}

void Recordset::setValue(QStringView name, const QVariant& newValue) {
    setValue(requireColumn(*this, name), newValue);
}

void Recordset::compareWith(const ValueList& asRead, const QStringList& stamps) {
    m_edit->compareWith(asRead, stamps);
}

void Recordset::Update() {
    Connection& connection = rows().connection();
    if (!m_edit->isOpen()) {
        throw AutomationError(kErrorNoEdit, kSource,
                              QStringLiteral("Update without AddNew or Edit."));
    }
    const bool isNewRow = m_edit->isNewRow();
    if (!isNewRow && m_edit->isUnchanged()) {
        leaveRow();
        return;
    }
    Writing writing(connection);
    qint64 key = 0;
    if (isNewRow) {
        key = m_edit->insert(connection);
    } else {
        key = m_rows->key();
        m_edit->update(connection, key);
    }
    writing.commit();
    connection.tableChanged(m_rows->query().source().baseTable);
    leaveRow();
    if (isNewRow) {
        m_rows->added(key);
    } else {
        m_rows->changed();
    }
}

void Recordset::CancelUpdate() {
    leaveRow();
}

bool Recordset::EditInProgress() const {
    static_cast<void>(rows());
    return m_edit->isOpen();
}

void Recordset::Delete() {
    requireUpdatable(*this);
    leaveRow();
    const qint64 key = m_rows->key();
    m_rows->deleting();
    Connection& connection = m_rows->connection();
    const Source& source = m_rows->query().source();
    Writing writing(connection);
    Cursor& remove = connection.kept(u"DELETE FROM " + quotedName(source.baseTable) + u" WHERE " +
                                     source.baseKey + u" = ?1");
    remove.bind(1, key);
    remove.run();
    writing.commit();
    connection.tableChanged(source.baseTable);
    m_rows->deleted();
}

void Recordset::setIndex(const QString& name) {
    rows().setIndex(name);
}

void Recordset::Seek(QStringView comparison, std::span<const QVariant> keys) {
    leaveRow();
    m_rows->seek(comparison, keys);
}

bool Recordset::NoMatch() const {
    return rows().noMatch();
}

void Recordset::setFilter(const QString& condition) {
    static_cast<void>(rows());
    m_filter = condition;
}

void Recordset::setSort(const QString& order) {
    static_cast<void>(rows());
    m_sort = order;
}

Ref<Recordset> Recordset::OpenRecordset(RecordsetType type, int options) {
    Query narrowed = rows().query();
    if (m_type == RecordsetType::ForwardOnly) {
        raiseUnsupported("a second recordset");
    }
    if (!m_filter.trimmed().isEmpty()) {
        narrowed.addCondition(parseCondition(m_filter));
    }
    if (!m_sort.trimmed().isEmpty()) {
        narrowed.setOrder(parseOrder(m_sort));
    }
    if (type == RecordsetType::Default || type == RecordsetType::Table) {
        type = m_type == RecordsetType::Snapshot ? m_type : RecordsetType::Dynaset;
    }
    return openRecordset(m_keeper, m_rows->connection(), narrowed, m_name, type,
                         options | m_options);
}

void Recordset::Requery() {
    leaveRow();
    m_rows->refill();
}

} // namespace yrw::dao

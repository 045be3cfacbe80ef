#include "platform/dao/Database.h"

#include <utility>

namespace yrw::dao {

Field::~Field() = default;
Recordset::~Recordset() = default;
Database::~Database() = default;
Workspace::~Workspace() = default;
LockWatch::~LockWatch() = default;
ConflictError::~ConflictError() = default;

ConflictError::ConflictError(const QString& source, const QString& description, ValueList current)
    : AutomationError(kErrorConflict, source, description), m_current(std::move(current)) {}

void ValueList::set(const QString& name, const QVariant& value) {
    const int index = indexOf(name);
    if (index >= 0) {
        setAt(index, value);
    } else {
        m_entries.push_back({name, value});
    }
}

int ValueList::indexOf(QStringView name) const noexcept {
    for (int i = 0; i < count(); ++i) {
        if (name.compare(at(i).name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

QVariant ValueList::value(QStringView name) const {
    const int index = indexOf(name);
    return index < 0 ? QVariant() : at(index).value;
}

namespace {

int requireColumn(const Recordset& recordset, QStringView name) {
    const int column = recordset.FieldIndex(name);
    if (column < 0) {
        throw AutomationError(kErrorNotInCollection, QStringLiteral("YRW.Recordset"),
                              QStringLiteral("There is no field '%1'.").arg(name));
    }
    return column;
}

} // namespace

QVariant Recordset::value(QStringView name) const {
    return value(requireColumn(*this, name));
}

void Recordset::setValue(QStringView name, const QVariant& newValue) {
    setValue(requireColumn(*this, name), newValue);
}

Transaction::~Transaction() {
    if (m_done) {
        return;
    }
    try {
        m_database->Rollback();
    } catch (...) { // NOLINT(bugprone-empty-catch): a lost connection has rolled back by itself
    }
}

void Transaction::commit() {
    m_database->CommitTrans();
    m_done = true;
}

BriefWaits::BriefWaits(Ref<Database> database) : m_database(std::move(database)) {
    constexpr int kBriefMs = 50;
    if (m_database && m_database->isOpen()) {
        m_before = m_database->setLockPatience(kBriefMs);
        m_locksMet = m_database->LocksMet();
    }
}

bool BriefWaits::wereInVain() const {
    return m_database && m_database->isOpen() && m_database->LocksMet() != m_locksMet;
}

BriefWaits::~BriefWaits() {
    if (m_database && m_database->isOpen()) {
        m_database->setLockPatience(m_before);
    }
}

} // namespace yrw::dao

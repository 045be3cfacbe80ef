#include "platform/dao/Connection.h"
#include "platform/dao/Database.h"
#include "platform/dao/FileObjects.h"
#include "platform/dao/OnlineBackup.h"
#include "platform/dao/Salvage.h"
#include "platform/dao/TextIndex.h"

#include <utility>

namespace yrw::dao {

Field::~Field() = default;
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

Transaction::Transaction(Database& database)
    : m_database(&database), m_writing(std::make_unique<Writing>(database.connection())) {}

Transaction::~Transaction() = default;

void Transaction::commit() {
    m_writing->commit();
}

BriefWaits::BriefWaits(Ref<Database> database) : m_database(std::move(database)) {
    constexpr int kBriefMs = 50;
    if (m_database && m_database->isOpen()) {
        m_before = m_database->connection().setLockPatience(kBriefMs);
        m_locksMet = m_database->connection().locksMet();
    }
}

bool BriefWaits::wereInVain() const {
    return m_database && m_database->isOpen() && m_database->connection().locksMet() != m_locksMet;
}

BriefWaits::~BriefWaits() {
    if (m_database && m_database->isOpen()) {
        m_database->connection().setLockPatience(m_before);
    }
}

OnlineBackup::~OnlineBackup() = default;

std::unique_ptr<OnlineBackup> beginBackup(const Database& database, const QString& path,
                                          ExistingCopy existing, Clock& clock) {
    return database.connection().backup(path, existing, clock);
}

DamagedFile::~DamagedFile() = default;
TextSearch::~TextSearch() = default;
TextIndex::~TextIndex() = default;

std::unique_ptr<TextIndex> openTextIndex(const Ref<Database>& database,
                                         const TextIndexNames& names) {
    return database->connection().textIndex(database, names);
}

QString textIndexProblem(Database& database, const TextIndexNames& names) {
    return openTextIndex(Ref<Database>(&database), names)->problem();
}

std::vector<FileObject> fileObjects(Database& database) {
    return database.connection().schema().objects();
}

void rebuildIndexes(Database& database) {
    database.RunScript(QStringLiteral("REINDEX"));
}

} // namespace yrw::dao

#pragma once

#include "platform/dao/Connection.h"
#include "platform/dao/sqlite/SqliteFile.h"
#include "platform/dao/sqlite/SqliteSchema.h"
#include "platform/files/FolderLock.h"

#include <memory>

namespace yrw::dao {

/// A connection to a database in one file of the embedded engine.
///
/// Lifetime: as its base class says; the file is closed by `close`, or at the latest with it.
/// Thread: the user-interface thread.
class SqliteConnection final : public Connection {
public:
    /// A local writer's file lies on a local disk and carries its own place.
    enum class Use { Reader, Writer, LocalWriter };

    /// Takes over a file that is settled.
    SqliteConnection(std::unique_ptr<SqliteFile> file, Use use);
    ~SqliteConnection() override;

    void close() override;
    [[nodiscard]] QString name() const override { return m_path; }
    [[nodiscard]] bool isReadOnly() const override { return m_use == Use::Reader; }
    [[nodiscard]] bool isInPlace() const override { return m_file->isInPlace(); }

    [[nodiscard]] std::unique_ptr<Cursor> prepare(const QString& sql,
                                                  SqlOrigin origin) const override;
    [[nodiscard]] qint64 changes() const noexcept override;
    [[nodiscard]] qint64 lastKey() const noexcept override;
    [[nodiscard]] QString indexHint(const QString& index) const override;

    [[nodiscard]] const Schema& schema() const override { return m_schema; }
    [[nodiscard]] qint64 dataVersion() override;

    void setLockWatch(LockWatch* watch) override;
    int setLockPatience(int milliseconds) override {
        return m_file->lockWaits().setPatience(milliseconds);
    }
    [[nodiscard]] qint64 locksMet() const override { return m_file->lockWaits().locksMet(); }

    /// The pages of a local file are read in place instead of copying each, until the read
    /// transaction ends. No longer than that, since a failing disk then ends the process where
    /// it would otherwise raise an error.
    void expectLongRead() noexcept override;

    [[nodiscard]] std::unique_ptr<TextIndex> textIndex(const Ref<Counted>& keeper,
                                                       const TextIndexNames& names) override;
    [[nodiscard]] std::unique_ptr<OnlineBackup> backup(const QString& path,
                                                       ExistingCopy existing) const override;
    [[nodiscard]] SalvagedTable salvage(const QString& damaged, const QString& table,
                                        const QStringList& columns) override;

protected:
    void startWrite() override;
    void beforeCommit() const override { m_file->requireInPlace(); }
    [[nodiscard]] bool isTransactionLive() const override;
    void readBegins() override;
    void readEnded() noexcept override;
    void execScript(const QString& script) override;
    [[nodiscard]] qint64 schemaState() override;

private:
    [[nodiscard]] qint64 number(const QString& pragma);
    void waitToWrite();
    void settlePlace();

    QString m_path;
    Use m_use;
    std::unique_ptr<SqliteFile> m_file; ///< nothing once closed
    SqliteSchema m_schema;
    LockWatch* m_watch = nullptr;
    bool m_takesPlace;
    std::unique_ptr<FolderLock> m_placeLock; ///< from a settling that failed half way
    bool m_mapped = false;
};

} // namespace yrw::dao

#pragma once

#include "platform/component/Counted.h"
#include "platform/dao/TextIndex.h"

namespace yrw::dao {

class Connection;
class SqliteFile;

/// The index of the embedded engine: its full-text table over groups of three letters, which finds
/// inside words too.
class SqliteTextIndex final : public TextIndex {
public:
    /// The keeper keeps the connection and its file.
    SqliteTextIndex(Ref<Counted> keeper, Connection& connection, const SqliteFile& file,
                    TextIndexNames names);

    void create() override;
    void repair() override;
    [[nodiscard]] qint64 waiting() override;
    bool catchUp(int milliseconds) override;
    [[nodiscard]] std::unique_ptr<TextSearch> search(const QStringList& words,
                                                     std::vector<qint64> keys) override;
    [[nodiscard]] QString problem() override;

private:
    [[nodiscard]] Connection& connection() const;
    /// A script with its "{...}" replaced by the names.
    [[nodiscard]] QString withNames(QString script) const;
    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] bool hasEveryRow() const;
    void listDifferences();

    Ref<Counted> m_keeper;
    Connection& m_connection;
    const SqliteFile& m_file;
    TextIndexNames m_names;
    bool m_damaged = false;
};

} // namespace yrw::dao

#pragma once

#include "platform/dao/Database.h"
#include "platform/dao/TextIndex.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <unordered_set>

namespace yrw {

class StoreContext;

/// Looks for the notes that contain what was typed, a little at a time, so that the window never
/// stands still: the first hits come at once, the others from the event loop.
///
/// While nothing is looked for it brings the index up to what was written meanwhile. Failures end
/// the search with what was found before.
/// Lifetime: the context outlives it. Thread: the user-interface thread.
class NoteFinder final : public QObject {
    Q_OBJECT

public:
    explicit NoteFinder(StoreContext& context, QObject* parent = nullptr);
    ~NoteFinder() override;

    /// Brings the index up to date, the rest of the work from the event loop.
    void prepare();
    /// Looks among the notes with these ids, given in the order in which hits are wanted. Raises
    /// `progressed` before it returns when it found something or is through.
    void start(const QString& typed, std::vector<qint64> ids);
    void stop();
    /// The notes were changed: what was found before does not narrow the next search.
    void forget() { m_reusable = false; }

    [[nodiscard]] bool isSearching() const { return m_search != nullptr; }
    /// True when the last search ended before its time: the hits may not be all.
    [[nodiscard]] bool hasFailed() const { return m_failed; }
    /// True when the search goes through nothing but the hits of the one before.
    [[nodiscard]] bool isNarrowing() const { return m_narrows; }
    [[nodiscard]] bool has(qint64 id) const { return m_hits.count(id) != 0; }
    [[nodiscard]] qsizetype hits() const { return qsizetype(m_hits.size()); }

Q_SIGNALS:
    /// Notes were found, or the search has come to its end.
    void progressed();
    /// So many percent of the notes are in the index; 100 when it is up to date.
    void indexed(int percent);

private:
    void goOn();
    void search(int milliseconds);
    void index();
    void openIndex();

    StoreContext& m_context;
    Ref<dao::Database> m_database;
    std::unique_ptr<dao::TextIndex> m_index;
    std::unique_ptr<dao::TextSearch> m_search;
    QString m_typed; ///< what was looked for last, folded
    std::unordered_set<qint64> m_hits;
    std::vector<qint64> m_inOrder; ///< the hits as they were found
    bool m_narrows = false;
    bool m_failed = false;
    bool m_reusable = false;   ///< the last search came to its end and nothing has changed
    qint64 m_shownAtMs = 0;    ///< when `progressed` was raised last
    qsizetype m_shownHits = 0; ///< hits at that time
    qint64 m_toIndex = 0;      ///< notes that waited when the index was prepared
    QTimer m_timer;
};

} // namespace yrw

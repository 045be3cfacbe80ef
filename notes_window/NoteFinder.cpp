#include "notes_window/NoteFinder.h"

#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "platform/dao/Folding.h"
#include "store/NotesTextIndex.h"
#include "store/StoreContext.h"

#include <algorithm>

namespace yrw {

namespace {

constexpr int kFirstSliceMs = 4;   ///< of searching; with showing the hits less than two frames
constexpr int kSliceMs = 12;       ///< of the searching that follows
constexpr int kIndexMs = 20;       ///< of indexing
constexpr int kPauseMs = 20;       ///< between two slices of indexing, for whoever else writes
constexpr int kRefreshMs = 150;    ///< between two showings of more hits
constexpr qint64 kFewToIndex = 50; ///< taken in at once

} // namespace

NoteFinder::NoteFinder(StoreContext& context, QObject* parent)
    : QObject(parent), m_context(context) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { goOn(); });
}

NoteFinder::~NoteFinder() = default;

void NoteFinder::openIndex() {
    const Ref<dao::Database> database = m_context.database();
    if (database != m_database || !m_index) {
        m_search.reset();
        m_database = database;
        m_index = notesTextIndex(database);
    }
}

void NoteFinder::prepare() {
    ignoreErrors([this] {
        openIndex();
        m_index->repair();
        if (m_index->waiting() <= kFewToIndex) {
            m_index->catchUp(kIndexMs);
            m_index->repair();
        }
        m_toIndex = m_index->waiting();
        if (m_toIndex > 0) {
            m_timer.start(kPauseMs);
        }
    });
}

void NoteFinder::start(const QString& typed, std::vector<qint64> ids) {
    const QString folded = dao::foldText(typed);
    m_narrows = m_reusable && folded.startsWith(m_typed);
    if (m_narrows) {
        ids = std::move(m_inOrder);
    }
    m_typed = folded;
    m_hits.clear();
    m_inOrder.clear();
    m_shownHits = 0;
    m_reusable = false;
    m_search.reset();
    ignoreErrors([&] {
        openIndex();
        m_search = m_index->search(dao::foldedWords(typed), std::move(ids));
    });
    search(kFirstSliceMs);
}

void NoteFinder::stop() {
    m_search.reset();
    m_hits.clear();
    m_inOrder.clear();
    m_reusable = false;
    m_narrows = false;
}

void NoteFinder::goOn() {
    if (m_search) {
        search(kSliceMs);
    } else {
        index();
    }
}

void NoteFinder::search(int milliseconds) {
    const bool went = m_search && ignoreErrors([this, milliseconds] {
                          const std::vector<qint64> found = m_search->next(milliseconds);
                          m_hits.insert(found.begin(), found.end());
                          m_inOrder.insert(m_inOrder.end(), found.begin(), found.end());
                      });
    if (!went || m_search->atEnd()) {
        m_search.reset();
        m_failed = !went;
        m_reusable = went;
    }
    const qint64 now = m_context.clock().monotonicMs();
    const bool more = hits() > m_shownHits;
    const bool due = m_shownHits == 0 || now - m_shownAtMs >= kRefreshMs;
    if (m_search == nullptr || (more && due)) {
        m_shownHits = hits();
        m_shownAtMs = now;
        Q_EMIT progressed();
    }
    m_timer.start(m_search ? 0 : kPauseMs);
}

void NoteFinder::index() {
    if (!m_index || m_toIndex == 0) {
        return;
    }
    const bool went = ignoreErrors([this] {
        const bool left = m_index->catchUp(kIndexMs);
        const qint64 waiting = left ? m_index->waiting() : 0;
        Q_EMIT indexed(int(100 - waiting * 100 / std::max(waiting, m_toIndex)));
        m_toIndex = left ? m_toIndex : 0;
    });
    if (went && m_toIndex > 0) {
        m_timer.start(kPauseMs);
    }
}

} // namespace yrw

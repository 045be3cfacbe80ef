#include "platform/dao/StreamRows.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace yrw::dao {

namespace {

/// Rows after which a read counts as long.
constexpr qint64 kLongRead = 500;
/// Rows that show which columns a reader wants.
constexpr qint64 kFirstRows = 64;

} // namespace

StreamRows::StreamRows(Connection& connection, const Query& query) : Rows(connection, query) {
    refill();
}

void StreamRows::refill() {
    drop();
    m_lost = nullptr;
    m_read = 0;
    connection().beginRead();
    if (query().hasKey() && !query().isInKeyOrder()) {
        m_mode = Mode::Keys;
        Cursor& keys = query().keys(connection());
        while (keys.step()) {
            m_keys.push_back(keys.integer(0));
        }
    } else {
        m_mode = Mode::Stream;
        m_stream = query().rows(connection());
        m_keyPlace = int(query().items().size());
        m_places.resize(query().items().size());
        std::iota(m_places.begin(), m_places.end(), 0);
        m_asked.assign(m_places.size(), false);
    }
    m_onRow = advance();
}

bool StreamRows::advance() {
    requireRest();
    if (m_read == kLongRead) {
        connection().expectLongRead();
    }
    bool found = false;
    switch (m_mode) {
    case Mode::Stream:
        found = m_read == kFirstRows ? stepWithoutUnasked() : m_stream->step();
        break;
    case Mode::Keys:
        found = advanceByKey();
        break;
    case Mode::Rows:
        found = !m_rows.empty();
        if (found) {
            m_row = std::move(m_rows.front());
            m_rows.pop_front();
        }
        break;
    }
    m_read += found ? 1 : 0;
    return found;
}

/// Every column that a statement names costs time on every row, read or not.
bool StreamRows::stepWithoutUnasked() {
    std::vector<int> asked;
    for (size_t column = 0; column < m_asked.size(); ++column) {
        if (m_asked[column]) {
            asked.push_back(int(column));
        }
    }
    if (!query().isInKeyOrder() || asked.size() == m_asked.size()) {
        return m_stream->step();
    }
    auto rest = query().rowsBehind(connection(), m_stream->integer(m_keyPlace), asked);
    // Begins while the former one still reads, so that both see the same state.
    const bool found = rest->step();
    m_stream = std::move(rest);
    std::fill(m_places.begin(), m_places.end(), -1);
    for (size_t place = 0; place < asked.size(); ++place) {
        m_places[size_t(asked[place])] = int(place);
    }
    m_keyPlace = int(asked.size());
    return found;
}

bool StreamRows::advanceByKey() {
    while (!m_keys.empty()) {
        m_reader.moveTo(m_keys.front());
        m_keys.pop_front();
        if (m_reader.load(connection(), query())) {
            return true;
        }
    }
    return false;
}

void StreamRows::keepRest() {
    const bool byKey = query().hasKey();
    if (byKey) {
        m_reader.moveTo(m_stream->integer(m_keyPlace));
    } else {
        m_row = query().itemsOf(*m_stream);
    }
    while (m_stream->step()) {
        if (byKey) {
            m_keys.push_back(m_stream->integer(m_keyPlace));
        } else {
            m_rows.push_back(query().itemsOf(*m_stream));
        }
    }
    m_mode = byKey ? Mode::Keys : Mode::Rows;
}

void StreamRows::releaseRead() noexcept {
    m_reader.release();
    if (m_mode != Mode::Stream || !m_stream || !m_stream->hasRow()) {
        return;
    }
    try {
        keepRest();
    } catch (...) {
        m_lost = std::current_exception();
    }
    m_stream->reset();
}

void StreamRows::dropStatements() noexcept {
    releaseRead();
    m_stream.reset();
    m_reader.close();
}

void StreamRows::requireRest() const {
    if (m_lost) {
        std::rethrow_exception(m_lost);
    }
}

void StreamRows::toFirst() {
    if (m_read > 1) {
        raiseUnsupported("moving back");
    }
}

QVariant StreamRows::value(int column) const {
    if (!m_onRow) {
        raiseNoRecord();
    }
    requireRest();
    if (m_mode == Mode::Stream) {
        m_asked[size_t(column)] = true;
        if (const int place = m_places[size_t(column)]; place >= 0) {
            return m_stream->value(place, query().items()[size_t(column)].column.type);
        }
        m_reader.moveTo(m_stream->integer(m_keyPlace));
    }
    if (m_mode == Mode::Rows) {
        return m_row[size_t(column)];
    }
    return m_reader.value(connection(), query(), column);
}

void StreamRows::drop() noexcept {
    m_stream.reset();
    m_reader.close();
    m_keys.clear();
    m_rows.clear();
    m_row.clear();
    m_onRow = false;
}

} // namespace yrw::dao

#pragma once

#include "platform/dao/Cursor.h"

struct sqlite3;

namespace yrw::dao {

/// Keeps the SQL of a shared file to the data of that file.
///
/// Others can write to the file, and with it change queries, views and triggers that run with the
/// rights of whoever reads them. The engine itself therefore opens no second file, and its
/// authorizer lets stored text, and every view and trigger, do no more than read and write rows
/// with functions of a fixed list. A step that does not come to an end is stopped; it is the
/// processor's time that counts, so a machine that is busy otherwise stops nobody.
///
/// Lifetime: as long as its connection, and at the same address. Thread: the user-interface thread.
class SqlLimits {
public:
    SqlLimits() = default;
    SqlLimits(const SqlLimits&) = delete;
    SqlLimits& operator=(const SqlLimits&) = delete;

    /// Sets the limits of a connection.
    void apply(sqlite3* connection);

private:
    static int authorize(void* self, int action, const char* first, const char* second,
                         const char* database, const char* trigger) noexcept;
    static int watch(void* self) noexcept;

    bool m_hasStopped = false; ///< one step did not end; what follows gets less time
};

/// Tells the authorizer whose text is prepared, for as long as the object lives.
class PreparingSql {
public:
    explicit PreparingSql(SqlOrigin origin) noexcept;
    ~PreparingSql();
    PreparingSql(const PreparingSql&) = delete;
    PreparingSql& operator=(const PreparingSql&) = delete;

private:
    SqlOrigin m_before;
};

/// Milliseconds of the processor's time that one step of a statement may take; 0 for any.
[[nodiscard]] int stepLimitOf(SqlOrigin origin) noexcept;
/// Begins to count for a step with that limit.
void beginStep(int limitMs) noexcept;

} // namespace yrw::dao

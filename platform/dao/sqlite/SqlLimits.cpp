#include "platform/dao/sqlite/SqlLimits.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <string_view>

#include <sqlite3.h>
#include <strings.h>

namespace yrw::dao {

namespace {

constexpr int kInstructionsPerLook = 20'000;
constexpr int kOwnStepMs = 5'000;
constexpr int kStoredStepMs = 1'000;
constexpr int kScriptMs = 60'000;
constexpr int kStepAfterStopMs = 250;
constexpr int kLongestValue = 512 << 20; // bytes
constexpr int kDeepestTriggers = 20;

/// Functions that read nothing but their arguments and cannot be asked for much memory. In order.
constexpr std::array<std::string_view, 48> kFunctions{
    "Now",       "abs",        "avg",   "ceil",   "char",     "coalesce",   "count",     "date",
    "datetime",  "dense_rank", "floor", "glob",   "hex",      "ifnull",     "iif",       "instr",
    "julianday", "lag",        "lead",  "length", "like",     "likelihood", "likely",    "lower",
    "ltrim",     "match",      "max",   "min",    "nullif",   "quote",      "rank",      "replace",
    "round",     "row_number", "rtrim", "sign",   "strftime", "substr",     "substring", "sum",
    "time",      "total",      "trim",  "typeof", "unicode",  "unixepoch",  "unlikely",  "upper"};

struct Budget {
    int limitMs = 0;
    bool started = false;
    long long startedMs = 0;
};

thread_local SqlOrigin currentOrigin = SqlOrigin::Own;
thread_local Budget currentBudget;

long long processorMs() noexcept {
    timespec used{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return used.tv_sec * 1000LL + used.tv_nsec / 1'000'000;
}

bool isListed(const char* function) noexcept {
    return function != nullptr &&
           std::any_of(kFunctions.begin(), kFunctions.end(), [function](std::string_view known) {
               return ::strcasecmp(known.data(), function) == 0;
           });
}

bool beginsWith(const char* name, std::string_view head) noexcept {
    return name != nullptr && ::strncasecmp(name, head.data(), head.size()) == 0;
}

/// What text out of the file may do.
bool mayStoredText(int action, const char* name, bool mayWrite) noexcept {
    switch (action) {
    case SQLITE_SELECT:
        return true;
    case SQLITE_READ:
        return !beginsWith(name, "pragma_");
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
        return mayWrite && !beginsWith(name, "sqlite_");
    default:
        return false;
    }
}

} // namespace

void SqlLimits::apply(sqlite3* connection) {
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
    sqlite3_limit(connection, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(connection, SQLITE_LIMIT_LENGTH, kLongestValue);
    sqlite3_limit(connection, SQLITE_LIMIT_TRIGGER_DEPTH, kDeepestTriggers);
    sqlite3_set_authorizer(connection, &SqlLimits::authorize, this);
    sqlite3_progress_handler(connection, kInstructionsPerLook, &SqlLimits::watch, this);
}

int SqlLimits::authorize(void* /*self*/, int action, const char* first, const char* second,
                         const char* /*database*/, const char* trigger) noexcept {
    // The name is also given for a view and for a subquery.
    const bool isScript = currentOrigin == SqlOrigin::Script;
    const bool isOurs = trigger == nullptr && (currentOrigin == SqlOrigin::Own || isScript);
    bool allowed = false;
    switch (action) {
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
        break;
    case SQLITE_RECURSIVE:
        allowed = isScript;
        break;
    case SQLITE_FUNCTION:
        allowed = isListed(second) || isScript;
        break;
    default:
        allowed =
            isOurs || mayStoredText(action, first,
                                    trigger != nullptr || currentOrigin == SqlOrigin::StoredAction);
    }
    return allowed ? SQLITE_OK : SQLITE_DENY;
}

int SqlLimits::watch(void* self) noexcept {
    auto* limits = static_cast<SqlLimits*>(self);
    Budget& budget = currentBudget;
    if (budget.limitMs == 0) {
        return 0;
    }
    if (!budget.started) {
        budget.started = true;
        budget.startedMs = processorMs();
        return 0;
    }
    const bool isScript = budget.limitMs > kOwnStepMs;
    const int limit = limits->m_hasStopped && !isScript ? std::min(budget.limitMs, kStepAfterStopMs)
                                                        : budget.limitMs;
    if (processorMs() - budget.startedMs < limit) {
        return 0;
    }
    limits->m_hasStopped = true;
    return 1;
}

PreparingSql::PreparingSql(SqlOrigin origin) noexcept : m_before(currentOrigin) {
    currentOrigin = origin;
}

PreparingSql::~PreparingSql() {
    currentOrigin = m_before;
}

int stepLimitOf(SqlOrigin origin) noexcept {
    switch (origin) {
    case SqlOrigin::Own:
        return kOwnStepMs;
    case SqlOrigin::Script:
        return kScriptMs;
    case SqlOrigin::Stored:
    case SqlOrigin::StoredAction:
        break;
    }
    return kStoredStepMs;
}

void beginStep(int limitMs) noexcept {
    currentBudget.limitMs = limitMs;
    currentBudget.started = false;
}

} // namespace yrw::dao

#include "platform/dao/ConflictError.h"

#include <utility>

namespace yrw::dao {

ConflictError::~ConflictError() = default;

ConflictError::ConflictError(const QString& source, const QString& description, ValueList current)
    : AutomationError(kErrorConflict, source, description), m_current(std::move(current)) {}

} // namespace yrw::dao

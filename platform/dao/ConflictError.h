#pragma once

#include "platform/component/AutomationError.h"
#include "platform/dao/Types.h"

namespace yrw::dao {

/// Raised by `Recordset::Update` when fields were changed by someone else since they were read.
class ConflictError final : public AutomationError {
public:
    ConflictError(const QString& source, const QString& description, ValueList current);
    ~ConflictError() override;
    /// The conflicting fields with the values that stand in the database now.
    [[nodiscard]] const ValueList& current() const noexcept { return m_current; }

private:
    ValueList m_current;
};

} // namespace yrw::dao

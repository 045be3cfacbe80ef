#include "platform/component/AutomationError.h"

#include <utility>

namespace yrw {

AutomationError::AutomationError(int number, QString source, QString description)
    : m_number(number), m_source(std::move(source)), m_description(std::move(description)),
      m_what((m_source + u": " + m_description).toUtf8()) {}

AutomationError::~AutomationError() = default;

const char* AutomationError::what() const noexcept {
    return m_what.constData();
}

AutomationError currentError() {
    try {
        throw;
    } catch (const AutomationError& error) {
        return error;
    } catch (const std::exception& error) {
        return {kErrorObjectRequired, QStringLiteral("YRW"), QString::fromUtf8(error.what())};
    } catch (...) {
        return {kErrorObjectRequired, QStringLiteral("YRW"), QStringLiteral("Unknown error")};
    }
}

} // namespace yrw

#include "framework/FieldDictionary.h"

#include <utility>

namespace yrw {

FieldDictionary::FieldDictionary(const QStringList& names, std::vector<dao::FieldType> types)
    : m_names(names), m_types(std::move(types)) {
    m_positions.reserve(m_names.size());
    for (int column = 0; column < count(); ++column) {
        const QString folded = m_names.at(column).toCaseFolded();
        if (!m_positions.contains(folded)) {
            m_positions.insert(folded, column);
        }
    }
}

int FieldDictionary::indexOf(QStringView name) const {
    return m_positions.value(name.toString().toCaseFolded(), -1);
}

dao::FieldType FieldDictionary::typeOf(int column) const {
    const auto index = static_cast<std::size_t>(column);
    return index < m_types.size() ? m_types[index] : dao::FieldType::Text;
}

} // namespace yrw

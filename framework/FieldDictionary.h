#pragma once

#include "platform/dao/Types.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace yrw {

/// Maps field names (any case) to column positions. Holds no values, so that all records of one
/// recordset share one dictionary.
class FieldDictionary {
public:
    FieldDictionary() = default;
    explicit FieldDictionary(const QStringList& names, std::vector<dao::FieldType> types = {});

    /// Position of a field, -1 when absent.
    [[nodiscard]] int indexOf(QStringView name) const;
    [[nodiscard]] bool contains(QStringView name) const { return indexOf(name) >= 0; }
    [[nodiscard]] int count() const { return static_cast<int>(m_names.size()); }
    [[nodiscard]] const QStringList& names() const { return m_names; }
    /// Kind of a column; text where no kinds were given.
    [[nodiscard]] dao::FieldType typeOf(int column) const;

private:
    QStringList m_names;
    std::vector<dao::FieldType> m_types;
    QHash<QString, int> m_positions; ///< by case-folded name
};

/// A dictionary as records hold it.
using FieldDictionaryPtr = std::shared_ptr<const FieldDictionary>;

} // namespace yrw

#pragma once

#include "platform/dao/Recordset.h"

#include <QJsonObject>
#include <QStringList>

namespace yrw {

/// A field's value in JSON: dates as "YYYY-MM-DD HH:MM:SS", Null as null.
[[nodiscard]] QJsonValue jsonValue(const QVariant& value);
/// The current row, its field names as keys; fields named in `without` are not even fetched.
[[nodiscard]] QJsonObject jsonRow(const dao::Recordset& rows, const QStringList& without = {});
/// The text of a JSON object, ending in a line end.
[[nodiscard]] QByteArray jsonText(const QJsonObject& object);

/// The text of a JSON array, object by object, so that nobody has to hold it whole: a line each.
class JsonArray {
public:
    /// The next object, with what stands before it.
    [[nodiscard]] QByteArray next(const QJsonObject& object);
    /// What stands behind the last one.
    [[nodiscard]] QByteArray end() const;

private:
    bool m_isEmpty = true;
};

/// "2026-03-10 09:30"; empty for Null.
[[nodiscard]] QString shownDate(const QVariant& date);
/// "cu:12"; "-" for a note kept on no record.
[[nodiscard]] QString shownOwner(const dao::Recordset& note);
/// "Active" or "Done"; the number for an unknown code.
[[nodiscard]] QString shownStatus(const QVariant& status);

} // namespace yrw

#pragma once

#include "platform/dao/Recordset.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace yrw {

/// A field's value in JSON: dates as "YYYY-MM-DD HH:MM:SS", Null as null.
[[nodiscard]] QJsonValue jsonValue(const QVariant& value);
/// The current row, its field names as keys; fields named in `without` are not even fetched.
[[nodiscard]] QJsonObject jsonRow(const dao::Recordset& rows, const QStringList& without = {});
/// The text of a JSON value, ending in a line end.
[[nodiscard]] QByteArray jsonText(const QJsonArray& array);
[[nodiscard]] QByteArray jsonText(const QJsonObject& object);

/// "2026-03-10 09:30"; empty for Null.
[[nodiscard]] QString shownDate(const QVariant& date);
/// "cu:12"; "-" for a note kept on no record.
[[nodiscard]] QString shownOwner(const dao::Recordset& note);
/// "Active" or "Done"; the number for an unknown code.
[[nodiscard]] QString shownStatus(const QVariant& status);

} // namespace yrw

#pragma once

#include "platform/dao/Database.h"

#include <functional>

namespace yrw {

/// How many customers a new database gets when nothing else is asked for.
inline constexpr qint64 kDefaultCustomers = 200;
inline constexpr qint64 kMostCustomers = 1'000'000;

/// Told now and then how many of all customers are made.
using DeskProgress = std::function<void(qint64 done, qint64 all)>;

/// Path of the database file in a data folder.
[[nodiscard]] QString deskDatabasePath(const QString& folder);

/// Makes `Desk.mdb` in the folder (which is made too) with invented customers and orders dated
/// before `today`. The file appears under its name when it is complete, so that a broken-off
/// making leaves none. Raises what `dao::Workspace::CreateDatabase` raises.
void createDeskDatabase(dao::Workspace& workspace, const QString& folder, qint64 customers,
                        QDate today, const DeskProgress& progress = {});

/// Opens `Desk.mdb`. Raises what `dao::Workspace::OpenDatabase` raises, `kErrorNotADatabase` when
/// the file holds other tables than a desk has.
[[nodiscard]] Ref<dao::Database> openDeskDatabase(dao::Workspace& workspace, const QString& folder);

} // namespace yrw

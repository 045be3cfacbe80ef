#pragma once

#include "framework/CollectionBase.h"
#include "framework/IApplication.h"

namespace yrw {

/// A user of the desk; see `IUser`.
class DeskUser final : public RecordBase, public IUser {
public:
    DeskUser();
    [[nodiscard]] Ref<IRecord> Group() override;
};

/// A collection whose records need nothing beyond the common part: customers, groups, reports.
class DeskCollection : public CollectionBase {
public:
    explicit DeskCollection(const TableDifferences& differences) : CollectionBase(differences) {}

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override;
};

/// The orders: those of one customer when the parent is a customer's record, else all.
class DeskOrders final : public DeskCollection {
public:
    DeskOrders();

protected:
    [[nodiscard]] QStringList conditions(const RecordsetRequest& request) const override;
};

/// The users, grouped by group unless another order is asked for.
class DeskUsers final : public CollectionBase {
public:
    DeskUsers();
    [[nodiscard]] Ref<dao::Recordset> Recordset(const RecordsetRequest& request) override;

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override;
};

/// Fresh collections, with application and parent set to the given application.
[[nodiscard]] Ref<ICollection> makeCustomers(const Ref<IApplication>& application);
[[nodiscard]] Ref<ICollection> makeOrders(const Ref<IApplication>& application);
[[nodiscard]] Ref<ICollection> makeUsers(const Ref<IApplication>& application);
[[nodiscard]] Ref<ICollection> makeGroups(const Ref<IApplication>& application);
/// A reports collection that belongs to nobody yet.
[[nodiscard]] Ref<ICollection> makeReports();

} // namespace yrw

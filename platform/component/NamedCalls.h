#pragma once

#include <QString>
#include <QVariantMap>

namespace yrw {

/// An object whose members can be called by name with named arguments.
class INamedCalls {
public:
    virtual ~INamedCalls();
    /// Calls the member. An unknown member raises `kErrorMemberNotFound`.
    virtual QVariant callByName(const QString& name, const QVariantMap& arguments) = 0;
};

/// Calls a member of an object by name; nothing as object raises `kErrorObjectRequired` (424).
QVariant callByName(INamedCalls* object, const QString& name, const QVariantMap& arguments = {});

} // namespace yrw

#include "notes_window/OwnerText.h"

#include "framework/ErrorGuards.h"
#include "platform/component/NamedCalls.h"

namespace yrw {

QString ownerText(IRecord& owner, StoreContext& store) {
    QString kind;
    QString record;
    ignoreErrors([&] {
        const Ref<ICollection> collection = owner.Collection();
        kind = callByName(dynamic_cast<INamedCalls*>(collection.get()), QStringLiteral("UseName"))
                   .toString();
        kind = store.hostApplication()->ObjectDisplayName(kind);
    });
    ignoreErrors([&] { record = HostUtility::NullToText(owner.ShortDisplayValue()->Value()); });
    return kind + QStringLiteral(": ") + record;
}

} // namespace yrw

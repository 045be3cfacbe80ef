#include "platform/dao/Types.h"

namespace yrw::dao {

void ValueList::set(const QString& name, const QVariant& value) {
    const int index = indexOf(name);
    if (index >= 0) {
        setAt(index, value);
    } else {
        m_entries.push_back({name, value});
    }
}

int ValueList::indexOf(QStringView name) const noexcept {
    for (int i = 0; i < count(); ++i) {
        if (name.compare(at(i).name, Qt::CaseInsensitive) == 0) {
            return i;
        }
    }
    return -1;
}

QVariant ValueList::value(QStringView name) const {
    const int index = indexOf(name);
    return index < 0 ? QVariant() : at(index).value;
}

} // namespace yrw::dao

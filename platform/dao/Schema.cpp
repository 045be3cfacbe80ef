#include "platform/dao/Schema.h"

namespace yrw::dao {

Schema::~Schema() = default;

int Source::indexOf(QStringView column) const noexcept {
    for (size_t i = 0; i < columns.size(); ++i) {
        if (column.compare(columns[i].name, Qt::CaseInsensitive) == 0) {
            return int(i);
        }
    }
    return -1;
}

QString quotedName(const QString& name) {
    return u'"' + QString(name).replace(u'"', u"\"\""_qs) + u'"';
}

} // namespace yrw::dao

#include "platform/dao/FileObjects.h"

#include <QRegularExpression>

namespace yrw::dao {

Damage damageOf(const QStringList& problems) {
    static const QRegularExpression ofIndex(
        QStringLiteral("^(row \\d+ missing from index|wrong # of entries in index|non-unique entry "
                       "in index|row \\d+ values differ from index)"),
        QRegularExpression::CaseInsensitiveOption);
    Damage damage;
    for (const QString& problem : problems) {
        (ofIndex.match(problem).hasMatch() ? damage.indexes : damage.pages) += problem.simplified();
    }
    return damage;
}

} // namespace yrw::dao

#include "platform/forms/FontSubstitutes.h"

#include <QFont>
#include <QStringList>

namespace yrw {

void installFontSubstitutes() {
    static const bool done = [] {
        QFont::insertSubstitutions(QStringLiteral("Comic Sans MS"),
                                   {QStringLiteral("Comic Neue"), QStringLiteral("Comic Relief")});
        QFont::insertSubstitutions(
            QStringLiteral("MS Sans Serif"),
            {QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
        QFont::insertSubstitutions(QStringLiteral("Tahoma"), {QStringLiteral("DejaVu Sans")});
        return true;
    }();
    Q_UNUSED(done)
}

} // namespace yrw

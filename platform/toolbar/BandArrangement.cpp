#include "platform/toolbar/BandArrangement.h"

#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <tuple>

namespace yrw {

void numberPlaces(QList<BandPlace>& bands) {
    std::stable_sort(bands.begin(), bands.end(), [](const BandPlace& a, const BandPlace& b) {
        return std::tie(a.docking.row, a.docking.place) < std::tie(b.docking.row, b.docking.place);
    });
    int number = -1;
    int before = -1;
    int place = 0;
    for (BandPlace& band : bands) {
        const bool startsRow = number < 0 || band.docking.row != before;
        before = band.docking.row;
        number += startsRow ? 1 : 0;
        place = startsRow ? 0 : place + 1;
        band.docking.row = number;
        band.docking.place = place;
    }
}

QString arrangementText(QList<BandPlace> bands) {
    numberPlaces(bands);
    QStringList parts;
    for (const BandPlace& band : std::as_const(bands)) {
        QString part = QString::fromLatin1(QUrl::toPercentEncoding(band.key)) + u':' +
                       QString::number(band.docking.row);
        if (const auto& at = band.docking.floating) {
            part += QStringLiteral("@%1,%2").arg(at->x()).arg(at->y());
        }
        parts.append(part);
    }
    return parts.join(u';');
}

std::optional<QList<BandPlace>> parseArrangement(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^([^:;@]+):([0-9]{1,2})(?:@(-?[0-9]{1,6}),(-?[0-9]{1,6}))?$"));
    QList<BandPlace> bands;
    QStringList keys;
    for (const QString& part : text.split(u';')) {
        const QRegularExpressionMatch match = form.match(part);
        const QString key = QUrl::fromPercentEncoding(match.captured(1).toLatin1());
        if (!match.hasMatch() || keys.contains(key, Qt::CaseInsensitive)) {
            return std::nullopt;
        }
        keys.append(key);
        BandPlace band{key, {match.captured(2).toInt(), static_cast<int>(bands.size()), {}}};
        if (match.hasCaptured(3)) {
            band.docking.floating = QPoint(match.captured(3).toInt(), match.captured(4).toInt());
        }
        bands.append(band);
    }
    return bands;
}

} // namespace yrw

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLatitudeRange.h"

#include <KelDebugText.h>

#include <QUrl>
#include <QUrlQuery>

const QString KelLatitudeRange::QUERY_ITEM_SOUTH = QStringLiteral("latitude_min");
const QString KelLatitudeRange::QUERY_ITEM_NORTH = QStringLiteral("latitude_max");

KelLatitudeRange KelLatitudeRange::spawn(const KelLatitude &a, const KelLatitude &b)
{
    return a > b ? KelLatitudeRange(b, a) : KelLatitudeRange(a, b);
}

KelLatitudeRange KelLatitudeRange::parse(const QString &south, const QString &north)
{
    return KelLatitudeRange(KelLatitude::parse(south), KelLatitude::parse(north));
}

KelLatitudeRange KelLatitudeRange::parse(const QUrlQuery &query)
{
    return parse(query.queryItemValue(QUERY_ITEM_SOUTH, QUrl::PrettyDecoded),
                 query.queryItemValue(QUERY_ITEM_NORTH, QUrl::PrettyDecoded));
}

void KelLatitudeRange::blowUp(const KelLatitude &margin)
{
    setMax((north() + margin).bounded());
    setMin((south() - margin).bounded());
}

bool KelLatitudeRange::isValid() const
{
    return north() >= south() && south().isInValidRange() && north().isInValidRange();
}

void KelLatitudeRange::writeTo(QUrlQuery &query) const
{
    north().writeTo(query, QUERY_ITEM_NORTH);
    south().writeTo(query, QUERY_ITEM_SOUTH);
}

QString KelLatitudeRange::toString(bool dms) const
{
    return south().toString(dms) + QLatin1String(" - ") + north().toString(dms);
}

QDebug operator<<(QDebug debug, const KelLatitudeRange &range)
{
    return KelDebugText::write(debug, range.toString(false));
}

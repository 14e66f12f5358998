// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLongitudeRange.h"

#include <KelDebugText.h>

#include <QMessageLogger>
#include <QUrl>
#include <QUrlQuery>

const QString KelLongitudeRange::QUERY_ITEM_WEST = QStringLiteral("longitude_min");
const QString KelLongitudeRange::QUERY_ITEM_EAST = QStringLiteral("longitude_max");

KelLongitudeRange KelLongitudeRange::spawn(const KelLongitude &a, const KelLongitude &b)
{
    return a.isWestOf(b) ? KelLongitudeRange(a, b) : KelLongitudeRange(b, a);
}

KelLongitudeRange KelLongitudeRange::parse(const QString &west, const QString &east)
{
    return KelLongitudeRange(KelLongitude::parse(west), KelLongitude::parse(east));
}

KelLongitudeRange KelLongitudeRange::parse(const QUrlQuery &query)
{
    return parse(query.queryItemValue(QUERY_ITEM_WEST, QUrl::PrettyDecoded),
                 query.queryItemValue(QUERY_ITEM_EAST, QUrl::PrettyDecoded));
}

bool KelLongitudeRange::coversNoMoreThanHalfOfTheEarth() const noexcept
{
    return east().isEastOf(west()) || east() == west();
}

void KelLongitudeRange::blowUp(const KelLongitude &margin)
{
    setMin((west() - margin).bounded());
    setMax((east() + margin).bounded());
}

KelLongitude KelLongitudeRange::center() const
{
    if (!crossesDateLine())
        return (west() + east()) / 2.0;
    const KelLongitude middle = (west() + (east() + 360.0)) / 2.0;
    return middle > 180.0 ? middle - 360.0 : middle;
}

bool KelLongitudeRange::isValid() const
{
    return west().isInValidRange() && east().isInValidRange();
}

bool KelLongitudeRange::contains(const KelLongitude &longitude) const
{
    if (!crossesDateLine())
        return west() <= longitude && east() >= longitude;
    const bool inGap = east() <= longitude && longitude <= west();
    return !inGap || longitude == west() || longitude == east();
}

bool KelLongitudeRange::contains(const KelRange<KelLongitude> &other) const
{
    return contains(other.min()) && contains(other.max());
}

bool KelLongitudeRange::intersects(const KelRange<KelLongitude> &other) const
{
    Q_UNUSED(other)
    // The location is written out, since release builds leave it out of the macros.
    QMessageLogger("libs/KelGeoLocation/KelLongitudeRange", 151,
                   "virtual bool KelLongitudeRange::intersects(const KelRange<KelLongitude>&) const", "default")
        .fatal("Diese Funktion muss erst getestet werden, bevor man sie benutzen kann "
               "(implmentierung ist ungeprüft und wahrscheinlich falsch!");
}

void KelLongitudeRange::expandTo(const KelLongitude &longitude)
{
    if (!crossesDateLine())
        KelRange<KelLongitude>::expandTo(longitude);
    else if (contains(longitude))
        return;
    else if (longitude.isInEasternHemisphere())
        setMin(longitude);
    else
        setMax(longitude);
}

void KelLongitudeRange::writeTo(QUrlQuery &query) const
{
    east().writeTo(query, QUERY_ITEM_EAST);
    west().writeTo(query, QUERY_ITEM_WEST);
}

QString KelLongitudeRange::toString(bool dms) const
{
    return west().toString(dms) + QLatin1String(" - ") + east().toString(dms);
}

QDebug operator<<(QDebug debug, const KelLongitudeRange &range)
{
    return KelDebugText::write(debug, range.toString(false));
}

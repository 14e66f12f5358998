// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGeoLocationMetaTypes.h"

#include <KelGPXConfiguredTrackList.h>
#include <KelGPXFullShape.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPositionList.h>
#include <KelGeoPositionRect.h>
#include <KelIntRange.h>
#include <KelLatitudeList.h>
#include <KelLongitudeList.h>

#include <QMetaType>
#include <QString>

namespace
{

template<class... Types>
void registerNames()
{
    (qRegisterMetaType<Types>(), ...);
}

template<class... Angles>
void registerAngleConversions()
{
    (QMetaType::registerConverter<Angles, double>([](const Angles &angle) { return angle.decimalDegrees(); }), ...);
    (QMetaType::registerConverter<Angles, QString>([](const Angles &angle) { return angle.toString(false); }), ...);
}

template<class... Wrappers>
void registerKeyConversions()
{
    (QMetaType::registerConverter<Wrappers, QString>([](const Wrappers &value) { return value.encode(); }), ...);
    (QMetaType::registerConverter<QString, Wrappers>([](const QString &keys) { return Wrappers(keys); }), ...);
}

bool registerOnce()
{
    registerNames<KelDistance, KelIntRange, KelPenStyle>();
    registerNames<KelGeoArc, KelLatitude, KelLongitude, KelGeoPosition, KelLatitudeRange, KelLongitudeRange,
                  KelGeoPositionRect, KelGeoPositionList, KelLatitudeList, KelLongitudeList>();
    registerNames<KelGPXMarkerShape, KelGPXTrackDisplayOptions, KelGPXTrackShape, KelGPXFullShape>();
    registerNames<KelGPXTrackPoint, KelGPXTrackSegment, KelGPXTrack, KelGPXTrackConfiguration, KelGPXConfiguredTrack,
                  KelGPXConfiguredTrackList, KelGPXTrackSelection>();

    registerAngleConversions<KelLatitude, KelLongitude>();
    QMetaType::registerConverter<KelGeoArc, double>([](const KelGeoArc &angle) { return angle.decimalDegrees(); });
    QMetaType::registerConverter<KelGeoPosition, QString>([](const KelGeoPosition &p) { return p.toString(false); });
    registerKeyConversions<KelGPXMarkerShape, KelGPXTrackDisplayOptions, KelGPXTrackShape>();
    QMetaType::registerConverter<KelPenStyle, QString>([](const KelPenStyle &style) { return style.key(); });
    QMetaType::registerConverter<QString, KelPenStyle>(&KelPenStyle::fromKey);
    return true;
}

} // namespace

void KelGeoLocationMetaTypes::registerAll()
{
    // Qt warns of conversions that are registered again.
    static const bool done = registerOnce();
    static_cast<void>(done);
}

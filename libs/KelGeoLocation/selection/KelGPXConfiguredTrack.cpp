// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXConfiguredTrack.h"

#include <KelGeoLocationSettings.h>
#include <KelGeoPositionRect.h>
#include <KelXMLBuilder.h>

#include <QDebug>
#include <QDir>
#include <QDomElement>
#include <QHashFunctions>

#include <cmath>

KelGPXConfiguredTrack::KelGPXConfiguredTrack()
    : m_configuration(KelGeoLocationSettings::instance().defaultTrackConfiguration())
{
}

KelGPXConfiguredTrack::KelGPXConfiguredTrack(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration)
    : m_track(track)
    , m_configuration(configuration)
{
    autoConfigureTrackShape();
}

KelGPXConfiguredTrack::KelGPXConfiguredTrack(const KelGPXTrackPoint &point,
                                             const KelGPXTrackConfiguration &configuration)
    : KelGPXConfiguredTrack(KelGPXTrack(point), configuration)
{
}

// The shape is not settled here: an automatic one is stored as such and must come back as such.
KelGPXConfiguredTrack::KelGPXConfiguredTrack(const QDomElement &element, const QDir &directory)
    : m_track(element.firstChildElement(QStringLiteral("trk")), directory)
    , m_configuration(KelGPXTrackConfiguration::fromXml(element))
{
}

void KelGPXConfiguredTrack::toXml(QDomElement &parent, const QString &elementName, const QDir &directory) const
{
    QDomElement element = KelXMLBuilder::buildDomElement(parent, elementName);
    m_track.toXml(element, directory);
    m_configuration.toXml(element);
}

void KelGPXConfiguredTrack::setConfiguration(const KelGPXTrackConfiguration &configuration)
{
    KelGPXTrackConfiguration adjusted = configuration;
    if (naturalShape() == TrackShapePoint) {
        adjusted.setTrackShape(KelGPXTrackShape(TrackShapePoint));
        if (adjusted.markerShape() == MarkerUnknown)
            adjusted.setMarkerShape(m_configuration.markerShape());
        if (adjusted.markerShape() == MarkerUnknown)
            adjusted.setMarkerShape(KelGPXMarkerShape(MarkerCircle));
    } else if (adjusted.trackShape() == TrackShapeUnknown) {
        adjusted.setTrackShape(m_configuration.trackShape());
    }
    m_configuration = adjusted;
}

bool KelGPXConfiguredTrack::operator==(const KelGPXConfiguredTrack &other) const
{
    return m_track == other.m_track && m_configuration == other.m_configuration;
}

KelGPXTrackAspect KelGPXConfiguredTrack::differentAspects(const KelGPXConfiguredTrack &other) const
{
    KelGPXTrackAspect aspects = AspectNone;
    if (lineWidth() != other.lineWidth())
        aspects |= AspectLineWidth;
    if (lineColor() != other.lineColor())
        aspects |= AspectLineColor;
    if (m_track != other.m_track)
        aspects |= AspectTrack;
    return aspects;
}

KelGPXTrackShape KelGPXConfiguredTrack::effectiveShape() const
{
    if (naturalShape() == TrackShapePoint)
        return KelGPXTrackShape(TrackShapePoint);
    const KelGPXTrackShape configured = m_configuration.trackShape();
    return configured == TrackShapeAuto ? m_track.shape() : configured;
}

void KelGPXConfiguredTrack::autoConfigureTrackShape()
{
    const KelGPXTrackShape configured = m_configuration.trackShape();
    if (configured == TrackShapeUnknown || configured.reducedTo(TrackShapeAuto) != 0)
        m_configuration.setTrackShape(naturalShape());
}

KelGeoPosition KelGPXConfiguredTrack::positionRelativeFromStart(double fraction) const
{
    const KelGeoPositionList points = allPoints();
    const KelGPXTrackShape shape = effectiveShape();
    if (shape == TrackShapeHop || shape == TrackShapePolygon)
        return points.boundingBox().center();

    const double index = std::round(double(points.size() - 1) * fraction);
    // Written so that a fraction that is no number finds no point.
    if (!(index >= 0.0 && index < double(points.size())))
        return KelGeoPosition();
    return points.at(qsizetype(index));
}

KelGeoPositionList KelGPXConfiguredTrack::drawingPoints() const
{
    const KelGPXTrackShape natural = naturalShape();
    const KelGPXTrackShape effective = effectiveShape();
    if (effective == natural || effective != TrackShapePoint)
        return allPoints();

    KelGeoPositionList single;
    single.append(natural == TrackShapePolygon ? allPoints().center() : positionRelativeFromStart(0.5));
    return single;
}

QDebug operator<<(QDebug debug, const KelGPXConfiguredTrack &track)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KelGPXConfiguredTrack(" << track.track() << ", " << track.configuration() << ')';
    return debug;
}

size_t qHash(const KelGPXConfiguredTrack &track, size_t seed) noexcept
{
    return qHashMulti(seed, track.track(), track.configuration());
}

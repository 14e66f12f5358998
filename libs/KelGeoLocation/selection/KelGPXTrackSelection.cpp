// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackSelection.h"

#include <KelDebugText.h>
#include <KelGPXTrackSelectionComparisonResult.h>
#include <KelGeoLocationSettings.h>
#include <KelXMLBuilder.h>
#include <KelXMLParser.h>

#include <QDir>
#include <QDomElement>
#include <QHashFunctions>

#include <algorithm>

namespace
{

constexpr int OPAQUE = 255;
constexpr int UNCHANGED_COLOR = 128;

const QString GPX_TRACK = QStringLiteral("gpxtrack");
const QString CROPPING_OPACITY = QStringLiteral("croppingOpacity");
const QString CONFIGURED_TRACK = QStringLiteral("configuredTrack");
/// The name under which earlier versions wrote configured tracks; read only.
const QString LOCATION_TRACK = QStringLiteral("locationTrack");

// In 64 bits, so that a huge factor is limited instead of wrapping round.
int scaleChannel(int channel, int factor)
{
    return int(std::clamp(qint64(channel) * factor / UNCHANGED_COLOR, qint64(0), qint64(255)));
}

QColor scaleColor(const QColor &color, int factor)
{
    QColor scaled = color.toRgb();
    scaled.setRed(scaleChannel(color.red(), factor));
    scaled.setGreen(scaleChannel(color.green(), factor));
    scaled.setBlue(scaleChannel(color.blue(), factor));
    return scaled;
}

} // namespace

KelGPXTrackSelection::KelGPXTrackSelection(const KelGPXConfiguredTrackList &tracks)
    : m_tracks(tracks)
{
}

KelGPXTrackSelection::KelGPXTrackSelection(const QDomElement &element, const QDir &directory, const QString &prefix)
    : m_croppingOpacity(KelXMLParser::intAttribute(element, prefix + CROPPING_OPACITY, OPAQUE))
{
    const QDomElement gpx = element.firstChildElement(prefix + GPX_TRACK);
    m_tracks = KelGPXConfiguredTrackList(gpx, prefix + LOCATION_TRACK, directory);
    m_tracks.append(KelGPXConfiguredTrackList(gpx, prefix + CONFIGURED_TRACK, directory));
}

void KelGPXTrackSelection::toXml(QDomElement &element, const QDir &directory) const
{
    element.setAttribute(CROPPING_OPACITY, m_croppingOpacity);
    QDomElement gpx = KelXMLBuilder::buildDomElement(element, GPX_TRACK);
    m_tracks.toXml(gpx, CONFIGURED_TRACK, directory);
}

int KelGPXTrackSelection::effectiveCroppingOpacity() const noexcept
{
    return isEmpty() ? OPAQUE : m_croppingOpacity;
}

bool KelGPXTrackSelection::setCroppingOpacity(int opacity)
{
    if (m_croppingOpacity == opacity)
        return false;
    m_croppingOpacity = opacity;
    return true;
}

void KelGPXTrackSelection::addSelection(const KelGPXTrackSelection &other)
{
    m_tracks.append(other.m_tracks);
}

void KelGPXTrackSelection::addTracks(const KelGPXConfiguredTrackList &tracks)
{
    m_tracks.append(tracks);
}

void KelGPXTrackSelection::addTrack(const KelGPXConfiguredTrack &track)
{
    m_tracks.append(track);
}

void KelGPXTrackSelection::addTrack(const KelGPXTrack &track)
{
    addTrack(KelGPXConfiguredTrack(track, KelGeoLocationSettings::instance().defaultTrackConfiguration()));
}

void KelGPXTrackSelection::removeAt(int row)
{
    m_tracks.removeAt(row);
}

bool KelGPXTrackSelection::setConfiguration(int row, const KelGPXTrackConfiguration &configuration)
{
    if (!checkRange(row) || configuration == m_tracks.at(row).configuration())
        return false;
    // Deliberate: not the list's operation, which would make an unknown track shape automatic.
    m_tracks[row].setConfiguration(configuration);
    return true;
}

bool KelGPXTrackSelection::setConfiguration(const KelGPXTrackConfiguration &configuration)
{
    bool changed = false;
    for (int row = 0; row < count(); ++row)
        changed |= setConfiguration(row, configuration);
    return changed;
}

void KelGPXTrackSelection::moveTrack(int from, int to)
{
    if (checkRange(from) && checkRange(to) && from != to)
        m_tracks.moveTrack(from, to);
}

void KelGPXTrackSelection::overrideColorOfTrack(int row, int factor)
{
    if (!checkRange(row))
        return;
    KelGPXConfiguredTrack &track = m_tracks[row];
    track.setFillColor(scaleColor(track.fillColor(), factor));
    track.setLineColor(scaleColor(track.lineColor(), factor));
}

KelGPXTrackSelection KelGPXTrackSelection::reduceToTrackNumber(int row) const
{
    KelGPXTrackSelection reduced(*this);
    if (checkRange(row))
        reduced.m_tracks = KelGPXConfiguredTrackList(m_tracks.at(row));
    return reduced;
}

bool KelGPXTrackSelection::wouldChangeHaloToVisibleAgainst(const KelGPXTrackSelection &other) const
{
    return m_tracks.wouldChangeHaloToVisibleAgainst(other.m_tracks);
}

KelGPXTrackSelectionComparisonResult KelGPXTrackSelection::compare(const KelGPXTrackSelection &other) const
{
    KelGPXTrackSelectionComparisonResult result;
    result.setTrackCountChanges(count() != other.count());
    result += m_tracks.compare(other.m_tracks);
    return result;
}

bool KelGPXTrackSelection::operator==(const KelGPXTrackSelection &other) const
{
    return m_croppingOpacity == other.m_croppingOpacity && m_tracks.tracks() == other.m_tracks.tracks();
}

KelGeoPositionList KelGPXTrackSelection::allPoints() const
{
    KelGeoPositionList points;
    for (const KelGPXConfiguredTrack &track : m_tracks)
        points.append(track.allPoints());
    return points;
}

QList<KelGeoPositionList> KelGPXTrackSelection::chunkedPoints() const
{
    QList<KelGeoPositionList> chunks;
    for (const KelGPXConfiguredTrack &track : m_tracks)
        chunks.append(track.chunkedPoints());
    return chunks;
}

bool KelGPXTrackSelection::isSinglePoint() const
{
    return count() == 1 && m_tracks.at(0).isSinglePoint();
}

KelGeoPosition KelGPXTrackSelection::firstPoint() const
{
    return isEmpty() ? KelGeoPosition() : m_tracks.at(0).firstPoint();
}

KelGeoPosition KelGPXTrackSelection::lastPoint() const
{
    for (int row = count() - 1; row >= 0; --row) {
        const KelGeoPosition last = m_tracks.at(row).lastPoint();
        if (last.isValid())
            return last;
    }
    return KelGeoPosition();
}

QList<QDateTime> KelGPXTrackSelection::allTimeStamps() const
{
    QList<QDateTime> timeStamps;
    for (const KelGPXConfiguredTrack &track : m_tracks)
        timeStamps.append(track.allTimeStamps());
    return timeStamps;
}

QDebug operator<<(QDebug debug, const KelGPXTrackSelection &selection)
{
    const QString text = QStringLiteral("KelGPXTrackSelection(%1 tracks, cropping opacity %2)");
    return KelDebugText::write(debug, text.arg(selection.count()).arg(selection.nominalCroppingOpacity()));
}

size_t qHash(const KelGPXTrackSelection &selection, size_t seed) noexcept
{
    const KelGPXConfiguredTrackList list = selection.tracks(); // a copy, which the reference below needs alive
    const QList<KelGPXConfiguredTrack> &tracks = list.tracks();
    return qHashRange(tracks.cbegin(), tracks.cend(), ::qHash(selection.nominalCroppingOpacity(), seed));
}

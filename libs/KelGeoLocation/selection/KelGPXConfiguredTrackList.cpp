// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXConfiguredTrackList.h"

#include <KelDebugText.h>
#include <KelGPXTrackSelectionComparisonResult.h>
#include <KelTrackSelectionFactory.h>

#include <QDir>
#include <QDomElement>

#include <algorithm>

KelGPXConfiguredTrackList::KelGPXConfiguredTrackList(const QList<KelGPXConfiguredTrack> &tracks)
    : m_entries(tracks)
{
}

KelGPXConfiguredTrackList::KelGPXConfiguredTrackList(const KelGPXConfiguredTrack &track)
    : m_entries({track})
{
}

KelGPXConfiguredTrackList::KelGPXConfiguredTrackList(const QDomElement &element, const QString &childName,
                                                     const QDir &directory)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (child.tagName() == childName)
            m_entries.append(KelGPXConfiguredTrack(child, directory));
    }
}

KelGPXConfiguredTrackList KelGPXConfiguredTrackList::fromFile()
{
    return KelTrackSelectionFactory::instance().askUserReadFile();
}

void KelGPXConfiguredTrackList::toXml(QDomElement &parent, const QString &elementName, const QDir &directory) const
{
    for (const KelGPXConfiguredTrack &track : m_entries)
        track.toXml(parent, elementName, directory);
}

KelGPXConfiguredTrack KelGPXConfiguredTrackList::value(int index) const
{
    // Not QList::value(): it would make its default track, a look into the settings, for every good index too.
    return checkRange(index) ? m_entries.at(index) : KelGPXConfiguredTrack();
}

void KelGPXConfiguredTrackList::removeAt(int index)
{
    if (checkRange(index))
        m_entries.removeAt(index);
}

KelGPXTrackConfiguration KelGPXConfiguredTrackList::configuration(int index) const
{
    return value(index).configuration();
}

bool KelGPXConfiguredTrackList::setConfiguration(int index, const KelGPXTrackConfiguration &configuration)
{
    if (!checkRange(index))
        return false;
    KelGPXTrackConfiguration adjusted = configuration;
    if (adjusted.trackShape() == TrackShapeUnknown)
        adjusted.setTrackShape(KelGPXTrackShape(TrackShapeAuto));
    if (adjusted == m_entries.at(index).configuration())
        return false;
    m_entries[index].setConfiguration(adjusted);
    return true;
}

void KelGPXConfiguredTrackList::moveTrack(int from, int to)
{
    if (from != to && checkRange(from) && checkRange(to))
        m_entries.move(from, to);
}

bool KelGPXConfiguredTrackList::wouldChangeHaloToVisibleAgainst(const KelGPXConfiguredTrackList &other) const
{
    const int shared = std::min(count(), other.count());
    for (int i = 0; i < shared; ++i) {
        if (m_entries.at(i).wouldChangeHaloToVisibleAgainst(other.m_entries.at(i)))
            return true;
    }
    return false;
}

KelGPXTrackSelectionComparisonResult KelGPXConfiguredTrackList::compare(const KelGPXConfiguredTrackList &other) const
{
    KelGPXTrackSelectionComparisonResult result;
    const int shared = std::min(count(), other.count());
    for (int i = 0; i < shared; ++i) {
        const KelGPXTrackAspect aspects = m_entries.at(i).differentAspects(other.m_entries.at(i));
        if (aspects != AspectNone) {
            result.addChangingTrack(i);
            result.addChangingAspects(aspects);
        }
    }
    return result;
}

QDebug operator<<(QDebug debug, const KelGPXConfiguredTrackList &list)
{
    return KelDebugText::write(debug, QStringLiteral("KelGPXConfiguredTrackList(%1 tracks)").arg(list.count()));
}

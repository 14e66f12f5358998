// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKELEMENT_H
#define KELGPXTRACKELEMENT_H

#include <KelGeoLocationGlobal.h>
#include <KelGeoPositionList.h>
#include <KelRange.h>

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringView>

class KelGeoPositionRect;

/// A piece of track geometry of any size: a point, a segment, a track, a selection of tracks.
///
/// Hands out its positions in recorded order, all at once or in consecutive chunks for parallel work, and its time
/// stamps. Elements are values; reading one from several threads is safe.
class KELGEOLOCATION_EXPORT KelGPXTrackElement
{
public:
    KelGPXTrackElement() = default;
    KelGPXTrackElement(const KelGPXTrackElement &) = default;
    KelGPXTrackElement(KelGPXTrackElement &&) noexcept = default;
    KelGPXTrackElement &operator=(const KelGPXTrackElement &) = default;
    KelGPXTrackElement &operator=(KelGPXTrackElement &&) noexcept = default;
    virtual ~KelGPXTrackElement();

    /// Every position of the element, in order.
    [[nodiscard]] virtual KelGeoPositionList allPoints() const = 0;
    /// The same positions, split into consecutive chunks for parallel work.
    [[nodiscard]] virtual QList<KelGeoPositionList> chunkedPoints() const = 0;
    /// True if allPoints() has exactly one entry.
    [[nodiscard]] virtual bool isSinglePoint() const;
    /// The first position; a default position if there is none.
    [[nodiscard]] virtual KelGeoPosition firstPoint() const = 0;
    /// The last position; a default position if there is none.
    [[nodiscard]] virtual KelGeoPosition lastPoint() const = 0;
    /// One entry for each point, in order; an invalid one for a point without time.
    [[nodiscard]] virtual QList<QDateTime> allTimeStamps() const = 0;

    /// The earliest and the latest of allTimeStamps(); both null if there is no valid one.
    /// Deliberate: invalid time stamps take part in the comparison, and they sort before every valid one.
    [[nodiscard]] KelRange<QDateTime> timeFrame() const;

    /// The bounding box of allPoints(), unset if there is no valid position.
    [[nodiscard]] KelGeoPositionRect boundingBox() const;

    /// Reads a number whose fraction may be longer than any sensor's: all that follows the seventh character after
    /// the first point is cut off before the text is converted with QString::toDouble(). 0 if that fails.
    /// Deliberate: a text without a point is cut to its first seven characters, "12345678" reads as 1234567.
    [[nodiscard]] static double safeDouble(const QString &text);
    /// As above, from a view.
    [[nodiscard]] static double safeDouble(QStringView text);
};

#endif

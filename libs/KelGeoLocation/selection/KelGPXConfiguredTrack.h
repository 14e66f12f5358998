// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXCONFIGUREDTRACK_H
#define KELGPXCONFIGUREDTRACK_H

#include <KelGPXTrack.h>
#include <KelGPXTrackAspect.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackElement.h>
#include <KelGeoLocationGlobal.h>

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QString>

class QDebug;
class QDir;
class QDomElement;

/// A track together with the configuration that says how it is drawn.
///
/// A value; the track inside is shared with its copies until one of them changes it. Besides holding the pair, the
/// configured track decides in which shape the track is really drawn (effectiveShape()) and which points the renderer
/// gets (drawingPoints()).
class KELGEOLOCATION_EXPORT KelGPXConfiguredTrack : public KelGPXTrackElement
{
public:
    /// An empty track with the user's default configuration (a look into the settings).
    KelGPXConfiguredTrack();
    /// The pair; an unknown or automatic track shape of the configuration is settled by autoConfigureTrackShape().
    KelGPXConfiguredTrack(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration);
    /// A track of that one point; the shape is settled in the same way.
    KelGPXConfiguredTrack(const KelGPXTrackPoint &point, const KelGPXTrackConfiguration &configuration);
    /// What toXml() wrote: the track from the child "trk" (a null element when there is none), with files that it
    /// includes looked for in @p directory, and the configuration from the element itself. The configured shape stays
    /// as it was written, an automatic one too.
    KelGPXConfiguredTrack(const QDomElement &element, const QDir &directory);

    ~KelGPXConfiguredTrack() override = default;
    KelGPXConfiguredTrack(const KelGPXConfiguredTrack &) = default;
    KelGPXConfiguredTrack(KelGPXConfiguredTrack &&) noexcept = default;
    KelGPXConfiguredTrack &operator=(const KelGPXConfiguredTrack &) = default;
    KelGPXConfiguredTrack &operator=(KelGPXConfiguredTrack &&) noexcept = default;

    /// Appends a child of that name to the parent, with the track as "trk" (stored in a file of its own when the
    /// directory exists) and the configuration in it.
    void toXml(QDomElement &parent, const QString &elementName, const QDir &directory) const;

    /// What is drawn.
    [[nodiscard]] const KelGPXTrack &track() const noexcept { return m_track; }
    /// Replaces the track; the configuration stays as it is.
    void setTrack(const KelGPXTrack &track) { m_track = track; }

    /// How the track is drawn.
    [[nodiscard]] const KelGPXTrackConfiguration &configuration() const noexcept { return m_configuration; }
    /// Takes over the configuration, adjusted to the track. A track that is a single point is always drawn as a
    /// point, and when the new configuration names no marker, it keeps the current one, or gets the circle when there
    /// is none either. Any other track keeps its current track shape when the new one is unknown.
    void setConfiguration(const KelGPXTrackConfiguration &configuration);

    // The configuration's values; each setter tells whether the value changed.
    /// Colour of the line, of outlines and of the marker's pen.
    [[nodiscard]] QColor lineColor() const { return m_configuration.lineColor(); }
    /// Colour of areas and of the marker's body.
    [[nodiscard]] QColor fillColor() const { return m_configuration.fillColor(); }
    /// In pixels at rendering factor 1.
    [[nodiscard]] KelDistance lineWidth() const { return m_configuration.lineWidth(); }
    /// In pixels at rendering factor 1; 0 is no halo.
    [[nodiscard]] KelDistance haloWidth() const { return m_configuration.haloWidth(); }
    /// Solid, dashed, dotted and so on.
    [[nodiscard]] KelPenStyle penStyle() const { return m_configuration.penStyle(); }
    /// In percent; 100 is no smoothing.
    [[nodiscard]] int smoothingStrength() const { return m_configuration.smoothingStrength(); }
    /// The number of pieces between whose ends smoothing straightens.
    [[nodiscard]] int smoothingSteps() const { return m_configuration.smoothingSteps(); }
    /// Returns whether the value changed.
    bool setLineColor(const QColor &color) { return m_configuration.setLineColor(color); }
    /// Returns whether the value changed.
    bool setFillColor(const QColor &color) { return m_configuration.setFillColor(color); }
    /// Returns whether the value changed.
    bool setLineWidth(const KelDistance &width) { return m_configuration.setLineWidth(width); }
    /// Returns whether the value changed.
    bool setPenStyle(const KelPenStyle &style) { return m_configuration.setPenStyle(style); }
    /// Returns whether the value changed.
    bool setSmoothingStrength(int percentage) { return m_configuration.setSmoothingStrength(percentage); }
    /// Returns whether the value changed.
    bool setSmoothingSteps(int steps) { return m_configuration.setSmoothingSteps(steps); }
    /// Whether any of these parts is painted.
    [[nodiscard]] bool hasDrawOption(const KelGPXTrackDisplayOptions &options) const
    {
        return m_configuration.hasDrawOption(options);
    }
    /// Whether this track has a halo and the other one has none.
    [[nodiscard]] bool wouldChangeHaloToVisibleAgainst(const KelGPXConfiguredTrack &other) const
    {
        return m_configuration.wouldChangeHaloToVisibleAgainst(other.m_configuration);
    }

    // The track's values.
    /// The track's name.
    [[nodiscard]] QString name() const { return m_track.name(); }
    /// The track's description.
    [[nodiscard]] QString description() const { return m_track.description(); }
    [[nodiscard]] KelGeoPositionList allPoints() const override { return m_track.allPoints(); }
    [[nodiscard]] QList<KelGeoPositionList> chunkedPoints() const override { return m_track.chunkedPoints(); }
    [[nodiscard]] bool isSinglePoint() const override { return m_track.isSinglePoint(); }
    /// The track's first point.
    [[nodiscard]] KelGeoPosition firstPoint() const override { return m_track.firstPoint(); }
    /// The track's last point.
    [[nodiscard]] KelGeoPosition lastPoint() const override { return m_track.lastPoint(); }
    [[nodiscard]] QList<QDateTime> allTimeStamps() const override { return m_track.allTimeStamps(); }
    /// The shape that the points themselves suggest.
    [[nodiscard]] KelGPXTrackShape naturalShape() const { return m_track.naturalShape(); }

    /// Same track and same configuration.
    [[nodiscard]] bool operator==(const KelGPXConfiguredTrack &other) const;
    /// The opposite of equality.
    [[nodiscard]] bool operator!=(const KelGPXConfiguredTrack &other) const { return !(*this == other); }

    /// In which respects the two differ that ask for drawing again. Fill colour, halo, shape, marker, options, pen
    /// and smoothing are no such respects: two tracks that differ only in these give AspectNone.
    [[nodiscard]] KelGPXTrackAspect differentAspects(const KelGPXConfiguredTrack &other) const;

    /// The shape in which the track is drawn: a point when the track is a single point, whatever is configured; else
    /// the configured shape, or the track's own where the configured one is automatic.
    [[nodiscard]] KelGPXTrackShape effectiveShape() const;

    /// Replaces an unknown or automatic configured track shape by the natural one.
    void autoConfigureTrackShape();

    /// The position at that fraction (0 first, 1 last) of the points, counted by index, not by length. A hop and a
    /// polygon have only one such position, the centre of their bounding box. Invalid when there is no such point.
    [[nodiscard]] KelGeoPosition positionRelativeFromStart(double fraction) const;

    /// The points that the renderer draws: all of them, or a single one where a longer track is drawn as a point (a
    /// polygon at its centre, anything else at its middle point).
    [[nodiscard]] KelGeoPositionList drawingPoints() const;

private:
    KelGPXTrack m_track;
    KelGPXTrackConfiguration m_configuration;
};

/// Writes the track and its configuration.
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXConfiguredTrack &track);

/// Equal configured tracks have equal hashes: made of those of the track and of its configuration.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXConfiguredTrack &track, size_t seed = 0) noexcept;

#endif

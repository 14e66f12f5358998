// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKCONFIGURATION_H
#define KELGPXTRACKCONFIGURATION_H

#include <KelDistance.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackShape.h>
#include <KelGeoLocationGlobal.h>
#include <KelPenStyle.h>

#include <QColor>
#include <QDebug>
#include <QString>

class QDomElement;

/// How one track is drawn: colours, widths, painted parts, marker, shape, pen style and smoothing. A plain value.
///
/// Widths are in pixels of a drawing whose rendering factor is 1. The smoothing strength is the percentage of its own
/// position that a smoothed point keeps (100: no smoothing, 0: every point on the chord of its piece), the smoothing
/// steps are the number of pieces of equal point count into which the track is cut.
///
/// The XML form is written into and read from an element that may hold other things as well: the children
/// "pensize", "color", "fillcolor", "halosize", "displayOptions", "markerShape", "trackShape" and that of the pen
/// style, and the attributes "smoothing" and "smoothingSteps". Reading never fails: what is missing takes the default
/// that fromXml() states, a number that cannot be read is 0, and so is a width that is infinite or not a number.
class KELGEOLOCATION_EXPORT KelGPXTrackConfiguration
{
public:
    /// The same as defaultValue(), for containers and QVariant.
    KelGPXTrackConfiguration();
    /// All ten values as they are, unchecked.
    KelGPXTrackConfiguration(const QColor &lineColor, const KelDistance &lineWidth, const QColor &fillColor,
                             const KelDistance &haloWidth, const KelGPXTrackDisplayOptions &currentDisplayOptions,
                             const KelGPXMarkerShape &markerShape, const KelGPXTrackShape &trackShape,
                             const KelPenStyle &penStyle, int smoothingStrength, int smoothingSteps);

    KelGPXTrackConfiguration(const KelGPXTrackConfiguration &) = default;
    KelGPXTrackConfiguration(KelGPXTrackConfiguration &&) noexcept = default;
    KelGPXTrackConfiguration &operator=(const KelGPXTrackConfiguration &) = default;
    KelGPXTrackConfiguration &operator=(KelGPXTrackConfiguration &&) noexcept = default;
    virtual ~KelGPXTrackConfiguration();

    /// The library's own default: an opaque orange line (ff9100) of width 10, opaque lighter orange (fca404) for
    /// areas, no halo, stroke only, marker disk, shape auto, solid pen, no smoothing (100 percent, 1 step).
    [[nodiscard]] static KelGPXTrackConfiguration defaultValue();
    /// The user's default, as KelGeoLocationSettings keeps it: to be asked for in the user-interface thread.
    [[nodiscard]] static KelGPXTrackConfiguration currentDefaultConfiguration();

    /// Colour of the line, of outlines and of the marker's pen.
    [[nodiscard]] const QColor &lineColor() const noexcept;
    /// In pixels at rendering factor 1.
    [[nodiscard]] const KelDistance &lineWidth() const noexcept;
    /// Solid, dashed, dotted and so on.
    [[nodiscard]] const KelPenStyle &penStyle() const noexcept;
    /// Colour of areas and of the marker's body.
    [[nodiscard]] const QColor &fillColor() const noexcept;
    /// Width of the halo around the track; 0 is no halo.
    [[nodiscard]] const KelDistance &haloWidth() const noexcept;
    /// The parts that are painted.
    [[nodiscard]] const KelGPXTrackDisplayOptions &currentDisplayOptions() const noexcept;
    /// The marker at a point, or the arrow of a line.
    [[nodiscard]] const KelGPXMarkerShape &markerShape() const noexcept;
    /// The form; unknown and auto leave it to the track.
    [[nodiscard]] const KelGPXTrackShape &trackShape() const noexcept;
    /// In percent; 100 is no smoothing.
    [[nodiscard]] int smoothingStrength() const noexcept;
    /// The number of pieces.
    [[nodiscard]] int smoothingSteps() const noexcept;

    /// Each setter returns whether the value differs from what it was. Nothing is checked or corrected.
    bool setLineColor(const QColor &lineColor);
    /// \copydoc setLineColor
    bool setLineWidth(const KelDistance &lineWidth);
    /// \copydoc setLineColor
    bool setPenStyle(const KelPenStyle &penStyle);
    /// \copydoc setLineColor
    bool setFillColor(const QColor &fillColor);
    /// \copydoc setLineColor
    bool setHaloWidth(const KelDistance &haloWidth);
    /// \copydoc setLineColor
    bool setCurrentDisplayOptions(const KelGPXTrackDisplayOptions &options);
    /// \copydoc setLineColor
    bool setMarkerShape(const KelGPXMarkerShape &markerShape);
    /// \copydoc setLineColor
    bool setTrackShape(const KelGPXTrackShape &trackShape);
    /// \copydoc setLineColor
    bool setSmoothingStrength(int percent);
    /// \copydoc setLineColor
    bool setSmoothingSteps(int steps);

    /// Whether the current display options share a bit with `options`.
    [[nodiscard]] bool hasDrawOption(const KelGPXTrackDisplayOptions &options) const;
    /// Whether a change from `other` to this configuration makes a halo appear: there is one here and none there.
    [[nodiscard]] bool wouldChangeHaloToVisibleAgainst(const KelGPXTrackConfiguration &other) const;

    /// The colour with its alpha, as a fraction of 1, multiplied by `factor` and limited to 0 … 1; fully transparent
    /// for a factor that is not a number.
    [[nodiscard]] static QColor multiplyAlpha(const QColor &color, double factor);

    /// All ten values are equal; colours by QColor, widths by KelDistance.
    [[nodiscard]] bool operator==(const KelGPXTrackConfiguration &other) const;
    /// The opposite of equality.
    [[nodiscard]] bool operator!=(const KelGPXTrackConfiguration &other) const;

    /// Appends the children to `parent`, in the order of the class comment, and sets the attributes on it. Widths lose
    /// their fraction: 2.9 is written as 2.
    void toXml(QDomElement &parent) const;
    /// Reads what toXml() wrote into `element`. What is missing: line width 10; line colour black; fill colour the
    /// line colour with half its alpha; halo the line width if areas are filled, otherwise twice the line width;
    /// display options stroke; marker disk; shape auto; pen solid; smoothing 100; smoothing steps 1.
    /// A null element misses everything.
    [[nodiscard]] static KelGPXTrackConfiguration fromXml(const QDomElement &element);

    /// The XML form as a text of its own, with the root element "config". Equal configurations give the same text in
    /// every process.
    [[nodiscard]] QString serialize() const;
    /// Reads the text of serialize(). A text that is not XML is read as an empty element, see fromXml().
    [[nodiscard]] static KelGPXTrackConfiguration deserialize(const QString &text);

    /// The configuration that a KML "Style" element describes.
    ///
    /// Line colour and width come from "LineStyle", the fill colour from "PolyStyle". The width is the KML width times
    /// 6 and becomes 7.7 where that is less than 0.1. There is a stroke when "LineStyle" exists or "PolyStyle" does
    /// not, and a fill when "PolyStyle" exists. Of the two colours an invisible one (alpha 0) is made from the other:
    /// the fill is the line with half the alpha, the line is the fill with twice the alpha (at most 255); when both
    /// are invisible, the line is black and the fill black with alpha 128. The halo is as wide as the line
    /// with a fill, otherwise twice as wide. Everything else is as in defaultValue().
    [[nodiscard]] static KelGPXTrackConfiguration fromKml(const QDomElement &style);
    /// The colour of a KML element's child "color": hexadecimal digits in the order alpha, blue, green, red,
    /// with or without a leading "#". Fully transparent when it is missing or cannot be read.
    [[nodiscard]] static QColor decodeColor(const QDomElement &element);
    /// The number in a KML element's child "width", as KML counts it; 0 when it is missing or cannot be read.
    [[nodiscard]] static double decodeWidth(const QDomElement &element);

private:
    QColor m_lineColor;
    KelDistance m_lineWidth;
    KelPenStyle m_penStyle;
    QColor m_fillColor;
    KelDistance m_haloWidth;
    KelGPXTrackDisplayOptions m_currentDisplayOptions;
    KelGPXMarkerShape m_markerShape;
    KelGPXTrackShape m_trackShape;
    int m_smoothingStrength;
    int m_smoothingSteps;
};

/// Writes "KelGPXTrackConfiguration -- line colour; line width; fill colour; halo width; options; marker; shape".
KELGEOLOCATION_EXPORT QDebug operator<<(QDebug debug, const KelGPXTrackConfiguration &configuration);

/// Equal configurations have equal hashes: made of all ten values, which are compared exactly.
[[nodiscard]] KELGEOLOCATION_EXPORT size_t qHash(const KelGPXTrackConfiguration &configuration, size_t seed = 0) noexcept;

#endif

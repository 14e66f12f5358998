// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackConfiguration.h"

#include <KelDistanceUnit.h>
#include <KelGeoLocationSettings.h>
#include <KelKMLNames.h>
#include <KelXMLBuilder.h>
#include <KelXMLLoader.h>
#include <KelXMLParser.h>

#include <QDebugStateSaver>
#include <QDomDocument>
#include <QDomElement>
#include <QHashFunctions>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double defaultLineWidth = 10.0;
constexpr int defaultSmoothingStrength = 100;
constexpr int defaultSmoothingSteps = 1;

constexpr double missingFillAlphaFactor = 0.5;
constexpr double outlineHaloFactor = 2.0;

constexpr double pixelsPerKmlWidth = 6.0;
constexpr double smallestKmlLineWidth = 0.1;
constexpr double defaultKmlLineWidth = 7.7;
constexpr int invisibleKmlFillAlpha = 128;

// The names of the stored form; renaming one would lose what users have stored.
const QString rootElement = QStringLiteral("config");
const QString lineWidthElement = QStringLiteral("pensize");
const QString lineColorElement = QStringLiteral("color");
const QString fillColorElement = QStringLiteral("fillcolor");
const QString haloWidthElement = QStringLiteral("halosize");
const QString smoothingStrengthAttribute = QStringLiteral("smoothing");
const QString smoothingStepsAttribute = QStringLiteral("smoothingSteps");

template <typename T>
bool assignIfDifferent(T &field, const T &value)
{
    if (field == value)
        return false;
    field = value;
    return true;
}

/// Truncated toward zero. Files may hold any number, so what an integer cannot hold is cut to its range.
int wholeWidth(const KelDistance &width)
{
    const double value = width.value();
    if (std::isnan(value))
        return 0;
    return static_cast<int>(std::clamp(value, static_cast<double>(std::numeric_limits<int>::min()),
                                       static_cast<double>(std::numeric_limits<int>::max())));
}

/// Qt reads "inf" and "nan" as numbers, but they are no widths: a dashed line of infinite width is never done drawing.
double finiteOrNone(double width)
{
    return std::isfinite(width) ? width : 0.0;
}

double readWidth(const QDomElement &element, const QString &name, double defaultWidth)
{
    return finiteOrNone(KelXMLParser::doubleText(element, name, defaultWidth));
}

KelDistance haloWidthFor(const KelDistance &lineWidth, const KelGPXTrackDisplayOptions &options)
{
    const bool filled = (options.toInt() & DisplayFill) != 0;
    return filled ? lineWidth : KelDistance(finiteOrNone(lineWidth.value() * outlineHaloFactor));
}

QColor withAlpha(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

/// Makes sure that neither colour of a KML style is invisible.
void repairAlpha(QColor &line, QColor &fill)
{
    const bool lineInvisible = line.alpha() == 0;
    const bool fillInvisible = fill.alpha() == 0;
    if (lineInvisible && fillInvisible) {
        line = QColor(Qt::black);
        fill = withAlpha(Qt::black, invisibleKmlFillAlpha);
    } else if (fillInvisible) {
        // Deliberate: whole numbers here, although multiplyAlpha() works on fractions: 255 becomes 127.
        fill = withAlpha(line, line.alpha() / 2);
    } else if (lineInvisible) {
        line = withAlpha(fill, std::min(fill.alpha() * 2, 255));
    }
}

KelGPXTrackDisplayOptions kmlDisplayOptions(const QDomElement &lineStyle, const QDomElement &polyStyle)
{
    KelGPXTrackDisplayOptions options;
    if (!lineStyle.isNull())
        options |= DisplayStroke;
    options |= polyStyle.isNull() ? DisplayStroke : DisplayFill;
    return options;
}

double kmlLineWidth(const QDomElement &lineStyle)
{
    const double width = finiteOrNone(KelGPXTrackConfiguration::decodeWidth(lineStyle) * pixelsPerKmlWidth);
    return width < smallestKmlLineWidth ? defaultKmlLineWidth : width;
}

} // namespace

KelGPXTrackConfiguration::KelGPXTrackConfiguration()
    : KelGPXTrackConfiguration(defaultValue())
{
}

KelGPXTrackConfiguration::KelGPXTrackConfiguration(const QColor &lineColor, const KelDistance &lineWidth,
                                                   const QColor &fillColor, const KelDistance &haloWidth,
                                                   const KelGPXTrackDisplayOptions &currentDisplayOptions,
                                                   const KelGPXMarkerShape &markerShape,
                                                   const KelGPXTrackShape &trackShape, const KelPenStyle &penStyle,
                                                   int smoothingStrength, int smoothingSteps)
    : m_lineColor(lineColor)
    , m_lineWidth(lineWidth)
    , m_penStyle(penStyle)
    , m_fillColor(fillColor)
    , m_haloWidth(haloWidth)
    , m_currentDisplayOptions(currentDisplayOptions)
    , m_markerShape(markerShape)
    , m_trackShape(trackShape)
    , m_smoothingStrength(smoothingStrength)
    , m_smoothingSteps(smoothingSteps)
{
}

KelGPXTrackConfiguration::~KelGPXTrackConfiguration() = default;

KelGPXTrackConfiguration KelGPXTrackConfiguration::defaultValue()
{
    // Deliberate: this constructor of QColor ignores the top byte (0x50), the fill is opaque.
    const QColor opaqueFill(0x50fca404u);
    return KelGPXTrackConfiguration(QColor(255, 145, 0), defaultLineWidth, opaqueFill, 0.0, DisplayStroke, MarkerDisk,
                                    TrackShapeAuto, Qt::SolidLine, defaultSmoothingStrength, defaultSmoothingSteps);
}

KelGPXTrackConfiguration KelGPXTrackConfiguration::currentDefaultConfiguration()
{
    return KelGeoLocationSettings::instance().defaultTrackConfiguration();
}

const QColor &KelGPXTrackConfiguration::lineColor() const noexcept
{
    return m_lineColor;
}

const KelDistance &KelGPXTrackConfiguration::lineWidth() const noexcept
{
    return m_lineWidth;
}

const KelPenStyle &KelGPXTrackConfiguration::penStyle() const noexcept
{
    return m_penStyle;
}

const QColor &KelGPXTrackConfiguration::fillColor() const noexcept
{
    return m_fillColor;
}

const KelDistance &KelGPXTrackConfiguration::haloWidth() const noexcept
{
    return m_haloWidth;
}

const KelGPXTrackDisplayOptions &KelGPXTrackConfiguration::currentDisplayOptions() const noexcept
{
    return m_currentDisplayOptions;
}

const KelGPXMarkerShape &KelGPXTrackConfiguration::markerShape() const noexcept
{
    return m_markerShape;
}

const KelGPXTrackShape &KelGPXTrackConfiguration::trackShape() const noexcept
{
    return m_trackShape;
}

int KelGPXTrackConfiguration::smoothingStrength() const noexcept
{
    return m_smoothingStrength;
}

int KelGPXTrackConfiguration::smoothingSteps() const noexcept
{
    return m_smoothingSteps;
}

bool KelGPXTrackConfiguration::setLineColor(const QColor &lineColor)
{
    return assignIfDifferent(m_lineColor, lineColor);
}

bool KelGPXTrackConfiguration::setLineWidth(const KelDistance &lineWidth)
{
    return assignIfDifferent(m_lineWidth, lineWidth);
}

bool KelGPXTrackConfiguration::setPenStyle(const KelPenStyle &penStyle)
{
    return assignIfDifferent(m_penStyle, penStyle);
}

bool KelGPXTrackConfiguration::setFillColor(const QColor &fillColor)
{
    return assignIfDifferent(m_fillColor, fillColor);
}

bool KelGPXTrackConfiguration::setHaloWidth(const KelDistance &haloWidth)
{
    return assignIfDifferent(m_haloWidth, haloWidth);
}

bool KelGPXTrackConfiguration::setCurrentDisplayOptions(const KelGPXTrackDisplayOptions &options)
{
    return assignIfDifferent(m_currentDisplayOptions, options);
}

bool KelGPXTrackConfiguration::setMarkerShape(const KelGPXMarkerShape &markerShape)
{
    return assignIfDifferent(m_markerShape, markerShape);
}

bool KelGPXTrackConfiguration::setTrackShape(const KelGPXTrackShape &trackShape)
{
    return assignIfDifferent(m_trackShape, trackShape);
}

bool KelGPXTrackConfiguration::setSmoothingStrength(int percent)
{
    return assignIfDifferent(m_smoothingStrength, percent);
}

bool KelGPXTrackConfiguration::setSmoothingSteps(int steps)
{
    return assignIfDifferent(m_smoothingSteps, steps);
}

bool KelGPXTrackConfiguration::hasDrawOption(const KelGPXTrackDisplayOptions &options) const
{
    return (m_currentDisplayOptions & options) != 0;
}

bool KelGPXTrackConfiguration::wouldChangeHaloToVisibleAgainst(const KelGPXTrackConfiguration &other) const
{
    return other.m_haloWidth.isNull() && !m_haloWidth.isNull();
}

QColor KelGPXTrackConfiguration::multiplyAlpha(const QColor &color, double factor)
{
    QColor result = color;
    // What QColor does with a fraction out of range, without its warning; a factor that is not a number gives 0.
    const double alpha = color.alphaF() * factor;
    result.setAlphaF(alpha > 0.0 ? static_cast<float>(std::min(alpha, 1.0)) : 0.0f);
    return result;
}

bool KelGPXTrackConfiguration::operator==(const KelGPXTrackConfiguration &other) const
{
    return m_lineColor == other.m_lineColor && m_lineWidth == other.m_lineWidth && m_penStyle == other.m_penStyle
        && m_fillColor == other.m_fillColor && m_haloWidth == other.m_haloWidth
        && m_currentDisplayOptions == other.m_currentDisplayOptions && m_markerShape == other.m_markerShape
        && m_trackShape == other.m_trackShape && m_smoothingStrength == other.m_smoothingStrength
        && m_smoothingSteps == other.m_smoothingSteps;
}

bool KelGPXTrackConfiguration::operator!=(const KelGPXTrackConfiguration &other) const
{
    return !(*this == other);
}

void KelGPXTrackConfiguration::toXml(QDomElement &parent) const
{
    // Deliberate: widths are written as whole numbers, although they are read as decimals.
    KelXMLBuilder::buildDomElement(parent, lineWidthElement, wholeWidth(m_lineWidth));
    KelXMLBuilder::buildDomElement(parent, lineColorElement, m_lineColor.name(QColor::HexArgb));
    KelXMLBuilder::buildDomElement(parent, fillColorElement, m_fillColor.name(QColor::HexArgb));
    KelXMLBuilder::buildDomElement(parent, haloWidthElement, wholeWidth(m_haloWidth));
    m_currentDisplayOptions.write(parent);
    m_markerShape.toXml(parent);
    m_trackShape.toXml(parent);
    m_penStyle.toXml(parent);
    parent.setAttribute(smoothingStrengthAttribute, static_cast<qlonglong>(m_smoothingStrength));
    parent.setAttribute(smoothingStepsAttribute, static_cast<qlonglong>(m_smoothingSteps));
}

KelGPXTrackConfiguration KelGPXTrackConfiguration::fromXml(const QDomElement &element)
{
    KelGPXTrackDisplayOptions options;
    options.fromXml(element);
    KelGPXMarkerShape marker;
    marker.fromXml(element);
    KelGPXTrackShape shape;
    shape.fromXml(element);

    const KelDistance lineWidth(readWidth(element, lineWidthElement, defaultLineWidth));
    const QColor lineColor = KelXMLParser::readColor(element.firstChildElement(lineColorElement).text());
    const QDomElement fillColor = element.firstChildElement(fillColorElement);
    const KelDistance halo(readWidth(element, haloWidthElement, haloWidthFor(lineWidth, options).value()));

    return KelGPXTrackConfiguration(
        lineColor, lineWidth,
        fillColor.isNull() ? multiplyAlpha(lineColor, missingFillAlphaFactor)
                           : KelXMLParser::readColor(fillColor.text()),
        halo, options, marker, shape, KelPenStyle::fromXml(element),
        KelXMLParser::intAttribute(element, smoothingStrengthAttribute, defaultSmoothingStrength),
        KelXMLParser::intAttribute(element, smoothingStepsAttribute, defaultSmoothingSteps));
}

QString KelGPXTrackConfiguration::serialize() const
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, rootElement);
    toXml(root);
    return KelXMLBuilder::toText(document, 0);
}

KelGPXTrackConfiguration KelGPXTrackConfiguration::deserialize(const QString &text)
{
    // The loader leaves the document empty when the text does not parse; that is read like an empty element.
    QDomDocument document;
    KelXMLLoader::setContent(document, text);
    return fromXml(document.documentElement());
}

KelGPXTrackConfiguration KelGPXTrackConfiguration::fromKml(const QDomElement &style)
{
    const QDomElement lineStyle = style.firstChildElement(KelKMLNames::LineStyle);
    const QDomElement polyStyle = style.firstChildElement(KelKMLNames::PolyStyle);

    QColor lineColor = decodeColor(lineStyle);
    QColor fillColor = decodeColor(polyStyle);
    repairAlpha(lineColor, fillColor);

    const KelGPXTrackDisplayOptions options = kmlDisplayOptions(lineStyle, polyStyle);
    const KelDistance lineWidth(kmlLineWidth(lineStyle));
    return KelGPXTrackConfiguration(lineColor, lineWidth, fillColor, haloWidthFor(lineWidth, options), options,
                                    MarkerDisk, TrackShapeAuto, Qt::SolidLine, defaultSmoothingStrength,
                                    defaultSmoothingSteps);
}

QColor KelGPXTrackConfiguration::decodeColor(const QDomElement &element)
{
    QString text = element.firstChildElement(KelKMLNames::Color).text();
    if (!text.startsWith(QLatin1Char('#')))
        text.prepend(QLatin1Char('#'));
    return KelXMLParser::readColor(text, KelXMLParser::ColorByteOrder::Abgr);
}

double KelGPXTrackConfiguration::decodeWidth(const QDomElement &element)
{
    return readWidth(element, KelKMLNames::Width, 0.0);
}

QDebug operator<<(QDebug debug, const KelGPXTrackConfiguration &configuration)
{
    const QDebugStateSaver saver(debug);
    const KelDistanceUnit pixels(KelDistanceUnitEnum::Pixel);
    debug.nospace().noquote()
        << QStringLiteral("KelGPXTrackConfiguration -- %1; %2; %3; %4; %5; %6; %7")
               .arg(configuration.lineColor().name(), configuration.lineWidth().describe(pixels, 1, true),
                    configuration.fillColor().name(), configuration.haloWidth().describe(pixels, 1, true),
                    configuration.currentDisplayOptions().encode(), configuration.markerShape().encode(),
                    configuration.trackShape().encode());
    return debug;
}

size_t qHash(const KelGPXTrackConfiguration &configuration, size_t seed) noexcept
{
    return qHashMulti(seed, configuration.lineColor().rgba(), configuration.lineWidth(), configuration.penStyle(),
                      configuration.fillColor().rgba(), configuration.haloWidth(),
                      configuration.currentDisplayOptions(), configuration.markerShape(), configuration.trackShape(),
                      configuration.smoothingStrength(), configuration.smoothingSteps());
}

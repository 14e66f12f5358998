// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXFullShape.h"

#include <KelDebugText.h>

#include <QColor>
#include <QHashFunctions>
#include <QIcon>

namespace
{

/// Every marker bit but the arrow (1024) and the unused bit 4.
constexpr int pointMarkerBits = 0x3fb;
constexpr int lineMarkerBits = MarkerArrow;

/// The marker bits that may go with a track shape.
int allowedMarkerBits(const KelGPXTrackShape &shape)
{
    switch (shape.toInt()) {
    case TrackShapePoint:
        return pointMarkerBits;
    case TrackShapeLineString:
        return lineMarkerBits;
    default:
        return 0;
    }
}

} // namespace

KelGPXFullShape::KelGPXFullShape() = default;

KelGPXFullShape::KelGPXFullShape(const KelGPXTrackShape &trackShape, const KelGPXMarkerShape &markerShape)
    : m_trackShape(trackShape)
    , m_markerShape(markerShape)
{
}

KelGPXFullShape::~KelGPXFullShape() = default;

const KelGPXTrackShape &KelGPXFullShape::trackShape() const noexcept
{
    return m_trackShape;
}

void KelGPXFullShape::setTrackShape(const KelGPXTrackShape &trackShape)
{
    m_trackShape = trackShape;
}

const KelGPXMarkerShape &KelGPXFullShape::markerShape() const noexcept
{
    return m_markerShape;
}

void KelGPXFullShape::setMarkerShape(const KelGPXMarkerShape &markerShape)
{
    m_markerShape = markerShape;
}

bool KelGPXFullShape::operator==(const KelGPXFullShape &other) const
{
    return m_trackShape == other.m_trackShape && m_markerShape == other.m_markerShape;
}

QString KelGPXFullShape::describe() const
{
    return m_trackShape.humanReadable(m_markerShape);
}

QString KelGPXFullShape::toolTip() const
{
    return m_trackShape.toolTip();
}

QIcon KelGPXFullShape::createIcon(const QColor &penColor, const QColor &fillColor) const
{
    return m_markerShape.createIcon(penColor, fillColor);
}

void KelGPXFullShape::normalize()
{
    m_markerShape = KelGPXMarkerShape(m_markerShape.toInt() & allowedMarkerBits(m_trackShape));
}

KelGPXFullShape KelGPXFullShape::normalized() const
{
    KelGPXFullShape result = *this;
    result.normalize();
    return result;
}

QDebug operator<<(QDebug debug, const KelGPXFullShape &shape)
{
    return KelDebugText::write(debug, shape.trackShape().encode() + QLatin1Char('/') + shape.markerShape().encode());
}

size_t qHash(const KelGPXFullShape &shape, size_t seed) noexcept
{
    return qHashMulti(seed, shape.trackShape().toInt(), shape.markerShape().toInt());
}

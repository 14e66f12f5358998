// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRENDERTESTSUPPORT_H
#define KELRENDERTESTSUPPORT_H

#include <KelGPXConfiguredTrack.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrack.h>
#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackPoint.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QBrush>
#include <QDateTime>
#include <QImage>
#include <QLineF>
#include <QList>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QTransform>

/// What the tests of the renderer share: tracks given in pixels, a projection that maps them there, and a paint
/// device that writes down what is painted.
namespace KelRenderTest
{

/// Ten pixels are a degree: the projection of LinearRenderer's defaults.
constexpr double PIXELS_PER_DEGREE = 10.0;

/// One world width of LinearRenderer's defaults.
constexpr double WORLD_WIDTH = 3600.0;

/// The position that LinearRenderer with its defaults projects to the pixel (x, y).
inline KelGeoPosition at(double x, double y)
{
    return KelGeoPosition(KelLatitude(-y / PIXELS_PER_DEGREE), KelLongitude(x / PIXELS_PER_DEGREE));
}

inline KelGeoPosition degrees(double latitude, double longitude)
{
    return KelGeoPosition(KelLatitude(latitude), KelLongitude(longitude));
}

inline KelGeoPositionList positions(const QList<QPointF> &pixels)
{
    KelGeoPositionList result;
    for (const QPointF &pixel : pixels)
        result.append(at(pixel.x(), pixel.y()));
    return result;
}

inline KelGPXTrackSegment segment(const KelGeoPositionList &positions)
{
    QList<KelGPXTrackPoint> points;
    for (const KelGeoPosition &position : positions)
        points.append(KelGPXTrackPoint(position, 0, QDateTime(), QString()));
    return KelGPXTrackSegment(points);
}

inline KelGPXTrack trackOf(const QList<KelGPXTrackSegment> &segments)
{
    return KelGPXTrack(QStringLiteral("track"), QString(), segments, KelGPXTrackShape(TrackShapeAuto));
}

/// A track of one segment through these pixels; closed tracks are polygons.
inline KelGPXTrack trackThrough(const QList<QPointF> &pixels)
{
    return trackOf({segment(positions(pixels))});
}

/// Opaque blue line of width 6, opaque yellow fill, no halo, stroke only, no marker, natural shape, solid, unsmoothed.
inline KelGPXTrackConfiguration configuration()
{
    return KelGPXTrackConfiguration(QColor(0, 0, 255), KelDistance(6.0), QColor(255, 255, 0), KelDistance(0.0),
                                    KelGPXTrackDisplayOptions(DisplayStroke), KelGPXMarkerShape(MarkerUnknown),
                                    KelGPXTrackShape(TrackShapeAuto), KelPenStyle(Qt::SolidLine), 100, 1);
}

inline KelGPXTrackDisplayOptions strokeAndFill()
{
    return KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill);
}

inline KelGPXTrackSelection selectionOf(const QList<KelGPXConfiguredTrack> &tracks)
{
    return KelGPXTrackSelection(KelGPXConfiguredTrackList(tracks));
}

inline KelGPXTrackSelection selectionOf(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration)
{
    return selectionOf({KelGPXConfiguredTrack(track, configuration)});
}

/// Degrees to pixels in a straight line: x = left + longitude × scale, y = top − latitude × scale.
class LinearRenderer : public KelGPXTrackRenderer
{
public:
    explicit LinearRenderer(const KelGPXTrackSelection &selection = KelGPXTrackSelection(),
                            const QSize &size = QSize(320, 200), double factor = 1.0,
                            double pixelsPerDegree = PIXELS_PER_DEGREE, const QPointF &origin = QPointF())
        : KelGPXTrackRenderer(selection, size, factor)
        , m_pixelsPerDegree(pixelsPerDegree)
        , m_origin(origin)
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return m_origin
            + QPointF(position.longitude().decimalDegrees(), -position.latitude().decimalDegrees()) * m_pixelsPerDegree;
    }

private:
    double m_pixelsPerDegree;
    QPointF m_origin;
};

/// Projects every position to itself, but the ends of the world to any two points: for projections gone wrong.
class WorldOffsetRenderer : public LinearRenderer
{
public:
    WorldOffsetRenderer(const KelGPXTrackSelection &selection, const QPointF &worldOffset, double factor = 1.0)
        : LinearRenderer(selection, QSize(320, 200), factor)
        , m_worldOffset(worldOffset)
    {
    }

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        const double longitude = position.longitude().decimalDegrees();
        if (longitude == 180.0)
            return m_worldOffset;
        if (longitude == -180.0)
            return QPointF();
        return LinearRenderer::projectPosition(position);
    }

private:
    QPointF m_worldOffset;
};

/// One thing that was painted, in the coordinates of the painter and with the state it was painted in.
struct Painted
{
    enum Kind { Lines, Path, Polygon, Rects, Ellipse };

    Kind kind;
    QList<QLineF> lines;
    QPainterPath path;
    QRectF rect;
    QTransform transform;
    QPen pen;
    QBrush brush;
    bool antialiased;
};

class RecordingEngine : public QPaintEngine
{
public:
    explicit RecordingEngine(QList<Painted> *painted)
        : QPaintEngine(AllFeatures)
        , m_painted(painted)
    {
    }

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState &) override {}
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}

    void drawPath(const QPainterPath &path) override
    {
        record(Painted::Path).path = path;
    }
    void drawLines(const QLineF *lines, int count) override
    {
        record(Painted::Lines).lines = QList<QLineF>(lines, lines + count);
    }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode) override
    {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        record(Painted::Polygon).path = path;
    }
    void drawRects(const QRectF *rects, int) override { record(Painted::Rects).rect = rects[0]; }
    void drawEllipse(const QRectF &rect) override { record(Painted::Ellipse).rect = rect; }

    using QPaintEngine::drawEllipse;
    using QPaintEngine::drawLines;
    using QPaintEngine::drawPolygon;
    using QPaintEngine::drawRects;

private:
    Painted &record(Painted::Kind kind)
    {
        m_painted->append(Painted{kind, {}, {}, {}, state->transform(), state->pen(), state->brush(),
                                  state->renderHints().testFlag(QPainter::Antialiasing)});
        return m_painted->last();
    }

    QList<Painted> *m_painted;
};

/// A paint device of any width that keeps a list of what is painted on it.
class RecordingDevice : public QPaintDevice
{
public:
    explicit RecordingDevice(int width = 320, int height = 200)
        : m_width(width)
        , m_height(height)
        , m_engine(&painted)
    {
    }

    QPaintEngine *paintEngine() const override { return const_cast<RecordingEngine *>(&m_engine); }

    QList<Painted> painted;

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_width;
        case PdmHeight:
            return m_height;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmNumColors:
            return 16777216;
        case PdmDepth:
            return 32;
        default:
            return 96;
        }
    }

private:
    int m_width;
    int m_height;
    RecordingEngine m_engine;
};

} // namespace KelRenderTest

#endif

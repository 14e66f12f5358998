// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// What the renderer paints: first as a record of the paint calls with their pens, brushes and places, then as pixels
// at chosen points. Whole pictures are compared in tst_TrackPictures.

#include "KelRenderTestSupport.h"

#include <KelIntRange.h>

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <initializer_list>

using namespace KelRenderTest;
using TrackRenderOption = KelGPXTrackRenderer::TrackRenderOption;

namespace
{

constexpr TrackRenderOption Normal = KelGPXTrackRenderer::Normal;
constexpr TrackRenderOption Foreground = KelGPXTrackRenderer::Foreground;

const QColor BLUE(0, 0, 255);
const QColor YELLOW(255, 255, 0);

KelGPXTrackDisplayOptions options(int bits)
{
    return KelGPXTrackDisplayOptions(static_cast<KelGPXTrackDisplayOptionsEnum>(bits));
}

KelGPXTrackConfiguration withOptions(int bits)
{
    KelGPXTrackConfiguration result = configuration();
    result.setCurrentDisplayOptions(options(bits));
    return result;
}

KelGPXTrackConfiguration withShape(KelGPXTrackShapeEnum shape, int displayOptions = DisplayStroke)
{
    KelGPXTrackConfiguration result = withOptions(displayOptions);
    result.setTrackShape(KelGPXTrackShape(shape));
    return result;
}

KelGPXTrackConfiguration withMarker(KelGPXMarkerShapeEnum marker, int displayOptions = DisplayStroke)
{
    KelGPXTrackConfiguration result = withOptions(displayOptions);
    result.setMarkerShape(KelGPXMarkerShape(marker));
    return result;
}

const QList<QPointF> &triangle()
{
    static const QList<QPointF> points = {QPointF(50, 50), QPointF(250, 50), QPointF(250, 150), QPointF(50, 50)};
    return points;
}

QPainterPath straight(const QPointF &from, const QPointF &to)
{
    QPainterPath path(from);
    path.lineTo(to);
    return path;
}

/// What is painted, with the state of the painter set by the caller of the renderer.
template <typename Paint>
QList<Painted> record(Paint paint, int deviceWidth = 320)
{
    RecordingDevice device(deviceWidth);
    QPainter painter(&device);
    paint(&painter);
    return device.painted;
}

/// What a track is painted as in the world itself, copies left out.
QList<Painted> recordTrack(const KelGPXConfiguredTrack &track, TrackRenderOption option, double factor = 1.0)
{
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), factor);
    QList<Painted> result;
    for (const Painted &painted : record([&](QPainter *painter) { renderer.drawTrack(painter, track, option); })) {
        if (painted.transform.dx() == 0)
            result.append(painted);
    }
    return result;
}

QList<Painted> recordPath(const QPainterPath &path, const KelGPXTrackConfiguration &configuration,
                          TrackRenderOption option, bool polygon = false)
{
    return record([&](QPainter *painter) {
        if (polygon)
            LinearRenderer().drawPolygon(painter, path, configuration, option);
        else
            LinearRenderer().drawLine(painter, path, configuration, option);
    });
}

bool near(const QPointF &a, const QPointF &b)
{
    if ((a - b).manhattanLength() < 1e-6)
        return true;
    qWarning() << a << b;
    return false;
}

bool isStroke(const Painted &painted, const QColor &color, double width)
{
    return painted.kind == Painted::Path && painted.pen.style() != Qt::NoPen && painted.pen.color() == color
        && painted.pen.widthF() == width;
}

bool isFill(const Painted &painted, const QColor &color)
{
    return painted.kind == Painted::Path && painted.pen.style() == Qt::NoPen
        && painted.brush.style() == Qt::SolidPattern && painted.brush.color() == color;
}

QImage pictureOf(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration,
                 TrackRenderOption option = Normal, double factor = 1.0)
{
    return LinearRenderer(selectionOf(track, configuration), QSize(320, 200), factor).render(option);
}

} // namespace

class tst_TrackDrawing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // the record of paint calls
    void shapeDecides_data();
    void shapeDecides();
    void tracksInListOrder();
    void threeWorldWidthsInAscendingOrder();
    void worldCopiesFollowTheWholeOffset();
    void mirroredSmallWorldPaintsNothing();
    void unseenCopiesAreLeftOutOfImages_data();
    void unseenCopiesAreLeftOutOfImages();
    void painterComesBackAsItWas();
    void pathIsStrokedOnlyIfConfigured_data();
    void pathIsStrokedOnlyIfConfigured();
    void pathKeepsThePaintersBrush();
    void polygonParts_data();
    void polygonParts();
    void dashedPenOnlyInNormal();
    void emptyPathIsDrawnAsPoint_data();
    void emptyPathIsDrawnAsPoint();
    void trackWithoutPointsDrawsNothing();

    void arrowNeedsItsBit_data();
    void arrowNeedsItsBit();
    void arrowWithoutStroke();
    void barbLength_data();
    void barbLength();
    void barbsOpenThirtyDegreesToEachSide_data();
    void barbsOpenThirtyDegreesToEachSide();
    void barbsAreNeverDashed();
    void arrowHeadOfAnEmptyPath();
    void polygonsHaveNoArrowHead();
    void arrowOfAClosedLine();

    void markerParts_data();
    void markerParts();
    void markerRadius_data();
    void markerRadius();
    void markerStandsAtTheFirstDrawingPoint_data();
    void markerStandsAtTheFirstDrawingPoint();
    void markerOfACollapsedTrackStandsAtItsFirstPoint();
    void markerShapesWithoutADrawingAreEllipses();
    void markerIsRepeatedAroundTheWorld();
    void markersOutlineIsDashedOnlyInNormal();

    // pixels
    void lineHasColourAndWidth();
    void translucentColoursAreKept();
    void haloOnlyInForeground();
    void enclaveIsAHole();
    void polygonFillsUnderTheStroke();
    void strokedPolygonIsFilledInForeground();
    void worldCopiesInThePicture();
    void unseenCopiesChangeNoPixel_data();
    void unseenCopiesChangeNoPixel();
    void trackOverTheDateLineIsContinuous_data();
    void trackOverTheDateLineIsContinuous();
    void arrowBarbsInThePicture();
    void laterTracksCoverEarlierOnes();
    void quickAndDirtyIsNotAntialiased();
    void foregroundIsTheQuickSilhouette();
    void highDensityDoublesWidths();
};

// ---- the record of paint calls --------------------------------------------------------------------------------

void tst_TrackDrawing::shapeDecides_data()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<QList<QPointF>>("points");
    QTest::addColumn<int>("calls");
    QTest::addColumn<bool>("ellipse");

    const QList<QPointF> line = triangle().mid(0, 3);
    // A polygon is filled and stroked, a line only stroked, a point is a marker.
    QTest::newRow("a single point, whatever is configured")
        << int(TrackShapePolygon) << triangle().mid(0, 1) << 1 << true;
    QTest::newRow("point") << int(TrackShapePoint) << line << 1 << true;
    QTest::newRow("polygon") << int(TrackShapePolygon) << line << 2 << false;
    QTest::newRow("closed points are a polygon by nature") << int(TrackShapeAuto) << triangle() << 2 << false;
    QTest::newRow("line string") << int(TrackShapeLineString) << line << 1 << false;
    QTest::newRow("closed points as a line string") << int(TrackShapeLineString) << triangle() << 1 << false;
    QTest::newRow("open points are a line string by nature") << int(TrackShapeAuto) << line << 1 << false;
    QTest::newRow("every other shape is a line") << int(TrackShapeHop) << line << 1 << false;
}

void tst_TrackDrawing::shapeDecides()
{
    QFETCH(int, shape);
    QFETCH(QList<QPointF>, points);
    QFETCH(int, calls);
    QFETCH(bool, ellipse);

    const KelGPXConfiguredTrack track(
        trackThrough(points), withShape(static_cast<KelGPXTrackShapeEnum>(shape), DisplayStroke | DisplayFill));
    const QList<Painted> painted = recordTrack(track, Normal);
    QCOMPARE(painted.size(), calls);
    QCOMPARE(painted.first().kind == Painted::Ellipse, ellipse);
}

void tst_TrackDrawing::tracksInListOrder()
{
    KelGPXTrackConfiguration red = configuration();
    red.setLineColor(Qt::red);
    const KelGPXConfiguredTrack first(trackThrough(triangle()), configuration());
    const KelGPXConfiguredTrack second(trackThrough(triangle()), red);

    const auto colors = [](const QList<KelGPXConfiguredTrack> &tracks) {
        const LinearRenderer renderer(selectionOf(tracks));
        QList<QColor> result;
        for (const Painted &painted : record([&](QPainter *painter) { renderer.renderWith(painter, Normal); })) {
            if (painted.transform.dx() == 0)
                result.append(painted.pen.color());
        }
        return result;
    };
    QCOMPARE(colors({first, second}), QList<QColor>({BLUE, QColor(Qt::red)}));
    QCOMPARE(colors({second, first}), QList<QColor>({QColor(Qt::red), BLUE}));
}

void tst_TrackDrawing::threeWorldWidthsInAscendingOrder()
{
    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(300, 0));
    const KelGPXConfiguredTrack track(trackThrough({QPointF(50, 50), QPointF(150, 50)}), configuration());
    QList<double> shifts;
    for (const Painted &painted :
         record([&](QPainter *painter) { renderer.drawTrack(painter, track, Normal); }, 900))
        shifts.append(painted.transform.dx() / 300);
    QCOMPARE(shifts, QList<double>({-4, -3, -2, -1, 0, 1, 2, 3, 4}));
}

void tst_TrackDrawing::worldCopiesFollowTheWholeOffset()
{
    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(400.5, -7));
    const KelGPXConfiguredTrack track(trackThrough({QPointF(50, 50), QPointF(150, 50)}), configuration());
    const QList<Painted> painted = record([&](QPainter *painter) {
        painter->translate(1000, 0);
        renderer.drawTrack(painter, track, Normal);
    });
    QCOMPARE(painted.size(), 3);
    QCOMPARE(painted.at(0).transform, QTransform::fromTranslate(599.5, 7));
    QCOMPARE(painted.at(1).transform, QTransform::fromTranslate(1000, 0));
    QCOMPARE(painted.at(2).transform, QTransform::fromTranslate(1400.5, -7));
}

void tst_TrackDrawing::mirroredSmallWorldPaintsNothing()
{
    // Two world widths fit, counted backwards: the range of shifts is inverted.
    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(-150, 0));
    const KelGPXConfiguredTrack track(trackThrough({QPointF(50, 50), QPointF(150, 50)}), configuration());
    QVERIFY(record([&](QPainter *painter) { renderer.drawTrack(painter, track, Normal); }).isEmpty());
}

namespace
{

/// An image in all but that it keeps a list of what is painted.
class RecordingImage : public QImage
{
public:
    explicit RecordingImage(const QSize &size)
        : QImage(size, QImage::Format_ARGB32_Premultiplied)
        , m_engine(&painted)
    {
    }
    QPaintEngine *paintEngine() const override { return const_cast<RecordingEngine *>(&m_engine); }

    QList<Painted> painted;

private:
    RecordingEngine m_engine;
};

} // namespace

void tst_TrackDrawing::unseenCopiesAreLeftOutOfImages_data()
{
    QTest::addColumn<QList<QPointF>>("points");
    QTest::addColumn<int>("marker");
    QTest::addColumn<QList<double>>("shifts");

    const int none = MarkerUnknown;
    const int arrow = MarkerArrow;
    // A world of 300 in an image of 320: -2 to 2 are asked for. Lines are 6 wide.
    QTest::newRow("in the middle") << QList<QPointF>{{100, 100}, {200, 100}} << none << QList<double>{0};
    QTest::newRow("at both edges") << QList<QPointF>{{2, 100}, {200, 100}} << none << QList<double>{0, 1};
    QTest::newRow("longer than the world") << QList<QPointF>{{100, 100}, {500, 100}} << none << QList<double>{-1, 0};
    QTest::newRow("the pen reaches in from the left") << QList<QPointF>{{-100, 100}, {-2, 100}} << none
                                                      << QList<double>{0, 1};
    QTest::newRow("above") << QList<QPointF>{{100, -100}, {200, -10}} << none << QList<double>{};
    QTest::newRow("below") << QList<QPointF>{{100, 300}, {200, 210}} << none << QList<double>{};
    // The barbs of 50 reach 43 back and 25 to each side.
    QTest::newRow("below, but a barb reaches in") << QList<QPointF>{{100, 210}, {200, 210}} << arrow
                                                  << QList<double>{0};
    QTest::newRow("marker in the middle") << QList<QPointF>{{150, 100}} << int(MarkerDisk) << QList<double>{0};
    QTest::newRow("marker at the left edge") << QList<QPointF>{{-5, 100}} << int(MarkerDisk) << QList<double>{0, 1};
    QTest::newRow("marker above") << QList<QPointF>{{150, -30}} << int(MarkerDisk) << QList<double>{};
}

void tst_TrackDrawing::unseenCopiesAreLeftOutOfImages()
{
    QFETCH(QList<QPointF>, points);
    QFETCH(int, marker);
    QFETCH(QList<double>, shifts);

    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(300, 0));
    const KelGPXConfiguredTrack track(trackThrough(points), withMarker(static_cast<KelGPXMarkerShapeEnum>(marker)));
    RecordingImage image(QSize(320, 200));
    QPainter painter(&image);
    renderer.drawTrack(&painter, track, Normal);
    painter.end();

    QList<double> seen;
    for (const Painted &painted : image.painted) {
        const double shift = painted.transform.dx() / 300;
        if (!seen.contains(shift))
            seen.append(shift);
    }
    QCOMPARE(seen, shifts);
    // Other devices may show more than their rectangle, and behind a perspective nothing is measured.
    QVERIFY(record([&](QPainter *other) { renderer.drawTrack(other, track, Normal); }).size() >= 5);
    image.painted.clear();
    painter.begin(&image);
    painter.setTransform(QTransform(1, 0, 0.00001, 0, 1, 0, 0, 0, 1));
    renderer.drawTrack(&painter, track, Normal);
    QVERIFY(image.painted.size() >= 5);
}

void tst_TrackDrawing::painterComesBackAsItWas()
{
    KelGPXTrackConfiguration arrow = withMarker(MarkerArrow, DisplayStroke | DisplayFill);
    KelGPXTrackConfiguration polygon = withShape(TrackShapePolygon, DisplayStroke | DisplayFill);
    const LinearRenderer renderer(selectionOf({KelGPXConfiguredTrack(trackThrough(triangle()), polygon),
                                               KelGPXConfiguredTrack(trackThrough(triangle().mid(0, 3)), arrow),
                                               KelGPXConfiguredTrack(trackThrough(triangle().mid(0, 1)), arrow)}));
    RecordingDevice device;
    QPainter painter(&device);
    const QPen pen(Qt::green, 17);
    const QBrush brush(Qt::magenta);
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.translate(3, 4);
    for (const TrackRenderOption option : {Normal, Foreground}) {
        renderer.renderWith(&painter, option);
        QCOMPARE(painter.pen(), pen);
        QCOMPARE(painter.brush(), brush);
        QCOMPARE(painter.transform(), QTransform::fromTranslate(3, 4));
        QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
    }
    QVERIFY(!device.painted.isEmpty());
}

void tst_TrackDrawing::pathIsStrokedOnlyIfConfigured_data()
{
    QTest::addColumn<int>("displayOptions");
    QTest::addColumn<bool>("foreground");
    QTest::addColumn<bool>("stroked");
    QTest::newRow("stroke") << int(DisplayStroke) << false << true;
    QTest::newRow("stroke and fill") << int(DisplayStroke | DisplayFill) << false << true;
    QTest::newRow("fill only") << int(DisplayFill) << false << false;
    QTest::newRow("the third option") << int(DisplayExtra) << false << false;
    QTest::newRow("nothing") << 0 << false << false;
    QTest::newRow("stroke, foreground") << int(DisplayStroke) << true << true;
    QTest::newRow("fill only, foreground") << int(DisplayFill) << true << true;
    QTest::newRow("nothing, foreground") << 0 << true << true;
}

void tst_TrackDrawing::pathIsStrokedOnlyIfConfigured()
{
    QFETCH(int, displayOptions);
    QFETCH(bool, foreground);
    QFETCH(bool, stroked);
    KelGPXTrackConfiguration line = withOptions(displayOptions);
    line.setHaloWidth(KelDistance(4.0));
    const QPainterPath path = straight(QPointF(10, 10), QPointF(200, 10));
    const QList<Painted> painted = recordPath(path, line, foreground ? Foreground : Normal);
    QCOMPARE(painted.size(), stroked ? 1 : 0);
    if (stroked) {
        QVERIFY(isStroke(painted.first(), BLUE, foreground ? 10.0 : 6.0));
        QCOMPARE(painted.first().path, path);
    }
}

void tst_TrackDrawing::pathKeepsThePaintersBrush()
{
    // Deliberate: a caller's brush fills the path.
    for (const bool polygon : {false, true}) {
        const QList<Painted> painted = record([polygon](QPainter *painter) {
            painter->setBrush(QColor(Qt::green));
            const QPainterPath path = straight(QPointF(10, 10), QPointF(200, 10));
            if (polygon)
                LinearRenderer().drawPolygon(painter, path, configuration(), Normal);
            else
                LinearRenderer().drawPath(painter, path, configuration(), Normal);
        });
        QCOMPARE(painted.size(), 1);
        QCOMPARE(painted.first().brush.color(), QColor(Qt::green));
    }
}

void tst_TrackDrawing::polygonParts_data()
{
    QTest::addColumn<int>("displayOptions");
    QTest::addColumn<bool>("foreground");
    QTest::addColumn<bool>("filled");
    QTest::addColumn<bool>("stroked");
    QTest::newRow("stroke") << int(DisplayStroke) << false << false << true;
    QTest::newRow("fill") << int(DisplayFill) << false << true << false;
    QTest::newRow("stroke and fill") << int(DisplayStroke | DisplayFill) << false << true << true;
    QTest::newRow("nothing") << 0 << false << false << false;
    QTest::newRow("stroke, foreground") << int(DisplayStroke) << true << true << true;
    QTest::newRow("nothing, foreground") << 0 << true << true << true;
}

void tst_TrackDrawing::polygonParts()
{
    QFETCH(int, displayOptions);
    QFETCH(bool, foreground);
    QFETCH(bool, filled);
    QFETCH(bool, stroked);
    KelGPXTrackConfiguration area = withOptions(displayOptions);
    area.setLineColor(QColor(0, 0, 255, 50));
    area.setFillColor(QColor(255, 255, 0, 60));
    QPainterPath path = straight(QPointF(10, 10), QPointF(200, 10));
    path.lineTo(100, 100);
    QList<Painted> painted = recordPath(path, area, foreground ? Foreground : Normal, true);

    QCOMPARE(painted.size(), (filled ? 1 : 0) + (stroked ? 1 : 0));
    // The fill comes first, under the stroke.
    if (filled) {
        QVERIFY(isFill(painted.first(), QColor(255, 255, 0, foreground ? 255 : 60)));
        QCOMPARE(painted.takeFirst().path, path);
    }
    if (stroked) {
        QVERIFY(isStroke(painted.first(), QColor(0, 0, 255, foreground ? 255 : 50), 6.0));
        QCOMPARE(painted.first().brush.style(), Qt::NoBrush);
    }
}

void tst_TrackDrawing::dashedPenOnlyInNormal()
{
    KelGPXTrackConfiguration dashed = configuration();
    dashed.setPenStyle(KelPenStyle(Qt::DashLine));
    const QPainterPath path = straight(QPointF(10, 10), QPointF(200, 10));
    QCOMPARE(recordPath(path, dashed, Normal).first().pen.style(), Qt::DashLine);
    QCOMPARE(recordPath(path, dashed, Foreground).first().pen.style(), Qt::SolidLine);
}

void tst_TrackDrawing::emptyPathIsDrawnAsPoint_data()
{
    QTest::addColumn<int>("shape");
    QTest::newRow("line") << int(TrackShapeLineString);
    QTest::newRow("polygon") << int(TrackShapePolygon);
}

void tst_TrackDrawing::emptyPathIsDrawnAsPoint()
{
    QFETCH(int, shape);
    // All within the thinning distance of the first point.
    const KelGPXConfiguredTrack track(trackThrough({QPointF(100, 80), QPointF(102, 81), QPointF(101, 82)}),
                                      withShape(static_cast<KelGPXTrackShapeEnum>(shape)));
    const QList<Painted> painted = recordTrack(track, Normal);
    QCOMPARE(painted.size(), 1);
    QCOMPARE(painted.first().kind, Painted::Ellipse);
    QVERIFY(near(painted.first().rect.center(), QPointF(100, 80)));
}

void tst_TrackDrawing::trackWithoutPointsDrawsNothing()
{
    for (const KelGPXTrackShapeEnum shape :
         {TrackShapeLineString, TrackShapePolygon, TrackShapeHop, TrackShapeAuto}) {
        const KelGPXConfiguredTrack track(KelGPXTrack(), withShape(shape, DisplayStroke | DisplayFill));
        QVERIFY(track.drawingPoints().isEmpty());
        QVERIFY(recordTrack(track, Normal).isEmpty());
        QVERIFY(recordTrack(track, Foreground).isEmpty());
    }
}

// ---- arrow heads ----------------------------------------------------------------------------------------------

void tst_TrackDrawing::arrowNeedsItsBit_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<bool>("arrow");
    QTest::newRow("arrow") << int(MarkerArrow) << true;
    QTest::newRow("arrow among others") << int(MarkerArrow | MarkerDisk) << true;
    QTest::newRow("no marker") << int(MarkerUnknown) << false;
    QTest::newRow("another marker") << int(MarkerDisk) << false;
}

void tst_TrackDrawing::arrowNeedsItsBit()
{
    QFETCH(int, marker);
    QFETCH(bool, arrow);
    const QList<Painted> painted = recordPath(straight(QPointF(10, 10), QPointF(200, 10)),
                                              withMarker(static_cast<KelGPXMarkerShapeEnum>(marker)), Normal);
    QCOMPARE(painted.size(), arrow ? 3 : 1);
    QCOMPARE(painted.first().kind, Painted::Path);
    if (arrow) {
        QCOMPARE(painted.at(1).kind, Painted::Lines);
        QCOMPARE(painted.at(2).kind, Painted::Lines);
    }
}

void tst_TrackDrawing::arrowWithoutStroke()
{
    // Deliberate: a line that is not stroked still gets its arrow head.
    const QList<Painted> painted = recordPath(straight(QPointF(10, 10), QPointF(200, 10)),
                                              withMarker(MarkerArrow, DisplayFill), Normal);
    QCOMPARE(painted.size(), 2);
    QCOMPARE(painted.at(0).kind, Painted::Lines);
    QCOMPARE(painted.at(1).kind, Painted::Lines);
}

void tst_TrackDrawing::barbLength_data()
{
    QTest::addColumn<double>("distance");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("length");
    QTest::newRow("short line: at least 10") << 15.0 << 1.0 << 10.0;
    QTest::newRow("exactly 10") << 20.0 << 1.0 << 10.0;
    QTest::newRow("just above 10") << 20.5 << 1.0 << 10.25;
    QTest::newRow("half the line") << 120.0 << 1.0 << 60.0;
    QTest::newRow("exactly 100") << 200.0 << 1.0 << 100.0;
    QTest::newRow("just below 100") << 199.0 << 1.0 << 99.5;
    QTest::newRow("long line: at most 100") << 5000.0 << 1.0 << 100.0;
    QTest::newRow("short line, high density") << 15.0 << 2.0 << 20.0;
    QTest::newRow("long line, high density") << 5000.0 << 2.0 << 200.0;
    QTest::newRow("half the line, scaled") << 120.0 << 2.0 << 120.0;
}

void tst_TrackDrawing::barbLength()
{
    QFETCH(double, distance);
    QFETCH(double, factor);
    QFETCH(double, length);
    const LinearRenderer renderer(KelGPXTrackSelection(), QSize(320, 200), factor);
    const QList<Painted> painted = record([&](QPainter *painter) {
        renderer.drawArrowHead(painter, straight(QPointF(0, 0), QPointF(distance, 0)), configuration(), Normal);
    });
    QCOMPARE(painted.size(), 2);
    for (const Painted &barb : painted) {
        QCOMPARE(barb.lines.size(), 1);
        QVERIFY(near(barb.lines.first().p1(), QPointF(distance, 0)));
        QCOMPARE(barb.lines.first().length(), length);
    }
}

void tst_TrackDrawing::barbsOpenThirtyDegreesToEachSide_data()
{
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("tip");
    QTest::addColumn<QPointF>("first");
    QTest::addColumn<QPointF>("second");

    // 100 long, barbs of 50: 43.3 back and 25 to each side. The first barb is the one at angle + 30.
    const double back = 43.30127018922193;
    QTest::newRow("to the right") << QPointF(0, 50) << QPointF(100, 50) << QPointF(100 - back, 75)
                                  << QPointF(100 - back, 25);
    QTest::newRow("up") << QPointF(50, 100) << QPointF(50, 0) << QPointF(75, back) << QPointF(25, back);
    QTest::newRow("to the left") << QPointF(100, 50) << QPointF(0, 50) << QPointF(back, 25) << QPointF(back, 75);
    QTest::newRow("down") << QPointF(50, 0) << QPointF(50, 100) << QPointF(25, 100 - back)
                          << QPointF(75, 100 - back);
}

void tst_TrackDrawing::barbsOpenThirtyDegreesToEachSide()
{
    QFETCH(QPointF, start);
    QFETCH(QPointF, tip);
    QFETCH(QPointF, first);
    QFETCH(QPointF, second);
    const QList<Painted> painted = record([&](QPainter *painter) {
        LinearRenderer().drawArrowHead(painter, straight(start, tip), configuration(), Normal);
    });
    QCOMPARE(painted.size(), 2);
    QVERIFY(near(painted.at(0).lines.first().p1(), tip));
    QVERIFY(near(painted.at(0).lines.first().p2(), first));
    QVERIFY(near(painted.at(1).lines.first().p1(), tip));
    QVERIFY(near(painted.at(1).lines.first().p2(), second));
}

void tst_TrackDrawing::barbsAreNeverDashed()
{
    KelGPXTrackConfiguration dotted = withMarker(MarkerArrow);
    dotted.setPenStyle(KelPenStyle(Qt::DotLine));
    dotted.setHaloWidth(KelDistance(4.0));
    const QPainterPath path = straight(QPointF(10, 10), QPointF(200, 10));

    const QList<Painted> normal = recordPath(path, dotted, Normal);
    QCOMPARE(normal.at(0).pen.style(), Qt::DotLine);
    QCOMPARE(normal.at(1).pen.style(), Qt::SolidLine);
    QCOMPARE(normal.at(1).pen.widthF(), 6.0);
    QCOMPARE(normal.at(1).pen.capStyle(), Qt::RoundCap);
    QCOMPARE(normal.at(2).pen.style(), Qt::SolidLine);

    const QList<Painted> foreground = recordPath(path, dotted, Foreground);
    QCOMPARE(foreground.at(1).pen.widthF(), 10.0);
}

void tst_TrackDrawing::arrowHeadOfAnEmptyPath()
{
    QVERIFY(record([](QPainter *painter) {
                LinearRenderer().drawArrowHead(painter, QPainterPath(), withMarker(MarkerArrow), Normal);
            }).isEmpty());
}

void tst_TrackDrawing::polygonsHaveNoArrowHead()
{
    KelGPXTrackConfiguration arrow = withMarker(MarkerArrow);
    arrow.setTrackShape(KelGPXTrackShape(TrackShapePolygon));
    const QList<Painted> painted = recordTrack(KelGPXConfiguredTrack(trackThrough(triangle()), arrow), Normal);
    QCOMPARE(painted.size(), 1);
    QCOMPARE(painted.first().kind, Painted::Path);
}

void tst_TrackDrawing::arrowOfAClosedLine()
{
    // Start and tip coincide: the shortest barbs, in the direction of the last stretch.
    QPainterPath path = straight(QPointF(100, 100), QPointF(100, 0));
    path.lineTo(0, 0);
    path.lineTo(0, 100);
    path.lineTo(100, 100);
    const QList<Painted> painted = record([&](QPainter *painter) {
        LinearRenderer().drawArrowHead(painter, path, configuration(), Normal);
    });
    QVERIFY(near(painted.at(0).lines.first().p2(), QPointF(100 - 8.660254037844386, 105)));
}

// ---- markers --------------------------------------------------------------------------------------------------

void tst_TrackDrawing::markerParts_data()
{
    QTest::addColumn<int>("displayOptions");
    QTest::addColumn<bool>("foreground");
    QTest::addColumn<bool>("drawn");
    QTest::addColumn<QColor>("pen");
    QTest::addColumn<double>("penWidth");
    QTest::addColumn<QColor>("brush");

    const QColor line(0, 0, 255, 50);
    const QColor fill(255, 255, 0, 60);
    const QColor nothing(Qt::transparent);
    QTest::newRow("nothing") << 0 << false << false << QColor() << 0.0 << QColor();
    QTest::newRow("only the third option") << int(DisplayExtra) << false << false << QColor() << 0.0 << QColor();
    QTest::newRow("stroke") << int(DisplayStroke) << false << true << line << 6.0 << nothing;
    QTest::newRow("fill") << int(DisplayFill) << false << true << nothing << 1.0 << fill;
    QTest::newRow("both") << int(DisplayStroke | DisplayFill) << false << true << line << 6.0 << fill;
    QTest::newRow("all three") << 7 << false << true << line << 6.0 << fill;
    const QColor opaqueLine(0, 0, 255);
    const QColor opaqueFill(255, 255, 0);
    QTest::newRow("foreground, nothing") << 0 << true << true << opaqueLine << 10.0 << opaqueFill;
    QTest::newRow("foreground, stroke") << int(DisplayStroke) << true << true << opaqueLine << 10.0 << opaqueFill;
    QTest::newRow("foreground, fill") << int(DisplayFill) << true << true << opaqueLine << 10.0 << opaqueFill;
}

void tst_TrackDrawing::markerParts()
{
    QFETCH(int, displayOptions);
    QFETCH(bool, foreground);
    QFETCH(bool, drawn);
    QFETCH(QColor, pen);
    QFETCH(double, penWidth);
    QFETCH(QColor, brush);

    // The disk keeps the pen that it gets.
    KelGPXTrackConfiguration disk = withMarker(MarkerDisk, displayOptions);
    disk.setLineColor(QColor(0, 0, 255, 50));
    disk.setFillColor(QColor(255, 255, 0, 60));
    disk.setHaloWidth(KelDistance(4.0));
    const QList<Painted> painted = recordTrack(
        KelGPXConfiguredTrack(trackThrough({QPointF(100, 80)}), disk), foreground ? Foreground : Normal);
    QCOMPARE(painted.size(), drawn ? 1 : 0);
    if (!drawn)
        return;
    QCOMPARE(painted.first().kind, Painted::Ellipse);
    QCOMPARE(painted.first().pen.color(), pen);
    QCOMPARE(painted.first().pen.style(), Qt::SolidLine);
    QCOMPARE(painted.first().pen.widthF(), penWidth);
    QCOMPARE(painted.first().brush.color(), brush);
    QCOMPARE(painted.first().brush.style(), Qt::SolidPattern);
    QVERIFY(painted.first().antialiased);
}

void tst_TrackDrawing::markerRadius_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<double>("lineWidth");
    QTest::addColumn<int>("displayOptions");
    QTest::addColumn<bool>("foreground");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("radius");
    QTest::addColumn<double>("penWidth");

    const int both = DisplayStroke | DisplayFill;
    QTest::newRow("disk: the line width is the radius") << int(MarkerDisk) << 6.0 << both << false << 1.0 << 6.0 << 6.0;
    QTest::newRow("disk, high density") << int(MarkerDisk) << 6.0 << both << false << 2.0 << 12.0 << 12.0;
    QTest::newRow("circle grows by 0.4 pen widths") << int(MarkerCircle) << 6.0 << both << false << 1.0 << 8.4 << 1.0;
    QTest::newRow("circle of a wide line") << int(MarkerCircle) << 15.0 << both << false << 1.0 << 21.0 << 3.0;
    QTest::newRow("circle without stroke: its pen is one wide")
        << int(MarkerCircle) << 6.0 << int(DisplayFill) << false << 1.0 << 6.4 << 1.0;
    // The halo makes the pen wider, not the line: radius 6 and a pen of 10.
    QTest::newRow("circle in the foreground") << int(MarkerCircle) << 6.0 << both << true << 1.0 << 10.0 << 2.0;
    QTest::newRow("disk in the foreground") << int(MarkerDisk) << 6.0 << both << true << 1.0 << 6.0 << 10.0;
}

void tst_TrackDrawing::markerRadius()
{
    QFETCH(int, marker);
    QFETCH(double, lineWidth);
    QFETCH(int, displayOptions);
    QFETCH(bool, foreground);
    QFETCH(double, factor);
    QFETCH(double, radius);
    QFETCH(double, penWidth);

    KelGPXTrackConfiguration round = withMarker(static_cast<KelGPXMarkerShapeEnum>(marker), displayOptions);
    round.setLineWidth(KelDistance(lineWidth));
    round.setHaloWidth(KelDistance(4.0));
    const QList<Painted> painted = recordTrack(KelGPXConfiguredTrack(trackThrough({QPointF(100, 80)}), round),
                                               foreground ? Foreground : Normal, factor);
    QCOMPARE(painted.size(), 1);
    const QRectF rect = painted.first().rect;
    QVERIFY(near(rect.topLeft(), QPointF(100 - radius, 80 - radius)));
    QVERIFY(near(rect.bottomRight(), QPointF(100 + radius, 80 + radius)));
    QCOMPARE(painted.first().pen.widthF(), penWidth);
}

void tst_TrackDrawing::markerStandsAtTheFirstDrawingPoint_data()
{
    QTest::addColumn<QList<QPointF>>("points");
    QTest::addColumn<QPointF>("center");
    QTest::newRow("single point") << QList<QPointF>{QPointF(30, 40)} << QPointF(30, 40);
    QTest::newRow("line as a point: the middle one")
        << QList<QPointF>{QPointF(10, 10), QPointF(200, 50), QPointF(300, 10)} << QPointF(200, 50);
    QTest::newRow("polygon as a point: its centre") << triangle() << QPointF(150, 100);
}

void tst_TrackDrawing::markerStandsAtTheFirstDrawingPoint()
{
    QFETCH(QList<QPointF>, points);
    QFETCH(QPointF, center);
    const QList<Painted> painted =
        recordTrack(KelGPXConfiguredTrack(trackThrough(points), withShape(TrackShapePoint)), Normal);
    QCOMPARE(painted.size(), 1);
    QVERIFY(near(painted.first().rect.center(), center));
}

void tst_TrackDrawing::markerOfACollapsedTrackStandsAtItsFirstPoint()
{
    // The first segment holds no point; the first point is that of the second.
    const KelGPXTrack track = trackOf({KelGPXTrackSegment(), segment(positions({QPointF(100, 80), QPointF(101, 81)})),
                                       segment(positions({QPointF(102, 80)}))});
    for (const KelGPXTrackShapeEnum shape : {TrackShapeLineString, TrackShapePolygon}) {
        const KelGPXConfiguredTrack configured(track, withShape(shape));
        const QList<Painted> painted = recordTrack(configured, Normal);
        QCOMPARE(painted.size(), 1);
        QVERIFY(near(painted.first().rect.center(), QPointF(100, 80)));
        QCOMPARE(configured.drawingPoints().first(), at(100, 80));
    }
}

void tst_TrackDrawing::markerShapesWithoutADrawingAreEllipses()
{
    // Deliberate: only icons treat "unknown" and "arrow" as nothing.
    for (const KelGPXMarkerShapeEnum marker : {MarkerUnknown, MarkerArrow, MarkerDisk, MarkerCircle}) {
        KelGPXTrackConfiguration shaped = withMarker(marker);
        shaped.setTrackShape(KelGPXTrackShape(TrackShapePoint));
        const QList<Painted> painted =
            recordTrack(KelGPXConfiguredTrack(trackThrough(triangle().mid(0, 3)), shaped), Normal);
        QCOMPARE(painted.size(), 1);
        QCOMPARE(painted.first().kind, Painted::Ellipse);
    }
}

void tst_TrackDrawing::markerIsRepeatedAroundTheWorld()
{
    const WorldOffsetRenderer renderer(KelGPXTrackSelection(), QPointF(300, 0));
    const KelGPXConfiguredTrack track(trackThrough({QPointF(50, 50)}), withMarker(MarkerDisk));
    QList<double> shifts;
    for (const Painted &painted : record([&](QPainter *painter) { renderer.drawPoint(painter, track, Normal); }, 599)) {
        QVERIFY(near(painted.rect.center(), QPointF(50, 50)));
        shifts.append(painted.transform.dx());
    }
    QCOMPARE(shifts, QList<double>({-600, -300, 0, 300, 600}));
}

void tst_TrackDrawing::markersOutlineIsDashedOnlyInNormal()
{
    KelGPXTrackConfiguration dotted = withMarker(MarkerDisk);
    dotted.setPenStyle(KelPenStyle(Qt::DotLine));
    const KelGPXConfiguredTrack track(trackThrough({QPointF(50, 50)}), dotted);
    QCOMPARE(recordTrack(track, Normal).first().pen.style(), Qt::DotLine);
    QCOMPARE(recordTrack(track, Foreground).first().pen.style(), Qt::SolidLine);
}

// ---- pixels ---------------------------------------------------------------------------------------------------

void tst_TrackDrawing::lineHasColourAndWidth()
{
    // 6 wide around y = 100: rows 97 to 102, with round ends.
    const QImage picture = pictureOf(trackThrough({QPointF(50, 100), QPointF(250, 100)}), configuration());
    QCOMPARE(picture.format(), QImage::Format_ARGB32);
    for (int y = 97; y <= 102; ++y)
        QCOMPARE(picture.pixelColor(150, y), BLUE);
    QCOMPARE(picture.pixel(150, 96), 0u);
    QCOMPARE(picture.pixel(150, 103), 0u);
    QCOMPARE(picture.pixelColor(48, 100), BLUE);
    QCOMPARE(picture.pixelColor(251, 100), BLUE);
    QCOMPARE(picture.pixel(46, 100), 0u);
    QCOMPARE(picture.pixel(253, 100), 0u);
    // Round, not square.
    QVERIFY(picture.pixelColor(47, 97).alpha() < 128);
}

void tst_TrackDrawing::translucentColoursAreKept()
{
    KelGPXTrackConfiguration translucent = configuration();
    translucent.setLineColor(QColor(255, 0, 0, 128));
    const KelGPXTrack track = trackThrough({QPointF(50, 100), QPointF(250, 100)});
    QCOMPARE(pictureOf(track, translucent).pixelColor(150, 100), QColor(255, 0, 0, 128));
    QCOMPARE(pictureOf(track, translucent, Foreground).pixelColor(150, 100), QColor(255, 0, 0, 255));
}

void tst_TrackDrawing::haloOnlyInForeground()
{
    KelGPXTrackConfiguration halo = configuration();
    halo.setHaloWidth(KelDistance(10.0));
    const KelGPXTrack track = trackThrough({QPointF(50, 100), QPointF(250, 100)});
    const QImage normal = pictureOf(track, halo);
    const QImage foreground = pictureOf(track, halo, Foreground);
    // 16 wide: rows 92 to 107.
    QCOMPARE(normal.pixel(150, 96), 0u);
    QCOMPARE(normal.pixel(150, 92), 0u);
    QCOMPARE(foreground.pixelColor(150, 96), BLUE);
    QCOMPARE(foreground.pixelColor(150, 92), BLUE);
    QCOMPARE(foreground.pixelColor(150, 107), BLUE);
    QCOMPARE(foreground.pixel(150, 91), 0u);
    QCOMPARE(foreground.pixel(150, 108), 0u);
}

namespace
{

const QList<QPointF> &square()
{
    static const QList<QPointF> points = {QPointF(60, 20), QPointF(260, 20), QPointF(260, 180), QPointF(60, 180),
                                          QPointF(60, 20)};
    return points;
}

const QList<QPointF> &innerSquare()
{
    static const QList<QPointF> points = {QPointF(120, 60), QPointF(200, 60), QPointF(200, 140), QPointF(120, 140),
                                          QPointF(120, 60)};
    return points;
}

} // namespace

void tst_TrackDrawing::enclaveIsAHole()
{
    KelGPXTrack track = trackThrough(square());
    track.addEnclave(trackThrough(innerSquare()));
    for (const TrackRenderOption option : {Normal, Foreground}) {
        const QImage picture = pictureOf(track, withShape(TrackShapePolygon, DisplayStroke | DisplayFill), option);
        QCOMPARE(picture.pixelColor(90, 100), YELLOW);
        QCOMPARE(picture.pixelColor(230, 100), YELLOW);
        QCOMPARE(picture.pixel(160, 100), 0u);
        QCOMPARE(picture.pixelColor(60, 100), BLUE);
        QCOMPARE(picture.pixelColor(120, 100), BLUE);
        QCOMPARE(picture.pixel(30, 100), 0u);
    }
}

void tst_TrackDrawing::polygonFillsUnderTheStroke()
{
    KelGPXTrackConfiguration area = withShape(TrackShapePolygon, DisplayStroke | DisplayFill);
    area.setFillColor(QColor(255, 255, 0, 128));
    const QImage picture = pictureOf(trackThrough(square()), area);
    QCOMPARE(picture.pixelColor(160, 100), QColor(255, 255, 0, 128));
    // The inner half of the stroke lies over the fill.
    QCOMPARE(picture.pixelColor(61, 100), BLUE);
    QCOMPARE(picture.pixelColor(58, 100), BLUE);

    KelGPXTrackConfiguration fillOnly = withShape(TrackShapePolygon, DisplayFill);
    const QImage filled = pictureOf(trackThrough(square()), fillOnly);
    QCOMPARE(filled.pixelColor(61, 100), YELLOW);
    QCOMPARE(filled.pixel(58, 100), 0u);
}

void tst_TrackDrawing::strokedPolygonIsFilledInForeground()
{
    KelGPXTrackConfiguration outline = withShape(TrackShapePolygon, DisplayStroke);
    outline.setLineColor(QColor(0, 0, 255, 100));
    outline.setFillColor(QColor(255, 255, 0, 0));
    const QImage normal = pictureOf(trackThrough(square()), outline);
    QCOMPARE(normal.pixel(160, 100), 0u);
    QCOMPARE(normal.pixelColor(60, 100).alpha(), 100);
    const QImage foreground = pictureOf(trackThrough(square()), outline, Foreground);
    QCOMPARE(foreground.pixelColor(160, 100), YELLOW);
    QCOMPARE(foreground.pixelColor(60, 100), BLUE);
}

void tst_TrackDrawing::worldCopiesInThePicture()
{
    const WorldOffsetRenderer renderer(
        selectionOf(trackThrough({QPointF(20, 100), QPointF(60, 100)}), configuration()), QPointF(100, 0));
    const QImage picture = renderer.render(Normal);
    for (const int x : {40, 140, 240})
        QCOMPARE(picture.pixelColor(x, 100), BLUE);
    for (const int x : {80, 180, 280})
        QCOMPARE(picture.pixel(x, 100), 0u);
    // The copy to the right that just begins.
    QCOMPARE(picture.pixelColor(318, 100), BLUE);
}

namespace
{

/// Draws every copy, seen or not, with the operations that draw a single one.
void drawAllCopies(const KelGPXTrackRenderer &renderer, QPainter *painter, const KelGPXConfiguredTrack &track,
                   TrackRenderOption option)
{
    const KelGPXTrackConfiguration configuration = track.configuration();
    const QPainterPath path = renderer.createPainterPath(track);
    const bool marker = path.isEmpty() || track.effectiveShape() == TrackShapePoint;
    const bool foreground = option == Foreground;
    const bool stroked = foreground || configuration.hasDrawOption(options(DisplayStroke));
    const bool filled = foreground || configuration.hasDrawOption(options(DisplayFill));
    const KelIntRange shifts = renderer.visibleShifts(painter);
    for (int shift = shifts.min(); shift <= shifts.max(); ++shift) {
        painter->save();
        painter->translate(renderer.aroundTheWorldOffset() * shift);
        if (!marker && track.effectiveShape() == TrackShapePolygon) {
            renderer.drawPolygon(painter, path, configuration, option);
        } else if (!marker) {
            renderer.drawLine(painter, path, configuration, option);
        } else if (stroked || filled) {
            painter->setPen(stroked ? renderer.penFromTrack(configuration, option) : QPen(Qt::transparent));
            painter->setBrush(filled ? renderer.brushFromTrack(configuration, option) : QBrush(Qt::transparent));
            const double radius = renderer.scale(configuration.lineWidth().value());
            configuration.markerShape().draw(painter, renderer.projectPosition(track.drawingPoints().first()), radius,
                                             radius);
        }
        painter->restore();
    }
}

struct RandomScene
{
    explicit RandomScene(quint32 seed)
        : random(seed)
    {
    }

    double between(double low, double high) { return low + random.generateDouble() * (high - low); }
    int oneOf(std::initializer_list<int> values)
    {
        return *(values.begin() + random.bounded(static_cast<int>(values.size())));
    }

    /// In and around a picture of 160 × 100, often just beside its edges.
    QPointF point()
    {
        const auto coordinate = [this](double length) {
            switch (random.bounded(4)) {
            case 0:
                return between(-60, 0);
            case 1:
                return between(length, length + 60);
            default:
                return between(-150, length + 150);
            }
        };
        return {coordinate(160), coordinate(100)};
    }

    KelGPXConfiguredTrack track()
    {
        QList<QPointF> points;
        const QPointF start = point();
        const int count = oneOf({1, 2, 2, 3, 6});
        const double spread = between(3, 200);
        for (int i = 0; i < count; ++i)
            points.append(start + QPointF(between(-spread, spread), between(-spread, spread)));

        KelGPXTrackConfiguration result = withOptions(random.bounded(4));
        result.setTrackShape(KelGPXTrackShape(oneOf({TrackShapePoint, TrackShapeLineString, TrackShapePolygon})));
        result.setMarkerShape(KelGPXMarkerShape(
            oneOf({MarkerUnknown, MarkerDisk, MarkerCircle, MarkerX, MarkerRhombus, MarkerStar9, MarkerBlock,
                   MarkerArrow, MarkerArrow, MarkerArrow, MarkerArrow, MarkerArrow, MarkerArrow | MarkerDisk})));
        result.setLineWidth(KelDistance(random.bounded(8) == 0 ? 0.0 : between(0.1, 40)));
        result.setHaloWidth(KelDistance(random.bounded(2) * between(0, 30)));
        result.setPenStyle(KelPenStyle(static_cast<Qt::PenStyle>(oneOf({Qt::SolidLine, Qt::DashLine, Qt::DotLine}))));
        result.setLineColor(QColor(0, 0, 255, 100));
        return KelGPXConfiguredTrack(trackThrough(points), result);
    }

    void prepare(QPainter *painter)
    {
        painter->setRenderHint(QPainter::Antialiasing, random.bounded(2) == 0);
        if (random.bounded(4) == 0)
            painter->setBrush(QColor(0, 255, 0, 90));
        switch (random.bounded(6)) {
        case 0:
            painter->scale(between(0.3, 4), between(0.3, 4));
            break;
        case 1:
            painter->translate(between(-50, 50), between(-50, 50));
            painter->rotate(between(0, 360));
            break;
        case 2:
            painter->shear(between(-1, 1), between(-1, 1));
            break;
        case 3:
            painter->setWindow(-50, -20, 300, 150);
            break;
        case 4:
            painter->setTransform(QTransform(1, 0, 0.001, 0, 1, 0.0005, 0, 0, 1));
            break;
        default:
            break;
        }
    }

    QRandomGenerator random;
};

} // namespace

void tst_TrackDrawing::unseenCopiesChangeNoPixel_data()
{
    QTest::addColumn<double>("pixelRatio");
    QTest::addColumn<double>("factor");
    QTest::newRow("plain") << 1.0 << 1.0;
    QTest::newRow("high density by the factor") << 1.0 << 2.0;
    QTest::newRow("high density by the image") << 2.0 << 1.0;
    QTest::newRow("low density") << 0.5 << 0.5;
}

void tst_TrackDrawing::unseenCopiesChangeNoPixel()
{
    QFETCH(double, pixelRatio);
    QFETCH(double, factor);

    int painted = 0;
    for (quint32 seed = 0; seed < 600; ++seed) {
        RandomScene scene(seed);
        const QPointF world(scene.between(20, 400), scene.random.bounded(3) == 0 ? scene.between(-50, 50) : 0.0);
        const WorldOffsetRenderer renderer(KelGPXTrackSelection(), world, factor);
        const KelGPXConfiguredTrack track = scene.track();
        const TrackRenderOption option = scene.random.bounded(2) == 0 ? Normal : Foreground;
        const quint32 painterSeed = scene.random.generate();

        const auto picture = [&](auto draw) {
            QImage image(160, 100, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            image.setDevicePixelRatio(pixelRatio);
            QPainter painter(&image);
            RandomScene(painterSeed).prepare(&painter);
            draw(&painter);
            painter.end();
            return image;
        };
        const QImage all = picture([&](QPainter *painter) { drawAllCopies(renderer, painter, track, option); });
        const QImage seen = picture([&](QPainter *painter) { renderer.drawTrack(painter, track, option); });
        QVERIFY2(seen == all, qPrintable(QStringLiteral("scene %1").arg(seed)));
        const bool empty = std::all_of(all.constBits(), all.constBits() + all.sizeInBytes(),
                                       [](uchar byte) { return byte == 0; });
        painted += empty ? 0 : 1;
    }
    // Neither all in view nor all beside it.
    QVERIFY2(painted > 100 && painted < 500, qPrintable(QString::number(painted)));
}

void tst_TrackDrawing::trackOverTheDateLineIsContinuous_data()
{
    QTest::addColumn<QList<double>>("longitudes");
    QTest::newRow("eastward") << QList<double>{170, 176, -178, -170};
    QTest::newRow("westward") << QList<double>{-170, -178, 176, 170};
    QTest::newRow("one step") << QList<double>{170, -170};
}

void tst_TrackDrawing::trackOverTheDateLineIsContinuous()
{
    QFETCH(QList<double>, longitudes);
    KelGeoPositionList list;
    for (const double longitude : longitudes)
        list.append(degrees(0, longitude));
    // Ten pixels per degree, the date line in the middle of the picture: 170 E at x = 60, 170 W at 260.
    const LinearRenderer renderer(selectionOf(trackOf({segment(list)}), configuration()), QSize(320, 200), 1.0, 10.0,
                                  QPointF(160 - 1800, 100));
    const QImage picture = renderer.render(Normal);
    for (int x = 60; x <= 260; ++x)
        QCOMPARE(picture.pixelColor(x, 100), BLUE);
    QCOMPARE(picture.pixel(50, 100), 0u);
    QCOMPARE(picture.pixel(270, 100), 0u);
}

void tst_TrackDrawing::arrowBarbsInThePicture()
{
    // 200 long: barbs of 100 from (260, 100), 86.6 back and 50 to each side.
    const QImage picture =
        pictureOf(trackThrough({QPointF(60, 100), QPointF(260, 100)}), withMarker(MarkerArrow));
    QCOMPARE(picture.pixelColor(217, 75), BLUE);
    QCOMPARE(picture.pixelColor(217, 125), BLUE);
    QCOMPARE(picture.pixelColor(175, 51), BLUE);
    QCOMPARE(picture.pixelColor(175, 149), BLUE);
    QCOMPARE(picture.pixel(160, 43), 0u);
    QCOMPARE(picture.pixel(217, 60), 0u);
    QCOMPARE(picture.pixel(217, 88), 0u);
}

void tst_TrackDrawing::laterTracksCoverEarlierOnes()
{
    KelGPXTrackConfiguration red = configuration();
    red.setLineColor(Qt::red);
    const KelGPXConfiguredTrack across(trackThrough({QPointF(50, 100), QPointF(250, 100)}), configuration());
    const KelGPXConfiguredTrack down(trackThrough({QPointF(150, 20), QPointF(150, 180)}), red);
    QCOMPARE(LinearRenderer(selectionOf({across, down})).render(Normal).pixelColor(150, 100), QColor(Qt::red));
    QCOMPARE(LinearRenderer(selectionOf({down, across})).render(Normal).pixelColor(150, 100), BLUE);
}

void tst_TrackDrawing::quickAndDirtyIsNotAntialiased()
{
    const LinearRenderer renderer(
        selectionOf(trackThrough({QPointF(50, 50), QPointF(250, 130)}), configuration()));
    const auto partlyCovered = [](const QImage &picture) {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const int alpha = qAlpha(picture.pixel(x, y));
                count += alpha != 0 && alpha != 255;
            }
        }
        return count;
    };
    QCOMPARE(partlyCovered(renderer.renderQuickAndDirty(Normal)), 0);
    QVERIFY(partlyCovered(renderer.render(Normal)) > 100);
    QCOMPARE(renderer.renderQuickAndDirty(Normal).pixelColor(150, 90), BLUE);
}

void tst_TrackDrawing::foregroundIsTheQuickSilhouette()
{
    KelGPXTrackConfiguration halo = configuration();
    halo.setHaloWidth(KelDistance(10.0));
    halo.setLineColor(QColor(0, 0, 255, 77));
    const LinearRenderer renderer(selectionOf(trackThrough({QPointF(50, 50), QPointF(250, 130)}), halo));
    QCOMPARE(renderer.renderForeground(), renderer.renderQuickAndDirty(Foreground));
    QVERIFY(renderer.renderForeground() != renderer.renderQuickAndDirty(Normal));
    QCOMPARE(renderer.renderForeground().pixelColor(150, 90), BLUE);
}

void tst_TrackDrawing::highDensityDoublesWidths()
{
    const QImage picture =
        pictureOf(trackThrough({QPointF(50, 100), QPointF(250, 100)}), configuration(), Normal, 2.0);
    QCOMPARE(picture.pixelColor(150, 94), BLUE);
    QCOMPARE(picture.pixelColor(150, 105), BLUE);
    QCOMPARE(picture.pixel(150, 93), 0u);
    QCOMPARE(picture.pixel(150, 106), 0u);
}

QTEST_MAIN(tst_TrackDrawing)
#include "tst_TrackDrawing.moc"

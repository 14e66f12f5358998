// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Whole pictures of the renderer against the ones in tests/data/golden. No text is drawn, so no font plays a part.
//
// A picture that differs is written, with a picture of the differences, into the folder "pictures" beside the test
// program. When a difference is wanted, run the program with KEL_UPDATE_GOLDEN=1 in the environment: it overwrites
// the golden pictures (and fails, so that no build does so by accident). Then look at every one before committing.

#include "KelRenderTestSupport.h"

#include <KelGeoPositionRect.h>
#include <KelLatitudeRange.h>
#include <KelLongitudeRange.h>
#include <KelMapProjection.h>
#include <KelTestSupport.h>

#include <QDir>
#include <QLinearGradient>
#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace KelRenderTest;
using TrackRenderOption = KelGPXTrackRenderer::TrackRenderOption;

namespace
{

constexpr TrackRenderOption Normal = KelGPXTrackRenderer::Normal;
constexpr TrackRenderOption Foreground = KelGPXTrackRenderer::Foreground;

const QSize SIZE(320, 200);

/// Rasterisers differ a little between Qt's builds and processors.
constexpr int CHANNEL_TOLERANCE = 24;
constexpr int MOST_DIFFERENT_PIXELS = 160;

using Scene = QImage (*)();

/// A chequered ground under the picture, so that transparency can be seen.
QImage onGround(const QImage &picture)
{
    QImage result(picture.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter painter(&result);
    for (int y = 0; y < result.height(); y += 10) {
        for (int x = y % 20; x < result.width(); x += 20)
            painter.fillRect(x, y, 10, 10, QColor(225, 225, 225));
    }
    painter.drawImage(0, 0, picture);
    return result;
}

KelGPXConfiguredTrack configured(const KelGPXTrack &track, const KelGPXTrackConfiguration &configuration)
{
    return KelGPXConfiguredTrack(track, configuration);
}

KelGPXTrackConfiguration line(const QColor &color, double width)
{
    KelGPXTrackConfiguration result = configuration();
    result.setLineColor(color);
    result.setLineWidth(KelDistance(width));
    return result;
}

KelGPXTrackConfiguration area(const QColor &color, double width, const QColor &fill)
{
    KelGPXTrackConfiguration result = line(color, width);
    result.setFillColor(fill);
    result.setCurrentDisplayOptions(strokeAndFill());
    result.setTrackShape(KelGPXTrackShape(TrackShapePolygon));
    return result;
}

KelGPXTrackConfiguration arrow(const QColor &color, double width)
{
    KelGPXTrackConfiguration result = line(color, width);
    result.setMarkerShape(KelGPXMarkerShape(MarkerArrow));
    return result;
}

QImage render(const QList<KelGPXConfiguredTrack> &tracks, TrackRenderOption option = Normal, double factor = 1.0)
{
    return onGround(LinearRenderer(selectionOf(tracks), SIZE, factor).render(option));
}

/// The mountain in five strokes that several scenes share.
QList<QPointF> zigzag(double left, double top, double step, double height)
{
    QList<QPointF> points;
    for (int i = 0; i < 6; ++i)
        points.append(QPointF(left + i * step, top + (i % 2 == 0 ? height : 0)));
    return points;
}

QList<QPointF> ring(const QPointF &center, double radius, int corners)
{
    QList<QPointF> points;
    for (int i = 0; i <= corners; ++i) {
        const double angle = i % corners * 2 * M_PI / corners;
        points.append(center + QPointF(radius * std::sin(angle), -radius * std::cos(angle)));
    }
    return points;
}

// ---- scenes ---------------------------------------------------------------------------------------------------

QImage lines()
{
    return render({configured(trackThrough(zigzag(20, 20, 56, 60)), line(QColor(200, 30, 30), 10)),
                   configured(trackThrough(zigzag(20, 70, 56, 60)), line(QColor(30, 120, 30, 128), 20)),
                   configured(trackThrough(zigzag(20, 130, 56, 50)), line(QColor(30, 30, 200), 2))});
}

QImage penStyles()
{
    QList<KelGPXConfiguredTrack> tracks;
    double y = 30;
    for (const Qt::PenStyle style :
         {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine}) {
        KelGPXTrackConfiguration dashed = arrow(QColor(120, 20, 120), 6);
        dashed.setPenStyle(KelPenStyle(style));
        tracks.append(configured(trackThrough({QPointF(20, y), QPointF(280, y)}), dashed));
        y += 35;
    }
    return render(tracks);
}

QImage arrows()
{
    QList<KelGPXConfiguredTrack> tracks;
    for (int i = 0; i < 8; ++i) {
        const QPointF direction(std::cos(i * M_PI / 4), std::sin(i * M_PI / 4));
        tracks.append(configured(trackThrough({QPointF(100, 100) + 20 * direction, QPointF(100, 100) + 85 * direction}),
                                 arrow(QColor(20, 80, 160), 5)));
    }
    // The barbs of a short line are 10 long, those of a bent one half the way from start to tip.
    tracks.append(configured(trackThrough({QPointF(215, 30), QPointF(227, 30)}), arrow(QColor(180, 40, 20), 3)));
    tracks.append(configured(
        trackThrough({QPointF(210, 180), QPointF(210, 70), QPointF(300, 70), QPointF(300, 150)}),
        arrow(QColor(180, 40, 20), 4)));
    KelGPXTrackConfiguration headOnly = arrow(QColor(20, 140, 60), 4);
    headOnly.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(DisplayNone));
    tracks.append(configured(trackThrough({QPointF(240, 20), QPointF(300, 20)}), headOnly));
    return render(tracks);
}

QList<KelGPXConfiguredTrack> allMarkers(double lineWidth, double haloWidth)
{
    const QList<KelGPXTrackDisplayOptions> rows = {KelGPXTrackDisplayOptions(DisplayStroke),
                                                   KelGPXTrackDisplayOptions(DisplayFill), strokeAndFill()};
    QList<KelGPXConfiguredTrack> tracks;
    for (int row = 0; row < rows.size(); ++row) {
        double x = 22;
        for (const KelGPXMarkerShape &marker : KelGPXMarkerShape::allPointShapes()) {
            KelGPXTrackConfiguration point = line(QColor(20, 20, 160), lineWidth);
            point.setFillColor(QColor(255, 170, 0, 160));
            point.setHaloWidth(KelDistance(haloWidth));
            point.setMarkerShape(marker);
            point.setCurrentDisplayOptions(rows.at(row));
            tracks.append(configured(trackThrough({QPointF(x, 35 + row * 60)}), point));
            x += 34.5;
        }
    }
    return tracks;
}

QImage markers()
{
    return render(allMarkers(8, 0));
}

QImage markersInForeground()
{
    return render(allMarkers(8, 6), Foreground);
}

QImage polygonWithEnclaves()
{
    KelGPXTrack track = trackThrough(ring(QPointF(110, 100), 90, 7));
    track.addEnclave(trackThrough(ring(QPointF(80, 110), 30, 4)));
    track.addEnclave(trackThrough(ring(QPointF(145, 90), 30, 40)));
    // An open line drawn as an area is closed; its open enclave is only filled as if closed.
    KelGPXTrack open = trackThrough(ring(QPointF(260, 100), 55, 3).mid(0, 3));
    open.addEnclave(trackThrough(ring(QPointF(260, 105), 20, 4).mid(0, 4)));
    return render({configured(track, area(QColor(20, 90, 20), 4, QColor(60, 200, 60, 128))),
                   configured(open, area(QColor(120, 20, 20), 4, QColor(230, 90, 60, 128)))});
}

QList<KelGPXConfiguredTrack> mixedTracks()
{
    KelGPXTrack lake = trackThrough(ring(QPointF(240, 110), 60, 6));
    lake.addEnclave(trackThrough(ring(QPointF(240, 110), 25, 12)));
    KelGPXTrackConfiguration outline = area(QColor(20, 60, 160, 160), 4, QColor(90, 160, 240, 100));
    outline.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(DisplayStroke));
    outline.setHaloWidth(KelDistance(8));

    KelGPXTrackConfiguration dashed = arrow(QColor(200, 30, 30, 160), 4);
    dashed.setPenStyle(KelPenStyle(Qt::DashLine));
    dashed.setHaloWidth(KelDistance(10));

    KelGPXTrackConfiguration star = line(QColor(120, 90, 0, 200), 8);
    star.setFillColor(QColor(255, 220, 0, 120));
    star.setMarkerShape(KelGPXMarkerShape(MarkerStar6));
    star.setHaloWidth(KelDistance(8));
    return {configured(lake, outline), configured(trackThrough(zigzag(20, 60, 30, 80)), dashed),
            configured(trackThrough({QPointF(60, 35)}), star)};
}

QImage normal()
{
    return render(mixedTracks());
}

QImage foreground()
{
    return render(mixedTracks(), Foreground);
}

QImage quickAndDirty()
{
    return onGround(LinearRenderer(selectionOf(mixedTracks()), SIZE).renderQuickAndDirty(Normal));
}

QImage crop()
{
    QImage map(SIZE, QImage::Format_RGB32);
    QPainter painter(&map);
    QLinearGradient gradient(0, 0, SIZE.width(), SIZE.height());
    gradient.setColorAt(0, QColor(0, 120, 60));
    gradient.setColorAt(1, QColor(0, 60, 160));
    painter.fillRect(map.rect(), gradient);
    painter.end();

    KelGPXTrackSelection selection = selectionOf(mixedTracks());
    selection.setCroppingOpacity(64);
    return onGround(LinearRenderer(selection, SIZE).crop(map));
}

/// As a host does it: behind a map projection.
class MapRenderer : public KelGPXTrackRenderer
{
public:
    MapRenderer(const KelGPXTrackSelection &selection, double south, double north, double west, double east)
        : KelGPXTrackRenderer(selection, SIZE, 1.0)
        , m_projection(KelGeoPositionRect(KelLatitudeRange(KelLatitude(south), KelLatitude(north)),
                                          KelLongitudeRange(KelLongitude(west), KelLongitude(east))),
                       SIZE)
    {
    }
    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        return m_projection.projectate(position);
    }

private:
    KelMapProjection m_projection;
};

KelGPXTrack geoTrack(const KelGeoPositionList &positions)
{
    return trackOf({segment(positions)});
}

/// Around the Pacific: there and on to the south, and an area on both sides of the date line.
KelGPXTrackSelection pacific(bool eastward)
{
    KelGeoPositionList flight = {degrees(35, 140), degrees(45, 165), degrees(48, -175), degrees(45, -150),
                                 degrees(37, -122)};
    KelGeoPositionList there = {degrees(-10, 150), degrees(-15, 178), degrees(-18, -178), degrees(-12, 179),
                                degrees(-5, 172)};
    if (!eastward) {
        std::reverse(flight.begin(), flight.end());
        std::reverse(there.begin(), there.end());
    }
    const KelGeoPositionList islands = {degrees(10, 170), degrees(25, 170), degrees(25, -165), degrees(10, -165),
                                        degrees(10, 170)};
    return selectionOf({configured(geoTrack(islands), area(QColor(20, 90, 20), 2, QColor(60, 200, 60, 128))),
                        configured(geoTrack(flight), arrow(QColor(200, 30, 30), 4)),
                        configured(geoTrack(there), arrow(QColor(30, 30, 200), 3))});
}

QImage dateLineEastward()
{
    return onGround(MapRenderer(pacific(true), -30, 55, 120, -100).render(Normal));
}

QImage dateLineWestward()
{
    return onGround(MapRenderer(pacific(false), -30, 55, 120, -100).render(Normal));
}

QImage dateLineAtTheEdges()
{
    // The same tracks in a map that is cut at the date line: what leaves on one side comes in on the other.
    return onGround(MapRenderer(pacific(true), -60, 70, -180, 180).render(Normal));
}

QImage threeWorldWidths()
{
    KelGPXTrackConfiguration marker = line(QColor(20, 20, 160), 5);
    marker.setMarkerShape(KelGPXMarkerShape(MarkerRhombus));
    marker.setFillColor(QColor(255, 170, 0));
    marker.setCurrentDisplayOptions(strokeAndFill());
    const KelGPXTrackSelection selection = selectionOf(
        {configured(geoTrack({degrees(60, 100), degrees(60, -160), degrees(20, -140)}), arrow(QColor(200, 30, 30), 3)),
         configured(geoTrack({degrees(-20, -60), degrees(10, 20), degrees(-50, 20), degrees(-20, -60)}),
                    area(QColor(20, 90, 20), 2, QColor(60, 200, 60, 128))),
         configured(geoTrack({degrees(-60, 0)}), marker)});
    // A world of 100 pixels, its middle at x = 60.
    return onGround(LinearRenderer(selection, SIZE, 1.0, 100.0 / 360.0, QPointF(60, 100)).render(Normal));
}

QImage smoothing()
{
    QList<QPointF> noisy;
    for (int i = 0; i <= 28; ++i)
        noisy.append(QPointF(20 + i * 10, 45 - 25 * std::sin(i * 0.3) + (i % 2 == 0 ? 6 : -6)));
    QList<KelGPXConfiguredTrack> tracks;
    const auto add = [&tracks, &noisy](double down, int strength, int steps, const QColor &color) {
        QList<QPointF> points;
        for (const QPointF &point : noisy)
            points.append(point + QPointF(0, down));
        KelGPXTrackConfiguration smooth = line(color, 3);
        smooth.setSmoothingStrength(strength);
        smooth.setSmoothingSteps(steps);
        tracks.append(configured(trackThrough(points), smooth));
    };
    add(0, 100, 6, QColor(160, 160, 160));
    add(0, 30, 6, QColor(200, 30, 30));
    add(55, 100, 6, QColor(160, 160, 160));
    add(55, 0, 6, QColor(30, 120, 30));
    add(110, 100, 1, QColor(160, 160, 160));
    add(110, 0, 1, QColor(30, 30, 200));
    return render(tracks);
}

QImage highDensity()
{
    return render(mixedTracks(), Normal, 2.0);
}

// ---- comparison -------------------------------------------------------------------------------------------------

int countDifferences(const QImage &actual, const QImage &expected, QImage *differences)
{
    *differences = QImage(expected.size(), QImage::Format_RGB32);
    differences->fill(Qt::white);
    int count = 0;
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            const QRgb a = actual.pixel(x, y);
            const QRgb b = expected.pixel(x, y);
            const int difference = qMax(qAbs(qRed(a) - qRed(b)),
                                        qMax(qAbs(qGreen(a) - qGreen(b)), qAbs(qBlue(a) - qBlue(b))));
            if (difference > CHANNEL_TOLERANCE) {
                differences->setPixel(x, y, qRgb(255, 0, 0));
                ++count;
            }
        }
    }
    return count;
}

} // namespace

class tst_TrackPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_data();
    void picture();
    void comparisonSeesDifferences();
};

void tst_TrackPictures::picture_data()
{
    QTest::addColumn<QImage>("actual");

    const QList<std::pair<const char *, Scene>> scenes = {
        {"lines", lines},
        {"pen-styles", penStyles},
        {"arrows", arrows},
        {"markers", markers},
        {"markers-foreground", markersInForeground},
        {"polygon-with-enclaves", polygonWithEnclaves},
        {"normal", normal},
        {"foreground", foreground},
        {"quick-and-dirty", quickAndDirty},
        {"crop", crop},
        {"date-line-eastward", dateLineEastward},
        {"date-line-westward", dateLineWestward},
        {"date-line-at-the-edges", dateLineAtTheEdges},
        {"three-world-widths", threeWorldWidths},
        {"smoothing", smoothing},
        {"high-density", highDensity},
    };
    for (const auto &[name, scene] : scenes)
        QTest::newRow(name) << scene();
}

void tst_TrackPictures::picture()
{
    QFETCH(QImage, actual);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const QString goldenFile = KelTestSupport::dataFile(QStringLiteral("golden/%1.png").arg(name));
    if (qEnvironmentVariableIsSet("KEL_UPDATE_GOLDEN")) {
        QVERIFY2(actual.save(goldenFile), qPrintable(goldenFile));
        QFAIL("The golden picture was overwritten. Look at it.");
    }

    const QImage golden(goldenFile);
    QVERIFY2(!golden.isNull(), qPrintable(goldenFile));
    QCOMPARE(actual.size(), golden.size());
    QImage differences;
    const int count = countDifferences(actual, golden, &differences);
    if (count > MOST_DIFFERENT_PIXELS) {
        const QDir folder(QCoreApplication::applicationDirPath() + QStringLiteral("/pictures"));
        folder.mkpath(QStringLiteral("."));
        actual.save(folder.filePath(name + QStringLiteral(".actual.png")));
        differences.save(folder.filePath(name + QStringLiteral(".differences.png")));
        QFAIL(qPrintable(QStringLiteral("%1 pixels differ, see %2").arg(count).arg(folder.path())));
    }
}

void tst_TrackPictures::comparisonSeesDifferences()
{
    // A test of the test: a line one pixel lower, and the wrong picture, must be noticed.
    const auto at = [](double y) {
        return render({configured(trackThrough({QPointF(20, y), QPointF(300, y)}), line(Qt::black, 4))});
    };
    QImage differences;
    QCOMPARE(countDifferences(at(50), at(50), &differences), 0);
    QVERIFY(countDifferences(at(50), at(51), &differences) > MOST_DIFFERENT_PIXELS);
    QVERIFY(countDifferences(normal(), foreground(), &differences) > MOST_DIFFERENT_PIXELS);
    QVERIFY(countDifferences(dateLineEastward(), dateLineWestward(), &differences) > MOST_DIFFERENT_PIXELS);
}

QTEST_MAIN(tst_TrackPictures)
#include "tst_TrackPictures.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelWorldMap.h"
#include "KelWorldMapPainter.h"

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QtTest>

#include <cmath>
#include <numbers>

/// The built-in world: that its data are whole, and that every place lies where it belongs.
class tst_KelWorldMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCompiledInDataAreComplete();
    void outlinesHaveBoundsThatHoldTheirPoints();
    void damagedDataGiveAnEmptyMap_data();
    void damagedDataGiveAnEmptyMap();
    void levelFollowsTheScale_data();
    void levelFollowsTheScale();
    void placesAreLandOrSea_data();
    void placesAreLandOrSea();
    void noSeamWhereLandWasCutAtTheDateLine();
    void everyCopyOfTheWorldIsDrawn();
    void antarcticaReachesTheLowerEdge();
    void zoomedFarInLandFillsThePicture();
    void graticuleStep_data();
    void graticuleStep();
    void meridianStep_data();
    void meridianStep();
    void graticuleLabel_data();
    void graticuleLabel();
    void imagesGetThePaintersPixels_data();
    void imagesGetThePaintersPixels();
    void onlyThePictureIsPainted_data();
    void onlyThePictureIsPainted();
    void outlinesDoNotCoverSmallWorlds_data();
    void outlinesDoNotCoverSmallWorlds();
    void painterKeepsItsState();
};

namespace
{

const KelWorldMapColors COLORS = KelWorldMapColors::light();

double mercator(double latitude)
{
    return 0.5 - std::log(std::tan((90.0 + latitude) * std::numbers::pi / 360.0)) / (2.0 * std::numbers::pi);
}

/// A frame with the place in the middle of the picture.
KelWorldMapFrame frameAround(double latitude, double longitude, const QSizeF &size, double pixelsPerDegree)
{
    KelWorldMapFrame frame;
    frame.size = size;
    frame.worldSize = pixelsPerDegree * 360.0;
    frame.origin = QPointF(size.width() / 2 - (longitude + 180.0) / 360.0 * frame.worldSize,
                           size.height() / 2 - mercator(latitude) * frame.worldSize);
    return frame;
}

/// Land and sea only, so that pixels can be compared: coasts, borders and graticule in the colour of the land below.
KelWorldMapColors plain()
{
    KelWorldMapColors colors = COLORS;
    colors.coast = colors.shallows = colors.border = colors.graticule = colors.label = Qt::transparent;
    return colors;
}

QImage paint(const KelWorldMapFrame &frame, const KelWorldMapColors &colors)
{
    QImage image(frame.size.toSize(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    KelWorldMapPainter(frame, 1.0, colors).paint(painter);
    return image;
}

bool isLand(const KelWorldMapFrame &frame, const QPoint &pixel)
{
    return paint(frame, plain()).pixelColor(pixel) == COLORS.land;
}

} // namespace

void tst_KelWorldMap::theCompiledInDataAreComplete()
{
    const KelWorldMap &map = KelWorldMap::instance();
    int kinds[4] = {};
    for (const KelWorldMap::Outline &outline : map.outlines())
        ++kinds[outline.kind];
    QVERIFY(kinds[KelWorldMap::Land] > 2000);
    QCOMPARE(kinds[KelWorldMap::Hole], 1); // the Caspian Sea
    QCOMPARE(kinds[KelWorldMap::PolarLand], 1);
    QVERIFY(kinds[KelWorldMap::Border] > 200);
    QCOMPARE(KelWorldMap::credit(), QStringLiteral("Made with Natural Earth."));
}

void tst_KelWorldMap::outlinesHaveBoundsThatHoldTheirPoints()
{
    for (const KelWorldMap::Outline &outline : KelWorldMap::instance().outlines()) {
        QVERIFY(outline.vertices.size() >= (outline.kind == KelWorldMap::Border ? 2U : 3U));
        double previous = outline.vertices.front().x;
        for (const KelWorldMap::Vertex &vertex : outline.vertices) {
            QVERIFY(std::isfinite(vertex.x) && std::isfinite(vertex.y));
            QVERIFY(vertex.x >= outline.west && vertex.x <= outline.east);
            QVERIFY(vertex.y >= outline.north && vertex.y <= outline.south);
            // No jump across the world at the date line.
            QVERIFY(std::abs(vertex.x - previous) < 0.5);
            previous = vertex.x;
        }
    }
}

void tst_KelWorldMap::damagedDataGiveAnEmptyMap_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("another file") << QByteArray("GIF89a");
    QTest::newRow("head only") << QByteArray("KELMAP1\n");
    QTest::newRow("not packed") << QByteArray("KELMAP1\nabcdefgh");
    QTest::newRow("empty") << QByteArray("KELMAP1\n") + qCompress(QByteArray());
    QTest::newRow("more outlines than bytes") << QByteArray("KELMAP1\n") + qCompress(QByteArray("\x10\x7f\x00", 3));
    QTest::newRow("points missing") << QByteArray("KELMAP1\n") + qCompress(QByteArray("\x10\x01\x00\x00\x04\x00", 6));
    QTest::newRow("unknown kind") << QByteArray("KELMAP1\n")
            + qCompress(QByteArray("\x10\x01\x04\x00\x01\x00\x02\x02", 8));
    QTest::newRow("something left over") << QByteArray("KELMAP1\n")
            + qCompress(QByteArray("\x10\x01\x00\x00\x01\x00\x02\x02\x00", 9));
}

void tst_KelWorldMap::damagedDataGiveAnEmptyMap()
{
    QFETCH(QByteArray, data);
    QVERIFY(KelWorldMap(data).outlines().empty());
    // The whole one of the rows above, to show that they fail for their own reason.
    QCOMPARE(KelWorldMap(QByteArray("KELMAP1\n") + qCompress(QByteArray("\x10\x01\x00\x00\x01\x00\x02\x02", 8)))
                 .outlines()
                 .size(),
             1U);
}

void tst_KelWorldMap::levelFollowsTheScale_data()
{
    QTest::addColumn<double>("pixelsPerDegree");
    QTest::addColumn<int>("level");

    QTest::newRow("thumbnail of the world") << 1.0 << 0;
    QTest::newRow("the world on a screen") << 5.0 << 0;
    QTest::newRow("a continent") << 15.0 << 1;
    QTest::newRow("a country") << 40.0 << 2;
    QTest::newRow("a region") << 60.0 << 3;
    QTest::newRow("a street") << 1e6 << 3;
}

void tst_KelWorldMap::levelFollowsTheScale()
{
    QFETCH(double, pixelsPerDegree);
    QTEST(KelWorldMap::levelForScale(pixelsPerDegree), "level");
}

void tst_KelWorldMap::placesAreLandOrSea_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<bool>("land");

    QTest::newRow("Oldenburg") << 53.14 << 8.21 << true;
    QTest::newRow("German Bight") << 54.2 << 7.2 << false;
    QTest::newRow("Sahara") << 23.0 << 10.0 << true;
    QTest::newRow("Gulf of Guinea, 0/0") << 0.0 << 0.0 << false;
    QTest::newRow("Caspian Sea, a hole in Asia") << 42.0 << 50.5 << false;
    QTest::newRow("North Island") << -38.8 << 175.8 << true;
    QTest::newRow("South Island") << -43.8 << 170.8 << true;
    QTest::newRow("Tasman Sea") << -38.0 << 162.0 << false;
    QTest::newRow("Chukotka, east of the date line") << 67.0 << -178.0 << true;
    QTest::newRow("Chukotka, west of the date line") << 68.0 << 178.0 << true;
    QTest::newRow("Viti Levu") << -17.8 << 178.0 << true;
    QTest::newRow("Lesotho") << -29.5 << 28.2 << true;
    QTest::newRow("Greenland's ice") << 75.0 << -40.0 << true;
    QTest::newRow("Arctic Ocean") << 84.5 << 0.0 << false;
    QTest::newRow("Antarctica") << -80.0 << 60.0 << true;
    QTest::newRow("Southern Ocean") << -60.0 << 0.0 << false;
}

void tst_KelWorldMap::placesAreLandOrSea()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(bool, land);

    // Seen from far and from near.
    for (const double pixelsPerDegree : {4.0, 100.0, 1e5}) {
        const KelWorldMapFrame frame = frameAround(latitude, longitude, QSizeF(41, 41), pixelsPerDegree);
        QCOMPARE(isLand(frame, QPoint(20, 20)), land);
    }
}

void tst_KelWorldMap::noSeamWhereLandWasCutAtTheDateLine()
{
    // In Chukotka, and where the ring around Antarctica closes.
    for (const double latitude : {67.5, -85.0}) {
        const KelWorldMapFrame frame = frameAround(latitude, 180.0, QSizeF(60, 9), 20.0);
        const QImage image = paint(frame, plain());
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(image.pixelColor(x, 4), COLORS.land);
    }
    // Nor a coast where there is none.
    KelWorldMapColors colors = plain();
    colors.coast = Qt::red;
    const QImage image = paint(frameAround(67.5, 180.0, QSizeF(60, 9), 20.0), colors);
    for (int x = 0; x < image.width(); ++x)
        QCOMPARE(image.pixelColor(x, 4), COLORS.land);
}

void tst_KelWorldMap::everyCopyOfTheWorldIsDrawn()
{
    const double pixelsPerDegree = 1.0;
    const KelWorldMapFrame frame = frameAround(25.0, 10.0, QSizeF(1200, 101), pixelsPerDegree);
    const QImage image = paint(frame, plain());
    for (const int world : {-1, 0, 1})
        QCOMPARE(image.pixelColor(600 + world * 360, 50), COLORS.land); // the Sahara
    for (const int world : {-1, 0, 1})
        QCOMPARE(image.pixelColor(600 - 60 + world * 360, 50), COLORS.sea); // the Atlantic
}

void tst_KelWorldMap::antarcticaReachesTheLowerEdge()
{
    // The picture is taller than the world.
    const KelWorldMapFrame frame = frameAround(0.0, 0.0, QSizeF(300, 600), 1.0);
    const QImage image = paint(frame, plain());
    for (int x = 0; x < image.width(); ++x)
        QCOMPARE(image.pixelColor(x, 599), COLORS.land);
    QCOMPARE(image.pixelColor(150, 0), COLORS.sea);
}

void tst_KelWorldMap::zoomedFarInLandFillsThePicture()
{
    const QImage image = paint(frameAround(53.14, 8.21, QSizeF(200, 100), 1e7), plain());
    for (const QPoint &pixel : {QPoint(0, 0), QPoint(199, 0), QPoint(0, 99), QPoint(199, 99), QPoint(100, 50)})
        QCOMPARE(image.pixelColor(pixel), COLORS.land);
}

void tst_KelWorldMap::graticuleStep_data()
{
    QTest::addColumn<double>("pixelsPerDegree");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("step");

    QTest::newRow("a tiny world keeps the widest") << 0.5 << 1.0 << 30.0;
    QTest::newRow("the world") << 4.4 << 1.0 << 30.0;
    QTest::newRow("20 degrees are just wide enough") << 5.25 << 1.0 << 20.0;
    QTest::newRow("20 degrees are just too narrow") << 5.24 << 1.0 << 30.0;
    QTest::newRow("one degree") << 105.0 << 1.0 << 1.0;
    QTest::newRow("half a degree") << 210.0 << 1.0 << 0.5;
    QTest::newRow("twice the density, the same step") << 210.0 << 2.0 << 1.0;
    QTest::newRow("a street") << 1e9 << 1.0 << 1.0 / 3600;
}

void tst_KelWorldMap::graticuleStep()
{
    QFETCH(double, pixelsPerDegree);
    QFETCH(double, factor);
    QTEST(KelWorldMapPainter(frameAround(0, 0, QSizeF(100, 100), pixelsPerDegree), factor, COLORS).graticuleStep(),
          "step");
}

void tst_KelWorldMap::meridianStep_data()
{
    QTest::addColumn<double>("pixelsPerDegree");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("step");

    // Each label needs 55 pixels.
    QTest::newRow("the same as the parallels") << 5.25 << 1.0 << 20.0;
    QTest::newRow("30 degrees are just wide enough") << 1.84 << 1.0 << 30.0;
    QTest::newRow("30 degrees are just too narrow") << 1.83 << 1.0 << 60.0;
    QTest::newRow("60 degrees are just too narrow") << 0.91 << 1.0 << 90.0;
    QTest::newRow("90 degrees are just too narrow") << 0.61 << 1.0 << 180.0;
    QTest::newRow("worlds like stamps") << 0.01 << 1.0 << 180.0;
    QTest::newRow("twice the density") << 3.66 << 2.0 << 60.0;
    QTest::newRow("a street") << 1e9 << 1.0 << 1.0 / 3600;
}

void tst_KelWorldMap::meridianStep()
{
    QFETCH(double, pixelsPerDegree);
    QFETCH(double, factor);
    QTEST(KelWorldMapPainter(frameAround(0, 0, QSizeF(100, 100), pixelsPerDegree), factor, COLORS).meridianStep(),
          "step");
}

void tst_KelWorldMap::graticuleLabel_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("step");
    QTest::addColumn<QString>("label");

    QTest::newRow("whole degrees") << 53.0 << 1.0 << QStringLiteral("53°E");
    QTest::newRow("west") << -120.0 << 30.0 << QStringLiteral("120°W");
    QTest::newRow("Greenwich") << 0.0 << 30.0 << QStringLiteral("0°");
    QTest::newRow("date line") << 180.0 << 30.0 << QStringLiteral("180°");
    QTest::newRow("minutes") << 8.2 << 1.0 / 30 << QStringLiteral("8°12′E");
    QTest::newRow("seconds") << -8.21 << 1.0 / 360 << QStringLiteral("8°12′36″W");
    QTest::newRow("a third of a degree, rounded well") << 1.0 / 3 << 1.0 / 3 << QStringLiteral("0°20′E");
}

void tst_KelWorldMap::graticuleLabel()
{
    QFETCH(double, degrees);
    QFETCH(double, step);
    QTEST(KelWorldMapPainter::graticuleLabel(degrees, step, 'E', 'W'), "label");
}

void tst_KelWorldMap::imagesGetThePaintersPixels_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<double>("pixelsPerDegree");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QImage::Format>("format");

    const QImage::Format premultiplied = QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("lines of less than a pixel") << QSizeF(300, 200) << 10.0 << 0.1 << premultiplied;
    QTest::newRow("ordinary") << QSizeF(300, 200) << 10.0 << 1.0 << premultiplied;
    QTest::newRow("coasts of a pixel") << QSizeF(300, 200) << 10.0 << 1.0 / 0.9 << premultiplied;
    QTest::newRow("wide coasts") << QSizeF(300, 200) << 10.0 << 3.0 << premultiplied;
    QTest::newRow("largest factor") << QSizeF(300, 200) << 10.0 << 20.0 << premultiplied;
    QTest::newRow("near") << QSizeF(300, 200) << 1000.0 << 2.0 << premultiplied;
    QTest::newRow("as wide as is filled at once") << QSizeF(1024, 60) << 2.0 << 1.0 << premultiplied;
    QTest::newRow("wider than is filled at once") << QSizeF(1025, 60) << 2.0 << 1.0 << premultiplied;
    QTest::newRow("several copies, filled in bands") << QSizeF(2500, 60) << 2.0 << 2.0 << premultiplied;
    QTest::newRow("pixels of another kind") << QSizeF(300, 200) << 10.0 << 2.0 << QImage::Format_RGB32;
}

void tst_KelWorldMap::imagesGetThePaintersPixels()
{
    QFETCH(QSizeF, size);
    QFETCH(double, pixelsPerDegree);
    QFETCH(double, factor);
    QFETCH(QImage::Format, format);

    const KelWorldMapPainter map(frameAround(40.0, 20.0, size, pixelsPerDegree), factor, COLORS);
    QImage image(size.toSize(), format);
    image.fill(Qt::transparent);
    QImage expected = image;
    {
        QPainter painter(&image);
        map.paint(painter);
    }
    {
        QPainter painter(&expected);
        painter.setClipRect(expected.rect()); // the painter paints everything itself
        map.paint(painter);
    }
    QCOMPARE(image, expected);
}

void tst_KelWorldMap::onlyThePictureIsPainted_data()
{
    QTest::addColumn<QPoint>("offset");

    QTest::newRow("in the corner of a larger image") << QPoint(0, 0);
    QTest::newRow("in the middle of a larger image") << QPoint(20, 30);
}

void tst_KelWorldMap::onlyThePictureIsPainted()
{
    QFETCH(QPoint, offset);

    QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::magenta);
    {
        QPainter painter(&image);
        painter.translate(offset);
        // Coasts everywhere, with lines that reach beyond the picture's edges.
        KelWorldMapPainter(frameAround(38.0, 24.0, QSizeF(100, 100), 20.0), 4.0, COLORS).paint(painter);
    }
    const QRect painted(offset, QSize(100, 100));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(image.pixelColor(x, y) != QColor(Qt::magenta), painted.contains(x, y));
    }
}

void tst_KelWorldMap::outlinesDoNotCoverSmallWorlds_data()
{
    QTest::addColumn<double>("worldSize");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("sameAs");
    QTest::addColumn<bool>("same");

    QTest::newRow("40 pixels are needed for each pixel of width") << 80.0 << 20.0 << 2.0 << true;
    QTest::newRow("just enough of them") << 800.0 << 20.0 << 19.9 << false;
    QTest::newRow("not quite enough of them") << 796.0 << 20.0 << 19.9 << true;
    QTest::newRow("never narrower than ordinary lines") << 20.0 << 20.0 << 1.0 << true;
    QTest::newRow("small factors count") << 20.0 << 0.9 << 1.0 << false;
}

void tst_KelWorldMap::outlinesDoNotCoverSmallWorlds()
{
    QFETCH(double, worldSize);
    QFETCH(double, factor);
    QFETCH(double, sameAs);
    QFETCH(bool, same);

    KelWorldMapColors colors = plain();
    colors.shallows = Qt::red;
    // The wide ocean.
    const KelWorldMapFrame frame = frameAround(-20.0, -120.0, QSizeF(200, 100), worldSize / 360.0);
    const auto picture = [&](double lineFactor) {
        QImage image(200, 100, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        KelWorldMapPainter(frame, lineFactor, colors).paint(painter);
        return image;
    };
    QCOMPARE(picture(factor) == picture(sameAs), same);
}

void tst_KelWorldMap::painterKeepsItsState()
{
    QImage image(50, 50, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::red, 3));
    painter.setBrush(Qt::green);
    KelWorldMapPainter(frameAround(0, 0, QSizeF(50, 50), 1.0), 1.0, COLORS).paint(painter);
    QCOMPARE(painter.pen(), QPen(Qt::red, 3));
    QCOMPARE(painter.brush(), QBrush(Qt::green));
    QVERIFY(!painter.hasClipping());
}

QTEST_MAIN(tst_KelWorldMap)
#include "tst_KelWorldMap.moc"

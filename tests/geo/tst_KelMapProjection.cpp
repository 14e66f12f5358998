// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>

#include <QtTest>

#include <cmath>
#include <limits>
#include <type_traits>

namespace
{

constexpr double greatestInt = std::numeric_limits<int>::max();
constexpr double leastInt = std::numeric_limits<int>::min();

KelGeoPositionRect rect(double south, double west, double north, double east)
{
    return KelGeoPositionRect(KelLatitudeRange(south, north), KelLongitudeRange(west, east));
}

bool near(double a, double b, double tolerance = 1e-9)
{
    return std::abs(a - b) <= tolerance;
}

/// A projection in which x is the longitude plus 180, and y runs from 0 at the northern end of the world to 360.
KelMapProjection wholeWorld()
{
    return KelMapProjection(rect(-60.0, -180.0, 60.0, 180.0), QSize(360, 360));
}

} // namespace

class tst_KelMapProjection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void latitudes_data();
    void latitudes();
    void longitudes_data();
    void longitudes();
    void poles();
    void fitting_data();
    void fitting();
    void fittedCornersAreTheImageCorners();
    void fittingIsWithoutDistortion();
    void fittingAcrossTheDateLine();
    void adjustMapData();
    void pixelsAreTruncatedTowardZero_data();
    void pixelsAreTruncatedTowardZero();
    void pixelsThatFitNoInteger();
    void projectate();
    void convert();
    void convertBeyondTheDateLine();
    void roundTrip();
    void invalidInput();
    void widthTimesFullTurnIs32Bit();
    void resultBoundingBoxIsFolded();
    void epsilonEqual_data();
    void epsilonEqual();
};

void tst_KelMapProjection::latitudes_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("y");

    QTest::newRow("equator") << 0.0 << 0.5;
    QTest::newRow("northern end of the square") << 85.0511287798066 << 0.0;
    QTest::newRow("southern end of the square") << -85.0511287798066 << 1.0;
    // atan(sinh(pi / 2)), a quarter of the way up
    QTest::newRow("a quarter from the north") << 66.51326044311186 << 0.25;
    QTest::newRow("a quarter from the south") << -66.51326044311186 << 0.75;
}

void tst_KelMapProjection::latitudes()
{
    QFETCH(double, latitude);
    QFETCH(double, y);
    QVERIFY(near(KelMapProjection::latitudeToNormalized(latitude), y, 1e-14));
    QVERIFY(near(KelMapProjection::normalizedToLatitude(y), latitude, 1e-12));
}

void tst_KelMapProjection::longitudes_data()
{
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("x");

    QTest::newRow("western end") << -180.0 << 0.0;
    QTest::newRow("prime meridian") << 0.0 << 0.5;
    QTest::newRow("eastern end") << 180.0 << 1.0;
    QTest::newRow("beyond the date line") << 270.0 << 1.25;
}

void tst_KelMapProjection::longitudes()
{
    QFETCH(double, longitude);
    QFETCH(double, x);
    QVERIFY(KelMapProjection::longitudeToNormalized(longitude) == x);
    QVERIFY(KelMapProjection::normalizedToLongitude(x) == longitude);
}

void tst_KelMapProjection::poles()
{
    QVERIFY(KelMapProjection::latitudeToNormalized(90.0) == -std::numeric_limits<double>::infinity());
    QVERIFY(KelMapProjection::latitudeToNormalized(-90.0) > 5.0);
    QVERIFY(std::isfinite(
        KelMapProjection::latitudeToNormalized(KelLatitude(90.0).catchOutOfBound().decimalDegrees())));
}

void tst_KelMapProjection::fitting_data()
{
    QTest::addColumn<KelGeoPositionRect>("area");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("east");

    const KelGeoPositionRect area = rect(0.0, 0.0, 10.0, 10.0);
    // The area's Mercator height is that of 10.05115966 degrees of longitude.
    QTest::newRow("image is wider: longitudes grow")
        << area << QSize(1000, 500) << 0.0 << -5.051159656630 << 10.0 << 15.051159656630;
    QTest::newRow("image is taller: latitudes grow")
        << area << QSize(500, 1000) << -4.968182629379 << 0.0 << 14.856257636844 << 10.0;
    QTest::newRow("square image is a little wider")
        << area << QSize(500, 500) << 0.0 << -0.025579828315 << 10.0 << 10.025579828315;
    QTest::newRow("whole world, tall") << rect(-60.0, -180.0, 60.0, 180.0) << QSize(360, 360) << -85.051128779807
                                       << -180.0 << 85.051128779807 << 180.0;
}

void tst_KelMapProjection::fitting()
{
    QFETCH(KelGeoPositionRect, area);
    QFETCH(QSize, size);
    QFETCH(double, south);
    QFETCH(double, west);
    QFETCH(double, north);
    QFETCH(double, east);
    const KelGeoPositionRect fitted = KelMapProjection(area, size).resultBoundingBox();
    QVERIFY(near(fitted.south().decimalDegrees(), south));
    QVERIFY(near(fitted.west().decimalDegrees(), west));
    QVERIFY(near(fitted.north().decimalDegrees(), north));
    QVERIFY(near(fitted.east().decimalDegrees(), east));
}

void tst_KelMapProjection::fittedCornersAreTheImageCorners()
{
    for (const QSize size : {QSize(1000, 500), QSize(500, 1000), QSize(640, 480)}) {
        const KelMapProjection projection(rect(40.0, -10.0, 60.0, 30.0), size);
        const KelGeoPositionRect fitted = projection.resultBoundingBox();
        const KelGeoPosition northWest = projection.convert(QPoint(0, 0));
        QVERIFY(near(northWest.latitude().decimalDegrees(), fitted.north().decimalDegrees()));
        QVERIFY(near(northWest.longitude().decimalDegrees(), fitted.west().decimalDegrees()));
        const KelGeoPosition southEast = projection.convert(QPoint(size.width(), size.height()));
        QVERIFY(near(southEast.latitude().decimalDegrees(), fitted.south().decimalDegrees()));
        QVERIFY(near(southEast.longitude().decimalDegrees(), fitted.east().decimalDegrees()));
        QCOMPARE(projection.projectate(northWest), QPointF(0.0, 0.0));
        const QPointF corner = projection.projectate(southEast);
        QVERIFY(near(corner.x(), size.width(), 1.0) && near(corner.y(), size.height(), 1.0));
    }
}

void tst_KelMapProjection::fittingIsWithoutDistortion()
{
    const KelMapProjection projection(rect(40.0, -10.0, 60.0, 30.0), QSize(800, 300));
    const KelGeoPosition a = projection.convert(QPoint(100, 100));
    const KelGeoPosition b = projection.convert(QPoint(200, 200));
    const double x = KelMapProjection::longitudeToNormalized(b.longitude().decimalDegrees())
        - KelMapProjection::longitudeToNormalized(a.longitude().decimalDegrees());
    const double y = KelMapProjection::latitudeToNormalized(b.latitude().decimalDegrees())
        - KelMapProjection::latitudeToNormalized(a.latitude().decimalDegrees());
    QVERIFY(near(x, y, 1e-12));
}

void tst_KelMapProjection::fittingAcrossTheDateLine()
{
    const KelMapProjection projection(rect(-10.0, 170.0, 10.0, -170.0), QSize(100, 1000));
    const KelGeoPositionRect fitted = projection.resultBoundingBox();
    QCOMPARE(fitted.west(), KelLongitude(170.0));
    QCOMPARE(fitted.east(), KelLongitude(-170.0));
    // Inside, the area goes on beyond 180.
    QVERIFY(near(projection.convert(QPoint(100, 500)).longitude().decimalDegrees(), 190.0));
    QVERIFY(near(projection.convert(QPoint(50, 500)).longitude().decimalDegrees(), 180.0));
    QCOMPARE(projection.getPixelCoordinateByMapCoordinate(0.0, 185.1).x(), 75.0);
}

void tst_KelMapProjection::adjustMapData()
{
    KelMapProjection projection(rect(0.0, 0.0, 10.0, 10.0), QSize(360, 360));
    projection.adjustMapData(rect(-60.0, -180.0, 60.0, 180.0));
    QCOMPARE(projection.getPixelCoordinateByMapCoordinate(0.0, -79.5).x(), 100.0);
    QVERIFY(near(projection.resultBoundingBox().north().decimalDegrees(), 85.051128779807));
}

void tst_KelMapProjection::pixelsAreTruncatedTowardZero_data()
{
    QTest::addColumn<double>("pixel");
    QTest::addColumn<double>("truncated");

    QTest::newRow("12.9") << 12.9 << 12.0;
    QTest::newRow("0.5") << 0.5 << 0.0;
    QTest::newRow("-0.5") << -0.5 << 0.0;
    QTest::newRow("-12.9") << -12.9 << -12.0;
    QTest::newRow("100.5") << 100.5 << 100.0;
}

void tst_KelMapProjection::pixelsAreTruncatedTowardZero()
{
    QFETCH(double, pixel);
    QFETCH(double, truncated);
    const double longitude = pixel - 180.0;
    const double latitude = KelMapProjection::normalizedToLatitude(pixel / 360.0);
    QCOMPARE(wholeWorld().getPixelCoordinateByMapCoordinate(latitude, longitude), QPointF(truncated, truncated));
}

void tst_KelMapProjection::pixelsThatFitNoInteger()
{
    const KelMapProjection projection = wholeWorld();
    QCOMPARE(projection.getPixelCoordinateByMapCoordinate(90.0, 1e300), QPointF(greatestInt, leastInt));
    QCOMPARE(projection.getPixelCoordinateByMapCoordinate(90.0, -1e300), QPointF(leastInt, leastInt));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QCOMPARE(projection.getPixelCoordinateByMapCoordinate(nan, nan), QPointF(0.0, 0.0));
}

void tst_KelMapProjection::projectate()
{
    const KelMapProjection projection(rect(40.0, -10.0, 60.0, 30.0), QSize(640, 480));
    QCOMPARE(projection.projectate(KelGeoPosition(53.0, 8.0)),
             projection.getPixelCoordinateByMapCoordinate(53.0, 8.0));
    QCOMPARE(wholeWorld().projectate(KelGeoPosition(66.51326, 8.25)), QPointF(188.0, 90.0));
}

void tst_KelMapProjection::convert()
{
    const KelGeoPosition position = wholeWorld().convert(QPoint(90, 90));
    QVERIFY(near(position.longitude().decimalDegrees(), -90.0));
    QVERIFY(near(position.latitude().decimalDegrees(), 66.51326044311186));
}

void tst_KelMapProjection::convertBeyondTheDateLine()
{
    QVERIFY(near(wholeWorld().convert(QPoint(370, 180)).longitude().decimalDegrees(), 190.0));
    QVERIFY(near(wholeWorld().convert(QPoint(-10, 180)).longitude().decimalDegrees(), -190.0));
}

void tst_KelMapProjection::roundTrip()
{
    const KelMapProjection projection(rect(40.0, -10.0, 60.0, 30.0), QSize(640, 480));
    for (int x = 0; x <= 640; x += 64) {
        for (int y = 0; y <= 480; y += 48) {
            const QPointF pixel = projection.projectate(projection.convert(QPoint(x, y)));
            QVERIFY(near(pixel.x(), x, 1.0) && near(pixel.y(), y, 1.0));
        }
    }
}

void tst_KelMapProjection::invalidInput()
{
    // Whatever comes out, pixels are whole 32-bit numbers.
    const KelMapProjection unset(KelGeoPositionRect(), QSize(640, 480));
    const KelMapProjection noHeight(rect(40.0, -10.0, 60.0, 30.0), QSize(640, 0));
    const KelMapProjection noSize(rect(40.0, -10.0, 60.0, 30.0), QSize());
    const KelMapProjection noSpan(rect(40.0, 8.0, 60.0, 8.0), QSize(640, 480));
    for (const KelMapProjection &projection : {unset, noHeight, noSize, noSpan}) {
        const QPointF pixel = projection.getPixelCoordinateByMapCoordinate(53.0, 8.0);
        QVERIFY(pixel.x() >= leastInt && pixel.x() <= greatestInt && pixel.x() == std::trunc(pixel.x()));
        QVERIFY(pixel.y() >= leastInt && pixel.y() <= greatestInt && pixel.y() == std::trunc(pixel.y()));
    }
}

void tst_KelMapProjection::widthTimesFullTurnIs32Bit()
{
    // 6000000 * 360 - 2^32 = -2134967296 pixels for 360 degrees
    const KelMapProjection projection(rect(-60.0, -180.0, 60.0, 180.0), QSize(6000000, 6000000));
    QCOMPARE(projection.getPixelCoordinateByMapCoordinate(0.0, 0.0).x(), -2965232.0);
}

void tst_KelMapProjection::resultBoundingBoxIsFolded()
{
    // Twice as wide as the world: the edges are wrapped.
    const KelMapProjection projection(rect(-60.0, -180.0, 60.0, 180.0), QSize(1000, 100));
    const KelGeoPositionRect fitted = projection.resultBoundingBox();
    QVERIFY(fitted.isValid());
    QVERIFY(fitted.west().isInValidRange() && fitted.east().isInValidRange());
    QVERIFY(near(projection.convert(QPoint(0, 50)).longitude().normalized().decimalDegrees(),
                 fitted.west().decimalDegrees()));
    QVERIFY(projection.convert(QPoint(0, 50)).longitude() < -180.0);

    // Latitudes on the far side of the globe: half turns are taken off.
    const KelGeoPositionRect farSide =
        KelMapProjection(rect(290.0, 0.0, 300.0, 10.0), QSize(1000, 100)).resultBoundingBox();
    QVERIFY(farSide.south().decimalDegrees() == -70.0);
    QVERIFY(farSide.north().decimalDegrees() == -60.0);
    QVERIFY(std::has_virtual_destructor_v<KelMapProjection>);
}

void tst_KelMapProjection::epsilonEqual_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("epsilon");
    QTest::addColumn<bool>("equal");

    QTest::newRow("same") << 8.0 << 8.0 << 0.0 << true;
    QTest::newRow("exactly epsilon apart") << 8.0 << 8.5 << 0.5 << true;
    QTest::newRow("exactly epsilon apart, the other way") << 8.5 << 8.0 << 0.5 << true;
    QTest::newRow("more than epsilon apart") << 8.0 << 8.5 << 0.499 << false;
    QTest::newRow("finer than the tolerance of angles") << 8.0 << 8.0000005 << 1e-7 << false;
}

void tst_KelMapProjection::epsilonEqual()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, epsilon);
    QFETCH(bool, equal);
    QCOMPARE(KelMapProjection::epsilonEqual(KelGeoArc(a), KelGeoArc(b), epsilon), equal);
    QCOMPARE(KelMapProjection::epsilonEqual(KelLatitude(a), KelLatitude(b), epsilon), equal);
    QCOMPARE(KelMapProjection::epsilonEqual(KelGeoPosition(a, 1.0), KelGeoPosition(b, 1.0), epsilon), equal);
    QCOMPARE(KelMapProjection::epsilonEqual(KelGeoPosition(1.0, a), KelGeoPosition(1.0, b), epsilon), equal);
    QCOMPARE(KelMapProjection::epsilonEqual(KelGeoPosition(a, a), KelGeoPosition(b, b), epsilon), equal);
}

QTEST_GUILESS_MAIN(tst_KelMapProjection)
#include "tst_KelMapProjection.moc"

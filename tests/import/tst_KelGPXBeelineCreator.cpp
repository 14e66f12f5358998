// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXBeelineCreator.h>
#include <KelGPXTrack.h>
#include <KelGeoPositionList.h>
#include <KelRecordingTranslator.h>

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <limits>

class tst_KelGPXBeelineCreator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void trackOfTwoPoints_data();
    void trackOfTwoPoints();
    void middlePointBulgesPoleward_data();
    void middlePointBulgesPoleward();
    void stepsAreShorterThan200Kilometres_data();
    void stepsAreShorterThan200Kilometres();
    void pointsLieOnTheGreatCircle();
    void pointsComeInTheOrderOfTravel();
    void findLogicalCenterLongitude_data();
    void findLogicalCenterLongitude();
    void estimateOptimalLatitude_data();
    void estimateOptimalLatitude();
    void twentyRounds_data();
    void twentyRounds();
    void waysOverThePoleAreBentAt80Degrees_data();
    void waysOverThePoleAreBentAt80Degrees();
    void halvingEndsForAnyPositions_data();
    void halvingEndsForAnyPositions();
    void boundsNeverTouchARealWay();
    void trackPointsCarryElevation0AndTheCurrentTime();
    void theTimeIsAskedAnewForEachPoint();
    void createBeeline();
    void descriptionIsTranslated();
};

namespace
{

/// The angle in degrees between a position and the plane of the great circle through two others.
double degreesOffTheGreatCircle(const KelGeoPosition &position, const KelGeoPosition &a, const KelGeoPosition &b)
{
    struct Vector {
        double x, y, z;
    };
    const auto vector = [](const KelGeoPosition &p) {
        const double latitude = qDegreesToRadians(p.latitude().decimalDegrees());
        const double longitude = qDegreesToRadians(p.longitude().decimalDegrees());
        return Vector{std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
                      std::sin(latitude)};
    };
    const Vector u = vector(a);
    const Vector v = vector(b);
    const Vector p = vector(position);
    const Vector normal{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
    const double length = std::hypot(normal.x, normal.y, normal.z);
    return qRadiansToDegrees(std::asin((normal.x * p.x + normal.y * p.y + normal.z * p.z) / length));
}

} // namespace

void tst_KelGPXBeelineCreator::trackOfTwoPoints_data()
{
    QTest::addColumn<KelGeoPosition>("start");
    QTest::addColumn<KelGeoPosition>("end");

    QTest::newRow("150 km apart") << KelGeoPosition(50.0, 8.0) << KelGeoPosition(50.0, 10.098);
    QTest::newRow("just below 200 km, along the equator") << KelGeoPosition(0.0, 1.0) << KelGeoPosition(0.0, 2.7989);
    QTest::newRow("same longitude, far apart") << KelGeoPosition(10.0, 5.0) << KelGeoPosition(60.0, 5.0);
    QTest::newRow("same longitude within its tolerance")
        << KelGeoPosition(10.0, 5.0) << KelGeoPosition(60.0, 5.0000009);
    QTest::newRow("the same position twice") << KelGeoPosition(10.0, 5.0) << KelGeoPosition(10.0, 5.0);
    QTest::newRow("short way over the date line") << KelGeoPosition(10.0, 179.5) << KelGeoPosition(10.0, -179.5);
}

void tst_KelGPXBeelineCreator::trackOfTwoPoints()
{
    QFETCH(KelGeoPosition, start);
    QFETCH(KelGeoPosition, end);
    const KelGPXBeelineCreator creator(start, end);
    QVERIFY(creator.createIntermediatePoints().isEmpty());
    const KelGeoPositionList points = creator.createPoints();
    QCOMPARE(points.size(), 2);
    QCOMPARE(points.at(0), start);
    QCOMPARE(points.at(1), end);
}

void tst_KelGPXBeelineCreator::middlePointBulgesPoleward_data()
{
    QTest::addColumn<double>("latitude");

    QTest::newRow("northern hemisphere") << 50.0;
    QTest::newRow("southern hemisphere") << -50.0;
}

void tst_KelGPXBeelineCreator::middlePointBulgesPoleward()
{
    QFETCH(double, latitude);
    const KelGeoPosition start(latitude, 0.0);
    const KelGeoPosition end(latitude, 10.0);
    QVERIFY(start.distance(end) > 700.0 && start.distance(end) < 730.0);

    const KelGeoPositionList points = KelGPXBeelineCreator(start, end).createPoints();
    // 715 km: halved to 357 km, halved to 179 km.
    QCOMPARE(points.size(), 5);
    QCOMPARE(points.at(0), start);
    QCOMPARE(points.at(2).longitude().decimalDegrees(), 5.0);
    // The crossing of the middle meridian: tan(latitude) = tan(50°) / cos(5°).
    QVERIFY(std::abs(std::abs(points.at(2).latitude().decimalDegrees()) - 50.10747) < 0.001);
    QCOMPARE(points.at(1).longitude().decimalDegrees(), 2.5);
    QCOMPARE(points.at(3).longitude().decimalDegrees(), 7.5);
    QCOMPARE(points.at(4), end);
    for (qsizetype i = 1; i < points.size() - 1; ++i)
        QVERIFY(std::abs(points.at(i).latitude().decimalDegrees()) > 50.0);
}

void tst_KelGPXBeelineCreator::stepsAreShorterThan200Kilometres_data()
{
    QTest::addColumn<KelGeoPosition>("start");
    QTest::addColumn<KelGeoPosition>("end");

    QTest::newRow("just above 200 km, along the equator") << KelGeoPosition(0.0, 1.0) << KelGeoPosition(0.0, 2.7999);
    QTest::newRow("Oldenburg to Sydney") << KelGeoPosition(53.14375, 8.214) << KelGeoPosition(-33.87, 151.21);
    QTest::newRow("Helsinki to Honolulu, over the date line") << KelGeoPosition(60.17, 24.94)
                                                              << KelGeoPosition(21.3, -157.86);
    QTest::newRow("over the date line") << KelGeoPosition(10.0, 170.0) << KelGeoPosition(10.0, -170.0);
    QTest::newRow("longitudes just beyond their tolerance")
        << KelGeoPosition(10.0, 5.0) << KelGeoPosition(60.0, 5.0000011);
}

void tst_KelGPXBeelineCreator::stepsAreShorterThan200Kilometres()
{
    QFETCH(KelGeoPosition, start);
    QFETCH(KelGeoPosition, end);
    const KelGeoPositionList points = KelGPXBeelineCreator(start, end).createPoints();
    QVERIFY(points.size() > 2);
    QCOMPARE(points.first(), start);
    QCOMPARE(points.last(), end);
    for (qsizetype i = 1; i < points.size(); ++i) {
        QVERIFY(points.at(i - 1).distance(points.at(i)) < 200.0
                || points.at(i - 1).longitude() == points.at(i).longitude());
    }
}

void tst_KelGPXBeelineCreator::pointsLieOnTheGreatCircle()
{
    const KelGeoPosition start(53.14375, 8.214);
    const KelGeoPosition end(40.64, -73.78);
    const KelGeoPositionList points = KelGPXBeelineCreator(start, end).createIntermediatePoints();
    QVERIFY(points.size() >= 31);
    for (const KelGeoPosition &point : points)
        QVERIFY2(std::abs(degreesOffTheGreatCircle(point, start, end)) < 0.01, qPrintable(point.toString(false)));
}

void tst_KelGPXBeelineCreator::pointsComeInTheOrderOfTravel()
{
    const KelGeoPositionList eastward =
        KelGPXBeelineCreator(KelGeoPosition(50.0, -20.0), KelGeoPosition(40.0, 60.0)).createPoints();
    for (qsizetype i = 1; i < eastward.size(); ++i)
        QVERIFY(eastward.at(i).isEastOf(eastward.at(i - 1)));
    const KelGeoPositionList westward =
        KelGPXBeelineCreator(KelGeoPosition(40.0, -150.0), KelGeoPosition(50.0, 120.0)).createPoints();
    for (qsizetype i = 1; i < westward.size(); ++i)
        QVERIFY(westward.at(i).isWestOf(westward.at(i - 1)));
}

void tst_KelGPXBeelineCreator::findLogicalCenterLongitude_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<double>("center");

    QTest::newRow("eastward") << 0.0 << 10.0 << 5.0;
    QTest::newRow("westward") << 10.0 << 0.0 << 5.0;
    QTest::newRow("over the date line it is 180, not 0") << 170.0 << -170.0 << 180.0;
    QTest::newRow("over the date line, nearer to its east") << 170.0 << -160.0 << -175.0;
    QTest::newRow("over the date line, nearer to its west") << -170.0 << 160.0 << 175.0;
}

void tst_KelGPXBeelineCreator::findLogicalCenterLongitude()
{
    QFETCH(double, start);
    QFETCH(double, end);
    const KelGPXBeelineCreator creator(KelGeoPosition(10.0, start), KelGeoPosition(10.0, end));
    QTEST(creator.findLogicalCenterLongitude().decimalDegrees(), "center");
}

void tst_KelGPXBeelineCreator::estimateOptimalLatitude_data()
{
    QTest::addColumn<KelGeoPosition>("start");
    QTest::addColumn<KelGeoPosition>("end");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("latitude");

    // tan(latitude) = tan(50°) / cos(5°) on the middle meridian.
    QTest::newRow("north") << KelGeoPosition(50.0, 0.0) << KelGeoPosition(50.0, 10.0) << 5.0 << 50.10747;
    QTest::newRow("south") << KelGeoPosition(-50.0, 0.0) << KelGeoPosition(-50.0, 10.0) << 5.0 << -50.10747;
    QTest::newRow("equator") << KelGeoPosition(0.0, 10.0) << KelGeoPosition(0.0, 30.0) << 20.0 << 0.0;
    QTest::newRow("on the date line") << KelGeoPosition(50.0, 175.0) << KelGeoPosition(50.0, -175.0) << 180.0
                                      << 50.10747;
}

void tst_KelGPXBeelineCreator::estimateOptimalLatitude()
{
    QFETCH(KelGeoPosition, start);
    QFETCH(KelGeoPosition, end);
    QFETCH(double, longitude);
    QFETCH(double, latitude);
    const KelGeoPosition found = KelGPXBeelineCreator(start, end).estimateOptimalLatitude(KelLongitude(longitude));
    QCOMPARE(found.longitude().decimalDegrees(), longitude);
    QVERIFY2(std::abs(found.latitude().decimalDegrees() - latitude) < 0.001, qPrintable(found.toString(false)));
}

void tst_KelGPXBeelineCreator::twentyRounds_data()
{
    QTest::addColumn<KelGeoPosition>("start");
    QTest::addColumn<KelGeoPosition>("end");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("latitude");

    // The southern end moves up twenty times: 160 / 2^20 degrees are left between the two, their middle is returned.
    QTest::newRow("always the north") << KelGeoPosition(75.0, 10.0) << KelGeoPosition(75.0, 170.0) << 90.0
                                      << 80.0 - 0.0000762939453125;
    QTest::newRow("always the south") << KelGeoPosition(-75.0, 10.0) << KelGeoPosition(-75.0, 170.0) << 90.0
                                      << -80.0 + 0.0000762939453125;
    // Both ends are equally far away at first: then the northern one comes down.
    QTest::newRow("a draw") << KelGeoPosition(0.0, 10.0) << KelGeoPosition(0.0, 30.0) << 20.0 << -0.0000762939453125;
}

void tst_KelGPXBeelineCreator::twentyRounds()
{
    QFETCH(KelGeoPosition, start);
    QFETCH(KelGeoPosition, end);
    QFETCH(double, longitude);
    QFETCH(double, latitude);
    const KelGeoPosition found = KelGPXBeelineCreator(start, end).estimateOptimalLatitude(KelLongitude(longitude));
    QVERIFY2(std::abs(found.latitude().decimalDegrees() - latitude) < 1e-9, qPrintable(found.toString(true)));
}

void tst_KelGPXBeelineCreator::waysOverThePoleAreBentAt80Degrees_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("limit");

    QTest::newRow("north pole") << 75.0 << 80.0;
    QTest::newRow("south pole") << -75.0 << -80.0;
}

void tst_KelGPXBeelineCreator::waysOverThePoleAreBentAt80Degrees()
{
    QFETCH(double, latitude);
    QFETCH(double, limit);
    const KelGPXBeelineCreator creator(KelGeoPosition(latitude, 10.0), KelGeoPosition(latitude, 170.0));
    const KelGeoPosition middle = creator.estimateOptimalLatitude(KelLongitude(90.0));
    QVERIFY(std::abs(middle.latitude().decimalDegrees() - limit) < 160.0 / (1 << 20));
    const KelGeoPositionList points = creator.createIntermediatePoints();
    QVERIFY(points.size() > 2);
    for (const KelGeoPosition &point : points)
        QVERIFY(std::abs(point.latitude().decimalDegrees()) <= 80.0);
}

void tst_KelGPXBeelineCreator::halvingEndsForAnyPositions_data()
{
    QTest::addColumn<KelGeoPosition>("start");
    QTest::addColumn<KelGeoPosition>("end");
    // Where the longitudes meet, the halving ends by itself; otherwise it is given up and leaves the two ends alone.
    QTest::addColumn<bool>("onlyTheTwo");

    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const KelGeoPosition oldenburg(53.14375, 8.214);
    QTest::newRow("from an invalid position") << KelGeoPosition() << oldenburg << true;
    QTest::newRow("to an invalid position") << oldenburg << KelGeoPosition() << true;
    QTest::newRow("two invalid positions") << KelGeoPosition() << KelGeoPosition() << true;
    QTest::newRow("invalid latitudes only") << KelGeoPosition(720.0, 8.0) << KelGeoPosition(-720.0, 50.0) << false;
    QTest::newRow("longitude that is no number") << oldenburg << KelGeoPosition(10.0, nan) << true;
    QTest::newRow("latitude that is no number") << oldenburg << KelGeoPosition(nan, 10.0) << false;
    QTest::newRow("nothing but no numbers") << KelGeoPosition(nan, nan) << KelGeoPosition(nan, nan) << true;
    QTest::newRow("infinite longitude") << oldenburg << KelGeoPosition(10.0, infinity) << true;
    QTest::newRow("infinite longitudes") << KelGeoPosition(10.0, -infinity) << KelGeoPosition(10.0, infinity) << true;
    QTest::newRow("infinite latitude") << oldenburg << KelGeoPosition(infinity, 10.0) << false;
    QTest::newRow("huge longitudes") << KelGeoPosition(10.0, 1e300) << KelGeoPosition(10.0, -1e300) << true;
    QTest::newRow("north pole") << oldenburg << KelGeoPosition(90.0, 100.0) << false;
    QTest::newRow("south pole") << KelGeoPosition(-90.0, 100.0) << oldenburg << false;
    QTest::newRow("pole to pole") << KelGeoPosition(90.0, 0.0) << KelGeoPosition(-90.0, 180.0) << false;
    QTest::newRow("around the pole at 89 degrees") << KelGeoPosition(89.0, 0.0) << KelGeoPosition(89.0, 179.0) << false;
    QTest::newRow("antipodes") << KelGeoPosition(10.0, 20.0) << KelGeoPosition(-10.0, -160.0) << false;
    QTest::newRow("from (0, 0), which counts as invalid") << KelGeoPosition(0.0, 0.0) << oldenburg << false;
    QTest::newRow("both names of the date line") << KelGeoPosition(10.0, 180.0) << KelGeoPosition(60.0, -180.0)
                                                 << false;
}

void tst_KelGPXBeelineCreator::halvingEndsForAnyPositions()
{
    QFETCH(KelGeoPosition, start);
    QFETCH(KelGeoPosition, end);
    QFETCH(bool, onlyTheTwo);
    const qsizetype count = KelGPXBeelineCreator(start, end).createPoints().size();
    if (onlyTheTwo)
        QCOMPARE(count, 2);
    else
        QVERIFY2(count > 2 && count < 1000, qPrintable(QString::number(count)));
}

namespace
{

/// The halving as it is meant, without any bound.
void halve(const KelGeoPosition &start, const KelGeoPosition &end, int depth, int &deepest,
           QList<KelGeoPosition> &points)
{
    deepest = std::max(deepest, depth);
    const KelGPXBeelineCreator creator(start, end);
    if (start.distance(end) < 200.0 || start.longitude() == end.longitude())
        return;
    const KelGeoPosition middle = creator.estimateOptimalLatitude(creator.findLogicalCenterLongitude());
    halve(start, middle, depth + 1, deepest, points);
    points.append(middle);
    halve(middle, end, depth + 1, deepest, points);
}

} // namespace

void tst_KelGPXBeelineCreator::boundsNeverTouchARealWay()
{
    QRandomGenerator random(20240501);
    const auto somewhere = [&random](int i) {
        // Every third near a pole or on a grid line, where the trouble is.
        const double latitude = random.generateDouble() * 180.0 - 90.0;
        const double longitude = random.generateDouble() * 360.0 - 180.0;
        if (i % 3 == 0)
            return KelGeoPosition(std::copysign(90.0 - random.generateDouble(), latitude), longitude);
        if (i % 3 == 1)
            return KelGeoPosition(std::round(latitude / 10.0) * 10.0, std::round(longitude / 10.0) * 10.0);
        return KelGeoPosition(latitude, longitude);
    };
    int deepest = 0;
    qsizetype most = 0;
    for (int i = 0; i < 400; ++i) {
        const KelGeoPosition start = somewhere(i);
        const KelGeoPosition end = somewhere(i / 3);
        QList<KelGeoPosition> expected;
        halve(start, end, 0, deepest, expected);
        most = std::max(most, expected.size());
        const KelGeoPositionList found = KelGPXBeelineCreator(start, end).createIntermediatePoints();
        QCOMPARE(QList<KelGeoPosition>(found.begin(), found.end()), expected);
    }
    QVERIFY2(deepest < 40, qPrintable(QString::number(deepest)));
    QVERIFY2(most < 1000, qPrintable(QString::number(most)));
}

void tst_KelGPXBeelineCreator::trackPointsCarryElevation0AndTheCurrentTime()
{
    KelGeoPositionList positions;
    positions.append(KelGeoPosition(50.0, 8.0));
    positions.append(KelGeoPosition(51.0, 9.0));
    const QDateTime before = QDateTime::currentDateTime();
    const QList<KelGPXTrackPoint> points =
        KelGPXBeelineCreator(KelGeoPosition(), KelGeoPosition()).positions2trackPoints(positions);
    const QDateTime after = QDateTime::currentDateTime();

    QCOMPARE(points.size(), 2);
    QCOMPARE(points.at(0).position(), KelGeoPosition(50.0, 8.0));
    QCOMPARE(points.at(1).position(), KelGeoPosition(51.0, 9.0));
    for (const KelGPXTrackPoint &point : points) {
        QCOMPARE(point.elevation(), 0);
        QCOMPARE(point.description(), QString());
        QVERIFY(point.timeStamp() >= before && point.timeStamp() <= after);
    }
}

void tst_KelGPXBeelineCreator::theTimeIsAskedAnewForEachPoint()
{
    // So many that the clock goes on while they are made.
    KelGeoPositionList positions;
    for (int i = 0; i < 100000; ++i)
        positions.append(KelGeoPosition(50.0, 8.0));
    const QList<KelGPXTrackPoint> points =
        KelGPXBeelineCreator(KelGeoPosition(), KelGeoPosition()).positions2trackPoints(positions);
    QCOMPARE(points.size(), 100000);
    QVERIFY(points.first().timeStamp() != points.last().timeStamp());
}

void tst_KelGPXBeelineCreator::createBeeline()
{
    const KelGeoPosition start(50.0, 0.0);
    const KelGeoPosition end(50.0, 10.0);
    const KelGPXTrack beeline = KelGPXBeelineCreator(start, end).createBeeline(QStringLiteral("flight %1"));

    QCOMPARE(beeline.name(), QStringLiteral("flight %1"));
    QCOMPARE(beeline.description(), QStringLiteral("Fluglinie"));
    QCOMPARE(beeline.shape().toInt(), 4);
    QVERIFY(beeline.enclaves().isEmpty());
    QCOMPARE(beeline.segments().size(), 1);
    const QList<KelGPXTrackPoint> points = beeline.segments().constFirst().trackPoints();
    QCOMPARE(points.size(), 5);
    QCOMPARE(points.constFirst().position(), start);
    QCOMPARE(points.constLast().position(), end);
    for (const KelGPXTrackPoint &point : points) {
        QCOMPARE(point.elevation(), 0);
        QVERIFY(std::abs(point.timeStamp().secsTo(QDateTime::currentDateTime())) < 600);
    }

    const KelGPXTrack still = KelGPXBeelineCreator(start, start).createBeeline(QString());
    QCOMPARE(still.countPoints(), 2);
    QCOMPARE(still.shape().toInt(), 4); // although its end is its beginning
}

void tst_KelGPXBeelineCreator::descriptionIsTranslated()
{
    KelRecordingTranslator translator;
    translator.setTranslation(QStringLiteral("Fluglinie"), QStringLiteral("beeline"));
    const KelGPXTrack beeline =
        KelGPXBeelineCreator(KelGeoPosition(50.0, 1.0), KelGeoPosition(50.0, 2.0)).createBeeline(QString());
    QCOMPARE(beeline.description(), QStringLiteral("beeline"));
    QVERIFY(translator.hasRecorded(QStringLiteral("KelGPXBeelineCreator"), QStringLiteral("Fluglinie")));
}

QTEST_GUILESS_MAIN(tst_KelGPXBeelineCreator)
#include "tst_KelGPXBeelineCreator.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelExtremeNumbers.h"

#include <KelGeoArc.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionList.h>
#include <KelGeoPositionRect.h>
#include <KelLatitude.h>
#include <KelLatitudeList.h>
#include <KelLatitudeRange.h>
#include <KelLongitude.h>
#include <KelLongitudeList.h>
#include <KelLongitudeRange.h>
#include <KelMapProjection.h>

#include <QPainterPath>
#include <QTest>
#include <QUrlQuery>

#include <cmath>
#include <limits>

/// Every operation of the geographic values comes to an end with every number, and says nothing that it cannot mean.
class tst_ExtremeAngles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void safeAngles_data() { KelExtremeNumbers::addRows(); }
    void safeAngles();
    void partsOfAnAngle_data() { KelExtremeNumbers::addRows(); }
    void partsOfAnAngle();
    void texts_data() { KelExtremeNumbers::addRows(); }
    void texts();
    void positions_data() { KelExtremeNumbers::addRows(); }
    void positions();
    void ranges_data() { KelExtremeNumbers::addRows(); }
    void ranges();
    void rectangles_data() { KelExtremeNumbers::addRows(); }
    void rectangles();
    void lists_data() { KelExtremeNumbers::addRows(); }
    void lists();
    void projections_data() { KelExtremeNumbers::addRows(); }
    void projections();
    void projectionsOfAnySize_data();
    void projectionsOfAnySize();
};

void tst_ExtremeAngles::safeAngles()
{
    QFETCH(double, value);
    const double longitude = KelLongitude::safeLongitude(value).decimalDegrees();
    const double latitude = KelLatitude::safeLatitude(value).decimalDegrees();
    if (!std::isfinite(value)) {
        QVERIFY(!KelLongitude(longitude).isInValidRange() && !KelLatitude(latitude).isInValidRange());
        return;
    }
    QVERIFY(std::abs(longitude) <= 180.0);
    QVERIFY(std::abs(latitude) <= 90.0);
    // Whole turns and half turns were taken off, nothing else.
    QCOMPARE(std::fmod(std::fmod(value, 360.0) - longitude, 360.0), 0.0);
    QCOMPARE(std::fmod(std::fmod(value, 180.0) - latitude, 180.0), 0.0);
    QCOMPARE(KelLongitude::safeLongitude(longitude).decimalDegrees(), longitude);
    QCOMPARE(KelLatitude::safeLatitude(latitude).decimalDegrees(), latitude);
    QVERIFY(KelLongitude(value).bounded().isInValidRange());
    QVERIFY(KelLatitude(value).bounded().isInValidRange());
    QVERIFY(std::abs(KelLatitude(value).catchOutOfBound().decimalDegrees()) < 90.0);
}

void tst_ExtremeAngles::partsOfAnAngle()
{
    QFETCH(double, value);
    const KelGeoArc arc(value);
    QVERIFY(std::abs(qint64(arc.degree())) <= std::numeric_limits<int>::max());
    QVERIFY(std::abs(arc.minute()) < 60);
    if (std::abs(value) < 1e6) {
        QVERIFY(arc.minuteF() >= 0.0 && arc.minuteF() < 60.0001);
        QVERIFY(std::abs(arc.secondF()) < 60.0001);
    }
    const QStringList exif = arc.toExifRational().split(u' ');
    QCOMPARE(exif.size(), 3);
    for (const QString &rational : exif)
        QVERIFY2(!rational.startsWith(u'-') && rational.count(u'/') == 1, qPrintable(rational));
    KelGeoArc other;
    other.setDegree(std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), value);
    QCOMPARE(std::isfinite(other.decimalDegrees()), std::isfinite(value));
    QCOMPARE(std::isnan(KelGeoArc::fromRadians(value).decimalDegrees()), std::isnan(value));
    QCOMPARE(std::isnan(arc.absDistance(KelGeoArc(1.0)).decimalDegrees()), std::isnan(value));
    QCOMPARE(KelGeoArc(value) == KelGeoArc(1000.0), value == 1000.0);
}

void tst_ExtremeAngles::texts()
{
    QFETCH(double, value);
    const KelGeoArc arc(value);
    for (const char *format : {"d", "dm", "dms"}) {
        for (const int precision : {0, 3, 50})
            QVERIFY(arc.humanReadable(QString::fromLatin1(format), precision).contains(u'°'));
    }
    QUrlQuery query;
    arc.writeTo(query, QStringLiteral("a"));
    QVERIFY(query.hasQueryItem(QStringLiteral("a")));
    const KelGeoArc read = KelGeoArc::fromVariant(arc.toVariant());
    QVERIFY(read.decimalDegrees() == value || std::isnan(value));
    // What is no angle has no text; what has one is read as it was written.
    const QString latitude = KelLatitude(value).toString(false);
    const QString longitude = KelLongitude(value).toString(false);
    QCOMPARE(latitude.isEmpty(), !arc.isValid());
    QCOMPARE(longitude.isEmpty(), !arc.isValid());
    QCOMPARE(KelLatitude(value).toString(true).isEmpty(), !arc.isValid());
    QCOMPARE(KelLongitude(value).toString(true).isEmpty(), !arc.isValid());
    if (arc.isValid()) {
        QVERIFY(std::abs(KelLatitude::parse(latitude).decimalDegrees() - value) < 1e-7);
        // Deliberate: from half a turn on the letter says on which side of the earth it lies, not the sign.
        if (std::abs(value) < 180.0)
            QVERIFY(std::abs(KelLongitude::parse(longitude).decimalDegrees() - value) < 1e-7);
    }
    const QString number = QString::number(value, 'g', 17);
    (void)KelLatitude::parse(number);
    (void)KelLongitude::parse(QStringLiteral("W") + number);
    (void)KelGeoArc::fromString(number + u',' + number + u',' + number + QStringLiteral(" S"));
    (void)KelGeoArc::fromString(QStringLiteral("-2147483648,-2147483648,") + number + QStringLiteral(" N"));
    (void)KelGeoPosition::parse(number + u',' + number);
    (void)KelGeoPosition::fromString(number + u';' + number);
}

void tst_ExtremeAngles::positions()
{
    QFETCH(double, value);
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        const KelGeoPosition a(value, other.value);
        const KelGeoPosition b(other.value, value);
        // Never less than nothing, and never farther than the value that says that nobody can go there.
        const double distance = a.distance(b);
        if (std::abs(value) <= 90.0 && std::abs(other.value) <= 90.0)
            QVERIFY2(distance >= 0.0 && distance <= KelGeoPosition::UNREACHABLE_KM, other.name);
        QVERIFY(distance == b.distance(a) || std::isnan(distance));
        QCOMPARE(qHash(a), qHash(KelGeoPosition(value, other.value)));
        QCOMPARE(a == b, b == a);
        (void)a.latitudeDeviation(other.value);
        (void)a.longitudeDeviation(other.value);
        (void)a.moveNorthBy(other.value);
        (void)a.moveEastBy(other.value);
        (void)(a + b);
        (void)(a / other.value);
        (void)a.toString(true);
        (void)a.toString(false);
        (void)a.toPointF();
        KelGeoPosition caught = a;
        caught.catchLatitude();
        QVERIFY(std::isnan(value) || std::abs(caught.latitude().decimalDegrees()) <= 90.0);
        const KelGeoPosition normalized = a.normalized();
        QVERIFY(normalized.latitude().decimalDegrees() == value || std::isnan(value)); // only the longitude is meant
        if (std::isfinite(other.value))
            QVERIFY(std::abs(normalized.longitude().decimalDegrees()) <= 180.0);
    }
}

void tst_ExtremeAngles::ranges()
{
    QFETCH(double, value);
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        KelLatitudeRange latitudes = KelLatitudeRange::spawn(value, other.value);
        KelLongitudeRange longitudes = KelLongitudeRange::spawn(value, other.value);
        if (std::isfinite(value) && std::isfinite(other.value)) {
            QVERIFY(latitudes.south() <= latitudes.north());
            QVERIFY(latitudes.contains(KelLatitude(value)) && latitudes.contains(KelLatitude(other.value)));
        }
        (void)longitudes.center();
        (void)longitudes.contains(KelLongitude(value));
        (void)longitudes.contains(KelLongitudeRange(other.value, value));
        (void)longitudes.coversNoMoreThanHalfOfTheEarth();
        (void)longitudes.isValid();
        (void)longitudes.toString(true);
        (void)latitudes.toString(false);
        longitudes.expandTo(other.value);
        latitudes.expandTo(KelLatitude(other.value));
        longitudes.blowUp(value);
        latitudes.blowUp(value);
        QUrlQuery query;
        longitudes.writeTo(query);
        latitudes.writeTo(query);
        (void)KelLongitudeRange::parse(query);
        (void)KelLatitudeRange::parse(query);
    }
}

void tst_ExtremeAngles::rectangles()
{
    QFETCH(double, value);
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        KelGeoPositionRect rect = KelGeoPositionRect::spawn(KelGeoPosition(value, other.value), KelGeoPosition(1.0, 2.0));
        (void)rect.center();
        (void)rect.contains(KelGeoPosition(other.value, value));
        (void)rect.contains(rect);
        (void)rect.isVerySmall();
        (void)rect.estimatedSize();
        (void)rect.toReasonableSize();
        (void)rect.withPadding(value);
        (void)rect.blownUp(other.value);
        (void)rect.toString(true);
        rect.blowUp(value);
        rect.expandTo(KelGeoPosition(other.value, value));
        rect.expandTo(KelGeoPositionRect(KelGeoPosition(value, value), KelGeoPosition(other.value, other.value)));
        (void)(rect + rect);
        const bool isLimited = rect.isValid();
        QVERIFY(!isLimited || std::isfinite(rect.maxExtension().decimalDegrees()));
    }
}

void tst_ExtremeAngles::lists()
{
    QFETCH(double, value);
    KelGeoPositionList positions;
    KelLatitudeList latitudes;
    KelLongitudeList longitudes;
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        positions.append(KelGeoPosition(value, other.value));
        positions.append(KelGeoPosition(other.value, value));
        latitudes.append(KelLatitude(other.value));
        longitudes.append(KelLongitude(other.value));
        (void)positions.boundingBox();
        (void)longitudes.effectiveRange();
    }
    (void)positions.center();
    (void)positions.average();
    (void)positions.toPainterPath();
    // Strays are taken away, nothing is added.
    for (const bool invert : {false, true}) {
        for (const int least : {std::numeric_limits<int>::min(), 0, 3, std::numeric_limits<int>::max()})
            QVERIFY(positions.filterStrayPositions(value, invert, least).size() <= positions.size());
    }
    (void)latitudes.average();
    (void)latitudes.range();
    (void)longitudes.average();
    (void)longitudes.naiveRange();
    QVERIFY(longitudes.onlyEasternHemisphere().size() + longitudes.onlyWesternHemisphere().size() <= longitudes.size());
}

void tst_ExtremeAngles::projections()
{
    QFETCH(double, value);
    (void)KelMapProjection::latitudeToNormalized(value);
    (void)KelMapProjection::longitudeToNormalized(value);
    (void)KelMapProjection::normalizedToLatitude(value);
    (void)KelMapProjection::normalizedToLongitude(value);
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        const KelMapProjection projection(KelGeoPositionRect(KelGeoPosition(value, other.value), KelGeoPosition(10.0, 20.0)),
                                          QSize(640, 480));
        (void)projection.resultBoundingBox();
        (void)projection.convert(QPoint(std::numeric_limits<int>::max(), std::numeric_limits<int>::min()));
        for (const KelExtremeNumbers::Named &third : KelExtremeNumbers::all()) {
            const QPointF pixel = projection.getPixelCoordinateByMapCoordinate(third.value, other.value);
            // Whole numbers of 32 bits, whatever came in.
            QVERIFY(pixel.x() >= std::numeric_limits<int>::min() && pixel.x() <= std::numeric_limits<int>::max());
            QVERIFY(pixel.y() >= std::numeric_limits<int>::min() && pixel.y() <= std::numeric_limits<int>::max());
            QCOMPARE(pixel, QPointF(std::trunc(pixel.x()), std::trunc(pixel.y())));
        }
    }
}

void tst_ExtremeAngles::projectionsOfAnySize_data()
{
    QTest::addColumn<QSize>("size");
    const int most = std::numeric_limits<int>::max();
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("no width") << QSize(0, 100);
    QTest::newRow("no height") << QSize(100, 0);
    QTest::newRow("less than nothing") << QSize(-100, -1);
    QTest::newRow("no size at all") << QSize();
    QTest::newRow("a thousand million pixels") << QSize(1000000000, 1000000000);
    QTest::newRow("a wide ribbon") << QSize(most, 1);
    QTest::newRow("a high ribbon") << QSize(1, most);
    QTest::newRow("the largest") << QSize(most, most);
    QTest::newRow("the smallest") << QSize(-most - 1, -most - 1);
}

void tst_ExtremeAngles::projectionsOfAnySize()
{
    QFETCH(QSize, size);
    const KelMapProjection projection(KelGeoPositionRect(KelGeoPosition(0.0, 0.0), KelGeoPosition(10.0, 10.0)), size);
    for (const KelExtremeNumbers::Named &number : KelExtremeNumbers::all()) {
        const QPointF pixel = projection.projectate(KelGeoPosition(number.value, number.value));
        QVERIFY(std::abs(pixel.x()) <= 2147483648.0 && std::abs(pixel.y()) <= 2147483648.0);
    }
    (void)projection.resultBoundingBox();
    (void)projection.convert(QPoint(size.width(), size.height()));
}

QTEST_GUILESS_MAIN(tst_ExtremeAngles)
#include "tst_ExtremeAngles.moc"

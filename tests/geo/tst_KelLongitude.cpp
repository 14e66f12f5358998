// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLongitude.h>
#include <KelTestSupport.h>

#include <QtTest>

#include <cmath>
#include <limits>
#include <type_traits>

using KelTestSupport::RecordingTranslator;

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

// The rule as it is told: whole turns are taken off or added one by one.
double wrappedStepByStep(double degrees)
{
    while (degrees > 180.0)
        degrees -= 360.0;
    while (degrees < -180.0)
        degrees += 360.0;
    return degrees;
}

bool sameBits(double a, double b)
{
    return a == b && std::signbit(a) == std::signbit(b);
}

} // namespace

class tst_KelLongitude : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultIsInvalid();
    void operationsGiveLongitudes();
    void safeLongitude_data();
    void safeLongitude();
    void safeLongitudeIsTheStepwiseResult();
    void safeLongitudeOfHugeNumbers();
    void eastAndWest_data();
    void eastAndWest();
    void hemispheres_data();
    void hemispheres();
    void isInValidRange_data();
    void isInValidRange();
    void bounded_data();
    void bounded();
    void parse_data();
    void parse();
    void toString_data();
    void toString();
    void lettersAreTranslated();
    void dmsTextsAreTranslated();
    void debugStream();
};

void tst_KelLongitude::defaultIsInvalid()
{
    QVERIFY(KelLongitude().decimalDegrees() == 720.0);
    QVERIFY(!KelLongitude().isValid());
    QVERIFY(KelLongitude(KelGeoArc(8.5)).decimalDegrees() == 8.5);
}

void tst_KelLongitude::operationsGiveLongitudes()
{
    KelLongitude longitude(1.5);
    QVERIFY((std::is_same_v<decltype(longitude + longitude), KelLongitude>));
    QVERIFY((std::is_same_v<decltype(longitude - longitude), KelLongitude>));
    QVERIFY((std::is_same_v<decltype(longitude * 2.0), KelLongitude>));
    QVERIFY((std::is_same_v<decltype(longitude / 2.0), KelLongitude>));
    QVERIFY((std::is_same_v<decltype(longitude += longitude), KelLongitude &>));
    QVERIFY((longitude + 2.0).decimalDegrees() == 3.5);
    QVERIFY((longitude - 2.0).decimalDegrees() == -0.5);
    QVERIFY((longitude * 3.0).decimalDegrees() == 4.5);
    QVERIFY((longitude / 3.0).decimalDegrees() == 0.5);
    longitude += 0.25;
    QVERIFY(longitude.decimalDegrees() == 1.75);
}

void tst_KelLongitude::safeLongitude_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("wrapped");

    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("eastern end stays") << 180.0 << 180.0;
    QTest::newRow("western end stays") << -180.0 << -180.0;
    QTest::newRow("just beyond the eastern end") << 181.0 << -179.0;
    QTest::newRow("just beyond the western end") << -181.0 << 179.0;
    QTest::newRow("one and a half turns") << 540.0 << 180.0;
    QTest::newRow("one and a half turns, west") << -540.0 << -180.0;
    QTest::newRow("a whole turn") << 360.0 << 0.0;
    QTest::newRow("a whole turn, west") << -360.0 << 0.0;
    QTest::newRow("invalid marker") << 720.0 << 0.0;
    QTest::newRow("several turns") << 1000.5 << -79.5;
}

void tst_KelLongitude::safeLongitude()
{
    QFETCH(double, degrees);
    QFETCH(double, wrapped);
    QVERIFY(KelLongitude::safeLongitude(degrees).decimalDegrees() == wrapped);
    QVERIFY(KelLongitude(degrees).normalized().decimalDegrees() == wrapped);
}

void tst_KelLongitude::safeLongitudeIsTheStepwiseResult()
{
    for (double degrees = -9000.0; degrees < 9000.0; degrees += 0.37) {
        if (!sameBits(KelLongitude::safeLongitude(degrees).decimalDegrees(), wrappedStepByStep(degrees)))
            QFAIL(qPrintable(QStringLiteral("wrapping %1").arg(degrees, 0, 'g', 17)));
    }
    for (const double degrees : {180.0 + 1e-13, -180.0 - 1e-13, 179.99999999999997, 540.0000000000001, 360.0, -360.0,
                                 -0.0, 0.0, -720.0, 1e6 + 0.1, -1e6 - 0.7, 12345678.9}) {
        if (!sameBits(KelLongitude::safeLongitude(degrees).decimalDegrees(), wrappedStepByStep(degrees)))
            QFAIL(qPrintable(QStringLiteral("wrapping %1").arg(degrees, 0, 'g', 17)));
    }
}

void tst_KelLongitude::safeLongitudeOfHugeNumbers()
{
    for (const double degrees : {1e17, 1e300, std::numeric_limits<double>::max()}) {
        QVERIFY(KelLongitude::safeLongitude(degrees).isInValidRange());
        QVERIFY(KelLongitude(-degrees).normalized().isInValidRange());
    }
    QVERIFY(KelLongitude::safeLongitude(infinity).decimalDegrees() == infinity);
    QVERIFY(KelLongitude(-infinity).normalized().decimalDegrees() == -infinity);
    QVERIFY(std::isnan(KelLongitude::safeLongitude(std::numeric_limits<double>::quiet_NaN()).decimalDegrees()));
}

void tst_KelLongitude::eastAndWest_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<bool>("east");
    QTest::addColumn<bool>("west");

    QTest::newRow("east") << 10.0 << 8.0 << true << false;
    QTest::newRow("west") << 8.0 << 10.0 << false << true;
    QTest::newRow("either side of the prime meridian") << 1.0 << -1.0 << true << false;
    QTest::newRow("east across the date line") << -170.0 << 170.0 << true << false;
    QTest::newRow("west across the date line") << 170.0 << -170.0 << false << true;
    QTest::newRow("same is neither") << 8.0 << 8.0 << false << false;
    QTest::newRow("half a turn is neither") << 90.0 << -90.0 << false << false;
    QTest::newRow("half a turn the other way is neither") << -90.0 << 90.0 << false << false;
    QTest::newRow("a little less than half a turn east") << 89.0 << -90.0 << true << false;
    QTest::newRow("a little more than half a turn is west") << 91.0 << -90.0 << false << true;
    QTest::newRow("no tolerance") << 8.0000001 << 8.0 << true << false;
    QTest::newRow("a difference of more than a turn is raised only once: neither") << -300.0 << 300.0 << false << false;
}

void tst_KelLongitude::eastAndWest()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QTEST(KelLongitude(a).isEastOf(b), "east");
    QTEST(KelLongitude(a).isWestOf(b), "west");
}

void tst_KelLongitude::hemispheres_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("western");
    QTest::addColumn<QString>("letter");

    QTest::newRow("prime meridian is eastern") << 0.0 << false << QStringLiteral("E");
    QTest::newRow("negative zero is eastern") << -0.0 << false << QStringLiteral("E");
    QTest::newRow("just west of it") << -0.1 << true << QStringLiteral("W");
    QTest::newRow("just east of it") << 0.1 << false << QStringLiteral("E");
    QTest::newRow("date line, written as west, is eastern") << -180.0 << false << QStringLiteral("E");
    QTest::newRow("date line, written as east, is eastern") << 180.0 << false << QStringLiteral("E");
    QTest::newRow("just east of the date line") << -179.9 << true << QStringLiteral("W");
    QTest::newRow("just west of the date line") << 179.9 << false << QStringLiteral("E");
}

void tst_KelLongitude::hemispheres()
{
    QFETCH(double, degrees);
    QFETCH(bool, western);
    const KelLongitude longitude(degrees);
    QCOMPARE(longitude.isInWesternHemisphere(), western);
    QCOMPARE(longitude.isInEasternHemisphere(), !western);
    QTEST(longitude.directionIndicator(), "letter");
}

void tst_KelLongitude::isInValidRange_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("valid");

    QTest::newRow("zero") << 0.0 << true;
    QTest::newRow("eastern end") << 180.0 << true;
    QTest::newRow("western end") << -180.0 << true;
    QTest::newRow("beyond the eastern end, within the tolerance") << 180.0000005 << true;
    QTest::newRow("beyond the western end, within the tolerance") << -180.0000005 << true;
    QTest::newRow("beyond the eastern end") << 180.000002 << false;
    QTest::newRow("beyond the western end") << -180.000002 << false;
    QTest::newRow("invalid marker") << 720.0 << false;
}

void tst_KelLongitude::isInValidRange()
{
    QFETCH(double, degrees);
    QTEST(KelLongitude(degrees).isInValidRange(), "valid");
}

void tst_KelLongitude::bounded_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("clamped");

    QTest::newRow("inside") << 8.25 << 8.25;
    QTest::newRow("eastern end") << 180.0 << 180.0;
    QTest::newRow("beyond it") << 180.0000001 << 180.0;
    QTest::newRow("far beyond it, not wrapped") << 190.0 << 180.0;
    QTest::newRow("western end") << -180.0 << -180.0;
    QTest::newRow("beyond it, west") << -180.0000001 << -180.0;
    QTest::newRow("far beyond it, west") << -1000.0 << -180.0;
}

void tst_KelLongitude::bounded()
{
    QFETCH(double, degrees);
    QFETCH(double, clamped);
    QVERIFY(KelLongitude(degrees).bounded().decimalDegrees() == clamped);
}

void tst_KelLongitude::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("degrees");

    QTest::newRow("E") << QStringLiteral("E8.2") << 8.2;
    QTest::newRow("W") << QStringLiteral("W12.5") << -12.5;
    QTest::newRow("no letter") << QStringLiteral("12.5") << 12.5;
    QTest::newRow("sign instead of a letter") << QStringLiteral("-7") << -7.0;
    QTest::newRow("no wrapping") << QStringLiteral("E1000") << 1000.0;
    QTest::newRow("lower-case letter") << QStringLiteral("w12.5") << 720.0;
    QTest::newRow("trailing letter") << QStringLiteral("12.5E") << 720.0;
    QTest::newRow("degree sign") << QStringLiteral("E12.5°") << 720.0;
    QTest::newRow("German letter for east") << QStringLiteral("O12.5") << 720.0;
    QTest::newRow("letter of a latitude") << QStringLiteral("S8") << 720.0;
    QTest::newRow("only a letter") << QStringLiteral("W") << 720.0;
    QTest::newRow("empty") << QString() << 720.0;
}

void tst_KelLongitude::parse()
{
    QFETCH(QString, text);
    QFETCH(double, degrees);
    QVERIFY(KelLongitude::parse(text).decimalDegrees() == degrees);
}

void tst_KelLongitude::toString_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QString>("dms");

    QTest::newRow("east") << 8.5 << QStringLiteral("E8.50000000") << QStringLiteral("8° 30′ 0″ Ost");
    QTest::newRow("west") << -8.140625 << QStringLiteral("W8.14062500") << QStringLiteral("8° 8′ 26.25″ West");
    QTest::newRow("prime meridian") << 0.0 << QStringLiteral("E0.00000000") << QStringLiteral("0° 0′ 0″ Ost");
    QTest::newRow("western end, which is eastern")
        << -180.0 << QStringLiteral("E180.00000000") << QStringLiteral("180° 0′ 0″ Ost");
    QTest::newRow("half a degree west") << -0.5 << QStringLiteral("W0.50000000") << QStringLiteral("0° 30′ 0″ West");
}

void tst_KelLongitude::toString()
{
    QFETCH(double, degrees);
    QTEST(KelLongitude(degrees).toString(false), "decimal");
    QTEST(KelLongitude(degrees).toString(true), "dms");
    QCOMPARE(KelLongitude(-8.21).toString(false), QStringLiteral("W8.21000000"));
    QVERIFY(KelLongitude().toString(false).isNull());
    QVERIFY(KelLongitude().toString(true).isNull());
}

void tst_KelLongitude::lettersAreTranslated()
{
    RecordingTranslator translator;
    translator.setTranslation(QStringLiteral("E"), QStringLiteral("O"));
    QCOMPARE(KelLongitude(1.0).directionIndicator(), QStringLiteral("O"));
    QCOMPARE(KelLongitude(-1.0).directionIndicator(), QStringLiteral("W"));
    const QList<RecordingTranslator::Request> expected{
        {QStringLiteral("KelLongitude"), QStringLiteral("E"), QStringLiteral("short for 'east'")},
        {QStringLiteral("KelLongitude"), QStringLiteral("W"), QStringLiteral("short for 'west'")}};
    QCOMPARE(translator.takeRequests(), expected);
    QCOMPARE(KelLongitude(1.5).toString(false), QStringLiteral("O1.50000000"));
}

void tst_KelLongitude::dmsTextsAreTranslated()
{
    RecordingTranslator translator;
    translator.setTranslation(QStringLiteral("%1° %2′ %3″ West"), QStringLiteral("west %1 %2 %3"));
    QCOMPARE(KelLongitude(1.0).toString(true), QStringLiteral("1° 0′ 0″ Ost"));
    QCOMPARE(KelLongitude(-1.5).toString(true), QStringLiteral("west 1 30 0"));
    const QString disambiguation = QStringLiteral("Coordinate / Nautilal Bearing   Longitude/Länge");
    const QList<RecordingTranslator::Request> expected{
        {QStringLiteral("QObject"), QStringLiteral("%1° %2\u2032 %3\u2033 Ost"), disambiguation},
        {QStringLiteral("QObject"), QStringLiteral("%1° %2\u2032 %3\u2033 West"), disambiguation}};
    QCOMPARE(translator.takeRequests(), expected);
}

void tst_KelLongitude::debugStream()
{
    QString text;
    QDebug(&text) << KelLongitude(-33.5);
    QCOMPARE(text, QStringLiteral("W33.50000000"));
}

QTEST_GUILESS_MAIN(tst_KelLongitude)
#include "tst_KelLongitude.moc"

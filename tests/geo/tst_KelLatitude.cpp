// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLatitude.h>
#include <KelTestSupport.h>

#include <QtTest>

#include <cmath>
#include <limits>
#include <type_traits>

using KelTestSupport::RecordingTranslator;

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();

// The rule as it is told: half turns are taken off or added one by one.
double foldedStepByStep(double degrees)
{
    while (degrees > 90.0)
        degrees -= 180.0;
    while (degrees < -90.0)
        degrees += 180.0;
    return degrees;
}

bool sameBits(double a, double b)
{
    return a == b && std::signbit(a) == std::signbit(b);
}

} // namespace

class tst_KelLatitude : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultIsInvalid();
    void operationsGiveLatitudes();
    void safeLatitude_data();
    void safeLatitude();
    void safeLatitudeIsTheStepwiseResult();
    void safeLatitudeOfHugeNumbers();
    void northAndSouth_data();
    void northAndSouth();
    void hemispheres_data();
    void hemispheres();
    void isInValidRange_data();
    void isInValidRange();
    void bounded_data();
    void bounded();
    void catchOutOfBound_data();
    void catchOutOfBound();
    void parse_data();
    void parse();
    void toString_data();
    void toString();
    void lettersAreTranslated();
    void dmsTextsAreTranslated();
    void debugStream();
};

void tst_KelLatitude::defaultIsInvalid()
{
    QVERIFY(KelLatitude().decimalDegrees() == 720.0);
    QVERIFY(!KelLatitude().isValid());
    QVERIFY(KelLatitude(KelGeoArc(8.5)).decimalDegrees() == 8.5);
}

void tst_KelLatitude::operationsGiveLatitudes()
{
    KelLatitude latitude(1.5);
    QVERIFY((std::is_same_v<decltype(latitude + latitude), KelLatitude>));
    QVERIFY((std::is_same_v<decltype(latitude - latitude), KelLatitude>));
    QVERIFY((std::is_same_v<decltype(latitude * 2.0), KelLatitude>));
    QVERIFY((std::is_same_v<decltype(latitude / 2.0), KelLatitude>));
    QVERIFY((std::is_same_v<decltype(latitude += latitude), KelLatitude &>));
    QVERIFY((latitude + 2.0).decimalDegrees() == 3.5);
    QVERIFY((latitude - 2.0).decimalDegrees() == -0.5);
    QVERIFY((latitude * 3.0).decimalDegrees() == 4.5);
    QVERIFY((latitude / 3.0).decimalDegrees() == 0.5);
    latitude += 0.25;
    QVERIFY(latitude.decimalDegrees() == 1.75);
}

void tst_KelLatitude::safeLatitude_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("folded");

    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("north pole stays") << 90.0 << 90.0;
    QTest::newRow("south pole stays") << -90.0 << -90.0;
    QTest::newRow("half turns, no reflection") << 100.0 << -80.0;
    QTest::newRow("half turns, no reflection, south") << -100.0 << 80.0;
    QTest::newRow("one and a half turns from the pole") << 270.0 << 90.0;
    QTest::newRow("one and a half turns from the pole, south") << -270.0 << -90.0;
    QTest::newRow("half a turn") << 180.0 << 0.0;
    QTest::newRow("half a turn, south") << -180.0 << 0.0;
    QTest::newRow("a whole turn") << 360.0 << 0.0;
    QTest::newRow("invalid marker") << 720.0 << 0.0;
    QTest::newRow("several turns") << 1000.5 << -79.5;
}

void tst_KelLatitude::safeLatitude()
{
    QFETCH(double, degrees);
    QFETCH(double, folded);
    QVERIFY(KelLatitude::safeLatitude(degrees).decimalDegrees() == folded);
}

void tst_KelLatitude::safeLatitudeIsTheStepwiseResult()
{
    for (double degrees = -5000.0; degrees < 5000.0; degrees += 0.37) {
        if (!sameBits(KelLatitude::safeLatitude(degrees).decimalDegrees(), foldedStepByStep(degrees)))
            QFAIL(qPrintable(QStringLiteral("folding %1").arg(degrees, 0, 'g', 17)));
    }
    for (const double degrees : {90.0 + 1e-13, -90.0 - 1e-13, 89.99999999999999, 270.00000000000006, 180.0, -180.0,
                                 -0.0, 0.0, -360.0, 1e6 + 0.1, -1e6 - 0.7, 12345678.9}) {
        if (!sameBits(KelLatitude::safeLatitude(degrees).decimalDegrees(), foldedStepByStep(degrees)))
            QFAIL(qPrintable(QStringLiteral("folding %1").arg(degrees, 0, 'g', 17)));
    }
}

void tst_KelLatitude::safeLatitudeOfHugeNumbers()
{
    for (const double degrees : {1e17, 1e300, std::numeric_limits<double>::max()}) {
        QVERIFY(KelLatitude::safeLatitude(degrees).isInValidRange());
        QVERIFY(KelLatitude::safeLatitude(-degrees).isInValidRange());
    }
    QVERIFY(KelLatitude::safeLatitude(infinity).decimalDegrees() == infinity);
    QVERIFY(KelLatitude::safeLatitude(-infinity).decimalDegrees() == -infinity);
    QVERIFY(std::isnan(KelLatitude::safeLatitude(std::numeric_limits<double>::quiet_NaN()).decimalDegrees()));
}

void tst_KelLatitude::northAndSouth_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<bool>("north");
    QTest::addColumn<bool>("south");

    QTest::newRow("north") << 54.0 << 53.0 << true << false;
    QTest::newRow("south") << -54.0 << -53.0 << false << true;
    QTest::newRow("same") << 53.0 << 53.0 << false << false;
    QTest::newRow("no tolerance") << 53.0000001 << 53.0 << true << false;
}

void tst_KelLatitude::northAndSouth()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QTEST(KelLatitude(a).isNorthOf(b), "north");
    QTEST(KelLatitude(a).isSouthOf(b), "south");
}

void tst_KelLatitude::hemispheres_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("northern");
    QTest::addColumn<QString>("letter");

    QTest::newRow("north") << 53.0 << true << QStringLiteral("N");
    QTest::newRow("south") << -33.0 << false << QStringLiteral("S");
    QTest::newRow("equator is northern") << 0.0 << true << QStringLiteral("N");
    QTest::newRow("negative zero is northern") << -0.0 << true << QStringLiteral("N");
    QTest::newRow("just south, no tolerance") << -1e-9 << false << QStringLiteral("S");
}

void tst_KelLatitude::hemispheres()
{
    QFETCH(double, degrees);
    QFETCH(bool, northern);
    const KelLatitude latitude(degrees);
    QCOMPARE(latitude.isInNorthernHemisphere(), northern);
    QCOMPARE(latitude.isInSouthernHemisphere(), !northern);
    QTEST(latitude.directionIndicator(), "letter");
}

void tst_KelLatitude::isInValidRange_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("valid");

    QTest::newRow("equator") << 0.0 << true;
    QTest::newRow("north pole") << 90.0 << true;
    QTest::newRow("south pole") << -90.0 << true;
    QTest::newRow("beyond the pole, within the tolerance") << 90.0000005 << true;
    QTest::newRow("beyond the south pole, within the tolerance") << -90.0000005 << true;
    QTest::newRow("beyond the pole") << 90.000002 << false;
    QTest::newRow("beyond the south pole") << -90.000002 << false;
    QTest::newRow("invalid marker") << 720.0 << false;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << false;
}

void tst_KelLatitude::isInValidRange()
{
    QFETCH(double, degrees);
    QTEST(KelLatitude(degrees).isInValidRange(), "valid");
}

void tst_KelLatitude::bounded_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("clamped");

    QTest::newRow("inside") << 53.25 << 53.25;
    QTest::newRow("north pole") << 90.0 << 90.0;
    QTest::newRow("beyond it") << 90.0000001 << 90.0;
    QTest::newRow("far beyond it") << 720.0 << 90.0;
    QTest::newRow("south pole") << -90.0 << -90.0;
    QTest::newRow("beyond it, south") << -90.0000001 << -90.0;
    QTest::newRow("far beyond it, south") << -1000.0 << -90.0;
}

void tst_KelLatitude::bounded()
{
    QFETCH(double, degrees);
    QFETCH(double, clamped);
    QVERIFY(KelLatitude(degrees).bounded().decimalDegrees() == clamped);
}

void tst_KelLatitude::catchOutOfBound_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("caught");

    QTest::newRow("inside") << 53.25 << 53.25;
    QTest::newRow("close to the pole") << 89.9999 << 89.9999;
    QTest::newRow("within the tolerance of the pole") << 89.9999995 << 89.99;
    QTest::newRow("north pole") << 90.0 << 89.99;
    QTest::newRow("beyond it") << 120.0 << 89.99;
    QTest::newRow("close to the south pole") << -89.9999 << -89.9999;
    QTest::newRow("within the tolerance of the south pole") << -89.9999995 << -89.99;
    QTest::newRow("south pole") << -90.0 << -89.99;
    QTest::newRow("beyond it, south") << -120.0 << -89.99;
}

void tst_KelLatitude::catchOutOfBound()
{
    QFETCH(double, degrees);
    QFETCH(double, caught);
    QVERIFY(KelLatitude(degrees).catchOutOfBound().decimalDegrees() == caught);
}

void tst_KelLatitude::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("degrees");

    QTest::newRow("N") << QStringLiteral("N53.1") << 53.1;
    QTest::newRow("S") << QStringLiteral("S12.5") << -12.5;
    QTest::newRow("no letter") << QStringLiteral("12.5") << 12.5;
    QTest::newRow("sign instead of a letter") << QStringLiteral("-7") << -7.0;
    QTest::newRow("letter and sign") << QStringLiteral("S-7") << 7.0;
    QTest::newRow("no folding") << QStringLiteral("N1000") << 1000.0;
    QTest::newRow("exponent") << QStringLiteral("N1e1") << 10.0;
    QTest::newRow("lower-case letter") << QStringLiteral("s12.5") << 720.0;
    QTest::newRow("trailing letter") << QStringLiteral("12.5N") << 720.0;
    QTest::newRow("degree sign") << QStringLiteral("N12.5°") << 720.0;
    QTest::newRow("two letters") << QStringLiteral("NS12") << 720.0;
    QTest::newRow("letter of a longitude") << QStringLiteral("E12.5") << 720.0;
    QTest::newRow("decimal comma") << QStringLiteral("N12,5") << 720.0;
    QTest::newRow("only a letter") << QStringLiteral("N") << 720.0;
    QTest::newRow("empty") << QString() << 720.0;
}

void tst_KelLatitude::parse()
{
    QFETCH(QString, text);
    QFETCH(double, degrees);
    QVERIFY(KelLatitude::parse(text).decimalDegrees() == degrees);
}

void tst_KelLatitude::toString_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QString>("dms");

    QTest::newRow("north") << 53.5 << QStringLiteral("N53.50000000") << QStringLiteral("53° 30′ 0″ Nord");
    QTest::newRow("south") << -53.140625 << QStringLiteral("S53.14062500") << QStringLiteral("53° 8′ 26.25″ Süd");
    QTest::newRow("half a degree south") << -0.5 << QStringLiteral("S0.50000000") << QStringLiteral("0° 30′ 0″ Süd");
    QTest::newRow("equator") << 0.0 << QStringLiteral("N0.00000000") << QStringLiteral("0° 0′ 0″ Nord");
    QTest::newRow("negative zero") << -0.0 << QStringLiteral("N0.00000000") << QStringLiteral("0° 0′ 0″ Nord");
    QTest::newRow("eight decimals are rounded")
        << 1.0 / 134217728.0 << QStringLiteral("N0.00000001") << QStringLiteral("0° 0′ 2.68221e-05″ Nord");
    QTest::newRow("valid, though no latitude")
        << 360.0 << QStringLiteral("N360.00000000") << QStringLiteral("360° 0′ 0″ Nord");
    // 3.515625 seconds
    QTest::newRow("seconds have up to six significant digits")
        << 1.0 / 1024.0 << QStringLiteral("N0.00097656") << QStringLiteral("0° 0′ 3.51563″ Nord");
    // 39 minutes and 59.999999999... seconds
    QTest::newRow("1 degree 40 minutes") << 40 / 60.0 + 1 << QStringLiteral("N1.66666667")
                                         << QStringLiteral("1° 39′ 60″ Nord");
}

void tst_KelLatitude::toString()
{
    QFETCH(double, degrees);
    QTEST(KelLatitude(degrees).toString(false), "decimal");
    QTEST(KelLatitude(degrees).toString(true), "dms");
    QCOMPARE(KelLatitude(-33.8688).toString(false), QStringLiteral("S33.86880000"));
    for (const double invalid : {720.0, 360.0001, -360.0001}) {
        QVERIFY(KelLatitude(invalid).toString(false).isNull());
        QVERIFY(KelLatitude(invalid).toString(true).isNull());
    }
}

void tst_KelLatitude::lettersAreTranslated()
{
    RecordingTranslator translator;
    translator.setTranslation(QStringLiteral("S"), QStringLiteral("Z"));
    QCOMPARE(KelLatitude(1.0).directionIndicator(), QStringLiteral("N"));
    QCOMPARE(KelLatitude(-1.0).directionIndicator(), QStringLiteral("Z"));
    const QList<RecordingTranslator::Request> expected{
        {QStringLiteral("KelLatitude"), QStringLiteral("N"), QStringLiteral("short for 'north'")},
        {QStringLiteral("KelLatitude"), QStringLiteral("S"), QStringLiteral("short for 'south'")}};
    QCOMPARE(translator.takeRequests(), expected);
    QCOMPARE(KelLatitude(-1.5).toString(false), QStringLiteral("Z1.50000000"));
}

void tst_KelLatitude::dmsTextsAreTranslated()
{
    RecordingTranslator translator;
    translator.setTranslation(QStringLiteral("%1° %2′ %3″ Süd"), QStringLiteral("south %1 %2 %3"));
    QCOMPARE(KelLatitude(1.0).toString(true), QStringLiteral("1° 0′ 0″ Nord"));
    QCOMPARE(KelLatitude(-1.5).toString(true), QStringLiteral("south 1 30 0"));
    const QString disambiguation = QStringLiteral("Coordinate / Nautical Bearing  Latitude  Breite");
    const QList<RecordingTranslator::Request> expected{
        {QStringLiteral("QObject"), QStringLiteral("%1° %2\u2032 %3\u2033 Nord"), disambiguation},
        {QStringLiteral("QObject"), QStringLiteral("%1° %2\u2032 %3\u2033 Süd"), disambiguation}};
    QCOMPARE(translator.takeRequests(), expected);
}

void tst_KelLatitude::debugStream()
{
    QString text;
    QDebug(&text) << KelLatitude(-33.5);
    QCOMPARE(text, QStringLiteral("S33.50000000°"));
    QString invalid;
    QDebug(&invalid) << KelLatitude();
    QCOMPARE(invalid, QStringLiteral("°"));
}

QTEST_GUILESS_MAIN(tst_KelLatitude)
#include "tst_KelLatitude.moc"

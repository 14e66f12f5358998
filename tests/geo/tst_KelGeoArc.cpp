// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoArc.h>
#include <KelLatitude.h>
#include <KelLongitude.h>
#include <KelTestSupport.h>

#include <QtTest>

#include <QUrlQuery>
#include <QVariant>

#include <cmath>
#include <limits>
#include <type_traits>

class tst_KelGeoArc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultIsInvalid();
    void isValueType();
    void isValid_data();
    void isValid();
    void isNull();
    void decomposition_data();
    void decomposition();
    void decompositionOfExtremes();
    void roundingOfOneDegreeFortyMinutes();
    void setDegree_data();
    void setDegree();
    void setDegreeAddsMinuteDegreeSecond();
    void radians();
    void absDistance_data();
    void absDistance();
    void arithmetic();
    void divisionByZero();
    void comparison_data();
    void comparison();
    void toString_data();
    void toString();
    void variants();
    void fromVariant_data();
    void fromVariant();
    void writeTo();
    void directionIndicatorIsEmpty();
    void humanReadable_data();
    void humanReadable();
    void humanReadableFillsTheLastPlacesAtOnce();
    void fromString_data();
    void fromString();
    void toExifRational_data();
    void toExifRational();
    void debugStream();
};

void tst_KelGeoArc::defaultIsInvalid()
{
    QVERIFY(KelGeoArc().decimalDegrees() == 720.0);
    QVERIFY(KelGeoArc::INVALID == 720.0);
    QVERIFY(!KelGeoArc().isValid());
}

void tst_KelGeoArc::isValueType()
{
    QVERIFY(std::has_virtual_destructor_v<KelGeoArc>);
    QVERIFY(std::is_nothrow_move_constructible_v<KelGeoArc>);
    KelGeoArc arc(8.5);
    const KelGeoArc copy = arc;
    arc.setDecimalDegrees(1000.25);
    QVERIFY(arc.decimalDegrees() == 1000.25);
    QVERIFY(arc.degreeF() == 1000.25);
    QVERIFY(copy.decimalDegrees() == 8.5);
}

void tst_KelGeoArc::isValid_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("valid");

    QTest::newRow("zero") << 0.0 << true;
    QTest::newRow("upper end") << 360.0 << true;
    QTest::newRow("just above, no tolerance") << std::nextafter(360.0, 400.0) << false;
    QTest::newRow("lower end") << -360.0 << true;
    QTest::newRow("just below, no tolerance") << std::nextafter(-360.0, -400.0) << false;
    QTest::newRow("invalid marker") << 720.0 << false;
    QTest::newRow("missing coordinate") << -720.0 << false;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << false;
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity() << false;
}

void tst_KelGeoArc::isValid()
{
    QFETCH(double, degrees);
    QFETCH(bool, valid);
    QCOMPARE(KelGeoArc(degrees).isValid(), valid);
}

void tst_KelGeoArc::isNull()
{
    QVERIFY(KelGeoArc(0.0).isNull());
    QVERIFY(KelGeoArc(-0.0).isNull());
    QVERIFY(!KelGeoArc(1e-9).isNull());
    QVERIFY(!KelGeoArc().isNull());
}

void tst_KelGeoArc::decomposition_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<int>("degree");
    QTest::addColumn<int>("minute");
    QTest::addColumn<double>("minuteF");
    QTest::addColumn<double>("secondF");

    QTest::newRow("zero") << 0.0 << 0 << 0 << 0.0 << 0.0;
    QTest::newRow("half a degree") << 53.5 << 53 << 30 << 30.0 << 0.0;
    QTest::newRow("half a degree below zero: the minute carries the sign") << -0.5 << 0 << -30 << 30.0 << 0.0;
    QTest::newRow("seconds") << 53.140625 << 53 << 8 << 8.4375 << 26.25;
    QTest::newRow("negative: minute and seconds too, minuteF not") << -53.140625 << -53 << -8 << 8.4375 << -26.25;
    QTest::newRow("only seconds") << -0.00390625 << 0 << 0 << 0.234375 << -14.0625;
    QTest::newRow("full turn") << 360.0 << 360 << 0 << 0.0 << 0.0;
    QTest::newRow("invalid marker is a number like any other") << 720.0 << 720 << 0 << 0.0 << 0.0;
}

void tst_KelGeoArc::decomposition()
{
    QFETCH(double, degrees);
    QFETCH(double, minuteF);
    QFETCH(double, secondF);
    const KelGeoArc arc(degrees);
    QTEST(arc.degree(), "degree");
    QTEST(arc.minute(), "minute");
    QVERIFY(arc.minuteF() == minuteF);
    QVERIFY(arc.secondF() == secondF);
}

void tst_KelGeoArc::decompositionOfExtremes()
{
    QCOMPARE(KelGeoArc(1e300).degree(), std::numeric_limits<int>::max());
    QCOMPARE(KelGeoArc(-1e300).degree(), -std::numeric_limits<int>::max());
    QCOMPARE(KelGeoArc(std::numeric_limits<double>::infinity()).degree(), std::numeric_limits<int>::max());
    QCOMPARE(KelGeoArc(std::numeric_limits<double>::quiet_NaN()).degree(), 0);
    QCOMPARE(KelGeoArc(std::numeric_limits<double>::quiet_NaN()).minute(), 0);
    QVERIFY(KelGeoArc(1e9).minute() < 60);
    QVERIFY(std::isfinite(KelGeoArc(1e300).secondF()));
    QVERIFY(!KelGeoArc(-1e300).humanReadable(QString(), 0).isEmpty());
    QVERIFY(!KelGeoArc(-1e300).toExifRational().isEmpty());
}

void tst_KelGeoArc::roundingOfOneDegreeFortyMinutes()
{
    KelGeoArc arc;
    arc.setDegree(1, 40, 0.0);
    QCOMPARE(arc.degree(), 1);
    QCOMPARE(arc.minute(), 39);
    QVERIFY(arc.secondF() < 60.0);
    QVERIFY(arc.secondF() > 59.999999);
}

void tst_KelGeoArc::setDegree_data()
{
    QTest::addColumn<int>("degree");
    QTest::addColumn<int>("minute");
    QTest::addColumn<double>("second");
    QTest::addColumn<double>("degrees");

    QTest::newRow("zero") << 0 << 0 << 0.0 << 0.0;
    QTest::newRow("degrees") << 53 << 0 << 0.0 << 53.0;
    QTest::newRow("minutes") << 53 << 30 << 0.0 << 53.5;
    QTest::newRow("seconds") << 53 << 8 << 30.0 << 53.14166666666667;
    QTest::newRow("negative, all parts") << -53 << -8 << -30.0 << -53.14166666666667;
    QTest::newRow("mixed signs are added") << 1 << -30 << 0.0 << 0.5;
    QTest::newRow("more than sixty minutes") << 0 << 90 << 3600.0 << 2.5;
}

void tst_KelGeoArc::setDegree()
{
    QFETCH(int, degree);
    QFETCH(int, minute);
    QFETCH(double, second);
    KelGeoArc arc;
    arc.setDegree(degree, minute, second);
    QTEST(arc.decimalDegrees(), "degrees");
}

void tst_KelGeoArc::setDegreeAddsMinuteDegreeSecond()
{
    // Rounded after each step; every other order of the three gives a number next to these.
    KelGeoArc arc;
    arc.setDegree(1, 13, 5.0);
    QVERIFY(arc.decimalDegrees() == 1.2180555555555557);
    arc.setDegree(1, 13, 28.0);
    QVERIFY(arc.decimalDegrees() == 1.2244444444444447);
}

void tst_KelGeoArc::radians()
{
    QVERIFY(KelGeoArc(1.0).radians() == 0.017453292519943295);
    QCOMPARE(KelGeoArc(180.0).radians(), 3.141592653589793);
    QVERIFY(KelGeoArc::fromRadians(1.0).decimalDegrees() == 57.29577951308232);
    QCOMPARE(KelGeoArc::fromRadians(-3.141592653589793).decimalDegrees(), -180.0);
}

void tst_KelGeoArc::absDistance_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("distance");

    QTest::newRow("greater first") << 10.0 << 4.0 << 6.0;
    QTest::newRow("lesser first") << 4.0 << 10.0 << 6.0;
    QTest::newRow("either side of zero") << -4.0 << 10.0 << 14.0;
    QTest::newRow("not reduced at the date line") << 179.0 << -179.0 << 358.0;
}

void tst_KelGeoArc::absDistance()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QTEST(KelGeoArc(a).absDistance(b).decimalDegrees(), "distance");
    QTEST(KelLongitude(a).absDistance(KelLongitude(b)).decimalDegrees(), "distance");
}

void tst_KelGeoArc::arithmetic()
{
    QVERIFY((KelGeoArc(1.5) + KelGeoArc(2.0)).decimalDegrees() == 3.5);
    QVERIFY((KelGeoArc(1.5) - KelGeoArc(2.0)).decimalDegrees() == -0.5);
    QVERIFY((KelGeoArc(1.5) * -2.0).decimalDegrees() == -3.0);
    QVERIFY((KelGeoArc(1.5) / 2.0).decimalDegrees() == 0.75);
    // An invalid angle is a number like any other.
    QVERIFY((KelGeoArc() + KelGeoArc(1.0)).decimalDegrees() == 721.0);
    KelGeoArc arc(1.0);
    arc += KelGeoArc(0.25);
    QVERIFY(arc.decimalDegrees() == 1.25);
    QVERIFY((std::is_same_v<decltype(arc + arc), KelGeoArc>));
}

void tst_KelGeoArc::divisionByZero()
{
    QVERIFY((KelGeoArc(8.0) / 0.0).decimalDegrees() == 720.0);
    QVERIFY((KelGeoArc(8.0) / -0.0).decimalDegrees() == 720.0);
    QVERIFY((KelGeoArc(0.0) / 0.0).decimalDegrees() == 720.0);
    QVERIFY((KelLatitude(8.0) / 0.0).decimalDegrees() == 720.0);
    QVERIFY((KelLatitude(8.0) / -0.0).decimalDegrees() == 720.0);
    QVERIFY((KelLongitude(8.0) / 0.0).decimalDegrees() == 720.0);
    QVERIFY((KelLongitude(8.0) / -0.0).decimalDegrees() == 720.0);
    // A small divisor is none of them.
    QVERIFY((KelGeoArc(8.0) / 1e-300).decimalDegrees() > 1e300);
}

void tst_KelGeoArc::comparison_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<bool>("equal");
    QTest::addColumn<bool>("less");
    QTest::addColumn<bool>("greater");

    QTest::newRow("same") << 90.0 << 90.0 << true << false << false;
    QTest::newRow("below, within the tolerance") << 90.0 - 5e-7 << 90.0 << true << true << false;
    QTest::newRow("above, within the tolerance") << 90.0 + 5e-7 << 90.0 << true << false << true;
    QTest::newRow("below, outside") << 89.999 << 90.0 << false << true << false;
    QTest::newRow("above, outside") << 90.001 << 90.0 << false << false << true;
    QTest::newRow("a little less than the tolerance apart") << 0.0 << 9.99999e-7 << true << true << false;
    QTest::newRow("exactly the tolerance apart is not equal") << 0.0 << 1e-6 << false << true << false;
    QTest::newRow("signed zeros") << 0.0 << -0.0 << true << false << false;
}

void tst_KelGeoArc::comparison()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(bool, equal);
    QFETCH(bool, less);
    QFETCH(bool, greater);

    const auto check = [equal, less, greater](const auto &left, const auto &right) {
        QCOMPARE(left == right, equal);
        QCOMPARE(right == left, equal);
        QCOMPARE(left != right, !equal);
        QCOMPARE(left < right, less);
        QCOMPARE(left > right, greater);
        QCOMPARE(left <= right, less || equal);
        QCOMPARE(left >= right, greater || equal);
    };
    check(KelGeoArc(a), KelGeoArc(b));
    check(KelLatitude(a), KelLatitude(b));
    check(KelLongitude(a), KelLongitude(b));
    check(KelLatitude(a), b);
    check(a, KelLongitude(b));
}

void tst_KelGeoArc::toString_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("text");

    QTest::newRow("positive") << 53.5 << QStringLiteral("53.5000000000000000");
    QTest::newRow("negative") << -0.25 << QStringLiteral("-0.2500000000000000");
    QTest::newRow("zero") << 0.0 << QStringLiteral("0.0000000000000000");
    QTest::newRow("negative zero has no sign") << -0.0 << QStringLiteral("0.0000000000000000");
    QTest::newRow("invalid marker") << 720.0 << QStringLiteral("720.0000000000000000");
    QTest::newRow("no exponent") << 1e-10 << QStringLiteral("0.0000000001000000");
}

void tst_KelGeoArc::toString()
{
    QFETCH(double, degrees);
    QTEST(KelGeoArc(degrees).toString(), "text");
}

void tst_KelGeoArc::variants()
{
    const QVariant variant = KelGeoArc(-33.25).toVariant();
    QCOMPARE(variant.typeId(), QMetaType::Double);
    QCOMPARE(variant.toDouble(), -33.25);
    QVERIFY(KelGeoArc::fromVariant(variant).decimalDegrees() == -33.25);
}

void tst_KelGeoArc::fromVariant_data()
{
    QTest::addColumn<QVariant>("variant");
    QTest::addColumn<double>("degrees");

    QTest::newRow("empty") << QVariant() << 720.0;
    QTest::newRow("double") << QVariant(8.25) << 8.25;
    QTest::newRow("int") << QVariant(8) << 8.0;
    QTest::newRow("text with a number") << QVariant(QStringLiteral("53.5")) << 53.5;
    QTest::newRow("text without a number") << QVariant(QStringLiteral("north")) << 0.0;
    QTest::newRow("null text is no empty variant") << QVariant(QString()) << 0.0;
}

void tst_KelGeoArc::fromVariant()
{
    QFETCH(QVariant, variant);
    QFETCH(double, degrees);
    QVERIFY(KelGeoArc::fromVariant(variant).decimalDegrees() == degrees);
}

void tst_KelGeoArc::writeTo()
{
    QUrlQuery query;
    KelGeoArc(-0.25).writeTo(query, QStringLiteral("arc"));
    // The subclasses' text has a letter; in a query the plain number is written for them, too.
    KelLatitude(-33.5).writeTo(query, QStringLiteral("lat"));
    KelLongitude(8.125).writeTo(query, QStringLiteral("lon"));
    QCOMPARE(query.toString(QUrl::FullyEncoded),
             QStringLiteral("arc=-0.2500000000000000&lat=-33.5000000000000000&lon=8.1250000000000000"));
}

void tst_KelGeoArc::directionIndicatorIsEmpty()
{
    QVERIFY(KelGeoArc(8.0).directionIndicator().isEmpty());
    QVERIFY(KelGeoArc(-8.0).directionIndicator().isEmpty());
}

void tst_KelGeoArc::humanReadable_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("arc");
    QTest::addColumn<QString>("latitude");
    QTest::addColumn<QString>("longitude");

    QTest::newRow("degrees") << 53.140625 << QStringLiteral("d") << 3 << QStringLiteral("53.141° ")
                             << QStringLiteral("53.141° N") << QStringLiteral("53.141° E");
    QTest::newRow("degrees, negative, no decimals")
        << -33.75 << QStringLiteral("d") << 0 << QStringLiteral("34° ") << QStringLiteral("34° S")
        << QStringLiteral("34° W");
    QTest::newRow("minutes") << 53.140625 << QStringLiteral("dm") << 4 << QStringLiteral("53° 8.4375' ")
                             << QStringLiteral("53° 8.4375' N") << QStringLiteral("53° 8.4375' E");
    QTest::newRow("minutes, negative") << -0.5 << QStringLiteral("dm") << 1 << QStringLiteral("0° 30.0' ")
                                       << QStringLiteral("0° 30.0' S") << QStringLiteral("0° 30.0' W");
    QTest::newRow("seconds") << 53.140625 << QStringLiteral("dms") << 2 << QStringLiteral("53° 8' 26.25\" ")
                             << QStringLiteral("53° 8' 26.25\" N") << QStringLiteral("53° 8' 26.25\" E");
    QTest::newRow("seconds, negative")
        << -53.140625 << QStringLiteral("dms") << 2 << QStringLiteral("53° 8' 26.25\" ")
        << QStringLiteral("53° 8' 26.25\" S") << QStringLiteral("53° 8' 26.25\" W");
    QTest::newRow("any other format means seconds") << 0.5 << QString() << 0 << QStringLiteral("0° 30' 0\" ")
                                                    << QStringLiteral("0° 30' 0\" N")
                                                    << QStringLiteral("0° 30' 0\" E");
    QTest::newRow("capital D means seconds") << 0.5 << QStringLiteral("D") << 1 << QStringLiteral("0° 30' 0.0\" ")
                                             << QStringLiteral("0° 30' 0.0\" N")
                                             << QStringLiteral("0° 30' 0.0\" E");
    QTest::newRow("capital DM means seconds")
        << 0.5 << QStringLiteral("DM") << 1 << QStringLiteral("0° 30' 0.0\" ") << QStringLiteral("0° 30' 0.0\" N")
        << QStringLiteral("0° 30' 0.0\" E");
}

void tst_KelGeoArc::humanReadable()
{
    QFETCH(double, degrees);
    QFETCH(QString, format);
    QFETCH(int, precision);
    QTEST(KelGeoArc(degrees).humanReadable(format, precision), "arc");
    QTEST(KelLatitude(degrees).humanReadable(format, precision), "latitude");
    QTEST(KelLongitude(degrees).humanReadable(format, precision), "longitude");
    const KelLatitude latitude(degrees);
    const KelGeoArc &base = latitude;
    QTEST(base.humanReadable(format, precision), "latitude");
}

void tst_KelGeoArc::humanReadableFillsTheLastPlacesAtOnce()
{
    KelTestSupport::RecordingTranslator translator;
    translator.setTranslation(QStringLiteral("N"), QStringLiteral("%1%2%3"));
    QCOMPARE(KelLatitude(53.5).humanReadable(QStringLiteral("d"), 1), QStringLiteral("53.5° %1%2%3"));
    QCOMPARE(KelLatitude(53.5).humanReadable(QStringLiteral("dm"), 0), QStringLiteral("53° 30' %1%2%3"));
    QCOMPARE(KelLatitude(53.5).humanReadable(QStringLiteral("dms"), 0), QStringLiteral("53° 30' 0\" %1%2%3"));
}

void tst_KelGeoArc::fromString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("degrees");

    constexpr double northern = 53.14166666666667; // 53 + 8 / 60 + 30 / 3600
    constexpr double small = 1.0341666666666667;   // 1 + 2 / 60 + 3 / 3600

    QTest::newRow("with symbols") << QStringLiteral("53°,8',30\" N") << northern;
    QTest::newRow("without symbols") << QStringLiteral("53, 8, 30 N") << northern;
    QTest::newRow("without a letter") << QStringLiteral("53,8,30") << northern;
    QTest::newRow("fraction of a second") << QStringLiteral("0,0,0.9") << 0.00025;
    QTest::newRow("empty") << QString() << 720.0;
    QTest::newRow("two parts") << QStringLiteral("8,30") << 720.0;
    QTest::newRow("two parts and an empty one") << QStringLiteral("8,,30") << 720.0;
    QTest::newRow("decimal text") << QStringLiteral("N53.1") << 720.0;
    QTest::newRow("empty parts are dropped") << QStringLiteral(",1,,2,3,") << small;
    QTest::newRow("further parts are ignored") << QStringLiteral("1,2,3,4") << small;
    QTest::newRow("tabs and line ends") << QStringLiteral("\t1 ,\n2,3") << small;
    QTest::newRow("W") << QStringLiteral("1,2,3 W") << -small;
    QTest::newRow("w") << QStringLiteral("1,2,3w") << -small;
    QTest::newRow("S") << QStringLiteral("S1,2,3") << -small;
    QTest::newRow("s") << QStringLiteral("1,s2,3") << -small;
    QTest::newRow("N") << QStringLiteral("1,2,3 N") << small;
    QTest::newRow("n") << QStringLiteral("-1,-2,-3 n") << small;
    QTest::newRow("E") << QStringLiteral("-1,-2,-3 E") << small;
    QTest::newRow("e") << QStringLiteral("1,2,3 e") << small;
    QTest::newRow("blanks within a number are removed") << QStringLiteral("5 3, 8,3\t0 N") << northern;
    QTest::newRow("letters within a number are removed") << QStringLiteral("5n3,8,3N0") << northern;
    QTest::newRow("S and E: the second test wins") << QStringLiteral("1,2,3 SE") << small;
    QTest::newRow("N and w: the second test wins") << QStringLiteral("N 1,2,3 w") << small;
    QTest::newRow("negative parts stay negative with W") << QStringLiteral("-1,-2,-3 W") << -small;
    QTest::newRow("negative parts without a letter") << QStringLiteral("-1,-2,-3") << -small;
    QTest::newRow("negative parts become positive with N") << QStringLiteral("-1,-2,-3 N") << small;
    QTest::newRow("mixed parts with S") << QStringLiteral("1,-2,3 S") << -small;
    QTest::newRow("the word East spoils the seconds") << QStringLiteral("1,30,3 East") << 1.5;
    QTest::newRow("the word Süd spoils the seconds") << QStringLiteral("1,30,3 Süd") << -1.5;
    QTest::newRow("degree that is no number") << QStringLiteral("x,30,0") << 0.5;
    QTest::newRow("minute that is no whole number") << QStringLiteral("1,30.5,0") << 1.0;
    QTest::newRow("second that is no number") << QStringLiteral("1,30,x") << 1.5;
    QTest::newRow("degree too large for an int") << QStringLiteral("99999999999,30,0") << 0.5;
    QTest::newRow("prime is no ASCII apostrophe") << QStringLiteral("1,30′,0") << 1.0;
}

void tst_KelGeoArc::fromString()
{
    QFETCH(QString, text);
    QTEST(KelGeoArc::fromString(text).decimalDegrees(), "degrees");
    // The least int has no positive counterpart.
    QVERIFY(!KelGeoArc::fromString(QStringLiteral("-2147483648,-2147483648,0 N")).isValid());
}

void tst_KelGeoArc::toExifRational_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0.0 << QStringLiteral("0/1 0/1 0/100000");
    QTest::newRow("positive") << 53.140625 << QStringLiteral("53/1 8/1 2625000/100000");
    QTest::newRow("negative") << -53.140625 << QStringLiteral("53/1 8/1 2625000/100000");
    QTest::newRow("only minutes") << -0.5 << QStringLiteral("0/1 30/1 0/100000");
    QTest::newRow("half a unit is rounded away from zero")
        << 1.0 / 64.0 / 3600.0 << QStringLiteral("0/1 0/1 1563/100000");
}

void tst_KelGeoArc::toExifRational()
{
    QFETCH(double, degrees);
    QTEST(KelGeoArc(degrees).toExifRational(), "text");
}

void tst_KelGeoArc::debugStream()
{
    QString text;
    QDebug(&text) << KelGeoArc(-0.25);
    QCOMPARE(text, QStringLiteral("-0.2500000000000000"));

    // The stream's own manner of writing is as before afterwards.
    QString mixed;
    QDebug(&mixed) << 1 << KelGeoArc(0.5) << QStringLiteral("a") << 2;
    QCOMPARE(mixed, QStringLiteral("1 0.5000000000000000\"a\" 2 "));
}

QTEST_GUILESS_MAIN(tst_KelGeoArc)
#include "tst_KelGeoArc.moc"

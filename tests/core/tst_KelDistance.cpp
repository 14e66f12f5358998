// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelDistance.h>
#include <KelDistanceUnit.h>

#include <QObject>
#include <QtTest>

#include <cmath>
#include <limits>
#include <type_traits>

class tst_KelDistance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void value();
    void isNull_data();
    void isNull();
    void comparison_data();
    void comparison();
    void notANumberEqualsNothing();
    void arithmetic();
    void division();
    void describe_data();
    void describe();
    void describeDoesNotFollowTheLocale();
};

void tst_KelDistance::value()
{
    QCOMPARE(KelDistance().value(), 0.0);
    QCOMPARE(KelDistance(2.5).value(), 2.5);
    QCOMPARE(KelDistance(2.5).toDouble(), 2.5);
    const KelDistance fromNumber = 300;
    QCOMPARE(fromNumber.value(), 300.0);
}

void tst_KelDistance::isNull_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("null");

    QTest::newRow("zero") << 0.0 << true;
    QTest::newRow("minus zero") << -0.0 << true;
    QTest::newRow("smallest number") << std::numeric_limits<double>::denorm_min() << false;
    QTest::newRow("negative") << -1.0 << false;
}

void tst_KelDistance::isNull()
{
    QFETCH(double, value);
    QTEST(KelDistance(value).isNull(), "null");
    QCOMPARE(KelDistance().isNull(), true);
}

void tst_KelDistance::comparison_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<int>("order");

    QTest::newRow("less") << 1.0 << 2.0 << -1;
    QTest::newRow("equal") << 2.0 << 2.0 << 0;
    QTest::newRow("greater") << 3.0 << 2.0 << 1;
    QTest::newRow("less by the smallest step: no tolerance") << 2.0 << std::nextafter(2.0, 3.0) << -1;
}

void tst_KelDistance::comparison()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(int, order);
    QCOMPARE(KelDistance(a) == KelDistance(b), order == 0);
    QCOMPARE(KelDistance(a) != KelDistance(b), order != 0);
    QCOMPARE(KelDistance(a) < KelDistance(b), order < 0);
    QCOMPARE(KelDistance(a) > KelDistance(b), order > 0);
    QCOMPARE(KelDistance(a) <= KelDistance(b), order <= 0);
    QCOMPARE(KelDistance(a) >= KelDistance(b), order >= 0);
}

void tst_KelDistance::notANumberEqualsNothing()
{
    const KelDistance nan(std::numeric_limits<double>::quiet_NaN());
    QVERIFY(!(nan == nan));
    QVERIFY(nan != nan);
    QVERIFY(!nan.isNull());
}

void tst_KelDistance::arithmetic()
{
    QCOMPARE((KelDistance(1.5) + KelDistance(2.0)).value(), 3.5);
    QCOMPARE((KelDistance(1.5) - KelDistance(2.0)).value(), -0.5);
    QCOMPARE((KelDistance(1.5) * 2.0).value(), 3.0);
    QCOMPARE((2.0 * KelDistance(1.5)).value(), 3.0);
    KelDistance sum(1.0);
    sum += KelDistance(0.5);
    QCOMPARE(sum.value(), 1.5);
    sum -= KelDistance(2.0);
    QCOMPARE(sum.value(), -0.5);
}

void tst_KelDistance::division()
{
    // By a number it stays a distance, by a distance it becomes a plain ratio.
    static_assert(std::is_same_v<decltype(KelDistance(1) / 2.0), KelDistance>);
    static_assert(std::is_same_v<decltype(KelDistance(1) / 2), KelDistance>);
    static_assert(std::is_same_v<decltype(KelDistance(1) / KelDistance(2)), double>);
    QCOMPARE((KelDistance(3.0) / 2.0).value(), 1.5);
    QCOMPARE(KelDistance(3.0) / KelDistance(2.0), 1.5);
    QCOMPARE(KelDistance(3.0) / KelDistance(), std::numeric_limits<double>::infinity());
    QVERIFY(std::isnan(KelDistance() / KelDistance()));
}

void tst_KelDistance::describe_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("unit");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("showUnit");
    QTest::addColumn<QString>("text");

    QTest::newRow("line width") << 10.0 << 1 << 1 << true << "10.0 px";
    QTest::newRow("rounded up") << 2.26 << 1 << 1 << true << "2.3 px";
    QTest::newRow("no decimals") << 2.0 << 1 << 0 << true << "2 px";
    QTest::newRow("unit not shown") << 10.0 << 1 << 1 << false << "10.0";
    QTest::newRow("kilometres") << 1.5 << 2 << 2 << true << "1.50 km";
    QTest::newRow("kilometres in metres") << 1.5 << 4 << 0 << true << "1500 m";
    QTest::newRow("kilometres in nautical miles") << 1.852 << 8 << 1 << true << "1.0 NM";
    QTest::newRow("unknown unit adds no blank") << 1.5 << 0 << 1 << true << "1.5";
    QTest::newRow("negative") << -1.5 << 1 << 1 << true << "-1.5 px";
}

void tst_KelDistance::describe()
{
    QFETCH(double, value);
    QFETCH(int, unit);
    QFETCH(int, decimals);
    QFETCH(bool, showUnit);
    QTEST(KelDistance(value).describe(KelDistanceUnit(unit), decimals, showUnit), "text");
}

void tst_KelDistance::describeDoesNotFollowTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const QString text = KelDistance(1234.5).describe(KelDistanceUnitEnum::Pixel, 1, true);
    QLocale::setDefault(before);
    QCOMPARE(text, QStringLiteral("1234.5 px"));
}

QTEST_GUILESS_MAIN(tst_KelDistance)
#include "tst_KelDistance.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLongitudeList.h>
#include <KelLongitudeRange.h>

#include <QtTest>

#include <type_traits>

class tst_KelLongitudeList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAList();
    void boundsAndAverage_data();
    void boundsAndAverage();
    void hemispheres();
    void effectiveRange_data();
    void effectiveRange();
};

void tst_KelLongitudeList::isAList()
{
    KelLongitudeList list{3.0, 7.0};
    list.append(8.0);
    QCOMPARE(list.size(), 3);
    QVERIFY(list.at(2).decimalDegrees() == 8.0);
    QVERIFY(std::has_virtual_destructor_v<KelLongitudeList>);
}

void tst_KelLongitudeList::boundsAndAverage_data()
{
    QTest::addColumn<KelLongitudeList>("list");
    QTest::addColumn<double>("average");
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");

    QTest::newRow("empty") << KelLongitudeList() << 720.0 << 720.0 << 720.0;
    QTest::newRow("one") << KelLongitudeList{-5.0} << -5.0 << -5.0 << -5.0;
    QTest::newRow("several") << KelLongitudeList{10.0, 20.0, -6.0} << 8.0 << -6.0 << 20.0;
    QTest::newRow("plain numbers at the date line") << KelLongitudeList{170.0, -170.0} << 0.0 << -170.0 << 170.0;
}

void tst_KelLongitudeList::boundsAndAverage()
{
    QFETCH(KelLongitudeList, list);
    QTEST(list.average().decimalDegrees(), "average");
    QTEST(list.westernBound().decimalDegrees(), "west");
    QTEST(list.easternBound().decimalDegrees(), "east");
    QTEST(list.naiveRange().min().decimalDegrees(), "west");
    QTEST(list.naiveRange().max().decimalDegrees(), "east");
}

void tst_KelLongitudeList::hemispheres()
{
    const KelLongitudeList list{-180.0, 10.0, -10.0, 0.0, 180.0, -179.0, 5.0};
    QCOMPARE(list.onlyWesternHemisphere(), (KelLongitudeList{-10.0, -179.0}));
    QCOMPARE(list.onlyEasternHemisphere(), (KelLongitudeList{-180.0, 10.0, 0.0, 180.0, 5.0}));
    QVERIFY(KelLongitudeList().onlyWesternHemisphere().isEmpty());
}

void tst_KelLongitudeList::effectiveRange_data()
{
    QTest::addColumn<KelLongitudeList>("list");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");

    QTest::newRow("empty") << KelLongitudeList() << 720.0 << 720.0;
    QTest::newRow("around the date line") << KelLongitudeList{170.0, 175.0, -175.0} << 170.0 << -175.0;
    QTest::newRow("two places, either side of it") << KelLongitudeList{-170.0, 170.0} << 170.0 << -170.0;
    QTest::newRow("around the prime meridian") << KelLongitudeList{10.0, 20.0, -5.0} << -5.0 << 20.0;
    QTest::newRow("only east") << KelLongitudeList{170.0, 180.0, 100.0} << 100.0 << 180.0;
    QTest::newRow("only west") << KelLongitudeList{-170.0, -175.0} << -175.0 << -170.0;
    QTest::newRow("averages half a turn apart: not more") << KelLongitudeList{90.0, -90.0} << -90.0 << 90.0;
    QTest::newRow("averages a little more than half a turn apart")
        << KelLongitudeList{90.5, -90.0} << 90.5 << -90.0;
    QTest::newRow("date line and west of the Americas") << KelLongitudeList{180.0, -170.0} << 180.0 << -170.0;
    QTest::newRow("averages decide, not single places")
        << KelLongitudeList{179.0, 1.0, 2.0, -1.0, -178.0} << -178.0 << 179.0;
}

void tst_KelLongitudeList::effectiveRange()
{
    QFETCH(KelLongitudeList, list);
    QFETCH(double, min);
    QFETCH(double, max);
    const KelRange<KelLongitude> range = list.effectiveRange();
    QVERIFY(range.min().decimalDegrees() == min);
    QVERIFY(range.max().decimalDegrees() == max);
    QCOMPARE(KelLongitudeRange(range).crossesDateLine(), min > max);
}

QTEST_GUILESS_MAIN(tst_KelLongitudeList)
#include "tst_KelLongitudeList.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLatitudeList.h>

#include <QtTest>

#include <cmath>
#include <type_traits>

class tst_KelLatitudeList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAList();
    void boundsAndAverage_data();
    void boundsAndAverage();
    void firstOfEqualsIsTheBound();
};

void tst_KelLatitudeList::isAList()
{
    KelLatitudeList list{3.0, 7.0};
    list.append(8.0);
    QCOMPARE(list.size(), 3);
    QVERIFY(list.at(2).decimalDegrees() == 8.0);
    const KelLatitudeList copy = list;
    QCOMPARE(copy, list);
    QVERIFY(std::has_virtual_destructor_v<KelLatitudeList>);
}

void tst_KelLatitudeList::boundsAndAverage_data()
{
    QTest::addColumn<KelLatitudeList>("list");
    QTest::addColumn<double>("average");
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("north");

    QTest::newRow("empty") << KelLatitudeList() << 720.0 << 720.0 << 720.0;
    QTest::newRow("one") << KelLatitudeList{-5.0} << -5.0 << -5.0 << -5.0;
    QTest::newRow("several") << KelLatitudeList{3.0, 7.0, 7.0} << 5.666666666666667 << 3.0 << 7.0;
    QTest::newRow("both hemispheres") << KelLatitudeList{10.0, -20.0, 40.0, 30.0} << 15.0 << -20.0 << 40.0;
}

void tst_KelLatitudeList::boundsAndAverage()
{
    QFETCH(KelLatitudeList, list);
    QTEST(list.average().decimalDegrees(), "average");
    QTEST(list.southernBound().decimalDegrees(), "south");
    QTEST(list.northernBound().decimalDegrees(), "north");
    QTEST(list.range().min().decimalDegrees(), "south");
    QTEST(list.range().max().decimalDegrees(), "north");
}

void tst_KelLatitudeList::firstOfEqualsIsTheBound()
{
    // The tolerance has no say: the plain numbers decide.
    const KelLatitudeList list{5.0, 5.0000005, 4.9999995};
    QVERIFY(list.northernBound().decimalDegrees() == 5.0000005);
    QVERIFY(list.southernBound().decimalDegrees() == 4.9999995);
    const KelLatitudeList zeros{-0.0, 0.0};
    QVERIFY(std::signbit(zeros.northernBound().decimalDegrees()));
    QVERIFY(std::signbit(zeros.southernBound().decimalDegrees()));
}

QTEST_GUILESS_MAIN(tst_KelLatitudeList)
#include "tst_KelLatitudeList.moc"

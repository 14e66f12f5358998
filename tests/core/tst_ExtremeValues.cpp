// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelExtremeNumbers.h"

#include <KelDistance.h>
#include <KelDistanceUnit.h>
#include <KelIntRange.h>
#include <KelMath.h>
#include <KelPenStyle.h>
#include <KelRational.h>

#include <QImage>
#include <QPen>
#include <QTest>

#include <cmath>
#include <limits>

/// Every operation of the small values comes to an end with every number.
class tst_ExtremeValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void intRanges_data();
    void intRanges();
    void rationals();
    void nearlyEqual_data() { KelExtremeNumbers::addRows(); }
    void nearlyEqual();
    void distances_data() { KelExtremeNumbers::addRows(); }
    void distances();
    void pens_data() { KelExtremeNumbers::addRows(); }
    void pens();
};

void tst_ExtremeValues::intRanges_data()
{
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    const int top = std::numeric_limits<int>::max();
    const int bottom = std::numeric_limits<int>::min();
    QTest::newRow("nothing") << 0 << -1;
    QTest::newRow("all") << bottom << top;
    QTest::newRow("upside down") << top << bottom;
    QTest::newRow("the last") << top << top;
    QTest::newRow("the first") << bottom << bottom;
    QTest::newRow("the upper half") << 0 << top;
    QTest::newRow("the lower half") << bottom << -1;
}

void tst_ExtremeValues::intRanges()
{
    QFETCH(int, least);
    QFETCH(int, most);
    const KelIntRange range(least, most);
    QVERIFY(range.size() >= 0);
    QVERIFY(range.lastIndexEvenIfUnvalid() >= range.max());
    for (const int pieces : {std::numeric_limits<int>::min(), -1, 0, 1, 7, 100000}) {
        const QList<KelIntRange> split = range.splitEvenly(pieces);
        QVERIFY(!split.isEmpty() && split.size() <= std::max(1, pieces));
        QCOMPARE(split.first().min(), least);
        QCOMPARE(split.last().max(), most);
        for (qsizetype i = 1; i < split.size(); ++i)
            QCOMPARE(qint64(split.at(i).min()), qint64(split.at(i - 1).max()) + 1);
    }
    QCOMPARE(KelIntRange::rowsOfImage(QImage()).size(), 0);
}

void tst_ExtremeValues::rationals()
{
    const int top = std::numeric_limits<int>::max();
    const int bottom = std::numeric_limits<int>::min();
    QCOMPARE(KelRational(top, bottom).toString(), QStringLiteral("2147483647/-2147483648"));
    QCOMPARE(KelRational(bottom, 0).toString(), QStringLiteral("-2147483648/0"));
}

void tst_ExtremeValues::nearlyEqual()
{
    QFETCH(double, value);
    QCOMPARE(KelMath::epsilonEqual(value, value, 0.0), std::isfinite(value));
    QVERIFY(!KelMath::epsilonEqual(value, 12345.0, 0.5));
    QVERIFY(!KelMath::epsilonEqual(1.0, 1.0, -1.0));
    QVERIFY(!KelMath::epsilonEqual(value, 1.0, std::numeric_limits<double>::quiet_NaN()));
}

void tst_ExtremeValues::distances()
{
    QFETCH(double, value);
    const KelDistance distance(value);
    QVERIFY(!distance.describe(KelDistanceUnit(), 3, true).isEmpty());
    QVERIFY(!distance.describe(KelDistanceUnit(), 0, false).isEmpty());
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        const KelDistance second(other.value);
        QVERIFY(!(distance < second && distance > second));
        (void)(distance + second);
        (void)(distance - second);
        (void)(distance * other.value);
        (void)(distance / second);
    }
}

void tst_ExtremeValues::pens()
{
    QFETCH(double, value);
    for (const KelPenStyle &style : KelPenStyle::allStyles()) {
        QPen pen;
        pen.setWidthF(1.0);
        style.modifyPen(pen);
        QCOMPARE(KelPenStyle::fromKey(style.key()), style);
    }
    QVERIFY(KelPenStyle::allStyles().contains(KelPenStyle::fromKey(QString::number(value)))
            || KelPenStyle::fromKey(QString::number(value)) == KelPenStyle());
}

QTEST_MAIN(tst_ExtremeValues)
#include "tst_ExtremeValues.moc"

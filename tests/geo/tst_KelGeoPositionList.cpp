// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoPositionList.h>
#include <KelGeoPositionRect.h>
#include <KelLatitudeList.h>
#include <KelLongitudeList.h>

#include <QtTest>

#include <type_traits>

namespace
{

bool hasBounds(const KelGeoPositionRect &rect, double south, double west, double north, double east)
{
    return rect.south().decimalDegrees() == south && rect.west().decimalDegrees() == west
        && rect.north().decimalDegrees() == north && rect.east().decimalDegrees() == east;
}

bool isAt(const KelGeoPosition &position, double latitude, double longitude)
{
    return position.latitude().decimalDegrees() == latitude && position.longitude().decimalDegrees() == longitude;
}

/// Nine positions at (10, 10) and a tenth far away. Their average is (11, 11), the centre of their box (15, 15): the
/// nine lie nearer to the average than to the centre, the tenth about 1.8 times as far from the average.
KelGeoPositionList nineAndAStray()
{
    KelGeoPositionList list(QList<KelGeoPosition>(9, KelGeoPosition(10.0, 10.0)));
    list.append(KelGeoPosition(20.0, 20.0));
    return list;
}

} // namespace

class tst_KelGeoPositionList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAList();
    void boundingBox_data();
    void boundingBox();
    void boundingBoxOfOnePosition();
    void center();
    void average();
    void coordinates();
    void toPainterPath();
    void toPainterPathDropsRepeatedPoints();
    void filterStrayPositions_data();
    void filterStrayPositions();
};

void tst_KelGeoPositionList::isAList()
{
    KelGeoPositionList list{KelGeoPosition(1.0, 2.0), {3.0, 4.0}};
    list.append(KelGeoPosition(5.0, 6.0));
    QCOMPARE(list.size(), 3);
    QVERIFY(isAt(list.at(1), 3.0, 4.0));
    QVERIFY(std::has_virtual_destructor_v<KelGeoPositionList>);
}

void tst_KelGeoPositionList::boundingBox_data()
{
    QTest::addColumn<KelGeoPositionList>("list");
    QTest::addColumn<KelGeoPositionRect>("box");

    const auto rect = [](double south, double west, double north, double east) {
        return KelGeoPositionRect(KelGeoPosition(south, west), KelGeoPosition(north, east));
    };
    QTest::newRow("empty") << KelGeoPositionList() << KelGeoPositionRect();
    QTest::newRow("several") << KelGeoPositionList{{3.0, -4.0}, {1.0, 6.0}, {2.0, 0.0}} << rect(1.0, -4.0, 3.0, 6.0);
    QTest::newRow("invalid ones are skipped")
        << KelGeoPositionList{KelGeoPosition(), {3.0, 4.0}, {0.0, 0.0}, {1.0, 720.0}} << rect(3.0, 4.0, 3.0, 4.0);
    QTest::newRow("only invalid ones") << KelGeoPositionList{KelGeoPosition(), {0.0, 0.0}} << KelGeoPositionRect();
    QTest::newRow("the long way round at the date line")
        << KelGeoPositionList{{1.0, 170.0}, {2.0, -170.0}} << rect(1.0, -170.0, 2.0, 170.0);
}

void tst_KelGeoPositionList::boundingBox()
{
    QFETCH(KelGeoPositionList, list);
    QTEST(list.boundingBox(), "box");
}

void tst_KelGeoPositionList::boundingBoxOfOnePosition()
{
    const KelGeoPositionRect box = KelGeoPositionList{{53.0, 8.0}}.boundingBox();
    QVERIFY(hasBounds(box, 53.0, 8.0, 53.0, 8.0));
    QVERIFY(box.maxExtension().decimalDegrees() == 0.0);
    QCOMPARE(box.withPadding(10.0), KelGeoPositionRect(KelGeoPosition(52.9, 7.9), KelGeoPosition(53.1, 8.1)));
}

void tst_KelGeoPositionList::center()
{
    QVERIFY(isAt(KelGeoPositionList({{1.0, 2.0}, {1.5, 2.5}, {5.0, 12.0}}).center(), 3.0, 7.0));
    QVERIFY(isAt(KelGeoPositionList().center(), 720.0, 720.0));
}

void tst_KelGeoPositionList::average()
{
    QVERIFY(isAt(KelGeoPositionList({{1.0, 2.0}, {2.0, 4.0}, {6.0, -12.0}}).average(), 3.0, -2.0));
    QVERIFY(isAt(KelGeoPositionList({{53.0, 8.0}}).average(), 53.0, 8.0));
    QVERIFY(isAt(KelGeoPositionList().average(), 720.0, 720.0));
    // Numbers are averaged, valid or not.
    QVERIFY(isAt(KelGeoPositionList({{0.0, 0.0}, {2.0, 720.0}}).average(), 1.0, 360.0));
}

void tst_KelGeoPositionList::coordinates()
{
    const KelGeoPositionList list{{1.0, 2.0}, {3.0, 4.0}, {1.0, 6.0}};
    QCOMPARE(list.latitudes(), (KelLatitudeList{1.0, 3.0, 1.0}));
    QCOMPARE(list.longitudes(), (KelLongitudeList{2.0, 4.0, 6.0}));
    QVERIFY(KelGeoPositionList().latitudes().isEmpty());
    QVERIFY(KelGeoPositionList().longitudes().isEmpty());
}

void tst_KelGeoPositionList::toPainterPath()
{
    QVERIFY(KelGeoPositionList().toPainterPath().isEmpty());
    QCOMPARE(KelGeoPositionList().toPainterPath().elementCount(), 0);

    const QPainterPath path = KelGeoPositionList{{53.0, 8.0}, {54.0, 9.0}, {52.0, 7.0}}.toPainterPath();
    QCOMPARE(path.elementCount(), 3);
    QVERIFY(path.elementAt(0).isMoveTo());
    QCOMPARE(QPointF(path.elementAt(0)), QPointF(8.0, 53.0));
    QVERIFY(path.elementAt(1).isLineTo());
    QCOMPARE(QPointF(path.elementAt(1)), QPointF(9.0, 54.0));
    QVERIFY(path.elementAt(2).isLineTo());
    QCOMPARE(QPointF(path.elementAt(2)), QPointF(7.0, 52.0));

    const QPainterPath single = KelGeoPositionList{{53.0, 8.0}}.toPainterPath();
    QCOMPARE(single.elementCount(), 1);
    QCOMPARE(single.currentPosition(), QPointF(8.0, 53.0));
}

void tst_KelGeoPositionList::toPainterPathDropsRepeatedPoints()
{
    // The path itself leaves out lines that lead nowhere.
    const QPainterPath path = KelGeoPositionList{{53.0, 8.0}, {54.0, 9.0}, {54.0, 9.0}}.toPainterPath();
    QCOMPARE(path.elementCount(), 2);
}

void tst_KelGeoPositionList::filterStrayPositions_data()
{
    QTest::addColumn<KelGeoPositionList>("list");
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("invert");
    QTest::addColumn<int>("minimumCount");
    QTest::addColumn<KelGeoPositionList>("result");

    const KelGeoPositionList ten = nineAndAStray();
    const KelGeoPositionList nine(ten.mid(0, 9));
    const KelGeoPositionList stray{{20.0, 20.0}};
    const KelGeoPositionList single{{53.0, 8.0}};

    QTest::newRow("too few: unchanged") << nine << 2.0 << false << 10 << nine;
    QTest::newRow("too few: unchanged, whatever the other arguments") << ten << 0.0 << false << 11 << ten;
    QTest::newRow("too few: unchanged, inverted") << ten << 1.0 << true << 11 << ten;
    QTest::newRow("just enough") << ten << 1.0 << false << 10 << nine;
    QTest::newRow("inverted") << ten << 1.0 << true << 10 << stray;
    QTest::newRow("generous factor keeps all") << ten << 2.0 << false << 10 << ten;
    QTest::newRow("generous factor, inverted, keeps none") << ten << 2.0 << true << 10 << KelGeoPositionList();
    QTest::newRow("factor 0 keeps none") << ten << 0.0 << false << 10 << KelGeoPositionList();
    QTest::newRow("not farther: kept") << single << 1.0 << false << 1 << single;
    QTest::newRow("not farther: dropped when inverted") << single << 1.0 << true << 1 << KelGeoPositionList();
    QTest::newRow("empty") << KelGeoPositionList() << 1.0 << false << 0 << KelGeoPositionList();
}

void tst_KelGeoPositionList::filterStrayPositions()
{
    QFETCH(KelGeoPositionList, list);
    QFETCH(double, factor);
    QFETCH(bool, invert);
    QFETCH(int, minimumCount);
    QTEST(list.filterStrayPositions(factor, invert, minimumCount), "result");
}

QTEST_GUILESS_MAIN(tst_KelGeoPositionList)
#include "tst_KelGeoPositionList.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLatitudeRange.h>

#include <QtTest>

#include <QUrlQuery>

#include <type_traits>

namespace
{

bool hasBounds(const KelRange<KelLatitude> &range, double south, double north)
{
    return range.min().decimalDegrees() == south && range.max().decimalDegrees() == north;
}

} // namespace

class tst_KelLatitudeRange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constants();
    void defaultIsUnset();
    void bounds();
    void spawn_data();
    void spawn();
    void parseTexts();
    void parseQuery();
    void isValid_data();
    void isValid();
    void isValidIsVirtual();
    void equality();
    void ordering();
    void height();
    void center();
    void contains_data();
    void contains();
    void containsRange();
    void intersects_data();
    void intersects();
    void expandTo();
    void blowUp_data();
    void blowUp();
    void writeTo();
    void toString();
    void debugStream();
};

void tst_KelLatitudeRange::constants()
{
    QCOMPARE(KelLatitudeRange::QUERY_ITEM_SOUTH, QStringLiteral("latitude_min"));
    QCOMPARE(KelLatitudeRange::QUERY_ITEM_NORTH, QStringLiteral("latitude_max"));
    QVERIFY(std::has_virtual_destructor_v<KelLatitudeRange>);
}

void tst_KelLatitudeRange::defaultIsUnset()
{
    const KelLatitudeRange range;
    QVERIFY(hasBounds(range, 720.0, 720.0));
    QVERIFY(range.isUnset());
    QVERIFY(!range.isValid());
}

void tst_KelLatitudeRange::bounds()
{
    const KelLatitudeRange range(-10.0, 20.0);
    QVERIFY(range.south().decimalDegrees() == -10.0);
    QVERIFY(range.north().decimalDegrees() == 20.0);
    const KelLatitudeRange fromBase(KelRange<KelLatitude>(1.0, 2.0));
    QVERIFY(hasBounds(fromBase, 1.0, 2.0));
}

void tst_KelLatitudeRange::spawn_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("north");

    QTest::newRow("in order") << -10.0 << 20.0 << -10.0 << 20.0;
    QTest::newRow("swapped") << 20.0 << -10.0 << -10.0 << 20.0;
    QTest::newRow("equal") << 20.0 << 20.0 << 20.0 << 20.0;
    QTest::newRow("equal within the tolerance, in order") << 20.0 << 20.0000005 << 20.0 << 20.0000005;
    QTest::newRow("swapped within the tolerance as well") << 20.0000005 << 20.0 << 20.0 << 20.0000005;
}

void tst_KelLatitudeRange::spawn()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, south);
    QFETCH(double, north);
    QVERIFY(hasBounds(KelLatitudeRange::spawn(a, b), south, north));
}

void tst_KelLatitudeRange::parseTexts()
{
    QVERIFY(hasBounds(KelLatitudeRange::parse(QStringLiteral("S10"), QStringLiteral("N20.5")), -10.0, 20.5));
    // Neither order nor range is checked.
    QVERIFY(hasBounds(KelLatitudeRange::parse(QStringLiteral("200"), QStringLiteral("-20.5")), 200.0, -20.5));
    QVERIFY(hasBounds(KelLatitudeRange::parse(QStringLiteral("E10"), QString()), 720.0, 720.0));
}

void tst_KelLatitudeRange::parseQuery()
{
    QVERIFY(hasBounds(KelLatitudeRange::parse(QUrlQuery(QStringLiteral("latitude_max=20.5&latitude_min=-10"))), -10.0,
                      20.5));
    QVERIFY(hasBounds(KelLatitudeRange::parse(QUrlQuery(QStringLiteral("latitude_min=%2D10"))), -10.0, 720.0));
    QVERIFY(hasBounds(KelLatitudeRange::parse(QUrlQuery()), 720.0, 720.0));
    QVERIFY(!KelLatitudeRange::parse(QUrlQuery()).isValid());
}

void tst_KelLatitudeRange::isValid_data()
{
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("north");
    QTest::addColumn<bool>("valid");

    QTest::newRow("in order") << -10.0 << 20.0 << true;
    QTest::newRow("single latitude") << 10.0 << 10.0 << true;
    QTest::newRow("nearly single latitude") << 10.0 << 10.0000005 << true;
    QTest::newRow("inverted within the tolerance") << 10.0000005 << 10.0 << true;
    QTest::newRow("inverted") << 10.0 << 9.99 << false;
    QTest::newRow("pole to pole") << -90.0 << 90.0 << true;
    QTest::newRow("beyond the north pole") << 0.0 << 90.1 << false;
    QTest::newRow("beyond the south pole") << -90.1 << 0.0 << false;
    QTest::newRow("unset") << 720.0 << 720.0 << false;
}

void tst_KelLatitudeRange::isValid()
{
    QFETCH(double, south);
    QFETCH(double, north);
    QTEST(KelLatitudeRange(south, north).isValid(), "valid");
}

void tst_KelLatitudeRange::isValidIsVirtual()
{
    const KelLatitudeRange beyondThePole(0.0, 95.0);
    const KelRange<KelLatitude> &base = beyondThePole;
    QVERIFY(!base.isValid());
    QVERIFY(KelRange<KelLatitude>(0.0, 95.0).isValid());
}

void tst_KelLatitudeRange::equality()
{
    QVERIFY(KelLatitudeRange(10.0, 10.0000005) == KelLatitudeRange(10.0, 10.0));
    QVERIFY(!(KelLatitudeRange(10.0, 10.0000005) != KelLatitudeRange(10.0, 10.0)));
    QVERIFY(KelLatitudeRange(10.0, 20.0) != KelLatitudeRange(10.0, 20.00001));
    QVERIFY(KelLatitudeRange(10.0, 20.0) != KelLatitudeRange(10.00001, 20.0));
}

void tst_KelLatitudeRange::ordering()
{
    QVERIFY(KelLatitudeRange(1.0, 2.0) < KelLatitudeRange(1.5, 1.6));
    QVERIFY(KelLatitudeRange(1.0, 2.0) < KelLatitudeRange(1.0, 2.5));
    QVERIFY(!(KelLatitudeRange(1.0, 2.0) < KelLatitudeRange(1.0, 2.0)));
    QVERIFY(!(KelLatitudeRange(1.5, 1.6) < KelLatitudeRange(1.0, 2.0)));
    // Valid ranges come before invalid ones, whose order is undecided.
    QVERIFY(KelLatitudeRange(1.0, 2.0) < KelLatitudeRange(0.0, 95.0));
    QVERIFY(!(KelLatitudeRange(0.0, 95.0) < KelLatitudeRange(1.0, 2.0)));
    QVERIFY(!(KelLatitudeRange(0.0, 95.0) < KelLatitudeRange(1.0, 95.0)));
}

void tst_KelLatitudeRange::height()
{
    QVERIFY(KelLatitudeRange(-10.0, 20.5).height().decimalDegrees() == 30.5);
    QVERIFY(KelLatitudeRange(20.0, 10.0).height().decimalDegrees() == -10.0);
}

void tst_KelLatitudeRange::center()
{
    QVERIFY(KelLatitudeRange(-10.0, 21.0).center().decimalDegrees() == 5.5);
}

void tst_KelLatitudeRange::contains_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<bool>("contained");

    QTest::newRow("inside") << 15.0 << true;
    QTest::newRow("southern bound") << 10.0 << true;
    QTest::newRow("northern bound") << 20.0 << true;
    QTest::newRow("outside within the tolerance, south") << 9.9999995 << true;
    QTest::newRow("outside within the tolerance, north") << 20.0000005 << true;
    QTest::newRow("south of it") << 9.99 << false;
    QTest::newRow("north of it") << 20.01 << false;
}

void tst_KelLatitudeRange::contains()
{
    QFETCH(double, latitude);
    QTEST(KelLatitudeRange(10.0, 20.0).contains(KelLatitude(latitude)), "contained");
}

void tst_KelLatitudeRange::containsRange()
{
    const KelLatitudeRange range(10.0, 20.0);
    QVERIFY(range.contains(KelLatitudeRange(10.0, 20.0)));
    QVERIFY(range.contains(KelLatitudeRange(12.0, 13.0)));
    QVERIFY(!range.contains(KelLatitudeRange(9.0, 13.0)));
    QVERIFY(!range.contains(KelLatitudeRange(12.0, 21.0)));
    QVERIFY(!range.contains(KelLatitudeRange(5.0, 25.0)));
}

void tst_KelLatitudeRange::intersects_data()
{
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("north");
    QTest::addColumn<bool>("intersecting");

    QTest::newRow("overlap in the south") << 5.0 << 12.0 << true;
    QTest::newRow("overlap in the north") << 18.0 << 25.0 << true;
    QTest::newRow("inside") << 12.0 << 13.0 << true;
    QTest::newRow("around") << 5.0 << 25.0 << true;
    QTest::newRow("touching") << 20.0 << 25.0 << true;
    QTest::newRow("apart") << 21.0 << 25.0 << false;
}

void tst_KelLatitudeRange::intersects()
{
    QFETCH(double, south);
    QFETCH(double, north);
    const KelLatitudeRange range(10.0, 20.0);
    QTEST(range.intersects(KelLatitudeRange(south, north)), "intersecting");
    QTEST(KelLatitudeRange(south, north).intersects(range), "intersecting");
}

void tst_KelLatitudeRange::expandTo()
{
    KelLatitudeRange range;
    range.expandTo(5.0);
    QVERIFY(hasBounds(range, 5.0, 5.0));
    range.expandTo(7.0);
    QVERIFY(hasBounds(range, 5.0, 7.0));
    range.expandTo(-3.0);
    QVERIFY(hasBounds(range, -3.0, 7.0));
    range.expandTo(0.0);
    QVERIFY(hasBounds(range, -3.0, 7.0));
    // A range of two zeros is a set one.
    KelLatitudeRange zero(0.0, 0.0);
    zero.expandTo(5.0);
    QVERIFY(hasBounds(zero, 0.0, 5.0));
}

void tst_KelLatitudeRange::blowUp_data()
{
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("margin");
    QTest::addColumn<double>("newSouth");
    QTest::addColumn<double>("newNorth");

    QTest::newRow("inside") << 10.0 << 20.0 << 5.0 << 5.0 << 25.0;
    QTest::newRow("clamped at both poles") << -88.0 << 88.0 << 5.0 << -90.0 << 90.0;
    QTest::newRow("exactly to the pole") << 10.0 << 85.0 << 5.0 << 5.0 << 90.0;
    QTest::newRow("negative margin") << 10.0 << 20.0 << -2.0 << 12.0 << 18.0;
    QTest::newRow("unset range") << 720.0 << 720.0 << 1.0 << 90.0 << 90.0;
}

void tst_KelLatitudeRange::blowUp()
{
    QFETCH(double, south);
    QFETCH(double, north);
    QFETCH(double, margin);
    QFETCH(double, newSouth);
    QFETCH(double, newNorth);
    KelLatitudeRange range(south, north);
    range.blowUp(margin);
    QVERIFY(hasBounds(range, newSouth, newNorth));
}

void tst_KelLatitudeRange::writeTo()
{
    QUrlQuery query;
    KelLatitudeRange(-10.5, 20.25).writeTo(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded),
             QStringLiteral("latitude_max=20.2500000000000000&latitude_min=-10.5000000000000000"));
    QVERIFY(hasBounds(KelLatitudeRange::parse(query), -10.5, 20.25));
}

void tst_KelLatitudeRange::toString()
{
    QCOMPARE(KelLatitudeRange(-33.5, 12.0).toString(false), QStringLiteral("S33.50000000 - N12.00000000"));
    QCOMPARE(KelLatitudeRange(-33.5, 12.0).toString(true), QStringLiteral("33° 30′ 0″ Süd - 12° 0′ 0″ Nord"));
    QCOMPARE(KelLatitudeRange().toString(false), QStringLiteral(" - "));
}

void tst_KelLatitudeRange::debugStream()
{
    QString text;
    QDebug(&text) << KelLatitudeRange(-33.5, 12.0);
    QCOMPARE(text, QStringLiteral("S33.50000000 - N12.00000000"));
}

QTEST_GUILESS_MAIN(tst_KelLatitudeRange)
#include "tst_KelLatitudeRange.moc"

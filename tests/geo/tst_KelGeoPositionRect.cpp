// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>

#include <QtTest>

#include <QUrlQuery>

#include <type_traits>

namespace
{

KelGeoPositionRect rect(double south, double west, double north, double east)
{
    return KelGeoPositionRect(KelLatitudeRange(south, north), KelLongitudeRange(west, east));
}

bool hasBounds(const KelGeoPositionRect &rect, double south, double west, double north, double east)
{
    return rect.south().decimalDegrees() == south && rect.west().decimalDegrees() == west
        && rect.north().decimalDegrees() == north && rect.east().decimalDegrees() == east;
}

bool isUnset(const KelGeoPositionRect &rect)
{
    return hasBounds(rect, 720.0, 720.0, 720.0, 720.0);
}

bool isAt(const KelGeoPosition &position, double latitude, double longitude)
{
    return position.latitude().decimalDegrees() == latitude && position.longitude().decimalDegrees() == longitude;
}

} // namespace

class tst_KelGeoPositionRect : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction();
    void spawn();
    void europeanUnion();
    void query();
    void equality();
    void parts();
    void center();
    void containsPosition_data();
    void containsPosition();
    void containsRect_data();
    void containsRect();
    void isValid_data();
    void isValid();
    void isNull_data();
    void isNull();
    void size_data();
    void size();
    void blowUp();
    void toReasonableSize_data();
    void toReasonableSize();
    void withPadding_data();
    void withPadding();
    void expandToPosition();
    void expandToInvalidPositions();
    void expandToRect();
    void expandToRectTakesNorthAndEastFirst();
    void sum();
    void toString();
    void debugStream();
};

void tst_KelGeoPositionRect::construction()
{
    QVERIFY(isUnset(KelGeoPositionRect()));
    QVERIFY(!KelGeoPositionRect().isValid());
    QVERIFY(hasBounds(KelGeoPositionRect(KelGeoPosition(1.0, 2.0), KelGeoPosition(3.0, 4.0)), 1.0, 2.0, 3.0, 4.0));
    // Nothing is put in order.
    const KelGeoPositionRect inverted(KelGeoPosition(3.0, 4.0), KelGeoPosition(1.0, 2.0));
    QVERIFY(hasBounds(inverted, 3.0, 4.0, 1.0, 2.0));
    QVERIFY(!inverted.isValid());
    QVERIFY(std::has_virtual_destructor_v<KelGeoPositionRect>);
}

void tst_KelGeoPositionRect::spawn()
{
    QVERIFY(hasBounds(KelGeoPositionRect::spawn(KelGeoPosition(3.0, 4.0), KelGeoPosition(1.0, 2.0)), 1.0, 2.0, 3.0,
                      4.0));
    const KelGeoPositionRect crossing =
        KelGeoPositionRect::spawn(KelGeoPosition(10.0, 170.0), KelGeoPosition(20.0, -170.0));
    QVERIFY(hasBounds(crossing, 10.0, 170.0, 20.0, -170.0));
    QVERIFY(crossing.isValid());
    QVERIFY(crossing.contains(KelGeoPosition(15.0, 180.0)));
    QVERIFY(crossing.contains(KelGeoPosition(15.0, -175.0)));
    QVERIFY(!crossing.contains(KelGeoPosition(15.0, 0.0)));
    QVERIFY(isAt(crossing.center(), 15.0, 180.0));
    QVERIFY(crossing.estimatedSize() == 10.0 * -340.0);
}

void tst_KelGeoPositionRect::europeanUnion()
{
    QVERIFY(hasBounds(KelGeoPositionRect::europeanUnion(), 40.0, -10.0, 60.0, 30.0));
    QVERIFY(KelGeoPositionRect::europeanUnion().isDefault());
    QVERIFY(rect(40.0000005, -10.0, 60.0, 30.0).isDefault());
    QVERIFY(!rect(40.0, -10.0, 60.0, 30.1).isDefault());
    QVERIFY(!KelGeoPositionRect().isDefault());
}

void tst_KelGeoPositionRect::query()
{
    QUrlQuery query;
    rect(-10.5, 170.0, 20.25, -170.0).writeTo(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded),
             QStringLiteral("latitude_max=20.2500000000000000&latitude_min=-10.5000000000000000"
                            "&longitude_max=-170.0000000000000000&longitude_min=170.0000000000000000"));
    QVERIFY(hasBounds(KelGeoPositionRect::parse(query), -10.5, 170.0, 20.25, -170.0));
    QVERIFY(isUnset(KelGeoPositionRect::parse(QUrlQuery())));
    QVERIFY(hasBounds(KelGeoPositionRect::parse(QUrlQuery(QStringLiteral("longitude_min=8&latitude_max=53"))), 720.0,
                      8.0, 53.0, 720.0));
}

void tst_KelGeoPositionRect::equality()
{
    const KelGeoPositionRect reference = rect(1.0, 2.0, 3.0, 4.0);
    QVERIFY(reference == rect(1.0000005, 2.0000005, 3.0000005, 4.0000005));
    QVERIFY(!(reference != rect(1.0000005, 2.0, 3.0, 4.0)));
    QVERIFY(reference != rect(1.1, 2.0, 3.0, 4.0));
    QVERIFY(reference != rect(1.0, 2.1, 3.0, 4.0));
    QVERIFY(reference != rect(1.0, 2.0, 3.1, 4.0));
    QVERIFY(reference != rect(1.0, 2.0, 3.0, 4.1));
    QVERIFY(KelGeoPositionRect() == KelGeoPositionRect());
}

void tst_KelGeoPositionRect::parts()
{
    const KelGeoPositionRect reference = rect(1.0, 2.0, 3.0, 4.0);
    QCOMPARE(reference.latitudeRange(), KelLatitudeRange(1.0, 3.0));
    QCOMPARE(reference.longitudeRange(), KelLongitudeRange(2.0, 4.0));
    QVERIFY(isAt(reference.northWest(), 3.0, 2.0));
    QVERIFY(isAt(reference.southEast(), 1.0, 4.0));
}

void tst_KelGeoPositionRect::center()
{
    QVERIFY(isAt(rect(10.0, -10.0, 20.0, 31.0).center(), 15.0, 10.5));
    QVERIFY(isAt(rect(-10.0, 170.0, 20.0, -160.0).center(), 5.0, -175.0));
}

void tst_KelGeoPositionRect::containsPosition_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<bool>("contained");

    QTest::newRow("inside") << 50.0 << 8.0 << true;
    QTest::newRow("south-western corner") << 40.0 << -10.0 << true;
    QTest::newRow("north-eastern corner") << 60.0 << 30.0 << true;
    QTest::newRow("outside within the tolerance") << 60.0000005 << 30.0000005 << true;
    QTest::newRow("north of it") << 60.01 << 8.0 << false;
    QTest::newRow("south of it") << 39.99 << 8.0 << false;
    QTest::newRow("east of it") << 50.0 << 30.01 << false;
    QTest::newRow("west of it") << 50.0 << -10.01 << false;
}

void tst_KelGeoPositionRect::containsPosition()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QTEST(KelGeoPositionRect::europeanUnion().contains(KelGeoPosition(latitude, longitude)), "contained");
}

void tst_KelGeoPositionRect::containsRect_data()
{
    QTest::addColumn<KelGeoPositionRect>("outer");
    QTest::addColumn<KelGeoPositionRect>("inner");
    QTest::addColumn<bool>("contained");

    const KelGeoPositionRect europe = rect(40.0, -10.0, 60.0, 30.0);
    const KelGeoPositionRect crossing = rect(10.0, 170.0, 20.0, -170.0);
    QTest::newRow("inside") << europe << rect(45.0, 0.0, 50.0, 10.0) << true;
    QTest::newRow("same") << europe << europe << true;
    QTest::newRow("too far south") << europe << rect(39.0, 0.0, 50.0, 10.0) << false;
    QTest::newRow("too far north") << europe << rect(45.0, 0.0, 61.0, 10.0) << false;
    QTest::newRow("too far west") << europe << rect(45.0, -11.0, 50.0, 10.0) << false;
    QTest::newRow("too far east") << europe << rect(45.0, 0.0, 50.0, 31.0) << false;
    QTest::newRow("around it") << europe << rect(30.0, -20.0, 70.0, 40.0) << false;
    QTest::newRow("across the date line") << crossing << rect(12.0, 175.0, 13.0, -175.0) << true;
    QTest::newRow("across the date line, too wide") << crossing << rect(12.0, 165.0, 13.0, -175.0) << false;
}

void tst_KelGeoPositionRect::containsRect()
{
    QFETCH(KelGeoPositionRect, outer);
    QFETCH(KelGeoPositionRect, inner);
    QTEST(outer.contains(inner), "contained");
}

void tst_KelGeoPositionRect::isValid_data()
{
    QTest::addColumn<KelGeoPositionRect>("rectangle");
    QTest::addColumn<bool>("valid");

    QTest::newRow("plain") << rect(1.0, 2.0, 3.0, 4.0) << true;
    QTest::newRow("crossing the date line") << rect(1.0, 170.0, 3.0, -170.0) << true;
    QTest::newRow("single place") << rect(1.0, 2.0, 1.0, 2.0) << true;
    QTest::newRow("north below south") << rect(3.0, 2.0, 1.0, 4.0) << false;
    QTest::newRow("beyond the pole") << rect(1.0, 2.0, 91.0, 4.0) << false;
    QTest::newRow("beyond the date line") << rect(1.0, 2.0, 3.0, 181.0) << false;
    QTest::newRow("unset") << KelGeoPositionRect() << false;
}

void tst_KelGeoPositionRect::isValid()
{
    QFETCH(KelGeoPositionRect, rectangle);
    QTEST(rectangle.isValid(), "valid");
}

void tst_KelGeoPositionRect::isNull_data()
{
    QTest::addColumn<KelGeoPositionRect>("rectangle");
    QTest::addColumn<bool>("null");

    QTest::newRow("zeros") << rect(0.0, 0.0, 0.0, 0.0) << true;
    QTest::newRow("within the tolerance") << rect(-2e-7, 2e-7, 2e-7, -2e-7) << true;
    QTest::newRow("other latitude") << rect(1.0, 0.0, 1.0, 0.0) << false;
    QTest::newRow("other longitude") << rect(0.0, 1.0, 0.0, 1.0) << false;
    QTest::newRow("south differs") << rect(-1.0, 0.0, 0.0, 0.0) << false;
    QTest::newRow("west differs") << rect(0.0, -1.0, 0.0, 0.0) << false;
    QTest::newRow("unset") << KelGeoPositionRect() << false;
}

void tst_KelGeoPositionRect::isNull()
{
    QFETCH(KelGeoPositionRect, rectangle);
    QTEST(rectangle.isNull(), "null");
}

void tst_KelGeoPositionRect::size_data()
{
    QTest::addColumn<KelGeoPositionRect>("rectangle");
    QTest::addColumn<double>("maxExtension");
    QTest::addColumn<bool>("verySmall");
    QTest::addColumn<double>("estimatedSize");

    QTest::newRow("wider than high") << rect(10.0, 0.0, 15.0, 20.0) << 20.0 << false << 100.0;
    QTest::newRow("higher than wide") << rect(10.0, 0.0, 40.0, 20.0) << 30.0 << false << 600.0;
    QTest::newRow("square") << rect(10.0, 0.0, 14.0, 4.0) << 4.0 << false << 16.0;
    QTest::newRow("single place") << rect(10.0, 8.0, 10.0, 8.0) << 0.0 << true << 0.0;
    QTest::newRow("one degree is not very small") << rect(10.0, 8.0, 10.5, 9.0) << 1.0 << false << 0.5;
    QTest::newRow("just below one degree is very small, without tolerance")
        << rect(0.0, 0.0, 0.5, 0.9999995) << 0.9999995 << true << 0.49999975;
    QTest::newRow("crossing the date line is not corrected")
        << rect(10.0, 170.0, 20.0, -170.0) << 340.0 << false << -3400.0;
    QTest::newRow("unset") << KelGeoPositionRect() << 0.0 << true << 0.0;
}

void tst_KelGeoPositionRect::size()
{
    QFETCH(KelGeoPositionRect, rectangle);
    QTEST(rectangle.maxExtension().decimalDegrees(), "maxExtension");
    QTEST(rectangle.isVerySmall(), "verySmall");
    QTEST(rectangle.estimatedSize(), "estimatedSize");
}

void tst_KelGeoPositionRect::blowUp()
{
    KelGeoPositionRect rectangle = rect(10.0, -20.0, 20.0, 20.0);
    const KelGeoPositionRect larger = rectangle.blownUp(5.0);
    QVERIFY(hasBounds(larger, 5.0, -25.0, 25.0, 25.0));
    QVERIFY(hasBounds(rectangle, 10.0, -20.0, 20.0, 20.0));
    rectangle.blowUp(5.0);
    QVERIFY(hasBounds(rectangle, 5.0, -25.0, 25.0, 25.0));
    QVERIFY(hasBounds(KelGeoPositionRect::europeanUnion().blownUp(100.0), -60.0, -110.0, 90.0, 130.0));
    QVERIFY(hasBounds(rect(-85.0, -175.0, 85.0, 175.0).blownUp(10.0), -90.0, -180.0, 90.0, 180.0));
}

void tst_KelGeoPositionRect::toReasonableSize_data()
{
    QTest::addColumn<KelGeoPositionRect>("rectangle");
    QTest::addColumn<KelGeoPositionRect>("result");

    QTest::newRow("very small") << rect(10.0, 8.0, 10.5, 8.25) << rect(9.0, 7.0, 11.5, 9.25);
    QTest::newRow("single place") << rect(10.0, 8.0, 10.0, 8.0) << rect(9.0, 7.0, 11.0, 9.0);
    QTest::newRow("one degree") << rect(10.0, 8.0, 11.0, 8.25) << rect(10.0, 8.0, 11.0, 8.25);
    QTest::newRow("two degrees") << rect(10.0, 8.0, 10.5, 10.0) << rect(10.0, 8.0, 10.5, 10.0);
    QTest::newRow("unset, blown up and clamped") << KelGeoPositionRect() << rect(90.0, 180.0, 90.0, 180.0);
}

void tst_KelGeoPositionRect::toReasonableSize()
{
    QFETCH(KelGeoPositionRect, rectangle);
    QTEST(rectangle.toReasonableSize(), "result");
}

void tst_KelGeoPositionRect::withPadding_data()
{
    QTest::addColumn<KelGeoPositionRect>("rectangle");
    QTest::addColumn<double>("percent");
    QTest::addColumn<KelGeoPositionRect>("result");

    const KelGeoPositionRect wide = rect(0.0, 0.0, 10.0, 20.0);
    QTest::newRow("share of the greater extent") << wide << 10.0 << rect(-2.0, -2.0, 12.0, 22.0);
    QTest::newRow("zero percent") << wide << 0.0 << wide;
    QTest::newRow("zero percent of a single place") << rect(5.0, 5.0, 5.0, 5.0) << 0.0 << rect(5.0, 5.0, 5.0, 5.0);
    QTest::newRow("negative percent shrinks") << wide << -10.0 << rect(2.0, 2.0, 8.0, 18.0);
    QTest::newRow("single place") << rect(5.0, 5.0, 5.0, 5.0) << 10.0 << rect(4.9, 4.9, 5.1, 5.1);
    QTest::newRow("single place within the tolerance")
        << rect(5.0, 5.0, 5.0000005, 5.0) << 1000.0 << rect(4.9, 4.9, 5.1000005, 5.1);
    QTest::newRow("tiny, but no single place")
        << rect(5.0, 5.0, 5.000002, 5.0) << 100.0 << rect(4.999998, 4.999998, 5.000004, 5.000002);
    QTest::newRow("clamped") << rect(-80.0, -170.0, 80.0, 170.0) << 10.0 << rect(-90.0, -180.0, 90.0, 180.0);
    QTest::newRow("invalid") << rect(10.0, 0.0, 5.0, 20.0) << 10.0 << rect(10.0, 0.0, 5.0, 20.0);
    QTest::newRow("unset") << KelGeoPositionRect() << 10.0 << KelGeoPositionRect();
}

void tst_KelGeoPositionRect::withPadding()
{
    QFETCH(KelGeoPositionRect, rectangle);
    QFETCH(double, percent);
    QTEST(rectangle.withPadding(percent), "result");
}

void tst_KelGeoPositionRect::expandToPosition()
{
    KelGeoPositionRect rectangle;
    rectangle.expandTo(KelGeoPosition(53.0, 8.0));
    QVERIFY(hasBounds(rectangle, 53.0, 8.0, 53.0, 8.0));
    rectangle.expandTo(KelGeoPosition(54.0, 7.0));
    QVERIFY(hasBounds(rectangle, 53.0, 7.0, 54.0, 8.0));
    rectangle.expandTo(KelGeoPosition(-1.0, 9.0));
    QVERIFY(hasBounds(rectangle, -1.0, 7.0, 54.0, 9.0));
    // The long way round: growing never crosses the date line.
    rectangle.expandTo(KelGeoPosition(0.0, -170.0));
    QVERIFY(hasBounds(rectangle, -1.0, -170.0, 54.0, 9.0));

    KelGeoPositionRect crossing = rect(10.0, 170.0, 20.0, -170.0);
    crossing.expandTo(KelGeoPosition(25.0, 160.0));
    QVERIFY(hasBounds(crossing, 10.0, 160.0, 25.0, -170.0));
}

void tst_KelGeoPositionRect::expandToInvalidPositions()
{
    KelGeoPositionRect rectangle;
    rectangle.expandTo(KelGeoPosition());
    rectangle.expandTo(KelGeoPosition::null());
    rectangle.expandTo(KelGeoPosition(53.0, 720.0));
    QVERIFY(isUnset(rectangle));
}

void tst_KelGeoPositionRect::expandToRect()
{
    KelGeoPositionRect rectangle;
    rectangle.expandTo(rect(1.0, 2.0, 3.0, 4.0));
    QVERIFY(hasBounds(rectangle, 1.0, 2.0, 3.0, 4.0));
    rectangle.expandTo(rect(0.0, 3.0, 2.0, 5.0));
    QVERIFY(hasBounds(rectangle, 0.0, 2.0, 3.0, 5.0));
    rectangle.expandTo(rect(5.0, 3.0, 2.0, 50.0));
    rectangle.expandTo(KelGeoPositionRect());
    QVERIFY(hasBounds(rectangle, 0.0, 2.0, 3.0, 5.0));

    KelGeoPositionRect crossing = rect(10.0, 170.0, 20.0, -170.0);
    crossing.expandTo(rect(10.0, 150.0, 20.0, 160.0));
    QVERIFY(hasBounds(crossing, 10.0, 150.0, 20.0, -170.0));
    crossing.expandTo(rect(10.0, -160.0, 20.0, -150.0));
    QVERIFY(hasBounds(crossing, 10.0, 150.0, 20.0, -150.0));

    // A crossing rectangle loses its way when an unset one is grown by it: both bounds are only numbers then.
    KelGeoPositionRect unset;
    unset.expandTo(rect(10.0, 170.0, 20.0, -170.0));
    QVERIFY(hasBounds(unset, 10.0, -170.0, 20.0, 170.0));
}

void tst_KelGeoPositionRect::expandToRectTakesNorthAndEastFirst()
{
    // An inverted latitude range: north first moves its northern bound to 3, then south its southern one to 2. South
    // first would move the northern bound twice.
    KelGeoPositionRect inverted = rect(5.0, 0.0, 1.0, 10.0);
    inverted.expandTo(rect(2.0, 3.0, 3.0, 4.0));
    QVERIFY(hasBounds(inverted, 2.0, 0.0, 3.0, 10.0));

    // The eastern bound lies outside and becomes the new western one; the western bound then is within its tolerance.
    KelGeoPositionRect crossing = rect(10.0, 170.0, 20.0, -170.0);
    crossing.expandTo(rect(10.0, 169.9999978, 20.0, 169.9999985));
    QVERIFY(hasBounds(crossing, 10.0, 169.9999985, 20.0, -170.0));
}

void tst_KelGeoPositionRect::sum()
{
    const KelGeoPositionRect a = rect(1.0, 2.0, 3.0, 4.0);
    QVERIFY(hasBounds(a + rect(0.0, 5.0, 2.0, 6.0), 0.0, 2.0, 3.0, 6.0));
    QVERIFY(hasBounds(a, 1.0, 2.0, 3.0, 4.0));
    QVERIFY(hasBounds(KelGeoPositionRect() + a, 1.0, 2.0, 3.0, 4.0));
    QVERIFY(hasBounds(a + KelGeoPositionRect(), 1.0, 2.0, 3.0, 4.0));
}

void tst_KelGeoPositionRect::toString()
{
    QCOMPARE(rect(-33.5, -10.0, 12.0, 30.5).toString(false),
             QStringLiteral("S33.50000000 - N12.00000000 ; W10.00000000 - E30.50000000"));
    QCOMPARE(rect(-33.5, -10.0, 12.0, 30.5).toString(true),
             QStringLiteral("33° 30′ 0″ Süd - 12° 0′ 0″ Nord ; 10° 0′ 0″ West - 30° 30′ 0″ Ost"));
}

void tst_KelGeoPositionRect::debugStream()
{
    QString text;
    QDebug(&text) << rect(-33.5, -10.0, 12.0, 30.5);
    QCOMPARE(text, QStringLiteral("Lat: S33.50000000 - N12.00000000 ; Lon:W10.00000000 - E30.50000000"));
}

QTEST_GUILESS_MAIN(tst_KelGeoPositionRect)
#include "tst_KelGeoPositionRect.moc"

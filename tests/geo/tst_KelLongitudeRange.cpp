// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelLongitudeRange.h>

#include <QtTest>

#include <QCoreApplication>
#include <QProcess>
#include <QUrlQuery>

#include <cmath>
#include <cstdio>
#include <type_traits>

namespace
{

const QLatin1String callIntersects("--call-intersects");

bool hasBounds(const KelRange<KelLongitude> &range, double west, double east)
{
    return range.min().decimalDegrees() == west && range.max().decimalDegrees() == east;
}

void printWithLocation(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    std::fprintf(stderr, "%d|%s|%s|%d|%s|%s\n", type == QtFatalMsg, context.category, context.file, context.line,
                 context.function, message.toUtf8().constData());
    std::fflush(stderr);
}

// What the child process does: it must not come back from the call.
int dieByIntersects()
{
    qInstallMessageHandler(printWithLocation);
    const KelLongitudeRange range(10.0, 20.0);
    const KelRange<KelLongitude> &base = range;
    const bool result = base.intersects(KelLongitudeRange(15.0, 25.0));
    std::fprintf(stderr, "survived: %d\n", result);
    return 0;
}

} // namespace

class tst_KelLongitudeRange : public QObject
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
    void shape_data();
    void shape();
    void equalityAndOrdering();
    void contains_data();
    void contains();
    void containsRange();
    void expandTo_data();
    void expandTo();
    void blowUp_data();
    void blowUp();
    void overridesAreVirtual();
    void intersectsEndsTheProcess();
    void writeTo();
    void toString();
    void debugStream();
};

void tst_KelLongitudeRange::constants()
{
    QCOMPARE(KelLongitudeRange::QUERY_ITEM_WEST, QStringLiteral("longitude_min"));
    QCOMPARE(KelLongitudeRange::QUERY_ITEM_EAST, QStringLiteral("longitude_max"));
    QVERIFY(std::has_virtual_destructor_v<KelLongitudeRange>);
}

void tst_KelLongitudeRange::defaultIsUnset()
{
    const KelLongitudeRange range;
    QVERIFY(hasBounds(range, 720.0, 720.0));
    QVERIFY(range.isUnset());
    QVERIFY(!range.isValid());
    QVERIFY(!range.crossesDateLine());
}

void tst_KelLongitudeRange::bounds()
{
    const KelLongitudeRange range(170.0, -170.0);
    QVERIFY(range.west().decimalDegrees() == 170.0);
    QVERIFY(range.east().decimalDegrees() == -170.0);
    const KelLongitudeRange fromBase(KelRange<KelLongitude>(175.0, -175.0));
    QVERIFY(hasBounds(fromBase, 175.0, -175.0));
    QVERIFY(fromBase.crossesDateLine());
}

void tst_KelLongitudeRange::spawn_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");

    QTest::newRow("in order") << -10.0 << 10.0 << -10.0 << 10.0;
    QTest::newRow("swapped") << 10.0 << -10.0 << -10.0 << 10.0;
    QTest::newRow("across the date line") << 170.0 << -170.0 << 170.0 << -170.0;
    QTest::newRow("across the date line, swapped") << -170.0 << 170.0 << 170.0 << -170.0;
    QTest::newRow("exactly half a turn is swapped") << -90.0 << 90.0 << 90.0 << -90.0;
    QTest::newRow("exactly half a turn is swapped the other way, too") << 90.0 << -90.0 << -90.0 << 90.0;
    QTest::newRow("equal") << 8.0 << 8.0 << 8.0 << 8.0;
    QTest::newRow("Wellington and Honolulu") << 174.772996908 << -157.858093 << 174.772996908 << -157.858093;
}

void tst_KelLongitudeRange::spawn()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, west);
    QFETCH(double, east);
    QVERIFY(hasBounds(KelLongitudeRange::spawn(a, b), west, east));
}

void tst_KelLongitudeRange::parseTexts()
{
    QVERIFY(hasBounds(KelLongitudeRange::parse(QStringLiteral("W10"), QStringLiteral("E20.5")), -10.0, 20.5));
    QVERIFY(hasBounds(KelLongitudeRange::parse(QStringLiteral("170"), QStringLiteral("-170")), 170.0, -170.0));
    QVERIFY(hasBounds(KelLongitudeRange::parse(QStringLiteral("N10"), QString()), 720.0, 720.0));
}

void tst_KelLongitudeRange::parseQuery()
{
    QVERIFY(hasBounds(KelLongitudeRange::parse(QUrlQuery(QStringLiteral("longitude_max=20.5&longitude_min=-10"))),
                      -10.0, 20.5));
    QVERIFY(hasBounds(KelLongitudeRange::parse(QUrlQuery(QStringLiteral("longitude_max=%2D10"))), 720.0, -10.0));
    QVERIFY(hasBounds(KelLongitudeRange::parse(QUrlQuery()), 720.0, 720.0));
}

void tst_KelLongitudeRange::isValid_data()
{
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");
    QTest::addColumn<bool>("valid");

    QTest::newRow("in order") << -10.0 << 20.0 << true;
    QTest::newRow("crossing needs no order") << 170.0 << -170.0 << true;
    QTest::newRow("whole globe") << -180.0 << 180.0 << true;
    QTest::newRow("within the tolerance") << -180.0000005 << 180.0000005 << true;
    QTest::newRow("west out of range") << -180.01 << 0.0 << false;
    QTest::newRow("east out of range") << 0.0 << 180.01 << false;
    QTest::newRow("unset") << 720.0 << 720.0 << false;
}

void tst_KelLongitudeRange::isValid()
{
    QFETCH(double, west);
    QFETCH(double, east);
    QTEST(KelLongitudeRange(west, east).isValid(), "valid");
}

void tst_KelLongitudeRange::shape_data()
{
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");
    QTest::addColumn<bool>("crossing");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("center");
    QTest::addColumn<bool>("half");

    QTest::newRow("plain") << -10.0 << 30.0 << false << 40.0 << 10.0 << true;
    QTest::newRow("single longitude") << 8.0 << 8.0 << false << 0.0 << 8.0 << true;
    QTest::newRow("crossing, width is negative, centre on the date line")
        << 170.0 << -170.0 << true << -340.0 << 180.0 << true;
    QTest::newRow("crossing, centre in the east") << 160.0 << -170.0 << true << -330.0 << 175.0 << true;
    QTest::newRow("crossing, centre in the west") << 170.0 << -160.0 << true << -330.0 << -175.0 << true;
    QTest::newRow("crossing, more than half") << 10.0 << -10.0 << true << -20.0 << 180.0 << false;
    QTest::newRow("more than half") << -100.0 << 100.0 << false << 200.0 << 0.0 << false;
    QTest::newRow("exactly half") << -90.0 << 90.0 << false << 180.0 << 0.0 << false;
    QTest::newRow("a little less than half") << -89.0 << 90.0 << false << 179.0 << 0.5 << true;
    QTest::newRow("whole globe") << -180.0 << 180.0 << false << 360.0 << 0.0 << false;
    // Strict, unlike contains(): the order of the plain numbers decides.
    QTest::newRow("inverted within the tolerance") << 8.5 << 8.4999996 << true << -4e-7 << -171.5000002 << true;
}

void tst_KelLongitudeRange::shape()
{
    QFETCH(double, west);
    QFETCH(double, east);
    QFETCH(double, width);
    QFETCH(double, center);
    const KelLongitudeRange range(west, east);
    QTEST(range.crossesDateLine(), "crossing");
    QVERIFY(std::abs(range.width().decimalDegrees() - width) < 1e-12);
    QVERIFY(std::abs(range.center().decimalDegrees() - center) < 1e-12);
    QTEST(range.coversNoMoreThanHalfOfTheEarth(), "half");
}

void tst_KelLongitudeRange::equalityAndOrdering()
{
    QVERIFY(KelLongitudeRange(170.0, -170.0) == KelLongitudeRange(170.0000005, -170.0));
    QVERIFY(KelLongitudeRange(170.0, -170.0) != KelLongitudeRange(170.0, -170.01));
    QVERIFY(KelLongitudeRange(170.0, -170.0) != KelLongitudeRange(-170.0, 170.0));
    // A crossing range is valid and ordered by its western bound.
    QVERIFY(KelLongitudeRange(8.0, 9.0) < KelLongitudeRange(170.0, -170.0));
    QVERIFY(!(KelLongitudeRange(170.0, -170.0) < KelLongitudeRange(8.0, 9.0)));
    QVERIFY(KelLongitudeRange(170.0, -170.0) < KelLongitudeRange(0.0, 181.0));
}

void tst_KelLongitudeRange::contains_data()
{
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<bool>("contained");

    QTest::newRow("inside") << -10.0 << 30.0 << 8.0 << true;
    QTest::newRow("western bound") << -10.0 << 30.0 << -10.0 << true;
    QTest::newRow("eastern bound") << -10.0 << 30.0 << 30.0 << true;
    QTest::newRow("outside within the tolerance") << -10.0 << 30.0 << 30.0000005 << true;
    QTest::newRow("west of it") << -10.0 << 30.0 << -10.01 << false;
    QTest::newRow("east of it") << -10.0 << 30.0 << 30.01 << false;
    QTest::newRow("crossing: date line as east") << 170.0 << -170.0 << 180.0 << true;
    QTest::newRow("crossing: date line as west") << 170.0 << -170.0 << -180.0 << true;
    QTest::newRow("crossing: inside, east") << 170.0 << -170.0 << 175.0 << true;
    QTest::newRow("crossing: inside, west") << 170.0 << -170.0 << -175.0 << true;
    QTest::newRow("crossing: western bound") << 170.0 << -170.0 << 170.0 << true;
    QTest::newRow("crossing: eastern bound") << 170.0 << -170.0 << -170.0 << true;
    QTest::newRow("crossing: prime meridian") << 170.0 << -170.0 << 0.0 << false;
    QTest::newRow("crossing: just west of it") << 170.0 << -170.0 << 169.0 << false;
    QTest::newRow("crossing: just east of it") << 170.0 << -170.0 << -169.0 << false;
    QTest::newRow("crossing: in the gap within the tolerance of a bound") << 170.0 << -170.0 << 169.9999995 << true;
    QTest::newRow("crossing: in the gap within the tolerance of the other") << 170.0 << -170.0 << -169.9999995 << true;
}

void tst_KelLongitudeRange::contains()
{
    QFETCH(double, west);
    QFETCH(double, east);
    QFETCH(double, longitude);
    QTEST(KelLongitudeRange(west, east).contains(KelLongitude(longitude)), "contained");
}

void tst_KelLongitudeRange::containsRange()
{
    const KelLongitudeRange crossing(170.0, -170.0);
    QVERIFY(crossing.contains(KelLongitudeRange(175.0, -175.0)));
    QVERIFY(crossing.contains(KelLongitudeRange(-175.0, -172.0)));
    QVERIFY(crossing.contains(crossing));
    QVERIFY(!crossing.contains(KelLongitudeRange(160.0, -175.0)));
    QVERIFY(!crossing.contains(KelLongitudeRange(175.0, 0.0)));
    // Only the ends are looked at: this one leads the long way round.
    QVERIFY(crossing.contains(KelLongitudeRange(-175.0, 175.0)));
    QVERIFY(KelLongitudeRange(-10.0, 30.0).contains(KelLongitudeRange(0.0, 30.0)));
    QVERIFY(!KelLongitudeRange(-10.0, 30.0).contains(KelLongitudeRange(0.0, 31.0)));
}

void tst_KelLongitudeRange::expandTo_data()
{
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<double>("newWest");
    QTest::addColumn<double>("newEast");

    QTest::newRow("unset") << 720.0 << 720.0 << 8.0 << 8.0 << 8.0;
    QTest::newRow("unset, west") << 720.0 << 720.0 << -170.0 << -170.0 << -170.0;
    QTest::newRow("to the east") << -10.0 << 10.0 << 20.0 << -10.0 << 20.0;
    QTest::newRow("to the west") << -10.0 << 10.0 << -20.0 << -20.0 << 10.0;
    QTest::newRow("inside") << -10.0 << 10.0 << 8.0 << -10.0 << 10.0;
    QTest::newRow("zero range is set") << 0.0 << 0.0 << 8.0 << 0.0 << 8.0;
    QTest::newRow("never starts to cross the date line") << 170.0 << 175.0 << -175.0 << -175.0 << 175.0;
    QTest::newRow("crossing, inside") << 170.0 << -170.0 << 180.0 << 170.0 << -170.0;
    QTest::newRow("crossing, eastern longitude") << 170.0 << -170.0 << 160.0 << 160.0 << -170.0;
    QTest::newRow("crossing, western longitude") << 170.0 << -170.0 << -160.0 << 170.0 << -160.0;
    QTest::newRow("crossing, prime meridian is eastern") << 170.0 << -170.0 << 0.0 << 0.0 << -170.0;
}

void tst_KelLongitudeRange::expandTo()
{
    QFETCH(double, west);
    QFETCH(double, east);
    QFETCH(double, longitude);
    QFETCH(double, newWest);
    QFETCH(double, newEast);
    KelLongitudeRange range(west, east);
    range.expandTo(longitude);
    QVERIFY(hasBounds(range, newWest, newEast));
}

void tst_KelLongitudeRange::blowUp_data()
{
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("margin");
    QTest::addColumn<double>("newWest");
    QTest::addColumn<double>("newEast");

    QTest::newRow("inside") << -10.0 << 10.0 << 5.0 << -15.0 << 15.0;
    QTest::newRow("clamped, not wrapped") << -178.0 << 178.0 << 5.0 << -180.0 << 180.0;
    QTest::newRow("crossing") << 170.0 << -170.0 << 5.0 << 165.0 << -165.0;
    QTest::newRow("negative margin") << -10.0 << 10.0 << -3.0 << -7.0 << 7.0;
    QTest::newRow("unset range") << 720.0 << 720.0 << 1.0 << 180.0 << 180.0;
}

void tst_KelLongitudeRange::blowUp()
{
    QFETCH(double, west);
    QFETCH(double, east);
    QFETCH(double, margin);
    QFETCH(double, newWest);
    QFETCH(double, newEast);
    KelLongitudeRange range(west, east);
    range.blowUp(margin);
    QVERIFY(hasBounds(range, newWest, newEast));
}

void tst_KelLongitudeRange::overridesAreVirtual()
{
    KelLongitudeRange range(170.0, -170.0);
    KelRange<KelLongitude> &base = range;
    QVERIFY(base.isValid());
    QVERIFY(base.center().decimalDegrees() == 180.0);
    QVERIFY(base.contains(KelLongitude(180.0)));
    QVERIFY(base.contains(KelLongitudeRange(175.0, -175.0)));
    base.expandTo(160.0);
    QVERIFY(hasBounds(range, 160.0, -170.0));
}

void tst_KelLongitudeRange::intersectsEndsTheProcess()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {callIntersects});
    QVERIFY(child.waitForFinished(60000));
    const QString output = QString::fromUtf8(child.readAllStandardError());
    QVERIFY2(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0, qPrintable(output));
    QVERIFY2(!output.contains(QLatin1String("survived")), qPrintable(output));
    QCOMPARE(output.section(QLatin1Char('\n'), 0, 0),
             QStringLiteral("1|default|libs/KelGeoLocation/KelLongitudeRange|151|"
                            "virtual bool KelLongitudeRange::intersects(const KelRange<KelLongitude>&) const|"
                            "Diese Funktion muss erst getestet werden, bevor man sie benutzen kann "
                            "(implmentierung ist ungeprüft und wahrscheinlich falsch!"));
}

void tst_KelLongitudeRange::writeTo()
{
    QUrlQuery query;
    KelLongitudeRange(-10.5, 20.25).writeTo(query);
    QCOMPARE(query.toString(QUrl::FullyEncoded),
             QStringLiteral("longitude_max=20.2500000000000000&longitude_min=-10.5000000000000000"));
    QVERIFY(hasBounds(KelLongitudeRange::parse(query), -10.5, 20.25));
}

void tst_KelLongitudeRange::toString()
{
    QCOMPARE(KelLongitudeRange(-10.0, 30.5).toString(false), QStringLiteral("W10.00000000 - E30.50000000"));
    QCOMPARE(KelLongitudeRange(-10.0, 30.5).toString(true), QStringLiteral("10° 0′ 0″ West - 30° 30′ 0″ Ost"));
}

void tst_KelLongitudeRange::debugStream()
{
    QString text;
    QDebug(&text) << KelLongitudeRange(170.0, -170.0);
    QCOMPARE(text, QStringLiteral("E170.00000000 - W170.00000000"));
}

int main(int argc, char *argv[])
{
    if (argc > 1 && QLatin1String(argv[1]) == callIntersects)
        return dieByIntersects();
    QCoreApplication application(argc, argv);
    tst_KelLongitudeRange test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_KelLongitudeRange.moc"

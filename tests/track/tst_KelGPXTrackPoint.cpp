// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackPoint.h>
#include <KelGPXTrackPointImpl.h>
#include <KelGeoPositionRect.h>

#include <KelTestSupport.h>

#include <QDomDocument>
#include <QRegularExpression>
#include <QtTest>

#include <memory>
#include <random>

class tst_KelGPXTrackPoint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultPoint();
    void holdsWhatItIsGiven();
    void fromXml_data();
    void fromXml();
    void missingCoordinatesAreOneDegree();
    void elementNameDoesNotMatter();
    void toXml_data();
    void toXml();
    void toXmlWritesTheStatedDigits();
    void toKml_data();
    void toKml();
    void encode_data();
    void encode();
    void encodeEqualsThePlainForm();
    void decodeKml_data();
    void decodeKml();
    void tupleTimeIsWrittenInMillisecondsAndReadInSeconds();
    void isNull_data();
    void isNull();
    void equality_data();
    void equality();
    void copiesShareData();
    void movedFromPointMayBeAssignedTo();
    void elementOperations();
};

namespace
{

static_assert(std::is_nothrow_move_constructible_v<KelGPXTrackPoint>);
static_assert(std::is_nothrow_move_assignable_v<KelGPXTrackPoint>);
static_assert(std::is_base_of_v<KelGPXTrackElement, KelGPXTrackPointImpl>);
static_assert(std::is_base_of_v<QSharedData, KelGPXTrackPointImpl>);

const QDateTime noTime;
const QDateTime someTime(QDate(2023, 11, 14), QTime(22, 13, 20), Qt::UTC); // 1700000000 s since 1970

KelGPXTrackPoint point(double latitude, double longitude, int elevation = 0, const QDateTime &time = {},
                       const QString &description = {})
{
    return KelGPXTrackPoint(KelGeoPosition(latitude, longitude), elevation, time, description);
}

double latitude(const KelGPXTrackPoint &point)
{
    return point.position().latitude().decimalDegrees();
}

double longitude(const KelGPXTrackPoint &point)
{
    return point.position().longitude().decimalDegrees();
}

/// The rule as it is stated.
QString plainEncode(double degrees)
{
    static const QRegularExpression trailingZeros(QStringLiteral("0+$"));
    return QString::number(degrees, 'f', 10).remove(trailingZeros);
}

} // namespace

void tst_KelGPXTrackPoint::defaultPoint()
{
    const KelGPXTrackPoint point;
    QCOMPARE(latitude(point), 720.0);
    QCOMPARE(longitude(point), 720.0);
    QVERIFY(!point.position().isValid());
    QCOMPARE(point.elevation(), 0);
    QVERIFY(!point.timeStamp().isValid());
    QVERIFY(point.description().isEmpty());
    QVERIFY(!point.isNull());
}

void tst_KelGPXTrackPoint::holdsWhatItIsGiven()
{
    const KelGPXTrackPoint p = point(53.14, 8.21, -7, someTime, QStringLiteral("Lock"));
    QCOMPARE(latitude(p), 53.14);
    QCOMPARE(longitude(p), 8.21);
    QCOMPARE(p.elevation(), -7);
    QCOMPARE(p.timeStamp(), someTime);
    QCOMPARE(p.description(), "Lock");
}

void tst_KelGPXTrackPoint::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<int>("elevation");
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QString>("description");

    const QString open = QStringLiteral("<trkpt lat='53.5' lon='8.25'>");
    const QString close = QStringLiteral("</trkpt>");
    const auto row = [&](const char *name, const QString &children, int elevation, const QDateTime &time = {},
                         const QString &description = {}) {
        QTest::newRow(name) << open + children + close << 53.5 << 8.25 << elevation << time << description;
    };
    row("coordinates only", "", 0);
    row("everything", "<ele>12</ele><time>2023-11-14T22:13:20Z</time><desc>Lock</desc>", 12, someTime, "Lock");
    row("any order", "<desc>Lock</desc><time>2023-11-14T22:13:20Z</time><ele>12</ele>", 12, someTime, "Lock");
    row("unknown children are skipped", "<name><ele>5</ele></name><ele>12</ele><sym/>", 12);
    row("elevation is cut toward zero", "<ele>123.9</ele>", 123);
    row("also below zero", "<ele>-12.7</ele>", -12);
    row("a fraction of a metre below zero", "<ele>-0.5</ele>", 0);
    row("an unreadable elevation is 0", "<ele>high</ele>", 0);
    row("an empty elevation is 0", "<ele/>", 0);
    row("greatest elevation", "<ele>2147483647.9</ele>", 2147483647);
    row("an elevation that does not fit is 0", "<ele>2147483648</ele>", 0);
    row("least elevation", "<ele>-2147483648.9</ele>", std::numeric_limits<int>::min());
    row("below it", "<ele>-2147483649</ele>", 0);
    row("infinite elevation", "<ele>inf</ele>", 0);
    row("elevation that is no number", "<ele>nan</ele>", 0);
    row("elevation with blanks", "<ele>\n 12 \n</ele>", 12);
    row("unreadable time", "<time>noon</time>", 0);
    row("time with an offset", "<time>2023-11-15T00:13:20+02:00</time>", 0, someTime);
    row("the first of several counts",
        "<ele>1</ele><ele>2</ele><time>2023-11-14T22:13:20Z</time><time>2024-01-01T00:00:00Z</time>"
        "<desc>a</desc><desc>b</desc>",
        1, someTime, "a");
    row("also when it is empty or unreadable",
        "<ele/><ele>2</ele><time/><time>2024-01-01T00:00:00Z</time><desc/><desc>b</desc>", 0);
    row("children of children do not count", "<extensions><ele>5</ele><desc>x</desc></extensions>", 0);
    row("names are compared with case", "<Ele>5</Ele><DESC>x</DESC>", 0);
    row("description as it stands", "<desc> a\n b </desc>", 0, noTime, " a\n b ");

    const auto coordinates = [](const char *name, const char *attributes, double lat, double lon) {
        QTest::newRow(name) << QStringLiteral("<trkpt %1/>").arg(QLatin1String(attributes)) << lat << lon << 0
                            << noTime << QString();
    };
    coordinates("unreadable coordinates are 0", "lat='north' lon='east'", 0.0, 0.0);
    coordinates("empty coordinates are 0", "lat='' lon=''", 0.0, 0.0);
    coordinates("nothing is folded", "lat='100' lon='-200.5'", 100.0, -200.5);
    coordinates("not a number is a number to the conversion", "lat='nan' lon='-nan'", qQNaN(), 0.0);
    coordinates("infinite", "lat='inf' lon='-inf'", qInf(), -qInf());
    coordinates("too great for a number is 0", "lat='1e400' lon='-1e400'", 0.0, 0.0);
    coordinates("greatest numbers", "lat='1e308' lon='-1e308'", 1e308, -1e308);
    coordinates("no latitude", "lon='8.25'", 1.0, 8.25);
    coordinates("no longitude", "lat='53.5'", 53.5, 1.0);
    coordinates("all digits count", "lat='53.12345678901' lon='8.98765432109'", 53.12345678901, 8.98765432109);
}

void tst_KelGPXTrackPoint::fromXml()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    const KelGPXTrackPoint p(document.documentElement());
    QTEST(latitude(p), "lat");
    QTEST(longitude(p), "lon");
    QTEST(p.elevation(), "elevation");
    QTEST(p.timeStamp(), "time");
    QTEST(p.description(), "description");
}

void tst_KelGPXTrackPoint::missingCoordinatesAreOneDegree()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<trkpt/>"));
    const KelGPXTrackPoint p(document.documentElement());
    QCOMPARE(latitude(p), 1.0);
    QCOMPARE(longitude(p), 1.0);
    const KelGPXTrackPoint ofNothing{QDomElement()};
    QCOMPARE(latitude(ofNothing), 1.0);
    QCOMPARE(longitude(ofNothing), 1.0);
}

void tst_KelGPXTrackPoint::elementNameDoesNotMatter()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<gpxx:rpt lat='53.5' lon='8.25'/>"));
    QCOMPARE(latitude(KelGPXTrackPoint(document.documentElement())), 53.5);
}

void tst_KelGPXTrackPoint::toXml_data()
{
    QTest::addColumn<KelGPXTrackPoint>("point");
    QTest::addColumn<QStringList>("children"); // name=text

    QTest::newRow("position only") << point(53.5, 8.25) << QStringList();
    QTest::newRow("elevation") << point(53.5, 8.25, -12) << QStringList{"ele=-12"};
    QTest::newRow("elevation 0 with a time is not written")
        << point(53.5, 8.25, 0, someTime) << QStringList{"time=2023-11-14T22:13:20Z"};
    QTest::newRow("everything in this order")
        << point(53.5, 8.25, 12, someTime, "Lock & bridge")
        << QStringList{"ele=12", "time=2023-11-14T22:13:20Z", "desc=Lock & bridge"};
}

void tst_KelGPXTrackPoint::toXml()
{
    QFETCH(KelGPXTrackPoint, point);
    QFETCH(QStringList, children);
    QDomDocument document = KelTestSupport::document(QStringLiteral("<trkseg><first/></trkseg>"));
    QDomElement parent = document.documentElement();
    point.toXml(parent);

    const QDomElement element = parent.lastChildElement();
    QCOMPARE(parent.childNodes().size(), 2);
    QCOMPARE(element.tagName(), "trkpt");
    QCOMPARE(element.attributes().size(), 2);
    QCOMPARE(element.attribute("lat"), "53.5");
    QCOMPARE(element.attribute("lon"), "8.25");
    QStringList actual;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        actual.append(child.tagName() + QLatin1Char('=') + child.text());
    QCOMPARE(actual, children);
    QCOMPARE(KelGPXTrackPoint(element), point);
}

void tst_KelGPXTrackPoint::toXmlWritesTheStatedDigits()
{
    QDomDocument document = KelTestSupport::document(QStringLiteral("<trkseg/>"));
    QDomElement parent = document.documentElement();
    point(48.1234567891, -0.00001234567891234).toXml(parent);
    QCOMPARE(parent.firstChildElement().attribute("lat"), "48.12345679");
    QCOMPARE(parent.firstChildElement().attribute("lon"), "-1.234567891e-05");
}

void tst_KelGPXTrackPoint::toKml_data()
{
    QTest::addColumn<KelGPXTrackPoint>("point");
    QTest::addColumn<QString>("tuple");

    QTest::newRow("longitude first, the point stays") << point(50.25, 7.0) << "7.,50.25";
    QTest::newRow("elevation") << point(50.25, 7.5, 300) << "7.5,50.25,300";
    QTest::newRow("negative elevation") << point(50.25, 7.5, -3) << "7.5,50.25,-3";
    QTest::newRow("elevation 0 is written before a time")
        << point(50.25, 7.5, 0, someTime) << "7.5,50.25,0,1700000000000";
    QTest::newRow("elevation and time") << point(50.25, 7.5, 300, someTime) << "7.5,50.25,300,1700000000000";
    QTest::newRow("milliseconds") << point(50.25, 7.5, 300, someTime.addMSecs(7)) << "7.5,50.25,300,1700000000007";
    QTest::newRow("time at the epoch")
        << point(50.25, 7.5, 0, QDateTime::fromMSecsSinceEpoch(0, Qt::UTC)) << "7.5,50.25,0,0";
    QTest::newRow("greatest elevation")
        << point(50.25, 7.5, 2147483647) << "7.5,50.25,2147483647";
    QTest::newRow("least elevation") << point(50.25, 7.5, std::numeric_limits<int>::min()) << "7.5,50.25,-2147483648";
    QTest::newRow("time before the epoch")
        << point(50.25, 7.5, 0, QDateTime::fromMSecsSinceEpoch(-1500, Qt::UTC)) << "7.5,50.25,0,-1500";
    QTest::newRow("latest time")
        << point(50.25, 7.5, -10, QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::max(), Qt::UTC))
        << "7.5,50.25,-10,9223372036854775807";
    QTest::newRow("earliest time")
        << point(50.25, 7.5, -10, QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::min(), Qt::UTC))
        << "7.5,50.25,-10,-9223372036854775808";
    QTest::newRow("the description is not written") << point(50.25, 7.5, 0, noTime, "Lock") << "7.5,50.25";
    QTest::newRow("invalid position") << KelGPXTrackPoint() << "720.,720.";
}

void tst_KelGPXTrackPoint::toKml()
{
    QFETCH(KelGPXTrackPoint, point);
    QFETCH(QString, tuple);
    QCOMPARE(point.toKml(), tuple);
    QString text = QStringLiteral("before ");
    point.appendKml(text);
    QCOMPARE(text, "before " + tuple);
}

void tst_KelGPXTrackPoint::encode_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("text");

    QTest::newRow("fraction") << 8.5 << "8.5";
    QTest::newRow("whole number keeps the point") << 12.0 << "12.";
    QTest::newRow("zeros before the point stay") << 100.0 << "100.";
    QTest::newRow("zero") << 0.0 << "0.";
    QTest::newRow("negative zero has no sign") << -0.0 << "0.";
    QTest::newRow("negative") << -122.41 << "-122.41";
    QTest::newRow("ten decimals") << 8.1234567891 << "8.1234567891";
    QTest::newRow("the eleventh is rounded up") << 8.12345678916 << "8.1234567892";
    QTest::newRow("the eleventh is rounded down") << 8.12345678914 << "8.1234567891";
    QTest::newRow("rounding carries into the whole number") << 7.99999999999 << "8.";
    QTest::newRow("an exact half is rounded away from zero") << 0.00048828125 << "0.0004882813";
    QTest::newRow("also below zero") << -0.00048828125 << "-0.0004882813";
    QTest::newRow("least that is left") << 0.0000000001 << "0.0000000001";
    QTest::newRow("nothing is left") << 0.00000000001 << "0.";
    QTest::newRow("nothing but the sign is left") << -0.00000000001 << "-0.";
    QTest::newRow("invalid marker") << 720.0 << "720.";
    QTest::newRow("great") << 123456789012.5 << "123456789012.5";
    QTest::newRow("infinite") << qInf() << "inf";
    QTest::newRow("not a number") << qQNaN() << "nan";
}

void tst_KelGPXTrackPoint::encode()
{
    QFETCH(double, degrees);
    QFETCH(QString, text);
    QCOMPARE(KelGPXTrackPoint::encode(KelLatitude(degrees)), text);
    QCOMPARE(plainEncode(degrees), text);
}

void tst_KelGPXTrackPoint::encodeEqualsThePlainForm()
{
    std::mt19937_64 random(KelTestSupport::randomSeed(4));
    std::uniform_real_distribution<double> degrees(-720.0, 720.0);
    std::uniform_real_distribution<double> exponents(-14.0, 9.0);
    const auto check = [](double value) {
        QVERIFY2(KelGPXTrackPoint::encode(KelLatitude(value)) == plainEncode(value),
                 qPrintable(QString::number(value, 'g', 17)));
    };
    for (int i = KelTestSupport::randomCases(100000); i > 0; --i) {
        check(degrees(random));
        check(double(qint64(random() % 3600000000) - 1800000000) / 1e7); // as recorded
        check(double(qint64(random() % (720 * 2048 * 2)) - 720 * 2048) / 2048.0); // every second one an exact half
        check(std::copysign(std::pow(10.0, exponents(random)), random() % 2 ? 1.0 : -1.0));
        check(double(random() % 1000) + 1.0 - double(random() % 4) * 2.5e-11); // rounding that carries
        if (QTest::currentTestFailed())
            return;
    }
    for (const double limit : {1e-6, 1e6}) {
        check(limit);
        check(std::nextafter(limit, 0.0));
        check(std::nextafter(limit, 1e9));
    }
}

void tst_KelGPXTrackPoint::decodeKml_data()
{
    QTest::addColumn<QString>("tuple");
    QTest::addColumn<double>("lon");
    QTest::addColumn<double>("lat");
    QTest::addColumn<int>("elevation");
    QTest::addColumn<QDateTime>("time");

    const QDateTime epoch = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    const auto row = [](const char *name, const QString &tuple, double lon, double lat, int elevation = 0,
                        const QDateTime &time = {}) {
        QTest::newRow(name) << tuple << lon << lat << elevation << time;
    };
    row("everything", "7.1,50.2,300,1700000000", 7.1, 50.2, 300, someTime);
    row("empty", "", 0.0, 0.0);
    row("longitude only", "7.1", 7.1, 0.0);
    row("longitude and latitude", "7.1,50.2", 7.1, 50.2);
    row("empty longitude", ",50.2", 0.0, 50.2);
    row("elevation", "7.1,50.2,-300", 7.1, 50.2, -300);
    row("bare points", "7.,50.", 7.0, 50.0);
    row("decimals beyond the seventh are cut off", "7.123456789,50.987654321", 7.1234567, 50.9876543);
    row("no point: cut to seven characters", "12345678,-12345678", 1234567.0, -123456.0);
    row("a fraction is no elevation", "7.1,50.2,12.5", 7.1, 50.2, 0);
    row("an exponent is no elevation", "7.1,50.2,1e3", 7.1, 50.2, 0);
    row("hexadecimal is no elevation", "7.1,50.2,0x10", 7.1, 50.2, 0);
    row("plus sign and blanks around the elevation", "7.1,50.2, +5 ", 7.1, 50.2, 5);
    row("greatest elevation", "7.1,50.2,2147483647", 7.1, 50.2, 2147483647);
    row("one more does not fit", "7.1,50.2,2147483648", 7.1, 50.2, 0);
    row("least elevation", "7.1,50.2,-2147483648", 7.1, 50.2, std::numeric_limits<int>::min());
    row("one less does not fit", "7.1,50.2,-2147483649", 7.1, 50.2, 0);
    row("empty elevation", "7.1,50.2,", 7.1, 50.2, 0);
    row("an empty time is the epoch", "7.1,50.2,300,", 7.1, 50.2, 300, epoch);
    row("an unreadable time is the epoch", "7.1,50.2,300,noon", 7.1, 50.2, 300, epoch);
    row("a time with a fraction is the epoch", "7.1,50.2,300,17.5", 7.1, 50.2, 300, epoch);
    row("a time that does not fit is the epoch", "7.1,50.2,300,9223372036854775808", 7.1, 50.2, 300, epoch);
    row("a time that no calendar holds is invalid", "7.1,50.2,300,9223372036854775807", 7.1, 50.2, 300);
    row("time before the epoch", "7.1,50.2,300,-1", 7.1, 50.2, 300,
        QDateTime(QDate(1969, 12, 31), QTime(23, 59, 59), Qt::UTC));
    row("further fields are ignored", "7.1,50.2,300,1700000000,x,y", 7.1, 50.2, 300, someTime);
    row("blanks around angles", " 7.1 ,\n50.2", 7.1, 50.2);
    row("letters", "east,north", 0.0, 0.0);
    row("semicolons do not separate", "7.1;50.2", 0.0, 0.0);
}

void tst_KelGPXTrackPoint::decodeKml()
{
    QFETCH(QString, tuple);
    const KelGPXTrackPoint p = KelGPXTrackPoint::decodeKml(tuple);
    QTEST(longitude(p), "lon");
    QTEST(latitude(p), "lat");
    QTEST(p.elevation(), "elevation");
    QTEST(p.timeStamp(), "time");
    QFETCH(QDateTime, time);
    QCOMPARE(p.timeStamp().isValid(), time.isValid());
    if (time.isValid())
        QCOMPARE(p.timeStamp().timeSpec(), Qt::UTC);
    QVERIFY(p.description().isEmpty());
}

void tst_KelGPXTrackPoint::tupleTimeIsWrittenInMillisecondsAndReadInSeconds()
{
    const QDateTime early = QDateTime::fromSecsSinceEpoch(5000, Qt::UTC);
    const QDateTime read = KelGPXTrackPoint::decodeKml(point(50.2, 7.1, 3, early).toKml()).timeStamp();
    QCOMPARE(read, QDateTime::fromSecsSinceEpoch(5000000, Qt::UTC));
}

void tst_KelGPXTrackPoint::isNull_data()
{
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<bool>("null");

    QTest::newRow("both exactly 0") << 0.0 << 0.0 << true;
    QTest::newRow("negative zeros") << -0.0 << -0.0 << true;
    QTest::newRow("on the equator") << 0.0 << 8.0 << false;
    QTest::newRow("on the prime meridian") << 53.0 << 0.0 << false;
    QTest::newRow("within the tolerance of angles, but not 0") << 1e-9 << 0.0 << false;
}

void tst_KelGPXTrackPoint::isNull()
{
    QFETCH(double, lat);
    QFETCH(double, lon);
    QTEST(point(lat, lon).isNull(), "null");
}

void tst_KelGPXTrackPoint::equality_data()
{
    QTest::addColumn<KelGPXTrackPoint>("other");
    QTest::addColumn<bool>("equal");

    QTest::newRow("built separately") << point(53.5, 8.25, 12, someTime, "Lock") << true;
    QTest::newRow("position within the tolerance") << point(53.5 + 5e-7, 8.25 - 5e-7, 12, someTime, "Lock") << true;
    QTest::newRow("other latitude") << point(53.50001, 8.25, 12, someTime, "Lock") << false;
    QTest::newRow("other longitude") << point(53.5, 8.25001, 12, someTime, "Lock") << false;
    QTest::newRow("other elevation") << point(53.5, 8.25, 13, someTime, "Lock") << false;
    QTest::newRow("other time") << point(53.5, 8.25, 12, someTime.addMSecs(1), "Lock") << false;
    QTest::newRow("no time") << point(53.5, 8.25, 12, noTime, "Lock") << false;
    QTest::newRow("the same time in another zone")
        << point(53.5, 8.25, 12, someTime.toOffsetFromUtc(3600), "Lock") << true;
    QTest::newRow("other description") << point(53.5, 8.25, 12, someTime, "lock") << false;
}

void tst_KelGPXTrackPoint::equality()
{
    QFETCH(KelGPXTrackPoint, other);
    QFETCH(bool, equal);
    const KelGPXTrackPoint p = point(53.5, 8.25, 12, someTime, "Lock");
    QCOMPARE(p == other, equal);
    QCOMPARE(other == p, equal);
}

void tst_KelGPXTrackPoint::copiesShareData()
{
    // A position that is not equal to itself shows that the fields of shared data are not compared.
    const KelGPXTrackPoint p = point(qQNaN(), qQNaN());
    const KelGPXTrackPoint copy(p);
    QVERIFY(copy == p);
    KelGPXTrackPoint assigned;
    assigned = p;
    QVERIFY(assigned == copy);
    // Every other constructor makes data of its own. (Two default points are equal by their values.)
    QVERIFY(KelGPXTrackPoint() == KelGPXTrackPoint());
    const KelGPXTrackPoint separate(KelGeoPosition(qQNaN(), qQNaN()), 0, noTime, QString());
    QVERIFY(!(separate == p));
}

void tst_KelGPXTrackPoint::movedFromPointMayBeAssignedTo()
{
    KelGPXTrackPoint p = point(53.5, 8.25, 12);
    KelGPXTrackPoint moved(std::move(p));
    QCOMPARE(moved.elevation(), 12);
    p = moved;
    QCOMPARE(p.elevation(), 12);
    KelGPXTrackPoint target;
    target = std::move(p);
    QCOMPARE(target.elevation(), 12);
    p = KelGPXTrackPoint();
    QCOMPARE(p.elevation(), 0);
}

void tst_KelGPXTrackPoint::elementOperations()
{
    const KelGPXTrackPoint p = point(53.5, 8.25);
    const KelGeoPosition position(53.5, 8.25);
    QCOMPARE(p.allPoints().size(), 1);
    QVERIFY(p.allPoints().first() == position);
    QCOMPARE(p.chunkedPoints().size(), 1);
    QCOMPARE(p.chunkedPoints().first().size(), 1);
    QVERIFY(p.chunkedPoints().first().first() == position);
    QVERIFY(p.isSinglePoint());
    QVERIFY(KelGPXTrackPoint().isSinglePoint());
    QVERIFY(p.firstPoint() == position);
    QVERIFY(p.lastPoint() == position);
    QCOMPARE(p.allTimeStamps(), QList<QDateTime>{noTime});
    QCOMPARE(point(53.5, 8.25, 0, someTime).allTimeStamps(), QList<QDateTime>{someTime});
    QCOMPARE(p.boundingBox().south().decimalDegrees(), 53.5);
    QCOMPARE(p.boundingBox().east().decimalDegrees(), 8.25);
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackPoint)
#include "tst_KelGPXTrackPoint.moc"

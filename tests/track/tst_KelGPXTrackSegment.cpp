// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackSegment.h>
#include <KelIntRange.h>

#include <KelTestSupport.h>

#include <QDomDocument>
#include <QRegularExpression>
#include <QtTest>

#include <cmath>
#include <random>
#include <thread>
#include <vector>

class tst_KelGPXTrackSegment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction();
    void emptySegment();
    void equality();
    void elementOperations();
    void fromXml_data();
    void fromXml();
    void decodeGarminGPXAppends();
    void toXml();
    void toXmlOfAnEmptySegment();
    void roundTripScalesTimes();
    void toKml();
    void toKmlEqualsThePlainForm();
    void decodeTrackPoints_data();
    void decodeTrackPoints();
    void decodeTrackPointsEqualsThePlainForm_data();
    void decodeTrackPointsEqualsThePlainForm();
    void decodeTrackPointsOfRandomTexts();
    void decodeTrackPointsDoesNotAskTheLocale();
    void whatSeparatesTuples();
    void decodeKml();
    void collectBlock_data();
    void collectBlock();
    void chunkedPointsInTheMainThread_data();
    void chunkedPointsInTheMainThread();
    void chunkedPointsInAWorkerThread();
    void weAreaRunningInMainThread();
};

namespace
{

KelGPXTrackPoint point(double latitude, double longitude, int elevation = 0, const QDateTime &time = {})
{
    return KelGPXTrackPoint(KelGeoPosition(latitude, longitude), elevation, time, QString());
}

QDateTime seconds(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

/// count points at 1, 2, 3 ... degrees of latitude.
KelGPXTrackSegment meridian(int count)
{
    QList<KelGPXTrackPoint> points;
    for (int i = 1; i <= count; ++i)
        points.append(point(i / 1000.0, 8.0));
    return KelGPXTrackSegment(points);
}

/// Everything that a point holds, so that a difference in the last bit or in the kind of time shows.
QString describe(const QList<KelGPXTrackPoint> &points)
{
    QString text;
    for (const KelGPXTrackPoint &p : points) {
        text += QStringLiteral("(%1 %2 %3 %4 %5 %6)")
                    .arg(QString::number(p.position().latitude().decimalDegrees(), 'g', 17),
                         QString::number(p.position().longitude().decimalDegrees(), 'g', 17),
                         QString::number(p.elevation()), QString::number(int(p.timeStamp().timeSpec())),
                         p.timeStamp().isValid() ? QString::number(p.timeStamp().toMSecsSinceEpoch()) : QString(),
                         p.description());
    }
    return text;
}

double plainSafeDouble(const QString &text)
{
    const qsizetype pointIndex = text.indexOf(QLatin1String("."));
    return (text.size() > pointIndex + 8 ? text.left(pointIndex + 8) : text).toDouble();
}

/// The rule as it is stated: lists of strings and a regular expression.
KelGPXTrackPoint plainTuple(const QString &tuple)
{
    const QStringList parts = tuple.split(QLatin1String(","), Qt::KeepEmptyParts);
    int elevation = 0;
    QDateTime time;
    if (parts.size() >= 3)
        elevation = parts.at(2).toInt();
    if (parts.size() >= 4)
        time = QDateTime::fromSecsSinceEpoch(parts.at(3).toLongLong(), Qt::UTC);
    return KelGPXTrackPoint(KelGeoPosition(KelLatitude(plainSafeDouble(parts.value(1))),
                                           KelLongitude(plainSafeDouble(parts.value(0)))),
                            elevation, time, QString());
}

QList<KelGPXTrackPoint> plainTrackPoints(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    QList<KelGPXTrackPoint> points;
    const QStringList tuples = text.split(blanks, Qt::KeepEmptyParts);
    for (const QString &tuple : tuples) {
        const KelGPXTrackPoint point = plainTuple(tuple);
        if (!point.isNull())
            points.append(point);
    }
    return points;
}

/// Of a text with nothing of its own behind it: a sanitizer sees whoever reads beyond its end.
QList<KelGPXTrackPoint> decodeAlone(const QString &text)
{
    const std::vector<QChar> characters(text.begin(), text.end());
    return KelGPXTrackSegment::decodeTrackPoints(QString::fromRawData(characters.data(), qsizetype(characters.size())));
}

QString randomTuple(std::mt19937 &random)
{
    const auto number = [&random](double degrees) {
        return QString::number(std::uniform_real_distribution<double>(-degrees, degrees)(random), 'f', int(random() % 14));
    };
    QString text = number(180.0) + u',' + number(90.0);
    if (random() % 2)
        text += QStringLiteral(",%1").arg(int(random() % 9000) - 500);
    if (random() % 2)
        text += QStringLiteral(",1700000123");
    return text + (random() % 5 ? u' ' : u'\n');
}

QString randomPiece(std::mt19937 &random, const QString &alphabet)
{
    switch (random() % 12) {
    case 0:
        return alphabet.at(int(random() % uint(alphabet.size())));
    case 1: // Rarely half a surrogate pair: with one of them all is a single tuple.
        return random() % 8 ? QString() : QString(QChar(random() % 2 ? 0xd800 : 0xdc00));
    case 2: // the longest one that is plain, and a little more
        return QStringLiteral("-12345678.1234567123456789,-12345678.1234567123456789,-123456789,-123456789012345678 ");
    case 3:
        return QString(int(random() % 30), u' ');
    case 4:
        return QString(int(random() % 120), QChar(int(u'0') + int(random() % 10)));
    default:
        return randomTuple(random);
    }
}

/// Of up to about four hundred characters, sometimes cut anywhere.
QString randomLongText(std::mt19937 &random, const QString &alphabet)
{
    const qsizetype length = qsizetype(random() % 400);
    QString text;
    while (text.size() < length)
        text += randomPiece(random, alphabet);
    if (random() % 3 == 0)
        text.truncate(qsizetype(random() % uint(text.size() + 1)));
    return text;
}

template<typename Function>
void runInWorkerThread(Function function)
{
    std::thread(function).join();
}

KelGPXTrackSegment segment(const QString &xml)
{
    const QDomDocument document = KelTestSupport::document(xml);
    return KelGPXTrackSegment(document.documentElement());
}

} // namespace

void tst_KelGPXTrackSegment::construction()
{
    const QList<KelGPXTrackPoint> points{point(53.0, 8.0), point(54.0, 9.0)};
    const KelGPXTrackSegment several(points);
    QCOMPARE(several.count(), 2);
    QVERIFY(several.trackPoints() == points);
    QVERIFY(several.isValid());

    const KelGPXTrackSegment single(point(53.0, 8.0));
    QCOMPARE(single.count(), 1);
    QVERIFY(single.isSinglePoint());
    QVERIFY(single.trackPoints().first() == point(53.0, 8.0));
}

void tst_KelGPXTrackSegment::emptySegment()
{
    const KelGPXTrackSegment empty;
    QCOMPARE(empty.count(), 0);
    QVERIFY(!empty.isValid());
    QVERIFY(!empty.isSinglePoint());
    QVERIFY(empty.firstPoint() == KelGeoPosition());
    QVERIFY(empty.lastPoint() == KelGeoPosition());
    QVERIFY(empty.allPoints().isEmpty());
    QVERIFY(empty.allTimeStamps().isEmpty());
    QCOMPARE(empty.toKml(), "");
    qsizetype positions = 0;
    for (const KelGeoPositionList &chunk : empty.chunkedPoints())
        positions += chunk.size();
    QCOMPARE(positions, 0);
}

void tst_KelGPXTrackSegment::equality()
{
    const KelGPXTrackSegment a({point(53.0, 8.0), point(54.0, 9.0)});
    QVERIFY(a == KelGPXTrackSegment({point(53.0, 8.0), point(54.0, 9.0)}));
    QVERIFY(!(a == KelGPXTrackSegment(QList<KelGPXTrackPoint>{point(54.0, 9.0), point(53.0, 8.0)})));
    QVERIFY(!(a == KelGPXTrackSegment(point(53.0, 8.0))));
    QVERIFY(KelGPXTrackSegment() == KelGPXTrackSegment());
}

void tst_KelGPXTrackSegment::elementOperations()
{
    const KelGPXTrackSegment s({point(53.0, 8.0, 0, seconds(10)), point(54.0, 9.0), point(55.0, 10.0, 0, seconds(5))});
    QCOMPARE(s.allPoints().size(), 3);
    QVERIFY(s.allPoints().at(0) == KelGeoPosition(53.0, 8.0));
    QVERIFY(s.allPoints().at(1) == KelGeoPosition(54.0, 9.0));
    QVERIFY(s.allPoints().at(2) == KelGeoPosition(55.0, 10.0));
    QVERIFY(!s.isSinglePoint());
    QVERIFY(s.firstPoint() == KelGeoPosition(53.0, 8.0));
    QVERIFY(s.lastPoint() == KelGeoPosition(55.0, 10.0));
    QCOMPARE(s.allTimeStamps(), (QList<QDateTime>{seconds(10), QDateTime(), seconds(5)}));
}

void tst_KelGPXTrackSegment::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("tuples"); // as toKml() writes them, in one line

    const auto row = [](const char *name, const char *xml, const char *tuples) {
        QTest::newRow(name) << QString::fromUtf8(xml) << QString::fromLatin1(tuples);
    };
    row("empty", "<trkseg/>", "");
    row("points", "<trkseg><trkpt lat='1' lon='2'/><trkpt lat='3' lon='4'/></trkseg>", "2.,1. 4.,3.");
    row("compact points with blank lines around",
        "<trkseg><compressedPoints>\n\n 2,1\n4,3,5 \n\n</compressedPoints></trkseg>", "2.,1. 4.,3.,5");
    row("points before compact points",
        "<trkseg><trkpt lat='1' lon='2'/><compressedPoints>4,3 6,5</compressedPoints></trkseg>", "2.,1. 4.,3. 6.,5.");
    row("document order, however often they change",
        "<trkseg><compressedPoints>2,1</compressedPoints><trkpt lat='3' lon='4'/>"
        "<extensions><gpxx:RoutePointExtension><gpxx:rpt lat='5' lon='6'/></gpxx:RoutePointExtension></extensions>"
        "<trkpt lat='7' lon='8'/><compressedPoints>10,9</compressedPoints></trkseg>",
        "2.,1. 4.,3. 6.,5. 8.,7. 10.,9.");
    row("a point at 0, 0 is dropped from compact points",
        "<trkseg><compressedPoints>2,1 0,0 0.0,-0.0,5 4,3</compressedPoints></trkseg>", "2.,1. 4.,3.");
    row("a point at 0, 0 stays as an element", "<trkseg><trkpt lat='0' lon='0'/></trkseg>", "0.,0.");
    row("unknown children are skipped",
        "<trkseg><wpt lat='1' lon='2'/><trkPt lat='1' lon='2'/><x><trkpt lat='1' lon='2'/></x></trkseg>", "");
    row("the element's name does not matter", "<rtept><trkpt lat='1' lon='2'/></rtept>", "2.,1.");
    row("the element's own coordinates are not read", "<rtept lat='1' lon='2'/>", "");
    row("only the first extension of an element counts",
        "<trkseg><extensions>"
        "<gpxx:RoutePointExtension><gpxx:rpt lat='1' lon='2'/><gpxx:rpt lat='3' lon='4'/></gpxx:RoutePointExtension>"
        "<gpxx:RoutePointExtension><gpxx:rpt lat='5' lon='6'/></gpxx:RoutePointExtension></extensions></trkseg>",
        "2.,1. 4.,3.");
    row("also when the first one is empty",
        "<trkseg><extensions><gpxx:RoutePointExtension/>"
        "<gpxx:RoutePointExtension><gpxx:rpt lat='5' lon='6'/></gpxx:RoutePointExtension></extensions></trkseg>",
        "");
    row("each extensions element has a first extension",
        "<trkseg>"
        "<extensions><gpxx:RoutePointExtension><gpxx:rpt lat='1' lon='2'/></gpxx:RoutePointExtension></extensions>"
        "<extensions><gpxx:RoutePointExtension><gpxx:rpt lat='3' lon='4'/></gpxx:RoutePointExtension></extensions>"
        "</trkseg>",
        "2.,1. 4.,3.");
    row("other extensions before it",
        "<trkseg><extensions><speed>5</speed>"
        "<gpxx:RoutePointExtension><gpxx:Subclass>x</gpxx:Subclass><gpxx:rpt lat='1' lon='2'/>"
        "</gpxx:RoutePointExtension></extensions></trkseg>",
        "2.,1.");
    row("the prefix is taken literally",
        "<trkseg xmlns:g='http://www.garmin.com/xmlschemas/GpxExtensions/v3'><extensions>"
        "<g:RoutePointExtension><g:rpt lat='1' lon='2'/></g:RoutePointExtension>"
        "<RoutePointExtension><rpt lat='1' lon='2'/></RoutePointExtension></extensions></trkseg>",
        "");
    row("no extension deeper down",
        "<trkseg><extensions><x><gpxx:RoutePointExtension><gpxx:rpt lat='1' lon='2'/></gpxx:RoutePointExtension></x>"
        "</extensions></trkseg>",
        "");
    row("points with children",
        "<trkseg><trkpt lat='1' lon='2'><ele>3.9</ele><time>1970-01-01T00:00:01Z</time></trkpt>"
        "<trkpt lat='1' lon='2'><ele>-3.9</ele></trkpt></trkseg>",
        "2.,1.,3,1000 2.,1.,-3");
    row("compact points in CDATA, split by a comment",
        "<trkseg><compressedPoints><![CDATA[2,1\n4]]>,3 6<!-- -->.5,5</compressedPoints></trkseg>",
        "2.,1. 4.,3. 6.5,5.");
    row("blanks alone between two comments do not separate",
        "<trkseg><compressedPoints>2,1<!-- --> <!-- -->4,3</compressedPoints></trkseg>", "2.,14.,3");
}

void tst_KelGPXTrackSegment::fromXml()
{
    QFETCH(QString, xml);
    QTEST(segment(xml).toKml().replace(QLatin1Char('\n'), QLatin1Char(' ')), "tuples");
}

void tst_KelGPXTrackSegment::decodeGarminGPXAppends()
{
    const QDomDocument document = KelTestSupport::document(
        QStringLiteral("<extensions><gpxx:RoutePointExtension><gpxx:rpt lat='1' lon='2'/></gpxx:RoutePointExtension>"
                       "</extensions>"));
    KelGPXTrackSegment s(point(53.0, 8.0));
    s.decodeGarminGPX(document.documentElement());
    s.decodeGarminGPX(document.documentElement());
    QCOMPARE(s.toKml(), "8.,53.\n2.,1.\n2.,1.");
    s.decodeGarminGPX(QDomElement());
    QCOMPARE(s.count(), 3);
}

void tst_KelGPXTrackSegment::toXml()
{
    QDomDocument document = KelTestSupport::document(QStringLiteral("<trk><name/></trk>"));
    QDomElement trk = document.documentElement();
    KelGPXTrackSegment({point(53.5, 8.25, 12), point(54.0, 9.0)}).toXml(trk);
    QCOMPARE(trk.childNodes().size(), 2);
    const QDomElement trkseg = trk.lastChildElement();
    QCOMPARE(trkseg.tagName(), "trkseg");
    QCOMPARE(trkseg.attributes().size(), 0);
    QCOMPARE(trkseg.childNodes().size(), 1);
    QCOMPARE(trkseg.firstChildElement().tagName(), "compressedPoints");
    QCOMPARE(trkseg.firstChildElement().text(), "8.25,53.5,12\n9.,54.");
}

void tst_KelGPXTrackSegment::toXmlOfAnEmptySegment()
{
    QDomDocument document = KelTestSupport::document(QStringLiteral("<trk/>"));
    QDomElement trk = document.documentElement();
    KelGPXTrackSegment().toXml(trk);
    QCOMPARE(trk.childNodes().size(), 1);
    const QDomElement points = trk.firstChildElement(QStringLiteral("trkseg")).firstChildElement();
    QCOMPARE(points.tagName(), "compressedPoints");
    QCOMPARE(points.text(), "");
    QVERIFY(!KelGPXTrackSegment(trk.firstChildElement()).isValid());
}

void tst_KelGPXTrackSegment::roundTripScalesTimes()
{
    const KelGPXTrackSegment written({point(53.1234567, 8.25, 12, seconds(1)), point(-54.5, -9.125, 0, seconds(2000)),
                                      point(0.5, 179.9999999, -7)});
    QDomDocument document = KelTestSupport::document(QStringLiteral("<trk/>"));
    QDomElement trk = document.documentElement();
    written.toXml(trk);
    const KelGPXTrackSegment read(trk.firstChildElement());
    QCOMPARE(read.count(), 3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(read.trackPoints().at(i).position() == written.trackPoints().at(i).position());
        QCOMPARE(read.trackPoints().at(i).elevation(), written.trackPoints().at(i).elevation());
    }
    QCOMPARE(read.allTimeStamps(), (QList<QDateTime>{seconds(1000), seconds(2000000), QDateTime()}));
}

void tst_KelGPXTrackSegment::toKml()
{
    QCOMPARE(KelGPXTrackSegment(point(53.5, 8.25)).toKml(), "8.25,53.5");
    QCOMPARE(KelGPXTrackSegment({point(53.5, 8.25), point(1.0, 2.0, 3), point(4.0, 5.0)}).toKml(),
             "8.25,53.5\n2.,1.,3\n5.,4.");
}

void tst_KelGPXTrackSegment::toKmlEqualsThePlainForm()
{
    static const QRegularExpression trailingZeros(QStringLiteral("0+$"));
    const auto coordinate = [](double value) { return QString::number(value, 'f', 10).remove(trailingZeros); };
    std::mt19937_64 random(KelTestSupport::randomSeed(6));
    std::uniform_real_distribution<double> degrees(-180.0, 180.0);
    std::uniform_real_distribution<double> exponents(-14.0, 20.0);
    const auto angle = [&]() -> double {
        switch (random() % 8) {
        case 0:
            return degrees(random);
        case 1:
            return std::copysign(std::pow(10.0, exponents(random)), random() % 2 ? 1.0 : -1.0);
        case 2:
            return double(qint64(random() % 737280) - 368640) / 2048.0; // every second one an exact half
        case 3:
            return double(random() % 3) * -720.0;
        default:
            return double(qint64(random() % 3600000000) - 1800000000) / 1e7; // as recorded
        }
    };
    const auto whole = [&random](int bits) { return qint64(random() >> (64 - bits)) * (random() % 2 ? 1 : -1); };

    QList<KelGPXTrackPoint> points;
    QString expected;
    for (int i = KelTestSupport::randomCases(50000); i > 0; --i) {
        const double latitude = angle();
        const double longitude = angle();
        const int elevation = random() % 4 ? int(whole(1 + int(random() % 31))) : 0;
        const QDateTime time = random() % 2 ? seconds(whole(1 + int(random() % 40))) : QDateTime();
        points.append(point(latitude, longitude, elevation, time));
        expected += (expected.isEmpty() ? QString() : QStringLiteral("\n")) + coordinate(longitude) + QLatin1Char(',')
            + coordinate(latitude);
        if (elevation != 0 || time.isValid())
            expected += QStringLiteral(",%1").arg(elevation);
        if (time.isValid())
            expected += QStringLiteral(",%1").arg(time.toMSecsSinceEpoch());
        // Segments of many lengths: the writer's buffer ends anywhere.
        if (i == 1 || random() % 400 == 0) {
            QVERIFY(KelGPXTrackSegment(points).toKml() == expected);
            points.clear();
            expected.clear();
        }
    }
}

void tst_KelGPXTrackSegment::decodeTrackPoints_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");

    QTest::newRow("empty") << "" << 0;
    QTest::newRow("blanks") << " \n\t " << 0;
    QTest::newRow("one") << "8.5,47.3" << 1;
    QTest::newRow("blanks around") << "\n 8.5,47.3 \n" << 1;
    QTest::newRow("several blanks between") << "8.5,47.3 \n\n\t 8.6,47.4" << 2;
    QTest::newRow("a blank within a tuple splits it") << "8.5, 47.3" << 2;
    QTest::newRow("no comma") << "8.5 0 47.3" << 2;
    QTest::newRow("at 0, 0") << "0,0" << 0;
    QTest::newRow("unreadable is at 0, 0") << "here,there" << 0;
    QTest::newRow("cut to 0, 0") << "0.00000001,0.00000001" << 0;
    QTest::newRow("just beside 0, 0") << "0.0000001,0" << 1;
}

void tst_KelGPXTrackSegment::decodeTrackPoints()
{
    QFETCH(QString, text);
    QTEST(int(KelGPXTrackSegment::decodeTrackPoints(text).size()), "count");
}

void tst_KelGPXTrackSegment::decodeTrackPointsEqualsThePlainForm_data()
{
    QTest::addColumn<QString>("text");
    const QStringList fields{
        QStringLiteral("8.5"), QStringLiteral("-8.5"), QStringLiteral("+5"), QStringLiteral("-5"), QStringLiteral("7."),
        QStringLiteral(".5"), QStringLiteral("."), QStringLiteral("-"), QStringLiteral("-."), QString(),
        QStringLiteral("0"), QStringLiteral("-0"), QStringLiteral("1e3"), QStringLiteral("1E-3"),
        QStringLiteral("1e400"),
        QStringLiteral("inf"), QStringLiteral("-inf"), QStringLiteral("nan"), QStringLiteral("0x10"),
        QStringLiteral("007"), QStringLiteral("12345678"), QStringLiteral("-1234567"), QStringLiteral("123456789012"),
        QStringLiteral("123456789.5"), QStringLiteral("12345678.1234567"), QStringLiteral("8.12345678"),
        QStringLiteral("8.1234567x"), QStringLiteral("8.123456x"), QStringLiteral("8.12345678.9"),
        QStringLiteral("2147483647"), QStringLiteral("2147483648"), QStringLiteral("-2147483648"),
        QStringLiteral("-2147483649"), QStringLiteral("1700000000"), QStringLiteral("9223372036854775807"),
        QStringLiteral("9223372036854775808"), QStringLiteral("-9223372036854775808"),
        QStringLiteral("123456789012345678"), QStringLiteral("1234567890123456789"), QStringLiteral("12.0"),
        QStringLiteral("\u00a05\u00a0"), QStringLiteral("\u0661"), QStringLiteral("\u22125"), QStringLiteral("5;6"),
        QStringLiteral("\U0001F6B2"), QStringLiteral("8.123\u0135567"), QStringLiteral("8.12345\u80357"),
        QStringLiteral("123\u8031567890"), QStringLiteral("8.1234/67"), QStringLiteral("8.12:4567")};
    int row = 0;
    for (const QString &field : fields) {
        const QString other = QStringLiteral("8.25");
        const auto add = [&](const char *where, const QString &text) {
            QTest::addRow("field %d %s", row, where) << text;
        };
        add("as longitude", field + ",8.25");
        add("as latitude", other + u',' + field);
        add("as latitude before an elevation", other + u',' + field + ",5");
        add("as elevation", QStringLiteral("8.25,9.5,") + field);
        add("as elevation before a time", QStringLiteral("8.25,9.5,") + field + ",77");
        add("as time", QStringLiteral("8.25,9.5,5,") + field);
        add("as time before more", QStringLiteral("8.25,9.5,5,") + field + ",1");
        add("as a fifth field", QStringLiteral("8.25,9.5,5,77,") + field);
        add("alone", field);
        add("between others", QStringLiteral("1,2,3,4\n") + field + u',' + field + ",8\t5,6 ");
        ++row;
    }
    QTest::newRow("half a surrogate pair")
        << QStringLiteral("1,2 3,4 ") + QChar(0xd800) + QStringLiteral("5,6 7,8");
    QTest::newRow("half a surrogate pair behind seven decimals")
        << QStringLiteral("1.1234567,2.1234567 3,4 ") + QChar(0xdc00);
    const QString longText = QStringLiteral("1,2 ").repeated(100);
    QTest::newRow("half a surrogate pair at the beginning of a long text") << QChar(0xd800) + QStringLiteral("5,6 ") + longText;
    QTest::newRow("half a surrogate pair at the end of a long text") << longText + QChar(0xd800) + QStringLiteral("5,6");
    QTest::newRow("null character") << QStringLiteral("1,2 3,4") + QChar(0) + QStringLiteral(" 5,6");
}

void tst_KelGPXTrackSegment::decodeTrackPointsEqualsThePlainForm()
{
    QFETCH(QString, text);
    QCOMPARE(describe(decodeAlone(text)), describe(plainTrackPoints(text)));
}

void tst_KelGPXTrackSegment::decodeTrackPointsOfRandomTexts()
{
    const int cases = KelTestSupport::randomCases(50000);
    std::mt19937 random(KelTestSupport::randomSeed(5));
    const QString usual = QStringLiteral("0123456789012345678901234567890123456789....,,,,,,  \n-");
    const QString unusual = usual + QStringLiteral("+eEx;\u00a0\u0085\u2003\u000b\u000c\r\u0661\u0135\u8035\uff15");
    for (int i = 0; i < cases; ++i) {
        const QString &alphabet = i % 2 ? usual : unusual;
        QString text;
        for (uint length = random() % 60; length > 0; --length)
            text.append(alphabet.at(int(random() % uint(alphabet.size()))));
        QVERIFY2(describe(decodeAlone(text)) == describe(plainTrackPoints(text)), qPrintable(text));
    }
    // Beyond the length where a text is read in two steps.
    for (int i = 0; i < cases / 10; ++i) {
        const QString text = randomLongText(random, unusual);
        QVERIFY2(describe(decodeAlone(text)) == describe(plainTrackPoints(text)), qPrintable(text));
    }
    // As files hold them.
    std::uniform_real_distribution<double> degrees(-180.0, 180.0);
    QString text;
    for (int i = 0; i < cases; ++i) {
        text += QString::number(degrees(random), 'f', int(random() % 12)) + QLatin1Char(',')
            + QString::number(degrees(random), 'f', int(random() % 12));
        if (random() % 2)
            text += QStringLiteral(",%1").arg(int(random() % 9000) - 500);
        text += random() % 2 ? QStringLiteral(",1700000%1\n").arg(random() % 1000) : QStringLiteral(" ");
    }
    QVERIFY(describe(KelGPXTrackSegment::decodeTrackPoints(text)) == describe(plainTrackPoints(text)));
}

void tst_KelGPXTrackSegment::decodeTrackPointsDoesNotAskTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(KelGPXTrackSegment::decodeTrackPoints(QStringLiteral("8.5,47.25,1.000")).first().toKml(), "8.5,47.25");
    QCOMPARE(KelGPXTrackSegment(point(47.25, 8.5, 1000)).toKml(), "8.5,47.25,1000");
    QLocale::setDefault(before);
}

void tst_KelGPXTrackSegment::whatSeparatesTuples()
{
    QStringList separators;
    for (int code = 1; code < 0x10000; ++code) {
        if (QChar::isSurrogate(char32_t(code)))
            continue;
        const QString text = QStringLiteral("1,2,3,4") + QChar(code) + QStringLiteral("5,6");
        if (KelGPXTrackSegment::decodeTrackPoints(text).size() == 2)
            separators.append(QString::number(code, 16));
    }
    // Tab, line feed, vertical tab, form feed, carriage return, blank. Not: U+0085, U+00A0, U+2003 ...
    QCOMPARE(separators, QString("9 a b c d 20").split(u' '));
}

void tst_KelGPXTrackSegment::decodeKml()
{
    const KelGPXTrackSegment s = KelGPXTrackSegment::decodeKml(QStringLiteral("\n 8.5,47.3,412.7\n8.6,47.4,412\n"));
    QCOMPARE(s.count(), 2);
    QCOMPARE(s.trackPoints().at(0).elevation(), 0); // a fraction is no whole number
    QCOMPARE(s.trackPoints().at(1).elevation(), 412);
    QVERIFY(s.firstPoint() == KelGeoPosition(47.3, 8.5));
    QVERIFY(!KelGPXTrackSegment::decodeKml(QString()).isValid());
}

void tst_KelGPXTrackSegment::collectBlock_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<QList<int>>("points"); // counted from 1

    QTest::newRow("all") << 0 << 3 << QList<int>{1, 2, 3, 4};
    QTest::newRow("middle") << 1 << 2 << QList<int>{2, 3};
    QTest::newRow("one, although [0, 0] is the unset range") << 0 << 0 << QList<int>{1};
    QTest::newRow("last") << 3 << 3 << QList<int>{4};
    QTest::newRow("empty") << 0 << -1 << QList<int>();
    QTest::newRow("inverted") << 3 << 1 << QList<int>();
    QTest::newRow("beyond the end") << 2 << 9 << QList<int>{3, 4};
    QTest::newRow("before the start") << -2 << 0 << QList<int>{1};
}

void tst_KelGPXTrackSegment::collectBlock()
{
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(QList<int>, points);
    const KelGeoPositionList block = meridian(4).collectBlock(KelIntRange(first, last));
    QCOMPARE(block.size(), points.size());
    for (qsizetype i = 0; i < points.size(); ++i)
        QCOMPARE(block.at(i).latitude().decimalDegrees(), points.at(i) / 1000.0);
}

void tst_KelGPXTrackSegment::chunkedPointsInTheMainThread_data()
{
    QTest::addColumn<int>("count");
    for (const int count : {0, 1, 2, 3, 7, 100, 10007})
        QTest::addRow("%d points", count) << count;
}

void tst_KelGPXTrackSegment::chunkedPointsInTheMainThread()
{
    QFETCH(int, count);
    const KelGPXTrackSegment s = meridian(count);
    const QList<KelGeoPositionList> chunks = s.chunkedPoints();
    KelGeoPositionList joined;
    for (const KelGeoPositionList &chunk : chunks)
        joined.append(chunk);
    QCOMPARE(joined.size(), count);
    const KelGeoPositionList expected = s.allPoints();
    for (int i = 0; i < count; ++i)
        QVERIFY(joined.at(i) == expected.at(i));
    QCOMPARE(chunks.size(), KelIntRange(0, count - 1).splitEvenlyForCpuCores().size());
}

void tst_KelGPXTrackSegment::chunkedPointsInAWorkerThread()
{
    const KelGPXTrackSegment s = meridian(1000);
    QList<KelGeoPositionList> chunks;
    runInWorkerThread([&] { chunks = s.chunkedPoints(); });
    QCOMPARE(chunks.size(), 1);
    QCOMPARE(chunks.first().size(), 1000);
    const KelGeoPositionList block = s.collectBlock(KelIntRange(0, 999));
    for (int i = 0; i < 1000; ++i)
        QVERIFY(chunks.first().at(i) == block.at(i));
}

void tst_KelGPXTrackSegment::weAreaRunningInMainThread()
{
    QVERIFY(KelGPXTrackSegment().weAreaRunningInMainThread());
    bool inWorker = true;
    runInWorkerThread([&] { inWorker = KelGPXTrackSegment().weAreaRunningInMainThread(); });
    QVERIFY(!inWorker);
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackSegment)
#include "tst_KelGPXTrackSegment.moc"

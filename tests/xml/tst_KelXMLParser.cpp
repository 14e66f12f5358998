// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelXMLParser.h>

#include <QColor>
#include <QDateTime>
#include <QDomDocument>
#include <QObject>
#include <QtTest>

#include <KelTestSupport.h>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(KelXMLParser::ColorByteOrder)

namespace
{

const QDateTime DefaultTime(QDate(2001, 2, 3), QTime(4, 5, 6), Qt::UTC);

} // namespace

class tst_KelXMLParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doubleAttribute_data();
    void doubleAttribute();
    void intAttribute_data();
    void intAttribute();
    void textAttribute_data();
    void textAttribute();
    void doubleText_data();
    void doubleText();
    void intText_data();
    void intText();
    void text_data();
    void text();
    void dateTimeText_data();
    void dateTimeText();
    void nullNodesHaveNothing();
    void toDouble_data();
    void toDouble();
    void nullTextTakesTheDefault();
    void readColor_data();
    void readColor();
    void readColorTakesOurOrderByDefault();
};

void tst_KelXMLParser::doubleAttribute_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<double>("value");

    QTest::newRow("present") << "<wpt lat='53.125'/>" << 53.125;
    QTest::newRow("missing") << "<wpt/>" << -720.0;
    QTest::newRow("empty is unreadable") << "<wpt lat=''/>" << 0.0;
    QTest::newRow("letters are unreadable") << "<wpt lat='north'/>" << 0.0;
    QTest::newRow("another attribute") << "<wpt Lat='1'/>" << -720.0;
    QTest::newRow("with a prefix it is another attribute") << "<wpt x:lat='1'/>" << -720.0;
}

void tst_KelXMLParser::doubleAttribute()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    QTEST(KelXMLParser::doubleAttribute(document.documentElement(), QStringLiteral("lat"), -720.0), "value");
}

void tst_KelXMLParser::intAttribute_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("value");

    QTest::newRow("present") << "<config smoothing='75'/>" << 75;
    QTest::newRow("negative") << "<config smoothing='-75'/>" << -75;
    QTest::newRow("missing") << "<config/>" << 100;
    QTest::newRow("empty is unreadable") << "<config smoothing=''/>" << 0;
    QTest::newRow("fraction is unreadable") << "<config smoothing='7.5'/>" << 0;
    QTest::newRow("too large is unreadable") << "<config smoothing='2147483648'/>" << 0;
    QTest::newRow("blanks and plus sign") << "<config smoothing=' +5 '/>" << 5;
}

void tst_KelXMLParser::intAttribute()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    QTEST(KelXMLParser::intAttribute(document.documentElement(), QStringLiteral("smoothing"), 100), "value");
}

void tst_KelXMLParser::textAttribute_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("value");

    QTest::newRow("present") << "<a name=' b &amp; c '/>" << " b & c ";
    QTest::newRow("empty") << "<a name=''/>" << "";
    QTest::newRow("missing") << "<a/>" << "default";
}

void tst_KelXMLParser::textAttribute()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    const QString value =
        KelXMLParser::attribute(document.documentElement(), QStringLiteral("name"), QStringLiteral("default"));
    QTEST(value, "value");
    QVERIFY(!value.isNull());
}

void tst_KelXMLParser::doubleText_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<double>("value");

    QTest::newRow("present") << "<wpt><ele>12.5</ele></wpt>" << 12.5;
    QTest::newRow("line ends around it") << "<wpt><ele>\n 12.5\n</ele></wpt>" << 12.5;
    QTest::newRow("missing") << "<wpt><name>5</name></wpt>" << -1.0;
    QTest::newRow("empty is unreadable") << "<wpt><ele/></wpt>" << 0.0;
    QTest::newRow("letters are unreadable") << "<wpt><ele>high</ele></wpt>" << 0.0;
    QTest::newRow("of several the first counts") << "<wpt><ele>1</ele><ele>2</ele></wpt>" << 1.0;
    QTest::newRow("an unreadable first counts too") << "<wpt><ele/><ele>2</ele></wpt>" << 0.0;
    QTest::newRow("a grandchild does not count") << "<wpt><x><ele>1</ele></x></wpt>" << -1.0;
    QTest::newRow("text in parts") << "<wpt><ele>1<!-- and -->2<b>.5</b></ele></wpt>" << 12.5;
}

void tst_KelXMLParser::doubleText()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    QTEST(KelXMLParser::doubleText(document.documentElement(), QStringLiteral("ele"), -1.0), "value");
}

void tst_KelXMLParser::intText_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("value");

    QTest::newRow("present") << "<config><pensize>5</pensize></config>" << 5;
    QTest::newRow("missing") << "<config/>" << 3;
    QTest::newRow("empty is unreadable") << "<config><pensize/></config>" << 0;
    QTest::newRow("fraction is unreadable") << "<config><pensize>5.0</pensize></config>" << 0;
}

void tst_KelXMLParser::intText()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    QTEST(KelXMLParser::intText(document.documentElement(), QStringLiteral("pensize"), 3), "value");
}

void tst_KelXMLParser::text_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("value");

    QTest::newRow("present") << "<trk><name>Tour</name></trk>" << "Tour";
    QTest::newRow("blanks are kept") << "<trk><name> Tour\n</name></trk>" << " Tour\n";
    QTest::newRow("empty") << "<trk><name/></trk>" << "";
    QTest::newRow("missing") << "<trk/>" << "default";
    QTest::newRow("of several the first counts") << "<trk><name>a</name><name>b</name></trk>" << "a";
    QTest::newRow("CDATA") << "<trk><name><![CDATA[a <b>]]></name></trk>" << "a <b>";
    QTest::newRow("text of nested elements") << "<trk><name>a<b>c</b>d</name></trk>" << "acd";
    QTest::newRow("a prefix makes another name") << "<trk><x:name>a</x:name></trk>" << "default";
}

void tst_KelXMLParser::text()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    const QString value =
        KelXMLParser::text(document.documentElement(), QStringLiteral("name"), QStringLiteral("default"));
    QTEST(value, "value");
    QVERIFY(!value.isNull());
}

void tst_KelXMLParser::dateTimeText_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QDateTime>("value");

    QTest::newRow("universal time") << "<wpt><time>2020-05-17T12:30:05Z</time></wpt>"
                                    << QDateTime(QDate(2020, 5, 17), QTime(12, 30, 5), Qt::UTC);
    QTest::newRow("with offset") << "<wpt><time>2020-05-17T12:30:05+02:00</time></wpt>"
                                 << QDateTime(QDate(2020, 5, 17), QTime(10, 30, 5), Qt::UTC);
    QTest::newRow("with milliseconds") << "<wpt><time>2020-05-17T12:30:05.250Z</time></wpt>"
                                       << QDateTime(QDate(2020, 5, 17), QTime(12, 30, 5, 250), Qt::UTC);
    QTest::newRow("missing") << "<wpt/>" << DefaultTime;
    QTest::newRow("empty is invalid") << "<wpt><time/></wpt>" << QDateTime();
    QTest::newRow("another format is invalid") << "<wpt><time>17.5.2020</time></wpt>" << QDateTime();
}

void tst_KelXMLParser::dateTimeText()
{
    QFETCH(QString, xml);
    QFETCH(QDateTime, value);
    const QDomDocument document = KelTestSupport::document(xml);
    const QDateTime read =
        KelXMLParser::dateTimeText(document.documentElement(), QStringLiteral("time"), Qt::ISODate, DefaultTime);
    QCOMPARE(read, value);
    QCOMPARE(read.isValid(), value.isValid());
}

void tst_KelXMLParser::nullNodesHaveNothing()
{
    const QString name = QStringLiteral("name");
    QCOMPARE(KelXMLParser::doubleAttribute(QDomElement(), name, 1.5), 1.5);
    QCOMPARE(KelXMLParser::intAttribute(QDomElement(), name, 7), 7);
    QCOMPARE(KelXMLParser::attribute(QDomElement(), name, QStringLiteral("d")), QStringLiteral("d"));
    QCOMPARE(KelXMLParser::doubleText(QDomNode(), name, 1.5), 1.5);
    QCOMPARE(KelXMLParser::intText(QDomNode(), name, 7), 7);
    QCOMPARE(KelXMLParser::text(QDomNode(), name, QStringLiteral("d")), QStringLiteral("d"));
    QCOMPARE(KelXMLParser::dateTimeText(QDomNode(), name, Qt::ISODate, DefaultTime), DefaultTime);
}

void tst_KelXMLParser::toDouble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("integer") << "5" << 5.0;
    QTest::newRow("exponent") << "1.5e2" << 150.0;
    QTest::newRow("blanks around") << " 5.5\t" << 5.5;
    QTest::newRow("comma is unreadable") << "5,5" << 0.0;
    QTest::newRow("more than a number is unreadable") << "5 km" << 0.0;
    QTest::newRow("hexadecimal is unreadable") << "0x10" << 0.0;
    QTest::newRow("empty is unreadable") << "" << 0.0;
    QTest::newRow("beyond the range is unreadable") << "1e999" << 0.0;
    QTest::newRow("largest double") << "1.7976931348623157e308" << std::numeric_limits<double>::max();
}

void tst_KelXMLParser::toDouble()
{
    QFETCH(QString, text);
    QTEST(KelXMLParser::toDouble(text, 99.0), "value");
}

void tst_KelXMLParser::nullTextTakesTheDefault()
{
    QCOMPARE(KelXMLParser::toDouble(QString(), 99.0), 99.0);
    QCOMPARE(KelXMLParser::toInt(QString(), 99), 99);
    QCOMPARE(KelXMLParser::toInt(QStringLiteral(""), 99), 0);
    QCOMPARE(KelXMLParser::toDateTime(QString(), Qt::ISODate, DefaultTime), DefaultTime);
    QVERIFY(!KelXMLParser::toDateTime(QStringLiteral(""), Qt::ISODate, DefaultTime).isValid());
}

void tst_KelXMLParser::readColor_data()
{
    using Order = KelXMLParser::ColorByteOrder;
    QTest::addColumn<QString>("text");
    QTest::addColumn<Order>("order");
    QTest::addColumn<QColor>("color");

    const QColor transparent(0, 0, 0, 0);
    const QColor black(0, 0, 0, 255);
    QTest::newRow("own order") << "#80102030" << Order::Argb << QColor(0x10, 0x20, 0x30, 0x80);
    QTest::newRow("KML order") << "#80102030" << Order::Abgr << QColor(0x30, 0x20, 0x10, 0x80);
    QTest::newRow("upper case") << "#FFABCDEF" << Order::Argb << QColor(0xab, 0xcd, 0xef, 0xff);
    QTest::newRow("fully transparent with colour") << "#00ff0000" << Order::Argb << QColor(255, 0, 0, 0);
    QTest::newRow("six digits") << "#102030" << Order::Argb << QColor(0x10, 0x20, 0x30);
    QTest::newRow("six digits know one order only") << "#102030" << Order::Abgr << QColor(0x10, 0x20, 0x30);
    QTest::newRow("three digits") << "#f00" << Order::Argb << QColor(255, 0, 0);
    QTest::newRow("name") << "steelblue" << Order::Argb << QColor(70, 130, 180);
    QTest::newRow("blanks around") << "\n #ff102030 \n" << Order::Argb << QColor(0x10, 0x20, 0x30);
    QTest::newRow("blanks before the digits") << "#\n ff102030" << Order::Abgr << QColor(0x30, 0x20, 0x10);
    QTest::newRow("empty is opaque black") << "" << Order::Argb << black;
    QTest::newRow("empty in KML order too") << "" << Order::Abgr << black;
    QTest::newRow("only blanks is empty") << " \n" << Order::Argb << black;
    QTest::newRow("lone number sign is unreadable") << "#" << Order::Argb << transparent;
    QTest::newRow("lone number sign in KML order") << "#" << Order::Abgr << transparent;
    QTest::newRow("seven digits are unreadable") << "#1234567" << Order::Argb << transparent;
    QTest::newRow("no hexadecimal digit is unreadable") << "#ff10203g" << Order::Argb << transparent;
    QTest::newRow("a sign is no digit") << "#ff1020-1" << Order::Argb << transparent;
    QTest::newRow("unknown name is unreadable") << "nocolour" << Order::Argb << transparent;
    QTest::newRow("a name behind a number sign is unreadable") << "#red" << Order::Argb << transparent;
}

void tst_KelXMLParser::readColor()
{
    QFETCH(QString, text);
    QFETCH(KelXMLParser::ColorByteOrder, order);
    QFETCH(QColor, color);
    const QColor read = KelXMLParser::readColor(text, order);
    QVERIFY(read.isValid());
    QCOMPARE(read.rgba(), color.rgba());
}

void tst_KelXMLParser::readColorTakesOurOrderByDefault()
{
    const QColor color(0x10, 0x20, 0x30, 0x80);
    QCOMPARE(KelXMLParser::readColor(QStringLiteral("#80102030")), color);
    QCOMPARE(KelXMLParser::readColor(color.name(QColor::HexArgb)), color);
}

QTEST_GUILESS_MAIN(tst_KelXMLParser)
#include "tst_KelXMLParser.moc"

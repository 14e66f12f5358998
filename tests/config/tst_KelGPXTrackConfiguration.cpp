// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackConfiguration.h>
#include <KelTestSupport.h>

#include <QProcess>
#include <QtTest>

#include <cstdio>
#include <limits>
#include <memory>
#include <type_traits>

namespace
{

const char *const printSerialized = "--print-serialized";

/// All ten values differ from the default.
KelGPXTrackConfiguration unusual()
{
    return KelGPXTrackConfiguration(QColor(0x11, 0x22, 0x33, 0x44), 3.0, QColor(0x55, 0x66, 0x77, 0x88), 7.0,
                                    KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill), MarkerStar9,
                                    TrackShapePolygon, Qt::DashLine, 40, 12);
}

KelGPXTrackConfiguration read(const QString &xml)
{
    const QDomDocument document = KelTestSupport::document(xml);
    return KelGPXTrackConfiguration::fromXml(document.documentElement());
}

void compareWithAllMissing(const KelGPXTrackConfiguration &configuration)
{
    QCOMPARE(configuration.lineColor(), QColor(0, 0, 0, 255));
    QCOMPARE(configuration.lineWidth().value(), 10.0);
    QCOMPARE(configuration.penStyle().value(), Qt::SolidLine);
    QCOMPARE(configuration.fillColor().rgb(), qRgb(0, 0, 0));
    // Half of 255 as a fraction; Qt may round the last half either way.
    QVERIFY(qAbs(configuration.fillColor().alphaF() - 0.5f) < 0.0001f);
    QCOMPARE(configuration.haloWidth().value(), 20.0);
    QCOMPARE(configuration.currentDisplayOptions().toInt(), 1);
    QCOMPARE(configuration.markerShape().toInt(), 1);
    QCOMPARE(configuration.trackShape().toInt(), 256);
    QCOMPARE(configuration.smoothingStrength(), 100);
    QCOMPARE(configuration.smoothingSteps(), 1);
}

QStringList childTexts(const QDomElement &element)
{
    QStringList result;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        result.append(child.tagName() + QLatin1Char('=') + child.text());
    return result;
}

QByteArray serializedInProcessWithSeed(const QString &seed)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_HASH_SEED"));
    if (!seed.isEmpty())
        environment.insert(QStringLiteral("QT_HASH_SEED"), seed);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {QLatin1String(printSerialized)});
    return process.waitForFinished() && process.exitCode() == 0 ? process.readAllStandardOutput() : QByteArray();
}

} // namespace

class tst_KelGPXTrackConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructorTakesThePenStyleEighth();
    void defaultValue();
    void fillOfTheDefaultIsOpaque();
    void settersTellWhetherAnythingChanged();
    void equalityLooksAtEveryField_data();
    void equalityLooksAtEveryField();
    void hasDrawOption_data();
    void hasDrawOption();
    void wouldChangeHaloToVisibleAgainst_data();
    void wouldChangeHaloToVisibleAgainst();
    void multiplyAlpha_data();
    void multiplyAlpha();
    void toXmlInOrder();
    void serializedDefault();
    void widthsLoseTheirFraction_data();
    void widthsLoseTheirFraction();
    void roundTrip();
    void extraDisplayOptionIsNotStored();
    void fromXmlWithEverythingMissing();
    void fromXml_data();
    void fromXml();
    void missingFill_data();
    void missingFill();
    void missingHalo_data();
    void missingHalo();
    void deserializeWhatIsNoXml_data();
    void deserializeWhatIsNoXml();
    void deserializeAnyRoot();
    void sameTextInEveryProcess();
    void debugOutput();
};

void tst_KelGPXTrackConfiguration::constructorTakesThePenStyleEighth()
{
    const KelGPXTrackConfiguration configuration = unusual();
    QCOMPARE(configuration.lineColor(), QColor(0x11, 0x22, 0x33, 0x44));
    QCOMPARE(configuration.lineWidth().value(), 3.0);
    QCOMPARE(configuration.fillColor(), QColor(0x55, 0x66, 0x77, 0x88));
    QCOMPARE(configuration.haloWidth().value(), 7.0);
    QCOMPARE(configuration.currentDisplayOptions().toInt(), 3);
    QCOMPARE(configuration.markerShape().toInt(), 256);
    QCOMPARE(configuration.trackShape().toInt(), 8);
    QCOMPARE(configuration.penStyle().value(), Qt::DashLine);
    QCOMPARE(configuration.smoothingStrength(), 40);
    QCOMPARE(configuration.smoothingSteps(), 12);
    QVERIFY(std::has_virtual_destructor_v<KelGPXTrackConfiguration>);
}

void tst_KelGPXTrackConfiguration::defaultValue()
{
    const KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    QCOMPARE(configuration.lineColor(), QColor(255, 145, 0, 255));
    QCOMPARE(configuration.lineWidth().value(), 10.0);
    QCOMPARE(configuration.haloWidth().value(), 0.0);
    QVERIFY(configuration.haloWidth().isNull());
    QCOMPARE(configuration.currentDisplayOptions().toInt(), 1);
    QCOMPARE(configuration.markerShape().toInt(), 1);
    QCOMPARE(configuration.trackShape().toInt(), 256);
    QCOMPARE(configuration.penStyle().value(), Qt::SolidLine);
    QCOMPARE(configuration.smoothingStrength(), 100);
    QCOMPARE(configuration.smoothingSteps(), 1);
}

void tst_KelGPXTrackConfiguration::fillOfTheDefaultIsOpaque()
{
    const QColor fill = KelGPXTrackConfiguration::defaultValue().fillColor();
    QCOMPARE(fill, QColor(252, 164, 4, 255));
    QCOMPARE(fill.alpha(), 255);
}

void tst_KelGPXTrackConfiguration::settersTellWhetherAnythingChanged()
{
    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();

    QVERIFY(!configuration.setLineColor(QColor(255, 145, 0)));
    QVERIFY(configuration.setLineColor(QColor(255, 145, 0, 254)));
    QCOMPARE(configuration.lineColor(), QColor(255, 145, 0, 254));

    QVERIFY(!configuration.setLineWidth(10.0));
    QVERIFY(configuration.setLineWidth(10.5));
    QCOMPARE(configuration.lineWidth().value(), 10.5);

    QVERIFY(!configuration.setPenStyle(Qt::SolidLine));
    QVERIFY(configuration.setPenStyle(Qt::DotLine));
    QCOMPARE(configuration.penStyle().value(), Qt::DotLine);

    QVERIFY(!configuration.setFillColor(QColor(252, 164, 4)));
    QVERIFY(configuration.setFillColor(QColor(252, 164, 5)));
    QCOMPARE(configuration.fillColor(), QColor(252, 164, 5));

    QVERIFY(!configuration.setHaloWidth(0.0));
    QVERIFY(configuration.setHaloWidth(4.0));
    QCOMPARE(configuration.haloWidth().value(), 4.0);

    QVERIFY(!configuration.setCurrentDisplayOptions(DisplayStroke));
    QVERIFY(configuration.setCurrentDisplayOptions(DisplayFill));
    QCOMPARE(configuration.currentDisplayOptions().toInt(), 2);

    QVERIFY(!configuration.setMarkerShape(MarkerDisk));
    QVERIFY(configuration.setMarkerShape(MarkerArrow));
    QCOMPARE(configuration.markerShape().toInt(), 1024);

    QVERIFY(!configuration.setTrackShape(TrackShapeAuto));
    QVERIFY(configuration.setTrackShape(TrackShapeHop));
    QCOMPARE(configuration.trackShape().toInt(), 2);

    QVERIFY(!configuration.setSmoothingStrength(100));
    QVERIFY(configuration.setSmoothingStrength(-5));
    QCOMPARE(configuration.smoothingStrength(), -5);

    QVERIFY(!configuration.setSmoothingSteps(1));
    QVERIFY(configuration.setSmoothingSteps(0));
    QCOMPARE(configuration.smoothingSteps(), 0);
}

void tst_KelGPXTrackConfiguration::equalityLooksAtEveryField_data()
{
    QTest::addColumn<std::shared_ptr<KelGPXTrackConfiguration>>("other");

    const auto row = [](const char *name, auto change) {
        const auto other = std::make_shared<KelGPXTrackConfiguration>(unusual());
        change(*other);
        QTest::newRow(name) << other;
    };
    row("line colour", [](KelGPXTrackConfiguration &c) { c.setLineColor(QColor(0x11, 0x22, 0x33, 0x45)); });
    row("line width", [](KelGPXTrackConfiguration &c) { c.setLineWidth(3.01); });
    row("pen style", [](KelGPXTrackConfiguration &c) { c.setPenStyle(Qt::DotLine); });
    row("fill colour", [](KelGPXTrackConfiguration &c) { c.setFillColor(QColor(0x55, 0x66, 0x78, 0x88)); });
    row("halo width", [](KelGPXTrackConfiguration &c) { c.setHaloWidth(6.99); });
    row("display options", [](KelGPXTrackConfiguration &c) { c.setCurrentDisplayOptions(DisplayFill); });
    row("marker shape", [](KelGPXTrackConfiguration &c) { c.setMarkerShape(MarkerStar12); });
    row("track shape", [](KelGPXTrackConfiguration &c) { c.setTrackShape(TrackShapePoint); });
    row("smoothing strength", [](KelGPXTrackConfiguration &c) { c.setSmoothingStrength(41); });
    row("smoothing steps", [](KelGPXTrackConfiguration &c) { c.setSmoothingSteps(11); });
}

void tst_KelGPXTrackConfiguration::equalityLooksAtEveryField()
{
    QFETCH(std::shared_ptr<KelGPXTrackConfiguration>, other);

    QVERIFY(!(unusual() == *other));
    QVERIFY(unusual() != *other);
    const KelGPXTrackConfiguration copy = *other;
    QVERIFY(copy == *other);
    QVERIFY(!(copy != *other));
}

void tst_KelGPXTrackConfiguration::hasDrawOption_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("asked");
    QTest::addColumn<bool>("result");

    QTest::newRow("stroke has stroke") << 1 << 1 << true;
    QTest::newRow("stroke has no fill") << 1 << 2 << false;
    QTest::newRow("one shared bit is enough") << 1 << 3 << true;
    QTest::newRow("both have fill") << 3 << 2 << true;
    QTest::newRow("third option") << 5 << 4 << true;
    QTest::newRow("nothing asked") << 3 << 0 << false;
    QTest::newRow("nothing there") << 0 << 3 << false;
}

void tst_KelGPXTrackConfiguration::hasDrawOption()
{
    QFETCH(int, current);
    QFETCH(int, asked);
    QFETCH(bool, result);

    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(current));
    QCOMPARE(configuration.hasDrawOption(KelGPXTrackDisplayOptions(asked)), result);
}

void tst_KelGPXTrackConfiguration::wouldChangeHaloToVisibleAgainst_data()
{
    QTest::addColumn<double>("here");
    QTest::addColumn<double>("there");
    QTest::addColumn<bool>("result");

    QTest::newRow("appears") << 2.0 << 0.0 << true;
    QTest::newRow("disappears") << 0.0 << 2.0 << false;
    QTest::newRow("stays visible") << 3.0 << 2.0 << false;
    QTest::newRow("stays away") << 0.0 << 0.0 << false;
}

void tst_KelGPXTrackConfiguration::wouldChangeHaloToVisibleAgainst()
{
    QFETCH(double, here);
    QFETCH(double, there);
    QFETCH(bool, result);

    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setHaloWidth(here);
    KelGPXTrackConfiguration other = KelGPXTrackConfiguration::defaultValue();
    other.setHaloWidth(there);
    QCOMPARE(configuration.wouldChangeHaloToVisibleAgainst(other), result);
}

void tst_KelGPXTrackConfiguration::multiplyAlpha_data()
{
    QTest::addColumn<int>("alpha");
    QTest::addColumn<double>("factor");
    QTest::addColumn<int>("result");

    QTest::newRow("half of 128") << 128 << 0.5 << 64;
    QTest::newRow("by one") << 77 << 1.0 << 77;
    QTest::newRow("by nothing") << 255 << 0.0 << 0;
    QTest::newRow("of nothing") << 0 << 0.5 << 0;
    QTest::newRow("twice 100") << 100 << 2.0 << 200;
    QTest::newRow("a fifth of 255") << 255 << 0.2 << 51;
    QTest::newRow("twice 200 is opaque") << 200 << 2.0 << 255;
    QTest::newRow("negative is transparent") << 200 << -1.0 << 0;
    QTest::newRow("infinite is opaque") << 1 << std::numeric_limits<double>::infinity() << 255;
    QTest::newRow("not a number is transparent") << 200 << std::numeric_limits<double>::quiet_NaN() << 0;
}

void tst_KelGPXTrackConfiguration::multiplyAlpha()
{
    QFETCH(int, alpha);
    QFETCH(double, factor);
    QFETCH(int, result);

    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    const QColor color = KelGPXTrackConfiguration::multiplyAlpha(QColor(10, 20, 30, alpha), factor);
    QCOMPARE(color.alpha(), result);
    QCOMPARE(color.red(), 10);
    QCOMPARE(color.green(), 20);
    QCOMPARE(color.blue(), 30);
}

void tst_KelGPXTrackConfiguration::toXmlInOrder()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<track id=\"7\"><trk>a</trk></track>"));
    QDomElement element = document.documentElement();
    unusual().toXml(element);

    QCOMPARE(childTexts(element),
             QStringList({QStringLiteral("trk=a"), QStringLiteral("pensize=3"), QStringLiteral("color=#44112233"),
                          QStringLiteral("fillcolor=#88556677"), QStringLiteral("halosize=7"),
                          QStringLiteral("displayOptions=stroke, fill"), QStringLiteral("markerShape=star9"),
                          QStringLiteral("trackShape=polygon"), QStringLiteral("penStyle=DashLine")}));
    QCOMPARE(element.attributes().count(), 3);
    QCOMPARE(element.attribute(QStringLiteral("id")), QStringLiteral("7"));
    QCOMPARE(element.attribute(QStringLiteral("smoothing")), QStringLiteral("40"));
    QCOMPARE(element.attribute(QStringLiteral("smoothingSteps")), QStringLiteral("12"));
}

void tst_KelGPXTrackConfiguration::serializedDefault()
{
    const QString text = KelGPXTrackConfiguration::defaultValue().serialize();
    const QDomDocument document = KelTestSupport::document(text);
    const QDomElement root = document.documentElement();

    QCOMPARE(root.tagName(), QStringLiteral("config"));
    QCOMPARE(childTexts(root),
             QStringList({QStringLiteral("pensize=10"), QStringLiteral("color=#ffff9100"),
                          QStringLiteral("fillcolor=#fffca404"), QStringLiteral("halosize=0"),
                          QStringLiteral("displayOptions=stroke"), QStringLiteral("markerShape=disk"),
                          QStringLiteral("trackShape=auto"), QStringLiteral("penStyle=SolidLine")}));
    QCOMPARE(root.attributes().count(), 2);
    QCOMPARE(root.attribute(QStringLiteral("smoothing")), QStringLiteral("100"));
    QCOMPARE(root.attribute(QStringLiteral("smoothingSteps")), QStringLiteral("1"));
    QVERIFY2(!text.contains(QLatin1String("\n ")), qPrintable(text));
}

void tst_KelGPXTrackConfiguration::widthsLoseTheirFraction_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<QString>("written");

    QTest::newRow("2.9 is written as 2") << 2.9 << "2";
    QTest::newRow("truncated toward zero") << -2.9 << "-2";
    QTest::newRow("below one") << 0.99 << "0";
    QTest::newRow("whole") << 12.0 << "12";
    QTest::newRow("more than an integer holds") << 1e300 << "2147483647";
    QTest::newRow("less than an integer holds") << -1e300 << "-2147483648";
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << "0";
}

void tst_KelGPXTrackConfiguration::widthsLoseTheirFraction()
{
    QFETCH(double, width);
    QFETCH(QString, written);

    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setLineWidth(width);
    configuration.setHaloWidth(width);
    const QString text = configuration.serialize();
    const QDomDocument document = KelTestSupport::document(text);
    QCOMPARE(document.documentElement().firstChildElement(QStringLiteral("pensize")).text(), written);
    QCOMPARE(document.documentElement().firstChildElement(QStringLiteral("halosize")).text(), written);

    const KelGPXTrackConfiguration back = KelGPXTrackConfiguration::deserialize(text);
    QCOMPARE(back.lineWidth().value(), written.toDouble());
    QCOMPARE(back == configuration, width == 12.0);
}

void tst_KelGPXTrackConfiguration::roundTrip()
{
    QVERIFY(KelGPXTrackConfiguration::deserialize(unusual().serialize()) == unusual());
    const KelGPXTrackConfiguration defaultValue = KelGPXTrackConfiguration::defaultValue();
    QVERIFY(KelGPXTrackConfiguration::deserialize(defaultValue.serialize()) == defaultValue);
}

void tst_KelGPXTrackConfiguration::extraDisplayOptionIsNotStored()
{
    KelGPXTrackConfiguration configuration = unusual();
    configuration.setCurrentDisplayOptions(KelGPXTrackDisplayOptions(7));
    const KelGPXTrackConfiguration back = KelGPXTrackConfiguration::deserialize(configuration.serialize());
    QCOMPARE(back.currentDisplayOptions().toInt(), 3);
}

void tst_KelGPXTrackConfiguration::fromXmlWithEverythingMissing()
{
    compareWithAllMissing(read(QStringLiteral("<config/>")));
    compareWithAllMissing(KelGPXTrackConfiguration::fromXml(QDomElement()));
}

void tst_KelGPXTrackConfiguration::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<double>("lineWidth");
    QTest::addColumn<double>("haloWidth");
    QTest::addColumn<QColor>("lineColor");
    QTest::addColumn<int>("strength");
    QTest::addColumn<int>("steps");

    const QColor black(0, 0, 0);
    QTest::newRow("widths are read as decimals")
        << "<c><pensize>2.75</pensize><halosize>0.5</halosize></c>" << 2.75 << 0.5 << black << 100 << 1;
    QTest::newRow("an unreadable width is 0")
        << "<c><pensize>wide</pensize><halosize>none</halosize></c>" << 0.0 << 0.0 << black << 100 << 1;
    QTest::newRow("an empty width is 0, not missing")
        << "<c><pensize/><halosize/></c>" << 0.0 << 0.0 << black << 100 << 1;
    QTest::newRow("a decimal comma is unreadable")
        << "<c><pensize>2,5</pensize><halosize>1</halosize></c>" << 0.0 << 1.0 << black << 100 << 1;
    QTest::newRow("an infinite width is 0")
        << "<c><pensize>inf</pensize><halosize>-inf</halosize></c>" << 0.0 << 0.0 << black << 100 << 1;
    QTest::newRow("a width that is not a number is 0")
        << "<c><pensize>nan</pensize><halosize>nan</halosize></c>" << 0.0 << 0.0 << black << 100 << 1;
    QTest::newRow("a width beyond the range of numbers is 0")
        << "<c><pensize>1e999</pensize><halosize>-1e999</halosize></c>" << 0.0 << 0.0 << black << 100 << 1;
    QTest::newRow("twice the widest line is no halo")
        << "<c><pensize>1e308</pensize></c>" << 1e308 << 0.0 << black << 100 << 1;
    QTest::newRow("alpha comes first")
        << "<c><color>#80ff0000</color></c>" << 10.0 << 20.0 << QColor(255, 0, 0, 128) << 100 << 1;
    QTest::newRow("an empty colour is opaque black")
        << "<c><color/></c>" << 10.0 << 20.0 << black << 100 << 1;
    QTest::newRow("an unreadable colour is transparent")
        << "<c><color>colourful</color></c>" << 10.0 << 20.0 << QColor(0, 0, 0, 0) << 100 << 1;
    QTest::newRow("smoothing") << "<c smoothing=\"35\" smoothingSteps=\"9\"/>" << 10.0 << 20.0 << black << 35 << 9;
    QTest::newRow("unreadable smoothing is 0")
        << "<c smoothing=\"much\" smoothingSteps=\"\"/>" << 10.0 << 20.0 << black << 0 << 0;
    QTest::newRow("negative smoothing stays")
        << "<c smoothing=\"-1\" smoothingSteps=\"-2\"/>" << 10.0 << 20.0 << black << -1 << -2;
    QTest::newRow("smoothing is no child")
        << "<c><smoothing>35</smoothing></c>" << 10.0 << 20.0 << black << 100 << 1;
}

void tst_KelGPXTrackConfiguration::fromXml()
{
    QFETCH(QString, xml);
    QFETCH(double, lineWidth);
    QFETCH(double, haloWidth);
    QFETCH(QColor, lineColor);
    QFETCH(int, strength);
    QFETCH(int, steps);

    const KelGPXTrackConfiguration configuration = read(xml);
    QCOMPARE(configuration.lineWidth().value(), lineWidth);
    QCOMPARE(configuration.haloWidth().value(), haloWidth);
    QCOMPARE(configuration.lineColor(), lineColor);
    QCOMPARE(configuration.smoothingStrength(), strength);
    QCOMPARE(configuration.smoothingSteps(), steps);
}

void tst_KelGPXTrackConfiguration::missingFill_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QColor>("fill");

    QTest::newRow("missing: the line's with half the alpha")
        << "<c><color>#80ff0000</color></c>" << QColor(255, 0, 0, 64);
    QTest::newRow("present") << "<c><color>#80ff0000</color><fillcolor>#10203040</fillcolor></c>"
                             << QColor(0x20, 0x30, 0x40, 0x10);
    QTest::newRow("empty is black, not missing")
        << "<c><color>#80ff0000</color><fillcolor/></c>" << QColor(0, 0, 0, 255);
    QTest::newRow("missing beside an invisible line")
        << "<c><color>#00ff0000</color></c>" << QColor(255, 0, 0, 0);
}

void tst_KelGPXTrackConfiguration::missingFill()
{
    QFETCH(QString, xml);
    QFETCH(QColor, fill);

    QCOMPARE(read(xml).fillColor().rgba(), fill.rgba());
}

void tst_KelGPXTrackConfiguration::missingHalo_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<double>("halo");

    QTest::newRow("stroke only: twice the line")
        << "<c><pensize>7.5</pensize><displayOptions>stroke</displayOptions></c>" << 15.0;
    QTest::newRow("fill only: the line")
        << "<c><pensize>7.5</pensize><displayOptions>fill</displayOptions></c>" << 7.5;
    QTest::newRow("stroke and fill: the line")
        << "<c><pensize>7.5</pensize><displayOptions>stroke, fill</displayOptions></c>" << 7.5;
    QTest::newRow("no option: twice the line") << "<c><pensize>7.5</pensize><displayOptions/></c>" << 15.0;
    QTest::newRow("no options child is stroke: twice the line") << "<c><pensize>7.5</pensize></c>" << 15.0;
    QTest::newRow("no line width either: twice 10") << "<c/>" << 20.0;
    QTest::newRow("no line width, filled: 10") << "<c><displayOptions>fill</displayOptions></c>" << 10.0;
    QTest::newRow("present") << "<c><pensize>7.5</pensize><halosize>1.25</halosize></c>" << 1.25;
}

void tst_KelGPXTrackConfiguration::missingHalo()
{
    QFETCH(QString, xml);
    QFETCH(double, halo);

    QCOMPARE(read(xml).haloWidth().value(), halo);
}

void tst_KelGPXTrackConfiguration::deserializeWhatIsNoXml_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("null") << QString();
    QTest::newRow("empty") << "";
    QTest::newRow("no XML") << "orange, 10 pixels";
    QTest::newRow("broken off behind readable values") << "<config smoothing=\"5\"><pensize>3</pensize><color>";
    QTest::newRow("a second root") << "<config smoothing=\"5\"><pensize>3</pensize></config><config/>";
}

void tst_KelGPXTrackConfiguration::deserializeWhatIsNoXml()
{
    QFETCH(QString, text);

    compareWithAllMissing(KelGPXTrackConfiguration::deserialize(text));
}

void tst_KelGPXTrackConfiguration::deserializeAnyRoot()
{
    const auto configuration
        = KelGPXTrackConfiguration::deserialize(QStringLiteral("<other><pensize>3.5</pensize></other>"));
    QCOMPARE(configuration.lineWidth().value(), 3.5);
}

void tst_KelGPXTrackConfiguration::sameTextInEveryProcess()
{
    // The attributes' order would follow the random seed; each further process draws another one.
    const QByteArray expected = unusual().serialize().toUtf8();
    QVERIFY(!expected.isEmpty());
    QCOMPARE(serializedInProcessWithSeed(QStringLiteral("0")), expected);
    for (int i = 0; i < 8; ++i)
        QCOMPARE(serializedInProcessWithSeed(QString()), expected);
}

void tst_KelGPXTrackConfiguration::debugOutput()
{
    const auto written = [](const KelGPXTrackConfiguration &configuration) {
        QString text;
        QDebug(&text).nospace() << configuration << "|";
        return text;
    };
    QCOMPARE(written(KelGPXTrackConfiguration::defaultValue()),
             QStringLiteral("KelGPXTrackConfiguration -- #ff9100; 10.0 px; #fca404; 0.0 px; stroke; disk; auto|"));
    // Colours without their alpha, widths with one decimal.
    KelGPXTrackConfiguration configuration = unusual();
    configuration.setLineWidth(2.96);
    QCOMPARE(written(configuration),
             QStringLiteral(
                 "KelGPXTrackConfiguration -- #112233; 3.0 px; #556677; 7.0 px; stroke, fill; star9; polygon|"));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(QLatin1String(printSerialized))) {
        std::fputs(unusual().serialize().toUtf8().constData(), stdout);
        return 0;
    }
    tst_KelGPXTrackConfiguration test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_KelGPXTrackConfiguration.moc"

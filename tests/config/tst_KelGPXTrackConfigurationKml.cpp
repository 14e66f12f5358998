// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackConfiguration.h>
#include <KelTestSupport.h>

#include <QtTest>

namespace
{

KelGPXTrackConfiguration readStyle(const QString &content)
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<Style>%1</Style>").arg(content));
    return KelGPXTrackConfiguration::fromKml(document.documentElement());
}

} // namespace

/// KML styles; the other forms of a configuration are tested in tst_KelGPXTrackConfiguration.
class tst_KelGPXTrackConfigurationKml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void colors_data();
    void colors();
    void widths_data();
    void widths();
    void displayOptions_data();
    void displayOptions();
    void theRestIsFixed();
    void decodeColor_data();
    void decodeColor();
    void decodeWidth_data();
    void decodeWidth();
};

void tst_KelGPXTrackConfigurationKml::colors_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<QColor>("line");
    QTest::addColumn<QColor>("fill");

    const QColor black(0, 0, 0, 255);
    const QColor shade(0, 0, 0, 128);
    const auto style = [](const char *line, const char *poly) {
        return QStringLiteral("<LineStyle><color>%1</color></LineStyle><PolyStyle><color>%2</color></PolyStyle>")
            .arg(QLatin1String(line), QLatin1String(poly));
    };

    QTest::newRow("both visible: as they are, bytes from alpha to red")
        << style("ff0000ff", "40102030") << QColor(255, 0, 0, 255) << QColor(0x30, 0x20, 0x10, 0x40);
    QTest::newRow("barely visible is visible")
        << style("010000ff", "01ff0000") << QColor(255, 0, 0, 1) << QColor(0, 0, 255, 1);

    QTest::newRow("neither style") << "" << black << shade;
    QTest::newRow("both invisible") << style("000000ff", "00ff0000") << black << shade;
    QTest::newRow("both unreadable") << style("red", "blue-ish") << black << shade;
    QTest::newRow("both without a colour") << "<LineStyle/><PolyStyle/>" << black << shade;

    QTest::newRow("fill missing: half the line's alpha, rounded down")
        << "<LineStyle><color>ff112233</color></LineStyle>" << QColor(0x33, 0x22, 0x11, 255)
        << QColor(0x33, 0x22, 0x11, 127);
    QTest::newRow("fill invisible: half the line's alpha")
        << style("80112233", "00ffffff") << QColor(0x33, 0x22, 0x11, 128) << QColor(0x33, 0x22, 0x11, 64);
    QTest::newRow("fill invisible beside a line of alpha 1: stays invisible")
        << style("01112233", "00ffffff") << QColor(0x33, 0x22, 0x11, 1) << QColor(0x33, 0x22, 0x11, 0);

    QTest::newRow("line missing: twice the fill's alpha")
        << "<PolyStyle><color>40112233</color></PolyStyle>" << QColor(0x33, 0x22, 0x11, 0x80)
        << QColor(0x33, 0x22, 0x11, 0x40);
    QTest::newRow("line invisible: twice 127")
        << style("00ffffff", "7f112233") << QColor(0x33, 0x22, 0x11, 254) << QColor(0x33, 0x22, 0x11, 127);
    QTest::newRow("line invisible: twice 128 is limited to 255")
        << style("00ffffff", "80112233") << QColor(0x33, 0x22, 0x11, 255) << QColor(0x33, 0x22, 0x11, 128);
    QTest::newRow("line invisible: twice 255 is limited to 255")
        << style("00ffffff", "ff112233") << QColor(0x33, 0x22, 0x11, 255) << QColor(0x33, 0x22, 0x11, 255);
}

void tst_KelGPXTrackConfigurationKml::colors()
{
    QFETCH(QString, style);
    QFETCH(QColor, line);
    QFETCH(QColor, fill);

    const KelGPXTrackConfiguration configuration = readStyle(style);
    QCOMPARE(configuration.lineColor(), line);
    QCOMPARE(configuration.fillColor(), fill);
}

void tst_KelGPXTrackConfigurationKml::widths_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<double>("line");
    QTest::addColumn<double>("halo");

    QTest::newRow("2 is 12, the halo twice that") << "<LineStyle><width>2</width></LineStyle>" << 12.0 << 24.0;
    QTest::newRow("with a fill the halo is the line")
        << "<LineStyle><width>2</width></LineStyle><PolyStyle/>" << 12.0 << 12.0;
    QTest::newRow("decimals") << "<LineStyle><width>1.5</width></LineStyle>" << 9.0 << 18.0;
    QTest::newRow("0 is 7.7") << "<LineStyle><width>0</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("no width is 7.7") << "<LineStyle/>" << 7.7 << 15.4;
    QTest::newRow("unreadable is 7.7") << "<LineStyle><width>thin</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("negative is 7.7") << "<LineStyle><width>-3</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("0.0166 (0.0996) is below the limit")
        << "<LineStyle><width>0.0166</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("0.0167 (0.1002) is above the limit")
        << "<LineStyle><width>0.0167</width></LineStyle>" << 0.0167 * 6.0 << 0.0167 * 12.0;
    QTest::newRow("infinite is 7.7") << "<LineStyle><width>inf</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("not a number is 7.7") << "<LineStyle><width>nan</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("too great to be multiplied is 7.7")
        << "<LineStyle><width>1e308</width></LineStyle>" << 7.7 << 15.4;
    QTest::newRow("neither style") << "" << 7.7 << 15.4;
    QTest::newRow("only an area") << "<PolyStyle/>" << 7.7 << 7.7;
    QTest::newRow("a width in PolyStyle does not count") << "<PolyStyle><width>2</width></PolyStyle>" << 7.7 << 7.7;
}

void tst_KelGPXTrackConfigurationKml::widths()
{
    QFETCH(QString, style);
    QFETCH(double, line);
    QFETCH(double, halo);

    const KelGPXTrackConfiguration configuration = readStyle(style);
    QCOMPARE(configuration.lineWidth().value(), line);
    QCOMPARE(configuration.haloWidth().value(), halo);
}

void tst_KelGPXTrackConfigurationKml::displayOptions_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("options");

    QTest::newRow("neither: stroke") << "" << 1;
    QTest::newRow("line: stroke") << "<LineStyle/>" << 1;
    QTest::newRow("area: fill") << "<PolyStyle/>" << 2;
    QTest::newRow("both") << "<PolyStyle/><LineStyle/>" << 3;
    QTest::newRow("case counts") << "<linestyle/><polystyle/>" << 1;
    QTest::newRow("nested deeper is not seen") << "<other><PolyStyle/></other>" << 1;
}

void tst_KelGPXTrackConfigurationKml::displayOptions()
{
    QFETCH(QString, style);
    QFETCH(int, options);

    QCOMPARE(readStyle(style).currentDisplayOptions().toInt(), options);
}

void tst_KelGPXTrackConfigurationKml::theRestIsFixed()
{
    const KelGPXTrackConfiguration configuration
        = readStyle(QStringLiteral("<LineStyle/><PolyStyle/><markerShape>x</markerShape><trackShape>hop</trackShape>"
                                   "<penStyle>DashLine</penStyle>"));
    QCOMPARE(configuration.markerShape().toInt(), 1);
    QCOMPARE(configuration.trackShape().toInt(), 256);
    QCOMPARE(configuration.penStyle().value(), Qt::SolidLine);
    QCOMPARE(configuration.smoothingStrength(), 100);
    QCOMPARE(configuration.smoothingSteps(), 1);
}

void tst_KelGPXTrackConfigurationKml::decodeColor_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QColor>("color");

    QTest::newRow("alpha, blue, green, red") << "<color>80112233</color>" << QColor(0x33, 0x22, 0x11, 0x80);
    QTest::newRow("with a leading #") << "<color>#80112233</color>" << QColor(0x33, 0x22, 0x11, 0x80);
    QTest::newRow("capitals") << "<color>FFAABBCC</color>" << QColor(0xcc, 0xbb, 0xaa, 0xff);
    QTest::newRow("missing") << "" << QColor(0, 0, 0, 0);
    QTest::newRow("empty") << "<color/>" << QColor(0, 0, 0, 0);
    QTest::newRow("only #") << "<color>#</color>" << QColor(0, 0, 0, 0);
    QTest::newRow("a name becomes no colour") << "<color>red</color>" << QColor(0, 0, 0, 0);
    QTest::newRow("first child counts")
        << "<color>ff0000ff</color><color>ff00ff00</color>" << QColor(255, 0, 0, 255);
}

void tst_KelGPXTrackConfigurationKml::decodeColor()
{
    QFETCH(QString, content);
    QFETCH(QColor, color);

    const QDomDocument document = KelTestSupport::document(QStringLiteral("<LineStyle>%1</LineStyle>").arg(content));
    QDomElement element = document.documentElement();
    QCOMPARE(KelGPXTrackConfiguration::decodeColor(element), color);
}

void tst_KelGPXTrackConfigurationKml::decodeWidth_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<double>("width");

    QTest::newRow("number") << "<width>2.25</width>" << 2.25;
    QTest::newRow("missing") << "" << 0.0;
    QTest::newRow("empty") << "<width/>" << 0.0;
    QTest::newRow("unreadable") << "<width>wide</width>" << 0.0;
    QTest::newRow("infinite") << "<width>inf</width>" << 0.0;
}

void tst_KelGPXTrackConfigurationKml::decodeWidth()
{
    QFETCH(QString, content);
    QFETCH(double, width);

    const QDomDocument document = KelTestSupport::document(QStringLiteral("<LineStyle>%1</LineStyle>").arg(content));
    QDomElement element = document.documentElement();
    QCOMPARE(KelGPXTrackConfiguration::decodeWidth(element), width);
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackConfigurationKml)
#include "tst_KelGPXTrackConfigurationKml.moc"

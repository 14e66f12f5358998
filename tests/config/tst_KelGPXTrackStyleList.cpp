// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackStyle.h>
#include <KelGPXTrackStyleList.h>
#include <KelTestSupport.h>

#include <QtTest>

#include <type_traits>

namespace
{

KelGPXTrackConfiguration withSteps(int steps)
{
    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setSmoothingSteps(steps);
    return configuration;
}

} // namespace

/// The styles of a KML document; what one style element means is tested in tst_KelGPXTrackConfigurationKml.
class tst_KelGPXTrackStyleList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void styleHoldsItsValues();
    void styleFromKml_data();
    void styleFromKml();
    void lastAddedWins();
    void emptyListGivesTheDefault();
    void findStyling_data();
    void findStyling();
};

void tst_KelGPXTrackStyleList::styleHoldsItsValues()
{
    const KelGPXTrackStyle style(QStringLiteral("red"), withSteps(7));
    QCOMPARE(style.styleId(), QStringLiteral("red"));
    QVERIFY(style.styleValues() == withSteps(7));
    QVERIFY(std::has_virtual_destructor_v<KelGPXTrackStyle>);
    QVERIFY(std::has_virtual_destructor_v<KelGPXTrackStyleList>);
}

void tst_KelGPXTrackStyleList::styleFromKml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("styleId");
    QTest::addColumn<double>("lineWidth");

    QTest::newRow("with id") << "<Style id=\"road\"><LineStyle><width>3</width></LineStyle></Style>" << "road" << 18.0;
    QTest::newRow("without id") << "<Style><LineStyle><width>3</width></LineStyle></Style>" << "" << 18.0;
    QTest::newRow("ID is another attribute") << "<Style ID=\"road\"/>" << "" << 7.7;
    QTest::newRow("a # in the id stays") << "<Style id=\"#road\"/>" << "#road" << 7.7;
}

void tst_KelGPXTrackStyleList::styleFromKml()
{
    QFETCH(QString, xml);
    QFETCH(QString, styleId);
    QFETCH(double, lineWidth);

    const QDomDocument document = KelTestSupport::document(xml);
    const KelGPXTrackStyle style = KelGPXTrackStyle::fromKml(document.documentElement());
    QCOMPARE(style.styleId(), styleId);
    QCOMPARE(style.styleValues().lineWidth().value(), lineWidth);
}

void tst_KelGPXTrackStyleList::lastAddedWins()
{
    KelGPXTrackStyleList list;
    list.add(KelGPXTrackStyle(QStringLiteral("a"), withSteps(2)));
    list.add(KelGPXTrackStyle(QStringLiteral("b"), withSteps(3)));
    list.add(KelGPXTrackStyle(QStringLiteral("a"), withSteps(4)));
    QCOMPARE(list.findStyling(QStringLiteral("#a")).smoothingSteps(), 4);
    QCOMPARE(list.findStyling(QStringLiteral("#b")).smoothingSteps(), 3);
}

void tst_KelGPXTrackStyleList::emptyListGivesTheDefault()
{
    QVERIFY(KelGPXTrackStyleList().findStyling(QStringLiteral("#a")) == KelGPXTrackConfiguration::defaultValue());
    QVERIFY(KelGPXTrackStyleList().findStyling(QString()) == KelGPXTrackConfiguration::defaultValue());
}

void tst_KelGPXTrackStyleList::findStyling_data()
{
    QTest::addColumn<QString>("styleUrl");
    QTest::addColumn<double>("lineWidth");

    // The default's width is 10, that of a style without a width is 7.7.
    QTest::newRow("found") << "#road" << 6.0;
    QTest::newRow("of two with the same id the later") << "#twice" << 18.0;
    QTest::newRow("reference without #") << "road" << 10.0;
    QTest::newRow("case counts") << "#Road" << 10.0;
    QTest::newRow("blanks count") << " #road" << 10.0;
    QTest::newRow("unknown reference") << "#river" << 10.0;
    QTest::newRow("empty reference") << "" << 10.0;
    QTest::newRow("style without id is found under #") << "#" << 7.7;
    QTest::newRow("nested deeper is not read") << "#nested" << 10.0;
    QTest::newRow("style maps are not read") << "#map" << 10.0;
    QTest::newRow("other element names are not read") << "#small" << 10.0;
}

void tst_KelGPXTrackStyleList::findStyling()
{
    QFETCH(QString, styleUrl);
    QFETCH(double, lineWidth);

    const QDomDocument document = KelTestSupport::document(QStringLiteral(
        "<Document>"
        "<Style id=\"road\"><LineStyle><width>1</width></LineStyle></Style>"
        "<Style id=\"twice\"><LineStyle><width>2</width></LineStyle></Style>"
        "<StyleMap id=\"map\"><LineStyle><width>2</width></LineStyle></StyleMap>"
        "<Folder><Style id=\"nested\"><LineStyle><width>2</width></LineStyle></Style></Folder>"
        "<style id=\"small\"><LineStyle><width>2</width></LineStyle></style>"
        "<Style id=\"twice\"><LineStyle><width>3</width></LineStyle></Style>"
        "<Style/>"
        "</Document>"));
    const KelGPXTrackStyleList list = KelGPXTrackStyleList::fromKml(document.documentElement());
    QCOMPARE(list.findStyling(styleUrl).lineWidth().value(), lineWidth);
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackStyleList)
#include "tst_KelGPXTrackStyleList.moc"

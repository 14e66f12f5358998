// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXMarkerShape.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackShape.h>
#include <KelRecordingTranslator.h>
#include <KelTestSupport.h>

#include <QtTest>

namespace
{

const char *const pointTip = "Ein Punkt kann als verschiedene vorgefertigte Formen gezeichnet werden.";
const char *const lineTip = "Alle Punkte werden zu einer Strecke verbunden.";
const char *const polygonTip = "Alle Punkte werden als Außenlinie einer Fläche betrachtet.";
const char *const hopTip = "Die beiden Punkt werden als Fluglinie betrachtet.";
const char *const autoTip = "Die Form wird automatisch erkannt.";
const char *const unknownTip = "Wir wissen die Form nicht.";

template <typename T>
QList<int> numbers(const QList<T> &shapes)
{
    QList<int> values;
    for (const T &shape : shapes)
        values.append(shape.toInt());
    return values;
}

} // namespace

class tst_KelGPXTrackShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data();
    void keys();
    void decode_data();
    void decode();
    void fromXml_data();
    void fromXml();
    void toXmlAppends();
    void decodeKml_data();
    void decodeKml();
    void texts_data();
    void texts();
    void textsAreTranslated_data();
    void textsAreTranslated();
    void combinationsHaveNoText_data();
    void combinationsHaveNoText();
    void lists_data();
    void lists();
};

void tst_KelGPXTrackShape::keys_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");

    QTest::newRow("point") << 1 << "point";
    QTest::newRow("linestring") << 4 << "linestring";
    QTest::newRow("polygon") << 8 << "polygon";
    QTest::newRow("hop") << 2 << "hop";
    QTest::newRow("auto") << 256 << "auto";
}

void tst_KelGPXTrackShape::keys()
{
    QFETCH(int, value);
    QFETCH(QString, key);

    QCOMPARE(KelGPXTrackShape(key).toInt(), value);
    QCOMPARE(KelGPXTrackShape(value).encode(), key);
    QCOMPARE(KelGPXTrackShape(static_cast<KelGPXTrackShapeEnum>(value)).toInt(), value);
}

void tst_KelGPXTrackShape::decode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("empty") << "" << 0;
    QTest::newRow("unknown") << "unknown" << 0;
    QTest::newRow("no key") << "circle" << 0;
    QTest::newRow("KML's spelling") << "LineString" << 4;
    QTest::newRow("list") << "point ,AUTO" << 257;
}

void tst_KelGPXTrackShape::decode()
{
    QFETCH(QString, text);
    QFETCH(int, value);

    QCOMPARE(KelGPXTrackShape(text).toInt(), value);
}

void tst_KelGPXTrackShape::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("value");

    QTest::newRow("missing child is auto") << "<config/>" << 256;
    QTest::newRow("empty child is unknown") << "<config><trackShape/></config>" << 0;
    QTest::newRow("unknown word is unknown") << "<config><trackShape>spiral</trackShape></config>" << 0;
    QTest::newRow("key") << "<config><trackShape>hop</trackShape></config>" << 2;
    QTest::newRow("element of another name") << "<config><shape>hop</shape></config>" << 256;
}

void tst_KelGPXTrackShape::fromXml()
{
    QFETCH(QString, xml);
    QFETCH(int, value);

    const QDomDocument document = KelTestSupport::document(xml);
    KelGPXTrackShape shape(TrackShapePoint);
    shape.fromXml(document.documentElement());
    QCOMPARE(shape.toInt(), value);
}

void tst_KelGPXTrackShape::toXmlAppends()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<config><before/></config>"));
    QDomElement root = document.documentElement();
    KelGPXTrackShape(TrackShapePolygon).toXml(root);

    QCOMPARE(root.childNodes().count(), 2);
    QCOMPARE(root.lastChildElement().tagName(), QStringLiteral("trackShape"));
    QCOMPARE(root.lastChildElement().text(), QStringLiteral("polygon"));
}

void tst_KelGPXTrackShape::decodeKml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("value");

    QTest::newRow("nothing is auto") << "<Placemark><name>a</name></Placemark>" << 256;
    QTest::newRow("Polygon") << "<Placemark><Polygon/></Placemark>" << 8;
    QTest::newRow("LineString") << "<Placemark><LineString/></Placemark>" << 4;
    QTest::newRow("Point") << "<Placemark><Point/></Placemark>" << 1;
    QTest::newRow("shape by key") << "<Placemark><shape>Hop</shape></Placemark>" << 2;
    QTest::newRow("empty shape is unknown") << "<Placemark><shape/></Placemark>" << 0;
    QTest::newRow("Polygon before LineString, whatever the document's order")
        << "<Placemark><LineString/><Polygon/></Placemark>" << 8;
    QTest::newRow("LineString before Point") << "<Placemark><Point/><LineString/></Placemark>" << 4;
    QTest::newRow("Point before shape") << "<Placemark><shape>hop</shape><Point/></Placemark>" << 1;
    QTest::newRow("all four") << "<Placemark><shape>hop</shape><Point/><LineString/><Polygon/></Placemark>" << 8;
    QTest::newRow("inside a multi-geometry is not seen")
        << "<Placemark><MultiGeometry><Polygon/></MultiGeometry></Placemark>" << 256;
    QTest::newRow("case counts") << "<Placemark><polygon/></Placemark>" << 256;
}

void tst_KelGPXTrackShape::decodeKml()
{
    QFETCH(QString, xml);
    QFETCH(int, value);

    const QDomDocument document = KelTestSupport::document(xml);
    QCOMPARE(KelGPXTrackShape::decodeKml(document.documentElement()).toInt(), value);
}

void tst_KelGPXTrackShape::texts_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("marker");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("point") << 1 << 1 << "Punkt" << pointTip;
    QTest::newRow("point ignores the arrow") << 1 << 1024 << "Punkt" << pointTip;
    QTest::newRow("linestring") << 4 << 0 << "Strecke" << lineTip;
    QTest::newRow("linestring with another marker") << 4 << 1023 << "Strecke" << lineTip;
    QTest::newRow("linestring with arrow") << 4 << 1024 << "Pfeil" << lineTip;
    QTest::newRow("linestring with arrow and disk") << 4 << 1025 << "Pfeil" << lineTip;
    QTest::newRow("polygon") << 8 << 0 << "Fläche" << polygonTip;
    QTest::newRow("hop, its tool tip with the slip") << 2 << 0 << "Fluglinie" << hopTip;
    QTest::newRow("hop ignores the arrow") << 2 << 1024 << "Fluglinie" << hopTip;
    QTest::newRow("auto") << 256 << 0 << "Automatisch erkannt" << autoTip;
    QTest::newRow("unknown") << 0 << 0 << "unbekannt" << unknownTip;
}

void tst_KelGPXTrackShape::texts()
{
    QFETCH(int, value);
    QFETCH(int, marker);
    QFETCH(QString, name);
    QFETCH(QString, toolTip);

    QCOMPARE(KelGPXTrackShape(value).humanReadable(KelGPXMarkerShape(marker)), name);
    QCOMPARE(KelGPXTrackShape(value).toolTip(), toolTip);
}

void tst_KelGPXTrackShape::textsAreTranslated_data()
{
    texts_data();
}

void tst_KelGPXTrackShape::textsAreTranslated()
{
    QFETCH(int, value);
    QFETCH(int, marker);
    QFETCH(QString, name);
    QFETCH(QString, toolTip);

    KelRecordingTranslator translator;
    translator.setTranslation(name, QStringLiteral("translated name"));
    translator.setTranslation(toolTip, QStringLiteral("translated tool tip"));
    QCOMPARE(KelGPXTrackShape(value).humanReadable(KelGPXMarkerShape(marker)), QStringLiteral("translated name"));
    QCOMPARE(KelGPXTrackShape(value).toolTip(), QStringLiteral("translated tool tip"));

    const QString context = QStringLiteral("KelGPXTrackShape");
    const QList<KelRecordingTranslator::Entry> asked{{context, name, QString()}, {context, toolTip, QString()}};
    QCOMPARE(translator.entries(), asked);
}

void tst_KelGPXTrackShape::combinationsHaveNoText_data()
{
    QTest::addColumn<int>("value");

    for (const int value : {3, 5, 6, 7, 9, 12, 16, 128, 255, 257, 260, 512, -1})
        QTest::addRow("%d", value) << value;
}

void tst_KelGPXTrackShape::combinationsHaveNoText()
{
    QFETCH(int, value);

    QCOMPARE(KelGPXTrackShape(value).humanReadable(MarkerArrow), QString());
    QCOMPARE(KelGPXTrackShape(value).toolTip(), QString());
}

void tst_KelGPXTrackShape::lists_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QList<int>>("possibleShapes");
    QTest::addColumn<QList<int>>("markers");
    QTest::addColumn<int>("availableOptions");

    const QList<int> noMarker{0};
    QTest::newRow("point") << 1 << QList<int>{1} << QList<int>{1, 2, 128, 256, 512, 8, 16, 32, 64} << 7;
    QTest::newRow("hop") << 2 << QList<int>{2} << noMarker << 5;
    QTest::newRow("linestring, polygon offered first") << 4 << QList<int>{8, 4} << QList<int>{0, 1024} << 1;
    QTest::newRow("polygon, point offered first") << 8 << QList<int>{1, 8} << noMarker << 3;
    QTest::newRow("auto") << 256 << QList<int>{} << noMarker << 0;
    QTest::newRow("unknown") << 0 << QList<int>{} << noMarker << 0;
    QTest::newRow("combination of point and hop") << 3 << QList<int>{} << noMarker << 0;
    QTest::newRow("combination of linestring and auto") << 260 << QList<int>{} << noMarker << 0;
}

void tst_KelGPXTrackShape::lists()
{
    QFETCH(int, value);
    QFETCH(QList<int>, possibleShapes);
    QFETCH(QList<int>, markers);
    QFETCH(int, availableOptions);

    const KelGPXTrackShape shape(value);
    QCOMPARE(numbers(shape.possibleShapes()), possibleShapes);
    QCOMPARE(numbers(shape.createMarkerShapes()), markers);
    QCOMPARE(shape.availableDisplayOptions().toInt(), availableOptions);
    QCOMPARE(shape.defaultDisplayOptions().toInt(), 1);
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackShape)
#include "tst_KelGPXTrackShape.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackDisplayOptions.h>
#include <KelTestSupport.h>

#include <QtTest>

class tst_KelGPXTrackDisplayOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructors();
    void decode_data();
    void decode();
    void encode_data();
    void encode();
    void extraOptionIsLostWhenWritten();
    void fromXml_data();
    void fromXml();
    void writeAppends();
};

void tst_KelGPXTrackDisplayOptions::constructors()
{
    QCOMPARE(KelGPXTrackDisplayOptions().toInt(), 0);
    QCOMPARE(KelGPXTrackDisplayOptions(DisplayStroke).toInt(), 1);
    QCOMPARE(KelGPXTrackDisplayOptions(DisplayFill).toInt(), 2);
    QCOMPARE(KelGPXTrackDisplayOptions(DisplayExtra).toInt(), 4);
    QCOMPARE(KelGPXTrackDisplayOptions(DisplayStroke | DisplayExtra).toInt(), 5);
}

void tst_KelGPXTrackDisplayOptions::decode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("empty") << "" << 0;
    QTest::newRow("stroke") << "stroke" << 1;
    QTest::newRow("fill") << "fill" << 2;
    QTest::newRow("both, reversed, without a blank") << "fill,stroke" << 3;
    QTest::newRow("capitals") << "Stroke, FILL" << 3;
    QTest::newRow("empty entry at the end") << "stroke, fill, " << 3;
    QTest::newRow("no word for the third bit") << "extra" << 0;
    QTest::newRow("numbers are no keys") << "4" << 0;
}

void tst_KelGPXTrackDisplayOptions::decode()
{
    QFETCH(QString, text);
    QFETCH(int, value);

    QCOMPARE(KelGPXTrackDisplayOptions(text).toInt(), value);
}

void tst_KelGPXTrackDisplayOptions::encode_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << 0 << "";
    QTest::newRow("stroke") << 1 << "stroke";
    QTest::newRow("fill") << 2 << "fill";
    QTest::newRow("stroke and fill") << 3 << "stroke, fill";
    QTest::newRow("the third bit alone") << 4 << "";
    QTest::newRow("stroke and the third bit") << 5 << "stroke, ";
    QTest::newRow("all three") << 7 << "stroke, fill, ";
}

void tst_KelGPXTrackDisplayOptions::encode()
{
    QFETCH(int, value);
    QFETCH(QString, text);

    QCOMPARE(KelGPXTrackDisplayOptions(value).encode(), text);
}

void tst_KelGPXTrackDisplayOptions::extraOptionIsLostWhenWritten()
{
    QCOMPARE(KelGPXTrackDisplayOptions(KelGPXTrackDisplayOptions(7).encode()).toInt(), 3);
}

void tst_KelGPXTrackDisplayOptions::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("value");

    QTest::newRow("missing child is stroke") << "<config/>" << 1;
    QTest::newRow("empty child is nothing") << "<config><displayOptions></displayOptions></config>" << 0;
    QTest::newRow("unknown word is nothing") << "<config><displayOptions>halo</displayOptions></config>" << 0;
    QTest::newRow("fill") << "<config><displayOptions>fill</displayOptions></config>" << 2;
    QTest::newRow("both") << "<config><displayOptions>stroke, fill</displayOptions></config>" << 3;
}

void tst_KelGPXTrackDisplayOptions::fromXml()
{
    QFETCH(QString, xml);
    QFETCH(int, value);

    const QDomDocument document = KelTestSupport::document(xml);
    KelGPXTrackDisplayOptions options(DisplayExtra);
    options.fromXml(document.documentElement());
    QCOMPARE(options.toInt(), value);
}

void tst_KelGPXTrackDisplayOptions::writeAppends()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<config><before/></config>"));
    QDomElement root = document.documentElement();
    KelGPXTrackDisplayOptions(3).write(root);

    QCOMPARE(root.childNodes().count(), 2);
    QCOMPARE(root.lastChildElement().tagName(), QStringLiteral("displayOptions"));
    QCOMPARE(root.lastChildElement().text(), QStringLiteral("stroke, fill"));
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackDisplayOptions)
#include "tst_KelGPXTrackDisplayOptions.moc"

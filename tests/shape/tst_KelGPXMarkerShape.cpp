// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXMarkerShape.h>
#include <KelTestSupport.h>

#include <QtTest>

/// Values, keys, XML and lists of markers. How they are drawn is tested in tst_KelGPXMarkerDrawing.
class tst_KelGPXMarkerShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstUseFromManyThreads();
    void defaultIsUnknown();
    void keys_data();
    void keys();
    void decode_data();
    void decode();
    void encode_data();
    void encode();
    void fromXml_data();
    void fromXml();
    void toXmlAppends();
    void allPointShapesInOrder();
    void allLineStringShapesInOrder();
    void listsAreCopies();
};

void tst_KelGPXMarkerShape::defaultIsUnknown()
{
    const KelGPXMarkerShape marker;
    QCOMPARE(marker.toInt(), 0);
    QVERIFY(!marker.isValid());
    QVERIFY(marker == MarkerUnknown);
}

void tst_KelGPXMarkerShape::keys_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");

    QTest::newRow("disk") << 1 << "disk";
    QTest::newRow("rect") << 32 << "rect";
    QTest::newRow("circle") << 2 << "circle";
    QTest::newRow("x") << 8 << "x";
    QTest::newRow("block") << 16 << "block";
    QTest::newRow("rhombus") << 64 << "rhombus";
    QTest::newRow("star6") << 128 << "star6";
    QTest::newRow("star9") << 256 << "star9";
    QTest::newRow("star12") << 512 << "star12";
    QTest::newRow("arrow") << 1024 << "arrow";
}

void tst_KelGPXMarkerShape::keys()
{
    QFETCH(int, value);
    QFETCH(QString, key);

    QCOMPARE(KelGPXMarkerShape(key).toInt(), value);
    QCOMPARE(KelGPXMarkerShape(value).encode(), key);
    QCOMPARE(KelGPXMarkerShape(static_cast<KelGPXMarkerShapeEnum>(value)).toInt(), value);
}

void tst_KelGPXMarkerShape::decode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("null text") << QString() << 0;
    QTest::newRow("empty text") << "" << 0;
    QTest::newRow("unknown, the key of 0") << "unknown" << 0;
    QTest::newRow("capitals and blanks") << "  DISK  , STAR6" << 129;
    QTest::newRow("list without blanks") << "disk,star6" << 129;
    QTest::newRow("a word that is no key") << "hexagon" << 0;
    QTest::newRow("unknown words beside a key are ignored") << "hexagon, rhombus, ?" << 64;
    QTest::newRow("empty entries are ignored") << ",,x,," << 8;
    QTest::newRow("line breaks around a key") << "\n\tarrow\n" << 1024;
    QTest::newRow("the same key twice") << "disk, disk" << 1;
    QTest::newRow("no other separator than the comma") << "disk;star6" << 0;
    QTest::newRow("no blank inside a key") << "star 6" << 0;
}

void tst_KelGPXMarkerShape::decode()
{
    QFETCH(QString, text);
    QFETCH(int, value);

    QCOMPARE(KelGPXMarkerShape(text).toInt(), value);
}

void tst_KelGPXMarkerShape::encode_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("0 has a key for reading but is written empty") << 0 << "";
    QTest::newRow("lowest bit first") << 129 << "disk, star6";
    QTest::newRow("bit 4 has no key") << 4 << "";
    QTest::newRow("bit 4 between others leaves an empty entry") << 13 << "disk, , x";
    QTest::newRow("all point markers") << 0x3fb << "disk, circle, x, block, rect, rhombus, star6, star9, star12";
    QTest::newRow("negative") << -1 << "";
}

void tst_KelGPXMarkerShape::encode()
{
    QFETCH(int, value);
    QFETCH(QString, text);

    QCOMPARE(KelGPXMarkerShape(value).encode(), text);
}

void tst_KelGPXMarkerShape::fromXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("value");

    QTest::newRow("missing child is disk") << "<config/>" << 1;
    QTest::newRow("empty child is unknown") << "<config><markerShape/></config>" << 0;
    QTest::newRow("unknown word is unknown") << "<config><markerShape>hexagon</markerShape></config>" << 0;
    QTest::newRow("key") << "<config><markerShape>star9</markerShape></config>" << 256;
    QTest::newRow("list") << "<config><markerShape> Arrow, DISK</markerShape></config>" << 1025;
    QTest::newRow("first child counts")
        << "<config><markerShape>x</markerShape><markerShape>disk</markerShape></config>" << 8;
    QTest::newRow("other case is another element") << "<config><markershape>x</markershape></config>" << 1;
    QTest::newRow("nested deeper is not seen") << "<config><a><markerShape>x</markerShape></a></config>" << 1;
}

void tst_KelGPXMarkerShape::fromXml()
{
    QFETCH(QString, xml);
    QFETCH(int, value);

    const QDomDocument document = KelTestSupport::document(xml);
    KelGPXMarkerShape marker(MarkerRhombus);
    marker.fromXml(document.documentElement());
    QCOMPARE(marker.toInt(), value);
}

void tst_KelGPXMarkerShape::toXmlAppends()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<config><before/></config>"));
    QDomElement root = document.documentElement();
    KelGPXMarkerShape(129).toXml(root);
    KelGPXMarkerShape().toXml(root);

    QCOMPARE(root.childNodes().count(), 3);
    QCOMPARE(root.childNodes().at(1).toElement().tagName(), QStringLiteral("markerShape"));
    QCOMPARE(root.childNodes().at(1).toElement().text(), QStringLiteral("disk, star6"));
    QCOMPARE(root.childNodes().at(2).toElement().tagName(), QStringLiteral("markerShape"));
    QCOMPARE(root.childNodes().at(2).toElement().text(), QString(QLatin1String("")));
}

void tst_KelGPXMarkerShape::allPointShapesInOrder()
{
    QList<int> values;
    for (const KelGPXMarkerShape &marker : KelGPXMarkerShape::allPointShapes())
        values.append(marker.toInt());
    QCOMPARE(values, QList<int>({1, 2, 128, 256, 512, 8, 16, 32, 64}));
}

void tst_KelGPXMarkerShape::allLineStringShapesInOrder()
{
    QList<int> values;
    for (const KelGPXMarkerShape &marker : KelGPXMarkerShape::allLineStringShapes())
        values.append(marker.toInt());
    QCOMPARE(values, QList<int>({0, 1024}));
}

void tst_KelGPXMarkerShape::listsAreCopies()
{
    QList<KelGPXMarkerShape> shapes = KelGPXMarkerShape::allPointShapes();
    shapes.first() = KelGPXMarkerShape(MarkerArrow);
    shapes.removeLast();
    QCOMPARE(KelGPXMarkerShape::allPointShapes().size(), 9);
    QCOMPARE(KelGPXMarkerShape::allPointShapes().first().toInt(), 1);
}

void tst_KelGPXMarkerShape::firstUseFromManyThreads()
{
    // Runs before the other tests: nobody has asked for the key table or the list of shapes yet.
    QList<QThread *> threads;
    QAtomicInt wrong;
    for (int i = 0; i < 8; ++i) {
        threads.append(QThread::create([&wrong] {
            for (int round = 0; round < 200; ++round) {
                if (KelGPXMarkerShape(QStringLiteral("Star12, x")).encode() != QLatin1String("x, star12"))
                    wrong.ref();
                if (KelGPXMarkerShape::allPointShapes().size() != 9)
                    wrong.ref();
            }
        }));
        threads.last()->start();
    }
    for (QThread *thread : threads) {
        thread->wait();
        delete thread;
    }
    QCOMPARE(wrong.loadRelaxed(), 0);
}

QTEST_GUILESS_MAIN(tst_KelGPXMarkerShape)
#include "tst_KelGPXMarkerShape.moc"

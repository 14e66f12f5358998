// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXFullShape.h>

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QtTest>

#include <type_traits>

class tst_KelGPXFullShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultIsUnknownWithoutMarker();
    void accessors();
    void equality_data();
    void equality();
    void texts_data();
    void texts();
    void icon();
    void normalize_data();
    void normalize();
    void offeredMarkersAreKept();
};

void tst_KelGPXFullShape::defaultIsUnknownWithoutMarker()
{
    const KelGPXFullShape shape;
    QCOMPARE(shape.trackShape().toInt(), 0);
    QCOMPARE(shape.markerShape().toInt(), 0);
    QVERIFY(std::has_virtual_destructor_v<KelGPXFullShape>);
}

void tst_KelGPXFullShape::accessors()
{
    KelGPXFullShape shape(TrackShapeLineString, MarkerArrow);
    QCOMPARE(shape.trackShape().toInt(), 4);
    QCOMPARE(shape.markerShape().toInt(), 1024);

    shape.setTrackShape(TrackShapePoint);
    QCOMPARE(shape.trackShape().toInt(), 1);
    QCOMPARE(shape.markerShape().toInt(), 1024);

    shape.setMarkerShape(MarkerStar9);
    QCOMPARE(shape.trackShape().toInt(), 1);
    QCOMPARE(shape.markerShape().toInt(), 256);
}

void tst_KelGPXFullShape::equality_data()
{
    QTest::addColumn<int>("trackShape");
    QTest::addColumn<int>("markerShape");
    QTest::addColumn<bool>("equal");

    QTest::newRow("both equal") << 1 << 8 << true;
    QTest::newRow("other track shape") << 4 << 8 << false;
    QTest::newRow("other marker") << 1 << 16 << false;
    QTest::newRow("marker with one more bit") << 1 << 9 << false;
}

void tst_KelGPXFullShape::equality()
{
    QFETCH(int, trackShape);
    QFETCH(int, markerShape);
    QFETCH(bool, equal);

    const KelGPXFullShape point(TrackShapePoint, MarkerX);
    const KelGPXFullShape other{KelGPXTrackShape(trackShape), KelGPXMarkerShape(markerShape)};
    QCOMPARE(point == other, equal);
    QCOMPARE(other == point, equal);
    QCOMPARE(point != other, !equal);
}

void tst_KelGPXFullShape::texts_data()
{
    QTest::addColumn<int>("trackShape");
    QTest::addColumn<int>("markerShape");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("toolTip");

    QTest::newRow("line") << 4 << 0 << "Strecke" << "Alle Punkte werden zu einer Strecke verbunden.";
    QTest::newRow("arrow") << 4 << 1024 << "Pfeil" << "Alle Punkte werden zu einer Strecke verbunden.";
    QTest::newRow("point") << 1 << 64 << "Punkt"
                           << "Ein Punkt kann als verschiedene vorgefertigte Formen gezeichnet werden.";
    QTest::newRow("combination") << 5 << 0 << "" << "";
}

void tst_KelGPXFullShape::texts()
{
    QFETCH(int, trackShape);
    QFETCH(int, markerShape);
    QFETCH(QString, description);
    QFETCH(QString, toolTip);

    const KelGPXFullShape shape{KelGPXTrackShape(trackShape), KelGPXMarkerShape(markerShape)};
    QCOMPARE(shape.describe(), description);
    QCOMPARE(shape.toolTip(), toolTip);
}

void tst_KelGPXFullShape::icon()
{
    QVERIFY(KelGPXFullShape().createIcon(Qt::red, Qt::blue).isNull());
    QVERIFY(KelGPXFullShape(TrackShapeLineString, MarkerArrow).createIcon(Qt::red, Qt::blue).isNull());

    const QIcon icon = KelGPXFullShape(TrackShapePoint, MarkerBlock).createIcon(Qt::red, Qt::blue);
    QVERIFY(!icon.isNull());
    const QImage image = icon.pixmap(QSize(32, 32)).toImage();
    QCOMPARE(image.size(), QSize(32, 32));
    // The block reaches from 6 to 26; its pen of width 5 lies on the border.
    QCOMPARE(image.pixelColor(16, 16), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(6, 16), QColor(Qt::red));
    QCOMPARE(image.pixelColor(1, 16).alpha(), 0);
}

void tst_KelGPXFullShape::normalize_data()
{
    QTest::addColumn<int>("trackShape");
    QTest::addColumn<int>("markerShape");
    QTest::addColumn<int>("normalized");

    QTest::newRow("point loses the arrow, keeps the disk") << 1 << (1024 | 1) << 1;
    QTest::newRow("point with the arrow only") << 1 << 1024 << 0;
    QTest::newRow("point loses the bit of no marker") << 1 << (4 | 8) << 8;
    QTest::newRow("point keeps all its markers") << 1 << 0x7ff << 0x3fb;
    QTest::newRow("point drops what lies above the arrow") << 1 << 0x801 << 1;
    QTest::newRow("line with disk") << 4 << 1 << 0;
    QTest::newRow("line keeps the arrow") << 4 << 1024 << 1024;
    QTest::newRow("line with arrow and disk") << 4 << 1025 << 1024;
    QTest::newRow("polygon has no marker") << 8 << 0x7ff << 0;
    QTest::newRow("hop has no marker") << 2 << 0x7ff << 0;
    QTest::newRow("auto has no marker") << 256 << 0x7ff << 0;
    QTest::newRow("unknown has no marker") << 0 << 0x7ff << 0;
    QTest::newRow("combination of point and line has no marker") << 5 << 0x7ff << 0;
}

void tst_KelGPXFullShape::normalize()
{
    QFETCH(int, trackShape);
    QFETCH(int, markerShape);
    QFETCH(int, normalized);

    const KelGPXFullShape shape{KelGPXTrackShape(trackShape), KelGPXMarkerShape(markerShape)};
    const KelGPXFullShape copy = shape.normalized();
    QCOMPARE(copy.markerShape().toInt(), normalized);
    QCOMPARE(copy.trackShape().toInt(), trackShape);
    QCOMPARE(shape.markerShape().toInt(), markerShape);

    KelGPXFullShape changed = shape;
    changed.normalize();
    QVERIFY(changed == copy);
}

/// What a user may choose must survive being chosen.
void tst_KelGPXFullShape::offeredMarkersAreKept()
{
    for (const KelGPXTrackShapeEnum form : {TrackShapePoint, TrackShapeHop, TrackShapeLineString, TrackShapePolygon}) {
        for (const KelGPXMarkerShape &marker : KelGPXTrackShape(form).createMarkerShapes())
            QCOMPARE(KelGPXFullShape(form, marker).normalized().markerShape().toInt(), marker.toInt());
    }
}

QTEST_MAIN(tst_KelGPXFullShape)
#include "tst_KelGPXFullShape.moc"

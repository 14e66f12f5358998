// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>
#include <KelMapViewport.h>

#include <QTest>

#include <cmath>

namespace
{

KelGeoPositionRect area(double south, double west, double north, double east)
{
    return {KelGeoPosition(south, west), KelGeoPosition(north, east)};
}

bool isNear(const QPointF &a, const QPointF &b, double tolerance = 1e-6)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

} // namespace

class tst_KelViewerViewport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeWorldAtFirst()
    {
        const KelMapViewport viewport(QSize(800, 600));
        QCOMPARE(viewport.worldSize(), 600.0);
        QVERIFY(isNear(viewport.worldOrigin(), QPointF(100, 0)));
        QVERIFY(isNear(viewport.project(KelGeoPosition(0.0, 90.0)), QPointF(550, 300)));
    }

    void projectsThereAndBack_data()
    {
        QTest::addColumn<double>("latitude");
        QTest::addColumn<double>("longitude");
        QTest::newRow("Oldenburg") << 53.14 << 8.21;
        QTest::newRow("south and west") << -33.4 << -70.6;
        QTest::newRow("just west of the date line") << 12.0 << 179.9;
        QTest::newRow("just east of it") << 12.0 << -179.9;
        QTest::newRow("far north") << 84.0 << 20.0;
    }

    void projectsThereAndBack()
    {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        KelMapViewport viewport(QSize(640, 480));
        viewport.zoomAt(QPointF(100, 50), 37.5);
        viewport.pan(QPointF(-333.25, 77.5));
        const KelGeoPosition back = viewport.unproject(viewport.project(KelGeoPosition(latitude, longitude)));
        QVERIFY(std::abs(back.latitude().decimalDegrees() - latitude) < 1e-9);
        QVERIFY(std::abs(back.longitude().decimalDegrees() - longitude) < 1e-9);
    }

    void positionsBesideTheWorldAreThoseOfItsCopies()
    {
        const KelMapViewport viewport(QSize(800, 600));
        // 100 pixels of 600 are 60 degrees, beyond the date line to the west.
        QVERIFY(std::abs(viewport.unproject(QPointF(0, 300)).longitude().decimalDegrees() - 120.0) < 1e-9);
        QVERIFY(std::abs(viewport.unproject(QPointF(800, 300)).longitude().decimalDegrees() + 120.0) < 1e-9);
    }

    void panningFollowsTheHand()
    {
        KelMapViewport viewport(QSize(800, 600));
        viewport.zoomAt(QPointF(400, 300), 4);
        const KelGeoPosition grabbed = viewport.unproject(QPointF(200, 200));
        viewport.pan(QPointF(55, -20));
        QVERIFY(isNear(viewport.project(grabbed), QPointF(255, 180)));
    }

    void panningRoundTheWorldComesBack()
    {
        KelMapViewport viewport(QSize(800, 600));
        const QPointF before = viewport.project(KelGeoPosition(10.0, 20.0));
        for (int i = 0; i < 6; ++i)
            viewport.pan(QPointF(100, 0));
        QVERIFY(isNear(viewport.project(KelGeoPosition(10.0, 20.0)), before, 1e-6));
    }

    void panningEndsAtThePoles()
    {
        KelMapViewport viewport(QSize(800, 600));
        viewport.pan(QPointF(0, 5000));
        // The northern edge of the map may come to the middle, not further.
        QVERIFY(isNear(viewport.worldOrigin(), QPointF(100, 300)));
    }

    void zoomingKeepsWhatLiesUnderTheMouse()
    {
        KelMapViewport viewport(QSize(800, 600));
        const QPointF mouse(123, 456);
        const KelGeoPosition under = viewport.unproject(mouse);
        viewport.zoomAt(mouse, 3.7);
        QVERIFY(isNear(viewport.project(under), mouse));
        QCOMPARE(viewport.worldSize(), 600 * 3.7);
    }

    void zoomingHasLimits()
    {
        KelMapViewport viewport(QSize(800, 600));
        for (int i = 0; i < 100; ++i)
            viewport.zoomAt(QPointF(400, 300), 0.5);
        QCOMPARE(viewport.worldSize(), 128.0);
        for (int i = 0; i < 100; ++i)
            viewport.zoomAt(QPointF(400, 300), 2.0);
        QCOMPARE(viewport.worldSize(), 1073741824.0);
    }

    void fitsAreas_data()
    {
        QTest::addColumn<KelGeoPositionRect>("shown");
        QTest::newRow("wide") << area(52.0, 5.0, 53.0, 15.0);
        QTest::newRow("tall") << area(40.0, 8.0, 60.0, 9.0);
        QTest::newRow("across the date line") << area(-40.0, 170.0, -10.0, -170.0);
        QTest::newRow("beyond the map's north") << area(70.0, 0.0, 89.9, 10.0);
    }

    void fitsAreas()
    {
        QFETCH(KelGeoPositionRect, shown);
        KelMapViewport viewport(QSize(800, 600));
        viewport.fit(shown, 0.1);
        QPointF southWest = viewport.project(KelGeoPosition(shown.south(), shown.west()));
        QPointF northEast = viewport.project(KelGeoPosition(shown.north(), shown.east()));
        // Across the date line one of the two corners lies on the next copy of the world.
        if (southWest.x() > northEast.x() && southWest.x() > 800)
            southWest.rx() -= viewport.worldSize();
        else if (southWest.x() > northEast.x())
            northEast.rx() += viewport.worldSize();
        QVERIFY(southWest.x() >= 80 - 1e-6);
        QVERIFY(northEast.x() <= 720 + 1e-6);
        QVERIFY(southWest.y() <= 540 + 1e-6);
        if (shown.north().decimalDegrees() < 85)
            QVERIFY(northEast.y() >= 60 - 1e-6);
        // As large as possible: one of the two directions is filled.
        const bool fillsWidth = std::abs(northEast.x() - southWest.x() - 640) < 1e-6;
        const bool fillsHeight = southWest.y() > 540 - 1e-6;
        QVERIFY(fillsWidth || fillsHeight);
    }

    void fitsASinglePlaceWithItsSurroundings()
    {
        KelMapViewport viewport(QSize(800, 600));
        viewport.fit(area(53.14, 8.21, 53.14, 8.21), 0.1);
        QVERIFY(isNear(viewport.project(KelGeoPosition(53.14, 8.21)), QPointF(400, 300)));
        QCOMPARE(viewport.worldSize(), 256.0 * 512.0);
    }

    void fitsTheWorldWithoutAnArea()
    {
        KelMapViewport viewport(QSize(800, 600));
        viewport.zoomAt(QPointF(1, 1), 50);
        viewport.fit(KelGeoPositionRect(), 0.1);
        QVERIFY(viewport == KelMapViewport(QSize(800, 600)));
    }

    void resizingKeepsTheMiddle()
    {
        KelMapViewport viewport(QSize(800, 600));
        viewport.fit(area(52.0, 5.0, 53.0, 15.0), 0.1);
        const KelGeoPosition middle = viewport.unproject(QPointF(400, 300));
        const double scale = viewport.worldSize();
        viewport.setSize(QSize(300, 900));
        QVERIFY(isNear(viewport.project(middle), QPointF(150, 450)));
        QCOMPARE(viewport.worldSize(), scale);
    }

    void densityMultipliesEveryLength()
    {
        KelMapViewport viewport(QSize(800, 600));
        viewport.fit(area(52.0, 5.0, 53.0, 15.0), 0.1);
        const KelMapViewport dense = viewport.scaled(2.0);
        QCOMPARE(dense.size(), QSize(1600, 1200));
        const KelGeoPosition place(52.3, 7.7);
        QVERIFY(isNear(dense.project(place), viewport.project(place) * 2.0));
        QVERIFY(std::abs(dense.pixelsPerKilometre() - 2 * viewport.pixelsPerKilometre()) < 1e-9);
    }

    void kilometresHaveTheLengthOfTheirLatitude()
    {
        KelMapViewport viewport(QSize(400, 400));
        // The equator: 400 pixels for the earth's circumference at a radius of 6370 km.
        QVERIFY(std::abs(viewport.pixelsPerKilometre() - 400 / 40023.89) < 1e-6);
        viewport.fit(area(60.0, 10.0, 60.0, 10.0), 0.1);
        QVERIFY(std::abs(viewport.pixelsPerKilometre() * 40023.89 / viewport.worldSize() - 2.0) < 1e-4);
    }

    void olderPicturesFindTheirPlace()
    {
        KelMapViewport older(QSize(800, 600));
        older.fit(area(52.0, 5.0, 53.0, 15.0), 0.1);
        KelMapViewport newer = older;
        newer.zoomAt(QPointF(200, 100), 1.7);
        newer.pan(QPointF(31, -12));
        const KelGeoPosition place(52.3, 7.7);
        QVERIFY(isNear(newer.transformFrom(older).map(older.project(place)), newer.project(place), 1e-6));
    }

    void olderPicturesGoTheShortWayRoundTheWorld()
    {
        KelMapViewport older(QSize(800, 600));
        older.zoomAt(QPointF(400, 300), 10);
        // From 1 degree west of the date line to 1 degree east of it.
        older.pan(QPointF(-older.worldSize() * 179 / 360, 0));
        KelMapViewport newer = older;
        newer.pan(QPointF(-newer.worldSize() * 2 / 360, 0));
        const double moved = newer.transformFrom(older).map(QPointF(400, 300)).x() - 400;
        QVERIFY(std::abs(moved + newer.worldSize() * 2 / 360) < 1e-6);
    }
};

QTEST_GUILESS_MAIN(tst_KelViewerViewport)
#include "tst_KelViewerViewport.moc"

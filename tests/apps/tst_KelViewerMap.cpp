// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackPoint.h>
#include <KelGPXTrackSegment.h>
#include <KelGPXTrackSelection.h>
#include <KelGeoPosition.h>
#include <KelGeoPositionRect.h>
#include <KelMapView.h>
#include <KelMapWorker.h>
#include <KelPictureBackground.h>
#include <KelTemporarySettings.h>
#include <KelTestTracks.h>
#include <KelWorldBackground.h>

#include <QPainter>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QWheelEvent>

#include <atomic>
#include <memory>

namespace
{

/// A map that waits until it may be painted, and remembers in which thread that was.
class HeldBackground : public KelMapBackground
{
public:
    void paint(QPainter &painter, const KelMapViewport &viewport, double) const override
    {
        m_inGuiThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        ++m_begun;
        m_permits.acquire();
        painter.fillRect(QRect(QPoint(0, 0), viewport.size()), Qt::green);
    }
    [[nodiscard]] QString credit() const override { return {}; }
    [[nodiscard]] QColor baseColor() const override { return Qt::white; }

    mutable QSemaphore m_permits;
    mutable std::atomic<int> m_begun{0};
    mutable std::atomic<bool> m_inGuiThread{true};
};

KelViewPicture picture(const std::shared_ptr<const KelMapBackground> &background, int width)
{
    KelViewPicture result;
    result.viewport = KelMapViewport(QSize(width, 50));
    result.background = background;
    return result;
}

std::shared_ptr<const KelMapBackground> world()
{
    return std::make_shared<KelWorldBackground>(KelWorldBackground::Light);
}

KelGPXTrackSelection redLine()
{
    KelGPXConfiguredTrack track = KelTestTracks::configured(QStringLiteral("red"), QStringLiteral("-20,0 20,0"));
    track.setLineColor(Qt::red);
    track.setLineWidth(KelDistance(8));
    KelGPXTrackSelection selection;
    selection.addTrack(track);
    return selection;
}

/// Larger than what a view looks at within the user interface's thread.
KelGPXTrackSelection longTrack()
{
    QList<KelGPXTrackPoint> points;
    for (int i = 0; i <= 20000; ++i)
        points.append(KelGPXTrackPoint(KelGeoPosition(50.0 + i * 1e-4, 8.0 + i * 1e-4), 0, QDateTime(), QString()));
    KelGPXTrackSelection selection;
    selection.addTrack(KelGPXTrack(QStringLiteral("long"), QString(), {KelGPXTrackSegment(points)},
                                   KelGPXTrackShape(TrackShapeAuto)));
    return selection;
}

void show(KelMapView &view, const QSize &size = QSize(400, 300))
{
    view.resize(size);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.isUpToDate());
}

QColor middle(KelMapView &view)
{
    const QImage image = view.grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class tst_KelViewerMap : public QObject
{
    Q_OBJECT

private:
    KelTemporarySettings m_settings;

private Q_SLOTS:
    void ofManyPicturesOnlyTheLatestIsPainted()
    {
        const auto background = std::make_shared<HeldBackground>();
        KelMapWorker worker;
        QSignalSpy painted(&worker, &KelMapWorker::painted);
        worker.request(picture(background, 101));
        QTRY_COMPARE(background->m_begun.load(), 1);
        for (int width = 102; width <= 120; ++width)
            worker.request(picture(background, width));
        QVERIFY(worker.isBusy());
        background->m_permits.release(20);
        QTRY_VERIFY(!worker.isBusy());
        QTRY_COMPARE(painted.size(), 2);
        QCOMPARE(painted.at(0).at(0).value<QImage>().width(), 101);
        QCOMPARE(painted.at(1).at(0).value<QImage>().width(), 120);
        QCOMPARE(background->m_begun.load(), 2);
    }

    void theWindowLivesOnWhileAPictureIsPainted()
    {
        const auto background = std::make_shared<HeldBackground>();
        KelMapView view;
        view.setBackground(background);
        view.resize(300, 200);
        view.show();
        QTRY_VERIFY(background->m_begun.load() > 0);
        QVERIFY(!background->m_inGuiThread.load());
        // The picture cannot be finished now, and still every event is handled.
        const KelMapViewport before = view.viewport();
        QTest::keyClick(&view, Qt::Key_Right);
        QVERIFY(!(view.viewport() == before));
        QVERIFY(!view.grab().isNull());
        QVERIFY(!view.isUpToDate());
        background->m_permits.release(100);
        QTRY_VERIFY(view.isUpToDate());
        QCOMPARE(middle(view), QColor(Qt::green));
    }

    void aDyingWorkerPaintsNothingMore()
    {
        const auto background = std::make_shared<HeldBackground>();
        auto worker = std::make_unique<KelMapWorker>();
        worker->request(picture(background, 101));
        QTRY_COMPARE(background->m_begun.load(), 1);
        worker->request(picture(background, 102));
        background->m_permits.release(2);
        worker.reset();
        QVERIFY(background->m_begun.load() <= 2);
        QVERIFY(background->m_permits.available() + background->m_begun.load() == 2);
    }

    void tracksAreOnTheMap()
    {
        KelMapView view;
        view.setBackground(world());
        view.setSelection(redLine());
        show(view);
        view.fitAll();
        QTRY_VERIFY(view.isUpToDate());
        QCOMPARE(middle(view), QColor(Qt::red));
    }

    void aWorldThatIsSmallRepeats()
    {
        KelMapView view;
        view.setBackground(world());
        view.setSelection(redLine());
        show(view, QSize(600, 200));
        // 200 pixels of world: the line crosses the middle of each of its copies.
        QCOMPARE(view.viewport().worldSize(), 200.0);
        const QImage image = view.grab().toImage();
        for (int x : {100, 300, 500})
            QCOMPARE(image.pixelColor(x, 100), QColor(Qt::red));
    }

    void fittingLongTracksDoesNotWait()
    {
        KelMapView view;
        view.setBackground(world());
        view.setSelection(longTrack());
        show(view);
        const KelMapViewport before = view.viewport();
        view.fitAll();
        QVERIFY(view.viewport() == before); // the area is being looked for elsewhere
        QTRY_VERIFY(!(view.viewport() == before));
        KelMapViewport expected(view.size());
        expected.fit(KelGeoPositionRect(KelGeoPosition(50.0, 8.0), KelGeoPosition(52.0, 10.0)), 0.08);
        QVERIFY(std::abs(view.viewport().worldSize() / expected.worldSize() - 1) < 1e-6);
    }

    void theLastFitCounts()
    {
        KelGPXTrackSelection selection = longTrack();
        selection.addSelection(redLine());
        KelMapView view;
        view.setBackground(world());
        view.setSelection(selection);
        show(view);
        view.fitTrack(0); // long
        view.fitTrack(1); // at once
        const KelMapViewport shown = view.viewport();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QVERIFY(view.viewport() == shown);
    }

    void fittingNoTrackDoesNothing()
    {
        KelMapView view;
        view.setSelection(redLine());
        show(view);
        const KelMapViewport before = view.viewport();
        view.fitTrack(-1);
        view.fitTrack(1);
        QVERIFY(view.viewport() == before);
    }

    void draggingMovesTheMap()
    {
        KelMapView view;
        view.setBackground(world());
        show(view);
        view.zoomIn();
        const KelGeoPosition grabbed = view.viewport().unproject(QPointF(200, 150));
        QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(200, 150));
        QTest::mouseMove(&view, QPoint(230, 140));
        QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(230, 140));
        const QPointF now = view.viewport().project(grabbed);
        QVERIFY(QLineF(now, QPointF(230, 140)).length() < 0.01);
        // Without the button it stays.
        QTest::mouseMove(&view, QPoint(10, 10));
        QVERIFY(QLineF(view.viewport().project(grabbed), now).length() < 1e-9);
    }

    void theWheelZoomsAtTheMouse_data()
    {
        QTest::addColumn<int>("turn");
        QTest::addColumn<double>("factor");
        QTest::newRow("away from the user enlarges") << 480 << 2.0;
        QTest::newRow("a single notch") << 120 << 1.189207115;
        QTest::newRow("towards the user reduces") << -480 << 0.5;
    }

    void theWheelZoomsAtTheMouse()
    {
        QFETCH(int, turn);
        QFETCH(double, factor);
        KelMapView view;
        show(view);
        const QPointF mouse(120, 80);
        view.zoomIn();
        const double before = view.viewport().worldSize();
        const KelGeoPosition under = view.viewport().unproject(mouse);
        QWheelEvent event(mouse, view.mapToGlobal(mouse), QPoint(), QPoint(0, turn), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view, &event);
        QVERIFY(std::abs(view.viewport().worldSize() / before - factor) < 1e-6);
        QVERIFY(QLineF(view.viewport().project(under), mouse).length() < 1e-6);
    }

    void keysMoveAndZoom_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QPointF>("moved");
        QTest::addColumn<double>("factor");
        QTest::newRow("left") << Qt::Key_Left << QPointF(60, 0) << 1.0;
        QTest::newRow("right") << Qt::Key_Right << QPointF(-60, 0) << 1.0;
        QTest::newRow("up") << Qt::Key_Up << QPointF(0, 45) << 1.0;
        QTest::newRow("down") << Qt::Key_Down << QPointF(0, -45) << 1.0;
        QTest::newRow("plus") << Qt::Key_Plus << QPointF(0, 0) << 1.5;
        QTest::newRow("minus") << Qt::Key_Minus << QPointF(0, 0) << 1 / 1.5;
    }

    void keysMoveAndZoom()
    {
        QFETCH(Qt::Key, key);
        QFETCH(QPointF, moved);
        QFETCH(double, factor);
        KelMapView view;
        show(view);
        view.zoomIn();
        view.zoomIn();
        const double scale = view.viewport().worldSize();
        const KelGeoPosition middlePosition = view.viewport().unproject(QPointF(200, 150));
        QTest::keyClick(&view, key);
        QVERIFY(std::abs(view.viewport().worldSize() / scale - factor) < 1e-9);
        QVERIFY(QLineF(view.viewport().project(middlePosition), QPointF(200, 150) + moved).length() < 1.0);
    }

    void homeShowsEverything()
    {
        KelMapView view;
        view.setSelection(redLine());
        show(view);
        view.fitAll();
        const KelMapViewport all = view.viewport();
        view.zoomOut();
        QTest::keyClick(&view, Qt::Key_Home);
        QVERIFY(view.viewport() == all);
    }

    void thePositionUnderTheMouseIsTold()
    {
        KelMapView view;
        show(view);
        QSignalSpy hovered(&view, &KelMapView::positionHovered);
        QTest::mouseMove(&view, QPoint(200, 150));
        QTRY_VERIFY(!hovered.isEmpty());
        const auto position = hovered.last().at(0).value<KelGeoPosition>();
        QVERIFY(std::abs(position.latitude().decimalDegrees()) < 1.5);
        QVERIFY(std::abs(position.longitude().decimalDegrees()) < 1.5);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&view, &leave);
        QVERIFY(!hovered.last().at(0).value<KelGeoPosition>().isValid());
    }

    void anOwnPictureLiesWhereItsEdgesSay()
    {
        QImage image(10, 10, QImage::Format_RGB32);
        image.fill(Qt::blue);
        KelMapView view;
        view.setBackground(std::make_shared<KelPictureBackground>(
            image, KelGeoPositionRect(KelGeoPosition(-10.0, 170.0), KelGeoPosition(10.0, -170.0)), world()));
        show(view, QSize(400, 200));
        // 200 pixels of world in the middle; the picture crosses the date line at 100 and at 300.
        const QImage shown = view.grab().toImage();
        QCOMPARE(shown.pixelColor(100, 100), QColor(Qt::blue));
        QCOMPARE(shown.pixelColor(300, 100), QColor(Qt::blue));
        QVERIFY(shown.pixelColor(200, 100) != QColor(Qt::blue));
        QVERIFY(shown.pixelColor(100, 80) != QColor(Qt::blue));
    }
};

QTEST_MAIN(tst_KelViewerMap)
#include "tst_KelViewerMap.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelExtremeNumbers.h"
#include "KelRenderTestSupport.h"

#include <KelCopyrightRenderer.h>
#include <KelGPXMarkerShape.h>
#include <KelGPXTrackSmoothing.h>
#include <KelOsmScaleRenderer.h>

#include <QTest>

#include <cmath>
#include <limits>

using namespace KelRenderTest;

namespace
{

constexpr QSize pictureSize(64, 48);

/// A line, a closed line, a point and a dashed line with an arrow, all of them with every option.
KelGPXTrackSelection everything(double lineWidth, double haloWidth)
{
    const QList<QPointF> corners = {{5, 5}, {60, 8}, {30, 40}};
    QList<KelGPXConfiguredTrack> tracks;
    for (const auto &pixels : {corners, corners + QList<QPointF>{corners.first()}, QList<QPointF>{{30, 20}}}) {
        for (const Qt::PenStyle style : {Qt::SolidLine, Qt::DashDotLine}) {
            KelGPXTrackConfiguration look(Qt::blue, KelDistance(lineWidth), Qt::yellow, KelDistance(haloWidth), strokeAndFill(),
                                          KelGPXMarkerShape(MarkerArrow | MarkerStar9), KelGPXTrackShape(TrackShapeAuto),
                                          KelPenStyle(style), 50, 3);
            tracks.append(KelGPXConfiguredTrack(trackThrough(pixels), look));
        }
    }
    return selectionOf(tracks);
}

/// All ways to a picture.
void renderAll(const KelGPXTrackRenderer &renderer)
{
    const QSize size = renderer.targetImageSize();
    for (const auto option : {KelGPXTrackRenderer::Normal, KelGPXTrackRenderer::Foreground}) {
        QCOMPARE(renderer.render(option).size(), size);
        QCOMPARE(renderer.renderQuickAndDirty(option).size(), size);
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        renderer.renderWith(&painter, option);
    }
    QCOMPARE(renderer.crop(QImage(size, QImage::Format_ARGB32)).size(), size);
}

} // namespace

/// Drawing comes to an end with every width, factor, projection and size.
class tst_ExtremeDrawing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void widths_data() { KelExtremeNumbers::addRows(); }
    void widths();
    void factors_data() { KelExtremeNumbers::addRows(); }
    void factors();
    void scales_data() { KelExtremeNumbers::addRows(); }
    void scales();
    void origins_data() { KelExtremeNumbers::addRows(); }
    void origins();
    void linesFarBeyondThePicture_data();
    void linesFarBeyondThePicture();
    void worldWidths_data() { KelExtremeNumbers::addRows(); }
    void worldWidths();
    void positions_data() { KelExtremeNumbers::addRows(); }
    void positions();
    void sizes();
    void smoothing_data() { KelExtremeNumbers::addRows(); }
    void smoothing();
    void scaleBars_data() { KelExtremeNumbers::addRows(); }
    void scaleBars();
    void attributions_data() { KelExtremeNumbers::addRows(); }
    void attributions();
    void markers_data() { KelExtremeNumbers::addRows(); }
    void markers();
};

void tst_ExtremeDrawing::widths()
{
    QFETCH(double, value);
    renderAll(LinearRenderer(everything(value, 1.0), pictureSize));
    renderAll(LinearRenderer(everything(1.0, value), pictureSize));
}

void tst_ExtremeDrawing::factors()
{
    QFETCH(double, value);
    renderAll(LinearRenderer(everything(3.0, 1.0), pictureSize, value));
}

void tst_ExtremeDrawing::scales()
{
    QFETCH(double, value);
    renderAll(LinearRenderer(everything(3.0, 1.0), pictureSize, 1.0, value));
}

void tst_ExtremeDrawing::origins()
{
    QFETCH(double, value);
    renderAll(LinearRenderer(everything(3.0, 1.0), pictureSize, 1.0, PIXELS_PER_DEGREE, QPointF(value, value)));
}

void tst_ExtremeDrawing::linesFarBeyondThePicture_data()
{
    QTest::addColumn<double>("pixelsPerDegree");
    QTest::addColumn<bool>("polygon");
    QTest::addColumn<int>("style");
    for (const double scale : {1e3, 1e4, 3e4, 6e4, 1e5, 1.6e5, 1e6, 1e9}) {
        QTest::addRow("line, %g pixels per degree", scale) << scale << false << int(Qt::SolidLine);
        QTest::addRow("polygon, %g pixels per degree", scale) << scale << true << int(Qt::SolidLine);
        QTest::addRow("dotted line, %g pixels per degree", scale) << scale << false << int(Qt::DotLine);
    }
}

// A small file that goes around half the world many times, seen from near: painters follow each edge all the way.
void tst_ExtremeDrawing::linesFarBeyondThePicture()
{
    QFETCH(double, pixelsPerDegree);
    QFETCH(bool, polygon);
    QFETCH(int, style);
    KelGeoPositionList points;
    for (int i = 0; i < 400; ++i)
        points.append(KelGeoPosition((i * 37 % 101 - 50) * 0.01, i % 2 ? -60 + i * 17 % 97 * 0.1 : 60 + i * 13 % 89 * 0.1));
    KelGPXTrackConfiguration look(Qt::blue, KelDistance(6), Qt::yellow, KelDistance(3), strokeAndFill(), KelGPXMarkerShape(MarkerArrow),
                                  KelGPXTrackShape(polygon ? TrackShapePolygon : TrackShapeLineString),
                                  KelPenStyle(static_cast<Qt::PenStyle>(style)), 100, 1);
    const QPointF origin(pictureSize.width() / 2.0, pictureSize.height() / 2.0);
    const LinearRenderer renderer(selectionOf({KelGPXConfiguredTrack(trackOf({segment(points)}), look)}), pictureSize, 1.0,
                                  pixelsPerDegree, origin);
    renderAll(renderer);
    QImage image(pictureSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.renderWith(&painter, KelGPXTrackRenderer::Normal);
}

void tst_ExtremeDrawing::worldWidths()
{
    QFETCH(double, value);
    renderAll(WorldOffsetRenderer(everything(3.0, 1.0), QPointF(value, 0.0)));
}

void tst_ExtremeDrawing::positions()
{
    QFETCH(double, value);
    KelGeoPositionList line;
    for (const KelExtremeNumbers::Named &other : KelExtremeNumbers::all()) {
        line.append(KelGeoPosition(value, other.value));
        line.append(KelGeoPosition(other.value, value));
    }
    KelGPXTrackConfiguration look = configuration();
    renderAll(LinearRenderer(selectionOf(trackOf({segment(line)}), look), pictureSize));
    renderAll(LinearRenderer(selectionOf(trackOf({segment(KelGeoPositionList({line.first()}))}), look), pictureSize));
}

void tst_ExtremeDrawing::sizes()
{
    for (const QSize &size : {QSize(), QSize(0, 0), QSize(-1, 5), QSize(1000000000, 1000000000),
                              QSize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()),
                              QSize(std::numeric_limits<int>::min(), 1)}) {
        const LinearRenderer renderer(everything(3.0, 1.0), size);
        QVERIFY(renderer.render(KelGPXTrackRenderer::Normal).isNull());
        QVERIFY(renderer.renderForeground().isNull());
    }
}

void tst_ExtremeDrawing::smoothing()
{
    QFETCH(double, value);
    for (const int fixPoints : {std::numeric_limits<int>::min(), -1, 0, 1, 2, 5, std::numeric_limits<int>::max()}) {
        QList<QPointF> points = {{0, 0}, {value, 1}, {2, value}, {value, value}, {4, 4}};
        KelGPXTrackSmoothing(points.data(), int(points.size()), value, fixPoints).run();
        // The ends stay, whatever lies between.
        QCOMPARE(points.first(), QPointF(0, 0));
        QCOMPARE(points.last(), QPointF(4, 4));
        QVERIFY(KelGPXTrackSmoothing::estimateFixPoints(fixPoints, 5) >= 1);
    }
    KelGPXTrackSmoothing(nullptr, 0, value, 3).run();
}

void tst_ExtremeDrawing::scaleBars()
{
    QFETCH(double, value);
    for (const QSize &size : {QSize(), QSize(0, 0), pictureSize, QSize(std::numeric_limits<int>::max(), 1)}) {
        const KelOsmScaleRenderer scale{KelDistance(value), size};
        QVERIFY(!scale.scaleText().isEmpty());
        for (const KelExtremeNumbers::Named &factor : KelExtremeNumbers::all()) {
            const QRectF stroke = scale.strokeRect(QRectF(QPointF(), size), factor.value);
            QVERIFY2(std::isfinite(stroke.width()) && std::isfinite(stroke.height()), factor.name);
            QImage image(pictureSize, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            scale.renderScale(&image, factor.value);
            QCOMPARE(image.size(), pictureSize);
        }
    }
}

void tst_ExtremeDrawing::attributions()
{
    QFETCH(double, value);
    QImage image(pictureSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    KelCopyrightRenderer().renderCopyRight(&image, value);
    QCOMPARE(image.size(), pictureSize);
    QImage none;
    KelCopyrightRenderer().renderCopyRight(&none, 1.0);
    QVERIFY(none.isNull());
}

void tst_ExtremeDrawing::markers()
{
    QFETCH(double, value);
    QImage image(pictureSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (const KelGPXMarkerShape &marker : KelGPXMarkerShape::allPointShapes()) {
        painter.setPen(QPen(Qt::black, 1.0));
        marker.draw(&painter, QPointF(10, 10), value, value);
        marker.draw(&painter, QPointF(value, value), 5.0, 5.0);
    }
    painter.end();
    QCOMPARE(image.size(), pictureSize);
    const int most = std::numeric_limits<int>::max();
    for (const QSize &size : {QSize(0, 0), QSize(-5, -5), QSize(most, most), QSize(most, 1)})
        QVERIFY(KelGPXMarkerShape(MarkerStar9).createImage(size, 3, Qt::black, Qt::white).size().width() <= 4);
}

QTEST_MAIN(tst_ExtremeDrawing)
#include "tst_ExtremeDrawing.moc"

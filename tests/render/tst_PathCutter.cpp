// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPathCutter.h"

#include <KelTestSupport.h>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPdfWriter>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <numeric>
#include <random>

/// Paths near the picture are left alone; of others what is near it remains, and looks the same.
class tst_PathCutter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsCut_data();
    void whatIsCut();
    void aLowerLimit();
    void curvesAreLeftAlone();
    void devicesWithoutPixelsGetEverything();
    void pensWiderThanThePictureCutNothing();
    void linesNearThePictureStayAsTheyAre();
    void linesEndFarFromThePicture();
    void linesThatPassByVanish();
    void closedLinesKeepTheirSeam();
    void singleLinesStaySingle();
    void linesWithCornersStayOneOutline();
    void areasKeepTheirSurroundings_data();
    void areasKeepTheirSurroundings();
    void movedAndScaledPainters_data();
    void movedAndScaledPainters();
    void dashesStayWhereTheyAre();
    void detoursOfDashedLines();
    void periodsOfNothing();
    void coordinatesWithoutMeasure();
    void farPathsLookTheSame();
};

namespace
{

constexpr double FARTHEST = KelPathCutter::FARTHEST;
constexpr double KEPT = KelPathCutter::KEPT;
constexpr int WIDTH = 60;
constexpr int HEIGHT = 40;

QImage blank()
{
    QImage image(WIDTH, HEIGHT, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QPainterPath pathThrough(std::initializer_list<QPointF> points)
{
    QPainterPath path(*points.begin());
    std::for_each(points.begin() + 1, points.end(), [&](const QPointF &point) { path.lineTo(point); });
    return path;
}

QPainterPath cutLine(const QPainterPath &path, double reach = 0.0)
{
    QImage image = blank();
    const QPainter painter(&image);
    return KelPathCutter(&painter, reach).line(path);
}

QPainterPath cutArea(const QPainterPath &path)
{
    QImage image = blank();
    const QPainter painter(&image);
    return KelPathCutter(&painter, 0.0).area(path);
}

/// The largest difference of any channel.
int difference(const QImage &a, const QImage &b)
{
    int result = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int i = 0; i < 4 * a.width(); ++i)
            result = std::max(result, std::abs(a.constScanLine(y)[i] - b.constScanLine(y)[i]));
    }
    return result;
}

QPen pen(double width)
{
    return QPen(QBrush(QColor(200, 0, 0, 100)), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

} // namespace

void tst_PathCutter::whatIsCut_data()
{
    QTest::addColumn<QPointF>("end");
    QTest::addColumn<bool>("isCut");
    const double beyond = FARTHEST * (1 + 1e-9);
    QTest::newRow("near") << QPointF(1000, 1000) << false;
    QTest::newRow("right, just bearable") << QPointF(FARTHEST, 5) << false;
    QTest::newRow("right, too far") << QPointF(beyond, 5) << true;
    QTest::newRow("left, just bearable") << QPointF(-FARTHEST, 5) << false;
    QTest::newRow("left, too far") << QPointF(-beyond, 5) << true;
    QTest::newRow("below, just bearable") << QPointF(5, FARTHEST) << false;
    QTest::newRow("below, too far") << QPointF(5, beyond) << true;
    QTest::newRow("above, just bearable") << QPointF(5, -FARTHEST) << false;
    QTest::newRow("above, too far") << QPointF(5, -beyond) << true;
}

void tst_PathCutter::whatIsCut()
{
    QFETCH(QPointF, end);
    QFETCH(bool, isCut);
    const QPainterPath path = pathThrough({{5, 5}, {8, 9}, end});
    QCOMPARE(cutLine(path) != path, isCut);
    QCOMPARE(cutArea(path) != path, isCut);
    QVERIFY(cutLine(QPainterPath()).isEmpty());
    QVERIFY(cutArea(QPainterPath()).isEmpty());
}

void tst_PathCutter::aLowerLimit()
{
    QImage image = blank();
    const QPainter painter(&image);
    const double limit = KelPathCutter::FARTHEST_FOR_PAINTERS;
    const KelPathCutter cutter(&painter, 3.0, limit);
    const QPainterPath bearable = pathThrough({{5, 5}, {8, 9}, {limit, 9}});
    QCOMPARE(cutter.line(bearable), bearable);
    QCOMPARE(cutter.area(bearable), bearable);
    const QPainterPath cut = cutter.line(pathThrough({{5, 5}, {8, 9}, {limit + 1, 9}}));
    QCOMPARE(QPointF(cut.elementAt(2)), QPointF(WIDTH + KEPT + 3, 9));
    QVERIFY(cutter.area(pathThrough({{5, 5}, {8, 9}, {limit + 1, 9}})).controlPointRect().right() < limit / 4);
}

void tst_PathCutter::curvesAreLeftAlone()
{
    QPainterPath path = pathThrough({{5, 5}, {2 * FARTHEST, 5}});
    path.quadTo(30, 30, 20, 10);
    QCOMPARE(cutLine(path), path);
    QCOMPARE(cutArea(path), path);
}

// Vector formats keep what lies outside: somebody may make the page larger.
void tst_PathCutter::devicesWithoutPixelsGetEverything()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QPdfWriter writer(&buffer);
    const QPainter painter(&writer);
    const QPainterPath path = pathThrough({{5, 5}, {2 * FARTHEST, 5}, {6, 6}});
    QCOMPARE(KelPathCutter(&painter, 0.0).line(path), path);
    QCOMPARE(KelPathCutter(&painter, 0.0).area(path), path);
}

void tst_PathCutter::pensWiderThanThePictureCutNothing()
{
    const QPainterPath path = pathThrough({{5, 5}, {2 * FARTHEST, 5}, {6, 6}});
    const double widest = FARTHEST - KEPT - WIDTH;
    QVERIFY(cutLine(path, widest - 1) != path);
    QCOMPARE(cutLine(path, widest + 1), path);
    QCOMPARE(cutLine(path, 1e100), path);
}

void tst_PathCutter::linesNearThePictureStayAsTheyAre()
{
    QPainterPath path = pathThrough({{5, 5}, {0.1, 1.0 / 3}, {0.1, 1.0 / 3}, {-KEPT, 7}, {WIDTH + KEPT, HEIGHT + KEPT}});
    const QPainterPath near = path;
    path.addPath(pathThrough({{0, 2 * FARTHEST}, {9, 2 * FARTHEST}}));
    const QPainterPath cut = cutLine(path);
    QVERIFY(cut.elementCount() > near.elementCount());
    for (int i = 0; i < near.elementCount(); ++i)
        QVERIFY2(cut.elementAt(i) == near.elementAt(i), qPrintable(QString::number(i)));
}

void tst_PathCutter::linesEndFarFromThePicture()
{
    const QPainterPath cut = cutLine(pathThrough({{-1e7, 5}, {10, 5}, {10, 3e7}}), 100);
    QVERIFY(cut.elementCount() >= 3);
    QCOMPARE(QPointF(cut.elementAt(0)), QPointF(-KEPT - 100, 5));
    QCOMPARE(QPointF(cut.elementAt(1)), QPointF(10, 5));
    QCOMPARE(QPointF(cut.elementAt(2)), QPointF(10, HEIGHT + KEPT + 100));
    // Where the line leaves and comes back it is two lines.
    const QPainterPath back = cutLine(pathThrough({{10, 5}, {1e7, 5}, {1e7, 6}, {10, 6}}));
    QVERIFY(back.elementCount() >= 4);
    QCOMPARE(QPointF(back.elementAt(1)), QPointF(WIDTH + KEPT, 5));
    QVERIFY(back.elementAt(2).isMoveTo());
    QCOMPARE(QPointF(back.elementAt(2)), QPointF(WIDTH + KEPT, 6));
    QCOMPARE(QPointF(back.elementAt(3)), QPointF(10, 6));
}

void tst_PathCutter::linesThatPassByVanish()
{
    const double right = WIDTH + KEPT;
    const double bottom = HEIGHT + KEPT;
    for (const QPainterPath &path :
         {pathThrough({{1e7, -1e7}, {1e7, 1e7}}), pathThrough({{-1e7, -1e7}, {-1e7, 1e7}}), pathThrough({{-1e7, 1e7}, {1e7, 1e7}}),
          pathThrough({{-1e7, -1e7}, {1e7, -1e7}}), pathThrough({{right + bottom + 1e7 + 1, -1e7}, {-1e7, right + bottom + 1e7 + 1}}),
          pathThrough({{5e6, 5}, {5e6, 5}})})
        QVERIFY(cutLine(path).isEmpty());
    // One that goes just through the corner does not.
    QVERIFY(!cutLine(pathThrough({{right + bottom + 1e7 - 1, -1e7}, {-1e7, right + bottom + 1e7 - 1}})).isEmpty());
}

void tst_PathCutter::closedLinesKeepTheirSeam()
{
    // It begins and ends in the picture: a join there, not two ends.
    const QPainterPath cut = cutLine(pathThrough({{10, 10}, {20, 10}, {1e7, 10}, {1e7, 30}, {20, 30}, {10, 10}}));
    QCOMPARE(QPointF(cut.elementAt(0)), QPointF(WIDTH + KEPT, 30));
    QCOMPARE(QPointF(cut.elementAt(1)), QPointF(20, 30));
    QCOMPARE(QPointF(cut.elementAt(2)), QPointF(10, 10));
    QVERIFY(cut.elementAt(2).isLineTo());
    QCOMPARE(QPointF(cut.elementAt(3)), QPointF(20, 10));
    QCOMPARE(QPointF(cut.elementAt(4)), QPointF(WIDTH + KEPT, 10));
    // An open line that ends where another part of it begins stays open.
    const QPainterPath open = cutLine(pathThrough({{10, 10}, {1e7, 10}, {1e7, 30}, {20, 30}, {11, 10}}));
    QCOMPARE(QPointF(open.elementAt(0)), QPointF(10, 10));
}

void tst_PathCutter::singleLinesStaySingle()
{
    QPainterPath path = pathThrough({{-1e7, 5}, {1e7, 5}});
    path.addPath(pathThrough({{-1e7, 6}, {1e7, 6}}));
    const QPainterPath cut = cutLine(path);
    QCOMPARE(cut.elementCount(), 4); // two lines, painted one over the other
}

void tst_PathCutter::linesWithCornersStayOneOutline()
{
    // What remains are single lines. In a translucent colour the crossing would get darker if they were painted as such.
    const QPainterPath cross = pathThrough({{-1e7, 20}, {1e7, 20}, {1e7, -1e7}, {20, -1e7}, {20, 1e7}});
    QImage image = blank();
    QPainter painter(&image);
    painter.strokePath(KelPathCutter(&painter, 10).line(cross), pen(10));
    painter.end();
    QVERIFY(image.pixel(20, 20) != 0);
    QCOMPARE(image.pixel(20, 20), image.pixel(20, 5));
    QCOMPARE(image.pixel(20, 20), image.pixel(50, 20));
    // The corner that keeps them together is not seen.
    QCOMPARE(image.pixel(0, 0), 0u);
}

void tst_PathCutter::areasKeepTheirSurroundings_data()
{
    QTest::addColumn<QPainterPath>("path");
    QTest::addColumn<bool>("winding");
    QTest::addColumn<bool>("filled"); // the picture
    const QPainterPath around = pathThrough({{-1e7, -1e7}, {1e7, -1e7}, {1e7, 1e7}, {-1e7, 1e7}});
    QPainterPath twice = around;
    twice.addPath(around);
    QPainterPath thereAndBack = around;
    thereAndBack.addPath(around.toReversed());
    QTest::newRow("around the picture") << around << false << true;
    QTest::newRow("twice around it, odd and even") << twice << false << false;
    QTest::newRow("twice around it, winding") << twice << true << true;
    QTest::newRow("there and back, winding") << thereAndBack << true << false;
    QTest::newRow("beside it") << pathThrough({{5e6, -1e7}, {1e7, -1e7}, {1e7, 1e7}, {5e6, 1e7}}) << false << false;
    QTest::newRow("above it") << pathThrough({{-1e7, -5e6}, {1e7, -5e6}, {1e7, -1e7}, {-1e7, -1e7}}) << false << false;
    QTest::newRow("around a corner of it only") << pathThrough({{1e7, 1e6}, {1e7, 1e7}, {1e6, 1e7}}) << false << false;
}

void tst_PathCutter::areasKeepTheirSurroundings()
{
    QFETCH(QPainterPath, path);
    QFETCH(bool, winding);
    QFETCH(bool, filled);
    path.setFillRule(winding ? Qt::WindingFill : Qt::OddEvenFill);
    const QPainterPath cut = cutArea(path);
    QCOMPARE(cut.fillRule(), path.fillRule());
    QVERIFY(QRectF(-2 * KEPT, -2 * KEPT, 4 * KEPT, 4 * KEPT).contains(cut.controlPointRect()) || cut.isEmpty());
    QImage image = blank();
    QPainter(&image).fillPath(cut, Qt::blue);
    QImage expected = blank();
    if (filled)
        expected.fill(Qt::blue);
    QCOMPARE(image, expected);
}

void tst_PathCutter::movedAndScaledPainters_data()
{
    QTest::addColumn<QTransform>("transform");
    QTest::newRow("moved far away") << QTransform::fromTranslate(-7e6, 3e6);
    QTest::newRow("enlarged") << QTransform::fromScale(1000, 1000);
    QTest::newRow("turned") << QTransform().rotate(30);
    QTest::newRow("mirrored") << QTransform::fromScale(-1, 1);
}

void tst_PathCutter::movedAndScaledPainters()
{
    QFETCH(QTransform, transform);
    const QTransform back = transform.inverted();
    // Seen in pixels it is always the same line, through the picture.
    const QPainterPath near = back.map(pathThrough({{-1e6, 15}, {30, 15}, {30, 1e6}}));
    const QPainterPath far = back.map(pathThrough({{-1e7, 15}, {30, 15}, {30, 1e7}}));
    QImage image = blank();
    QPainter painter(&image);
    painter.setTransform(transform);
    QCOMPARE(KelPathCutter(&painter, 0.0).line(near), near);
    const QPainterPath cut = transform.map(KelPathCutter(&painter, 0.0).line(far));
    QVERIFY(QRectF(-3 * KEPT, -3 * KEPT, 6 * KEPT, 6 * KEPT).contains(cut.controlPointRect()));
    QVERIFY(std::abs(QPointF(cut.elementAt(0)).y() - 15) < 1e-6);
    QVERIFY(QPointF(cut.elementAt(0)).x() <= -KEPT * (1 - 1e-9));
    QCOMPARE(QPointF(cut.elementAt(1)), QPointF(30, 15));
}

// Against uncut lines, dashed by a stroker: unlike painters it counts dashes that nobody sees as well.
void tst_PathCutter::dashesStayWhereTheyAre()
{
    constexpr int tolerance = 3; // of 255, from the rounding of lengths and ends
    const int first = int(KelTestSupport::randomSeed(1));
    const int cases = KelTestSupport::randomCases(100);
    int seen = 0;
    for (int seed = first; seed < first + cases; ++seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        const auto real = [&](double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); };
        const auto anywhere = [&] {
            const double far = random() % 3 ? 60 : 9e4;
            return QPointF(30 + real(-far, far), 20 + real(-far, far));
        };
        QPainterPath path(anywhere());
        for (unsigned count = random() % 6 + 2; count > 0; --count)
            path.lineTo(anywhere());
        if (random() % 3 == 0)
            path.closeSubpath();
        QPen dashed = pen(real(8, 25));
        dashed.setStyle(static_cast<Qt::PenStyle>(Qt::DashLine + random() % 4));
        const QList<qreal> pattern = dashed.dashPattern();
        const double period = dashed.widthF() * std::accumulate(pattern.begin(), pattern.end(), 0.0);
        QImage whole = blank();
        QImage cut = blank();
        for (QImage *image : {&whole, &cut}) {
            QPainter painter(image);
            painter.setRenderHint(QPainter::Antialiasing);
            const KelPathCutter cutter(&painter, 2 * dashed.widthF(), KelPathCutter::FARTHEST_FOR_PAINTERS);
            const QPainterPath line = image == &cut ? cutter.dashedLine(path, period) : path;
            seen += line != path && path.controlPointRect().contains(0, 0);
            painter.fillPath(QPainterPathStroker(dashed).createStroke(line), QColor(200, 0, 0, 100));
        }
        QVERIFY2(difference(whole, cut) <= tolerance,
                 qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(difference(whole, cut))));
    }
    QVERIFY(seen > cases / 3);
}

void tst_PathCutter::detoursOfDashedLines()
{
    QImage image = blank();
    const QPainter painter(&image);
    const KelPathCutter cutter(&painter, 0.0);
    const double period = 100;
    const QRectF border = QRectF(image.rect()).adjusted(-KEPT, -KEPT, KEPT, KEPT);
    // Out to the right and back from below, and the other way round.
    const QPainterPath path = pathThrough({{30, 20}, {1e7, 20}, {1e7, 1e7}, {30, 1e7}, {30, 25}});
    for (const QPainterPath &line : {path, path.toReversed()}) {
        const QPainterPath cut = cutter.dashedLine(line, period);
        QVERIFY(cut != line);
        QVERIFY(!cut.isEmpty());
        for (int i = 1; i < cut.elementCount(); ++i)
            QVERIFY(cut.elementAt(i).isLineTo());
        QCOMPARE(QPointF(cut.elementAt(0)), QPointF(line.elementAt(0)));
        QCOMPARE(QPointF(cut.elementAt(cut.elementCount() - 1)), QPointF(line.elementAt(4)));
        // The same length but for whole periods, and nothing of the detour near the picture.
        const double left = std::remainder(line.length() - cut.length(), period);
        QVERIFY2(std::abs(left) < 1e-3, qPrintable(QString::number(left)));
        for (int i = 2; i < cut.elementCount() - 1; ++i)
            QVERIFY(!border.adjusted(1, 1, -1, -1).contains(cut.elementAt(i)));
    }
    // A line that comes from afar.
    const QPainterPath coming = cutter.dashedLine(pathThrough({{-1e7 - 33, 20}, {30, 20}}), period);
    QCOMPARE(coming.elementCount(), 3);
    QCOMPARE(QPointF(coming.elementAt(1)), QPointF(border.left(), 20));
    QVERIFY(std::abs(std::remainder(1e7 + 33 + 30 - coming.length(), period)) < 1e-6);
    QVERIFY(cutter.dashedLine(pathThrough({{-1e7, -1e7}, {-1e7, 1e7}}), period).isEmpty());
}

void tst_PathCutter::periodsOfNothing()
{
    QImage image = blank();
    const QPainter painter(&image);
    const QPainterPath path = pathThrough({{30, 20}, {1e7, 20}});
    for (const double period : {0.0, -1.0, std::nan("")})
        QCOMPARE(KelPathCutter(&painter, 0.0).dashedLine(path, period), path);
}

void tst_PathCutter::coordinatesWithoutMeasure()
{
    for (const double far : {1e9, 1e18, 1e100, 1e127}) {
        const QPainterPath path = pathThrough({{-far, far}, {10, 10}, {far, -far}, {far, far}, {0, -far}});
        const QRectF most(-2 * KEPT, -2 * KEPT, 4 * KEPT, 4 * KEPT);
        QVERIFY(most.contains(cutLine(path).controlPointRect()));
        QImage image = blank();
        const QPainter painter(&image);
        QVERIFY(most.contains(KelPathCutter(&painter, 0.0).dashedLine(path, 10).controlPointRect()));
        QVERIFY(most.contains(cutArea(path).controlPointRect()));
    }
}

// Against the painter's own way, which takes a fifth of a second for each of these few lines. One level is what the
// rounding of ends that lie elsewhere makes, in the seam of two edges in one pixel two.
void tst_PathCutter::farPathsLookTheSame()
{
    constexpr int tolerance = 2;
    const int first = int(KelTestSupport::randomSeed(1));
    const int cases = KelTestSupport::randomCases(20);
    int seen = 0;
    for (int seed = first; seed < first + cases; ++seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        const auto real = [&](double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); };
        const auto anywhere = [&] {
            const double far = random() % 2 ? 100 : 7e6;
            return QPointF(real(-far, far), real(-far, far));
        };
        QPainterPath path(anywhere());
        for (unsigned count = random() % 5 + 2; count > 0; --count)
            path.lineTo(anywhere());
        if (random() % 3 == 0)
            path.closeSubpath();
        const double width = real(1.1, 30);
        QImage whole = blank();
        QImage cut = blank();
        for (QImage *image : {&whole, &cut}) {
            QPainter painter(image);
            painter.setRenderHint(QPainter::Antialiasing);
            const KelPathCutter cutter(&painter, width);
            const bool isCut = image == &cut;
            painter.fillPath(isCut ? cutter.area(path) : path, QColor(0, 0, 250, 130));
            painter.strokePath(isCut ? cutter.line(path) : path, pen(width));
        }
        seen += cut != blank() && cutLine(path) != path;
        QVERIFY2(difference(whole, cut) <= tolerance,
                 qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(difference(whole, cut))));
    }
    QVERIFY(seen > cases / 3); // otherwise there was nothing to compare
}

QTEST_MAIN(tst_PathCutter)
#include "tst_PathCutter.moc"

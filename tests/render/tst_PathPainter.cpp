// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Paths are painted without QPainter, and not one pixel may tell. Random paths are painted both ways and compared bit for
// bit. KEL_RANDOM_CASES sets another number of random cases, KEL_RANDOM_SEED another beginning.

#include "../../libs/KelGeoLocation/render/KelPathPainter.h"

#include <KelMemoryLimit.h>
#include <KelTestSupport.h>

#include <QBrush>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <malloc.h>
#include <random>

namespace
{

constexpr int RANDOM_CASES = 5000;
constexpr double FARTHEST_ALIASED = 16000; // pixels, that painting without antialiasing can bear
constexpr double PI = 3.141592653589793;

struct Scene
{
    QSize size;
    QPainterPath path;
    QPen pen;
    QBrush brush;
    QPointF offset;
    bool antialiased;
};

// Long lines are outlined in pieces, and no pixel may tell how long these are.
int segmentsPerPiece(int seed)
{
    return seed % 3 == 0 ? KelPathPainter::SEGMENTS_PER_PIECE : 10 + seed % 100;
}

QImage blank(const Scene &scene)
{
    QImage image(scene.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(30, 60, 90, 120));
    return image;
}

QPainter::RenderHints hints(const Scene &scene)
{
    return scene.antialiased ? QPainter::Antialiasing : QPainter::RenderHints();
}

template<typename Paint>
QImage plainly(const Scene &scene, Paint paint)
{
    QImage image = blank(scene);
    QPainter painter(&image);
    painter.setRenderHints(hints(scene));
    painter.translate(scene.offset);
    paint(painter);
    painter.end();
    return image;
}

QImage plainStroke(const Scene &scene)
{
    return plainly(scene, [&scene](QPainter &painter) {
        painter.setPen(scene.pen);
        painter.drawPath(scene.path);
    });
}

QImage plainFill(const Scene &scene)
{
    return plainly(scene, [&scene](QPainter &painter) { painter.fillPath(scene.path, scene.brush); });
}

class Random
{
public:
    explicit Random(int seed)
        : m_engine(static_cast<unsigned>(seed))
    {
    }

    double real(double from, double to) { return std::uniform_real_distribution<double>(from, to)(m_engine); }
    int integer(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_engine); }
    bool oneIn(int count) { return integer(1, count) == 1; }

    QColor color()
    {
        return QColor(integer(0, 255), integer(0, 255), integer(0, 255), oneIn(2) ? 255 : integer(0, 255));
    }

    /// Lines as tracks have them, and lines that are meant to be difficult.
    void addLine(QPainterPath *path, const QSize &size, int points)
    {
        // Now and then most lies outside of the picture, or so far that a line has more dashes than are painted.
        const double reach = oneIn(60) ? real(300.0, 3000.0) : real(0.2, oneIn(16) ? 12.0 : 1.2);
        const auto anywhere = [&] {
            return QPointF(size.width() * (0.5 + real(-reach, reach)), size.height() * (0.5 + real(-reach, reach)));
        };
        // Lines right across are the slowest of all.
        const int kind = points > 400 || !oneIn(points > 40 ? 16 : 8) ? integer(0, 5) : 6;
        // Lengths of dashes that are whole numbers of pixels end where lines do.
        const double step = oneIn(3) ? integer(1, 18) : real(0.5, 20.0);
        const double grid = oneIn(3) ? 1.0 / integer(1, 4) : 0.0;
        QPointF point = anywhere();
        double direction = real(0, 2 * PI);
        const auto placed = [grid](const QPointF &exact) {
            return grid == 0.0 ? exact
                               : QPointF(std::round(exact.x() / grid) * grid, std::round(exact.y() / grid) * grid);
        };
        path->moveTo(placed(point));
        for (int i = 1; i < points; ++i) {
            switch (kind) {
            case 0: // a walk
                direction += real(-1, 1);
                point += QPointF(step * std::cos(direction), step * std::sin(direction));
                break;
            case 1: // there and back
                point += QPointF(step * std::cos(direction), step * std::sin(direction)) * (oneIn(2) ? 1 : -1);
                break;
            case 2: // along the axes
                point += oneIn(2) ? QPointF(step * integer(-2, 2), 0) : QPointF(0, step * integer(-2, 2));
                break;
            case 6: // right across
                point = anywhere();
                break;
            case 3: // few long steps between many short ones
                point = oneIn(40) ? anywhere() : point + QPointF(real(-step, step), real(-step, step));
                break;
            case 4: // a spiral
                direction += 0.2;
                point = QPointF(size.width() / 2.0, size.height() / 2.0)
                    + QPointF(std::cos(direction), std::sin(direction)) * (direction * step * 0.2);
                break;
            default: // straight on, with a bend at times
                if (oneIn(10))
                    direction += real(-2, 2);
                point += QPointF(step * std::cos(direction), step * std::sin(direction)) * 0.5;
                break;
            }
            // Come back into sight.
            if (kind != 6 && kind != 3 && oneIn(40) && !QRectF(QPointF(), size).contains(point))
                point = anywhere();
            path->lineTo(placed(point));
        }
        if (oneIn(20)) // which the painter leaves out
            path->lineTo(path->currentPosition());
        if (oneIn(3))
            path->closeSubpath();
    }

    QPainterPath path(const QSize &size, bool isLong)
    {
        QPainterPath result;
        const int subpaths = oneIn(2) ? 1 : integer(2, 6);
        for (int i = 0; i < subpaths; ++i)
            addLine(&result, size, integer(2, isLong ? 250 / subpaths + 150 : 40));
        if (isLong && oneIn(10))
            addPairs(&result, size);
        if (oneIn(4))
            result.setFillRule(Qt::WindingFill);
        return result;
    }

    /// Lines of two points each.
    void addPairs(QPainterPath *path, const QSize &size)
    {
        for (int i = 0; i < 150; ++i)
            addLine(path, size, 2);
    }

    Qt::PenStyle penStyle()
    {
        constexpr Qt::PenStyle DASHED[] = {Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine};
        return oneIn(3) ? DASHED[integer(0, 3)] : Qt::SolidLine;
    }

    double penWidth()
    {
        if (oneIn(10))
            return real(10, 150);
        if (oneIn(10))
            return real(1.0, 1.6);
        return oneIn(2) ? integer(1, 12) : real(0.2, 12);
    }

    Scene scene()
    {
        Scene result;
        // Long paths are painted in another way, and slowly.
        const bool isLong = oneIn(8);
        result.size = isLong ? QSize(integer(1, 110), integer(1, 90)) : QSize(integer(1, 60), integer(1, 40));
        result.path = path(result.size, isLong);
        result.pen = QPen(QBrush(color()), penWidth(), penStyle(), Qt::RoundCap, Qt::RoundJoin);
        result.brush = QBrush(color());
        if (oneIn(3))
            result.offset = QPointF(real(-200, 200), oneIn(2) ? 0 : real(-200, 200));
        result.antialiased = !oneIn(3);
        return result;
    }

private:
    std::mt19937 m_engine;
};

QString firstDifference(const QImage &actual, const QImage &expected)
{
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            if (actual.pixel(x, y) != expected.pixel(x, y))
                return QStringLiteral("pixel %1,%2 of %3x%4 is %5, not %6")
                    .arg(x)
                    .arg(y)
                    .arg(expected.width())
                    .arg(expected.height())
                    .arg(actual.pixel(x, y), 8, 16)
                    .arg(expected.pixel(x, y), 8, 16);
        }
    }
    return QString();
}

QString name(const Scene &scene, int seed)
{
    return QStringLiteral("seed %1, %2").arg(seed).arg(scene.antialiased ? u"antialiased" : u"aliased");
}

QPainterPath zigzag(int points)
{
    QPainterPath path(QPointF(5, 5));
    for (int i = 1; i < points; ++i)
        path.lineTo(5 + i % 50, 5 + (i * 7) % 40);
    return path;
}

QPen roundPen(double width, Qt::PenStyle style = Qt::SolidLine)
{
    return QPen(QBrush(QColor(200, 0, 0, 100)), width, style, Qt::RoundCap, Qt::RoundJoin);
}

// Around squares, step by step, and home again.
QPainterPath squares(double side, double step, int count)
{
    QPainterPath path;
    for (int i = 0; i < count; ++i) {
        const QPointF corner(10 + 9 * i, 12 + 4 * i);
        path.moveTo(corner);
        for (double way = step; way < side; way += step)
            path.lineTo(corner + QPointF(way, 0));
        for (double way = 0; way < side; way += step)
            path.lineTo(corner + QPointF(side, way));
        for (double way = 0; way < side; way += step)
            path.lineTo(corner + QPointF(side - way, side));
        for (double way = 0; way < side; way += step)
            path.lineTo(corner + QPointF(0, side - way));
        path.closeSubpath();
    }
    return path;
}

QPainterPath randomLine(const QSizeF &reach, int points)
{
    std::mt19937 engine(1);
    std::uniform_real_distribution<double> part(-1, 1);
    QPainterPath path(QPointF(40, 30));
    for (int i = 1; i < points; ++i) {
        const double x = part(engine);
        path.lineTo(40 + x * reach.width(), 30 + part(engine) * reach.height());
    }
    return path;
}

QPainterPath pairs()
{
    QPainterPath path;
    for (int i = 0; i < 200; ++i) {
        path.moveTo(i % 50, i % 40);
        path.lineTo(80 - i % 31, i % 47);
    }
    return path;
}

// Lines that run along the edge of what is followed around a picture of 80 x 60, with a pen of 2 pixels, or touch its
// corners, each of them as long as one pattern and some more, and back in the picture after each.
QPainterPath aroundTheFrame()
{
    QPainterPath path(QPointF(40, 30));
    for (const int margin : {4, 16}) { // of dots and of dashes
        const QRectF frame(-margin, -margin, 80 + 2 * margin, 60 + 2 * margin);
        for (const double x : {frame.left(), frame.right()})
            for (int way = 5; way < 40; way += 4) {
                path.lineTo(x, 10);
                path.lineTo(x, 10 + way);
                path.lineTo(40, 20 + way);
            }
        for (const double y : {frame.top(), frame.bottom()})
            for (int way = 5; way < 40; way += 4) {
                path.lineTo(10, y);
                path.lineTo(10 + way, y);
                path.lineTo(30 + way, 30);
            }
        for (const QPointF &corner : {frame.topLeft(), frame.topRight(), frame.bottomLeft(), frame.bottomRight()})
            for (int way = 5; way < 40; way += 4) {
                const int down = (corner.x() < 0) == (corner.y() < 0) ? -1 : 1;
                path.lineTo(corner + QPointF(20, 20 * down));
                path.lineTo(corner - QPointF(way, way * down));
                path.lineTo(10 + way, 20);
            }
    }
    return path;
}

// Lines with nearly or just as many patterns as are painted, and with some more, of each style with a pen of 1.25 pixels.
QPainterPath longLines()
{
    QPainterPath path(QPointF(3, 3));
    int row = 0;
    for (const double pattern : {3.75, 7.5, 11.25, 15.0}) {
        for (const double count : {9400.0, 9999.75, 10000.0, 10000.5, 20000.0}) {
            path.lineTo(20, row);
            path.lineTo(20 + pattern * count, row);
            path.lineTo(30, row + 1.5);
            row += 3;
        }
    }
    return path;
}

// Lines across the picture that are longer than that, with short ones before them.
QPainterPath longAndShortLines()
{
    QPainterPath path(QPointF(3, 3));
    for (int i = 0; i < 14; ++i) {
        path.lineTo(5 + i, 10 + i % 17);
        path.lineTo(8 + i + (i % 7) * 1.5, 14 + i % 13);
        path.lineTo((i % 2 == 0 ? 1 : -1) * 160000.0, 9000.0 * (i % 5));
    }
    return path;
}

// Where a dash begins, the line has hardly any length left. Sides of a stroke of 195 64ths of a pixel that goes straight
// down from there lie where coordinates are rounded either way.
QPainterPath hardlyADash(double width, bool goesOn)
{
    QPainterPath path;
    for (int i = 0; i < 3; ++i) {
        const double x = 62 - i;
        const double end = x - 12 * width;
        path.moveTo(x, 10 + 9 * i);
        path.lineTo(end - 1e-14, 10 + 9 * i);
        if (goesOn)
            path.lineTo(end - 1e-14, 50 - i);
    }
    return path;
}

// Lines without length, where dashes begin and end as well as between.
QPainterPath standstill()
{
    QPainterPath path(QPointF(10, 10));
    for (int i = 1; i < 60; ++i) {
        const QPointF point(10 + (i % 9) * 6, 10 + (i / 9) * 6);
        path.lineTo(point);
        path.lineTo(1000, 1000);
        path.setElementPositionAt(path.elementCount() - 1, point.x(), point.y());
    }
    return path;
}

bool isStroked(const QPainterPath &path, const QPen &pen, const QPointF &offset = QPointF())
{
    QImage image(60, 50, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QImage before = image.copy();
    const bool result = KelPathPainter(&image, QPainter::Antialiasing).stroke(path, pen, offset);
    if (!result && image != before)
        qFatal("Painted, but did not say so");
    return result;
}

} // namespace

class tst_PathPainter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void randomPaths();
    void randomPathsOnLargeImages();
    void whatIsLeftToThePlainForm_data();
    void whatIsLeftToThePlainForm();
    void areasLeftToThePlainForm();
    void seamOfAClosedLine_data();
    void seamOfAClosedLine();
    void piecesThatEndWhereTheLineEnds_data();
    void piecesThatEndWhereTheLineEnds();
    void piecesOfLinesThatComeBack_data();
    void piecesOfLinesThatComeBack();
    void dashes_data();
    void dashes();
    void colorsOneAfterTheOther();
    void largePictures_data();
    void largePictures();
    void memoryDoesNotGrowWithTheOutline_data();
    void memoryDoesNotGrowWithTheOutline();

private:
    static void compare(const Scene &scene, int seed, int *strokes, int *fills);
};

void tst_PathPainter::compare(const Scene &scene, int seed, int *strokes, int *fills)
{
    QImage stroked = blank(scene);
    KelPathPainter strokePainter(&stroked, hints(scene), segmentsPerPiece(seed));
    if (strokePainter.stroke(scene.path, scene.pen, scene.offset)) {
        ++*strokes;
        const QImage expected = plainStroke(scene);
        QVERIFY2(stroked == expected,
                 qPrintable(QStringLiteral("Stroke, %1: ").arg(name(scene, seed)) + firstDifference(stroked, expected)));
    }
    QImage filled = blank(scene);
    if (KelPathPainter(&filled, hints(scene)).fill(scene.path, scene.brush, scene.offset)) {
        ++*fills;
        const QImage expected = plainFill(scene);
        QVERIFY2(filled == expected,
                 qPrintable(QStringLiteral("Fill, %1: ").arg(name(scene, seed)) + firstDifference(filled, expected)));
    }
}

void tst_PathPainter::randomPaths()
{
    const int first = int(KelTestSupport::randomSeed(1));
    const int cases = KelTestSupport::randomCases(RANDOM_CASES);
    int strokes = 0;
    int fills = 0;
    for (int seed = first; seed < first + cases; ++seed) {
        compare(Random(seed).scene(), seed, &strokes, &fills);
        if (QTest::currentTestFailed())
            return;
    }
    // Otherwise there is nothing that was compared.
    QVERIFY(strokes > cases / 2);
    QVERIFY(fills > cases / 2);
}

void tst_PathPainter::randomPathsOnLargeImages()
{
    int strokes = 0;
    int fills = 0;
    for (int seed = 1; seed <= 3; ++seed) {
        Random random(1000000 + seed);
        Scene scene = random.scene();
        scene.size = QSize(random.integer(200, 600), random.integer(200, 500));
        for (int i = 0; i < 3; ++i)
            random.addLine(&scene.path, scene.size, 1000);
        scene.pen.setStyle(Qt::SolidLine);
        scene.pen.setWidthF(random.real(1.1, 30));
        compare(scene, seed, &strokes, &fills);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(strokes, 3);
}

void tst_PathPainter::whatIsLeftToThePlainForm_data()
{
    QTest::addColumn<QPainterPath>("path");
    QTest::addColumn<QPen>("pen");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<bool>("stroked");

    QTest::newRow("long line") << zigzag(400) << roundPen(4) << QPointF() << true;
    QTest::newRow("short line") << zigzag(50) << roundPen(4) << QPointF() << true;
    QTest::newRow("thin pen") << zigzag(400) << roundPen(1) << QPointF() << false;
    QPen pen = roundPen(4);
    pen.setStyle(Qt::DotLine);
    QTest::newRow("dotted pen") << zigzag(400) << pen << QPointF() << true;
    QTest::newRow("dotted pen, short line") << zigzag(3) << pen << QPointF() << true;
    pen.setDashOffset(1);
    QTest::newRow("dotted pen that begins later") << zigzag(400) << pen << QPointF() << false;
    pen = roundPen(4);
    pen.setDashPattern({1, 2});
    QTest::newRow("pen with dashes of a host's own") << zigzag(400) << pen << QPointF() << false;
    pen = roundPen(1);
    pen.setStyle(Qt::DotLine);
    QTest::newRow("thin dotted pen") << zigzag(400) << pen << QPointF() << false;
    pen = roundPen(4);
    pen.setJoinStyle(Qt::MiterJoin);
    QTest::newRow("mitred pen") << zigzag(400) << pen << QPointF() << false;
    pen = roundPen(4);
    pen.setCapStyle(Qt::FlatCap);
    QTest::newRow("flat pen") << zigzag(400) << pen << QPointF() << false;
    pen = roundPen(4);
    pen.setCosmetic(true);
    QTest::newRow("cosmetic pen") << zigzag(400) << pen << QPointF() << false;
    pen = roundPen(4);
    pen.setBrush(QBrush(Qt::red, Qt::Dense4Pattern));
    QTest::newRow("patterned pen") << zigzag(400) << pen << QPointF() << false;
    QTest::newRow("moved beyond what rasterizers bear") << zigzag(400) << roundPen(4) << QPointF(5e6, 0) << false;
    QPainterPath path = zigzag(400);
    path.lineTo(0, -5e6);
    QTest::newRow("line beyond what rasterizers bear") << path << roundPen(4) << QPointF() << false;
    path = zigzag(400);
    path.cubicTo(1, 2, 3, 4, 5, 6);
    QTest::newRow("curve in a long line") << path << roundPen(4) << QPointF() << false;
    path = zigzag(400);
    path.lineTo(5, 5 + 1e-13);
    QTest::newRow("long line, nearly closed") << path << roundPen(4) << QPointF() << false;
    path.lineTo(5, 5);
    path = zigzag(400);
    path.lineTo(5, 5);
    QTest::newRow("closed") << path << roundPen(4) << QPointF() << true;
    path = QPainterPath();
    for (int i = 0; i < 200; ++i) {
        path.moveTo(i % 50, i % 40);
        path.lineTo(i % 50 + 3, i % 40 + 5);
    }
    QTest::newRow("nothing but single lines") << path << roundPen(4) << QPointF() << false;
    pen = roundPen(4);
    pen.setStyle(Qt::DashLine);
    QTest::newRow("nothing but single dashed lines") << path << pen << QPointF() << true;
    path = zigzag(20);
    path.cubicTo(1, 2, 3, 4, 5, 6);
    QTest::newRow("dashed curve") << path << pen << QPointF() << false;
    path = zigzag(20);
    path.lineTo(40, 40);
    path.setElementPositionAt(path.elementCount() - 1, path.elementAt(19).x + 1e-13, path.elementAt(19).y);
    QTest::newRow("dashed line with points that are nearly equal") << path << pen << QPointF() << false;
}

void tst_PathPainter::whatIsLeftToThePlainForm()
{
    QFETCH(QPainterPath, path);
    QFETCH(QPen, pen);
    QFETCH(QPointF, offset);
    QFETCH(bool, stroked);
    QCOMPARE(isStroked(path, pen, offset), stroked);
}

void tst_PathPainter::areasLeftToThePlainForm()
{
    QImage image(60, 50, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QImage before = image.copy();
    KelPathPainter painter(&image, QPainter::Antialiasing);
    QVERIFY(!painter.fill(zigzag(400), QBrush(Qt::red, Qt::Dense4Pattern), QPointF()));
    QVERIFY(!painter.fill(zigzag(400), QBrush(), QPointF()));
    QVERIFY(!painter.fill(zigzag(400), QBrush(Qt::red), QPointF(0, 5e6)));
    QVERIFY(!painter.fill(QPainterPath(), QBrush(Qt::red), QPointF()));
    QCOMPARE(image, before);
    QVERIFY(painter.fill(zigzag(40), QBrush(Qt::red), QPointF()));
    QVERIFY(image != before);
}

void tst_PathPainter::seamOfAClosedLine_data()
{
    QTest::addColumn<double>("start");
    for (int i = 0; i < 8; ++i)
        QTest::addRow("beginning at %d degrees", i * 45) << i * 45.0;
}

// A ring of which each stripe sees but a part; a join where it closes looks unlike two caps in a translucent colour only
// when painted twice, and unlike flat ends always.
void tst_PathPainter::seamOfAClosedLine()
{
    QFETCH(double, start);
    for (const int points : {300, 2000}) {
        QPainterPath path;
        for (int i = 0; i < points; ++i) {
            const double angle = start * PI / 180 + 2 * PI * i / points;
            const double radius = 150 + (i % 2 == 0 ? 0.0 : 2.5);
            const QPointF point(200 + radius * std::cos(angle), 190 + radius * std::sin(angle));
            i == 0 ? path.moveTo(point) : path.lineTo(point);
        }
        path.closeSubpath();
        for (const double width : {1.5, 6.0, 25.0}) {
            for (const bool antialiased : {true, false}) {
                const Scene scene{QSize(400, 380), path, roundPen(width), QBrush(Qt::green), QPointF(), antialiased};
                int strokes = 0;
                int fills = 0;
                compare(scene, points, &strokes, &fills);
                if (QTest::currentTestFailed())
                    return;
                QCOMPARE(strokes, 1);
            }
        }
    }
}

void tst_PathPainter::piecesThatEndWhereTheLineEnds_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 10; ++seed)
        QTest::addRow("walk %d", seed) << seed;
}

// To and fro in small steps on a line that is nearly straight, under a wide pen: sooner or later a cut would be where the
// line's end is, too. A piece that ends where it begins is painted closed, with a join instead of two ends.
void tst_PathPainter::piecesThatEndWhereTheLineEnds()
{
    QFETCH(int, seed);
    Random random(seed);
    const double step = random.real(0.5, 4);
    QPainterPath path(QPointF(40, 30));
    QPointF point(40, 30);
    for (int i = random.integer(280, 400); i > 0; --i) {
        point += QPointF(random.oneIn(2) ? step : -step, 0);
        point.setY(30 + 0.01 * step * (qRound(point.x() / step) % 3));
        path.lineTo(point);
    }
    const Scene scene{QSize(80, 60), path, roundPen(20.5), QBrush(), QPointF(), true};
    const QImage expected = plainStroke(scene);
    for (int segments = 18; segments < 24; ++segments) {
        QImage actual = blank(scene);
        QVERIFY(KelPathPainter(&actual, hints(scene), segments).stroke(path, scene.pen, scene.offset));
        QVERIFY2(actual == expected, qPrintable(QString::number(segments) + firstDifference(actual, expected)));
    }
}

void tst_PathPainter::piecesOfLinesThatComeBack_data()
{
    QTest::addColumn<int>("period");
    for (const int period : {2, 3, 5, 6, 10, 19})
        QTest::addRow("every %d points", period) << period;
}

// Pieces that end where they begin would be closed by Qt.
void tst_PathPainter::piecesOfLinesThatComeBack()
{
    QFETCH(int, period);
    for (const int points : {300, 301, 307}) {
        for (const bool closed : {false, true}) {
            QPainterPath path(QPointF(20, 20));
            for (int i = 1; i < points; ++i) {
                const int step = i % period;
                path.lineTo(20 + step * 3, 20 + (step % 2) * 9 + (step * step) % 7);
            }
            if (closed)
                path.closeSubpath();
            const Scene scene{QSize(80, 60), path, roundPen(3.5), QBrush(), QPointF(), points % 2 == 0};
            const QImage expected = plainStroke(scene);
            for (const int segments : {18, 19, 24, 100}) {
                QImage actual = blank(scene);
                QVERIFY(KelPathPainter(&actual, hints(scene), segments).stroke(path, scene.pen, scene.offset));
                QVERIFY2(actual == expected, qPrintable(firstDifference(actual, expected)));
            }
        }
    }
}

void tst_PathPainter::dashes_data()
{
    QTest::addColumn<QPainterPath>("path");
    QTest::addColumn<double>("width");

    QTest::newRow("long line") << zigzag(400) << 3.0;
    QTest::newRow("short line") << zigzag(20) << 2.5;
    QPainterPath path(QPointF(5, 7));
    path.lineTo(70, 50);
    QTest::newRow("single line") << path << 2.0;
    QTest::newRow("single lines") << pairs() << 2.0;
    QTest::newRow("dashes that end in corners") << squares(24, 24, 4) << 2.0;
    QTest::newRow("dashes that end where lines do") << squares(24, 6, 4) << 3.0;
    QTest::newRow("dashes that come back to their begin") << squares(10, 10, 3) << 10.0;
    QTest::newRow("dots that come back to their begin") << squares(8, 8, 3) << 32.0;
    QTest::newRow("dashes of many lines that come back to their begin") << squares(20, 0.5, 2) << 20.0;
    QTest::newRow("dots of many lines that come back to their begin") << squares(10, 0.25, 2) << 40.0;
    QTest::newRow("dash as long as a closed line of many lines") << squares(20, 0.5, 2) << 90.0;
    QTest::newRow("dashes of many lines") << randomLine(QSizeF(0.5, 0.6), 3000) << 30.0;
    QTest::newRow("mostly outside of the picture") << randomLine(QSizeF(500, 400), 300) << 2.7;
    QTest::newRow("mostly outside, whole numbers") << squares(90, 45, 20) << 3.0;
    QTest::newRow("more dashes than are painted") << randomLine(QSizeF(90000, 50000), 40) << 1.1;
    QTest::newRow("dashes between lines with more than are painted") << randomLine(QSizeF(35000, 20000), 300) << 1.2;
    QTest::newRow("along the edge of what is followed") << aroundTheFrame() << 2.0;
    QTest::newRow("about as many dashes as are painted") << longLines() << 1.25;
    QTest::newRow("long lines between short ones") << longAndShortLines() << 1.25;
    QTest::newRow("dashes that begin where the line ends") << hardlyADash(3.0, false) << 3.0;
    QTest::newRow("dashes that begin in a corner") << hardlyADash(195 / 64.0, true) << 195 / 64.0;
    QTest::newRow("lines without length") << standstill() << 3.0;
    QTest::newRow("nothing but points") << QPainterPath(QPointF(20, 20)) << 3.0;
}

// Dashes are put where QPainter puts them, in lines that are difficult for this.
void tst_PathPainter::dashes()
{
    QFETCH(QPainterPath, path);
    QFETCH(double, width);
    const QRectF bounds = path.controlPointRect();
    for (const Qt::PenStyle style : {Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine}) {
        for (const QPointF &offset : {QPointF(), QPointF(3.3, -4.7), QPointF(-12, 11)}) {
            for (const bool antialiased : {true, false}) {
                const Scene scene{QSize(80, 60), path, roundPen(width, style), QBrush(), offset, antialiased};
                const QImage expected = plainStroke(scene);
                QVERIFY(expected != blank(scene) || path.elementCount() < 2);
                for (const int segments : {18, 100, KelPathPainter::SEGMENTS_PER_PIECE}) {
                    QImage actual = blank(scene);
                    const bool stroked = KelPathPainter(&actual, hints(scene), segments).stroke(path, scene.pen, offset);
                    QVERIFY(stroked || (!antialiased && bounds.right() > FARTHEST_ALIASED));
                    if (!stroked)
                        continue;
                    QVERIFY2(actual == expected,
                             qPrintable(QStringLiteral("Style %1, %2 segments: ").arg(style).arg(segments)
                                        + firstDifference(actual, expected)));
                }
            }
        }
    }
}

// An invalid colour paints as QPainter takes it, be it the first or a later one.
void tst_PathPainter::colorsOneAfterTheOther()
{
    const QPainterPath path = zigzag(50);
    Scene scene{QSize(100, 100), path, roundPen(4), QBrush(), QPointF(), true};
    const QList<QColor> colors{QColor(), QColor(Qt::red), QColor(), QColor(255, 0, 0, 254), QColor(0, 0, 0, 0), QColor(Qt::red)};
    QImage stroked = blank(scene);
    QImage filled = blank(scene);
    KelPathPainter strokePainter(&stroked, hints(scene));
    KelPathPainter fillPainter(&filled, hints(scene));
    QImage expectedStroke = blank(scene);
    QImage expectedFill = blank(scene);
    for (const QColor &color : colors) {
        scene.pen.setColor(color);
        scene.brush = QBrush(color);
        QVERIFY(strokePainter.stroke(path, scene.pen, scene.offset));
        QVERIFY(fillPainter.fill(path, scene.brush, scene.offset));
        for (QImage *image : {&expectedStroke, &expectedFill}) {
            QPainter painter(image);
            painter.setRenderHints(hints(scene));
            if (image == &expectedStroke)
                painter.strokePath(path, scene.pen);
            else
                painter.fillPath(path, scene.brush);
        }
        QVERIFY2(stroked == expectedStroke, qPrintable(color.name(QColor::HexArgb) + firstDifference(stroked, expectedStroke)));
        QVERIFY2(filled == expectedFill, qPrintable(color.name(QColor::HexArgb) + firstDifference(filled, expectedFill)));
    }
}

void tst_PathPainter::largePictures_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("painted");
    QTest::newRow("as wide as can be") << QSize(32767, 3) << true;
    QTest::newRow("wider") << QSize(32768, 3) << false;
    QTest::newRow("as high as can be") << QSize(3, 32767) << true;
    QTest::newRow("higher") << QSize(3, 32768) << false;
}

// Beyond 16 bits the aliased rasterizer has its own idea of the right side; lines beyond 15 bits are left to it anyway.
void tst_PathPainter::largePictures()
{
    QFETCH(QSize, size);
    QFETCH(bool, painted);
    for (const bool antialiased : {true, false}) {
        const int right = antialiased ? size.width() : std::min(size.width(), 16000);
        QPainterPath path(QPointF(-5, -5));
        for (int i = 1; i < 300; ++i)
            path.lineTo(right - (i * 7) % 40, size.height() - (i * 11) % 30);
        const Scene scene{size, path, roundPen(3.5), QBrush(QColor(0, 200, 0, 90)), QPointF(), antialiased};
        int strokes = 0;
        int fills = 0;
        compare(scene, 1, &strokes, &fills);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(strokes, painted ? 1 : 0);
        QCOMPARE(fills, painted ? 1 : 0);
    }
}

void tst_PathPainter::memoryDoesNotGrowWithTheOutline_data()
{
    QTest::addColumn<Qt::PenStyle>("style");
    QTest::addColumn<int>("points");
    QTest::newRow("solid") << Qt::SolidLine << 200000;
    QTest::newRow("dots") << Qt::DotLine << 50000;
    QTest::newRow("dashes") << Qt::DashLine << 50000;
}

// The outline of a stroke takes some hundreds of bytes for each segment, and for each dash.
void tst_PathPainter::memoryDoesNotGrowWithTheOutline()
{
    if (!KelMemoryLimit::IS_POSSIBLE)
        QSKIP("Not with sanitizers");
    QFETCH(Qt::PenStyle, style);
    QFETCH(int, points);
    Random random(1);
    const QSize size(60, 50);
    QPainterPath path(QPointF(30, 25));
    for (int i = 0; i < points; ++i)
        path.lineTo(random.real(0, size.width()), random.real(0, size.height()));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    // Memory that is free already would hide what is taken.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    KelPathPainter painter(&image, QPainter::Antialiasing);
    QVERIFY(painter.stroke(zigzag(4000), roundPen(2, style), QPointF())); // with all threads that there will be
    const KelMemoryLimit limit(16 * 1024 * 1024);
    QVERIFY(painter.stroke(path, roundPen(2, style), QPointF()));
}

QTEST_MAIN(tst_PathPainter)
#include "tst_PathPainter.moc"

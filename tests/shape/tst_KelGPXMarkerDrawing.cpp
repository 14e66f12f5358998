// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXMarkerShape.h>

#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>
#include <QtMath>
#include <QtTest>

#include <cstdlib>

namespace
{

const QColor penColor(200, 30, 30);
const QColor fillColor(30, 30, 200);

/// Opens the drawing steps to the test.
class Marker : public KelGPXMarkerShape
{
public:
    using KelGPXMarkerShape::KelGPXMarkerShape;
    using KelGPXMarkerShape::configurePainter;
    using KelGPXMarkerShape::drawBlock;
    using KelGPXMarkerShape::drawRhombus;
    using KelGPXMarkerShape::drawShape;
    using KelGPXMarkerShape::drawStar;
    using KelGPXMarkerShape::drawX;
    using KelGPXMarkerShape::targetRect;
};

template <typename Draw>
QImage picture(Draw draw, const QSize &size = QSize(120, 100))
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(&painter);
    return image;
}

/// A last bit in a coordinate may move an edge by the rasteriser's smallest step, 1/64 of a pixel or 4 of 256 levels,
/// and two edges may meet in one pixel.
constexpr int rasterStep = 8;

/// The greatest difference of one channel in one pixel.
int difference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return 256;
    int result = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            result = std::max({result, std::abs(qAlpha(p) - qAlpha(q)), std::abs(qRed(p) - qRed(q)),
                               std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return result;
}

bool alike(const QImage &a, const QImage &b)
{
    return difference(a, b) <= rasterStep;
}

enum Form { Ellipse, Block, Rhombus, Cross, Star6, Star9, Star12 };

void drawPath(QPainter *painter, const QPolygonF &corners)
{
    QPainterPath path(corners.first());
    for (int i = 1; i < corners.size(); ++i)
        path.lineTo(corners[i]);
    path.closeSubpath();
    painter->fillPath(path, painter->brush());
    painter->drawPath(path);
}

/// Tips in steps of 360° / rays, the notches half-way between them, one notch straight below the centre.
QPolygonF starCorners(const QRectF &rect, int rays, double innerRatio)
{
    QPolygonF corners;
    for (int ray = 0; ray < rays; ++ray) {
        const double notch = qDegreesToRadians(360.0 * ray / rays);
        const double tip = qDegreesToRadians(360.0 * ray / rays + 180.0 / rays);
        const QPointF center = rect.center();
        corners << center + QPointF(rect.width() * innerRatio / 2 * qSin(notch),
                                    rect.height() * innerRatio / 2 * qCos(notch))
                << center + QPointF(rect.width() / 2 * qSin(tip), rect.height() / 2 * qCos(tip));
    }
    corners << corners.first();
    return corners;
}

QPolygonF crossCorners(const QRectF &r, const QSize &cut)
{
    const double dx = r.width() / 5;
    const double dy = r.height() / 5;
    const QPointF right(cut.width(), 0);
    const QPointF down(0, cut.height());
    const QPointF center = r.center();
    return QPolygonF() << r.topLeft() + right << r.topLeft() + down << center - QPointF(dx, 0)
                       << r.bottomLeft() - down << r.bottomLeft() + right << center + QPointF(0, dy)
                       << r.bottomRight() - right << r.bottomRight() - down << center + QPointF(dx, 0)
                       << r.topRight() + down << r.topRight() - right << center - QPointF(0, dy);
}

/// What a marker is to look like, from primitives only.
void drawReference(QPainter *painter, Form form, const QRectF &rect, const QSize &cut)
{
    painter->setRenderHint(QPainter::Antialiasing);
    switch (form) {
    case Ellipse:
        painter->drawEllipse(rect);
        break;
    case Block:
        painter->fillRect(rect, painter->brush());
        painter->drawRect(rect);
        break;
    case Rhombus:
        drawPath(painter, QPolygonF() << QPointF(rect.center().x(), rect.top())
                                      << QPointF(rect.left(), rect.center().y())
                                      << QPointF(rect.center().x(), rect.bottom())
                                      << QPointF(rect.right(), rect.center().y()));
        break;
    case Cross:
        drawPath(painter, crossCorners(rect, cut));
        break;
    case Star6:
        painter->drawPolygon(starCorners(rect, 6, 0.5), Qt::WindingFill);
        break;
    case Star9:
        painter->drawPolygon(starCorners(rect, 9, 0.3), Qt::WindingFill);
        break;
    case Star12:
        painter->drawPolygon(starCorners(rect, 12, 0.7), Qt::WindingFill);
        break;
    }
}

QImage filledMarker(int marker, double radius, const QSize &size)
{
    return picture(
        [&](QPainter *painter) {
            painter->setPen(QPen(fillColor, 0));
            painter->setBrush(fillColor);
            KelGPXMarkerShape(marker).draw(painter, QPointF(size.width() / 2.0, size.height() / 2.0), radius, radius);
        },
        size);
}

int alphaAt(const QImage &image, double angleInDegrees, double radius)
{
    const double angle = qDegreesToRadians(angleInDegrees);
    return qAlpha(image.pixel(qFloor(image.width() / 2.0 + radius * qSin(angle)),
                              qFloor(image.height() / 2.0 + radius * qCos(angle))));
}

} // namespace

Q_DECLARE_METATYPE(Form)

class tst_KelGPXMarkerDrawing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void targetRect_data();
    void targetRect();
    void outlinePen_data();
    void outlinePen();
    void drawsItsForm_data();
    void drawsItsForm();
    void crossIsCutAtWholePixels_data();
    void crossIsCutAtWholePixels();
    void stepsDrawIntoTheirRectangle();
    void fullPenReachesBeyondTheRadius();
    void thinOutlineOnAGrownRadius();
    void outlineStaysOnePixelWhenScaled();
    void translucentBrush_data();
    void translucentBrush();
    void starHasItsRays_data();
    void starHasItsRays();
    void notchIsBelowTheCentre();
    void painterComesBackAsItWas();
    void image_data();
    void image();
    void emptyImage();
    void icon_data();
    void icon();
    void noIcon_data();
    void noIcon();
};

void tst_KelGPXMarkerDrawing::targetRect_data()
{
    QTest::addColumn<QPointF>("center");
    QTest::addColumn<double>("rx");
    QTest::addColumn<double>("ry");
    QTest::addColumn<QRectF>("rect");

    QTest::newRow("around the origin") << QPointF(0, 0) << 3.0 << 2.0 << QRectF(-3, -2, 6, 4);
    QTest::newRow("fractions stay") << QPointF(10.25, 20.5) << 1.5 << 0.25 << QRectF(8.75, 20.25, 3, 0.5);
    QTest::newRow("no radius") << QPointF(4, 5) << 0.0 << 0.0 << QRectF(4, 5, 0, 0);
    QTest::newRow("negative radius turns the rectangle over") << QPointF(0, 0) << -1.0 << 1.0 << QRectF(1, -1, -2, 2);
}

void tst_KelGPXMarkerDrawing::targetRect()
{
    QFETCH(QPointF, center);
    QFETCH(double, rx);
    QFETCH(double, ry);
    QFETCH(QRectF, rect);

    QCOMPARE(Marker(MarkerX).targetRect(center, rx, ry), rect);
}

void tst_KelGPXMarkerDrawing::outlinePen_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<double>("penWidth");
    QTest::addColumn<double>("outlineWidth");
    QTest::addColumn<bool>("cosmetic");

    QTest::newRow("width 9 becomes a cosmetic pixel") << 2 << 9.0 << 1.0 << true;
    QTest::newRow("width 10 becomes 2") << 2 << 10.0 << 2.0 << false;
    QTest::newRow("width 9.4 counts as 9") << 2 << 9.4 << 1.0 << true;
    QTest::newRow("width 9.5 counts as 10") << 2 << 9.5 << 2.0 << false;
    QTest::newRow("width 14 becomes 2") << 64 << 14.0 << 2.0 << false;
    QTest::newRow("width 15 becomes 3") << 64 << 15.0 << 3.0 << false;
    QTest::newRow("width 100 becomes 20") << 256 << 100.0 << 20.0 << false;
    QTest::newRow("width 1") << 8 << 1.0 << 1.0 << true;
    QTest::newRow("width 0") << 32 << 0.0 << 1.0 << true;
    QTest::newRow("unknown is thin") << 0 << 5.0 << 1.0 << true;
    QTest::newRow("arrow is thin") << 1024 << 20.0 << 4.0 << false;
    QTest::newRow("disk keeps its pen") << 1 << 5.0 << 5.0 << false;
    QTest::newRow("disk keeps a wide pen") << 1 << 10.0 << 10.0 << false;
    QTest::newRow("block keeps its pen") << 16 << 9.0 << 9.0 << false;
    QTest::newRow("a combination with disk keeps its pen") << 129 << 10.0 << 10.0 << false;
    QTest::newRow("a combination with block keeps its pen") << 24 << 3.0 << 3.0 << false;
    QTest::newRow("a combination with neither does not") << 10 << 10.0 << 2.0 << false;
}

void tst_KelGPXMarkerDrawing::outlinePen()
{
    QFETCH(int, marker);
    QFETCH(double, penWidth);
    QFETCH(double, outlineWidth);
    QFETCH(bool, cosmetic);

    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    const QPen pen(penColor, penWidth, Qt::DashLine, Qt::RoundCap, Qt::MiterJoin);
    painter.setPen(pen);
    Marker(marker).configurePainter(&painter);

    QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
    QCOMPARE(painter.pen().widthF(), outlineWidth);
    QCOMPARE(painter.pen().isCosmetic(), cosmetic);
    QCOMPARE(painter.pen().color(), penColor);
    QCOMPARE(painter.pen().style(), Qt::DashLine);
    QCOMPARE(painter.pen().capStyle(), Qt::RoundCap);
    QCOMPARE(painter.pen().joinStyle(), Qt::MiterJoin);
}

void tst_KelGPXMarkerDrawing::drawsItsForm_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<double>("penWidth");
    QTest::addColumn<Form>("form");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QSize>("cut");
    QTest::addColumn<double>("outlineWidth");
    QTest::addColumn<bool>("cosmetic");

    // All are drawn at (60, 50) with the radii 30 and 20.
    const QRectF plain(30, 30, 60, 40);
    const QRectF by2(28, 28, 64, 44);
    const QRectF by4(26, 26, 68, 48);
    const QRectF by8(22, 22, 76, 56);
    const QSize none;

    QTest::newRow("unknown") << 0 << 5.0 << Ellipse << by2 << none << 1.0 << true;
    QTest::newRow("arrow") << 1024 << 5.0 << Ellipse << by2 << none << 1.0 << true;
    QTest::newRow("disk") << 1 << 5.0 << Ellipse << plain << none << 5.0 << false;
    QTest::newRow("disk, wide pen") << 1 << 10.0 << Ellipse << plain << none << 10.0 << false;
    QTest::newRow("circle") << 2 << 5.0 << Ellipse << by2 << none << 1.0 << true;
    QTest::newRow("circle, wide pen") << 2 << 10.0 << Ellipse << by4 << none << 2.0 << false;
    QTest::newRow("circle, pen rounded up") << 2 << 4.6 << Ellipse << by2 << none << 1.0 << true;
    QTest::newRow("circle, pen rounded down") << 2 << 5.4 << Ellipse << by2 << none << 1.0 << true;
    QTest::newRow("block") << 16 << 5.0 << Block << plain << none << 5.0 << false;
    QTest::newRow("block, wide pen") << 16 << 20.0 << Block << plain << none << 20.0 << false;
    QTest::newRow("rect") << 32 << 5.0 << Block << by2 << none << 1.0 << true;
    QTest::newRow("rect, wide pen") << 32 << 20.0 << Block << by8 << none << 4.0 << false;
    QTest::newRow("rhombus") << 64 << 5.0 << Rhombus << by2 << none << 1.0 << true;
    QTest::newRow("rhombus, wide pen") << 64 << 10.0 << Rhombus << by4 << none << 2.0 << false;
    QTest::newRow("x") << 8 << 5.0 << Cross << by2 << QSize(12, 8) << 1.0 << true;
    QTest::newRow("x, wide pen") << 8 << 10.0 << Cross << by4 << QSize(13, 9) << 2.0 << false;
    QTest::newRow("star6") << 128 << 5.0 << Star6 << by2 << none << 1.0 << true;
    QTest::newRow("star6, wide pen") << 128 << 20.0 << Star6 << by8 << none << 4.0 << false;
    QTest::newRow("star9") << 256 << 5.0 << Star9 << by2 << none << 1.0 << true;
    QTest::newRow("star12") << 512 << 5.0 << Star12 << by2 << none << 1.0 << true;
    QTest::newRow("star6 and star9 together") << 384 << 5.0 << Ellipse << by2 << none << 1.0 << true;
    QTest::newRow("disk and x together") << 9 << 5.0 << Ellipse << plain << none << 5.0 << false;
    QTest::newRow("block and rect together") << 48 << 5.0 << Ellipse << plain << none << 5.0 << false;
    QTest::newRow("the bit of no marker") << 4 << 5.0 << Ellipse << by2 << none << 1.0 << true;
}

void tst_KelGPXMarkerDrawing::drawsItsForm()
{
    QFETCH(int, marker);
    QFETCH(double, penWidth);
    QFETCH(Form, form);
    QFETCH(QRectF, rect);
    QFETCH(QSize, cut);
    QFETCH(double, outlineWidth);
    QFETCH(bool, cosmetic);

    const QImage actual = picture([&](QPainter *painter) {
        painter->setPen(QPen(penColor, penWidth));
        painter->setBrush(fillColor);
        KelGPXMarkerShape(marker).draw(painter, QPointF(60, 50), 30, 20);
    });
    const QImage expected = picture([&](QPainter *painter) {
        QPen pen(penColor, outlineWidth);
        pen.setCosmetic(cosmetic);
        painter->setPen(pen);
        painter->setBrush(fillColor);
        drawReference(painter, form, rect, cut);
    });

    QVERIFY2(alike(actual, expected), qPrintable(QString::number(difference(actual, expected))));
    QCOMPARE(actual.pixelColor(60, 50), fillColor);
    QCOMPARE(actual.pixelColor(2, 2).alpha(), 0);
}

void tst_KelGPXMarkerDrawing::crossIsCutAtWholePixels_data()
{
    QTest::addColumn<double>("radiusX");
    QTest::addColumn<double>("radiusY");
    QTest::addColumn<QSize>("cut");

    QTest::newRow("a fifth of 8 is cut to 1") << 4.0 << 4.0 << QSize(1, 1);
    QTest::newRow("a fifth of 4 is cut to 0") << 2.0 << 2.0 << QSize(0, 0);
    QTest::newRow("a fifth of 10 is whole") << 5.0 << 5.0 << QSize(2, 2);
    QTest::newRow("each direction has its own") << 7.0 << 12.0 << QSize(2, 4);
}

void tst_KelGPXMarkerDrawing::crossIsCutAtWholePixels()
{
    QFETCH(double, radiusX);
    QFETCH(double, radiusY);
    QFETCH(QSize, cut);

    // A pen of width 0 lets nothing grow.
    QPen outline(penColor, 1);
    outline.setCosmetic(true);
    const QImage actual = picture([&](QPainter *painter) {
        painter->setPen(QPen(penColor, 0));
        painter->setBrush(fillColor);
        KelGPXMarkerShape(MarkerX).draw(painter, QPointF(60, 50), radiusX, radiusY);
    });
    const QImage expected = picture([&](QPainter *painter) {
        painter->setPen(outline);
        painter->setBrush(fillColor);
        const QRectF rect(60 - radiusX, 50 - radiusY, 2 * radiusX, 2 * radiusY);
        drawReference(painter, Cross, rect, cut);
    });
    QVERIFY2(alike(actual, expected), qPrintable(QString::number(difference(actual, expected))));
}

void tst_KelGPXMarkerDrawing::stepsDrawIntoTheirRectangle()
{
    const QRectF rect(20, 10, 80, 60);
    const auto prepare = [](QPainter *painter) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(penColor, 3));
        painter->setBrush(fillColor);
    };
    const auto reference = [&](Form form, const QSize &cut = QSize()) {
        return picture([&](QPainter *painter) {
            prepare(painter);
            drawReference(painter, form, rect, cut);
        });
    };
    const auto step = [&](auto draw) {
        return picture([&](QPainter *painter) {
            prepare(painter);
            draw(Marker(), painter);
        });
    };

    QVERIFY(alike(step([&](Marker m, QPainter *p) { m.drawRhombus(p, rect); }), reference(Rhombus)));
    QVERIFY(alike(step([&](Marker m, QPainter *p) { m.drawBlock(p, rect); }), reference(Block)));
    QVERIFY(alike(step([&](Marker m, QPainter *p) { m.drawX(p, rect); }), reference(Cross, QSize(16, 12))));
    QVERIFY(alike(step([&](Marker m, QPainter *p) { m.drawStar(p, rect, 9, 0.3); }), reference(Star9)));
    QVERIFY(alike(step([&](Marker, QPainter *p) { Marker(MarkerStar12).drawShape(p, rect); }), reference(Star12)));

    const QImage fourRays = picture([&](QPainter *painter) {
        prepare(painter);
        painter->drawPolygon(starCorners(rect, 4, 0.25), Qt::WindingFill);
    });
    QVERIFY(alike(step([&](Marker m, QPainter *p) { m.drawStar(p, rect, 4, 0.25); }), fourRays));
}

void tst_KelGPXMarkerDrawing::fullPenReachesBeyondTheRadius()
{
    const QImage image = picture([](QPainter *painter) {
        painter->setPen(QPen(penColor, 10));
        painter->setBrush(fillColor);
        KelGPXMarkerShape(MarkerDisk).draw(painter, QPointF(60, 50), 20, 20);
    });
    QCOMPARE(image.pixelColor(73, 50), fillColor);
    QCOMPARE(image.pixelColor(76, 50), penColor);
    QCOMPARE(image.pixelColor(83, 50), penColor);
    QCOMPARE(image.pixelColor(86, 50).alpha(), 0);
}

void tst_KelGPXMarkerDrawing::thinOutlineOnAGrownRadius()
{
    const QImage image = picture([](QPainter *painter) {
        painter->setPen(QPen(penColor, 10));
        painter->setBrush(fillColor);
        KelGPXMarkerShape(MarkerRect).draw(painter, QPointF(60, 50), 20, 20);
    });
    // 20 and four tenths of 10 make 24; the outline of 2 covers the pixels 83 and 84.
    QCOMPARE(image.pixelColor(82, 50), fillColor);
    QCOMPARE(image.pixelColor(83, 50), penColor);
    QCOMPARE(image.pixelColor(84, 50), penColor);
    QCOMPARE(image.pixelColor(85, 50).alpha(), 0);
}

void tst_KelGPXMarkerDrawing::outlineStaysOnePixelWhenScaled()
{
    const auto scaled = [](auto draw) {
        return picture([&](QPainter *painter) {
            painter->scale(4, 4);
            painter->setBrush(fillColor);
            draw(painter);
        });
    };
    const auto reference = [&](bool cosmetic) {
        return scaled([&](QPainter *painter) {
            QPen pen(penColor, 1);
            pen.setCosmetic(cosmetic);
            painter->setPen(pen);
            drawReference(painter, Block, QRectF(3, 3, 20, 20), QSize());
        });
    };
    const QImage actual = scaled([](QPainter *painter) {
        painter->setPen(QPen(penColor, 5));
        KelGPXMarkerShape(MarkerRect).draw(painter, QPointF(13, 13), 8, 8);
    });
    QCOMPARE(difference(actual, reference(true)), 0);
    QVERIFY(difference(actual, reference(false)) > 100);
}

void tst_KelGPXMarkerDrawing::translucentBrush_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<int>("alpha");

    // Alpha 128 once, or 128 over 128: 128 + 128 × 127 / 255.
    QTest::newRow("rhombus fills twice") << 64 << 192;
    QTest::newRow("x fills twice") << 8 << 192;
    QTest::newRow("block fills twice") << 16 << 192;
    QTest::newRow("rect fills twice") << 32 << 192;
    QTest::newRow("disk fills once") << 1 << 128;
    QTest::newRow("circle fills once") << 2 << 128;
    QTest::newRow("star6 fills once") << 128 << 128;
    QTest::newRow("star9 fills once") << 256 << 128;
    QTest::newRow("star12 fills once") << 512 << 128;
}

void tst_KelGPXMarkerDrawing::translucentBrush()
{
    QFETCH(int, marker);
    QFETCH(int, alpha);

    const QImage image = picture([&](QPainter *painter) {
        painter->setPen(QPen(penColor, 5));
        painter->setBrush(QColor(0, 0, 255, 128));
        KelGPXMarkerShape(marker).draw(painter, QPointF(60, 50), 30, 30);
    });
    const int actual = image.pixelColor(60, 50).alpha();
    QVERIFY2(std::abs(actual - alpha) <= 1, qPrintable(QString::number(actual)));
}

void tst_KelGPXMarkerDrawing::starHasItsRays_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<int>("rays");
    QTest::addColumn<double>("innerRatio");

    QTest::newRow("star6") << 128 << 6 << 0.5;
    QTest::newRow("nine slender rays") << 256 << 9 << 0.3;
    QTest::newRow("twelve short rays") << 512 << 12 << 0.7;
}

void tst_KelGPXMarkerDrawing::starHasItsRays()
{
    QFETCH(int, marker);
    QFETCH(int, rays);
    QFETCH(double, innerRatio);

    constexpr double radius = 100;
    const QImage image = filledMarker(marker, radius, QSize(240, 240));

    // Once around between notches and tips: every ray begins once.
    int begun = 0;
    const double between = radius * (1 + innerRatio) / 2;
    for (int tenth = 0; tenth < 3600; ++tenth) {
        if (alphaAt(image, tenth / 10.0, between) < 128 && alphaAt(image, (tenth + 1) / 10.0, between) >= 128)
            ++begun;
    }
    QCOMPARE(begun, rays);

    for (int ray = 0; ray < rays; ++ray) {
        const double notch = 360.0 * ray / rays;
        QVERIFY(alphaAt(image, notch, radius * innerRatio - 3) > 128);
        QCOMPARE(alphaAt(image, notch, radius * innerRatio + 4), 0);
        const double tip = notch + 180.0 / rays;
        QVERIFY(alphaAt(image, tip, radius - 8) > 128);
        QCOMPARE(alphaAt(image, tip, radius + 4), 0);
    }
}

void tst_KelGPXMarkerDrawing::notchIsBelowTheCentre()
{
    const QImage image = filledMarker(MarkerStar6, 40, QSize(100, 100));
    QCOMPARE(qAlpha(image.pixel(50, 67)), 255);
    QCOMPARE(qAlpha(image.pixel(50, 74)), 0);
    // With six rays there are tips to the left and to the right.
    QVERIFY(qAlpha(image.pixel(50 + 36, 49)) > 200);
    QVERIFY(qAlpha(image.pixel(50 - 37, 49)) > 200);
}

void tst_KelGPXMarkerDrawing::painterComesBackAsItWas()
{
    picture([](QPainter *painter) {
        const QPen pen(penColor, 20, Qt::DotLine);
        const QBrush brush(fillColor, Qt::Dense3Pattern);
        painter->setPen(pen);
        painter->setBrush(brush);
        painter->translate(3, 4);
        painter->setRenderHint(QPainter::Antialiasing, false);
        for (const KelGPXMarkerShape &marker : KelGPXMarkerShape::allPointShapes())
            marker.draw(painter, QPointF(60, 50), 10, 10);

        QCOMPARE(painter->pen(), pen);
        QCOMPARE(painter->brush(), brush);
        QCOMPARE(painter->transform(), QTransform::fromTranslate(3, 4));
        QVERIFY(!painter->testRenderHint(QPainter::Antialiasing));
    });
}

void tst_KelGPXMarkerDrawing::image_data()
{
    QTest::addColumn<int>("marker");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("margin");
    QTest::addColumn<QSize>("imageSize");
    QTest::addColumn<int>("shift");
    QTest::addColumn<Form>("form");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QSize>("cut");
    QTest::addColumn<double>("outlineWidth");

    const QSize none;
    QTest::newRow("icon's size, grown by 2") << 2 << QSize(20, 20) << 12 << QSize(32, 32) << 6 << Ellipse
                                             << QRectF(-2, -2, 24, 24) << none << 1.0;
    QTest::newRow("disk keeps the pen of 5") << 1 << QSize(20, 20) << 12 << QSize(32, 32) << 6 << Ellipse
                                             << QRectF(0, 0, 20, 20) << none << 5.0;
    QTest::newRow("block keeps the pen of 5") << 16 << QSize(20, 20) << 12 << QSize(32, 32) << 6 << Block
                                              << QRectF(0, 0, 20, 20) << none << 5.0;
    QTest::newRow("odd margin is split downwards") << 32 << QSize(20, 20) << 9 << QSize(29, 29) << 4 << Block
                                                   << QRectF(-2, -2, 24, 24) << none << 1.0;
    QTest::newRow("odd size: halves round up, centre and radius alike")
        << 64 << QSize(21, 31) << 12 << QSize(33, 43) << 6 << Rhombus << QRectF(-2, -2, 26, 36) << none << 1.0;
    QTest::newRow("not square") << 8 << QSize(40, 20) << 10 << QSize(50, 30) << 5 << Cross << QRectF(-2, -2, 44, 24)
                                << QSize(8, 4) << 1.0;
    QTest::newRow("no margin") << 128 << QSize(20, 20) << 0 << QSize(20, 20) << 0 << Star6 << QRectF(-2, -2, 24, 24)
                               << none << 1.0;
}

void tst_KelGPXMarkerDrawing::image()
{
    QFETCH(int, marker);
    QFETCH(QSize, size);
    QFETCH(int, margin);
    QFETCH(QSize, imageSize);
    QFETCH(int, shift);
    QFETCH(Form, form);
    QFETCH(QRectF, rect);
    QFETCH(QSize, cut);
    QFETCH(double, outlineWidth);

    const QImage actual = KelGPXMarkerShape(marker).createImage(size, margin, penColor, fillColor);
    QCOMPARE(actual.size(), imageSize);
    QCOMPARE(actual.format(), QImage::Format_ARGB32_Premultiplied);

    const QImage expected = picture(
        [&](QPainter *painter) {
            painter->translate(shift, shift);
            QPen pen(QBrush(penColor), outlineWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
            pen.setCosmetic(outlineWidth == 1.0);
            painter->setPen(pen);
            painter->setBrush(fillColor);
            drawReference(painter, form, rect, cut);
        },
        imageSize);
    QVERIFY2(alike(actual, expected), qPrintable(QString::number(difference(actual, expected))));
}

void tst_KelGPXMarkerDrawing::emptyImage()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    QVERIFY(KelGPXMarkerShape(MarkerDisk).createImage(QSize(0, 0), 0, penColor, fillColor).isNull());
    QVERIFY(KelGPXMarkerShape(MarkerDisk).createImage(QSize(-20, 20), 12, penColor, fillColor).isNull());
}

void tst_KelGPXMarkerDrawing::icon_data()
{
    QTest::addColumn<int>("marker");

    for (const KelGPXMarkerShape &marker : KelGPXMarkerShape::allPointShapes())
        QTest::newRow(qPrintable(marker.encode())) << marker.toInt();
    QTest::newRow("combination") << 129;
    QTest::newRow("the bit of no marker") << 4;
}

void tst_KelGPXMarkerDrawing::icon()
{
    QFETCH(int, marker);

    const QIcon icon = KelGPXMarkerShape(marker).createIcon(penColor, fillColor);
    QVERIFY(!icon.isNull());
    QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(32, 32)});
    const QImage actual = icon.pixmap(QSize(32, 32)).toImage();
    const QImage expected = KelGPXMarkerShape(marker).createImage(QSize(20, 20), 12, penColor, fillColor);
    QCOMPARE(difference(actual, expected), 0);
    QCOMPARE(actual.pixelColor(16, 16), fillColor);
}

void tst_KelGPXMarkerDrawing::noIcon_data()
{
    QTest::addColumn<int>("marker");

    QTest::newRow("unknown") << 0;
    QTest::newRow("arrow") << 1024;
    QTest::newRow("arrow among others") << (1024 | 1);
}

void tst_KelGPXMarkerDrawing::noIcon()
{
    QFETCH(int, marker);

    QVERIFY(KelGPXMarkerShape(marker).createIcon(penColor, fillColor).isNull());
}

QTEST_MAIN(tst_KelGPXMarkerDrawing)
#include "tst_KelGPXMarkerDrawing.moc"

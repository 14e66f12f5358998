// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOverlayTestSupport.h"

#include <KelOsmScaleRenderer.h>

#include <QtMath>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace KelOverlayTest;

namespace
{

/// 100 pixels per kilometre on an image of this width: from 450 pixels on the bar is 2.5 km or 250 pixels long.
KelOsmScaleRenderer scaleOfWidth(int width)
{
    return KelOsmScaleRenderer(KelDistance(100.0), QSize(width, 10));
}

/// The image whose third is exactly where the box of that scale ends, at factor 1.
int widthOfThreeBoxes()
{
    const QRectF text = scaleOfWidth(3000).textRect(QRect(0, 0, 3000, 400), 1.0);
    return qRound(text.x() + text.width()) * 3;
}

QImage rendered(int width, double factor, int height = 400)
{
    QImage image = transparentImage(QSize(width, height));
    scaleOfWidth(width).renderScale(&image, factor);
    return image;
}

} // namespace

class tst_KelOsmScaleRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void maximumPaintFactor_data();
    void maximumPaintFactor();
    void shownKilometers_data();
    void shownKilometers();
    void zeroPixelsPerKilometre();
    void strokeLength();
    void strokeRect_data();
    void strokeRect();
    void textFont();
    void scaleText_data();
    void scaleText();
    void textSize();
    void textRect();

    void boxReachesToTheLeftEdgeAndHasSquareCorners();
    void barAndTicks();
    void textStandsRightOfTheBar();
    void boxStaysDownAtAThirdOfTheImage_data();
    void boxStaysDownAtAThirdOfTheImage();
    void thirdIsCutToWholePixels();
    void movedUpByOneAndAHalfBoxHeights();
    void smallFactorDrawsNoText();
    void smallFactorDrawsADashDotLine();
    void smallFactorMovesTheLineWithTheBox();
    void smallFactorStartsBelowATenth();
    void highDensityIsTwiceAsLarge();
    void drawsOverTheImage();
    void barIsTranslucentBlack();
};

void tst_KelOsmScaleRenderer::maximumPaintFactor_data()
{
    QTest::addColumn<double>("pixelsPerKilometre");
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("expected");

    QTest::newRow("wide image: 300 pixels") << 100.0 << 1200 << 3.0;
    QTest::newRow("narrow image: two thirds of the width") << 100.0 << 300 << 2.0;
    QTest::newRow("two thirds are 300") << 100.0 << 450 << 3.0;
    QTest::newRow("two thirds are 299 whole pixels") << 100.0 << 449 << 2.99;
    QTest::newRow("two thirds are 301 whole pixels") << 100.0 << 452 << 3.0;
    QTest::newRow("two thirds of a hundred are 66") << 100.0 << 100 << 0.66;
    QTest::newRow("one pixel") << 100.0 << 1 << 0.0;
    QTest::newRow("no width") << 100.0 << 0 << 0.0;
    QTest::newRow("widest image") << 100.0 << std::numeric_limits<int>::max() << 3.0;
    QTest::newRow("finer map") << 600.0 << 1200 << 0.5;
}

void tst_KelOsmScaleRenderer::maximumPaintFactor()
{
    QFETCH(double, pixelsPerKilometre);
    QFETCH(int, width);
    QTEST(KelOsmScaleRenderer(KelDistance(pixelsPerKilometre), QSize(width, 7)).maximumPaintFactor(), "expected");
}

void tst_KelOsmScaleRenderer::shownKilometers_data()
{
    QTest::addColumn<double>("pixelsPerKilometre");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("expected");

    // The longest bar is 300 pixels.
    QTest::newRow("3 km") << 100.0 << 3.0 << 2.5;
    QTest::newRow("0.3 km") << 1000.0 << 0.3 << 0.25;
    QTest::newRow("exactly 1 km is not taken") << 300.0 << 1.0 << 0.5;
    QTest::newRow("just above 1 km") << 299.0 << 300.0 / 299.0 << 1.0;
    QTest::newRow("exactly 2.5 km is not taken") << 120.0 << 2.5 << 1.0;
    QTest::newRow("just above 2.5 km") << 119.0 << 300.0 / 119.0 << 2.5;
    QTest::newRow("exactly 5 km is not taken") << 60.0 << 5.0 << 2.5;
    QTest::newRow("just above 5 km") << 59.0 << 300.0 / 59.0 << 5.0;
    QTest::newRow("exactly 10 km is not taken") << 30.0 << 10.0 << 5.0;
    QTest::newRow("exactly 0.25 km is not taken") << 1200.0 << 0.25 << 0.1;
    QTest::newRow("30 m") << 10000.0 << 0.03 << 0.025;
    QTest::newRow("12 m") << 25000.0 << 0.012 << 0.01;
    QTest::newRow("7.5 m") << 40000.0 << 0.0075 << 0.005;
    QTest::newRow("just above 2.5 m") << 119000.0 << 300.0 / 119000.0 << 0.0025;
    QTest::newRow("exactly 2.5 m is the smallest") << 120000.0 << 0.0025 << 0.001;
    QTest::newRow("below the smallest the bar is too long") << 1e9 << 3e-7 << 0.001;
    QTest::newRow("300 km") << 1.0 << 300.0 << 250.0;
    QTest::newRow("75 000 km") << 0.004 << 75000.0 << 50000.0;
    QTest::newRow("exactly 100 000 km is the last decade") << 0.003 << 100000.0 << 50000.0;
    QTest::newRow("beyond the last decade the maximum shows itself") << 0.002 << 150000.0 << 150000.0;
}

void tst_KelOsmScaleRenderer::shownKilometers()
{
    QFETCH(double, pixelsPerKilometre);
    const KelOsmScaleRenderer renderer(KelDistance(pixelsPerKilometre), QSize(1200, 800));
    QTEST(renderer.maximumPaintFactor(), "maximum");
    QTEST(renderer.shownKilometers(), "expected");
}

void tst_KelOsmScaleRenderer::zeroPixelsPerKilometre()
{
    const KelOsmScaleRenderer renderer(KelDistance(0.0), QSize(1200, 800));
    QVERIFY(std::isinf(renderer.maximumPaintFactor()));
    QVERIFY(std::isinf(renderer.shownKilometers()));
    QCOMPARE(renderer.scaleText(), QStringLiteral("inf km"));
    // Zero times infinity is no length.
    QCOMPARE(renderer.strokeRect(QRectF(0, 0, 1200, 800), 1.0).width(), 0.0);
    QImage image = transparentImage(QSize(300, 200));
    renderer.renderScale(&image, 1.0);
    QVERIFY(!darkBounds(image).isNull());
}

void tst_KelOsmScaleRenderer::strokeLength()
{
    const KelOsmScaleRenderer renderer = scaleOfWidth(1200);
    QCOMPARE(renderer.strokeLength(1.0), 250.0);
    QCOMPARE(renderer.strokeLength(2.0), 500.0);
    QCOMPARE(renderer.strokeLength(0.05), 12.5);
}

void tst_KelOsmScaleRenderer::strokeRect_data()
{
    QTest::addColumn<double>("pixelsPerKilometre");
    QTest::addColumn<QRectF>("image");
    QTest::addColumn<double>("factor");
    QTest::addColumn<QRectF>("expected");

    QTest::newRow("screen") << 100.0 << QRectF(0, 0, 1200, 800) << 1.0 << QRectF(10, 790, 250, -20);
    QTest::newRow("high density") << 100.0 << QRectF(0, 0, 1200, 800) << 2.0 << QRectF(20, 780, 500, -40);
    QTest::newRow("moved image") << 100.0 << QRectF(5, 7, 1200, 800) << 1.0 << QRectF(15, 797, 250, -20);
    // 5 km × 33.3 = 166.5 pixels
    QTest::newRow("length cut to whole pixels") << 33.3 << QRectF(0, 0, 1200, 800) << 1.0 << QRectF(10, 790, 166, -20);
    // 20 × 1.27 = 25.4 and 250 × 1.27 = 317.5
    QTest::newRow("height cut to whole pixels")
        << 100.0 << QRectF(0, 0, 1200, 800) << 1.27 << QRectF(12.7, 787.3, 317, -25);
    QTest::newRow("thumbnail") << 100.0 << QRectF(0, 0, 1200, 800) << 0.05 << QRectF(0.5, 799.5, 12, -1);
}

void tst_KelOsmScaleRenderer::strokeRect()
{
    QFETCH(double, pixelsPerKilometre);
    QFETCH(QRectF, image);
    QFETCH(double, factor);
    QTEST(KelOsmScaleRenderer(KelDistance(pixelsPerKilometre), QSize(1200, 800)).strokeRect(image, factor),
          "expected");
}

void tst_KelOsmScaleRenderer::textFont()
{
    const KelOsmScaleRenderer renderer = scaleOfWidth(1200);
    QCOMPARE(renderer.textFont(1.0).family(), QStringLiteral("Arial"));
    QCOMPARE(renderer.textFont(1.0).pointSizeF(), 24.0);
    QCOMPARE(renderer.textFont(2.0).pointSizeF(), 48.0);
    QCOMPARE(renderer.textFont(0.05).pointSizeF(), 1.2);
    // No warning, no change.
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    QCOMPARE(renderer.textFont(0.0).pointSizeF(), QFont(QStringLiteral("Arial")).pointSizeF());
    QCOMPARE(renderer.textFont(-1.0).pointSizeF(), QFont(QStringLiteral("Arial")).pointSizeF());
}

void tst_KelOsmScaleRenderer::scaleText_data()
{
    QTest::addColumn<double>("pixelsPerKilometre");
    QTest::addColumn<QString>("expected");

    QTest::newRow("2.5 km") << 100.0 << QStringLiteral("2.5 km");
    QTest::newRow("1 km") << 120.0 << QStringLiteral("1 km");
    QTest::newRow("below 1 km") << 300.0 << QStringLiteral("500 m");
    QTest::newRow("250 m") << 1000.0 << QStringLiteral("250 m");
    QTest::newRow("100 m") << 1200.0 << QStringLiteral("100 m");
    QTest::newRow("25 m") << 10000.0 << QStringLiteral("25 m");
    QTest::newRow("5 m") << 40000.0 << QStringLiteral("5 m");
    QTest::newRow("2.5 m is rounded up") << 119000.0 << QStringLiteral("3 m");
    QTest::newRow("1 m") << 120000.0 << QStringLiteral("1 m");
    QTest::newRow("100 km") << 2.0 << QStringLiteral("100 km");
    QTest::newRow("50 000 km") << 0.004 << QStringLiteral("50000 km");
    QTest::newRow("beyond the last decade") << 0.002 << QStringLiteral("150000 km");
    QTest::newRow("six digits of the general format") << 0.0003 << QStringLiteral("1e+06 km");
}

void tst_KelOsmScaleRenderer::scaleText()
{
    QFETCH(double, pixelsPerKilometre);
    QTEST(KelOsmScaleRenderer(KelDistance(pixelsPerKilometre), QSize(1200, 800)).scaleText(), "expected");
}

void tst_KelOsmScaleRenderer::textSize()
{
    const KelOsmScaleRenderer renderer = scaleOfWidth(1200);
    const QSizeF expected = paddedTextSize(QStringLiteral("2.5 km"), 1.0);
    QVERIFY(expected.width() > 40);
    QCOMPARE(renderer.textSize(1.0), expected);
    // Measured at factor 1 and multiplied, not measured in the larger font.
    QCOMPARE(renderer.textSize(3.7), expected * 3.7);
    QCOMPARE(renderer.textSize(0.05), expected * 0.05);
}

void tst_KelOsmScaleRenderer::textRect()
{
    const KelOsmScaleRenderer renderer = scaleOfWidth(1200);
    const QSizeF size = paddedTextSize(QStringLiteral("2.5 km"), 1.0);
    // The last row of an image of 800 rows is 799.
    QCOMPARE(renderer.textRect(QRect(0, 0, 1200, 800), 1.0), QRectF(260, 789, size.width(), -size.height()));
    QCOMPARE(renderer.textRect(QRect(3, 5, 1200, 800), 2.0),
             QRectF(523, 784, 2 * size.width(), -2 * size.height()));
    // The bar's width counts in whole pixels: 12.5 are 12.
    QCOMPARE(renderer.textRect(QRect(0, 0, 1200, 800), 0.05),
             QRectF(12.5, 798.5, 0.05 * size.width(), -0.05 * size.height()));
}

void tst_KelOsmScaleRenderer::boxReachesToTheLeftEdgeAndHasSquareCorners()
{
    const QImage image = rendered(3000, 1.0);
    const QSizeF size = paddedTextSize(QStringLiteral("2.5 km"), 1.0);
    const int right = 260 + qRound(size.width());
    const int top = 389 - qRound(size.height());

    // A pixel of the outline may be painted around it.
    const QRect bounds = paintedBounds(image);
    QCOMPARE(bounds.left(), 0);
    QVERIFY(qAbs(bounds.right() - right) <= 1);
    QVERIFY(qAbs(bounds.top() - top) <= 1);
    QVERIFY(qAbs(bounds.bottom() - 390) <= 1);

    QVERIFY(isGround(image.pixelColor(2, top + 2)));
    QVERIFY(isGround(image.pixelColor(2, 387)));
    QVERIFY(isGround(image.pixelColor(right - 3, top + 2)));
    QVERIFY(isGround(image.pixelColor(right - 3, 387)));
}

void tst_KelOsmScaleRenderer::barAndTicks()
{
    // The bar's rectangle stands on y = 390 and is 20 high; the bar runs a third above its foot, at 383.33.
    const QImage image = rendered(3000, 1.0);
    QVERIFY(isDark(image.pixelColor(135, 383)));
    QVERIFY(isDark(image.pixelColor(30, 383)));
    QVERIFY(isDark(image.pixelColor(250, 383)));
    QVERIFY(isGround(image.pixelColor(135, 380)));
    QVERIFY(isGround(image.pixelColor(135, 386)));
    QVERIFY(isGround(image.pixelColor(5, 383)));

    // The ticks rise from the bar to y = 370; lines on whole coordinates share two columns.
    for (const int x : {10, 260}) {
        for (const int y : {372, 376, 380}) {
            QVERIFY(isDark(image.pixelColor(x - 1, y)));
            QVERIFY(isDark(image.pixelColor(x, y)));
            QVERIFY(isGround(image.pixelColor(x - 3, y)));
        }
        QVERIFY(isGround(image.pixelColor(x, 366)));
        QVERIFY(isGround(image.pixelColor(x, 387)));
    }
}

void tst_KelOsmScaleRenderer::textStandsRightOfTheBar()
{
    const QImage image = rendered(3000, 1.0);
    const QRectF text = scaleOfWidth(3000).textRect(image.rect(), 1.0).normalized();
    // From the middle of the padding on there is only text.
    QImage right = image.copy(265, 0, 1000, 400);
    const QRect ink = darkBounds(right).translated(265, 0);
    QVERIFY(ink.width() > text.width() / 3);
    QVERIFY(text.adjusted(3, 0, -3, 0).contains(ink));
    QVERIFY(std::abs(QRectF(ink).center().x() - text.center().x()) < 5);
    QVERIFY(std::abs(QRectF(ink).center().y() - text.center().y()) < text.height() / 4);
}

void tst_KelOsmScaleRenderer::boxStaysDownAtAThirdOfTheImage_data()
{
    QTest::addColumn<int>("more");
    QTest::addColumn<bool>("moved");
    QTest::newRow("ends at a third") << 0 << false;
    QTest::newRow("ends before a third") << 300 << false;
    QTest::newRow("ends less than a pixel before a third") << 2 << false;
    QTest::newRow("a pixel beyond a third") << -1 << true;
    QTest::newRow("far beyond a third") << -300 << true;
}

void tst_KelOsmScaleRenderer::boxStaysDownAtAThirdOfTheImage()
{
    QFETCH(int, more);
    const QRect bounds = paintedBounds(rendered(widthOfThreeBoxes() + more, 1.0));
    QTEST(bounds.bottom() < 380, "moved");
}

void tst_KelOsmScaleRenderer::thirdIsCutToWholePixels()
{
    // A factor at which the box ends a little behind a whole pixel; which one that is depends on the font.
    double factor = 0.5;
    double right = 0.0;
    do {
        factor += 0.01;
        const QRectF text = scaleOfWidth(3000).textRect(QRect(0, 0, 3000, 400), factor);
        right = text.x() + text.width();
    } while (factor < 2.0 && (right - std::floor(right) < 0.1 || right - std::floor(right) > 0.5));
    QVERIFY(factor < 2.0);

    // A third of the image is two thirds of a pixel behind that whole pixel, so behind the box.
    const auto scale = scaleOfWidth(3000);
    QImage image = transparentImage(QSize(3 * qFloor(right) + 2, 400));
    scale.renderScale(&image, factor);
    QVERIFY(paintedBounds(image).bottom() < 380);
}

void tst_KelOsmScaleRenderer::movedUpByOneAndAHalfBoxHeights()
{
    const QImage down = rendered(widthOfThreeBoxes(), 1.0);
    const QImage up = rendered(widthOfThreeBoxes() - 1, 1.0);
    // From the text's top to the foot of the bar, a pixel below the text's.
    const double boxHeight = paddedTextSize(QStringLiteral("2.5 km"), 1.0).height() + 1;
    const double shift = paintedBounds(down).bottom() - paintedBounds(up).bottom();
    QVERIFY(std::abs(shift - 1.5 * boxHeight) <= 1);

    // Bar and text go with the box.
    QVERIFY(std::abs(darkBounds(down).bottom() - darkBounds(up).bottom() - 1.5 * boxHeight) <= 1);
    QVERIFY(std::abs(darkBounds(down).top() - darkBounds(up).top() - 1.5 * boxHeight) <= 1);
    QCOMPARE(darkBounds(down).left(), darkBounds(up).left());
}

void tst_KelOsmScaleRenderer::smallFactorDrawsNoText()
{
    const QImage image = rendered(1200, 0.05);
    const QSizeF size = paddedTextSize(QStringLiteral("2.5 km"), 0.05);
    const double right = 12.5 + size.width();
    const double top = 398.5 - size.height();

    const QRect bounds = paintedBounds(image);
    QCOMPARE(bounds.left(), 0);
    QVERIFY(std::abs(bounds.right() - right) <= 1.5);
    QVERIFY(std::abs(bounds.top() - top) <= 1.5);
    QVERIFY(std::abs(bounds.bottom() - 399.5) <= 1.5);

    // The line lies on a whole y and shares two rows; it runs from the middle of the box to its right edge.
    const int middleX = static_cast<int>(right / 2);
    const int middleY = static_cast<int>(398.5 - size.height() / 2);
    const QRect dark = darkBounds(image);
    QVERIFY(dark.top() >= middleY - 1);
    QVERIFY(dark.bottom() <= middleY);
    QVERIFY(dark.left() >= middleX - 1);
    QVERIFY(dark.left() <= middleX + 1);
    QVERIFY(dark.right() <= static_cast<int>(right));
    QVERIFY(isGround(image.pixelColor(1, middleY)));
}

void tst_KelOsmScaleRenderer::smallFactorDrawsADashDotLine()
{
    // At 0.09 the box ends at 1 + 22 pixels and the text's width, half of it is long enough for a dash and a dot.
    const QImage image = rendered(1200, 0.09);
    QVERIFY(darkPieces(image, darkBounds(image).bottom()) >= 2);
}

void tst_KelOsmScaleRenderer::smallFactorMovesTheLineWithTheBox()
{
    // The box passes the third of 50 pixels (the bar is that of a wide image) and moves up.
    const auto scale = scaleOfWidth(1200);
    const auto renderedOnWidth = [&](int width) {
        QImage image = transparentImage(QSize(width, 100));
        scale.renderScale(&image, 0.05);
        return image;
    };
    const QImage down = renderedOnWidth(200);
    const QImage up = renderedOnWidth(50);
    const QSizeF size = paddedTextSize(QStringLiteral("2.5 km"), 0.05);
    QVERIFY(12.5 + size.width() > 50 / 3);
    // The box stands on the foot of the bar, which is 99.5, and its text on 98.5.
    const double boxHeight = size.height() + 1;
    QVERIFY(std::abs(paintedBounds(down).bottom() - paintedBounds(up).bottom() - 1.5 * boxHeight) <= 1);

    const int middleY = static_cast<int>(98.5 - 1.5 * boxHeight - size.height() / 2);
    QVERIFY(darkBounds(up).bottom() <= middleY);
    QVERIFY(darkBounds(up).top() >= middleY - 1);
    QCOMPARE(darkBounds(up).left(), darkBounds(down).left());
}

void tst_KelOsmScaleRenderer::smallFactorStartsBelowATenth()
{
    // With text there is a bar in the left half of the box, without there is none.
    const auto darkLeft = [](double factor) {
        return darkBounds(rendered(1200, factor)).left();
    };
    QVERIFY(darkLeft(0.1) < 5);
    QVERIFY(darkLeft(0.0999) > 10);
}

void tst_KelOsmScaleRenderer::highDensityIsTwiceAsLarge()
{
    const QImage image = rendered(3000, 2.0);
    // Bar 500 wide and 40 high at 20 from the corner, the bar a third above its foot, at 366.67.
    QVERIFY(isDark(image.pixelColor(300, 366)));
    QVERIFY(isDark(image.pixelColor(20, 345)));
    QVERIFY(isDark(image.pixelColor(520, 345)));
    QVERIFY(isGround(image.pixelColor(300, 360)));
}

void tst_KelOsmScaleRenderer::drawsOverTheImage()
{
    QImage image(QSize(3000, 400), QImage::Format_RGB32);
    image.fill(Qt::red);
    scaleOfWidth(3000).renderScale(&image, 1.0);
    QCOMPARE(image.pixelColor(1500, 200), QColor(Qt::red));
    // 225 × 180/255 of white over red.
    const QColor ground = image.pixelColor(135, 376);
    QVERIFY(qAbs(ground.green() - 159) <= 2);
    QVERIFY(qAbs(ground.red() - 234) <= 2);
}

void tst_KelOsmScaleRenderer::barIsTranslucentBlack()
{
    QImage image(QSize(3000, 400), QImage::Format_RGB32);
    image.fill(Qt::white);
    scaleOfWidth(3000).renderScale(&image, 1.0);
    QVERIFY(qAbs(image.pixelColor(135, 376).red() - groundOverWhite) <= 2);
    // The left tick at x = 10 covers half of the columns 9 and 10.
    for (const int x : {9, 10})
        QVERIFY(qAbs(image.pixelColor(x, 376).red() - blackOverGround(0.5)) <= 3);
}

QTEST_MAIN(tst_KelOsmScaleRenderer)
#include "tst_KelOsmScaleRenderer.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOverlayTestSupport.h"

#include <KelCopyrightRenderer.h>

#include <QtMath>
#include <QtTest>

#include <cmath>

using namespace KelOverlayTest;

namespace
{

const QString &attribution()
{
    static const QString text = QStringLiteral("© OpenStreetMap.org");
    return text;
}

QImage rendered(const QSize &size, double factor)
{
    QImage image = transparentImage(size);
    KelCopyrightRenderer().renderCopyRight(&image, factor);
    return image;
}

} // namespace

class tst_KelCopyrightRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyrightText();
    void copyrightFont();
    void copyrightTextSize();
    void copyrightRect();
    void hostsTextIsUsed();
    void pillInTheCorner();
    void textIsCentred();
    void textIsTranslucentBlack();
    void smallFactorDrawsNoText();
    void smallFactorDrawsADashDotLine();
    void smallFactorStartsBelowATenth();
    void highDensityIsTwiceAsLarge();
};

void tst_KelCopyrightRenderer::copyrightText()
{
    QCOMPARE(KelCopyrightRenderer().copyrightText(), attribution());
    QCOMPARE(KelCopyrightRenderer().copyrightText().size(), 19);
}

void tst_KelCopyrightRenderer::copyrightFont()
{
    QCOMPARE(KelCopyrightRenderer().copyrightFont(1.0).family(), QStringLiteral("Arial"));
    QCOMPARE(KelCopyrightRenderer().copyrightFont(1.0).pointSizeF(), 24.0);
    QCOMPARE(KelCopyrightRenderer().copyrightFont(2.5).pointSizeF(), 60.0);
    QCOMPARE(KelCopyrightRenderer().copyrightFont(0.05).pointSizeF(), 1.2);
}

void tst_KelCopyrightRenderer::copyrightTextSize()
{
    const QSizeF expected = paddedTextSize(attribution(), 1.0);
    QCOMPARE(KelCopyrightRenderer().copyrightTextSize(1.0), expected);
    QCOMPARE(KelCopyrightRenderer().copyrightTextSize(3.7), expected * 3.7);
}

void tst_KelCopyrightRenderer::copyrightRect()
{
    const QSizeF size = paddedTextSize(attribution(), 1.0);
    // The last column of 1200 is 1199, the last row of 800 is 799.
    QCOMPARE(KelCopyrightRenderer().copyrightRect(QRect(0, 0, 1200, 800), 1.0),
             QRectF(QPointF(1189 - size.width(), 789 - size.height()), size));
    QCOMPARE(KelCopyrightRenderer().copyrightRect(QRect(3, 5, 1200, 800), 2.0),
             QRectF(QPointF(1182 - 2 * size.width(), 784 - 2 * size.height()), 2 * size));
}

void tst_KelCopyrightRenderer::hostsTextIsUsed()
{
    class HostRenderer : public KelCopyrightRenderer
    {
    public:
        QString copyrightText() const override { return QStringLiteral("© Me"); }
    };
    const QSizeF size = paddedTextSize(QStringLiteral("© Me"), 1.0);
    QCOMPARE(HostRenderer().copyrightTextSize(1.0), size);
    QCOMPARE(HostRenderer().copyrightRect(QRect(0, 0, 1200, 800), 1.0).width(), size.width());

    QImage image = transparentImage(QSize(800, 200));
    HostRenderer().renderCopyRight(&image, 1.0);
    QVERIFY(std::abs(paintedBounds(image).width() - size.width()) <= 2);
    QVERIFY(!darkBounds(image).isNull());
}

void tst_KelCopyrightRenderer::pillInTheCorner()
{
    const QImage image = rendered(QSize(1000, 200), 1.0);
    const QRectF box = KelCopyrightRenderer().copyrightRect(image.rect(), 1.0);
    const QRect bounds = paintedBounds(image);
    QVERIFY(std::abs(bounds.left() - box.left()) <= 1);
    QVERIFY(std::abs(bounds.right() - 989) <= 1);
    QVERIFY(std::abs(bounds.top() - box.top()) <= 1);
    QVERIFY(std::abs(bounds.bottom() - 189) <= 1);

    // Half circles at the ends: they leave 0.146 heights of the corner's diagonal free. Ground in the middle.
    const int middle = qRound(box.center().y());
    const int free = qFloor(0.1 * box.height());
    QVERIFY(free >= 2);
    for (const int x : {bounds.left() + free, bounds.right() - free}) {
        QCOMPARE(image.pixelColor(x, bounds.top() + free).alpha(), 0);
        QCOMPARE(image.pixelColor(x, bounds.bottom() - free).alpha(), 0);
    }
    QVERIFY(isGround(image.pixelColor(bounds.left() + 3, middle)));
    QVERIFY(isGround(image.pixelColor(bounds.right() - 3, middle)));
}

void tst_KelCopyrightRenderer::textIsCentred()
{
    const QImage image = rendered(QSize(1000, 200), 1.0);
    const QRectF box = KelCopyrightRenderer().copyrightRect(image.rect(), 1.0);
    const QRect ink = darkBounds(image);
    QVERIFY(box.adjusted(3, 0, -3, 0).contains(ink));
    QVERIFY(ink.width() > box.width() / 2);
    QVERIFY(std::abs(QRectF(ink).center().x() - box.center().x()) < 5);
    QVERIFY(std::abs(QRectF(ink).center().y() - box.center().y()) < box.height() / 4);
}

void tst_KelCopyrightRenderer::textIsTranslucentBlack()
{
    QImage image(QSize(1000, 200), QImage::Format_RGB32);
    image.fill(Qt::white);
    KelCopyrightRenderer().renderCopyRight(&image, 1.0);
    int darkest = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            darkest = qMin(darkest, image.pixelColor(x, y).red());
    }
    // The stems of the letters are several pixels wide, some pixel is covered wholly.
    QVERIFY2(qAbs(darkest - blackOverGround(1.0)) <= 3, qPrintable(QString::number(darkest)));
}

void tst_KelCopyrightRenderer::smallFactorDrawsADashDotLine()
{
    const QImage image = rendered(QSize(200, 60), 0.0999);
    QVERIFY(darkPieces(image, darkBounds(image).bottom()) >= 3);
}

void tst_KelCopyrightRenderer::smallFactorDrawsNoText()
{
    const QImage image = rendered(QSize(200, 60), 0.05);
    const QRectF box = KelCopyrightRenderer().copyrightRect(image.rect(), 0.05);
    const QRect bounds = paintedBounds(image);
    QVERIFY(std::abs(bounds.left() - box.left()) <= 1.5);
    QVERIFY(std::abs(bounds.right() - box.right()) <= 1.5);
    QVERIFY(std::abs(bounds.top() - box.top()) <= 1.5);
    QVERIFY(std::abs(bounds.bottom() - box.bottom()) <= 1.5);

    const int middleX = static_cast<int>(box.x() + 0.5 * box.width());
    const int middleY = static_cast<int>(box.y() + 0.5 * box.height());
    const QRect dark = darkBounds(image);
    QVERIFY(dark.top() >= middleY - 1);
    QVERIFY(dark.bottom() <= middleY);
    QVERIFY(dark.left() >= middleX - 1);
    QVERIFY(dark.left() <= middleX + 1);
    QVERIFY(dark.right() <= static_cast<int>(box.right()));
    QVERIFY(isGround(image.pixelColor(bounds.left() + 2, middleY)));
}

void tst_KelCopyrightRenderer::smallFactorStartsBelowATenth()
{
    // The text begins in the left half of the box, the line in its middle.
    const auto darkStart = [](double factor) {
        const QImage image = rendered(QSize(200, 60), factor);
        const QRectF box = KelCopyrightRenderer().copyrightRect(image.rect(), factor);
        return (darkBounds(image).left() - box.left()) / box.width();
    };
    QVERIFY(darkStart(0.1) < 0.4);
    QVERIFY(darkStart(0.0999) > 0.45);
}

void tst_KelCopyrightRenderer::highDensityIsTwiceAsLarge()
{
    const QSizeF size = paddedTextSize(attribution(), 2.0);
    const QRect bounds = paintedBounds(rendered(QSize(2000, 400), 2.0));
    QVERIFY(std::abs(bounds.width() - size.width()) <= 2);
    QVERIFY(std::abs(bounds.height() - size.height()) <= 2);
    QVERIFY(std::abs(bounds.right() - 1979) <= 1);
    QVERIFY(std::abs(bounds.bottom() - 379) <= 1);
}

QTEST_MAIN(tst_KelCopyrightRenderer)
#include "tst_KelCopyrightRenderer.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// What outlines cover is kept in lists or, when these grow, in a place for each pixel. The pixels painted are those of
// QPainter in both, and where one becomes the other.

#include "../../libs/KelGeoLocation/render/KelOutlineFiller.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QtTest>

#include <cmath>
#include <random>

namespace
{

// One entry of a list for eight pixels is the most.
constexpr QSize SIZE(160, 100);
constexpr int AREA = 160 * 100;
constexpr int MOST_ENTRIES = AREA / 8;
constexpr std::size_t ANTIALIASED_CELL = 8;
constexpr std::size_t LONG_ANTIALIASED_CELL = 16;
constexpr std::size_t ALIASED_CELL = 4;

const QColor COLOR(200, 100, 30, 150);

QImage background(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(10, 60, 90, 180));
    return image;
}

KelPixelOutline outlineOf(const QPainterPath &path, const QSize &size)
{
    return KelPixelOutline(path, QPointF(), QRect(QPoint(), size));
}

QImage painted(KelOutlineFiller *filler, const QSize &size, Qt::FillRule rule)
{
    QImage image = background(size);
    filler->paint(image.bits(), image.bytesPerLine(), KelOutlineFiller::premultiplied(COLOR), rule);
    return image;
}

QImage plain(const QPainterPath &path, const QSize &size, KelOutlineFiller::Smoothness smoothness)
{
    QImage image = background(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, smoothness == KelOutlineFiller::Antialiased);
    painter.fillPath(path, COLOR);
    return image;
}

// Each side of a rectangle, or of a triangle of a row's height, leaves one entry in each of its rows.
QPainterPath pathOfEntries(int entries)
{
    QPainterPath path;
    double x = 1.25;
    int row = 0;
    for (const int perRow = 2 * SIZE.height(); entries >= perRow + 4; entries -= perRow, x += 8)
        path.addRect(x, 0, 4.5, SIZE.height());
    const auto nextRow = [&] { return (row++ * 37) % SIZE.height(); };
    if (entries % 2 == 1) {
        const int y = nextRow();
        const double left = std::floor(x); // within one pixel
        path.addPolygon(QPolygonF({{left + 0.1, y + 0.0}, {left + 0.9, y + 0.5}, {left + 0.2, y + 0.9}, {left + 0.1, y + 0.0}}));
        entries -= 3;
    }
    for (; entries > 0; entries -= 2)
        path.addRect(x, nextRow(), 2.5, 1);
    return path;
}

QPainterPath zigzag(int points, const QSize &size)
{
    QPainterPath path(QPointF(0, 0));
    for (int i = 1; i < points; ++i)
        path.lineTo(i % 2 == 0 ? 1.5 : size.width() - 1.5, (i * 0.618 - std::floor(i * 0.618)) * size.height());
    return path;
}

QPainterPath randomPath(int seed, int points)
{
    std::mt19937 engine(static_cast<unsigned>(seed));
    std::uniform_real_distribution<double> x(-40, SIZE.width() + 40);
    std::uniform_real_distribution<double> y(-40, SIZE.height() + 40);
    QPainterPath path(QPointF(x(engine), y(engine)));
    for (int i = 1; i < points; ++i)
        path.lineTo(x(engine), y(engine));
    return path;
}

} // namespace

class tst_OutlineFiller : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsAndCells_data();
    void listsAndCells();
    void memoryIsBounded_data();
    void memoryIsBounded();
    void takingAway_data();
    void takingAway();
};

void tst_OutlineFiller::listsAndCells_data()
{
    QTest::addColumn<bool>("antialiased");
    QTest::addColumn<int>("entries");
    QTest::addColumn<bool>("lists");
    for (const bool antialiased : {true, false}) {
        const char *kind = antialiased ? "antialiased" : "aliased";
        QTest::addRow("%s, few", kind) << antialiased << 20 << true;
        QTest::addRow("%s, just below", kind) << antialiased << MOST_ENTRIES - 2 << true;
        QTest::addRow("%s, as many as there may be", kind) << antialiased << MOST_ENTRIES << true;
        QTest::addRow("%s, just above", kind) << antialiased << MOST_ENTRIES + 2 << false;
        QTest::addRow("%s, far more", kind) << antialiased << 3 * MOST_ENTRIES / 2 << false;
    }
    QTest::newRow("antialiased, one less") << true << MOST_ENTRIES - 1 << true;
    QTest::newRow("antialiased, one more") << true << MOST_ENTRIES + 1 << false;
}

void tst_OutlineFiller::listsAndCells()
{
    QFETCH(bool, antialiased);
    QFETCH(int, entries);
    QFETCH(bool, lists);
    const auto smoothness = antialiased ? KelOutlineFiller::Antialiased : KelOutlineFiller::Aliased;
    for (const auto amount : {KelOutlineFiller::Few, KelOutlineFiller::Many}) {
        QPainterPath path = pathOfEntries(entries);
        for (const Qt::FillRule rule : {Qt::OddEvenFill, Qt::WindingFill}) {
            path.setFillRule(rule);
            KelOutlineFiller filler(QRect(QPoint(), SIZE), SIZE, smoothness, amount);
            filler.add(outlineOf(path, SIZE));
            const std::size_t cell = !antialiased ? ALIASED_CELL
                : amount == KelOutlineFiller::Few ? ANTIALIASED_CELL
                                                  : LONG_ANTIALIASED_CELL;
            QCOMPARE(filler.bytes() < AREA * cell, lists);
            QCOMPARE(painted(&filler, SIZE, rule), plain(path, SIZE, smoothness));
        }
    }
}

void tst_OutlineFiller::memoryIsBounded_data()
{
    QTest::addColumn<bool>("antialiased");
    QTest::addColumn<std::size_t>("bytesPerPixel");
    QTest::newRow("antialiased") << true << LONG_ANTIALIASED_CELL;
    QTest::newRow("aliased") << false << ALIASED_CELL;
}

// Few lines, each of which touches as many pixels as there are columns: 400,000 entries for 120,000 pixels.
void tst_OutlineFiller::memoryIsBounded()
{
    QFETCH(bool, antialiased);
    QFETCH(std::size_t, bytesPerPixel);
    const QSize size(400, 300);
    const QPainterPath path = zigzag(1000, size);
    const auto smoothness = antialiased ? KelOutlineFiller::Antialiased : KelOutlineFiller::Aliased;
    KelOutlineFiller filler(outlineOf(path, size), QRect(QPoint(), size), size, smoothness);
    QVERIFY2(filler.bytes() <= std::size_t(400) * 300 * bytesPerPixel, qPrintable(QString::number(filler.bytes())));
    QCOMPARE(painted(&filler, size, Qt::OddEvenFill), plain(path, size, smoothness));
}

void tst_OutlineFiller::takingAway_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("taken");
    QTest::newRow("in lists") << 8 << 5;
    QTest::newRow("a list becomes cells") << 8 << 400;
    QTest::newRow("in cells") << 400 << 8;
}

void tst_OutlineFiller::takingAway()
{
    QFETCH(int, points);
    QFETCH(int, taken);
    for (int seed = 0; seed < 20; ++seed) {
        const QPainterPath path = randomPath(seed, points);
        const KelPixelOutline other = outlineOf(randomPath(seed + 1000, taken), SIZE);
        for (const auto smoothness : {KelOutlineFiller::Antialiased, KelOutlineFiller::Aliased}) {
            KelOutlineFiller filler(QRect(QPoint(), SIZE), SIZE, smoothness, KelOutlineFiller::Many);
            filler.add(outlineOf(path, SIZE));
            filler.add(other);
            QVERIFY(painted(&filler, SIZE, Qt::OddEvenFill) != plain(path, SIZE, smoothness));
            filler.add(other, KelOutlineFiller::TakenAway);
            QCOMPARE(painted(&filler, SIZE, Qt::OddEvenFill), plain(path, SIZE, smoothness));
        }
    }
}

QTEST_MAIN(tst_OutlineFiller)
#include "tst_OutlineFiller.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Where the dashes of a line are. That QPainter has them at the same places is compared by tst_PathPainter.

#include "../../libs/KelGeoLocation/render/KelDashedLine.h"

#include <QPainterPath>
#include <QPen>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace
{

using Dash = std::vector<QPointF>;

constexpr QRectF PICTURE(0, 0, 100, 80);

QPen pen(Qt::PenStyle style, double width)
{
    return QPen(Qt::black, width, style, Qt::RoundCap, Qt::RoundJoin);
}

QPainterPath through(const QList<QPointF> &points)
{
    QPainterPath path(points.first());
    for (const QPointF &point : points.mid(1))
        path.lineTo(point);
    return path;
}

QPainterPath randomLine(int seed)
{
    std::mt19937 engine(static_cast<unsigned>(seed));
    std::uniform_real_distribution<double> part(-0.3, 1.3);
    const double step = seed % 3 == 0 ? 0.05 : 1.0;
    QPointF point(50, 40);
    QPainterPath path(point);
    for (int i = 0; i < 200; ++i) {
        const double x = part(engine);
        const QPointF anywhere(PICTURE.width() * x, PICTURE.height() * part(engine));
        point += (anywhere - point) * step;
        if (i % 50 == 49)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    return path;
}

std::vector<Dash> dashesIn(const QRectF &box, const QPainterPath &line, const QPen &pen)
{
    std::vector<Dash> result;
    KelDashedLine(line, pen, PICTURE).forEachDashIn(box, [&](const Dash &dash) { result.push_back(dash); });
    return result;
}

double lengthOf(const Dash &dash)
{
    double length = 0;
    for (std::size_t i = 1; i < dash.size(); ++i)
        length += QLineF(dash[i - 1], dash[i]).length();
    return length;
}

// Of lines: a point on them at every hundredth of a pixel is enough here.
bool comesInto(const Dash &dash, const QRectF &box)
{
    for (std::size_t i = 1; i < dash.size(); ++i) {
        const QLineF line(dash[i - 1], dash[i]);
        const int steps = 1 + static_cast<int>(line.length() * 100);
        for (int k = 0; k <= steps; ++k) {
            if (box.contains(line.pointAt(double(k) / steps)))
                return true;
        }
    }
    return false;
}

} // namespace

class tst_DashedLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesOfDashes_data();
    void placesOfDashes();
    void dashesGoAroundCorners();
    void eachSubpathBeginsWithADash();
    void nothingOfAPathWithoutLines();
    void linesWithTooManyDashes();
    void dashesInABox_data();
    void dashesInABox();
    void roughCount();
    void possiblePens_data();
    void possiblePens();
    void possibleLines();
};

void tst_DashedLine::placesOfDashes_data()
{
    QTest::addColumn<Qt::PenStyle>("style");
    QTest::addColumn<QList<double>>("ends"); // in pen widths
    QTest::newRow("dash") << Qt::DashLine << QList<double>{0, 4, 6, 10, 12, 16, 18, 22, 24, 25};
    QTest::newRow("dot") << Qt::DotLine << QList<double>{0, 1, 3, 4, 6, 7, 9, 10, 12, 13, 15, 16, 18, 19, 21, 22, 24, 25};
    QTest::newRow("dash, dot") << Qt::DashDotLine << QList<double>{0, 4, 6, 7, 9, 13, 15, 16, 18, 22, 24, 25};
    QTest::newRow("dash, dot, dot") << Qt::DashDotDotLine << QList<double>{0, 4, 6, 7, 9, 10, 12, 16, 18, 19, 21, 22, 24, 25};
}

void tst_DashedLine::placesOfDashes()
{
    QFETCH(Qt::PenStyle, style);
    QFETCH(QList<double>, ends);
    const auto dashes = dashesIn(PICTURE, through({{10, 20}, {10 + 25 * 2, 20}}), pen(style, 2));
    QCOMPARE(dashes.size(), static_cast<std::size_t>(ends.size() / 2));
    for (std::size_t i = 0; i < dashes.size(); ++i) {
        const auto first = static_cast<qsizetype>(2 * i);
        QCOMPARE(dashes[i], (Dash{{10 + ends[first] * 2, 20}, {10 + ends[first + 1] * 2, 20}}));
    }
}

void tst_DashedLine::dashesGoAroundCorners()
{
    const auto dashes = dashesIn(PICTURE, through({{10, 10}, {13, 10}, {13, 12}, {13, 30}}), pen(Qt::DashLine, 2));
    QCOMPARE(dashes.size(), std::size_t(2));
    QCOMPARE(dashes[0], (Dash{{10, 10}, {13, 10}, {13, 12}, {13, 15}}));
    QCOMPARE(dashes[1], (Dash{{13, 19}, {13, 27}}));
}

void tst_DashedLine::eachSubpathBeginsWithADash()
{
    QPainterPath path = through({{10, 10}, {13, 10}});
    path.addPath(through({{40, 40}, {40, 43}}));
    const auto dashes = dashesIn(PICTURE, path, pen(Qt::DashLine, 2));
    QCOMPARE(dashes.size(), std::size_t(2));
    QCOMPARE(dashes[0], (Dash{{10, 10}, {13, 10}}));
    QCOMPARE(dashes[1], (Dash{{40, 40}, {40, 43}}));
}

void tst_DashedLine::nothingOfAPathWithoutLines()
{
    QVERIFY(dashesIn(PICTURE, QPainterPath(), pen(Qt::DashLine, 2)).empty());
    QVERIFY(dashesIn(PICTURE, QPainterPath(QPointF(10, 10)), pen(Qt::DashLine, 2)).empty());
}

// The pattern of dots is 6 pixels long.
void tst_DashedLine::linesWithTooManyDashes()
{
    const auto dashed = dashesIn(PICTURE, through({{10, 10}, {60010, 10}}), pen(Qt::DotLine, 2));
    QVERIFY(dashed.size() >= 90 / 6 && dashed.size() <= 110 / 6);
    const auto undashed = dashesIn(PICTURE, through({{10, 10}, {60011, 10}}), pen(Qt::DotLine, 2));
    QCOMPARE(undashed.size(), std::size_t(1));
    QCOMPARE(undashed[0], (Dash{{10, 10}, {60011, 10}}));
}

void tst_DashedLine::dashesInABox_data()
{
    QTest::addColumn<Qt::PenStyle>("style");
    QTest::newRow("dash") << Qt::DashLine;
    QTest::newRow("dot") << Qt::DotLine;
    QTest::newRow("dash, dot, dot") << Qt::DashDotDotLine;
}

// Dashes do not depend on who asks for them, and none that comes into the box is missing or incomplete.
void tst_DashedLine::dashesInABox()
{
    QFETCH(Qt::PenStyle, style);
    for (int seed = 0; seed < 30; ++seed) {
        const QPainterPath line = randomLine(seed);
        const QPen dashed = pen(style, 1.5 + seed % 4);
        const auto everything = dashesIn(PICTURE.adjusted(-500, -500, 500, 500), line, dashed);
        for (const QRectF &box : {QRectF(0, 0, 100, 20), QRectF(0, 40, 100, 20), QRectF(60, 10, 5, 5)}) {
            const auto found = dashesIn(box, line, dashed);
            auto next = found.begin();
            for (const Dash &dash : everything) {
                const bool isNext = next != found.end() && *next == dash;
                QVERIFY(isNext || !comesInto(dash, box));
                next += isNext ? 1 : 0;
            }
            QVERIFY(next == found.end());
            QVERIFY(found.size() < everything.size());
        }
        const double longest = dashed.dashPattern().first() * dashed.widthF();
        QVERIFY(std::all_of(everything.begin(), everything.end(),
                            [longest](const Dash &dash) { return dash.size() >= 2 && lengthOf(dash) < longest + 1e-9; }));
    }
}

void tst_DashedLine::roughCount()
{
    const QPainterPath path = through({{0, 10}, {90, 10}, {90, 70}, {0, 70}}); // 40 dots
    const KelDashedLine line(path, pen(Qt::DotLine, 2), PICTURE);
    QVERIFY(line.hasMoreThan(20));
    QVERIFY(!line.hasMoreThan(80));
    const QPainterPath outside = through({{0, 1000}, {90, 1000}, {90, 1070}, {0, 1070}});
    QVERIFY(!KelDashedLine(outside, pen(Qt::DotLine, 2), PICTURE).hasMoreThan(0));
    const QPainterPath across = through({{-1e6, 30}, {1e6, 40}});
    QVERIFY(!KelDashedLine(across, pen(Qt::DotLine, 2), PICTURE).hasMoreThan(80));
}

void tst_DashedLine::possiblePens_data()
{
    QTest::addColumn<QPen>("pen");
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<bool>("possible");
    const QSize size(100, 100);
    for (const Qt::PenStyle style : {Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::DashDotDotLine})
        QTest::addRow("style %d", style) << pen(style, 2) << size << true;
    QTest::newRow("solid") << pen(Qt::SolidLine, 2) << size << false;
    QTest::newRow("none") << pen(Qt::NoPen, 2) << size << false;
    QPen own = pen(Qt::DashLine, 2);
    own.setDashPattern({1, 1});
    QTest::newRow("own pattern") << own << size << false;
    QPen shifted = pen(Qt::DashLine, 2);
    shifted.setDashOffset(0.5);
    QTest::newRow("begins later") << shifted << size << false;
    QTest::newRow("large picture") << pen(Qt::DotLine, 1.1) << QSize(10, 32767) << true;
    QTest::newRow("large picture, thin pen") << pen(Qt::DotLine, 1.05) << QSize(10, 32767) << false;
}

void tst_DashedLine::possiblePens()
{
    QFETCH(QPen, pen);
    QFETCH(QSize, picture);
    QFETCH(bool, possible);
    QCOMPARE(KelDashedLine::isPossible(pen, picture), possible);
}

void tst_DashedLine::possibleLines()
{
    QPainterPath path = through({{0, 10}, {90, 10}});
    path.moveTo(5, 5);
    QVERIFY(KelDashedLine::isPossible(QPainterPath()));
    QVERIFY(KelDashedLine::isPossible(path));
    path.lineTo(70, 70);
    path.setElementPositionAt(3, 5, 5);
    QVERIFY(KelDashedLine::isPossible(path));
    path.setElementPositionAt(3, 5 + 1e-13, 5);
    QVERIFY(!KelDashedLine::isPossible(path));
    path.setElementPositionAt(3, 6, 5);
    QVERIFY(KelDashedLine::isPossible(path));
    path.quadTo(1, 2, 3, 4);
    QVERIFY(!KelDashedLine::isPossible(path));
}

QTEST_APPLESS_MAIN(tst_DashedLine)
#include "tst_DashedLine.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackSmoothing.h>

#include <QtTest>

#include <cmath>
#include <limits>

namespace
{

/// n points that zigzag around the x axis: even ones at y = 0, odd ones at y = 10.
QList<QPointF> zigzag(int count)
{
    QList<QPointF> points;
    for (int i = 0; i < count; ++i)
        points.append(QPointF(i * 10, i % 2 == 0 ? 0 : 10));
    return points;
}

QList<QPointF> smoothed(QList<QPointF> points, double factor, int fixPoints)
{
    KelGPXTrackSmoothing(points.data(), static_cast<int>(points.size()), factor, fixPoints).run();
    return points;
}

QList<int> movedIndices(const QList<QPointF> &before, const QList<QPointF> &after)
{
    QList<int> moved;
    for (int i = 0; i < before.size(); ++i) {
        if (before.at(i) != after.at(i))
            moved.append(i);
    }
    return moved;
}

} // namespace

class tst_KelGPXTrackSmoothing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void estimateFixPoints_data();
    void estimateFixPoints();
    void delta();
    void partOf();
    void partOfNothingIsNotANumber();
    void mix();
    void smoothPointDividesTheChordLikeTheDistances();
    void smoothPointNearAnEndGoesNearThatEnd();
    void smoothPointReadsAllBeforeItWrites();
    void pointOnBothFixPointsBecomesNotANumber();
    void fixPointsNeverMove_data();
    void fixPointsNeverMove();
    void threePointsInOnePiece();
    void factorOneChangesNothing();
    void factorZeroPutsEachPointOnItsChord();
    void factorIsTheWeightOfTheOwnPosition();
    void tooFewPoints_data();
    void tooFewPoints();
    void negativeCountTouchesNothing();
    void manyPointsAndPiecesNeedSixtyFourBits();
    void copiesWorkOnTheSameArray();
};

void tst_KelGPXTrackSmoothing::estimateFixPoints_data()
{
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("expected");

    QTest::newRow("fewer wanted than points") << 3 << 10 << 3;
    QTest::newRow("as many wanted as points") << 10 << 10 << 10;
    QTest::newRow("more wanted than points") << 11 << 10 << 10;
    QTest::newRow("one") << 1 << 10 << 1;
    QTest::newRow("none wanted is one") << 0 << 10 << 1;
    QTest::newRow("negative wanted is one") << -5 << 10 << 1;
    QTest::newRow("no points is one") << 4 << 0 << 1;
    QTest::newRow("negative count is one") << 4 << -7 << 1;
}

void tst_KelGPXTrackSmoothing::estimateFixPoints()
{
    QFETCH(int, wanted);
    QFETCH(int, count);
    QTEST(KelGPXTrackSmoothing::estimateFixPoints(wanted, count), "expected");
}

void tst_KelGPXTrackSmoothing::delta()
{
    QCOMPARE(KelGPXTrackSmoothing::delta(QPointF(1, 2), QPointF(4, 6)), 5.0);
    QCOMPARE(KelGPXTrackSmoothing::delta(QPointF(4, 6), QPointF(1, 2)), 5.0);
    QCOMPARE(KelGPXTrackSmoothing::delta(QPointF(7, 7), QPointF(7, 7)), 0.0);
}

void tst_KelGPXTrackSmoothing::partOf()
{
    QCOMPARE(KelGPXTrackSmoothing::partOf(1.0, 3.0), 0.25);
    QCOMPARE(KelGPXTrackSmoothing::partOf(3.0, 1.0), 0.75);
    QCOMPARE(KelGPXTrackSmoothing::partOf(0.0, 2.0), 0.0);
    QCOMPARE(KelGPXTrackSmoothing::partOf(2.0, 0.0), 1.0);
}

void tst_KelGPXTrackSmoothing::partOfNothingIsNotANumber()
{
    QVERIFY(std::isnan(KelGPXTrackSmoothing::partOf(0.0, 0.0)));
}

void tst_KelGPXTrackSmoothing::mix()
{
    QCOMPARE(KelGPXTrackSmoothing::mix(QPointF(10, 20), QPointF(30, 60), 1.0), QPointF(10, 20));
    QCOMPARE(KelGPXTrackSmoothing::mix(QPointF(10, 20), QPointF(30, 60), 0.0), QPointF(30, 60));
    QCOMPARE(KelGPXTrackSmoothing::mix(QPointF(10, 20), QPointF(30, 60), 0.25), QPointF(25, 50));
}

void tst_KelGPXTrackSmoothing::smoothPointDividesTheChordLikeTheDistances()
{
    // The point is 5 away from the left end and sqrt(6² + 4²) from the right one.
    QPointF points[] = {QPointF(0, 0), QPointF(3, 4), QPointF(9, 0)};
    KelGPXTrackSmoothing smoothing(points, 3, 0.0, 1);
    smoothing.smoothPoint(1, 0, 2);

    const double toTheRight = std::sqrt(52.0);
    QCOMPARE(points[1].x(), 9.0 * 5.0 / (5.0 + toTheRight));
    QCOMPARE(points[1].y(), 0.0);
    QCOMPARE(points[0], QPointF(0, 0));
    QCOMPARE(points[2], QPointF(9, 0));
}

void tst_KelGPXTrackSmoothing::smoothPointNearAnEndGoesNearThatEnd()
{
    // On the chord itself, a fifth of the way: stays where it is.
    QPointF points[] = {QPointF(0, 0), QPointF(20, 0), QPointF(100, 0)};
    KelGPXTrackSmoothing(points, 3, 0.0, 1).smoothPoint(1, 0, 2);
    QCOMPARE(points[1], QPointF(20, 0));

    QPointF onTheStart[] = {QPointF(0, 0), QPointF(0, 0), QPointF(100, 0)};
    KelGPXTrackSmoothing(onTheStart, 3, 0.0, 1).smoothPoint(1, 0, 2);
    QCOMPARE(onTheStart[1], QPointF(0, 0));
}

void tst_KelGPXTrackSmoothing::smoothPointReadsAllBeforeItWrites()
{
    // The point is its own fix point: distance 0 to it, so the chord point is the point itself.
    QPointF points[] = {QPointF(5, 7), QPointF(20, 30)};
    KelGPXTrackSmoothing(points, 2, 0.5, 1).smoothPoint(1, 1, 0);
    QCOMPARE(points[1], QPointF(20, 30));
}

void tst_KelGPXTrackSmoothing::pointOnBothFixPointsBecomesNotANumber()
{
    QPointF points[] = {QPointF(5, 5), QPointF(5, 5), QPointF(5, 5)};
    KelGPXTrackSmoothing(points, 3, 0.5, 1).run();
    QVERIFY(std::isnan(points[1].x()));
    QVERIFY(std::isnan(points[1].y()));
    QCOMPARE(points[0], QPointF(5, 5));
    QCOMPARE(points[2], QPointF(5, 5));
}

void tst_KelGPXTrackSmoothing::fixPointsNeverMove_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<QList<int>>("moved");

    // Fix points: 0 and n·k / F − 1.
    QTest::newRow("ten points, one piece: 0 and 9") << 10 << 1 << QList<int>{1, 2, 3, 4, 5, 6, 7, 8};
    QTest::newRow("ten points, two pieces: 0, 4 and 9") << 10 << 2 << QList<int>{1, 2, 3, 5, 6, 7, 8};
    QTest::newRow("ten points, three pieces: 0, 2, 5 and 9") << 10 << 3 << QList<int>{1, 3, 4, 6, 7, 8};
    QTest::newRow("ten points, four pieces: 0, 1, 4, 6 and 9") << 10 << 4 << QList<int>{2, 3, 5, 7, 8};
    QTest::newRow("ten points, five pieces: 0, 1, 3, 5, 7 and 9") << 10 << 5 << QList<int>{2, 4, 6, 8};
    QTest::newRow("ten points, six pieces: every piece is one point") << 10 << 6 << QList<int>{};
    QTest::newRow("as many pieces as points") << 10 << 10 << QList<int>{};
    QTest::newRow("more pieces than points") << 10 << 99 << QList<int>{};
    QTest::newRow("no pieces count as one") << 10 << 0 << QList<int>{1, 2, 3, 4, 5, 6, 7, 8};
    QTest::newRow("negative pieces count as one") << 10 << -3 << QList<int>{1, 2, 3, 4, 5, 6, 7, 8};
}

void tst_KelGPXTrackSmoothing::fixPointsNeverMove()
{
    QFETCH(int, count);
    QFETCH(int, wanted);
    // Every point lies off every chord: a parabola.
    QList<QPointF> points;
    for (int i = 0; i < count; ++i)
        points.append(QPointF(i * 10, i * i));
    QTEST(movedIndices(points, smoothed(points, 0.0, wanted)), "moved");
}

void tst_KelGPXTrackSmoothing::threePointsInOnePiece()
{
    const QList<QPointF> result = smoothed({QPointF(0, 0), QPointF(10, 10), QPointF(20, 0)}, 0.5, 1);
    QCOMPARE(result, QList<QPointF>({QPointF(0, 0), QPointF(10, 5), QPointF(20, 0)}));
}

void tst_KelGPXTrackSmoothing::factorOneChangesNothing()
{
    const QList<QPointF> points = zigzag(9);
    QCOMPARE(smoothed(points, 1.0, 1), points);
}

void tst_KelGPXTrackSmoothing::factorZeroPutsEachPointOnItsChord()
{
    // Fix points of nine points in two pieces: 0, 3 (at y = 10) and 8. The first chord rises by 10 over 30.
    const QList<QPointF> result = smoothed(zigzag(9), 0.0, 2);
    QCOMPARE(result.at(3), QPointF(30, 10));
    for (int i = 0; i <= 3; ++i)
        QVERIFY(std::abs(result.at(i).y() - result.at(i).x() / 3.0) < 1e-9);
    for (int i = 3; i < 9; ++i)
        QVERIFY(std::abs(result.at(i).y() - (80.0 - result.at(i).x()) / 5.0) < 1e-9);
}

void tst_KelGPXTrackSmoothing::factorIsTheWeightOfTheOwnPosition()
{
    const QList<QPointF> points = zigzag(8);
    const QList<QPointF> chord = smoothed(points, 0.0, 2);
    const QList<QPointF> result = smoothed(points, 0.99, 2);
    for (int i = 0; i < 8; ++i) {
        QCOMPARE(result.at(i).x(), 0.99 * points.at(i).x() + 0.01 * chord.at(i).x());
        QCOMPARE(result.at(i).y(), 0.99 * points.at(i).y() + 0.01 * chord.at(i).y());
    }
}

void tst_KelGPXTrackSmoothing::tooFewPoints_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
}

void tst_KelGPXTrackSmoothing::tooFewPoints()
{
    QFETCH(int, count);
    const QList<QPointF> points = zigzag(count);
    QCOMPARE(smoothed(points, 0.0, 1), points);
}

void tst_KelGPXTrackSmoothing::negativeCountTouchesNothing()
{
    for (const int count : {-1, std::numeric_limits<int>::min()})
        KelGPXTrackSmoothing(nullptr, count, 0.0, 1).run();
}

void tst_KelGPXTrackSmoothing::manyPointsAndPiecesNeedSixtyFourBits()
{
    // 200 000 × 60 000 is beyond 32 bits. Points and pieces are 10 : 3, so the fix points repeat 2, 5, 9, 12, …
    constexpr int count = 200000;
    QList<QPointF> points;
    points.reserve(count);
    for (int i = 0; i < count; ++i)
        points.append(QPointF(i, (i % 10) * (i % 10)));
    const QList<QPointF> result = smoothed(points, 0.0, 60000);
    for (int i = 0; i < count; ++i) {
        const bool fix = i == 0 || i % 10 == 2 || i % 10 == 5 || i % 10 == 9;
        QVERIFY2((points.at(i) == result.at(i)) == fix, qPrintable(QString::number(i)));
    }
}

void tst_KelGPXTrackSmoothing::copiesWorkOnTheSameArray()
{
    QPointF points[] = {QPointF(0, 0), QPointF(10, 10), QPointF(20, 0)};
    const KelGPXTrackSmoothing original(points, 3, 0.0, 1);
    KelGPXTrackSmoothing copy(original);
    copy.run();
    QCOMPARE(points[1], QPointF(10, 0));
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackSmoothing)
#include "tst_KelGPXTrackSmoothing.moc"

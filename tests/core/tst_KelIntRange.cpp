// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelIntRange.h>

#include <QImage>
#include <QObject>
#include <QThread>
#include <QtTest>

#include <limits>

class tst_KelIntRange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isARange();
    void ofImage_data();
    void ofImage();
    void indicesAndSize_data();
    void indicesAndSize();
    void split_data();
    void split();
    void splitOfHugeRangeDoesNotOverflow();
    void splitForCpuCores_data();
    void splitForCpuCores();
};

void tst_KelIntRange::isARange()
{
    KelIntRange range;
    QVERIFY(range.isUnset());
    range.expandTo(5);
    QVERIFY(range == KelIntRange(5, 5));
    range = KelIntRange(0, 3);
    range.expandTo(-2);
    QVERIFY(range == KelIntRange(-2, 3));
    QCOMPARE(KelIntRange(-3, 0).center(), -1);
}

void tst_KelIntRange::ofImage_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("lastRow");
    QTest::addColumn<int>("lastColumn");

    QTest::newRow("wide") << QImage(30, 20, QImage::Format_RGB32) << 19 << 29;
    QTest::newRow("one pixel") << QImage(1, 1, QImage::Format_RGB32) << 0 << 0;
    QTest::newRow("null") << QImage() << -1 << -1;
}

void tst_KelIntRange::ofImage()
{
    QFETCH(QImage, image);
    QCOMPARE(KelIntRange::rowsOfImage(image).min(), 0);
    QTEST(KelIntRange::rowsOfImage(image).max(), "lastRow");
    QCOMPARE(KelIntRange::columnsOfImage(image).min(), 0);
    QTEST(KelIntRange::columnsOfImage(image).max(), "lastColumn");
}

void tst_KelIntRange::indicesAndSize_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("size");

    constexpr int greatest = std::numeric_limits<int>::max();
    QTest::newRow("several") << 3 << 7 << 8 << 5;
    QTest::newRow("[0, 0] is one element, not none") << 0 << 0 << 1 << 1;
    QTest::newRow("empty") << 0 << -1 << 0 << 0;
    QTest::newRow("inverted by more than one") << 5 << 2 << 3 << 0;
    QTest::newRow("around zero") << -2 << 2 << 3 << 5;
    QTest::newRow("up to the greatest integer") << greatest - 1 << greatest << greatest << 2;
    QTest::newRow("more elements than an int counts") << -5 << greatest << greatest << greatest;
}

void tst_KelIntRange::indicesAndSize()
{
    QFETCH(int, min);
    QFETCH(int, max);
    const KelIntRange range(min, max);
    QCOMPARE(range.firstIndex(), min);
    QTEST(range.lastIndexEvenIfUnvalid(), "end");
    QTEST(range.size(), "size");
}

void tst_KelIntRange::split_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("pieces");
    QTest::addColumn<QList<int>>("bounds");

    QTest::newRow("even") << 0 << 7 << 4 << QList<int>{0, 1, 2, 3, 4, 5, 6, 7};
    QTest::newRow("uneven") << 0 << 9 << 3 << QList<int>{0, 2, 3, 5, 6, 9};
    QTest::newRow("not from zero") << -3 << 2 << 2 << QList<int>{-3, -1, 0, 2};
    QTest::newRow("more pieces than elements") << 5 << 6 << 4 << QList<int>{5, 5, 6, 6};
    QTest::newRow("one element") << 0 << 0 << 4 << QList<int>{0, 0};
    QTest::newRow("one piece") << 2 << 9 << 1 << QList<int>{2, 9};
    QTest::newRow("no piece counts as one") << 2 << 9 << 0 << QList<int>{2, 9};
    QTest::newRow("empty comes back as it is") << 0 << -1 << 4 << QList<int>{0, -1};
    QTest::newRow("inverted comes back as it is") << 9 << 2 << 4 << QList<int>{9, 2};
}

void tst_KelIntRange::split()
{
    QFETCH(int, min);
    QFETCH(int, max);
    QFETCH(int, pieces);
    QList<int> bounds;
    for (const KelIntRange &piece : KelIntRange(min, max).splitEvenly(pieces))
        bounds << piece.min() << piece.max();
    QTEST(bounds, "bounds");
}

void tst_KelIntRange::splitOfHugeRangeDoesNotOverflow()
{
    constexpr int greatest = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    const QList<KelIntRange> pieces = KelIntRange(least, greatest).splitEvenly(2);
    QCOMPARE(pieces.size(), 2);
    QVERIFY(pieces.at(0) == KelIntRange(least, -1));
    QVERIFY(pieces.at(1) == KelIntRange(0, greatest));
}

void tst_KelIntRange::splitForCpuCores_data()
{
    QTest::addColumn<int>("min");
    QTest::addColumn<int>("max");

    QTest::newRow("image rows") << 0 << 1079;
    QTest::newRow("a prime number of elements") << 0 << 100002;
    QTest::newRow("fewer than cores") << 4 << 4;
}

void tst_KelIntRange::splitForCpuCores()
{
    QFETCH(int, min);
    QFETCH(int, max);
    const KelIntRange range(min, max);
    const QList<KelIntRange> pieces = range.splitEvenlyForCpuCores();
    QCOMPARE(pieces.size(), qMin(QThread::idealThreadCount(), range.size()));

    // One after the other, without gap or overlap, from the first to the last, of nearly the same size.
    int next = min;
    int least = range.size();
    int most = 0;
    for (const KelIntRange &piece : pieces) {
        QCOMPARE(piece.min(), next);
        QVERIFY(piece.size() >= 1);
        least = qMin(least, piece.size());
        most = qMax(most, piece.size());
        next = piece.max() + 1;
    }
    QCOMPARE(next, max + 1);
    QVERIFY(most - least <= 1);
}

QTEST_GUILESS_MAIN(tst_KelIntRange)
#include "tst_KelIntRange.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackSelectionComparisonResult.h>

#include <QtTest>

class tst_KelGPXTrackSelectionComparisonResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aspectsHaveFixedValues();
    void newResultSaysThatNothingDiffers();
    void tracksKeepOrderAndDuplicates();
    void aspectsAreCombined();
    void sumOfTwoResults();
    void trackCountOfASum_data();
    void trackCountOfASum();
    void isMergeCompatible_data();
    void isMergeCompatible();
};

using Result = KelGPXTrackSelectionComparisonResult;

namespace
{

Result result(const QList<int> &tracks, KelGPXTrackAspect aspects, bool countChanges)
{
    Result made;
    made.setChangingTracks(tracks);
    made.setChangingAspects(aspects);
    made.setTrackCountChanges(countChanges);
    return made;
}

} // namespace

void tst_KelGPXTrackSelectionComparisonResult::aspectsHaveFixedValues()
{
    QCOMPARE(int(AspectNone), 0);
    QCOMPARE(int(AspectLineWidth), 1);
    QCOMPARE(int(AspectLineColor), 2);
    QCOMPARE(int(AspectTrack), 4);
    QCOMPARE(sizeof(KelGPXTrackAspect), std::size_t(4));
}

void tst_KelGPXTrackSelectionComparisonResult::newResultSaysThatNothingDiffers()
{
    const Result fresh;
    QCOMPARE(fresh.changingTracks(), QList<int>());
    QCOMPARE(fresh.changingAspects(), KelGPXTrackAspect(AspectNone));
    QCOMPARE(fresh.trackCountChanges(), false);
}

void tst_KelGPXTrackSelectionComparisonResult::tracksKeepOrderAndDuplicates()
{
    Result made;
    made.addChangingTrack(3);
    made.addChangingTrack(1);
    made.addChangingTrack(3);
    QCOMPARE(made.changingTracks(), QList<int>({3, 1, 3}));
    made.setChangingTracks({7});
    QCOMPARE(made.changingTracks(), QList<int>({7}));
}

void tst_KelGPXTrackSelectionComparisonResult::aspectsAreCombined()
{
    Result made;
    made.addChangingAspects(AspectLineColor);
    made.addChangingAspects(AspectTrack);
    QCOMPARE(made.changingAspects(), AspectLineColor | AspectTrack);
    made.setChangingAspects(AspectLineWidth);
    QCOMPARE(made.changingAspects(), KelGPXTrackAspect(AspectLineWidth));
}

void tst_KelGPXTrackSelectionComparisonResult::sumOfTwoResults()
{
    const Result left = result({0, 2}, AspectLineWidth, false);
    const Result right = result({2, 1}, AspectLineColor | AspectLineWidth, true);

    const Result sum = left + right;
    QCOMPARE(sum.changingTracks(), QList<int>({0, 2, 2, 1}));
    QCOMPARE(sum.changingAspects(), AspectLineWidth | AspectLineColor);
    QCOMPARE(sum.trackCountChanges(), true);
    QCOMPARE(left.changingTracks(), QList<int>({0, 2}));
    QCOMPARE(left.changingAspects(), KelGPXTrackAspect(AspectLineWidth));
    QCOMPARE(left.trackCountChanges(), false);

    Result target = left;
    QCOMPARE(&(target += right), &target);
    QCOMPARE(target.changingTracks(), QList<int>({0, 2, 2, 1}));
    QCOMPARE(target.changingAspects(), AspectLineWidth | AspectLineColor);
    QCOMPARE(target.trackCountChanges(), true);

    target += target;
    QCOMPARE(target.changingTracks(), QList<int>({0, 2, 2, 1, 0, 2, 2, 1}));
}

void tst_KelGPXTrackSelectionComparisonResult::trackCountOfASum_data()
{
    QTest::addColumn<bool>("left");
    QTest::addColumn<bool>("right");
    QTest::addColumn<bool>("sum");

    QTest::newRow("neither") << false << false << false;
    QTest::newRow("left only") << true << false << true;
    QTest::newRow("right only") << false << true << true;
    QTest::newRow("both") << true << true << true;
}

void tst_KelGPXTrackSelectionComparisonResult::trackCountOfASum()
{
    QFETCH(bool, left);
    QFETCH(bool, right);
    QTEST((result({}, AspectNone, left) + result({}, AspectNone, right)).trackCountChanges(), "sum");
}

void tst_KelGPXTrackSelectionComparisonResult::isMergeCompatible_data()
{
    QTest::addColumn<Result>("own");
    QTest::addColumn<Result>("other");
    QTest::addColumn<bool>("compatible");

    const Result plain = result({0, 1}, AspectLineColor, false);
    const Result counting = result({0, 1}, AspectLineColor, true);
    QTest::newRow("same rows and aspects") << plain << plain << true;
    QTest::newRow("two new results") << Result() << Result() << true;
    QTest::newRow("own track count changes") << counting << plain << false;
    QTest::newRow("only the other's track count changes") << plain << counting << true;
    QTest::newRow("both track counts change") << counting << counting << false;
    QTest::newRow("other aspects") << plain << result({0, 1}, AspectLineWidth, false) << false;
    QTest::newRow("more aspects") << plain << result({0, 1}, AspectLineColor | AspectTrack, false) << false;
    QTest::newRow("other order of rows") << plain << result({1, 0}, AspectLineColor, false) << false;
    QTest::newRow("fewer rows") << plain << result({0}, AspectLineColor, false) << false;
    QTest::newRow("a row twice") << plain << result({0, 1, 1}, AspectLineColor, false) << false;
}

void tst_KelGPXTrackSelectionComparisonResult::isMergeCompatible()
{
    QFETCH(Result, own);
    QFETCH(Result, other);
    QTEST(own.isMergeCompatible(other), "compatible");
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackSelectionComparisonResult)
#include "tst_KelGPXTrackSelectionComparisonResult.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelBlinkAnimation.h>

#include <QList>
#include <QObject>
#include <QSignalSpy>
#include <QtTest>

namespace
{

QList<int> states(const QSignalSpy &spy)
{
    QList<int> result;
    for (const QList<QVariant> &arguments : spy)
        result.append(arguments.first().toInt());
    return result;
}

} // namespace

class tst_KelBlinkAnimation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsThroughItsStatesAndRests();
    void firstStateComesAtOnce();
    void stopEndsWithTheNormalState();
    void stopAtRestIsSilent();
    void startWhileRunningBeginsAnew();
    void canBeStartedAgain();
    void receiverMayStopIt();
    void receiverMayStartTheNextOne();
};

void tst_KelBlinkAnimation::runsThroughItsStatesAndRests()
{
    KelBlinkAnimation animation;
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    QVERIFY(!animation.isRunning());
    animation.start();
    QVERIFY(animation.isRunning());
    QTRY_VERIFY(!animation.isRunning());
    QCOMPARE(states(spy), QList<int>({1, 0, 1, 0, 1, 0}));
    QTest::qWait(2 * KelBlinkAnimation::STEP_MS);
    QCOMPARE(spy.size(), KelBlinkAnimation::STEPS);
}

void tst_KelBlinkAnimation::firstStateComesAtOnce()
{
    KelBlinkAnimation animation;
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    animation.start();
    QCOMPARE(states(spy), QList<int>({1}));
}

void tst_KelBlinkAnimation::stopEndsWithTheNormalState()
{
    KelBlinkAnimation animation;
    animation.start();
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    animation.stop();
    QVERIFY(!animation.isRunning());
    QCOMPARE(states(spy), QList<int>({0}));
    QTest::qWait(2 * KelBlinkAnimation::STEP_MS);
    QCOMPARE(spy.size(), 1);
}

void tst_KelBlinkAnimation::stopAtRestIsSilent()
{
    KelBlinkAnimation animation;
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    animation.stop();
    QCOMPARE(spy.size(), 0);
}

void tst_KelBlinkAnimation::startWhileRunningBeginsAnew()
{
    KelBlinkAnimation animation;
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    animation.start();
    QTRY_VERIFY(spy.size() >= 2);
    spy.clear();
    animation.start();
    QTRY_VERIFY(!animation.isRunning());
    QCOMPARE(states(spy), QList<int>({1, 0, 1, 0, 1, 0}));
}

void tst_KelBlinkAnimation::canBeStartedAgain()
{
    KelBlinkAnimation animation;
    animation.start();
    animation.stop();
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    animation.start();
    QTRY_VERIFY(!animation.isRunning());
    QCOMPARE(spy.size(), KelBlinkAnimation::STEPS);
}

void tst_KelBlinkAnimation::receiverMayStopIt()
{
    KelBlinkAnimation animation;
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    connect(&animation, &KelBlinkAnimation::blink, &animation, [&animation] { animation.stop(); });
    animation.start();
    QVERIFY(!animation.isRunning());
    QCOMPARE(states(spy), QList<int>({1, 0}));
}

void tst_KelBlinkAnimation::receiverMayStartTheNextOne()
{
    KelBlinkAnimation animation;
    QSignalSpy spy(&animation, &KelBlinkAnimation::blink);
    bool isRestarted = false;
    connect(&animation, &KelBlinkAnimation::blink, &animation, [&animation, &isRestarted] {
        if (!animation.isRunning() && !isRestarted) {
            isRestarted = true;
            animation.start();
        }
    });
    animation.start();
    QTRY_VERIFY(isRestarted && !animation.isRunning());
    QCOMPARE(spy.size(), 2 * KelBlinkAnimation::STEPS);
}

QTEST_GUILESS_MAIN(tst_KelBlinkAnimation)
#include "tst_KelBlinkAnimation.moc"

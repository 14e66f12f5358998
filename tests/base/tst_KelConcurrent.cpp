// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelConcurrent.h>

#include <QtTest>

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

#include <list>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

QList<int> numbers(int count)
{
    QList<int> result;
    for (int i = 0; i < count; ++i)
        result.append(i);
    return result;
}

/// Runs a function in a thread of its own that belongs to no pool.
template<class Function>
void inWorkerThread(Function function)
{
    std::thread(function).join();
}

/// Lets the global pool count further tasks as running.
class BusyPool
{
public:
    explicit BusyPool(int tasks)
        : m_tasks(tasks)
    {
        for (int i = 0; i < m_tasks; ++i)
            QThreadPool::globalInstance()->reserveThread();
    }
    ~BusyPool()
    {
        for (int i = 0; i < m_tasks; ++i)
            QThreadPool::globalInstance()->releaseThread();
    }
    Q_DISABLE_COPY_MOVE(BusyPool)

private:
    int m_tasks;
};

struct WithoutDefault
{
    explicit WithoutDefault(int number)
        : value(number)
    {
    }
    int value;
};

} // namespace

class tst_KelConcurrent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void maxRunningThreads();
    void mayRunParallel();
    void resultsKeepTheOrder_data();
    void resultsKeepTheOrder();
    void resultsWithoutDefaultConstructor();
    void sequencesOfAnyKind();
    void everyPieceRunsOnce();
    void saturatedPoolMeansTheCallingThread();
    void mainThreadUsesThePoolWhenSaturated();
    void oneElementStaysInTheCallingThread();
    void blockingMap();
    void firstExceptionReachesTheCaller_data();
    void firstExceptionReachesTheCaller();
    void exceptionOfABlockingMap();
    void nestedCalls();
    void concurrentCallersInSmallPoolFinish_data();
    void concurrentCallersInSmallPoolFinish();
    void poolIsAsBeforeAfterwards();
    void waitingCallersCountAsRunning();
    void callersOutsideThePoolMakeNoRoomInIt();
};

void tst_KelConcurrent::cleanup()
{
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60000));
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
}

void tst_KelConcurrent::maxRunningThreads()
{
    QCOMPARE(KelConcurrent::maxRunningThreads, 3 * QThread::idealThreadCount());
}

void tst_KelConcurrent::mayRunParallel()
{
    const auto inWorker = [] {
        bool parallel = false;
        inWorkerThread([&parallel] { parallel = KelConcurrent::mayRunParallel(); });
        return parallel;
    };
    QVERIFY(KelConcurrent::mayRunParallel());
    QVERIFY(inWorker());
    {
        const BusyPool busy(KelConcurrent::maxRunningThreads - 1);
        QVERIFY(KelConcurrent::mayRunParallel());
        QVERIFY(inWorker());
    }
    {
        const BusyPool busy(KelConcurrent::maxRunningThreads);
        QVERIFY(KelConcurrent::mayRunParallel());
        QVERIFY(!inWorker());
    }
    {
        const BusyPool busy(KelConcurrent::maxRunningThreads + 1);
        QVERIFY(KelConcurrent::mayRunParallel());
        QVERIFY(!inWorker());
    }
}

void tst_KelConcurrent::resultsKeepTheOrder_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("worker");
    QTest::addColumn<bool>("saturated");

    for (const int count : {0, 1, 2, 3, 1000}) {
        QTest::addRow("%d, main thread", count) << count << false << false;
        QTest::addRow("%d, main thread, saturated pool", count) << count << false << true;
        QTest::addRow("%d, worker thread", count) << count << true << false;
        QTest::addRow("%d, worker thread, saturated pool", count) << count << true << true;
    }
}

void tst_KelConcurrent::resultsKeepTheOrder()
{
    QFETCH(int, count);
    QFETCH(bool, worker);
    QFETCH(bool, saturated);
    const BusyPool busy(saturated ? KelConcurrent::maxRunningThreads : 0);
    QStringList results;
    const auto run = [&results, count] {
        results = KelConcurrent::blockingMapped(numbers(count), [](int number) {
            // Later pieces tend to be ready first.
            if (number % 7 == 0)
                QThread::usleep(200);
            return QString::number(number * 2);
        });
    };
    if (worker)
        inWorkerThread(run);
    else
        run();
    QCOMPARE(results.size(), count);
    for (int i = 0; i < count; ++i)
        QCOMPARE(results.at(i), QString::number(i * 2));
}

void tst_KelConcurrent::resultsWithoutDefaultConstructor()
{
    const QList<WithoutDefault> results =
        KelConcurrent::blockingMapped(numbers(3), [](int number) { return WithoutDefault(number + 1); });
    QCOMPARE(results.size(), 3);
    QCOMPARE(results.at(0).value, 1);
    QCOMPARE(results.at(2).value, 3);
}

void tst_KelConcurrent::sequencesOfAnyKind()
{
    const auto square = [](int number) { return number * number; };
    const QList<int> expected{4, 9, 16};
    QCOMPARE(KelConcurrent::blockingMapped(std::vector<int>{2, 3, 4}, square), expected);
    QCOMPARE(KelConcurrent::blockingMapped(std::list<int>{2, 3, 4}, square), expected);
    QCOMPARE(KelConcurrent::blockingMapped(QStringList{QStringLiteral("a"), QStringLiteral("bcd")}, &QString::size),
             (QList<qsizetype>{1, 3}));
}

void tst_KelConcurrent::everyPieceRunsOnce()
{
    std::vector<std::atomic<int>> calls(500);
    const QList<int> results = KelConcurrent::blockingMapped(numbers(500), [&calls](int number) {
        return ++calls[static_cast<std::size_t>(number)];
    });
    QCOMPARE(results, QList<int>(500, 1));
    for (const auto &count : calls)
        QCOMPARE(count.load(), 1);
}

void tst_KelConcurrent::saturatedPoolMeansTheCallingThread()
{
    const BusyPool busy(KelConcurrent::maxRunningThreads);
    bool same = true;
    QList<int> order;
    inWorkerThread([&same, &order] {
        const QThread *caller = QThread::currentThread();
        KelConcurrent::blockingMapped(numbers(50), [&same, &order, caller](int number) {
            same = same && QThread::currentThread() == caller;
            order.append(number);
            return number;
        }).clear();
    });
    QVERIFY(same);
    QCOMPARE(order, numbers(50));
}

void tst_KelConcurrent::mainThreadUsesThePoolWhenSaturated()
{
    // A piece that waits for the next one can only be left when both run at the same time.
    const BusyPool busy(KelConcurrent::maxRunningThreads);
    QThreadPool::globalInstance()->setMaxThreadCount(KelConcurrent::maxRunningThreads + 2);
    QSemaphore arrived;
    const QList<bool> met = KelConcurrent::blockingMapped(numbers(2), [&arrived](int) {
        arrived.release();
        while (arrived.available() < 2)
            QThread::usleep(100);
        return true;
    });
    QCOMPARE(met, (QList<bool>{true, true}));
}

void tst_KelConcurrent::oneElementStaysInTheCallingThread()
{
    const QThread *caller = QThread::currentThread();
    const QList<const QThread *> threads = KelConcurrent::blockingMapped(
        numbers(1), [](int) { return static_cast<const QThread *>(QThread::currentThread()); });
    QCOMPARE(threads, QList<const QThread *>{caller});
}

void tst_KelConcurrent::blockingMap()
{
    for (const int count : {0, 1, 2, 777}) {
        std::vector<int> done(static_cast<std::size_t>(count), 0);
        KelConcurrent::blockingMap(numbers(count), [&done](int number) { ++done[static_cast<std::size_t>(number)]; });
        QCOMPARE(done, std::vector<int>(static_cast<std::size_t>(count), 1));
    }
}

void tst_KelConcurrent::firstExceptionReachesTheCaller_data()
{
    QTest::addColumn<bool>("worker");
    QTest::addColumn<bool>("saturated");

    QTest::newRow("main thread") << false << false;
    QTest::newRow("worker thread") << true << false;
    QTest::newRow("worker thread, saturated pool") << true << true;
}

void tst_KelConcurrent::firstExceptionReachesTheCaller()
{
    QFETCH(bool, worker);
    QFETCH(bool, saturated);
    const BusyPool busy(saturated ? KelConcurrent::maxRunningThreads : 0);
    QString caught;
    const auto run = [&caught] {
        try {
            KelConcurrent::blockingMapped(numbers(200), [](int number) {
                if (number == 13)
                    QThread::msleep(5);
                if (number >= 13 && number % 2 == 1)
                    throw std::runtime_error("piece " + std::to_string(number));
                return number;
            }).clear();
        } catch (const std::runtime_error &error) {
            caught = QString::fromLatin1(error.what());
        }
    };
    for (int round = 0; round < 20; ++round) {
        caught.clear();
        if (worker)
            inWorkerThread(run);
        else
            run();
        QCOMPARE(caught, QStringLiteral("piece 13"));
    }
}

void tst_KelConcurrent::exceptionOfABlockingMap()
{
    const auto throwAtNine = [](int number) {
        if (number == 9)
            throw std::out_of_range("nine");
    };
    const auto throwAlways = [](int) { throw std::out_of_range("always"); };
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, KelConcurrent::blockingMap(numbers(10), throwAtNine));
    QVERIFY_THROWS_EXCEPTION(std::out_of_range, KelConcurrent::blockingMap(numbers(1), throwAlways));
}

void tst_KelConcurrent::nestedCalls()
{
    const QList<int> sums = KelConcurrent::blockingMapped(numbers(20), [](int outer) {
        const QList<int> inner =
            KelConcurrent::blockingMapped(numbers(20), [outer](int number) { return outer * number; });
        int sum = 0;
        for (const int number : inner)
            sum += number;
        return sum;
    });
    QCOMPARE(sums.size(), 20);
    for (int i = 0; i < 20; ++i)
        QCOMPARE(sums.at(i), i * 190);
}

void tst_KelConcurrent::concurrentCallersInSmallPoolFinish_data()
{
    QTest::addColumn<int>("poolSize");
    QTest::addColumn<int>("callers");

    for (const int poolSize : {1, 2, 3}) {
        for (const int callers : {1, 2, 3, 4, 40})
            QTest::addRow("%d threads, %d callers", poolSize, callers) << poolSize << callers;
    }
}

void tst_KelConcurrent::concurrentCallersInSmallPoolFinish()
{
    QFETCH(int, poolSize);
    QFETCH(int, callers);
    QThreadPool *pool = QThreadPool::globalInstance();
    pool->setMaxThreadCount(poolSize);
    std::vector<std::atomic<int>> sums(static_cast<std::size_t>(callers));
    for (auto &sum : sums) {
        pool->start([&sum] {
            const QList<int> results = KelConcurrent::blockingMapped(numbers(16), [](int number) {
                QThread::usleep(50);
                return number;
            });
            for (const int number : results)
                sum += number;
        });
    }
    if (!pool->waitForDone(60000))
        qFatal("the callers wait for one another");
    for (const auto &sum : sums)
        QCOMPARE(sum.load(), 120);
}

void tst_KelConcurrent::poolIsAsBeforeAfterwards()
{
    QThreadPool *pool = QThreadPool::globalInstance();
    pool->setMaxThreadCount(2);
    std::atomic<int> caught{0};
    for (int i = 0; i < 10; ++i) {
        pool->start([&caught] {
            try {
                KelConcurrent::blockingMap(numbers(8), [](int) { throw std::runtime_error("no"); });
            } catch (const std::runtime_error &) {
                ++caught;
            }
        });
    }
    if (!pool->waitForDone(60000))
        qFatal("the callers wait for one another");
    QCOMPARE(caught.load(), 10);
    QCOMPARE(pool->activeThreadCount(), 0);
}

void tst_KelConcurrent::waitingCallersCountAsRunning()
{
#ifdef KEL_STD_THREAD_EXECUTOR
    QSKIP("plain threads do not wait for the pool");
#endif
    const auto mayInWorker = [] {
        bool parallel = false;
        inWorkerThread([&parallel] { parallel = KelConcurrent::mayRunParallel(); });
        return parallel;
    };
    // Each caller gives its place to a piece of its own, which stays until the gate opens. So there are as many
    // waiting callers as running pieces: too few pieces for the limit, but enough together.
    const int callers = (KelConcurrent::maxRunningThreads + 1) / 2;
    QVERIFY(callers < KelConcurrent::maxRunningThreads);
    QThreadPool *pool = QThreadPool::globalInstance();
    QSemaphore arrived;
    QSemaphore gate;
    std::atomic<int> done{0};
    bool parallelBefore = true;
    for (int i = 1; i <= callers; ++i) {
        parallelBefore = parallelBefore && mayInWorker();
        pool->setMaxThreadCount(i);
        pool->start([&arrived, &gate, &done] {
            KelConcurrent::blockingMap(numbers(2), [&arrived, &gate](int) {
                arrived.release();
                gate.acquire();
            });
            ++done;
        });
        if (!arrived.tryAcquire(1, 60000))
            qFatal("the caller keeps its place");
    }
    const int active = pool->activeThreadCount();
    const bool parallelAfterwards = mayInWorker();
    gate.release(2 * callers);
    if (!pool->waitForDone(60000))
        qFatal("the callers wait for one another");
    QCOMPARE(active, callers);
    QVERIFY(parallelBefore);
    QVERIFY(!parallelAfterwards);
    QCOMPARE(done.load(), callers);

    // None of them is counted any more.
    const BusyPool busy(KelConcurrent::maxRunningThreads - 1);
    QVERIFY(mayInWorker());
}

void tst_KelConcurrent::callersOutsideThePoolMakeNoRoomInIt()
{
#ifdef KEL_STD_THREAD_EXECUTOR
    QSKIP("plain threads do not care about the pool");
#endif
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    std::atomic<int> running{0};
    std::atomic<int> most{0};
    const auto run = [&running, &most] {
        KelConcurrent::blockingMap(numbers(20), [&running, &most](int) {
            const int now = ++running;
            if (now > most)
                most = now;
            QThread::msleep(2);
            --running;
        });
    };
    run();
    inWorkerThread(run);
    QCOMPARE(most.load(), 1);
}

QTEST_GUILESS_MAIN(tst_KelConcurrent)
#include "tst_KelConcurrent.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelSingleton.h>
#include <KelUniqueFilenameMaker.h>

#include <QCoreApplication>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

class Lazy : public KelSingleton<Lazy>
{
    friend class KelSingleton<Lazy>;

public:
    static inline int created = 0;
    static inline int setUp = 0;

private:
    Lazy()
    {
        ++created;
    }

    void setupInstance() override
    {
        ++setUp;
    }
};

/// Slow to create and slow to set up, so that threads meet.
class Slow : public KelSingleton<Slow>
{
public:
    static inline std::atomic<int> created = 0;
    std::atomic<bool> isSetUp = false;

    Slow()
    {
        ++created;
        QThread::msleep(20);
    }

protected:
    void setupInstance() override
    {
        QThread::msleep(20);
        isSetUp = true;
    }
};

/// Asks for itself while it is being set up, as settings do whose loading saves them.
class SelfAsking : public KelSingleton<SelfAsking>
{
public:
    SelfAsking *seenDuringSetup = nullptr;
    int setUp = 0;

protected:
    void setupInstance() override
    {
        ++setUp;
        seenDuringSetup = &SelfAsking::instance();
    }
};

/// Two singletons that need each other: the second is created while the first is being set up, and asks for the first.
class First;
class Second : public KelSingleton<Second>
{
public:
    First *first = nullptr;

protected:
    void setupInstance() override;
};

class First : public KelSingleton<First>
{
public:
    Second *second = nullptr;

protected:
    void setupInstance() override
    {
        second = &Second::instance();
    }
};

void Second::setupInstance()
{
    first = &First::instance();
}

class FailsOnce : public KelSingleton<FailsOnce>
{
public:
    static inline int attempts = 0;

protected:
    void setupInstance() override
    {
        if (++attempts == 1)
            throw std::runtime_error("the first attempt fails");
    }
};

class WithoutSetup : public KelSingleton<WithoutSetup>
{
};

class AsksInConstructor : public KelSingleton<AsksInConstructor>
{
public:
    AsksInConstructor()
    {
        (void)AsksInConstructor::instance();
    }
};

const char AskInConstructor[] = "--ask-in-constructor";

} // namespace

class tst_KelSingleton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isCreatedOnFirstUseAndSetUpOnce();
    void baseSetupDoesNothing();
    void manyThreadsGetOneFinishedObject();
    void setupMayAskForTheInstance();
    void singletonsMayNeedEachOther();
    void failedSetupIsTriedAgain();
    void constructorMustNotAskForTheInstance();
    void familyClassesAreReachedThroughTheTemplate();
};

void tst_KelSingleton::isCreatedOnFirstUseAndSetUpOnce()
{
    QCOMPARE(Lazy::created, 0);
    Lazy &lazy = Lazy::instance();
    QCOMPARE(Lazy::created, 1);
    QCOMPARE(Lazy::setUp, 1);
    QCOMPARE(&KelSingleton<Lazy>::instance(), &lazy);
    QCOMPARE(Lazy::created, 1);
    QCOMPARE(Lazy::setUp, 1);
}

void tst_KelSingleton::baseSetupDoesNothing()
{
    QCOMPARE(&WithoutSetup::instance(), &WithoutSetup::instance());
}

void tst_KelSingleton::manyThreadsGetOneFinishedObject()
{
    constexpr int threadCount = 8;
    std::vector<Slow *> seen(threadCount, nullptr);
    std::atomic<int> unfinished = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&seen, &unfinished, i] {
            Slow &slow = Slow::instance();
            if (!slow.isSetUp)
                ++unfinished;
            seen[static_cast<size_t>(i)] = &slow;
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    QCOMPARE(Slow::created.load(), 1);
    QCOMPARE(unfinished.load(), 0);
    for (const Slow *slow : seen)
        QCOMPARE(slow, &Slow::instance());
}

void tst_KelSingleton::setupMayAskForTheInstance()
{
    SelfAsking &object = SelfAsking::instance();
    QCOMPARE(object.seenDuringSetup, &object);
    QCOMPARE(object.setUp, 1);
}

void tst_KelSingleton::singletonsMayNeedEachOther()
{
    First &first = First::instance();
    QCOMPARE(first.second, &Second::instance());
    QCOMPARE(Second::instance().first, &first);
}

void tst_KelSingleton::failedSetupIsTriedAgain()
{
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, (void)FailsOnce::instance());
    (void)FailsOnce::instance();
    QCOMPARE(FailsOnce::attempts, 2);
    (void)FailsOnce::instance();
    QCOMPARE(FailsOnce::attempts, 2);
}

void tst_KelSingleton::constructorMustNotAskForTheInstance()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QLatin1String(AskInConstructor)});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    QVERIFY(child.readAllStandardError().contains("the constructor of a singleton asks for its own instance"));
}

void tst_KelSingleton::familyClassesAreReachedThroughTheTemplate()
{
    QCOMPARE(&KelSingleton<KelUniqueFilenameMaker>::instance(), &KelUniqueFilenameMaker::instance());
}

int main(int argc, char *argv[])
{
    if (argc > 1 && QLatin1String(argv[1]) == QLatin1String(AskInConstructor)) {
        (void)AsksInConstructor::instance();
        return 0;
    }
    QCoreApplication application(argc, argv);
    tst_KelSingleton test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_KelSingleton.moc"

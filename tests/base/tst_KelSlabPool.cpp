// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Memory that comes back is counted in slabs, never timed. Whether objects overlap is seen by what is written into them.
// KEL_RANDOM_CASES sets the number of random steps, KEL_RANDOM_SEED another beginning.

#include "../../libs/KelGeoLocation/base/KelSlabPool.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include <sys/mman.h>

namespace
{

std::atomic<bool> hasNoPages{false};
std::atomic<bool> takesNothingBack{false};
std::atomic<int> refusals{0};

bool refuses(const std::atomic<bool> &fault)
{
    if (!fault)
        return false;
    ++refusals;
    errno = ENOMEM;
    return true;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" void *__real_mmap(void *address, std::size_t size, int protection, int flags, int file, off_t offset);
extern "C" void *__real_mmap64(void *address, std::size_t size, int protection, int flags, int file, off_t offset);
extern "C" int __real_munmap(void *address, std::size_t size);
extern "C" void *__wrap_mmap(void *address, std::size_t size, int protection, int flags, int file, off_t offset);
extern "C" void *__wrap_mmap64(void *address, std::size_t size, int protection, int flags, int file, off_t offset);
extern "C" int __wrap_munmap(void *address, std::size_t size);

void *__wrap_mmap(void *address, std::size_t size, int protection, int flags, int file, off_t offset)
{
    return refuses(hasNoPages) ? MAP_FAILED : __real_mmap(address, size, protection, flags, file, offset);
}

void *__wrap_mmap64(void *address, std::size_t size, int protection, int flags, int file, off_t offset)
{
    return refuses(hasNoPages) ? MAP_FAILED : __real_mmap64(address, size, protection, flags, file, offset);
}

int __wrap_munmap(void *address, std::size_t size)
{
    return refuses(takesNothingBack) ? -1 : __real_munmap(address, size);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace
{

constexpr std::size_t SMALL = 48;
constexpr std::size_t LARGE = 72;

// What a thread may keep: the rest of a slab, and the slabs of its cached objects.
constexpr int KEPT_BY_A_THREAD = 1 + 2 * KelSlabPool::BATCH;

constinit KelSlabPool smallPool(SMALL);
constinit thread_local KelSlabPool::ThreadCache smallCache;
constinit KelSlabPool largePool(LARGE);
constinit thread_local KelSlabPool::ThreadCache largeCache;

int fromEnvironment(const char *name, int otherwise)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value : otherwise;
}

/// Memory of one of the pools, filled with a pattern that is looked at before it is released.
class Block
{
public:
    Block(bool large, std::uint64_t pattern)
        : m_large(large)
        , m_pattern(pattern)
        , m_words(static_cast<std::uint64_t *>(large ? largePool.allocate(largeCache, LARGE)
                                                     : smallPool.allocate(smallCache, SMALL)))
    {
        std::fill_n(m_words, size() / sizeof(std::uint64_t), m_pattern);
    }

    /// Whether nobody else wrote here.
    bool release() const
    {
        const bool whole =
            std::all_of(m_words, m_words + size() / sizeof(std::uint64_t), [this](auto word) { return word == m_pattern; });
        if (m_large)
            largePool.release(largeCache, m_words, LARGE);
        else
            smallPool.release(smallCache, m_words, SMALL);
        return whole;
    }

    std::uintptr_t address() const { return reinterpret_cast<std::uintptr_t>(m_words); }
    std::size_t size() const { return m_large ? LARGE : SMALL; }

private:
    bool m_large;
    std::uint64_t m_pattern;
    std::uint64_t *m_words;
};

std::vector<Block> blocks(int count, bool large = false)
{
    std::vector<Block> result;
    result.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        result.emplace_back(large, std::uint64_t(i) * 0x9e3779b97f4a7c15u + 1);
    return result;
}

bool release(const std::vector<Block> &blocks)
{
    return std::all_of(blocks.begin(), blocks.end(), [](const Block &block) { return block.release(); });
}

template<typename Function>
void inThread(Function function)
{
    std::thread(function).join();
}

int slabsOf(int count, std::size_t size)
{
    const int perSlab = static_cast<int>((KelSlabPool::SLAB_SIZE - 64) / size);
    return (count + perSlab - 1) / perSlab;
}

} // namespace

class tst_KelSlabPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void objectsDoNotOverlap_data();
    void objectsDoNotOverlap();
    void memoryIsNotWasted();
    void memoryComesBack_data();
    void memoryComesBack();
    void memoryComesBackWhenAnotherThreadReleases();
    void partOfTheObjectsKeepsOnlyTheirSlabs();
    void releasedObjectsAreTakenAgain();
    void takingAndReleasingByTurnsNeedsNoFurtherSlab();
    void threadsLeaveNothingBehind();
    void threadsTakeWhatOthersLeft();
    void whileAThreadEnds();
    void forTheFirstTimeWhileAThreadEnds();
    void slabsComeFromTheHeapWhereThereAreNoPages();
    void slabsThatTheSystemDoesNotTakeBackAreUsedAgain();
    void aBlockThatTheSystemDoesNotTakeBackIsUsedUp();
    void otherSizes();
    void poolsAreApart();
    void randomStepsInManyThreads();
};

/// The tests run in threads of their own, so nothing is cached any more.
void tst_KelSlabPool::cleanup()
{
    QVERIFY2(smallPool.slabCount() <= KelSlabPool::KEPT_SLABS, qPrintable(QString::number(smallPool.slabCount())));
    QVERIFY2(largePool.slabCount() <= KelSlabPool::KEPT_SLABS, qPrintable(QString::number(largePool.slabCount())));
}

void tst_KelSlabPool::objectsDoNotOverlap_data()
{
    QTest::addColumn<bool>("large");
    QTest::addColumn<int>("count");
    for (const int count : {1, 2, KelSlabPool::BATCH, 2 * KelSlabPool::BATCH + 1, 910, 1364, 1365, 20000}) {
        QTest::addRow("%d small", count) << false << count;
        QTest::addRow("%d large", count) << true << count;
    }
}

void tst_KelSlabPool::objectsDoNotOverlap()
{
    QFETCH(bool, large);
    QFETCH(int, count);
    inThread([&] {
        // A second time with what was released the first time.
        for (int round = 0; round < 2; ++round) {
            std::vector<Block> all = blocks(count, large);
            std::vector<Block> sorted = all;
            std::sort(sorted.begin(), sorted.end(),
                      [](const Block &a, const Block &b) { return a.address() < b.address(); });
            for (std::size_t i = 0; i < sorted.size(); ++i) {
                QCOMPARE(sorted[i].address() % alignof(double), std::uintptr_t(0));
                if (i > 0)
                    QVERIFY(sorted[i - 1].address() + sorted[i - 1].size() <= sorted[i].address());
            }
            std::shuffle(all.begin(), all.end(), std::mt19937(7));
            QVERIFY(release(all));
        }
    });
}

void tst_KelSlabPool::memoryIsNotWasted()
{
    inThread([] {
        const std::vector<Block> all = blocks(100000, true);
        const int uncut = static_cast<int>(KelSlabPool::BLOCK_SIZE / KelSlabPool::SLAB_SIZE);
        QVERIFY(largePool.slabCount() <= slabsOf(100000, LARGE) + KelSlabPool::KEPT_SLABS + uncut);
        QVERIFY(release(all));
    });
}

void tst_KelSlabPool::memoryComesBack_data()
{
    QTest::addColumn<QString>("order");
    QTest::newRow("as taken") << "forward";
    QTest::newRow("backwards") << "backward";
    QTest::newRow("in any order") << "shuffled";
}

void tst_KelSlabPool::memoryComesBack()
{
    QFETCH(QString, order);
    inThread([&] {
        std::vector<Block> all = blocks(500000);
        QVERIFY(smallPool.slabCount() >= slabsOf(500000, SMALL));
        if (order == QLatin1String("backward"))
            std::reverse(all.begin(), all.end());
        if (order == QLatin1String("shuffled"))
            std::shuffle(all.begin(), all.end(), std::mt19937(3));
        QVERIFY(release(all));
        // While the thread lives.
        const int kept = KelSlabPool::KEPT_SLABS + (order == QLatin1String("shuffled") ? KEPT_BY_A_THREAD : 3);
        QVERIFY2(smallPool.slabCount() <= kept, qPrintable(QString::number(smallPool.slabCount())));
    });
}

void tst_KelSlabPool::memoryComesBackWhenAnotherThreadReleases()
{
    std::atomic<int> state{0};
    std::vector<Block> all;
    // The thread that took the objects lives on and does nothing.
    std::thread taker([&] {
        all = blocks(500000);
        state = 1;
        state.notify_all();
        state.wait(1);
    });
    state.wait(0);
    inThread([&] { QVERIFY(release(all)); });
    QVERIFY2(smallPool.slabCount() <= KelSlabPool::KEPT_SLABS + 1, qPrintable(QString::number(smallPool.slabCount())));
    state = 2;
    state.notify_all();
    taker.join();
}

void tst_KelSlabPool::partOfTheObjectsKeepsOnlyTheirSlabs()
{
    inThread([] {
        std::vector<Block> all = blocks(500000);
        const std::vector<Block> kept(all.begin(), all.begin() + 50000);
        QVERIFY(release(std::vector<Block>(all.begin() + 50000, all.end())));
        QVERIFY(smallPool.slabCount() <= slabsOf(50000, SMALL) + KelSlabPool::KEPT_SLABS + 3);
        QVERIFY(release(kept));
    });
}

void tst_KelSlabPool::releasedObjectsAreTakenAgain()
{
    inThread([] {
        std::vector<Block> all = blocks(500000);
        const int slabs = smallPool.slabCount();
        // Every second one of all slabs, so that no slab comes back.
        std::vector<Block> others;
        for (std::size_t i = 0; i < all.size(); i += 2)
            others.push_back(all[i]);
        QVERIFY(release(others));
        QCOMPARE(smallPool.slabCount(), slabs);
        others = blocks(static_cast<int>(others.size()));
        QCOMPARE(smallPool.slabCount(), slabs);
        QVERIFY(release(others));
        for (std::size_t i = 1; i < all.size(); i += 2)
            QVERIFY(all[i].release());
    });
}

void tst_KelSlabPool::takingAndReleasingByTurnsNeedsNoFurtherSlab()
{
    inThread([] {
        for (int depth = 1; depth < 3 * KelSlabPool::BATCH; ++depth) {
            for (int i = 0; i < 20; ++i)
                QVERIFY(release(blocks(depth)));
        }
        QVERIFY(smallPool.slabCount() <= KelSlabPool::KEPT_SLABS);
    });
}

void tst_KelSlabPool::threadsLeaveNothingBehind()
{
    for (int i = 0; i < 200; ++i)
        inThread([i] { QVERIFY(release(blocks(i * 7, i % 2 == 0))); });
}

void tst_KelSlabPool::threadsTakeWhatOthersLeft()
{
    const int before = smallPool.slabCount();
    std::vector<Block> all;
    for (int i = 0; i < 100; ++i) {
        inThread([&all] {
            const std::vector<Block> some = blocks(10);
            all.insert(all.end(), some.begin(), some.end());
        });
    }
    QVERIFY(smallPool.slabCount() <= before + 1);
    inThread([&all] { QVERIFY(release(all)); });
}

namespace
{

/// Objects of a thread that are still there when its cache was returned already.
class Late
{
public:
    void begin() { m_blocks = blocks(10); }
    /// Has the thread make it, with nothing in it.
    void exist() { m_blocks.clear(); }
    ~Late()
    {
        isRight = release(m_blocks) && release(blocks(3 * KelSlabPool::BATCH));
        // A pool that the thread did not use before.
        isRight = isRight && release(blocks(5, true));
    }

    static inline std::atomic<bool> isRight{false};

private:
    std::vector<Block> m_blocks;
};

} // namespace

void tst_KelSlabPool::whileAThreadEnds()
{
    inThread([] {
        // What is made first goes last: after the cache of the first object.
        static thread_local Late late;
        late.begin();
    });
    QVERIFY(Late::isRight);
}

void tst_KelSlabPool::forTheFirstTimeWhileAThreadEnds()
{
    // Nothing of the pool was touched by this thread before its objects end: what is cached then comes back all the same.
    for (int i = 0; i < 20; ++i) {
        inThread([] {
            static thread_local Late late;
            late.exist();
        });
        QVERIFY(Late::isRight.exchange(false));
    }
}

void tst_KelSlabPool::slabsComeFromTheHeapWhereThereAreNoPages()
{
    inThread([] {
        const std::vector<Block> before = blocks(3000, true);
        hasNoPages = true;
        refusals = 0;
        const std::vector<Block> all = blocks(50000, true);
        QVERIFY(refusals > 0);
        QVERIFY(largePool.heapSlabCount() > 0);
        hasNoPages = false;
        const std::vector<Block> after = blocks(3000, true);
        QVERIFY(release(all));
        QVERIFY(release(before));
        QVERIFY(release(after));
        QVERIFY2(largePool.heapSlabCount() <= KelSlabPool::KEPT_SLABS + 1, qPrintable(QString::number(largePool.heapSlabCount())));
    });
}

void tst_KelSlabPool::slabsThatTheSystemDoesNotTakeBackAreUsedAgain()
{
    inThread([] {
        const std::vector<Block> all = blocks(50000);
        const int slabs = smallPool.slabCount();
        takesNothingBack = true;
        refusals = 0;
        QVERIFY(release(all));
        QVERIFY(refusals > 0);
        // None is forgotten, and no further ones are needed.
        QCOMPARE(smallPool.slabCount(), slabs);
        takesNothingBack = false;
        const std::vector<Block> again = blocks(50000);
        QVERIFY2(smallPool.slabCount() <= slabs + 1, qPrintable(QString::number(smallPool.slabCount())));
        QVERIFY(release(again));
    });
}

void tst_KelSlabPool::aBlockThatTheSystemDoesNotTakeBackIsUsedUp()
{
    inThread([] {
        // More than single slabs, so that there is a block of which a part is not cut yet.
        const std::vector<Block> all = blocks((3 * KelSlabPool::SINGLE_SLABS + 2) * 909, true);
        const std::vector<Block> kept(all.begin(), all.begin() + 909);
        takesNothingBack = true;
        QVERIFY(release(std::vector<Block>(all.begin() + 909, all.end())));
        const int slabs = largePool.slabCount();
        const std::vector<Block> again = blocks(3 * KelSlabPool::SINGLE_SLABS * 909, true);
        QVERIFY2(largePool.slabCount() <= slabs + 1, qPrintable(QString::number(largePool.slabCount())));
        takesNothingBack = false;
        QVERIFY(release(again));
        QVERIFY(release(kept));
    });
}

void tst_KelSlabPool::otherSizes()
{
    inThread([] {
        const int slabs = smallPool.slabCount();
        for (const std::size_t size : {std::size_t(1), SMALL - 8, SMALL + 8, std::size_t(100000)}) {
            void *const memory = smallPool.allocate(smallCache, size);
            std::memset(memory, 0x55, size);
            smallPool.release(smallCache, memory, size);
        }
        QCOMPARE(smallPool.slabCount(), slabs);
    });
}

void tst_KelSlabPool::poolsAreApart()
{
    inThread([] {
        const int slabs = largePool.slabCount();
        const std::vector<Block> all = blocks(10000);
        QCOMPARE(largePool.slabCount(), slabs);
        QVERIFY(release(all));
    });
}

namespace
{

/// Where threads leave objects for others.
class Exchange
{
public:
    /// Takes what lies at the place and leaves something else.
    std::vector<Block> swap(std::size_t place, std::vector<Block> objects)
    {
        const std::lock_guard lock(m_mutex);
        std::swap(m_places[place % m_places.size()], objects);
        return objects;
    }

    bool release()
    {
        return std::all_of(m_places.begin(), m_places.end(), [](const std::vector<Block> &objects) { return ::release(objects); });
    }

private:
    std::mutex m_mutex;
    std::array<std::vector<Block>, 16> m_places;
};

bool takeReleaseAndExchange(Exchange *exchange, unsigned seed, int steps)
{
    std::mt19937 random(seed);
    std::vector<Block> own;
    bool whole = true;
    while (steps > 0) {
        const int count = 1 + static_cast<int>(random() % (random() % 10 == 0 ? 3000 : 100));
        steps -= count;
        switch (random() % 4) {
        case 0:
        case 1:
            for (int i = 0; i < count; ++i)
                own.emplace_back(random() % 2 == 0, random());
            break;
        case 2:
            std::shuffle(own.begin(), own.end(), random);
            for (int i = 0; i < count && !own.empty(); ++i) {
                whole = own.back().release() && whole;
                own.pop_back();
            }
            break;
        default:
            own = exchange->swap(random(), std::move(own));
        }
        if (own.size() > 20000) {
            whole = release(own) && whole;
            own.clear();
        }
    }
    return release(own) && whole;
}

} // namespace

void tst_KelSlabPool::randomStepsInManyThreads()
{
    const auto seed = static_cast<unsigned>(fromEnvironment("KEL_RANDOM_SEED", 1));
    const int steps = fromEnvironment("KEL_RANDOM_CASES", 400000);
    constexpr int threadCount = 8;
    constexpr int rounds = 4; // of threads that end, and others that go on with their objects

    Exchange exchange;
    std::atomic<bool> whole{true};
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&, i, round] {
                const unsigned own = (seed * rounds + static_cast<unsigned>(round)) * threadCount + static_cast<unsigned>(i);
                if (!takeReleaseAndExchange(&exchange, own, steps / threadCount / rounds))
                    whole = false;
            });
        }
        for (std::thread &thread : threads)
            thread.join();
    }
    inThread([&] {
        if (!exchange.release())
            whole = false;
    });
    QVERIFY(whole);
}

QTEST_APPLESS_MAIN(tst_KelSlabPool)
#include "tst_KelSlabPool.moc"

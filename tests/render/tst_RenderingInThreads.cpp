// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Renderers are used from the main thread, from pool threads and from threads of their own, several at a time. The
// pictures are the same everywhere, and nobody waits for ever, however small the pool is.

#include "KelRenderTestSupport.h"

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <QtTest>

#include <cmath>
#include <thread>
#include <utility>
#include <vector>

using namespace KelRenderTest;

namespace
{

constexpr int TASKS = 12;
constexpr int PATIENCE_MS = 60000;

/// A spiral that crosses the date line again and again, smoothed, in several segments, and an area with an enclave.
KelGPXTrackSelection selection()
{
    QList<KelGPXTrackSegment> segments;
    for (int part = 0; part < 5; ++part) {
        KelGeoPositionList list;
        for (int i = part * 800; i < (part + 1) * 800; ++i) {
            const double longitude = 170 + 0.005 * i * std::cos(i * 0.02);
            list.append(degrees(0.004 * i * std::sin(i * 0.02), longitude > 180 ? longitude - 360 : longitude));
        }
        segments.append(segment(list));
    }
    KelGPXTrackConfiguration line = configuration();
    line.setHaloWidth(KelDistance(6));
    line.setSmoothingStrength(40);
    line.setSmoothingSteps(500);

    KelGPXTrack island = trackOf({segment({degrees(-9, 171), degrees(9, 171), degrees(9, -171), degrees(-9, -171),
                                           degrees(-9, 171)})});
    island.addEnclave(trackOf({segment({degrees(-3, 177), degrees(3, 177), degrees(3, -177), degrees(-3, 177)})}));
    KelGPXTrackConfiguration area = configuration();
    area.setFillColor(QColor(60, 200, 60, 128));
    area.setCurrentDisplayOptions(strokeAndFill());

    KelGPXTrackSelection result =
        selectionOf({KelGPXConfiguredTrack(island, area), KelGPXConfiguredTrack(trackOf(segments), line)});
    result.setCroppingOpacity(77);
    return result;
}

LinearRenderer renderer()
{
    return LinearRenderer(selection(), QSize(320, 200), 1.0, 10.0, QPointF(160 - 1800, 100));
}

struct Pictures
{
    QImage normal;
    QImage foreground;
    QImage cropped;

    bool operator==(const Pictures &other) const
    {
        return normal == other.normal && foreground == other.foreground && cropped == other.cropped;
    }
};

QImage map()
{
    QImage result(320, 200, QImage::Format_ARGB32);
    result.fill(QColor(10, 200, 100));
    return result;
}

Pictures paint(const KelGPXTrackRenderer &renderer, const QImage &map)
{
    return {renderer.render(KelGPXTrackRenderer::Normal), renderer.renderForeground(), renderer.crop(map)};
}

/// Paints in so many threads of their own and waits for them.
template <typename Paint>
QList<Pictures> paintInThreads(int count, Paint paintOnce)
{
    QList<Pictures> pictures(count);
    Pictures *results = pictures.data();
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back([results, i, paintOnce] { results[i] = paintOnce(); });
    for (std::thread &thread : threads)
        thread.join();
    return pictures;
}

#ifdef KEL_STD_THREAD_EXECUTOR
// ThreadSanitizer cannot see how the pool synchronises.
template <typename Paint, typename Meanwhile>
QList<Pictures> paintInPool(int count, Paint paintOnce, Meanwhile meanwhile)
{
    const QList<Pictures> pictures = paintInThreads(count, paintOnce);
    meanwhile();
    return pictures;
}
#else
/// Paints in so many tasks of the global pool; the program ends when they wait for ever.
template <typename Paint, typename Meanwhile>
QList<Pictures> paintInPool(int count, Paint paintOnce, Meanwhile meanwhile)
{
    QList<QFuture<Pictures>> futures;
    for (int i = 0; i < count; ++i)
        futures.append(QtConcurrent::run(paintOnce));
    meanwhile();
    if (!QThreadPool::globalInstance()->waitForDone(PATIENCE_MS))
        qFatal("The pool's threads wait for one another.");
    QList<Pictures> pictures;
    for (const QFuture<Pictures> &future : std::as_const(futures))
        pictures.append(future.result());
    return pictures;
}
#endif

/// Keeps the size of the global pool.
class PoolSize
{
public:
    explicit PoolSize(int size)
        : m_before(QThreadPool::globalInstance()->maxThreadCount())
    {
        QThreadPool::globalInstance()->setMaxThreadCount(size);
    }
    ~PoolSize() { QThreadPool::globalInstance()->setMaxThreadCount(m_before); }
    Q_DISABLE_COPY_MOVE(PoolSize)

private:
    int m_before;
};

} // namespace

class tst_RenderingInThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void mainThread_data();
    void mainThread();
    void poolThreads_data();
    void poolThreads();
    void mainThreadWhilePoolThreadsRender_data();
    void mainThreadWhilePoolThreadsRender();
    void threadsOfTheirOwn();
    void theMapIsSharedAndStaysAsItIs();

private:
    static void poolSizes();

    Pictures m_expected;
};

void tst_RenderingInThreads::initTestCase()
{
    m_expected = paint(renderer(), map());
    QVERIFY(!m_expected.normal.isNull());
    int filled = 0;
    int lines = 0;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 320; ++x) {
            const QColor color = m_expected.normal.pixelColor(x, y);
            filled += color.alpha() == 128 && color.green() > 190;
            lines += color == QColor(0, 0, 255);
        }
    }
    QVERIFY(filled > 1000);
    QVERIFY(lines > 1000);
    QCOMPARE(m_expected.cropped.pixelColor(310, 100).alpha(), 77);
}

void tst_RenderingInThreads::poolSizes()
{
    QTest::addColumn<int>("poolSize");
    QTest::newRow("pool of one") << 1;
    QTest::newRow("pool of two") << 2;
    QTest::newRow("pool of three") << 3;
    QTest::newRow("pool of sixty-four") << 64;
}

void tst_RenderingInThreads::mainThread_data()
{
    poolSizes();
}

void tst_RenderingInThreads::mainThread()
{
    QFETCH(int, poolSize);
    const PoolSize size(poolSize);
    QVERIFY(paint(renderer(), map()) == m_expected);
}

void tst_RenderingInThreads::poolThreads_data()
{
    poolSizes();
}

void tst_RenderingInThreads::poolThreads()
{
    QFETCH(int, poolSize);
    const PoolSize size(poolSize);
    // One renderer and one map for all.
    const LinearRenderer shared = renderer();
    const QImage sharedMap = map();
    const QList<Pictures> pictures = paintInPool(
        TASKS, [&shared, &sharedMap] { return paint(shared, sharedMap); }, [] {});
    QCOMPARE(pictures.size(), TASKS);
    for (const Pictures &result : pictures)
        QVERIFY(result == m_expected);
}

void tst_RenderingInThreads::mainThreadWhilePoolThreadsRender_data()
{
    poolSizes();
}

void tst_RenderingInThreads::mainThreadWhilePoolThreadsRender()
{
    QFETCH(int, poolSize);
    const PoolSize size(poolSize);
    Pictures inMainThread;
    const QList<Pictures> pictures = paintInPool(
        TASKS, [] { return paint(renderer(), map()); },
        [&inMainThread] { inMainThread = paint(renderer(), map()); });
    QVERIFY(inMainThread == m_expected);
    QCOMPARE(pictures.size(), TASKS);
    for (const Pictures &result : pictures)
        QVERIFY(result == m_expected);
}

void tst_RenderingInThreads::threadsOfTheirOwn()
{
    const LinearRenderer shared = renderer();
    const QList<Pictures> pictures = paintInThreads(4, [&shared] { return paint(shared, map()); });
    for (const Pictures &result : pictures)
        QVERIFY(result == m_expected);
}

void tst_RenderingInThreads::theMapIsSharedAndStaysAsItIs()
{
    // In the working format the map's pixels are shared until they are written.
    const PoolSize size(2);
    const LinearRenderer shared = renderer();
    const QImage sharedMap = map();
    const QImage before = sharedMap.copy();
    const QList<Pictures> pictures = paintInPool(
        TASKS, [&shared, sharedMap] { return Pictures{QImage(), QImage(), shared.crop(sharedMap)}; }, [] {});
    QCOMPARE(pictures.size(), TASKS);
    for (const Pictures &result : pictures)
        QCOMPARE(result.cropped, m_expected.cropped);
    QCOMPARE(sharedMap, before);
}

QTEST_MAIN(tst_RenderingInThreads)
#include "tst_RenderingInThreads.moc"

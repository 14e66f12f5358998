// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Renderers are used from the main thread, from pool threads and from threads of their own, several at a time. The
// pictures are the same everywhere, and nobody waits for ever, however small the pool is.

#include "KelRenderTestSupport.h"

#include <QFuture>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrent>
#include <QtTest>

#include <cmath>

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
    const LinearRenderer shared = renderer();
    const QImage sharedMap = map();
    QList<QFuture<Pictures>> futures;
    for (int i = 0; i < TASKS; ++i)
        futures.append(QtConcurrent::run([&shared, &sharedMap] { return paint(shared, sharedMap); }));
    // A deadlock would leave the program hanging at its end; say first what happened.
    QVERIFY(QThreadPool::globalInstance()->waitForDone(PATIENCE_MS));
    for (const QFuture<Pictures> &future : std::as_const(futures))
        QVERIFY(future.result() == m_expected);
}

void tst_RenderingInThreads::mainThreadWhilePoolThreadsRender_data()
{
    poolSizes();
}

void tst_RenderingInThreads::mainThreadWhilePoolThreadsRender()
{
    QFETCH(int, poolSize);
    const PoolSize size(poolSize);
    QList<QFuture<Pictures>> futures;
    for (int i = 0; i < TASKS; ++i)
        futures.append(QtConcurrent::run([] { return paint(renderer(), map()); }));
    QVERIFY(paint(renderer(), map()) == m_expected);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(PATIENCE_MS));
    for (const QFuture<Pictures> &future : std::as_const(futures))
        QVERIFY(future.result() == m_expected);
}

void tst_RenderingInThreads::threadsOfTheirOwn()
{
    const LinearRenderer shared = renderer();
    QList<Pictures> pictures(4);
    Pictures *results = pictures.data();
    QList<QThread *> threads;
    for (int i = 0; i < 4; ++i) {
        threads.append(QThread::create([&shared, results, i] { results[i] = paint(shared, map()); }));
        threads.last()->start();
    }
    for (QThread *thread : std::as_const(threads)) {
        QVERIFY(thread->wait(PATIENCE_MS));
        delete thread;
    }
    for (const Pictures &result : std::as_const(pictures))
        QVERIFY(result == m_expected);
}

void tst_RenderingInThreads::theMapIsSharedAndStaysAsItIs()
{
    // In the working format the map's pixels are shared until they are written.
    const PoolSize size(2);
    const LinearRenderer shared = renderer();
    const QImage sharedMap = map();
    const QImage before = sharedMap.copy();
    QList<QFuture<QImage>> futures;
    for (int i = 0; i < TASKS; ++i)
        futures.append(QtConcurrent::run([&shared, sharedMap] { return shared.crop(sharedMap); }));
    QVERIFY(QThreadPool::globalInstance()->waitForDone(PATIENCE_MS));
    for (const QFuture<QImage> &future : std::as_const(futures))
        QCOMPARE(future.result(), m_expected.cropped);
    QCOMPARE(sharedMap, before);
}

QTEST_MAIN(tst_RenderingInThreads)
#include "tst_RenderingInThreads.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXMarkerShape.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGPXTrackRenderer.h>
#include <KelGPXTrackSelection.h>
#include <KelGPXTrackShape.h>
#include <KelTestTracks.h>

#include <QtTest>

#include <latch>
#include <stdexcept>
#include <thread>
#include <vector>

Q_DECLARE_METATYPE(std::shared_ptr<const KelGPXTrackElement>)

/// Values and tables that many threads use at the same time. Most of what this shows, it shows under ThreadSanitizer.
class tst_SharedValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tablesAndListsAreMadeByManyThreads();
    void onePieceIsReadByManyThreads_data();
    void onePieceIsReadByManyThreads();
    void copiesAreChangedByManyThreads();
    void aProjectionThatThrowsReachesEachCaller();
};

namespace
{

constexpr int THREADS = 6;

/// Runs the function in so many threads at once, with their number, and the other one in this thread meanwhile.
template<class Function, class Meanwhile>
void inThreads(Function function, Meanwhile meanwhile)
{
    std::latch start(THREADS + 1);
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&start, &function, i] {
            start.arrive_and_wait();
            function(i);
        });
    }
    start.arrive_and_wait();
    meanwhile();
    for (std::thread &thread : threads)
        thread.join();
}

KelGPXTrack longTrack()
{
    QString coordinates;
    for (int i = 0; i < 20000; ++i)
        coordinates += QStringLiteral("%1,%2 ").arg(i % 170 + 1).arg(i % 80);
    return KelTestTracks::track(coordinates.trimmed());
}

QList<KelGeoPosition> joined(const QList<KelGeoPositionList> &chunks)
{
    QList<KelGeoPosition> positions;
    for (const KelGeoPositionList &chunk : chunks)
        positions.append(QList<KelGeoPosition>(chunk.begin(), chunk.end()));
    return positions;
}

class ThrowingRenderer : public KelGPXTrackRenderer
{
public:
    using KelGPXTrackRenderer::KelGPXTrackRenderer;

    QPointF projectPosition(const KelGeoPosition &position) const override
    {
        if (position.latitude().decimalDegrees() == 79.0)
            throw std::runtime_error("no such place on this map");
        return {position.longitude().decimalDegrees(), position.latitude().decimalDegrees()};
    }
};

} // namespace

// First, while nothing has asked for them yet.
void tst_SharedValues::tablesAndListsAreMadeByManyThreads()
{
    const auto use = [] {
        return KelGPXTrackShape(QStringLiteral("polygon")).encode() + KelGPXMarkerShape(QStringLiteral("star6")).encode()
            + KelGPXTrackDisplayOptions(QStringLiteral("fill,stroke")).encode()
            + QString::number(KelGPXMarkerShape::allPointShapes().size())
            + QString::number(KelGPXMarkerShape::allLineStringShapes().size());
    };
    std::vector<QString> texts(THREADS);
    QString here;
    inThreads([&](int i) { texts[std::size_t(i)] = use(); }, [&] { here = use(); });
    QCOMPARE(here, QStringLiteral("polygonstar6stroke, fill92"));
    for (const QString &text : texts)
        QCOMPARE(text, here);
}

void tst_SharedValues::onePieceIsReadByManyThreads_data()
{
    const KelGPXTrack track = longTrack();
    QTest::addColumn<std::shared_ptr<const KelGPXTrackElement>>("element");
    using Element = std::shared_ptr<const KelGPXTrackElement>;
    QTest::newRow("segment") << Element(std::make_shared<KelGPXTrackSegment>(track.segments().first()));
    QTest::newRow("track") << Element(std::make_shared<KelGPXTrack>(track));
    KelGPXTrackSelection selection;
    selection.addTrack(track);
    QTest::newRow("selection") << Element(std::make_shared<KelGPXTrackSelection>(selection));
}

void tst_SharedValues::onePieceIsReadByManyThreads()
{
    QFETCH(std::shared_ptr<const KelGPXTrackElement>, element);
    const KelGeoPositionList all = element->allPoints();
    const QList<KelGeoPosition> expected(all.begin(), all.end());
    QCOMPARE(expected.size(), 20000);
    std::vector<QList<KelGeoPositionList>> chunks(THREADS);
    QList<KelGeoPositionList> here;
    inThreads([&](int i) { chunks[std::size_t(i)] = element->chunkedPoints(); },
              [&] { here = element->chunkedPoints(); });
    QVERIFY(here.size() > 1);
    QVERIFY(joined(here) == expected);
    for (const QList<KelGeoPositionList> &inThread : chunks) {
        QCOMPARE(inThread.size(), 1);
        QVERIFY(joined(inThread) == expected);
    }
}

void tst_SharedValues::copiesAreChangedByManyThreads()
{
    KelGPXTrackSelection shared;
    shared.addTrack(KelTestTracks::configured(QStringLiteral("A")));
    const KelGPXTrackSelection before = shared;
    std::vector<KelGPXTrackSelection> changed(THREADS);
    inThreads(
        [&](int i) {
            for (int round = 0; round < 50; ++round) {
                KelGPXTrackSelection copy = shared;
                KelGPXTrack track = copy.value(0).track();
                track.setName(QString::number(i));
                copy.addTrack(track);
                copy.setCroppingOpacity(i + 1);
                KelGeoPosition place = track.firstPoint();
                place.setLatitude(KelLatitude(double(i)));
                copy.addTrack(KelGPXTrack(KelGPXTrackPoint(place, 0, QDateTime(), QString::number(i))));
                changed[std::size_t(i)] = copy;
            }
        },
        [&] { QVERIFY(shared == before); });
    QVERIFY(shared == before);
    for (int i = 0; i < THREADS; ++i) {
        const KelGPXTrackSelection &copy = changed[std::size_t(i)];
        QCOMPARE(copy.count(), 3);
        QCOMPARE(copy.value(1).name(), QString::number(i));
        QCOMPARE(copy.value(2).track().firstPoint().latitude().decimalDegrees(), double(i));
        QCOMPARE(copy.value(0).name(), QStringLiteral("A"));
    }
}

void tst_SharedValues::aProjectionThatThrowsReachesEachCaller()
{
    KelGPXTrackSelection selection;
    selection.addTrack(longTrack());
    const ThrowingRenderer renderer(selection, QSize(64, 64), 1.0);
    const auto isThrown = [&renderer] {
        try {
            static_cast<void>(renderer.render(KelGPXTrackRenderer::Normal));
            return 0;
        } catch (const std::runtime_error &) {
            return 1;
        }
    };
    std::vector<int> thrown(THREADS);
    int here = 0;
    inThreads([&](int i) { thrown[std::size_t(i)] = isThrown(); }, [&] { here = isThrown(); });
    QCOMPARE(here, 1);
    QCOMPARE(thrown, std::vector<int>(THREADS, 1));
}

QTEST_MAIN(tst_SharedValues)
#include "tst_SharedValues.moc"

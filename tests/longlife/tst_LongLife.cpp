// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFaultTestSupport.h"
#include "KelRenderTestSupport.h"

#include <KelErrorHistory.h>
#include <KelGeoLocationSettings.h>
#include <KelOutputFile.h>
#include <KelSelectionFile.h>
#include <KelTemporarySettings.h>
#include <KelTestArchive.h>
#include <KelTrackSelectionFactory.h>

#include <QApplication>
#include <QBuffer>
#include <QLoggingCategory>
#include <QUrl>
#include <QtTest>

#include <algorithm>

#include <malloc.h>

using namespace KelFaultTestSupport;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool IS_INSTRUMENTED = true; // freed memory is kept for a while
#else
constexpr bool IS_INSTRUMENTED = false;
#endif

/// One process that loads, edits, saves and paints again and again: after it has warmed up it needs no more memory,
/// no more open files and no more threads. What the registry of stored tracks remembers grows with the number of
/// different tracks by design, so the edits come round to the same tracks.
class tst_LongLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingGrows();

private:
    void round(int number);
    [[nodiscard]] KelGPXTrackSelection loaded() const;
    [[nodiscard]] QString path(const QString &name) const { return m_dir.filePath(name); }

    KelTemporarySettings m_settings;
    QTemporaryDir m_dir{temporaryTemplate()};
};

namespace
{

constexpr int EDITS = 6;
constexpr int POINTS = 150;
constexpr qint64 LATE_CACHES = 32 * 1024;
constexpr qint64 BYTES_PER_ROUND = 64;

struct Needs
{
    qint64 heap = 0;     ///< bytes in use, as the allocator counts them
    qint64 resident = 0; ///< bytes
    qsizetype files = 0;
    qsizetype threads = 0;

    static Needs now()
    {
        Needs needs;
        const struct mallinfo2 info = ::mallinfo2();
        needs.heap = qint64(info.uordblks) + qint64(info.hblkhd);
        needs.resident = contentOf(QStringLiteral("/proc/self/statm")).split(' ').at(1).toLongLong() * ::getpagesize();
        needs.files = filesIn(QStringLiteral("/proc/self/fd")).size();
        needs.threads = filesIn(QStringLiteral("/proc/self/task")).size();
        return needs;
    }
    [[nodiscard]] QByteArray text() const
    {
        return QStringLiteral("heap %1 KiB, resident %2 KiB, %3 files, %4 threads")
            .arg(heap / 1024)
            .arg(resident / 1024)
            .arg(files)
            .arg(threads)
            .toUtf8();
    }
};

QByteArray coordinates(const char *form)
{
    QByteArray text;
    for (int i = 0; i < POINTS; ++i)
        text += QString::asprintf(form, 5.0 + i * 0.2, -5.0 - (i % 30) * 0.5).toUtf8();
    return text;
}

} // namespace

void tst_LongLife::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("kel.*.info=false"));
    QVERIFY(m_dir.isValid());
    write(path("a.gpx"), "<gpx><trk><name>A</name><trkseg>" + coordinates("<trkpt lon=\"%.2f\" lat=\"%.2f\"/>") + "</trkseg></trk></gpx>");
    const QByteArray kml = "<kml><Document><Placemark><name>B</name><LineString><coordinates>"
        + coordinates("%.2f,%.2f ") + "</coordinates></LineString></Placemark></Document></kml>";
    write(path("b.kml"), kml);
    KelTestArchive::Entry entry;
    entry.name = "doc.kml";
    entry.content = kml;
    entry.deflated = true;
    QVERIFY(KelTestArchive::write(path("c.kmz"), QList<KelTestArchive::Entry>{entry}));
    write(path("broken.gpx"), "<gpx><trk>");
}

KelGPXTrackSelection tst_LongLife::loaded() const
{
    KelGPXTrackSelection selection;
    for (const char *name : {"a.gpx", "b.kml", "c.kmz", "broken.gpx"}) {
        KelErrorHistory errors;
        selection.addTracks(KelTrackSelectionFactory::instance().createConfiguredTrackList(
            QUrl::fromLocalFile(path(QLatin1String(name))), &errors));
    }
    return selection;
}

void tst_LongLife::round(int number)
{
    const int edit = number % EDITS;
    KelGPXTrackSelection selection = loaded();
    QCOMPARE(selection.count(), 3);

    KelGPXTrack renamed = selection.value(0).track();
    renamed.setName(QStringLiteral("edited %1").arg(edit));
    selection.addTrack(KelGPXConfiguredTrack(renamed, KelTestTracks::configuration(TrackShapePolygon)));
    KelGPXTrackConfiguration look = selection.configuration(1);
    look.setLineColor(QColor::fromHsv(edit * 60, 255, 200).toRgb());
    look.setSmoothingStrength(edit * 10);
    selection.setConfiguration(1, look);
    selection.moveTrack(0, edit % 3);
    selection.removeAt(edit % 4);
    selection.setCroppingOpacity(100 + edit);

    KelErrorHistory errors;
    const KelSelectionFile file(path("trip.xml"));
    QCOMPARE(file.save(selection, errors), KelSelectionFile::Result::Done);
    file.removeUnusedTracks();
    KelGPXTrackSelection read;
    QCOMPARE(file.load(read, errors), KelSelectionFile::Result::Done);
    // Not the descriptions, which are not stored.
    QCOMPARE(read.count(), selection.count());
    for (int row = 0; row < read.count(); ++row) {
        QCOMPARE(read.value(row).name(), selection.value(row).name());
        QVERIFY(read.value(row).track().segments() == selection.value(row).track().segments());
        QVERIFY(read.configuration(row) == selection.configuration(row));
    }
    QVERIFY(KelGPXTrackConfiguration::deserialize(look.serialize()) == look);
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(look);
    selection.value(0).track().saveAsGpxFile(QFileInfo(path("export.gpx")));

    KelRenderTest::LinearRenderer renderer(selection, QSize(200, 120));
    const QImage image = renderer.render(KelGPXTrackRenderer::Normal);
    QVERIFY(!image.isNull());
    QVERIFY(!renderer.crop(image).isNull());
    QByteArray png;
    QBuffer buffer(&png);
    QVERIFY(image.save(&buffer, "PNG"));
    QVERIFY(KelOutputFile(path("picture.png")).write(png));
}

void tst_LongLife::nothingGrows()
{
    const int wanted = qEnvironmentVariableIntValue("KEL_LONG_LIFE_ROUNDS");
    const int rounds = wanted > 0 ? wanted : 30;
    const int warmUp = std::max(3 * EDITS, std::min(rounds / 10, 300));
    for (int i = 0; i < warmUp; ++i)
        round(i);
    const Needs before = Needs::now();
    for (int i = 0; i < rounds && !QTest::currentTestFailed(); ++i)
        round(i);
    const Needs after = Needs::now();
    qInfo("after %d rounds: %s", warmUp, before.text().constData());
    qInfo("after %d more:   %s", rounds, after.text().constData());

    QCOMPARE(after.files, before.files);
    // The pool's threads come and go.
    QVERIFY(after.threads <= 2 + QThread::idealThreadCount() * 2);
    if (IS_INSTRUMENTED)
        return;
    // The allowance is for caches that are filled late: less than what one more track in each round would need.
    QVERIFY2(after.heap - before.heap < LATE_CACHES + rounds * BYTES_PER_ROUND, after.text().constData());
    QVERIFY2(after.resident - before.resident < 4 * 1024 * 1024, after.text().constData());
}

int main(int argc, char *argv[])
{
    // A real life takes longer than Qt Test has patience.
    qputenv("QTEST_FUNCTION_TIMEOUT", "86400000");
    QApplication application(argc, argv);
    tst_LongLife test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_LongLife.moc"

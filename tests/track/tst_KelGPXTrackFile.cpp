// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelGPXTrackFile.h>
#include <KelGPXTrackFileRegistry.h>

#include <KelTestSupport.h>

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <thread>

#include <sys/stat.h>

class tst_KelGPXTrackFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tracksBeforeRoutes();
    void invalidTracksUseTheirNumber();
    void baseNameAndNumber_data();
    void baseNameAndNumber();
    void includeIsIgnored();
    void plainRoutesAndWaypointsGiveNoTrack();
    void encoding();
    void readTracks();
    void readTracksOfNothing();
    void malformedFileIsReported();
    void missingFileIsReported();
    void directoryIsReported();
    void pipeIsReadToItsEnd();
    void failedReadingIsReported();
    void noNameIsReportedQuietly();
    void noElementIsReported();
    void aFileWithoutTracksIsNoError();
    void aValue();
};

namespace
{

static_assert(std::has_virtual_destructor_v<KelGPXTrackFile>);

KelGPXTrackFile read(const QString &name, KelErrorHistory *errors = nullptr)
{
    return KelGPXTrackFile(QFileInfo(KelTestSupport::dataFile(name)), errors);
}

QStringList names(const QList<KelGPXTrack> &tracks)
{
    QStringList names;
    for (const KelGPXTrack &track : tracks)
        names.append(track.name());
    return names;
}

} // namespace

void tst_KelGPXTrackFile::tracksBeforeRoutes()
{
    const KelGPXTrackFile file = read("route-before-track.gpx");
    QVERIFY(file.isValid());
    QCOMPARE(names(file.tracks()), (QStringList{"route-before-track 1", "route-before-track 2"}));
    QCOMPARE(file.tracks().at(0).segments().first().toKml(), "8.24,53.14,4,1700000000000\n8.25,53.15,5,1700000030000");
    QCOMPARE(file.tracks().at(1).segments().size(), 1);
    QCOMPARE(file.tracks().at(1).segments().first().toKml(), "8.21,53.11\n8.22,53.12");
}

void tst_KelGPXTrackFile::invalidTracksUseTheirNumber()
{
    const QList<KelGPXTrack> tracks = read("numbers-of-unnamed-tracks.gpx").tracks();
    const QString base("numbers-of-unnamed-tracks ");
    QCOMPARE(names(tracks), (QStringList{base + "1", "named", base + "4", base + "6", base + "8"}));
    QCOMPARE(tracks.last().segments().first().toKml(), "4.,4.");
}

void tst_KelGPXTrackFile::baseNameAndNumber_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("plain") << "walk.gpx" << QStringList{"walk 1", "walk 2", "walk 3"};
    QTest::newRow("up to the first point") << "walk.2023.gpx" << QStringList{"walk 1", "walk 2", "walk 3"};
    QTest::newRow("no suffix") << "walk" << QStringList{"walk 1", "walk 2", "walk 3"};
    QTest::newRow("place markers in the name stay")
        << "100%2 %1.gpx" << QStringList{"100%2 %1 1", "100%2 %1 2", "100%2 %1 3"};
    QTest::newRow("umlauts") << QStringLiteral("Stra\u00dfe.gpx")
                             << QStringList{QStringLiteral("Stra\u00dfe 1"), QStringLiteral("Stra\u00dfe 2"),
                                            QStringLiteral("Stra\u00dfe 3")};
    QTest::newRow("hidden file has no base name") << ".gpx" << QStringList{" 1", " 2", " 3"};
}

void tst_KelGPXTrackFile::baseNameAndNumber()
{
    QFETCH(QString, fileName);
    const QTemporaryDir dir;
    QFile file(dir.filePath(fileName));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("<gpx>")
               + QByteArray("<trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk>").repeated(3) + "</gpx>");
    file.close();
    QTEST(names(KelGPXTrackFile(QFileInfo(file.fileName())).tracks()), "expected");
}

void tst_KelGPXTrackFile::includeIsIgnored()
{
    const KelGPXTrackFile file = read("names-an-include.gpx");
    QCOMPARE(names(file.tracks()), QStringList{"names-an-include 1"});
    QCOMPARE(file.tracks().first().segments().size(), 1);
    QCOMPARE(file.tracks().first().segments().first().toKml(), "1.,1.");
    const QDir dir = QFileInfo(KelTestSupport::dataFile("names-an-include.gpx")).dir();
    KelGPXTrack unnamed = file.tracks().first();
    unnamed.setName(QString());
    QCOMPARE(KelGPXTrackFileRegistry::instance().fileName(KelGPXTrackFileRegistryKey(unnamed, dir)), "");
}

void tst_KelGPXTrackFile::plainRoutesAndWaypointsGiveNoTrack()
{
    const KelGPXTrackFile file = read("only-waypoints-and-plain-route.gpx");
    QVERIFY(!file.isValid());
    QVERIFY(file.tracks().isEmpty());
}

void tst_KelGPXTrackFile::encoding()
{
    QCOMPARE(names(read("latin-1.gpx").tracks()), QStringList{QStringLiteral("Stra\u00dfe")});
}

void tst_KelGPXTrackFile::readTracks()
{
    const QDomDocument document = KelTestSupport::document(
        "<any><trk><name>a</name><trkseg><trkpt lat='1' lon='2'/></trkseg></trk><trk/>"
        "<rte><rtept><trkpt lat='1' lon='2'/></rtept></rte>"
        "<trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk>"
        "<x><trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></x></any>");
    const QFileInfo info("/somewhere/walk.gpx"); // only its name is used
    const KelGPXTrackFile reader{QFileInfo()};
    int counter = 0;
    QCOMPARE(names(reader.readTracks(document.documentElement(), "trk", counter, info)), (QStringList{"a", "walk 3"}));
    QCOMPARE(counter, 3);
    QCOMPARE(names(reader.readTracks(document.documentElement(), "rte", counter, info)), QStringList{"walk 4"});
    QCOMPARE(counter, 4);
    QVERIFY(reader.readTracks(document.documentElement(), "Trk", counter, info).isEmpty());
    QCOMPARE(counter, 4);
}

void tst_KelGPXTrackFile::readTracksOfNothing()
{
    int counter = 7;
    QVERIFY(KelGPXTrackFile(QFileInfo()).readTracks(QDomElement(), "trk", counter, QFileInfo()).isEmpty());
    QCOMPARE(counter, 7);
}

void tst_KelGPXTrackFile::malformedFileIsReported()
{
    KelErrorHistory errors;
    const KelGPXTrackFile file = read("malformed-in-line-5.gpx", &errors);
    QVERIFY(!file.isValid());
    QVERIFY(file.tracks().isEmpty());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().fileName, KelTestSupport::dataFile("malformed-in-line-5.gpx"));
    QCOMPARE(errors.last().line, 5);
    QVERIFY(errors.last().column > 0);
    QVERIFY(!errors.last().message.isEmpty());
    QVERIFY(!read("malformed-in-line-5.gpx").isValid()); // nobody asks
}

void tst_KelGPXTrackFile::missingFileIsReported()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("missing.gpx");
    KelErrorHistory errors;
    QVERIFY(!KelGPXTrackFile(QFileInfo(path), &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().fileName, path);
    QCOMPARE(errors.last().line, -1);
    QCOMPARE(errors.last().column, -1);
    QVERIFY(!errors.last().message.isEmpty());
    QVERIFY(!KelGPXTrackFile{QFileInfo(path)}.isValid());
}

void tst_KelGPXTrackFile::directoryIsReported()
{
    const QTemporaryDir dir;
    KelErrorHistory errors;
    QVERIFY(!KelGPXTrackFile(QFileInfo(dir.path()), &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().line, -1);
}

void tst_KelGPXTrackFile::pipeIsReadToItsEnd()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("walk.gpx");
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    const QByteArray points = QByteArray("<trkpt lat='1' lon='2'/>").repeated(5000); // more than a pipe holds
    for (const char *end : {"</trkseg></trk></gpx>", "</trkseg></trk>"}) {
        std::thread writer([&path, &points, end] {
            QFile file(path);
            if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
                file.write("<gpx><trk><trkseg>" + points);
                file.write(end);
            }
        });
        KelErrorHistory errors;
        const KelGPXTrackFile file(QFileInfo(path), &errors);
        writer.join();
        const bool isComplete = QByteArray(end).endsWith("</gpx>");
        QCOMPARE(file.tracks().size(), isComplete ? 1 : 0);
        QCOMPARE(errors.isEmpty(), isComplete);
        if (isComplete)
            QCOMPARE(file.tracks().first().countPoints(), 5000);
    }
}

void tst_KelGPXTrackFile::failedReadingIsReported()
{
    const QFileInfo unreadable("/proc/self/mem"); // opens, but nothing is mapped at address 0
    if (!unreadable.exists())
        QSKIP("no such file in this system");
    KelErrorHistory errors;
    QVERIFY(!KelGPXTrackFile(unreadable, &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().line, -1); // the file's fault, not that of what it holds
    QCOMPARE(errors.last().message, qt_error_string(EIO));
}

void tst_KelGPXTrackFile::noNameIsReportedQuietly()
{
    QTest::failOnWarning(QRegularExpression(".*"));
    KelErrorHistory errors;
    QVERIFY(!KelGPXTrackFile(QFileInfo(), &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QVERIFY(!errors.last().message.isEmpty());
}

void tst_KelGPXTrackFile::noElementIsReported()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath("empty.gpx"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    KelErrorHistory errors;
    QVERIFY(!KelGPXTrackFile(QFileInfo(file.fileName()), &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QVERIFY(!errors.last().message.isEmpty());
}

void tst_KelGPXTrackFile::aFileWithoutTracksIsNoError()
{
    KelErrorHistory errors;
    QVERIFY(!read("only-waypoints-and-plain-route.gpx", &errors).isValid());
    QVERIFY(read("route-before-track.gpx", &errors).isValid());
    QVERIFY(errors.isEmpty());
}

void tst_KelGPXTrackFile::aValue()
{
    KelGPXTrackFile file = read("route-before-track.gpx");
    const KelGPXTrackFile copy = file;
    file = KelGPXTrackFile{QFileInfo()};
    QVERIFY(!file.isValid());
    QCOMPARE(copy.tracks().size(), 2);
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackFile)
#include "tst_KelGPXTrackFile.moc"

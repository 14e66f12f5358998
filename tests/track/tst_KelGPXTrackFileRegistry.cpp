// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackFileRegistry.h>
#include <KelGPXTrackFileRegistryKey.h>

#include <KelTestSupport.h>

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <latch>
#include <thread>
#include <vector>

class tst_KelGPXTrackFileRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyHoldsTrackAndDirectory();
    void keyEquality_data();
    void keyEquality();
    void keyValidity_data();
    void keyValidity();
    void keyHashIsThatOfThePointCount();
    void oneInstance();
    void unknownKeyHasNoFileName();
    void registerFileReplaces();
    void createFileInfo();
    void saveTrackInFile();
    void sameTrackTwiceMakesOneFile();
    void twoNamesMakeTwoFiles();
    void twoDirectoriesMakeAFileInEach();
    void existingFilesAreNotTouched();
    void knownAfterReading();
    void savedTrackReadBackIsKnown();
    void changedTrackGetsANewFile();
    void samePointCountIsKeptApart();
    void directorySpelledOtherwiseIsTheSame();
    void unwritableDirectoryIsRegisteredAllTheSame();
    void twoThreadsMakeOneFile();
    void manyThreadsWithDifferentTracks();
    void manyThreadsRegister();
};

namespace
{

static_assert(std::has_virtual_destructor_v<KelGPXTrackFileRegistryKey>);
static_assert(std::is_base_of_v<QObject, KelGPXTrackFileRegistry>);
static_assert(std::is_base_of_v<KelSingleton<KelGPXTrackFileRegistry>, KelGPXTrackFileRegistry>);

KelGPXTrack track(const QString &name, const QString &points = QStringLiteral("8.2,53.1 8.3,53.2"))
{
    return KelGPXTrack(name, QString(), {KelGPXTrackSegment::decodeKml(points)},
                       KelGPXTrackShape(TrackShapeLineString));
}

KelGPXTrackFileRegistry &registry()
{
    return KelGPXTrackFileRegistry::instance();
}

QStringList filesIn(const QDir &dir)
{
    return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void tst_KelGPXTrackFileRegistry::keyHoldsTrackAndDirectory()
{
    const KelGPXTrackFileRegistryKey key(track("n"), QDir("/tmp"));
    QVERIFY(key.track() == track("n"));
    QVERIFY(key.dir() == QDir("/tmp"));
}

void tst_KelGPXTrackFileRegistry::keyEquality_data()
{
    QTest::addColumn<KelGPXTrack>("other");
    QTest::addColumn<QString>("dir");
    QTest::addColumn<bool>("equal");
    QTest::newRow("equal") << track("n") << "/tmp" << true;
    QTest::newRow("other track") << track("m") << "/tmp" << false;
    QTest::newRow("other directory") << track("n") << "/usr" << false;
    QTest::newRow("the same directory, spelled otherwise") << track("n") << "/usr/../tmp/" << true;
    QTest::newRow("no directory") << track("n") << QString() << false;
}

void tst_KelGPXTrackFileRegistry::keyEquality()
{
    QFETCH(KelGPXTrack, other);
    QFETCH(QString, dir);
    QTEST(KelGPXTrackFileRegistryKey(track("n"), QDir("/tmp")) == KelGPXTrackFileRegistryKey(other, QDir(dir)),
          "equal");
}

void tst_KelGPXTrackFileRegistry::keyValidity_data()
{
    QTest::addColumn<KelGPXTrack>("track");
    QTest::addColumn<QDir>("dir");
    QTest::addColumn<bool>("valid");
    QTest::newRow("track and directory") << track("n") << QDir("/tmp") << true;
    QTest::newRow("the directory need not exist") << track("n") << QDir("/does/not/exist") << true;
    QTest::newRow("invalid track") << KelGPXTrack() << QDir("/tmp") << false;
    QTest::newRow("no directory") << track("n") << QDir(QString()) << false;
    QTest::newRow("the working directory stands for none") << track("n") << QDir::current() << false;
}

void tst_KelGPXTrackFileRegistry::keyValidity()
{
    QFETCH(KelGPXTrack, track);
    QFETCH(QDir, dir);
    QTEST(KelGPXTrackFileRegistryKey(track, dir).isValid(), "valid");
}

void tst_KelGPXTrackFileRegistry::keyHashIsThatOfThePointCount()
{
    const KelGPXTrackFileRegistryKey key(track("n", "1,1 2,2 3,3"), QDir("/tmp"));
    QCOMPARE(key.hash(), ::qHash(int(3), 0));
    QCOMPARE(qHash(key), key.hash());
    QCOMPARE(qHash(key, 0x1234), key.hash() ^ std::size_t(0x1234));
    QCOMPARE(KelGPXTrackFileRegistryKey(track("m", "4,4 5,5 6,6"), QDir("/usr")).hash(), key.hash());
    QVERIFY(KelGPXTrackFileRegistryKey(track("n", "1,1 2,2"), QDir("/tmp")).hash() != key.hash());
}

void tst_KelGPXTrackFileRegistry::oneInstance()
{
    QCOMPARE(&KelGPXTrackFileRegistry::instance(), &KelGPXTrackFileRegistry::instance());
    QCOMPARE(registry().metaObject()->className(), "KelGPXTrackFileRegistry");
}

void tst_KelGPXTrackFileRegistry::unknownKeyHasNoFileName()
{
    QVERIFY(registry().fileName(KelGPXTrackFileRegistryKey(track("never saved"), QDir("/tmp"))).isEmpty());
}

void tst_KelGPXTrackFileRegistry::registerFileReplaces()
{
    const QTemporaryDir dir;
    const KelGPXTrackFileRegistryKey key(track("n"), QDir(dir.path()));
    registry().registerFile(key, "first.gps");
    QCOMPARE(registry().fileName(key), "first.gps");
    registry().registerFile(key, "second.gps");
    QCOMPARE(registry().fileName(key), "second.gps");
}

void tst_KelGPXTrackFileRegistry::createFileInfo()
{
    const KelGPXTrackFileRegistryKey key(track("n"), QDir("/store"));
    QCOMPARE(registry().createFileInfo(key, "a.gps").filePath(), "/store/a.gps");
}

void tst_KelGPXTrackFileRegistry::saveTrackInFile()
{
    const QTemporaryDir dir;
    KelGPXTrack t = track("Walk");
    t.addEnclave(track("inner", "1,1"));
    const KelGPXTrackFileRegistryKey key(t, QDir(dir.path()));
    registry().saveTrackInFile(key, QFileInfo(dir.filePath("any.gps")));
    QVERIFY(registry().fileName(key).isEmpty()); // saving alone registers nothing

    QDomDocument document;
    QVERIFY(document.setContent(contentOf(dir.filePath("any.gps"))));
    const QDomElement root = document.documentElement();
    QCOMPARE(root.tagName(), "includedTrack");
    QCOMPARE(root.childNodes().size(), 1);
    const QDomElement trk = root.firstChildElement();
    QCOMPARE(trk.tagName(), "trk");
    QVERIFY(trk.firstChildElement("include").isNull());
    QCOMPARE(trk.firstChildElement("name").text(), "Walk");
    QCOMPARE(trk.firstChildElement("shape").text(), "linestring");
    QCOMPARE(trk.firstChildElement("trkseg").text(), "8.2,53.1\n8.3,53.2");
    QCOMPARE(trk.firstChildElement("enclaves").firstChildElement("trk").firstChildElement("name").text(), "inner");
    QVERIFY(KelGPXTrack(trk, QDir(QString())) == t);
}

void tst_KelGPXTrackFileRegistry::sameTrackTwiceMakesOneFile()
{
    const QTemporaryDir dir;
    const KelGPXTrackFileRegistryKey key(track("n"), QDir(dir.path()));
    const QString first = registry().createAssignedFile(key);
    QCOMPARE(filesIn(key.dir()), QStringList{first});
    QCOMPARE(registry().fileName(key), first);
    // The file is not written again.
    QVERIFY(QFile::remove(dir.filePath(first)));
    QCOMPARE(registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("n"), QDir(dir.path()))), first);
    QVERIFY(filesIn(key.dir()).isEmpty());
}

void tst_KelGPXTrackFileRegistry::twoNamesMakeTwoFiles()
{
    const QTemporaryDir dir;
    const QString a = registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("a"), QDir(dir.path())));
    const QString b = registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("b"), QDir(dir.path())));
    QVERIFY(a != b);
    for (const QString &name : {a, b}) {
        QVERIFY2(name.startsWith("track") && name.endsWith(".gps"), qPrintable(name));
        QCOMPARE(QFileInfo(name).fileName(), name);
    }
    QCOMPARE(filesIn(QDir(dir.path())).size(), 2);
    QVERIFY(contentOf(dir.filePath(a)).contains("<name>a</name>"));
    QVERIFY(contentOf(dir.filePath(b)).contains("<name>b</name>"));
}

void tst_KelGPXTrackFileRegistry::twoDirectoriesMakeAFileInEach()
{
    const QTemporaryDir one;
    const QTemporaryDir two;
    const QString inOne = registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("n"), QDir(one.path())));
    const QString inTwo = registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("n"), QDir(two.path())));
    QCOMPARE(filesIn(QDir(one.path())), QStringList{inOne});
    QCOMPARE(filesIn(QDir(two.path())), QStringList{inTwo});
}

void tst_KelGPXTrackFileRegistry::existingFilesAreNotTouched()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath("track.gps"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("from an earlier run");
    file.close();
    const QString name = registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("n"), QDir(dir.path())));
    QVERIFY(name != QLatin1String("track.gps"));
    QCOMPARE(contentOf(dir.filePath("track.gps")), QByteArray("from an earlier run"));
    QCOMPARE(filesIn(QDir(dir.path())).size(), 2);
}

void tst_KelGPXTrackFileRegistry::knownAfterReading()
{
    const QTemporaryDir dir;
    QFile file(dir.filePath("X.gps"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<includedTrack><trk><name>n</name><trkseg><compressedPoints>8.2,53.1</compressedPoints></trkseg></trk>"
               "</includedTrack>");
    file.close();
    const QDomDocument state = KelTestSupport::document("<state><trk><include>X.gps</include></trk></state>");
    const KelGPXTrack read(state.documentElement().firstChildElement(), QDir(dir.path()));

    const QByteArray before = contentOf(dir.filePath("X.gps"));
    QCOMPARE(registry().createAssignedFile(KelGPXTrackFileRegistryKey(read, QDir(dir.path()))), "X.gps");
    QCOMPARE(filesIn(QDir(dir.path())), QStringList{"X.gps"});
    QCOMPARE(contentOf(dir.filePath("X.gps")), before);

    QDomDocument written = KelTestSupport::document("<state/>");
    QDomElement root = written.documentElement();
    read.toXml(root, QDir(dir.path()));
    QCOMPARE(root.firstChildElement("trk").firstChildElement("include").text(), "X.gps");
}

void tst_KelGPXTrackFileRegistry::savedTrackReadBackIsKnown()
{
    const QTemporaryDir dir;
    const QDir store(dir.path());
    QDomDocument state = KelTestSupport::document("<state/>");
    QDomElement root = state.documentElement();
    track("n").toXml(root, store);
    const KelGPXTrack back(root.firstChildElement(), store);
    QVERIFY(back == track("n"));
    back.toXml(root, store);
    QCOMPARE(filesIn(store).size(), 1);
    QCOMPARE(root.firstChildElement().text(), root.lastChildElement().text());
}

void tst_KelGPXTrackFileRegistry::changedTrackGetsANewFile()
{
    const QTemporaryDir dir;
    const QDir store(dir.path());
    KelGPXTrack t = track("n");
    const QString before = registry().createAssignedFile(KelGPXTrackFileRegistryKey(t, store));
    const QByteArray content = contentOf(dir.filePath(before));
    t.setShape(TrackShapePolygon);
    const QString after = registry().createAssignedFile(KelGPXTrackFileRegistryKey(t, store));
    QVERIFY(before != after);
    QCOMPARE(contentOf(dir.filePath(before)), content);
    QCOMPARE(registry().fileName(KelGPXTrackFileRegistryKey(track("n"), store)), before);
}

void tst_KelGPXTrackFileRegistry::samePointCountIsKeptApart()
{
    const QTemporaryDir dir;
    const QDir store(dir.path());
    const KelGPXTrackFileRegistryKey a(track("n", "1,1 2,2"), store);
    const KelGPXTrackFileRegistryKey b(track("n", "1,1 2,3"), store);
    QCOMPARE(qHash(a), qHash(b));
    const QString inA = registry().createAssignedFile(a);
    const QString inB = registry().createAssignedFile(b);
    QVERIFY(inA != inB);
    QCOMPARE(registry().fileName(a), inA);
    QCOMPARE(registry().fileName(b), inB);
    QVERIFY(contentOf(dir.filePath(inA)).contains("2.,2."));
    QVERIFY(contentOf(dir.filePath(inB)).contains("2.,3."));
}

void tst_KelGPXTrackFileRegistry::directorySpelledOtherwiseIsTheSame()
{
    const QTemporaryDir dir;
    const QString name = registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("n"), QDir(dir.path())));
    const QDir same(dir.path() + "/../" + QFileInfo(dir.path()).fileName());
    QCOMPARE(registry().createAssignedFile(KelGPXTrackFileRegistryKey(track("n"), same)), name);
    QCOMPARE(filesIn(QDir(dir.path())), QStringList{name});
}

void tst_KelGPXTrackFileRegistry::unwritableDirectoryIsRegisteredAllTheSame()
{
    const QTemporaryDir dir;
    const QDir missing(dir.filePath("missing"));
    const KelGPXTrackFileRegistryKey key(track("n"), missing);
    const QString name = registry().createAssignedFile(key);
    QVERIFY(!name.isEmpty());
    QCOMPARE(registry().fileName(key), name);
    QVERIFY(!missing.exists());

    // What names the file that is not there reads as nothing.
    const QDomDocument state = KelTestSupport::document("<trk><include>" + name + "</include></trk>");
    QVERIFY(!KelGPXTrack(state.documentElement(), missing).isValid());
}

void tst_KelGPXTrackFileRegistry::twoThreadsMakeOneFile()
{
    for (int round = 0; round < 20; ++round) {
        const QTemporaryDir dir;
        const QDir store(dir.path());
        std::latch start(2);
        std::vector<QString> names(2);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < names.size(); ++i) {
            threads.emplace_back([&names, &start, i, path = dir.path()] {
                const KelGPXTrackFileRegistryKey key(track("n"), QDir(path)); // a track of the thread's own
                start.arrive_and_wait();
                names[i] = KelGPXTrackFileRegistry::instance().createAssignedFile(key);
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(names.at(0), names.at(1));
        QCOMPARE(filesIn(store), QStringList{names.at(0)});
    }
}

void tst_KelGPXTrackFileRegistry::manyThreadsWithDifferentTracks()
{
    const QTemporaryDir dir;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([i, path = dir.path()] {
            for (int n = 0; n < 5; ++n) {
                const KelGPXTrackFileRegistryKey key(track(QString::number(i * 100 + n)), QDir(path));
                KelGPXTrackFileRegistry::instance().createAssignedFile(key);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    const QStringList files = filesIn(QDir(dir.path()));
    QCOMPARE(files.size(), 40);
    for (int i = 0; i < 8; ++i) {
        for (int n = 0; n < 5; ++n) {
            const QString name = QString::number(i * 100 + n);
            const QString file = registry().fileName(KelGPXTrackFileRegistryKey(track(name), QDir(dir.path())));
            QVERIFY(files.contains(file));
            QVERIFY(contentOf(dir.filePath(file)).contains("<name>" + name.toUtf8() + "</name>"));
        }
    }
}

void tst_KelGPXTrackFileRegistry::manyThreadsRegister()
{
    constexpr int threadCount = 4;
    constexpr int keysOfEach = 400;
    const QTemporaryDir dir;
    // Of many point counts: the table has to grow while others write into it.
    const auto key = [path = dir.path()](int i) {
        return KelGPXTrackFileRegistryKey(track(QString::number(i), QStringLiteral("1,1 ").repeated(i % 97 + 1)),
                                          QDir(path));
    };
    std::latch start(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&key, &start, t] {
            start.arrive_and_wait();
            for (int i = t; i < threadCount * keysOfEach; i += threadCount)
                KelGPXTrackFileRegistry::instance().registerFile(key(i), QString::number(i) + ".gps");
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (int i = 0; i < threadCount * keysOfEach; ++i)
        QCOMPARE(registry().fileName(key(i)), QString::number(i) + ".gps");
}

QTEST_GUILESS_MAIN(tst_KelGPXTrackFileRegistry)
#include "tst_KelGPXTrackFileRegistry.moc"

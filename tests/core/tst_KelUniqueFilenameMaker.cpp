// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelUniqueFilenameMaker.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QObject>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>
#include <vector>

#include <dlfcn.h>

namespace
{

void touch(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

QFileInfo make(const QFileInfo &wanted, const QSet<QDir> &containers)
{
    return KelSingleton<KelUniqueFilenameMaker>::instance().makeUniqueFileNameInSafeContainer(wanted, containers);
}

QString makeIn(const QDir &dir, const QString &wanted)
{
    const QFileInfo made = make(QFileInfo(dir, wanted), {dir});
    return made.dir() == dir ? made.fileName() : QStringLiteral("not in the directory");
}

} // namespace

class tst_KelUniqueFilenameMaker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void freeNameIsTakenAsItIs();
    void nameIsNotGivenTwiceThoughTheFileIsMissing();
    void nameOfARemovedFileIsNotGivenAgain();
    void namesThatExistAreSkipped();
    void everythingThatExistsCounts();
    void numberedNames_data();
    void numberedNames();
    void directoriesAreCountedApart();
    void twoSpellingsOfOneDirectoryAreCountedTogether();
    void wantedDirectoryKeepsItsSpelling();
    void containerOfAnotherSpellingIsRecognised();
    void nameOutsideMovesIntoTheFirstContainer_data();
    void nameOutsideMovesIntoTheFirstContainer();
    void withoutContainerThereIsNoName();
    void missingDirectoryIsNotCreated();
    void threadsGetDifferentNames();
    void stateLivesInTheLibrary();

private:
    std::unique_ptr<QTemporaryDir> m_temporary;
    QDir m_dir;
};

void tst_KelUniqueFilenameMaker::init()
{
    m_temporary = std::make_unique<QTemporaryDir>();
    m_dir = QDir(m_temporary->path());
}

void tst_KelUniqueFilenameMaker::freeNameIsTakenAsItIs()
{
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track.gps"));
    QVERIFY(!m_dir.exists("track.gps"));
}

void tst_KelUniqueFilenameMaker::nameIsNotGivenTwiceThoughTheFileIsMissing()
{
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track.gps"));
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track_2.gps"));
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track_3.gps"));
    // Asked for by its own name it is taken as well.
    QCOMPARE(makeIn(m_dir, "track_2.gps"), QStringLiteral("track_2_2.gps"));
}

void tst_KelUniqueFilenameMaker::nameOfARemovedFileIsNotGivenAgain()
{
    const QString name = makeIn(m_dir, "track.gps");
    touch(m_dir.filePath(name));
    QVERIFY(m_dir.remove(name));
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track_2.gps"));
}

void tst_KelUniqueFilenameMaker::namesThatExistAreSkipped()
{
    touch(m_dir.filePath("track.gps"));
    touch(m_dir.filePath("track_2.gps"));
    touch(m_dir.filePath("track_4.gps"));
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track_3.gps"));
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track_5.gps"));
}

void tst_KelUniqueFilenameMaker::everythingThatExistsCounts()
{
    QVERIFY(m_dir.mkdir("track.gps"));
    QVERIFY(QFile::link(m_dir.filePath("nowhere"), m_dir.filePath("track_2.gps")));
    QVERIFY(!QFileInfo::exists(m_dir.filePath("track_2.gps")));
    touch(m_dir.filePath("elsewhere"));
    QVERIFY(QFile::link(m_dir.filePath("elsewhere"), m_dir.filePath("track_3.gps")));
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track_4.gps"));
}

void tst_KelUniqueFilenameMaker::numberedNames_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("second");

    QTest::newRow("number before the suffix") << "track.gps" << "track_2.gps";
    QTest::newRow("no suffix") << "track" << "track_2";
    QTest::newRow("only the last suffix") << "a.tar.gz" << "a.tar_2.gz";
    QTest::newRow("hidden file") << ".track" << ".track_2";
    QTest::newRow("hidden file with suffix") << ".track.gps" << ".track_2.gps";
    QTest::newRow("dot at the end") << "track." << "track_2.";
    QTest::newRow("blanks and umlauts") << QStringLiteral("Weg übers Feld.gps") << QStringLiteral("Weg übers Feld_2.gps");
    QTest::newRow("already numbered") << "track_2.gps" << "track_2_2.gps";
}

void tst_KelUniqueFilenameMaker::numberedNames()
{
    QFETCH(QString, wanted);
    QCOMPARE(makeIn(m_dir, wanted), wanted);
    QTEST(makeIn(m_dir, wanted), "second");
}

void tst_KelUniqueFilenameMaker::directoriesAreCountedApart()
{
    QVERIFY(m_dir.mkdir("a"));
    QVERIFY(m_dir.mkdir("b"));
    QCOMPARE(makeIn(QDir(m_dir.filePath("a")), "track.gps"), QStringLiteral("track.gps"));
    QCOMPARE(makeIn(QDir(m_dir.filePath("b")), "track.gps"), QStringLiteral("track.gps"));
}

void tst_KelUniqueFilenameMaker::twoSpellingsOfOneDirectoryAreCountedTogether()
{
    QVERIFY(m_dir.mkdir("store"));
    QVERIFY(QFile::link(m_dir.filePath("store"), m_dir.filePath("link")));
    QCOMPARE(makeIn(QDir(m_dir.filePath("store")), "track.gps"), QStringLiteral("track.gps"));
    QCOMPARE(makeIn(QDir(m_dir.filePath("link")), "track.gps"), QStringLiteral("track_2.gps"));
    QCOMPARE(makeIn(QDir(m_dir.filePath("store/../store")), "track.gps"), QStringLiteral("track_3.gps"));
}

void tst_KelUniqueFilenameMaker::wantedDirectoryKeepsItsSpelling()
{
    QVERIFY(m_dir.mkdir("store"));
    QVERIFY(QFile::link(m_dir.filePath("store"), m_dir.filePath("link")));
    const QFileInfo made = make(QFileInfo(m_dir.filePath("link/track.gps")), {QDir(m_dir.filePath("store"))});
    QCOMPARE(made.filePath(), m_dir.filePath("link/track.gps"));
}

void tst_KelUniqueFilenameMaker::containerOfAnotherSpellingIsRecognised()
{
    QVERIFY(m_dir.mkdir("store"));
    QDir filtered(m_dir.filePath("store/"));
    filtered.setNameFilters({"*.gps"});
    const QFileInfo made = make(QFileInfo(m_dir.filePath("store/track.gps")), {QDir("/"), filtered});
    QCOMPARE(made.absoluteFilePath(), m_dir.absoluteFilePath("store/track.gps"));
}

void tst_KelUniqueFilenameMaker::nameOutsideMovesIntoTheFirstContainer_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("made");

    QTest::newRow("another directory") << "outside/track.gps" << "a/track.gps";
    QTest::newRow("above the container") << "a/../track.gps" << "a/track.gps";
    QTest::newRow("below the container") << "a/below/track.gps" << "a/track.gps";
    QTest::newRow("a name that only begins like a container") << "ab/track.gps" << "a/track.gps";
    QTest::newRow("no name") << "outside/" << "a/file";
    QTest::newRow("the directory itself") << "b/." << "b/file";
    QTest::newRow("the directory above") << "b/.." << "b/file";
}

void tst_KelUniqueFilenameMaker::nameOutsideMovesIntoTheFirstContainer()
{
    QFETCH(QString, wanted);
    for (const char *name : {"a", "b", "ab", "outside", "a/below"})
        QVERIFY(m_dir.mkdir(name));
    const QSet<QDir> containers{QDir(m_dir.filePath("b")), QDir(m_dir.filePath("a"))};
    const QFileInfo result = make(QFileInfo(m_dir.path() + '/' + wanted), containers);
    QTEST(m_dir.relativeFilePath(result.filePath()), "made");
}

void tst_KelUniqueFilenameMaker::withoutContainerThereIsNoName()
{
    const QFileInfo made = make(QFileInfo(m_dir, "track.gps"), {});
    QVERIFY(made.filePath().isEmpty());
    // Nothing was used up by that.
    QCOMPARE(makeIn(m_dir, "track.gps"), QStringLiteral("track.gps"));
}

void tst_KelUniqueFilenameMaker::missingDirectoryIsNotCreated()
{
    const QDir missing(m_dir.filePath("missing"));
    QCOMPARE(makeIn(missing, "track.gps"), QStringLiteral("track.gps"));
    QCOMPARE(makeIn(missing, "track.gps"), QStringLiteral("track_2.gps"));
    QVERIFY(!missing.exists());
}

void tst_KelUniqueFilenameMaker::threadsGetDifferentNames()
{
    constexpr int threadCount = 4;
    constexpr int namesEach = 50;
    QMutex mutex;
    QSet<QString> names;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([this, &mutex, &names] {
            const QDir dir(m_temporary->path());
            for (int k = 0; k < namesEach; ++k) {
                const QString name = makeIn(dir, "track.gps");
                const QMutexLocker locker(&mutex);
                names.insert(name);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(names.size(), threadCount * namesEach);
}

void tst_KelUniqueFilenameMaker::stateLivesInTheLibrary()
{
    // Programs and plugins find one state only if a library shows it to all of them, as the C++ ABI names it.
    QVERIFY(dlsym(RTLD_DEFAULT, "_ZZN12KelSingletonI22KelUniqueFilenameMakerE5stateEvE8theState") != nullptr);
}

QTEST_GUILESS_MAIN(tst_KelUniqueFilenameMaker)
#include "tst_KelUniqueFilenameMaker.moc"

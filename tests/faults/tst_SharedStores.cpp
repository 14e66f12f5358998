// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFaultTestSupport.h"
#include "KelSystemFaults.h"

#include <KelErrorHistory.h>
#include <KelFileSizeLimit.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelSelectionFile.h>

#include <QDomDocument>
#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <csignal>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace KelFaultTestSupport;

/// Stores that several processes write to, that are large, or that somebody else has changed meanwhile.
class tst_SharedStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void processesKeepTheirTracksApart();
    void processesSaveOneDocument_data();
    void processesSaveOneDocument();
    void processesAreKilledWhileOthersSave();
    void aNameThatAnotherTrackHasTaken();
    void aTrackReplacedWithinATickOfTheClock();
    void aFailedSaveLeavesTheTracksOfOthers();
    void documentsThatNameFilesOfOthersAreRefused_data();
    void documentsThatNameFilesOfOthersAreRefused();
    void aPipeInTheStoreIsNoTrack();
    void readersMeetSavesInProgress();
    void theFolderVanishesWhileOneWaitsForIt();
    void onlyTheOwnPlaceholderIsRemoved();
    void aLinkThatLeadsNowhereIsNotFollowed();
    void aLinkOutOfTheStoreIsNoTrack();
    void aStoreInUseIsNotSaved();
    void foldersThatNeverLookLikeThemselves();
    void rowsThatHoldMoreThanAName_data();
    void rowsThatHoldMoreThanAName();
    void rowsThatNameOneFile_data();
    void rowsThatNameOneFile();
    void rowsThatNameOneFileReadItOnce();
    void rowsOfBothKinds();
    void thousandsOfTracks();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_dir->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace
{

constexpr int PROCESSES = 3;
std::atomic_bool hasStrangeFolders = false;

KelGPXTrack trackOf(int number)
{
    return KelTestTracks::track(QStringLiteral("1,%1 2,3").arg(number % 90), QStringLiteral("t%1").arg(number));
}

KelGPXTrack includedTrack(const QDir &dir, const QString &name)
{
    QDomDocument state;
    state.setContent("<trk><include>" + name + "</include></trk>");
    return KelGPXTrack(state.documentElement(), dir);
}

KelGPXTrackSelection load(const QString &path, KelSelectionFile::Result *result)
{
    KelGPXTrackSelection read;
    KelErrorHistory errors;
    *result = KelSelectionFile(path).load(read, errors);
    if (!errors.isEmpty())
        qWarning("%s", qPrintable(errors.last().toString()));
    return read;
}

bool isSaved(const KelGPXTrackSelection &selection, const QString &path)
{
    KelErrorHistory errors;
    return KelSelectionFile(path).save(selection, errors) == KelSelectionFile::Result::Done;
}

/// A stored selection of such rows.
QByteArray documentOf(const QByteArray &rows)
{
    return "<kelTracks><gpxtrack>" + rows + "</gpxtrack></kelTracks>";
}

QByteArray rowOf(const QByteArray &track, const QByteArray &kind = "configuredTrack")
{
    return '<' + kind + "><trk>" + track + "</trk></" + kind + '>';
}

QString lettersOf(int process, int round)
{
    return QString(QChar('A' + process)) + QChar('a' + round % 26) + QChar('J' + (process + round) % 9);
}

} // namespace

/// Some network drives number a folder that is open unlike the same folder at its path. The system's fstat() is met here
/// before that of the C library.
extern "C" __attribute__((visibility("default"))) int fstat(int descriptor, struct stat *status)
{
    static const auto real = reinterpret_cast<int (*)(int, struct stat *)>(::dlsym(RTLD_NEXT, "fstat"));
    const int result = real(descriptor, status);
    if (result == 0 && hasStrangeFolders && S_ISDIR(status->st_mode))
        ++status->st_ino;
    return result;
}

void tst_SharedStores::init()
{
    m_dir = std::make_unique<QTemporaryDir>(temporaryTemplate());
    QVERIFY(m_dir->isValid());
}

void tst_SharedStores::processesKeepTheirTracksApart()
{
    constexpr int tracks = 60;
    const QDir store(m_dir->path());
    QList<pid_t> children;
    for (int process = 0; process < PROCESSES; ++process) {
        children.append(start([&, process] {
            QByteArray names;
            for (int i = 0; i < tracks; ++i) {
                const KelGPXTrackFileRegistryKey key(trackOf(process * tracks + i), store);
                names += KelGPXTrackFileRegistry::instance().createAssignedFile(key).toUtf8() + '\n';
            }
            write(path("names") + QString::number(process), names);
            return 0;
        }));
    }
    for (const pid_t child : children)
        QCOMPARE(waitFor(child).code, 0);
    for (int process = 0; process < PROCESSES; ++process) {
        const QList<QByteArray> names = contentOf(path("names") + QString::number(process)).split('\n');
        QCOMPARE(names.size(), tracks + 1);
        for (int i = 0; i < tracks; ++i)
            QCOMPARE(includedTrack(store, names.at(i)).name(), trackOf(process * tracks + i).name());
    }
    QCOMPARE(store.entryList({"track*.gps"}).size(), PROCESSES * tracks);
}

void tst_SharedStores::processesSaveOneDocument_data()
{
    QTest::addColumn<bool>("clean");
    QTest::newRow("documents") << false;
    QTest::newRow("sessions, which remove what is not needed any more") << true;
}

void tst_SharedStores::processesSaveOneDocument()
{
    QFETCH(bool, clean);
    constexpr int rounds = 12;
    const QString name = path("trip.xml");
    QList<pid_t> children;
    for (int process = 0; process < PROCESSES; ++process) {
        children.append(start([&, process] {
            for (int round = 0; round < rounds; ++round) {
                if (!isSaved(selection(lettersOf(process, round)), name))
                    return 1;
                if (clean)
                    KelSelectionFile(name).removeUnusedTracks();
            }
            return 0;
        }));
    }
    for (const pid_t child : children)
        QCOMPARE(waitFor(child).code, 0);
    auto result = KelSelectionFile::Result::Malformed;
    const KelGPXTrackSelection read = load(name, &result);
    QCOMPARE(result, KelSelectionFile::Result::Done);
    bool isOneOfThem = false;
    for (int process = 0; process < PROCESSES; ++process)
        isOneOfThem = isOneOfThem || read == selection(lettersOf(process, rounds - 1));
    QVERIFY(isOneOfThem);
}

void tst_SharedStores::processesAreKilledWhileOthersSave()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("AB"), name));
    for (int round = 0; round < 12; ++round) {
        const auto saveForEver = [&](int process) {
            return start([&, process] {
                for (int i = 0;; ++i)
                    if (!isSaved(selection(lettersOf(process, i)), name))
                        return 1;
            });
        };
        const pid_t first = saveForEver(0);
        const pid_t second = saveForEver(1);
        QTest::qSleep(5 + 7 * round);
        ::kill(first, SIGKILL);
        QTest::qSleep(10);
        ::kill(second, SIGKILL);
        QVERIFY(waitFor(first).killed);
        QVERIFY(waitFor(second).killed);
        auto result = KelSelectionFile::Result::Malformed;
        QVERIFY(load(name, &result).count() >= 2);
        QCOMPARE(result, KelSelectionFile::Result::Done);
        // The dead are in nobody's way.
        QVERIFY(isSaved(selection("AB"), name));
    }
}

void tst_SharedStores::aNameThatAnotherTrackHasTaken()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    // Another process removes the track that this one has stored, and stores its own under the name that is free.
    QCOMPARE(waitFor(start([&] {
                 QFile::remove(path("trip.tracks/track.gps"));
                 const KelGPXTrackFileRegistryKey key(selection("B").value(0).track(), QDir(path("trip.tracks")));
                 KelGPXTrackFileRegistry::instance().saveTrackInFile(key, QFileInfo(path("trip.tracks/track.gps")));
                 return 0;
             })).code,
             0);
    QVERIFY(isSaved(selection("A"), name));
    auto result = KelSelectionFile::Result::Malformed;
    QVERIFY(load(name, &result) == selection("A"));
    QCOMPARE(includedTrack(QDir(path("trip.tracks")), "track.gps").name(), "B");
}

// A file system's clock ticks every few milliseconds, and the place of a removed file is soon used again.
void tst_SharedStores::aTrackReplacedWithinATickOfTheClock()
{
    const QString name = path("trip.xml");
    const QString track = path("trip.tracks/track.gps");
    QVERIFY(isSaved(selection("B"), path("other.xml")));
    QVERIFY(isSaved(selection("A"), name));
    struct stat before = {};
    QCOMPARE(::stat(QFile::encodeName(track).constData(), &before), 0);
    QFile file(track);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(contentOf(path("other.tracks/track.gps")));
    QVERIFY(file.flush());
    const timespec times[] = {before.st_atim, before.st_mtim};
    QCOMPARE(::futimens(file.handle(), times), 0);
    file.close();
    QCOMPARE(QFileInfo(track).size(), qint64(before.st_size));
    QVERIFY(isSaved(selection("A"), name));
    auto result = KelSelectionFile::Result::Malformed;
    QVERIFY(load(name, &result) == selection("A"));
    QCOMPARE(result, KelSelectionFile::Result::Done);
}

void tst_SharedStores::aFailedSaveLeavesTheTracksOfOthers()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    // The document's place is taken by a folder as soon as the tracks are stored; another process stores one meanwhile.
    write(path("trip.tracks/others.gps"), "<includedTrack/>");
    QVERIFY(QFile::rename(name, path("former.xml")));
    QVERIFY(QDir().mkdir(name));
    QVERIFY(!isSaved(selection("AB"), name));
    QCOMPARE(filesIn(path("trip.tracks")), (QStringList{"others.gps", "track.gps"}));
}

void tst_SharedStores::documentsThatNameFilesOfOthersAreRefused_data()
{
    QTest::addColumn<QString>("includes");
    QTest::addColumn<bool>("refused");

    QTest::newRow("of its own") << "<include>track.gps</include>" << false;
    QTest::newRow("dots in a name") << "<include>..track.gps</include>" << false;
    QTest::newRow("beside the store") << "<include>../precious.gpx</include>" << true;
    QTest::newRow("far away") << "<include>/nowhere/precious.gpx</include>" << true;
    QTest::newRow("below the store") << "<include>below/precious.gpx</include>" << true;
    QTest::newRow("the store itself") << "<include>.</include>" << true;
    QTest::newRow("the folder above") << "<include>..</include>" << true;
    QTest::newRow("a second one beside its own") << "<include>track.gps</include><include>../planted.gpx</include>" << true;
    QTest::newRow("an empty second one") << "<include>track.gps</include><include/>" << true;
}

/// Such a document comes from a stranger; saved again, it would have the named files written or removed.
void tst_SharedStores::documentsThatNameFilesOfOthersAreRefused()
{
    QFETCH(QString, includes);
    QFETCH(bool, refused);
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    QVERIFY(QFile::copy(path("trip.tracks/track.gps"), path("precious.gpx")));
    QVERIFY(QFile::copy(path("trip.tracks/track.gps"), path("trip.tracks/..track.gps")));
    write(name, documentOf(rowOf(includes.toUtf8())));

    auto result = KelSelectionFile::Result::Done;
    const KelGPXTrackSelection read = load(name, &result);
    QCOMPARE(result == KelSelectionFile::Result::Malformed, refused);
    QCOMPARE(read.count(), refused ? 0 : 1);
    QVERIFY(isSaved(selection("AB"), name));
    QVERIFY(load(name, &result) == selection("AB"));
    QVERIFY(QFile::exists(path("precious.gpx")));
    QVERIFY(!QFile::exists(path("planted.gpx")));
}

void tst_SharedStores::aPipeInTheStoreIsNoTrack()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    QVERIFY(QFile::remove(path("trip.tracks/track.gps")));
    QCOMPARE(::mkfifo(QFile::encodeName(path("trip.tracks/track.gps")).constData(), 0600), 0);
    auto result = KelSelectionFile::Result::Done;
    QCOMPARE(load(name, &result).count(), 0); // and does not wait for somebody to write into it
    QVERIFY(result == KelSelectionFile::Result::Incomplete);
}

void tst_SharedStores::readersMeetSavesInProgress()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("AB", 200), name));
    // Every save stores its tracks under new names, or such as have become free, and removes those of the one before.
    const QList<pid_t> writers{start([&] {
                                   for (int i = 0;; ++i) {
                                       if (!isSaved(selection(lettersOf(0, i), 200), name))
                                           return 1;
                                       KelSelectionFile(name).removeUnusedTracks();
                                   }
                               }),
                               start([&] {
                                   for (int i = 0;; ++i) {
                                       if (!isSaved(selection(lettersOf(1, i), 200), name))
                                           return 1;
                                       KelSelectionFile(name).removeUnusedTracks();
                                   }
                               })};
    QSet<QString> seen;
    QString wrong;
    for (int i = 0; i < 100 && wrong.isEmpty(); ++i) {
        auto result = KelSelectionFile::Result::Malformed;
        const KelGPXTrackSelection read = load(name, &result);
        QString letters;
        for (int row = 0; row < read.count(); ++row)
            letters += read.value(row).name();
        if (result != KelSelectionFile::Result::Done || read != selection(letters, 200))
            wrong = QStringLiteral("round %1: \"%2\"").arg(i).arg(letters);
        seen.insert(letters);
    }
    for (const pid_t writer : writers) {
        ::kill(writer, SIGKILL);
        QVERIFY(waitFor(writer).killed);
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    QVERIFY(seen.size() > 1); // otherwise nobody was saving
}

void tst_SharedStores::theFolderVanishesWhileOneWaitsForIt()
{
    const QString name = path("trip.xml");
    const QByteArray store = QFile::encodeName(path("trip.tracks"));
    for (int round = 0; round < 5; ++round) {
        QVERIFY(QDir().mkdir(path("trip.tracks")));
        const int folder = ::open(store.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QVERIFY(folder >= 0);
        QCOMPARE(::flock(folder, LOCK_EX), 0);
        const pid_t waiting = start([&] {
            ::close(folder); // it would keep the lock
            return isSaved(selection("AB"), name) ? 0 : 1;
        });
        QTest::qSleep(50);
        // As one does that gives up, having stored nothing.
        QCOMPARE(::rmdir(store.constData()), 0);
        ::close(folder);
        QCOMPARE(waitFor(waiting).code, 0);
        auto result = KelSelectionFile::Result::Malformed;
        QVERIFY(load(name, &result) == selection("AB"));
        QCOMPARE(filesIn(path("trip.tracks")).size(), 2); // and not in the document
        QVERIFY(QDir(path("trip.tracks")).removeRecursively());
        QVERIFY(QFile::remove(name));
    }
}

void tst_SharedStores::onlyTheOwnPlaceholderIsRemoved()
{
    const QDir store(path("store"));
    const QString name = store.filePath("track.gps");
    int kept = 0;
    int lost = 0;
    for (int at = 1; at < 20; ++at) {
        QVERIFY(QDir().mkpath(store.path()));
        const Ended ended = waitFor(start([&] {
            const KelFileSizeLimit fullDisk(0);
            // Another process removes the file, which is empty, and takes the name for itself.
            KelSystemFaults faults(KelSystemFaults::Interfere, KelSystemFaults::Writes, at, 0, [&](const char *) {
                if (!QFile::exists(name))
                    return;
                ::unlink(QFile::encodeName(name).constData());
                ::close(::open(QFile::encodeName(path("others")).constData(), O_WRONLY | O_CREAT, 0600));
                ::link(QFile::encodeName(path("others")).constData(), QFile::encodeName(name).constData());
            });
            KelGPXTrackFileRegistry::instance().createAssignedFile({trackOf(at), store});
            return 0;
        }));
        QCOMPARE(ended.code, 0);
        if (QFile::exists(path("others")))
            ++(QFile::exists(name) ? kept : lost);
        QFile::remove(path("others"));
        QVERIFY(QDir(store).removeRecursively());
    }
    QVERIFY(kept > 0);
    // Between the last look and the removal.
    QVERIFY(lost <= 1);
}

void tst_SharedStores::aLinkThatLeadsNowhereIsNotFollowed()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    QVERIFY(QFile::remove(path("trip.tracks/track.gps")));
    QVERIFY(QFile::link(path("elsewhere.gps"), path("trip.tracks/track.gps")));
    QVERIFY(isSaved(selection("A"), name));
    QVERIFY(!QFile::exists(path("elsewhere.gps")));
    auto result = KelSelectionFile::Result::Malformed;
    QVERIFY(load(name, &result) == selection("A"));
    QCOMPARE(result, KelSelectionFile::Result::Done);
}

void tst_SharedStores::aLinkOutOfTheStoreIsNoTrack()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("AB"), name));
    QVERIFY(QFile::rename(path("trip.tracks/track.gps"), path("precious.gpx")));
    QVERIFY(QFile::link(path("precious.gpx"), path("trip.tracks/track.gps")));
    const QByteArray precious = contentOf(path("precious.gpx"));
    auto result = KelSelectionFile::Result::Done;
    QVERIFY(load(name, &result) == selection("B"));
    QCOMPARE(result, KelSelectionFile::Result::Incomplete);
    // Saved again, the track gets a file in the store.
    QVERIFY(isSaved(selection("AB"), name));
    QVERIFY(load(name, &result) == selection("AB"));
    QCOMPARE(result, KelSelectionFile::Result::Done);
    QCOMPARE(contentOf(path("precious.gpx")), precious);
    QVERIFY(QFileInfo(path("trip.tracks/track.gps")).isSymLink());

    // Nor is it read by saving over a document that names it.
    const auto countReads = [&] {
        write(name, documentOf(rowOf("<include>track.gps</include>")));
        const KelSystemFaults counter(KelSystemFaults::Nothing, KelSystemFaults::Reads, 0);
        return isSaved(selection("B"), name) ? counter.count() : -1;
    };
    const int withLink = countReads();
    QVERIFY(QFile::remove(path("trip.tracks/track.gps")));
    QCOMPARE(withLink, countReads());
}

void tst_SharedStores::aStoreInUseIsNotSaved()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    const QByteArray store = QFile::encodeName(path("trip.tracks"));
    const int reader = ::open(store.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QVERIFY(reader >= 0);
    QCOMPARE(::flock(reader, LOCK_SH), 0);
    KelErrorHistory errors;
    KelSelectionFile file(name);
    file.setPatience(std::chrono::milliseconds(50));
    QCOMPARE(file.save(selection("B"), errors), KelSelectionFile::Result::NotWritten);
    QCOMPARE(errors.last().message, "the selection was not saved: another program is using it; try again");
    auto result = KelSelectionFile::Result::Malformed;
    QVERIFY(load(name, &result) == selection("A")); // beside the other reader
    QCOMPARE(::flock(reader, LOCK_EX), 0);
    KelGPXTrackSelection read;
    QCOMPARE(file.load(read, errors), KelSelectionFile::Result::Done); // better than nothing
    QVERIFY(read == selection("A"));
    ::close(reader);
    QCOMPARE(file.save(selection("B"), errors), KelSelectionFile::Result::Done);
}

void tst_SharedStores::foldersThatNeverLookLikeThemselves()
{
    const QString name = path("trip.xml");
    const Ended ended = waitFor(start([&] {
        ::alarm(60); // it would go on for ever
        hasStrangeFolders = true;
        if (!isSaved(selection("AB"), name))
            return 1;
        KelSelectionFile(name).removeUnusedTracks();
        auto result = KelSelectionFile::Result::Malformed;
        return load(name, &result) == selection("AB") && result == KelSelectionFile::Result::Done ? 0 : 2;
    }));
    QVERIFY(!ended.killed);
    QCOMPARE(ended.code, 0);
    struct stat byName = {};
    struct stat opened = {};
    const QByteArray store = QFile::encodeName(path("trip.tracks"));
    const int folder = ::open(store.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    hasStrangeFolders = true;
    QCOMPARE(::fstat(folder, &opened), 0);
    hasStrangeFolders = false;
    ::close(folder);
    QCOMPARE(::stat(store.constData(), &byName), 0);
    QVERIFY(opened.st_ino != byName.st_ino); // otherwise nothing was tested
}

void tst_SharedStores::rowsThatHoldMoreThanAName_data()
{
    QTest::addColumn<QByteArray>("track");
    QTest::addColumn<bool>("refused");
    const QByteArray include = "<include>track.gps</include>";
    const QByteArray segment = "<trkseg><compressedPoints>1,2 3,4</compressedPoints></trkseg>";
    QTest::newRow("its name") << include << false;
    QTest::newRow("its name and a comment") << "<!-- a -->" + include << false;
    QTest::newRow("the track itself") << "<name>A</name>" + segment << false;
    QTest::newRow("further points") << include + segment << true;
    QTest::newRow("points before it") << segment + include << true;
    QTest::newRow("another name") << include + "<name>B</name>" << true;
    QTest::newRow("no name, but points") << "<include/>" + segment << true;
    QTest::newRow("something unknown") << include + "<a/>" << true;
}

/// Thousands of such rows would make as many different tracks of one size out of one file.
void tst_SharedStores::rowsThatHoldMoreThanAName()
{
    QFETCH(QByteArray, track);
    QFETCH(bool, refused);
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    write(name, documentOf(rowOf("<include>track.gps</include>") + rowOf(track)));
    KelGPXTrackSelection read;
    KelErrorHistory errors;
    const auto result = KelSelectionFile(name).load(read, errors);
    QCOMPARE(result, refused ? KelSelectionFile::Result::Malformed : KelSelectionFile::Result::Done);
    QCOMPARE(errors.last().message, refused ? "a track of it holds more than the name of its file" : "");
    QCOMPARE(read.count(), refused ? 0 : 2);
    QVERIFY(isSaved(selection("AB"), name));
}

void tst_SharedStores::rowsThatNameOneFile_data()
{
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("refused");
    QTest::newRow("twice") << 3 << 2 << false;
    QTest::newRow("a short track many times") << 3 << 1000 << false;
    QTest::newRow("a long track some times") << 200000 << 5 << false;
    QTest::newRow("a track that is not short, too many times") << 20000 << 100 << true;
    QTest::newRow("a long track many times") << 200000 << 200 << true;
}

/// A small document must not be drawn for ever.
void tst_SharedStores::rowsThatNameOneFile()
{
    QFETCH(int, points);
    QFETCH(int, rows);
    QFETCH(bool, refused);
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A", points), name));
    write(name, documentOf(rowOf("<include>track.gps</include>").repeated(rows)));
    auto result = KelSelectionFile::Result::Done;
    const KelGPXTrackSelection read = load(name, &result);
    QCOMPARE(read.count(), refused ? 0 : rows);
    QCOMPARE(result, refused ? KelSelectionFile::Result::Malformed : KelSelectionFile::Result::Done);
    if (!refused)
        QVERIFY(read.value(rows - 1).track() == read.value(0).track() && read.value(0).track().countPoints() == points);
}

/// A small document must not fill the memory: rows of one file share its track.
void tst_SharedStores::rowsThatNameOneFileReadItOnce()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("A"), name));
    const auto countReads = [&](int rows) {
        write(name, documentOf(rowOf("<include>track.gps</include>").repeated(rows)));
        const KelSystemFaults counter(KelSystemFaults::Nothing, KelSystemFaults::Reads, 0);
        auto result = KelSelectionFile::Result::Malformed;
        return load(name, &result).count() == rows ? counter.count() : -1;
    };
    const int once = countReads(1);
    QVERIFY(once > 0);
    const int often = countReads(300);
    QVERIFY(often > 0);
    QVERIFY2(often < once + 20, qPrintable(QString::number(often))); // some for the longer document
}

/// The library reads rows of the former kind first; each has to get the track of its own file.
void tst_SharedStores::rowsOfBothKinds()
{
    const QString name = path("trip.xml");
    QVERIFY(isSaved(selection("AB"), name));
    const QByteArray a = "<include>track.gps</include>";
    const QByteArray b = "<include>track_2.gps</include>";
    const QByteArray c = "<name>C</name>";
    write(name, documentOf(rowOf(a) + rowOf(b, "locationTrack") + rowOf(a, "unknown") + rowOf(c) + rowOf(b) + rowOf(a, "locationTrack")));
    auto result = KelSelectionFile::Result::Malformed;
    const KelGPXTrackSelection read = load(name, &result);
    QCOMPARE(result, KelSelectionFile::Result::Done);
    QString letters;
    for (int row = 0; row < read.count(); ++row)
        letters += read.value(row).name();
    QCOMPARE(letters, "BAACB");
}

void tst_SharedStores::thousandsOfTracks()
{
    const int wanted = qEnvironmentVariableIntValue("KEL_STORED_TRACKS");
    const int count = wanted > 0 ? wanted : 1000;
    const QString name = path("many.xml");
    KelGPXTrackSelection many;
    for (int i = 0; i < count; ++i)
        many.addTrack(KelGPXConfiguredTrack(trackOf(i), KelTestTracks::configuration(TrackShapeAuto)));

    QElapsedTimer timer;
    const auto report = [&timer, count](const char *what) {
        qInfo("%d tracks, %s: %lld ms", count, what, static_cast<long long>(timer.restart()));
    };
    timer.start();
    QVERIFY(isSaved(many, name));
    report("saved");
    QCOMPARE(QDir(path("many.tracks")).entryList(QDir::Files).size(), count);
    timer.restart();
    QVERIFY(isSaved(many, name));
    report("saved again");
    QCOMPARE(QDir(path("many.tracks")).entryList(QDir::Files).size(), count);

    timer.restart();
    auto result = KelSelectionFile::Result::Malformed;
    QVERIFY(load(name, &result) == many);
    report("loaded");
    QCOMPARE(result, KelSelectionFile::Result::Done);

    KelGPXTrackSelection half = many;
    for (int row = count - 1; row >= count / 2; --row)
        half.removeAt(row);
    QVERIFY(isSaved(half, name));
    timer.restart();
    KelSelectionFile(name).removeUnusedTracks();
    report("cleaned up");
    QCOMPARE(QDir(path("many.tracks")).entryList(QDir::Files).size(), count / 2);
    QVERIFY(load(name, &result) == half);
}

QTEST_GUILESS_MAIN(tst_SharedStores)
#include "tst_SharedStores.moc"

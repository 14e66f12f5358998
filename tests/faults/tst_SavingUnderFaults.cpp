// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFaultTestSupport.h"
#include "KelSystemFaults.h"

#include <KelErrorHistory.h>
#include <KelGPXTrackFile.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelOutputFile.h>
#include <KelSelectionFile.h>
#include <KelSettings.h>
#include <KelTemporarySettings.h>
#include <KelXMLBuilder.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDirIterator>
#include <QDomDocument>
#include <QSettings>
#include <QtTest>

#include <cerrno>
#include <csignal>

using namespace KelFaultTestSupport;

/// Everything that is saved, with every fault at every single call to the system: what was there before stays whole, or
/// the new state is complete; whoever is told of a success has it on disk; and the next save does as ever.
///
/// Each save runs in a process of its own, which may die of it.
class tst_SavingUnderFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void faultsAtEveryCall_data();
    void faultsAtEveryCall();
    void cleanupTestCase();

private:
    int m_faults = 0;
};

namespace
{

constexpr int LOGGED = 1;
constexpr int SAVED = 2;
constexpr int STRUCK = 4;
constexpr int STILL_SUPERUSER = 99;
constexpr uid_t NOBODY = 65534;
const QByteArray BIG(100000, 'n');

bool hasLogged = false;

void noteWarnings(QtMsgType type, const QMessageLogContext &context, const QString &)
{
    hasLogged = hasLogged || (type == QtWarningMsg && QByteArray(context.category).startsWith("kel."));
}

QString goneFrom(const QString &dir)
{
    return dir + QStringLiteral(".gone");
}

enum class State { Former,
                   New,
                   Broken };

/// Something that can be saved into a folder.
struct Saving
{
    std::function<void(const QString &dir)> prepare;
    /// Whether it claims to be done; always true where the interface does not tell.
    std::function<bool(const QString &dir)> save;
    std::function<State(const QString &dir)> state;
    bool tells;
    /// Whether a disk may also become full while it is saved.
    bool mayFillUp = true;
};

State stateOf(const QByteArray &content, const QByteArray &former, const QByteArray &later)
{
    return content == former ? State::Former : content == later ? State::New
                                                                : State::Broken;
}

QDomDocument documentWith(const QByteArray &text)
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("a"));
    root.appendChild(document.createTextNode(QString::fromLatin1(text)));
    return document;
}

KelGPXTrack trackOf(const QString &letter)
{
    return selection(letter, 200).value(0).track();
}

Saving document()
{
    const QString name = QStringLiteral("/a.xml");
    const QByteArray head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>";
    return {[name](const QString &dir) { write(dir + name, "the former"); },
            [name](const QString &dir) {
                KelErrorHistory errors;
                const bool saved = KelXMLBuilder::saveUTF8(documentWith(BIG), QFileInfo(dir + name), &errors);
                return saved || errors.isEmpty(); // a failure without a reason is no report
            },
            [name, head](const QString &dir) {
                return stateOf(contentOf(dir + name), "the former", head + BIG + "</a>\n");
            },
            true};
}

Saving gpxFile()
{
    const auto name = [](const QString &dir) { return QFileInfo(dir + QStringLiteral("/a.gpx")); };
    return {[name](const QString &dir) { trackOf("F").saveAsGpxFile(name(dir)); },
            [name](const QString &dir) {
                trackOf("N").saveAsGpxFile(name(dir));
                return true;
            },
            [name](const QString &dir) {
                const QList<KelGPXTrack> tracks = KelGPXTrackFile(name(dir)).tracks();
                if (tracks.size() != 1)
                    return State::Broken;
                return tracks.first() == trackOf("F") ? State::Former
                    : tracks.first() == trackOf("N")  ? State::New
                                                      : State::Broken;
            },
            false};
}

/// What the state document of a host would read.
KelGPXTrack includedTrack(const QString &dir, const QString &name)
{
    QDomDocument state;
    state.setContent("<trk><include>" + name + "</include></trk>");
    return KelGPXTrack(state.documentElement(), QDir(dir));
}

Saving storedTrack()
{
    const auto stored = [](const QString &letter, const QString &dir) {
        return KelGPXTrackFileRegistry::instance().createAssignedFile({trackOf(letter), QDir(dir)});
    };
    return {[stored](const QString &dir) { stored("F", dir); },
            [stored](const QString &dir) {
                stored("N", dir);
                return true;
            },
            [](const QString &dir) {
                if (includedTrack(dir, "track.gps") != trackOf("F"))
                    return State::Broken;
                // A name that was taken for a track that never came reads as no track.
                const KelGPXTrack second = includedTrack(dir, "track_2.gps");
                return second == trackOf("N") ? State::New : second.isValid() ? State::Broken
                                                                              : State::Former;
            },
            false};
}

Saving selectionFile()
{
    const auto name = [](const QString &dir) { return dir + QStringLiteral("/trip.xml"); };
    return {[name](const QString &dir) {
                KelErrorHistory errors;
                KelSelectionFile(name(dir)).save(selection("AB"), errors);
            },
            [name](const QString &dir) {
                KelErrorHistory errors;
                const auto result = KelSelectionFile(name(dir)).save(selection("BC"), errors);
                return result == KelSelectionFile::Result::Done || errors.isEmpty();
            },
            [name](const QString &dir) {
                KelErrorHistory errors;
                KelGPXTrackSelection read;
                if (KelSelectionFile(name(dir)).load(read, errors) != KelSelectionFile::Result::Done)
                    return State::Broken;
                return read == selection("AB") ? State::Former : read == selection("BC") ? State::New
                                                                                         : State::Broken;
            },
            true};
}

Saving settings()
{
    const auto use = [](const QString &dir) {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir);
        return QSettings().fileName();
    };
    const QByteArray hosts = "hosts=" + QByteArray(5000, 'h') + "\n";
    const QByteArray former = "[General]\n" + hosts + "text=former\n";
    const QByteArray later = "[General]\n" + hosts + "text=" + BIG + "\n";
    return {[use, former](const QString &dir) {
                const QString file = use(dir);
                QDir().mkpath(QFileInfo(file).path());
                write(file, former);
            },
            [use](const QString &dir) {
                use(dir);
                KelConfigItem<QString> item(QStringLiteral("text"), QString());
                item.setValue(QString::fromLatin1(BIG));
                return KelSettings().save(item);
            },
            [use, former, later](const QString &dir) {
                const QByteArray content = contentOf(use(dir));
                // Where the folder is gone with the former store, a new one begins.
                const bool isBeginning = content == "[General]\ntext=" + BIG + "\n";
                return isBeginning && QFileInfo::exists(goneFrom(dir)) ? State::New : stateOf(content, former, later);
            },
            true,
            false}; // QSettings takes a write that came short for a success
}

Saving picture()
{
    const QString name = QStringLiteral("/a.png");
    return {[name](const QString &dir) { write(dir + name, "the former"); },
            [name](const QString &dir) {
                KelOutputFile file(dir + name);
                return file.write(BIG) || file.error().isEmpty();
            },
            [name](const QString &dir) { return stateOf(contentOf(dir + name), "the former", BIG); }, true};
}

/// What goes wrong, and how.
struct Fault
{
    KelSystemFaults::Kind kind;
    int errorNumber = 0;
    /// For faults that come from outside; of the folder.
    std::function<void(const QString &dir)> interfere = nullptr;
    bool asNobody = false;
};

Fault vanishingFolder()
{
    return {KelSystemFaults::Interfere, 0, [](const QString &dir) { QDir().rename(dir, goneFrom(dir)); }};
}

Fault folderThatTurnsReadOnly()
{
    return {KelSystemFaults::Interfere, 0,
            [](const QString &dir) {
                for (const char *place : {"", "/trip.tracks", "/libKelGeoLocation"})
                    QFile::setPermissions(dir + QLatin1String(place), QFile::ReadOwner | QFile::ExeOwner);
            },
            true};
}

/// So that the superuser, too, meets access rights.
void giveAway(const QString &dir)
{
    (void)!::chown(QFile::encodeName(dir).constData(), NOBODY, NOBODY);
    for (const QString &name : filesIn(dir)) {
        const QString path = dir + QLatin1Char('/') + name;
        if (QFileInfo(path).isDir())
            giveAway(path);
        else
            (void)!::chown(QFile::encodeName(path).constData(), NOBODY, NOBODY);
    }
}

/// Without rights that the superuser has.
void becomeNobody()
{
    if (::geteuid() == 0 && (::setresuid(NOBODY, NOBODY, NOBODY) != 0 || ::geteuid() == 0))
        ::_exit(STILL_SUPERUSER);
}

/// Qt waits half a minute before it takes a lock file without an owner's name for that of somebody who died.
void ageLocks(const QString &dir)
{
    QDirIterator locks(dir, {QStringLiteral("*.lock")}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (locks.hasNext()) {
        QFile lock(locks.next());
        if (lock.open(QIODevice::ReadWrite))
            lock.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime);
    }
}

/// In a process of its own; see LOGGED and its neighbours.
int save(const Saving &saving, const Fault &fault, int at, const QString &dir)
{
    if (fault.asNobody)
        becomeNobody();
    hasLogged = false;
    qInstallMessageHandler(noteWarnings);
    KelSystemFaults faults(fault.kind, KelSystemFaults::Writes, at, fault.errorNumber,
                           [&](const char *) { fault.interfere(dir); });
    const bool saved = saving.save(dir);
    return (hasLogged ? LOGGED : 0) | (saved ? SAVED : 0) | (faults.hasStruck() ? STRUCK : 0);
}

} // namespace

Q_DECLARE_METATYPE(Saving)
Q_DECLARE_METATYPE(Fault)

void tst_SavingUnderFaults::initTestCase()
{
    static const KelTemporarySettings names;
    // A file beyond the limit is a failed write here, too.
    std::signal(SIGXFSZ, SIG_IGN);
}

void tst_SavingUnderFaults::faultsAtEveryCall_data()
{
    QTest::addColumn<Saving>("saving");
    QTest::addColumn<Fault>("fault");

    const QList<std::pair<const char *, Saving>> savings{{"document", document()},
                                                         {"GPX file", gpxFile()},
                                                         {"stored track", storedTrack()},
                                                         {"selection", selectionFile()},
                                                         {"settings", settings()},
                                                         {"picture", picture()}};
    const QList<std::pair<const char *, Fault>> faults{{"device fails", {KelSystemFaults::Error, EIO}},
                                                       {"no rights", {KelSystemFaults::Error, EACCES}},
                                                       {"interrupted", {KelSystemFaults::Error, EINTR}},
                                                       {"full disk", {KelSystemFaults::FullDisk}},
                                                       {"short write", {KelSystemFaults::ShortWrite}},
                                                       {"killed", {KelSystemFaults::Kill}},
                                                       {"killed within a write", {KelSystemFaults::TornKill}},
                                                       {"folder vanishes", vanishingFolder()},
                                                       {"folder turns read-only", folderThatTurnsReadOnly()}};
    for (const auto &[savingName, saving] : savings) {
        for (const auto &[faultName, fault] : faults)
            QTest::addRow("%s, %s", savingName, faultName) << saving << fault;
    }
}

void tst_SavingUnderFaults::faultsAtEveryCall()
{
    QFETCH(Saving, saving);
    QFETCH(Fault, fault);
    const bool kills = fault.kind == KelSystemFaults::Kill || fault.kind == KelSystemFaults::TornKill;
    int survived = 0;
    int prevented = 0;
    for (int at = 1;; ++at) {
        QVERIFY2(at < 1000, "the work has no end");
        if (at > 1 && fault.kind == KelSystemFaults::FullDisk && !saving.mayFillUp)
            break;
        const QTemporaryDir place(temporaryTemplate());
        const QString dir = place.filePath("store");
        QVERIFY(QDir().mkdir(dir));
        saving.prepare(dir);
        QVERIFY(saving.state(dir) == State::Former);
        if (fault.asNobody && ::geteuid() == 0)
            giveAway(place.path());
        const QStringList before = filesIn(dir);
        const Ended ended = waitFor(start([&] { return save(saving, fault, at, dir); }));
        QVERIFY(ended.code != STILL_SUPERUSER);
        const QString left = QFileInfo::exists(goneFrom(dir)) ? goneFrom(dir) : dir;
        const std::string where = ("at call " + QByteArray::number(at)).toStdString();

        if (!ended.killed && !(ended.code & STRUCK)) {
            QVERIFY2(ended.code & SAVED, where.c_str());
            QVERIFY2(saving.state(dir) == State::New, where.c_str());
            QCOMPARE(ended.code & LOGGED, 0);
            break;
        }
        ++survived;
        QVERIFY2(ended.killed ? kills : true, where.c_str());
        const State state = saving.state(left);
        // A folder that vanished may have been made anew, with the new state in it.
        const bool isNew = state == State::New || (left != dir && saving.state(dir) == State::New);
        QVERIFY2(state != State::Broken, where.c_str());
        prevented += isNew ? 0 : 1;
        if (!ended.killed && saving.tells)
            QVERIFY2(isNew == bool(ended.code & SAVED), where.c_str());
        if (!ended.killed && !saving.tells)
            QVERIFY2(isNew != bool(ended.code & LOGGED), where.c_str());
        // Nothing lies about, and what does after a sudden death is in nobody's way.
        if (!ended.killed && !isNew && left == dir && !fault.asNobody)
            QCOMPARE(filesIn(left), before);
        if (left != dir || fault.asNobody || (state == State::New && !saving.tells))
            continue;
        ageLocks(dir);
        const Ended again = waitFor(start([&] { return save(saving, {KelSystemFaults::Nothing}, 0, dir); }));
        QVERIFY2(!again.killed && (again.code & SAVED), where.c_str());
        if (saving.tells)
            QVERIFY2(saving.state(dir) == State::New, where.c_str());
    }
    QVERIFY(survived > 0);
    // What never does any harm is no fault. A write that was interrupted or came short is to be continued.
    const bool mayHarm = fault.errorNumber != EINTR && fault.kind != KelSystemFaults::ShortWrite;
    QVERIFY(prevented > 0 || !mayHarm);
    m_faults += survived;
}

void tst_SavingUnderFaults::cleanupTestCase()
{
    qInfo("%d faults injected, none lost anything", m_faults);
}

QTEST_GUILESS_MAIN(tst_SavingUnderFaults)
#include "tst_SavingUnderFaults.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelRecordingTranslator.h>
#include <KelRequestDiskAccess.h>
#include <KelTemporarySettings.h>
#include <KelTestArchive.h>
#include <KelTrackSelectionFactory.h>
#include <KelTrackSelectionFactoryGPXFile.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

#include <cstddef>
#include <cstring>

class tst_KelTrackSelectionFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void isOneObjectPerProcess();
    void supportedFileFormats();
    void supportsFile_data();
    void supportsFile();
    void dispatchesAndLogs_data();
    void dispatchesAndLogs();
    void logsBeforeItReads();
    void unsupportedFileIsNotLogged_data();
    void unsupportedFileIsNotLogged();
    void listOfUrlsSkipsWhatGivesNothing();
    void listOfUrlsGoesThroughTheVirtualForm();
    void reasons_data();
    void reasons();
    void askUserReadFile();
    void askUserReadFileCancelled();
    void askUserReadFileGoesThroughTheVirtualForm();
    void virtualOperationsKeepTheirOrder();

private:
    QUrl write(const QString &name, const QByteArray &content);

    KelTemporarySettings m_settings;
    QTemporaryDir m_folder;
    QUrl m_gpx;
    QUrl m_kml;
    QUrl m_kmz;
    QUrl m_text;
};

namespace
{

/// Notes which URLs it was asked for.
class RecordingFactory : public KelTrackSelectionFactory
{
public:
    using KelTrackSelectionFactory::createConfiguredTrackList;
    KelGPXConfiguredTrackList createConfiguredTrackList(const QUrl &url) const override
    {
        asked.append(url);
        return KelTrackSelectionFactory::createConfiguredTrackList(url);
    }
    mutable QList<QUrl> asked;
};

QStringList names(const KelGPXConfiguredTrackList &list)
{
    QStringList result;
    for (const KelGPXConfiguredTrack &track : list)
        result.append(track.name());
    return result;
}

/// Where the compiler puts a virtual operation into the table of its class.
template<class Operation>
std::ptrdiff_t slotOf(Operation operation)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof operation >= sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
    return offset;
}

/// Where the operations of a factory for files are, in the order in which they are promised.
template<class Factory>
QList<std::ptrdiff_t> slotsOfFileFactory()
{
    using List = KelGPXConfiguredTrackList;
    return {slotOf<bool (Factory::*)(const QUrl &) const>(&Factory::supportsFile),
            slotOf(&Factory::supportedFileFormats),
            slotOf<List (Factory::*)(const QUrl &) const>(&Factory::createConfiguredTrackList),
            slotOf<bool (Factory::*)(const QFileInfo &) const>(&Factory::supportsFile),
            slotOf<List (Factory::*)(const QFileInfo &) const>(&Factory::createConfiguredTrackList)};
}

/// The lines of the log, while it lives.
class LogCatcher
{
public:
    LogCatcher()
    {
        lines().clear();
        previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            lines().append(QLatin1String(context.category) + QLatin1Char('|') + QString::number(type) + QLatin1Char('|')
                           + text);
        });
    }
    ~LogCatcher() { qInstallMessageHandler(previous); }
    LogCatcher(const LogCatcher &) = delete;
    LogCatcher &operator=(const LogCatcher &) = delete;

    static QStringList &lines()
    {
        static QStringList caught;
        return caught;
    }

private:
    QtMessageHandler previous;
};

} // namespace

QUrl tst_KelTrackSelectionFactory::write(const QString &name, const QByteArray &content)
{
    if (!KelTestArchive::write(m_folder.filePath(name), content))
        qFatal("the test's file cannot be written");
    return QUrl::fromLocalFile(m_folder.filePath(name));
}

void tst_KelTrackSelectionFactory::initTestCase()
{
    QVERIFY(m_folder.isValid());
    const QByteArray kml = "<kml><Document><Placemark><name>from KML</name><LineString><coordinates>8,50 9,51"
                           "</coordinates></LineString></Placemark></Document></kml>";
    m_gpx = write(QStringLiteral("walk.GPX"), "<gpx><trk><name>from GPX</name><trkseg><trkpt lat='50' lon='8'/><trkpt "
                                              "lat='51' lon='9'/></trkseg></trk></gpx>");
    m_kml = write(QStringLiteral("tour.kml"), kml);
    m_kmz = write(QStringLiteral("tour.KMZ"),
                  KelTestArchive::build({{"doc.kml", QByteArray(kml).replace("KML", "KMZ"), true}}));
    m_text = write(QStringLiteral("walk.gpx.bak"), "<gpx/>");
}

void tst_KelTrackSelectionFactory::isOneObjectPerProcess()
{
    QCOMPARE(&KelTrackSelectionFactory::instance(), &KelTrackSelectionFactory::instance());
}

void tst_KelTrackSelectionFactory::supportedFileFormats()
{
    QCOMPARE(KelTrackSelectionFactory::instance().supportedFileFormats(), QStringList({"*.gpx", "*.kml", "*.kmz"}));
}

void tst_KelTrackSelectionFactory::supportsFile_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<bool>("supported");

    QTest::newRow("TRACK.GPX") << QUrl(QStringLiteral("file:///TRACK.GPX")) << true;
    QTest::newRow("route.kml") << QUrl(QStringLiteral("file:///route.kml")) << true;
    QTest::newRow("route.KMZ") << QUrl(QStringLiteral("file:///route.KMZ")) << true;
    QTest::newRow("track.gpx.bak") << QUrl(QStringLiteral("file:///track.gpx.bak")) << false;
    QTest::newRow("not a local file") << QUrl(QStringLiteral("https://example.org/track.gpx")) << false;
    QTest::newRow("nothing") << QUrl() << false;
}

void tst_KelTrackSelectionFactory::supportsFile()
{
    QFETCH(QUrl, url);
    QTEST(KelTrackSelectionFactory::instance().supportsFile(url), "supported");
}

void tst_KelTrackSelectionFactory::dispatchesAndLogs_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("line");

    QTest::newRow("GPX") << m_gpx << "from GPX" << "ACTION:useFactory VALUE:*.gpx";
    QTest::newRow("KML") << m_kml << "from KML" << "ACTION:useFactory VALUE:*.kml,*.kmz";
    QTest::newRow("KMZ") << m_kmz << "from KMZ" << "ACTION:useFactory VALUE:*.kml,*.kmz";
}

void tst_KelTrackSelectionFactory::dispatchesAndLogs()
{
    QFETCH(QUrl, url);
    QFETCH(QString, name);
    QFETCH(QString, line);
    const KelTrackSelectionFactory &factory = KelTrackSelectionFactory::instance();
    const QStringList expectedLog{QStringLiteral("kel.osm|%1|%2").arg(QString::number(QtInfoMsg), line)};
    {
        const LogCatcher log;
        QCOMPARE(names(factory.createConfiguredTrackList(url)), QStringList({name}));
        QCOMPARE(LogCatcher::lines(), expectedLog);
    }
    {
        const LogCatcher log;
        KelErrorHistory errors;
        QCOMPARE(names(factory.createConfiguredTrackList(url, &errors)), QStringList({name}));
        QVERIFY(errors.isEmpty());
        QCOMPARE(LogCatcher::lines(), expectedLog);
    }
}

void tst_KelTrackSelectionFactory::logsBeforeItReads()
{
    // Whoever follows the log sees which factory is at work on a file, also when it never comes back.
    static QString path;
    static int lines = 0;
    path = m_folder.filePath(QStringLiteral("late.gpx"));
    const auto previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {
        ++lines;
        KelTestArchive::write(path, QByteArray("<gpx><trk><name>came late</name><trkseg><trkpt lat='50' lon='8'/>"
                                               "</trkseg></trk></gpx>"));
    });
    const KelTrackSelectionFactory &factory = KelTrackSelectionFactory::instance();
    const QStringList plain = names(factory.createConfiguredTrackList(QUrl::fromLocalFile(path)));
    QFile::remove(path);
    KelErrorHistory errors;
    const QStringList reported = names(factory.createConfiguredTrackList(QUrl::fromLocalFile(path), &errors));
    qInstallMessageHandler(previous);
    QCOMPARE(plain, QStringList({"came late"}));
    QCOMPARE(reported, QStringList({"came late"}));
    QCOMPARE(lines, 2);
}

void tst_KelTrackSelectionFactory::unsupportedFileIsNotLogged_data()
{
    QTest::addColumn<QUrl>("url");

    QTest::newRow("other suffix") << m_text;
    QTest::newRow("not a local file") << QUrl(QStringLiteral("https://example.org/track.gpx"));
    QTest::newRow("nothing") << QUrl();
}

void tst_KelTrackSelectionFactory::unsupportedFileIsNotLogged()
{
    QFETCH(QUrl, url);
    const LogCatcher log;
    QVERIFY(!KelTrackSelectionFactory::instance().createConfiguredTrackList(url).isValid());
    QVERIFY(!KelTrackSelectionFactory::instance().createConfiguredTrackList(url, nullptr).isValid());
    QCOMPARE(LogCatcher::lines(), QStringList());
}

void tst_KelTrackSelectionFactory::listOfUrlsSkipsWhatGivesNothing()
{
    const KelTrackSelectionFactory &factory = KelTrackSelectionFactory::instance();
    const QUrl missing = QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("missing.gpx")));
    QCOMPARE(names(factory.createConfiguredTrackList(QList<QUrl>{m_gpx, m_text})), QStringList({"from GPX"}));
    QCOMPARE(names(factory.createConfiguredTrackList(QList<QUrl>{m_kmz, missing, m_gpx, QUrl(), m_kml, m_gpx})),
             QStringList({"from KMZ", "from GPX", "from KML", "from GPX"}));
    QVERIFY(!factory.createConfiguredTrackList(QList<QUrl>{}).isValid());
}

void tst_KelTrackSelectionFactory::listOfUrlsGoesThroughTheVirtualForm()
{
    const RecordingFactory factory;
    const QList<QUrl> urls{m_kml, m_text, m_gpx};
    QCOMPARE(names(factory.createConfiguredTrackList(urls)), QStringList({"from KML", "from GPX"}));
    QCOMPARE(factory.asked, urls);
}

void tst_KelTrackSelectionFactory::reasons_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("reason");

    QTest::newRow("unknown kind") << m_text << m_text.toLocalFile() + ": not a kind of file that holds tracks (known "
                                                                      "are *.gpx, *.kml, *.kmz)";
    QTest::newRow("not a local file")
        << QUrl(QStringLiteral("https://example.org/a.gpx"))
        << "https://example.org/a.gpx: not a kind of file that holds tracks (known are *.gpx, *.kml, *.kmz)";
    const QUrl waypoints = write(QStringLiteral("places.gpx"), "<gpx><wpt lat='1' lon='2'/></gpx>");
    QTest::newRow("GPX") << waypoints
                         << waypoints.toLocalFile() + ": the file has only waypoints, no tracks and no routes";
    const QUrl empty = write(QStringLiteral("empty.kmz"), KelTestArchive::build({}));
    QTest::newRow("KMZ") << empty << empty.toLocalFile() + ": the archive holds no .kml entry";
}

void tst_KelTrackSelectionFactory::reasons()
{
    QFETCH(QUrl, url);
    KelErrorHistory errors;
    QVERIFY(!KelTrackSelectionFactory::instance().createConfiguredTrackList(url, &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QTEST(errors.last().toString(), "reason");
}

void tst_KelTrackSelectionFactory::askUserReadFile()
{
    KelRecordingTranslator translator;
    QStringList asked;
    m_settings.clear();
    KelRequestDiskAccess::instance().setDialog(
        [this, &asked](const QString &title, const QString &directory, const QString &filter) {
            asked << title << directory << filter;
            return m_kmz.toLocalFile();
        });
    const LogCatcher log;
    const KelGPXConfiguredTrackList list = KelTrackSelectionFactory::instance().askUserReadFile();
    KelRequestDiskAccess::instance().setDialog({});

    QCOMPARE(names(list), QStringList({"from KMZ"}));
    // No directory: nothing is asked for and nothing is remembered yet.
    QCOMPARE(asked, QStringList({QStringLiteral("Datei für Route öffnen"), QString(),
                                 QStringLiteral("*.gpx *.kml *.kmz")}));
    // It was asked for a file to read: that is what the directory is remembered for.
    asked.clear();
    for (const KelDiskAccessMode mode : {KelDiskAccessMode::Read, KelDiskAccessMode::Write}) {
        KelRequestDiskAccess::instance().setDialog(
            [&asked](const QString &, const QString &directory, const QString &) {
                asked << directory;
                return QString();
            });
        KelRequestDiskAccess::instance().getOpenFileName(mode, QString(), QString(), QString());
    }
    KelRequestDiskAccess::instance().setDialog({});
    QCOMPARE(asked, QStringList({m_folder.path(), QString()}));
    QVERIFY(translator.hasRecorded(QStringLiteral("QObject"), QStringLiteral("Datei für Route öffnen")));
    QVERIFY(LogCatcher::lines().contains(
        QStringLiteral("kel.osm|%1|ACTION:useFactory VALUE:*.kml,*.kmz").arg(int(QtInfoMsg))));
}

void tst_KelTrackSelectionFactory::askUserReadFileCancelled()
{
    KelRequestDiskAccess::instance().setDialog(
        [](const QString &, const QString &, const QString &) { return QString(); });
    const LogCatcher log;
    const RecordingFactory factory;
    QVERIFY(!factory.askUserReadFile().isValid());
    KelRequestDiskAccess::instance().setDialog({});
    QVERIFY(factory.asked.isEmpty());
    QCOMPARE(LogCatcher::lines(), QStringList());
}

void tst_KelTrackSelectionFactory::askUserReadFileGoesThroughTheVirtualForm()
{
    KelRequestDiskAccess::instance().setDialog(
        [this](const QString &, const QString &, const QString &) { return m_gpx.toLocalFile(); });
    const RecordingFactory factory;
    QCOMPARE(names(factory.askUserReadFile()), QStringList({"from GPX"}));
    KelRequestDiskAccess::instance().setDialog({});
    QCOMPARE(factory.asked, QList<QUrl>({m_gpx}));
}

void tst_KelTrackSelectionFactory::virtualOperationsKeepTheirOrder()
{
    // Hosts call through the table: its order is part of the interface.
    const auto step = std::ptrdiff_t(sizeof(void *));
    const std::ptrdiff_t first = slotOf(&KelTrackSelectionFactoryAbstract::supportsFile);
    const QList<std::ptrdiff_t> abstract{first, slotOf(&KelTrackSelectionFactoryAbstract::supportedFileFormats),
                                         slotOf(&KelTrackSelectionFactoryAbstract::createConfiguredTrackList)};
    const QList<std::ptrdiff_t> expected{first, first + step, first + 2 * step, first + 3 * step, first + 4 * step};
    QCOMPARE(abstract, expected.first(3));
    QCOMPARE(slotsOfFileFactory<KelTrackSelectionFactoryGPXFile>(), expected);
    QCOMPARE(slotsOfFileFactory<KelTrackSelectionFactoryKmlFile>(), expected);
    QVERIFY(std::has_virtual_destructor_v<KelTrackSelectionFactoryAbstract>);
    // They carry no data.
    QCOMPARE(sizeof(KelTrackSelectionFactoryGPXFile), sizeof(void *));
    QCOMPARE(sizeof(KelTrackSelectionFactoryKmlFile), sizeof(void *));
}

QTEST_GUILESS_MAIN(tst_KelTrackSelectionFactory)
#include "tst_KelTrackSelectionFactory.moc"

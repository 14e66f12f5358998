// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGeoLocationSettings.h>
#include <KelTemporarySettings.h>
#include <KelTrackSelectionFactoryGPXFile.h>

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

class tst_KelTrackSelectionFactoryGPXFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void supportedFileFormats();
    void supportsFile_data();
    void supportsFile();
    void supportsLocalUrlsOnly();
    void readsTracksThenRoutes();
    void takesTheDefaultConfigurationAfresh();
    void readsTheFileAnew();
    void urlAndFileGiveTheSame();
    void nothingToRead_data();
    void nothingToRead();
    void noReasonWhenThereAreTracks();
    void urlFormsCallTheVirtualFileForms();

private:
    QString write(const QString &name, const QByteArray &content);

    KelTemporarySettings m_settings;
    QTemporaryDir m_folder;
    const KelTrackSelectionFactoryGPXFile m_factory{};
};

void tst_KelTrackSelectionFactoryGPXFile::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QString tst_KelTrackSelectionFactoryGPXFile::write(const QString &name, const QByteArray &content)
{
    const QString path = m_folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
        qFatal("the test's file cannot be written");
    return path;
}

void tst_KelTrackSelectionFactoryGPXFile::supportedFileFormats()
{
    QCOMPARE(m_factory.supportedFileFormats(), QStringList({"*.gpx"}));
}

void tst_KelTrackSelectionFactoryGPXFile::supportsFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("supported");

    QTest::newRow("small letters") << "/somewhere/track.gpx" << true;
    QTest::newRow("TRACK.GPX") << "/somewhere/TRACK.GPX" << true;
    QTest::newRow("mixed letters") << "track.Gpx" << true;
    QTest::newRow("several dots") << "track.2024.gpx" << true;
    QTest::newRow("track.gpx.bak") << "track.gpx.bak" << false;
    QTest::newRow("no suffix") << "gpx" << false;
    QTest::newRow("only a suffix") << ".gpx" << true;
    QTest::newRow("kml") << "track.kml" << false;
    QTest::newRow("longer suffix") << "track.gpxx" << false;
    QTest::newRow("nothing") << "" << false;
}

void tst_KelTrackSelectionFactoryGPXFile::supportsFile()
{
    QFETCH(QString, path);
    QTEST(m_factory.supportsFile(QFileInfo(path)), "supported");
}

void tst_KelTrackSelectionFactoryGPXFile::supportsLocalUrlsOnly()
{
    QVERIFY(m_factory.supportsFile(QUrl(QStringLiteral("file:///somewhere/track.gpx"))));
    QVERIFY(m_factory.supportsFile(QUrl::fromLocalFile(QStringLiteral("/some where/100%/TRACK.GPX"))));
    QVERIFY(!m_factory.supportsFile(QUrl(QStringLiteral("https://example.org/track.gpx"))));
    QVERIFY(!m_factory.supportsFile(QUrl(QStringLiteral("file:///somewhere/track.gpx.bak"))));
    QVERIFY(!m_factory.supportsFile(QUrl()));
}

void tst_KelTrackSelectionFactoryGPXFile::readsTracksThenRoutes()
{
    const QString path = write(QStringLiteral("walk.gpx"), R"(<gpx xmlns:gpxx="x"><wpt lat="1" lon="2"/>
        <rte><rtept lat="1" lon="1"><extensions><gpxx:RoutePointExtension><gpxx:rpt lat="40" lon="4"/><gpxx:rpt
        lat="41" lon="4"/></gpxx:RoutePointExtension></extensions></rtept></rte>
        <trk><name>named</name><trkseg><trkpt lat="50" lon="8"/><trkpt lat="51" lon="8"/></trkseg></trk>
        <trk><name>without points</name></trk>
        <trk><trkseg><trkpt lat="52" lon="8"/></trkseg></trk></gpx>)");
    const KelGPXConfiguredTrackList list = m_factory.createConfiguredTrackList(QFileInfo(path));

    QCOMPARE(list.count(), 3);
    QCOMPARE(list.at(0).name(), QStringLiteral("named"));
    QCOMPARE(list.at(1).name(), QStringLiteral("walk 3"));
    QCOMPARE(list.at(2).name(), QStringLiteral("walk 4"));
    QCOMPARE(list.at(0).firstPoint(), KelGeoPosition(50.0, 8.0));
    QCOMPARE(list.at(2).firstPoint(), KelGeoPosition(40.0, 4.0));
    // Each shape is settled by its track.
    QCOMPARE(list.at(0).configuration().trackShape().toInt(), 4);
    QCOMPARE(list.at(1).configuration().trackShape().toInt(), 1);
}

void tst_KelTrackSelectionFactoryGPXFile::takesTheDefaultConfigurationAfresh()
{
    const QString path =
        write(QStringLiteral("walk.gpx"), "<gpx><trk><trkseg><trkpt lat='50' lon='8'/></trkseg></trk></gpx>");
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    KelGPXTrackConfiguration users = KelGPXTrackConfiguration::defaultValue();
    for (const double width : {3.0, 4.0}) {
        users.setLineWidth(width);
        settings.setDefaultTrackConfiguration(users);
        const KelGPXConfiguredTrackList list = m_factory.createConfiguredTrackList(QFileInfo(path));
        QCOMPARE(list.count(), 1);
        QCOMPARE(list.at(0).lineWidth().value(), width);
    }
    settings.setDefaultTrackConfiguration(KelGPXTrackConfiguration::defaultValue());
}

void tst_KelTrackSelectionFactoryGPXFile::readsTheFileAnew()
{
    const QByteArray track = R"(<gpx><trk><name>%1</name><trkseg><trkpt lat="50" lon="8"/></trkseg></trk></gpx>)";
    const QString path = write(QStringLiteral("anew.gpx"), QByteArray(track).replace("%1", "first"));
    QCOMPARE(m_factory.createConfiguredTrackList(QFileInfo(path)).at(0).name(), QStringLiteral("first"));
    write(QStringLiteral("anew.gpx"), QByteArray(track).replace("%1", "second"));
    QCOMPARE(m_factory.createConfiguredTrackList(QFileInfo(path)).at(0).name(), QStringLiteral("second"));
}

void tst_KelTrackSelectionFactoryGPXFile::urlAndFileGiveTheSame()
{
    const QString path = write(QStringLiteral("100% sure #1.gpx"),
                               R"(<gpx><trk><trkseg><trkpt lat="50" lon="8"/></trkseg></trk></gpx>)");
    const KelGPXConfiguredTrackList list = m_factory.createConfiguredTrackList(QUrl::fromLocalFile(path));
    QCOMPARE(list.count(), 1);
    QVERIFY(list.tracks() == m_factory.createConfiguredTrackList(QFileInfo(path)).tracks());
    QVERIFY(list.tracks() == m_factory.createConfiguredTrackList(QUrl::fromLocalFile(path), nullptr).tracks());
}

void tst_KelTrackSelectionFactoryGPXFile::nothingToRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason"); // a part of it
    QTest::addColumn<qint64>("line");

    QTest::newRow("only waypoints") << QByteArray("<gpx><wpt lat='1' lon='2'/></gpx>")
                                    << "the file has only waypoints, no tracks and no routes" << qint64(-1);
    QTest::newRow("only plain route points")
        << QByteArray("<gpx><wpt lat='1' lon='2'/><rte><rtept lat='1' lon='2'/></rte></gpx>")
        << "only routes of plain route points" << qint64(-1);
    QTest::newRow("a track without points") << QByteArray("<gpx><trk><trkseg/></trk></gpx>")
                                            << "no track of the file has points" << qint64(-1);
    QTest::newRow("a track and a route without points") << QByteArray("<gpx><trk/><rte/></gpx>")
                                                        << "no track or route of the file has points" << qint64(-1);
    QTest::newRow("an empty document") << QByteArray("<gpx/>") << "the file has no tracks and no routes" << qint64(-1);
    QTest::newRow("another kind of document")
        << QByteArray("<html><body/></html>") << "the file is no GPX: its root element is \"html\"" << qint64(-1);
    QTest::newRow("malformed in the third line")
        << QByteArray("<gpx>\n<trk><trkseg><trkpt lat='1' lon='2'/></trkseg>\n</gpx>") << "" << qint64(3);
    QTest::newRow("cut short")
        << QByteArray("<gpx>\n<trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk>\n") << "" << qint64(3);
    QTest::newRow("not XML") << QByteArray("walk") << "" << qint64(1);
    QTest::newRow("empty file") << QByteArray() << "" << qint64(1);
}

void tst_KelTrackSelectionFactoryGPXFile::nothingToRead()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QFETCH(qint64, line);
    const QString path = write(QStringLiteral("nothing.gpx"), content);
    KelErrorHistory errors;

    QVERIFY(!m_factory.createConfiguredTrackList(QFileInfo(path), &errors).isValid());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().fileName, path);
    QCOMPARE(errors.last().line, line);
    QCOMPARE(errors.last().column >= 0, line > 0);
    QVERIFY(!errors.last().message.isEmpty());
    QVERIFY2(errors.last().message.contains(reason), qPrintable(errors.last().message));

    QVERIFY(!m_factory.createConfiguredTrackList(QFileInfo(path)).isValid());
    QVERIFY(!m_factory.createConfiguredTrackList(QFileInfo(path), nullptr).isValid());

    KelErrorHistory missing;
    QVERIFY(!m_factory.createConfiguredTrackList(QFileInfo(m_folder.filePath("missing.gpx")), &missing).isValid());
    QCOMPARE(missing.entries().size(), 1);
    QCOMPARE(missing.last().fileName, m_folder.filePath("missing.gpx"));
    QVERIFY(!missing.last().message.isEmpty());
}

void tst_KelTrackSelectionFactoryGPXFile::noReasonWhenThereAreTracks()
{
    const QString path =
        write(QStringLiteral("fine.gpx"),
              "<gpx><wpt lat='1' lon='2'/><trk/><trk><trkseg><trkpt lat='1' lon='2'/></trkseg></trk></gpx>");
    KelErrorHistory errors;
    QCOMPARE(m_factory.createConfiguredTrackList(QFileInfo(path), &errors).count(), 1);
    QVERIFY(errors.isEmpty());
}

void tst_KelTrackSelectionFactoryGPXFile::urlFormsCallTheVirtualFileForms()
{
    class Everything : public KelTrackSelectionFactoryGPXFile
    {
    public:
        using KelTrackSelectionFactoryGPXFile::createConfiguredTrackList;
        using KelTrackSelectionFactoryGPXFile::supportsFile;
        bool supportsFile(const QFileInfo &file) const override { return file.filePath() == QLatin1String("/a/b.c"); }
        KelGPXConfiguredTrackList createConfiguredTrackList(const QFileInfo &file) const override
        {
            QList<KelGPXConfiguredTrack> one{KelGPXConfiguredTrack()};
            one[0].setTrack(KelGPXTrack(file.filePath(), QString(), {}, KelGPXTrackShape(TrackShapePoint)));
            return KelGPXConfiguredTrackList(one);
        }
    };
    const Everything factory;
    const QUrl url(QStringLiteral("file:///a/b.c"));
    QVERIFY(factory.supportsFile(url));
    QVERIFY(!factory.supportsFile(QUrl(QStringLiteral("file:///a/b.gpx"))));
    QCOMPARE(factory.createConfiguredTrackList(url).at(0).name(), QStringLiteral("/a/b.c"));
    // … and so through the interface.
    const KelTrackSelectionFactoryAbstract &abstract = factory;
    QVERIFY(abstract.supportsFile(url));
    QCOMPARE(abstract.createConfiguredTrackList(url).at(0).name(), QStringLiteral("/a/b.c"));
}

QTEST_GUILESS_MAIN(tst_KelTrackSelectionFactoryGPXFile)
#include "tst_KelTrackSelectionFactoryGPXFile.moc"

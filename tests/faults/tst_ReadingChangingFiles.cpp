// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFaultTestSupport.h"
#include "KelSystemFaults.h"

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelTestArchive.h>
#include <KelTrackSelectionFactory.h>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QUrl>
#include <QtTest>

#include <cerrno>

using namespace KelFaultTestSupport;

/// Track files that another program changes at every single read of them: what is read is the whole former track, or
/// nothing with a reason; where one version of the file is written over the other, every point is that of one of them.
class tst_ReadingChangingFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void changesAtEveryRead_data();
    void changesAtEveryRead();
    void cleanupTestCase();

private:
    int m_faults = 0;
};

namespace
{

using Change = std::function<void(const QString &path)>;
using Content = std::function<QByteArray(int latitude)>;

constexpr int POINTS = 2000;

/// So that a file takes several reads without costing time.
QByteArray filler()
{
    return "<desc>" + QByteArray(250000, 'x') + "</desc>";
}

QByteArray gpx(int latitude, const QByteArray &between)
{
    QByteArray text = "<gpx><trk><name>A</name>" + filler() + "<trkseg>";
    for (int i = 0; i < POINTS; ++i)
        text += "<trkpt lat=\"" + QByteArray::number(latitude) + "\" lon=\"" + QByteArray::number(100 + i % 70) + "\"/>";
    return text + "</trkseg>" + between + "</trk></gpx>";
}

QByteArray plainGpx(int latitude)
{
    return gpx(latitude, QByteArray());
}

/// Read twice: the fast reader has its doubts only at the end.
QByteArray generalGpx(int latitude)
{
    return gpx(latitude, "<cmt><![CDATA[at the end]]></cmt>");
}

QByteArray kml(int latitude)
{
    QByteArray text = "<kml><Document>" + filler() + "<Placemark><name>A</name><LineString><coordinates>";
    for (int i = 0; i < POINTS; ++i)
        text += QByteArray::number(100 + i % 70) + ',' + QByteArray::number(latitude) + ' ';
    return text + "</coordinates></LineString></Placemark></Document></kml>";
}

QByteArray archive(int latitude, bool deflated)
{
    KelTestArchive::Entry entry;
    entry.name = "doc.kml";
    entry.content = kml(latitude);
    entry.deflated = deflated;
    return KelTestArchive::build({entry});
}

Change cutTo(double part)
{
    return [part](const QString &path) { QFile::resize(path, qint64(double(QFileInfo(path).size()) * part)); };
}

void overwrite(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || file.write(bytes) != bytes.size())
        qFatal("the test's own file %s could not be changed", qPrintable(path));
}

void appendGarbage(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(QByteArray(100000, '<')) < 0)
        qFatal("the test's own file %s could not be changed", qPrintable(path));
}

} // namespace

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(Content)

void tst_ReadingChangingFiles::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("kel.*.info=false"));
}

void tst_ReadingChangingFiles::changesAtEveryRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Content>("content");
    QTest::addColumn<Change>("change"); // none: the read fails
    QTest::addColumn<bool>("staysWhole");

    const QList<std::tuple<const char *, const char *, Content>> files{
        {"plain GPX", "a.gpx", plainGpx},
        {"GPX of the general form", "a.gpx", generalGpx},
        {"KML", "a.kml", kml},
        {"KMZ, packed", "a.kmz", [](int latitude) { return archive(latitude, true); }},
        {"KMZ, not packed", "a.kmz", [](int latitude) { return archive(latitude, false); }}};
    for (const auto &[title, name, content] : files) {
        const auto row = [&, title = title, name = name, content = content](const char *what, const Change &change,
                                                                            bool staysWhole) {
            QTest::addRow("%s, %s", title, what) << QString::fromLatin1(name) << content << change << staysWhole;
        };
        row("read error", nullptr, false);
        row("emptied", cutTo(0), false);
        row("cut to a third", cutTo(0.33), false);
        row("cut by little", cutTo(0.999), false);
        row(
            "overwritten with zeros",
            [](const QString &path) { overwrite(path, QByteArray(QFileInfo(path).size(), '\0')); }, false);
        row(
            "overwritten with another version",
            [content](const QString &path) { overwrite(path, content(2)); }, false);
        row("grows", appendGarbage, false);
        row(
            "replaced",
            [content](const QString &path) {
                write(path + ".new", content(2));
                std::rename(QFile::encodeName(path + ".new").constData(), QFile::encodeName(path).constData());
            },
            true);
        row(
            "removed", [](const QString &path) { QFile::remove(path); }, true);
    }
}

void tst_ReadingChangingFiles::changesAtEveryRead()
{
    QFETCH(QString, name);
    QFETCH(Content, content);
    QFETCH(Change, change);
    QFETCH(bool, staysWhole);

    const QTemporaryDir dir(temporaryTemplate());
    const QString path = dir.filePath(name);
    const QByteArray former = content(1);
    int survived = 0;
    for (int at = 1;; ++at) {
        QVERIFY2(at < 1000, "the work has no end");
        write(path, former);
        KelErrorHistory errors;
        KelGPXConfiguredTrackList tracks;
        bool struck = false;
        {
            const KelSystemFaults faults(change ? KelSystemFaults::Interfere : KelSystemFaults::Error,
                                         KelSystemFaults::Reads, at, EIO, [&](const char *) { change(path); });
            tracks = KelTrackSelectionFactory::instance().createConfiguredTrackList(QUrl::fromLocalFile(path), &errors);
            struck = faults.hasStruck();
        }
        const std::string where = ("at read " + QByteArray::number(at)).toStdString();
        if (!struck) {
            QVERIFY2(errors.isEmpty(), where.c_str());
            QCOMPARE(tracks.count(), 1);
            break;
        }
        ++survived;
        if (tracks.count() == 0) {
            QVERIFY2(!staysWhole, where.c_str());
            QVERIFY2(!errors.isEmpty() && !errors.last().message.isEmpty(), where.c_str());
            continue;
        }
        QVERIFY2(errors.isEmpty(), where.c_str());
        QCOMPARE(tracks.count(), 1);
        const KelGeoPositionList points = tracks.value(0).track().allPoints();
        QCOMPARE(points.size(), POINTS);
        for (int i = 0; i < POINTS; ++i) {
            QCOMPARE(points.at(i).longitude().decimalDegrees(), 100 + i % 70);
            const double latitude = points.at(i).latitude().decimalDegrees();
            QVERIFY2(latitude == 1.0 || (latitude == 2.0 && !staysWhole), where.c_str());
        }
    }
    QVERIFY(survived > 0);
    m_faults += survived;
}

void tst_ReadingChangingFiles::cleanupTestCase()
{
    qInfo("%d faults injected", m_faults);
}

QTEST_GUILESS_MAIN(tst_ReadingChangingFiles)
#include "tst_ReadingChangingFiles.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFaultTestSupport.h"
#include "KelSystemFaults.h"

#include <KelErrorHistory.h>
#include <KelGPXTrackFileRegistry.h>
#include <KelOutputFile.h>
#include <KelSelectionFile.h>
#include <KelXMLBuilder.h>

#include <QDomDocument>
#include <QtTest>

using namespace KelFaultTestSupport;

/// Links where a file is expected: they stay links, their targets are replaced as a whole, and no link that somebody
/// lays in the way of a temporary file is followed.
class tst_SavingOverLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void links_data();
    void links();
    void linksInTheWayOfTemporaryFiles_data();
    void linksInTheWayOfTemporaryFiles();
    void linksInAStoreAreNotTracks_data();
    void linksInAStoreAreNotTracks();
    void storeThatIsALink();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_dir->filePath(name); }
    void makeLinks() const;
    /// The folder, its files and where its links lead.
    [[nodiscard]] QStringList everything() const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace
{

/// Saves something there; the reason of a failure, empty on success.
using Save = std::function<QString(const QString &path)>;

QString saveDocument(const QString &path)
{
    QDomDocument document;
    KelXMLBuilder::buildRootElement(document, QStringLiteral("a"));
    KelErrorHistory errors;
    return KelXMLBuilder::saveUTF8(document, QFileInfo(path), &errors) ? QString() : errors.last().message;
}

QString savePicture(const QString &path)
{
    KelOutputFile file(path);
    return file.write("<a/>") ? QString() : file.error();
}

QString saveSelection(const QString &path)
{
    KelErrorHistory errors;
    const auto result = KelSelectionFile(path).save(selection("A"), errors);
    return result == KelSelectionFile::Result::Done ? QString() : errors.last().message;
}

const QList<std::pair<const char *, Save>> SAVINGS{
    {"document", saveDocument}, {"picture", savePicture}, {"selection", saveSelection}};

void link(const QString &to, const QString &path)
{
    if (!QFile::link(to, path))
        qFatal("the test's own link %s could not be made", qPrintable(path));
}

} // namespace

Q_DECLARE_METATYPE(Save)

void tst_SavingOverLinks::init()
{
    m_dir = std::make_unique<QTemporaryDir>(temporaryTemplate());
    QVERIFY(m_dir->isValid());
}

void tst_SavingOverLinks::makeLinks() const
{
    QVERIFY(QDir(m_dir->path()).mkdir("folder"));
    write(path("folder/file.xml"), "former");
    link("folder/file.xml", path("relative.xml"));
    link(path("folder/file.xml"), path("absolute.xml"));
    link("relative.xml", path("chain.xml"));
    link("folder/new.xml", path("dangling.xml"));
    link("dangling.xml", path("danglingChain.xml"));
    link("missing/new.xml", path("nowhere.xml"));
    link("loop2.xml", path("loop1.xml"));
    link("loop1.xml", path("loop2.xml"));
    link("self.xml", path("self.xml"));
    link("folder", path("folder.xml"));
}

QStringList tst_SavingOverLinks::everything() const
{
    QStringList result;
    for (const QString &name : filesIn(m_dir->path())) {
        const QFileInfo info(path(name));
        if (!name.endsWith(QLatin1String(".tracks")))
            result.append(name + QLatin1Char(' ') + (info.isSymLink() ? info.symLinkTarget() : QString()));
    }
    return result + filesIn(path("folder"));
}

void tst_SavingOverLinks::links_data()
{
    QTest::addColumn<Save>("save");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("written"); // empty: it cannot be saved
    for (const auto &[title, save] : SAVINGS) {
        const auto row = [&, title = title, save = save](const char *what, const char *name, const char *written) {
            QTest::addRow("%s, %s", title, what) << save << name << written;
        };
        row("relative link", "relative.xml", "folder/file.xml");
        row("absolute link", "absolute.xml", "folder/file.xml");
        row("link to a link", "chain.xml", "folder/file.xml");
        row("link to a file that is yet to be", "dangling.xml", "folder/new.xml");
        row("link to such a link", "danglingChain.xml", "folder/new.xml");
        row("link into a missing folder", "nowhere.xml", "");
        row("links in a circle", "loop1.xml", "");
        row("link to itself", "self.xml", "");
        row("link to a folder", "folder.xml", "");
    }
}

void tst_SavingOverLinks::links()
{
    QFETCH(Save, save);
    QFETCH(QString, name);
    QFETCH(QString, written);
    makeLinks();
    QStringList expected = everything();
    if (written == QLatin1String("folder/new.xml"))
        expected.append("new.xml");

    const QString reason = save(path(name));
    QCOMPARE(reason.isEmpty(), !written.isEmpty());
    QCOMPARE(everything(), expected);
    if (!written.isEmpty())
        QVERIFY(contentOf(path(written)).endsWith(">\n") || contentOf(path(written)) == "<a/>");
    if (written != QLatin1String("folder/file.xml"))
        QCOMPARE(contentOf(path("folder/file.xml")), QByteArray("former"));
}

void tst_SavingOverLinks::linksInTheWayOfTemporaryFiles_data()
{
    QTest::addColumn<Save>("save");
    for (const auto &[title, save] : SAVINGS)
        QTest::newRow(title) << save;
}

/// Somebody who could guess the names of temporary files would have them written through a link of his.
void tst_SavingOverLinks::linksInTheWayOfTemporaryFiles()
{
    QFETCH(Save, save);
    write(path("victim"), "victim");
    int calls = 0;
    for (int at = 1;; ++at) {
        QVERIFY2(at < 1000, "the work has no end");
        bool struck = false;
        QString reason;
        {
            const KelSystemFaults faults(KelSystemFaults::Interfere, KelSystemFaults::Writes, at, 0,
                                         [&](const char *name) {
                                             // Patterns are not names yet.
                                             const QString file = QFile::decodeName(name);
                                             if (file.contains("/.kel-") && !file.endsWith("XXXXXX")
                                                 && QFile::link(path("victim"), file))
                                                 ++calls;
                                         });
            reason = save(path("a.xml"));
            struck = faults.hasStruck();
        }
        QCOMPARE(contentOf(path("victim")), QByteArray("victim"));
        QCOMPARE(reason, QString());
        if (!struck)
            break;
        QVERIFY(!QFileInfo(path("a.xml")).isSymLink());
    }
    // Names that the system itself makes anew cannot be met in time.
    QVERIFY(calls > 0 || save.target<QString (*)(const QString &)>() == nullptr
            || *save.target<QString (*)(const QString &)>() == savePicture);
}

void tst_SavingOverLinks::linksInAStoreAreNotTracks_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("to another file") << "victim";
    QTest::newRow("to nothing") << "not there";
    QTest::newRow("to itself") << "store/track.gps";
}

void tst_SavingOverLinks::linksInAStoreAreNotTracks()
{
    QFETCH(QString, target);
    write(path("victim"), "victim");
    QVERIFY(QDir(m_dir->path()).mkdir("store"));
    link(path(target), path("store/track.gps"));
    const KelGPXTrackFileRegistryKey key(selection("A").value(0).track(), QDir(path("store")));
    QCOMPARE(KelGPXTrackFileRegistry::instance().createAssignedFile(key), "track_2.gps");
    QCOMPARE(contentOf(path("victim")), QByteArray("victim"));
    QVERIFY(!QFileInfo::exists(path("not there")));
    QVERIFY(contentOf(path("store/track_2.gps")).contains("<name>A</name>"));
    QVERIFY(QFileInfo(path("store/track.gps")).isSymLink());
}

void tst_SavingOverLinks::storeThatIsALink()
{
    QVERIFY(QDir(m_dir->path()).mkdir("elsewhere"));
    link("elsewhere", path("trip.tracks"));
    QCOMPARE(saveSelection(path("trip.xml")), QString());
    QVERIFY(QFileInfo(path("trip.tracks")).isSymLink());
    QCOMPARE(filesIn(path("elsewhere")), QStringList{"track.gps"});
    KelGPXTrackSelection read;
    KelErrorHistory errors;
    QCOMPARE(KelSelectionFile(path("trip.xml")).load(read, errors), KelSelectionFile::Result::Done);
    QVERIFY(read == selection("A"));
}

QTEST_GUILESS_MAIN(tst_SavingOverLinks)
#include "tst_SavingOverLinks.moc"

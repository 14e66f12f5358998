// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelTestArchive.h>
#include <KelZIP.h>

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using Entry = KelTestArchive::Entry;

class tst_KelZIP : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void readsEveryEntry_data();
    void readsEveryEntry();
    void namesFollowTheDirectory();
    void firstOfTwoEntriesOfTheSameName();
    void namesBeyondAscii();
    void archiveWithoutEntries();
    void largestEntry_data();
    void largestEntry();

    void unknownEntry();
    void reasonIsClearedBySuccess();
    void damagedEntry_data();
    void damagedEntry();
    void refusedArchive_data();
    void refusedArchive();
    void whatIsNoFile();
    void refusesMoreThanTenThousandEntries_data();
    void refusesMoreThanTenThousandEntries();
    void refusesBomb_data();
    void refusesBomb();
    void refusesWhatUnpacksToManyTimesItsSize_data();
    void refusesWhatUnpacksToManyTimesItsSize();
    void wrongNumbersInTheDirectory_data();
    void wrongNumbersInTheDirectory();
    void refusesEncryptedEntry();
    void refusesOverlap_data();
    void refusesOverlap();
    void truncationsNeverHarm();
    void flippedBytesNeverHarm();

    void closeReleasesTheArchive();
    void destructionClosesTheFile();
    void writesNothingToDisk();

private:
    QFileInfo archive(const QByteArray &bytes);
    QFileInfo archive(const QList<Entry> &entries) { return archive(KelTestArchive::build(entries)); }
    static int openFilesOfThisProcess();

    std::unique_ptr<QTemporaryDir> folder;
};

void tst_KelZIP::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

QFileInfo tst_KelZIP::archive(const QByteArray &bytes)
{
    const QString path = folder->filePath(QStringLiteral("archive.kmz"));
    if (!KelTestArchive::write(path, bytes))
        qFatal("the test's archive cannot be written");
    return QFileInfo(path);
}

int tst_KelZIP::openFilesOfThisProcess()
{
    return int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System).size());
}

void tst_KelZIP::readsEveryEntry_data()
{
    QTest::addColumn<bool>("deflated");
    QTest::addColumn<bool>("sizesBehindData");

    QTest::newRow("stored") << false << false;
    QTest::newRow("deflated") << true << false;
    QTest::newRow("stored, sizes behind the data") << false << true;
    QTest::newRow("deflated, sizes behind the data") << true << true;
}

void tst_KelZIP::readsEveryEntry()
{
    QFETCH(bool, deflated);
    QFETCH(bool, sizesBehindData);
    QByteArray large; // several read blocks
    for (int i = 0; i < 250000; ++i)
        large += QByteArray::number(i);

    const KelZIP zip(archive({{"doc.kml", "<kml/>", deflated, sizesBehindData},
                              {"files/", "", false, false},
                              {"files/empty.txt", "", deflated, sizesBehindData},
                              {"files/large.bin", large, deflated, sizesBehindData}}));

    QVERIFY2(zip.isOpen(), qPrintable(zip.errorString()));
    QCOMPARE(zip.errorString(), QString());
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray("<kml/>"));
    QVERIFY(zip.fileContent(QStringLiteral("files/large.bin")) == large);
    QCOMPARE(zip.fileContent(QStringLiteral("files/empty.txt")), QByteArray());
    QCOMPARE(zip.errorString(), QString());
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray("<kml/>")); // a second time
}

void tst_KelZIP::namesFollowTheDirectory()
{
    const KelZIP zip(archive({{"z.kml", "1"}, {"a.kml", "2"}, {"m/", ""}, {"m/../../b.kml", "3"}}));

    QCOMPARE(zip.getFileNameList(), QStringList({"z.kml", "a.kml", "m/", "m/../../b.kml"}));
    QCOMPARE(zip.fileContent(QStringLiteral("m/../../b.kml")), QByteArray("3"));
}

void tst_KelZIP::firstOfTwoEntriesOfTheSameName()
{
    const KelZIP zip(archive({{"doc.kml", "first"}, {"doc.kml", "second"}}));

    QCOMPARE(zip.getFileNameList(), QStringList({"doc.kml", "doc.kml"}));
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray("first"));
}

void tst_KelZIP::namesBeyondAscii()
{
    const QString name = QStringLiteral("Straße nach Łódź.kml");
    const KelZIP zip(archive({{name.toUtf8(), "x"}}));

    QCOMPARE(zip.getFileNameList(), QStringList({name}));
    QCOMPARE(zip.fileContent(name), QByteArray("x"));
}

void tst_KelZIP::archiveWithoutEntries()
{
    const KelZIP zip(archive(QList<Entry>()));

    QVERIFY2(zip.isOpen(), qPrintable(zip.errorString()));
    QCOMPARE(zip.getFileNameList(), QStringList());
}

void tst_KelZIP::largestEntry_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("reasonBegins");

    // The checksum is wrong, which shows only after the last byte: the size alone was no reason to stop.
    QTest::newRow("exactly as large as allowed") << qint64(268435456) << "the entry \"doc.kml\" is damaged: ";
    QTest::newRow("one byte more") << qint64(268435457) << "the entry \"doc.kml\" unpacks to more than 256 MiB";
}

void tst_KelZIP::largestEntry()
{
    QFETCH(qint64, size);
    QFETCH(QString, reasonBegins);
    const KelZIP zip(archive({{"doc.kml", "", true, false, false, KelTestArchive::deflatedZeros(size), size}}));

    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
    QVERIFY2(zip.errorString().startsWith(reasonBegins), qPrintable(zip.errorString()));
}

void tst_KelZIP::unknownEntry()
{
    const KelZIP zip(archive({{"doc.kml", "x"}}));

    QCOMPARE(zip.fileContent(QStringLiteral("DOC.KML")), QByteArray());
    QCOMPARE(zip.errorString(), QStringLiteral("the archive has no entry \"DOC.KML\""));
}

void tst_KelZIP::reasonIsClearedBySuccess()
{
    const KelZIP zip(archive({{"doc.kml", "x"}}));

    QCOMPARE(zip.fileContent(QStringLiteral("none")), QByteArray());
    QVERIFY(!zip.errorString().isEmpty());
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray("x"));
    QCOMPARE(zip.errorString(), QString());
}

void tst_KelZIP::damagedEntry_data()
{
    QTest::addColumn<Entry>("entry");

    Entry wrongChecksum{"doc.kml", "content"};
    wrongChecksum.wrongChecksum = true;
    QTest::newRow("checksum of another content") << wrongChecksum;
    QTest::newRow("not a deflate stream") << Entry{"doc.kml", "content", true, false, false, QByteArray(40, '\xff')};
    const QByteArray stream = KelTestArchive::deflatedZeros(100000);
    QTest::newRow("deflate stream cut short")
        << Entry{"doc.kml", "content", true, false, false, stream.left(stream.size() / 2), 100000};
}

void tst_KelZIP::damagedEntry()
{
    QFETCH(Entry, entry);
    const KelZIP zip(archive({entry, {"other.kml", "fine"}}));

    QVERIFY2(zip.isOpen(), qPrintable(zip.errorString()));
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
    QVERIFY2(zip.errorString().startsWith(QStringLiteral("the entry \"doc.kml\" is damaged")),
             qPrintable(zip.errorString()));
    QCOMPARE(zip.fileContent(QStringLiteral("other.kml")), QByteArray("fine"));
}

void tst_KelZIP::refusedArchive_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");

    const QByteArray whole = KelTestArchive::build({{"doc.kml", "<kml/>"}});
    const QString noArchive = QStringLiteral("not a zip archive, or its end is missing");
    QTest::newRow("empty file") << QByteArray("") << QStringLiteral("the file is empty");
    QTest::newRow("foreign text file") << QByteArray("<kml><Document/></kml>") << noArchive;
    QTest::newRow("foreign binary file") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16).repeated(100) << noArchive;
    QTest::newRow("only the beginning of an archive") << whole.left(20) << noArchive;
    QTest::newRow("archive without its last byte") << whole.chopped(1) << noArchive;
}

void tst_KelZIP::refusedArchive()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const KelZIP zip(archive(bytes));

    QVERIFY(!zip.isOpen());
    QCOMPARE(zip.errorString(), reason);
    QCOMPARE(zip.getFileNameList(), QStringList());
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
}

void tst_KelZIP::whatIsNoFile()
{
    const KelZIP missing(QFileInfo(folder->filePath(QStringLiteral("missing.kmz"))));
    QVERIFY(!missing.isOpen());
    QVERIFY(!missing.errorString().isEmpty());

    const KelZIP directory(QFileInfo(folder->path()));
    QVERIFY(!directory.isOpen());
    QCOMPARE(directory.errorString(), QStringLiteral("not a regular file"));

    const KelZIP device(QFileInfo(QStringLiteral("/dev/zero")));
    QVERIFY(!device.isOpen());
    QCOMPARE(device.errorString(), QStringLiteral("not a regular file"));

    const KelZIP nothing{QFileInfo()};
    QVERIFY(!nothing.isOpen());
    QCOMPARE(nothing.errorString(), QStringLiteral("no file name"));
}

void tst_KelZIP::refusesMoreThanTenThousandEntries_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("reason");

    QTest::newRow("just as many as accepted") << 10000 << QString();
    QTest::newRow("one too many")
        << 10001 << QStringLiteral("the archive has 10001 entries, more than the 10000 that are accepted");
}

void tst_KelZIP::refusesMoreThanTenThousandEntries()
{
    QFETCH(int, count);
    QFETCH(QString, reason);
    QList<Entry> entries;
    for (int i = 0; i < count; ++i)
        entries.append({QByteArray::number(i), "x"});
    const KelZIP zip(archive(entries));

    QCOMPARE(zip.errorString(), reason);
    QCOMPARE(zip.isOpen(), reason.isEmpty());
    QCOMPARE(zip.getFileNameList().size(), reason.isEmpty() ? count : 0);
}

void tst_KelZIP::refusesBomb_data()
{
    QTest::addColumn<qint64>("claimedSize");

    const qint64 size = qint64(300) * 1024 * 1024;
    QTest::newRow("archive admits the size") << size;
    QTest::newRow("archive claims a hundred bytes") << qint64(100);
}

void tst_KelZIP::refusesBomb()
{
    QFETCH(qint64, claimedSize);
    const QByteArray bomb = KelTestArchive::deflatedZeros(qint64(300) * 1024 * 1024);
    QVERIFY(bomb.size() < 2 * 1024 * 1024);
    const KelZIP zip(archive({{"doc.kml", "", true, false, false, bomb, claimedSize}, {"other.kml", "fine"}}));

    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
    QCOMPARE(zip.errorString(), QStringLiteral("the entry \"doc.kml\" unpacks to more than 256 MiB"));
    QCOMPARE(zip.fileContent(QStringLiteral("other.kml")), QByteArray("fine"));
}

void tst_KelZIP::refusesWhatUnpacksToManyTimesItsSize_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<int>("packed");
    QTest::addColumn<qint64>("claimedSize");
    QTest::addColumn<qint64>("extraPackedSize");
    QTest::addColumn<bool>("readable");

    QTest::newRow("200 times") << qint64(2000000) << 10000 << qint64(2000000) << qint64(0) << true;
    QTest::newRow("one byte more, as the archive says") << qint64(2000001) << 10000 << qint64(2000001) << qint64(0) << false;
    QTest::newRow("one byte more, which the archive denies") << qint64(2000001) << 10000 << qint64(100) << qint64(0) << false;
    QTest::newRow("packed in one byte less") << qint64(2000000) << 9999 << qint64(2000000) << qint64(0) << false;
    QTest::newRow("a packed size beyond the end of the file") << qint64(10000000) << 12000 << qint64(10000000) << qint64(1000000) << false;
    QTest::newRow("1 MiB, however small it is packed") << qint64(1048576) << 1100 << qint64(1048576) << qint64(0) << true;
    QTest::newRow("1 MiB and a byte") << qint64(1048577) << 1100 << qint64(1048577) << qint64(0) << false;
}

void tst_KelZIP::refusesWhatUnpacksToManyTimesItsSize()
{
    QFETCH(qint64, size);
    QFETCH(int, packed);
    QFETCH(qint64, claimedSize);
    QFETCH(qint64, extraPackedSize);
    QFETCH(bool, readable);
    const QByteArray content(size, 'x');
    const QByteArray wrapped = qCompress(content, 9);
    const QByteArray stream = wrapped.mid(6, wrapped.size() - 10);
    QVERIFY(stream.size() <= packed);
    Entry entry{"doc.kml", content, true, false, false, stream + QByteArray(packed - stream.size(), '\0'), claimedSize};
    entry.extraPackedSize = extraPackedSize;
    const KelZIP zip(archive({entry}));

    QVERIFY(zip.fileContent(QStringLiteral("doc.kml")) == (readable ? content : QByteArray()));
    QCOMPARE(zip.errorString(), readable ? QString() : QStringLiteral("the entry \"doc.kml\" unpacks to more than 200 times its size"));
}

void tst_KelZIP::wrongNumbersInTheDirectory_data()
{
    QTest::addColumn<int>("at"); // in the entry's part of the directory
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QString>("reason");

    const QByteArray promised64(4, '\xff');
    const QString missing = QStringLiteral("the archive's directory is damaged: a size or an offset is missing");
    QTest::newRow("packed size") << 20 << promised64 << missing;
    QTest::newRow("size") << 24 << promised64 << missing;
    QTest::newRow("offset") << 42 << promised64 << missing;
    QTest::newRow("offset behind the end") << 42 << QByteArray("\xff\xff\xff\x7f")
                                           << "the entry \"doc.kml\" cannot be read: the archive ends before the place where it should be";
}

void tst_KelZIP::wrongNumbersInTheDirectory()
{
    QFETCH(int, at);
    QFETCH(QByteArray, number);
    QFETCH(QString, reason);
    QByteArray bytes = KelTestArchive::build({{"doc.kml", "<kml/>"}});
    bytes.replace(bytes.lastIndexOf("PK\x01\x02") + at, number.size(), number);
    const KelZIP zip(archive(bytes));

    if (zip.isOpen())
        QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
    QCOMPARE(zip.errorString(), reason);
}

void tst_KelZIP::refusesEncryptedEntry()
{
    const KelZIP zip(archive({{"doc.kml", "0123456789abcdef", false, false, true}, {"other.kml", "fine"}}));

    QVERIFY2(zip.isOpen(), qPrintable(zip.errorString()));
    QCOMPARE(zip.getFileNameList(), QStringList({"doc.kml", "other.kml"}));
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
    QCOMPARE(zip.errorString(), QStringLiteral("the entry \"doc.kml\" is encrypted"));
    QCOMPARE(zip.fileContent(QStringLiteral("other.kml")), QByteArray("fine"));
}

void tst_KelZIP::refusesOverlap_data()
{
    QTest::addColumn<QList<Entry>>("entries");
    QTest::addColumn<QString>("reason");

    Entry again{"b.kml", "the same data"};
    again.sharesDataOf = 0;
    Entry sameName{"a.kml", "the same data"};
    sameName.sharesDataOf = 0;
    const Entry plain{"a.kml", "the same data"};
    QTest::newRow("two names for the same bytes")
        << QList<Entry>{plain, again} << QStringLiteral("the entries \"a.kml\" and \"b.kml\" overlap");
    // The packed sizes add up to less than the file holds, so adding them up would not tell.
    QTest::newRow("the same entry listed twice beside a large one")
        << QList<Entry>{plain, {"x", QByteArray(5000, 'x')}, sameName}
        << QStringLiteral("the entries \"a.kml\" and \"a.kml\" overlap");

    // The quoted form: the first entry's data runs on over the second entry's header and data.
    Entry quoting{"a.kml", "ten bytes."};
    quoting.extraPackedSize = 40;
    QTest::newRow("data that runs into the next entry")
        << QList<Entry>{quoting, {"b.kml", QByteArray(100, 'b')}, {"c.kml", QByteArray(100, 'c')}}
        << QStringLiteral("the entries \"a.kml\" and \"b.kml\" overlap");

    // One byte is enough: the last of the first entry's data would be the first of the next one's header.
    Entry touching{"a.kml", "ten bytes."};
    touching.extraPackedSize = 1;
    for (const bool deflated : {false, true}) {
        touching.deflated = deflated;
        QTest::addRow("data that runs one byte into the next entry, %s", deflated ? "deflated" : "stored")
            << QList<Entry>{touching, {"b.kml", QByteArray(100, 'b')}}
            << QStringLiteral("the entries \"a.kml\" and \"b.kml\" overlap");
    }

    QTest::newRow("data that ends where the next entry begins")
        << QList<Entry>{{"a.kml", "ten bytes."}, {"b.kml", QByteArray(100, 'b')}} << QString();
}

void tst_KelZIP::refusesOverlap()
{
    QFETCH(QList<Entry>, entries);
    QFETCH(QString, reason);
    const KelZIP zip(archive(entries));

    QCOMPARE(zip.errorString(), reason);
    QCOMPARE(zip.isOpen(), reason.isEmpty());
    QCOMPARE(zip.fileContent(QStringLiteral("b.kml")).size(), reason.isEmpty() ? 100 : 0);
}

// Wherever a download broke off: no crash, and a reason instead of content.
void tst_KelZIP::truncationsNeverHarm()
{
    const QByteArray whole =
        KelTestArchive::build({{"doc.kml", QByteArray("content ").repeated(5), true, true}, {"b", "x"}});
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const KelZIP zip(archive(whole.left(size)));
        QVERIFY(!zip.isOpen());
        QVERIFY(!zip.errorString().isEmpty());
        QVERIFY(zip.fileContent(QStringLiteral("doc.kml")).isEmpty());
    }
}

// Whatever byte is wrong: no crash, and nothing but the true content comes out.
void tst_KelZIP::flippedBytesNeverHarm()
{
    const QByteArray content = QByteArray("content ").repeated(5);
    const QByteArray whole = KelTestArchive::build({{"doc.kml", content, true, true}, {"b", "x"}});
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray bytes = whole;
        bytes[at] = char(~bytes.at(at));
        const KelZIP zip(archive(bytes));
        const QByteArray got = zip.fileContent(QStringLiteral("doc.kml"));
        QVERIFY(got.isEmpty() || got == content);
        QVERIFY(!got.isEmpty() || !zip.errorString().isEmpty());
    }
}

void tst_KelZIP::closeReleasesTheArchive()
{
    const int before = openFilesOfThisProcess();
    QVERIFY(before > 0);
    KelZIP zip(archive({{"doc.kml", "x"}}));
    QCOMPARE(openFilesOfThisProcess(), before + 1);

    zip.close();
    QVERIFY(!zip.isOpen());
    QCOMPARE(openFilesOfThisProcess(), before);
    QCOMPARE(zip.getFileNameList(), QStringList());
    QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray());
    QCOMPARE(zip.errorString(), QStringLiteral("the archive is not open"));
    zip.close();
}

void tst_KelZIP::destructionClosesTheFile()
{
    const int before = openFilesOfThisProcess();
    {
        const KelZIP zip(archive({{"doc.kml", "x"}}));
        QVERIFY(zip.isOpen());
        QCOMPARE(openFilesOfThisProcess(), before + 1);
    }
    QCOMPARE(openFilesOfThisProcess(), before);
    {
        const KelZIP foreign(archive(QByteArray("no archive")));
        QVERIFY(!foreign.isOpen());
    }
    QCOMPARE(openFilesOfThisProcess(), before);
}

void tst_KelZIP::writesNothingToDisk()
{
    const QFileInfo file = archive({{"../escaped.kml", "x"}, {"doc.kml", "y", true}});
    const QStringList above = QDir(folder->filePath(QStringLiteral(".."))).entryList({QStringLiteral("escaped.kml")});
    {
        const KelZIP zip(file);
        QCOMPARE(zip.fileContent(QStringLiteral("../escaped.kml")), QByteArray("x"));
        QCOMPARE(zip.fileContent(QStringLiteral("doc.kml")), QByteArray("y"));
    }
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files), QStringList({"archive.kmz"}));
    QCOMPARE(QDir(folder->filePath(QStringLiteral(".."))).entryList({QStringLiteral("escaped.kml")}), above);
}

QTEST_GUILESS_MAIN(tst_KelZIP)
#include "tst_KelZIP.moc"

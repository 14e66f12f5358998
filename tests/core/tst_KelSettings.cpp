// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelSettings.h>

#include <KelFileSizeLimit.h>
#include <KelTemporarySettings.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QSettings>
#include <QtTest>

#include <sys/stat.h>

namespace
{

QStringList logged;

void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtWarningMsg && qstrcmp(context.category, "kel.settings") == 0)
        logged.append(text);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

} // namespace

class tst_KelSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void missingKeyGivesTheDefault();
    void missingKeyResetsAChangedItem();
    void savedValuesComeBack_data();
    void savedValuesComeBack();
    void textsComeBackUnchanged_data();
    void textsComeBackUnchanged();
    void unreadableIntegerGivesTheDefault();
    void boolFromText_data();
    void boolFromText();
    void isInTheApplicationsStoreUnderItsKey();
    void whatIsSavedIsOnDisk();
    void successIsSilent();
    void unwritableStoreIsTold();
    void fullDiskIsToldAndLosesNothing_data();
    void fullDiskIsToldAndLosesNothing();
    void fullDiskBeforeTheFirstSaveIsTold();
    void storeThatCannotBeReadIsSavedAnew();
    void storeThatIsNoFile_data();
    void storeThatIsNoFile();

private:
    KelTemporarySettings m_store;
};

void tst_KelSettings::init()
{
    m_store.clear();
}

void tst_KelSettings::missingKeyGivesTheDefault()
{
    const KelSettings settings;
    KelConfigItem<bool> flag(QStringLiteral("flag"), true);
    KelConfigItem<int> number(QStringLiteral("number"), 42);
    KelConfigItem<QString> text(QStringLiteral("text"), QStringLiteral("default"));
    settings.load(flag);
    settings.load(number);
    settings.load(text);
    QCOMPARE(flag.value(), true);
    QCOMPARE(number.value(), 42);
    QCOMPARE(text.value(), QStringLiteral("default"));
}

void tst_KelSettings::missingKeyResetsAChangedItem()
{
    KelConfigItem<int> number(QStringLiteral("number"), 42);
    number.setValue(1);
    KelSettings().load(number);
    QCOMPARE(number.value(), 42);
}

void tst_KelSettings::savedValuesComeBack_data()
{
    QTest::addColumn<bool>("flag");
    QTest::addColumn<int>("number");

    QTest::newRow("true and positive") << true << 2147483647;
    QTest::newRow("false and negative") << false << -5;
    QTest::newRow("zero is not missing") << false << 0;
}

void tst_KelSettings::savedValuesComeBack()
{
    QFETCH(bool, flag);
    QFETCH(int, number);
    KelConfigItem<bool> savedFlag(QStringLiteral("flag"), !flag);
    KelConfigItem<int> savedNumber(QStringLiteral("number"), 99);
    savedFlag.setValue(flag);
    savedNumber.setValue(number);
    QVERIFY(KelSettings().save(savedFlag));
    QVERIFY(KelSettings().save(savedNumber));

    KelConfigItem<bool> loadedFlag(QStringLiteral("flag"), !flag);
    KelConfigItem<int> loadedNumber(QStringLiteral("number"), 99);
    KelSettings().load(loadedFlag);
    KelSettings().load(loadedNumber);
    QCOMPARE(loadedFlag.value(), flag);
    QCOMPARE(loadedNumber.value(), number);
}

void tst_KelSettings::textsComeBackUnchanged_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty, not the default") << "";
    QTest::newRow("XML of several lines") << "<config a=\"1\">\n <color>#ff0000ff</color>\n</config>\n";
    QTest::newRow("separators of the file format") << "a, b; c=d % \\ [e]";
    QTest::newRow("begins like a special value") << "@Variant(1)";
    QTest::newRow("letters beyond ASCII") << QStringLiteral("Größe 東京 \U0001F600");
    QTest::newRow("blanks around") << " a ";
}

void tst_KelSettings::textsComeBackUnchanged()
{
    QFETCH(QString, text);
    KelConfigItem<QString> saved(QStringLiteral("text"), QStringLiteral("default"));
    saved.setValue(text);
    QVERIFY(KelSettings().save(saved));

    KelConfigItem<QString> loaded(QStringLiteral("text"), QStringLiteral("default"));
    KelSettings().load(loaded);
    QCOMPARE(loaded.value(), text);
}

void tst_KelSettings::unreadableIntegerGivesTheDefault()
{
    QSettings().setValue(QStringLiteral("number"), QStringLiteral("many"));
    KelConfigItem<int> number(QStringLiteral("number"), 42);
    KelSettings().load(number);
    QCOMPARE(number.value(), 42);
}

void tst_KelSettings::boolFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("flag");

    QTest::newRow("true") << "true" << true;
    QTest::newRow("false") << "false" << false;
    QTest::newRow("1") << "1" << true;
    QTest::newRow("0") << "0" << false;
}

void tst_KelSettings::boolFromText()
{
    QFETCH(QString, text);
    QFETCH(bool, flag);
    QSettings().setValue(QStringLiteral("flag"), text);
    KelConfigItem<bool> item(QStringLiteral("flag"), !flag);
    KelSettings().load(item);
    QCOMPARE(item.value(), flag);
}

void tst_KelSettings::isInTheApplicationsStoreUnderItsKey()
{
    KelConfigItem<bool> item(QStringLiteral("instantlyAddLocations"), true);
    item.setValue(false);
    KelSettings().save(item);
    QCOMPARE(QSettings().value(QStringLiteral("instantlyAddLocations")).toBool(), false);
    QCOMPARE(QSettings().allKeys(), QStringList{QStringLiteral("instantlyAddLocations")});
}

void tst_KelSettings::whatIsSavedIsOnDisk()
{
    KelConfigItem<QString> item(QStringLiteral("text"), QString());
    item.setValue(QStringLiteral("onDisk"));
    const KelSettings settings;
    QVERIFY(settings.save(item));
    // The object lives on, as that of an application does until it is killed.
    QVERIFY(contentOf(m_store.filePath()).contains("text=onDisk"));
    // Nothing else is left beside it.
    QCOMPARE(QFileInfo(m_store.filePath()).dir().entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void tst_KelSettings::successIsSilent()
{
    logged.clear();
    const QtMessageHandler before = qInstallMessageHandler(record);
    const bool isSaved = KelSettings().save(KelConfigItem<bool>(QStringLiteral("flag"), true));
    qInstallMessageHandler(before);
    QVERIFY(isSaved);
    QCOMPARE(logged, QStringList());
}

void tst_KelSettings::storeThatIsNoFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isPipe");   // or else a folder
    QTest::addColumn<bool>("isNative"); // or else of the other format

    QTest::newRow("pipe") << "libKelGeoLocation/tests.conf" << true << true;
    QTest::newRow("pipe of the organisation") << "libKelGeoLocation.conf" << true << true;
    QTest::newRow("folder") << "libKelGeoLocation/tests.conf" << false << true;
    QTest::newRow("pipe in another format") << "libKelGeoLocation/tests.ini" << true << false;
}

/// Whoever opened the pipe would wait for ever.
void tst_KelSettings::storeThatIsNoFile()
{
    QFETCH(QString, name);
    QFETCH(bool, isPipe);
    QFETCH(bool, isNative);
    const QString folder = QFileInfo(m_store.filePath()).dir().filePath(QStringLiteral(".."));
    const QString path = QDir::cleanPath(folder + '/' + name);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QSettings::setDefaultFormat(isNative ? QSettings::NativeFormat : QSettings::IniFormat);
    const QString before = KelSettings::unusableStore();
    QFile::remove(path);
    const bool isThere = isPipe ? ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0 : QDir().mkdir(path);

    logged.clear();
    const QtMessageHandler handler = qInstallMessageHandler(record);
    const QString unusable = KelSettings::unusableStore();
    KelConfigItem<int> item(QStringLiteral("number"), 42);
    item.setValue(7);
    KelSettings().load(item);
    const bool isSaved = KelSettings().save(item);
    qInstallMessageHandler(handler);
    const bool isGone = isPipe ? QFile::remove(path) : QDir().rmdir(path);
    QSettings::setDefaultFormat(QSettings::NativeFormat);

    QVERIFY(isThere && isGone);
    QCOMPARE(before, QString());
    QCOMPARE(QDir::cleanPath(unusable), path);
    QCOMPARE(item.value(), 42);
    QVERIFY(!isSaved);
    QCOMPARE(logged.size(), 2);
    QVERIFY2(logged.at(0).startsWith(QLatin1String("cannot load \"number\" from ")), qPrintable(logged.at(0)));
    QVERIFY2(logged.at(1).startsWith(QLatin1String("cannot save \"number\" in ")), qPrintable(logged.at(1)));
    QCOMPARE(KelSettings::unusableStore(), QString());
}

void tst_KelSettings::unwritableStoreIsTold()
{
    logged.clear();
    const QtMessageHandler handler = qInstallMessageHandler(record);
    const QString before = QFileInfo(m_store.filePath()).dir().filePath(QStringLiteral(".."));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    const QString file = QSettings().fileName();
    const bool isSaved = KelSettings().save(KelConfigItem<bool>(QStringLiteral("flag"), true));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QDir::cleanPath(before));
    qInstallMessageHandler(handler);

    QVERIFY(!isSaved);
    QCOMPARE(logged, QStringList{QStringLiteral("cannot save \"flag\" in ") + file});
}

void tst_KelSettings::fullDiskIsToldAndLosesNothing_data()
{
    QTest::addColumn<int>("room");

    QTest::newRow("no room at all") << 0;
    // What is cut off in the middle is the dangerous one: half a file would take the place of the whole one.
    QTest::newRow("room for a part of the store") << 300;
    QTest::newRow("room for the old store, not for the new one") << 560;
}

void tst_KelSettings::fullDiskIsToldAndLosesNothing()
{
    QFETCH(int, room);
    QSettings().setValue(QStringLiteral("hosts"), QString(500, QLatin1Char('a')));
    const QByteArray whole = contentOf(m_store.filePath());
    QVERIFY(whole.size() > 500 && whole.size() < 560);
    KelConfigItem<QString> item(QStringLiteral("text"), QString());
    item.setValue(QString(100, QLatin1Char('b')));
    logged.clear();

    const QtMessageHandler handler = qInstallMessageHandler(record);
    bool isSaved = true;
    {
        const KelFileSizeLimit limit(room);
        isSaved = KelSettings().save(item);
    }
    qInstallMessageHandler(handler);

    QVERIFY(!isSaved);
    QCOMPARE(logged.size(), 1);
    QVERIFY(logged.first().startsWith(QStringLiteral("cannot save \"text\" in ")));
    QCOMPARE(contentOf(m_store.filePath()), whole);

    // With room again it is saved.
    QVERIFY(KelSettings().save(item));
    QVERIFY(contentOf(m_store.filePath()).contains("text=bbb"));
}

void tst_KelSettings::fullDiskBeforeTheFirstSaveIsTold()
{
    // Not even the directory exists.
    QVERIFY(QFileInfo(m_store.filePath()).dir().removeRecursively());
    KelConfigItem<QString> item(QStringLiteral("text"), QString());
    item.setValue(QString(100, QLatin1Char('b')));
    logged.clear();

    const QtMessageHandler handler = qInstallMessageHandler(record);
    bool isSaved = true;
    {
        const KelFileSizeLimit limit(50);
        isSaved = KelSettings().save(item);
    }
    qInstallMessageHandler(handler);

    QVERIFY(!isSaved);
    QCOMPARE(logged.size(), 1);
    QVERIFY(!QFile::exists(m_store.filePath()));
    QVERIFY(KelSettings().save(item));
}

void tst_KelSettings::storeThatCannotBeReadIsSavedAnew()
{
    QFile file(m_store.filePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[General\nno setting\n");
    file.close();
    KelConfigItem<int> item(QStringLiteral("number"), 1);
    item.setValue(5);

    QVERIFY(KelSettings().save(item));

    QVERIFY(contentOf(m_store.filePath()).contains("number=5"));
}

QTEST_GUILESS_MAIN(tst_KelSettings)
#include "tst_KelSettings.moc"

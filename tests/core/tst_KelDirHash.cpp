// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelDirHash.h>

#include <QDir>
#include <QFile>
#include <QObject>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

class tst_KelDirHash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalDirectoriesHashAlike_data();
    void equalDirectoriesHashAlike();
    void linkedDirectoryIsTheSame();
    void workingDirectoryIsTheSameAsNone();
    void differentDirectoriesAreKeptApart();
    void seedCounts();
};

void tst_KelDirHash::equalDirectoriesHashAlike_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("otherPath");

    QTest::newRow("same text") << "/usr" << "/usr";
    QTest::newRow("trailing slash") << "/usr" << "/usr/";
    QTest::newRow("way round") << "/usr" << "/usr/../usr";
    QTest::newRow("relative to the working directory") << "." << QDir::currentPath();
    QTest::newRow("missing, same text") << "/no/such/place" << "/no/such/place";
    QTest::newRow("missing, relative") << "no-such-place" << QDir::currentPath() + "/no-such-place";
}

void tst_KelDirHash::equalDirectoriesHashAlike()
{
    QFETCH(QString, path);
    QFETCH(QString, otherPath);
    QVERIFY(QDir(path) == QDir(otherPath));
    QCOMPARE(qHash(QDir(path)), qHash(QDir(otherPath)));
    QCOMPARE(qHash(QDir(path), 17), qHash(QDir(otherPath), 17));
}

void tst_KelDirHash::linkedDirectoryIsTheSame()
{
    const QTemporaryDir base;
    QVERIFY(QDir(base.path()).mkdir("store"));
    QVERIFY(QFile::link(base.filePath("store"), base.filePath("link")));
    const QDir store(base.filePath("store"));
    const QDir link(base.filePath("link"));
    QVERIFY(store == link);
    QCOMPARE(qHash(store), qHash(link));
    const QSet<QDir> set{store};
    QVERIFY(set.contains(link));
}

void tst_KelDirHash::workingDirectoryIsTheSameAsNone()
{
    QVERIFY(QDir(QString()) == QDir(QDir::currentPath()));
    QCOMPARE(qHash(QDir(QString())), qHash(QDir(QDir::currentPath())));
}

void tst_KelDirHash::differentDirectoriesAreKeptApart()
{
    const QSet<QDir> set{QDir("/usr"), QDir("/etc"), QDir("/no/such/place")};
    QCOMPARE(set.size(), 3);
    QVERIFY(set.contains(QDir("/etc/")));
    QVERIFY(!set.contains(QDir("/tmp")));
    QVERIFY(qHash(QDir("/usr")) != qHash(QDir("/etc")));
}

void tst_KelDirHash::seedCounts()
{
    QVERIFY(qHash(QDir("/usr"), 1) != qHash(QDir("/usr"), 2));
}

QTEST_GUILESS_MAIN(tst_KelDirHash)
#include "tst_KelDirHash.moc"

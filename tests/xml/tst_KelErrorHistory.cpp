// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>

#include <QObject>
#include <QtTest>

class tst_KelErrorHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entryToString_data();
    void entryToString();
    void keepsEntriesInOrder();
    void emptyHistory();
};

void tst_KelErrorHistory::entryToString_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<qint64>("column");
    QTest::addColumn<QString>("text");

    QTest::newRow("all known") << "a/walk.gpx" << qint64(12) << qint64(4) << "a/walk.gpx:12:4: Bad.";
    QTest::newRow("no column") << "walk.gpx" << qint64(12) << qint64(-1) << "walk.gpx:12: Bad.";
    QTest::newRow("file only") << "walk.gpx" << qint64(-1) << qint64(-1) << "walk.gpx: Bad.";
    QTest::newRow("a column without a line says nothing") << "walk.gpx" << qint64(-1) << qint64(4) << "walk.gpx: Bad.";
    QTest::newRow("text without a file") << "" << qint64(1) << qint64(2) << "1:2: Bad.";
    QTest::newRow("message only") << "" << qint64(-1) << qint64(-1) << "Bad.";
}

void tst_KelErrorHistory::entryToString()
{
    QFETCH(QString, fileName);
    QFETCH(qint64, line);
    QFETCH(qint64, column);
    QTEST((KelErrorHistory::Entry{fileName, line, column, QStringLiteral("Bad.")}).toString(), "text");
}

void tst_KelErrorHistory::keepsEntriesInOrder()
{
    KelErrorHistory history;
    history.add({QStringLiteral("a"), 1, 2, QStringLiteral("first")});
    history.add({QStringLiteral("b"), 3, 4, QStringLiteral("second")});
    QVERIFY(!history.isEmpty());
    QCOMPARE(history.entries().size(), 2);
    QCOMPARE(history.entries().first().message, QStringLiteral("first"));
    QCOMPARE(history.last().fileName, QStringLiteral("b"));
    QCOMPARE(history.last().line, 3);
    QCOMPARE(history.last().column, 4);
    history.clear();
    QVERIFY(history.isEmpty());
}

void tst_KelErrorHistory::emptyHistory()
{
    const KelErrorHistory history;
    QVERIFY(history.isEmpty());
    QVERIFY(history.entries().isEmpty());
    QCOMPARE(history.last().line, -1);
    QCOMPARE(history.last().column, -1);
    QVERIFY(history.last().message.isEmpty());
}

QTEST_GUILESS_MAIN(tst_KelErrorHistory)
#include "tst_KelErrorHistory.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelFileHandler.h>

#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

class tst_KelFileHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readTextFile_data();
    void readTextFile();
    void unreadableFileGivesNoLines();

private:
    QTemporaryDir m_dir;
};

void tst_KelFileHandler::readTextFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("empty file") << QByteArray("") << QStringList();
    QTest::newRow("one line without end") << QByteArray("a") << QStringList{"a"};
    QTest::newRow("one line with end") << QByteArray("a\n") << QStringList{"a"};
    QTest::newRow("two lines") << QByteArray("a\nb\n") << QStringList{"a", "b"};
    QTest::newRow("Windows line ends") << QByteArray("a\r\nb\r\n") << QStringList{"a", "b"};
    QTest::newRow("carriage returns alone") << QByteArray("a\rb\r") << QStringList{"a", "b"};
    QTest::newRow("empty lines are lines") << QByteArray("a\n\nb\n\n") << QStringList{"a", "", "b", ""};
    QTest::newRow("one empty line") << QByteArray("\n") << QStringList{""};
    QTest::newRow("blanks are kept") << QByteArray(" a \n\tb") << QStringList{" a ", "\tb"};
    QTest::newRow("UTF-8") << QByteArray("Gr\xc3\xbc\xc3\x9f\x65") << QStringList{QStringLiteral("Grüße")};
    QTest::newRow("byte order mark is dropped") << QByteArray("\xef\xbb\xbfkml") << QStringList{"kml"};
    QTest::newRow("only a byte order mark") << QByteArray("\xef\xbb\xbf") << QStringList();
    QTest::newRow("byte order mark inside stays") << QByteArray("a\xef\xbb\xbf") << QStringList{QStringLiteral("a\ufeff")};
    QTest::newRow("no UTF-8") << QByteArray("a\xff") << QStringList{QStringLiteral("a\ufffd")};
}

void tst_KelFileHandler::readTextFile()
{
    QFETCH(QByteArray, bytes);
    QFile file(m_dir.filePath("text.kml"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    QTEST(KelFileHandler::readTextFile(QFileInfo(file.fileName())), "lines");

    QFETCH(QStringList, lines);
    const QString text = KelFileHandler::readText(QFileInfo(file.fileName()));
    QCOMPARE(text, lines.join(QLatin1Char('\n')));
    QCOMPARE(text.isNull(), lines.isEmpty());
}

void tst_KelFileHandler::unreadableFileGivesNoLines()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    QCOMPARE(KelFileHandler::readTextFile(QFileInfo(m_dir.filePath("missing"))), QStringList());
    QCOMPARE(KelFileHandler::readTextFile(QFileInfo(m_dir.path())), QStringList());
    QCOMPARE(KelFileHandler::readTextFile(QFileInfo()), QStringList());
    QVERIFY(KelFileHandler::readText(QFileInfo(m_dir.filePath("missing"))).isNull());
    QVERIFY(KelFileHandler::readText(QFileInfo(m_dir.path())).isNull());
    QVERIFY(KelFileHandler::readText(QFileInfo()).isNull());
}

QTEST_GUILESS_MAIN(tst_KelFileHandler)
#include "tst_KelFileHandler.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelFileHandler.h>

#include <KelTestSupport.h>

#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <thread>

class tst_KelFileHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readTextFile_data();
    void readTextFile();
    void longTextsAreReadAsOne_data();
    void longTextsAreReadAsOne();
    void randomBytesEqualTheWhole();
    void unreadableFileGivesNoLines();
    void reasons_data();
    void reasons();
    void reasonOfALongPipe();

private:
    QString readText(const QByteArray &bytes);

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

QString tst_KelFileHandler::readText(const QByteArray &bytes)
{
    QFile file(m_dir.filePath("long.txt"));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the test's file cannot be written");
    file.close();
    return KelFileHandler::readText(QFileInfo(file.fileName()));
}

namespace
{

/// What files are read in, and a little more than that.
constexpr qsizetype BLOCK = 128 * 1024;

/// The bytes at once, without a device.
QString plainText(const QByteArray &bytes)
{
    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(QChar(0xfeff)))
        text.remove(0, 1);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text;
}

} // namespace

void tst_KelFileHandler::longTextsAreReadAsOne_data()
{
    QTest::addColumn<QByteArray>("pattern");
    QTest::newRow("ASCII") << QByteArray("8.2146,53.14375\n");
    QTest::newRow("Windows line ends") << QByteArray("abcde\r\n");
    QTest::newRow("two bytes") << QByteArray("\xc3\xa4");
    QTest::newRow("two bytes, now and then") << QByteArray("a long way, \xc3\xa4 and more");
    QTest::newRow("three bytes") << QByteArray("\xe2\x82\xac");
    QTest::newRow("four bytes") << QByteArray("\xf0\x9f\x9a\xb2");
    QTest::newRow("byte order marks") << QByteArray("\xef\xbb\xbf");
    QTest::newRow("byte order marks behind characters") << QByteArray("a\xef\xbb\xbf");
    QTest::newRow("no UTF-8") << QByteArray("\xff\xf0\x9f");
    QTest::newRow("cut characters") << QByteArray("\xe2\x82"
                                                  "ab\xf0\x9f\x9a");
    QTest::newRow("null characters") << QByteArray("\0a", 2);
}

void tst_KelFileHandler::longTextsAreReadAsOne()
{
    QFETCH(QByteArray, pattern);
    for (qsizetype size = BLOCK - 9; size <= BLOCK + 9; ++size) {
        const QByteArray bytes = pattern.repeated(size / pattern.size() + 1).first(size);
        QVERIFY2(readText(bytes) == plainText(bytes), qPrintable(QString::number(size)));
    }
    const QByteArray many = pattern.repeated(5 * BLOCK / pattern.size());
    QVERIFY(readText(many) == plainText(many));
}

void tst_KelFileHandler::randomBytesEqualTheWhole()
{
    const QList<QByteArray> pieces{"a",    "\r",       "\n",           "\r\n",         "\xc3\xa4",       "\xe2\x82\xac",
                                   "\xff", "\xe2\x82", "\xf0\x9f\x9a", "\xef\xbb\xbf", "\xf0\x9f\x9a\xb2", "\xa4"};
    std::mt19937 random(KelTestSupport::randomSeed(3));
    for (int i = KelTestSupport::randomCases(300); i > 0; --i) {
        // What counts is where the first block ends.
        QByteArray bytes = QByteArray("7").repeated(BLOCK - qsizetype(random() % 40));
        for (int count = int(random() % 60); count > 0; --count)
            bytes += pieces.at(int(random() % uint(pieces.size())));
        QVERIFY2(readText(bytes) == plainText(bytes), bytes.sliced(BLOCK - 40).toPercentEncoding().constData());
    }
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

void tst_KelFileHandler::reasons_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("reason");

    const auto sized = [this](const QString &name, qint64 size) {
        QFile file(m_dir.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || !file.resize(size)) // without taking room on the disk
            qFatal("the test's file cannot be written");
        return file.fileName();
    };
    QTest::newRow("empty") << sized("empty.kml", 0) << "the file is empty";
    QTest::newRow("too large") << sized("large.kml", KelFileHandler::MAXIMUM_SIZE + 1)
                               << "the file is larger than the 2 GiB that are read";
    QTest::newRow("missing") << m_dir.filePath("missing.kml") << "No such file or directory";
    QTest::newRow("device of zeros") << "/dev/zero"
                                     << "it begins with zeros, which no text does";
    QTest::newRow("without a name") << QString() << "the file has no name";
}

void tst_KelFileHandler::reasons()
{
    QFETCH(QString, path);
    QString reason;
    QVERIFY(KelFileHandler::readText(QFileInfo(path), &reason).isNull());
    QTEST(reason, "reason");
}

void tst_KelFileHandler::reasonOfALongPipe()
{
    const QByteArray path = QFile::encodeName(m_dir.filePath("pipe.kml"));
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    qint64 written = 0;
    std::thread writer([&path, &written] {
        const int pipe = ::open(path.constData(), O_WRONLY);
        const QByteArray piece(1 << 20, 'x');
        for (qint64 count = 1; count > 0 && written <= KelFileHandler::MAXIMUM_PIPE_SIZE;)
            written += count = ::write(pipe, piece.constData(), std::size_t(piece.size()));
        ::close(pipe);
    });
    // The reader leaves before the end.
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    QString reason;
    const bool isNull = KelFileHandler::readText(QFileInfo(QFile::decodeName(path)), &reason).isNull();
    writer.join();
    std::signal(SIGPIPE, before);
    QVERIFY(isNull);
    QCOMPARE(reason, "it holds more than the 256 MiB that are read of a pipe or a device");
}

QTEST_GUILESS_MAIN(tst_KelFileHandler)
#include "tst_KelFileHandler.moc"

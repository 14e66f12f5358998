// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelXMLGate.h>
#include <KelXMLLoader.h>

#include <QDir>
#include <QDomDocument>
#include <QDomElement>
#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

class tst_KelXMLLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWellFormedXml_data();
    void readsWellFormedXml();
    void malformedXmlGivesNothing_data();
    void malformedXmlGivesNothing();
    void malformedTextLeavesNothingOfTheOldDocument();
    void oldDocumentSurvivesInOtherHandles();
    void textWithByteOrderMark();
    void namesKeepTheirPrefix();
    void depthIsLimited_data();
    void depthIsLimited();
    void fileEncodings_data();
    void fileEncodings();
    void elementOutlivesItsDocument();
    void documentOfAFile();
    void unreadableFileIsReported_data();
    void unreadableFileIsReported();
    void fileWithoutANameIsReportedQuietly();
    void malformedFileIsReportedWithItsPlace();
    void successReportsNothing();
    void aFileThatIsTooLargeIsNotRead();

private:
    QString writeFile(const QByteArray &bytes);

    QTemporaryDir m_dir;
};

QString tst_KelXMLLoader::writeFile(const QByteArray &bytes)
{
    QFile file(m_dir.filePath("file.xml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write the test's file");
    return file.fileName();
}

void tst_KelXMLLoader::readsWellFormedXml_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("root");

    QTest::newRow("one element") << "<gpx/>" << "gpx";
    QTest::newRow("with declaration") << "<?xml version='1.0'?><gpx/>" << "gpx";
    QTest::newRow("declared encoding of a text is of no account")
        << "<?xml version='1.0' encoding='ISO-8859-1'?><gpx/>" << "gpx";
    QTest::newRow("comments and blanks around") << "\n<!-- a -->\n<gpx/>\n<!-- b -->\n" << "gpx";
    QTest::newRow("document type") << "<!DOCTYPE gpx><gpx/>" << "gpx";
    QTest::newRow("undeclared prefixes") << "<x:gpx y:a='1'/>" << "x:gpx";
}

void tst_KelXMLLoader::readsWellFormedXml()
{
    QFETCH(QString, xml);
    QDomDocument document;
    KelErrorHistory history;
    QVERIFY(KelXMLLoader::setContent(document, xml, &history));
    QTEST(document.documentElement().tagName(), "root");
    QVERIFY(history.isEmpty());

    QDomDocument fromBytes;
    QVERIFY(KelXMLLoader::setContent(fromBytes, xml.toUtf8()));
    QTEST(fromBytes.documentElement().tagName(), "root");
}

void tst_KelXMLLoader::malformedXmlGivesNothing_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<qint64>("line");

    QTest::newRow("empty") << "" << qint64(1);
    QTest::newRow("no XML") << "track" << qint64(1);
    QTest::newRow("never closed") << "<gpx>\n<trk/>\n" << qint64(3);
    QTest::newRow("closed by another tag") << "<gpx>\n<trk></gpx>" << qint64(2);
    QTest::newRow("something after the end") << "<gpx>\n<trk/>\n</gpx>\n<gpx/>" << qint64(4);
    QTest::newRow("attribute twice") << "<gpx a='1' a='2'/>" << qint64(1);
    QTest::newRow("unknown entity") << "<gpx>&auml;</gpx>" << qint64(1);
    QTest::newRow("control character") << QStringLiteral("<gpx>\n\n\u0001</gpx>") << qint64(3);
}

void tst_KelXMLLoader::malformedXmlGivesNothing()
{
    QFETCH(QString, xml);
    QFETCH(qint64, line);
    for (const bool asBytes : {false, true}) {
        QDomDocument document;
        KelErrorHistory history;
        const bool isRead = asBytes ? KelXMLLoader::setContent(document, xml.toUtf8(), &history)
                                    : KelXMLLoader::setContent(document, xml, &history);
        QVERIFY(!isRead);
        QVERIFY(document.documentElement().isNull());
        QVERIFY(document.firstChild().isNull());
        QCOMPARE(history.entries().size(), 1);
        QCOMPARE(history.last().fileName, QString());
        QCOMPARE(history.last().line, line);
        QVERIFY(history.last().column >= 1);
        QVERIFY(!history.last().message.isEmpty());
        QVERIFY(!KelXMLLoader::setContent(document, xml));
    }
}

void tst_KelXMLLoader::malformedTextLeavesNothingOfTheOldDocument()
{
    QDomDocument document;
    QVERIFY(KelXMLLoader::setContent(document, QStringLiteral("<old/>")));
    QVERIFY(!KelXMLLoader::setContent(document, QStringLiteral("<new>")));
    QVERIFY(document.documentElement().isNull());
    QVERIFY(KelXMLLoader::setContent(document, QStringLiteral("<next/>")));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("next"));
}

void tst_KelXMLLoader::oldDocumentSurvivesInOtherHandles()
{
    QDomDocument document;
    QVERIFY(KelXMLLoader::setContent(document, QStringLiteral("<old/>")));
    const QDomDocument other = document;
    QVERIFY(KelXMLLoader::setContent(document, QStringLiteral("<new/>")));
    QCOMPARE(other.documentElement().tagName(), QStringLiteral("old"));
}

void tst_KelXMLLoader::textWithByteOrderMark()
{
    QDomDocument document;
    QVERIFY(KelXMLLoader::setContent(document, QStringLiteral("\ufeff<?xml version='1.0'?><kml/>")));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("kml"));
}

void tst_KelXMLLoader::namesKeepTheirPrefix()
{
    QDomDocument document;
    const QString xml = QStringLiteral("<gpx xmlns:gpxx='http://example.org/x'><gpxx:rpt gpxx:lat='1'/></gpx>");
    QVERIFY(KelXMLLoader::setContent(document, xml));
    const QDomElement child = document.documentElement().firstChildElement();
    QCOMPARE(child.tagName(), QStringLiteral("gpxx:rpt"));
    QCOMPARE(child.attribute(QStringLiteral("gpxx:lat")), QStringLiteral("1"));
}

void tst_KelXMLLoader::depthIsLimited_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("readable");

    const auto nested = [](int depth) {
        return QStringLiteral("<a>").repeated(depth) + QStringLiteral("</a>").repeated(depth);
    };
    QTest::newRow("as deep as allowed") << nested(256) << true;
    QTest::newRow("one level deeper") << nested(257) << false;
    QTest::newRow("far too deep") << nested(200000) << false;
    QTest::newRow("many elements beside one another") << "<a>" + QStringLiteral("<b/>").repeated(20000) + "</a>" << true;
}

void tst_KelXMLLoader::depthIsLimited()
{
    QFETCH(QString, text);
    QFETCH(bool, readable);
    KelErrorHistory errors;
    QDomDocument document;
    QCOMPARE(KelXMLLoader::setContent(document, text, &errors), readable);
    QCOMPARE(document.isNull(), !readable);
    QCOMPARE(KelXMLLoader::setContent(document, text.toUtf8(), &errors), readable);
    QCOMPARE(errors.entries().size(), readable ? 0 : 2);
    // Behind the tag that is one too many, three characters each.
    for (const KelErrorHistory::Entry &entry : errors.entries())
        QCOMPARE(entry.toString(), QStringLiteral("1:771: elements are nested more than 256 levels deep"));
}

void tst_KelXMLLoader::fileEncodings_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("UTF-8 by default") << QByteArray("<a>\xc3\xbc</a>");
    QTest::newRow("UTF-8 with byte order mark") << QByteArray("\xef\xbb\xbf<a>\xc3\xbc</a>");
    QTest::newRow("declared Latin 1") << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xfc</a>");
    QTest::newRow("UTF-16 with byte order mark")
        << QByteArray("\xff\xfe<\0a\0>\0\xfc\0<\0/\0a\0>\0", 2 + 8 + 8);
}

void tst_KelXMLLoader::fileEncodings()
{
    QFETCH(QByteArray, bytes);
    const QDomElement root = KelXMLLoader::loadDocumentElement(QFileInfo(writeFile(bytes)));
    QCOMPARE(root.text(), QStringLiteral("ü"));
}

void tst_KelXMLLoader::elementOutlivesItsDocument()
{
    const QString path = writeFile("<gpx v='1'><trk><name>Tour</name></trk><trk/></gpx>");
    // No document is kept here: the element alone keeps the tree below it.
    QDomElement root = KelXMLLoader::loadDocumentElement(QFileInfo(path));
    QCOMPARE(root.attribute(QStringLiteral("v")), QStringLiteral("1"));
    QCOMPARE(root.childNodes().count(), 2);
    QDomElement track = root.firstChildElement(QStringLiteral("trk"));
    QVERIFY(root.parentNode().isNull());
    QVERIFY(root.ownerDocument().isNull());
    QVERIFY(track.ownerDocument().isNull());
    QCOMPARE(track.parentNode().nodeName(), QStringLiteral("gpx"));
    QVERIFY(!track.nextSiblingElement(QStringLiteral("trk")).isNull());

    // The same for a part of it.
    root = QDomElement();
    QCOMPARE(track.firstChildElement(QStringLiteral("name")).text(), QStringLiteral("Tour"));
    QVERIFY(track.parentNode().isNull());
}

void tst_KelXMLLoader::documentOfAFile()
{
    const QDomDocument document = KelXMLLoader::loadDocument(QFileInfo(writeFile("<gpx/>")));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("gpx"));
    QVERIFY(document.documentElement().ownerDocument() == document);
}

void tst_KelXMLLoader::unreadableFileIsReported_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("missing") << "missing.gpx";
    QTest::newRow("in a missing directory") << "missing/walk.gpx";
    QTest::newRow("a directory") << ".";
    QTest::newRow("reading fails") << "/proc/self/mem"; // nothing is mapped at address 0
}

void tst_KelXMLLoader::unreadableFileIsReported()
{
    QFETCH(QString, name);
    const bool isOfTheSystem = QDir::isAbsolutePath(name);
    const QFileInfo file(isOfTheSystem ? name : m_dir.filePath(name));
    if (isOfTheSystem && !file.exists())
        QSKIP("no such file in this system");
    KelErrorHistory history;
    QVERIFY(KelXMLLoader::loadDocumentElement(file, &history).isNull());
    QCOMPARE(history.entries().size(), 1);
    QCOMPARE(history.last().fileName, file.filePath());
    QCOMPARE(history.last().line, -1);
    QCOMPARE(history.last().column, -1);
    QVERIFY(!history.last().message.isEmpty());
    QVERIFY(KelXMLLoader::loadDocumentElement(file).isNull());
}

void tst_KelXMLLoader::fileWithoutANameIsReportedQuietly()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    KelErrorHistory history;
    QVERIFY(KelXMLLoader::loadDocumentElement(QFileInfo(), &history).isNull());
    QCOMPARE(history.entries().size(), 1);
    QCOMPARE(history.last().toString(), QStringLiteral("no file name"));
}

void tst_KelXMLLoader::malformedFileIsReportedWithItsPlace()
{
    const QString path = writeFile("<gpx>\n <trk></wrong>\n</gpx>\n");
    KelErrorHistory history;
    QVERIFY(KelXMLLoader::loadDocumentElement(QFileInfo(path), &history).isNull());
    QCOMPARE(history.entries().size(), 1);
    QCOMPARE(history.last().fileName, path);
    QCOMPARE(history.last().line, 2);
    // The end tag begins in column 7, its name ends before column 14.
    QVERIFY(history.last().column >= 7 && history.last().column <= 14);
    QVERIFY(history.last().toString().startsWith(path + QStringLiteral(":2:")));
    QVERIFY(KelXMLLoader::loadDocument(QFileInfo(path)).isNull());
}

void tst_KelXMLLoader::successReportsNothing()
{
    KelErrorHistory history;
    QVERIFY(!KelXMLLoader::loadDocumentElement(QFileInfo(writeFile("<gpx/>")), &history).isNull());
    QVERIFY(history.isEmpty());
}

void tst_KelXMLLoader::aFileThatIsTooLargeIsNotRead()
{
    QFile file(writeFile("<gpx/>"));
    if (!file.resize(KelXMLGate::MAXIMUM_SIZE + 1)) // without taking room on the disk
        QSKIP("no file of this size here");
    KelErrorHistory errors;
    QVERIFY(KelXMLLoader::loadDocumentElement(QFileInfo(file.fileName()), &errors).isNull());
    QCOMPARE(errors.entries().size(), 1);
    QCOMPARE(errors.last().line, -1);
    QCOMPARE(errors.last().message, "the file is too large or has no end");
    file.remove();
}

QTEST_GUILESS_MAIN(tst_KelXMLLoader)
#include "tst_KelXMLLoader.moc"

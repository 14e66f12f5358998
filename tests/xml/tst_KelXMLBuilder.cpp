// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelXMLBuilder.h>
#include <KelXMLLoader.h>

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QtTest>

#include <KelFileSizeLimit.h>
#include <KelTestSupport.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

const char PrintDocument[] = "--print-document";

QDomDocument documentWithManyAttributes()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("config"));
    for (const char *name : {"smoothing", "color", "alpha", "z", "b", "smoothingSteps", "lat", "lon", "a"})
        root.setAttribute(QLatin1String(name), QLatin1String("1"));
    return document;
}

QDomDocument documentWithText(const QString &text)
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("a"));
    root.appendChild(document.createTextNode(text));
    return document;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

/// Gives up the superuser's rights, if the test has them, while the object lives.
class NotTheSuperuser
{
public:
    NotTheSuperuser()
        : m_isSuperuser(::geteuid() == 0)
    {
        constexpr uid_t nobody = 65534;
        if (m_isSuperuser)
            (void)!::setresuid(nobody, nobody, 0);
    }

    ~NotTheSuperuser()
    {
        if (m_isSuperuser)
            (void)!::setresuid(0, 0, 0);
    }

private:
    bool m_isSuperuser;
};

} // namespace

class tst_KelXMLBuilder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void buildElements();
    void buildInNullParent();
    void buildRoot();
    void buildDropsWhatXmlCannotHold();

    void toText_data();
    void toText();
    void attributesAreSorted();
    void outputIsTheSameInEveryProcess();
    void textsComeBack_data();
    void textsComeBack();
    void attributesComeBack_data();
    void attributesComeBack();
    void badCharactersAreDropped_data();
    void badCharactersAreDropped();
    void badCharactersAreDroppedEverywhere();
    void eachCodeUnitInALongText();
    void treesComeBack_data();
    void treesComeBack();
    void endMarksInsideAreTakenApart();
    void carriageReturnInCDataIsKept();
    void namespacesOfElementsAreDeclared();
    void partOfATree();
    void nullNodeIsEmpty();
    void deepTreeNeedsNoStack();

    void savesUtf8WithDeclaration();
    void savedDeclarationIsOurs();
    void savedDocumentComesBack();
    void savingReplacesTheWholeFile();
    void savingLeavesNothingElseBehind();
    void savingKeepsAccessRights_data();
    void savingKeepsAccessRights();
    void newFileHasTheRightsOfAnyNewFile();
    void savingFollowsLinks();
    void savingCreatesTheTargetOfADanglingLink();
    void savingWhereItCannot_data();
    void savingWhereItCannot();
    void savingNeedsNoHistory();
    void writeProtectedFileIsNotReplaced();
    void fullDiskLeavesTheOldFile();
    void fullDiskLeavesNoNewFile();
    void fullDeviceIsTold();
    void deviceIsWrittenTo();

private:
    QString path(const QString &name) const
    {
        return m_temporary->filePath(name);
    }

    std::unique_ptr<QTemporaryDir> m_temporary;
};

void tst_KelXMLBuilder::init()
{
    m_temporary = std::make_unique<QTemporaryDir>();
    QVERIFY(m_temporary->isValid());
}

void tst_KelXMLBuilder::buildElements()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("trk"));
    QDomElement empty = KelXMLBuilder::buildDomElement(root, QStringLiteral("trkseg"));
    KelXMLBuilder::buildDomElement(empty, QStringLiteral("compressedPoints"), QString());
    KelXMLBuilder::buildDomElement(root, QStringLiteral("name"), QStringLiteral("a & b"));
    KelXMLBuilder::buildDomElement(root, QStringLiteral("pensize"), -5);
    QCOMPARE(document.toString(-1),
             QStringLiteral("<trk><trkseg><compressedPoints/></trkseg><name>a &amp; b</name><pensize>-5</pensize></trk>"));
}

void tst_KelXMLBuilder::buildInNullParent()
{
    QDomNode null;
    QVERIFY(KelXMLBuilder::buildDomElement(null, QStringLiteral("a")).isNull());
    QVERIFY(KelXMLBuilder::buildDomElement(null, QStringLiteral("a"), QStringLiteral("text")).isNull());
    QVERIFY(KelXMLBuilder::buildDomElement(null, QStringLiteral("a"), 5).isNull());
}

void tst_KelXMLBuilder::buildRoot()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("includedTrack"));
    QCOMPARE(root.tagName(), QStringLiteral("includedTrack"));
    QVERIFY(document.documentElement() == root);

    KelXMLBuilder::buildRootElement(document, QStringLiteral("config"));
    QCOMPARE(document.toString(-1), QStringLiteral("<config/>"));
}

void tst_KelXMLBuilder::buildDropsWhatXmlCannotHold()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("trk"));
    const QDomElement name =
        KelXMLBuilder::buildDomElement(root, QStringLiteral("name"), QStringLiteral("a\u0001b\ufffe"));
    QCOMPARE(name.text(), QStringLiteral("ab"));
    const QDomElement nothing = KelXMLBuilder::buildDomElement(root, QStringLiteral("name"), QStringLiteral("\u0001"));
    QVERIFY(!nothing.hasChildNodes());
}

void tst_KelXMLBuilder::toText_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<int>("indent");
    QTest::addColumn<QString>("text");

    const QString tree = QStringLiteral("<a><b><c/></b><d>text</d></a>");
    QTest::newRow("indented by two") << tree << 2 << "<a>\n  <b>\n    <c/>\n  </b>\n  <d>text</d>\n</a>\n";
    QTest::newRow("lines without indent") << tree << 0 << "<a>\n<b>\n<c/>\n</b>\n<d>text</d>\n</a>\n";
    QTest::newRow("no lines") << tree << -1 << tree;
    QTest::newRow("elements beside text are not moved") << "<a>x<b><c/></b></a>" << 2 << "<a>x<b><c/></b></a>\n";
    QTest::newRow("elements beside CDATA are not moved")
        << "<a><![CDATA[x]]><b/></a>" << 2 << "<a><![CDATA[x]]><b/></a>\n";
    QTest::newRow("lines again after an element with text")
        << "<a><b>x<c/></b><d><e/></d></a>" << 1 << "<a>\n <b>x<c/></b>\n <d>\n  <e/>\n </d>\n</a>\n";
    QTest::newRow("comments and instructions")
        << "<?xml version='1.0'?><!-- a --><a><!--b--><?c d?></a>" << 1
        << "<?xml version='1.0'?>\n<!-- a -->\n<a>\n <!--b-->\n <?c d?>\n</a>\n";
    QTest::newRow("document type") << "<!DOCTYPE a><a/>" << 1 << "<!DOCTYPE a>\n<a/>\n";
    QTest::newRow("attributes") << "<a c='1' b='&lt;\"&amp;>'/>" << 1 << "<a b=\"&lt;&quot;&amp;&gt;\" c=\"1\"/>\n";
}

void tst_KelXMLBuilder::toText()
{
    QFETCH(QString, xml);
    QFETCH(int, indent);
    QTEST(KelXMLBuilder::toText(KelTestSupport::document(xml), indent), "text");
}

void tst_KelXMLBuilder::attributesAreSorted()
{
    QCOMPARE(KelXMLBuilder::toText(documentWithManyAttributes(), -1),
             QStringLiteral("<config a=\"1\" alpha=\"1\" b=\"1\" color=\"1\" lat=\"1\" lon=\"1\" smoothing=\"1\" "
                            "smoothingSteps=\"1\" z=\"1\"/>"));
}

void tst_KelXMLBuilder::outputIsTheSameInEveryProcess()
{
    const QByteArray here = KelXMLBuilder::toText(documentWithManyAttributes(), -1).toUtf8();
    for (int i = 0; i < 3; ++i) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_HASH_SEED"));
        if (i == 0)
            environment.insert(QStringLiteral("QT_HASH_SEED"), QStringLiteral("0"));
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {QLatin1String(PrintDocument)});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.readAllStandardOutput(), here);
    }
}

void tst_KelXMLBuilder::textsComeBack_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << "Tour";
    QTest::newRow("special characters") << "a < b > c & d \" ' ]]> &amp;";
    QTest::newRow("blanks around") << "  a  ";
    QTest::newRow("line ends and tabs") << "\na\n\tb\n";
    QTest::newRow("carriage returns") << "a\r\nb\rc";
    QTest::newRow("only blanks") << "   ";
    QTest::newRow("only line ends and tabs") << "\n\t\n";
    QTest::newRow("only no-break spaces") << QStringLiteral("\u00a0\u00a0");
    QTest::newRow("letters beyond ASCII") << QStringLiteral("Größe 東京");
    QTest::newRow("beyond the basic plane") << QStringLiteral("\U0001F600");
    QTest::newRow("delete and C1 characters are allowed") << QStringLiteral("a\u007fb\u0085c\u009f");
    QTest::newRow("line and paragraph separator") << QStringLiteral("a\u2028b\u2029c");
    QTest::newRow("looks like a reference") << "&#13;";
    QTest::newRow("special characters at both ends") << "&a>";
}

void tst_KelXMLBuilder::textsComeBack()
{
    QFETCH(QString, text);
    for (const int indent : {-1, 0, 2}) {
        QDomDocument read;
        QVERIFY(KelXMLLoader::setContent(read, KelXMLBuilder::toText(documentWithText(text), indent)));
        QCOMPARE(read.documentElement().text(), text);
    }
    // Beside other nodes too.
    QDomDocument document = documentWithText(text);
    document.documentElement().appendChild(document.createElement(QStringLiteral("b")));
    QDomDocument read;
    QVERIFY(KelXMLLoader::setContent(read, KelXMLBuilder::toText(document, 1)));
    QCOMPARE(read.documentElement().text(), text);
}

void tst_KelXMLBuilder::attributesComeBack_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("plain") << "Tour";
    QTest::newRow("empty") << "";
    QTest::newRow("special characters") << "a < b > c & d \" ' ]]>";
    QTest::newRow("blanks") << "  a  b ";
    QTest::newRow("line ends and tabs") << "\na\r\n\tb\r";
    QTest::newRow("letters beyond ASCII") << QStringLiteral("Größe 東京 \U0001F600");
}

void tst_KelXMLBuilder::attributesComeBack()
{
    QFETCH(QString, text);
    QDomDocument document = documentWithText(QStringLiteral("x"));
    document.documentElement().setAttribute(QStringLiteral("name"), text);
    QDomDocument read;
    QVERIFY(KelXMLLoader::setContent(read, KelXMLBuilder::toText(document, 1)));
    QCOMPARE(read.documentElement().attribute(QStringLiteral("name"), QStringLiteral("missing")), text);
}

void tst_KelXMLBuilder::badCharactersAreDropped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("kept");

    const QString high = QString(QChar(0xd83d));
    const QString low = QString(QChar(0xde00));
    QTest::newRow("null character") << QString("a") + QChar(0) + "b" << "ab";
    QTest::newRow("first control character") << QStringLiteral("a\u0001b") << "ab";
    QTest::newRow("before the tab") << QStringLiteral("a\u0008b") << "ab";
    QTest::newRow("between line feed and carriage return") << QStringLiteral("a\u000b\u000cb") << "ab";
    QTest::newRow("after the carriage return") << QStringLiteral("a\u000eb") << "ab";
    QTest::newRow("last control character") << QStringLiteral("a\u001fb") << "ab";
    QTest::newRow("first allowed after them") << QStringLiteral("a\u0020b") << "a b";
    QTest::newRow("lone high surrogate") << QString("a") + high + "b" << "ab";
    QTest::newRow("lone low surrogate") << QString("a") + low + "b" << "ab";
    QTest::newRow("two low surrogates") << QString("a") + low + low + "b" << "ab";
    QTest::newRow("surrogates the wrong way round") << QString("a") + low + high + "b" << "ab";
    QTest::newRow("high surrogate at the end") << QString("a") + high << "a";
    QTest::newRow("high surrogate before a pair") << high + high + low << high + low;
    QTest::newRow("last allowed of the basic plane") << QStringLiteral("a\ufffdb") << QStringLiteral("a\ufffdb");
    QTest::newRow("the two after it") << QStringLiteral("a\ufffe\uffffb") << "ab";
    QTest::newRow("nothing is left") << QStringLiteral("\u0001\u0002") << "";
    QTest::newRow("blanks are left") << QStringLiteral("\u0001 \u0002") << " ";
}

void tst_KelXMLBuilder::badCharactersAreDropped()
{
    QFETCH(QString, text);
    QFETCH(QString, kept);
    QDomDocument document = documentWithText(text);
    document.documentElement().setAttribute(QStringLiteral("name"), text);
    QDomDocument read;
    QVERIFY(KelXMLLoader::setContent(read, KelXMLBuilder::toText(document, 1)));
    QCOMPARE(read.documentElement().text(), kept);
    QCOMPARE(read.documentElement().attribute(QStringLiteral("name")), kept);

    // Long good runs before and behind are taken many characters at a time.
    QDomElement root = document.documentElement();
    for (int length = 1; length < 40; ++length) {
        const QString run(length, QLatin1Char('7'));
        QCOMPARE(KelXMLBuilder::buildDomElement(root, QStringLiteral("run"), run + text + run).text(),
                 run + kept + run);
    }
}

void tst_KelXMLBuilder::eachCodeUnitInALongText()
{
    const QString run(20, QLatin1Char('7'));
    QDomDocument document;
    for (int unit = 0; unit < 0x10000; ++unit) {
        const bool isAllowed = unit == '\t' || unit == '\n' || unit == '\r' || (unit >= 0x20 && unit < 0xd800)
            || (unit >= 0xe000 && unit < 0xfffe);
        QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("r"));
        const QString text = KelXMLBuilder::buildDomElement(root, QStringLiteral("t"), run + QChar(unit) + run).text();
        QVERIFY2(text == (isAllowed ? run + QChar(unit) + run : run + run), qPrintable(QString::number(unit, 16)));
    }
}

void tst_KelXMLBuilder::badCharactersAreDroppedEverywhere()
{
    const QString bad = QStringLiteral("a\u0001b");
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("r"));
    root.appendChild(document.createCDATASection(bad));
    root.appendChild(document.createComment(bad));
    root.appendChild(document.createProcessingInstruction(QStringLiteral("p"), bad));
    QCOMPARE(KelXMLBuilder::toText(document, -1), QStringLiteral("<r><![CDATA[ab]]><!--ab--><?p ab?></r>"));
}

void tst_KelXMLBuilder::treesComeBack_data()
{
    QTest::addColumn<QString>("xml");

    QTest::newRow("CDATA") << "<a><![CDATA[x < y]]></a>";
    QTest::newRow("CDATA of blanks") << "<a><![CDATA[  ]]></a>";
    QTest::newRow("CDATA between texts") << "<a>x<![CDATA[y]]>z</a>";
    QTest::newRow("comments and instructions") << "<!--a--><a><!--b--><?c d?></a><!--e--><?f?>";
    QTest::newRow("mixed") << "<a>x<b>y</b>z<c/><!--d-->e</a>";
    QTest::newRow("prefixes") << "<a xmlns:x='u'><x:b x:c='1'/></a>";
    QTest::newRow("document type with entities")
        << "<!DOCTYPE a PUBLIC 'p' 's' [<!ENTITY e 'text'>]><a>&e;</a>";
    QTest::newRow("document type of a file") << "<!DOCTYPE a SYSTEM 's'><a/>";
}

void tst_KelXMLBuilder::treesComeBack()
{
    QFETCH(QString, xml);
    const QDomDocument document = KelTestSupport::document(xml);
    for (const int indent : {-1, 0, 2}) {
        const QString text = KelXMLBuilder::toText(document, indent);
        QDomDocument read;
        QVERIFY2(KelXMLLoader::setContent(read, text), qPrintable(text));
        // Qt's own writer is the witness that both trees have the same nodes.
        QCOMPARE(read.toString(-1), document.toString(-1));
        QCOMPARE(KelXMLBuilder::toText(read, indent), text);
    }
}

void tst_KelXMLBuilder::endMarksInsideAreTakenApart()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("r"));
    root.appendChild(document.createCDATASection(QStringLiteral("a]]>b")));
    root.appendChild(document.createComment(QStringLiteral("a--->b-")));
    root.appendChild(document.createProcessingInstruction(QStringLiteral("p"), QStringLiteral("a?>b")));
    const QString text = KelXMLBuilder::toText(document, -1);
    QCOMPARE(text, QStringLiteral("<r><![CDATA[a]]]]><![CDATA[>b]]><!--a- - ->b- --><?p a? >b?></r>"));
    QDomDocument read;
    QVERIFY(KelXMLLoader::setContent(read, text));
    QCOMPARE(read.documentElement().text(), QStringLiteral("a]]>b"));
}

void tst_KelXMLBuilder::carriageReturnInCDataIsKept()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("r"));
    root.appendChild(document.createCDATASection(QStringLiteral("a\r<b")));
    QDomDocument read;
    QVERIFY(KelXMLLoader::setContent(read, KelXMLBuilder::toText(document, -1)));
    QCOMPARE(read.documentElement().text(), QStringLiteral("a\r<b"));
}

void tst_KelXMLBuilder::namespacesOfElementsAreDeclared()
{
    QDomDocument document;
    QDomElement root = document.createElementNS(QStringLiteral("urn:u"), QStringLiteral("gpx"));
    document.appendChild(root);
    root.appendChild(document.createElementNS(QStringLiteral("urn:u"), QStringLiteral("trk")));
    root.appendChild(document.createElementNS(QStringLiteral("urn:x"), QStringLiteral("x:rpt")));
    QCOMPARE(KelXMLBuilder::toText(document, -1),
             QStringLiteral("<gpx xmlns=\"urn:u\"><trk/><x:rpt xmlns:x=\"urn:x\"/></gpx>"));
}

void tst_KelXMLBuilder::partOfATree()
{
    const QDomDocument document = KelTestSupport::document(QStringLiteral("<a><b><c/></b></a>"));
    QCOMPARE(KelXMLBuilder::toText(document.documentElement().firstChild(), 1), QStringLiteral("<b>\n <c/>\n</b>\n"));
}

void tst_KelXMLBuilder::nullNodeIsEmpty()
{
    QCOMPARE(KelXMLBuilder::toText(QDomNode(), 1), QString());
    QCOMPARE(KelXMLBuilder::toText(QDomDocument(), 1), QString());
}

void tst_KelXMLBuilder::deepTreeNeedsNoStack()
{
    constexpr int depth = 10000;
    QDomDocument document;
    QDomElement innermost = KelXMLBuilder::buildRootElement(document, QStringLiteral("e"));
    for (int i = 1; i < depth; ++i)
        innermost = KelXMLBuilder::buildDomElement(innermost, QStringLiteral("e"));
    const QString text = KelXMLBuilder::toText(document, -1);
    QCOMPARE(text.count(QStringLiteral("<e>")), depth - 1);
    QCOMPARE(text.count(QStringLiteral("<e/>")), 1);
    QCOMPARE(text.count(QStringLiteral("</e>")), depth - 1);
}

void tst_KelXMLBuilder::savesUtf8WithDeclaration()
{
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, QStringLiteral("includedTrack"));
    KelXMLBuilder::buildDomElement(root, QStringLiteral("name"), QStringLiteral("Grüße"));
    KelErrorHistory history;
    QVERIFY(KelXMLBuilder::saveUTF8(document, QFileInfo(path("track.gps")), &history));
    QVERIFY(history.isEmpty());
    QCOMPARE(contentOf(path("track.gps")),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<includedTrack>\n <name>Gr\xc3\xbc\xc3\x9f\x65</name>\n</includedTrack>\n"));
}

void tst_KelXMLBuilder::savedDeclarationIsOurs()
{
    const QDomDocument document =
        KelTestSupport::document(QStringLiteral("<?xml version='1.0' encoding='ISO-8859-1'?><?style x?><a>ü</a>"));
    QVERIFY(KelXMLBuilder::saveUTF8(document, QFileInfo(path("a.xml")), nullptr));
    QCOMPARE(contentOf(path("a.xml")),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?style x?>\n<a>\xc3\xbc</a>\n"));
}

void tst_KelXMLBuilder::savedDocumentComesBack()
{
    const QDomDocument document =
        KelTestSupport::document(QStringLiteral("<a c='1' b='2'><d> x </d><e><![CDATA[ ]]></e><f/></a>"));
    QVERIFY(KelXMLBuilder::saveUTF8(document, QFileInfo(path("a.xml")), nullptr));
    const QDomElement root = KelXMLLoader::loadDocumentElement(QFileInfo(path("a.xml")));
    QCOMPARE(KelXMLBuilder::toText(root, -1),
             QStringLiteral("<a b=\"2\" c=\"1\"><d> x </d><e><![CDATA[ ]]></e><f/></a>"));
}

void tst_KelXMLBuilder::savingReplacesTheWholeFile()
{
    writeFile(path("a.xml"), QByteArray(100000, 'x'));
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("a.xml")), nullptr));
    QCOMPARE(contentOf(path("a.xml")), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n"));
}

void tst_KelXMLBuilder::savingLeavesNothingElseBehind()
{
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("a.xml")), nullptr));
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<b/>"), QFileInfo(path("a.xml")), nullptr));
    QCOMPARE(QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"a.xml"});
}

void tst_KelXMLBuilder::savingKeepsAccessRights_data()
{
    QTest::addColumn<int>("permissions");

    using QFileDevice::ReadGroup, QFileDevice::ReadOther, QFileDevice::ReadOwner, QFileDevice::WriteGroup,
        QFileDevice::WriteOwner;
    QTest::newRow("private") << int(ReadOwner | WriteOwner);
    QTest::newRow("readable by all") << int(ReadOwner | WriteOwner | ReadGroup | ReadOther);
    QTest::newRow("writable by the group") << int(ReadOwner | WriteOwner | ReadGroup | WriteGroup);
}

void tst_KelXMLBuilder::savingKeepsAccessRights()
{
    QFETCH(int, permissions);
    const auto mask = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup
        | QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;
    writeFile(path("a.xml"), "old");
    QVERIFY(QFile::setPermissions(path("a.xml"), QFileDevice::Permissions(permissions)));
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("a.xml")), nullptr));
    QCOMPARE(int(QFile::permissions(path("a.xml")) & mask), permissions);
}

void tst_KelXMLBuilder::newFileHasTheRightsOfAnyNewFile()
{
    writeFile(path("plain"), "x");
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("a.xml")), nullptr));
    QCOMPARE(QFile::permissions(path("a.xml")), QFile::permissions(path("plain")));
}

void tst_KelXMLBuilder::savingFollowsLinks()
{
    QVERIFY(QDir(m_temporary->path()).mkdir("real"));
    writeFile(path("real/a.xml"), "old");
    QVERIFY(QFile::link("real/a.xml", path("inner.xml")));
    QVERIFY(QFile::link(path("inner.xml"), path("outer.xml")));
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("outer.xml")), nullptr));
    QVERIFY(QFileInfo(path("outer.xml")).isSymLink());
    QVERIFY(QFileInfo(path("inner.xml")).isSymLink());
    QVERIFY(!QFileInfo(path("real/a.xml")).isSymLink());
    QVERIFY(contentOf(path("real/a.xml")).endsWith("<a/>\n"));
}

void tst_KelXMLBuilder::savingCreatesTheTargetOfADanglingLink()
{
    QVERIFY(QFile::link(path("target.xml"), path("link.xml")));
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("link.xml")), nullptr));
    QVERIFY(QFileInfo(path("link.xml")).isSymLink());
    QVERIFY(contentOf(path("target.xml")).endsWith("<a/>\n"));
}

void tst_KelXMLBuilder::savingWhereItCannot_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("a directory") << "directory";
    QTest::newRow("in a missing directory") << "missing/a.xml";
    QTest::newRow("in a file") << "file/a.xml";
    QTest::newRow("links in a circle") << "circle1";
    QTest::newRow("no name") << "";
}

void tst_KelXMLBuilder::savingWhereItCannot()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_temporary->path()).mkdir("directory"));
    writeFile(path("file"), "old");
    QVERIFY(QFile::link(path("circle1"), path("circle2")));
    QVERIFY(QFile::link(path("circle2"), path("circle1")));
    const QStringList before = QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);

    const QFileInfo file(name.isEmpty() ? m_temporary->path() + '/' : path(name));
    KelErrorHistory history;
    QVERIFY(!KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), file, &history));
    QCOMPARE(history.entries().size(), 1);
    QCOMPARE(history.last().fileName, file.filePath());
    QCOMPARE(history.last().line, -1);
    QVERIFY(history.last().message.startsWith("cannot be written: "));
    QVERIFY(history.last().message.size() > QStringLiteral("cannot be written: ").size());

    QCOMPARE(contentOf(path("file")), QByteArray("old"));
    QCOMPARE(QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System), before);
}

void tst_KelXMLBuilder::savingNeedsNoHistory()
{
    QVERIFY(!KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("missing/a.xml")), nullptr));
    QVERIFY(!KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(), nullptr));
}

void tst_KelXMLBuilder::writeProtectedFileIsNotReplaced()
{
    writeFile(path("a.xml"), "old");
    QVERIFY(QFile::setPermissions(path("a.xml"), QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
    // The directory may be written to, so that nothing but the file's own protection stands in the way.
    QVERIFY(QFile::setPermissions(m_temporary->path(), QFileDevice::Permissions(0x7777)));
    KelErrorHistory history;
    bool isSaved = true;
    {
        const NotTheSuperuser user;
        if (::access(path("a.xml").toLocal8Bit().constData(), W_OK) == 0)
            QSKIP("nothing is write-protected for this user");
        isSaved = KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("a.xml")), &history);
    }
    QVERIFY(!isSaved);
    QCOMPARE(contentOf(path("a.xml")), QByteArray("old"));
    QCOMPARE(history.entries().size(), 1);
    QCOMPARE(QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"a.xml"});
}

void tst_KelXMLBuilder::fullDiskLeavesTheOldFile()
{
    writeFile(path("a.xml"), "old");
    const QDomDocument large = documentWithText(QString(100000, 'x'));
    KelErrorHistory history;
    bool isSaved = true;
    {
        const KelFileSizeLimit limit(4096);
        isSaved = KelXMLBuilder::saveUTF8(large, QFileInfo(path("a.xml")), &history);
    }
    QVERIFY(!isSaved);
    QCOMPARE(contentOf(path("a.xml")), QByteArray("old"));
    QCOMPARE(history.entries().size(), 1);
    QVERIFY(history.last().message.endsWith(qt_error_string(EFBIG)));
    QCOMPARE(QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"a.xml"});

    QVERIFY(KelXMLBuilder::saveUTF8(large, QFileInfo(path("a.xml")), &history));
    QVERIFY(contentOf(path("a.xml")).size() > 100000);
}

void tst_KelXMLBuilder::fullDiskLeavesNoNewFile()
{
    bool isSaved = true;
    {
        const KelFileSizeLimit limit(10);
        isSaved = KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo(path("a.xml")), nullptr);
    }
    QVERIFY(!isSaved);
    QVERIFY(QDir(m_temporary->path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void tst_KelXMLBuilder::fullDeviceIsTold()
{
    if (!QFileInfo::exists("/dev/full"))
        QSKIP("this system has no full device");
    KelErrorHistory history;
    QVERIFY(!KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo("/dev/full"), &history));
    QCOMPARE(history.entries().size(), 1);
    QCOMPARE(history.last().toString(),
             QStringLiteral("/dev/full: cannot be written: %1").arg(qt_error_string(ENOSPC)));
    QVERIFY(!QFileInfo("/dev/full").isFile());
}

void tst_KelXMLBuilder::deviceIsWrittenTo()
{
    QVERIFY(KelXMLBuilder::saveUTF8(KelTestSupport::document("<a/>"), QFileInfo("/dev/null"), nullptr));
    QVERIFY(!QFileInfo("/dev/null").isFile());
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc > 1 && QLatin1String(argv[1]) == QLatin1String(PrintDocument)) {
        std::fputs(KelXMLBuilder::toText(documentWithManyAttributes(), -1).toUtf8().constData(), stdout);
        return 0;
    }
    tst_KelXMLBuilder test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_KelXMLBuilder.moc"

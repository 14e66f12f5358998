// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelXMLCursor.h>
#include <KelXMLDomCursor.h>
#include <KelXMLGate.h>
#include <KelXMLLoader.h>
#include <KelXMLStreamCursor.h>

#include <QBuffer>
#include <QDomDocument>
#include <QStringEncoder>
#include <QtTest>

#include <functional>
#include <memory>
#include <random>

/// Both cursors over the same bytes. Every row of the tables is run with each of them.
class tst_KelXMLCursor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_data();
    void text();
    void attribute_data();
    void attribute();
    void attributeDouble_data();
    void attributeDouble();
    void textDouble_data();
    void textDouble();
    void textDateTime();
    void namesAreQualifiedAndAsWritten();
    void nameStaysValidWhileChildrenAreRead();
    void skipsWhatIsLeftUnread();
    void skipsTheRestOfAHalfReadChild();
    void textEndsTheElement();
    void nextChildStaysFalse();
    void attributeAfterAChildIsNullOnAStream();
    void nullElement();
    void lineAndColumn();
    void deepNesting_data();
    void deepNesting();
    void finish_data();
    void finish();
    void errorPlaceIsThatOfTheTree_data();
    void errorPlaceIsThatOfTheTree();
    void streamStartsWhereTheDeviceStands();
    void sameAsTree_data();
    void sameAsTree();
    void sameAsTreeOverGeneratedDocuments();
    void sameAsTreeOverDamagedDocuments();
};

namespace
{

/// A cursor together with what it reads from.
struct Source
{
    explicit Source(const QByteArray &bytes, bool asStream)
    {
        if (asStream) {
            buffer.setData(bytes);
            buffer.open(QIODevice::ReadOnly);
            cursor = std::make_unique<KelXMLStreamCursor>(&buffer);
        } else {
            KelXMLLoader::setContent(document, bytes);
            cursor = std::make_unique<KelXMLDomCursor>(document.documentElement());
        }
    }

    QBuffer buffer;
    QDomDocument document;
    std::unique_ptr<KelXMLCursor> cursor;
};

const bool treeAndStream[] = {false, true};

/// Names, attributes and places of all elements.
QString structure(KelXMLCursor &cursor)
{
    QString result = QStringLiteral("<%1 %2:%3").arg(cursor.name(), QString::number(cursor.line()),
                                                      QString::number(cursor.column()));
    for (const QStringView name : {u"a", u"b", u"lat", u"lon", u"xmlns:x", u"x:a"}) {
        const QString value = cursor.attribute(name);
        if (!value.isNull())
            result += QStringLiteral(" %1='%2'").arg(name, value);
    }
    result += QLatin1Char('>');
    while (cursor.nextChild())
        result += structure(cursor.child());
    return result + QStringLiteral("</>");
}

/// The texts of all elements that lie `depth` levels below the cursor.
QStringList textsAtDepth(KelXMLCursor &cursor, int depth)
{
    if (depth == 0)
        return {cursor.text()};
    QStringList result;
    while (cursor.nextChild())
        result += textsAtDepth(cursor.child(), depth - 1);
    return result;
}

/// Everything that can be read from the tree, or nothing.
QStringList readAll(const QByteArray &bytes, bool asStream)
{
    QStringList result;
    const auto run = [&](const std::function<void(KelXMLCursor &)> &read) {
        Source source(bytes, asStream);
        read(*source.cursor);
        if (!asStream)
            return !source.document.isNull();
        return static_cast<KelXMLStreamCursor &>(*source.cursor).finish();
    };
    for (int depth = 0; depth < 5; ++depth) {
        if (!run([&](KelXMLCursor &cursor) { result += textsAtDepth(cursor, depth); }))
            return {QStringLiteral("malformed")};
    }
    if (!run([&](KelXMLCursor &cursor) { result += structure(cursor); }))
        return {QStringLiteral("malformed")};
    return result;
}

} // namespace

void tst_KelXMLCursor::text_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *xml, const QString &text) {
        QTest::newRow(name) << QByteArray(xml) << text;
    };
    row("plain", "<r>abc</r>", "abc");
    row("no text", "<r/>", "");
    row("no text between tags", "<r></r>", "");
    row("blanks around are kept", "<r> abc\n </r>", " abc\n ");
    row("nested elements are included", "<r>a<b>b<c>c</c></b>d</r>", "abcd");
    row("a run of blanks alone is dropped", "<r> \n\t </r>", "");
    row("blanks between elements are dropped", "<r> <b>x</b> <b>y</b> </r>", "xy");
    row("a blank beside a letter is kept", "<r><b>x</b> -<b>y</b></r>", "x -y");
    row("CDATA", "<r><![CDATA[<a> & ]]></r>", "<a> & ");
    row("blanks in CDATA are kept", "<r><![CDATA[  ]]></r>", "  ");
    row("empty CDATA", "<r><![CDATA[]]></r>", "");
    row("CDATA splits a run", "<r>a <![CDATA[b]]> </r>", "a b");
    row("a comment splits a run", "<r>a<!-- c --> <!-- c -->b</r>", "ab");
    row("a comment within a word", "<r>a<!-- c -->b</r>", "ab");
    row("a processing instruction splits a run", "<r>a<?p i?> <?p i?>b</r>", "ab");
    row("character reference", "<r>a&#65;&#x42;</r>", "aAB");
    row("a lone reference to a blank is dropped", "<r>&#32;</r>", "");
    row("a lone reference to a no-break space is dropped", "<r>&#160;</r>", "");
    row("a reference to a blank beside a letter is kept", "<r>a&#32;</r>", "a ");
    row("predefined entities", "<r>&lt;&amp;&gt;&quot;&apos;</r>", "<&>\"'");
    row("internal entity", "<!DOCTYPE r [<!ENTITY e 'xy'>]><r>a&e;b</r>", "axyb");
    row("internal entity with an element", "<!DOCTYPE r [<!ENTITY e '<c>xy</c>'>]><r>a&e;b</r>", "axyb");
    row("carriage returns become line feeds", "<r>a\r\nb\rc</r>", "a\nb\nc");
    row("UTF-8", "<r>Stra\xc3\x9f" "e</r>", QStringLiteral("Stra\u00dfe"));
    row("UTF-8 with byte order mark", "\xef\xbb\xbf<r>\xe2\x82\xac</r>", QStringLiteral("\u20ac"));
    row("Latin-1 as declared", "<?xml version='1.0' encoding='ISO-8859-1'?><r>Stra\xdf" "e</r>",
        QStringLiteral("Stra\u00dfe"));
    row("beyond the basic plane", "<r>\xf0\x9f\x9a\xb2</r>", QStringLiteral("\U0001F6B2"));
}

void tst_KelXMLCursor::text()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, text);
    for (const bool asStream : treeAndStream) {
        Source source(xml, asStream);
        const QString actual = source.cursor->text();
        QCOMPARE(actual, text);
        QVERIFY(!actual.isNull());
    }
}

void tst_KelXMLCursor::attribute_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("missing");

    const QString none;
    QTest::newRow("present") << QByteArray("<r a='1' b='2'/>") << "1" << false;
    QTest::newRow("missing") << QByteArray("<r b='2'/>") << none << true;
    QTest::newRow("no attributes") << QByteArray("<r/>") << none << true;
    QTest::newRow("empty is not missing") << QByteArray("<r a=''/>") << "" << false;
    QTest::newRow("other case") << QByteArray("<r A='1'/>") << none << true;
    QTest::newRow("with a prefix it is another name") << QByteArray("<r x:a='1'/>") << none << true;
    QTest::newRow("references") << QByteArray("<r a='&lt;&#65;'/>") << "<A" << false;
    QTest::newRow("line feeds become blanks") << QByteArray("<r a='x\ny'/>") << "x y" << false;
    QTest::newRow("blanks are kept") << QByteArray("<r a=' x '/>") << " x " << false;
}

void tst_KelXMLCursor::attribute()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, value);
    QFETCH(bool, missing);
    for (const bool asStream : treeAndStream) {
        Source source(xml, asStream);
        const QString actual = source.cursor->attribute(u"a");
        QCOMPARE(actual, value);
        QCOMPARE(actual.isNull(), missing);
    }
}

void tst_KelXMLCursor::attributeDouble_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<double>("value");

    QTest::newRow("number") << QByteArray("<r lat='53.14375'/>") << 53.14375;
    QTest::newRow("missing takes the default") << QByteArray("<r/>") << 1.0;
    QTest::newRow("empty is 0") << QByteArray("<r lat=''/>") << 0.0;
    QTest::newRow("letters are 0") << QByteArray("<r lat='north'/>") << 0.0;
    QTest::newRow("too great is 0") << QByteArray("<r lat='1e400'/>") << 0.0;
    QTest::newRow("exponent") << QByteArray("<r lat='1e1'/>") << 10.0;
    QTest::newRow("blanks around") << QByteArray("<r lat=' 5 '/>") << 5.0;
}

void tst_KelXMLCursor::attributeDouble()
{
    QFETCH(QByteArray, xml);
    QFETCH(double, value);
    for (const bool asStream : treeAndStream)
        QCOMPARE(Source(xml, asStream).cursor->attributeDouble(u"lat", 1.0), value);
}

void tst_KelXMLCursor::textDouble_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<double>("value");

    QTest::newRow("number") << QByteArray("<r>-12.75</r>") << -12.75;
    QTest::newRow("blanks around") << QByteArray("<r>\n 12.75 \n</r>") << 12.75;
    QTest::newRow("split by a comment") << QByteArray("<r>12<!-- -->.75</r>") << 12.75;
    QTest::newRow("empty is 0") << QByteArray("<r/>") << 0.0;
    QTest::newRow("letters are 0") << QByteArray("<r>high</r>") << 0.0;
    QTest::newRow("too great is 0") << QByteArray("<r>1e400</r>") << 0.0;
}

void tst_KelXMLCursor::textDouble()
{
    QFETCH(QByteArray, xml);
    QFETCH(double, value);
    for (const bool asStream : treeAndStream)
        QCOMPARE(Source(xml, asStream).cursor->textDouble(), value);
}

void tst_KelXMLCursor::textDateTime()
{
    for (const bool asStream : treeAndStream) {
        QCOMPARE(Source("<r>2023-11-14T22:13:20Z</r>", asStream).cursor->textDateTime(),
                 QDateTime(QDate(2023, 11, 14), QTime(22, 13, 20), Qt::UTC));
        QVERIFY(!Source("<r>noon</r>", asStream).cursor->textDateTime().isValid());
        QVERIFY(!Source("<r/>", asStream).cursor->textDateTime().isValid());
    }
}

void tst_KelXMLCursor::namesAreQualifiedAndAsWritten()
{
    for (const bool asStream : treeAndStream) {
        Source source("<g:Root><gpxx:rpt/><a xmlns='urn:x'/></g:Root>", asStream);
        KelXMLCursor &root = *source.cursor;
        QCOMPARE(root.name(), u"g:Root");
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().name(), u"gpxx:rpt");
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().name(), u"a");
        QVERIFY(!root.nextChild());
    }
}

void tst_KelXMLCursor::nameStaysValidWhileChildrenAreRead()
{
    for (const bool asStream : treeAndStream) {
        Source source("<root><child><grandchild>text</grandchild></child></root>", asStream);
        KelXMLCursor &root = *source.cursor;
        const QStringView rootName = root.name();
        QVERIFY(root.nextChild());
        const QStringView childName = root.child().name();
        QVERIFY(root.child().nextChild());
        QCOMPARE(root.child().child().text(), "text");
        QCOMPARE(rootName, u"root");
        QCOMPARE(childName, u"child");
        QCOMPARE(root.name(), u"root");
    }
}

void tst_KelXMLCursor::skipsWhatIsLeftUnread()
{
    for (const bool asStream : treeAndStream) {
        Source source("<r><a><a><b/></a>x<a/></a>text<b>second</b></r>", asStream);
        QVERIFY(source.cursor->nextChild());
        QVERIFY(source.cursor->nextChild());
        QCOMPARE(source.cursor->child().name(), u"b");
        QCOMPARE(source.cursor->child().text(), "second");
        QVERIFY(!source.cursor->nextChild());
    }
}

void tst_KelXMLCursor::skipsTheRestOfAHalfReadChild()
{
    for (const bool asStream : treeAndStream) {
        Source source("<r><a><b><c>1</c><c>2</c></b><b/></a><d>3</d></r>", asStream);
        KelXMLCursor &root = *source.cursor;
        QVERIFY(root.nextChild());
        QVERIFY(root.child().nextChild());
        QVERIFY(root.child().child().nextChild());
        QCOMPARE(root.child().child().child().name(), u"c");
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().name(), u"d");
        QCOMPARE(root.child().text(), "3");
    }
}

void tst_KelXMLCursor::textEndsTheElement()
{
    for (const bool asStream : treeAndStream) {
        Source source("<r><a>x<b/></a><c/></r>", asStream);
        KelXMLCursor &root = *source.cursor;
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().text(), "x");
        QVERIFY(!root.child().nextChild());
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().name(), u"c");
    }
}

void tst_KelXMLCursor::nextChildStaysFalse()
{
    for (const bool asStream : treeAndStream) {
        Source source("<r><a><b/></a><c/></r>", asStream);
        KelXMLCursor &root = *source.cursor;
        QVERIFY(root.nextChild());
        QVERIFY(root.child().nextChild());
        QVERIFY(!root.child().nextChild());
        QVERIFY(!root.child().nextChild());
        QVERIFY(root.nextChild());
        QVERIFY(!root.nextChild());
        QVERIFY(!root.nextChild());
    }
}

void tst_KelXMLCursor::attributeAfterAChildIsNullOnAStream()
{
    Source source("<r a='1'><b a='2'/></r>", true);
    QCOMPARE(source.cursor->attribute(u"a"), "1");
    QVERIFY(source.cursor->nextChild());
    QVERIFY(source.cursor->attribute(u"a").isNull());
    QCOMPARE(source.cursor->attributeDouble(u"a", 7.0), 7.0);
    QCOMPARE(source.cursor->child().attribute(u"a"), "2");
}

void tst_KelXMLCursor::nullElement()
{
    for (const bool asStream : treeAndStream) {
        Source source("no document", asStream);
        KelXMLCursor &cursor = *source.cursor;
        QVERIFY(cursor.name().isEmpty());
        QVERIFY(cursor.attribute(u"a").isNull());
        QCOMPARE(cursor.attributeDouble(u"a", 3.0), 3.0);
        QVERIFY(!cursor.nextChild());
        QCOMPARE(cursor.text(), "");
        QVERIFY(!cursor.text().isNull());
        QCOMPARE(cursor.textDouble(), 0.0);
        QVERIFY(!cursor.textDateTime().isValid());
        QCOMPARE(cursor.line(), -1);
        QCOMPARE(cursor.column(), -1);
    }
}

void tst_KelXMLCursor::lineAndColumn()
{
    for (const bool asStream : treeAndStream) {
        Source source("<r>\n  <a/>\n\n  <b\n  x='1'>text</b></r>", asStream);
        KelXMLCursor &root = *source.cursor;
        QCOMPARE(root.line(), 1);
        QCOMPARE(root.column(), 3);
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().line(), 2);
        QCOMPARE(root.child().column(), 6);
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().line(), 5);
        QCOMPARE(root.child().column(), 8);
        QCOMPARE(root.line(), 1);
    }
}

void tst_KelXMLCursor::deepNesting_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("wellFormed");
    QTest::newRow("as deep as trees may be") << KelXMLGate::MAXIMUM_DEPTH << true;
    QTest::newRow("one level deeper") << KelXMLGate::MAXIMUM_DEPTH + 1 << false;
    QTest::newRow("deeper than any stack") << 1000000 << false;
}

void tst_KelXMLCursor::deepNesting()
{
    QFETCH(int, depth);
    QFETCH(bool, wellFormed);
    const QByteArray inner = QByteArray("<a>").repeated(depth - 1) + "x" + QByteArray("</a>").repeated(depth - 1);
    const QByteArray xml = "<r>" + inner + "<b>y</b></r>";
    QDomDocument document;
    QCOMPARE(KelXMLLoader::setContent(document, xml), wellFormed);
    {
        Source source(xml, true);
        QVERIFY(source.cursor->nextChild());
        QCOMPARE(source.cursor->nextChild(), wellFormed);
        QCOMPARE(source.cursor->child().name(), wellFormed ? u"b" : u"a");
    }
    Source source(xml, true);
    QCOMPARE(source.cursor->text(), wellFormed ? "xy" : "");
    QCOMPARE(static_cast<KelXMLStreamCursor &>(*source.cursor).finish(), wellFormed);
}

void tst_KelXMLCursor::finish_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("wellFormed");

    QTest::newRow("well-formed") << QByteArray("<r><a/></r>") << true;
    QTest::newRow("blanks and a comment at the end") << QByteArray("<r><a/></r> \n<!-- end -->\n") << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("blanks only") << QByteArray("  \n ") << false;
    QTest::newRow("no element") << QByteArray("<?xml version='1.0'?><!-- nothing -->") << false;
    QTest::newRow("one byte") << QByteArray("<") << false;
    QTest::newRow("end tag missing") << QByteArray("<r><a/>") << false;
    QTest::newRow("cut within the last tag") << QByteArray("<r><a/></r") << false;
    QTest::newRow("wrong end tag") << QByteArray("<r><a></b></r>") << false;
    QTest::newRow("second root") << QByteArray("<r><a/></r><r/>") << false;
    QTest::newRow("text after the end") << QByteArray("<r><a/></r>x") << false;
    QTest::newRow("attribute twice") << QByteArray("<r a='1' a='2'/>") << false;
    QTest::newRow("undeclared entity") << QByteArray("<r>&e;</r>") << false;
    QTest::newRow("undeclared prefix is none of our business") << QByteArray("<x:r><y:a/></x:r>") << true;
    QTest::newRow("character that XML has not") << QByteArray("<r>\x01</r>") << false;
    QTest::newRow("broken UTF-8") << QByteArray("<r>\xc3</r>") << false;
    QTest::newRow("unknown encoding") << QByteArray("<?xml version='1.0' encoding='nonsense'?><r/>") << false;
}

void tst_KelXMLCursor::finish()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, wellFormed);
    Source source(xml, true);
    KelXMLStreamCursor &cursor = static_cast<KelXMLStreamCursor &>(*source.cursor);
    QCOMPARE(cursor.finish(), wellFormed);
    QCOMPARE(cursor.finish(), wellFormed);
    QVERIFY(!cursor.nextChild());
    QDomDocument document;
    QCOMPARE(KelXMLLoader::setContent(document, xml), wellFormed);
}

void tst_KelXMLCursor::errorPlaceIsThatOfTheTree_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<qint64>("column"); // of the last character that was read

    QTest::newRow("in the first line") << QByteArray("<r><a></b></r>") << qint64(1) << qint64(10);
    QTest::newRow("in the third line") << QByteArray("<r>\n<a>\n  </b></r>") << qint64(3) << qint64(6);
    QTest::newRow("second document type")
        << QByteArray("<!DOCTYPE r>\n<!DOCTYPE r>\n<r/>") << qint64(2) << qint64(12);
    QTest::newRow("document type within the root")
        << QByteArray("<r>\n<!DOCTYPE r>\n</r>") << qint64(2) << qint64(12);
    QTest::newRow("cut off within a line") << QByteArray("<r>\n<a") << qint64(2) << qint64(2);
    QTest::newRow("cut off behind a line") << QByteArray("<r>\n<a>\n") << qint64(3) << qint64(1);
    QTest::newRow("nothing at all") << QByteArray("") << qint64(1) << qint64(1);
    QTest::newRow("nested too deep")
        << "<r>\n" + QByteArray("<a>\n").repeated(256) + QByteArray("</a>").repeated(256) + "</r>" << qint64(257)
        << qint64(3);
}

void tst_KelXMLCursor::errorPlaceIsThatOfTheTree()
{
    QFETCH(QByteArray, xml);
    QFETCH(qint64, line);
    QFETCH(qint64, column);
    QDomDocument document;
    KelErrorHistory history;
    QVERIFY(!KelXMLLoader::setContent(document, xml, &history));

    Source source(xml, true);
    KelXMLStreamCursor &cursor = static_cast<KelXMLStreamCursor &>(*source.cursor);
    QVERIFY(!cursor.finish());
    QCOMPARE(cursor.errorLine(), line);
    QCOMPARE(cursor.errorColumn(), column);
    QCOMPARE(history.last().line, line);
    QCOMPARE(history.last().column, column);
    QVERIFY(!cursor.errorString().isEmpty());
    QCOMPARE(cursor.errorString(), history.last().message);
}

void tst_KelXMLCursor::streamStartsWhereTheDeviceStands()
{
    QBuffer buffer;
    buffer.setData("header\n<r><a/></r>");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(buffer.readLine(), "header\n");
    KelXMLStreamCursor cursor(&buffer);
    QCOMPARE(cursor.name(), u"r");
    QVERIFY(cursor.finish());
}

void tst_KelXMLCursor::sameAsTree_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("wellFormed");

    const QString document = QStringLiteral("<?xml version='1.0'%1?>\n<r a='\u00e4'>\u00f6<b lat='1'> x </b>\n<b> </b>"
                                            "\u20ac</r>");
    const auto encoded = [&](QStringConverter::Encoding encoding, const QString &declaration, bool mark) {
        QStringEncoder encoder(encoding, mark ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
        return QByteArray(encoder(document.arg(declaration)));
    };
    QTest::newRow("UTF-8") << encoded(QStringConverter::Utf8, QString(), false) << true;
    QTest::newRow("UTF-8 with mark") << encoded(QStringConverter::Utf8, QString(), true) << true;
    QTest::newRow("UTF-16 little endian with mark") << encoded(QStringConverter::Utf16LE, QString(), true) << true;
    QTest::newRow("UTF-16 big endian with mark") << encoded(QStringConverter::Utf16BE, QString(), true) << true;
    QTest::newRow("UTF-16 declared, with mark")
        << encoded(QStringConverter::Utf16LE, QStringLiteral(" encoding='UTF-16'"), true) << true;
    QTest::newRow("UTF-16 cut within a character")
        << encoded(QStringConverter::Utf16LE, QString(), true).chopped(1) << false;
    QTest::newRow("UTF-32 with mark") << encoded(QStringConverter::Utf32LE, QString(), true) << true;
    QTest::newRow("Latin-1 declared") << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><r a='\xe4'>\xf6</r>")
                                      << true;
    QTest::newRow("Latin-1 undeclared") << QByteArray("<?xml version='1.0'?><r a='\xe4'>\xf6</r>") << false;
    QTest::newRow("UTF-8 declared as Latin-1")
        << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xc3\xa4</r>") << true;
    QTest::newRow("document type without subset") << QByteArray("<!DOCTYPE r><r><a>x</a></r>") << true;
    QTest::newRow("document type with entities")
        << QByteArray("<!DOCTYPE r [<!ENTITY e 'x <b>y</b>'><!ENTITY f '&e; &e;'>]><r><a>&f;</a>&e;</r>") << true;
    QTest::newRow("external document type")
        << QByteArray("<!DOCTYPE r SYSTEM 'r.dtd'><r><a>x &unknown; y</a></r>") << true;
    QTest::newRow("two document types") << QByteArray("<!DOCTYPE r><!DOCTYPE r><r/>") << false;
    QTest::newRow("document type within the root") << QByteArray("<r><a/><!DOCTYPE r></r>") << false;
    QTest::newRow("document type after the root") << QByteArray("<r/><!DOCTYPE r>") << false;
    QTest::newRow("default attribute of the document type")
        << QByteArray("<!DOCTYPE r [<!ATTLIST b lat CDATA '5'>]><r><b/><b lat='6'/></r>") << true;
    QTest::newRow("a processing instruction before, within, after")
        << QByteArray("<?a b?><r><?a b?>x<?a b?></r><?a b?>") << true;
    QTest::newRow("XML 1.1") << QByteArray("<?xml version='1.1'?><r/>") << false;
    QTest::newRow("entities that expand too far")
        << QByteArray("<!DOCTYPE r [<!ENTITY a 'aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa'>"
                      "<!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'><!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'>"
                      "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;'>]><r>&d;</r>")
        << false;
    QTest::newRow("a text longer than the reader's buffer")
        << QByteArray("<r><a>" + QByteArray(100000, 'x') + "</a></r>") << true;
    QTest::newRow("a run of blanks longer than the reader's buffer")
        << QByteArray("<r><a>" + QByteArray(100000, ' ') + "</a>x" + QByteArray(100000, '\n') + "</r>") << true;
    QTest::newRow("multi-byte characters across the reader's buffer")
        << QByteArray("<r>x" + QByteArray("\xe2\x82\xac").repeated(20000) + "</r>") << true;
}

void tst_KelXMLCursor::sameAsTree()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, wellFormed);
    const QStringList tree = readAll(xml, false);
    QCOMPARE(tree != QStringList{QStringLiteral("malformed")}, wellFormed);
    QCOMPARE(readAll(xml, true), tree);
}

namespace
{

const QByteArray pieces[] = {
    "<a>", "</a>", "<b a='1'>", "</b>", "<b/>", "<x:c x:a='2' b=''/>", "<trk lat=' 5' lon='x'>", "</trk>",
    "<!-- c -->", "<![CDATA[ ]]>", "<![CDATA[x<]]>", "<?p i?>", " ", "\n", "text", "&#32;", "&#160;", "&amp;", "&e;",
    "\t \n", "&#x41;", "\xc3\xa4", "\xe2\x80\x83", "]]>", "<!DOCTYPE q>", "<a b=\"&#10;\">", "1 2"};

/// A document that is mostly well-formed.
QByteArray generate(std::mt19937 &random, bool balanced)
{
    QByteArray xml = random() % 2 ? QByteArray("<!DOCTYPE r [<!ENTITY e 'x <b>y</b> '>]><r>") : QByteArray("<r>");
    QList<QByteArray> open;
    const int count = int(random() % 30);
    for (int i = 0; i < count; ++i) {
        const QByteArray &piece = pieces[random() % std::size(pieces)];
        if (balanced && piece.startsWith("</")) {
            if (!open.isEmpty())
                xml += "</" + open.takeLast() + '>';
            continue;
        }
        if (balanced && piece.startsWith('<') && piece.at(1) != '!' && piece.at(1) != '?' && !piece.endsWith("/>"))
            open.append(piece.mid(1, qMax(piece.indexOf(' '), qsizetype(2)) - 1).replace('>', ""));
        xml += piece;
    }
    while (balanced && !open.isEmpty())
        xml += "</" + open.takeLast() + '>';
    return xml + "</r>";
}

} // namespace

void tst_KelXMLCursor::sameAsTreeOverGeneratedDocuments()
{
    std::mt19937 random(1);
    int wellFormed = 0;
    for (int i = 0; i < 4000; ++i) {
        const QByteArray xml = generate(random, i % 4 != 0);
        const QStringList tree = readAll(xml, false);
        wellFormed += tree != QStringList{QStringLiteral("malformed")} ? 1 : 0;
        QVERIFY2(readAll(xml, true) == tree, xml.constData());
    }
    QVERIFY2(wellFormed > 500, qPrintable(QString::number(wellFormed))); // else this tests nothing
}

void tst_KelXMLCursor::sameAsTreeOverDamagedDocuments()
{
    std::mt19937 random(2);
    for (int i = 0; i < 4000; ++i) {
        QByteArray xml = generate(random, true);
        switch (random() % 4) {
        case 0:
            xml.truncate(int(random() % uint(xml.size())));
            break;
        case 1:
            xml.remove(int(random() % uint(xml.size())), 1);
            break;
        case 2:
            xml[int(random() % uint(xml.size()))] = char(random() % 256);
            break;
        default:
            xml.append(pieces[random() % std::size(pieces)]);
        }
        QVERIFY2(readAll(xml, true) == readAll(xml, false), xml.constData());
    }
}

QTEST_GUILESS_MAIN(tst_KelXMLCursor)
#include "tst_KelXMLCursor.moc"

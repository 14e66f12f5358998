// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelErrorHistory.h>
#include <KelXMLGate.h>
#include <KelXMLLoader.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QBuffer>
#include <QDomDocument>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <utility>

namespace
{

/// A pipe as far as a reader can see: no size, no way back.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override
    {
        return true;
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const QByteArray piece = m_bytes.mid(m_read, maxSize);
        std::copy(piece.cbegin(), piece.cend(), data);
        m_read += piece.size();
        return piece.size();
    }

    qint64 writeData(const char *, qint64) override
    {
        return -1;
    }

private:
    QByteArray m_bytes;
    qsizetype m_read = 0;
};

QByteArray attributes(int count, const QByteArray &value)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += " a" + QByteArray::number(i) + "='" + value + "'";
    return text;
}

/// `levels` entities, each of which holds ten of the one before; the innermost is `core`.
QByteArray laughs(int levels, const QByteArray &core, const QByteArray &use)
{
    QByteArray text = "<!DOCTYPE a [<!ENTITY e0 '" + core + "'>";
    for (int i = 1; i <= levels; ++i)
        text += "<!ENTITY e" + QByteArray::number(i) + " '" + QByteArray("&e" + QByteArray::number(i - 1) + ";").repeated(10)
            + "'>";
    return text + "]>" + QByteArray(use).replace("&e;", "&e" + QByteArray::number(levels) + ";");
}

QByteArray entity(const QByteArray &value, const QByteArray &use)
{
    return "<!DOCTYPE a [<!ENTITY e '" + value + "'>]>" + use;
}

QByteArray manyEntities(int count)
{
    QByteArray text = "<!DOCTYPE a [";
    for (int i = 0; i < count; ++i)
        text += "<!ENTITY e" + QByteArray::number(i) + " 'x'>";
    return text + "]><a/>";
}

QByteArray encoded(const char *encoding, const QByteArray &text)
{
    QStringEncoder encoder(encoding);
    return encoder(QString::fromUtf8(text));
}

} // namespace

/// Every document goes to every reader, and all have to say the same.
class tst_KelXMLGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allReadersAgree_data();
    void allReadersAgree();
    void expansionIsMeasuredByTheSize();
    void reasons_data();
    void reasons();
    void piecesOfAnySize_data();
    void piecesOfAnySize();
    void theEarlierErrorCountsWhereItIsKnown();
    void bytesThatAreNoText_data();
    void bytesThatAreNoText();
    void bytesThatAreNoTextWhereABlockEnds();
    void pairsOfSurrogatesAcrossBlocks();
    void nothingOutsideIsRead();
    void aFileWithoutEndIsNotReadToItsEnd();

private:
    static bool streamReads(const QByteArray &bytes, bool isPipe, KelErrorHistory::Entry *error = nullptr);

    QTemporaryDir m_dir;
};

bool tst_KelXMLGate::streamReads(const QByteArray &bytes, bool isPipe, KelErrorHistory::Entry *error)
{
    Pipe pipe(bytes);
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    KelXMLStreamCursor cursor(isPipe ? static_cast<QIODevice *>(&pipe) : &buffer);
    const bool read = cursor.finish();
    if (error != nullptr && !read)
        *error = {QString(), cursor.errorLine(), cursor.errorColumn(), cursor.errorString()};
    return read;
}

void tst_KelXMLGate::allReadersAgree_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("readable");

    const QByteArray open = QByteArray("<a>");
    const QByteArray close = QByteArray("</a>");
    QTest::newRow("256 levels") << open.repeated(256) + close.repeated(256) << true;
    QTest::newRow("256 levels, the last without a content") << open.repeated(255) + "<b/>" + close.repeated(255) << true;
    QTest::newRow("257 levels") << open.repeated(257) + close.repeated(257) << false;
    QTest::newRow("257 levels, the last without a content") << open.repeated(256) + "<b/>" + close.repeated(256) << false;
    QTest::newRow("200,000 levels") << open.repeated(200000) + close.repeated(200000) << false;
    QTest::newRow("200,000 levels without an end") << open.repeated(200000) << false;
    QTest::newRow("200,000 children") << open + QByteArray("<b/>").repeated(200000) + close << true;
    QTest::newRow("no levels but what a comment says") << open + "<!--" + open.repeated(300) + "-->" + close << true;
    QTest::newRow("no levels but what CDATA says") << open + "<![CDATA[" + open.repeated(300) + "]]>" + close << true;
    QTest::newRow("no levels but what an instruction says") << open + "<?x " + open.repeated(300) + "?>" + close << true;
    QTest::newRow("end tags in comments end nothing")
        << QByteArray("<a><!--</a>-->").repeated(257) + close.repeated(257) << false;
    QTest::newRow("end tags in CDATA end nothing")
        << QByteArray("<a><![CDATA[</a>]]>").repeated(257) + close.repeated(257) << false;
    QTest::newRow("slashes in attributes end nothing")
        << QByteArray("<a b='/>' c=\"/>\">").repeated(257) + close.repeated(257) << false;

    QTest::newRow("1,000 attributes") << "<a" + attributes(1000, "v") + "/>" << true;
    QTest::newRow("1,001 attributes") << "<a" + attributes(1001, "v") + "/>" << false;
    QTest::newRow("1,001 attributes further down") << "<b><a" + attributes(1001, "v") + "/></b>" << false;
    QTest::newRow("300,000 attributes") << "<a" + attributes(300000, "") + "/>" << false;
    QTest::newRow("300,000 attributes without an end") << "<a" + attributes(300000, "") << false;
    QTest::newRow("1,000 attributes of equals signs") << "<a" + attributes(1000, "==") + "/>" << true;
    QTest::newRow("1,001 equals signs in the text") << "<a>" + QByteArray("b='c' ").repeated(1001) + "</a>" << true;
    const QByteArray longestName(4096, 'n');
    QTest::newRow("a name of 4,096 characters") << "<" + longestName + " " + longestName + "='v'/>" << true;
    QTest::newRow("a name of 4,097 characters") << "<" + longestName + "n/>" << false;
    QTest::newRow("an attribute's name of 4,097 characters") << "<a " + longestName + "n='v'/>" << false;
    QTest::newRow("an attribute of 2 MB") << "<a b='" + QByteArray(2000000, 'x') + "'/>" << true;

    QTest::newRow("an entity") << entity("text", "<a>&e;</a>") << true;
    QTest::newRow("an entity in an attribute") << entity("text", "<a b='&e;'/>") << true;
    QTest::newRow("an entity that holds elements") << entity("x<b>y</b>", "<a>&e;</a>") << true;
    QTest::newRow("an entity that holds half an element") << entity("x<b>y", "<a>&e;</b></a>") << false;
    QTest::newRow("an entity of half an element that nobody uses") << entity("x<b>y", "<a/>") << true;
    QTest::newRow("the start of a comment that nobody uses") << entity("<!--", "<a b='1'>x</a>") << true;
    QTest::newRow("an entity that holds such a one")
        << QByteArray("<!DOCTYPE a [<!ENTITY e '<b>'><!ENTITY f '&e;</b>'>]><a>&f;</a>") << false;
    QTest::newRow("an entity that holds such a one and is not used")
        << QByteArray("<!DOCTYPE a [<!ENTITY e '<b>'><!ENTITY f '&e;</b>'>]><a/>") << true;
    QTest::newRow("as many entities as may be") << manyEntities(KelXMLGate::MAXIMUM_ENTITIES) << true;
    QTest::newRow("one entity more") << manyEntities(KelXMLGate::MAXIMUM_ENTITIES + 1) << false;
    QTest::newRow("an entity that starts a comment")
        << entity("<!--", "<a>&e; <![CDATA[ --> <b" + attributes(1001, "") + "/> ]]></a>") << false;
    QTest::newRow("an entity that starts a comment by numbers")
        << entity("&#60;!--", "<a>&e; <![CDATA[ --> <b" + attributes(1001, "") + "/> ]]></a>") << false;
    QTest::newRow("two entities that start a comment together")
        << QByteArray("<!DOCTYPE a [<!ENTITY f '<!-'><!ENTITY e '&f;-'>]><a>&e; --></a>") << false;
    QTest::newRow("laughs, six levels") << laughs(6, "ha", "<a>&e;</a>") << false;
    QTest::newRow("laughs that say nothing, 12 levels") << laughs(12, "", "<a>&e;</a>") << false;
    QTest::newRow("laughs that say nothing, in an attribute") << laughs(12, "", "<a b='&e;'/>") << false;
    QTest::newRow("laughs that nobody hears") << laughs(12, "ha", "<a/>") << true;
    QTest::newRow("quadratic") << entity(QByteArray(4000, 'x'), "<a>" + QByteArray("&e;").repeated(2000) + "</a>") << false;
    QTest::newRow("quadratic in an attribute")
        << entity(QByteArray(4000, 'x'), "<a b='" + QByteArray("&e;").repeated(2000) + "'/>") << false;
    QTest::newRow("quadratic, 2 MB") << entity(QByteArray(4000, 'x'), "<a>" + QByteArray("&e;").repeated(700000) + "</a>")
                                     << false;
    QTest::newRow("quadratic in comments only")
        << entity(QByteArray(4000, 'x'), "<a><!--" + QByteArray("&e;").repeated(2000) + "--></a>") << true;
    QTest::newRow("entities of elements")
        << entity(QByteArray("<b/>").repeated(1000), "<a>" + QByteArray("&e;").repeated(2000) + "</a>") << false;
    QTest::newRow("predefined entities and references") << entity("x", "<a>" + QByteArray("&amp;&#65;").repeated(9999) + "</a>")
                                                        << true;
    QTest::newRow("an entity in itself") << QByteArray("<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>") << false;
    QTest::newRow("an entity in itself that nobody uses") << QByteArray("<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a/>") << true;
    const QByteArray longEntity = "<!ENTITY e '" + QByteArray(4000, 'x') + "'>";
    const QByteArray often = "]><a>" + QByteArray("&e;").repeated(2000) + "</a>";
    QTest::newRow("an entity that is declared 2,500 times")
        << "<!DOCTYPE a [" + QByteArray("<!ENTITY e 'xx'>").repeated(2500) + often << true;
    QTest::newRow("an entity that is declared once more, long") << "<!DOCTYPE a [<!ENTITY e 'x'>" + longEntity + often << true;
    QTest::newRow("an entity that is declared once more, short") << "<!DOCTYPE a [" + longEntity + "<!ENTITY e 'x'>" + often << false;
    QTest::newRow("an entity that is declared once more, in half an element")
        << QByteArray("<!DOCTYPE a [<!ENTITY e 'x'><!ENTITY e '<b>'>]><a>&e;</a>") << true;
    QTest::newRow("an entity behind a parameter entity of its name") << "<!DOCTYPE a [<!ENTITY % e 'x'>" + longEntity + often << false;
    QTest::newRow("half an element behind a parameter entity of its name")
        << QByteArray("<!DOCTYPE a [<!ENTITY % e 'x'><!ENTITY e '<b>'>]><a>&e;</b></a>") << false;
    QTest::newRow("parameter entities") << "<!DOCTYPE a [<!ENTITY % p ''>" + QByteArray("%p;").repeated(100) + "]><a/>" << false;
    QTest::newRow("a parameter entity that nobody uses") << QByteArray("<!DOCTYPE a [<!ENTITY % p 'x'>]><a/>") << true;
    QTest::newRow("a percentage, which no entity may hold") << entity("50%", "<a>&e;</a>") << false;
    QTest::newRow("percentages elsewhere")
        << QByteArray("<!DOCTYPE a [<!ATTLIST a b CDATA '50 % 5%x'>]><a c='%p;'>50 % 5%x %p;</a>") << true;
    QTest::newRow("defaults of attributes") << QByteArray("<!DOCTYPE a [<!ATTLIST a b CDATA 'c'>]><a/>") << true;
    QTest::newRow("a great many defaults of attributes")
        << "<!DOCTYPE a [<!ATTLIST a" + QByteArray(attributes(1001, "v")).replace("='", " CDATA '") + ">]><a/>" << false;
    QTest::newRow("defaults of attributes that make the document long")
        << "<!DOCTYPE a [<!ATTLIST b c CDATA '" + QByteArray(4000, 'x') + "'>]><a>" + QByteArray("<b/>").repeated(1000) + "</a>"
        << false;
    QTest::newRow("marks in the document type")
        << QByteArray("<!DOCTYPE a [<!-- ]> %p; ' \" --><?x ]> %p; ' ?><!ELEMENT a (#PCDATA)><!ENTITY q '\"&#37;]>'>]><a>&q;</a>") << true;
}

void tst_KelXMLGate::allReadersAgree()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, readable);
    QDomDocument document;
    QCOMPARE(KelXMLLoader::setContent(document, xml), readable);
    QCOMPARE(KelXMLLoader::setContent(document, QString::fromUtf8(xml)), readable);
    QCOMPARE(streamReads(xml, false), readable);
    QCOMPARE(streamReads(xml, true), readable);
    // Another encoding changes nothing, whether its first bytes tell it or its name.
    const QByteArray utf16 = encoded("UTF-16LE", QByteArray("\xef\xbb\xbf") + xml);
    QCOMPARE(KelXMLLoader::setContent(document, utf16), readable);
    QCOMPARE(streamReads(utf16, false), readable);
    const QByteArray utf7 = encoded("UTF-7", "<?xml version='1.0' encoding='UTF-7'?>" + xml);
    if (!utf7.isEmpty()) {
        QCOMPARE(KelXMLLoader::setContent(document, utf7), readable);
        QCOMPARE(streamReads(utf7, false), readable);
    }
    // The plain form is never believed where another reader would refuse.
    QBuffer buffer(&xml);
    buffer.open(QIODevice::ReadOnly);
    KelXMLPlainCursor plain(&buffer);
    QVERIFY(!plain.finish() || readable);
}

void tst_KelXMLGate::expansionIsMeasuredByTheSize()
{
    // 56 bytes and 3 for each of the references, which stand for 20 characters: five times 224 is 56 times 20.
    for (const auto &[references, readable] : {std::pair(56, true), std::pair(57, false)}) {
        const QByteArray xml = entity("12345678901234567890", "<a>" + QByteArray("&e;").repeated(references) + "</a>");
        QCOMPARE(xml.size(), 56 + 3 * references);
        QDomDocument document;
        QCOMPARE(KelXMLLoader::setContent(document, xml), readable);
        QCOMPARE(KelXMLLoader::setContent(document, QString::fromUtf8(xml)), readable);
        QCOMPARE(streamReads(xml, false), readable);
        QCOMPARE(streamReads(xml, true), readable);
    }
}

void tst_KelXMLGate::reasons_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("reason");

    QTest::newRow("depth") << QByteArray("<a>").repeated(257)
                           << "1:771: elements are nested more than 256 levels deep";
    QTest::newRow("attributes") << "<a>\n<b/>\n  <a" + QByteArray(" b=''").repeated(1001)
                                << "3:5007: an element has more than 1000 attributes";
    QTest::newRow("entities") << entity(QByteArray(4000, 'x'), "\n<a>\n" + QByteArray("&e;").repeated(2000) + "</a>")
                              << "entities and attributes of the document type make the document more than 5 times as long";
    QTest::newRow("parameter entities") << QByteArray("<!DOCTYPE a [\n<!ENTITY % p ''>\n%p;]><a/>")
                                        << "3:2: the document type uses parameter entities";
    QTest::newRow("half an element") << entity("<b>", "<a>&e;</b></a>")
                                     << "the entity \"e\" is no balanced piece of markup";
    QTest::newRow("an entity that holds half an element")
        << QByteArray("<!DOCTYPE a [<!ENTITY e '<b>'><!ENTITY f '&e;'>]><a>&f;</b></a>")
        << "the entity \"e\" is no balanced piece of markup";
    QTest::newRow("number of entities") << manyEntities(10001) << "the document type declares more than 10000 entities";
    QTest::newRow("declaration without end") << QByteArray("<?xml version='1.0'") << "1:1: the XML declaration has no end (\"?>\")";
    QTest::newRow("declaration without end before a root") << QByteArray("<?xml version='1.0'><a/>")
                                                           << "the XML declaration has no end (\"?>\")";
    QTest::newRow("encoding") << QByteArray("<?xml version='1.0' encoding='UTF-16'?><a/>")
                              << "the document is not written in the encoding \"UTF-16\" that it declares";
    QTest::newRow("declaration") << "<?xml version='1.0' " + QByteArray(2000, ' ') + "?><a/>"
                                 << "the XML declaration is too long";
}

void tst_KelXMLGate::reasons()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, reason);
    KelErrorHistory errors;
    QDomDocument document;
    QVERIFY(!KelXMLLoader::setContent(document, xml, &errors));
    QCOMPARE(errors.entries().size(), 1);
    QVERIFY2(errors.last().toString().endsWith(reason), qPrintable(errors.last().toString()));
    QVERIFY(errors.last().line >= 1 && errors.last().column >= 1);
    KelErrorHistory::Entry error;
    QVERIFY(!streamReads(xml, true, &error));
    QVERIFY2(error.toString().endsWith(reason), qPrintable(error.toString()));
}

void tst_KelXMLGate::piecesOfAnySize_data()
{
    QTest::addColumn<int>("blanks");
    for (const int blanks : {8100, 8180, 8185, 8190, 8191, 8192, 8193, 8200})
        QTest::addRow("%d characters before", blanks) << blanks;
}

/// Whatever the reader's block tears apart.
void tst_KelXMLGate::piecesOfAnySize()
{
    QFETCH(int, blanks);
    const QByteArray before = "<a>" + QByteArray(blanks, ' ');
    for (const QByteArray &piece : {QByteArray("<!-- <b> - -- -->"), QByteArray("<![CDATA[ ]] > ] <b> ]]]>"),
                                    QByteArray("<?x ? <b> > ?>"), QByteArray("<b c='/>' d=\"'>\"/>"), QByteArray("\xc3\xa4\xe2\x82\xac")}) {
        const bool isTorn = piece.contains("--") && piece.contains("-- -");
        QDomDocument document;
        const bool readable = document.setContent(before + piece + "</a>", false);
        QCOMPARE(readable, !isTorn);
        QCOMPARE(KelXMLLoader::setContent(document, before + piece + "</a>"), readable);
        QCOMPARE(streamReads(before + piece + "</a>", false), readable);
        const QByteArray tooMany = before + piece + "<b" + attributes(1001, "") + "/></a>";
        KelErrorHistory::Entry error;
        QVERIFY(!streamReads(tooMany, false, &error));
        if (readable)
            QVERIFY2(error.message.contains(u"attributes"), qPrintable(error.message));
    }
}

void tst_KelXMLGate::theEarlierErrorCountsWhereItIsKnown()
{
    const QByteArray xml = "<a>\n<b></c>" + QByteArray(10000, ' ') + QByteArray("<d>").repeated(300);
    KelErrorHistory errors;
    QDomDocument document;
    QVERIFY(!KelXMLLoader::setContent(document, xml, &errors));
    QCOMPARE(errors.last().line, 2);
    QVERIFY(!errors.last().message.contains(u"nested"));
}

void tst_KelXMLGate::bytesThatAreNoText_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("reason");

    const QString noUtf8 = QStringLiteral("a byte that does not belong to a text in UTF-8");
    const QString half = QStringLiteral("the text ends in the middle of a character");
    const QString halfPair = QStringLiteral("half of a pair of surrogates");
    const QByteArray lines = "<a>\n" + QByteArray("<b c='d'/>\n").repeated(20000);
    QTest::newRow("in line 11") << "<a>\n" + QByteArray("<b/>\n").repeated(9) + "<!--\xff--></a>" << 11 << 5 << noUtf8;
    QTest::newRow("in line 20002") << lines + "<b>\xc0\xaf</b></a>" << 20002 << 4 << noUtf8;
    QTest::newRow("the first of two") << lines + "<b>\xff</b>\n\xff</a>" << 20002 << 4 << noUtf8;
    QTest::newRow("at the start of a line") << QByteArray("<a>\n\xff</a>") << 2 << 1 << noUtf8;
    QTest::newRow("behind a byte order mark") << QByteArray("\xef\xbb\xbf<a>\xff</a>") << 1 << 4 << noUtf8;
    QTest::newRow("behind a replacement character") << QByteArray("<a>\xef\xbf\xbd\xff</a>") << 1 << 5 << noUtf8;
    QTest::newRow("behind characters of two, three and four bytes")
        << QByteArray("<a>\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\xff</a>") << 1 << 8 << noUtf8; // the last one counts twice
    QTest::newRow("a character without its end") << QByteArray("<a>\xe2\x82</a>") << 1 << 4 << noUtf8;
    QTest::newRow("a character in too many bytes") << QByteArray("<a b='\xc0\xaf'/>") << 1 << 7 << noUtf8;
    QTest::newRow("a surrogate") << QByteArray("<a>\xed\xa0\x80</a>") << 1 << 4 << noUtf8;
    QTest::newRow("beyond all characters") << QByteArray("<a>\xf7\xbf\xbf\xbf</a>") << 1 << 4 << noUtf8;
    QTest::newRow("behind the document element") << QByteArray("<a/>\n\xff") << 2 << 1 << noUtf8;
    QTest::newRow("half a character at the end") << QByteArray("<a/>\n\xe2\x82") << 2 << 1 << half;
    QTest::newRow("US-ASCII") << QByteArray("<?xml version='1.0' encoding='US-ASCII'?><a>\xc3\xa4</a>") << 1 << 45
                              << "a byte that does not belong to a text in US-ASCII";
    QTest::newRow("Shift_JIS") << QByteArray("<?xml version='1.0' encoding='Shift_JIS'?>\n<a>\xff</a>") << 2 << 4
                               << "a byte that does not belong to a text in Shift_JIS";
    QTest::newRow("US-ASCII, in line 20002")
        << "<?xml version='1.0' encoding='US-ASCII'?>" + lines + "<b>\xff</b></a>" << 20002 << 4
        << "a byte that does not belong to a text in US-ASCII";
    QTest::newRow("UTF-16 with a byte too many") << encoded("UTF-16LE", "\xef\xbb\xbf<a>\n</a>") + '<' << 2 << 4 << half;
    const QByteArray x = encoded("UTF-16LE", "x");
    const QByteArray utf16 = encoded("UTF-16LE", "\xef\xbb\xbf<a>\nx</a>");
    QTest::newRow("UTF-16, a first surrogate") << QByteArray(utf16).replace(x, QByteArray("\x3d\xd8", 2)) << 2 << 2 << halfPair;
    QTest::newRow("UTF-16, a second surrogate") << QByteArray(utf16).replace(x, QByteArray("\x00\xde", 2)) << 2 << 1 << halfPair;
    QTest::newRow("UTF-32 with two bytes too many") << encoded("UTF-32BE", "\xef\xbb\xbf<a/>") + QByteArray(2, '\0') << 1 << 4 << half;
}

void tst_KelXMLGate::bytesThatAreNoText()
{
    QFETCH(QByteArray, xml);
    QFETCH(int, line);
    QFETCH(int, column);
    QFETCH(QString, reason);
    KelErrorHistory errors;
    QDomDocument document;
    QVERIFY(!KelXMLLoader::setContent(document, xml, &errors));
    QCOMPARE(errors.last().toString(), QStringLiteral("%1:%2: %3").arg(line).arg(column).arg(reason));
    for (const bool isPipe : {false, true}) {
        KelErrorHistory::Entry error;
        QVERIFY(!streamReads(xml, isPipe, &error));
        QCOMPARE(error.toString(), errors.last().toString());
    }
}

void tst_KelXMLGate::bytesThatAreNoTextWhereABlockEnds()
{
    for (const int block : {4096, 8192, 65536}) {
        for (int length = block - 12; length < block + 4; ++length) {
            // Whole characters before, one without its end, and more behind it.
            const QByteArray xml = "<a>\n" + QByteArray(length, 'x') + "\xe2\x82\xac\xe2\x82" + QByteArray(20000, 'x') + "</a>";
            KelErrorHistory errors;
            QDomDocument document;
            QVERIFY(!KelXMLLoader::setContent(document, xml, &errors));
            QCOMPARE(errors.last().line, 2);
            QCOMPARE(errors.last().column, length + 2);
            KelErrorHistory::Entry error;
            QVERIFY(!streamReads(xml, true, &error));
            QCOMPARE(error.line, 2);
            QCOMPARE(error.column, length + 2);
        }
    }
}

void tst_KelXMLGate::pairsOfSurrogatesAcrossBlocks()
{
    for (const char *encoding : {"UTF-16LE", "UTF-16BE", "UTF-32LE"}) {
        for (const char *before : {"", "x", "xx", "xxx"}) {
            const QByteArray text = before + QByteArray("\xf0\x9f\x98\x80").repeated(40000);
            const QByteArray xml = encoded(encoding, "\xef\xbb\xbf<a>" + text + "</a>");
            QDomDocument document;
            QVERIFY(KelXMLLoader::setContent(document, xml));
            QVERIFY(document.documentElement().text() == QString::fromUtf8(text));
            QVERIFY(streamReads(xml, true));
        }
    }
}

void tst_KelXMLGate::nothingOutsideIsRead()
{
    QFile secret(m_dir.filePath(QStringLiteral("secret")));
    QVERIFY(secret.open(QIODevice::WriteOnly));
    secret.write("secret");
    secret.close();
    const QByteArray url = "file://" + secret.fileName().toUtf8();
    for (const QByteArray &xml :
         {"<!DOCTYPE a [<!ENTITY e SYSTEM '" + url + "'>]><a>&e;</a>", "<!DOCTYPE a SYSTEM '" + url + "'><a/>",
          "<!DOCTYPE a [<!ENTITY % e SYSTEM '" + url + "'> %e;]><a/>",
          "<!DOCTYPE a PUBLIC 'p' '" + url + "' [<!ENTITY e SYSTEM '" + url + "'>]><a b='&e;'>&e;</a>"}) {
        QDomDocument document;
        KelXMLLoader::setContent(document, xml);
        QVERIFY(!document.documentElement().text().contains(u"secret"));
        QBuffer buffer;
        buffer.setData(xml);
        buffer.open(QIODevice::ReadOnly);
        KelXMLStreamCursor cursor(&buffer);
        QVERIFY(!cursor.attribute(u"b").contains(u"secret"));
        QVERIFY(!cursor.text().contains(u"secret"));
    }
}

void tst_KelXMLGate::aFileWithoutEndIsNotReadToItsEnd()
{
    const QFileInfo zeros(QStringLiteral("/dev/zero"));
    if (!zeros.exists())
        QSKIP("no such device here");
    KelErrorHistory errors;
    QVERIFY(KelXMLLoader::loadDocumentElement(zeros, &errors).isNull());
    QCOMPARE(errors.entries().size(), 1);
}

QTEST_GUILESS_MAIN(tst_KelXMLGate)
#include "tst_KelXMLGate.moc"

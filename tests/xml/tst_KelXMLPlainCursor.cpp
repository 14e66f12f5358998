// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelTestSupport.h>
#include <KelXMLGate.h>
#include <KelXMLLoader.h>
#include <KelXMLPlainCursor.h>
#include <KelXMLStreamCursor.h>

#include <QBuffer>
#include <QtTest>

#include <bit>
#include <functional>
#include <memory>
#include <random>

/// The cursor over the plain form, against the stream over the same bytes: without doubt both read the same, and what is
/// in doubt for the one is up to the other. All is done with blocks of many sizes, since each tag, character and
/// reference may lie across the end of one.
///
/// KEL_RANDOM_CASES sets another number of generated documents, KEL_RANDOM_SEED another beginning.
class tst_KelXMLPlainCursor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doubt_data();
    void doubt();
    void text_data();
    void text();
    void attribute_data();
    void attribute();
    void values_data();
    void values();
    void doubtEndsEverything();
    void attributeAfterAChildIsNull();
    void textEndsTheElement();
    void cursorsThatWereLeft();
    void skipsTheRestOfAHalfReadChild();
    void lineAndColumn();
    void noPlaceWithoutAWayBack();
    void startsWhereTheDeviceStands();
    void deviceThatFails();
    void longTextsInLittleMemory();
    void depth_data();
    void depth();
    void blockEndsAnywhere();
    void sameAsStreamOverGeneratedDocuments();
    void sameAsStreamOverDamagedDocuments();
};

namespace
{

constexpr qsizetype blockSizes[] = {64, 65, 71, 100, KelXMLPlainCursor::BLOCK_SIZE};

/// A cursor together with what it reads from.
struct Source
{
    explicit Source(const QByteArray &bytes, qsizetype blockSize = KelXMLPlainCursor::BLOCK_SIZE)
    {
        buffer.setData(bytes);
        buffer.open(QIODevice::ReadOnly);
        cursor = std::make_unique<KelXMLPlainCursor>(&buffer, blockSize);
    }

    QBuffer buffer;
    std::unique_ptr<KelXMLPlainCursor> cursor;
};

const QStringList nothing = {QStringLiteral("nothing")};

/// What `read` makes of the bytes; `nothing` if they are malformed or in doubt.
QStringList byStream(const QByteArray &bytes, const std::function<QStringList(KelXMLCursor &)> &read)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    KelXMLStreamCursor cursor(&buffer);
    const QStringList result = read(cursor);
    return cursor.finish() ? result : nothing;
}

QStringList byBytes(const QByteArray &bytes, qsizetype blockSize,
                    const std::function<QStringList(KelXMLCursor &)> &read)
{
    Source source(bytes, blockSize);
    const QStringList result = read(*source.cursor);
    const bool isFinished = source.cursor->finish();
    if (isFinished == source.cursor->isInDoubt())
        qFatal("finished and in doubt");
    return isFinished ? result : nothing;
}

const QStringView attributeNames[] = {u"a", u"b", u"lat", u"lon", u"xmlns", u"xmlns:x", u"x:a"};

void describeAttributes(KelXMLCursor &cursor, QStringList &result)
{
    for (const QStringView name : attributeNames) {
        const QString value = cursor.attribute(name);
        const double number = cursor.attributeDouble(name, 7.0);
        if (!value.isNull())
            result += value;
        result += QString::number(std::bit_cast<quint64>(number));
    }
}

/// Reads a part of a document in a way that `choices` decides: values of all kinds, children, or nothing.
void wander(KelXMLCursor &cursor, std::mt19937 &choices, QStringList &result)
{
    result += cursor.name().toString();
    if (choices() % 2)
        describeAttributes(cursor, result);
    if (choices() % 8 == 0)
        result += QStringLiteral("%1:%2").arg(cursor.line()).arg(cursor.column());
    switch (choices() % 8) {
    case 0:
        result += cursor.text();
        break;
    case 1:
        result += QString::number(std::bit_cast<quint64>(cursor.textDouble()));
        break;
    case 2: {
        const QDateTime time = cursor.textDateTime();
        result += time.isValid() ? time.toString(Qt::ISODateWithMs) : QStringLiteral("invalid");
        break;
    }
    case 3:
        break;
    default: {
        int left = choices() % 4 == 0 ? int(choices() % 3) : 1000000;
        while (left-- > 0 && cursor.nextChild())
            wander(cursor.child(), choices, result);
        if (choices() % 2)
            result += cursor.text(); // of what was left
        describeAttributes(cursor, result);
    }
    }
}

/// Compares a few ways through the document; returns whether it was beyond doubt.
bool compare(const QByteArray &xml, std::mt19937 &random)
{
    bool isPlain = true;
    const qsizetype blockSize = random() % 2 ? blockSizes[random() % std::size(blockSizes)] : 64 + random() % 200;
    for (int way = 0; way < 3; ++way) {
        const auto seed = random();
        const auto read = [seed](KelXMLCursor &cursor) {
            std::mt19937 choices(seed);
            QStringList result;
            wander(cursor, choices, result);
            return result;
        };
        const QStringList plain = byBytes(xml, blockSize, read);
        isPlain = plain != nothing;
        if (!isPlain)
            break; // the way does not matter
        const QStringList streamed = byStream(xml, read);
        if (plain != streamed) {
            qWarning().noquote() << "block size" << blockSize << "document" << xml << "\nplain" << plain << "\nstream"
                                 << streamed;
            QTest::qFail("differs", __FILE__, __LINE__);
        }
    }
    return isPlain;
}

} // namespace

void tst_KelXMLPlainCursor::doubt_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("doubt");

    const auto plain = [](const char *name, const QByteArray &xml) { QTest::newRow(name) << xml << false; };
    const auto doubtful = [](const char *name, const QByteArray &xml) { QTest::newRow(name) << xml << true; };

    plain("empty root", "<r/>");
    plain("root without content", "<r></r>");
    plain("elements and text", "<r>a<b>c</b>d</r>");
    plain("blanks within tags", "<r \n\t a='1' \r\n><b /></r \n>\n");
    plain("both quotes, each within the other", "<r a=\"it's\" b='\"'/>");
    plain("greater-than in text and attribute", "<r a='>'>></r>");
    plain("brackets", "<r>[1] ]a] </r>");
    plain("prefixes without declaration", "<g:r x:a='1'/>");
    plain("all characters of names", "<_aZ-9.x:y.z-_ A1='1'/>");
    plain("predefined entities", "<r a='&lt;&gt;&amp;&quot;&apos;'>&lt;&gt;&amp;&quot;&apos;</r>");
    plain("references by number", "<r a='&#32;&#x1F6B2;&#x10fFfF;'>&#0065;&#xe4;&#xFFFD;&#xD7FF;&#xE000;</r>");
    plain("UTF-8 of all lengths", "<r a='\xc3\xa4\xe2\x82\xac\xf0\x9f\x9a\xb2'>\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf"
                                  "\xee\x80\x80\xf0\x90\x80\x80\xf4\x8f\xbf\xbf</r>");
    plain("byte order mark", "\xef\xbb\xbf<r/>");
    plain("declaration", "<?xml version=\"1.0\"?><r/>");
    plain("declared UTF-8", "<?xml version='1.0' encoding='utf-8' ?>\n<r/>");
    plain("stand-alone", "<?xml version='1.0' encoding='UTF-8' standalone='no'?><r/>");
    plain("stand-alone without encoding", "<?xml version='1.0' standalone='yes'?><r/>");
    plain("byte order mark and declaration", "\xef\xbb\xbf<?xml version='1.0' encoding='UTF-8'?><r/>");
    plain("comments", "<!-- a --><r><!----><b/><!-- <&]]> - -x\xc3\xa4 --></r><!-- z -->");
    plain("comment in a text", "<r>a<!-- b -->c</r>");
    plain("blanks around the root", " \n\t\r\n<r/> \r\n\t\n");
    plain("carriage return before line feed", "<r>a\r\nb\r\n</r>\r\n");
    plain("as many attributes as allowed", [] {
        QByteArray attributes;
        for (int i = 0; i < KelXMLPlainCursor::MAXIMUM_ATTRIBUTES; ++i)
            attributes += " a" + QByteArray::number(i) + "='x'";
        return "<r" + attributes + "/>";
    }());
    plain("as long a name as allowed", "<" + QByteArray(KelXMLPlainCursor::MAXIMUM_NAME_LENGTH, 'n') + "/>");
    plain("a tag as long as a block",
          "<r><b a='" + QByteArray(KelXMLPlainCursor::BLOCK_SIZE - 9, 'x') + "'/></r>");

    doubtful("empty file", "");
    doubtful("blanks only", " \n");
    doubtful("text only", "text");
    doubtful("document type", "<!DOCTYPE r><r/>");
    doubtful("document type behind the root", "<r/><!DOCTYPE r>");
    doubtful("CDATA section", "<r><![CDATA[a]]></r>");
    doubtful("processing instruction before the root", "<?p i?><r/>");
    doubtful("processing instruction in the root", "<r><?p i?></r>");
    doubtful("processing instruction behind the root", "<r/><?p i?>");
    doubtful("other entity", "<r>&nbsp;</r>");
    doubtful("other entity in an attribute", "<r a='&nbsp;'/>");
    doubtful("lone ampersand", "<r>a & b</r>");
    doubtful("entity without semicolon", "<r>&amp </r>");
    doubtful("entity in other case", "<r>&AMP;</r>");
    doubtful("reference to nothing", "<r>&#;</r>");
    doubtful("reference to nothing, hexadecimal", "<r>&#x;</r>");
    doubtful("reference with a capital x", "<r>&#X41;</r>");
    doubtful("reference with a sign", "<r>&#+65;</r>");
    doubtful("reference to a hexadecimal digit without x", "<r>&#a;</r>");
    doubtful("reference to a control character", "<r>&#1;</r>");
    doubtful("reference to a line feed", "<r>a&#10;b</r>");
    doubtful("reference to a carriage return in an attribute", "<r a='&#13;'/>");
    doubtful("reference to a bracket", "<r>&#93;</r>");
    doubtful("reference to half a pair", "<r>&#xD800;</r>");
    doubtful("reference to the other half", "<r>&#xDFFF;</r>");
    doubtful("reference to no character", "<r>&#xFFFE;</r>");
    doubtful("reference to no character either", "<r>&#xFFFF;</r>");
    doubtful("reference beyond Unicode", "<r>&#x110000;</r>");
    doubtful("reference beyond 32 bits", "<r>&#4294967361;</r>");
    doubtful("two brackets", "<r>a]]b</r>");
    doubtful("end of a CDATA section", "<r>]]></r>");
    doubtful("Latin-1", "<?xml version='1.0' encoding='ISO-8859-1'?><r/>");
    doubtful("other name of UTF-8", "<?xml version='1.0' encoding='UTF8'?><r/>");
    doubtful("version 1.1", "<?xml version='1.1'?><r/>");
    doubtful("declaration without version", "<?xml encoding='UTF-8'?><r/>");
    doubtful("declaration without anything", "<?xml ?><r/>");
    doubtful("declaration in another order", "<?xml version='1.0' standalone='no' encoding='UTF-8'?><r/>");
    doubtful("declaration with something else", "<?xml version='1.0' a='b'?><r/>");
    doubtful("stand-alone perhaps", "<?xml version='1.0' standalone='maybe'?><r/>");
    doubtful("declaration that does not end", "<?xml version='1.0'><r/>");
    doubtful("declaration behind a blank", " <?xml version='1.0'?><r/>");
    doubtful("two declarations", "<?xml version='1.0'?><?xml version='1.0'?><r/>");
    doubtful("two byte order marks", "\xef\xbb\xbf\xef\xbb\xbf<r/>");
    doubtful("byte order mark in a text", "<r>a\xef\xbb\xbf</r>");
    doubtful("UTF-16 little endian", QByteArray("\xff\xfe<\0r\0/\0>\0", 10));
    doubtful("UTF-16 big endian without mark", QByteArray("\0<\0r\0/\0>", 8));
    doubtful("UTF-8, lone continuation", "<r>\x80</r>");
    doubtful("UTF-8, too long a form", "<r>\xc0\xaf</r>");
    doubtful("UTF-8, too long a form of three", "<r>\xe0\x9f\xbf</r>");
    doubtful("UTF-8, too long a form of four", "<r>\xf0\x8f\xbf\xbf</r>");
    doubtful("UTF-8, half a pair", "<r>\xed\xa0\x80</r>");
    doubtful("UTF-8, beyond Unicode", "<r>\xf4\x90\x80\x80</r>");
    doubtful("UTF-8, beyond four bytes", "<r>\xf5\x80\x80\x80</r>");
    doubtful("UTF-8, cut off", "<r>\xe2\x82</r>");
    doubtful("UTF-8, cut off at the end", "<r>\xe2\x82");
    doubtful("UTF-8, no character", "<r>\xef\xbf\xbe</r>");
    doubtful("UTF-8, no character either", "<r a='\xef\xbf\xbf'/>");
    doubtful("bad UTF-8 in an attribute", "<r a='\xe4'/>");
    doubtful("bad UTF-8 in a comment", "<r><!-- \xe4 --></r>");
    doubtful("bad UTF-8 behind the root", "<r/>\xe4");
    doubtful("letters beyond ASCII in a name", "<r\xc3\xa4/>");
    doubtful("zero in a text", QByteArray("<r>a\0b</r>", 10));
    doubtful("zero in a tag", QByteArray("<r \0/>", 6));
    doubtful("zero in an attribute", QByteArray("<r a='\0'/>", 10));
    doubtful("zero in a comment", QByteArray("<r><!-- \0 --></r>", 17));
    doubtful("zero behind the root", QByteArray("<r/>\0", 5));
    doubtful("control character in a text", "<r>\x0b</r>");
    doubtful("control character in an attribute", "<r a='\x1f'/>");
    doubtful("control character in a comment", "<r><!-- \x01 --></r>");
    doubtful("delete in a text", "<r>\x7f</r>");
    doubtful("carriage return alone in a text", "<r>a\rb</r>");
    doubtful("carriage return in an attribute", "<r a='\r\n'/>");
    doubtful("carriage return at the end", "<r/>\r");
    doubtful("the same attribute twice", "<r a='1' a='1'/>");
    doubtful("the same attribute twice, not side by side", "<r a='1' b='2' a='3'/>");
    doubtful("more attributes than allowed", [] {
        QByteArray attributes;
        for (int i = 0; i <= KelXMLPlainCursor::MAXIMUM_ATTRIBUTES; ++i)
            attributes += " a" + QByteArray::number(i) + "='x'";
        return "<r" + attributes + "/>";
    }());
    doubtful("too long a name", "<" + QByteArray(KelXMLPlainCursor::MAXIMUM_NAME_LENGTH + 1, 'n') + "/>");
    doubtful("too long an attribute name", "<r " + QByteArray(KelXMLPlainCursor::MAXIMUM_NAME_LENGTH + 1, 'n') + "=''/>");
    doubtful("a tag longer than a block",
             "<r><b a='" + QByteArray(KelXMLPlainCursor::BLOCK_SIZE - 8, 'x') + "'/></r>");
    doubtful("no blank between attributes", "<r a='1'b='2'/>");
    doubtful("attribute without value", "<r a/>");
    doubtful("attribute without quotes", "<r a=1/>");
    doubtful("attribute without name", "<r ='1'/>");
    doubtful("blanks around the equals sign", "<r a = '1'/>");
    doubtful("less-than in an attribute", "<r a='<'/>");
    doubtful("attribute that does not end", "<r a='1/>");
    doubtful("attribute in an end tag", "<r></r a='1'>");
    doubtful("two colons in a name", "<a:b:c/>");
    doubtful("colon at the start", "<:a/>");
    doubtful("colon at the end", "<a:/>");
    doubtful("digit behind the colon", "<a:1/>");
    doubtful("digit at the start", "<1/>");
    doubtful("blank before the name", "< r/>");
    doubtful("blank before the name of an end tag", "<r></ r>");
    doubtful("slash within the tag", "<r/ >");
    doubtful("other end tag", "<r></s>");
    doubtful("longer end tag", "<r></rs>");
    doubtful("shorter end tag", "<rs></r>");
    doubtful("crossed tags", "<r><a><b></a></b></r>");
    doubtful("end tag first", "</r>");
    doubtful("end tag too many", "<r></r></r>");
    doubtful("end tag missing", "<r><a></a>");
    doubtful("two roots", "<r/><r/>");
    doubtful("text behind the root", "<r/>x");
    doubtful("text before the root", "x<r/>");
    doubtful("reference behind the root", "<r/>&#32;");
    doubtful("two hyphens in a comment", "<r><!-- a -- b --></r>");
    doubtful("three hyphens at the end of a comment", "<r><!-- a ---></r>");
    doubtful("comment that does not end", "<r><!-- a -</r>");
    doubtful("comment that does not end behind the root", "<r/><!-- a");
    doubtful("comment longer than a block", "<r><!--" + QByteArray(KelXMLPlainCursor::BLOCK_SIZE, ' ') + "--></r>");
    doubtful("not quite a comment", "<r><!- a --></r>");
    doubtful("notation", "<r><!NOTATION a></r>");
}

void tst_KelXMLPlainCursor::doubt()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, doubt);
    for (const qsizetype blockSize : blockSizes) {
        Source source(xml, blockSize);
        QVERIFY(!source.cursor->isInDoubt() || doubt || blockSize < xml.size());
        const bool isFinished = source.cursor->finish();
        // A tag that is longer than a small block is in doubt although it is plain.
        if (doubt || blockSize == KelXMLPlainCursor::BLOCK_SIZE)
            QCOMPARE(isFinished, !doubt);
        QCOMPARE(source.cursor->isInDoubt(), !isFinished);
        QCOMPARE(source.cursor->finish(), isFinished); // once more
    }
    if (!doubt) {
        std::mt19937 random(3);
        for (int i = 0; i < 50; ++i)
            compare(xml, random);
    }
}

void tst_KelXMLPlainCursor::text_data()
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
    row("a run of line ends alone is dropped", "<r>\r\n\r\n</r>", "");
    row("blanks between elements are dropped", "<r> <b>x</b> <b>y</b> </r>", "xy");
    row("a blank beside a letter is kept", "<r><b>x</b> -<b>y</b></r>", "x -y");
    row("a comment splits a run", "<r>a<!-- c --> <!-- c -->b</r>", "ab");
    row("a comment within a word", "<r>a<!-- c -->b</r>", "ab");
    row("character reference", "<r>a&#65;&#x42;</r>", "aAB");
    row("a lone reference to a blank is dropped", "<r>&#32;</r>", "");
    row("a lone reference to a no-break space is dropped", "<r>&#160;</r>", "");
    row("a lone em space is dropped", "<r>\xe2\x80\x83</r>", "");
    row("a reference to a blank beside a letter is kept", "<r>a&#32;</r>", "a ");
    row("predefined entities", "<r>&lt;&amp;&gt;&quot;&apos;</r>", "<&>\"'");
    row("no entity within an entity", "<r>&amp;lt;</r>", "&lt;");
    row("carriage returns before line feeds disappear", "<r>a\r\nb\r\n\r\nc</r>", "a\nb\n\nc");
    row("brackets", "<r>[a] ]</r>", "[a] ]");
    row("UTF-8", "<r>Stra\xc3\x9f" "e</r>", QStringLiteral("Stra\u00dfe"));
    row("beyond the basic plane", "<r>\xf0\x9f\x9a\xb2&#x1F6B2;</r>", QStringLiteral("\U0001F6B2\U0001F6B2"));
}

void tst_KelXMLPlainCursor::text()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, text);
    for (const qsizetype blockSize : blockSizes) {
        Source source(xml, blockSize);
        const QString actual = source.cursor->text();
        QCOMPARE(actual, text);
        QVERIFY(!actual.isNull());
        QVERIFY(source.cursor->finish());
    }
    QCOMPARE(byStream(xml, [](KelXMLCursor &cursor) { return QStringList(cursor.text()); }), QStringList(text));
}

void tst_KelXMLPlainCursor::attribute_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("missing");

    const QString none;
    QTest::newRow("present") << QByteArray("<r a='1' b='2'/>") << "1" << false;
    QTest::newRow("last") << QByteArray("<r b='2' ab='3' a='1'/>") << "1" << false;
    QTest::newRow("missing") << QByteArray("<r b='2'/>") << none << true;
    QTest::newRow("no attributes") << QByteArray("<r/>") << none << true;
    QTest::newRow("empty is not missing") << QByteArray("<r a=''/>") << "" << false;
    QTest::newRow("other case") << QByteArray("<r A='1'/>") << none << true;
    QTest::newRow("with a prefix it is another name") << QByteArray("<r x:a='1'/>") << none << true;
    QTest::newRow("references") << QByteArray("<r a='&lt;&#65;&#x1F6B2;'/>") << QStringLiteral("<A\U0001F6B2") << false;
    QTest::newRow("quotes") << QByteArray("<r a='\"&apos;'/>") << "\"'" << false;
    QTest::newRow("UTF-8") << QByteArray("<r a='\xc3\xa4'/>") << QStringLiteral("\u00e4") << false;
    QTest::newRow("line feeds become blanks") << QByteArray("<r a='x\ny'/>") << "x y" << false;
    QTest::newRow("tabulators become blanks") << QByteArray("<r a='x\t\ty'/>") << "x  y" << false;
    QTest::newRow("blanks are kept") << QByteArray("<r a=' x '/>") << " x " << false;
}

void tst_KelXMLPlainCursor::attribute()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, value);
    QFETCH(bool, missing);
    Source source(xml);
    QCOMPARE(source.cursor->attribute(u"a"), value);
    QCOMPARE(source.cursor->attribute(u"a").isNull(), missing);
    QVERIFY(source.cursor->finish());
}

void tst_KelXMLPlainCursor::values_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<double>("number");

    QTest::newRow("number") << QByteArray("-12.75") << -12.75;
    QTest::newRow("blanks around") << QByteArray("\n 12.75 \n") << 12.75;
    QTest::newRow("reference") << QByteArray("1&#50;.75") << 12.75;
    QTest::newRow("exponent") << QByteArray("1e1") << 10.0;
    QTest::newRow("too great is 0") << QByteArray("1e400") << 0.0;
    QTest::newRow("empty is 0") << QByteArray() << 0.0;
    QTest::newRow("blanks are 0") << QByteArray("  ") << 0.0;
    QTest::newRow("letters are 0") << QByteArray("high") << 0.0;
    QTest::newRow("letters beyond ASCII are 0") << QByteArray("1\xc3\xa4") << 0.0;
    QTest::newRow("many digits") << QByteArray("53.1234567890123456789") << 53.1234567890123456789;
}

void tst_KelXMLPlainCursor::values()
{
    QFETCH(QByteArray, written);
    QFETCH(double, number);
    QCOMPARE(Source("<r>" + written + "</r>").cursor->textDouble(), number);
    QCOMPARE(Source("<r>" + written + "<b/></r>").cursor->textDouble(), number);
    QCOMPARE(Source("<r>" + written + "</r >").cursor->textDouble(), number);
    QCOMPARE(Source("<r a='" + written + "'/>").cursor->attributeDouble(u"a", 1.0), number);
    QCOMPARE(Source("<r a='" + written + "'/>").cursor->attributeDouble(u"b", 1.0), 1.0);
    QVERIFY(!Source("<r>" + written + "</r>").cursor->textDateTime().isValid());

    const QDateTime time(QDate(2023, 11, 14), QTime(22, 13, 20), Qt::UTC);
    QCOMPARE(Source("<r>2023-11-14T22:13:20Z</r>").cursor->textDateTime(), time);
    QCOMPARE(Source("<r><b>2023-11-14T</b>22:13:20Z</r>").cursor->textDateTime(), time);
    QCOMPARE(Source("<r>2023-11-14T23:13:20+01:00</r>").cursor->textDateTime(), time);
}

void tst_KelXMLPlainCursor::doubtEndsEverything()
{
    Source source("<r a='1'><b c='2'><d>text</d>&e;<f/></b><g/></r>");
    KelXMLCursor &root = *source.cursor;
    QVERIFY(root.nextChild());
    KelXMLCursor &b = root.child();
    QCOMPARE(b.attribute(u"c"), "2");
    QVERIFY(b.nextChild());
    QCOMPARE(b.child().text(), "text");
    QVERIFY(!source.cursor->isInDoubt());
    QVERIFY(!b.nextChild());
    QVERIFY(source.cursor->isInDoubt());
    QCOMPARE(b.text(), "");
    QVERIFY(b.attribute(u"c").isNull());
    QVERIFY(!root.nextChild());
    QCOMPARE(root.text(), "");
    QCOMPARE(root.textDouble(), 0.0);
    QCOMPARE(root.attributeDouble(u"a", 3.0), 3.0);
    QVERIFY(!source.cursor->finish());

    Source none("<!DOCTYPE r><r a='1'>1</r>");
    QVERIFY(none.cursor->isInDoubt());
    QVERIFY(none.cursor->name().isEmpty());
    QVERIFY(none.cursor->attribute(u"a").isNull());
    QCOMPARE(none.cursor->attributeDouble(u"a", 3.0), 3.0);
    QCOMPARE(none.cursor->text(), "");
    QVERIFY(!none.cursor->text().isNull());
    QCOMPARE(none.cursor->textDouble(), 0.0);
    QVERIFY(!none.cursor->textDateTime().isValid());
    QVERIFY(!none.cursor->nextChild());
    QCOMPARE(none.cursor->line(), -1);
    QCOMPARE(none.cursor->column(), -1);
}

void tst_KelXMLPlainCursor::attributeAfterAChildIsNull()
{
    Source source("<r a='1'><b a='2'/></r>");
    QCOMPARE(source.cursor->attribute(u"a"), "1");
    QVERIFY(source.cursor->nextChild());
    QVERIFY(source.cursor->attribute(u"a").isNull());
    QCOMPARE(source.cursor->attributeDouble(u"a", 7.0), 7.0);
    QCOMPARE(source.cursor->child().attribute(u"a"), "2");
}

void tst_KelXMLPlainCursor::textEndsTheElement()
{
    Source source("<r><a>1.5</a><b>2.5<c/></b><d/></r>");
    KelXMLCursor &root = *source.cursor;
    QVERIFY(root.nextChild());
    QCOMPARE(root.child().textDouble(), 1.5);
    QCOMPARE(root.child().textDouble(), 0.0);
    QCOMPARE(root.child().text(), "");
    QVERIFY(!root.child().nextChild());
    QVERIFY(root.nextChild());
    QCOMPARE(root.child().textDouble(), 2.5);
    QVERIFY(!root.child().nextChild());
    QVERIFY(root.nextChild());
    QCOMPARE(root.child().name(), u"d");
    QVERIFY(!root.nextChild());
    QVERIFY(!root.nextChild());
}

void tst_KelXMLPlainCursor::cursorsThatWereLeft()
{
    Source source("<r><a><b/></a></r>");
    KelXMLCursor &root = *source.cursor;
    QVERIFY(root.nextChild());
    KelXMLCursor &a = root.child();
    QVERIFY(!root.nextChild());
    QVERIFY(!a.nextChild());
    QCOMPARE(a.text(), "");
    QVERIFY(source.cursor->finish());
}

void tst_KelXMLPlainCursor::skipsTheRestOfAHalfReadChild()
{
    Source source("<r><a><b><c>1</c><c>2</c></b><b/></a><d>3</d></r>");
    KelXMLCursor &root = *source.cursor;
    QVERIFY(root.nextChild());
    QVERIFY(root.child().nextChild());
    QVERIFY(root.child().child().nextChild());
    QCOMPARE(root.child().child().child().name(), u"c");
    QVERIFY(root.nextChild());
    QCOMPARE(root.child().name(), u"d");
    QCOMPARE(root.child().text(), "3");
}

void tst_KelXMLPlainCursor::lineAndColumn()
{
    for (const QByteArray &mark : {QByteArray(), QByteArray("\xef\xbb\xbf")}) {
        Source source(mark + "<r>\n  <a/>\r\n\r\n  <b\n  x='1'>text</b>\xc3\xa4\xf0\x9f\x9a\xb2<c/></r>", 64);
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
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().line(), 5);
        QCOMPARE(root.child().column(), 23);
        QVERIFY(source.cursor->finish());
    }
}

namespace
{

/// A device that cannot go back, gives little at a time, and perhaps fails.
class Trickle : public QIODevice
{
public:
    explicit Trickle(const QByteArray &bytes, qsizetype failsAt = -1)
        : m_bytes(bytes)
        , m_failsAt(failsAt)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        if (m_at == m_failsAt)
            return -1;
        const auto count = qMin(maximum, qMin(qint64(7), m_bytes.size() - m_at));
        std::copy_n(m_bytes.constData() + m_at, count, data);
        m_at += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_at = 0;
    qint64 m_failsAt;
};

} // namespace

void tst_KelXMLPlainCursor::noPlaceWithoutAWayBack()
{
    Trickle device("<r><a>text &amp; more</a></r>");
    KelXMLPlainCursor cursor(&device);
    QCOMPARE(cursor.line(), -1);
    QCOMPARE(cursor.column(), -1);
    QVERIFY(cursor.nextChild());
    QCOMPARE(cursor.child().text(), "text & more");
    QVERIFY(cursor.finish());
}

void tst_KelXMLPlainCursor::startsWhereTheDeviceStands()
{
    QBuffer buffer;
    buffer.setData("rubbish\n<r>\n<a/></r>");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QVERIFY(buffer.seek(8));
    KelXMLPlainCursor cursor(&buffer);
    QCOMPARE(cursor.name(), u"r");
    QCOMPARE(cursor.line(), 1);
    QVERIFY(cursor.nextChild());
    QCOMPARE(cursor.child().line(), 2);
    QCOMPARE(cursor.child().column(), 4);
    QVERIFY(cursor.finish());
}

void tst_KelXMLPlainCursor::deviceThatFails()
{
    const QByteArray xml = "<r><a>text</a></r>\n   ";
    for (qsizetype at = 0; at < xml.size(); at += 7) {
        Trickle device(xml, at);
        KelXMLPlainCursor cursor(&device);
        while (cursor.nextChild()) { }
        QVERIFY2(!cursor.finish(), qPrintable(QString::number(at)));
        QVERIFY(cursor.isInDoubt());
    }
}

void tst_KelXMLPlainCursor::longTextsInLittleMemory()
{
    // Texts may be longer than a block, whatever they hold.
    QByteArray written;
    QString text;
    for (int i = 0; i < 20000; ++i) {
        written += i % 3 ? "\xe2\x82\xac" : i % 2 ? "&amp;\r\n" : "8.5,53.1 ]";
        text += i % 3 ? QStringLiteral("\u20ac") : i % 2 ? QStringLiteral("&\n") : QStringLiteral("8.5,53.1 ]");
    }
    for (const qsizetype blockSize : blockSizes) {
        Source source("<r><a>" + written + "</a>" + QByteArray(1000, ' ') + "<b/></r>", blockSize);
        QVERIFY(source.cursor->nextChild());
        QCOMPARE(source.cursor->child().text(), text);
        QVERIFY(source.cursor->nextChild());
        QVERIFY(source.cursor->finish());
    }
}

void tst_KelXMLPlainCursor::depth_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("doubt");
    QTest::newRow("as deep as trees may be") << KelXMLGate::MAXIMUM_DEPTH << false;
    QTest::newRow("one level deeper") << KelXMLGate::MAXIMUM_DEPTH + 1 << true;
    QTest::newRow("deeper than any stack") << 1000000 << true;
}

void tst_KelXMLPlainCursor::depth()
{
    QFETCH(int, depth);
    QFETCH(bool, doubt);
    const QByteArray xml = QByteArray("<a>").repeated(depth) + "x" + QByteArray("</a>").repeated(depth);
    QCOMPARE(Source(xml).cursor->finish(), !doubt);
    Source source(xml);
    QCOMPARE(source.cursor->text(), doubt ? "" : "x");
    QCOMPARE(source.cursor->isInDoubt(), doubt);
    // An element that ends in its start tag is one level, too.
    const QByteArray empty = QByteArray("<a>").repeated(depth - 1) + "<a/>" + QByteArray("</a>").repeated(depth - 1);
    QCOMPARE(Source(empty).cursor->finish(), !doubt);
}

void tst_KelXMLPlainCursor::blockEndsAnywhere()
{
    // Every byte of the document once at the end of a block, and nothing of it longer than one.
    const QByteArray xml = "<gpx:g a='1'>\r\n <!-- c\xc3\xa4 --><t:rk b=\"&quot;\xe2\x82\xac\" lat='5.25'>x]&#x1F6B2;\r\n"
                           "\xf0\x9f\x9a\xb2</t:rk ><e>-1.5</e>\r\n<f>2023-11-14T22:13:20Z</f><l/></gpx:g>\r\n<!-- -->";
    for (int pad = 0; pad < 200; ++pad) {
        const QByteArray padded = QByteArray(pad, '\n') + xml;
        Source source(padded, 64);
        KelXMLCursor &root = *source.cursor;
        QCOMPARE(root.name(), u"gpx:g");
        QCOMPARE(root.attribute(u"a"), "1");
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().name(), u"t:rk");
        QCOMPARE(root.child().attribute(u"b"), QStringLiteral("\"\u20ac"));
        QCOMPARE(root.child().attributeDouble(u"lat", 1.0), 5.25);
        QCOMPARE(root.child().text(), QStringLiteral("x]\U0001F6B2\n\U0001F6B2"));
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().textDouble(), -1.5);
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().textDateTime(), QDateTime(QDate(2023, 11, 14), QTime(22, 13, 20), Qt::UTC));
        QVERIFY(root.nextChild());
        QCOMPARE(root.child().name(), u"l");
        QCOMPARE(root.child().line(), pad + 4);
        QVERIFY(!root.nextChild());
        QVERIFY(source.cursor->finish());
    }
}

namespace
{

/// What plain documents are made of, and now and then what they are not.
const QByteArray pieces[] = {
    "<a>", "</a>", "<b a='1'>", "</b>", "<b/>", "<x:c x:a='2' b=''/>", "<trk lat=' 5' lon='x'>", "</trk>", "<c\n>",
    "<trkpt lat=\"53.14375\" lon=\"-8.2\">", "</trkpt>", "<ele>12.5</ele>", "<time>2023-11-14T22:13:20Z</time>",
    "<!-- c -->", "\n    ", "\r\n", " ", "\n", "text", "&#32;", "&#160;", "&amp;", "&lt;", "12.7", "-3",
    "\t \n", "&#x41;", "\xc3\xa4", "\xe2\x80\x83", "]", ">", "<a b=\"&#x1F6B2;\n\">", "1 2", "\xf0\x9f\x9a\xb2",
    "<a xmlns='urn:a' xmlns:x=\"urn:x\">", "<e a='&lt;&quot;' b=\"'\xe2\x82\xac\t'\"/>", "2023-11-14T22:13:20.5Z"};
const QByteArray oddities[] = {"<![CDATA[ ]]>", "<?p i?>", "&e;", "]]>", "<!DOCTYPE q>", "\r", "&#10;", "&", "\x01",
                               "<a a='1' a='2'/>", "<b a = '1'/>", "\xef\xbb\xbf", "\xe4", "\x7f", "<-", "<1/>"};
const QByteArray prologs[] = {"", "", "\n", "<?xml version='1.0' encoding='UTF-8'?>\n", "\xef\xbb\xbf",
                              "<!-- c -->\r\n", "<?xml version=\"1.0\" standalone='no' ?>"};
const QByteArray epilogs[] = {"", "", "\n", "\r\n", "<!-- c -->", " \n<!-- c -->\n\t"};

QByteArray generate(std::mt19937 &random)
{
    QByteArray xml = prologs[random() % std::size(prologs)] + (random() % 2 ? "<r>" : "<r lat='1'\n a=\"2\">");
    QList<QByteArray> open;
    const int count = int(random() % 40);
    for (int i = 0; i < count; ++i) {
        const QByteArray &piece = random() % 500 ? pieces[random() % std::size(pieces)]
                                                 : oddities[random() % std::size(oddities)];
        if (piece.startsWith("</")) {
            if (!open.isEmpty())
                xml += "</" + open.takeLast() + (random() % 8 ? ">" : "\n>");
            continue;
        }
        if (piece.startsWith('<') && piece.at(1) != '!' && piece.at(1) != '?' && !piece.endsWith("/>")
            && !piece.contains("</")) {
            const QByteArray name = piece.mid(1);
            qsizetype length = 0;
            while (length < name.size() && (std::isalnum(static_cast<unsigned char>(name.at(length)))
                                            || name.at(length) == ':'))
                ++length;
            open.append(name.left(length));
        }
        xml += piece;
    }
    while (!open.isEmpty())
        xml += "</" + open.takeLast() + '>';
    return xml + "</r>" + epilogs[random() % std::size(epilogs)];
}

void damage(QByteArray &xml, std::mt19937 &random)
{
    static const char telling[] = "<>/='\"&;#]-!? \n\r\tax:.1\0\x80\xc3\xe2\xf0\xff";
    const auto place = [&] { return int(random() % uint(xml.size())); };
    const auto byte = [&] { return random() % 2 ? telling[random() % (sizeof(telling) - 1)] : char(random() % 256); };
    for (uint n = random() % 3; !xml.isEmpty(); --n) {
        switch (random() % 6) {
        case 0:
            xml.truncate(place());
            break;
        case 1:
            xml.remove(place(), int(1 + random() % 3));
            break;
        case 2:
            xml[place()] = byte();
            break;
        case 3:
            xml[place()] = char(xml.at(place()) ^ char(1 << random() % 8));
            break;
        case 4:
            xml.insert(place(), byte());
            break;
        default: {
            const QByteArray copy = xml.mid(place(), int(random() % 20));
            xml.insert(place(), copy);
        }
        }
        if (n == 0)
            break;
    }
}

} // namespace

void tst_KelXMLPlainCursor::sameAsStreamOverGeneratedDocuments()
{
    std::mt19937 random(KelTestSupport::randomSeed(20231114));
    const int count = KelTestSupport::randomCases(10000);
    int plain = 0;
    for (int i = 0; i < count; ++i) {
        plain += compare(generate(random), random) ? 1 : 0;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(plain > count / 2, qPrintable(QString::number(plain))); // else this tests nothing
    if (count > 10000)
        qInfo("%d of %d documents were plain", plain, count);
}

void tst_KelXMLPlainCursor::sameAsStreamOverDamagedDocuments()
{
    std::mt19937 random(KelTestSupport::randomSeed(20231115));
    const int count = KelTestSupport::randomCases(20000);
    int plain = 0;
    for (int i = 0; i < count; ++i) {
        QByteArray xml = generate(random);
        damage(xml, random);
        plain += compare(xml, random) ? 1 : 0;
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(plain > count / 20, qPrintable(QString::number(plain)));
    if (count > 20000)
        qInfo("%d of %d damaged documents were plain", plain, count);
}

QTEST_GUILESS_MAIN(tst_KelXMLPlainCursor)
#include "tst_KelXMLPlainCursor.moc"

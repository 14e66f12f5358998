// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// KelXMLLongTexts and KelXMLTextReader against KelXMLLoader. KEL_RANDOM_CASES sets another number of random documents,
// KEL_RANDOM_SEED another beginning.

#include <KelErrorHistory.h>
#include <KelXMLGate.h>
#include <KelXMLLoader.h>
#include <KelXMLLongTexts.h>
#include <KelXMLTextHandler.h>
#include <KelXMLTextReader.h>

#include <KelTestSupport.h>

#include <QDomDocument>
#include <QObject>
#include <QXmlStreamAttributes>
#include <QtTest>

#include <random>

class tst_KelXMLLongTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalsTheLoader_data();
    void equalsTheLoader();
    void textIsTakenOutAndPutBack();
    void textsInPlace();
    void longTextsAreHandedOverWhereTheyLie();
    void randomDocumentsEqualTheLoaders();
};

namespace
{

/// So many tuples, blanks around them.
QString tuples(int count)
{
    QString text = QStringLiteral("\n");
    for (int i = 0; i < count; ++i)
        text += QStringLiteral(" 8.%1,53.%2,%3\n").arg(1000000 + 37 * i).arg(2000000 + 41 * i).arg(i % 90);
    return text;
}

/// Every node with its kind, name, value and attributes.
QString describe(const QDomNode &node)
{
    QString text = QStringLiteral("(%1 %2 [%3]").arg(node.nodeType()).arg(node.nodeName(), node.nodeValue());
    const QDomNamedNodeMap attributes = node.attributes();
    QStringList names;
    for (int i = 0; i < attributes.count(); ++i)
        names.append(attributes.item(i).nodeName() + QLatin1Char('=') + attributes.item(i).nodeValue());
    names.sort();
    text += names.join(QLatin1Char('|'));
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        text += describe(child);
    return text + QLatin1Char(')');
}

QString describe(const KelErrorHistory &errors)
{
    QString text;
    for (const KelErrorHistory::Entry &entry : errors.entries()) {
        text += QStringLiteral("%1:%2:%3:%4;")
                    .arg(entry.fileName, QString::number(entry.line), QString::number(entry.column), entry.message);
    }
    return text;
}

/// Of a tree's nodes those that a text reader hands over.
QString describeForReader(const QDomNode &node)
{
    if (node.isText())
        return QLatin1Char('[') + node.nodeValue() + QLatin1Char(']');
    QString text;
    const bool isElement = node.isElement();
    if (isElement) {
        text = QLatin1Char('(') + node.nodeName();
        const QDomNamedNodeMap attributes = node.attributes();
        QStringList names;
        for (int i = 0; i < attributes.count(); ++i)
            names.append(attributes.item(i).nodeName() + QLatin1Char('=') + attributes.item(i).nodeValue());
        names.sort();
        text += names.join(QLatin1Char('|'));
    }
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        text += describeForReader(child);
    return isElement ? text + QLatin1Char(')') : text;
}

/// Writes down what it is given, in the form of the above.
class DescribingHandler : public KelXMLTextHandler
{
public:
    explicit DescribingHandler(const QString &document)
        : m_document(document)
    {
    }

    void begin() override
    {
        description.clear();
        liesInTheDocument = true;
    }
    void startElement(QStringView name, const QXmlStreamAttributes &attributes) override
    {
        description += QLatin1Char('(') + name.toString();
        QStringList names;
        for (const QXmlStreamAttribute &attribute : attributes)
            names.append(attribute.qualifiedName().toString() + QLatin1Char('=') + attribute.value().toString());
        names.sort();
        description += names.join(QLatin1Char('|'));
    }
    void text(QStringView text, bool stays) override
    {
        description += QLatin1Char('[') + text.toString() + QLatin1Char(']');
        const bool lies = text.data() >= m_document.constData() && text.data() < m_document.constData() + m_document.size();
        liesInTheDocument = liesInTheDocument && (lies || !stays);
        someStay = someStay || stays;
    }
    void endElement() override { description += QLatin1Char(')'); }

    QString description;
    bool liesInTheDocument = true;
    bool someStay = false;

private:
    const QString &m_document;
};

/// Whether a text reader hands over what the tree has, with the same errors.
bool readerAgrees(const QString &xml, bool *someStay = nullptr)
{
    QDomDocument document;
    KelErrorHistory expectedErrors;
    const bool isWellFormed = KelXMLLoader::setContent(document, xml, &expectedErrors);
    DescribingHandler handler(xml);
    KelErrorHistory errors;
    if (KelXMLTextReader::read(xml, handler, &errors) != isWellFormed || describe(errors) != describe(expectedErrors))
        return false;
    if (someStay)
        *someStay = handler.someStay;
    return handler.liesInTheDocument && (!isWellFormed || handler.description == describeForReader(document));
}

/// The tree and the errors that the function makes of the text.
template<typename Function>
QString outcome(const QString &xml, Function setContent)
{
    QDomDocument document;
    KelErrorHistory errors;
    const bool ok = setContent(document, xml, &errors);
    return QString::number(ok) + describe(document) + describe(errors);
}

QString outcome(const QString &xml)
{
    return outcome(xml, [](QDomDocument &document, const QString &text, KelErrorHistory *errors) {
        return KelXMLLongTexts::setContent(document, text, errors);
    });
}

QString outcomeInPlace(const QString &xml)
{
    return outcome(xml, [](QDomDocument &document, const QString &text, KelErrorHistory *errors) {
        return KelXMLLongTexts::setContentInPlace(document, text, QStringLiteral("b"), errors);
    });
}

QString outcomeOfLoader(const QString &xml)
{
    return outcome(xml, [](QDomDocument &document, const QString &text, KelErrorHistory *errors) {
        return KelXMLLoader::setContent(document, text, errors);
    });
}

} // namespace

void tst_KelXMLLongTexts::equalsTheLoader_data()
{
    QTest::addColumn<QString>("xml");
    const QString text = tuples(50);
    const auto row = [&text](const char *name, const char *xml) {
        QTest::newRow(name) << QString::fromUtf8(xml).replace(QLatin1Char('@'), text);
    };
    row("empty", "");
    row("short", "<a>1,2</a>");
    row("long", "<a>@</a>");
    row("several", "<a><b>@</b><b>@1</b><c>@2</c></a>");
    row("beside elements", "<a>@<b/>@</a>");
    row("attributes", "<a b='@' c=\"x>y\" d='\"'>@</a>");
    row("an attribute that ends nowhere", "<a b='>@</a>");
    row("comment", "<a><!-- <b>@</b> -->@</a>");
    row("before a comment", "<a>@<!-- -->@</a>");
    row("comment without end", "<a><b>@</b><!-- </a>");
    row("CDATA", "<a><![CDATA[<b>@</b>]]></a>");
    row("before CDATA", "<a>@<![CDATA[@]]>@</a>");
    row("CDATA without end", "<a><b>@</b><![CDATA[ </a>");
    row("instruction", "<?xml version='1.0'?><a><?x <b>@</b>?>@</a>");
    row("instruction without end", "<a><b>@</b><?x </a>");
    row("document type", "<!DOCTYPE a [<!ENTITY e '5'>]><a>@&e;</a>");
    row("entity at the end", "<a>@&amp;</a>");
    row("entity before", "<a>&lt;@</a>");
    row("unknown entity", "<a>@&nope;</a>");
    row("end of a CDATA section in a text", "<a>@]]></a>");
    row("bracket in a text", "<a>@]</a>");
    row("greater than in a text", "<a>@></a>");
    row("no ASCII", "<a>@\xc3\xa4</a>");
    row("the mark's own character", "<a><b>\xee\x80\x80"
                                    "0</b><c>@</c></a>");
    row("a reference to the mark's character", "<a><b>&#xe000;0</b><c>@</c></a>");
    row("a reference to it afterwards", "<a><c>@</c><b>&#xE000;0</b></a>");
    row("a reference to the next mark afterwards", "<a><c>@</c><b>&#57344;1</b></a>");
    row("carriage return", "<a>@\r\n@\r</a>");
    row("forbidden character", "<a>@\x01</a>");
    row("outside of the root", "<a/>@<b/>");
    row("before the root", "@<a/>");
    row("malformed behind", "<a><b>@</b><c></a>");
    row("not closed", "<a><b>@</b>");
    row("in a tag", "<a @><b>@</b></a>");
    QTest::newRow("blanks alone") << QStringLiteral("<a>%1<b/></a>").arg(QString(1000, QLatin1Char(' ')));
    QTest::newRow("byte order mark") << QChar(0xfeff) + QStringLiteral("<a>%1</a>").arg(text);
    QTest::newRow("null character") << QStringLiteral("<a>%1").arg(text) + QChar(0) + QStringLiteral("</a>");
    QTest::newRow("too deep") << QStringLiteral("<a>").repeated(KelXMLGate::MAXIMUM_DEPTH + 1) + text
            + QStringLiteral("</a>").repeated(KelXMLGate::MAXIMUM_DEPTH + 1);
    for (const int length : {KelXMLLongTexts::MINIMUM_LENGTH - 1, KelXMLLongTexts::MINIMUM_LENGTH}) {
        QTest::addRow("%d characters", length)
            << QStringLiteral("<a>%1</a>").arg(QString(length, QLatin1Char('7')));
    }
}

void tst_KelXMLLongTexts::equalsTheLoader()
{
    QFETCH(QString, xml);
    QCOMPARE(outcome(xml), outcomeOfLoader(xml));
    QCOMPARE(outcomeInPlace(xml), outcomeOfLoader(xml));
    QVERIFY(readerAgrees(xml));
}

void tst_KelXMLLongTexts::textIsTakenOutAndPutBack()
{
    // Not by way of the loader: the line that the node remembers tells.
    const QString text = tuples(50);
    QDomDocument document;
    QVERIFY(KelXMLLongTexts::setContent(document, QStringLiteral("<a><b>%1</b><c/></a>").arg(text)));
    QCOMPARE(document.documentElement().firstChildElement(QStringLiteral("b")).text(), text);
    QCOMPARE(document.documentElement().firstChildElement(QStringLiteral("c")).lineNumber(), 1);
}

void tst_KelXMLLongTexts::textsInPlace()
{
    const QString text = tuples(50);
    const QString xml = QStringLiteral("<a><b>%1</b><c>%1</c><b>%1<d/>%1</b>%1</a>").arg(text);
    QDomDocument document;
    QVERIFY(KelXMLLongTexts::setContentInPlace(document, xml, QStringLiteral("b")));
    const auto isInPlace = [&xml](const QDomNode &node) {
        const QString value = node.nodeValue();
        return value.constData() >= xml.constData() && value.constData() < xml.constData() + xml.size();
    };
    const QDomElement first = document.documentElement().firstChildElement();
    const QDomElement second = first.nextSiblingElement();
    const QDomElement third = second.nextSiblingElement();
    QCOMPARE(first.firstChild().nodeValue(), text);
    QVERIFY(isInPlace(first.firstChild()));
    // Of another name, beside something else, outside.
    for (const QDomNode &node : {second.firstChild(), third.firstChild(), third.lastChild(), third.nextSibling()}) {
        QCOMPARE(node.nodeValue(), text);
        QVERIFY(!isInPlace(node));
    }
}

void tst_KelXMLLongTexts::longTextsAreHandedOverWhereTheyLie()
{
    bool someStay = false;
    QVERIFY(readerAgrees(QStringLiteral("<a>1<b>%1</b>2</a>").arg(tuples(50)), &someStay));
    QVERIFY(someStay);
    QVERIFY(readerAgrees(QChar(0xfeff) + QStringLiteral("<a>1<b>%1</b>2</a>").arg(tuples(50)), &someStay));
    QVERIFY(someStay);
    QVERIFY(readerAgrees(QStringLiteral("<a>1<b>%1&#xe000;0</b>2</a>").arg(tuples(50)), &someStay));
    QVERIFY(!someStay);
}

void tst_KelXMLLongTexts::randomDocumentsEqualTheLoaders()
{
    const QString text = tuples(14); // a little more than the minimum
    const QStringList pieces{
        QStringLiteral("<a>"), QStringLiteral("</a>"), QStringLiteral("<a>") + text + QStringLiteral("</a>"),
        QStringLiteral("<b x='>'>"), QStringLiteral("</b>"), QStringLiteral("<c/>"), text, text, QStringLiteral(" "),
        QStringLiteral("<!--"), QStringLiteral("-->"), QStringLiteral("<!-- -->"), QStringLiteral("<![CDATA["),
        QStringLiteral("]]>"), QStringLiteral("<?p "), QStringLiteral("?>"), QStringLiteral("&amp;"),
        QStringLiteral("&#xe000;0"), QStringLiteral("'"), QStringLiteral("\""), QStringLiteral(">"),
        QStringLiteral("\r\n"), QStringLiteral("x")};
    std::mt19937 random(KelTestSupport::randomSeed(7));
    const int cases = KelTestSupport::randomCases(3000);
    for (int i = 0; i < cases; ++i) {
        // Every second one well-formed as long as chance does not meddle.
        QString inner;
        QStringList open;
        for (uint count = random() % 9; count > 0; --count) {
            const QString &piece = pieces.at(int(random() % (i % 2 ? 9u : uint(pieces.size()))));
            if (piece == QLatin1String("<a>") || piece == QLatin1String("<b x='>'>"))
                open.append(piece.at(1));
            if (i % 2 && piece.startsWith(QLatin1String("</"))) {
                inner += open.isEmpty() ? QString() : QStringLiteral("</%1>").arg(open.takeLast());
                continue;
            }
            inner += piece;
        }
        while (!open.isEmpty())
            inner += QStringLiteral("</%1>").arg(open.takeLast());
        const QString xml = QStringLiteral("<r>") + inner + QStringLiteral("</r>");
        const QString expected = outcomeOfLoader(xml);
        QVERIFY2(outcome(xml) == expected, qPrintable(xml));
        QVERIFY2(outcomeInPlace(xml) == expected, qPrintable(xml));
        QVERIFY2(readerAgrees(xml), qPrintable(xml));
    }
}

QTEST_GUILESS_MAIN(tst_KelXMLLongTexts)
#include "tst_KelXMLLongTexts.moc"

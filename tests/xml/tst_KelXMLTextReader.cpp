// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// KelXMLTextReader against KelXMLLoader. KEL_RANDOM_CASES sets another number of random documents, KEL_RANDOM_SEED another
// beginning.

#include <KelXMLGate.h>
#include <KelXMLMarkedText.h>

#include <KelRecordedXML.h>
#include <KelTestSupport.h>

#include <QObject>
#include <QtTest>

#include <random>

class tst_KelXMLTextReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalsTheLoader_data();
    void equalsTheLoader();
    void longTextsAreHandedOverWhereTheyLie_data();
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

} // namespace

void tst_KelXMLTextReader::equalsTheLoader_data()
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
    for (const int length : {KelXMLMarkedText::MINIMUM_LENGTH - 1, KelXMLMarkedText::MINIMUM_LENGTH}) {
        QTest::addRow("%d characters", length)
            << QStringLiteral("<a>%1</a>").arg(QString(length, QLatin1Char('7')));
    }
}

void tst_KelXMLTextReader::equalsTheLoader()
{
    QFETCH(QString, xml);
    const KelRecordedXML recorded(xml);
    QCOMPARE(recorded.lines(), KelRecordedXML::linesOfTree(xml));
    QVERIFY(recorded.textsStay());
}

void tst_KelXMLTextReader::longTextsAreHandedOverWhereTheyLie_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<bool>("stays");
    const QString text = tuples(50);
    QTest::newRow("long") << QStringLiteral("<a>1<b>%1</b>2</a>").arg(text) << true;
    QTest::newRow("byte order mark") << QChar(0xfeff) + QStringLiteral("<a>1<b>%1</b>2</a>").arg(text) << true;
    QTest::newRow("a reference behind it") << QStringLiteral("<a>1<b>%1&#xe000;0</b>2</a>").arg(text) << false;
    QTest::newRow("a reference that looks like the mark")
        << QStringLiteral("<a><b>%1</b><c>&#xe000;1</c></a>").arg(text) << false;
    QTest::newRow("long enough")
        << QStringLiteral("<a>%1</a>").arg(QString(KelXMLMarkedText::MINIMUM_LENGTH, QLatin1Char('7'))) << true;
    QTest::newRow("too short")
        << QStringLiteral("<a>%1</a>").arg(QString(KelXMLMarkedText::MINIMUM_LENGTH - 1, QLatin1Char('7'))) << false;
}

void tst_KelXMLTextReader::longTextsAreHandedOverWhereTheyLie()
{
    QFETCH(QString, xml);
    QFETCH(bool, stays);
    const KelRecordedXML recorded(xml);
    QCOMPARE(recorded.lines(), KelRecordedXML::linesOfTree(xml));
    QCOMPARE(recorded.hasTextThatStays(), stays);
    QVERIFY(recorded.textsStay());
}

void tst_KelXMLTextReader::randomDocumentsEqualTheLoaders()
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
        const KelRecordedXML recorded(xml);
        QVERIFY2(recorded.lines() == KelRecordedXML::linesOfTree(xml), qPrintable(xml));
        QVERIFY2(recorded.textsStay(), qPrintable(xml));
    }
}

QTEST_GUILESS_MAIN(tst_KelXMLTextReader)
#include "tst_KelXMLTextReader.moc"

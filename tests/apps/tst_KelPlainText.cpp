// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelPlainText.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// Texts from strangers, made fit for terminals, JSON and XML.
class tst_KelPlainText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void characters_data();
    void characters();
    void shortened();
};

void tst_KelPlainText::characters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("plain");
    QTest::addColumn<QString>("escape"); // in JSON, where it is not plain
    QTest::addColumn<bool>("forXml");

    const auto row = [](const char *name, char32_t code, bool plain, const char *escape, bool forXml) {
        const QString text = code > 0xffff ? QString::fromUcs4(&code, 1) : QString(QChar(static_cast<ushort>(code)));
        QTest::newRow(name) << text << plain << QString::fromLatin1(escape) << forXml;
    };
    row("letter", U'a', true, "", true);
    row("blank", U' ', true, "", true);
    row("tilde", U'~', true, "", true);
    row("umlaut", 0xfc, true, "", true);
    row("no-break space", 0xa0, true, "", true);
    row("Devanagari", 0x915, true, "", true);
    row("combining accent", 0x301, true, "", true);
    row("non-joiner", 0x200c, true, "", true);
    row("joiner", 0x200d, true, "", true);
    row("face", 0x1f600, true, "", true);
    row("replacement", 0xfffd, true, "", true);

    row("bell", 0x07, false, "\\u0007", false);
    row("escape", 0x1b, false, "\\u001b", false);
    row("delete", 0x7f, false, "\\u007f", true);
    row("first of C1", 0x80, false, "\\u0080", true);
    row("control sequence introducer", 0x9b, false, "\\u009b", true);
    row("last of C1", 0x9f, false, "\\u009f", true);
    row("soft hyphen", 0xad, false, "\\u00ad", true);
    row("zero width space", 0x200b, false, "\\u200b", true);
    row("right-to-left mark", 0x200f, false, "\\u200f", true);
    row("line separator", 0x2028, false, "\\u2028", true);
    row("paragraph separator", 0x2029, false, "\\u2029", true);
    row("right-to-left override", 0x202e, false, "\\u202e", true);
    row("isolate", 0x2066, false, "\\u2066", true);
    row("byte order mark", 0xfeff, false, "\\ufeff", true);
    row("tag", 0xe0041, false, "\\udb40\\udc41", true);
    row("half of a pair", 0xd800, false, "\\ud800", false);
    row("the other half", 0xdc00, false, "\\udc00", false);
    row("no character", 0xfffe, false, "\\ufffe", false);
    row("no character at the end", 0xffff, false, "\\uffff", false);
    row("no character of another plane", 0x1fffe, false, "\\ud83f\\udffe", true);
}

void tst_KelPlainText::characters()
{
    QFETCH(QString, text);
    QFETCH(bool, plain);
    QFETCH(QString, escape);
    QFETCH(bool, forXml);

    const QString line = "x" + text + "y";
    QCOMPARE(KelPlainText::oneLine(line), plain ? line : QStringLiteral("x?y"));
    QCOMPARE(KelPlainText::isForXml(line), forXml);

    const QJsonObject object{{"name", line}};
    const QByteArray json = KelPlainText::json(QJsonDocument(object).toJson());
    QCOMPARE(QString::fromUtf8(json), "{\n    \"name\": \"x" + (plain ? text : escape) + "y\"\n}\n");
    QCOMPARE(QJsonDocument::fromJson(json).object(), object);
}

void tst_KelPlainText::shortened()
{
    QCOMPARE(KelPlainText::shortened(QString(200, 'a')), QString(200, 'a'));
    QCOMPARE(KelPlainText::shortened(QString(201, 'a')), QString(200, 'a') + "...");
    QCOMPARE(KelPlainText::shortened("abc", 3), QStringLiteral("abc"));
    QCOMPARE(KelPlainText::shortened("abcd", 3), QStringLiteral("abc..."));
    QCOMPARE(KelPlainText::shortened(QString()), QString());
}

QTEST_GUILESS_MAIN(tst_KelPlainText)
#include "tst_KelPlainText.moc"

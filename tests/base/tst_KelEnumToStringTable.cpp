// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelEnumToStringTable.h>

#include <QtTest>

#include <limits>

namespace
{

enum Colour {
    ColourNone = 0,
    ColourRed = 1,
    ColourGreen = 2,
    ColourWithoutKey = 4,
    ColourYellow = 3,
    ColourBlue = 256,
    ColourTopBit = 0x40000000
};

KelEnumToStringTable<Colour> colours()
{
    KelEnumToStringTable<Colour> table;
    table.insert(QStringLiteral("Red"), ColourRed);
    table.insert(QStringLiteral("crimson"), ColourRed);
    table.insert(QStringLiteral("green"), ColourGreen);
    table.insert(QStringLiteral("yellow"), ColourYellow);
    table.insert(QStringLiteral("blue"), ColourBlue);
    table.insert(QStringLiteral("top"), ColourTopBit);
    table.insert(QStringLiteral("none"), ColourNone);
    return table;
}

} // namespace

class tst_KelEnumToStringTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodeCSV_data();
    void decodeCSV();
    void encode_data();
    void encode();
    void laterKeyOfSameTextReplacesTheMeaning();
    void firstKeyOfAValueIsWritten();
    void emptyTable();
};

void tst_KelEnumToStringTable::decodeCSV_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");

    QTest::newRow("null text") << QString() << 0;
    QTest::newRow("empty text") << QStringLiteral("") << 0;
    QTest::newRow("only a comma") << QStringLiteral(",") << 0;
    QTest::newRow("one key") << QStringLiteral("green") << 2;
    QTest::newRow("key inserted with a capital") << QStringLiteral("red") << 1;
    QTest::newRow("second key of a value") << QStringLiteral("crimson") << 1;
    QTest::newRow("case does not matter") << QStringLiteral("gREEN") << 2;
    QTest::newRow("blanks around a key") << QStringLiteral(" \tgreen\n") << 2;
    QTest::newRow("two keys, comma") << QStringLiteral("green,blue") << 258;
    QTest::newRow("two keys, comma and blank") << QStringLiteral("green, blue") << 258;
    QTest::newRow("the same key twice") << QStringLiteral("blue,blue") << 256;
    QTest::newRow("unknown word") << QStringLiteral("mauve") << 0;
    QTest::newRow("unknown word among known ones") << QStringLiteral("red,mauve,blue") << 257;
    QTest::newRow("empty entries") << QStringLiteral("red, , ,green,") << 3;
    QTest::newRow("key of a combination") << QStringLiteral("yellow") << 3;
    QTest::newRow("key of the value 0") << QStringLiteral("none,red") << 1;
    QTest::newRow("blank inside a key is unknown") << QStringLiteral("gr een") << 0;
    QTest::newRow("semicolon does not separate") << QStringLiteral("red;green") << 0;
}

void tst_KelEnumToStringTable::decodeCSV()
{
    QFETCH(QString, text);
    QFETCH(int, value);
    QCOMPARE(static_cast<int>(colours().decodeCSV(text)), value);
}

void tst_KelEnumToStringTable::encode_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("text");

    QTest::newRow("0 has no text, although it has a key") << 0 << QStringList() << QString();
    QTest::newRow("negative") << -1 << QStringList() << QString();
    QTest::newRow("smallest number") << std::numeric_limits<int>::min() << QStringList() << QString();
    QTest::newRow("one bit, case kept") << 1 << QStringList{QStringLiteral("Red")} << QStringLiteral("Red");
    QTest::newRow("combination is not looked up as a whole")
        << 3 << QStringList{QStringLiteral("Red"), QStringLiteral("green")} << QStringLiteral("Red, green");
    QTest::newRow("bit without key leaves an empty entry behind")
        << 7 << QStringList{QStringLiteral("Red"), QStringLiteral("green"), QString()}
        << QStringLiteral("Red, green, ");
    QTest::newRow("bit without key in the middle")
        << 260 << QStringList{QString(), QStringLiteral("blue")} << QStringLiteral(", blue");
    QTest::newRow("only a bit without key") << 4 << QStringList{QString()} << QString();
    QTest::newRow("lowest bit first")
        << 258 << QStringList{QStringLiteral("green"), QStringLiteral("blue")} << QStringLiteral("green, blue");
    QTest::newRow("highest bit") << 0x40000001 << QStringList{QStringLiteral("Red"), QStringLiteral("top")}
                                 << QStringLiteral("Red, top");
}

void tst_KelEnumToStringTable::encode()
{
    QFETCH(int, value);
    QFETCH(QStringList, keys);
    QFETCH(QString, text);
    const KelEnumToStringTable<Colour> table = colours();
    QCOMPARE(table.encodeAsList(value), keys);
    QCOMPARE(table.encodeCSV(value), text);
    if (value >= 0) {
        QCOMPARE(table.encodeAsList(static_cast<Colour>(value)), keys);
        QCOMPARE(table.encodeCSV(static_cast<Colour>(value)), text);
    }
}

void tst_KelEnumToStringTable::laterKeyOfSameTextReplacesTheMeaning()
{
    KelEnumToStringTable<Colour> table = colours();
    table.insert(QStringLiteral("GREEN"), ColourBlue);
    QCOMPARE(table.decodeCSV(QStringLiteral("green")), ColourBlue);
    // What is written for either value was settled by the first insertion.
    QCOMPARE(table.encodeCSV(ColourGreen), QStringLiteral("green"));
    QCOMPARE(table.encodeCSV(ColourBlue), QStringLiteral("blue"));
}

void tst_KelEnumToStringTable::firstKeyOfAValueIsWritten()
{
    KelEnumToStringTable<Colour> table;
    table.insert(QStringLiteral("Azure"), ColourBlue);
    table.insert(QStringLiteral("blue"), ColourBlue);
    QCOMPARE(table.encodeCSV(ColourBlue), QStringLiteral("Azure"));
    QCOMPARE(table.decodeCSV(QStringLiteral("blue")), ColourBlue);
    QCOMPARE(table.decodeCSV(QStringLiteral("azure")), ColourBlue);
}

void tst_KelEnumToStringTable::emptyTable()
{
    const KelEnumToStringTable<Colour> table;
    QCOMPARE(table.decodeCSV(QStringLiteral("red")), ColourNone);
    QCOMPARE(table.encodeCSV(ColourRed), QString());
    QCOMPARE(table.encodeAsList(ColourYellow), (QStringList{QString(), QString()}));
}

QTEST_GUILESS_MAIN(tst_KelEnumToStringTable)
#include "tst_KelEnumToStringTable.moc"

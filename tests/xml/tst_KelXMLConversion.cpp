// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelXMLConversion.h>

#include <KelTestSupport.h>

#include <QtTest>

#include <bit>
#include <random>

/// Compares with the conversion of Qt, bit by bit, which the short way must not leave.
class tst_KelXMLConversion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toDouble_data();
    void toDouble();
    void toDoubleOfRandomTexts();
    void toDoubleDoesNotAskTheLocale();
    void toDateTime_data();
    void toDateTime();
    void everyMillisecond();
    void everyDayOfCenturies();
    void toDateTimeOfRandomTexts();
};

namespace
{

void compareDouble(const QString &text)
{
    bool expectedOk = false;
    bool ok = false;
    const double expected = text.toDouble(&expectedOk);
    const double actual = KelXMLConversion::toDouble(text, &ok);
    QVERIFY2(ok == expectedOk, qPrintable(text));
    QVERIFY2(std::bit_cast<quint64>(actual) == std::bit_cast<quint64>(expected), qPrintable(text));
    if (const QByteArray bytes = text.toLatin1(); QString::fromLatin1(bytes) == text) {
        const double fromBytes = KelXMLConversion::toDouble(QLatin1String(bytes), &ok);
        QVERIFY2(ok == expectedOk, qPrintable(text));
        QVERIFY2(std::bit_cast<quint64>(fromBytes) == std::bit_cast<quint64>(expected), qPrintable(text));
    }
}

void compareDateTime(const QString &text)
{
    const QDateTime expected = QDateTime::fromString(text, Qt::ISODate);
    const QByteArray bytes = text.toLatin1();
    QCOMPARE(QString::fromLatin1(bytes), text);
    for (const QDateTime &actual : {KelXMLConversion::toDateTime(text),
                                    KelXMLConversion::toDateTime(QLatin1String(bytes))}) {
        QVERIFY2(actual.isValid() == expected.isValid(), qPrintable(text));
        QVERIFY2(actual == expected, qPrintable(text));
        QVERIFY2(actual.timeSpec() == expected.timeSpec(), qPrintable(text));
        QVERIFY2(actual.offsetFromUtc() == expected.offsetFromUtc(), qPrintable(text));
        QVERIFY2(actual.toString(Qt::ISODateWithMs) == expected.toString(Qt::ISODateWithMs), qPrintable(text));
    }
}

QString randomText(std::mt19937 &random, const QString &alphabet, int maximumLength)
{
    QString text;
    const int length = int(random() % uint(maximumLength + 1));
    for (int i = 0; i < length; ++i)
        text.append(alphabet.at(int(random() % uint(alphabet.size()))));
    return text;
}

} // namespace

void tst_KelXMLConversion::toDouble_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("readable");

    QTest::newRow("whole number") << "12" << 12.0 << true;
    QTest::newRow("fraction") << "53.14375" << 53.14375 << true;
    QTest::newRow("negative") << "-8.21" << -8.21 << true;
    QTest::newRow("plus sign") << "+8.21" << 8.21 << true;
    QTest::newRow("leading zeros") << "007.50" << 7.5 << true;
    QTest::newRow("bare point at the end") << "7." << 7.0 << true;
    QTest::newRow("bare point at the start") << ".5" << 0.5 << true;
    QTest::newRow("point only") << "." << 0.0 << false;
    QTest::newRow("sign only") << "-" << 0.0 << false;
    QTest::newRow("sign and point") << "-." << 0.0 << false;
    QTest::newRow("two signs") << "--1" << 0.0 << false;
    QTest::newRow("two points") << "1.2.3" << 0.0 << false;
    QTest::newRow("empty") << "" << 0.0 << false;
    QTest::newRow("negative zero") << "-0.0" << -0.0 << true;
    QTest::newRow("greatest short way, 2^53 - 1") << "9007199254740991" << 9007199254740991.0 << true;
    QTest::newRow("one more, 2^53") << "9007199254740992" << 9007199254740992.0 << true;
    QTest::newRow("first inexact, 2^53 + 1") << "9007199254740993" << 9007199254740992.0 << true;
    QTest::newRow("18 digits after the point") << "0.123456789012345678" << 0.123456789012345678 << true;
    QTest::newRow("19 digits") << "1.234567890123456789" << 1.234567890123456789 << true;
    QTest::newRow("18 decimals of a small number") << "0.00000000000000001" << 1e-17 << true;
    QTest::newRow("exponent") << "1e3" << 1000.0 << true;
    QTest::newRow("infinity") << "inf" << qInf() << true;
    QTest::newRow("too great") << "1e400" << qInf() << false;
    QTest::newRow("hexadecimal") << "0x10" << 0.0 << false;
    QTest::newRow("group separator") << "1,000" << 0.0 << false;
    QTest::newRow("letters") << "north" << 0.0 << false;
    QTest::newRow("blanks around") << " 5 " << 5.0 << true;
    QTest::newRow("line feeds around") << "\n5.5\n" << 5.5 << true;
    QTest::newRow("no-break space before") << QStringLiteral("\u00a05") << 5.0 << true;
    QTest::newRow("blank inside") << "5 5" << 0.0 << false;
    QTest::newRow("Arabic digits") << QStringLiteral("\u0661") << QStringLiteral("\u0661").toDouble() << false;
    QTest::newRow("full-width digit") << QStringLiteral("\uff11") << 0.0 << false;
}

void tst_KelXMLConversion::toDouble()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QFETCH(bool, readable);

    bool ok = !readable;
    const double actual = KelXMLConversion::toDouble(text, &ok);
    QCOMPARE(ok, readable);
    QCOMPARE(std::bit_cast<quint64>(actual), std::bit_cast<quint64>(value));
    compareDouble(text);
}

void tst_KelXMLConversion::toDoubleOfRandomTexts()
{
    std::mt19937 random(KelTestSupport::randomSeed(20231114));
    for (int i = KelTestSupport::randomCases(100000); i > 0; --i) {
        compareDouble(randomText(random, QStringLiteral("0123456789.-"), 22));
        compareDouble(randomText(random, QStringLiteral("0123456789012345678901234567890123456789.,-+eE xin"), 24));
        // Plain numbers of any number of digits, as files hold them.
        const QString digits = randomText(random, QStringLiteral("0123456789"), 20);
        compareDouble(QString(digits).insert(int(random() % uint(digits.size() + 1)), QLatin1Char('.')));
        if (QTest::currentTestFailed())
            return;
    }
    std::uniform_real_distribution<double> degrees(-180.0, 180.0);
    for (int i = KelTestSupport::randomCases(100000); i > 0; --i) {
        const double value = degrees(random);
        compareDouble(QString::number(value, 'f', int(random() % 18)));
        compareDouble(QString::number(value, 'g', 17));
        if (QTest::currentTestFailed())
            return;
    }
}

void tst_KelXMLConversion::toDoubleDoesNotAskTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    bool ok = true;
    QCOMPARE(KelXMLConversion::toDouble(u"8.5"), 8.5);
    QCOMPARE(KelXMLConversion::toDouble(u"8,5", &ok), 0.0);
    QVERIFY(!ok);
    QLocale::setDefault(before);
}

void tst_KelXMLConversion::toDateTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("value");

    const auto utc = [](int year, int month, int day, int hour, int minute, int second, int ms = 0) {
        return QDateTime(QDate(year, month, day), QTime(hour, minute, second, ms), Qt::UTC);
    };
    const QDateTime invalid;
    QTest::newRow("seconds") << "2023-11-14T22:13:20Z" << utc(2023, 11, 14, 22, 13, 20);
    QTest::newRow("milliseconds") << "2023-11-14T22:13:20.123Z" << utc(2023, 11, 14, 22, 13, 20, 123);
    QTest::newRow("milliseconds after a comma") << "2023-11-14T22:13:20,123Z" << utc(2023, 11, 14, 22, 13, 20, 123);
    QTest::newRow("tenths") << "2023-11-14T22:13:20.5Z" << utc(2023, 11, 14, 22, 13, 20, 500);
    QTest::newRow("microseconds") << "2023-11-14T22:13:20.123456Z" << utc(2023, 11, 14, 22, 13, 20, 123);
    QTest::newRow("blank in place of the T") << "2023-11-14 22:13:20Z" << utc(2023, 11, 14, 22, 13, 20);
    QTest::newRow("lower case") << "2023-11-14t22:13:20z" << utc(2023, 11, 14, 22, 13, 20);
    QTest::newRow("no zone is local time")
        << "2023-11-14T22:13:20" << QDateTime(QDate(2023, 11, 14), QTime(22, 13, 20));
    QTest::newRow("offset") << "2023-11-14T23:13:20+01:00" << utc(2023, 11, 14, 22, 13, 20);
    QTest::newRow("date only") << "2023-11-14" << QDateTime(QDate(2023, 11, 14), QTime(0, 0));
    QTest::newRow("leap day") << "2024-02-29T00:00:00Z" << utc(2024, 2, 29, 0, 0, 0);
    QTest::newRow("no leap day") << "2023-02-29T00:00:00Z" << invalid;
    QTest::newRow("midnight as hour 24") << "2023-11-14T24:00:00Z" << utc(2023, 11, 15, 0, 0, 0);
    QTest::newRow("hour 25") << "2023-11-14T25:00:00Z" << invalid;
    QTest::newRow("leap second") << "2023-11-14T22:13:60Z" << invalid;
    QTest::newRow("month 13") << "2023-13-01T00:00:00Z" << invalid;
    QTest::newRow("year 0") << "0000-01-01T00:00:00Z" << invalid;
    QTest::newRow("year 1") << "0001-01-01T00:00:00Z" << utc(1, 1, 1, 0, 0, 0);
    QTest::newRow("year 9999") << "9999-12-31T23:59:59.999Z" << utc(9999, 12, 31, 23, 59, 59, 999);
    QTest::newRow("blank before") << " 2023-11-14T22:13:20Z" << invalid;
    QTest::newRow("line feed after") << "2023-11-14T22:13:20Z\n" << invalid;
    QTest::newRow("sign within a field") << "2023-11-14T22:13:+2Z" << invalid;
    QTest::newRow("words") << "yesterday" << invalid;
    QTest::newRow("empty") << "" << invalid;
}

void tst_KelXMLConversion::toDateTime()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, value);

    QCOMPARE(KelXMLConversion::toDateTime(text), value);
    compareDateTime(text);
}

void tst_KelXMLConversion::everyMillisecond()
{
    for (int ms = 0; ms < 1000; ++ms)
        compareDateTime(QStringLiteral("2023-11-14T22:13:20.%1Z").arg(ms, 3, 10, QLatin1Char('0')));
}

void tst_KelXMLConversion::everyDayOfCenturies()
{
    for (const int year : {1, 4, 100, 400, 1582, 1583, 1900, 1904, 1969, 1970, 2000, 2023, 2024, 2100, 9999}) {
        for (int month = 0; month <= 13; ++month) {
            for (int day = 0; day <= 32; ++day) {
                compareDateTime(QStringLiteral("%1-%2-%3T12:34:56Z")
                                    .arg(year, 4, 10, QLatin1Char('0'))
                                    .arg(month, 2, 10, QLatin1Char('0'))
                                    .arg(day, 2, 10, QLatin1Char('0')));
            }
        }
    }
}

void tst_KelXMLConversion::toDateTimeOfRandomTexts()
{
    std::mt19937 random(KelTestSupport::randomSeed(20231114));
    const QString alphabet = QStringLiteral("0123456789TZ:.-+ ,x");
    for (int i = KelTestSupport::randomCases(50000); i > 0; --i) {
        // One or two characters of a good text replaced.
        QString text = QStringLiteral("2023-11-14T22:13:20Z");
        if (random() % 2)
            text = QStringLiteral("1987-02-28T01:02:03.456Z");
        for (uint n = 0; n <= random() % 2; ++n)
            text[int(random() % uint(text.size()))] = alphabet.at(int(random() % uint(alphabet.size())));
        compareDateTime(text);
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_GUILESS_MAIN(tst_KelXMLConversion)
#include "tst_KelXMLConversion.moc"

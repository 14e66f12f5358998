// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelRegularExpression.h>

#include <QObject>
#include <QtTest>

class tst_KelRegularExpression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void removeFrom_data();
    void removeFrom();
    void optionsCount();
    void keepsItsPatternBetweenTexts();
};

void tst_KelRegularExpression::removeFrom_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rest");

    const QString directions = QStringLiteral("\\s|S|s|N|n|E|e|W|w");
    QTest::newRow("every match, not only the first") << directions << " N 52 .5 s" << "52.5";
    QTest::newRow("no match") << directions << "52.5" << "52.5";
    QTest::newRow("all of it") << directions << "NESW" << "";
    QTest::newRow("empty text") << directions << "" << "";
    QTest::newRow("no-break space is no blank without its option") << "\\s" << QStringLiteral("a\u00a0b")
                                                                   << QStringLiteral("a\u00a0b");
    QTest::newRow("no regular expression removes nothing") << "(" << "a(b" << "a(b";
}

void tst_KelRegularExpression::removeFrom()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    KelRegularExpression(pattern).removeFrom(text);
    QTEST(text, "rest");
}

void tst_KelRegularExpression::optionsCount()
{
    QString text = QStringLiteral("aAb");
    KelRegularExpression(QStringLiteral("a")).removeFrom(text);
    QCOMPARE(text, QStringLiteral("Ab"));
    KelRegularExpression(QStringLiteral("a"), QRegularExpression::CaseInsensitiveOption).removeFrom(text);
    QCOMPARE(text, QStringLiteral("b"));
}

void tst_KelRegularExpression::keepsItsPatternBetweenTexts()
{
    const KelRegularExpression digits(QStringLiteral("[0-9]"));
    QString first = QStringLiteral("a1b2");
    QString second = QStringLiteral("3c");
    digits.removeFrom(first);
    digits.removeFrom(second);
    QCOMPARE(first, QStringLiteral("ab"));
    QCOMPARE(second, QStringLiteral("c"));
}

QTEST_GUILESS_MAIN(tst_KelRegularExpression)
#include "tst_KelRegularExpression.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelRational.h>

#include <QObject>
#include <QtTest>

#include <limits>

class tst_KelRational : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toString_data();
    void toString();
    void keepsWhatIsGiven();
};

void tst_KelRational::toString_data()
{
    QTest::addColumn<int>("numerator");
    QTest::addColumn<int>("denominator");
    QTest::addColumn<QString>("text");

    QTest::newRow("seconds") << 1234567 << 100000 << "1234567/100000";
    QTest::newRow("not reduced") << 50 << 100 << "50/100";
    QTest::newRow("negative") << -1 << 3 << "-1/3";
    QTest::newRow("zero denominator") << 1 << 0 << "1/0";
    QTest::newRow("no digit grouping") << std::numeric_limits<int>::max() << 1000000 << "2147483647/1000000";
}

void tst_KelRational::toString()
{
    QFETCH(int, numerator);
    QFETCH(int, denominator);
    QTEST(KelRational(numerator, denominator).toString(), "text");
}

void tst_KelRational::keepsWhatIsGiven()
{
    const KelRational rational(6, -4);
    QCOMPARE(rational.numerator(), 6);
    QCOMPARE(rational.denominator(), -4);
}

QTEST_GUILESS_MAIN(tst_KelRational)
#include "tst_KelRational.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelMath.h>

#include <QObject>
#include <QtTest>

#include <limits>

class tst_KelMath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void epsilonEqual_data();
    void epsilonEqual();
};

void tst_KelMath::epsilonEqual_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("epsilon");
    QTest::addColumn<bool>("equal");

    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("same") << 1.5 << 1.5 << 0.0 << true;
    QTest::newRow("closer than epsilon") << 1.0 << 1.25 << 0.5 << true;
    QTest::newRow("exactly epsilon apart") << 1.0 << 1.5 << 0.5 << true;
    QTest::newRow("exactly epsilon apart, other way round") << 1.5 << 1.0 << 0.5 << true;
    QTest::newRow("a little more than epsilon apart") << 1.0 << 1.5000001 << 0.5 << false;
    QTest::newRow("a little more, other way round") << 1.5000001 << 1.0 << 0.5 << false;
    QTest::newRow("zero and minus zero") << 0.0 << -0.0 << 0.0 << true;
    QTest::newRow("negative epsilon is never met") << 1.0 << 1.0 << -1.0 << false;
    QTest::newRow("not a number") << nan << nan << 1.0 << false;
    QTest::newRow("two infinities") << infinity << infinity << 1.0 << false;
    QTest::newRow("infinity and a number") << infinity << 1.0 << 1e300 << false;
}

void tst_KelMath::epsilonEqual()
{
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, epsilon);
    QTEST(KelMath::epsilonEqual(a, b, epsilon), "equal");
}

QTEST_GUILESS_MAIN(tst_KelMath)
#include "tst_KelMath.moc"

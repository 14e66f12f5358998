// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelDistanceUnit.h>

#include <QObject>
#include <QtTest>

class tst_KelDistanceUnit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void units_data();
    void units();
    void defaultIsUnknown();
    void unknownNumberIsUnknown_data();
    void unknownNumberIsUnknown();
    void equality();
};

void tst_KelDistanceUnit::units_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<KelDistanceUnitEnum>("unit");
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<double>("factor");

    QTest::newRow("unknown") << 0 << KelDistanceUnitEnum::Unknown << "" << 1.0;
    QTest::newRow("pixel") << 1 << KelDistanceUnitEnum::Pixel << "px" << 1.0;
    QTest::newRow("kilometre") << 2 << KelDistanceUnitEnum::Kilometre << "km" << 1.0;
    QTest::newRow("metre") << 4 << KelDistanceUnitEnum::Metre << "m" << 0.001;
    QTest::newRow("nautical mile") << 8 << KelDistanceUnitEnum::NauticalMile << "NM" << 1.852;
}

void tst_KelDistanceUnit::units()
{
    QFETCH(int, number);
    QFETCH(KelDistanceUnitEnum, unit);
    QCOMPARE(static_cast<int>(unit), number);
    QCOMPARE(KelDistanceUnit(number).value(), unit);
    QTEST(KelDistanceUnit(unit).symbol(), "symbol");
    QTEST(KelDistanceUnit(unit).factor(), "factor");
}

void tst_KelDistanceUnit::defaultIsUnknown()
{
    QCOMPARE(KelDistanceUnit().value(), KelDistanceUnitEnum::Unknown);
}

void tst_KelDistanceUnit::unknownNumberIsUnknown_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("between two units") << 3;
    QTest::newRow("beyond the last") << 16;
    QTest::newRow("negative") << -1;
}

void tst_KelDistanceUnit::unknownNumberIsUnknown()
{
    QFETCH(int, number);
    QCOMPARE(KelDistanceUnit(number).value(), KelDistanceUnitEnum::Unknown);
}

void tst_KelDistanceUnit::equality()
{
    QVERIFY(KelDistanceUnit(KelDistanceUnitEnum::Pixel) == KelDistanceUnit(1));
    QVERIFY(!(KelDistanceUnit(KelDistanceUnitEnum::Pixel) != KelDistanceUnit(1)));
    QVERIFY(KelDistanceUnit(KelDistanceUnitEnum::Pixel) != KelDistanceUnit(KelDistanceUnitEnum::Kilometre));
}

QTEST_GUILESS_MAIN(tst_KelDistanceUnit)
#include "tst_KelDistanceUnit.moc"

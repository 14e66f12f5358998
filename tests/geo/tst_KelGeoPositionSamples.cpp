// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoPositionSamples.h>
#include <KelLongitudeRange.h>

#include <QtTest>

#include <type_traits>

#include <dlfcn.h>

class tst_KelGeoPositionSamples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void table_data();
    void table();
    void unknownSample();
    void isOneObject();
    void stateLivesInTheLibrary();
    void greenwichIsValid();
    void wellingtonToHonoluluCrossesTheDateLine();
};

void tst_KelGeoPositionSamples::table_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<KelGeoPositionSamplesEnum>("sample");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    QTest::newRow("Oldenburg") << 0 << SampleOldenburg << QStringLiteral("Oldenburg") << 53.14118 << 8.21467;
    QTest::newRow("Bremen") << 1 << SampleBremen << QStringLiteral("Bremen") << 53.0792962 << 8.806422;
    QTest::newRow("Wellington") << 2 << SampleWellington << QStringLiteral("Wellington") << -41.28646 << 174.772996908;
    QTest::newRow("Sydney") << 3 << SampleSydney << QStringLiteral("Sydney") << -33.865143 << 151.2099;
    QTest::newRow("New York") << 4 << SampleNewYork << QStringLiteral("New York") << 40.73061 << -73.935242;
    QTest::newRow("Los Angeles") << 5 << SampleLosAngeles << QStringLiteral("LA") << 34.052235 << -118.243683;
    QTest::newRow("Honolulu") << 6 << SampleHonolulu << QStringLiteral("Honolulu") << 21.315603 << -157.858093;
    QTest::newRow("Polynesia") << 7 << SamplePolynesia << QStringLiteral("Polynesien") << -17.679742 << -149.3729275;
    QTest::newRow("Greenwich, spelled otherwise")
        << 8 << SampleGreenwich << QStringLiteral("Greenich") << 51.507351 << 0.0;
    QTest::newRow("Windhoek") << 9 << SampleWindhoek << QStringLiteral("Windhoek") << -22.5631 << 17.0786;
    QTest::newRow("Helsinki") << 10 << SampleHelsinki << QStringLiteral("Helsinki") << 60.169471 << 24.929667;
    QTest::newRow("Gibraltar") << 11 << SampleGibraltar << QStringLiteral("Gibraltar") << 36.140751 << -5.353585;
    QTest::newRow("Passau") << 12 << SamplePassau << QStringLiteral("Passau") << 48.5667364 << 13.4319466;
}

void tst_KelGeoPositionSamples::table()
{
    QFETCH(int, value);
    QFETCH(KelGeoPositionSamplesEnum, sample);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    const KelGeoPositionSamples &samples = KelGeoPositionSamples::instance();
    QCOMPARE(static_cast<int>(sample), value);
    QTEST(samples.name(sample), "name");
    QVERIFY(samples.position(sample).latitude().decimalDegrees() == latitude);
    QVERIFY(samples.position(sample).longitude().decimalDegrees() == longitude);
    QVERIFY(samples.latitude(sample).decimalDegrees() == latitude);
    QVERIFY(samples.longitude(sample).decimalDegrees() == longitude);
}

void tst_KelGeoPositionSamples::unknownSample()
{
    const KelGeoPositionSamples &samples = KelGeoPositionSamples::instance();
    for (const int value : {-1, 13, 4711}) {
        const auto sample = static_cast<KelGeoPositionSamplesEnum>(value);
        QVERIFY(samples.name(sample).isNull());
        QCOMPARE(samples.position(sample), KelGeoPosition());
        QVERIFY(!samples.position(sample).isValid());
        QVERIFY(samples.latitude(sample).decimalDegrees() == 720.0);
        QVERIFY(samples.longitude(sample).decimalDegrees() == 720.0);
    }
}

void tst_KelGeoPositionSamples::isOneObject()
{
    QCOMPARE(&KelGeoPositionSamples::instance(), &KelSingleton<KelGeoPositionSamples>::instance());
    QVERIFY(std::has_virtual_destructor_v<KelGeoPositionSamples>);
}

void tst_KelGeoPositionSamples::stateLivesInTheLibrary()
{
    // Programs and plugins find one state only if a library shows it to all of them, as the C++ ABI names it.
    QVERIFY(dlsym(RTLD_DEFAULT, "_ZZN12KelSingletonI21KelGeoPositionSamplesE5stateEvE8theState") != nullptr);
}

void tst_KelGeoPositionSamples::greenwichIsValid()
{
    QVERIFY(KelGeoPositionSamples::instance().longitude(SampleGreenwich).isNull());
    QVERIFY(KelGeoPositionSamples::instance().position(SampleGreenwich).isValid());
}

void tst_KelGeoPositionSamples::wellingtonToHonoluluCrossesTheDateLine()
{
    const KelGeoPositionSamples &samples = KelGeoPositionSamples::instance();
    const KelLongitudeRange range =
        KelLongitudeRange::spawn(samples.longitude(SampleWellington), samples.longitude(SampleHonolulu));
    QVERIFY(range.west().decimalDegrees() == 174.772996908);
    QVERIFY(range.east().decimalDegrees() == -157.858093);
    QVERIFY(range.crossesDateLine());
}

QTEST_GUILESS_MAIN(tst_KelGeoPositionSamples)
#include "tst_KelGeoPositionSamples.moc"

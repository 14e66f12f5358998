// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackStyleList.h>
#include <KelFileSizeLimit.h>
#include <KelGeoLocationSettings.h>
#include <KelTemporarySettings.h>

#include <QMetaMethod>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

namespace
{

const QString instantlyKey = QStringLiteral("instantlyAddLocations");
const QString configurationKey = QStringLiteral("defaultTrackConfiguration");

QVariant stored(const QString &key)
{
    return QSettings().value(key);
}

void store(const QString &key, const QVariant &value)
{
    QSettings().setValue(key, value);
}

KelGPXTrackConfiguration withShape(KelGPXTrackShapeEnum shape)
{
    KelGPXTrackConfiguration configuration = KelGPXTrackConfiguration::defaultValue();
    configuration.setLineWidth(4.0);
    configuration.setTrackShape(shape);
    return configuration;
}

} // namespace

class tst_KelGeoLocationSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void firstInstanceLoadsAndNormalizes();
    void oneSignalNoSlotsNoProperties();
    void freshInstallation();
    void setInstantlyAddLocations();
    void settingAFlagDoesNotSave();
    void saveSettingsWritesBoth();
    void failedSaveIsLogged();
    void loadSettingsReadsBoth();
    void storedTextIsReadOnEveryCall();
    void equalDefaultConfigurationIsNotSaved();
    void otherDefaultConfigurationIsSaved();
    void everyFieldButTheShapeSurvivesARestart();
    void shapeIsAutoAfterLoading_data();
    void shapeIsAutoAfterLoading();
    void loadingWhatIsNormalSavesNothing();
    void unreadableTextIsNormalizedAndSaved();
    void currentDefaultConfiguration();
    void stylesOfADocumentIgnoreTheUsersDefault();

private:
    KelTemporarySettings m_store;
};

void tst_KelGeoLocationSettings::initTestCase()
{
    // The instance, created in the first test, finds these.
    store(instantlyKey, false);
    store(configurationKey, withShape(TrackShapePolygon).serialize());
}

void tst_KelGeoLocationSettings::init()
{
    if (QTest::currentTestFunction() == QByteArray("firstInstanceLoadsAndNormalizes"))
        return;
    m_store.clear();
    KelGeoLocationSettings::instance().loadSettings();
}

void tst_KelGeoLocationSettings::firstInstanceLoadsAndNormalizes()
{
    const KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    QVERIFY(!settings.instantlyAddLocations());
    QVERIFY(settings.defaultTrackConfiguration() == withShape(TrackShapeAuto));
    QCOMPARE(stored(configurationKey).toString(), withShape(TrackShapeAuto).serialize());
    QCOMPARE(&KelGeoLocationSettings::instance(), &settings);
}

void tst_KelGeoLocationSettings::oneSignalNoSlotsNoProperties()
{
    const QMetaObject &meta = KelGeoLocationSettings::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.methodSignature(), QByteArray("instantlyAddLocationsDisabled(bool)"));
    QCOMPARE(method.parameterNames(), QList<QByteArray>{"disabled"});
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("KelSettings"));
}

void tst_KelGeoLocationSettings::freshInstallation()
{
    const KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    QVERIFY(settings.instantlyAddLocations());
    QVERIFY(settings.defaultTrackConfiguration() == KelGPXTrackConfiguration::defaultValue());
    QVERIFY(settings.defaultTrackConfiguration().trackShape() == TrackShapeAuto);
    // Nothing had to be normalised, so nothing is stored either.
    QVERIFY(QSettings().allKeys().isEmpty());
}

void tst_KelGeoLocationSettings::setInstantlyAddLocations()
{
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    QSignalSpy spy(&settings, &KelGeoLocationSettings::instantlyAddLocationsDisabled);

    settings.setInstantlyAddLocations(true);
    QCOMPARE(spy.count(), 0);

    settings.setInstantlyAddLocations(false);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.takeFirst().at(0).toBool(), true);
    QVERIFY(!settings.instantlyAddLocations());

    settings.setInstantlyAddLocations(false);
    QCOMPARE(spy.count(), 0);

    settings.setInstantlyAddLocations(true);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.takeFirst().at(0).toBool(), false);
    QVERIFY(settings.instantlyAddLocations());
}

void tst_KelGeoLocationSettings::settingAFlagDoesNotSave()
{
    KelGeoLocationSettings::instance().setInstantlyAddLocations(false);
    QVERIFY(!QSettings().contains(instantlyKey));
}

void tst_KelGeoLocationSettings::saveSettingsWritesBoth()
{
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    settings.setInstantlyAddLocations(false);
    settings.saveSettings();
    QCOMPARE(stored(instantlyKey).toBool(), false);
    QVERIFY(QSettings().contains(instantlyKey));
    QCOMPARE(stored(configurationKey).toString(), KelGPXTrackConfiguration::defaultValue().serialize());
}

void tst_KelGeoLocationSettings::failedSaveIsLogged()
{
    const QRegularExpression flag(QStringLiteral("^cannot save \"instantlyAddLocations\" in "));
    const QRegularExpression configuration(QStringLiteral("^cannot save \"defaultTrackConfiguration\" in "));
    QTest::ignoreMessage(QtWarningMsg, flag);
    QTest::ignoreMessage(QtWarningMsg, configuration);
    const KelFileSizeLimit limit(0);
    KelGeoLocationSettings::instance().saveSettings();
}

void tst_KelGeoLocationSettings::loadSettingsReadsBoth()
{
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    QSignalSpy spy(&settings, &KelGeoLocationSettings::instantlyAddLocationsDisabled);
    store(instantlyKey, false);
    store(configurationKey, withShape(TrackShapeAuto).serialize());

    settings.loadSettings();
    QVERIFY(!settings.instantlyAddLocations());
    QVERIFY(settings.defaultTrackConfiguration() == withShape(TrackShapeAuto));
    QCOMPARE(spy.count(), 0);
}

void tst_KelGeoLocationSettings::storedTextIsReadOnEveryCall()
{
    // What the text cannot hold is gone at once, not only after a restart.
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    KelGPXTrackConfiguration configuration = withShape(TrackShapeAuto);
    configuration.setLineWidth(5.9);
    settings.setDefaultTrackConfiguration(configuration);
    QCOMPARE(settings.defaultTrackConfiguration().lineWidth().value(), 5.0);

    // A caller's copy is its own.
    KelGPXTrackConfiguration copy = settings.defaultTrackConfiguration();
    copy.setLineWidth(1.0);
    QCOMPARE(settings.defaultTrackConfiguration().lineWidth().value(), 5.0);
}

void tst_KelGeoLocationSettings::equalDefaultConfigurationIsNotSaved()
{
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    settings.setDefaultTrackConfiguration(withShape(TrackShapeAuto));
    m_store.clear();

    settings.setDefaultTrackConfiguration(withShape(TrackShapeAuto));
    QVERIFY(QSettings().allKeys().isEmpty());

    // Equal is what has the same text: the fraction of a width is not in it.
    KelGPXTrackConfiguration configuration = withShape(TrackShapeAuto);
    configuration.setLineWidth(4.5);
    settings.setDefaultTrackConfiguration(configuration);
    QVERIFY(QSettings().allKeys().isEmpty());
}

void tst_KelGeoLocationSettings::otherDefaultConfigurationIsSaved()
{
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    QSignalSpy spy(&settings, &KelGeoLocationSettings::instantlyAddLocationsDisabled);
    settings.setDefaultTrackConfiguration(withShape(TrackShapeHop));

    QCOMPARE(stored(configurationKey).toString(), withShape(TrackShapeHop).serialize());
    QCOMPARE(stored(instantlyKey).toBool(), true);
    QVERIFY(QSettings().contains(instantlyKey));
    // The shape is normalised by loading only.
    QVERIFY(settings.defaultTrackConfiguration().trackShape() == TrackShapeHop);
    QCOMPARE(spy.count(), 0);
}

void tst_KelGeoLocationSettings::everyFieldButTheShapeSurvivesARestart()
{
    const KelGPXTrackConfiguration configuration(
        QColor(1, 2, 3, 4), 5.0, QColor(6, 7, 8, 9), 10.0, KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill),
        MarkerRhombus, TrackShapePoint, Qt::DashDotLine, 12, 13);
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    settings.setDefaultTrackConfiguration(configuration);

    settings.loadSettings();
    KelGPXTrackConfiguration expected = configuration;
    expected.setTrackShape(TrackShapeAuto);
    QVERIFY(settings.defaultTrackConfiguration() == expected);
}

void tst_KelGeoLocationSettings::shapeIsAutoAfterLoading_data()
{
    QTest::addColumn<int>("shape");

    QTest::newRow("polygon") << 8;
    QTest::newRow("linestring") << 4;
    QTest::newRow("point") << 1;
    QTest::newRow("hop") << 2;
    QTest::newRow("unknown") << 0;
    QTest::newRow("auto and another") << 257;
}

void tst_KelGeoLocationSettings::shapeIsAutoAfterLoading()
{
    QFETCH(int, shape);

    KelGPXTrackConfiguration configuration = withShape(TrackShapeAuto);
    configuration.setTrackShape(KelGPXTrackShape(shape));
    store(configurationKey, configuration.serialize());
    KelGeoLocationSettings::instance().loadSettings();

    QVERIFY(KelGeoLocationSettings::instance().defaultTrackConfiguration() == withShape(TrackShapeAuto));
    QCOMPARE(stored(configurationKey).toString(), withShape(TrackShapeAuto).serialize());
}

void tst_KelGeoLocationSettings::loadingWhatIsNormalSavesNothing()
{
    store(configurationKey, withShape(TrackShapeAuto).serialize());
    KelGeoLocationSettings::instance().loadSettings();
    // Saving would have written the other setting, too.
    QCOMPARE(QSettings().allKeys(), QStringList{configurationKey});
}

void tst_KelGeoLocationSettings::unreadableTextIsNormalizedAndSaved()
{
    store(configurationKey, QStringLiteral("<config><pensize>3"));
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    settings.loadSettings();

    const KelGPXTrackConfiguration configuration = settings.defaultTrackConfiguration();
    QCOMPARE(configuration.lineWidth().value(), 10.0);
    QCOMPARE(configuration.lineColor(), QColor(Qt::black));
    QCOMPARE(configuration.haloWidth().value(), 20.0);
    QVERIFY(configuration.trackShape() == TrackShapeAuto);
    QCOMPARE(stored(configurationKey).toString(), configuration.serialize());
}

void tst_KelGeoLocationSettings::currentDefaultConfiguration()
{
    QVERIFY(KelGPXTrackConfiguration::currentDefaultConfiguration() == KelGPXTrackConfiguration::defaultValue());
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(withShape(TrackShapeAuto));
    QVERIFY(KelGPXTrackConfiguration::currentDefaultConfiguration() == withShape(TrackShapeAuto));
}

void tst_KelGeoLocationSettings::stylesOfADocumentIgnoreTheUsersDefault()
{
    KelGeoLocationSettings::instance().setDefaultTrackConfiguration(withShape(TrackShapeAuto));
    QVERIFY(KelGPXTrackStyleList().findStyling(QStringLiteral("#a")) == KelGPXTrackConfiguration::defaultValue());
}

QTEST_GUILESS_MAIN(tst_KelGeoLocationSettings)
#include "tst_KelGeoLocationSettings.moc"

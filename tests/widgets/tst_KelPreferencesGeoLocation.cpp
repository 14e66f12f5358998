// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelConfigItem.h>
#include <KelGeoLocationSettings.h>
#include <KelPreferencesGeoLocation.h>
#include <KelRecordingTranslator.h>
#include <KelSettings.h>
#include <KelTemporarySettings.h>

#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

class tst_KelPreferencesGeoLocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void appearance();
    void texts();
    void translations();
    void showsNothingBeforeReading();
    void readFromConfig_data();
    void readFromConfig();
    void writeToConfig_data();
    void writeToConfig();
    void savesEvenWithoutAChange();
    void clickAloneChangesNothing();
    void revertShowsTheSettingAgain();
    void clickAndAcceptByKeyboard();

private:
    static KelGeoLocationSettings &settings() { return KelGeoLocationSettings::instance(); }
    static QCheckBox *checkBox(const KelPreferencesGeoLocation &page)
    {
        return page.findChild<QCheckBox *>(QStringLiteral("myInstantlyAddLocations"));
    }
    // What a program would find that starts now.
    static bool storedValue(bool whenMissing);

    std::unique_ptr<KelTemporarySettings> m_store;
};

void tst_KelPreferencesGeoLocation::initTestCase()
{
    m_store = std::make_unique<KelTemporarySettings>();
}

void tst_KelPreferencesGeoLocation::init()
{
    settings().setInstantlyAddLocations(true);
    settings().saveSettings();
}

bool tst_KelPreferencesGeoLocation::storedValue(bool whenMissing)
{
    KelConfigItem<bool> item(QStringLiteral("instantlyAddLocations"), whenMissing);
    KelSettings().load(item);
    return item.value();
}

void tst_KelPreferencesGeoLocation::appearance()
{
    QWidget parent;
    const KelPreferencesGeoLocation page(&parent);

    QCOMPARE(page.parentWidget(), &parent);
    QVERIFY(qobject_cast<const KelPreferencesBox *>(&page));
    QVERIFY(qobject_cast<const QGroupBox *>(&page));
    QCOMPARE(page.objectName(), QStringLiteral("GeoLocationGroupBox"));
    auto *layout = qobject_cast<QVBoxLayout *>(page.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 1);
    QVERIFY(checkBox(page));
    QCOMPARE(layout->itemAt(0)->widget(), checkBox(page));
    QCOMPARE(page.findChildren<QCheckBox *>().size(), 1);
}

void tst_KelPreferencesGeoLocation::texts()
{
    const KelPreferencesGeoLocation page;
    const QString text =
        QStringLiteral("Wenn man ein Suchergebnis anklickt, soll es direkt in die Liste der Orte eingefügt werden.");

    QCOMPARE(page.title(), QStringLiteral("Landkarten"));
    QCOMPARE(checkBox(page)->text(), text);
    QCOMPARE(checkBox(page)->toolTip(),
             QStringLiteral("Alternativ wird hierfür ein Knopf angeboten, der explizit benutzt werden muss."));
}

void tst_KelPreferencesGeoLocation::translations()
{
    const QString context = QStringLiteral("KelPreferencesGeoLocation");
    const QString title = QStringLiteral("Landkarten");
    const QString text =
        QStringLiteral("Wenn man ein Suchergebnis anklickt, soll es direkt in die Liste der Orte eingefügt werden.");
    const QString toolTip =
        QStringLiteral("Alternativ wird hierfür ein Knopf angeboten, der explizit benutzt werden muss.");
    KelRecordingTranslator translator;
    translator.setTranslation(title, QStringLiteral("the title"));
    translator.setTranslation(text, QStringLiteral("the text"));
    translator.setTranslation(toolTip, QStringLiteral("the tool tip"));

    const KelPreferencesGeoLocation page;

    QVERIFY(translator.hasRecorded(context, title));
    QVERIFY(translator.hasRecorded(context, text, QStringLiteral("CHECKBOX")));
    QVERIFY(translator.hasRecorded(context, toolTip));
    QCOMPARE(page.title(), QStringLiteral("the title"));
    QCOMPARE(checkBox(page)->text(), QStringLiteral("the text"));
    QCOMPARE(checkBox(page)->toolTip(), QStringLiteral("the tool tip"));
}

void tst_KelPreferencesGeoLocation::showsNothingBeforeReading()
{
    const KelPreferencesGeoLocation page;

    QVERIFY(settings().instantlyAddLocations());
    QVERIFY(!checkBox(page)->isChecked());
}

void tst_KelPreferencesGeoLocation::readFromConfig_data()
{
    QTest::addColumn<bool>("setting");
    QTest::addColumn<bool>("before");

    QTest::newRow("on ticks an empty box") << true << false;
    QTest::newRow("on keeps a tick") << true << true;
    QTest::newRow("off removes a tick") << false << true;
    QTest::newRow("off keeps an empty box") << false << false;
}

void tst_KelPreferencesGeoLocation::readFromConfig()
{
    QFETCH(bool, setting);
    QFETCH(bool, before);
    settings().setInstantlyAddLocations(setting);
    KelPreferencesGeoLocation page;
    checkBox(page)->setChecked(before);

    page.readFromConfig();

    QCOMPARE(checkBox(page)->isChecked(), setting);
    QCOMPARE(settings().instantlyAddLocations(), setting);
}

void tst_KelPreferencesGeoLocation::writeToConfig_data()
{
    QTest::addColumn<bool>("setting");
    QTest::addColumn<bool>("ticked");
    QTest::addColumn<QList<bool>>("signalled");

    QTest::newRow("switched off") << true << false << QList<bool>{true};
    QTest::newRow("switched on") << false << true << QList<bool>{false};
    QTest::newRow("stays on") << true << true << QList<bool>();
    QTest::newRow("stays off") << false << false << QList<bool>();
}

void tst_KelPreferencesGeoLocation::writeToConfig()
{
    QFETCH(bool, setting);
    QFETCH(bool, ticked);
    QFETCH(QList<bool>, signalled);
    settings().setInstantlyAddLocations(setting);
    KelPreferencesGeoLocation page;
    checkBox(page)->setChecked(ticked);
    QSignalSpy spy(&settings(), &KelGeoLocationSettings::instantlyAddLocationsDisabled);

    page.writeToConfig();

    QCOMPARE(settings().instantlyAddLocations(), ticked);
    QCOMPARE(storedValue(!ticked), ticked);
    QList<bool> emitted;
    for (const QList<QVariant> &arguments : std::as_const(spy))
        emitted.append(arguments.first().toBool());
    QCOMPARE(emitted, signalled);
}

void tst_KelPreferencesGeoLocation::savesEvenWithoutAChange()
{
    // The setter does not save, so that a value set by the program waits for the page.
    settings().setInstantlyAddLocations(false);
    QCOMPARE(storedValue(true), true);
    KelPreferencesGeoLocation page;
    page.readFromConfig();

    page.writeToConfig();

    QCOMPARE(storedValue(true), false);
}

void tst_KelPreferencesGeoLocation::clickAloneChangesNothing()
{
    KelPreferencesGeoLocation page;
    page.readFromConfig();
    QSignalSpy spy(&settings(), &KelGeoLocationSettings::instantlyAddLocationsDisabled);

    checkBox(page)->click();

    QVERIFY(!checkBox(page)->isChecked());
    QVERIFY(settings().instantlyAddLocations());
    QVERIFY(storedValue(false));
    QVERIFY(spy.isEmpty());
}

void tst_KelPreferencesGeoLocation::revertShowsTheSettingAgain()
{
    KelPreferencesGeoLocation page;
    page.readFromConfig();
    checkBox(page)->click();

    page.revert();

    QVERIFY(checkBox(page)->isChecked());
    QVERIFY(settings().instantlyAddLocations());
}

void tst_KelPreferencesGeoLocation::clickAndAcceptByKeyboard()
{
    KelPreferencesGeoLocation page;
    page.readFromConfig();
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    checkBox(page)->setFocus();

    QTest::keyClick(checkBox(page), Qt::Key_Space);
    page.writeToConfig();

    QVERIFY(!settings().instantlyAddLocations());
    QVERIFY(!storedValue(true));
}

QTEST_MAIN(tst_KelPreferencesGeoLocation)
#include "tst_KelPreferencesGeoLocation.moc"

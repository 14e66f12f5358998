// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelGeoArc.h>
#include <KelGeoArcEdit.h>
#include <KelLatitude.h>
#include <KelLongitude.h>
#include <KelRecordingTranslator.h>

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>

#include <cmath>
#include <limits>

namespace
{

// The fields, as a user meets them from left to right.
struct Fields
{
    explicit Fields(const KelGeoArcEdit &edit)
        : hemisphere(qobject_cast<QComboBox *>(edit.layout()->itemAt(0)->widget()))
        , degrees(qobject_cast<QSpinBox *>(edit.layout()->itemAt(1)->widget()))
        , minutes(qobject_cast<QSpinBox *>(edit.layout()->itemAt(2)->widget()))
        , seconds(qobject_cast<QDoubleSpinBox *>(edit.layout()->itemAt(3)->widget()))
    {
    }

    QComboBox *hemisphere;
    QSpinBox *degrees;
    QSpinBox *minutes;
    QDoubleSpinBox *seconds;
};

void type(QAbstractSpinBox *box, const QString &text)
{
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
}

} // namespace

class tst_KelGeoArcEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void layout();
    void degreesField();
    void minutesField();
    void secondsField();
    void hemispheres();
    void translations_data();
    void translations();
    void startsAtZero();
    void setGeoArc_data();
    void setGeoArc();
    void noNumberStaysWithinTheFields_data();
    void noNumberStaysWithinTheFields();
    void geoArc_data();
    void geoArc();
    void southAndWestOfTwelveDegrees();
    void hemisphereComesFromWholeDegreesAlone();
    void negativeEntryWithSouthIsPositive();
    void secondSetReplacesTheFirst();
    void typing();
    void steps();
    void keyboardGoesFromLeftToRight();
};

void tst_KelGeoArcEdit::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_KelGeoArcEdit::layout()
{
    QWidget parent;
    const KelGeoArcEdit edit(&parent, true);

    QCOMPARE(edit.parentWidget(), &parent);
    auto *layout = qobject_cast<QHBoxLayout *>(edit.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(layout->count(), 4);
    const Fields fields(edit);
    QVERIFY(fields.hemisphere);
    QVERIFY(fields.degrees);
    QVERIFY(fields.minutes);
    QVERIFY(fields.seconds);
}

void tst_KelGeoArcEdit::degreesField()
{
    const KelGeoArcEdit edit(nullptr, true);
    const QSpinBox *degrees = Fields(edit).degrees;

    QCOMPARE(degrees->minimum(), -360);
    QCOMPARE(degrees->maximum(), 360);
    QCOMPARE(degrees->singleStep(), 1);
    QCOMPARE(degrees->suffix(), QStringLiteral("°"));
    QCOMPARE(degrees->minimumWidth(), 60);
}

void tst_KelGeoArcEdit::minutesField()
{
    const KelGeoArcEdit edit(nullptr, true);
    const QSpinBox *minutes = Fields(edit).minutes;

    QCOMPARE(minutes->minimum(), 0);
    QCOMPARE(minutes->maximum(), 59);
    QCOMPARE(minutes->singleStep(), 10);
    QCOMPARE(minutes->suffix(), QStringLiteral("'"));
    QCOMPARE(minutes->minimumWidth(), 50);
}

void tst_KelGeoArcEdit::secondsField()
{
    const KelGeoArcEdit edit(nullptr, true);
    const QDoubleSpinBox *seconds = Fields(edit).seconds;

    QCOMPARE(seconds->decimals(), 3);
    QCOMPARE(seconds->minimum(), 0.0);
    QCOMPARE(seconds->maximum(), 59.999);
    QCOMPARE(seconds->singleStep(), 10.0);
    QCOMPARE(seconds->suffix(), QStringLiteral("\""));
    QCOMPARE(seconds->minimumWidth(), 80);
}

void tst_KelGeoArcEdit::hemispheres()
{
    const KelGeoArcEdit latitude(nullptr, true);
    QCOMPARE(Fields(latitude).hemisphere->count(), 2);
    QCOMPARE(Fields(latitude).hemisphere->itemText(0), QStringLiteral("Nord"));
    QCOMPARE(Fields(latitude).hemisphere->itemText(1), QStringLiteral("Süd"));

    const KelGeoArcEdit longitude(nullptr, false);
    QCOMPARE(Fields(longitude).hemisphere->count(), 2);
    QCOMPARE(Fields(longitude).hemisphere->itemText(0), QStringLiteral("Ost"));
    QCOMPARE(Fields(longitude).hemisphere->itemText(1), QStringLiteral("West"));
}

void tst_KelGeoArcEdit::translations_data()
{
    QTest::addColumn<bool>("latitude");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");

    QTest::newRow("north") << true << 0 << "Nord";
    QTest::newRow("south") << true << 1 << "Süd";
    QTest::newRow("east") << false << 0 << "Ost";
    QTest::newRow("west") << false << 1 << "West";
}

void tst_KelGeoArcEdit::translations()
{
    QFETCH(bool, latitude);
    QFETCH(int, row);
    QFETCH(QString, text);
    KelRecordingTranslator translator;
    translator.setTranslation(text, QStringLiteral("translated"));

    const KelGeoArcEdit edit(nullptr, latitude);

    QVERIFY(translator.hasRecorded(QStringLiteral("KelGeoArcEdit"), text,
                                   QStringLiteral("COMBOBOX  Coordinate/Nautical bearing")));
    QCOMPARE(Fields(edit).hemisphere->itemText(row), QStringLiteral("translated"));
}

void tst_KelGeoArcEdit::startsAtZero()
{
    const KelGeoArcEdit edit(nullptr, false);
    QCOMPARE(edit.geoArc().decimalDegrees(), 0.0);
    QCOMPARE(Fields(edit).hemisphere->currentIndex(), 0);
}

void tst_KelGeoArcEdit::setGeoArc_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<int>("hemisphere");
    QTest::addColumn<int>("degrees");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("seconds");

    const double twelve = 12 + 30 / 60.0 + 15.5 / 3600;
    QTest::newRow("zero") << 0.0 << 0 << 0 << 0 << "0.000\"";
    QTest::newRow("north or east") << twelve << 0 << 12 << 30 << "15.500\"";
    QTest::newRow("south or west") << -twelve << 1 << 12 << 30 << "15.500\"";
    QTest::newRow("minus a half is shown as north or east") << -0.5 << 0 << 0 << 30 << "0.000\"";
    QTest::newRow("just inside of minus one") << -0.75 << 0 << 0 << 45 << "0.000\"";
    QTest::newRow("minus one") << -1.0 << 1 << 1 << 0 << "0.000\"";
    QTest::newRow("minus one and a half") << -1.5 << 1 << 1 << 30 << "0.000\"";
    QTest::newRow("the pole") << 90.0 << 0 << 90 << 0 << "0.000\"";
    QTest::newRow("the date line from the west") << -180.0 << 1 << 180 << 0 << "0.000\"";
    QTest::newRow("largest") << 360.0 << 0 << 360 << 0 << "0.000\"";
    QTest::newRow("smallest") << -360.0 << 1 << 360 << 0 << "0.000\"";
    // 1 + 40/60 lies just below 1°40′ as a number; the seconds end below 60 in any case.
    QTest::newRow("rounding ends below the next minute") << 1 + 40 / 60.0 << 0 << 1 << 39 << "59.999\"";
    QTest::newRow("invalid is shown as the largest") << 720.0 << 0 << 360 << 0 << "0.000\"";
    QTest::newRow("just inside of minus two") << -1.75 << 1 << 1 << 45 << "0.000\"";
}

void tst_KelGeoArcEdit::setGeoArc()
{
    QFETCH(double, angle);
    KelGeoArcEdit edit(nullptr, true);
    // Nothing may be left of what was there.
    edit.setGeoArc(KelGeoArc(-7.2575));

    edit.setGeoArc(KelGeoArc(angle));

    const Fields fields(edit);
    QTEST(fields.hemisphere->currentIndex(), "hemisphere");
    QTEST(fields.degrees->value(), "degrees");
    QTEST(fields.minutes->value(), "minutes");
    QTEST(fields.seconds->text(), "seconds");
}

void tst_KelGeoArcEdit::noNumberStaysWithinTheFields_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<int>("degrees");
    QTest::addColumn<int>("hemisphere");

    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0 << 0;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 360 << 0;
    QTest::newRow("infinite, negative") << -std::numeric_limits<double>::infinity() << 360 << 1;
    QTest::newRow("largest number") << std::numeric_limits<double>::max() << 360 << 0;
    QTest::newRow("smallest number") << std::numeric_limits<double>::lowest() << 360 << 1;
}

void tst_KelGeoArcEdit::noNumberStaysWithinTheFields()
{
    QFETCH(double, angle);
    KelGeoArcEdit edit(nullptr, false);

    edit.setGeoArc(KelGeoArc(angle));

    const Fields fields(edit);
    QTEST(fields.degrees->value(), "degrees");
    QTEST(fields.hemisphere->currentIndex(), "hemisphere");
    QVERIFY(fields.minutes->value() >= 0 && fields.minutes->value() <= 59);
    QVERIFY(fields.seconds->value() >= 0.0 && fields.seconds->value() <= 59.999);
    QVERIFY(std::abs(edit.geoArc().decimalDegrees()) < 361.0);
}

void tst_KelGeoArcEdit::geoArc_data()
{
    QTest::addColumn<int>("hemisphere");
    QTest::addColumn<int>("degrees");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("expected");

    QTest::newRow("whole degrees") << 0 << 53 << 0 << 0.0 << 53.0;
    QTest::newRow("minutes are sixtieths") << 0 << 53 << 30 << 0.0 << 53.5;
    QTest::newRow("seconds are sixtieths of minutes") << 0 << 0 << 0 << 36.0 << 0.01;
    QTest::newRow("thousandths of a second") << 0 << 0 << 0 << 0.036 << 0.00001;
    QTest::newRow("all three") << 0 << 10 << 15 << 36.0 << 10.26;
    QTest::newRow("south or west negates all three") << 1 << 10 << 15 << 36.0 << -10.26;
    QTest::newRow("negative half") << 1 << 0 << 30 << 0.0 << -0.5;
    QTest::newRow("negative degrees in the north") << 0 << -5 << 0 << 0.0 << -5.0;
    QTest::newRow("minutes do not follow the sign of the degrees") << 0 << -5 << 30 << 0.0 << -4.5;
    QTest::newRow("both signs cancel") << 1 << -5 << 0 << 0.0 << 5.0;
    QTest::newRow("both signs cancel, minutes stay southern") << 1 << -5 << 30 << 0.0 << 4.5;
    QTest::newRow("full turn") << 0 << 360 << 0 << 0.0 << 360.0;
    QTest::newRow("more than a full turn") << 0 << 360 << 59 << 0.0 << 360 + 59 / 60.0;
}

void tst_KelGeoArcEdit::geoArc()
{
    QFETCH(int, hemisphere);
    QFETCH(int, degrees);
    QFETCH(int, minutes);
    QFETCH(double, seconds);
    QFETCH(double, expected);
    const KelGeoArcEdit edit(nullptr, true);
    const Fields fields(edit);

    fields.hemisphere->setCurrentIndex(hemisphere);
    fields.degrees->setValue(degrees);
    fields.minutes->setValue(minutes);
    fields.seconds->setValue(seconds);

    QVERIFY2(std::abs(edit.geoArc().decimalDegrees() - expected) < 1e-12,
             qPrintable(QString::number(edit.geoArc().decimalDegrees(), 'g', 17)));
}

void tst_KelGeoArcEdit::southAndWestOfTwelveDegrees()
{
    KelGeoArc arc(0.0);
    arc.setDegree(-12, -30, -15.5);

    KelGeoArcEdit latitude(nullptr, true);
    latitude.setGeoArc(arc);
    QCOMPARE(Fields(latitude).hemisphere->currentText(), QStringLiteral("Süd"));
    QCOMPARE(Fields(latitude).degrees->text(), QStringLiteral("12°"));
    QCOMPARE(Fields(latitude).minutes->text(), QStringLiteral("30'"));
    QCOMPARE(Fields(latitude).seconds->text(), QStringLiteral("15.500\""));
    QVERIFY(std::abs(latitude.geoArc().decimalDegrees() + (12 + 30 / 60.0 + 15.5 / 3600)) < 1e-12);

    KelGeoArcEdit longitude(nullptr, false);
    longitude.setGeoArc(KelLongitude(arc.decimalDegrees()));
    QCOMPARE(Fields(longitude).hemisphere->currentText(), QStringLiteral("West"));
    QVERIFY(longitude.geoArc() == arc);
}

void tst_KelGeoArcEdit::hemisphereComesFromWholeDegreesAlone()
{
    KelGeoArcEdit edit(nullptr, true);
    edit.setGeoArc(KelLatitude(-0.5));

    QCOMPARE(Fields(edit).hemisphere->currentText(), QStringLiteral("Nord"));
    QCOMPARE(edit.geoArc().decimalDegrees(), 0.5);
}

void tst_KelGeoArcEdit::negativeEntryWithSouthIsPositive()
{
    KelGeoArcEdit edit(nullptr, true);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    const Fields fields(edit);

    QTest::keyClick(fields.hemisphere, Qt::Key_Down);
    QCOMPARE(fields.hemisphere->currentText(), QStringLiteral("Süd"));
    type(fields.degrees, QStringLiteral("-5"));

    QCOMPARE(edit.geoArc().decimalDegrees(), 5.0);
}

void tst_KelGeoArcEdit::secondSetReplacesTheFirst()
{
    KelGeoArcEdit edit(nullptr, false);
    edit.setGeoArc(KelGeoArc(-73.99));
    edit.setGeoArc(KelGeoArc(8.25));

    QCOMPARE(Fields(edit).hemisphere->currentText(), QStringLiteral("Ost"));
    QVERIFY(edit.geoArc() == KelGeoArc(8.25));
}

void tst_KelGeoArcEdit::typing()
{
    KelGeoArcEdit edit(nullptr, false);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    const Fields fields(edit);

    QTest::keyClick(fields.hemisphere, Qt::Key_W);
    type(fields.degrees, QStringLiteral("73"));
    type(fields.minutes, QStringLiteral("59"));
    type(fields.seconds, QStringLiteral("8.376"));

    QVERIFY(std::abs(edit.geoArc().decimalDegrees() + (73 + 59 / 60.0 + 8.376 / 3600)) < 1e-12);
}

void tst_KelGeoArcEdit::steps()
{
    KelGeoArcEdit edit(nullptr, false);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    const Fields fields(edit);

    QTest::keyClick(fields.degrees, Qt::Key_Up);
    QTest::keyClick(fields.minutes, Qt::Key_Up);
    QTest::keyClick(fields.seconds, Qt::Key_Up);

    QCOMPARE(fields.degrees->value(), 1);
    QCOMPARE(fields.minutes->value(), 10);
    QCOMPARE(fields.seconds->value(), 10.0);
}

void tst_KelGeoArcEdit::keyboardGoesFromLeftToRight()
{
    KelGeoArcEdit edit(nullptr, false);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    const Fields fields(edit);

    edit.setFocus();
    QCOMPARE(QApplication::focusWidget(), fields.hemisphere);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), fields.degrees);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), fields.minutes);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), fields.seconds);
}

QTEST_MAIN(tst_KelGeoArcEdit)
#include "tst_KelGeoArcEdit.moc"

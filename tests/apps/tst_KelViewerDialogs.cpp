// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerTestSupport.h"

#include <KelGeoArcEdit.h>
#include <KelGeoLocationSettings.h>
#include <KelOwnMapDialog.h>
#include <KelPreferencesDialog.h>
#include <KelStyleEditor.h>
#include <KelTemporarySettings.h>

#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QUndoStack>

using namespace KelViewerTestSupport;

/// The dialogs in which the user chooses colours, preferences and a map picture.
class tst_KelViewerDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void colors_data();
    void colors();
    void preferences_data();
    void preferences();
    void mapPictures_data();
    void mapPictures();
    void noPictureIsChosen();
    void edgesOfTheMap_data();
    void edgesOfTheMap();

private:
    static void chooseFile(KelOwnMapDialog &dialog, const QString &name);
    static QPushButton *okButton(const KelOwnMapDialog &dialog)
    {
        return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    }
    static QString problem(const KelOwnMapDialog &dialog);
    [[nodiscard]] QString picture() const
    {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::green);
        const QString name = m_dir.filePath(QStringLiteral("map.png"));
        return image.save(name) ? name : QString();
    }

    KelTemporarySettings m_settings;
    QTemporaryDir m_dir;
};

void tst_KelViewerDialogs::init()
{
    m_settings.clear();
    qputenv("XDG_DATA_HOME", m_dir.path().toUtf8());
    KelGeoLocationSettings::instance().loadSettings();
}

void tst_KelViewerDialogs::colors_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("line") << "lineColor" << true;
    QTest::newRow("area") << "fillColor" << true;
    QTest::newRow("line, cancelled") << "lineColor" << false;
    QTest::newRow("area, cancelled") << "fillColor" << false;
}

void tst_KelViewerDialogs::colors()
{
    QFETCH(QString, button);
    QFETCH(bool, accepted);
    const bool isLine = button == QLatin1String("lineColor");
    KelViewerWindow window;
    QVERIFY(show(window));
    fill(window, QStringLiteral("AB"));
    list(window)->selectRows({1});
    const KelGPXTrackConfiguration before = window.document()->selection().configuration(1);
    const QColor half(10, 20, 30, 40);

    QColor offered;
    bool hasTransparency = false;
    whenAsked<QColorDialog>([&](QColorDialog &dialog) {
        offered = dialog.currentColor();
        hasTransparency = dialog.testOption(QColorDialog::ShowAlphaChannel);
        dialog.setCurrentColor(half);
        accepted ? dialog.accept() : dialog.reject();
    });
    window.findChild<QPushButton *>(button)->click();
    QCOMPARE(offered, isLine ? before.lineColor() : before.fillColor());
    QVERIFY(hasTransparency);

    KelGPXTrackConfiguration expected = before;
    if (accepted)
        isLine ? expected.setLineColor(half) : expected.setFillColor(half);
    QVERIFY(window.document()->selection().configuration(1) == expected);
    QVERIFY(window.document()->selection().configuration(0) == before);
    QCOMPARE(window.document()->undoStack()->canUndo(), accepted);
    if (!accepted)
        return;
    QCOMPARE(window.findChild<QPushButton *>(button)->text(), QStringLiteral("#280a141e"));
    action(window, "undo")->trigger();
    QVERIFY(window.document()->selection().configuration(1) == before);
}

void tst_KelViewerDialogs::preferences_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("switched off") << true << true;
    QTest::newRow("switched on") << false << true;
    QTest::newRow("cancelled") << true << false;
}

void tst_KelViewerDialogs::preferences()
{
    QFETCH(bool, before);
    QFETCH(bool, accepted);
    KelGeoLocationSettings &settings = KelGeoLocationSettings::instance();
    settings.setInstantlyAddLocations(before);
    settings.saveSettings();
    KelViewerWindow window;
    bool shown = !before;
    whenAsked<KelPreferencesDialog>([&](KelPreferencesDialog &dialog) {
        auto *box = dialog.findChild<QCheckBox *>(QStringLiteral("myInstantlyAddLocations"));
        shown = box->isChecked();
        box->click();
        auto *buttons = dialog.findChild<QDialogButtonBox *>();
        buttons->button(accepted ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel)->click();
    });
    action(window, "preferences")->trigger();
    QCOMPARE(shown, before);
    QCOMPARE(settings.instantlyAddLocations(), accepted ? !before : before);
    QCOMPARE(QSettings().value(QStringLiteral("instantlyAddLocations")).toBool(), accepted ? !before : before);
}

void tst_KelViewerDialogs::chooseFile(KelOwnMapDialog &dialog, const QString &name)
{
    whenAsked<QFileDialog>([&](QFileDialog &chooser) {
        auto *edit = chooser.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        edit->setText(name);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    const QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->parent() == &dialog)
            button->click();
    }
}

QString tst_KelViewerDialogs::problem(const KelOwnMapDialog &dialog)
{
    const QList<QLabel *> labels = dialog.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (label->wordWrap())
            return label->text();
    }
    return QStringLiteral("no label");
}

void tst_KelViewerDialogs::mapPictures_data()
{
    QTest::addColumn<QByteArray>("content"); // empty: a good picture
    QTest::newRow("a picture") << QByteArray();
    QTest::newRow("no picture") << QByteArray("hello");
    QTest::newRow("a drawing") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    QTest::newRow("cut off") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
}

void tst_KelViewerDialogs::mapPictures()
{
    QFETCH(QByteArray, content);
    QString name = picture();
    QVERIFY(!name.isEmpty());
    if (!content.isEmpty()) {
        name = m_dir.filePath(QStringLiteral("bad.png"));
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    KelOwnMapDialog dialog;
    dialog.show();
    QVERIFY(!okButton(dialog)->isEnabled());
    QCOMPARE(problem(dialog), QStringLiteral("Bitte ein Bild wählen."));
    chooseFile(dialog, name);
    QCOMPARE(okButton(dialog)->isEnabled(), content.isEmpty());
    QCOMPARE(dialog.image().isNull(), !content.isEmpty());
    QVERIFY(content.isEmpty() ? problem(dialog).isEmpty()
                              : problem(dialog).startsWith(QStringLiteral("Das Bild ist nicht lesbar: ")));
}

void tst_KelViewerDialogs::noPictureIsChosen()
{
    KelOwnMapDialog dialog;
    dialog.show();
    chooseFile(dialog, picture());
    whenAsked<QFileDialog>([](QFileDialog &chooser) { chooser.reject(); });
    const QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->parent() == &dialog)
            button->click();
    }
    // The former choice stays.
    QVERIFY(okButton(dialog)->isEnabled());
    QCOMPARE(dialog.image().size(), QSize(40, 20));
}

void tst_KelViewerDialogs::edgesOfTheMap_data()
{
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("south");
    QTest::addColumn<double>("west");
    QTest::addColumn<double>("east");
    QTest::addColumn<bool>("possible");
    QTest::newRow("Europe") << 55.0 << 47.0 << 5.0 << 16.0 << true;
    QTest::newRow("across the date line") << 10.0 << -10.0 << 170.0 << -170.0 << true;
    QTest::newRow("upside down") << 47.0 << 55.0 << 5.0 << 16.0 << false;
    QTest::newRow("no height") << 50.0 << 50.0 << 5.0 << 16.0 << false;
}

void tst_KelViewerDialogs::edgesOfTheMap()
{
    QFETCH(double, north);
    QFETCH(double, south);
    QFETCH(double, west);
    QFETCH(double, east);
    QFETCH(bool, possible);
    KelOwnMapDialog dialog;
    dialog.show();
    const QList<KelGeoArcEdit *> edits = dialog.findChildren<KelGeoArcEdit *>();
    const auto edit = [&edits](const QString &name) {
        for (KelGeoArcEdit *candidate : edits) {
            if (candidate->accessibleName() == name)
                return candidate;
        }
        return static_cast<KelGeoArcEdit *>(nullptr);
    };
    edit(QStringLiteral("Nordrand:"))->setGeoArc(KelGeoArc(north));
    edit(QStringLiteral("Südrand:"))->setGeoArc(KelGeoArc(south));
    edit(QStringLiteral("Westrand:"))->setGeoArc(KelGeoArc(west));
    edit(QStringLiteral("Ostrand:"))->setGeoArc(KelGeoArc(east));
    chooseFile(dialog, picture());
    QCOMPARE(okButton(dialog)->isEnabled(), possible);
    QCOMPARE(problem(dialog).isEmpty(), possible);
    if (!possible)
        return;
    QCOMPARE(dialog.bounds().north().decimalDegrees(), north);
    QCOMPARE(dialog.bounds().south().decimalDegrees(), south);
    QCOMPARE(dialog.bounds().west().decimalDegrees(), west);
    QCOMPARE(dialog.bounds().east().decimalDegrees(), east);
}

QTEST_MAIN(tst_KelViewerDialogs)
#include "tst_KelViewerDialogs.moc"

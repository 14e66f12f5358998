// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include <KelElidedLabel.h>
#include <KelGeoArc.h>
#include <KelLatitudeEdit.h>
#include <KelLongitudeEdit.h>

#include <QBuffer>
#include <QComboBox>
#include <QUiLoader>
#include <QtTest>

#include <memory>

/// The widgets as Qt Designer and QUiLoader find them: by name, in forms, through the plugin.
class tst_KelDesignerWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void widgetsAreOffered();
    void formSetsProperties();
    void latitudeAndLongitudeDiffer();
    void widgetsAreUsableWithoutAForm();

private:
    QUiLoader m_loader;
};

void tst_KelDesignerWidgets::initTestCase()
{
    m_loader.clearPluginPaths();
    m_loader.addPluginPath(QStringLiteral(KEL_PLUGIN_DIR));
}

void tst_KelDesignerWidgets::widgetsAreOffered()
{
    const QStringList offered = m_loader.availableWidgets();
    for (const char *name : {"KelLatitudeEdit", "KelLongitudeEdit", "KelElidedLabel"})
        QVERIFY2(offered.contains(QLatin1String(name)), name);
}

void tst_KelDesignerWidgets::formSetsProperties()
{
    QByteArray form = R"(<ui version="4.0"><class>Form</class><widget class="QWidget" name="Form">
        <layout class="QVBoxLayout" name="layout">
          <item><widget class="KelLatitudeEdit" name="south">
            <property name="decimalDegrees"><double>-53.5</double></property></widget></item>
          <item><widget class="KelElidedLabel" name="label">
            <property name="fullText"><string>A name of some length</string></property></widget></item>
        </layout></widget></ui>)";
    QBuffer buffer(&form);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    const std::unique_ptr<QWidget> widget(m_loader.load(&buffer));
    QVERIFY2(widget != nullptr, qPrintable(m_loader.errorString()));

    const auto *edit = widget->findChild<KelLatitudeEdit *>(QStringLiteral("south"));
    QVERIFY(edit != nullptr);
    QCOMPARE(edit->decimalDegrees(), -53.5);
    QCOMPARE(edit->geoArc(), KelGeoArc(-53.5));
    const auto *label = widget->findChild<KelElidedLabel *>(QStringLiteral("label"));
    QVERIFY(label != nullptr);
    QCOMPARE(label->fullText(), "A name of some length");
}

void tst_KelDesignerWidgets::latitudeAndLongitudeDiffer()
{
    const auto hemispheres = [this](const QString &className) {
        const std::unique_ptr<QWidget> widget(m_loader.createWidget(className));
        const auto *box = widget ? widget->findChild<QComboBox *>() : nullptr;
        return box ? box->itemText(0) + QLatin1Char(' ') + box->itemText(1) : QString();
    };
    QCOMPARE(hemispheres(QStringLiteral("KelLatitudeEdit")), QString::fromUtf8("Nord S\xc3\xbc"
                                                                               "d"));
    QCOMPARE(hemispheres(QStringLiteral("KelLongitudeEdit")), "Ost West");
}

void tst_KelDesignerWidgets::widgetsAreUsableWithoutAForm()
{
    KelLongitudeEdit edit;
    QCOMPARE(edit.decimalDegrees(), 0.0);
    QVERIFY(edit.setProperty("decimalDegrees", -8.25));
    QCOMPARE(edit.decimalDegrees(), -8.25);
    QCOMPARE(QByteArray(edit.metaObject()->userProperty().name()), QByteArray("decimalDegrees"));
}

QTEST_MAIN(tst_KelDesignerWidgets)
#include "tst_KelDesignerWidgets.moc"

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelAddPlaceDialog.h"

#include <KelGPXBeelineCreator.h>
#include <KelGPXTrackPoint.h>
#include <KelGeoArcEdit.h>
#include <KelGeoPositionSamples.h>
#include <KelLatitude.h>
#include <KelLongitude.h>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

constexpr int SAMPLE_COUNT = 13;
constexpr int FIRST_SAMPLE = 0;
constexpr int SECOND_SAMPLE = 3;

const KelGeoPositionSamples &samples()
{
    return KelSingleton<KelGeoPositionSamples>::instance();
}

} // namespace

KelGeoPosition KelAddPlaceDialog::PositionEditor::position() const
{
    return KelGeoPosition(KelLatitude(latitude->geoArc().decimalDegrees()),
                          KelLongitude(longitude->geoArc().decimalDegrees()));
}

KelAddPlaceDialog::KelAddPlaceDialog(Kind kind, QWidget *parent)
    : QDialog(parent)
    , m_kind(kind)
    , m_name(new QLineEdit(this))
    , m_problem(new QLabel(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(kind == Place ? tr("Ort hinzufügen") : tr("Fluglinie hinzufügen"));
    auto *layout = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    form->addRow(tr("&Name:"), m_name);
    m_name->setObjectName(QStringLiteral("name"));
    layout->addLayout(form);
    m_from = addPosition(kind == Place ? tr("Ort") : tr("Von"), FIRST_SAMPLE);
    if (kind == Beeline)
        m_to = addPosition(tr("Nach"), SECOND_SAMPLE);
    m_problem->setObjectName(QStringLiteral("problem"));
    layout->addWidget(m_problem);
    layout->addWidget(m_buttons);
    m_buttons->button(QDialogButtonBox::Ok)->setText(tr("Hinzufügen"));
    m_buttons->button(QDialogButtonBox::Cancel)->setText(tr("Abbrechen"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    suggestName();
    validate();
}

KelAddPlaceDialog::PositionEditor KelAddPlaceDialog::addPosition(const QString &title, int sample)
{
    PositionEditor editor;
    auto *group = new QGroupBox(title, this);
    auto *form = new QFormLayout(group);
    editor.sample = new QComboBox(group);
    for (int i = 0; i < SAMPLE_COUNT; ++i)
        editor.sample->addItem(samples().name(KelGeoPositionSamplesEnum(i)), i);
    editor.sample->insertItem(0, tr("(eigene Koordinaten)"), -1);
    editor.latitude = new KelGeoArcEdit(group, true);
    editor.longitude = new KelGeoArcEdit(group, false);
    editor.latitude->setAccessibleName(tr("%1: Breite").arg(title));
    editor.longitude->setAccessibleName(tr("%1: Länge").arg(title));
    form->addRow(tr("Beispielort:"), editor.sample);
    form->addRow(tr("Breite:"), editor.latitude);
    form->addRow(tr("Länge:"), editor.longitude);
    layout()->addWidget(group);

    const auto takeSample = [this, editor](int row) {
        const int value = editor.sample->itemData(row).toInt();
        if (value >= 0) {
            const KelGeoPosition position = samples().position(KelGeoPositionSamplesEnum(value));
            editor.latitude->setGeoArc(position.latitude());
            editor.longitude->setGeoArc(position.longitude());
        }
        suggestName();
        validate();
    };
    connect(editor.sample, &QComboBox::activated, this, takeSample);
    for (KelGeoArcEdit *arc : {editor.latitude, editor.longitude}) {
        const auto typed = [this, editor] {
            editor.sample->setCurrentIndex(0);
            validate();
        };
        for (QAbstractSpinBox *box : arc->findChildren<QAbstractSpinBox *>())
            connect(box, &QAbstractSpinBox::editingFinished, this, [this] { validate(); });
        for (QComboBox *hemisphere : arc->findChildren<QComboBox *>())
            connect(hemisphere, &QComboBox::activated, this, typed);
    }
    editor.sample->setCurrentIndex(sample + 1);
    const KelGeoPosition position = samples().position(KelGeoPositionSamplesEnum(sample));
    editor.latitude->setGeoArc(position.latitude());
    editor.longitude->setGeoArc(position.longitude());
    return editor;
}

void KelAddPlaceDialog::suggestName()
{
    // What the user typed stays.
    if (m_name->text() != m_suggested)
        return;
    const auto name = [](const PositionEditor &editor) {
        return editor.sample && editor.sample->currentData().toInt() >= 0 ? editor.sample->currentText() : tr("Ort");
    };
    m_suggested = m_kind == Place ? name(m_from) : tr("%1 – %2").arg(name(m_from), name(m_to));
    m_name->setText(m_suggested);
}

void KelAddPlaceDialog::validate()
{
    QString problem;
    const auto check = [&problem](const PositionEditor &editor) {
        if (!editor.latitude)
            return;
        const KelGeoPosition position = editor.position();
        if (!position.latitude().isInValidRange())
            problem = tr("Die Breite muss zwischen 90° Süd und 90° Nord liegen.");
        else if (!position.longitude().isInValidRange())
            problem = tr("Die Länge muss zwischen 180° West und 180° Ost liegen.");
        else if (!position.isValid())
            problem = tr("Der Punkt 0° Nord, 0° Ost gilt als nicht gesetzt.");
    };
    check(m_from);
    check(m_to);
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(problem.isEmpty());
}

KelGPXTrack KelAddPlaceDialog::track() const
{
    const QString name = m_name->text().trimmed();
    if (m_kind == Beeline)
        return KelGPXBeelineCreator(m_from.position(), m_to.position()).createBeeline(name);
    return KelGPXTrack(KelGPXTrackPoint(m_from.position(), 0, QDateTime(), name));
}

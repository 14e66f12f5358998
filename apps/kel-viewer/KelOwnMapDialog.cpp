// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOwnMapDialog.h"

#include "KelPictureReader.h"

#include <KelGeoArcEdit.h>
#include <KelGeoPosition.h>

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

KelOwnMapDialog::KelOwnMapDialog(QWidget *parent)
    : QDialog(parent)
    , m_file(new QLineEdit(this))
    , m_south(new KelGeoArcEdit(this, true))
    , m_west(new KelGeoArcEdit(this, false))
    , m_north(new KelGeoArcEdit(this, true))
    , m_east(new KelGeoArcEdit(this, false))
    , m_problem(new QLabel(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Eigenes Kartenbild"));
    auto *choose = new QPushButton(tr("&Datei …"), this);
    connect(choose, &QPushButton::clicked, this, &KelOwnMapDialog::chooseFile);
    m_file->setReadOnly(true);
    m_file->setAccessibleName(tr("Bild:"));
    auto *row = new QHBoxLayout;
    row->addWidget(m_file, 1);
    row->addWidget(choose);

    auto *form = new QFormLayout(this);
    form->addRow(tr("Bild:"), row);
    for (const auto &[edge, name] : {std::pair(m_north, tr("Nordrand:")), std::pair(m_south, tr("Südrand:")),
                                     std::pair(m_west, tr("Westrand:")), std::pair(m_east, tr("Ostrand:"))}) {
        edge->setAccessibleName(name);
        form->addRow(name, edge);
    }
    m_problem->setWordWrap(true);
    form->addRow(m_problem);
    form->addRow(m_buttons);
    m_north->setGeoArc(KelGeoArc(55.0));
    m_south->setGeoArc(KelGeoArc(47.0));
    m_west->setGeoArc(KelGeoArc(5.0));
    m_east->setGeoArc(KelGeoArc(16.0));

    m_buttons->button(QDialogButtonBox::Ok)->setText(tr("Verwenden"));
    m_buttons->button(QDialogButtonBox::Cancel)->setText(tr("Abbrechen"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (KelGeoArcEdit *edge : {m_south, m_west, m_north, m_east}) {
        for (QAbstractSpinBox *box : edge->findChildren<QAbstractSpinBox *>())
            connect(box, &QAbstractSpinBox::editingFinished, this, &KelOwnMapDialog::validate);
        for (QComboBox *hemisphere : edge->findChildren<QComboBox *>())
            connect(hemisphere, &QComboBox::activated, this, &KelOwnMapDialog::validate);
    }
    validate();
}

KelGeoPositionRect KelOwnMapDialog::bounds() const
{
    return KelGeoPositionRect(KelGeoPosition(KelLatitude(m_south->geoArc().decimalDegrees()),
                                             KelLongitude(m_west->geoArc().decimalDegrees())),
                              KelGeoPosition(KelLatitude(m_north->geoArc().decimalDegrees()),
                                             KelLongitude(m_east->geoArc().decimalDegrees())));
}

void KelOwnMapDialog::chooseFile()
{
    const QString name = QFileDialog::getOpenFileName(this, tr("Kartenbild wählen"), {},
                                                      tr("Bilder (*.png *.jpg *.jpeg *.webp)"));
    if (name.isEmpty())
        return;
    KelPictureReader reader;
    const KelPictureReader::Result result = reader.read(name);
    m_image = reader.image();
    m_file->setText(name);
    validate();
    if (result == KelPictureReader::Result::UnknownKind)
        m_problem->setText(tr("Das Bild ist nicht lesbar: es ist weder PNG noch JPEG noch WebP."));
    else if (result == KelPictureReader::Result::TooLarge)
        m_problem->setText(tr("Das Bild ist zu groß: mehr als 100 Millionen Bildpunkte oder 32767 auf einer Seite."));
    else if (result != KelPictureReader::Result::Done)
        m_problem->setText(tr("Das Bild ist nicht lesbar: %1").arg(reader.reason()));
}

void KelOwnMapDialog::validate()
{
    QString problem;
    if (m_image.isNull())
        problem = tr("Bitte ein Bild wählen.");
    else if (!bounds().isValid() || bounds().north() == bounds().south())
        problem = tr("Der Nordrand muss nördlich des Südrands liegen, alle Ränder auf der Erde.");
    m_problem->setText(problem);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(problem.isEmpty());
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelExportDialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

namespace
{

constexpr int LARGEST_SIDE = 8000;
constexpr double LARGEST_FACTOR = 4.0;

} // namespace

KelExportDialog::KelExportDialog(const QSize &suggested, QWidget *parent)
    : QDialog(parent)
    , m_width(new QSpinBox(this))
    , m_height(new QSpinBox(this))
    , m_factor(new QDoubleSpinBox(this))
{
    setWindowTitle(tr("Bild exportieren"));
    for (QSpinBox *side : {m_width, m_height}) {
        side->setRange(50, LARGEST_SIDE);
        side->setSuffix(tr(" px"));
    }
    m_width->setValue(suggested.width());
    m_height->setValue(suggested.height());
    m_factor->setRange(0.25, LARGEST_FACTOR);
    m_factor->setSingleStep(0.25);
    m_factor->setValue(1.0);

    auto *result = new QLabel(this);
    const auto describe = [this, result] {
        const QSize pixels = (QSizeF(size()) * scaleFactor()).toSize();
        result->setText(tr("Das Bild wird %1 × %2 Pixel groß.").arg(pixels.width()).arg(pixels.height()));
    };
    connect(m_width, &QSpinBox::valueChanged, this, describe);
    connect(m_height, &QSpinBox::valueChanged, this, describe);
    connect(m_factor, &QDoubleSpinBox::valueChanged, this, describe);
    describe();

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Weiter"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Abbrechen"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *form = new QFormLayout(this);
    form->addRow(tr("&Breite:"), m_width);
    form->addRow(tr("&Höhe:"), m_height);
    form->addRow(tr("&Faktor:"), m_factor);
    form->addRow(result);
    form->addRow(buttons);
}

QSize KelExportDialog::size() const
{
    return {m_width->value(), m_height->value()};
}

double KelExportDialog::scaleFactor() const
{
    return m_factor->value();
}

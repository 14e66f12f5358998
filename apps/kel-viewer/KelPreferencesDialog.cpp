// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPreferencesDialog.h"

#include <KelPreferencesGeoLocation.h>

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

KelPreferencesDialog::KelPreferencesDialog(QWidget *parent)
    : QDialog(parent)
    , m_page(new KelPreferencesGeoLocation(this))
{
    setWindowTitle(tr("Einstellungen"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Übernehmen"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Abbrechen"));
    connect(buttons, &QDialogButtonBox::accepted, this, &KelPreferencesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_page);
    layout->addWidget(buttons);
    m_page->readFromConfig();
}

void KelPreferencesDialog::accept()
{
    m_page->writeToConfig();
    QDialog::accept();
}

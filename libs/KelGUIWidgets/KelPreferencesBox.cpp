// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelPreferencesBox.h"

#include <QBoxLayout>

KelPreferencesBox::KelPreferencesBox(QWidget *parent, const QString &title, KelPreferencesType type)
    : QGroupBox(title, parent)
    , KelPreferencesItem(type)
{
}

KelPreferencesBox::~KelPreferencesBox() = default;

void KelPreferencesBox::readFromConfig()
{
}

void KelPreferencesBox::writeToConfig()
{
}

void KelPreferencesBox::revert()
{
    readFromConfig();
}

bool KelPreferencesBox::mayBeLeft() const
{
    return true;
}

void KelPreferencesBox::stackInto(QBoxLayout *layout)
{
    layout->addWidget(this);
    readFromConfig();
}

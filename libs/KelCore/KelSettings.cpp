// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelSettings.h"

#include <QSettings>
#include <QVariant>

namespace
{

template<class T>
bool saveValue(const KelConfigItem<T> &item)
{
    QSettings store;
    store.setValue(item.key(), item.value());
    store.sync();
    return store.status() == QSettings::NoError;
}

template<class T>
QVariant storedValue(const KelConfigItem<T> &item)
{
    return QSettings().value(item.key(), item.defaultValue());
}

} // namespace

KelSettings::KelSettings(QObject *parent)
    : QObject(parent)
{
}

KelSettings::~KelSettings() = default;

void KelSettings::load(KelConfigItem<bool> &item) const
{
    item.setValue(storedValue(item).toBool());
}

void KelSettings::load(KelConfigItem<int> &item) const
{
    bool isNumber = false;
    const int number = storedValue(item).toInt(&isNumber);
    item.setValue(isNumber ? number : item.defaultValue());
}

void KelSettings::load(KelConfigItem<QString> &item) const
{
    item.setValue(storedValue(item).toString());
}

bool KelSettings::save(const KelConfigItem<bool> &item) const
{
    return saveValue(item);
}

bool KelSettings::save(const KelConfigItem<int> &item) const
{
    return saveValue(item);
}

bool KelSettings::save(const KelConfigItem<QString> &item) const
{
    return saveValue(item);
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelLogger.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QString>

namespace
{

Q_LOGGING_CATEGORY(osmCategory, "kel.osm", QtInfoMsg)
Q_LOGGING_CATEGORY(settingsCategory, "kel.settings", QtInfoMsg)

} // namespace

void KelLogger::logOSM(const QString &text)
{
    qCInfo(osmCategory).noquote() << text;
}

void KelLogger::logSettings(const QString &text)
{
    qCWarning(settingsCategory).noquote() << text;
}

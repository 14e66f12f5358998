// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTemporarySettings.h"

#include <QCoreApplication>
#include <QSettings>

KelTemporarySettings::KelTemporarySettings()
{
    if (!m_dir.isValid())
        qFatal("no temporary directory for the test's settings");
    QCoreApplication::setOrganizationName(QStringLiteral("libKelGeoLocation"));
    QCoreApplication::setApplicationName(QStringLiteral("tests"));
    for (const QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat}) {
        for (const QSettings::Scope scope : {QSettings::UserScope, QSettings::SystemScope})
            QSettings::setPath(format, scope, m_dir.path());
    }
}

void KelTemporarySettings::clear()
{
    QSettings settings;
    settings.clear();
    settings.sync();
}

QString KelTemporarySettings::filePath() const
{
    return QSettings().fileName();
}

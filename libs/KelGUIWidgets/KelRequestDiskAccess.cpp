// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelRequestDiskAccess.h"

#include <KelConfigItem.h>
#include <KelSettings.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include <utility>

namespace
{

QString settingsKey(KelDiskAccessMode mode)
{
    switch (mode) {
    case Read:
        return QStringLiteral("diskAccess/readDirectory");
    case Write:
        return QStringLiteral("diskAccess/writeDirectory");
    case Unknown:
        break;
    }
    return QStringLiteral("diskAccess/directory");
}

/// A remembered directory may be gone by now; then the dialog's own choice is better.
QString rememberedDirectory(KelDiskAccessMode mode)
{
    KelConfigItem<QString> item(settingsKey(mode), QString());
    KelSettings().load(item);
    const QString &directory = item.value();
    return !directory.isEmpty() && QDir(directory).exists() ? directory : QString();
}

void remember(KelDiskAccessMode mode, const QString &path)
{
    KelConfigItem<QString> item(settingsKey(mode), QString());
    item.setValue(QFileInfo(path).absolutePath());
    KelSettings().save(item);
}

QString askUser(const QString &title, const QString &directory, const QString &filter)
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return {};
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, directory, filter);
}

} // namespace

KelRequestDiskAccess::KelRequestDiskAccess() = default;

KelRequestDiskAccess::~KelRequestDiskAccess() = default;

QString KelRequestDiskAccess::getOpenFileName(KelDiskAccessMode mode, const QString &filter, const QString &title,
                                              const QString &startPath)
{
    const QString directory = startPath.isEmpty() ? rememberedDirectory(mode) : startPath;
    const QString path = m_dialog ? m_dialog(title, directory, filter) : askUser(title, directory, filter);
    if (!path.isEmpty())
        remember(mode, path);
    return path;
}

void KelRequestDiskAccess::setDialog(
    std::function<QString(const QString &title, const QString &directory, const QString &filter)> dialog)
{
    m_dialog = std::move(dialog);
}

// Here, so that programs and plugins that come without any other user of it find one and the same object.
template class KelSingleton<KelRequestDiskAccess>;

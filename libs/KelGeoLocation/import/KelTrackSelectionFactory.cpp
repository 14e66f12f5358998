// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackSelectionFactory.h"

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelLogger.h>
#include <KelRequestDiskAccess.h>
#include <KelTrackSelectionFactoryGPXFile.h>
#include <KelTrackSelectionFactoryKmlFile.h>

#include <QObject>
#include <QUrl>

namespace
{

void logUse(const KelTrackSelectionFactoryAbstract &factory)
{
    KelLogger::logOSM(QStringLiteral("ACTION:useFactory VALUE:%1")
                          .arg(factory.supportedFileFormats().join(QLatin1Char(','))));
}

} // namespace

KelTrackSelectionFactory::KelTrackSelectionFactory()
    : m_factories{new KelTrackSelectionFactoryGPXFile, new KelTrackSelectionFactoryKmlFile}
{
}

KelTrackSelectionFactory::~KelTrackSelectionFactory()
{
    qDeleteAll(m_factories);
}

const KelTrackSelectionFactoryAbstract *KelTrackSelectionFactory::findFactory(const QUrl &url) const
{
    for (const KelTrackSelectionFactoryAbstract *factory : m_factories) {
        if (factory->supportsFile(url))
            return factory;
    }
    return nullptr;
}

bool KelTrackSelectionFactory::supportsFile(const QUrl &url) const
{
    return findFactory(url) != nullptr;
}

QStringList KelTrackSelectionFactory::supportedFileFormats() const
{
    QStringList formats;
    for (const KelTrackSelectionFactoryAbstract *factory : m_factories)
        formats.append(factory->supportedFileFormats());
    return formats;
}

KelGPXConfiguredTrackList KelTrackSelectionFactory::createConfiguredTrackList(const QUrl &url) const
{
    const KelTrackSelectionFactoryAbstract *factory = findFactory(url);
    if (!factory)
        return KelGPXConfiguredTrackList();
    logUse(*factory);
    return factory->createConfiguredTrackList(url);
}

KelGPXConfiguredTrackList KelTrackSelectionFactory::createConfiguredTrackList(const QUrl &url,
                                                                              KelErrorHistory *errors) const
{
    const auto *factory = dynamic_cast<const KelTrackSelectionFactoryFile *>(findFactory(url));
    if (!factory) {
        if (errors) {
            errors->add({url.isLocalFile() ? url.toLocalFile() : url.toDisplayString(), -1, -1,
                         QStringLiteral("not a kind of file that holds tracks (known are %1)")
                             .arg(supportedFileFormats().join(QLatin1String(", ")))});
        }
        return KelGPXConfiguredTrackList();
    }
    logUse(*factory);
    return factory->createConfiguredTrackList(url, errors);
}

KelGPXConfiguredTrackList KelTrackSelectionFactory::createConfiguredTrackList(const QList<QUrl> &urls) const
{
    KelGPXConfiguredTrackList all;
    for (const QUrl &url : urls) {
        const KelGPXConfiguredTrackList list = createConfiguredTrackList(url);
        if (list.isValid())
            all.append(list);
    }
    return all;
}

KelGPXConfiguredTrackList KelTrackSelectionFactory::askUserReadFile() const
{
    const QString path = KelRequestDiskAccess::instance().getOpenFileName(
        Read, supportedFileFormats().join(QLatin1Char(' ')), QObject::tr("Datei für Route öffnen"), QString());
    if (path.isEmpty())
        return KelGPXConfiguredTrackList();
    return createConfiguredTrackList(QUrl::fromLocalFile(path));
}

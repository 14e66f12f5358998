// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackSelectionFactoryFile.h"

#include <KelGPXConfiguredTrackList.h>

#include <QFileInfo>
#include <QUrl>

KelTrackSelectionFactoryFile::~KelTrackSelectionFactoryFile() = default;

bool KelTrackSelectionFactoryFile::supportsFile(const QUrl &url) const
{
    return supportsFile(QFileInfo(url.toLocalFile()));
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryFile::createConfiguredTrackList(const QUrl &url) const
{
    return createConfiguredTrackList(QFileInfo(url.toLocalFile()));
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryFile::createConfiguredTrackList(const QUrl &url,
                                                                                  KelErrorHistory *errors) const
{
    return createConfiguredTrackList(QFileInfo(url.toLocalFile()), errors);
}

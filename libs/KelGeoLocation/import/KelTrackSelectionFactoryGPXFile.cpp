// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackSelectionFactoryGPXFile.h"

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>
#include <KelGPXTrackFile.h>
#include <KelGeoLocationSettings.h>
#include <KelXMLStreamCursor.h>

#include <QFile>
#include <QFileInfo>

namespace
{

/// What a well-formed file holds from which no track could be made.
struct Content {
    QString root;
    int tracks = 0;
    int routes = 0;
    int waypoints = 0;
};

Content surveyContent(const QFileInfo &fileInfo)
{
    Content content;
    QFile file(fileInfo.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return content;
    KelXMLStreamCursor root(&file);
    content.root = root.name().toString();
    while (root.nextChild()) {
        const QStringView name = root.child().name();
        content.tracks += name == QLatin1String("trk") ? 1 : 0;
        content.routes += name == QLatin1String("rte") ? 1 : 0;
        content.waypoints += name == QLatin1String("wpt") ? 1 : 0;
    }
    return content;
}

QString whyNothingWasRead(const Content &content)
{
    if (content.tracks > 0 && content.routes > 0)
        return QStringLiteral("no track or route of the file has points that can be read");
    if (content.tracks > 0)
        return QStringLiteral("no track of the file has points");
    if (content.routes > 0) {
        return QStringLiteral("the file has only routes of plain route points; a route is read where its points carry "
                              "the way between them (\"gpxx:rpt\")");
    }
    if (content.waypoints > 0)
        return QStringLiteral("the file has only waypoints, no tracks and no routes");
    if (!content.root.isEmpty() && content.root != QLatin1String("gpx"))
        return QStringLiteral("the file is no GPX: its root element is \"%1\"").arg(content.root);
    return QStringLiteral("the file has no tracks and no routes");
}

} // namespace

KelTrackSelectionFactoryGPXFile::~KelTrackSelectionFactoryGPXFile() = default;

QStringList KelTrackSelectionFactoryGPXFile::supportedFileFormats() const
{
    return {QStringLiteral("*.gpx")};
}

bool KelTrackSelectionFactoryGPXFile::supportsFile(const QFileInfo &file) const
{
    return file.suffix().compare(QLatin1String("gpx"), Qt::CaseInsensitive) == 0;
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryGPXFile::createConfiguredTrackList(const QFileInfo &file) const
{
    return createConfiguredTrackList(file, nullptr);
}

KelGPXConfiguredTrackList KelTrackSelectionFactoryGPXFile::createConfiguredTrackList(const QFileInfo &file,
                                                                                     KelErrorHistory *errors) const
{
    KelErrorHistory readErrors;
    const KelGPXTrackFile trackFile(file, &readErrors);

    KelGPXConfiguredTrackList list;
    const QList<KelGPXTrack> tracks = trackFile.tracks();
    for (const KelGPXTrack &track : tracks)
        list.append(KelGPXConfiguredTrack(track, KelGeoLocationSettings::instance().defaultTrackConfiguration()));

    if (errors && !list.isValid()) {
        if (readErrors.isEmpty())
            readErrors.add({file.filePath(), -1, -1, whyNothingWasRead(surveyContent(file))});
        for (const KelErrorHistory::Entry &entry : readErrors.entries())
            errors->add(entry);
    }
    return list;
}

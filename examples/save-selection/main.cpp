// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Imports track files, keeps them as a selection of one's own, and reads that back.
//   save-selection walk.gpx tour.kml trip.xml

#include <KelErrorHistory.h>
#include <KelGPXTrackSelection.h>
#include <KelTrackSelectionFactory.h>
#include <KelXMLBuilder.h>
#include <KelXMLLoader.h>

#include <QDir>
#include <QDomDocument>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>

#include <cstdio>

namespace
{

//! [import]
KelGPXTrackSelection import(const QStringList &files)
{
    KelGPXTrackSelection selection;
    for (const QString &file : files) {
        KelErrorHistory errors;
        selection.addTracks(
            KelTrackSelectionFactory::instance().createConfiguredTrackList(QUrl::fromLocalFile(file), &errors));
        for (const KelErrorHistory::Entry &error : errors.entries())
            std::fprintf(stderr, "%s\n", qPrintable(error.toString()));
    }
    return selection;
}
//! [import]

//! [save]
/// Styles and order go into the document, each track into a file of its own in the folder.
bool save(const KelGPXTrackSelection &selection, const QFileInfo &file, const QDir &folder)
{
    if (!folder.mkpath(".")) // without the folder, the tracks would be written into the document
        return false;
    QDomDocument document;
    QDomElement root = KelXMLBuilder::buildRootElement(document, "trip");
    selection.toXml(root, folder);
    return KelXMLBuilder::saveUTF8(document, file, nullptr);
}
//! [save]

//! [load]
KelGPXTrackSelection load(const QFileInfo &file, const QDir &folder)
{
    return KelGPXTrackSelection(KelXMLLoader::loadDocumentElement(file), folder);
}
//! [load]

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv); // the import asks for the user's default style, colours included
    QStringList files = QGuiApplication::arguments().mid(1);
    if (files.size() < 2) {
        std::fprintf(stderr, "usage: save-selection TRACK-FILE... DOCUMENT\n");
        return 2;
    }
    const QFileInfo document(files.takeLast());
    const QDir folder(document.absolutePath() + "/" + document.completeBaseName() + ".tracks");

    KelGPXTrackSelection selection = import(files);
    selection.setCroppingOpacity(64);
    if (selection.isEmpty() || !save(selection, document, folder)) {
        std::fprintf(stderr, "%s was not written\n", qPrintable(document.filePath()));
        return 1;
    }
    const KelGPXTrackSelection stored = load(document, folder);
    for (const KelGPXConfiguredTrack &track : stored.tracks())
        std::printf("%s: %d points\n", qPrintable(track.name()), track.track().countPoints());
    return stored.count() == selection.count() && stored.nominalCroppingOpacity() == 64 ? 0 : 1;
}

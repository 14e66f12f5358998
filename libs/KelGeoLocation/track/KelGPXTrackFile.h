// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKFILE_H
#define KELGPXTRACKFILE_H

#include <KelGPXTrack.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QString>

class KelErrorHistory;
class QDomElement;
class QFileInfo;

/// The tracks of one GPX file: every "trk", then every "rte" under the document element, whatever that is called.
///
/// The file is read as a stream and is closed when the constructor returns; memory is needed for the points only. Files
/// in the plain form that devices and programs write are read several times faster than those with a document type, CDATA
/// sections, processing instructions or another encoding than UTF-8 (KelXMLPlainCursor), with the same result.
///
/// A file that cannot be read, or that is not well-formed to its very end, has no tracks; elements nested deeper than
/// KelXMLGate::MAXIMUM_DEPTH count as malformed. A pipe is read until its writer closes it.
class KELGEOLOCATION_EXPORT KelGPXTrackFile
{
public:
    /// `errors`, if given, gets one entry with file, line, column and message when the file cannot be read or parsed;
    /// a file without tracks is no error.
    explicit KelGPXTrackFile(const QFileInfo &file, KelErrorHistory *errors = nullptr);

    KelGPXTrackFile(const KelGPXTrackFile &) = default;
    KelGPXTrackFile(KelGPXTrackFile &&) noexcept = default;
    KelGPXTrackFile &operator=(const KelGPXTrackFile &) = default;
    KelGPXTrackFile &operator=(KelGPXTrackFile &&) noexcept = default;
    virtual ~KelGPXTrackFile();

    /// In document order: every track, then every route.
    [[nodiscard]] QList<KelGPXTrack> tracks() const { return m_tracks; }
    /// At least one track was read.
    [[nodiscard]] bool isValid() const { return !m_tracks.isEmpty(); }

    /// Reads the children of `root` that are called `tagName`, in order. Each adds 1 to `counter`; those without
    /// points are dropped. One without a name is called after the file and its number, "walk 3" in walk.gpx.
    /// Deliberate: "include" is ignored, it is only for the files of a track store.
    [[nodiscard]] QList<KelGPXTrack> readTracks(QDomElement root, const QString &tagName, int &counter,
                                                const QFileInfo &file) const;

private:
    QList<KelGPXTrack> m_tracks;
};

#endif

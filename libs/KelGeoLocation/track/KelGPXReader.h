// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXREADER_H
#define KELGPXREADER_H

#include <QList>
#include <QStringView>

class KelGPXTrack;
class KelGPXTrackPoint;
class KelXMLCursor;
class QDateTime;
class QDir;
class QFileInfo;
class QString;

/// All rules by which GPX is read, written once for trees, streams and the plain form.
///
/// Reading never fails: unknown elements are skipped, what is missing takes its default. Of several children of a
/// point with the same name the first counts, of several in a track the last.
class KelGPXReader
{
public:
    /// Every valid "trk", then every valid "rte" under a document element, whatever order they have there.
    static QList<KelGPXTrack> readFile(KelXMLCursor &root, const QFileInfo &file);
    /// Keeps a track that has a segment, under a name made of file and number if it has none of its own.
    static void keepTrack(KelGPXTrack track, const QFileInfo &file, int number, QList<KelGPXTrack> &tracks);

    /// Merges a "trk" or "rte" into `track`. Without a directory, "include" is ignored.
    static void mergeTrack(KelXMLCursor &element, const QDir *directory, KelGPXTrack &track);
    static QList<KelGPXTrackPoint> readSegment(KelXMLCursor &segment);
    static QList<KelGPXTrackPoint> readGarminRoutePoints(KelXMLCursor &extensions);
    static KelGPXTrackPoint readPoint(KelXMLCursor &element);

    /// One coordinate tuple, see KelGPXTrackPoint::decodeKml().
    static KelGPXTrackPoint decodeTuple(QStringView tuple);
    /// Compact point text, see KelGPXTrackSegment::decodeTrackPoints().
    static QList<KelGPXTrackPoint> decodeTuples(QStringView text);

private:
    static void mergeTrack(KelXMLCursor &element, const QDir *directory, int depth, KelGPXTrack &track);
    static void mergeIncludedFile(const QFileInfo &file, int depth, KelGPXTrack &track);
    static void mergeFirstTrack(KelXMLCursor &root, int depth, KelGPXTrack &track);
    static void mergeEnclaves(KelXMLCursor &enclaves, int depth, KelGPXTrack &track);
};

#endif

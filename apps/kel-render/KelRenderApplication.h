// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRENDERAPPLICATION_H
#define KELRENDERAPPLICATION_H

#include "KelDiagnostics.h"
#include "KelMapPicture.h"
#include "KelRenderOptions.h"
#include "KelRunStatistics.h"

#include <KelGPXTrackSelection.h>

#include <QJsonArray>
#include <QStringList>

class KelMapGeometry;
class KelPictureEncoder;
class KelPictureSource;

/// The program: reads what the command line names, then writes what it asks for. Nothing is written before everything
/// was read.
class KelRenderApplication
{
public:
    /// Undecodable are those of the arguments that are not what was typed: that was no UTF-8.
    [[nodiscard]] KelExitCode run(const QStringList &arguments, const QStringList &undecodable);

private:
    void drawWithinMemory();
    bool readInputs();
    void loadSelection();
    bool checkTargets();
    bool checkWholeness();
    bool refuse(const QString &target, const QString &reason);
    [[nodiscard]] QStringList sources() const;
    [[nodiscard]] bool isInAStore(const QString &target) const;
    bool saveSelection();
    void applyStyle();
    bool writeResults();
    bool print(const QByteArray &text);
    void printReport();
    bool exportTracks();
    bool writePicture();
    bool writePicture(const QByteArray &bytes);
    QByteArray encode(KelPictureEncoder &encoder, const KelPictureSource &picture);
    void failPicture(KelExitCode code, const QString &what, const QString &reason);
    void addResult(const char *kind, const QString &file);
    bool checkScale(const KelMapGeometry &geometry);
    [[nodiscard]] bool isAnyTrackWithin(const KelMapGeometry &geometry) const;
    void warnOfEmptyPicture();
    [[nodiscard]] QSize pictureSize() const;

    KelRenderOptions m_options;
    KelDiagnostics m_diagnostics;
    KelGPXTrackSelection m_selection;
    QStringList m_trackFiles; ///< that are read, readable or not
    bool m_selectionIsWhole = true;
    int m_storedRows = 0; ///< rows of the selection that brought their looks along
    KelMapPicture m_ownMap;
    KelRunStatistics m_statistics;
    QJsonArray m_results; ///< "kind" (picture, gpx or selection) and "file" of what was written
};

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRENDERAPPLICATION_H
#define KELRENDERAPPLICATION_H

#include "KelDiagnostics.h"
#include "KelMapPicture.h"
#include "KelRenderOptions.h"

#include <KelGPXTrackSelection.h>

#include <QStringList>

class KelMapGeometry;

/// The program: reads what the command line names, then writes what it asks for. Nothing is written before everything
/// was read.
class KelRenderApplication
{
public:
    [[nodiscard]] KelExitCode run(const QStringList &arguments);

private:
    bool readInputs();
    void loadSelection();
    bool checkTargets();
    bool saveSelection();
    void applyStyle();
    bool writeResults();
    bool printInfo();
    bool writePicture();
    bool checkScale(const KelMapGeometry &geometry);
    [[nodiscard]] bool isAnyTrackWithin(const KelMapGeometry &geometry) const;
    [[nodiscard]] QSize pictureSize() const;

    KelRenderOptions m_options;
    KelDiagnostics m_diagnostics;
    KelGPXTrackSelection m_selection;
    QStringList m_trackFiles; ///< that were read
    bool m_selectionIsWhole = true;
    int m_storedRows = 0; ///< rows of the selection that brought their looks along
    KelMapPicture m_ownMap;
};

#endif

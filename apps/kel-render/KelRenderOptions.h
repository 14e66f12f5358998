// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELRENDEROPTIONS_H
#define KELRENDEROPTIONS_H

#include "KelMapBounds.h"
#include "KelPictureFormat.h"
#include "KelStyleOptions.h"

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

/// A great-circle line that is to be drawn, as given on the command line.
struct KelBeelineOption
{
    QString from;
    QString to;
    QString name; ///< empty: made of the two places
};

/// What the command line asks for.
struct KelRenderOptions
{
    enum class Map { World, Picture, None };

    QStringList inputs; ///< files and folders
    QList<KelBeelineOption> beelines;
    QString selectionFile;
    bool keepGoing = false; ///< draw what could be read

    QString outputFile; ///< "-" for standard output; empty for no picture
    KelPictureFormat format;
    int quality = -1; ///< 1 to 100; -1 is the encoder's own
    bool info = false;
    bool report = false; ///< as JSON
    bool stats = false;  ///< as JSON
    QString exportFile;
    QString saveSelectionFile;

    std::optional<QSize> size; ///< default: 1600 × 1000, or that of the own map picture
    double scaleFactor = 1.0;
    double padding = 8.0; ///< free border in percent of the picture's sides
    std::optional<KelMapBounds> bounds;

    Map map = Map::World;
    bool dark = false;
    QString mapFile;
    std::optional<KelMapBounds> mapBounds;
    bool scale = true;
    bool attribution = true;
    QString attributionText; ///< empty: the map's own

    KelStyleOptions style;
    std::optional<int> croppingOpacity;

    bool quiet = false;
    bool verbose = false;

    [[nodiscard]] bool toStandardOutput() const { return outputFile == QLatin1String("-"); }
};

#endif

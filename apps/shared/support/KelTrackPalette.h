// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKPALETTE_H
#define KELTRACKPALETTE_H

#include <QColor>

class KelGPXTrackSelection;

/// Colours that tell several tracks apart.
class KelTrackPalette
{
public:
    explicit KelTrackPalette(bool darkMap);

    /// The colour of the track of that number, from 0; saturated, and dark enough (on a dark map: bright enough) to
    /// read.
    [[nodiscard]] QColor color(int index) const;

    /// Gives each of the rows from the first on that look like nothing in particular (the default configuration) a
    /// colour of its own, if there is more than one of them. Tracks that bring a look along keep it.
    void colorize(KelGPXTrackSelection &selection, int firstRow) const;

    /// The same for tracks that come to others: each of the rows from the first on that looks like nothing in
    /// particular gets a colour that no row before it has, and keeps its own where that is one already.
    /// Where the user has not chosen a default either, lines get a width that suits a screen.
    void distinguish(KelGPXTrackSelection &selection, int firstRow) const;

private:
    bool m_darkMap;
};

#endif

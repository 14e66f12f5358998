// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKEDITOPTIONS_H
#define KELGPXTRACKEDITOPTIONS_H

#include <QFlags>

/// The buttons that a row of a track or place list offers, see KelGPXTrackMultiFunctionDelegateWidget.
enum KelGPXTrackEditOption {
    EditOptionNone = 0,   ///< the label alone
    EditOptionAdd = 1,    ///< mark the row's place on the map
    EditOptionDelete = 2, ///< remove the row
    EditOptionZoomTo = 4, ///< show the row's track or place on the map
    EditOptionEdit = 8    ///< edit the row
};
/// Any combination of KelGPXTrackEditOption.
Q_DECLARE_FLAGS(KelGPXTrackEditOptions, KelGPXTrackEditOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(KelGPXTrackEditOptions)

#endif

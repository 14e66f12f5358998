// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKROWDELEGATE_H
#define KELTRACKROWDELEGATE_H

#include <KelGPXTrackMultiFunctionDelegate.h>

/// The library's row with buttons, and around it what a list shows besides: which rows are selected, which one is
/// current, and the colour of each track.
class KelTrackRowDelegate : public KelGPXTrackMultiFunctionDelegate
{
    Q_OBJECT

public:
    using KelGPXTrackMultiFunctionDelegate::KelGPXTrackMultiFunctionDelegate;

    /// The background, then the library's row. Expects a KelGPXTrackListModel.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// The buttons take no keyboard focus: Tab leaves the list, and every button has a key of its own.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    /// Leaves the strip of the track's colour free.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXFULLSHAPELISTMODEL_H
#define KELGPXFULLSHAPELISTMODEL_H

#include <KelGPXFullShape.h>
#include <KelGPXTrackDisplayOptions.h>
#include <KelGeoLocationGlobal.h>

#include <QAbstractListModel>
#include <QColor>
#include <QList>

class KelGPXTrackShape;

/// The combinations of track shape and marker that a user may choose for a track, as a list for combo boxes and views.
///
/// Each row shows the shape's description, its tool tip and an icon in the colours that the track will have. Fill the
/// list for the shape that the track has by nature and set the colours and display options of the style that is being
/// edited; the icons follow, the selected row stays.
class KELGEOLOCATION_EXPORT KelGPXFullShapeListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// An empty list; black stroke, grey fill, no display options.
    KelGPXFullShapeListModel();

    using QObject::parent;

    /// The number of shapes; 0 below a valid parent.
    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;

    /// Always 1.
    [[nodiscard]] int columnCount(const QModelIndex &parent = QModelIndex()) const override;

    /// Always an invalid index: the list is flat.
    [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;

    /// Qt::DisplayRole: the shape's description, Qt::ToolTipRole: its tool tip, Qt::DecorationRole: its QIcon, which is
    /// null for a shape without a marker; otherwise an invalid QVariant.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// The shape of a row; a default one, both values 0, when there is no such row (negative rows included).
    [[nodiscard]] KelGPXFullShape markerAt(int row) const;
    /// The shape of the index's row; a default one for an invalid index.
    [[nodiscard]] KelGPXFullShape markerAt(const QModelIndex &index) const;

    /// The first row of the shape in its normalised form (marker bits that do not fit the track shape are dropped
    /// before the search), or −1.
    [[nodiscard]] int indexOf(const KelGPXFullShape &shape) const;

    /// Replaces the rows by every marker of every shape into which a track of the given shape may be switched; an
    /// unknown or automatic shape gives no rows. Resets the model.
    void fill(const KelGPXTrackShape &shape);

    /// What the icons are painted with. Each signals all icons as changed, also if the value is the same.
    void setStrokeColor(const QColor &color);
    /// \copydoc setStrokeColor
    void setFillColor(const QColor &color);
    /// \copydoc setStrokeColor
    void setDisplayOptions(const KelGPXTrackDisplayOptions &options);

    /// Signals all rows as changed in Qt::DecorationRole alone; for an empty list with invalid indexes.
    void updateVisualization();

    /// True if the display options hold neither stroke nor fill, so that nothing would be seen of the track.
    [[nodiscard]] bool wouldBeInvisible() const;

    /// The colours of the icons: transparent where the display options leave the stroke or the fill out, and black
    /// both if they leave out both, so that there is something to see.
    [[nodiscard]] QColor effectiveStrokeColor() const;
    /// \copydoc effectiveStrokeColor
    [[nodiscard]] QColor effectiveFillColor() const;

private:
    [[nodiscard]] bool hasOption(KelGPXTrackDisplayOptionsEnum option) const;
    [[nodiscard]] QColor effectiveColor(KelGPXTrackDisplayOptionsEnum option, const QColor &color) const;

    QList<KelGPXFullShape> m_shapes;
    QColor m_strokeColor = Qt::black;
    QColor m_fillColor = Qt::gray;
    KelGPXTrackDisplayOptions m_displayOptions;
};

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXFullShapeListModel.h"

#include <KelGPXMarkerShape.h>
#include <KelGPXTrackShape.h>

#include <QIcon>

KelGPXFullShapeListModel::KelGPXFullShapeListModel() = default;

int KelGPXFullShapeListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shapes.size());
}

int KelGPXFullShapeListModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QModelIndex KelGPXFullShapeListModel::parent(const QModelIndex &) const
{
    return {};
}

QVariant KelGPXFullShapeListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};

    switch (role) {
    case Qt::DecorationRole:
        return markerAt(index).createIcon(effectiveStrokeColor(), effectiveFillColor());
    case Qt::ToolTipRole:
        return markerAt(index).toolTip();
    case Qt::DisplayRole:
        return markerAt(index).describe();
    default:
        return {};
    }
}

KelGPXFullShape KelGPXFullShapeListModel::markerAt(int row) const
{
    return row >= 0 && row < m_shapes.size() ? m_shapes.at(row) : KelGPXFullShape();
}

KelGPXFullShape KelGPXFullShapeListModel::markerAt(const QModelIndex &index) const
{
    return markerAt(index.row());
}

int KelGPXFullShapeListModel::indexOf(const KelGPXFullShape &shape) const
{
    return int(m_shapes.indexOf(shape.normalized()));
}

void KelGPXFullShapeListModel::fill(const KelGPXTrackShape &shape)
{
    beginResetModel();
    m_shapes.clear();
    const QList<KelGPXTrackShape> trackShapes = shape.possibleShapes();
    for (const KelGPXTrackShape &trackShape : trackShapes) {
        const QList<KelGPXMarkerShape> markerShapes = trackShape.createMarkerShapes();
        for (const KelGPXMarkerShape &markerShape : markerShapes)
            m_shapes.append(KelGPXFullShape(trackShape, markerShape));
    }
    endResetModel();
}

void KelGPXFullShapeListModel::setStrokeColor(const QColor &color)
{
    m_strokeColor = color;
    updateVisualization();
}

void KelGPXFullShapeListModel::setFillColor(const QColor &color)
{
    m_fillColor = color;
    updateVisualization();
}

void KelGPXFullShapeListModel::setDisplayOptions(const KelGPXTrackDisplayOptions &options)
{
    m_displayOptions = options;
    updateVisualization();
}

void KelGPXFullShapeListModel::updateVisualization()
{
    // Deliberate: also sent for an empty list. Both indexes are invalid then, which views ignore and
    // QAbstractItemModelTester objects to.
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::DecorationRole});
}

bool KelGPXFullShapeListModel::wouldBeInvisible() const
{
    return !hasOption(DisplayStroke) && !hasOption(DisplayFill);
}

QColor KelGPXFullShapeListModel::effectiveStrokeColor() const
{
    return effectiveColor(DisplayStroke, m_strokeColor);
}

QColor KelGPXFullShapeListModel::effectiveFillColor() const
{
    return effectiveColor(DisplayFill, m_fillColor);
}

bool KelGPXFullShapeListModel::hasOption(KelGPXTrackDisplayOptionsEnum option) const
{
    return m_displayOptions.reducedTo(option) != 0;
}

QColor KelGPXFullShapeListModel::effectiveColor(KelGPXTrackDisplayOptionsEnum option, const QColor &color) const
{
    // Deliberate: what would draw nothing is previewed in black rather than by an empty icon.
    if (wouldBeInvisible())
        return Qt::black;
    return hasOption(option) ? color : QColor(Qt::transparent);
}

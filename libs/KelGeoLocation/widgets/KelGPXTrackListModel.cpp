// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackListModel.h"

#include <KelGPXTrackConfiguration.h>
#include <KelGPXTrackSelection.h>

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

#include <algorithm>

namespace
{

const QString myMimeType = QStringLiteral("application/gpxtrack");

constexpr int NAME_COLUMN = 0;
constexpr int COLUMN_COUNT = 2;

} // namespace

KelGPXTrackListModel::KelGPXTrackListModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

int KelGPXTrackListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_tracks.count();
}

int KelGPXTrackListModel::columnCount(const QModelIndex &) const
{
    return COLUMN_COUNT;
}

QModelIndex KelGPXTrackListModel::parent(const QModelIndex &) const
{
    return {};
}

Qt::ItemFlags KelGPXTrackListModel::flags(const QModelIndex &index) const
{
    // The empty space below the last row takes drops, too.
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled | Qt::ItemIsEnabled;
}

QVariant KelGPXTrackListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};

    switch (role) {
    case Qt::EditRole:
        return trackAt(index).name();
    case Qt::ToolTipRole:
        return trackAt(index).description();
    case Qt::DisplayRole:
        return index.column() == NAME_COLUMN ? QVariant(trackAt(index).name()) : QVariant();
    default:
        return {};
    }
}

QVariant KelGPXTrackListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return section == NAME_COLUMN ? QVariant(tr("Name")) : QVariant();
}

bool KelGPXTrackListModel::setData(const QModelIndex &, const QVariant &, int)
{
    return false;
}

Qt::DropActions KelGPXTrackListModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

QStringList KelGPXTrackListModel::mimeTypes() const
{
    return {myMimeType};
}

QMimeData *KelGPXTrackListModel::mimeData(const QModelIndexList &indexes) const
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    for (const QModelIndex &index : indexes) {
        if (index.isValid())
            stream << QString::number(index.row());
    }

    auto *data = new QMimeData;
    data->setData(myMimeType, payload);
    return data;
}

bool KelGPXTrackListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                        const QModelIndex &parent)
{
    if (action == Qt::IgnoreAction)
        return true;
    if (!data || !data->hasFormat(myMimeType))
        return false;

    const int target = dropTarget(row, column, parent);

    // Deliberate: the moves follow one another with the row numbers of the start of the drag, although each move
    // shifts the rows between its source and its target. Mostly a single row is dragged.
    QDataStream stream(data->data(myMimeType));
    for (int offset = 0; !stream.atEnd(); ++offset) {
        QString source;
        stream >> source;
        // Deliberate: a text that is no number reads as 0 and so moves the first row.
        moveTrack(source.toInt(), target + offset);
    }

    Q_EMIT pleaseSelectTrack(target);
    return true;
}

KelGPXConfiguredTrackList KelGPXTrackListModel::tracks() const
{
    return m_tracks;
}

bool KelGPXTrackListModel::isValidRow(int row) const
{
    return m_tracks.checkRange(row);
}

KelGPXConfiguredTrack KelGPXTrackListModel::trackAt(int row) const
{
    return m_tracks.value(row);
}

KelGPXConfiguredTrack KelGPXTrackListModel::trackAt(const QModelIndex &index) const
{
    return trackAt(index.row());
}

void KelGPXTrackListModel::setConfiguration(int row, const KelGPXTrackConfiguration &configuration)
{
    if (m_tracks.setConfiguration(row, configuration))
        rowsChanged(row, row);
}

void KelGPXTrackListModel::setConfiguration(const QModelIndex &index, const KelGPXTrackConfiguration &configuration)
{
    setConfiguration(index.row(), configuration);
}

void KelGPXTrackListModel::setConfigurationToAll(const KelGPXTrackConfiguration &configuration)
{
    for (int row = 0; row < rowCount(); ++row)
        setConfiguration(row, configuration);
}

void KelGPXTrackListModel::moveTrack(int from, int to)
{
    // A payload may come from a list that has changed since the drag began, or from anywhere.
    if (from == to || !isValidRow(from) || !isValidRow(to))
        return;

    m_tracks.moveTrack(from, to);
    // Deliberate: the rows change their contents in place; views keep their selected rows and the row widgets their
    // row numbers.
    rowsChanged(std::min(from, to), std::max(from, to));
}

void KelGPXTrackListModel::remove(const QModelIndex &index)
{
    if (!index.isValid() || !isValidRow(index.row()))
        return;

    beginResetModel();
    m_tracks.removeAt(index.row());
    endResetModel();
}

void KelGPXTrackListModel::addTracks(const KelGPXConfiguredTrackList &tracks)
{
    beginResetModel();
    m_tracks.append(tracks);
    endResetModel();
}

void KelGPXTrackListModel::setSelection(const KelGPXTrackSelection &selection)
{
    const KelGPXConfiguredTrackList tracks = selection.tracks();
    if (tracks.tracks() == m_tracks.tracks())
        return;

    beginResetModel();
    m_tracks = tracks;
    endResetModel();
}

int KelGPXTrackListModel::dropTarget(int row, int column, const QModelIndex &parent) const
{
    const int lastRow = rowCount() - 1;
    if (row == -1 && column == -1 && !parent.isValid())
        return lastRow;
    const int target = row == -1 && column == -1 ? parent.row() : row;
    // Below the lower edge of the last row views give the row behind it.
    return std::min(target, lastRow);
}

void KelGPXTrackListModel::rowsChanged(int first, int last)
{
    Q_EMIT dataChanged(index(first, 0), index(last, COLUMN_COUNT - 1));
}

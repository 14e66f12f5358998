// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKLISTMODEL_H
#define KELGPXTRACKLISTMODEL_H

#include <KelGPXConfiguredTrackList.h>
#include <KelGeoLocationGlobal.h>

#include <QAbstractTableModel>

class KelGPXTrackConfiguration;
class KelGPXTrackSelection;

/// An ordered list of configured tracks for item views: one row per track, two columns.
///
/// Column 0 shows the track's name; column 1 shows no text of its own, it is free for the row widget of
/// KelGPXTrackMultiFunctionDelegate. The order of the rows is the drawing order: later rows are painted over
/// earlier ones.
///
/// Rows are reordered by drag and drop (move action only). The payload, "application/gpxtrack", is a QDataStream of
/// one QString per dragged index, the row as a decimal number, and nothing else.
///
/// Adding, removing and replacing tracks resets the model. Moving a track changes the contents of the rows in
/// between and signals dataChanged() over them; no row is signalled as moved, so a selected row stays selected and
/// shows another track afterwards.
///
/// Rows out of range never do harm: reading gives a default track, writing is ignored.
class KELGEOLOCATION_EXPORT KelGPXTrackListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// An empty list.
    explicit KelGPXTrackListModel(QObject *parent = nullptr);

    using QObject::parent;

    /// The number of tracks; 0 below a valid parent, since tracks have no children.
    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;

    /// Always 2.
    [[nodiscard]] int columnCount(const QModelIndex &parent = QModelIndex()) const override;

    /// Always an invalid index: the table is flat.
    [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;

    /// Selectable, enabled, draggable and a drop target; only a drop target for an invalid index. Never editable.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

    /// The track's name for Qt::EditRole (both columns) and for Qt::DisplayRole in column 0, its description for
    /// Qt::ToolTipRole (both columns); an invalid QVariant for everything else and for an invalid index.
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// Horizontally "Name" above column 0 and nothing above the others (Qt::DisplayRole); otherwise as the base class.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

    /// Changes nothing and returns false: names are edited elsewhere.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    /// Qt::MoveAction alone.
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;

    /// "application/gpxtrack" alone.
    [[nodiscard]] QStringList mimeTypes() const override;

    /// The payload for the given indexes in the given order; the caller owns it. Invalid indexes are skipped. A row of
    /// which both columns are given stands in the payload twice, so views should select one column.
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;

    /// Moves the payload's rows to the drop position, then emits pleaseSelectTrack() with that position.
    ///
    /// The position is `row`; when row and column are both −1, the parent's row, and when that is −1 too (empty space
    /// below the last row), the last row. A position behind the last row is the last row as well. The payload's k-th
    /// row moves to the position + k, each move by itself: the numbers are those at the start of the drag, although
    /// earlier moves have shifted the rows. A text that is no number moves row 0.
    ///
    /// Returns true for Qt::IgnoreAction without doing anything, and false for data without the payload.
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /// A copy of the list.
    [[nodiscard]] KelGPXConfiguredTrackList tracks() const;

    /// Whether there is a track of that row.
    [[nodiscard]] bool isValidRow(int row) const;

    /// The track at the row; a default configured track when there is no such row (negative rows included).
    [[nodiscard]] KelGPXConfiguredTrack trackAt(int row) const;
    /// The same, for the row of the index.
    [[nodiscard]] KelGPXConfiguredTrack trackAt(const QModelIndex &index) const;

    /// Gives the row's track a new configuration, by the rules of KelGPXConfiguredTrackList::setConfiguration(), and
    /// signals the row as changed only if it did change.
    void setConfiguration(int row, const KelGPXTrackConfiguration &configuration);
    /// The same, for the row of the index.
    void setConfiguration(const QModelIndex &index, const KelGPXTrackConfiguration &configuration);

    /// setConfiguration() for every row from the first to the last, with one dataChanged() for each changed row.
    void setConfigurationToAll(const KelGPXTrackConfiguration &configuration);

    /// Takes the track at `from` out and puts it back in so that it ends at `to`; signals all rows from the one to the
    /// other as changed. Nothing happens for equal rows, nor when one of them does not exist.
    void moveTrack(int from, int to);

    /// Removes the index's row with a model reset; nothing happens for an invalid index.
    void remove(const QModelIndex &index);

    /// Appends the tracks with a model reset, also if there are none.
    void addTracks(const KelGPXConfiguredTrackList &tracks);

    /// Replaces the tracks by those of the selection with a model reset. An equal list changes nothing, so that the
    /// view keeps its current row, selection and scroll position.
    void setSelection(const KelGPXTrackSelection &selection);

Q_SIGNALS:
    /// Asks the view to select a row after a drop. The row is −1 after a drop on an empty model.
    void pleaseSelectTrack(int row);

private:
    [[nodiscard]] int dropTarget(int row, int column, const QModelIndex &parent) const;
    void rowsChanged(int first, int last);

    KelGPXConfiguredTrackList m_tracks;
};

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKLISTVIEW_H
#define KELTRACKLISTVIEW_H

#include <KelGPXTrackListModel.h>

#include <QListView>
#include <QUrl>

class KelTrackRowDelegate;

/// The list of tracks at the side: one row per track with its buttons, reordered by dragging, and a place to
/// drop files.
///
/// A list view of the model's first column: a row stands once in a drag, where a table's row would stand twice.
/// Keys: F2, Delete, Enter (zoom to the track); the window adds more.
class KelTrackListView : public QListView
{
    Q_OBJECT

public:
    explicit KelTrackListView(QWidget *parent = nullptr);

    [[nodiscard]] KelGPXTrackListModel *trackModel() noexcept { return &m_model; }
    /// Shows the tracks; rows that only look different now stay as they are, selected and scrolled.
    void showTracks(const KelGPXTrackSelection &selection);
    /// Rows in ascending order.
    [[nodiscard]] QList<int> selectedRows() const;
    void selectRows(const QList<int> &rows);
    /// Makes the row visible and lets it blink.
    void drawAttention(int row);

Q_SIGNALS:
    void selectionEdited();
    void editRequested(int row);
    void deleteRequested(int row);
    void zoomRequested(int row);
    void filesDropped(const QList<QUrl> &urls);
    /// The rows were put into another order by dragging; the dragged ones begin at the row.
    void reordered(int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void addToSelection(int row);

    KelGPXTrackListModel m_model;
    KelTrackRowDelegate *m_delegate;
};

#endif

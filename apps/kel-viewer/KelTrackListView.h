// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELTRACKLISTVIEW_H
#define KELTRACKLISTVIEW_H

#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegate.h>

#include <QListView>
#include <QUrl>

/// The list of tracks at the side: one row per track with its buttons, reordered by dragging, and a place to
/// drop files.
///
/// A list view of the model's first column: a row stands once in a drag, where a table's row would stand twice.
class KelTrackListView : public QListView
{
    Q_OBJECT

public:
    explicit KelTrackListView(QWidget *parent = nullptr);

    [[nodiscard]] KelGPXTrackListModel *trackModel() noexcept { return &m_model; }
    /// Rows in ascending order.
    [[nodiscard]] QList<int> selectedRows() const;
    void selectRows(const QList<int> &rows);
    /// Makes the row visible, current, and blink.
    void drawAttention(int row);

Q_SIGNALS:
    void selectionEdited();
    void editRequested(int row);
    void deleteRequested(int row);
    void zoomRequested(int row);
    void duplicateRequested(int row);
    void filesDropped(const QList<QUrl> &urls);
    /// The rows were put into another order by dragging.
    void reordered();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void paintEvent(QPaintEvent *event) override;

private:
    KelGPXTrackListModel m_model;
    KelGPXTrackMultiFunctionDelegate *m_delegate;
};

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackListView.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

KelTrackListView::KelTrackListView(QWidget *parent)
    : QListView(parent)
    , m_delegate(new KelGPXTrackMultiFunctionDelegate(
          this, KelGPXTrackEditOptions(EditOptionEdit | EditOptionDelete | EditOptionZoomTo | EditOptionAdd)))
{
    setModel(&m_model);
    setModelColumn(0);
    setItemDelegate(m_delegate);
    setSelectionMode(ExtendedSelection);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setUniformItemSizes(true);
    setAccessibleName(tr("Strecken"));

    connect(m_delegate, &KelGPXTrackMultiFunctionDelegate::editItem, this, &KelTrackListView::editRequested);
    connect(m_delegate, &KelGPXTrackMultiFunctionDelegate::deleteItem, this, &KelTrackListView::deleteRequested);
    connect(m_delegate, &KelGPXTrackMultiFunctionDelegate::zoomToItem, this, &KelTrackListView::zoomRequested);
    connect(m_delegate, &KelGPXTrackMultiFunctionDelegate::addItem, this, &KelTrackListView::duplicateRequested);
    connect(&m_model, &KelGPXTrackListModel::pleaseSelectTrack, this, [this](int row) {
        Q_EMIT reordered();
        selectRows({row});
        drawAttention(row);
    });
}

QList<int> KelTrackListView::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedIndexes())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void KelTrackListView::selectRows(const QList<int> &rows)
{
    QItemSelection selection;
    for (int row : rows) {
        const QModelIndex index = m_model.index(row, 0);
        if (index.isValid())
            selection.select(index, index);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty())
        selectionModel()->setCurrentIndex(selection.last().topLeft(), QItemSelectionModel::NoUpdate);
}

void KelTrackListView::drawAttention(int row)
{
    const QModelIndex index = m_model.index(row, 0);
    if (!index.isValid())
        return;
    scrollTo(index);
    // The row's widget exists only after the row was painted.
    QMetaObject::invokeMethod(
        this,
        [this, row] {
            viewport()->repaint();
            m_delegate->animate(row);
        },
        Qt::QueuedConnection);
}

void KelTrackListView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else
        QListView::dragEnterEvent(event);
}

void KelTrackListView::dragMoveEvent(QDragMoveEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else
        QListView::dragMoveEvent(event);
}

void KelTrackListView::dropEvent(QDropEvent *event)
{
    if (event->mimeData()->hasUrls()) {
        event->acceptProposedAction();
        Q_EMIT filesDropped(event->mimeData()->urls());
        return;
    }
    // The model moves the rows itself: the view must not remove the dragged ones as well.
    const QModelIndex target = indexAt(event->position().toPoint());
    if (m_model.dropMimeData(event->mimeData(), Qt::MoveAction, -1, -1, target)) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
    setState(NoState);
    viewport()->update();
}

void KelTrackListView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    Q_EMIT selectionEdited();
}

void KelTrackListView::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_model.rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
    painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap,
                     tr("Dateien (GPX, KML, KMZ) hierher ziehen oder mit „Strecken öffnen“ wählen."));
}

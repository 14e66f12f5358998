// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackListView.h"

#include "KelTrackRowDelegate.h"

#include <KelGPXTrackSelection.h>

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QTimer>

#include <algorithm>

KelTrackListView::KelTrackListView(QWidget *parent)
    : QListView(parent)
    , m_delegate(new KelTrackRowDelegate(
          this, KelGPXTrackEditOptions(EditOptionEdit | EditOptionDelete | EditOptionZoomTo | EditOptionAdd)))
{
    setModel(&m_model);
    setModelColumn(0);
    setItemDelegateForColumn(0, m_delegate);
    setSelectionMode(ExtendedSelection);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setUniformItemSizes(true);
    setMouseTracking(true); // rows look different under the mouse
    setAccessibleName(tr("Strecken"));

    using Delegate = KelGPXTrackMultiFunctionDelegate;
    connect(m_delegate, &Delegate::editItem, this, &KelTrackListView::editRequested);
    connect(m_delegate, &Delegate::deleteItem, this, &KelTrackListView::deleteRequested);
    connect(m_delegate, &Delegate::zoomToItem, this, &KelTrackListView::zoomRequested);
    connect(m_delegate, &Delegate::addItem, this, &KelTrackListView::addToSelection);
    connect(&m_model, &KelGPXTrackListModel::pleaseSelectTrack, this, &KelTrackListView::reordered);
}

void KelTrackListView::showTracks(const KelGPXTrackSelection &selection)
{
    // A reset closes every row's widget: not for a colour that is being chosen.
    bool sameTracks = selection.count() == m_model.rowCount();
    for (int row = 0; sameTracks && row < selection.count(); ++row)
        sameTracks = m_model.trackAt(row).track() == selection.value(row).track();
    if (sameTracks) {
        for (int row = 0; row < selection.count(); ++row)
            m_model.setConfiguration(row, selection.configuration(row));
    }
    m_model.setSelection(selection);
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
    // After a reset rows are laid out in the event loop, and a row's widget exists only after it was painted.
    QTimer::singleShot(0, this, [this, row] {
        executeDelayedItemsLayout();
        viewport()->repaint();
        m_delegate->animate(row);
    });
}

void KelTrackListView::addToSelection(int row)
{
    const QModelIndex index = m_model.index(row, 0);
    selectionModel()->select(index, QItemSelectionModel::Select);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void KelTrackListView::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && currentIndex().isValid())
        Q_EMIT zoomRequested(currentIndex().row());
    else
        QListView::keyPressEvent(event);
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

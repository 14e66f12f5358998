// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackMultiFunctionDelegate.h"

#include <KelGPXTrackMultiFunctionDelegateWidget.h>

#include <QAbstractItemView>

using Widget = KelGPXTrackMultiFunctionDelegateWidget;

KelGPXTrackMultiFunctionDelegate::KelGPXTrackMultiFunctionDelegate(QAbstractItemView *view,
                                                                   KelGPXTrackEditOptions options)
    : QStyledItemDelegate(view)
    , m_view(view)
    , m_options(options)
    , m_template(new Widget(QModelIndex(), options, view))
{
    m_template->hide();
}

KelGPXTrackMultiFunctionDelegate::~KelGPXTrackMultiFunctionDelegate()
{
    // The view may go on with another delegate, or may have taken the template with it already.
    delete m_template.data();
}

void KelGPXTrackMultiFunctionDelegate::paint(QPainter *, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    if (m_view && index.data(Qt::EditRole).isValid())
        m_view->openPersistentEditor(index);
}

QSize KelGPXTrackMultiFunctionDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return m_template ? m_template->sizeHint() : QSize();
}

QWidget *KelGPXTrackMultiFunctionDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                                        const QModelIndex &index) const
{
    auto *widget = new Widget(index, m_options, parent);
    using Self = KelGPXTrackMultiFunctionDelegate;
    connect(widget, &Widget::editItem, this, &Self::editItem);
    connect(widget, &Widget::addItem, this, &Self::addItem);
    // Deliberate: queued. Deleting a row destroys the very widget whose button was clicked, and zooming may rebuild
    // the list, so both have to wait until the click has been handled.
    connect(widget, &Widget::deleteItem, this, &Self::deleteItem, Qt::QueuedConnection);
    connect(widget, &Widget::zoomToItem, this, &Self::zoomToItem, Qt::QueuedConnection);

    // A view need not ask this delegate to destroy the widget: after a model reset the index is invalid and a delegate
    // of one column is not found any more, and a dying view deletes its children itself.
    const int row = index.row();
    connect(widget, &QObject::destroyed, this, [this, row](QObject *destroyed) { forget(row, destroyed); });

    m_widgets.insert(row, widget);
    return widget;
}

void KelGPXTrackMultiFunctionDelegate::destroyEditor(QWidget *editor, const QModelIndex &index) const
{
    if (auto *widget = qobject_cast<Widget *>(editor)) {
        forget(widget->row(), widget);
        // Deliberate: the connections of addItem and zoomToItem die with the widget.
        using Self = KelGPXTrackMultiFunctionDelegate;
        disconnect(widget, &Widget::editItem, this, &Self::editItem);
        disconnect(widget, &Widget::deleteItem, this, &Self::deleteItem);
    }
    QAbstractItemDelegate::destroyEditor(editor, index);
}

void KelGPXTrackMultiFunctionDelegate::setEditorData(QWidget *, const QModelIndex &) const
{
}

void KelGPXTrackMultiFunctionDelegate::setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const
{
}

void KelGPXTrackMultiFunctionDelegate::animate(int row)
{
    if (Widget *widget = m_widgets.value(row))
        widget->startAnimation();
}

void KelGPXTrackMultiFunctionDelegate::forget(int row, const QObject *widget) const
{
    // By then the row may have a newer widget, which stays.
    const auto entry = m_widgets.constFind(row);
    if (entry != m_widgets.cend() && entry.value() == widget)
        m_widgets.erase(entry);
}

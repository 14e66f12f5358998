// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKMULTIFUNCTIONDELEGATE_H
#define KELGPXTRACKMULTIFUNCTIONDELEGATE_H

#include <KelGPXTrackEditOptions.h>
#include <KelGeoLocationGlobal.h>

#include <QHash>
#include <QPointer>
#include <QStyledItemDelegate>

class QAbstractItemView;

class KelGPXTrackMultiFunctionDelegateWidget;

/// Shows each row of a list as a KelGPXTrackMultiFunctionDelegateWidget: the row's text and a few tool buttons.
///
/// It serves any model whose display and edit roles give the row's text:
///
///     auto *delegate = new KelGPXTrackMultiFunctionDelegate(view, EditOptionEdit | EditOptionDelete);
///     view->setItemDelegateForColumn(0, delegate);
///     connect(delegate, &KelGPXTrackMultiFunctionDelegate::deleteItem, host, &Host::removeTrack);
///
/// The row widgets are persistent editors of the view. Each is made when its row is painted for the first time and
/// lives until the view closes it (row removed, model reset), so a list of ten thousand rows has as many widgets as
/// rows that have been seen. A row's widget keeps the row number with which it was made. The delegate belongs to one
/// view, which is its parent, and should be set for one column only: there is one widget to a row.
///
/// The widgets are transparent. A host that wants the selected row to stand out beneath them derives from the delegate,
/// paints that and then calls paint() of this class.
class KELGEOLOCATION_EXPORT KelGPXTrackMultiFunctionDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// A delegate for the view, which becomes its parent; the options choose the buttons of every row.
    KelGPXTrackMultiFunctionDelegate(QAbstractItemView *view, KelGPXTrackEditOptions options);
    ~KelGPXTrackMultiFunctionDelegate() override;

    /// Draws nothing, but asks the view for a persistent editor if the index has a valid Qt::EditRole.
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// The same for every index: that of a row widget with these options and no text.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// A new row widget, connected to the delegate's signals.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;

    /// Gives the row widget up: it dies later, and until then neither edits nor deletes. The index may be invalid, as
    /// it is after a model reset.
    void destroyEditor(QWidget *editor, const QModelIndex &index) const override;

    /// Nothing: the row widget follows the model by itself.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

    /// Nothing: the row widget edits nothing in the model.
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

public Q_SLOTS:
    /// Lets the row's label blink; nothing happens for a row that has no widget (yet).
    void animate(int row);

Q_SIGNALS:
    /// A row's button was clicked. The row may be gone when deleteItem() or zoomToItem() arrive: both are delivered
    /// only after the click has been handled, since they may destroy the widget that was clicked.
    void editItem(int row);
    /// \copydoc editItem
    void deleteItem(int row);
    /// \copydoc editItem
    void addItem(int row);
    /// \copydoc editItem
    void zoomToItem(int row);

private:
    void forget(int row, const QObject *widget) const;

    QPointer<QAbstractItemView> m_view;
    KelGPXTrackEditOptions m_options;
    QPointer<KelGPXTrackMultiFunctionDelegateWidget> m_template;
    mutable QHash<int, KelGPXTrackMultiFunctionDelegateWidget *> m_widgets;
};

#endif

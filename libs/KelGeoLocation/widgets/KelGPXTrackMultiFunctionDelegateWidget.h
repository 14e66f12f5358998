// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELGPXTRACKMULTIFUNCTIONDELEGATEWIDGET_H
#define KELGPXTRACKMULTIFUNCTIONDELEGATEWIDGET_H

#include <KelGPXTrackEditOptions.h>
#include <KelGeoLocationGlobal.h>

#include <QList>
#include <QRecursiveMutex>
#include <QString>
#include <QWidget>

class QModelIndex;
class QToolButton;

class KelBlinkAnimation;
class KelElidedLabel;

/// One row of a list as a small widget: the row's text, elided to the space there is, and up to four tool buttons.
///
/// The buttons, from left to right after the label, each present only if its bit is set:
///
/// | option            | icon                 | tool tip (%1 = the row's text) | signal       |
/// |-------------------|----------------------|--------------------------------|--------------|
/// | EditOptionEdit    | "ico_editListItem"   | %1 bearbeiten                  | editItem()   |
/// | EditOptionDelete  | "ico_deleteListItem" | %1 löschen                     | deleteItem() |
/// | EditOptionZoomTo  | "ico_fit_map"        | Zoome auf %1                   | zoomToItem() |
/// | EditOptionAdd     | "ico_add_route"      | Markiere %1                    | addItem()    |
///
/// The buttons do nothing but raise their signal with the row, which is that of the index at construction, always:
/// when rows move, the widget stays in its row and takes over the new text through the model's dataChanged(). So a
/// receiver has to check the row, which may be gone by then.
///
/// The label can blink to draw the eye to the row, see startAnimation().
///
/// Hosts normally use KelGPXTrackMultiFunctionDelegate, which makes these widgets for a view.
class KELGEOLOCATION_EXPORT KelGPXTrackMultiFunctionDelegateWidget : public QWidget
{
    Q_OBJECT

public:
    /// A widget for the index's row; with an invalid index an empty label, row −1 and no connection to a model.
    KelGPXTrackMultiFunctionDelegateWidget(const QModelIndex &index, KelGPXTrackEditOptions options,
                                           QWidget *parent = nullptr);

    /// Stops a running blink; waits for whoever is just starting or stopping it.
    ~KelGPXTrackMultiFunctionDelegateWidget() override;

    /// The row given at construction.
    [[nodiscard]] int row() const noexcept;

    /// Lays out the label and the buttons. The constructor does it; a second call changes nothing.
    void setupUi(const QModelIndex &index, KelGPXTrackEditOptions options);

    /// The building blocks of the row: children of this widget, not yet in its layout. `text` is the row's text.
    KelElidedLabel *createTextLabel(const QString &text);
    /// \copydoc createTextLabel
    QToolButton *createEditButton(const QString &text);
    /// \copydoc createTextLabel
    QToolButton *createDeleteButton(const QString &text);
    /// \copydoc createTextLabel
    QToolButton *createZoomToButton(const QString &text);
    /// \copydoc createTextLabel
    QToolButton *createAddButton(const QString &text);

    /// Starts the blink of the label; does nothing while another thread holds the animation.
    void startAnimation();

public Q_SLOTS:
    /// Emits editItem().
    void onEditEventRequested();

    /// Stops the blink, unless another thread holds the animation, and emits deleteItem() in any case.
    void onDeleteEventRequested();

    /// Emits zoomToItem().
    void onZoomEventRequested();
    /// Emits addItem().
    void onAddEventRequested();

    /// One step of the blink: hands the state to the label and repaints it at once.
    void animate(int state);

    /// Takes over the text of (row(), column 0) if the row is among the changed ones; the columns do not matter.
    void modelDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight);

Q_SIGNALS:
    /// The edit button was clicked; the row is row().
    void editItem(int row);
    /// The delete button was clicked; the row is row().
    void deleteItem(int row);
    /// The add button was clicked; the row is row().
    void addItem(int row);
    /// The zoom button was clicked; the row is row().
    void zoomToItem(int row);

protected:
    /// Guards start, stop and end of the blink.
    [[nodiscard]] QRecursiveMutex &animationMutex() noexcept;

private:
    // A button with the template of its tool tip, for the day its row's text changes.
    struct LabelledButton
    {
        QToolButton *button;
        QString toolTip;
    };

    QToolButton *createButton(const QString &objectName, const QString &iconName, const QString &toolTip,
                              const QString &text, void (KelGPXTrackMultiFunctionDelegateWidget::*slot)());

    int m_row;
    KelElidedLabel *m_label = nullptr;
    QList<LabelledButton> m_buttons;
    QRecursiveMutex m_animationMutex;
    KelBlinkAnimation *m_animation;
};

#endif

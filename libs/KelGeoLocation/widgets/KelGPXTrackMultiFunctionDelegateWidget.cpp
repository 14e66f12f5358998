// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelGPXTrackMultiFunctionDelegateWidget.h"

#include <KelBlinkAnimation.h>
#include <KelElidedLabel.h>
#include <KelIconRegistry.h>

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QMutexLocker>
#include <QToolButton>

#include <utility>

namespace
{

constexpr int SPACING = 1;
constexpr int MARGIN = 2;

void showText(QToolButton *button, const QString &toolTip, const QString &text)
{
    button->setToolTip(toolTip.arg(text));

    // A button without a text of its own says to a screen reader what its tool tip says, without the mark-up.
    QString name = toolTip;
    name.remove(QLatin1String("<b>")).remove(QLatin1String("</b>"));
    button->setAccessibleName(name.arg(text));
}

} // namespace

KelGPXTrackMultiFunctionDelegateWidget::KelGPXTrackMultiFunctionDelegateWidget(const QModelIndex &index,
                                                                               KelGPXTrackEditOptions options,
                                                                               QWidget *parent)
    : QWidget(parent)
    , m_row(index.row())
    , m_animation(new KelBlinkAnimation(this))
{
    setupUi(index, options);

    if (index.model()) {
        connect(index.model(), &QAbstractItemModel::dataChanged, this,
                &KelGPXTrackMultiFunctionDelegateWidget::modelDataChanged);
    }
    connect(m_animation, &KelBlinkAnimation::blink, this, &KelGPXTrackMultiFunctionDelegateWidget::animate);
}

KelGPXTrackMultiFunctionDelegateWidget::~KelGPXTrackMultiFunctionDelegateWidget()
{
    const QMutexLocker locker(&m_animationMutex);
    m_animation->stop();
    disconnect(m_animation, &KelBlinkAnimation::blink, this, &KelGPXTrackMultiFunctionDelegateWidget::animate);
    m_animation = nullptr;
}

int KelGPXTrackMultiFunctionDelegateWidget::row() const noexcept
{
    return m_row;
}

KelElidedLabel *KelGPXTrackMultiFunctionDelegateWidget::createTextLabel(const QString &text)
{
    auto *label = new KelElidedLabel(this);
    label->setFullText(text);
    label->setWordWrap(true);
    return label;
}

QToolButton *KelGPXTrackMultiFunctionDelegateWidget::createEditButton(const QString &text)
{
    return createButton(QStringLiteral("editButton"), QStringLiteral("ico_editListItem"), tr("%1 bearbeiten"), text,
                        &KelGPXTrackMultiFunctionDelegateWidget::onEditEventRequested);
}

QToolButton *KelGPXTrackMultiFunctionDelegateWidget::createDeleteButton(const QString &text)
{
    return createButton(QStringLiteral("deleteButton"), QStringLiteral("ico_deleteListItem"), tr("%1 löschen"), text,
                        &KelGPXTrackMultiFunctionDelegateWidget::onDeleteEventRequested);
}

QToolButton *KelGPXTrackMultiFunctionDelegateWidget::createZoomToButton(const QString &text)
{
    return createButton(QStringLiteral("zoomToButton"), QStringLiteral("ico_fit_map"), tr("<b>Zoome auf</b> %1"), text,
                        &KelGPXTrackMultiFunctionDelegateWidget::onZoomEventRequested);
}

QToolButton *KelGPXTrackMultiFunctionDelegateWidget::createAddButton(const QString &text)
{
    return createButton(QStringLiteral("addButton"), QStringLiteral("ico_add_route"), tr("<b>Markiere</b> %1"), text,
                        &KelGPXTrackMultiFunctionDelegateWidget::onAddEventRequested);
}

void KelGPXTrackMultiFunctionDelegateWidget::startAnimation()
{
    // Rather no blink than a wait in the user interface.
    if (!m_animationMutex.tryLock())
        return;
    if (m_animation)
        m_animation->start();
    m_animationMutex.unlock();
}

void KelGPXTrackMultiFunctionDelegateWidget::onEditEventRequested()
{
    Q_EMIT editItem(m_row);
}

void KelGPXTrackMultiFunctionDelegateWidget::onDeleteEventRequested()
{
    if (m_animationMutex.tryLock()) {
        if (m_animation)
            m_animation->stop();
        m_animationMutex.unlock();
    }
    Q_EMIT deleteItem(m_row);
}

void KelGPXTrackMultiFunctionDelegateWidget::onZoomEventRequested()
{
    Q_EMIT zoomToItem(m_row);
}

void KelGPXTrackMultiFunctionDelegateWidget::onAddEventRequested()
{
    Q_EMIT addItem(m_row);
}

void KelGPXTrackMultiFunctionDelegateWidget::animate(int state)
{
    m_label->setAnimationState(state);
    // An update would merge the steps of a blink while the host is busy with what it blinks for.
    m_label->repaint();
}

void KelGPXTrackMultiFunctionDelegateWidget::modelDataChanged(const QModelIndex &topLeft,
                                                              const QModelIndex &bottomRight)
{
    // Some models announce changes of an empty list; those indexes know no model.
    const QAbstractItemModel *model = topLeft.model();
    if (!model || m_row < topLeft.row() || m_row > bottomRight.row())
        return;

    const QString text = model->index(m_row, 0, topLeft.parent()).data(Qt::DisplayRole).toString();
    m_label->setFullText(text);
    for (const LabelledButton &entry : std::as_const(m_buttons))
        showText(entry.button, entry.toolTip, text);
    update();
}

QRecursiveMutex &KelGPXTrackMultiFunctionDelegateWidget::animationMutex() noexcept
{
    return m_animationMutex;
}

void KelGPXTrackMultiFunctionDelegateWidget::setupUi(const QModelIndex &index, KelGPXTrackEditOptions options)
{
    if (m_label)
        return;
    auto *layout = new QHBoxLayout(this);
    layout->setSpacing(SPACING);
    layout->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);

    const QString text = index.data(Qt::DisplayRole).toString();
    m_label = createTextLabel(text);
    layout->addWidget(m_label, 1);

    if (options.testFlag(EditOptionEdit))
        layout->addWidget(createEditButton(text), 0);
    if (options.testFlag(EditOptionDelete))
        layout->addWidget(createDeleteButton(text), 0);
    if (options.testFlag(EditOptionZoomTo))
        layout->addWidget(createZoomToButton(text), 0);
    if (options.testFlag(EditOptionAdd))
        layout->addWidget(createAddButton(text), 0);
}

QToolButton *KelGPXTrackMultiFunctionDelegateWidget::createButton(
    const QString &objectName, const QString &iconName, const QString &toolTip, const QString &text,
    void (KelGPXTrackMultiFunctionDelegateWidget::*slot)())
{
    auto *button = new QToolButton(this);
    button->setObjectName(objectName);
    KelIconRegistry::instance().setIcon(button, iconName);
    showText(button, toolTip, text);
    connect(button, &QToolButton::clicked, this, slot);
    m_buttons.append({button, toolTip});
    return button;
}

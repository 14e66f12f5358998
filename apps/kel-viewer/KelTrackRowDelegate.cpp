// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelTrackRowDelegate.h"

#include <KelGPXTrackListModel.h>

#include <QAbstractButton>
#include <QPainter>

namespace
{

constexpr int STRIP_WIDTH = 6;
constexpr int STRIP_MARGIN = 3;
constexpr int INDENT = STRIP_WIDTH + 2 * STRIP_MARGIN;
// Soft enough for the label's text, which keeps the colour of unselected rows.
constexpr int SELECTED_ALPHA = 70;
constexpr int HOVERED_ALPHA = 24;
constexpr int EDGE_ALPHA = 110;

void paintBackground(QPainter *painter, const QStyleOptionViewItem &option)
{
    QColor color = option.palette.color(QPalette::Active, QPalette::Highlight);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    if (selected || option.state.testFlag(QStyle::State_MouseOver)) {
        color.setAlpha(selected ? SELECTED_ALPHA : HOVERED_ALPHA);
        painter->fillRect(option.rect, color);
    }
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        color.setAlpha(255);
        painter->setPen(color);
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
}

void paintStrip(QPainter *painter, const QStyleOptionViewItem &option, const KelGPXConfiguredTrack &track)
{
    const QRect &row = option.rect;
    const bool stroked = track.hasDrawOption(KelGPXTrackDisplayOptions(DisplayStroke));
    const QRect strip(row.left() + STRIP_MARGIN, row.top() + STRIP_MARGIN, STRIP_WIDTH,
                      row.height() - 2 * STRIP_MARGIN);
    // An edge, for colours that the background has as well.
    QColor edge = option.palette.color(QPalette::Text);
    edge.setAlpha(EDGE_ALPHA);
    painter->setPen(edge);
    painter->setBrush(stroked ? track.lineColor() : track.fillColor());
    painter->drawRoundedRect(strip, STRIP_WIDTH / 2.0, STRIP_WIDTH / 2.0);
}

} // namespace

void KelTrackRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintBackground(painter, option);
    if (const auto *model = qobject_cast<const KelGPXTrackListModel *>(index.model()))
        paintStrip(painter, option, model->trackAt(index));
    painter->restore();
    KelGPXTrackMultiFunctionDelegate::paint(painter, option, index);
}

QSize KelTrackRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return KelGPXTrackMultiFunctionDelegate::sizeHint(option, index) + QSize(INDENT, 0);
}

QWidget *KelTrackRowDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                           const QModelIndex &index) const
{
    QWidget *row = KelGPXTrackMultiFunctionDelegate::createEditor(parent, option, index);
    const QList<QAbstractButton *> buttons = row->findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons)
        button->setFocusPolicy(Qt::NoFocus);
    return row;
}

void KelTrackRowDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                               const QModelIndex &) const
{
    editor->setGeometry(option.rect.adjusted(INDENT, 0, 0, 0));
}

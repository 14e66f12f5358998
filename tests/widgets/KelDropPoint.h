// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDROPPOINT_H
#define KELDROPPOINT_H

#include <QAbstractItemView>
#include <QMetaType>
#include <QPoint>
#include <QRect>

/// Where on a row something is dropped: the edges mean above and below it, the middle means onto it.
enum class Where { TopEdge, Middle, BottomEdge, BelowAll };

/// The point in the viewport's coordinates.
inline QPoint dropPoint(const QAbstractItemView &view, int row, Where where)
{
    const QRect rect = view.visualRect(view.model()->index(row, 0));
    const int x = rect.left() + 20;
    switch (where) {
    case Where::TopEdge:
        return {x, rect.top() + 1};
    case Where::Middle:
        return {x, rect.center().y()};
    case Where::BottomEdge:
        return {x, rect.bottom() - 1};
    case Where::BelowAll:
        break;
    }
    return {x, view.viewport()->height() - 2};
}

Q_DECLARE_METATYPE(Where)

#endif

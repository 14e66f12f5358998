// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELDRAGBYMOUSE_H
#define KELDRAGBYMOUSE_H

#include <QApplication>
#include <QList>
#include <QMouseEvent>
#include <QPoint>
#include <QTest>
#include <QTimer>
#include <QWidget>

/// Drag and drop as a person does it.
namespace KelDragByMouse
{

inline void send(QWidget *widget, QEvent::Type type, const QPoint &global, Qt::MouseButton button,
                 Qt::MouseButtons buttons)
{
    QMouseEvent event(type, widget->mapFromGlobal(global), global, button, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

/// Presses on the widget, moves and lets go; both positions are in the widget's coordinates. A drag runs an event loop
/// of its own, in which a timer plays the hand.
inline void drag(QWidget *widget, const QPoint &from, const QPoint &to)
{
    const QPoint start = widget->mapToGlobal(from);
    const QPoint end = widget->mapToGlobal(to);
    QList<QPoint> way;
    for (int step = 1; step <= 4; ++step)
        way.append(start + (end - start) * step / 4);
    way.append(end);

    QTimer hand;
    bool released = false;
    QObject::connect(&hand, &QTimer::timeout, widget, [&] {
        if (!way.isEmpty()) {
            send(widget, QEvent::MouseMove, way.takeFirst(), Qt::NoButton, Qt::LeftButton);
            return;
        }
        released = true;
        hand.stop();
        send(widget, QEvent::MouseButtonRelease, end, Qt::LeftButton, Qt::NoButton);
    });

    send(widget, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
    hand.start(1);
    // The first move decides that it is a drag, the second one, far enough from the start, begins it.
    const QPoint away = start + QPoint(QApplication::startDragDistance() + 5, 0);
    send(widget, QEvent::MouseMove, away, Qt::NoButton, Qt::LeftButton);
    send(widget, QEvent::MouseMove, away + QPoint(2, 0), Qt::NoButton, Qt::LeftButton);
    QTRY_VERIFY(released);
}

} // namespace KelDragByMouse

#endif

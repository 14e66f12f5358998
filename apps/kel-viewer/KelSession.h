// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSESSION_H
#define KELSESSION_H

#include "KelTrackDocument.h"

#include <QObject>
#include <QTimer>

class QMainWindow;

/// Keeps what is open across starts: the tracks, the file they belong to, and the window's arrangement.
///
/// A changed document is written to the application's own data folder a moment after each change, so that even a
/// killed process loses little.
class KelSession : public QObject
{
    Q_OBJECT

public:
    KelSession(KelTrackDocument *document, QMainWindow *window);

    /// False when there is nothing to continue.
    bool restore();
    void saveNow();

Q_SIGNALS:
    void failed(const QString &message);

private:
    [[nodiscard]] static QString fileName();

    KelTrackDocument *m_document;
    QMainWindow *m_window;
    QTimer m_timer;
    bool m_failureShown = false;
};

#endif

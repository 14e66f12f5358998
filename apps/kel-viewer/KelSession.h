// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELSESSION_H
#define KELSESSION_H

#include "KelTrackDocument.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

class QMainWindow;

/// Keeps what is open across starts: the tracks, the file they belong to, and the window's arrangement.
///
/// A changed document is written to the application's own data folder a moment after each change, in a thread of its
/// own, so that even a killed process loses little and the window never waits.
class KelSession : public QObject
{
    Q_OBJECT

public:
    KelSession(KelTrackDocument *document, QMainWindow *window);
    /// Waits for what is being written.
    ~KelSession() override;

    /// Puts the window where it was, with its docks.
    void restoreArrangement();
    /// Continues with the tracks of the last session. False when there is nothing to continue.
    bool restore();
    /// Writes what is not written yet, and returns when it is on disk.
    void saveNow();
    /// At the next start the document is that of its file again: what was changed since is given up.
    void forgetChanges();
    /// Waits for what is being written just now; may be called in any thread.
    void finishWriting();

Q_SIGNALS:
    void failed(const QString &message);

private:
    struct Written
    {
        bool done = false;
        QString reason;
    };
    void documentChanged();
    void saveInBackground();
    void saveArrangement() const;
    void report(const Written &written);
    [[nodiscard]] static Written write(const KelGPXTrackSelection &selection);
    [[nodiscard]] static QString fileName();

    KelTrackDocument *m_document;
    QMainWindow *m_window;
    QTimer m_timer;
    QThreadPool m_pool; ///< one thread: writers of one file follow one another
    bool m_changed = false;
    bool m_failureShown = false;
};

#endif

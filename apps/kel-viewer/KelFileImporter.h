// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFILEIMPORTER_H
#define KELFILEIMPORTER_H

#include <KelErrorHistory.h>
#include <KelGPXConfiguredTrackList.h>

#include <QObject>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <memory>

/// Reads track files in a thread of its own, one after the other.
///
/// Tracks arrive file by file, so that what was read is kept when a later file fails or the user cancels.
/// A cancelled import ends before the next file; a file that is being read is finished and thrown away.
class KelFileImporter : public QObject
{
    Q_OBJECT

public:
    explicit KelFileImporter(QObject *parent = nullptr);
    ~KelFileImporter() override;

    /// Folders stand for the track files in them. Files that come while others are read are queued.
    void read(const QList<QUrl> &urls);
    void cancel();
    [[nodiscard]] bool isRunning() const noexcept { return m_running; }

Q_SIGNALS:
    /// Before each file: its number from 1, how many there are by now, and its name.
    void progress(int number, int total, const QString &name);
    void tracksRead(const QString &fileName, const KelGPXConfiguredTrackList &tracks);
    /// One per file that gave no tracks or not all of them, with the reason.
    void failed(const KelErrorHistory &errors);
    void finished(bool cancelled);

private:
    struct Result
    {
        KelGPXConfiguredTrackList tracks;
        KelErrorHistory errors;
    };
    void take(const QList<QUrl> &files, int generation);
    void readNext();
    void take(const QUrl &url, const Result &result, int generation);
    void finish(bool cancelled);
    static Result readFile(const QUrl &url);

    QList<QUrl> m_waiting;
    bool m_running = false;
    bool m_reading = false;     ///< a file, not only the contents of folders
    int m_folders = 0;          ///< lists of files that the thread is still making
    int m_total = 0;
    int m_done = 0;
    int m_generation = 0; ///< grows with every cancellation: results of an older one are thrown away
    QThread m_thread;
    QObject *m_inThread;
};

#endif

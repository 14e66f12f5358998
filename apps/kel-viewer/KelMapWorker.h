// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELMAPWORKER_H
#define KELMAPWORKER_H

#include "KelViewPicture.h"

#include <QMutex>
#include <QObject>
#include <QThread>

#include <optional>

/// Paints map pictures in a thread of its own, always the newest that was asked for.
///
/// A picture that is being painted is finished; of those that were asked for meanwhile only the last is painted.
class KelMapWorker : public QObject
{
    Q_OBJECT

public:
    explicit KelMapWorker(QObject *parent = nullptr);
    /// Waits for the picture being painted.
    ~KelMapWorker() override;

    void request(const KelViewPicture &picture);
    /// True while something is painted or waits for it.
    [[nodiscard]] bool isBusy() const;

Q_SIGNALS:
    /// Delivered in the thread of this object.
    void painted(const QImage &image, const KelMapViewport &viewport, double density, KelViewPicture::Quality quality);

private:
    void paintNewest();

    mutable QMutex m_mutex;
    std::optional<KelViewPicture> m_next; ///< guarded by the mutex
    bool m_painting = false;             ///< guarded by the mutex
    QThread m_thread;
    QObject *m_inThread;
};

#endif

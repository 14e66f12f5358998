// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelMapWorker.h"

#include <QMutexLocker>

#include <utility>

KelMapWorker::KelMapWorker(QObject *parent)
    : QObject(parent)
    , m_inThread(new QObject)
{
    qRegisterMetaType<KelMapViewport>();
    qRegisterMetaType<KelViewPicture::Quality>();
    m_inThread->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_inThread, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("map painter"));
    m_thread.start();
}

KelMapWorker::~KelMapWorker()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_next.reset();
    }
    m_thread.quit();
    m_thread.wait();
}

void KelMapWorker::request(const KelViewPicture &picture)
{
    const QMutexLocker lock(&m_mutex);
    m_next = picture;
    if (!m_painting) {
        m_painting = true;
        QMetaObject::invokeMethod(m_inThread, [this] { paintNewest(); }, Qt::QueuedConnection);
    }
}

bool KelMapWorker::isBusy() const
{
    const QMutexLocker lock(&m_mutex);
    return m_painting;
}

void KelMapWorker::paintNewest()
{
    for (;;) {
        KelViewPicture picture;
        {
            const QMutexLocker lock(&m_mutex);
            if (!m_next) {
                m_painting = false;
                return;
            }
            picture = *std::exchange(m_next, std::nullopt);
        }
        const QImage image = picture.toImage();
        Q_EMIT painted(image, picture.viewport, picture.density, picture.quality);
    }
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelConcurrent.h"

#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>

namespace
{

// Callers from the pool whose place is released while they wait. The pool itself no longer counts them.
std::atomic<int> waitingCallers{0};

bool isMainThread()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application != nullptr && application->thread() == QThread::currentThread();
}

} // namespace

const int KelConcurrent::maxRunningThreads = 3 * QThread::idealThreadCount();

bool KelConcurrent::mayRunParallel()
{
    if (isMainThread())
        return true;
    // Without the waiting callers a long queue of them would be started all at once, each in a thread of its own,
    // because every one that begins to wait makes room for the next.
    return QThreadPool::globalInstance()->activeThreadCount() + waitingCallers.load() < maxRunningThreads;
}

KelConcurrent::ReleasedPoolThread::ReleasedPoolThread()
    : m_released(QThreadPool::globalInstance()->contains(QThread::currentThread()))
{
    if (!m_released)
        return;
    ++waitingCallers;
    QThreadPool::globalInstance()->releaseThread();
}

KelConcurrent::ReleasedPoolThread::~ReleasedPoolThread()
{
    if (!m_released)
        return;
    QThreadPool::globalInstance()->reserveThread();
    --waitingCallers;
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelBusyWindow.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>

#include <memory>

namespace
{

constexpr int SHOW_AFTER_MS = 400;

int runningJobs = 0;

} // namespace

void KelBusyWindow::run(QWidget *window, const QString &text, const std::function<void()> &work)
{
    QProgressDialog dialog(text, QString(), 0, 0, window);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.reset(); // no timer of its own
    QTimer::singleShot(SHOW_AFTER_MS, &dialog, [&dialog] { dialog.show(); });
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);

    const std::unique_ptr<QThread> thread(QThread::create(work));
    QEventLoop loop;
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
    ++runningJobs;
    thread->start();
    // What the user does meanwhile arrives afterwards.
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    thread->wait();
    --runningJobs;
    QGuiApplication::restoreOverrideCursor();
}

bool KelBusyWindow::isBusy() noexcept
{
    return runningJobs > 0;
}

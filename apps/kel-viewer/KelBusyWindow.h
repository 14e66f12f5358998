// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELBUSYWINDOW_H
#define KELBUSYWINDOW_H

#include <QString>

#include <functional>

class QWidget;

/// Work that may take seconds and whose result the user waits for.
class KelBusyWindow
{
public:
    KelBusyWindow() = delete;

    /// Runs the work in a thread of its own and returns when it is done. Meanwhile the window is painted, but takes no
    /// input; if it lasts, it says what is being done.
    static void run(QWidget *window, const QString &text, const std::function<void()> &work);

    /// True within run(): a window must not be closed now.
    [[nodiscard]] static bool isBusy() noexcept;
};

#endif

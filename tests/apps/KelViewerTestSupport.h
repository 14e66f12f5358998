// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELVIEWERTESTSUPPORT_H
#define KELVIEWERTESTSUPPORT_H

#include <KelGPXTrackListModel.h>
#include <KelMapView.h>
#include <KelTestTracks.h>
#include <KelTrackListView.h>
#include <KelViewerWindow.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include <functional>

/// Drives the viewer's real window.
namespace KelViewerTestSupport
{

/// Clicks through a modal dialog as soon as there is one. The dialog is rejected when the steps left it open.
template <typename Dialog>
void whenAsked(const std::function<void(Dialog &)> &steps)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, steps] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        steps(*dialog);
        if (dialog->isVisible())
            dialog->reject();
    });
    timer->start(5);
}

inline QString names(KelViewerWindow &window)
{
    QStringList result;
    for (const KelGPXConfiguredTrack &track : window.document()->selection().tracks())
        result.append(track.name());
    return result.join(QLatin1Char(','));
}

inline KelTrackListView *list(KelViewerWindow &window)
{
    return window.findChild<KelTrackListView *>();
}

inline QAction *action(KelViewerWindow &window, const char *name)
{
    return window.findChild<QAction *>(QLatin1String(name));
}

/// Short lines named after the letters, as a document that was just loaded.
inline void fill(KelViewerWindow &window, const QString &letters)
{
    KelGPXTrackSelection selection;
    for (const QChar letter : letters)
        selection.addTrack(KelTestTracks::configured(QString(letter)));
    window.document()->restore(selection, QString(), false);
}

inline bool show(KelViewerWindow &window)
{
    window.show();
    return QTest::qWaitForWindowExposed(&window);
}

} // namespace KelViewerTestSupport

#endif

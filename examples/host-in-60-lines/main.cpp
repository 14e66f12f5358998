// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// A whole desktop host: opens track files, lists the tracks, draws them, adds a scale bar.
//   host-in-60-lines walk.gpx tour.kml [--screenshot host.png]

#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegate.h>
#include <KelGPXTrackRenderer.h>
#include <KelGeoPositionRect.h>
#include <KelMapProjection.h>
#include <KelOsmScaleRenderer.h>
#include <KelTrackSelectionFactory.h>

#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QSplitter>
#include <QTimer>
#include <QUrl>

//! [renderer]
struct Renderer : KelGPXTrackRenderer
{
    Renderer(const KelGPXTrackSelection &selection, const KelMapProjection &projection, const QSize &size)
        : KelGPXTrackRenderer(selection, size, 1.0)
        , m_projection(projection)
    {
    }
    QPointF projectPosition(const KelGeoPosition &position) const override { return m_projection.projectate(position); }
    KelMapProjection m_projection;
};
//! [renderer]

//! [picture]
QImage picture(const KelGPXTrackSelection &selection, const QSize &size)
{
    const KelMapProjection projection(selection.boundingBox().withPadding(10), size);
    QImage map(size, QImage::Format_ARGB32_Premultiplied);
    map.fill(QColor(0xf5f2ea)); // a host with a map of its own paints it here
    QPainter(&map).drawImage(0, 0, Renderer(selection, projection, size).render(KelGPXTrackRenderer::Normal));
    const double acrossKm = projection.convert(QPoint(0, size.height() / 2))
                                .distance(projection.convert(QPoint(size.width(), size.height() / 2)));
    //! [scale]
    // Half the usual size. The bar wants to know the picture as it would be at its full size.
    KelOsmScaleRenderer(KelDistance(size.width() / acrossKm / 0.5), size / 0.5).renderScale(&map, 0.5);
    //! [scale]
    return map;
}
//! [picture]

//! [main]
int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QStringList files = application.arguments().mid(1);
    const qsizetype option = files.indexOf("--screenshot");
    const QString screenshot = option < 0 ? QString() : files.value(option + 1);
    KelGPXTrackSelection selection;
    for (const QString &file : files.mid(0, option))
        selection.addTracks(KelTrackSelectionFactory::instance().createConfiguredTrackList(QUrl::fromLocalFile(file)));

    QSplitter window;
    KelGPXTrackListModel model;
    QListView list(&window);
    list.setMinimumWidth(200);
    QLabel map(&window);
    const auto show = [&] { model.setSelection(selection); map.setPixmap(QPixmap::fromImage(picture(selection, {640, 480}))); };
    KelGPXTrackMultiFunctionDelegate delegate(&list, EditOptionDelete);
    QObject::connect(&delegate, &KelGPXTrackMultiFunctionDelegate::deleteItem, &window, [&](int row) { selection.removeAt(row); show(); });
    list.setModel(&model);
    list.setItemDelegate(&delegate);
    show();
    window.show();
    if (!screenshot.isEmpty())
        QTimer::singleShot(0, &window, [&] { QApplication::exit(window.grab().save(screenshot) ? 0 : 1); });
    return application.exec();
}
//! [main]

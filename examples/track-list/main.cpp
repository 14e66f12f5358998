// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// A list of tracks with buttons in each row; rows are put in order by drag and drop.
//   track-list walk.gpx tour.kml [--screenshot list.png]

#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegate.h>
#include <KelTrackSelectionFactory.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QListView>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

#include <memory>

namespace
{

//! [view]
void setUp(QListView *view, KelGPXTrackListModel *model)
{
    view->setModel(model);
    view->setDragDropMode(QAbstractItemView::DragDrop);
    view->setDefaultDropAction(Qt::MoveAction);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);

    auto *delegate = new KelGPXTrackMultiFunctionDelegate(view, EditOptionZoomTo | EditOptionDelete);
    view->setItemDelegateForColumn(0, delegate);

    using Delegate = KelGPXTrackMultiFunctionDelegate;
    QObject::connect(delegate, &Delegate::deleteItem, view, [model](int row) {
        // The signal is queued: by the time it arrives, the row may be gone. remove() bears that.
        model->remove(model->index(row, 0));
    });
    // Here a host would show the track on its map.
    QObject::connect(delegate, &Delegate::zoomToItem, delegate, &Delegate::animate);
    // The model has moved what was dropped; the view follows it.
    QObject::connect(model, &KelGPXTrackListModel::pleaseSelectTrack, view,
                     [view, model](int row) { view->setCurrentIndex(model->index(row, 0)); });
}
//! [view]

//! [drop]
/// What a drag of the first row onto the last one does, without a mouse.
bool dropFirstRowOntoLast(KelGPXTrackListModel &model)
{
    const int last = model.rowCount() - 1;
    const QString name = model.trackAt(0).name();
    const std::unique_ptr<QMimeData> dragged(model.mimeData({model.index(0, 0)}));
    return model.dropMimeData(dragged.get(), Qt::MoveAction, -1, -1, model.index(last, 0))
        && model.trackAt(last).name() == name;
}
//! [drop]

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument("files", "GPX, KML and KMZ files");
    parser.addOption({"screenshot", "Drag the first row to the end, save the list as a picture and quit.", "file"});
    parser.addHelpOption();
    parser.process(application);

    KelGPXTrackListModel model;
    const QStringList files = parser.positionalArguments();
    for (const QString &file : files)
        model.addTracks(KelTrackSelectionFactory::instance().createConfiguredTrackList(QUrl::fromLocalFile(file)));

    QListView view;
    setUp(&view, &model);
    view.resize(360, 220);
    view.show();
    if (parser.isSet("screenshot")) {
        if (!dropFirstRowOntoLast(model))
            return 1;
        // The rows get their buttons when they are painted for the first time.
        view.grab();
        QTimer::singleShot(0, &view, [&] { QApplication::exit(view.grab().save(parser.value("screenshot")) ? 0 : 1); });
    }
    return QApplication::exec();
}

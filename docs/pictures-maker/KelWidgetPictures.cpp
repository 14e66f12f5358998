// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelWidgetPictures.h"

#include "KelPictureSheet.h"

#include <KelElidedLabel.h>
#include <KelGPXFullShapeListModel.h>
#include <KelGPXTrackListModel.h>
#include <KelGPXTrackMultiFunctionDelegate.h>
#include <KelGeoArcEdit.h>
#include <KelLatitude.h>
#include <KelLongitude.h>
#include <KelPreferencesGeoLocation.h>
#include <KelTrackSelectionFactory.h>

#include <QApplication>
#include <QListView>
#include <QUrl>
#include <QVBoxLayout>

#include <memory>

namespace
{

QPalette lightPalette()
{
    QPalette palette(QColor(0xef, 0xef, 0xef), QColor(0xf6, 0xf6, 0xf6));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
    return palette;
}

QPalette darkPalette()
{
    const QColor text(0xe6, 0xe6, 0xe6);
    QPalette palette(QColor(0x3c, 0x3f, 0x43), QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x23));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xbf));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    return palette;
}

QImage pictureOf(QWidget &widget)
{
    widget.ensurePolished();
    widget.show();
    // Rows of a list get their widgets when they are painted for the first time.
    for (int i = 0; i < 2; ++i) {
        static_cast<void>(widget.grab());
        QApplication::processEvents();
    }
    return widget.grab().toImage();
}

std::unique_ptr<QWidget> angleEditors()
{
    auto widget = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(widget.get());
    auto *latitude = new KelGeoArcEdit(widget.get(), true);
    auto *longitude = new KelGeoArcEdit(widget.get(), false);
    latitude->setGeoArc(KelLatitude(53.14375));
    longitude->setGeoArc(KelLongitude(-70.25));
    layout->addWidget(latitude);
    layout->addWidget(longitude);
    return widget;
}

std::unique_ptr<QWidget> elidedLabels()
{
    auto widget = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(widget.get());
    const QString text = QStringLiteral("From Oldenburg along the river to the sea");
    for (int width : {320, 160, 40}) {
        auto *label = new KelElidedLabel;
        label->setFullText(text);
        label->setFixedWidth(width);
        layout->addWidget(label);
    }
    auto *wrapped = new KelElidedLabel;
    wrapped->setFullText(text + QStringLiteral(", and back on the other side"));
    wrapped->setWordWrap(true);
    wrapped->setFixedSize(160, 2 * wrapped->fontMetrics().lineSpacing());
    layout->addWidget(wrapped);
    auto *blinking = new KelElidedLabel;
    blinking->setFullText(QStringLiteral("Look here"));
    blinking->setAnimationState(1);
    layout->addWidget(blinking);
    return widget;
}

std::unique_ptr<QWidget> preferencesPage()
{
    auto page = std::make_unique<KelPreferencesGeoLocation>();
    page->readFromConfig();
    return page;
}

std::unique_ptr<QWidget> trackList()
{
    auto view = std::make_unique<QListView>();
    auto *model = new KelGPXTrackListModel;
    model->setParent(view.get());
    for (const char *file : {"/city-walk.gpx", "/long-ride.gpx", "/planned-route.gpx", "/polygon-with-enclave.gpx"}) {
        model->addTracks(KelTrackSelectionFactory::instance().createConfiguredTrackList(
            QUrl::fromLocalFile(QStringLiteral(KEL_EXAMPLE_TRACKS) + QLatin1String(file))));
    }
    view->setModel(model);
    const KelGPXTrackEditOptions buttons = EditOptionEdit | EditOptionDelete | EditOptionZoomTo | EditOptionAdd;
    view->setItemDelegateForColumn(0, new KelGPXTrackMultiFunctionDelegate(view.get(), buttons));
    view->setFixedSize(330, 150);
    return view;
}

std::unique_ptr<QWidget> shapeList()
{
    auto view = std::make_unique<QListView>();
    auto *model = new KelGPXFullShapeListModel;
    model->QObject::setParent(view.get());
    model->setStrokeColor(QColor(0x1f, 0x5f, 0x99));
    model->setFillColor(QColor(0xff, 0xc8, 0x57));
    model->setDisplayOptions(KelGPXTrackDisplayOptions(DisplayStroke | DisplayFill));
    model->fill(TrackShapePolygon);
    view->setModel(model);
    view->setIconSize(QSize(24, 24));
    view->setFixedSize(230, 290);
    return view;
}

} // namespace

KelWidgetPictures::KelWidgetPictures(const QDir &folder)
    : m_folder(folder)
{
}

template<class Make>
bool KelWidgetPictures::draw(const QString &name, Make make) const
{
    KelPictureSheet sheet(2);
    QApplication::setPalette(lightPalette());
    sheet.add(QStringLiteral("light"), pictureOf(*make()));
    QApplication::setPalette(darkPalette());
    sheet.add(QStringLiteral("dark"), pictureOf(*make()));
    return sheet.save(m_folder.filePath(QStringLiteral("widget-%1.png").arg(name)));
}

bool KelWidgetPictures::drawAll() const
{
    return draw(QStringLiteral("angle-editor"), angleEditors) && draw(QStringLiteral("elided-label"), elidedLabels)
        && draw(QStringLiteral("preferences"), preferencesPage) && draw(QStringLiteral("track-list"), trackList)
        && draw(QStringLiteral("shape-list"), shapeList);
}

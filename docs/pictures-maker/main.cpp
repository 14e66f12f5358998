// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

// Draws the pictures of the documentation with the library itself: kel_docs_pictures FOLDER

#include "KelShapePictures.h"
#include "KelTrackPictures.h"
#include "KelWidgetPictures.h"

#include <QApplication>
#include <QFont>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTranslator>

#include <cstdio>

int main(int argc, char *argv[])
{
    // The same pictures at every desk: no display, a known font, a known style, no user's settings.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    QApplication::setFont(font);

    QTranslator english;
    if (english.load(QStringLiteral(KEL_CATALOGUES)))
        QApplication::installTranslator(&english);

    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments.at(1))) {
        std::fprintf(stderr, "usage: kel_docs_pictures FOLDER\n");
        return 2;
    }
    const QDir folder(arguments.at(1));
    const bool done = KelShapePictures(folder).drawAll() && KelTrackPictures(folder).drawAll()
        && KelWidgetPictures(folder).drawAll();
    if (!done)
        std::fprintf(stderr, "a picture could not be written\n");
    return done ? 0 : 1;
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerLanguage.h"
#include "KelViewerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLoggingCategory>
#include <QPalette>

namespace
{

/// For desktops that tell programs nothing of their colours.
QPalette darkPalette()
{
    const QColor window(0x2b, 0x2d, 0x30);
    const QColor text(0xe6, 0xe6, 0xe6);
    const QColor disabled(0x8a, 0x8d, 0x91);
    QPalette palette(QColor(0x3c, 0x3f, 0x43), window);
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x23));
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xbf));
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb2, 0xf0));
    palette.setColor(QPalette::PlaceholderText, disabled);
    for (QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    return palette;
}

} // namespace

int main(int argc, char *argv[])
{
    // What the library reports of its work is for those who ask: QT_LOGGING_RULES="kel.*=true".
    QLoggingCategory::setFilterRules(QStringLiteral("kel.*.info=false"));
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kel"));
    QCoreApplication::setApplicationName(QStringLiteral("KelGeoLocation")); // the settings that kel-render reads
    QCoreApplication::setApplicationVersion(QStringLiteral(KEL_VERSION));
    // By these desktops tell which entry and which picture belong to the window.
    QGuiApplication::setDesktopFileName(QStringLiteral("kel-viewer"));
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("kel-viewer")));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows places and GPS tracks on a map."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption language(QStringLiteral("lang"),
                                      QStringLiteral("Language of the user interface: de or en."),
                                      QStringLiteral("language"));
    const QCommandLineOption fresh(QStringLiteral("new"),
                                   QStringLiteral("Start empty instead of continuing the last session."));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("A dark window and a dark map."));
    parser.addOptions({language, fresh, dark});
    parser.addPositionalArgument(QStringLiteral("files"),
                                 QStringLiteral("Track files (GPX, KML, KMZ), folders or a saved selection."),
                                 QStringLiteral("[files...]"));
    parser.process(application);
    KelViewerLanguage::use(parser.value(language));
    if (parser.isSet(dark))
        QApplication::setPalette(darkPalette());

    KelViewerWindow window;
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty() && !parser.isSet(fresh))
        window.restoreSession();
    window.show();
    window.open(files);
    return QApplication::exec();
}

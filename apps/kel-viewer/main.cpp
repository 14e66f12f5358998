// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerLanguage.h"
#include "KelViewerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    // What the library reports of its work is for those who ask: QT_LOGGING_RULES="kel.*=true".
    QLoggingCategory::setFilterRules(QStringLiteral("kel.*.info=false"));
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kel"));
    QCoreApplication::setApplicationName(QStringLiteral("KelGeoLocation")); // the settings that kel-render reads
    QCoreApplication::setApplicationVersion(QStringLiteral(KEL_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Shows places and GPS tracks on a map."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption language(QStringLiteral("lang"), QStringLiteral("Language of the user interface: de or en."),
                                      QStringLiteral("language"));
    const QCommandLineOption fresh(QStringLiteral("new"), QStringLiteral("Start empty instead of continuing the last session."));
    parser.addOptions({language, fresh});
    parser.addPositionalArgument(QStringLiteral("files"), QStringLiteral("Track files (GPX, KML, KMZ), folders or a saved selection."),
                                 QStringLiteral("[files...]"));
    parser.process(application);
    KelViewerLanguage::use(parser.value(language));

    KelViewerWindow window;
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty() && !parser.isSet(fresh))
        window.restoreSession();
    window.show();
    window.open(files);
    return QApplication::exec();
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace
{

/// The texts in the source are German; every other language reads the English catalogues.
void installTranslations(const QString &language)
{
    const QLocale locale = language.isEmpty() ? QLocale::system() : QLocale(language);
    QLocale::setDefault(locale);
    auto *qt = new QTranslator(qApp);
    if (qt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
    if (locale.language() == QLocale::German)
        return;
    for (const char *catalogue : {":/translations/kelgeolocation_en.qm", ":/translations/kel-viewer_en.qm"}) {
        auto *translator = new QTranslator(qApp);
        if (translator->load(QLatin1String(catalogue)))
            QCoreApplication::installTranslator(translator);
    }
}

} // namespace

int main(int argc, char *argv[])
{
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
    installTranslations(parser.value(language));

    KelViewerWindow window;
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty() && !parser.isSet(fresh))
        window.restoreSession();
    window.show();
    window.open(files);
    return QApplication::exec();
}

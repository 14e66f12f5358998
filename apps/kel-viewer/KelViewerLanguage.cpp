// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelViewerLanguage.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QStringList>
#include <QTranslator>

#include <memory>

namespace
{

void install(std::unique_ptr<QTranslator> translator)
{
    translator->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(translator.release());
}

/// The texts of the toolkit's own dialogs, where the system has them.
void installToolkitTexts(const QLocale &locale)
{
    auto translator = std::make_unique<QTranslator>();
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), folder))
        install(std::move(translator));
}

} // namespace

void KelViewerLanguage::use(const QString &language)
{
    const QLocale locale = language.isEmpty() ? QLocale::system() : QLocale(language);
    QLocale::setDefault(locale);
    installToolkitTexts(locale);
    // The German catalogue holds plurals alone, the library has none.
    const bool german = locale.language() == QLocale::German;
    const QStringList catalogues = german
        ? QStringList{QStringLiteral("kel-viewer_de.qm")}
        : QStringList{QStringLiteral("kelgeolocation_en.qm"), QStringLiteral("kel-viewer_en.qm")};
    for (const QString &catalogue : catalogues) {
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(QStringLiteral(":/translations/") + catalogue))
            install(std::move(translator));
    }
}

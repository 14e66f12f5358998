// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELVIEWERLANGUAGE_H
#define KELVIEWERLANGUAGE_H

#include <QString>

/// The language of the user interface. The texts in the sources are German; every other language reads the English
/// catalogues, the program's and the library's, which are built in.
class KelViewerLanguage
{
public:
    KelViewerLanguage() = delete;

    /// Sets the application's language, numbers and dates included: a name like "de" or "en_GB"; empty for that of
    /// the system. For the start of a program, before its first window.
    static void use(const QString &language);
};

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELLOGGER_H
#define KELLOGGER_H

#include <KelCoreGlobal.h>

class QString;

/// The family's log. Lines go to Qt's logging, each subject under a category of its own, so that hosts direct and
/// filter them with the usual means (QT_LOGGING_RULES="kel.osm=false", QLoggingCategory::setFilterRules(),
/// qInstallMessageHandler()).
class KELCORE_EXPORT KelLogger
{
public:
    KelLogger() = delete;

    /// One line about maps and tracks: category "kel.osm", level info, the text as it is. May be called from any
    /// thread.
    static void logOSM(const QString &text);

    /// One line about settings that could not be saved: category "kel.settings", level warning, the text as it is.
    /// May be called from any thread.
    static void logSettings(const QString &text);
};

#endif

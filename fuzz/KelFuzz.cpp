// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFuzz.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace
{

/// Qt and the library warn about odd values; over millions of inputs that is all there would be to see.
void ignoreMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("TZ", "UTC");
    qInstallMessageHandler(ignoreMessage);
    static QCoreApplication application(*argc, *argv);
    QCoreApplication::setOrganizationName(QStringLiteral("libKelGeoLocation"));
    QCoreApplication::setApplicationName(QStringLiteral("fuzz"));
    static const QTemporaryDir settings;
    for (const QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, settings.path());
    return 0;
}

void KelFuzz::fail(const char *rule, const QString &first, const QString &second)
{
    std::fprintf(stderr, "Broken: %s\n", rule);
    if (!first.isNull())
        std::fprintf(stderr, "  actual:   %s\n  expected: %s\n", qPrintable(first), qPrintable(second));
    std::abort();
}

void KelFuzz::compareDouble(double actual, double expected, const char *rule)
{
    if (!isSame(actual, expected))
        fail(rule, QString::number(actual, 'g', 17), QString::number(expected, 'g', 17));
}

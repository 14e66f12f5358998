// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDiagnostics.h"
#include "KelRenderApplication.h"

#include <QGuiApplication>

#include <csignal>
#include <cstdio>
#include <new>

namespace
{

/// Qt's own chatter is no help at the command line; --verbose brings it back.
void showFatalMessagesOnly(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "kel-render: %s\n", qPrintable(message));
}

} // namespace

int main(int argc, char *argv[])
{
    // A closed pipe or a limit on file sizes is a failed write with a reason, no reason to die without a word.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // No window is ever shown, so no display is needed, and a broken one does no harm.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(showFatalMessagesOnly);

    QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kel"));
    QCoreApplication::setApplicationName(QStringLiteral("KelGeoLocation")); // the settings that the viewer writes
    QCoreApplication::setApplicationVersion(QStringLiteral(KEL_RENDER_VERSION));

    try {
        return static_cast<int>(KelRenderApplication().run(QCoreApplication::arguments()));
    } catch (const std::bad_alloc &) {
        KelDiagnostics().error(KelExitCode::InternalError,
                               QStringLiteral("there is too little memory; use a smaller --size or fewer tracks"));
        return static_cast<int>(KelExitCode::InternalError);
    }
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelDiagnostics.h"
#include "KelRenderApplication.h"

#include <QGuiApplication>
#include <QString>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <new>

#include <fcntl.h>
#include <unistd.h>

namespace
{

/// Qt's own chatter is no help at the command line; --verbose brings it back.
void showFatalMessagesOnly(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "kel-render: %s\n", qPrintable(message));
}

/// A standard stream that the caller has closed would lend its number to the next file that is opened, and messages
/// or pictures would end up there. Reading from and writing to the placeholders fails, but for messages, which vanish.
void occupyClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", stream == STDOUT_FILENO ? O_RDONLY : O_WRONLY));
    }
}

/// What is made must not depend on the desk at which it is made: no window is ever shown, so no display is needed, and
/// neither a broken one nor its magnification may matter. Times are universal time in track files and in reports.
void forgetTheDesk()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "QT_USE_PHYSICAL_DPI",
                             "QT_QPA_PLATFORMTHEME"})
        qunsetenv(name);
    qputenv("TZ", "UTC0");
}

} // namespace

int main(int argc, char *argv[])
{
    occupyClosedStreams();
    // A closed pipe or a limit on file sizes is a failed write with a reason, no reason to die without a word.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    forgetTheDesk();
    qInstallMessageHandler(showFatalMessagesOnly);

    QStringList arguments;
    QStringList undecodable;
    for (int i = 0; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
        if (arguments.last().toLocal8Bit() != argv[i])
            undecodable.append(arguments.last());
    }
    // Qt would take options such as -platform for itself, whatever they mean here.
    int qtArguments = 1;
    QGuiApplication application(qtArguments, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Kel"));
    QCoreApplication::setApplicationName(QStringLiteral("KelGeoLocation")); // the settings that the viewer writes
    QCoreApplication::setApplicationVersion(QStringLiteral(KEL_RENDER_VERSION));

    try {
        return static_cast<int>(KelRenderApplication().run(arguments, undecodable));
    } catch (const std::bad_alloc &) {
        KelDiagnostics().error(KelExitCode::InternalError,
                               QStringLiteral("there is too little memory; use a smaller --size or fewer tracks"));
        return static_cast<int>(KelExitCode::InternalError);
    }
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#ifndef KELFAULTTESTSUPPORT_H
#define KELFAULTTESTSUPPORT_H

#include <KelGPXTrackSelection.h>
#include <KelTestTracks.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

/// Small tools of the tests of faults.
namespace KelFaultTestSupport
{

/// Where a sweep of hundreds of saves does not wait for a real disk each time.
inline QString temporaryTemplate()
{
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    const QString place = memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath();
    return place + QStringLiteral("/kel-faults-XXXXXX");
}

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

inline void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("the test's own file %s could not be written", qPrintable(path));
}

inline QStringList filesIn(const QString &path)
{
    return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

/// Tracks named by the letters, each with points of its own and the given number of them.
inline KelGPXTrackSelection selection(const QString &letters, int points = 3)
{
    KelGPXTrackSelection result;
    for (const QChar letter : letters) {
        QString coordinates;
        for (int i = 0; i < points; ++i)
            coordinates += QStringLiteral("%1.%2,%3 ").arg(i % 90).arg(letter.unicode()).arg(10 + i % 50);
        result.addTrack(KelTestTracks::configured(QString(letter), coordinates.trimmed()));
    }
    return result;
}

/// How a child process ended.
struct Ended
{
    bool killed = false;
    int code = -1;
};

/// A copy of this process runs the function; what it returns is the exit code.
inline pid_t start(const std::function<int()> &function)
{
    const pid_t child = ::fork();
    if (child < 0)
        qFatal("no further process can be started");
    if (child == 0)
        ::_exit(function());
    return child;
}

inline Ended waitFor(pid_t child)
{
    int status = 0;
    if (::waitpid(child, &status, 0) != child)
        qFatal("the child process is lost");
    return WIFSIGNALED(status) ? Ended{true, -1} : Ended{false, WEXITSTATUS(status)};
}

} // namespace KelFaultTestSupport

#endif

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelOutputFile.h"

#include "KelFilePlace.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// The reason, and what to do about it where that can be said.
QString explain(int errorNumber)
{
    const QString reason = QString::fromLocal8Bit(std::strerror(errorNumber));
    switch (errorNumber) {
    case ENOSPC:
    case EDQUOT:
        return reason + QStringLiteral("; free some space or write elsewhere");
    case EFBIG:
        return reason + QStringLiteral("; raise the limit on file sizes (ulimit -f) or write a smaller picture");
    case EACCES:
    case EPERM:
    case EROFS:
        return reason + QStringLiteral("; write to a place that you may write to");
    case ENOENT:
    case ENOTDIR:
        return reason + QStringLiteral("; create the folder first");
    default:
        return reason;
    }
}

/// 0, or the error's number.
int writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written = ::write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno;
        if (written == 0)
            return ENOSPC;
        done += written;
    }
    return 0;
}

mode_t currentMask()
{
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

} // namespace

KelOutputFile::KelOutputFile(const QString &path)
    : m_path(path)
{
}

bool KelOutputFile::write(const QByteArray &bytes)
{
    const QFileInfo info(m_path);
    if (info.isDir()) {
        m_error = QStringLiteral("this is a folder; name a file in it");
        return false;
    }
    if (info.exists() && !info.isFile())
        return writeThrough(bytes); // a device or a pipe
    if (info.exists() && !info.isWritable())
        return fail(EACCES);
    const QString target = KelFilePlace::endOfLinks(m_path);
    return target.isEmpty() ? fail(ELOOP) : replace(target, bytes);
}

bool KelOutputFile::writeThrough(const QByteArray &bytes)
{
    const int descriptor = ::open(QFile::encodeName(m_path).constData(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0)
        return fail(errno);
    const int written = writeAll(descriptor, bytes);
    const int closed = ::close(descriptor) == 0 ? 0 : errno;
    return written == 0 && closed == 0 ? true : fail(written ? written : closed);
}

bool KelOutputFile::replace(const QString &target, const QByteArray &bytes)
{
    const QByteArray final = QFile::encodeName(target);
    QByteArray temporary = QFile::encodeName(QFileInfo(target).absolutePath()) + "/.kel-XXXXXX";
    const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0)
        return fail(errno);

    struct stat former
    {
    };
    const mode_t mode = ::stat(final.constData(), &former) == 0 ? former.st_mode & 07777 : 0666 & ~currentMask();
    int error = writeAll(descriptor, bytes);
    if (error == 0 && ::fchmod(descriptor, mode) != 0)
        error = errno;
    // Some file systems tell only here that the disk is full.
    if (error == 0 && ::fsync(descriptor) != 0 && errno != EINVAL)
        error = errno;
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    if (error == 0 && std::rename(temporary.constData(), final.constData()) != 0)
        error = errno;
    if (error == 0)
        return true;
    ::unlink(temporary.constData());
    return fail(error);
}

bool KelOutputFile::fail(int errorNumber)
{
    m_error = explain(errorNumber);
    return false;
}

bool KelOutputFile::writeToStandardOutput(const QByteArray &bytes, QString &error)
{
    const int number = writeAll(STDOUT_FILENO, bytes);
    error = number ? explain(number) : QString();
    return number == 0;
}

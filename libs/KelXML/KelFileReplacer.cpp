// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFileReplacer.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QtGlobal>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int MaximumLinks = 40; // as the kernel follows
constexpr int MaximumAttempts = 100;

QString temporaryName(const QFileInfo &target)
{
    const QString unique = QString::number(QRandomGenerator::system()->generate64(), 36);
    return target.absolutePath() + QLatin1String("/.kel-") + unique + QLatin1String(".tmp");
}

/// The new name of a file is on the disk only when its directory is. A file system that cannot do this is not an error:
/// the content itself is safe by then.
void syncDirectory(const QString &path)
{
    const int directory = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return;
    ::fsync(directory);
    ::close(directory);
}

} // namespace

KelFileReplacer::KelFileReplacer(const QString &path)
    : m_path(path)
{
}

bool KelFileReplacer::replaceWith(const QByteArray &content)
{
    if (!resolveTarget())
        return false;
    const QFileInfo target(m_target);
    if (target.isDir())
        return fail(qt_error_string(EISDIR));
    if (target.exists() && !target.isWritable())
        return fail(qt_error_string(EACCES));
    if (target.exists() && !target.isFile())
        return writeDirectly(content);

    QFile file;
    if (!createTemporary(file))
        return false;
    if (writeInto(file, content) && takeOverAttributes(file) && moveOverTarget(file.fileName()))
        return true;
    file.close();
    file.remove();
    return false;
}

/// Follows symbolic links to their end, which need not exist.
bool KelFileReplacer::resolveTarget()
{
    m_target = m_path;
    for (int i = 0; i < MaximumLinks; ++i) {
        const QFileInfo info(m_target);
        if (!info.isSymLink())
            return true;
        m_target = info.symLinkTarget();
    }
    return fail(qt_error_string(ELOOP));
}

bool KelFileReplacer::writeInto(QFile &file, const QByteArray &content)
{
    // What fits is written without complaint; only the attempt to write the rest tells the reason.
    for (qsizetype done = 0; done < content.size();) {
        const qint64 written = file.write(content.constData() + done, content.size() - done);
        if (written <= 0)
            return fail(file.errorString());
        done += static_cast<qsizetype>(written);
    }
    if (!file.flush() || file.error() != QFileDevice::NoError)
        return fail(file.errorString());
    // Not every device can be synchronised; EINVAL says that there is nothing to do.
    if (::fsync(file.handle()) != 0 && errno != EINVAL)
        return failWithErrno();
    return true;
}

bool KelFileReplacer::writeDirectly(const QByteArray &content)
{
    QFile file(m_target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return fail(file.errorString());
    return writeInto(file, content);
}

bool KelFileReplacer::createTemporary(QFile &file)
{
    const QFileInfo target(m_target);
    for (int i = 0; i < MaximumAttempts; ++i) {
        file.setFileName(temporaryName(target));
        // New and exclusive: with the access rights of any new file, and never over somebody else's.
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            return true;
        if (!QFileInfo::exists(file.fileName()))
            break;
    }
    return fail(file.errorString());
}

bool KelFileReplacer::takeOverAttributes(const QFile &file)
{
    struct stat old = {};
    if (::stat(QFile::encodeName(m_target).constData(), &old) != 0)
        return true; // a new file
    // Only the superuser can give files away; for anybody else the file is theirs now, as after any editor. The owner
    // comes first, because changing it clears some of the access rights.
    [[maybe_unused]] const bool kept = ::fchown(file.handle(), old.st_uid, old.st_gid) == 0
        || ::fchown(file.handle(), static_cast<uid_t>(-1), old.st_gid) == 0;
    return ::fchmod(file.handle(), old.st_mode & 07777) == 0 || failWithErrno();
}

bool KelFileReplacer::moveOverTarget(const QString &temporary)
{
    // QFile::rename() does not replace.
    if (std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(m_target).constData()) != 0)
        return failWithErrno();
    syncDirectory(QFileInfo(m_target).absolutePath());
    return true;
}

bool KelFileReplacer::fail(const QString &reason)
{
    m_errorText = reason;
    return false;
}

bool KelFileReplacer::failWithErrno()
{
    return fail(qt_error_string(errno));
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelFilePlace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <sys/stat.h>

namespace
{

constexpr int MAXIMUM_LINKS = 40; // as the kernel follows

/// In a ring of links, the one that was asked for.
QString placeOfResult(const QString &path)
{
    const QString end = KelFilePlace::endOfLinks(path);
    return end.isEmpty() ? QFileInfo(path).absoluteFilePath() : end;
}

} // namespace

KelFilePlace::KelFilePlace(QString absolutePath)
{
    struct stat status = {};
    while (::stat(QFile::encodeName(absolutePath).constData(), &status) != 0) {
        const qsizetype slash = std::max<qsizetype>(0, absolutePath.lastIndexOf(QLatin1Char('/')));
        m_rest.prepend(absolutePath.mid(slash));
        if (slash == 0)
            return;
        absolutePath.truncate(slash);
    }
    m_device = status.st_dev;
    m_file = status.st_ino;
}

KelFilePlace KelFilePlace::ofInput(const QString &path)
{
    return KelFilePlace(QDir::isAbsolutePath(path) ? path : QDir::currentPath() + QLatin1Char('/') + path);
}

KelFilePlace KelFilePlace::ofResult(const QString &path)
{
    return KelFilePlace(placeOfResult(path));
}

KelFilePlace KelFilePlace::folderOfResult(const QString &path)
{
    return KelFilePlace(QFileInfo(placeOfResult(path)).absolutePath());
}

QString KelFilePlace::endOfLinks(const QString &path)
{
    QFileInfo info(path);
    for (int i = 0; i < MAXIMUM_LINKS; ++i) {
        if (!info.isSymLink())
            return info.absoluteFilePath();
        info.setFile(info.symLinkTarget());
    }
    return QString();
}

// SPDX-FileCopyrightText: The libKelGeoLocation authors
// SPDX-License-Identifier: MIT

#include "KelUniqueFilenameMaker.h"

#include <QMutexLocker>

namespace
{

/// The same text for every spelling of one directory.
QString placeOf(const QDir &dir)
{
    return dir.exists() ? dir.canonicalPath() : dir.absolutePath();
}

/// QDir::operator== would also compare name filters and sorting, which are no matter here.
const QDir *findContainer(const QDir &wanted, const QSet<QDir> &containers)
{
    const QString place = placeOf(wanted);
    const QDir *first = nullptr;
    for (const QDir &container : containers) {
        if (placeOf(container) == place)
            return &wanted;
        if (!first || container.absolutePath() < first->absolutePath())
            first = &container;
    }
    return first;
}

bool exists(const QString &path)
{
    // exists() looks through a symbolic link: it does not see a dangling one.
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

QString usableName(const QString &name)
{
    const bool isUsable = !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..");
    return isUsable ? name : QStringLiteral("file");
}

QString numberedName(const QString &name, int number)
{
    // A leading dot hides a file and separates no suffix.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const qsizetype stemLength = dot > 0 ? dot : name.size();
    return name.left(stemLength) + QLatin1Char('_') + QString::number(number) + name.mid(stemLength);
}

} // namespace

QFileInfo KelUniqueFilenameMaker::makeUniqueFileNameInSafeContainer(const QFileInfo &wanted,
                                                                    const QSet<QDir> &safeContainers)
{
    const QDir wantedDir = wanted.dir();
    const QDir *const dir = findContainer(wantedDir, safeContainers);
    if (!dir)
        return {};

    const QMutexLocker locker(&m_mutex);
    return QFileInfo(*dir, uniqueName(*dir, usableName(wanted.fileName())));
}

QString KelUniqueFilenameMaker::uniqueName(const QDir &dir, const QString &wantedName)
{
    const QString prefix = placeOf(dir) + QLatin1Char('/');
    int &number = m_nextNumber[prefix + wantedName];
    for (;;) {
        ++number;
        const QString name = number == 1 ? wantedName : numberedName(wantedName, number);
        const QString path = prefix + name;
        if (m_handedOut.contains(path) || exists(path))
            continue;
        m_handedOut.insert(path);
        return name;
    }
}

// Here, so that programs and plugins that come without any other user of it find one and the same object.
template class KelSingleton<KelUniqueFilenameMaker>;
